#pragma once

#include <QStringView>

#include <cstdint>
#include <string_view>

namespace lx::text {

// The store's one text order: the Unicode Collation Algorithm's root order (dictionary order)
// at secondary strength, so case does not count and accents do ("arbol" < "árbol" < "arca").
// Text that the collator finds equal is ordered further by its case-folded code points, so two
// texts are equal exactly when they are equal without case and equal to the collator.
// Returns <0, 0, >0. Used as the SQLite collation "LX" and by in-memory criteria and sorts.
int CompareText(std::string_view a, std::string_view b);
int CompareText(QStringView a, QStringView b);

// CompareText(a, b) == 0, without ordering: as fast as a case-insensitive comparison.
bool EqualText(std::string_view a, std::string_view b);

// A fingerprint of the order above, kept in each file whose indexes were built with it; it
// changes with the collator's version, so a file built under another order is re-indexed.
std::int32_t CollationMark();

namespace detail {
// The order without the ASCII fast path, for tests that check the two agree.
int CompareTextByCollator(std::string_view a, std::string_view b);
} // namespace detail

} // namespace lx::text
