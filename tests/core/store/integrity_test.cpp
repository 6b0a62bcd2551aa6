#include "store_fixture.h"

using namespace lx::store;

TEST_F(StoreTest, ADuplicateKeyFailsAndLeavesTheRowInHandUnsaved)
{
    addParent(QStringLiteral("A"));
    Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    rs.AddNew();
    rs.Collect(u"Key", QStringLiteral("a")); // keys compare without case
    EXPECT_STORE_ERROR(rs.Update(), err::DuplicateKey);
    EXPECT_EQ(rs.Fields(u"Key").Text(), QStringLiteral("a")); // still in hand
    rs.Collect(u"Key", QStringLiteral("B"));
    rs.Update();
    EXPECT_EQ(rs.RecordCount(), 2);
}

TEST_F(StoreTest, FieldRulesAreEnforced)
{
    Recordset rs = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    rs.AddNew();
    rs.Collect(u"Key", QString(21, QLatin1Char('k')));
    EXPECT_STORE_ERROR(rs.Update(), err::FieldTooSmall);
    rs.Collect(u"Key", QString(20, QLatin1Char('k')));
    rs.Collect(u"Info", QString());
    EXPECT_STORE_ERROR(rs.Update(), err::ZeroLengthString);
    rs.Collect(u"Info", QVariant());
    rs.Collect(u"Type", 256);
    EXPECT_STORE_ERROR(rs.Update(), err::Overflow);
    rs.Collect(u"Type", QStringLiteral("many"));
    EXPECT_STORE_ERROR(rs.Update(), err::DataTypeConversion);
    rs.Collect(u"Type", 255);
    rs.Update();
    rs.AddNew();
    EXPECT_STORE_ERROR(rs.Update(), err::NullInIndex); // no key
    rs.CancelUpdate();
    EXPECT_STORE_ERROR(rs.Update(), err::UpdateWithoutEdit);

    // AllowZeroLength lets the empty string in; Null read as text is an error.
    addParent(QStringLiteral("P"));
    addChild(QStringLiteral("P"), QString());
    Recordset children = db.OpenRecordset(QStringLiteral("Children"), dbOpenSnapshot);
    EXPECT_EQ(children.Fields(u"Value").Text(), QString());
    EXPECT_FALSE(children.Fields(u"Value").Value().isNull());
    EXPECT_STORE_ERROR(children.Fields(u"Date").Text(), err::InvalidUseOfNull);
}

TEST_F(StoreTest, RelationsRequireTheirParentAndCascadeUpdatesAndDeletes)
{
    addParent(QStringLiteral("Old"));
    addChild(QStringLiteral("Old"), QStringLiteral("one"));
    addChild(QStringLiteral("old"), QStringLiteral("two")); // joins without regard to case
    try {
        addChild(QStringLiteral("Nobody"), QStringLiteral("three"));
        ADD_FAILURE() << "orphan accepted";
    } catch (const StoreError &e) {
        EXPECT_EQ(e.number(), err::RelatedRecordRequired);
        EXPECT_TRUE(e.description().contains(QStringLiteral("'PARENTS'")))
            << e.description().toStdString();
    }

    Recordset parents = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenDynaset);
    parents.FindFirst(QStringLiteral("Key = \"Old\""));
    parents.Edit();
    parents.Collect(u"Key", QStringLiteral("New"));
    parents.Update();
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM Children ORDER BY Id"), QStringLiteral("Parent")),
              QStringList({"New", "New"}));

    parents.FindFirst(QStringLiteral("Key = \"New\""));
    parents.Delete();
    EXPECT_TRUE(query(QStringLiteral("SELECT * FROM Children"), QStringLiteral("Id")).isEmpty());
}

TEST_F(StoreTest, AutoNumbersCountOnAndAreNotReused)
{
    addParent(QStringLiteral("P"));
    for (int i = 0; i < 3; ++i)
        addChild(QStringLiteral("P"), QString::number(i));
    Recordset rs = db.OpenRecordset(QStringLiteral("Children"), dbOpenTable);
    rs.MoveLast();
    rs.Delete();
    rs.AddNew();
    rs.Collect(u"Parent", QStringLiteral("P"));
    rs.Update();
    rs.SetBookmark(rs.LastModified());
    EXPECT_EQ(rs.Fields(u"Id").Value().toInt(), 4);
}

TEST_F(StoreTest, ARelationOverRowsThatBreakItIsRefusedAndNothingIsLost)
{
    TableDef t = db.CreateTableDef(QStringLiteral("Loose"));
    t.Fields.push_back(t.CreateField(QStringLiteral("Ref"), dbText, 20));
    db.Append(t);
    {
        Recordset rs = db.OpenRecordset(QStringLiteral("Loose"));
        rs.AddNew();
        rs.Collect(u"Ref", QStringLiteral("nowhere"));
        rs.Update();
    }
    Relation rel = db.CreateRelation(QStringLiteral("ParentsLoose"), QStringLiteral("PARENTS"),
                                     QStringLiteral("Loose"), dbRelationDeleteCascades);
    Field f = rel.CreateField(QStringLiteral("Key"));
    f.ForeignName = QStringLiteral("Ref");
    rel.Fields.push_back(f);
    EXPECT_STORE_ERROR(db.Append(rel), err::RelatedRecordRequired);
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM Loose"), QStringLiteral("Ref")),
              QStringList({"nowhere"}));
    EXPECT_EQ(db.Relations().size(), 1u);
    EXPECT_STORE_ERROR(db.Append(t), err::TableExists);
}
