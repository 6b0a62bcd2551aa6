#pragma once

#include "ontology/store/lifecycle.h"
#include "open_ontology_fixture.h"

#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QSettings>
#include <QStatusBar>

namespace lx::test {

// The ontology "Zoo" under THING, open in the editor, entered in this order: THING, ANIMAL,
// BIRD, EATS, BAT, STONE. ANIMAL and STONE are below THING, BIRD and BAT below ANIMAL, EATS a
// relation below THING; STONE is in the subset "Minerals".
class PublishFormsTest : public OpenOntologyTest {
protected:
    ~PublishFormsTest() override { ui::ProgramSettings()->remove(QStringLiteral("Settings")); }

    void openZoo()
    {
        const QString path = ontology(QStringLiteral("zoo"));
        WriteOntologyFile(path, {QStringLiteral("Zoo")},
                          {{QStringLiteral("THING"), 100},
                           {QStringLiteral("ANIMAL"), 1},
                           {QStringLiteral("BIRD"), 1, QStringLiteral("A feathered animal")},
                           {QStringLiteral("EATS"), 4},
                           {QStringLiteral("BAT"), 1},
                           {QStringLiteral("STONE"), 1}});
        store::Database db = store::DBEngine::OpenDatabase(path);
        const auto isa = [&db](const char *child, const char *parent) {
            AddRow(
                db, QStringLiteral("ISA"),
                {{u"Concept", QString::fromLatin1(child)}, {u"ISA", QString::fromLatin1(parent)}});
        };
        isa("ANIMAL", "THING");
        isa("STONE", "THING");
        isa("EATS", "THING");
        isa("BIRD", "ANIMAL");
        isa("BAT", "ANIMAL");
        AddRow(db, QStringLiteral("Subsets"),
               {{u"Subset_ID", 2}, {u"Subset", QStringLiteral("Minerals")}});
        store::Recordset stone =
            db.OpenRecordset(QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = \"STONE\""),
                             store::dbOpenDynaset);
        stone.Edit();
        stone.Collect(u"Subset_ID", 2);
        stone.Update();
        stone.Close();
        db.Close();
        openByDialog(path);
        ASSERT_FALSE(Process().OntoPath.isEmpty());
    }

    static QString publishFolder() { return PublishFolder() + QLatin1Char('/'); }
    static QString page(const QString &id)
    {
        return publishFolder() + id + QStringLiteral(".html");
    }
    static QStringList pagesWritten()
    {
        return QDir(PublishFolder()).entryList(QDir::Files, QDir::Name);
    }
    static QByteArray bytes(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QStringList texts(const QListWidget *list, bool selectedOnly = false)
    {
        QStringList out;
        for (int i = 0; i < list->count(); ++i) {
            if (!selectedOnly || list->item(i)->isSelected())
                out << list->item(i)->text();
        }
        return out;
    }
};

} // namespace lx::test
