#include "graph.h"

#include "core/store/connection.h"
#include "core/store/errors.h"
#include "core/store/sql/jetsql.h"

namespace lx::store {

namespace detail {

// The one way in from graph walks to a database's connection.
struct DatabaseAccess {
    static Connection &connection(const Database &db) { return db.connection(); }
};

} // namespace detail

namespace {

QString fieldName(const TableDef &def, QStringView name)
{
    const int i = def.fieldIndex(name);
    if (i < 0)
        throw StoreError::make(err::ItemNotFound, name.toString());
    return def.Fields[size_t(i)].Name;
}

QString qualifiedField(Database &db, QStringView table, QStringView field)
{
    const TableDef &def = detail::DatabaseAccess::connection(db).table(table);
    return sql::SqlIdentifier(def.Name) + QLatin1Char('.') +
           sql::SqlIdentifier(fieldName(def, field));
}

QString cellText(const Cell &cell)
{
    switch (cell.kind) {
    case Cell::Text:
        return QString::fromUtf8(cell.text.data(), qsizetype(cell.text.size()));
    case Cell::Integer:
        return QString::number(cell.integer);
    case Cell::Real:
        return QString::number(cell.real);
    case Cell::Null:
        break;
    }
    return QString();
}

} // namespace

LinkTable::LinkTable(Database &db, QStringView table, QStringView childField,
                     QStringView parentField, Direction direction)
    : m_db(db)
{
    const TableDef &def = detail::DatabaseAccess::connection(db).table(table);
    const QString t = sql::SqlIdentifier(def.Name);
    const QString child = sql::SqlIdentifier(fieldName(def, childField));
    const QString parent = sql::SqlIdentifier(fieldName(def, parentField));
    // `from` is the end a row is reached by, `to` the end the walk goes on from. The column
    // stands left of "=" so that its collation and index serve; the order is the column's
    // collation, the store's.
    const bool down = direction == Direction::ToChildren;
    const QString &from = down ? parent : child;
    const QString &to = down ? child : parent;
    m_nextSql =
        QStringLiteral("SELECT %1 FROM %2 WHERE %3 = ?1 AND %1 IS NOT NULL").arg(to, t, from);
    m_allSql = QStringLiteral("SELECT %1, %2 FROM %3 WHERE %1 IS NOT NULL AND %2 IS NOT NULL")
                   .arg(child, parent, t);
    m_rowsSql = QStringLiteral("SELECT max(rowid) FROM %1").arg(t);
    // A savepoint nests in a transaction under way and starts one otherwise.
    detail::DatabaseAccess::connection(db).exec(QStringLiteral("SAVEPOINT link_walk"));
}

LinkTable::~LinkTable()
{
    try {
        detail::DatabaseAccess::connection(m_db).exec(QStringLiteral("RELEASE link_walk"));
    } catch (const StoreError &) {
        // Nothing was written: a read that can't end leaves nothing to undo.
    }
}

void LinkTable::next(std::string_view node, const std::function<void(std::string_view)> &end)
{
    detail::Statement stmt = detail::DatabaseAccess::connection(m_db).prepare(m_nextSql);
    m_node.assign(node);
    stmt.bindText(1, m_node);
    while (stmt.step())
        end(stmt.cell(0).text);
}

std::int64_t LinkTable::rowsAbout()
{
    detail::Statement stmt = detail::DatabaseAccess::connection(m_db).prepare(m_rowsSql);
    return stmt.step() ? stmt.integer(0) : 0;
}

void LinkTable::allRows(const std::function<void(std::string_view, std::string_view)> &row)
{
    detail::Statement stmt = detail::DatabaseAccess::connection(m_db).prepare(m_allSql);
    while (stmt.step())
        row(stmt.cell(0).text, stmt.cell(1).text);
}

TreeTable::TreeTable(Database &db, QStringView table, QStringView idField, QStringView parentField)
    : m_db(db)
{
    const TableDef &def = detail::DatabaseAccess::connection(db).table(table);
    m_tableName = def.Name;
    m_table = sql::SqlIdentifier(def.Name);
    m_id = sql::SqlIdentifier(fieldName(def, idField));
    m_parent = sql::SqlIdentifier(fieldName(def, parentField));
    detail::DatabaseAccess::connection(db).exec(QStringLiteral("SAVEPOINT tree_level"));
}

TreeTable::~TreeTable()
{
    try {
        detail::DatabaseAccess::connection(m_db).exec(QStringLiteral("RELEASE tree_level"));
    } catch (const StoreError &) {
        // Nothing was written: a read that can't end leaves nothing to undo.
    }
}

// The joins from "node" up to its ancestor `depth` - 1 levels up (up1, up2, ...), and the
// condition that this ancestor's parent is ?1.
QString TreeTable::levelJoins(int depth) const
{
    QString joins;
    QString below = QStringLiteral("node");
    for (int i = 1; i < depth; ++i) {
        const QString up = QStringLiteral("up%1").arg(i);
        joins += QStringLiteral(" INNER JOIN %1 AS %2 ON %3.%4 = %2.%5")
                     .arg(m_table, up, below, m_parent, m_id);
        below = up;
    }
    return joins + QStringLiteral(" WHERE %1.%2 = ?1").arg(below, m_parent);
}

void TreeTable::children(std::int64_t parent, QStringView field, bool ordered,
                         const std::function<void(std::int64_t, const QString &, bool)> &row)
{
    level(parent, 1, field, ordered,
          [&](std::int64_t, std::int64_t id, const QString &value, bool hasChildren) {
              row(id, value, hasChildren);
          });
}

void TreeTable::level(
    std::int64_t top, int depth, QStringView field, bool ordered,
    const std::function<void(std::int64_t, std::int64_t, const QString &, bool)> &row)
{
    const TableDef &def = detail::DatabaseAccess::connection(m_db).table(m_tableName);
    const QString f = QStringLiteral("node.") + sql::SqlIdentifier(fieldName(def, field));
    QString text = QStringLiteral("SELECT node.%1, %2, EXISTS (SELECT 1 FROM %3 AS below WHERE "
                                  "below.%4 = node.%1), node.%4 FROM %3 AS node")
                       .arg(m_id, f, m_table, m_parent) +
                   levelJoins(depth);
    if (ordered)
        text += depth == 1
                    ? QStringLiteral(" ORDER BY %1").arg(f)
                    : QStringLiteral(" ORDER BY node.%1, %2, node.%3").arg(m_parent, f, m_id);
    detail::Statement stmt = detail::DatabaseAccess::connection(m_db).prepare(text);
    stmt.bindInt(1, top);
    while (stmt.step())
        row(stmt.integer(3), stmt.integer(0), cellText(stmt.cell(1)), stmt.integer(2) != 0);
}

void TreeTable::childValues(std::int64_t parent, QStringView valueTable, QStringView valueIdField,
                            QStringView valueField,
                            const std::function<void(std::int64_t, const QString &)> &found)
{
    levelValues(parent, 1, valueTable, valueIdField, valueField, found);
}

void TreeTable::levelValues(std::int64_t top, int depth, QStringView valueTable,
                            QStringView valueIdField, QStringView valueField,
                            const std::function<void(std::int64_t, const QString &)> &found)
{
    const QString id = qualifiedField(m_db, valueTable, valueIdField);
    const QString value = qualifiedField(m_db, valueTable, valueField);
    const QString values =
        sql::SqlIdentifier(detail::DatabaseAccess::connection(m_db).table(valueTable).Name);
    const QString text =
        QStringLiteral("SELECT %1, %2 FROM %3 INNER JOIN %4 AS node ON %1 = node.%5")
            .arg(id, value, values, m_table, m_id) +
        levelJoins(depth);
    detail::Statement stmt = detail::DatabaseAccess::connection(m_db).prepare(text);
    stmt.bindInt(1, top);
    while (stmt.step())
        found(stmt.integer(0), cellText(stmt.cell(1)));
}

std::int64_t TreeTable::valueRows(QStringView valueTable)
{
    const QString values =
        sql::SqlIdentifier(detail::DatabaseAccess::connection(m_db).table(valueTable).Name);
    detail::Statement stmt = detail::DatabaseAccess::connection(m_db).prepare(
        QStringLiteral("SELECT count(*) FROM %1").arg(values));
    return stmt.step() ? stmt.integer(0) : 0;
}

void TreeTable::allValues(QStringView valueTable, QStringView valueIdField, QStringView valueField,
                          const std::function<void(std::int64_t, const QString &)> &found)
{
    const QString values =
        sql::SqlIdentifier(detail::DatabaseAccess::connection(m_db).table(valueTable).Name);
    detail::Statement stmt = detail::DatabaseAccess::connection(m_db).prepare(
        QStringLiteral("SELECT %1, %2 FROM %3")
            .arg(qualifiedField(m_db, valueTable, valueIdField),
                 qualifiedField(m_db, valueTable, valueField), values));
    while (stmt.step())
        found(stmt.integer(0), cellText(stmt.cell(1)));
}

} // namespace lx::store
