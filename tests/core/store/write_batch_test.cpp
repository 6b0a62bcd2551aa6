#include "store_fixture.h"

#include <sqlite3.h>

using namespace lx::store;

namespace {

// Rows of PARENTS as another connection to the file sees them: only what has been committed.
int CommittedParents(const QString &path)
{
    sqlite3 *raw = nullptr;
    int count = -1;
    if (sqlite3_open_v2(path.toUtf8().constData(), &raw, SQLITE_OPEN_READONLY, nullptr) ==
        SQLITE_OK) {
        // The file's indexes name our collation; any order does for a count.
        sqlite3_create_collation(raw, "LX", SQLITE_UTF8, nullptr,
                                 [](void *, int, const void *, int, const void *) { return 0; });
        sqlite3_stmt *stmt = nullptr;
        if (sqlite3_prepare_v2(raw, "SELECT count(*) FROM PARENTS", -1, &stmt, nullptr) ==
                SQLITE_OK &&
            sqlite3_step(stmt) == SQLITE_ROW)
            count = sqlite3_column_int(stmt, 0);
        else
            ADD_FAILURE() << sqlite3_errmsg(raw);
        sqlite3_finalize(stmt);
    }
    sqlite3_close(raw);
    return count;
}

TEST_F(StoreTest, WriteBatchCommitsItsRowsTogetherWhenItEnds)
{
    const QString path = folder.path(QStringLiteral("t.ont"));
    addParent(QStringLiteral("A"));
    {
        const WriteBatch batch(db);
        addParent(QStringLiteral("B"));
        {
            const WriteBatch inner(db);
            addParent(QStringLiteral("C"));
        }
        // A failed row undoes itself only.
        EXPECT_STORE_ERROR(addParent(QStringLiteral("b")), err::DuplicateKey);
        addParent(QStringLiteral("D"));
        Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
        EXPECT_EQ(column(rs, QStringLiteral("Key")), (QStringList{"A", "B", "C", "D"}));
        EXPECT_EQ(CommittedParents(path), 1);
    }
    EXPECT_EQ(CommittedParents(path), 4);
    // Without a batch each row is committed at once again.
    addParent(QStringLiteral("E"));
    EXPECT_EQ(CommittedParents(path), 5);
}

TEST_F(StoreTest, ATransactionKeepsItsRowsOnlyWhenCommitted)
{
    const QString path = folder.path(QStringLiteral("t.ont"));
    addParent(QStringLiteral("A"));
    Recordset open = db.OpenRecordset(QStringLiteral("SELECT * FROM PARENTS"), dbOpenDynaset);
    {
        Transaction all(db);
        addParent(QStringLiteral("B"));
        {
            const WriteBatch inner(db);
            addParent(QStringLiteral("C"));
        }
        EXPECT_EQ(CommittedParents(path), 1);
        // Not committed: everything since it began goes, the batch inside it too.
    }
    EXPECT_EQ(CommittedParents(path), 1);
    Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    EXPECT_EQ(column(rs, QStringLiteral("Key")), QStringList{"A"});
    // A cursor opened before sees the rows as they are again.
    open.Requery();
    EXPECT_EQ(open.RecordCount(), 1);
    {
        Transaction all(db);
        addParent(QStringLiteral("D"));
        all.Commit();
    }
    EXPECT_EQ(CommittedParents(path), 2);
}

} // namespace
