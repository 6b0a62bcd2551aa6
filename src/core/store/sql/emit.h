#pragma once

#include "ast.h"

#include <QString>

#include <optional>
#include <string_view>

namespace lx::store::sql::detail {

// The SQLite text of an expression whose columns are resolved (Expr::sql set). Every operation
// is parenthesised, so the dialect's precedence never depends on SQLite's.
QString EmitExpr(const Expr &e);

// The field type an expression yields, for the result columns.
FieldType ExprType(const Expr &e);

// The number a text reads as ("4", " 4.0 ", "-1e3"), or nothing: the one reading that every
// comparison of a number with a text uses, in statements and in memory.
std::optional<double> TextNumber(std::string_view s);

// True when the expression is text for certain (literal, date, concatenation, text column).
bool IsTextExpr(const Expr &e);

} // namespace lx::store::sql::detail
