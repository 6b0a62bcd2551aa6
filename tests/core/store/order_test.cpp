#include "core/text/collation.h"
#include "store_fixture.h"

#include <QFile>

#include <sqlite3.h>

using namespace lx::store;

namespace {

const QStringList kDictionaryOrder = {QStringLiteral("arbol"), QStringLiteral("árbol"),
                                      QStringLiteral("Arca"),  QStringLiteral("Émile"),
                                      QStringLiteral("Zoe"),   QStringLiteral("zona")};

// The order files were built with before: case-folded code points.
int FoldedOrder(void *, int la, const void *a, int lb, const void *b)
{
    const QString x = QString::fromUtf8(static_cast<const char *>(a), la).toCaseFolded();
    const QString y = QString::fromUtf8(static_cast<const char *>(b), lb).toCaseFolded();
    return x.compare(y);
}

int NewOrder(void *, int la, const void *a, int lb, const void *b)
{
    return lx::text::CompareText(std::string_view(static_cast<const char *>(a), size_t(la)),
                                 std::string_view(static_cast<const char *>(b), size_t(lb)));
}

sqlite3 *OpenRaw(const QString &path, int (*order)(void *, int, const void *, int, const void *))
{
    sqlite3 *raw = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &raw, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_create_collation(raw, "LX", SQLITE_UTF8, nullptr, order);
    return raw;
}

QString ScalarText(sqlite3 *raw, const char *sql)
{
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(raw, sql, -1, &stmt, nullptr);
    QString value;
    if (sqlite3_step(stmt) == SQLITE_ROW)
        value = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    return value;
}

} // namespace

TEST_F(StoreTest, TextSortsInDictionaryOrderAndKeysDifferInAccentNotCase)
{
    for (const QString &key :
         {QStringLiteral("zona"), QStringLiteral("Zoe"), QStringLiteral("Émile"),
          QStringLiteral("Arca"), QStringLiteral("árbol"), QStringLiteral("arbol")})
        addParent(key);
    EXPECT_STORE_ERROR(addParent(QStringLiteral("ARBOL")), err::DuplicateKey);
    EXPECT_STORE_ERROR(addParent(QStringLiteral("ÉMILE")), err::DuplicateKey);

    EXPECT_EQ(query(QStringLiteral("SELECT * FROM PARENTS ORDER BY Key"), QStringLiteral("Key")),
              kDictionaryOrder);
    Recordset table = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    table.SetIndex(QStringLiteral("Key"));
    EXPECT_EQ(column(table, QStringLiteral("Key")), kDictionaryOrder);

    Recordset rs =
        db.OpenRecordset(QStringLiteral("SELECT * FROM PARENTS ORDER BY Key"), dbOpenSnapshot);
    rs.FindFirst(QStringLiteral("Key = \"ÁRBOL\""));
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("árbol"));
    rs.FindFirst(QStringLiteral("Key > \"arbol\" AND Key < \"ARCA\""));
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("árbol"));
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM PARENTS WHERE Key LIKE \"a*\" ORDER BY Key"),
                    QStringLiteral("Key")),
              QStringList({"arbol", "Arca"}));
}

// A file whose indexes were built under the old order is re-indexed once when it opens.
TEST_F(StoreTest, AFileBuiltUnderTheOldOrderIsReindexedWhenItOpens)
{
    for (const QString &key : kDictionaryOrder)
        addParent(key);
    const QString path = db.Name();
    db.Close();
    {
        sqlite3 *raw = OpenRaw(path, FoldedOrder);
        sqlite3_exec(raw, "REINDEX \"LX\"; PRAGMA user_version = 0", nullptr, nullptr, nullptr);
        sqlite3_close(raw);
        // Read in the new order, the old index is out of order: the test has something to fix.
        raw = OpenRaw(path, NewOrder);
        EXPECT_NE(ScalarText(raw, "PRAGMA integrity_check"), QStringLiteral("ok"));
        sqlite3_close(raw);
    }

    db = DBEngine::OpenDatabase(path);
    Recordset table = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    table.SetIndex(QStringLiteral("Key"));
    EXPECT_EQ(column(table, QStringLiteral("Key")), kDictionaryOrder);
    table.Seek(u"=", QStringLiteral("ÁRBOL"));
    ASSERT_FALSE(table.NoMatch());
    EXPECT_EQ(table.Fields(u"Key").Text(), QStringLiteral("árbol"));
    table.Close();
    db.Close();

    sqlite3 *raw = OpenRaw(path, NewOrder);
    EXPECT_EQ(ScalarText(raw, "PRAGMA integrity_check"), QStringLiteral("ok"));
    EXPECT_EQ(ScalarText(raw, "PRAGMA user_version").toInt(), lx::text::CollationMark());
    sqlite3_close(raw);
}
