#include "ddl.h"

#include "core/store/sql/jetsql.h"

namespace lx::store::detail {

using sql::SqlIdentifier;

namespace {

bool same(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QString columnType(const Field &f)
{
    switch (f.Type) {
    case dbText:
    case dbMemo:
        return QStringLiteral("TEXT COLLATE \"LX\"");
    case dbDate:
        return QStringLiteral("TEXT");
    default:
        return QStringLiteral("INTEGER");
    }
}

QString indexName(const TableDef &def, const QString &name)
{
    return SqlIdentifier(def.Name + QStringLiteral("::") + name);
}

// True if some index of the table starts with exactly these fields.
bool coveredByIndex(const TableDef &def, const QStringList &fields)
{
    for (const Index &idx : def.Indexes) {
        if (idx.Fields.size() < size_t(fields.size()))
            continue;
        bool all = true;
        for (qsizetype i = 0; i < fields.size(); ++i)
            all = all && same(idx.Fields[size_t(i)].Name, fields[i]);
        if (all)
            return true;
    }
    return false;
}

QString fieldList(const std::vector<Field> &fields, bool foreign)
{
    QStringList names;
    for (const Field &f : fields)
        names << SqlIdentifier(foreign ? f.ForeignName : f.Name);
    return names.join(QLatin1Char(','));
}

} // namespace

int rowidAliasField(const TableDef &def)
{
    const Index *pk = def.primaryIndex();
    if (!pk || pk->Fields.size() != 1)
        return -1;
    const int f = def.fieldIndex(pk->Fields.front().Name);
    return f >= 0 && def.Fields[size_t(f)].isAutoNumber() ? f : -1;
}

QString createTableSql(const TableDef &def, const Catalog &catalog, const QString &sqliteName)
{
    const Index *pk = def.primaryIndex();
    const int alias = rowidAliasField(def);
    QStringList parts;
    for (size_t i = 0; i < def.Fields.size(); ++i) {
        const Field &f = def.Fields[i];
        if (int(i) == alias) {
            parts << SqlIdentifier(f.Name) + QStringLiteral(" INTEGER PRIMARY KEY AUTOINCREMENT");
            continue;
        }
        QString column = SqlIdentifier(f.Name) + QLatin1Char(' ') + columnType(f);
        bool inPrimary = false;
        if (pk)
            for (const Field &k : pk->Fields)
                inPrimary = inPrimary || same(k.Name, f.Name);
        if (inPrimary)
            column += QStringLiteral(" NOT NULL");
        if (f.Type == dbBoolean)
            column += QStringLiteral(" DEFAULT 0"); // rows added by a query are False too
        parts << column;
    }
    if (pk && alias < 0)
        parts << QStringLiteral("PRIMARY KEY (%1)").arg(fieldList(pk->Fields, false));
    for (const Index &idx : def.Indexes)
        if (idx.Unique && !idx.Primary)
            parts << QStringLiteral("UNIQUE (%1)").arg(fieldList(idx.Fields, false));
    for (const Relation &r : catalog.relations) {
        if (!same(r.ForeignTable, def.Name))
            continue;
        QString fk =
            QStringLiteral("FOREIGN KEY (%1) REFERENCES %2 (%3)")
                .arg(fieldList(r.Fields, true), SqlIdentifier(r.Table), fieldList(r.Fields, false));
        if (r.cascadesUpdates())
            fk += QStringLiteral(" ON UPDATE CASCADE");
        if (r.cascadesDeletes())
            fk += QStringLiteral(" ON DELETE CASCADE");
        parts << fk;
    }
    return QStringLiteral("CREATE TABLE %1 (%2)")
        .arg(SqlIdentifier(sqliteName), parts.join(QStringLiteral(", ")));
}

QStringList createIndexSql(const TableDef &def, const Catalog &catalog)
{
    QStringList statements;
    for (const Index &idx : def.Indexes) {
        if (idx.Primary || idx.Unique)
            continue; // made with the table
        statements << QStringLiteral("CREATE INDEX %1 ON %2 (%3)")
                          .arg(indexName(def, idx.Name), SqlIdentifier(def.Name),
                               fieldList(idx.Fields, false));
    }
    for (const Relation &r : catalog.relations) {
        if (!same(r.ForeignTable, def.Name))
            continue;
        QStringList fields;
        for (const Field &f : r.Fields)
            fields << f.ForeignName;
        if (coveredByIndex(def, fields))
            continue;
        statements << QStringLiteral("CREATE INDEX %1 ON %2 (%3)")
                          .arg(indexName(def, QStringLiteral("fk::") + r.Name),
                               SqlIdentifier(def.Name), fieldList(r.Fields, true));
    }
    return statements;
}

} // namespace lx::store::detail
