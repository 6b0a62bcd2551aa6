#include "core/store/errors.h"
#include "support/schema_text.h"
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

// Every table with its fields in order, their types, sizes and flags, every index, and every
// relation with its cascades.
TEST_F(TermbaseSchemaTest, TheFileHoldsExactlyTheseTablesIndexesAndRelations)
{
    const QString written = QStringLiteral(R"(
table CONCEPTS: Concept Text(255); index Concept(Concept) primary
table datcats: categoryID Text(10), GI_name Text(15), type Text(32), value_type Text(9),
    needs_lang Boolean, forms_link Boolean, parentCatID Text(10);
    index categoryID(categoryID) primary; index parentCatID(parentCatID)
table datcats_names: categoryID Text(10), langID Text(3), name Text(255);
    index cat-lang(categoryID, langID) primary
table elements: elemID Long, categoryID Text(10), parentID Long;
    index elemID(elemID) primary; index categoryID(categoryID); index parentID(parentID)
table charsets: charsetID Text(20), description Memo, wsd Memo;
    index charsetID(charsetID) primary
table date_values: elemID Long, value Date; index elemID(elemID) primary
table number_values: elemID Long, value Long; index elemID(elemID) primary
table picklist_values: elemID Long, value Text(255); index elemID(elemID) primary
table ref_values: elemID Long, value Text(255); index elemID(elemID) primary; index value(value)
table text_values: elemID Long, value Memo; index elemID(elemID) primary
table elements_use_lang: elemID Long, langID Text(3);
    index elemID(elemID) primary; index langID(langID)
table langs: langID Text(3), description Memo, charsetID Text(20), wsd Memo,
    collating_sequence Memo, noise_list Memo, order Byte;
    index langID(langID) primary; index charsetID(charsetID)
table MetaData: MetaID Long autonumber, Name Text(25), Created Date, Modified Date,
    Owner Text(150) zero-length, Author Text(200) zero-length, Contact Text(150) zero-length,
    Description Text(255) zero-length, Ontology Text(255), DCLang Text(3), DCList Text(50),
    CSBrowser Boolean; index langID(MetaID) primary
table picklists: categoryID Text(10), value Text(255); index elemID(categoryID, value) primary
table pointers: elemID Long, targetID Long;
    index elem-target(elemID, targetID) primary; index elemID(elemID); index targetID(targetID)
table TE_CONCEPTS: elemID Long, Concept Text(255); index elemID(elemID) primary
table TERMS: elemID Long, term Memo, langID Text(3);
    index elemID(elemID) primary; index langID(langID)
table valid_families: parentCategoryID Text(10), childCategoryID Text(10), occurrence Text(1);
    index parent-child(parentCategoryID, childCategoryID) primary
relation elements-TERMS: elements.elemID -> TERMS.elemID cascade-update cascade-delete
relation elements_TE_CONCEPTS: elements.elemID -> TE_CONCEPTS.elemID
    cascade-update cascade-delete
relation Concepts-TE_CONCEPTS: CONCEPTS.Concept -> TE_CONCEPTS.Concept
    cascade-update cascade-delete
relation elements-elements: elements.elemID -> elements.parentID cascade-update cascade-delete
relation elements-pointers1: elements.elemID -> pointers.elemID cascade-update cascade-delete
relation elements-pointers2: elements.elemID -> pointers.targetID cascade-update cascade-delete
relation elements-numbers: elements.elemID -> number_values.elemID cascade-update cascade-delete
relation elements-refs: elements.elemID -> ref_values.elemID cascade-update cascade-delete
relation elements-texts: elements.elemID -> text_values.elemID cascade-update cascade-delete
relation elements-dates: elements.elemID -> date_values.elemID cascade-update cascade-delete
relation elements-picklists: elements.elemID -> picklist_values.elemID
    cascade-update cascade-delete
relation elements-elements_use_lang: elements.elemID -> elements_use_lang.elemID
    cascade-update cascade-delete
relation langs-elements_use_lang: langs.langID -> elements_use_lang.langID
    cascade-update cascade-delete
relation langs-datcats_names: langs.langID -> datcats_names.langID cascade-update cascade-delete
relation charsets-langs: charsets.charsetID -> langs.charsetID cascade-update cascade-delete
relation datcats-elements: datcats.categoryID -> elements.categoryID
    cascade-update cascade-delete
relation datcats-datcats_names: datcats.categoryID -> datcats_names.categoryID
    cascade-update cascade-delete
relation datcats-datcats: datcats.categoryID -> datcats.parentCatID cascade-update cascade-delete
relation datcats-valid_families1: datcats.categoryID -> valid_families.parentCategoryID
    cascade-update cascade-delete
relation datcats-valid_families2: datcats.categoryID -> valid_families.childCategoryID
    cascade-update cascade-delete
relation datcats-picklists: datcats.categoryID -> picklists.categoryID
    cascade-update cascade-delete
)");
    EXPECT_EQ(SchemaText(createTermbase()).toStdString(), SchemaLines(written).toStdString());
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
