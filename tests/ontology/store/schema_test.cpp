#include "core/process.h"
#include "core/store/errors.h"
#include "ontology/store/schema.h"
#include "support/temp_store.h"

#include <QFileInfo>

using namespace lx;
using namespace lx::store;

namespace {

struct ExpectedField {
    const char *name;
    int type;
    int size;
    bool zeroLength;
    bool autoNumber;
};

struct ExpectedTable {
    const char *name;
    std::vector<ExpectedField> fields;
    // "Name:Field,Field" with a leading '*' for the primary index.
    std::vector<const char *> indexes;
};

// The ontology file, written out by hand from the file's description.
const std::vector<ExpectedTable> &expectedTables()
{
    static const std::vector<ExpectedTable> tables = {
        {"CONCEPTS",
         {{"Concept", dbText, 255, false, false},
          {"Definition", dbMemo, 0, false, false},
          {"Type", dbByte, 0, false, false},
          {"Subset_ID", dbByte, 0, false, false}},
         {"*Concept:Concept"}},
        {"Names",
         {{"Name_ID", dbLong, 0, false, true},
          {"Concept", dbText, 255, false, false},
          {"Lang_ID", dbText, 2, false, false},
          {"Name", dbText, 255, false, false}},
         {"*Name_ID:Name_ID", "Concept:Concept", "Lang_ID:Lang_ID"}},
        {"Languages",
         {{"Lang_ID", dbText, 2, false, false},
          {"Language", dbText, 255, false, false},
          {"Show", dbBoolean, 0, false, false}},
         {"*Lang_ID:Lang_ID", "Language:Language"}},
        {"TermBases", {{"DBName", dbMemo, 0, false, false}}, {}},
        {"ISA",
         {{"Concept", dbText, 255, false, false}, {"ISA", dbText, 255, false, false}},
         {"*ISA:Concept,ISA"}},
        {"ATTRIBUTES",
         {{"Property_ID", dbLong, 0, false, true},
          {"Concept", dbText, 255, false, false},
          {"Attribute", dbText, 50, false, false},
          {"Default", dbBoolean, 0, false, false},
          {"Value", dbMemo, 0, false, false}},
         {"*IdxProps:Property_ID"}},
        {"RELATIONS",
         {{"Relation_ID", dbLong, 0, false, true},
          {"Concept1", dbText, 255, false, false},
          {"Rel", dbText, 255, false, false},
          {"Default", dbBoolean, 0, false, false},
          {"Concept2", dbText, 255, false, false}},
         {"*IdxRels:Relation_ID"}},
        {"INVERSES",
         {{"Relation", dbText, 255, false, false}, {"Inverse", dbText, 255, false, false}},
         {"*Rel-Inv:Relation,Inverse", "Relation:Relation", "Inverse:Inverse"}},
        {"Notes",
         {{"Note_ID", dbLong, 0, false, true},
          {"Concept", dbText, 255, false, false},
          {"Note", dbMemo, 0, true, false},
          {"Date", dbDate, 0, false, false}},
         {"*IdxNote:Note_ID", "Concept:Concept"}},
        {"MetaData",
         {{"MetaData_ID", dbLong, 0, false, true},
          {"Name", dbText, 25, false, false},
          {"Created", dbDate, 0, false, false},
          {"Modified", dbDate, 0, false, false},
          {"Owner", dbText, 150, true, false},
          {"Author", dbText, 200, true, false},
          {"Contact", dbText, 150, true, false},
          {"Description", dbText, 255, true, false},
          {"MaxParents", dbByte, 0, false, false},
          {"ListTop", dbByte, 0, false, false},
          {"DefLang", dbText, 2, false, false},
          {"Naming", dbBoolean, 0, false, false},
          {"AutoName", dbByte, 0, false, false},
          {"ActiveSet", dbByte, 0, false, false}},
         {"*IdxMD:MetaData_ID"}},
        {"Subsets",
         {{"Subset_ID", dbByte, 0, false, false}, {"Subset", dbText, 65, false, false}},
         {"*Subset_ID:Subset_ID", "Subset:Subset"}},
        {"Inherit",
         {{"Attr", dbText, 255, false, false},
          {"Value", dbText, 255, false, false},
          {"From", dbText, 255, false, false}},
         {"*AttrVal:Attr,Value", "Attr:Attr", "Value:Value", "From:From"}},
    };
    return tables;
}

QString describe(const Index &idx)
{
    QStringList fields;
    for (const Field &f : idx.Fields)
        fields << f.Name;
    return (idx.Primary ? QStringLiteral("*") : QString()) + idx.Name + QLatin1Char(':') +
           fields.join(QLatin1Char(','));
}

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

TEST_F(OntologySchemaTest, ANewFileHoldsExactlyTheTablesFieldsIndexesAndRelations)
{
    const std::vector<TableDef> tables = db.TableDefs();
    ASSERT_EQ(tables.size(), expectedTables().size());
    for (size_t t = 0; t < tables.size(); ++t) {
        const ExpectedTable &want = expectedTables()[t];
        const TableDef &got = tables[t];
        EXPECT_EQ(got.Name, QString::fromLatin1(want.name));
        ASSERT_EQ(got.Fields.size(), want.fields.size()) << want.name;
        for (size_t f = 0; f < want.fields.size(); ++f) {
            const Field &field = got.Fields[f];
            const ExpectedField &w = want.fields[f];
            EXPECT_EQ(field.Name, QString::fromLatin1(w.name)) << want.name;
            EXPECT_EQ(field.Type, w.type) << w.name;
            if (w.type == dbText) {
                EXPECT_EQ(field.Size, w.size) << w.name;
            }
            EXPECT_EQ(field.AllowZeroLength, w.zeroLength) << w.name;
            EXPECT_EQ(field.isAutoNumber(), w.autoNumber) << w.name;
        }
        QStringList gotIndexes, wantIndexes;
        for (const Index &idx : got.Indexes)
            gotIndexes << describe(idx);
        for (const char *idx : want.indexes)
            wantIndexes << QString::fromLatin1(idx);
        EXPECT_EQ(gotIndexes, wantIndexes) << want.name;
    }

    const QStringList wantRelations = {"ConceptsISA CONCEPTS.Concept ISA.Concept",
                                       "ConceptsISA2 CONCEPTS.Concept ISA.ISA",
                                       "ConceptsAttributes CONCEPTS.Concept ATTRIBUTES.Concept",
                                       "ConceptsAttributes2 CONCEPTS.Concept ATTRIBUTES.Attribute",
                                       "ConceptsRelations CONCEPTS.Concept RELATIONS.Concept1",
                                       "ConceptsRelations2 CONCEPTS.Concept RELATIONS.Concept2",
                                       "ConceptsRelations3 CONCEPTS.Concept RELATIONS.Rel",
                                       "ConceptsInverses1 CONCEPTS.Concept INVERSES.Relation",
                                       "ConceptsInverses2 CONCEPTS.Concept INVERSES.Inverse",
                                       "ConceptsNotes CONCEPTS.Concept Notes.Concept",
                                       "ConceptsNames CONCEPTS.Concept Names.Concept",
                                       "LanguagesNames Languages.Lang_ID Names.Lang_ID",
                                       "SubsetsConcepts Subsets.Subset_ID CONCEPTS.Subset_ID"};
    QStringList gotRelations;
    for (const Relation &r : db.Relations()) {
        EXPECT_EQ(r.Attributes, 4352) << r.Name.toStdString();
        ASSERT_EQ(r.Fields.size(), 1u);
        gotRelations << QStringLiteral("%1 %2.%3 %4.%5")
                            .arg(r.Name, r.Table, r.Fields[0].Name, r.ForeignTable,
                                 r.Fields[0].ForeignName);
    }
    EXPECT_EQ(gotRelations, wantRelations);
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
