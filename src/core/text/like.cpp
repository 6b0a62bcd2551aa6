#include "like.h"

#include "unicode.h"

namespace lx::text {

namespace {

// The two encodings the matcher walks; all wildcard characters are ASCII, so a single code unit
// is enough to recognise them.
struct Utf8Text {
    std::string_view s;
    using Index = std::size_t;
    Index size() const { return s.size(); }
    char32_t unit(Index i) const { return static_cast<unsigned char>(s[i]); }
    char32_t next(Index &i) const
    {
        const auto b = static_cast<unsigned char>(s[i]);
        if (b < 0x80) {
            ++i;
            return b;
        }
        return detail::DecodeUtf8(s, i);
    }
};

struct Utf16Text {
    QStringView s;
    using Index = qsizetype;
    Index size() const { return s.size(); }
    char32_t unit(Index i) const { return s[i].unicode(); }
    char32_t next(Index &i) const { return detail::DecodeUtf16(s, i); }
};

template <bool NoCase> bool Same(char32_t a, char32_t b)
{
    if (a == b)
        return true;
    if constexpr (NoCase)
        return detail::Fold(a) == detail::Fold(b);
    return false;
}

template <bool NoCase> bool InRange(char32_t c, char32_t lo, char32_t hi)
{
    if (c >= lo && c <= hi)
        return true;
    if constexpr (NoCase) {
        const char32_t lower = QChar::toLower(c);
        const char32_t upper = QChar::toUpper(c);
        return (lower >= lo && lower <= hi) || (upper >= lo && upper <= hi);
    }
    return false;
}

// Matches one character against the list that starts after '[' at p. Moves p past the closing
// ']'. Returns 1 on a match, 0 on none, -1 when the list is not closed.
template <bool NoCase, class Text>
int MatchList(const Text &pat, typename Text::Index &p, char32_t c)
{
    const auto n = pat.size();
    bool negate = false;
    if (p < n && pat.unit(p) == U'!') {
        negate = true;
        ++p;
    }
    bool found = false;
    for (;;) {
        if (p >= n)
            return -1;
        const char32_t lo = pat.next(p);
        if (lo == U']')
            break;
        // A '-' between two characters makes a range; at either end of the list it is itself.
        if (p + 1 < n && pat.unit(p) == U'-' && pat.unit(p + 1) != U']') {
            auto q = p + 1;
            const char32_t hi = pat.next(q);
            p = q;
            found = found || InRange<NoCase>(c, lo, hi);
        } else {
            found = found || Same<NoCase>(lo, c);
        }
    }
    return found != negate ? 1 : 0;
}

// Greedy matching that remembers only the latest '*': every other element consumes exactly one
// character (or none, for "[]"), so retrying from the latest star is enough and the cost stays
// bounded by text length times pattern length.
template <bool NoCase, class Text> bool Match(const Text &text, const Text &pat)
{
    using Index = typename Text::Index;
    const Index tn = text.size();
    const Index pn = pat.size();
    Index t = 0;
    Index p = 0;
    bool haveStar = false;
    Index starP = 0;
    Index starT = 0;
    for (;;) {
        if (p < pn) {
            Index q = p;
            const char32_t pc = pat.next(q);
            if (pc == U'*') {
                while (q < pn && pat.unit(q) == U'*')
                    ++q;
                if (q == pn)
                    return true;
                haveStar = true;
                starP = p = q;
                starT = t;
                continue;
            }
            if (pc == U'[' && q < pn && pat.unit(q) == U']') {
                p = q + 1; // "[]" matches the empty string
                continue;
            }
            if (t < tn) {
                Index u = t;
                const char32_t tc = text.next(u);
                bool ok = false;
                switch (pc) {
                case U'?':
                    ok = true;
                    break;
                case U'#':
                    ok = tc - U'0' < 10u;
                    break;
                case U'[': {
                    const int r = MatchList<NoCase>(pat, q, tc);
                    if (r < 0)
                        return false; // an unclosed list can never be passed
                    ok = r > 0;
                    break;
                }
                default:
                    ok = Same<NoCase>(pc, tc);
                }
                if (ok) {
                    p = q;
                    t = u;
                    continue;
                }
            }
        } else if (t == tn) {
            return true;
        }
        if (!haveStar || starT >= tn)
            return false;
        text.next(starT);
        t = starT;
        p = starP;
    }
}

} // namespace

bool Like(QStringView text, QStringView pattern)
{
    return Match<false>(Utf16Text{text}, Utf16Text{pattern});
}

bool LikeNoCase(std::string_view text, std::string_view pattern)
{
    return Match<true>(Utf8Text{text}, Utf8Text{pattern});
}

} // namespace lx::text
