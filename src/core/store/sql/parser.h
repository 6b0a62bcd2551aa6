#pragma once

#include "ast.h"

#include <QStringView>

#include <optional>

namespace lx::store::sql::detail {

// A SELECT statement. Throws StoreError: 3129 when it is not a SELECT, 3075 for an expression of
// the column list or WHERE, 3131 in FROM, 3135 in a JOIN or its ON condition, 3138 in ORDER BY.
SelectStatement ParseSelect(QStringView text);

// FindFirst criteria: one expression. Throws StoreError 3077.
ExprPtr ParseCriteria(QStringView text);

// The text between the signs of a date literal ("1/31/2024", "2024-01-31 10:30",
// "10:30:00 PM") as "yyyy-MM-ddTHH:mm:ss"; nothing when it is not a date. A time alone falls on
// 1899-12-30, the zero of the classic date numbers.
std::optional<QString> ParseDateLiteral(QStringView body);

} // namespace lx::store::sql::detail
