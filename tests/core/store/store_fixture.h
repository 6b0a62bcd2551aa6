#pragma once

#include "core/store/database.h"
#include "core/store/errors.h"
#include "support/temp_store.h"

#include <QStringList>

// A small file with the shapes the program's files have: a parent keyed by text, a child with
// an AutoNumber key, reserved words as field names and a cascading relation.
class StoreTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        using namespace lx::store;
        db = DBEngine::Workspaces(0).CreateDatabase(folder.path(QStringLiteral("t.ont")),
                                                    dbLangGeneral, dbVersion40);
        TableDef parent = db.CreateTableDef(QStringLiteral("PARENTS"));
        parent.Fields.push_back(parent.CreateField(QStringLiteral("Key"), dbText, 20));
        parent.Fields.push_back(parent.CreateField(QStringLiteral("Info"), dbMemo));
        parent.Fields.push_back(parent.CreateField(QStringLiteral("Type"), dbByte));
        Index pk = parent.CreateIndex(QStringLiteral("Key"));
        pk.Fields.push_back(pk.CreateField(QStringLiteral("Key")));
        pk.Primary = true;
        parent.Indexes.push_back(pk);
        db.Append(parent);

        TableDef child = db.CreateTableDef(QStringLiteral("Children"));
        Field id = child.CreateField(QStringLiteral("Id"), dbLong);
        id.Attributes = dbAutoIncrField;
        child.Fields.push_back(id);
        child.Fields.push_back(child.CreateField(QStringLiteral("Parent"), dbText, 20));
        child.Fields.push_back(child.CreateField(QStringLiteral("Default"), dbBoolean));
        Field value = child.CreateField(QStringLiteral("Value"), dbMemo);
        value.AllowZeroLength = true;
        child.Fields.push_back(value);
        child.Fields.push_back(child.CreateField(QStringLiteral("Date"), dbDate));
        child.Fields.push_back(child.CreateField(QStringLiteral("order"), dbLong));
        Index cpk = child.CreateIndex(QStringLiteral("Id"));
        cpk.Fields.push_back(cpk.CreateField(QStringLiteral("Id")));
        cpk.Primary = true;
        child.Indexes.push_back(cpk);
        Index byParent = child.CreateIndex(QStringLiteral("Parent"));
        byParent.Fields.push_back(byParent.CreateField(QStringLiteral("Parent")));
        child.Indexes.push_back(byParent);
        db.Append(child);

        Relation rel = db.CreateRelation(QStringLiteral("ParentsChildren"),
                                         QStringLiteral("PARENTS"), QStringLiteral("Children"),
                                         dbRelationUpdateCascades | dbRelationDeleteCascades);
        Field rf = rel.CreateField(QStringLiteral("Key"));
        rf.ForeignName = QStringLiteral("Parent");
        rel.Fields.push_back(rf);
        db.Append(rel);
    }

    void addParent(const QString &key, int type = 1)
    {
        lx::store::Recordset rs =
            db.OpenRecordset(QStringLiteral("PARENTS"), lx::store::dbOpenTable);
        rs.AddNew();
        rs.Collect(u"Key", key);
        rs.Collect(u"Type", type);
        rs.Update();
    }

    void addChild(const QString &parent, const QString &value)
    {
        lx::store::Recordset rs =
            db.OpenRecordset(QStringLiteral("Children"), lx::store::dbOpenTable);
        rs.AddNew();
        rs.Collect(u"Parent", parent);
        rs.Collect(u"Value", value);
        rs.Update();
    }

    // The values of one field, walking the recordset from its first row.
    static QStringList column(lx::store::Recordset &rs, const QString &field)
    {
        QStringList values;
        if (rs.RecordCount() == 0)
            return values;
        rs.MoveFirst();
        while (!rs.Eof()) {
            const QVariant v = rs.Fields(field).Value();
            values << (v.isNull() ? QStringLiteral("<null>") : v.toString());
            rs.MoveNext();
        }
        return values;
    }

    QStringList query(const QString &sql, const QString &field,
                      int type = lx::store::dbOpenSnapshot)
    {
        lx::store::Recordset rs = db.OpenRecordset(sql, type);
        return column(rs, field);
    }

    TempFolder folder;
    lx::store::Database db;
};
