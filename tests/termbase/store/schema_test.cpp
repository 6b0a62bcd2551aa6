#include "core/store/errors.h"
#include "support/table_rows.h"
#include "support/temp_store.h"
#include "termbase_fixture.h"

#include <QDateTime>

using namespace lx;
using namespace lx::store;
using namespace lx::test;

namespace {

void AddElement(Database &db, int id, const char *category, int parent)
{
    AddRow(
        db, "elements",
        {{u"elemID", id}, {u"categoryID", QString::fromLatin1(category)}, {u"parentID", parent}});
}

using TermbaseSchemaTest = TermbaseFixture;

} // namespace

TEST_F(TermbaseSchemaTest, BuildsTheTablesAndRelationsOfTheFile)
{
    Database db = createTermbase();
    EXPECT_EQ(db.TableDefs().size(), 18u);
    EXPECT_EQ(db.Relations().size(), 21u);
    for (const Relation &r : db.Relations())
        EXPECT_EQ(r.Attributes, dbRelationUpdateCascades | dbRelationDeleteCascades)
            << r.Name.toStdString();
}

TEST_F(TermbaseSchemaTest, AnExistingFileIsRefused)
{
    createTermbase().Close();
    EXPECT_STORE_ERROR(CreateTermbaseSchema(termbasePath()), err::DatabaseExists);
}

TEST_F(TermbaseSchemaTest, DeletingAnElementTakesItsBranchValuesAndPointersAlong)
{
    Database db = createTermbase();
    const QString object = QStringLiteral("OBJECT");
    AddElement(db, 100, "0.3", 3);
    AddRow(db, "TE_CONCEPTS", {{u"elemID", 100}, {u"Concept", object}});
    AddElement(db, 101, "0.4", 100);
    AddRow(db, "elements_use_lang", {{u"elemID", 101}, {u"langID", QStringLiteral("en")}});
    AddElement(db, 102, "1", 101);
    AddRow(
        db, "TERMS",
        {{u"elemID", 102}, {u"term", QStringLiteral("object")}, {u"langID", QStringLiteral("en")}});
    AddElement(db, 103, "5.1", 100);
    AddRow(db, "text_values", {{u"elemID", 103}, {u"value", QStringLiteral("A thing.")}});
    // A cross-reference from elsewhere into the branch goes with its target.
    AddElement(db, 200, "0.3", 3);
    AddElement(db, 201, "10.18", 200);
    AddRow(db, "pointers", {{u"elemID", 201}, {u"targetID", 102}});

    Recordset entry = db.OpenRecordset(QStringLiteral("SELECT * FROM elements WHERE elemID = 100"),
                                       dbOpenDynaset);
    entry.Delete();
    entry.Close();

    EXPECT_EQ(
        Count(db, QStringLiteral("SELECT * FROM elements WHERE elemID >= 100 AND elemID < 200")),
        0);
    for (const char *table :
         {"TE_CONCEPTS", "elements_use_lang", "TERMS", "text_values", "pointers"})
        EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM %1").arg(QLatin1String(table))), 0)
            << table;
    EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM elements WHERE elemID >= 200")), 2);
    EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = 'OBJECT'")), 1);
}

TEST_F(TermbaseSchemaTest, KeysAndRelationsRefuseWhatDoesNotFit)
{
    Database db = createTermbase();
    AddElement(db, 100, "5.1", 3);
    AddRow(db, "text_values", {{u"elemID", 100}, {u"value", QStringLiteral("one")}});
    EXPECT_STORE_ERROR(
        AddRow(db, "text_values", {{u"elemID", 100}, {u"value", QStringLiteral("two")}}),
        err::DuplicateKey);
    EXPECT_STORE_ERROR(AddRow(db, "TE_CONCEPTS",
                              {{u"elemID", 100}, {u"Concept", QStringLiteral("NO-SUCH-CONCEPT")}}),
                       err::RelatedRecordRequired);
    EXPECT_STORE_ERROR(AddElement(db, 101, "99.99", 3), err::RelatedRecordRequired);
    // A category's parent must be there first.
    EXPECT_STORE_ERROR(
        AddRow(db, "datcats",
               {{u"categoryID", QStringLiteral("9.9.9")}, {u"parentCatID", QStringLiteral("9.9")}}),
        err::RelatedRecordRequired);
}

TEST_F(TermbaseSchemaTest, ANewFileHasNoMetaDataRowAndCSBrowserReadsFalseOnceWritten)
{
    Database db = createTermbase();
    EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM MetaData")), 0);
    AddRow(db, "MetaData",
           {{u"Name", QStringLiteral("t")}, {u"Created", QDateTime::currentDateTime()}});
    Recordset rs = db.OpenRecordset(QStringLiteral("MetaData"), dbOpenTable);
    EXPECT_FALSE(rs.Value(u"CSBrowser").toBool());
}
