#include "core/text/like.h"

#include <QString>

#include <gtest/gtest.h>
#include <string>

using lx::text::Like;
using lx::text::LikeNoCase;

namespace {

struct LikeCase {
    const char *text;
    const char *pattern;
    bool sensitive;   // expected from Like
    bool insensitive; // expected from LikeNoCase
};

// UTF-8 literals on both sides, so the two variants see the same characters.
constexpr LikeCase kCases[] = {
    {"", "", true, true},
    {"", "*", true, true},
    {"", "?", false, false},
    {"abc", "abc", true, true},
    {"abc", "ABC", false, true},
    {"ABC", "ab*", false, true},
    {"abc", "ab", false, false},
    {"ab", "abc", false, false},
    {"abc", "a?c", true, true},
    {"ac", "a?c", false, false},
    {"abc", "*c", true, true},
    {"abc", "*b", false, false},
    {"abc", "a*c", true, true},
    {"abbbc", "a*b*c", true, true},
    {"a1b", "a#b", true, true},
    {"axb", "a#b", false, false},
    {"a12", "a##", true, true},
    {"d", "[!a-c]", true, true},
    {"b", "[!a-c]", false, false},
    {"B", "[!a-c]", true, false},
    {"q", "[a-z]", true, true},
    {"Q", "[a-z]", false, true},
    {"b", "[abc]", true, true},
    {"-", "[a-]", true, true},
    {"*", "[*]", true, true},
    {"x", "[*]", false, false},
    {"?", "[?]", true, true},
    {"#", "[#]", true, true},
    {"a*c", "a[*]c", true, true},
    {"abc", "a[b", false, false}, // unclosed list matches nothing
    {"ab[", "*[", false, false},
    {"ab", "a[]b", true, true}, // empty list matches the empty string
    {"]", "]", true, true},
    {"Ärger", "ärger", false, true},
    {"Ärger", "?rger", true, true},
    {"straße", "STRASSE", false, false}, // simple folding only: one character for one
    {"Émile", "[É]mile", true, true},
    {"émile", "[É]mile", false, true},
    {"TermBase X", "TermBase *", true, true},
    {"Part Relation", "* Relation", true, true},
    {"Part relation", "* Relation", false, true},
};

TEST(Like, TableOfCases)
{
    for (const LikeCase &c : kCases) {
        const QString text = QString::fromUtf8(c.text);
        const QString pattern = QString::fromUtf8(c.pattern);
        EXPECT_EQ(Like(text, pattern), c.sensitive) << c.text << " LIKE " << c.pattern;
        EXPECT_EQ(LikeNoCase(c.text, c.pattern), c.insensitive)
            << c.text << " LIKE (no case) " << c.pattern;
    }
}

TEST(Like, SurrogatePairIsOneCharacter)
{
    const QString text = QString::fromUtf8("a\xF0\x9F\x98\x80"
                                           "b"); // a, U+1F600, b
    EXPECT_TRUE(Like(text, u"a?b"));
    EXPECT_TRUE(LikeNoCase("a\xF0\x9F\x98\x80"
                           "b",
                           "A?B"));
    EXPECT_FALSE(Like(text, u"a??b"));
}

TEST(Like, ManyStarsStayLinear)
{
    // A naive recursive matcher takes exponential time here.
    const std::string text(5000, 'a');
    EXPECT_FALSE(LikeNoCase(text, "*a*a*a*a*a*a*a*a*a*b"));
    EXPECT_TRUE(LikeNoCase(text + "b", "*a*a*a*a*a*a*a*a*a*b"));
    EXPECT_FALSE(Like(QString(5000, u'a'), u"*a*a*a*a*a*a*a*a*a*b"));
}

TEST(Like, InvalidUtf8DoesNotCrash)
{
    EXPECT_TRUE(LikeNoCase("a\xFF"
                           "b",
                           "a?b"));
    EXPECT_FALSE(LikeNoCase("\xE2\x82", "??x"));
    EXPECT_TRUE(LikeNoCase("\xE2\x82", "*"));
}

} // namespace
