#include "collation.h"

#include "unicode.h"

namespace lx::text {

namespace {

int Sign(char32_t a, char32_t b)
{
    return a < b ? -1 : (a > b ? 1 : 0);
}

// The general case: folded code points, compared one by one.
int CompareFoldedUtf8(std::string_view a, std::string_view b)
{
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        const char32_t ca = detail::DecodeUtf8(a, i);
        const char32_t cb = detail::DecodeUtf8(b, j);
        if (ca == cb)
            continue;
        if (const int r = Sign(detail::Fold(ca), detail::Fold(cb)))
            return r;
    }
    return (i < a.size()) - (j < b.size());
}

int CompareFoldedUtf16(QStringView a, QStringView b)
{
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        const char32_t ca = detail::DecodeUtf16(a, i);
        const char32_t cb = detail::DecodeUtf16(b, j);
        if (ca == cb)
            continue;
        if (const int r = Sign(detail::Fold(ca), detail::Fold(cb)))
            return r;
    }
    return (i < a.size()) - (j < b.size());
}

} // namespace

// Both overloads order by the sequence of folded code points, shorter first on a common
// prefix. The ASCII loops give the same answer as the general case (an ASCII character folds to
// its lower case), and they hand over at a character boundary: everything before is ASCII on
// both sides.
int CompareText(std::string_view a, std::string_view b)
{
    const std::size_t n = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < n; ++i) {
        char32_t ca = static_cast<unsigned char>(a[i]);
        char32_t cb = static_cast<unsigned char>(b[i]);
        if ((ca | cb) & 0x80)
            return CompareFoldedUtf8(a.substr(i), b.substr(i));
        if (ca != cb) {
            ca = detail::AsciiLower(ca);
            cb = detail::AsciiLower(cb);
            if (ca != cb)
                return ca < cb ? -1 : 1;
        }
    }
    return (a.size() > n) - (b.size() > n);
}

int CompareText(QStringView a, QStringView b)
{
    const qsizetype n = a.size() < b.size() ? a.size() : b.size();
    for (qsizetype i = 0; i < n; ++i) {
        char32_t ca = a[i].unicode();
        char32_t cb = b[i].unicode();
        if ((ca | cb) >= 0x80)
            return CompareFoldedUtf16(a.sliced(i), b.sliced(i));
        if (ca != cb) {
            ca = detail::AsciiLower(ca);
            cb = detail::AsciiLower(cb);
            if (ca != cb)
                return ca < cb ? -1 : 1;
        }
    }
    return (a.size() > n) - (b.size() > n);
}

} // namespace lx::text
