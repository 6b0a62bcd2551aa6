#include "core/store/errors.h"
#include "core/store/graph.h"
#include "support/temp_store.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <tuple>
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

// A table of numbered nodes naming their parent, with a value table beside it.
class TreeTableTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        db = DBEngine::Workspaces(0).CreateDatabase(folder.path(QStringLiteral("t.db")),
                                                    dbLangGeneral, dbVersion40);
        TableDef nodes = db.CreateTableDef(QStringLiteral("Nodes"));
        nodes.Fields.push_back(nodes.CreateField(QStringLiteral("ID"), dbLong));
        nodes.Fields.push_back(nodes.CreateField(QStringLiteral("Kind"), dbText, 10));
        nodes.Fields.push_back(nodes.CreateField(QStringLiteral("Parent"), dbLong));
        Index byParent = nodes.CreateIndex(QStringLiteral("Parent"));
        byParent.Fields.push_back(byParent.CreateField(QStringLiteral("Parent")));
        nodes.Indexes.push_back(byParent);
        db.Append(nodes);
        TableDef values = db.CreateTableDef(QStringLiteral("Vals"));
        values.Fields.push_back(values.CreateField(QStringLiteral("ID"), dbLong));
        values.Fields.push_back(values.CreateField(QStringLiteral("V"), dbText, 50));
        db.Append(values);
    }
    void TearDown() override { db.Close(); }

    void add(const char *table, std::initializer_list<std::pair<const char *, QVariant>> row)
    {
        Recordset rs = db.OpenRecordset(QString::fromLatin1(table), dbOpenTable);
        rs.AddNew();
        for (const auto &[field, value] : row)
            rs.Collect(QString::fromLatin1(field), value);
        rs.Update();
    }

    TempFolder folder;
    Database db;
};

TEST_F(TreeTableTest, ALevelComesInTextOrderOrTableOrderWithItsValues)
{
    add("Nodes", {{"ID", 2}, {"Kind", QStringLiteral("b")}, {"Parent", 1}});
    add("Nodes", {{"ID", 3}, {"Kind", QStringLiteral("A")}, {"Parent", 1}});
    add("Nodes", {{"ID", 4}, {"Kind", QStringLiteral("c")}, {"Parent", 1}});
    add("Nodes", {{"ID", 5}, {"Kind", QStringLiteral("x")}, {"Parent", 3}});
    add("Nodes", {{"ID", 6}, {"Kind", QStringLiteral("x")}, {"Parent", 3}});
    add("Vals", {{"ID", 3}, {"V", QStringLiteral("three")}});
    add("Vals", {{"ID", 4}, {"V", QVariant()}});
    add("Vals", {{"ID", 5}, {"V", QStringLiteral("not on this level")}});

    TreeTable tree(db, u"nodes", u"id", u"PARENT");
    using Row = std::tuple<std::int64_t, QString, bool>;
    auto level = [&](std::int64_t parent, bool ordered) {
        std::vector<Row> rows;
        tree.children(parent, u"Kind", ordered,
                      [&](std::int64_t id, const QString &kind, bool below) {
                          rows.emplace_back(id, kind, below);
                      });
        return rows;
    };
    EXPECT_EQ(level(1, true), (std::vector<Row>{{3, QStringLiteral("A"), true},
                                                {2, QStringLiteral("b"), false},
                                                {4, QStringLiteral("c"), false}}));
    EXPECT_EQ(level(1, false), (std::vector<Row>{{2, QStringLiteral("b"), false},
                                                 {3, QStringLiteral("A"), true},
                                                 {4, QStringLiteral("c"), false}}));
    EXPECT_TRUE(level(2, true).empty());

    std::map<std::int64_t, QString> values;
    tree.childValues(1, u"Vals", u"ID", u"V",
                     [&](std::int64_t id, const QString &value) { values[id] = value; });
    EXPECT_EQ(values,
              (std::map<std::int64_t, QString>{{3, QStringLiteral("three")}, {4, QString()}}));

    EXPECT_STORE_ERROR(TreeTable(db, u"Nope", u"ID", u"Parent"), err::ObjectNotFound);
    EXPECT_STORE_ERROR(tree.children(1, u"Kind\" --", true, [](auto, auto &, bool) {}),
                       err::ItemNotFound);
}

} // namespace
