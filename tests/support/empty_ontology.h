#pragma once

#include "core/process.h"
#include "core/store/database.h"
#include "ontology/store/schema.h"
#include "support/temp_store.h"

#include <QStringList>
#include <QVariant>

#include <initializer_list>
#include <utility>

// A new ontology file with its tables empty (no seed content) as the process's open ontology,
// with helpers to fill and read it.
class EmptyOntologyTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        lx::ResetProcessState();
        lx::Process().Quote = QStringLiteral("\"");
        db = lx::store::DBEngine::Workspaces(0).CreateDatabase(folder.path(QStringLiteral("t.ont")),
                                                               lx::store::dbLangGeneral);
        lx::BuildOntologyTables(db);
        lx::Process().OntoDB = db;
    }
    void TearDown() override
    {
        lx::ResetProcessState();
        db.Close();
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
};
