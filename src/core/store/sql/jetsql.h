#pragma once

#include "core/store/types.h"

#include <QString>
#include <QStringView>

#include <functional>
#include <optional>
#include <vector>

// The query dialect of the record store, parsed by our own tokenizer and parser and re-emitted
// as SQLite SQL. Every identifier is emitted quoted and every literal as a SQLite literal; no
// text of the caller ever reaches SQLite any other way.
namespace lx::store::sql {

struct CatalogColumn {
    QString name;
    FieldType type = dbText;
};

struct CatalogTable {
    QString name;
    std::vector<CatalogColumn> columns;
};

// Finds a table by name without regard to case; nullptr when there is none.
using TableLookup = std::function<const CatalogTable *(QStringView name)>;

// A table of the FROM clause.
struct Source {
    QString table;         // the catalog's spelling
    QString alias;         // the name the query uses for it (the table name unless AS is given)
    bool nullable = false; // inner side of a LEFT JOIN: its rowid may be NULL in a result row
};

// A column of the result, as Fields() sees it.
struct OutputColumn {
    QString name;       // alias, or field name; "Table.Field" for a name that * brings twice
    int source = -1;    // index into sources for a plain column; -1 for any other expression
    QString baseColumn; // the catalog's spelling of that column, when source >= 0
    FieldType type = dbText;
};

// An equality of the ON conditions between a column of one source and one of another
// (left.column = right.column); an insert through a join copies the key across it.
struct JoinKey {
    int leftSource = -1;
    QString leftColumn;
    int rightSource = -1;
    QString rightColumn;
};

struct CompiledQuery {
    std::vector<Source> sources;
    std::vector<JoinKey> joinKeys; // the column equalities of every ON condition
    std::vector<OutputColumn> columns;
    bool distinct = false; // DISTINCT: rows are values only, not updatable
    bool distinctRow =
        false; // DISTINCTROW: one row per combination of source rows that give columns

    // The complete SQLite statement. Its result columns are first the rowid of each source in
    // order (NULL for the missing side of a LEFT JOIN), then the output columns in order.
    QString sql;

    // Pieces of the same statement, so the engine can re-read or search rows:
    QString fromSql;                // "FROM ..." with every join
    QString whereSql;               // the WHERE condition without the keyword; empty if none
    QString groupBySql;             // "GROUP BY <rowids>" for DISTINCTROW over part of a join
    QString orderBySql;             // "ORDER BY ..." or empty
    std::vector<QString> rowidSql;  // per source, its rowid expression, e.g. "\"ISA\".rowid"
    std::vector<QString> columnSql; // per output column, its SQLite expression
};

// Parses a SELECT statement of the dialect and resolves it against the catalog.
// Throws StoreError: 3129 not a SELECT, 3075 syntax error in an expression, 3131 syntax error in
// FROM, 3135 in a JOIN, 3138 in ORDER BY, 3078 unknown table, 3061 unknown field ("Too few
// parameters. Expected n.").
CompiledQuery CompileSelect(QStringView jetSql, const TableLookup &tables);

// A column name in criteria, possibly qualified ("CONCEPTS.Concept" gives qualifier
// "CONCEPTS" and name "Concept"; an unqualified name has an empty qualifier).
struct ColumnRef {
    QStringView qualifier;
    QStringView name;
};

// A column of criteria as SQLite sees it: its expression and, when known, its field type, which
// decides how it is compared with a literal.
struct ColumnSql {
    QString sql;
    std::optional<FieldType> type;
};

// FindFirst criteria translated to a SQLite boolean expression; the resolver gives the SQLite
// expression of a column, or nothing when the name is unknown (then 3070). Syntax errors: 3077.
QString CompileCriteriaSql(QStringView criteria,
                           const std::function<std::optional<ColumnSql>(ColumnRef)> &columnSql);

// FindFirst criteria compiled for rows held in memory (snapshots). The resolver gives the index
// of a column in the row and its type, or nothing when unknown (then 3070). Syntax errors: 3077.
struct ColumnSlot {
    int index = 0;
    FieldType type = dbText;
};
using Predicate = std::function<bool(const Cell *row)>;
Predicate CompileCriteria(QStringView criteria,
                          const std::function<std::optional<ColumnSlot>(ColumnRef)> &column);

// Orders two values as every comparison of the dialect does, in memory and (as the SQLite
// function lx_compare) in statements: numbers by value, text by the store's collation, a number
// against a text by the text's value when it reads as a number, else every number before every
// text. Nothing when either is Null.
std::optional<int> CompareValues(const Cell &a, const Cell &b);

// Turns text into a SQLite string literal ('...' with apostrophes doubled).
QString SqlLiteral(QStringView text);
// Turns a name into a SQLite quoted identifier ("..." with double quotes doubled).
QString SqlIdentifier(QStringView name);

} // namespace lx::store::sql
