#pragma once

#include "core/file_steps.h"
#include "ontology/edit/inheritance_fixture.h"
#include "publish/html_stuff.h"
#include "support/scripted_user.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

// An ontology under the top concept "ALL" with a "-publish" folder beside it, and a scripted
// user who expects no question unless a test scripts one.
class ConceptPageTest : public InheritanceTest {
protected:
    void SetUp() override
    {
        InheritanceTest::SetUp();
        pages = folder.path(QStringLiteral("onto-publish"));
        ASSERT_TRUE(QDir().mkdir(pages));
    }

    void define(const QString &id, const QVariant &definition, int type = 1)
    {
        known.insert(id);
        addRow(QStringLiteral("CONCEPTS"),
               {{u"Concept", id}, {u"Type", type}, {u"Definition", definition}});
    }

    QString pagePath(const QString &id) const { return pages + QLatin1Char('/') + id + ".html"; }

    // Writes the page with all four options on unless told otherwise and returns its bytes,
    // the date of the stamp checked and replaced by "NOW".
    QByteArray write(const QString &id, bool all = true)
    {
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        lx::WriteConceptPage(id, pages + QLatin1Char('/'), all, all, all, all);
        const QDateTime after = QDateTime::currentDateTime().addSecs(1);
        return withoutDate(FileBytes(pagePath(id)), before, after);
    }

    static QByteArray withoutDate(QByteArray page, const QDateTime &before, const QDateTime &after)
    {
        const QByteArray head = "Updated: ";
        const qsizetype from = page.indexOf(head) + head.size();
        const qsizetype to = page.indexOf("</SMALL>", from);
        if (from < head.size() || to < 0) {
            ADD_FAILURE() << "no stamp in the page";
            return page;
        }
        const QDateTime stamp = lx::TextToDate(QString::fromLatin1(page.mid(from, to - from)));
        EXPECT_TRUE(before <= stamp && stamp <= after) << page.mid(from, to - from).data();
        return page.replace(from, to - from, "NOW");
    }

    // The page's lines as written, CR LF apart; the file ends with one.
    static QByteArray Lines(std::initializer_list<const char *> lines)
    {
        QByteArray page;
        for (const char *line : lines)
            page += QByteArray(line) + "\r\n";
        return page;
    }

    QString pages;
    lx::test::ScriptedUser user;
};
