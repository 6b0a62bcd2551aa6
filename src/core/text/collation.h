#pragma once

#include <QStringView>

#include <string_view>

namespace lx::text {

// The store's one text order: case-insensitive, by Unicode case folding, with a plain ASCII
// fast path. Returns <0, 0, >0. Used as the SQLite collation "LX" and by in-memory criteria.
int CompareText(std::string_view a, std::string_view b);
int CompareText(QStringView a, QStringView b);

} // namespace lx::text
