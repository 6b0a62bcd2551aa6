#include "core/text/collation.h"

#include <QString>

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

using lx::text::CompareText;

namespace {

int Sign(int v)
{
    return (v > 0) - (v < 0);
}

struct CompareCase {
    const char *a;
    const char *b;
    int expected;
};

constexpr CompareCase kCases[] = {
    {"", "", 0},
    {"", "a", -1},
    {"abc", "ABC", 0},
    {"abc", "abd", -1},
    {"ABD", "abc", 1},
    {"ab", "abc", -1},
    {"a_", "aB", -1}, // punctuation before letters
    {"a~", "a0", -1}, // symbols before digits, unlike code point order
    {"a9", "aa", -1}, // digits before letters
    {"Z", "a", 1},
    {"arbol", "\xC3\xA1rbol", -1}, // arbol < árbol: accents count after the letters
    {"\xC3\xA1rbol", "arca", -1},  // árbol < arca
    {"\xC3\xA1rbol", "zona", -1},
    {"\xC3\x89mile", "Zoe", -1}, // Émile < Zoe
    {"\xC3\x89MILE", "\xC3\xA9mile", 0},
    {"Ärger", "ärger", 0},
    {"ärger", "arger", 1},
    {"abc\xC3\xA9", "ABC\xC3\x89", 0},
    {"abc\xC3\xA9", "abcz", -1},
    {"\xE2\x84\xAA", "k", 0}, // KELVIN SIGN is K
    {"PART-OF", "part-of", 0},
    {"stra\xC3\x9F"
     "e",
     "STRASSE", 1}, // ß is not ss
};

TEST(CompareText, OrdersAsADictionaryWithoutCaseButWithAccents)
{
    for (const CompareCase &c : kCases) {
        const std::string_view a(c.a);
        const std::string_view b(c.b);
        EXPECT_EQ(Sign(CompareText(a, b)), c.expected) << c.a << " vs " << c.b;
        EXPECT_EQ(Sign(CompareText(b, a)), -c.expected) << c.b << " vs " << c.a;
        EXPECT_EQ(lx::text::EqualText(a, b), c.expected == 0) << c.a << " vs " << c.b;
        const QString qa = QString::fromUtf8(c.a);
        const QString qb = QString::fromUtf8(c.b);
        EXPECT_EQ(Sign(CompareText(QStringView(qa), QStringView(qb))), c.expected)
            << c.a << " vs " << c.b << " (UTF-16)";
    }
}

// A sort must be able to rely on it: sorting any mix of texts with it gives a sequence in which
// every pair is in order, in both encodings alike.
TEST(CompareText, ConsistentTotalOrder)
{
    std::vector<std::string> words = {
        "b",         "B",          "a\xC3\xA9", "A\xC3\x89", "ae",    "aF",     "\xC3\xA9",
        "e",         "E",          "",          "a",         "a\xFF", "zz",     "Zz",
        "l\xC2\xB7", "L\xC2\xB7x", "l-",        "k",         "K",     "kelvin", "\xE2\x84\xAA",
        "a\x01",     "e\xCC\x81",  "\xCE\xA9",  "1"};
    std::sort(words.begin(), words.end(),
              [](const std::string &x, const std::string &y) { return CompareText(x, y) < 0; });
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        for (std::size_t j = i + 1; j < words.size(); ++j) {
            EXPECT_LE(CompareText(words[i], words[j]), 0) << words[i] << " / " << words[j];
            const QString qi = QString::fromUtf8(words[i]);
            const QString qj = QString::fromUtf8(words[j]);
            // Invalid UTF-8 becomes U+FFFD in a QString, so only valid text is compared twice.
            if (!words[i].ends_with('\xFF') && !words[j].ends_with('\xFF')) {
                EXPECT_LE(CompareText(QStringView(qi), QStringView(qj)), 0);
            }
        }
    }
}

// The ASCII fast path must answer exactly as the collator does, for every ASCII character,
// ignorable control characters and texts that turn non-ASCII after an ASCII start included.
TEST(CompareText, FastPathAgreesWithTheCollator)
{
    const std::vector<std::string> extra = {"\xC3\xA9", "\xC2\xB7",     "\xCC\x81",
                                            "\xC3\x9F", "\xE2\x84\xAA", "\xCE\x87"};
    std::mt19937 rng(12345);
    const auto piece = [&]() -> std::string {
        const unsigned r = rng() % 100;
        if (r < 8)
            return extra[rng() % extra.size()];
        if (r < 60) // letters and a few neighbours, so that texts often share prefixes
            return std::string(1, "aAbBlLzZ-_ 0"[rng() % 12]);
        return std::string(1, char(rng() % 128));
    };
    const auto text = [&] {
        std::string s;
        for (unsigned n = rng() % 6; n > 0; --n)
            s += piece();
        return s;
    };
    int disagreements = 0;
    for (int i = 0; i < 100000 && disagreements < 10; ++i) {
        const std::string a = text();
        std::string b = rng() % 2 ? a.substr(0, rng() % (a.size() + 1)) + text() : text();
        const int fast = Sign(CompareText(a, b));
        const int full = Sign(lx::text::detail::CompareTextByCollator(a, b));
        const QString qa = QString::fromUtf8(a);
        const QString qb = QString::fromUtf8(b);
        // A cut through a UTF-8 sequence reads differently in a QString: compare valid text only.
        const bool valid = qa.toUtf8().toStdString() == a && qb.toUtf8().toStdString() == b;
        const int utf16 = valid ? Sign(CompareText(QStringView(qa), QStringView(qb))) : full;
        if (fast != full || utf16 != full || lx::text::EqualText(a, b) != (full == 0)) {
            ++disagreements;
            ADD_FAILURE() << '"' << a << "\" vs \"" << b << "\": fast " << fast << ", UTF-16 "
                          << utf16 << ", collator " << full;
        }
    }
}

} // namespace
