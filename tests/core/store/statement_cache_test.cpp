#include "core/store/connection.h"
#include "store_fixture.h"

#include <sqlite3.h>

using namespace lx::store;

namespace {

TEST(StatementCache, StaysAtItsBoundAndNeverFinalizesAStatementInUse)
{
    TempFolder folder;
    const std::shared_ptr<detail::Connection> c =
        detail::Connection::create(folder.path(QStringLiteral("c.db")));
    // A statement half stepped through, as an enclosing call holds it, while thousands of
    // others come and go.
    detail::Statement held = c->prepare(QStringLiteral("SELECT 1 UNION ALL SELECT 2"));
    ASSERT_TRUE(held.step());
    for (int i = 0; i < 5000; ++i) {
        detail::Statement s = c->prepare(QStringLiteral("SELECT %1").arg(i));
        ASSERT_TRUE(s.step());
        ASSERT_EQ(s.integer(0), i);
        ASSERT_LE(c->cachedStatements(), detail::Connection::kStatementCacheSize);
    }
    EXPECT_EQ(c->cachedStatements(), detail::Connection::kStatementCacheSize);
    ASSERT_TRUE(held.step());
    EXPECT_EQ(held.integer(0), 2);
    EXPECT_FALSE(held.step());
}

// Looking up many concepts one by one, each with criteria of its own, must not keep a prepared
// statement per concept for as long as the file is open.
TEST_F(StoreTest, DistinctCriteriaAndQueriesKeepMemoryFlat)
{
    for (const char *k : {"a", "b", "c"})
        addParent(QString::fromLatin1(k));
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT * FROM PARENTS"), dbOpenDynaset);
    auto lookUp = [&](int i) {
        rs.FindFirst(QStringLiteral("Key = \"k%1\" OR Key = \"c\"").arg(i));
        ASSERT_FALSE(rs.NoMatch());
        Recordset q = db.OpenRecordset(
            QStringLiteral("SELECT Key FROM PARENTS WHERE Key <> \"k%1\"").arg(i), dbOpenSnapshot);
        ASSERT_EQ(q.RecordCount(), 3);
    };
    for (int i = 0; i < 500; ++i)
        lookUp(i);
    const sqlite3_int64 warm = sqlite3_memory_used();
    for (int i = 500; i < 5000; ++i)
        lookUp(i);
    // Each statement kept would cost kilobytes: 9,000 of them would be tens of megabytes.
    EXPECT_LT(sqlite3_memory_used() - warm, 512 * 1024);
}

} // namespace
