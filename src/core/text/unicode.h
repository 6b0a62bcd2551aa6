#pragma once

#include <QChar>
#include <QStringView>

#include <cstddef>
#include <string_view>

// Code point helpers shared by the collation and the pattern matcher.
namespace lx::text::detail {

inline constexpr char32_t AsciiLower(char32_t c)
{
    return c - U'A' < 26u ? c + (U'a' - U'A') : c;
}

// Simple case folding; ASCII without a table look-up.
inline char32_t Fold(char32_t c)
{
    return c < 0x80 ? AsciiLower(c) : QChar::toCaseFolded(c);
}

// Decodes the code point at s[i] and moves i past it. A byte that does not start a valid
// sequence comes out alone as U+DC80..U+DCFF, so any byte string still decodes the same way
// every time (the collation needs that to stay a total order).
inline char32_t DecodeUtf8(std::string_view s, std::size_t &i)
{
    const auto b0 = static_cast<unsigned char>(s[i]);
    if (b0 < 0x80) {
        ++i;
        return b0;
    }
    int extra = 0;
    char32_t c = 0;
    char32_t min = 0;
    if (b0 >= 0xC2 && b0 <= 0xDF) {
        extra = 1, c = b0 & 0x1F, min = 0x80;
    } else if (b0 >= 0xE0 && b0 <= 0xEF) {
        extra = 2, c = b0 & 0x0F, min = 0x800;
    } else if (b0 >= 0xF0 && b0 <= 0xF4) {
        extra = 3, c = b0 & 0x07, min = 0x10000;
    }
    if (extra == 0 || s.size() - i <= static_cast<std::size_t>(extra)) {
        ++i;
        return 0xDC00 | b0;
    }
    for (int k = 1; k <= extra; ++k) {
        const auto b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80) {
            ++i;
            return 0xDC00 | b0;
        }
        c = (c << 6) | (b & 0x3F);
    }
    if (c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
        ++i;
        return 0xDC00 | b0;
    }
    i += extra + 1;
    return c;
}

// Decodes the code point at s[i] (joining a surrogate pair) and moves i past it.
inline char32_t DecodeUtf16(QStringView s, qsizetype &i)
{
    const char16_t u = s[i].unicode();
    ++i;
    if (QChar::isHighSurrogate(u) && i < s.size() && QChar::isLowSurrogate(s[i].unicode()))
        return QChar::surrogateToUcs4(u, s[i++].unicode());
    return u;
}

} // namespace lx::text::detail
