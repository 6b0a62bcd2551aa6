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

} // namespace lx::store
