#pragma once

#include "core/store/database.h"

#include <QString>
#include <QStringView>

#include <utility>
#include <vector>

namespace lx::store {

// Which way a walk over a link table goes from its start.
enum class Direction {
    ToParents,  // rows whose child is the start, then their parents' rows, ...
    ToChildren, // rows whose parent is the start, then their children's rows, ...
};

// One row of a link table: (child, parent), with the stored spelling of both.
using Edge = std::pair<QString, QString>;

struct LinkRows {
    std::vector<Edge> edges;
    // True when `edges` is every row of the table: the walk reached so much of it that reading
    // the table through was cheaper. The caller then follows the links from the start itself.
    bool wholeTable = false;
};

// The rows of a link table that a walk from `start` follows, from childField to parentField
// or back, each row once and in no particular order: the store's query dialect has no
// recursion, and a walk of one query per node doesn't scale. Text compares as everywhere in
// the store, without regard to case; a cycle ends where it meets a node already reached.
// Table and field names are checked against the file's catalog (3011 for an unknown table,
// 3265 for an unknown field), and `start` is bound as a value, never put into the query text.
//
// A walk that reaches more than about one node in `wholeTableShare` of the table's rows gives
// the whole table instead: an index look-up per node costs some twenty times a row read in
// order.
LinkRows ReachableEdges(Database &db, QStringView table, QStringView childField,
                        QStringView parentField, const QString &start, Direction direction,
                        int wholeTableShare = 20);

} // namespace lx::store
