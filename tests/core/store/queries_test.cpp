#include "store_fixture.h"

using namespace lx::store;

TEST_F(StoreTest, ReservedWordsAsFieldNamesWork)
{
    addParent(QStringLiteral("P"));
    Recordset rs = db.OpenRecordset(QStringLiteral("Children"), dbOpenTable);
    rs.AddNew();
    rs.Collect(u"Parent", QStringLiteral("P"));
    rs.Collect(u"Default", true);
    rs.Collect(u"Value", QStringLiteral("v"));
    rs.Collect(u"Date", QDateTime(QDate(2026, 11, 23), QTime(10, 30)));
    rs.Collect(u"order", 7);
    rs.Update();
    Recordset q = db.OpenRecordset(
        QStringLiteral(
            "SELECT Default, Value, Date, Children.order FROM Children WHERE Default = True AND "
            "Children.order = 7 ORDER BY Children.order"),
        dbOpenSnapshot);
    ASSERT_EQ(q.RecordCount(), 1);
    EXPECT_EQ(q.Fields(u"Default").Value(), QVariant(true));
    EXPECT_EQ(q.Fields(u"value").Text(), QStringLiteral("v"));
    EXPECT_EQ(q.Fields(u"Date").Value().toDateTime(),
              QDateTime(QDate(2026, 11, 23), QTime(10, 30)));
    EXPECT_EQ(q.Fields(u"ORDER").Value().toInt(), 7);
}

TEST_F(StoreTest, QuotingAsTheProgramBuildsIt)
{
    const QString quote = QStringLiteral("\"");
    for (const char *k : {"O'BRIEN", "A", "b", "B2"})
        addParent(QString::fromLatin1(k), 12);
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM PARENTS WHERE Key = ") + quote +
                        QStringLiteral("O'BRIEN") + quote,
                    QStringLiteral("Key")),
              QStringList({"O'BRIEN"}));
    // A number run into a keyword, a value in apostrophes, Like with the store's wildcard.
    EXPECT_EQ(query(QStringLiteral(
                        "SELECT Key FROM PARENTS WHERE (Type = 12AND Key <> 'A') ORDER BY Key"),
                    QStringLiteral("Key")),
              QStringList({"b", "B2", "O'BRIEN"}));
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM PARENTS WHERE Key Like ") + quote +
                        QStringLiteral("b*") + quote + QStringLiteral(" ORDER BY Key"),
                    QStringLiteral("Key")),
              QStringList({"b", "B2"}));
    // A double quote inside a value breaks the text of the query.
    EXPECT_STORE_ERROR(
        db.OpenRecordset(QStringLiteral("SELECT * FROM PARENTS WHERE Key = \"A\"B\"")),
        err::SyntaxErrorInQueryExpression);
    EXPECT_STORE_ERROR(db.OpenRecordset(QStringLiteral("SELECT * FROM Nowhere")),
                       err::CannotFindInputTable);
    EXPECT_STORE_ERROR(db.OpenRecordset(QStringLiteral("Nowhere"), dbOpenTable),
                       err::ObjectNotFound);
    // Text compares and sorts without regard to case.
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM PARENTS WHERE Key = 'o''brien'"),
                    QStringLiteral("Key")),
              QStringList({"O'BRIEN"}));
}

// The orphan sweep's query: concepts without a parent, through a LEFT JOIN, deleted through
// the dynaset.
TEST_F(StoreTest, LeftJoinDynasetWithDistinctRowDeletesItsRows)
{
    for (const char *k : {"ALONE", "FAMILY", "EMPTY"})
        addParent(QString::fromLatin1(k));
    addChild(QStringLiteral("FAMILY"), QStringLiteral("1"));
    addChild(QStringLiteral("FAMILY"), QStringLiteral("2"));
    Recordset rs = db.OpenRecordset(
        QStringLiteral("SELECT DISTINCTROW PARENTS.Key AS Who, PARENTS.Type FROM PARENTS LEFT JOIN "
                       "Children ON PARENTS.Key = Children.Parent WHERE ((PARENTS.Type <> 100) AND "
                       "(Children.Parent Is Null)) ORDER BY PARENTS.Key"),
        dbOpenDynaset);
    QStringList deleted;
    while (!rs.Eof()) {
        deleted << rs.Fields(u"Who").Text();
        rs.Edit();
        rs.Delete();
        rs.MoveNext();
    }
    EXPECT_EQ(deleted, QStringList({"ALONE", "EMPTY"}));
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM PARENTS"), QStringLiteral("Key")),
              QStringList({"FAMILY"}));

    Recordset twice = db.OpenRecordset(
        QStringLiteral("SELECT DISTINCTROW PARENTS.Key FROM PARENTS INNER JOIN Children ON "
                       "PARENTS.Key = Children.Parent"),
        dbOpenDynaset);
    twice.MoveLast();
    EXPECT_EQ(twice.RecordCount(), 1);
}

// One Update through a one-to-one join writes both tables; the joined key is copied across.
TEST_F(StoreTest, JoinDynasetAddsAndEditsBothTables)
{
    addParent(QStringLiteral("P"));
    Recordset rs = db.OpenRecordset(
        QStringLiteral("SELECT PARENTS.Key, PARENTS.Info, Children.Value FROM PARENTS INNER JOIN "
                       "Children ON PARENTS.Key = Children.Parent"),
        dbOpenDynaset);
    EXPECT_EQ(rs.RecordCount(), 0);
    rs.AddNew();
    rs.Collect(u"Key", QStringLiteral("Q"));
    rs.Collect(u"Value", QStringLiteral("child of Q"));
    rs.Update();
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM Children"), QStringLiteral("Parent")),
              QStringList({"Q"}));
    rs.MoveFirst();
    EXPECT_EQ(rs.Fields(u"Value").Text(), QStringLiteral("child of Q"));
    rs.Edit();
    rs.Collect(u"Info", QStringLiteral("parent info"));
    rs.Collect(u"Value", QStringLiteral("changed"));
    rs.Update();
    EXPECT_EQ(
        query(QStringLiteral("SELECT * FROM PARENTS WHERE Key = 'Q'"), QStringLiteral("Info")),
        QStringList({"parent info"}));
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM Children"), QStringLiteral("Value")),
              QStringList({"changed"}));
}
