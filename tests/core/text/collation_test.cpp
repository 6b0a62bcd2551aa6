#include "core/text/collation.h"

#include <QString>

#include <algorithm>
#include <gtest/gtest.h>
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
    {"a_", "aB", -1}, // '_' sorts before letters, as lower case does
    {"Z", "a", 1},
    {"Ärger", "ärger", 0},
    {"ärger", "arger", 1},
    {"abc\xC3\xA9", "ABC\xC3\x89", 0}, // é and É after an ASCII prefix
    {"abc\xC3\xA9", "abcz", 1},
    {"\xE2\x84\xAA", "k", 0}, // KELVIN SIGN folds to k
    {"PART-OF", "part-of", 0},
};

TEST(CompareText, TableOfCases)
{
    for (const CompareCase &c : kCases) {
        EXPECT_EQ(Sign(CompareText(std::string_view(c.a), std::string_view(c.b))), c.expected)
            << c.a << " vs " << c.b;
        EXPECT_EQ(Sign(CompareText(std::string_view(c.b), std::string_view(c.a))), -c.expected)
            << c.b << " vs " << c.a;
        const QString qa = QString::fromUtf8(c.a);
        const QString qb = QString::fromUtf8(c.b);
        EXPECT_EQ(Sign(CompareText(QStringView(qa), QStringView(qb))), c.expected)
            << c.a << " vs " << c.b << " (UTF-16)";
    }
}

// A sort must be able to rely on it: sorting any mix of ASCII and non-ASCII strings with it
// gives a sequence in which every neighbouring pair is in order, in both encodings alike.
TEST(CompareText, ConsistentTotalOrder)
{
    std::vector<std::string> words = {
        "b", "B", "a\xC3\xA9", "A\xC3\x89", "ae", "aF",           "\xC3\xA9", "e", "E",
        "",  "a", "a\xFF",     "zz",        "Zz", "\xE2\x84\xAA", "k",        "K", "kelvin"};
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

} // namespace
