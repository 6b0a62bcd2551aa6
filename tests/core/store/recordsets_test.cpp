#include "store_fixture.h"

using namespace lx::store;

TEST_F(StoreTest, TableRecordsetIsLiveAndWalksItsIndexWithoutRegardToCase)
{
    for (const char *k : {"cherry", "Apple", "banana"})
        addParent(QString::fromLatin1(k));
    Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    rs.SetIndex(QStringLiteral("key"));
    EXPECT_EQ(column(rs, QStringLiteral("Key")), QStringList({"Apple", "banana", "cherry"}));
    EXPECT_EQ(rs.RecordCount(), 3);

    // Rows added and deleted through another recordset are seen at once.
    addParent(QStringLiteral("Blueberry"));
    {
        Recordset other = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
        other.SetIndex(QStringLiteral("Key"));
        other.Seek(u"=", QStringLiteral("CHERRY"));
        ASSERT_FALSE(other.NoMatch());
        other.Edit();
        other.Delete();
    }
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_EQ(column(rs, QStringLiteral("Key")), QStringList({"Apple", "banana", "Blueberry"}));
}

TEST_F(StoreTest, TableRecordsetWalksRowsWithNullKeysFirstAndDuplicateKeysInOrder)
{
    addParent(QStringLiteral("p"));
    addParent(QStringLiteral("q"));
    addChild(QStringLiteral("q"), QStringLiteral("last"));
    for (int i = 0; i < 70; ++i) // more than one page of rows
        addChild(QStringLiteral("p"), QString::number(i));
    Recordset nulls = db.OpenRecordset(QStringLiteral("Children"), dbOpenTable);
    nulls.AddNew();
    nulls.Collect(u"Value", QStringLiteral("no parent"));
    nulls.Update();

    Recordset rs = db.OpenRecordset(QStringLiteral("Children"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Parent"));
    const QStringList values = column(rs, QStringLiteral("Value"));
    ASSERT_EQ(values.size(), 72);
    EXPECT_EQ(values.front(), QStringLiteral("no parent"));
    EXPECT_EQ(values[1], QStringLiteral("0"));
    EXPECT_EQ(values.back(), QStringLiteral("last"));
}

TEST_F(StoreTest, SeekFindsTheFirstKeyAndAMissOnlySetsNoMatch)
{
    for (const char *k : {"A", "B", "C"})
        addParent(QString::fromLatin1(k));
    Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"));
    EXPECT_EQ(rs.Type(), dbOpenTable);
    EXPECT_STORE_ERROR(rs.Seek(u"=", QStringLiteral("B")), err::InvalidOperation); // no index yet
    rs.SetIndex(QStringLiteral("Key"));
    rs.Seek(u"=", QStringLiteral("b"));
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("B"));
    rs.Seek(u"=", QStringLiteral("Z"));
    EXPECT_TRUE(rs.NoMatch());
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("B"));
    rs.MoveNext();
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("C"));
    rs.Seek(u"=", QString(300, QLatin1Char('x'))); // longer than the field: simply not there
    EXPECT_TRUE(rs.NoMatch());
}

TEST_F(StoreTest, DeleteKeepsThePositionUntilMoveNext)
{
    for (const char *k : {"A", "B", "C"})
        addParent(QString::fromLatin1(k));
    for (int type : {dbOpenTable, dbOpenDynaset}) {
        Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"), type);
        if (type == dbOpenTable)
            rs.SetIndex(QStringLiteral("Key"));
        rs.MoveFirst();
        rs.MoveNext();
        ASSERT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("B"));
        rs.Edit(); // harmless before Delete
        rs.Delete();
        EXPECT_STORE_ERROR(rs.Fields(u"Key").Value(), err::RecordIsDeleted);
        EXPECT_FALSE(rs.Eof());
        rs.MoveNext();
        EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("C")) << type;
        rs.MoveNext();
        EXPECT_TRUE(rs.Eof());
        EXPECT_STORE_ERROR(rs.Fields(u"Key").Value(), err::NoCurrentRecord);
        addParent(QStringLiteral("B"));
    }
}

TEST_F(StoreTest, DynasetKeepsItsRowsReadsValuesLiveAndShowsItsOwnAdditions)
{
    for (const char *k : {"A", "B", "C"})
        addParent(QString::fromLatin1(k));
    Recordset rs =
        db.OpenRecordset(QStringLiteral("SELECT * FROM PARENTS ORDER BY Key"), dbOpenDynaset);
    EXPECT_GT(rs.RecordCount(), 0);

    addParent(QStringLiteral("AA")); // another recordset's row: not in this set
    {
        Recordset other = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
        other.SetIndex(QStringLiteral("Key"));
        other.Seek(u"=", QStringLiteral("C"));
        other.Edit();
        other.Collect(u"Info", QStringLiteral("changed elsewhere"));
        other.Update();
        other.Seek(u"=", QStringLiteral("B"));
        other.Delete();
    }
    rs.AddNew();
    rs.Collect(u"Key", QStringLiteral("0-own"));
    rs.Update();

    EXPECT_EQ(column(rs, QStringLiteral("Key")), QStringList({"A", "C", "0-own"}));
    rs.FindFirst(QStringLiteral("Key = \"C\""));
    ASSERT_FALSE(rs.NoMatch());
    EXPECT_EQ(rs.Fields(u"Info").Text(), QStringLiteral("changed elsewhere"));
    rs.FindFirst(QStringLiteral("Key = \"AA\""));
    EXPECT_TRUE(rs.NoMatch());
    rs.MoveLast();
    EXPECT_EQ(rs.RecordCount(), 3);

    rs.Requery();
    EXPECT_EQ(column(rs, QStringLiteral("Key")), QStringList({"0-own", "A", "AA", "C"}));
}

TEST_F(StoreTest, SnapshotIsAFixedReadOnlyCopy)
{
    for (const char *k : {"A", "B"})
        addParent(QString::fromLatin1(k));
    Recordset snap = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenSnapshot);
    addParent(QStringLiteral("C"));
    {
        Recordset other = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenDynaset);
        other.FindFirst(QStringLiteral("Key = 'A'"));
        other.Edit();
        other.Collect(u"Info", QStringLiteral("new"));
        other.Update();
    }
    EXPECT_EQ(column(snap, QStringLiteral("Key")), QStringList({"A", "B"}));
    snap.MoveFirst();
    EXPECT_TRUE(snap.Fields(u"Info").Value().isNull());
    EXPECT_STORE_ERROR(snap.Edit(), err::ReadOnly);
    EXPECT_STORE_ERROR(snap.AddNew(), err::ReadOnly);
    snap.MoveLast();
    EXPECT_EQ(snap.RecordCount(), 2);
}

TEST_F(StoreTest, FindFirstAndNoMatchOnEveryQueryType)
{
    for (const char *k : {"O'BRIEN", "abc", "ABD", "x"})
        addParent(QString::fromLatin1(k));
    for (int type : {dbOpenDynaset, dbOpenSnapshot}) {
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT * FROM PARENTS ORDER BY Key"), type);
        rs.FindFirst(QStringLiteral("Key = \"O'BRIEN\""));
        ASSERT_FALSE(rs.NoMatch()) << type;
        EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("O'BRIEN"));
        rs.FindFirst(QStringLiteral("Key LIKE \"ab*\""));
        ASSERT_FALSE(rs.NoMatch());
        EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("abc"));
        rs.FindNext(QStringLiteral("Key LIKE \"ab*\""));
        ASSERT_FALSE(rs.NoMatch());
        EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("ABD"));
        rs.FindNext(QStringLiteral("Key LIKE \"ab*\""));
        EXPECT_TRUE(rs.NoMatch());
        rs.FindFirst(QStringLiteral("Key = \"nothing\""));
        EXPECT_TRUE(rs.NoMatch());
        EXPECT_STORE_ERROR(rs.FindFirst(QStringLiteral("Key = \"AB\"C\"")),
                           err::SyntaxErrorInExpression);
        EXPECT_STORE_ERROR(rs.FindFirst(QStringLiteral("Nope = 1")), err::UnknownFieldInCriteria);
    }
    Recordset table = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    EXPECT_STORE_ERROR(table.FindFirst(QStringLiteral("Key = 'x'")), err::OperationNotSupported);
}

// A dynaset searches its own rows only: a row added to the table behind it, or deleted
// through it, is not found; one added through it is.
TEST_F(StoreTest, DynasetFindsOnlyItsOwnRows)
{
    for (const char *k : {"A", "B"})
        addParent(QString::fromLatin1(k));
    Recordset rs =
        db.OpenRecordset(QStringLiteral("SELECT * FROM PARENTS WHERE Key <> 'Z'"), dbOpenDynaset);
    addParent(QStringLiteral("C"));
    rs.FindFirst(QStringLiteral("Key = 'C'"));
    EXPECT_TRUE(rs.NoMatch());
    rs.AddNew();
    rs.Collect(u"Key", QStringLiteral("D"));
    rs.Update();
    rs.FindFirst(QStringLiteral("Key = 'D'"));
    EXPECT_FALSE(rs.NoMatch());
    for (const char *k : {"A", "B", "D"}) {
        rs.FindFirst(QStringLiteral("Key = '%1'").arg(QLatin1String(k)));
        rs.Delete();
    }
    rs.FindFirst(QStringLiteral("Key <> ''"));
    EXPECT_TRUE(rs.NoMatch());
}

TEST_F(StoreTest, BookmarksBringTheCursorBack)
{
    for (const char *k : {"A", "B", "C"})
        addParent(QString::fromLatin1(k));
    for (int type : {dbOpenTable, dbOpenDynaset, dbOpenSnapshot}) {
        Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"), type);
        rs.MoveFirst();
        rs.MoveNext();
        const Bookmark mark = rs.GetBookmark();
        const QString key = rs.Fields(u"Key").Text();
        rs.MoveLast();
        rs.SetBookmark(mark);
        EXPECT_EQ(rs.Fields(u"Key").Text(), key) << type;
    }
}

TEST_F(StoreTest, EmptyRecordsetsStandAtEofAndRefuseToMove)
{
    for (int type : {dbOpenTable, dbOpenDynaset, dbOpenSnapshot}) {
        Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"), type);
        EXPECT_EQ(rs.RecordCount(), 0);
        EXPECT_TRUE(rs.Eof());
        EXPECT_TRUE(rs.Bof());
        EXPECT_STORE_ERROR(rs.MoveFirst(), err::NoCurrentRecord);
        EXPECT_STORE_ERROR(rs.MoveLast(), err::NoCurrentRecord);
        EXPECT_STORE_ERROR(rs.Fields(u"Key").Value(), err::NoCurrentRecord);
        EXPECT_STORE_ERROR(rs.Fields(u"Nope"), err::ItemNotFound);
    }
}
