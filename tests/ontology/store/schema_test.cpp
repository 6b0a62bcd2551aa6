#include "core/process.h"
#include "core/store/errors.h"
#include "ontology/store/schema.h"
#include "support/temp_store.h"

#include <QFileInfo>

using namespace lx;
using namespace lx::store;

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

TEST_F(OntologySchemaTest, TwelveTablesAndThirteenRelationsThatAllCascade)
{
    EXPECT_EQ(db.TableDefs().size(), 12u);
    EXPECT_EQ(db.Relations().size(), 13u);
    for (const Relation &r : db.Relations())
        EXPECT_EQ(r.Attributes, dbRelationUpdateCascades | dbRelationDeleteCascades)
            << r.Name.toStdString();
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
