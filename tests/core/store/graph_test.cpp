#include "core/store/errors.h"
#include "core/store/graph.h"
#include "support/temp_store.h"

#include <algorithm>

using namespace lx::store;

namespace {

// A link table of the shape of ISA: (Child, Parent), both text, keyed on the pair.
class ReachableEdgesTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        db = DBEngine::Workspaces(0).CreateDatabase(folder.path(QStringLiteral("g.ont")),
                                                    dbLangGeneral, dbVersion40);
        TableDef links = db.CreateTableDef(QStringLiteral("Links"));
        links.Fields.push_back(links.CreateField(QStringLiteral("Child"), dbText, 255));
        links.Fields.push_back(links.CreateField(QStringLiteral("Parent"), dbText, 255));
        Index pk = links.CreateIndex(QStringLiteral("Pair"));
        pk.Fields.push_back(pk.CreateField(QStringLiteral("Child")));
        pk.Fields.push_back(pk.CreateField(QStringLiteral("Parent")));
        pk.Primary = true;
        links.Indexes.push_back(pk);
        Index byParent = links.CreateIndex(QStringLiteral("Parent"));
        byParent.Fields.push_back(byParent.CreateField(QStringLiteral("Parent")));
        links.Indexes.push_back(byParent);
        db.Append(links);
    }
    void TearDown() override { db.Close(); }

    void link(const QString &child, const QString &parent)
    {
        Recordset rs = db.OpenRecordset(QStringLiteral("Links"), dbOpenTable);
        rs.AddNew();
        rs.Collect(u"Child", child);
        rs.Collect(u"Parent", parent);
        rs.Update();
    }

    std::vector<Edge> reach(const QString &start, Direction direction)
    {
        LinkRows rows = ReachableEdges(db, u"links", u"CHILD", u"parent", start, direction);
        EXPECT_FALSE(rows.wholeTable);
        std::sort(rows.edges.begin(), rows.edges.end());
        return rows.edges;
    }

    static Edge e(const char *child, const char *parent)
    {
        return {QString::fromUtf8(child), QString::fromUtf8(parent)};
    }

    TempFolder folder;
    Database db;
};

TEST_F(ReachableEdgesTest, EachReachableRowOnceInEitherDirection)
{
    // A diamond under TOP, a side branch, and an unrelated pair.
    link(QStringLiteral("L"), QStringLiteral("TOP"));
    link(QStringLiteral("R"), QStringLiteral("TOP"));
    link(QStringLiteral("D"), QStringLiteral("L"));
    link(QStringLiteral("D"), QStringLiteral("R"));
    link(QStringLiteral("E"), QStringLiteral("D"));
    link(QStringLiteral("S"), QStringLiteral("R"));
    link(QStringLiteral("X"), QStringLiteral("Y"));

    EXPECT_EQ(reach(QStringLiteral("TOP"), Direction::ToChildren),
              (std::vector<Edge>{e("D", "L"), e("D", "R"), e("E", "D"), e("L", "TOP"),
                                 e("R", "TOP"), e("S", "R")}));
    EXPECT_EQ(
        reach(QStringLiteral("E"), Direction::ToParents),
        (std::vector<Edge>{e("D", "L"), e("D", "R"), e("E", "D"), e("L", "TOP"), e("R", "TOP")}));
    EXPECT_EQ(reach(QStringLiteral("R"), Direction::ToChildren),
              (std::vector<Edge>{e("D", "R"), e("E", "D"), e("S", "R")}));
    EXPECT_TRUE(reach(QStringLiteral("TOP"), Direction::ToParents).empty());
    EXPECT_TRUE(reach(QStringLiteral("NOWHERE"), Direction::ToChildren).empty());
}

TEST_F(ReachableEdgesTest, StartIsAValueComparedWithoutCaseAndCyclesEnd)
{
    // Quotes of both kinds and a would-be statement end stay inside the value.
    const QString odd = QStringLiteral("o'b\"x); DROP TABLE Links; --");
    link(QStringLiteral("kid"), odd);
    link(QStringLiteral("grandkid"), QStringLiteral("KID"));
    EXPECT_EQ(reach(odd.toUpper(), Direction::ToChildren),
              (std::vector<Edge>{e("grandkid", "KID"), e("kid", odd.toUtf8().constData())}));
    EXPECT_EQ(reach(QStringLiteral("GRANDKID"), Direction::ToParents).size(), 2u);

    // A cycle back to the start, spelled otherwise, ends the walk with every row once.
    link(odd.toLower(), QStringLiteral("grandkid"));
    EXPECT_EQ(reach(odd, Direction::ToChildren).size(), 3u);
    EXPECT_EQ(reach(QStringLiteral("kid"), Direction::ToParents).size(), 3u);
}

TEST_F(ReachableEdgesTest, LargeWalkReadsTheWholeTable)
{
    // A chain of 100 nodes, and a pair off to the side.
    for (int i = 1; i < 100; ++i)
        link(QStringLiteral("N%1").arg(i), QStringLiteral("N%1").arg(i - 1));
    link(QStringLiteral("X"), QStringLiteral("Y"));

    // The chain is all of the table: past the first 64 nodes the walk gives up on searching.
    LinkRows rows = ReachableEdges(db, u"Links", u"Child", u"Parent", QStringLiteral("N0"),
                                   Direction::ToChildren, 2);
    EXPECT_TRUE(rows.wholeTable);
    EXPECT_EQ(rows.edges.size(), 100u);
    EXPECT_NE(std::find(rows.edges.begin(), rows.edges.end(), e("X", "Y")), rows.edges.end());

    // A walk short of that finds its rows alone.
    rows = ReachableEdges(db, u"Links", u"Child", u"Parent", QStringLiteral("N60"),
                          Direction::ToParents, 2);
    EXPECT_FALSE(rows.wholeTable);
    EXPECT_EQ(rows.edges.size(), 60u);
    rows = ReachableEdges(db, u"Links", u"Child", u"Parent", QStringLiteral("N99"),
                          Direction::ToParents, 2);
    EXPECT_TRUE(rows.wholeTable);
}

TEST_F(ReachableEdgesTest, NamesAreCheckedAgainstTheCatalog)
{
    EXPECT_STORE_ERROR(ReachableEdges(db, u"Nope", u"Child", u"Parent", QStringLiteral("A"),
                                      Direction::ToChildren),
                       err::ObjectNotFound);
    EXPECT_STORE_ERROR(ReachableEdges(db, u"Links", u"Child", u"Parent\" OR 1=1 --",
                                      QStringLiteral("A"), Direction::ToChildren),
                       err::ItemNotFound);
}

} // namespace
