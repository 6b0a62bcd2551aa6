#include "core/process.h"
#include "core/store/errors.h"
#include "ontology/store/schema.h"
#include "ontology/store/seed.h"
#include "support/seed_home.h"
#include "support/table_rows.h"
#include "support/temp_store.h"

#include <QFileInfo>

using namespace lx;
using namespace lx::store;
using namespace lx::test;

namespace {

class NewOntologyTest : public ::testing::Test {
protected:
    void SetUp() override { ResetProcessState(); }
    void TearDown() override { ResetProcessState(); }

    Database create()
    {
        Process().OntoPath = home.path(QStringLiteral("new.ont"));
        return CreateOntologySchema(Process().OntoPath);
    }

    SeedHome home;
};

} // namespace

TEST_F(NewOntologyTest, HoldsTheSeedRowsAndNothingElse)
{
    Database db = create();
    EXPECT_EQ(Process().OntoDB.Name(), db.Name());
    EXPECT_EQ(TableRows(db, QStringLiteral("Subsets"), {u"Subset_ID", u"Subset"}),
              SourceRows("subsets.tsv"));
    EXPECT_EQ(TableRows(db, QStringLiteral("CONCEPTS"),
                        {u"Concept", u"Type", u"Subset_ID", u"Definition"}),
              SourceRows("concepts.tsv"));
    EXPECT_EQ(TableRows(db, QStringLiteral("ISA"), {u"Concept", u"ISA"}), SourceRows("isa.tsv"));
    EXPECT_EQ(TableRows(db, QStringLiteral("INVERSES"), {u"Relation", u"Inverse"}),
              SourceRows("inverses.tsv"));
    EXPECT_EQ(TableRows(db, QStringLiteral("RELATIONS"), {u"Concept1", u"Rel", u"Concept2"}),
              SourceRows("relations.tsv"));
    EXPECT_EQ(TableRows(db, QStringLiteral("Languages"), {u"Lang_ID", u"Language", u"Show"}),
              SourceRows("languages.tsv"));

    // No seeded slot is a default, so none shows " (by default)".
    // A Null would read as a default in the inheritance rows: every row must be False.
    EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM RELATIONS WHERE Default = False")),
              Count(db, QStringLiteral("SELECT * FROM RELATIONS")));
    for (const char *table : {"Names", "ATTRIBUTES", "Notes", "TermBases", "MetaData", "Inherit"})
        EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM %1").arg(QLatin1String(table))), 0)
            << table;
}

// The seed tool makes sure these concepts are there; the program also relies on their Type.
TEST_F(NewOntologyTest, TheConceptsTheProgramNamesHaveTheirType)
{
    Database db = create();
    const QStringList rows = TableRows(db, QStringLiteral("CONCEPTS"), {u"Concept", u"Type"});
    for (const char *row :
         {"ALL\t100", "OBJECT\t1", "PHYSICAL-OBJECT\t1", "MENTAL-OBJECT\t1", "INTANGIBLE-OBJECT\t1",
          "SOCIAL-OBJECT\t1", "EVENT\t2", "PHYSICAL-EVENT\t2", "MENTAL-EVENT\t2", "SOCIAL-EVENT\t2",
          "ATTRIBUTE\t3", "RELATION\t4", "PROPERTY\t14", "DOMAIN\t14", "RANGE\t14", "*NOTHING*\t5"})
        EXPECT_TRUE(rows.contains(QLatin1String(row))) << row;
}

TEST_F(NewOntologyTest, AMissingSeedFileIsAStoreErrorAndLeavesTheNewFile)
{
    ASSERT_TRUE(QFile::remove(SeedDatabasePath()));
    EXPECT_STORE_ERROR(create(), err::FileNotFound);
    EXPECT_TRUE(QFileInfo::exists(Process().OntoPath));
}

// The copy has no handling of its own: an empty seed table stops it at MoveFirst, with what was
// copied before it left in the new file.
TEST_F(NewOntologyTest, AnEmptySeedTableStopsTheCopyHalfWay)
{
    {
        Database seed = DBEngine::OpenDatabase(SeedDatabasePath(), false, false, kSeedConnect);
        Recordset rs = seed.OpenRecordset(QStringLiteral("Languages"), dbOpenTable);
        while (!rs.Eof()) {
            rs.Delete();
            rs.MoveNext();
        }
    }
    EXPECT_STORE_ERROR(create(), err::NoCurrentRecord);
    Database db = DBEngine::OpenDatabase(Process().OntoPath);
    EXPECT_EQ(TableRows(db, QStringLiteral("ISA"), {u"Concept", u"ISA"}), SourceRows("isa.tsv"));
    EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM Languages")), 0);
}

TEST(EnsureSeedFile, PutsTheBuiltInCopyWhereItIsMissing)
{
    SeedHome home(false);
    ASSERT_FALSE(QFileInfo::exists(SeedDatabasePath()));
    EXPECT_TRUE(EnsureSeedFile());

    QFile copy(SeedDatabasePath()), builtIn(QStringLiteral(":/lexarbor/res.dat"));
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
    ASSERT_TRUE(builtIn.open(QIODevice::ReadOnly));
    EXPECT_EQ(copy.readAll(), builtIn.readAll());
    EXPECT_TRUE(QFileInfo(SeedDatabasePath()).isWritable());
}

TEST(EnsureSeedFile, LeavesAnExistingFileAlone)
{
    SeedHome home(false);
    QFile own(SeedDatabasePath());
    ASSERT_TRUE(own.open(QIODevice::WriteOnly));
    own.write("a seed of the user's own");
    own.close();

    EXPECT_TRUE(EnsureSeedFile());
    ASSERT_TRUE(own.open(QIODevice::ReadOnly));
    EXPECT_EQ(own.readAll(), QByteArray("a seed of the user's own"));
}

TEST(EnsureSeedFile, SaysSoWhenTheFolderCantTakeIt)
{
    SeedHome home(false);
    qputenv("LEXARBOR_HOME", QFile::encodeName(home.path(QStringLiteral("no/such/folder"))));
    EXPECT_FALSE(EnsureSeedFile());
}
