#pragma once

#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/types.h"
#include "ontology/store/schema.h"
#include "support/scripted_user.h"
#include "support/temp_store.h"

#include <QVariant>

// An ontology as the process's open one, with three languages (English and German shown,
// French not), the subset "General" and a scripted user for the boxes.
class EditTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        using namespace lx::store;
        lx::ResetProcessState();
        lx::Process().Quote = QStringLiteral("\"");
        db = DBEngine::Workspaces(0).CreateDatabase(folder.path(QStringLiteral("t.ont")),
                                                    dbLangGeneral);
        lx::BuildOntologyTables(db);
        lx::Process().OntoDB = db;
        lx::Process().OntoMeta.DefLang = QStringLiteral("en");
        lx::Process().OntoMeta.ActiveSet = 1;
        addLanguage(QStringLiteral("en"), QStringLiteral("English"), true);
        addLanguage(QStringLiteral("fr"), QStringLiteral("French"), false);
        addLanguage(QStringLiteral("de"), QStringLiteral("German"), true);
        addSubset(1, QStringLiteral("General"));
    }
    void TearDown() override
    {
        lx::ResetProcessState();
        db.Close();
    }

    void addLanguage(const QString &code, const QString &name, bool show)
    {
        addRow(QStringLiteral("Languages"),
               {{u"Lang_ID", code}, {u"Language", name}, {u"Show", show}});
    }
    void addSubset(int id, const QString &name)
    {
        addRow(QStringLiteral("Subsets"), {{u"Subset_ID", id}, {u"Subset", name}});
    }
    void addConcept(const QString &id, int subset = 1)
    {
        addRow(QStringLiteral("CONCEPTS"), {{u"Concept", id},
                                            {u"Definition", QStringLiteral("Undefined")},
                                            {u"Type", 1},
                                            {u"Subset_ID", subset}});
    }

    void addRow(const QString &table,
                std::initializer_list<std::pair<QStringView, QVariant>> fields)
    {
        lx::store::Recordset rs = db.OpenRecordset(table, lx::store::dbOpenTable);
        rs.AddNew();
        for (const auto &[name, value] : fields)
            rs.Collect(name, value);
        rs.Update();
    }

    // One column of a query's rows, as text.
    QStringList column(const QString &query, QStringView field)
    {
        QStringList values;
        lx::store::Recordset rs = db.OpenRecordset(query, lx::store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            values.append(rs.Value(field).toString());
        return values;
    }

    TempFolder folder;
    lx::store::Database db;
    lx::test::ScriptedUser user;
};
