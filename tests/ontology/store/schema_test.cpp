#include "core/process.h"
#include "core/store/errors.h"
#include "ontology/store/schema.h"
#include "support/schema_text.h"
#include "support/temp_store.h"

#include <QFileInfo>

using namespace lx;
using namespace lx::store;
using namespace lx::test;

namespace {

class OntologySchemaTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ResetProcessState();
        // The tables alone: these tests fill them by hand, without the seed rows.
        db = DBEngine::Workspaces(0).CreateDatabase(folder.path(QStringLiteral("new.ont")),
                                                    dbLangGeneral, dbVersion40);
        BuildOntologyTables(db);
    }
    void TearDown() override { ResetProcessState(); }

    void add(const QString &table,
             std::initializer_list<std::pair<const char16_t *, QVariant>> values)
    {
        Recordset rs = db.OpenRecordset(table, dbOpenTable);
        rs.AddNew();
        for (const auto &[field, value] : values)
            rs.Collect(QStringView(field), value);
        rs.Update();
    }
    void addConcept(const QString &id, int type = ctObject, int subset = 1)
    {
        add(QStringLiteral("CONCEPTS"),
            {{u"Concept", id}, {u"Type", type}, {u"Subset_ID", subset}});
    }
    long count(const QString &sql)
    {
        Recordset rs = db.OpenRecordset(sql, dbOpenSnapshot);
        return rs.RecordCount();
    }

    TempFolder folder;
    Database db;
};

} // namespace

// Every table with its fields in order, their types, sizes and flags, every index, and every
// relation with its cascades.
TEST_F(OntologySchemaTest, TheFileHoldsExactlyTheseTablesIndexesAndRelations)
{
    const QString written = QStringLiteral(R"(
table CONCEPTS: Concept Text(255), Definition Memo, Type Byte, Subset_ID Byte;
    index Concept(Concept) primary
table Names: Name_ID Long autonumber, Concept Text(255), Lang_ID Text(2), Name Text(255);
    index Name_ID(Name_ID) primary; index Concept(Concept); index Lang_ID(Lang_ID)
table Languages: Lang_ID Text(2), Language Text(255), Show Boolean;
    index Lang_ID(Lang_ID) primary; index Language(Language)
table TermBases: DBName Memo
table ISA: Concept Text(255), ISA Text(255); index ISA(Concept, ISA) primary
table ATTRIBUTES: Property_ID Long autonumber, Concept Text(255), Attribute Text(50),
    Default Boolean, Value Memo; index IdxProps(Property_ID) primary
table RELATIONS: Relation_ID Long autonumber, Concept1 Text(255), Rel Text(255),
    Default Boolean, Concept2 Text(255); index IdxRels(Relation_ID) primary
table INVERSES: Relation Text(255), Inverse Text(255);
    index Rel-Inv(Relation, Inverse) primary; index Relation(Relation); index Inverse(Inverse)
table Notes: Note_ID Long autonumber, Concept Text(255), Note Memo zero-length, Date Date;
    index IdxNote(Note_ID) primary; index Concept(Concept)
table MetaData: MetaData_ID Long autonumber, Name Text(25), Created Date, Modified Date,
    Owner Text(150) zero-length, Author Text(200) zero-length, Contact Text(150) zero-length,
    Description Text(255) zero-length, MaxParents Byte, ListTop Byte, DefLang Text(2),
    Naming Boolean, AutoName Byte, ActiveSet Byte; index IdxMD(MetaData_ID) primary
table Subsets: Subset_ID Byte, Subset Text(65);
    index Subset_ID(Subset_ID) primary; index Subset(Subset)
table Inherit: Attr Text(255), Value Text(255), From Text(255);
    index AttrVal(Attr, Value) primary; index Attr(Attr); index Value(Value); index From(From)
relation ConceptsISA: CONCEPTS.Concept -> ISA.Concept cascade-update cascade-delete
relation ConceptsISA2: CONCEPTS.Concept -> ISA.ISA cascade-update cascade-delete
relation ConceptsAttributes: CONCEPTS.Concept -> ATTRIBUTES.Concept cascade-update cascade-delete
relation ConceptsAttributes2: CONCEPTS.Concept -> ATTRIBUTES.Attribute
    cascade-update cascade-delete
relation ConceptsRelations: CONCEPTS.Concept -> RELATIONS.Concept1 cascade-update cascade-delete
relation ConceptsRelations2: CONCEPTS.Concept -> RELATIONS.Concept2 cascade-update cascade-delete
relation ConceptsRelations3: CONCEPTS.Concept -> RELATIONS.Rel cascade-update cascade-delete
relation ConceptsInverses1: CONCEPTS.Concept -> INVERSES.Relation cascade-update cascade-delete
relation ConceptsInverses2: CONCEPTS.Concept -> INVERSES.Inverse cascade-update cascade-delete
relation ConceptsNotes: CONCEPTS.Concept -> Notes.Concept cascade-update cascade-delete
relation ConceptsNames: CONCEPTS.Concept -> Names.Concept cascade-update cascade-delete
relation LanguagesNames: Languages.Lang_ID -> Names.Lang_ID cascade-update cascade-delete
relation SubsetsConcepts: Subsets.Subset_ID -> CONCEPTS.Subset_ID cascade-update cascade-delete
)");
    // As a new connection reads it from the file.
    const QString path = db.Name();
    db.Close();
    const Database reopened = DBEngine::OpenDatabase(path);
    EXPECT_EQ(SchemaText(reopened).toStdString(), SchemaLines(written).toStdString());
}

TEST_F(OntologySchemaTest, CreatingOverAnExistingFileFailsAndLeavesIt)
{
    const QString path = db.Name();
    db.Close();
    const qint64 size = QFileInfo(path).size();
    EXPECT_STORE_ERROR(CreateOntologySchema(path), err::DatabaseExists);
    EXPECT_EQ(QFileInfo(path).size(), size);
}

TEST_F(OntologySchemaTest, IdentifierLengthsAndKeysAreTheFilesRules)
{
    add(QStringLiteral("Subsets"), {{u"Subset_ID", 1}, {u"Subset", QStringLiteral("General")}});
    add(QStringLiteral("Subsets"),
        {{u"Subset_ID", 2}, {u"Subset", QStringLiteral("General")}}); // same name is fine
    EXPECT_STORE_ERROR(addConcept(QString(256, QLatin1Char('A'))), err::FieldTooSmall);
    const QString longId(60, QLatin1Char('L'));
    addConcept(longId, ctAttribute);
    addConcept(QStringLiteral("THING"));
    EXPECT_STORE_ERROR(addConcept(QStringLiteral("thing")), err::DuplicateKey);
    EXPECT_STORE_ERROR(add(QStringLiteral("ATTRIBUTES"), {{u"Concept", QStringLiteral("THING")},
                                                          {u"Attribute", longId},
                                                          {u"Value", QStringLiteral("v")}}),
                       err::FieldTooSmall);
    addConcept(QStringLiteral("PARENT"));
    add(QStringLiteral("ISA"),
        {{u"Concept", QStringLiteral("THING")}, {u"ISA", QStringLiteral("PARENT")}});
    EXPECT_STORE_ERROR(add(QStringLiteral("ISA"), {{u"Concept", QStringLiteral("THING")},
                                                   {u"ISA", QStringLiteral("PARENT")}}),
                       err::DuplicateKey);
    EXPECT_STORE_ERROR(add(QStringLiteral("ISA"), {{u"Concept", QStringLiteral("THING")},
                                                   {u"ISA", QStringLiteral("NOBODY")}}),
                       err::RelatedRecordRequired);
}

// A rename of a concept reaches every link, slot, name and note; deleting a subset takes its
// concepts and all that names them; deleting a language takes its names.
TEST_F(OntologySchemaTest, CascadesReachEveryTableThatNamesAConcept)
{
    add(QStringLiteral("Subsets"), {{u"Subset_ID", 1}, {u"Subset", QStringLiteral("General")}});
    add(QStringLiteral("Subsets"), {{u"Subset_ID", 2}, {u"Subset", QStringLiteral("Doomed")}});
    add(QStringLiteral("Languages"), {{u"Lang_ID", QStringLiteral("en")},
                                      {u"Language", QStringLiteral("English")},
                                      {u"Show", true}});
    add(QStringLiteral("Languages"), {{u"Lang_ID", QStringLiteral("es")},
                                      {u"Language", QStringLiteral("Spanish")},
                                      {u"Show", false}});
    for (const char *c : {"ALL", "OBJECT", "HAS-PART", "PART-OF", "COLOR", "DOMAIN"})
        addConcept(QString::fromLatin1(c));
    addConcept(QStringLiteral("CAR"), ctObject, 2);
    add(QStringLiteral("ISA"),
        {{u"Concept", QStringLiteral("CAR")}, {u"ISA", QStringLiteral("OBJECT")}});
    add(QStringLiteral("ISA"),
        {{u"Concept", QStringLiteral("OBJECT")}, {u"ISA", QStringLiteral("ALL")}});
    add(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("OBJECT")},
                                      {u"Rel", QStringLiteral("HAS-PART")},
                                      {u"Default", false},
                                      {u"Concept2", QStringLiteral("OBJECT")}});
    add(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("HAS-PART")},
                                      {u"Rel", QStringLiteral("DOMAIN")},
                                      {u"Default", false},
                                      {u"Concept2", QStringLiteral("OBJECT")}});
    add(QStringLiteral("INVERSES"),
        {{u"Relation", QStringLiteral("HAS-PART")}, {u"Inverse", QStringLiteral("PART-OF")}});
    add(QStringLiteral("ATTRIBUTES"), {{u"Concept", QStringLiteral("OBJECT")},
                                       {u"Attribute", QStringLiteral("COLOR")},
                                       {u"Default", true},
                                       {u"Value", QStringLiteral("grey")}});
    add(QStringLiteral("Names"), {{u"Concept", QStringLiteral("OBJECT")},
                                  {u"Lang_ID", QStringLiteral("en")},
                                  {u"Name", QStringLiteral("object")}});
    add(QStringLiteral("Names"), {{u"Concept", QStringLiteral("OBJECT")},
                                  {u"Lang_ID", QStringLiteral("es")},
                                  {u"Name", QStringLiteral("objeto")}});
    add(QStringLiteral("Notes"), {{u"Concept", QStringLiteral("OBJECT")},
                                  {u"Note", QString()},
                                  {u"Date", QDateTime::currentDateTime()}});

    {
        Recordset rs = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenDynaset);
        rs.FindFirst(QStringLiteral("Concept = \"OBJECT\""));
        rs.Edit();
        rs.Collect(u"Concept", QStringLiteral("THING"));
        rs.Update();
        rs.FindFirst(QStringLiteral("Concept = \"HAS-PART\""));
        rs.Edit();
        rs.Collect(u"Concept", QStringLiteral("HAS-AS-PART"));
        rs.Update();
    }
    EXPECT_EQ(count(QStringLiteral("SELECT * FROM ISA WHERE ISA = 'THING' OR Concept = 'THING'")),
              2);
    EXPECT_EQ(count(QStringLiteral("SELECT * FROM RELATIONS WHERE Concept1 = 'THING' AND Rel = "
                                   "'HAS-AS-PART' AND Concept2 = 'THING'")),
              1);
    EXPECT_EQ(count(QStringLiteral(
                  "SELECT * FROM RELATIONS WHERE Concept1 = 'HAS-AS-PART' AND Concept2 = 'THING'")),
              1);
    EXPECT_EQ(count(QStringLiteral("SELECT * FROM INVERSES WHERE Relation = 'HAS-AS-PART'")), 1);
    EXPECT_EQ(count(QStringLiteral(
                  "SELECT * FROM ATTRIBUTES WHERE Concept = 'THING' AND Default = True")),
              1);
    EXPECT_EQ(count(QStringLiteral("SELECT * FROM Names WHERE Concept = 'THING'")), 2);
    EXPECT_EQ(count(QStringLiteral("SELECT * FROM Notes WHERE Concept = 'THING'")), 1);

    {
        Recordset rs = db.OpenRecordset(QStringLiteral("Languages"), dbOpenTable);
        rs.SetIndex(QStringLiteral("Lang_ID"));
        rs.Seek(u"=", QStringLiteral("es"));
        rs.Delete();
    }
    EXPECT_EQ(count(QStringLiteral("SELECT * FROM Names")), 1);

    {
        Recordset rs = db.OpenRecordset(QStringLiteral("Subsets"), dbOpenTable);
        rs.SetIndex(QStringLiteral("Subset_ID"));
        rs.Seek(u"=", 2);
        rs.Delete();
    }
    EXPECT_EQ(count(QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = 'CAR'")), 0);
    EXPECT_EQ(count(QStringLiteral("SELECT * FROM ISA")), 1);

    {
        Recordset rs = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenDynaset);
        rs.FindFirst(QStringLiteral("Concept = \"THING\""));
        rs.Edit();
        rs.Delete();
    }
    for (const char *table : {"ISA", "RELATIONS", "ATTRIBUTES", "Names", "Notes"})
        EXPECT_EQ(count(QStringLiteral("SELECT * FROM %1").arg(QString::fromLatin1(table))), 0)
            << table;
    EXPECT_EQ(count(QStringLiteral("SELECT * FROM INVERSES")), 1); // HAS-AS-PART / PART-OF stays
}
