#include "../edit/termbase_edit_fixture.h"
#include "ontology/edit/concept_view.h"
#include "ontology/store/lookups.h"
#include "support/scripted_user.h"
#include "termbase/edit/assert.h"
#include "termbase/edit/records.h"
#include "termbase/exchange/tbx_export.h"
#include "termbase/exchange/tbx_import.h"

#include <QFile>
#include <QSet>

using namespace lx;

namespace {

QString DataFile(const char *name)
{
    return QStringLiteral(LEXARBOR_TERMBASE_DATA "/") + QString::fromLatin1(name);
}

class TbxImportTest : public TermbaseEditTest {
protected:
    TbxImportResult import(const QString &path, const QString &parent = {})
    {
        TbxImportOptions options;
        options.AddConceptsUnder = parent;
        return ImportTbx(path, options);
    }
    // A file of the test's own, written into the working folder.
    QString write(const QString &name, const QString &text)
    {
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
        return name;
    }
    // The values of the elements of a category, read from the table that holds them.
    QStringList values(const QString &category, const char *table = "text_values")
    {
        return column(QStringLiteral("SELECT value FROM elements INNER JOIN %1 ON "
                                     "elements.elemID = %1.elemID WHERE categoryID = '%2' "
                                     "ORDER BY elements.elemID")
                          .arg(QLatin1String(table), category),
                      u"value");
    }
    // The value of the record that each element of a category points at.
    QStringList targets(const QString &category, const char *table = "text_values")
    {
        return column(QStringLiteral("SELECT value FROM (elements INNER JOIN pointers ON "
                                     "elements.elemID = pointers.elemID) INNER JOIN %1 ON "
                                     "pointers.targetID = %1.elemID WHERE categoryID = '%2' "
                                     "ORDER BY elements.elemID")
                          .arg(QLatin1String(table), category),
                      u"value");
    }
    QStringList terms()
    {
        return column(QStringLiteral("SELECT term FROM TERMS ORDER BY elemID"), u"term");
    }
    // Every row of every table an import writes, to compare before and after.
    QStringList snapshot()
    {
        QStringList rows;
        for (const char *table :
             {"CONCEPTS", "elements", "TE_CONCEPTS", "TERMS", "elements_use_lang", "text_values",
              "picklist_values", "number_values", "date_values", "ref_values", "pointers"}) {
            lx::store::ForEachRow(Process().TermDB,
                                  QStringLiteral("SELECT * FROM ") + QLatin1String(table),
                                  [&](const lx::store::Recordset &rs) {
                                      QStringList fields{QLatin1String(table)};
                                      for (int i = 0; i < rs.FieldCount(); ++i)
                                          fields << rs.Fields(i).Value().toString();
                                      rows << fields.join(QLatin1Char('|'));
                                  });
        }
        rows.sort();
        return rows;
    }
    // The rows only one of two snapshots has, to show what an import changed.
    static std::string changed(const QStringList &before, const QStringList &after)
    {
        const QSet<QString> a(before.begin(), before.end()), b(after.begin(), after.end());
        QStringList lines;
        for (const QString &row : a - b)
            lines << QStringLiteral("- ") + row;
        for (const QString &row : b - a)
            lines << QStringLiteral("+ ") + row;
        lines.sort();
        return lines.join(QLatin1Char('\n')).toStdString();
    }

    test::ScriptedUser user;
};

TEST_F(TbxImportTest, AHandWrittenFileWritesEachKindWhereItBelongs)
{
    const TbxImportResult r = import(DataFile("basic.tbx"));
    ASSERT_FALSE(r.Failed) << r.Log.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(r.Added, 2);
    EXPECT_EQ(r.Skipped, 1);
    EXPECT_EQ(r.MissingConcepts, QStringList{"DRAGON"});
    EXPECT_EQ(r.Terms, 4);
    EXPECT_EQ(r.LastElemID,
              column(QStringLiteral("SELECT elemID FROM elements ORDER BY elemID"), u"elemID")
                  .last()
                  .toInt());
    EXPECT_EQ(column(QStringLiteral("SELECT Concept FROM TE_CONCEPTS ORDER BY elemID"), u"Concept"),
              (QStringList{"PHYSICAL-OBJECT", "MENTAL-OBJECT"}));
    EXPECT_EQ(terms(),
              (QStringList{"physical object", "thing", "physisches Objekt", "mental object"}));
    EXPECT_EQ(column(QStringLiteral("SELECT langID FROM TERMS ORDER BY elemID"), u"langID"),
              (QStringList{"en", "en", "de", "en"}));

    // Closed lists, mapped to the termbase's values.
    EXPECT_EQ(values(QStringLiteral("2.2.1"), "picklist_values"), (QStringList{"noun", "noun"}));
    EXPECT_EQ(values(QStringLiteral("2.1"), "picklist_values"), QStringList{"fullForm"});
    EXPECT_EQ(values(QStringLiteral("2.8.2"), "picklist_values"),
              (QStringList{"preferredTerm-admn-sts", "admittedTerm-admn-sts"}));
    EXPECT_EQ(values(QStringLiteral("2.2.2"), "picklist_values"), QStringList{"neuter"});
    // Texts, the language of those that need one.
    EXPECT_EQ(values(QStringLiteral("5.1")), QStringList{"Object that occupies a place in space."});
    EXPECT_EQ(values(QStringLiteral("10.19.3")), QStringList{"Handbook of things, p. 3"});
    EXPECT_EQ(values(QStringLiteral("5.3")),
              QStringList{"Every physical object has a mass & a place."});
    EXPECT_EQ(values(QStringLiteral("2.3.1")), QStringList{"en-GB"});
    EXPECT_EQ(values(QStringLiteral("5.2")), QStringList{"Something you can kick."});
    EXPECT_EQ(values(QStringLiteral("2.3.7")), QStringList{"informal"});
    EXPECT_EQ(column(QStringLiteral("SELECT langID FROM elements INNER JOIN elements_use_lang ON "
                                    "elements.elemID = elements_use_lang.elemID WHERE "
                                    "categoryID = '5.1' OR categoryID = '2.3.7'"),
                     u"langID"),
              (QStringList{"en", "en"}));
    EXPECT_TRUE(values(QStringLiteral("10.7.1"), "date_values")
                    .value(0)
                    .startsWith(QStringLiteral("2024-03-15")));

    // References to the back matter, its records made once.
    EXPECT_EQ(targets(QStringLiteral("4")), QStringList{"philosophy"});
    EXPECT_EQ(targets(QStringLiteral("5.5.1"), "ref_values"), QStringList{"stone.png"});
    EXPECT_EQ(targets(QStringLiteral("10.21.1")), QStringList{"http://example.org/objects"});
    EXPECT_EQ(targets(QStringLiteral("10.2.2.1")), QStringList{"Jane Doe"});
    EXPECT_EQ(targets(QStringLiteral("10.3.3")), QStringList{"ACME"});
    EXPECT_EQ(targets(QStringLiteral("10.20")), QStringList{"Handbook of things"});
    EXPECT_EQ(values(QStringLiteral("x10.2.2.4")), QStringList{"jane@example.org"});
    EXPECT_EQ(values(QStringLiteral("x10.2.2.3")), QStringList{"terminologist"});
    EXPECT_EQ(values(QStringLiteral("x10.20.1")), QStringList{"A. Writer"});
    // The cross-reference points at the term of the later entry.
    EXPECT_EQ(values(QStringLiteral("10.18")), QStringList{"mental object"});
    EXPECT_EQ(column(QStringLiteral("SELECT term FROM (elements INNER JOIN pointers ON "
                                    "elements.elemID = pointers.elemID) INNER JOIN TERMS ON "
                                    "pointers.targetID = TERMS.elemID WHERE categoryID = '10.18'"),
                     u"term"),
              QStringList{"mental object"});
    // Every element hangs under one that is there.
    EXPECT_TRUE(column(QStringLiteral("SELECT a.elemID FROM elements AS a LEFT JOIN elements AS b "
                                      "ON a.parentID = b.elemID WHERE b.elemID IS NULL AND "
                                      "a.elemID > 1"),
                       u"elemID")
                    .isEmpty());
    EXPECT_TRUE(
        r.Log.filter(QStringLiteral("DRAGON")).value(0).startsWith(QStringLiteral("line 58")));
}

TEST_F(TbxImportTest, TheOlderMartifFormOfTheSamplesImports)
{
    const TbxImportResult r = import(DataFile("martif_sample.tbx"));
    ASSERT_FALSE(r.Failed) << r.Log.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(r.Added, 1);
    EXPECT_EQ(terms(), (QStringList{"event", "happening", "événement"}));
    EXPECT_EQ(values(QStringLiteral("2.2.2"), "picklist_values"), QStringList{"masculine"});
    // A concept-level definition takes the file's language, "en-US" read as "en".
    EXPECT_EQ(values(QStringLiteral("5.1")), QStringList{"Something that happens."});
    EXPECT_EQ(values(QStringLiteral("5.3")), QStringList{"A happening drew a crowd."});
    EXPECT_EQ(targets(QStringLiteral("10.2.2.3")), QStringList{"John Smith"});
    EXPECT_TRUE(values(QStringLiteral("10.7.3"), "date_values")
                    .value(0)
                    .startsWith(QStringLiteral("2008-11-03")));
    // A TBX-Basic category the termbase has no counterpart for is kept as a note, and said so.
    EXPECT_EQ(values(QStringLiteral("8")), QStringList{"termLocation: menuItem"});
    EXPECT_FALSE(r.Log.filter(QStringLiteral("termLocation")).isEmpty());
}

TEST_F(TbxImportTest, ASecondImportMergesWithoutDuplicates)
{
    ASSERT_FALSE(import(DataFile("basic.tbx")).Failed);
    const QStringList before = snapshot();
    const TbxImportResult again = import(DataFile("basic.tbx"));
    EXPECT_EQ(again.Added, 0);
    EXPECT_EQ(again.Merged, 2);
    EXPECT_EQ(again.Terms, 0);
    EXPECT_EQ(changed(before, snapshot()), "");

    // A new term and a new attribute go into the entry that is there.
    const QString more = write(
        QStringLiteral("more.tbx"),
        QStringLiteral(
            "<tbx type='TBX-Basic' style='dca' xml:lang='en' "
            "xmlns='urn:iso:std:iso:30042:ed-2'><text><body>"
            "<conceptEntry id='MENTAL-OBJECT'><langSec xml:lang='en'>"
            "<termSec><term>mental object</term><termNote type='termType'>fullForm</termNote>"
            "<termNote type='partOfSpeech'>noun</termNote></termSec>"
            "<termSec><term>idea</term></termSec></langSec></conceptEntry></body></text></tbx>"));
    const TbxImportResult merged = import(more);
    ASSERT_FALSE(merged.Failed) << merged.Log.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(merged.Merged, 1);
    EXPECT_EQ(merged.Terms, 1);
    EXPECT_EQ(terms().count(QStringLiteral("mental object")), 1);
    EXPECT_EQ(terms().last(), QStringLiteral("idea"));
    EXPECT_EQ(values(QStringLiteral("2.1"), "picklist_values"),
              (QStringList{"fullForm", "fullForm"}));
    EXPECT_EQ(values(QStringLiteral("2.2.1"), "picklist_values").size(), 2);
}

TEST_F(TbxImportTest, BadFilesAreToldByLineAndLeaveTheTermbaseAsItWas)
{
    ASSERT_FALSE(import(DataFile("martif_sample.tbx")).Failed);
    const QStringList before = snapshot();
    const QString head = QStringLiteral("<tbx type='TBX-Basic' style='dca' xml:lang='en' "
                                        "xmlns='urn:iso:std:iso:30042:ed-2'><text><body>\n");
    const QString good = QStringLiteral("<conceptEntry id='OBJECT'><langSec xml:lang='en'>"
                                        "<termSec><term>object</term></termSec></langSec>"
                                        "</conceptEntry>\n");
    const QString tail = QStringLiteral("</body></text></tbx>\n");
    const struct {
        const char *name;
        QString text;
        const char *said;
    } cases[] = {
        {"not-xml", head + good + QStringLiteral("<conceptEntry id='EVENT'>\n</body>"),
         "line 4: not XML"},
        {"dialect",
         QStringLiteral("<tbx type='TBX-Min' xmlns='urn:iso:std:iso:30042:ed-2'>\n</tbx>"),
         "line 1: the dialect \"TBX-Min\" is not TBX-Basic"},
        {"category",
         head + good +
             QStringLiteral("<conceptEntry id='EVENT'>\n<descrip type='flavour'>x</descrip>"
                            "</conceptEntry>") +
             tail,
         "line 4: unknown data category <descrip type=\"flavour\">"},
        {"duplicate", head + good + QStringLiteral("<conceptEntry id='OBJECT'/>\n") + tail,
         "line 3: the id \"OBJECT\" is used twice"},
        {"language",
         head + good +
             QStringLiteral("<conceptEntry id='EVENT'>\n<langSec><termSec><term>e</term>"
                            "</termSec></langSec></conceptEntry>") +
             tail,
         "line 4: a language section without a language"},
        {"target",
         head + good +
             QStringLiteral("<conceptEntry id='EVENT'><langSec xml:lang='en'><termSec>\n"
                            "<term>e</term><ref type='crossReference' target='nowhere'>x</ref>"
                            "</termSec></langSec></conceptEntry>") +
             tail,
         "line 4: the target \"nowhere\" is no id of the file"},
    };
    for (const auto &c : cases) {
        const TbxImportResult r =
            import(write(QString::fromLatin1(c.name) + QStringLiteral(".tbx"), c.text));
        EXPECT_TRUE(r.Failed) << c.name;
        EXPECT_FALSE(r.Log.filter(QString::fromLatin1(c.said)).isEmpty())
            << c.name << ": " << r.Log.join(QLatin1Char('\n')).toStdString();
        EXPECT_EQ(r.Log.last(), QStringLiteral("Nothing was imported.")) << c.name;
        EXPECT_EQ(r.Added, 0) << c.name;
        EXPECT_EQ(changed(before, snapshot()), "") << c.name;
    }
}

TEST_F(TbxImportTest, MissingConceptsAreAddedUnderTheParentGivenAndTheLogIsWritten)
{
    TbxImportOptions options;
    options.AddConceptsUnder = QStringLiteral("PHYSICAL-OBJECT");
    options.LogFile = QStringLiteral("import.log");
    Process().OntoMeta.ActiveSet = 1;
    Process().OntoMeta.DefLang = QStringLiteral("en");
    const TbxImportResult r = ImportTbx(DataFile("basic.tbx"), options);
    ASSERT_FALSE(r.Failed) << r.Log.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(r.Added, 3);
    EXPECT_EQ(r.Skipped, 0);
    EXPECT_TRUE(ConceptExists(QStringLiteral("DRAGON")));
    EXPECT_EQ(ReadParents(QStringLiteral("DRAGON")), QStringList{"PHYSICAL-OBJECT"});
    EXPECT_EQ(column(QStringLiteral("SELECT Concept FROM TE_CONCEPTS ORDER BY elemID"), u"Concept")
                  .last(),
              QStringLiteral("DRAGON"));
    EXPECT_EQ(terms().last(), QStringLiteral("dragon"));
    QFile log(options.LogFile);
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QString written = QString::fromUtf8(log.readAll());
    EXPECT_TRUE(written.contains(
        QStringLiteral("the concept \"DRAGON\" is added under \"PHYSICAL-OBJECT\"")))
        << written.toStdString();
}

TEST_F(TbxImportTest, AParentThatIsNoConceptRefusesTheWholeImport)
{
    const QStringList before = snapshot();
    const TbxImportResult r = import(DataFile("basic.tbx"), QStringLiteral("NO-SUCH-PARENT"));
    EXPECT_TRUE(r.Failed);
    EXPECT_FALSE(ConceptExists(QStringLiteral("DRAGON")));
    EXPECT_EQ(changed(before, snapshot()), "");
}

// What the termbase can't hold as the file has it is kept as a note and said; a cross-reference
// to an entry left out is dropped and said; a picture the file points at is copied beside the
// termbase.
TEST_F(TbxImportTest, WhatCantStandAsItIsBecomesANoteAndFilesAreCopied)
{
    QDir().mkpath(QStringLiteral("in/pictures"));
    {
        QFile picture(QStringLiteral("in/pictures/stone.png"));
        ASSERT_TRUE(picture.open(QIODevice::WriteOnly));
        picture.write("png");
    }
    const QString in =
        write(QStringLiteral("in/odd.tbx"),
              QStringLiteral(
                  "<tbx type='TBX-Basic' style='dca' xml:lang='en' "
                  "xmlns='urn:iso:std:iso:30042:ed-2'><text><body>\n"
                  "<conceptEntry id='OBJECT'>\n"
                  "<xref type='xGraphic' target='pictures/stone.png'>stone</xref>\n"
                  "<termNote type='partOfSpeech'>noun</termNote>\n"
                  "<langSec xml:lang='en'><termSec><term>object</term>\n"
                  "<termNote type='partOfSpeech'>pronoun</termNote>\n"
                  "<termNote type='termType'>variant</termNote>\n"
                  "<ref type='crossReference' target='t-x'>see x</ref>\n"
                  "<transacGrp><transac type='transactionType'>origination</transac>"
                  "<date>someday</date></transacGrp>\n"
                  "</termSec></langSec></conceptEntry>\n"
                  "<conceptEntry id='NO-SUCH-CONCEPT'><langSec xml:lang='en'><termSec id='t-x'>"
                  "<term>x</term></termSec></langSec></conceptEntry>\n"
                  "</body></text></tbx>"));
    const TbxImportResult r = import(in);
    ASSERT_FALSE(r.Failed) << r.Log.join(QLatin1Char('\n')).toStdString();
    const auto said = [&](const char *text) {
        return !r.Log.filter(QString::fromUtf8(text)).isEmpty();
    };
    // A value outside its closed list; a date that isn't one; a term's category on the entry.
    EXPECT_TRUE(said("line 6: the value \"pronoun\" of partOfSpeech is not in its list"));
    EXPECT_TRUE(said("line 9: \"someday\" is not a date"));
    EXPECT_TRUE(said("line 4: a partOfSpeech can't stand under a termEntry"));
    EXPECT_EQ(
        values(QStringLiteral("8")),
        (QStringList{"partOfSpeech: noun", "partOfSpeech: pronoun", "originationDate: someday"}));
    EXPECT_EQ(values(QStringLiteral("2.1"), "picklist_values"), QStringList{"variant"});
    EXPECT_TRUE(said("line 8: the cross-reference to \"t-x\" points at no term"));
    EXPECT_TRUE(values(QStringLiteral("10.18")).isEmpty());
    EXPECT_EQ(r.Skipped, 1);

    EXPECT_EQ(targets(QStringLiteral("5.5.1"), "ref_values"), QStringList{"stone.png"});
    EXPECT_TRUE(
        QFile::exists(TermbaseBackFolder(Process().TermMeta.Name) + QStringLiteral("/stone.png")));
    EXPECT_TRUE(QFile::exists(TermbasePublishFolder(Process().TermMeta.Name) +
                              QStringLiteral("/stone.png")));
}

// Every element of the entries as a line of what it holds, with the path of its ancestors and
// what it points at, so that two termbases with other numbers compare.
QStringList EntryLines()
{
    struct Row {
        QString Category;
        qint32 Parent = 0;
        QString Value, Lang;
        qint32 Target = 0;
    };
    QHash<qint32, Row> rows;
    lx::store::Database &db = Process().TermDB;
    lx::store::ForEachRow(db, QStringLiteral("SELECT * FROM elements"),
                          [&](const lx::store::Recordset &rs) {
                              Row &r = rows[rs.Value(u"elemID").toInt()];
                              r.Category = rs.Value(u"categoryID").toString();
                              r.Parent = rs.Value(u"parentID").toInt();
                          });
    const auto read = [&](const char *query, QStringView field, auto set) {
        lx::store::ForEachRow(db, QString::fromLatin1(query), [&](const lx::store::Recordset &rs) {
            set(rows[rs.Value(u"elemID").toInt()], rs.Value(field));
        });
    };
    for (const char *table : {"SELECT * FROM text_values", "SELECT * FROM picklist_values",
                              "SELECT * FROM number_values", "SELECT * FROM ref_values"})
        read(table, u"value", [](Row &r, const QVariant &v) { r.Value = v.toString(); });
    read("SELECT * FROM date_values", u"value",
         [](Row &r, const QVariant &v) { r.Value = v.toDate().toString(Qt::ISODate); });
    read("SELECT * FROM TERMS", u"term", [](Row &r, const QVariant &v) { r.Value = v.toString(); });
    read("SELECT * FROM TE_CONCEPTS", u"Concept",
         [](Row &r, const QVariant &v) { r.Value = v.toString(); });
    read("SELECT * FROM elements_use_lang", u"langID",
         [](Row &r, const QVariant &v) { r.Lang = v.toString(); });
    read("SELECT * FROM pointers", u"targetID",
         [](Row &r, const QVariant &v) { r.Target = v.toInt(); });
    const std::function<QString(qint32)> path = [&](qint32 id) -> QString {
        const Row &r = rows.value(id);
        const QString here = r.Category + QLatin1Char('=') + r.Value + QLatin1Char('@') + r.Lang;
        if (r.Category == QLatin1String("0.3") || !rows.contains(r.Parent) || r.Parent <= 3)
            return here;
        return path(r.Parent) + QStringLiteral(" / ") + here;
    };
    QStringList lines;
    for (auto it = rows.cbegin(); it != rows.cend(); ++it) {
        const QString line = path(it.key());
        if (!line.startsWith(QLatin1String("0.3=")))
            continue; // the backmatter shows through the pointers at it
        lines << line + (it->Target ? QStringLiteral(" -> ") + path(it->Target) : QString());
    }
    lines.sort();
    return lines;
}

using Source = AssertInput::Source;

// A termbase with every kind of element, exported and imported into an empty termbase under
// the same ontology.
TEST_F(TbxImportTest, ARoundTripThroughTbxKeepsEntriesTermsAndCategories)
{
    constexpr qint32 kBody = 3, kBiblio = 5, kFiles = 6, kPersons = 7, kSubjects = 8, kUrls = 9,
                     kSubsets = 14;
    const auto put = [&](const char *category, Source from, const QString &value, qint32 parent,
                         const QString &language = {}) {
        AssertInput input;
        input.CategoryId = QString::fromLatin1(category);
        input.From = from;
        input.Value = value;
        input.Parent = parent;
        input.LanguageShown = !language.isEmpty();
        input.Language = language;
        EXPECT_TRUE(AssertElement(editor, input).Written) << category;
        return editor.LastElemID;
    };
    const QString en = QStringLiteral("en");
    put("xx4", Source::Text, QStringLiteral("transport"), kSubjects);
    put("x10.21.1", Source::Text, QStringLiteral("http://example.org/?a=1&b=2"), kUrls);
    put("x10.3", Source::Text, QStringLiteral("ACME"), kSubsets);
    editor.CurrentElemID = kPersons;
    AddPersonRecord(editor, {QStringLiteral("jd"),
                             QStringLiteral("Jane Doe"),
                             QStringLiteral("editor"),
                             QStringLiteral("jd@example.org"),
                             {},
                             {}});
    editor.CurrentElemID = kBiblio;
    BiblioFields source;
    source.Descriptor = QStringLiteral("Smith 2020");
    source.Author = QStringLiteral("Smith");
    AddBibliographyRecord(editor, source);
    const QString picture = lx::TermBasesFolder() + QStringLiteral("stone.png");
    {
        QFile file(picture);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("png");
    }
    ASSERT_TRUE(AddBinaryRecord(editor, QStringLiteral("x5.5"), picture));
    (void)kFiles;

    const qint32 a = put("0.3", Source::Concepts, QStringLiteral("PHYSICAL-OBJECT"), kBody);
    const qint32 def = put("5.1", Source::Text, QStringLiteral("A thing & <more>"), a, en);
    put("8", Source::Text, QStringLiteral("checked"), def, en);
    put("4", Source::Picklist, QStringLiteral("transport"), a);
    put("5.5.1", Source::Refs, QStringLiteral("stone.png"), a);
    put("5.5.2", Source::Refs, QStringLiteral("stone.png"), a);
    put("10.3.3", Source::Refs, QStringLiteral("ACME"), a);
    put("10.7.1", Source::Date, QStringLiteral("05/03/2024"), a);
    put("10.2.2.1", Source::Picklist, QStringLiteral("jd"), a);
    put("5.2", Source::Text, QStringLiteral("Explained."), a, en);
    const qint32 t1 = put("1", Source::Text, QStringLiteral("physical object"), a, en);
    put("2.1", Source::Picklist, QStringLiteral("fullForm"), t1);
    put("2.2.1", Source::Picklist, QStringLiteral("noun"), t1);
    put("2.2.2", Source::Picklist, QStringLiteral("otherGender"), t1);
    put("2.3.2", Source::Picklist, QStringLiteral("technicalRegister"), t1);
    put("3.4", Source::Number, QStringLiteral("7"), t1);
    put("5.3", Source::Text, QStringLiteral("It said \"thud\""), t1, en);
    put("2.8.2", Source::Picklist, QStringLiteral("preferredTerm-admn-sts"), t1);
    put("10.3.3", Source::Refs, QStringLiteral("ACME"), t1);
    put("10.21.1", Source::Picklist, QStringLiteral("http://example.org/?a=1&b=2"), t1);
    put("10.20", Source::Picklist, QStringLiteral("Smith 2020"), t1);
    put("10.19.1", Source::Text, QStringLiteral("oral"), t1);
    const qint32 t2 = put("1", Source::Text, QStringLiteral("Ding"), a, QStringLiteral("de"));
    put("2.1", Source::Picklist, QStringLiteral("symbol"), t2);
    put("5.1", Source::Text, QStringLiteral("Ein Ding"), t2 - 1, QStringLiteral("de"));

    const qint32 b = put("0.3", Source::Concepts, QStringLiteral("MENTAL-OBJECT"), kBody);
    const qint32 t3 = put("1", Source::Text, QStringLiteral("R&D <idea> 'x' ÄÖ 日本"), b, en);
    {
        user.answerInputBox(QStringLiteral("see the thing"));
        EXPECT_TRUE(
            CompleteCrossReference(editor, t3, t1, QStringLiteral("1"), QStringLiteral("10.18")));
        user.answerInputBox(QStringLiteral("its definition"));
        EXPECT_TRUE(CompleteCrossReference(editor, t3, def, QStringLiteral("5.1"),
                                           QStringLiteral("10.18")));
    }
    EXPECT_TRUE(
        CompleteCrossReference(editor, t3, t1, QStringLiteral("1"), QStringLiteral("9.2.3")));

    // What TBX-Basic can't carry: a source of a term read back as a plain source, a sound (as
    // video, a table) as other binary data, an entry without terms left out.
    put("10.19.2", Source::Text, QStringLiteral("the lab"), t3);
    put("0.3", Source::Concepts, QStringLiteral("EVENT"), kBody);

    QStringList before = EntryLines();
    QDir().mkpath(lx::TermBasesFolder() + QStringLiteral("out"));
    const QString out = lx::TermBasesFolder() + QStringLiteral("out/tb.tbx");
    WriteTbxFile(Process().TermDB, termbasePath(), out);

    CloseTermbase(editor);
    {
        user.answerSaveFile(lx::TermBasesFolder() + QStringLiteral("empty.ltb"))
            .answerMsgBox(msg::OK);
        NewTermbase(editor);
    }
    ASSERT_TRUE(EntryLines().isEmpty());
    const TbxImportResult r = import(out);
    ASSERT_FALSE(r.Failed) << r.Log.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(r.Added, 2);
    QStringList after = EntryLines();
    EXPECT_EQ(after.size(), before.size() - 1);

    before.replaceInStrings(QStringLiteral("10.19.2=the lab"), QStringLiteral("10.19.1=the lab"));
    before.replaceInStrings(QStringLiteral("/ 5.5.2=@"), QStringLiteral("/ 5.5.5=@"));
    before.removeAll(QStringLiteral("0.3=EVENT@"));
    before.sort();
    EXPECT_EQ(changed(before, after), "");
}

} // namespace
