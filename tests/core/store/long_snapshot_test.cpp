// A snapshot longer than what it copies at its open: its count, its walk, its search and its
// rows as of the open must be those of a snapshot copied whole.
#include "core/store/graph.h"
#include "store_fixture.h"

using namespace lx::store;

namespace {

constexpr int kRows = 700; // well past the rows a snapshot copies at its open

// Keys alternating in case, so the store's order, which ignores case, differs from a byte
// order; every third parent has Type 2.
QString KeyOf(int i)
{
    return QStringLiteral("%1-%2")
        .arg(i % 2 ? QStringLiteral("KEY") : QStringLiteral("key"))
        .arg(i, 3, 10, QLatin1Char('0'));
}

class LongSnapshotTest : public StoreTest {
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
        for (int i = kRows - 1; i >= 0; --i) { // stored against the order of the keys
            rs.AddNew();
            rs.Collect(u"Key", KeyOf(i));
            rs.Collect(u"Type", i % 3 == 0 ? 2 : 1);
            rs.Update();
        }
    }

    static QStringList expected(bool withTypeTwo)
    {
        QStringList keys;
        for (int i = 0; i < kRows; ++i) {
            if (withTypeTwo || i % 3 != 0)
                keys << KeyOf(i);
        }
        return keys;
    }

    Recordset openList()
    {
        return db.OpenRecordset(
            QStringLiteral("SELECT Key FROM PARENTS WHERE Type <> 2 ORDER BY Key"), dbOpenSnapshot);
    }
};

TEST_F(LongSnapshotTest, CountsWalksAndJumpsAcrossTheRowsReadAtTheOpen)
{
    const QStringList keys = expected(false);
    Recordset rs = openList();
    EXPECT_EQ(rs.RecordCount(), keys.size()) << "exact before any row past the first is read";
    for (const int row : {255, 256, 257, int(keys.size()) - 1, 0}) {
        rs.SetBookmark(row);
        EXPECT_EQ(rs.Fields(u"Key").Text(), keys[row]) << row;
    }
    rs.SetBookmark(256);
    rs.MovePrevious();
    EXPECT_EQ(rs.GetBookmark(), 255);
    EXPECT_EQ(column(rs, QStringLiteral("Key")), keys);
    EXPECT_THROW(rs.SetBookmark(keys.size()), StoreError);

    Recordset all =
        db.OpenRecordset(QStringLiteral("SELECT * FROM PARENTS ORDER BY Key"), dbOpenSnapshot);
    all.MoveLast();
    EXPECT_EQ(all.Fields(u"Key").Text(), KeyOf(kRows - 1));
    EXPECT_EQ(all.RecordCount(), kRows);
}

TEST_F(LongSnapshotTest, FindsPastTheRowsReadWithoutRegardToCase)
{
    Recordset rs = openList();
    rs.FindFirst(QStringLiteral("Key LIKE \"KEY-65*\""));
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("key-650"));
    rs.FindNext(QStringLiteral("Key LIKE \"KEY-65*\""));
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("key-652")) << "651 is left out";
    rs.FindFirst(QStringLiteral("Key LIKE \"key-0*\""));
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("KEY-001")) << "the first in its order";
    rs.FindFirst(QStringLiteral("Key LIKE \"none*\""));
    EXPECT_TRUE(rs.NoMatch());
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("KEY-001")) << "a miss doesn't move";
    EXPECT_EQ(rs.RecordCount(), expected(false).size());
}

// Writes through the same file, whether or not the count was asked before them.
TEST_F(LongSnapshotTest, KeepsItsRowsAsOfTheOpenThroughLaterWrites)
{
    const QStringList keys = expected(false);
    Recordset counted = openList();
    EXPECT_EQ(counted.RecordCount(), keys.size());
    Recordset uncounted = openList();
    addParent(QStringLiteral("aaa"));
    {
        Recordset table = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
        table.SetIndex(QStringLiteral("Key"));
        table.Seek(u"=", QStringLiteral("KEY-698")); // the index ignores case
        ASSERT_FALSE(table.NoMatch());
        table.Delete();
    }
    {
        Database other = DBEngine::OpenDatabase(folder.path(QStringLiteral("t.ont")));
        Recordset table = other.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
        table.AddNew();
        table.Collect(u"Key", QStringLiteral("bbb"));
        table.Collect(u"Type", 1);
        table.Update();
        table.Close();
        other.Close();
    }
    for (Recordset *rs : {&counted, &uncounted}) {
        EXPECT_EQ(rs->RecordCount(), keys.size());
        EXPECT_EQ(column(*rs, QStringLiteral("Key")), keys);
    }
    uncounted.Requery();
    QStringList now = keys;
    now.removeLast();
    now.prepend(QStringLiteral("bbb"));
    now.prepend(QStringLiteral("aaa"));
    EXPECT_EQ(column(uncounted, QStringLiteral("Key")), now) << "a requery reads the file anew";
}

// A walk's read transaction nests in the one the snapshot holds open: ending it must not leave
// the next write uncommitted.
TEST_F(LongSnapshotTest, AWalkWhileRowsAreUnreadLeavesTheNextWriteCommitted)
{
    addChild(QStringLiteral("key-002"), QStringLiteral("leaf"));
    Recordset rs = openList();
    {
        LinkTable links(db, u"Children", u"Value", u"Parent", Direction::ToChildren);
        QStringList ends;
        links.next("KEY-002", [&ends](std::string_view end) {
            ends << QString::fromUtf8(end.data(), qsizetype(end.size()));
        });
        EXPECT_EQ(ends, QStringList{QStringLiteral("leaf")});
    }
    addParent(QStringLiteral("aaa"));
    Database other = DBEngine::OpenDatabase(folder.path(QStringLiteral("t.ont")));
    Recordset seen = other.OpenRecordset(
        QStringLiteral("SELECT Key FROM PARENTS WHERE Key = \"aaa\""), dbOpenSnapshot);
    EXPECT_EQ(seen.RecordCount(), 1);
    EXPECT_EQ(rs.RecordCount(), expected(false).size());
}

TEST_F(LongSnapshotTest, KeepsItsRowsWhenTheFileIsClosed)
{
    const QStringList keys = expected(false);
    Recordset rs = openList();
    db.Close();
    EXPECT_EQ(rs.RecordCount(), keys.size());
    EXPECT_EQ(column(rs, QStringLiteral("Key")), keys);
}

} // namespace
