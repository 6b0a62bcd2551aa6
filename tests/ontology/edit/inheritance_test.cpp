#include "inheritance_fixture.h"
#include "ontology/store/lookups.h"

#include <functional>

using namespace lx;

namespace {

using Rows = std::vector<InheritRow>;

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
const QString C = QStringLiteral("C");
const QString R = QStringLiteral("R");

QString Q(const char *text)
{
    return QString::fromUtf8(text);
}

// One slot of a test ontology: a relation, or an attribute when `attr` is set.
struct Slot {
    const char *owner;
    const char *name;
    const char *value;
    bool isDefault = false;
    bool attr = false;
};

struct ChainCase {
    const char *title;
    std::vector<Slot> slots;
    Rows cumulative;
    Rows exclusive;
};

InheritRow Row(const char *attr, const char *value, const char *from)
{
    return {Q(attr), Q(value), Q(from)};
}

class ChainTest : public InheritanceTest, public ::testing::WithParamInterface<ChainCase> {
protected:
    // C is a B, B is an A, A is below the top.
    void SetUp() override
    {
        InheritanceTest::SetUp();
        isa(A, QStringLiteral("ALL"));
        isa(B, A);
        isa(C, B);
        for (const Slot &s : GetParam().slots) {
            if (s.attr)
                attribute(Q(s.owner), Q(s.name), Q(s.value), s.isDefault);
            else
                relation(Q(s.owner), Q(s.name), Q(s.value), s.isDefault);
        }
    }
};

TEST_P(ChainTest, InheritsFromTheChainAbove)
{
    ComputeInheritance(C, kCumulative, kIncludeAll);
    EXPECT_EQ(InheritRows(), GetParam().cumulative) << "cumulative";
    ComputeInheritance(C, kExclusive, kIncludeAll);
    EXPECT_EQ(InheritRows(), GetParam().exclusive) << "exclusive";
}

const std::string kLong(300, 'x');

INSTANTIATE_TEST_SUITE_P(
    Inheritance, ChainTest,
    ::testing::Values(
        ChainCase{"nearer ancestor wins in exclusive mode",
                  {{"A", "R", "X"}, {"B", "R", "Y"}},
                  {Row("R", "X", "A"), Row("R", "Y", "B")},
                  {Row("R", "Y", "B")}},
        ChainCase{"own slot takes rows away",
                  {{"A", "R", "X"}, {"B", "R", "Y"}, {"C", "R", "Y"}},
                  {Row("R", "X", "A")},
                  {}},
        ChainCase{"nothing blocks", {{"A", "R", "X"}, {"B", "R", "*NOTHING*"}}, {}, {}},
        ChainCase{"own slots are never listed",
                  {{"A", "R", "X"}, {"B", "R", "*NOTHING*"}, {"C", "R", "Z"}},
                  {},
                  {}},
        ChainCase{"a lower ancestor brings a blocked slot back",
                  {{"A", "R", "*NOTHING*"}, {"B", "R", "Y"}},
                  {Row("R", "Y", "B")},
                  {Row("R", "Y", "B")}},
        ChainCase{"nothing by default blocks nothing",
                  {{"A", "R", "X"}, {"B", "R", "*NOTHING*", true}},
                  {Row("R", "X", "A"), Row("R", "*NOTHING* (by default)", "B")},
                  {Row("R", "*NOTHING* (by default)", "B")}},
        ChainCase{"a default value is another pair",
                  {{"A", "R", "X", true}, {"B", "R", "X"}},
                  {Row("R", "X (by default)", "A"), Row("R", "X", "B")},
                  {Row("R", "X", "B")}},
        ChainCase{"an equal pair names the last ancestor",
                  {{"A", "COLOR", "red", false, true}, {"B", "COLOR", "RED", false, true}},
                  {Row("COLOR", "RED", "B")},
                  {Row("COLOR", "RED", "B")}},
        ChainCase{"values of one ancestor stay side by side",
                  {{"A", "R", "X"}, {"A", "S", "V"}, {"B", "R", "Y"}, {"B", "R", "Z"}},
                  {Row("R", "X", "A"), Row("R", "Y", "B"), Row("R", "Z", "B"), Row("S", "V", "A")},
                  {Row("R", "Y", "B"), Row("R", "Z", "B"), Row("S", "V", "A")}},
        ChainCase{"the top concept's slots aren't inherited",
                  {{"ALL", "R", "T"}, {"A", "S", "U"}},
                  {Row("S", "U", "A")},
                  {Row("S", "U", "A")}},
        ChainCase{"attributes go the same way",
                  {{"A", "COLOR", "red", false, true},
                   {"B", "COLOR", "blue", false, true},
                   {"C", "SIZE", "*NOTHING*", false, true},
                   {"A", "SIZE", "big", false, true}},
                  {Row("COLOR", "red", "A"), Row("COLOR", "blue", "B")},
                  {Row("COLOR", "blue", "B")}},
        ChainCase{"a value over 255 characters is passed over",
                  {{"A", "NOTE", kLong.c_str(), false, true},
                   {"A", "COLOR", "red", false, true},
                   {"B", "R", "Y"}},
                  {Row("COLOR", "red", "A"), Row("R", "Y", "B")},
                  {Row("COLOR", "red", "A"), Row("R", "Y", "B")}}),
    [](const auto &info) {
        std::string name = info.param.title;
        for (char &ch : name)
            if (!std::isalnum(static_cast<unsigned char>(ch)))
                ch = '_';
        return name;
    });

TEST_F(InheritanceTest, IncludeCodeChoosesTheSlotsOfAncestors)
{
    isa(A, QStringLiteral("ALL"));
    isa(B, A);
    relation(A, R, QStringLiteral("X"));
    attribute(A, QStringLiteral("COLOR"), QStringLiteral("red"));

    const struct {
        bool rels, attrs;
        QString code;
        Rows rows;
    } cases[] = {
        {true, true, kIncludeAll, {Row("COLOR", "red", "A"), Row("R", "X", "A")}},
        {true, false, kIncludeRels, {Row("R", "X", "A")}},
        {false, true, kIncludeAttrs, {Row("COLOR", "red", "A")}},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(InheritIncludeCode(c.rels, c.attrs), c.code);
        EXPECT_EQ(RefreshInheritanceRows(B, true, c.code), c.rows) << c.code.toStdString();
    }

    // Neither switch: nothing is computed and Inherit keeps what it holds.
    EXPECT_EQ(InheritIncludeCode(false, false), QString());
    EXPECT_TRUE(RefreshInheritanceRows(B, true, QString()).empty());
    EXPECT_EQ(InheritRows(), Rows{Row("COLOR", "red", "A")});
}

TEST_F(InheritanceTest, OwnSlotsTakeEffectWhenTheirKindIsLeftOut)
{
    isa(A, QStringLiteral("ALL"));
    isa(B, A);
    relation(A, R, QStringLiteral("X"));
    attribute(A, QStringLiteral("COLOR"), QStringLiteral("red"));
    // B's attribute R blocks the inherited relation R, its relation COLOR the attribute.
    attribute(B, R, kNothing);
    relation(B, QStringLiteral("COLOR"), kNothing);

    ComputeInheritance(B, kCumulative, kIncludeRels);
    EXPECT_TRUE(InheritRows().empty());
    ComputeInheritance(B, kCumulative, kIncludeAttrs);
    EXPECT_TRUE(InheritRows().empty());
}

// The top concept and its direct children compute nothing: the list shows the last rows.
TEST_F(InheritanceTest, TopAndItsChildrenKeepTheLastRows)
{
    isa(A, QStringLiteral("ALL"));
    isa(B, A);
    isa(C, B);
    relation(A, R, QStringLiteral("X"));
    relation(B, R, QStringLiteral("Y"));
    relation(C, QStringLiteral("S"), QStringLiteral("Z"));
    const Rows fromB{Row("R", "X", "A"), Row("R", "Y", "B")};

    ComputeInheritance(C, kCumulative, kIncludeAll);
    ASSERT_EQ(InheritRows(), fromB);
    EXPECT_EQ(RefreshInheritanceRows(A, false, kIncludeAll), fromB);
    EXPECT_EQ(RefreshInheritanceRows(QStringLiteral("ALL"), false, kIncludeAttrs), fromB);
    ComputeInheritance(B, kCumulative, kIncludeAll);
    EXPECT_EQ(InheritRows(), Rows{Row("R", "X", "A")});
}

// X is an A and a B; A is below the top, B below C, C below the top. The ancestor list is
// A, B, ALL, C: the table holds A, B and an empty row, and C isn't in it, so the walk never
// gets past C to B.
TEST_F(InheritanceTest, SecondBranchBelowANonTopAncestorIsNotInherited)
{
    const QString X = QStringLiteral("X");
    isa(X, A);
    isa(X, B);
    isa(A, QStringLiteral("ALL"));
    isa(B, C);
    isa(C, QStringLiteral("ALL"));
    relation(A, R, QStringLiteral("FROM-A"));
    relation(B, R, QStringLiteral("FROM-B"));
    relation(C, QStringLiteral("S"), QStringLiteral("FROM-C"));

    QStringList ancestors;
    ASSERT_EQ(GetAncestors(X, ancestors), 4);
    ASSERT_EQ(ancestors, (QStringList{A, B, QStringLiteral("ALL"), C}));
    AncestorTable table = MakeAncestorTable(ancestors);
    EXPECT_EQ(table, (AncestorTable{{A, false}, {B, false}, {}}));
    EXPECT_FALSE(IsInAncestorTable(C, table));
    MarkVisited(A, table);
    MarkVisited(B, table);
    EXPECT_FALSE(AllVisited(table)) << "an empty row is never visited";

    for (const QString &mode : {kCumulative, kExclusive}) {
        ComputeInheritance(X, mode, kIncludeAll);
        EXPECT_EQ(InheritRows(), Rows{Row("R", "FROM-A", "A")}) << mode.toStdString();
    }
}

TEST_F(InheritanceTest, EveryParentBranchIsInherited)
{
    // D is a B and a C, both below A.
    const QString D = QStringLiteral("D");
    isa(A, QStringLiteral("ALL"));
    isa(B, A);
    isa(C, A);
    isa(D, B);
    isa(D, C);
    relation(A, R, QStringLiteral("X"));
    relation(B, R, QStringLiteral("X"));
    relation(C, R, QStringLiteral("Y"));
    attribute(C, QStringLiteral("COLOR"), QStringLiteral("red"));

    ComputeInheritance(D, kCumulative, kIncludeAll);
    EXPECT_EQ(InheritRows(),
              (Rows{Row("COLOR", "red", "C"), Row("R", "X", "B"), Row("R", "Y", "C")}));
    ComputeInheritance(D, kExclusive, kIncludeAll);
    EXPECT_EQ(InheritRows(), (Rows{Row("COLOR", "red", "C"), Row("R", "Y", "C")}));
}

// X is an M and an S; M is a P and a Q; P, Q and S are below the top. The walk reaches M
// below P and again below Q, and applies it both times: R comes from M, not from Q. In
// exclusive mode the second Update of (W, Z) fails, and the walk goes on to S.
TEST_F(InheritanceTest, AnAncestorReachedTwiceIsAppliedTwice)
{
    const QString M = QStringLiteral("M"), P = QStringLiteral("P"), Qc = QStringLiteral("Q"),
                  S = QStringLiteral("S"), X = QStringLiteral("X");
    isa(X, M);
    isa(X, S);
    isa(M, P);
    isa(M, Qc);
    for (const QString &top : {P, Qc, S})
        isa(top, QStringLiteral("ALL"));
    relation(M, R, QStringLiteral("V"));
    relation(M, QStringLiteral("W"), QStringLiteral("Z"));
    relation(Qc, R, QStringLiteral("V"));
    relation(S, QStringLiteral("T"), QStringLiteral("U"));

    const Rows expected{Row("R", "V", "M"), Row("T", "U", "S"), Row("W", "Z", "M")};
    ComputeInheritance(X, kCumulative, kIncludeAll);
    EXPECT_EQ(InheritRows(), expected);
    ComputeInheritance(X, kExclusive, kIncludeAll);
    EXPECT_EQ(InheritRows(), expected);
}

// A and B are each other's parent. With C's branch in the ancestor list the table never gets
// all its rows visited, so only the cycle itself can end the walk.
TEST_F(InheritanceTest, CycleInIsaEnds)
{
    const QString D = QStringLiteral("D"), X = QStringLiteral("X");
    isa(X, B);
    isa(X, C);
    isa(C, D);
    isa(D, QStringLiteral("ALL"));
    isa(B, A);
    isa(A, B);
    isa(A, QStringLiteral("ALL"));
    relation(A, R, QStringLiteral("X"));
    relation(B, QStringLiteral("S"), QStringLiteral("Y"));

    ComputeInheritance(X, kCumulative, kIncludeAll);
    EXPECT_EQ(InheritRows(), (Rows{Row("R", "X", "A"), Row("S", "Y", "B")}));
    ComputeInheritance(X, kExclusive, kIncludeAll);
    EXPECT_EQ(InheritRows(), (Rows{Row("R", "X", "A"), Row("S", "Y", "B")}));
}

TEST_F(InheritanceTest, RemovalsTakeOnlyTheirRows)
{
    const Rows table{Row("Q", "X", "A"), Row("R", "X", "A"), Row("R", "Y", "B"), Row("R", "Z", "A"),
                     Row("R2", "X", "B")};
    const struct {
        const char *title;
        std::function<void()> remove;
        Rows left;
    } cases[] = {
        {"by attr", [] { RemoveByAttr(R); }, {table[0], table[4]}},
        {"by attr in other case", [] { RemoveByAttr(QStringLiteral("r")); }, {table[0], table[4]}},
        {"by attr absent", [] { RemoveByAttr(QStringLiteral("P")); }, table},
        {"by attr and value",
         [] { RemoveByAttrValue(R, QStringLiteral("y")); },
         {table[0], table[1], table[3], table[4]}},
        {"by attr from another source",
         [] { RemoveByAttrOtherSource(R, A); },
         {table[0], table[1], table[3], table[4]}},
        {"by attr from another source, other case",
         [] { RemoveByAttrOtherSource(R, QStringLiteral("b")); },
         {table[0], table[2], table[4]}},
        {"all", [] { ClearInherit(); }, {}},
    };
    for (const auto &c : cases) {
        ClearInherit();
        for (const InheritRow &row : table)
            addInheritRow(row);
        c.remove();
        EXPECT_EQ(InheritRows(), c.left) << c.title;
    }
}

TEST_F(InheritanceTest, LocalSlotsReadDefaultsAndLeaveAnEmptyListAlone)
{
    relation(R, QStringLiteral("DOMAIN"), A);
    relation(R, QStringLiteral("RANGE"), B, true);
    attribute(A, QStringLiteral("COLOR"), QStringLiteral("red"), QVariant());

    SlotPairs pairs;
    ASSERT_EQ(GetLocalRelations(R, pairs), 2);
    EXPECT_EQ(pairs, (SlotPairs{{QStringLiteral("DOMAIN"), A},
                                {QStringLiteral("RANGE"), QStringLiteral("B (by default)")}}));
    ASSERT_EQ(GetLocalAttributes(A, pairs), 1);
    EXPECT_EQ(pairs, (SlotPairs{{QStringLiteral("COLOR"), QStringLiteral("red")}}))
        << "a Yes/No field holds no Null: Default written as Null is False";
    EXPECT_EQ(GetLocalAttributes(B, pairs), 0);
    EXPECT_EQ(pairs.size(), 1u);
}

TEST(InheritClipboard, ListsTheRowsBehindAHeader)
{
    const Rows rows{Row("R", "X", "A"), Row("COLOR", "red (by default)", "B")};
    EXPECT_EQ(InheritClipboardText(QStringLiteral("CAT"), true, kIncludeAll, rows),
              QStringLiteral("Inherited properties for CAT:\r\nInheritance type: Cumulative\r\n"
                             "Include: Relations and Attributes\r\n\r\nAttribute;Value;From\r\n"
                             "R;X;A\r\nCOLOR;red (by default);B\r\n"));
    EXPECT_EQ(InheritClipboardText(QStringLiteral("CAT"), false, kIncludeRels, {}),
              QStringLiteral("Inherited properties for CAT:\r\nInheritance type: Exclusive\r\n"
                             "Include: Relations\r\n\r\nAttribute;Value;From\r\n"));
    EXPECT_TRUE(
        InheritClipboardText(A, false, kIncludeAttrs, {}).contains(u"Include: Attributes\r\n"));
}

} // namespace
