#include "core/interaction.h"
#include "ontology/edit/edit_fixture.h"
#include "ontology/exchange/import.h"

#include <QFile>

using namespace lx;

namespace {

// An ontology with ALL at the top and ANIMAL below it, and the file to import.
class ImportTest : public EditTest {
protected:
    void SetUp() override
    {
        EditTest::SetUp();
        add(QStringLiteral("ALL"), 100);
        add(QStringLiteral("ANIMAL"), 1);
        add(QStringLiteral("DOMAIN"), 14);
        addRow(QStringLiteral("ISA"),
               {{u"Concept", QStringLiteral("ANIMAL")}, {u"ISA", QStringLiteral("ALL")}});
        import.FileName = folder.path(QStringLiteral("in.oxp"));
    }
    void add(const QString &id, int type)
    {
        addRow(QStringLiteral("CONCEPTS"), {{u"Concept", id},
                                            {u"Definition", QStringLiteral("Undefined")},
                                            {u"Type", type},
                                            {u"Subset_ID", 1}});
    }
    void write(const QByteArray &bytes)
    {
        QFile file(import.FileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QStringList rows(const QString &query, QStringView a, QStringView b)
    {
        QStringList out;
        store::Recordset rs = db.OpenRecordset(query, store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            out << rs.Value(a).toString() + QLatin1Char('|') + rs.Value(b).toString();
        return out;
    }

    OntologyImport import;
};

TEST_F(ImportTest, LinesAreClassifiedAndCutAtTheirFixedPlaces)
{
    EXPECT_EQ(ClassifyImportLine(QStringLiteral("(A DEFINITION VALUE \"x is-a y\")")), 1);
    EXPECT_EQ(ClassifyImportLine(QStringLiteral("(A EATS SEM B)")), 9);
    QStringList f;
    ASSERT_TRUE(ParseImportLine(QStringLiteral("(BIG BIRD IS-A VALUE ANIMAL 1)"), 1, f));
    EXPECT_EQ(f, (QStringList{"BIG BIRD", "ANIMAL", "1"}));
    // A top concept's three digits: the parent takes a blank and a digit, the type a 0.
    ASSERT_TRUE(ParseImportLine(QStringLiteral("(A IS-A VALUE P 100)"), 1, f));
    EXPECT_EQ(f, (QStringList{"A", "P 1", "0"}));
    ASSERT_TRUE(ParseImportLine(QStringLiteral("(A DEFINITION VALUE Undefined)"), 3, f));
    EXPECT_EQ(f[1], QStringLiteral("ndefine"));
    ASSERT_TRUE(ParseImportLine(QStringLiteral("(R DOMAIN DEFAULT X)"), 4, f));
    EXPECT_EQ(f[1], QStringLiteral("ULT X"));
    EXPECT_FALSE(ParseImportLine(QStringLiteral("(A B)"), 9, f));
    EXPECT_FALSE(ParseImportLine(QStringLiteral("(A IS-A)"), 1, f));
    EXPECT_FALSE(ParseImportLine(QStringLiteral("A IS-A VALUE B 1"), 1, f));
}

TEST_F(ImportTest, TheCheckCountsAndOneRecordOfAKindIsNotEnough)
{
    write("(BIRD IS-A VALUE ANIMAL 1)\r\n(BIRD DEFINITION VALUE \"Flies\")\r\nbroken\r\n");
    const QString log = import.CheckFile();
    EXPECT_TRUE(log.startsWith(QStringLiteral("Shallow parsing started on ")));
    EXPECT_TRUE(log.contains(QStringLiteral("- Error on line #: 3\r\n")));
    EXPECT_EQ(log.count(QStringLiteral("- 1 CONCEPT slots.")), 2); // the summary twice
    EXPECT_TRUE(
        log.contains(QStringLiteral("Nothing to import from file: \r\n") + import.FileName));
    EXPECT_TRUE(log.endsWith(QString(69, u'-') + QStringLiteral("\r\n\r\n")));
    EXPECT_FALSE(import.ImportEnabled);
    // A second check adds to the counters; the line count starts again.
    EXPECT_TRUE(
        import.CheckFile().contains(QStringLiteral("Note that this is a shallow parsing.")));
    EXPECT_EQ(import.Concepts, 2);
    EXPECT_EQ(import.LineCount, 3);
    EXPECT_TRUE(import.ImportEnabled);
}

TEST_F(ImportTest, TheImportAddsConceptsLinksDefinitionsAndDomains)
{
    // LF line ends, a parent nobody defines, a cycle, and definitions of absent concepts.
    write("(BIRD IS-A VALUE ANIMAL 1)\n(EGG IS-A VALUE NEST 2)\n(NEST IS-A VALUE EGG 2)\n"
          "(BIRD DEFINITION VALUE \"Flies \"high\"\")\n(GHOST DEFINITION VALUE \"Boo\")\n"
          "(ANIMAL DOMAIN SEM BIRD)\n(ANIMAL DOMAIN SEM NOBODY)\n");
    import.CheckFile();
    const QString log = import.Import();
    EXPECT_TRUE(log.contains(QStringLiteral("- 3 CONCEPT slots added.")));
    EXPECT_TRUE(
        log.contains(QStringLiteral("- 1 DEFINITION slots added.- 0 DEFINITION slots added.")));
    EXPECT_TRUE(log.contains(QStringLiteral("concept does not exists:\r\nGHOST")));
    EXPECT_TRUE(
        log.contains(QStringLiteral("Warning parsing line # 7 -> Concept ANIMAL or NOBODY")));
    EXPECT_LT(log.indexOf(QStringLiteral("GHOST")), log.indexOf(QStringLiteral("Import process")));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = 'NEST'"), u"Type",
                   u"Subset_ID"),
              QStringList{"2|"});
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = 'BIRD'"), u"Type",
                   u"Definition"),
              QStringList{"1|Flies \"high\""});
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM ISA WHERE Concept = 'NEST'"), u"ISA"),
              QStringList{"EGG"});

    // Again: no second concept or link, but every domain once more.
    EXPECT_FALSE(import.Import().contains(QStringLiteral("* Error importing line")));
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM ISA"), u"ISA").size(), 4);
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM RELATIONS WHERE Rel = 'DOMAIN'"), u"Concept2"),
              (QStringList{"BIRD", "BIRD"}));
}

TEST_F(ImportTest, DamagedLinesAreLoggedAndWhatWasThereStays)
{
    const QByteArray longId(300, 'X');
    write(
        "\xEF\xBB\xBF(A IS-A VALUE ALL 1)\r\n(B IS-A VALUE ALL 1)\r\n(\"Q IS-A VALUE ALL 1)\r\n(" +
        longId +
        " IS-A VALUE ALL 1)\r\n(C IS-A VALUE ALL x)\r\n(ANIMAL DEFINITION VALUE \"\")"
        "\r\n(ANIMAL DEFINITION VALUE \"cut off\r\n(B DEFINITION VALUE \"Bee\")");
    const QString check = import.CheckFile();
    EXPECT_TRUE(check.contains(QStringLiteral("- Error on line #: 1\r\n"))); // the mark
    EXPECT_TRUE(check.contains(QStringLiteral("- Error on line #: 7\r\n")));
    const QString log = import.Import();
    EXPECT_TRUE(log.contains(QStringLiteral("* Error importing line #: 3 -> ")));
    EXPECT_TRUE(log.contains(QStringLiteral("* Error importing line #: 4 -> ")));
    EXPECT_TRUE(log.contains(QStringLiteral("* Error importing line #: 6 -> ")));
    EXPECT_EQ(
        column(QStringLiteral("SELECT * FROM ISA WHERE ISA = 'ALL' ORDER BY Concept"), u"Concept"),
        (QStringList{"ANIMAL", "B"}));
    EXPECT_EQ(
        column(QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = 'ANIMAL'"), u"Definition"),
        QStringList{"Undefined"});
}

TEST_F(ImportTest, AnEmptyFileHasNothingToImport)
{
    write("");
    EXPECT_TRUE(import.CheckFile().contains(QStringLiteral("Nothing to import from file: ")));
    EXPECT_EQ(import.LineCount, 0);
    EXPECT_FALSE(import.ImportEnabled);
}

} // namespace
