#include "core/store/table_shapes.h"

namespace lx {

using namespace store;

void AppendTable(Database &db, const char *name, std::initializer_list<FieldShape> fields,
                 std::initializer_list<IndexShape> indexes)
{
    TableDef td = db.CreateTableDef(QString::fromLatin1(name));
    for (const FieldShape &shape : fields) {
        Field f = td.CreateField(QString::fromLatin1(shape.name), shape.type, shape.size);
        f.AllowZeroLength = shape.zeroLength;
        if (shape.autoNumber)
            f.Attributes = dbAutoIncrField;
        td.Fields.push_back(f);
    }
    for (const IndexShape &shape : indexes) {
        Index idx = td.CreateIndex(QString::fromLatin1(shape.name));
        for (const char *field : shape.fields)
            idx.Fields.push_back(idx.CreateField(QString::fromLatin1(field)));
        idx.Primary = shape.primary;
        idx.Unique = shape.primary;
        td.Indexes.push_back(idx);
    }
    db.Append(td);
}

void AppendRelation(Database &db, const RelationShape &shape)
{
    constexpr int kCascade = dbRelationUpdateCascades | dbRelationDeleteCascades; // 4352
    Relation rel =
        db.CreateRelation(QString::fromLatin1(shape.name), QString::fromLatin1(shape.table),
                          QString::fromLatin1(shape.foreignTable), kCascade);
    Field f = rel.CreateField(QString::fromLatin1(shape.field));
    f.ForeignName = QString::fromLatin1(shape.foreignField);
    rel.Fields.push_back(f);
    db.Append(rel);
}

void CopySeedTable(Database &destination, Database &seed, const QString &table,
                   std::initializer_list<QStringView> fields)
{
    Recordset to = destination.OpenRecordset(table, dbOpenDynaset);
    Recordset from = seed.OpenRecordset(table, dbOpenTable);
    from.MoveFirst();
    while (!from.Eof()) {
        to.AddNew();
        for (QStringView field : fields)
            to.Collect(field, from.Value(field));
        to.Update();
        from.MoveNext();
    }
}

} // namespace lx
