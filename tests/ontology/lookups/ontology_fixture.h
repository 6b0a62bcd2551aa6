#pragma once

#include "core/process.h"
#include "core/store/database.h"
#include "ontology/store/schema.h"
#include "support/temp_store.h"

#include <QVariant>

// A new ontology file with its tables empty (no seed content) as the process's open ontology,
// with helpers to fill it.
class OntologyTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        lx::ResetProcessState();
        lx::Process().Quote = QStringLiteral("\"");
        db = lx::store::DBEngine::Workspaces(0).CreateDatabase(
            folder.path(QStringLiteral("test.ont")), lx::store::dbLangGeneral,
            lx::store::dbVersion40);
        lx::BuildOntologyTables(db);
        lx::Process().OntoDB = db;
    }
    void TearDown() override
    {
        db.Close();
        lx::ResetProcessState();
    }

    void addConcept(const QString &id, int type = 1,
                    const QVariant &definition = QStringLiteral("Undefined"),
                    const QVariant &subset = QVariant())
    {
        lx::store::Recordset rs =
            db.OpenRecordset(QStringLiteral("CONCEPTS"), lx::store::dbOpenTable);
        rs.AddNew();
        rs.Collect(u"Concept", id);
        rs.Collect(u"Definition", definition);
        rs.Collect(u"Type", type);
        rs.Collect(u"Subset_ID", subset);
        rs.Update();
    }

    // One IS-A link: `child` is a `parent`.
    void link(const QString &child, const QString &parent)
    {
        lx::store::Recordset rs = db.OpenRecordset(QStringLiteral("ISA"), lx::store::dbOpenTable);
        rs.AddNew();
        rs.Collect(u"Concept", child);
        rs.Collect(u"ISA", parent);
        rs.Update();
    }

    void addRow(const QString &table, const QList<std::pair<QString, QVariant>> &fields)
    {
        lx::store::Recordset rs = db.OpenRecordset(table, lx::store::dbOpenTable);
        rs.AddNew();
        for (const auto &[name, value] : fields)
            rs.Collect(name, value);
        rs.Update();
    }

    TempFolder folder;
    lx::store::Database db;
};
