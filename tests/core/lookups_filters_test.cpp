#include "core/filters.h"
#include "core/process.h"

#include <gtest/gtest.h>

using namespace lx;

namespace {

class KeyFilters : public ::testing::Test {
protected:
    void TearDown() override { ResetProcessState(); }
};

struct KeyCase {
    int key;
    int naming; // FilterNamingKey, and FilterConceptKey with Naming on
    int free;   // FilterConceptKey with Naming off
};

TEST_F(KeyFilters, ByKeyCode)
{
    const KeyCase cases[] = {
        {'a', 'A', 'a'}, {'z', 'Z', 'z'}, {'A', 'A', 'A'}, {'Z', 'Z', 'Z'}, {'0', '0', '0'},
        {'9', '9', '9'}, {8, 8, 8},       {' ', '-', ' '}, {'-', '-', '-'}, {'_', '-', '_'},
        {34, 0, 39},     {39, 0, 39},     {'@', 0, '@'},   {'[', 0, '['},   {'`', 0, '`'},
        {'{', 0, '{'},   {13, 0, 13},     {0xE9, 0, 0xE9}, {'/', 0, '/'},   {':', 0, ':'},
    };
    for (const KeyCase &c : cases) {
        SCOPED_TRACE(c.key);
        EXPECT_EQ(FilterNamingKey(c.key), c.naming);
        Process().OntoMeta.Naming = true;
        EXPECT_EQ(FilterConceptKey(c.key), c.naming);
        Process().OntoMeta.Naming = false;
        EXPECT_EQ(FilterConceptKey(c.key), c.free);
    }
}

TEST(TextFilters, NormalizeIdentifier)
{
    const QChar nul(0);
    const struct {
        QString in;
        QString out;
    } cases[] = {
        {QStringLiteral("big house_1"), QStringLiteral("BIG-HOUSE-1")},
        {QStringLiteral(" big"), QStringLiteral("-BIG")},
        {QStringLiteral("big "), QStringLiteral("BIG-")},
        {QStringLiteral("caf\u00e9"), QStringLiteral("CAF") + nul},
        {QStringLiteral("\u00e9t\u00e9"), nul + QStringLiteral("T") + nul},
        {QStringLiteral("a\"b'c"),
         QStringLiteral("A") + nul + QStringLiteral("B") + nul + QStringLiteral("C")},
        {QStringLiteral("x\ty"), QStringLiteral("X") + nul + QStringLiteral("Y")},
        {QStringLiteral("A-B\bC"), QStringLiteral("A-B\bC")},
        {QString(), QString()},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.in.toStdString());
        EXPECT_EQ(NormalizeIdentifier(c.in), c.out);
    }
}

TEST(TextFilters, IdentifierToNameQuotesAndLines)
{
    EXPECT_EQ(IdentifierToName(QStringLiteral("BIG-HOUSE")), QStringLiteral("big house"));
    EXPECT_EQ(IdentifierToName(QStringLiteral("-A--B-")), QStringLiteral(" a  b "));
    EXPECT_EQ(IdentifierToName(QStringLiteral("\u00c9T\u00c9 2")),
              QStringLiteral("\u00e9t\u00e9 2"));

    EXPECT_EQ(ReplaceDoubleQuotes(QStringLiteral("say \"hi\" it's")),
              QStringLiteral("say 'hi' it's"));

    // One blank for each character of a line break, so CR LF leaves two.
    QString text = QStringLiteral("one\r\ntwo\nthree\rfour");
    FlattenLines(text);
    EXPECT_EQ(text, QStringLiteral("one  two three four"));
}

TEST(TextFilters, FindInListComparesTheTextAsItIs)
{
    const QStringList list{QStringLiteral("ALPHA"), QStringLiteral("BETA")};
    EXPECT_TRUE(FindInList(QStringLiteral("BETA"), list));
    EXPECT_FALSE(FindInList(QStringLiteral("beta"), list));
    EXPECT_FALSE(FindInList(QStringLiteral("GAMMA"), list));
    EXPECT_FALSE(FindInList(QStringLiteral("ALPHA"), {}));
}

} // namespace
