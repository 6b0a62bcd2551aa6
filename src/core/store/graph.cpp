#include "graph.h"

#include "core/store/connection.h"
#include "core/store/errors.h"
#include "core/store/sql/jetsql.h"

#include <algorithm>

namespace lx::store {

namespace detail {

// The one way in from graph walks to a database's connection.
struct DatabaseAccess {
    static Connection &connection(const Database &db) { return db.connection(); }
};

} // namespace detail

namespace {

// Below this many nodes a walk never turns to reading the whole table.
constexpr std::int64_t kMinimumProbe = 64;

QString fieldName(const TableDef &def, QStringView name)
{
    const int i = def.fieldIndex(name);
    if (i < 0)
        throw StoreError::make(err::ItemNotFound, name.toString());
    return def.Fields[size_t(i)].Name;
}

QString text(const Cell &cell)
{
    return QString::fromUtf8(cell.text.data(), qsizetype(cell.text.size()));
}

// Reads (child, parent) from columns `first` and `first + 1` of every row; a link with a Null
// end leads nowhere and is left out.
void collect(detail::Statement &stmt, int first, std::vector<Edge> &edges)
{
    do {
        const Cell child = stmt.cell(first);
        const Cell parent = stmt.cell(first + 1);
        if (child.kind == Cell::Text && parent.kind == Cell::Text)
            edges.emplace_back(text(child), text(parent));
    } while (stmt.step());
}

} // namespace

LinkRows ReachableEdges(Database &db, QStringView table, QStringView childField,
                        QStringView parentField, const QString &start, Direction direction,
                        int wholeTableShare)
{
    detail::Connection &c = detail::DatabaseAccess::connection(db);
    const TableDef &def = c.table(table);
    const QString t = sql::SqlIdentifier(def.Name);
    const QString child = sql::SqlIdentifier(fieldName(def, childField));
    const QString parent = sql::SqlIdentifier(fieldName(def, parentField));
    // `from` is the end a row is reached by, `to` the end the walk goes on from.
    const bool down = direction == Direction::ToChildren;
    const QString &from = down ? parent : child;
    const QString &to = down ? child : parent;

    // Every table of the store has row ids, and the highest is a good enough count of its rows
    // for free.
    std::int64_t rows = 0;
    {
        detail::Statement stmt = c.prepare(QStringLiteral("SELECT max(rowid) FROM %1").arg(t));
        if (stmt.step())
            rows = stmt.integer(0);
    }
    const std::int64_t limit = std::max(kMinimumProbe, rows / std::max(1, wholeTableShare));

    LinkRows result;
    {
        // UNION keeps each node once under the store's collation, which both ends a cycle and
        // makes every row come out once. The LIMIT stops a walk that has grown past the point
        // where the whole table is cheaper; the node count in each row tells that it did. The
        // column stands left of each "=" so that its collation and index serve.
        detail::Statement stmt = c.prepare(
            QStringLiteral("WITH RECURSIVE reach(node) AS (SELECT ?1 COLLATE \"LX\" UNION "
                           "SELECT l.%3 FROM %1 AS l JOIN reach AS r ON l.%2 = r.node LIMIT ?2) "
                           "SELECT (SELECT count(*) FROM reach), l.%4, l.%5 FROM reach AS r "
                           "JOIN %1 AS l ON l.%2 = r.node")
                .arg(t, from, to, child, parent));
        stmt.bindText(1, QStringView(start));
        stmt.bindInt(2, limit);
        if (!stmt.step())
            return result;
        if (stmt.integer(0) < limit) {
            collect(stmt, 1, result.edges);
            return result;
        }
    }
    detail::Statement all =
        c.prepare(QStringLiteral("SELECT %1, %2 FROM %3").arg(child, parent, t));
    result.wholeTable = true;
    if (all.step())
        collect(all, 0, result.edges);
    return result;
}

} // namespace lx::store
