#pragma once

#include "core/store/catalog.h"

#include <QStringList>

namespace lx::store::detail {

// The AutoNumber field that is the table's whole primary key becomes SQLite's rowid; -1 if none.
int rowidAliasField(const TableDef &def);

// CREATE TABLE for a table of the catalog under the given SQLite name, with the foreign keys of
// every relation of the catalog in which it is the foreign table.
QString createTableSql(const TableDef &def, const Catalog &catalog, const QString &sqliteName);

// CREATE INDEX statements: the table's own non-primary indexes, and one for the fields of each
// relation that refers from this table, so cascades and checks don't scan.
QStringList createIndexSql(const TableDef &def, const Catalog &catalog);

} // namespace lx::store::detail
