#pragma once

#include "core/store/database.h"

#include <QString>
#include <QStringView>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace lx::store {

// Which way a walk over a link table goes from its start.
enum class Direction {
    ToParents,  // rows whose child is the start, then their parents' rows, ...
    ToChildren, // rows whose parent is the start, then their children's rows, ...
};

// The rows of a link table (childField, parentField) as a walk reads them: the store's query
// dialect has no recursion, so the walk itself goes from node to node. Text compares as
// everywhere in the store, without regard to case. Table and field names are checked against
// the file's catalog (3011 for an unknown table, 3265 for an unknown field); a node is bound
// as a value, never put into the query text. Its reads form one read transaction, from
// construction to destruction: a look-up alone would take and give back the file's locks.
class LinkTable {
public:
    LinkTable(Database &db, QStringView table, QStringView childField, QStringView parentField,
              Direction direction);
    ~LinkTable();
    LinkTable(const LinkTable &) = delete;
    LinkTable &operator=(const LinkTable &) = delete;

    // Calls `end` with the far end of each row that leaves `node` in the walk's direction, in
    // no particular order; a row with a Null end leads nowhere. Text is UTF-8, as the store
    // holds it, and lasts for the call. One index look-up: a walk that calls this once per node
    // it reaches costs what it reaches.
    void next(std::string_view node, const std::function<void(std::string_view end)> &end);

    // About how many rows the table holds, for free: its highest row id.
    std::int64_t rowsAbout();

    // Calls `row` for every row with both ends, in no particular order: for a walk that reaches
    // so much of the table that reading it through is cheaper than a look-up per node.
    void allRows(const std::function<void(std::string_view child, std::string_view parent)> &row);

private:
    Database m_db;
    std::string m_node; // the bound value, kept between look-ups
    QString m_nextSql;
    QString m_allSql;
    QString m_rowsSql;
};

// A table whose rows name their parent row by number (idField, parentField), read a level at a
// time for a tree that shows one branch at a time: a level of a hundred thousand rows is one
// read of the table and one of each value table, streamed, without a copy of the rows. Table and
// field names are checked against the file's catalog (3011, 3265); numbers are bound. Its reads
// form one read transaction, from construction to destruction.
class TreeTable {
public:
    TreeTable(Database &db, QStringView table, QStringView idField, QStringView parentField);
    ~TreeTable();
    TreeTable(const TreeTable &) = delete;
    TreeTable &operator=(const TreeTable &) = delete;

    // Calls `row` with each row under `parent`: its number, its `field` and whether some row
    // names it as parent. In the order of `field` (the column's text order), or in the table's
    // order when `ordered` is false.
    void children(
        std::int64_t parent, QStringView field, bool ordered,
        const std::function<void(std::int64_t id, const QString &value, bool hasChildren)> &row);

    // Calls `found` with each row under `parent` that has a row in `valueTable` (its
    // `valueIdField` holding the number) and that row's `valueField`, Null as the empty text.
    void childValues(std::int64_t parent, QStringView valueTable, QStringView valueIdField,
                     QStringView valueField,
                     const std::function<void(std::int64_t id, const QString &value)> &found);

    // The same two reads for the rows `depth` levels below `top` (1: its children, 2: their
    // children, ...), in one pass each: the level's rows come with their parent, ordered by
    // parent, then `field`, then number.
    void level(std::int64_t top, int depth, QStringView field, bool ordered,
               const std::function<void(std::int64_t parent, std::int64_t id, const QString &value,
                                        bool hasChildren)> &row);
    void levelValues(std::int64_t top, int depth, QStringView valueTable, QStringView valueIdField,
                     QStringView valueField,
                     const std::function<void(std::int64_t id, const QString &value)> &found);
    // The rows of `valueTable`, counted, and all of them as `found` would hear them: when a level
    // holds a good part of a value table, one pass over the whole table costs less than reaching
    // each of its rows through the level.
    std::int64_t valueRows(QStringView valueTable);
    void allValues(QStringView valueTable, QStringView valueIdField, QStringView valueField,
                   const std::function<void(std::int64_t id, const QString &value)> &found);

private:
    QString levelJoins(int depth) const;

    Database m_db;
    QString m_tableName;             // as the catalog has it
    QString m_table, m_id, m_parent; // as they go into a query
};

} // namespace lx::store
