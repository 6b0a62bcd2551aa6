#include "core/process.h"
#include "core/store/errors.h"
#include "ontology/store/schema.h"
#include "ontology/store/seed.h"
#include "support/seed_home.h"
#include "support/temp_store.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>

using namespace lx;
using namespace lx::store;

namespace {

// One seed source as text rows "value<tab>value...", its header line dropped.
QStringList SourceRows(const char *file)
{
    QFile f(QDir(QStringLiteral(LEXARBOR_SEED_SOURCES)).filePath(QString::fromLatin1(file)));
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << file;
    QStringList rows;
    bool header = true;
    for (const QString &line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'))) {
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (!std::exchange(header, false))
            rows << line;
    }
    rows.sort();
    return rows;
}

QString Text(const QVariant &v)
{
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    return v.toString();
}

QStringList TableRows(Database &db, const QString &table, std::initializer_list<QStringView> fields)
{
    QStringList rows;
    Recordset rs = db.OpenRecordset(table, dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext()) {
        QStringList values;
        for (QStringView f : fields)
            values << Text(rs.Value(f));
        rows << values.join(QLatin1Char('\t'));
    }
    rows.sort();
    return rows;
}

long Count(Database &db, const QString &sql)
{
    Recordset rs = db.OpenRecordset(sql, dbOpenSnapshot);
    if (rs.RecordCount() == 0)
        return 0;
    rs.MoveLast();
    return rs.RecordCount();
}

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
    EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM RELATIONS WHERE Default = True")), 0);
    for (const char *table : {"Names", "ATTRIBUTES", "Notes", "TermBases", "MetaData", "Inherit"})
        EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM %1").arg(QLatin1String(table))), 0)
            << table;
}

// What the rest of the program takes for granted in a new ontology.
TEST_F(NewOntologyTest, HasTheShapeTheProgramReliesOn)
{
    Database db = create();

    Recordset top =
        db.OpenRecordset(QStringLiteral("SELECT * FROM CONCEPTS WHERE Type = 100"), dbOpenSnapshot);
    ASSERT_FALSE(top.Eof());
    EXPECT_EQ(top.Value(u"Concept").toString(), QStringLiteral("ALL"));
    top.MoveNext();
    EXPECT_TRUE(top.Eof()) << "a second top concept";

    QHash<QString, int> type;
    for (Recordset rs = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenSnapshot); !rs.Eof();
         rs.MoveNext())
        type.insert(rs.Value(u"Concept").toString(), rs.Value(u"Type").toInt());
    const QList<std::pair<const char *, int>> named = {
        {"OBJECT", 1},         {"PHYSICAL-OBJECT", 1},
        {"MENTAL-OBJECT", 1},  {"INTANGIBLE-OBJECT", 1},
        {"SOCIAL-OBJECT", 1},  {"EVENT", 2},
        {"PHYSICAL-EVENT", 2}, {"MENTAL-EVENT", 2},
        {"SOCIAL-EVENT", 2},   {"ATTRIBUTE", 3},
        {"RELATION", 4},       {"PROPERTY", 14},
        {"DOMAIN", 14},        {"RANGE", 14},
        {"*NOTHING*", 5}};
    for (const auto &[name, t] : named)
        EXPECT_EQ(type.value(QString::fromLatin1(name), -1), t) << name;

    // The orphan sweep's own query finds nothing to delete.
    EXPECT_EQ(Count(db, QStringLiteral("SELECT DISTINCTROW CONCEPTS.Concept AS Conseto, "
                                       "CONCEPTS.Definition, CONCEPTS.Type FROM CONCEPTS LEFT "
                                       "JOIN ISA ON CONCEPTS.Concept = ISA.Concept WHERE "
                                       "((CONCEPTS.Type <> 100) AND (ISA.Concept Is Null))")),
              0);

    // Every relation has an inverse, stored both ways, and a domain and a range.
    QSet<QString> pairs, slots;
    QHash<QString, QString> inverse;
    for (Recordset rs = db.OpenRecordset(QStringLiteral("INVERSES"), dbOpenSnapshot); !rs.Eof();
         rs.MoveNext()) {
        pairs << rs.Value(u"Relation").toString() + QLatin1Char(' ') +
                     rs.Value(u"Inverse").toString();
        inverse.insert(rs.Value(u"Relation").toString(), rs.Value(u"Inverse").toString());
    }
    for (Recordset rs = db.OpenRecordset(QStringLiteral("RELATIONS"), dbOpenSnapshot); !rs.Eof();
         rs.MoveNext())
        slots << rs.Value(u"Concept1").toString() + QLatin1Char(' ') + rs.Value(u"Rel").toString();
    for (auto it = type.cbegin(); it != type.cend(); ++it) {
        if (it.value() != ctRelation)
            continue;
        const QString &r = it.key();
        EXPECT_TRUE(pairs.contains(inverse.value(r) + QLatin1Char(' ') + r)) << r.toStdString();
        EXPECT_TRUE(slots.contains(r + QStringLiteral(" DOMAIN"))) << r.toStdString();
        EXPECT_TRUE(slots.contains(r + QStringLiteral(" RANGE"))) << r.toStdString();
    }

    EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM Subsets WHERE Subset_ID = 1")), 1);
    EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM Languages WHERE Lang_ID = 'en'")), 1);
    EXPECT_EQ(Count(db, QStringLiteral("SELECT * FROM Languages")), 184);
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
