#pragma once

#include "core/store/types.h"

#include <QString>

#include <memory>
#include <vector>

// The parsed form of the dialect, shared by the SQLite emitter and the in-memory criteria.
namespace lx::store::sql::detail {

struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

enum class ExprKind {
    Null,
    Integer, // also True (-1) and False (0)
    Real,
    Text,
    Date,   // text holds "yyyy-MM-ddTHH:mm:ss"
    Column, // qualifier (may be empty) and name
    Not,
    Negate,
    Binary,  // op with args[0], args[1]
    Like,    // args[0] LIKE args[1]; negated for NOT LIKE
    IsNull,  // args[0] IS NULL; negated for IS NOT NULL
    In,      // args[0] IN (args[1..]); negated for NOT IN
    Between, // args[0] BETWEEN args[1] AND args[2]; negated for NOT BETWEEN
};

enum class BinaryOp { Eq, Ne, Lt, Gt, Le, Ge, And, Or, Add, Sub, Mul, Div, Concat };

inline bool IsComparison(BinaryOp op)
{
    return op <= BinaryOp::Ge;
}

// True for the expressions whose value is a truth value (comparisons, logic, LIKE, IS, IN,
// BETWEEN).
inline bool IsTruth(const Expr &e);

// Operators whose left-nested runs ("a + b - c", "a & b & c") are written out as one flat run,
// which SQLite reads without nesting.
inline bool IsChainOp(BinaryOp op)
{
    return op == BinaryOp::Add || op == BinaryOp::Sub || op == BinaryOp::Mul ||
           op == BinaryOp::Concat;
}

inline bool ContinuesChain(BinaryOp op, BinaryOp leftOp)
{
    if (op == BinaryOp::Concat || leftOp == BinaryOp::Concat)
        return op == leftOp;
    if (op == BinaryOp::Mul)
        return leftOp == BinaryOp::Mul;
    return IsChainOp(op) && (leftOp == BinaryOp::Add || leftOp == BinaryOp::Sub);
}

struct Expr {
    ExprKind kind = ExprKind::Null;
    BinaryOp op = BinaryOp::Eq;
    bool negated = false;
    qint64 integer = 0;
    double real = 0;
    QString text;      // literal text, date text or column name
    QString qualifier; // of a column
    std::vector<ExprPtr> args;

    // Set by the parser: how deeply the SQLite text of this expression nests (see parser.cpp),
    // and the height of its tree.
    int nesting = 0;
    int height = 1;

    // Filled in by name resolution, for columns.
    int source = -1; // index of the FROM table, when resolved against a FROM clause
    int column = -1; // index of the column in that table, or the in-memory row slot
    FieldType type = dbText;
    bool typeKnown = false; // false when a resolver gave only an expression
    QString sql;            // the SQLite expression standing for the column

    // The name as written, for messages: "t.f" or "f".
    QString writtenName() const { return qualifier.isEmpty() ? text : qualifier + u'.' + text; }
};

inline bool IsTruth(const Expr &e)
{
    switch (e.kind) {
    case ExprKind::Binary:
        return IsComparison(e.op) || e.op == BinaryOp::And || e.op == BinaryOp::Or;
    case ExprKind::Not:
    case ExprKind::Like:
    case ExprKind::IsNull:
    case ExprKind::In:
    case ExprKind::Between:
        return true;
    default:
        return false;
    }
}

// True when e takes its operands as values, not as conditions (everything but NOT, AND, OR and
// IS NULL).
inline bool TakesValues(const Expr &e)
{
    switch (e.kind) {
    case ExprKind::Binary:
        return e.op != BinaryOp::And && e.op != BinaryOp::Or;
    case ExprKind::Negate:
    case ExprKind::Like:
    case ExprKind::In:
    case ExprKind::Between:
        return true;
    default:
        return false;
    }
}

struct SelectItem {
    enum Kind { Star, TableStar, Value } kind = Value;
    QString qualifier; // for TableStar
    ExprPtr expr;      // for Value
    QString alias;     // after AS; empty if none
};

enum class JoinType { Inner, Left, Right };

// A table of the FROM clause, or a join of two such parts.
struct FromNode {
    bool isJoin = false;
    // a table
    QString table;
    QString alias; // empty when not given
    // a join
    JoinType joinType = JoinType::Inner;
    std::unique_ptr<FromNode> left;
    std::unique_ptr<FromNode> right;
    ExprPtr on;
};

struct OrderItem {
    ExprPtr expr;
    bool descending = false;
};

struct SelectStatement {
    bool distinct = false;
    bool distinctRow = false;
    std::vector<SelectItem> items;
    std::vector<std::unique_ptr<FromNode>> from; // comma-separated parts
    ExprPtr where;
    std::vector<OrderItem> orderBy;
};

} // namespace lx::store::sql::detail
