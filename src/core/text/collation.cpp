#include "collation.h"

#include "unicode.h"

#include <algorithm>
#include <array>
#include <memory>
#include <numeric>
#include <unicode/ucol.h>

namespace lx::text {

namespace {

int Sign(char32_t a, char32_t b)
{
    return a < b ? -1 : (a > b ? 1 : 0);
}

// --- Case-folded code points: the order among texts the collator finds equal. ---------------

int CompareFoldedUtf8Tail(std::string_view a, std::string_view b)
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

int CompareFoldedUtf16Tail(QStringView a, QStringView b)
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

// The ASCII loops give the same answer as the general case (an ASCII character folds to its
// lower case), and they hand over at a character boundary: everything before is ASCII on both
// sides.
int CompareFolded(std::string_view a, std::string_view b)
{
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        char32_t ca = static_cast<unsigned char>(a[i]);
        char32_t cb = static_cast<unsigned char>(b[i]);
        if ((ca | cb) & 0x80)
            return CompareFoldedUtf8Tail(a.substr(i), b.substr(i));
        if (ca != cb) {
            ca = detail::AsciiLower(ca);
            cb = detail::AsciiLower(cb);
            if (ca != cb)
                return ca < cb ? -1 : 1;
        }
    }
    return (a.size() > n) - (b.size() > n);
}

int CompareFolded(QStringView a, QStringView b)
{
    const qsizetype n = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < n; ++i) {
        char32_t ca = a[i].unicode();
        char32_t cb = b[i].unicode();
        if ((ca | cb) >= 0x80)
            return CompareFoldedUtf16Tail(a.sliced(i), b.sliced(i));
        if (ca != cb) {
            ca = detail::AsciiLower(ca);
            cb = detail::AsciiLower(cb);
            if (ca != cb)
                return ca < cb ? -1 : 1;
        }
    }
    return (a.size() > n) - (b.size() > n);
}

bool IsAscii(std::string_view s)
{
    return std::all_of(s.begin(), s.end(), [](char c) { return !(c & 0x80); });
}

// --- The collator. --------------------------------------------------------------------------

struct CloseCollator {
    void operator()(UCollator *c) const { ucol_close(c); }
};

// Changes whenever the tie-break among collator-equal texts changes.
constexpr std::uint8_t kOrderScheme = 1;

// One root collator at secondary strength for the process (comparing is thread-safe), and the
// rank of every ASCII character under it. In the root order each ASCII character but the
// ignorable control characters has one primary weight of its own and the common secondary
// weight, and none of them contracts with another ASCII character; so two ASCII texts compare
// as their sequences of ranks. Rank 0 marks a character that the fast path leaves to the
// collator.
struct Collator {
    std::unique_ptr<UCollator, CloseCollator> handle;
    std::array<std::uint8_t, 128> rank{};
    std::int32_t mark = 0; // 0: the plain case-folded order, when there is no collator

    Collator()
    {
        UErrorCode status = U_ZERO_ERROR;
        handle.reset(ucol_open("", &status));
        if (U_FAILURE(status)) {
            handle.reset();
            return;
        }
        ucol_setStrength(handle.get(), UCOL_SECONDARY);
        rankAscii();
        markVersion();
    }

    int strcoll(std::string_view a, std::string_view b) const
    {
        UErrorCode status = U_ZERO_ERROR;
        return ucol_strcollUTF8(handle.get(), a.data(), int32_t(a.size()), b.data(),
                                int32_t(b.size()), &status);
    }

    int strcoll(QStringView a, QStringView b) const
    {
        return ucol_strcoll(handle.get(), a.utf16(), int32_t(a.size()), b.utf16(),
                            int32_t(b.size()));
    }

    void rankAscii()
    {
        std::array<char, 128> chars{};
        std::iota(chars.begin(), chars.end(), char(0));
        const auto one = [](const char &c) { return std::string_view(&c, 1); };
        std::stable_sort(chars.begin(), chars.end(),
                         [&](const char &x, const char &y) { return strcoll(one(x), one(y)) < 0; });
        std::uint8_t r = 0;
        for (std::size_t i = 0; i < chars.size(); ++i) {
            const char &c = chars[i];
            if (strcoll(one(c), std::string_view()) == 0)
                continue; // ignorable
            if (r == 0 || strcoll(one(chars[i - 1]), one(c)) != 0)
                ++r;
            rank[std::size_t(c)] = r;
        }
    }

    void markVersion()
    {
        UVersionInfo version{};
        ucol_getVersion(handle.get(), version);
        std::uint32_t h = 2166136261u; // FNV-1a
        const auto mix = [&h](std::uint8_t byte) { h = (h ^ byte) * 16777619u; };
        mix(kOrderScheme);
        for (const std::uint8_t byte : version)
            mix(byte);
        mark = std::int32_t((h & 0x7FFFFFFFu) | 1u);
    }
};

const Collator &TheCollator()
{
    static const Collator collator;
    return collator;
}

template <class Text> int ByCollator(const Collator &c, Text a, Text b)
{
    if (c.handle) {
        if (const int r = c.strcoll(a, b))
            return r;
    }
    return CompareFolded(a, b);
}

// Walks both texts while they are ASCII with equal ranks. The first pair of different ranks
// decides: the primary weights before it are equal, and nothing after it can change which
// primary weight comes first there (the root order's only contractions that start with an ASCII
// character, "l" and "L" before a middle dot, keep the letter's primary weight). Anything the
// ranks can't tell goes to the collator.
template <class Text, class Unit>
int CompareRanked(const Collator &c, Text a, Text b, Unit (*unit)(Text, qsizetype))
{
    const qsizetype na = qsizetype(a.size());
    const qsizetype nb = qsizetype(b.size());
    const qsizetype n = std::min(na, nb);
    for (qsizetype i = 0; i < n; ++i) {
        const Unit ua = unit(a, i);
        const Unit ub = unit(b, i);
        if ((ua | ub) >= 0x80)
            return ByCollator(c, a, b);
        const int ra = c.rank[std::size_t(ua)];
        const int rb = c.rank[std::size_t(ub)];
        if (ra == 0 || rb == 0)
            return ByCollator(c, a, b);
        if (ra != rb)
            return ra < rb ? -1 : 1;
    }
    if (na != nb) {
        // A longer text with one more weighted character sorts after its prefix.
        const Unit next = na > nb ? unit(a, n) : unit(b, n);
        if (next >= 0x80 || c.rank[std::size_t(next)] == 0)
            return ByCollator(c, a, b);
        return na > nb ? 1 : -1;
    }
    return CompareFolded(a, b);
}

unsigned Utf8Unit(std::string_view s, qsizetype i)
{
    return static_cast<unsigned char>(s[std::size_t(i)]);
}

unsigned Utf16Unit(QStringView s, qsizetype i)
{
    return s[i].unicode();
}

} // namespace

int CompareText(std::string_view a, std::string_view b)
{
    const Collator &c = TheCollator();
    if (!c.handle)
        return CompareFolded(a, b);
    return CompareRanked(c, a, b, Utf8Unit);
}

int CompareText(QStringView a, QStringView b)
{
    const Collator &c = TheCollator();
    if (!c.handle)
        return CompareFolded(a, b);
    return CompareRanked(c, a, b, Utf16Unit);
}

bool EqualText(std::string_view a, std::string_view b)
{
    if (CompareFolded(a, b) != 0)
        return false;
    // ASCII texts equal without case have the same ranks: the collator would agree.
    const Collator &c = TheCollator();
    return !c.handle || (IsAscii(a) && IsAscii(b)) || c.strcoll(a, b) == 0;
}

std::int32_t CollationMark()
{
    return TheCollator().mark;
}

namespace detail {

int CompareTextByCollator(std::string_view a, std::string_view b)
{
    return ByCollator(TheCollator(), a, b);
}

} // namespace detail

} // namespace lx::text
