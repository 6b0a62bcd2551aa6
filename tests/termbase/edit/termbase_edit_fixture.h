#pragma once

#include "../store/fake_editor.h"
#include "../store/termbase_fixture.h"
#include "core/interaction.h"
#include "core/store/database.h"
#include "termbase/edit/categories.h"
#include "termbase/store/lifecycle.h"

// A new termbase made from the seed by the user, open with its category table loaded, and
// helpers that write elements as a termbase file holds them.
class TermbaseEditTest : public TermbaseFixture {
protected:
    void SetUp() override
    {
        TermbaseFixture::SetUp();
        lx::Process().OntoFolder = lx::OntologiesFolder();
        {
            lx::ScriptedInteraction user;
            lx::InteractionScope scope(user);
            user.answerSaveFile(termbasePath()).answerMsgBox(lx::msg::OK);
            lx::NewTermbase(editor);
            ASSERT_TRUE(user.unexpectedCalls().isEmpty());
        }
        ASSERT_TRUE(lx::Process().TermDB.isOpen());
        lx::LoadCategoryTable();
    }
    void TearDown() override
    {
        lx::CloseTermbase(editor);
        TermbaseFixture::TearDown();
    }

    // A row of `table` in the open termbase.
    static void addRow(const QString &table,
                       std::initializer_list<std::pair<QStringView, QVariant>> fields)
    {
        lx::store::Recordset rs = lx::Process().TermDB.OpenRecordset(table, lx::store::dbOpenTable);
        rs.AddNew();
        for (const auto &[name, value] : fields)
            rs.Collect(name, value);
        rs.Update();
    }
    // A new element numbered as the editor numbers them.
    qint32 element(const QString &category, qint32 parent)
    {
        const qint32 id = ++editor.LastElemID;
        addRow(QStringLiteral("elements"),
               {{u"elemID", id}, {u"categoryID", category}, {u"parentID", parent}});
        return id;
    }
    static QStringList column(const QString &query, QStringView field)
    {
        QStringList values;
        lx::store::Recordset rs =
            lx::Process().TermDB.OpenRecordset(query, lx::store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            values.append(rs.Value(field).toString());
        return values;
    }

    lx::FakeTermbaseEditor editor;
};
