#include "core/store/errors.h"
#include "core/store/graph.h"
#include "support/temp_store.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

using namespace lx::store;

namespace {

// A link table of the shape of ISA: (Child, Parent), both text, keyed on the pair.
class LinkTableTest : public ::testing::Test {
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

    static QString text(std::string_view utf8)
    {
        return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
    }

    // The far ends, sorted as the store sorts text.
    std::vector<QString> next(const QString &node, Direction direction)
    {
        LinkTable links(db, u"links", u"CHILD", u"parent", direction);
        std::vector<QString> ends;
        links.next(node.toStdString(), [&](std::string_view end) { ends.push_back(text(end)); });
        std::sort(ends.begin(), ends.end(), [](const QString &a, const QString &b) {
            return a.compare(b, Qt::CaseInsensitive) < 0;
        });
        return ends;
    }

    using Edge = std::pair<QString, QString>;
    static Edge e(const char *child, const char *parent)
    {
        return {QString::fromUtf8(child), QString::fromUtf8(parent)};
    }

    TempFolder folder;
    Database db;
};

TEST_F(LinkTableTest, NextFindsTheEndsOfANodeWithoutRegardToCase)
{
    link(QStringLiteral("beta"), QStringLiteral("TOP"));
    link(QStringLiteral("Alpha"), QStringLiteral("TOP"));
    link(QStringLiteral("GAMMA"), QStringLiteral("top"));
    link(QStringLiteral("beta"), QStringLiteral("Other"));
    link(QStringLiteral("beta"), QStringLiteral("ALPHA"));
    using V = std::vector<QString>;
    EXPECT_EQ(next(QStringLiteral("Top"), Direction::ToChildren),
              (V{QStringLiteral("Alpha"), QStringLiteral("beta"), QStringLiteral("GAMMA")}));
    EXPECT_EQ(next(QStringLiteral("BETA"), Direction::ToParents),
              (V{QStringLiteral("ALPHA"), QStringLiteral("Other"), QStringLiteral("TOP")}));
    EXPECT_TRUE(next(QStringLiteral("beta"), Direction::ToChildren).empty());
    EXPECT_TRUE(next(QStringLiteral("NOWHERE"), Direction::ToParents).empty());

    // Quotes of both kinds and a would-be statement end stay inside the value.
    const QString odd = QStringLiteral("o'b\"x); DROP TABLE Links; --");
    link(QStringLiteral("kid"), odd);
    EXPECT_EQ(next(odd.toUpper(), Direction::ToChildren), V{QStringLiteral("kid")});
    EXPECT_EQ(next(QStringLiteral("KID"), Direction::ToParents), V{odd});
}

TEST_F(LinkTableTest, AllRowsGivesEveryRowOnce)
{
    for (int i = 1; i < 100; ++i)
        link(QStringLiteral("N%1").arg(i), QStringLiteral("N%1").arg(i - 1));
    link(QStringLiteral("X"), QStringLiteral("Y"));
    LinkTable links(db, u"Links", u"Child", u"Parent", Direction::ToChildren);
    std::vector<Edge> rows;
    links.allRows([&](std::string_view child, std::string_view parent) {
        rows.emplace_back(text(child), text(parent));
    });
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ(rows.size(), 100u);
    EXPECT_TRUE(std::adjacent_find(rows.begin(), rows.end()) == rows.end());
    EXPECT_NE(std::find(rows.begin(), rows.end(), e("X", "Y")), rows.end());
    EXPECT_NE(std::find(rows.begin(), rows.end(), e("N99", "N98")), rows.end());
    EXPECT_GE(links.rowsAbout(), 100);
}

TEST_F(LinkTableTest, NamesAreCheckedAgainstTheCatalog)
{
    EXPECT_STORE_ERROR(LinkTable(db, u"Nope", u"Child", u"Parent", Direction::ToChildren),
                       err::ObjectNotFound);
    EXPECT_STORE_ERROR(
        LinkTable(db, u"Links", u"Child", u"Parent\" OR 1=1 --", Direction::ToChildren),
        err::ItemNotFound);
}

} // namespace
