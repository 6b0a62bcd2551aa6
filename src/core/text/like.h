#pragma once

#include <QStringView>

#include <string_view>

namespace lx::text {

// Pattern match with the wildcards '*' (any run), '?' (one character), '#' (one digit 0-9),
// "[abc]", "[a-z]" and "[!abc]" (one character in / not in the list). Inside brackets the
// characters '*', '?' and '#' stand for themselves, so "[*]" matches a star.
// A malformed bracket (no closing ']') makes the pattern match nothing.

// Case-sensitive, as the program's own caption patterns ("* Relation", "TermBase *").
bool Like(QStringView text, QStringView pattern);

// Case-insensitive, as the store's LIKE operator. Both arguments are UTF-8.
bool LikeNoCase(std::string_view text, std::string_view pattern);

} // namespace lx::text
