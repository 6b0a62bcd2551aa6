#include "../edit/termbase_edit_fixture.h"
#include "core/store/errors.h"
#include "support/scripted_user.h"
#include "tbx_checker.h"
#include "termbase/edit/assert.h"
#include "termbase/edit/records.h"
#include "termbase/exchange/tbx_export.h"

#include <QFile>

using namespace lx;
using namespace lx::test;
using Source = AssertInput::Source;

namespace {

// The containers of the backmatter in the seed's frame.
constexpr qint32 kBody = 3, kBiblio = 5, kFiles = 6, kPersons = 7, kSubjects = 8, kUrls = 9,
                 kSubsets = 14;

// One line per element below `node`: its name, its type, language, id and target, its text.
void Outline(const XmlNode &node, int depth, QStringList &lines)
{
    QString line = QString(depth, QLatin1Char(' ')) + node.Name;
    for (const char *attribute : {"type", "xml:lang", "id", "target"}) {
        const QString value = node.attr(QString::fromLatin1(attribute));
        if (!value.isEmpty())
            line += QLatin1Char(' ') + QString::fromLatin1(attribute) + u'=' + value;
    }
    if (!node.Text.trimmed().isEmpty())
        line += QStringLiteral(" | ") + node.Text;
    lines << line;
    for (const XmlNode &child : node.Children)
        Outline(child, depth + 1, lines);
}

QString Outline(const XmlNode *node)
{
    QStringList lines;
    if (node)
        Outline(*node, 0, lines);
    return lines.join(u'\n');
}

class TbxExportTest : public TermbaseEditTest {
protected:
    void SetUp() override
    {
        TermbaseEditTest::SetUp();
        for (const char *id : {"CAR", "ENGINE", "3D-MODEL", "EMPTY"})
            addRow(QStringLiteral("CONCEPTS"), {{u"Concept", QString::fromLatin1(id)}});
    }

    qint32 put(const QString &category, Source from, const QString &value, qint32 parent,
               const QString &language = {})
    {
        AssertInput input;
        input.CategoryId = category;
        input.From = from;
        input.Value = value;
        input.Parent = parent;
        input.LanguageShown = !language.isEmpty();
        input.Language = language;
        EXPECT_TRUE(AssertElement(editor, input).Written) << category.toStdString();
        return editor.LastElemID;
    }
    qint32 entry(const QString &conceptId)
    {
        return put(QStringLiteral("0.3"), Source::Concepts, conceptId, kBody);
    }
    qint32 term(qint32 entryElem, const QString &text, const QString &language)
    {
        return put(QStringLiteral("1"), Source::Text, text, entryElem, language);
    }
    qint32 record(const QString &category, const QString &value, qint32 container)
    {
        return put(category, Source::Text, value, container);
    }

    // Writes the open termbase to out.tbx and reads it back.
    XmlNode exported()
    {
        QFile::remove(outPath());
        result = WriteTbxFile(Process().TermDB, termbasePath(), outPath());
        QFile file(outPath());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        bytes = file.readAll();
        QString error;
        const std::optional<XmlNode> root = ParseXml(bytes, &error);
        EXPECT_TRUE(root) << error.toStdString();
        return root.value_or(XmlNode{});
    }
    QString outPath() const { return lx::TermBasesFolder() + QStringLiteral("out/tb.tbx"); }

    // A termbase with every kind of element the export knows.
    void fillTermbase()
    {
        QDir().mkpath(lx::TermBasesFolder() + QStringLiteral("out"));
        record(QStringLiteral("xx4"), QStringLiteral("transport"), kSubjects);
        record(QStringLiteral("x10.21.1"), QStringLiteral("http://example.org/car?a=1&b=2"), kUrls);
        record(QStringLiteral("x10.3"), QStringLiteral("ACME"), kSubsets);
        editor.CurrentElemID = kPersons;
        AddPersonRecord(editor, {QStringLiteral("jd"),
                                 QStringLiteral("Jane Doe"),
                                 {},
                                 QStringLiteral("jd@example.org"),
                                 {},
                                 {}});
        editor.CurrentElemID = kBiblio;
        BiblioFields source;
        source.Descriptor = QStringLiteral("Smith 2020");
        source.Author = QStringLiteral("Smith");
        AddBibliographyRecord(editor, source);
        const QString picture = lx::TermBasesFolder() + QStringLiteral("car.png");
        {
            QFile file(picture);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write("png");
        }
        ASSERT_TRUE(AddBinaryRecord(editor, QStringLiteral("x5.5"), picture));

        car = entry(QStringLiteral("CAR"));
        const qint32 definition =
            put(QStringLiteral("5.1"), Source::Text, QStringLiteral("A road vehicle & <more>"), car,
                QStringLiteral("en"));
        put(QStringLiteral("8"), Source::Text, QStringLiteral("checked"), definition,
            QStringLiteral("en"));
        put(QStringLiteral("4"), Source::Picklist, QStringLiteral("transport"), car);
        put(QStringLiteral("5.5.1"), Source::Refs, QStringLiteral("car.png"), car);
        put(QStringLiteral("10.3.3"), Source::Refs, QStringLiteral("ACME"), car);
        put(QStringLiteral("10.7.1"), Source::Date, QStringLiteral("05/03/2024"), car);
        put(QStringLiteral("10.2.2.1"), Source::Picklist, QStringLiteral("jd"), car);
        carTerm = term(car, QStringLiteral("car"), QStringLiteral("en"));
        put(QStringLiteral("2.1"), Source::Picklist, QStringLiteral("fullForm"), carTerm);
        put(QStringLiteral("2.2.2"), Source::Picklist, QStringLiteral("otherGender"), carTerm);
        put(QStringLiteral("2.3.2"), Source::Picklist, QStringLiteral("technicalRegister"),
            carTerm);
        put(QStringLiteral("5.3"), Source::Text, QStringLiteral("The car said \"vroom\""), carTerm,
            QStringLiteral("en"));
        put(QStringLiteral("2.8.2"), Source::Picklist, QStringLiteral("preferredTerm-admn-sts"),
            carTerm);
        put(QStringLiteral("10.3.3"), Source::Refs, QStringLiteral("ACME"), carTerm);
        put(QStringLiteral("10.21.1"), Source::Picklist,
            QStringLiteral("http://example.org/car?a=1&b=2"), carTerm);
        put(QStringLiteral("10.20"), Source::Picklist, QStringLiteral("Smith 2020"), carTerm);
        const qint32 coche = term(car, QStringLiteral("coche"), QStringLiteral("es"));
        put(QStringLiteral("2.1"), Source::Picklist, QStringLiteral("symbol"), coche);
        const qint32 spanish = editor.LastElemID - 2; // the section made with the term
        put(QStringLiteral("5.1"), Source::Text, QStringLiteral("Vehículo de motor"), spanish,
            QStringLiteral("es"));
        // A section left without terms.
        const qint32 french = element(QStringLiteral("0.4"), car);
        addRow(QStringLiteral("elements_use_lang"), {{u"elemID", french}, {u"langID", "fr"}});

        const qint32 engine = entry(QStringLiteral("ENGINE"));
        engineTerm =
            term(engine, QStringLiteral("R&D <engine> 'x' \"y\" ÄÖ 日本"), QStringLiteral("de"));
        {
            ScriptedUser user;
            user.answerInputBox(QStringLiteral("see car"));
            EXPECT_TRUE(CompleteCrossReference(editor, engineTerm, carTerm, QStringLiteral("1"),
                                               QStringLiteral("10.18")));
        }
        EXPECT_TRUE(CompleteCrossReference(editor, engineTerm, carTerm, QStringLiteral("1"),
                                           QStringLiteral("9.2.3")));
        term(entry(QStringLiteral("3D-MODEL")), QStringLiteral("3D-Modell"), QStringLiteral("de"));
        entry(QStringLiteral("EMPTY"));
    }

    TbxExportResult result;
    QByteArray bytes;
    qint32 car = 0, carTerm = 0, engineTerm = 0;
};

TEST_F(TbxExportTest, WritesEachEntryWithItsSectionsTermsAndCategories)
{
    fillTermbase();
    const XmlNode root = exported();
    EXPECT_EQ(root.Name, QStringLiteral("tbx"));
    EXPECT_EQ(root.Namespace, QStringLiteral("urn:iso:std:iso:30042:ed-2"));
    EXPECT_EQ(root.attr("type"), QStringLiteral("TBX-Basic"));
    EXPECT_EQ(root.attr("style"), QStringLiteral("dca"));
    EXPECT_EQ(root.attr("xml:lang"), QStringLiteral("en"));
    EXPECT_TRUE(bytes.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));

    const XmlNode *body = root.child("text")->child("body");
    ASSERT_NE(body, nullptr);
    const auto entries = body->children("conceptEntry");
    ASSERT_EQ(entries.size(), 3u); // EMPTY has no term: TBX can't hold it
    EXPECT_EQ(Outline(entries[0]).toStdString(), std::string(R"(conceptEntry id=CAR
 descripGrp
  descrip type=definition xml:lang=en | A road vehicle & <more>
  note xml:lang=en | checked
 descrip type=subjectField target=e.16 | transport
 xref type=xGraphic target=../Demo-back/car.png | car.png
 note | customerSubset: ACME
 transacGrp
  transac type=transactionType | origination
  date | 2024-03-05
 transacGrp
  transac type=transactionType | origination
  transacNote type=responsibility target=e.19 | jd
 langSec xml:lang=en
  termSec id=e.34
   term | car
   termNote type=termType | fullForm
   termNote type=grammaticalGender | other
   termNote type=administrativeStatus | preferredTerm-admn-sts
   note | register: technicalRegister
   descrip type=context xml:lang=en | The car said "vroom"
   admin type=customerSubset target=e.18 | ACME
   xref type=externalCrossReference target=http://example.org/car?a=1&b=2 | http://example.org/car?a=1&b=2
   admin type=source target=e.22 | Smith 2020
 langSec xml:lang=es
  descrip type=definition xml:lang=es | Vehículo de motor
  termSec
   term | coche
   note | termType: symbol)"));
    EXPECT_EQ(Outline(entries[1]).toStdString(), std::string(R"(conceptEntry id=ENGINE
 langSec xml:lang=de
  termSec
   term | R&D <engine> 'x' "y" ÄÖ 日本
   ref type=crossReference target=e.34 | see car
   ref type=crossReference target=e.34 | relatedTerm)"));
    EXPECT_EQ(entries[2]->attr("id"), QStringLiteral("_u33_D-MODEL"));
    // Escaped where XML needs it, and UTF-8 as it is.
    EXPECT_TRUE(bytes.contains("<term>R&amp;D &lt;engine&gt; 'x' &quot;y&quot; \xC3\x84\xC3\x96 "
                               "\xE6\x97\xA5\xE6\x9C\xAC</term>"))
        << bytes.toStdString();

    EXPECT_EQ(result.Entries, 3);
    EXPECT_EQ(result.Terms, 4);
    EXPECT_EQ(result.Notes, 3);
    EXPECT_EQ(result.EntriesWithoutTerms, 1);
    EXPECT_EQ(result.SectionsWithoutTerms, 1);
    EXPECT_EQ(TbxExportSummary(result),
              QStringLiteral("3 entries, 4 terms; 3 elements written as notes for want of a "
                             "TBX-Basic counterpart; 1 entry without terms left out; 1 language "
                             "section without terms left out."));
}

TEST_F(TbxExportTest, TheBackmatterHoldsTheRecordsThatEntriesPointAt)
{
    fillTermbase();
    const XmlNode root = exported();
    const XmlNode *back = root.child("text")->child("back");
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(Outline(back).toStdString(), std::string(R"(back
 refObjectSec type=subjectFieldSet
  refObject id=e.16
   item type=subjectField | transport
 refObjectSec type=url
  refObject id=e.17
   item type=url | http://example.org/car?a=1&b=2
 refObjectSec type=subset
  refObject id=e.18
   item type=name | ACME
 refObjectSec type=respPerson
  refObject id=e.19
   item type=uid | jd
   item type=fn | Jane Doe
   item type=email | jd@example.org
 refObjectSec type=source
  refObject id=e.22
   item type=title | Smith 2020
   item type=author | Smith
 refObjectSec type=binaryData
  refObject id=e.24
   item type=file | ../Demo-back/car.png)"));
    // The path of a copied file leads from the TBX file to the copy.
    EXPECT_TRUE(QFile::exists(lx::TermBasesFolder() + QStringLiteral("out/../Demo-back/car.png")));
}

TEST_F(TbxExportTest, TheFileKeepsTheRulesOfTbxBasic)
{
    fillTermbase();
    EXPECT_EQ(CheckTbxBasic(exported()), QStringList());
}

TEST_F(TbxExportTest, TheCheckerSeesTheFaultsItIsThereFor)
{
    fillTermbase();
    const XmlNode good = exported();
    ASSERT_TRUE(CheckTbxBasic(good).isEmpty());
    auto broken = [&](const char *from, const char *to) {
        QByteArray changed = bytes;
        changed.replace(from, to);
        EXPECT_NE(changed, bytes) << from;
        const std::optional<XmlNode> root = ParseXml(changed);
        return root ? CheckTbxBasic(*root).join(u'\n') : QStringLiteral("not XML");
    };
    EXPECT_TRUE(broken("id=\"e.34\"", "id=\"e.99\"").contains(QStringLiteral("names no id")));
    EXPECT_TRUE(broken("id=\"ENGINE\"", "id=\"CAR\"").contains(QStringLiteral("twice")));
    EXPECT_TRUE(broken("id=\"ENGINE\"", "id=\"1ENGINE\"").contains(QStringLiteral("is no name")));
    EXPECT_TRUE(broken(">fullForm<", ">symbol<").contains(QStringLiteral("not a value of")));
    EXPECT_TRUE(broken("type=\"context\"", "type=\"explanation\"")
                    .contains(QStringLiteral("not a data category")));
    EXPECT_TRUE(broken("xml:lang=\"es\" type=\"definition\"", "xml:lang=\"es\" type=\"context\"")
                    .contains(QStringLiteral("context can't stand in langSec")));
    EXPECT_TRUE(broken("<langSec xml:lang=\"de\">", "<langSec>")
                    .contains(QStringLiteral("lacks attribute xml:lang")));
    EXPECT_TRUE(broken("<date>2024-03-05</date>", "<date>05/03/2024</date>")
                    .contains(QStringLiteral("is no date")));
    EXPECT_TRUE(
        broken("<term>coche</term>", "<note>coche</note>").contains(QStringLiteral("lacks term")));
    EXPECT_TRUE(broken("style=\"dca\"", "style=\"dct\"").contains(QStringLiteral("not dca")));
}

// A cross-reference names any element that goes out by its id, and one that can't be named
// goes out as a note with its description.
TEST_F(TbxExportTest, CrossReferencesNameWhatIsWrittenAndNoteWhatIsNot)
{
    QDir().mkpath(lx::TermBasesFolder() + QStringLiteral("out"));
    const qint32 car = entry(QStringLiteral("CAR"));
    const qint32 defined = put(QStringLiteral("5.1"), Source::Text, QStringLiteral("a vehicle"),
                               car, QStringLiteral("en"));
    const qint32 carTerm = term(car, QStringLiteral("car"), QStringLiteral("en"));
    const qint32 empty = entry(QStringLiteral("EMPTY"));
    const qint32 lost = put(QStringLiteral("5.1"), Source::Text, QStringLiteral("nothing"), empty,
                            QStringLiteral("en"));
    ScriptedUser user;
    user.answerInputBox(QStringLiteral("its definition")).answerInputBox(QStringLiteral("gone"));
    ASSERT_TRUE(CompleteCrossReference(editor, carTerm, defined, QStringLiteral("5.1"),
                                       QStringLiteral("10.18")));
    ASSERT_TRUE(CompleteCrossReference(editor, carTerm, lost, QStringLiteral("5.1"),
                                       QStringLiteral("10.18")));
    const XmlNode root = exported();
    EXPECT_EQ(CheckTbxBasic(root), QStringList());
    const XmlNode *written = root.child("text")->child("body")->child("conceptEntry");
    ASSERT_NE(written, nullptr);
    const QString id = QStringLiteral("e.") + QString::number(defined);
    EXPECT_EQ(written->child("descrip")->attr("id"), id);
    const XmlNode *termSec = written->child("langSec")->child("termSec");
    ASSERT_EQ(termSec->Children.size(), 3u);
    EXPECT_EQ(termSec->Children[1].Name, QStringLiteral("ref"));
    EXPECT_EQ(termSec->Children[1].attr("target"), id);
    EXPECT_EQ(termSec->Children[2].Name, QStringLiteral("note"));
    EXPECT_EQ(termSec->Children[2].Text, QStringLiteral("crossReference: gone"));
}

TEST_F(TbxExportTest, CharactersXmlCantHoldAreLeftOutAndTheRestKept)
{
    QDir().mkpath(lx::TermBasesFolder() + QStringLiteral("out"));
    const qint32 e = entry(QStringLiteral("CAR"));
    QString text = QStringLiteral("a\u0001b\tc");
    text += QChar(0xFFFE); // no character at all
    text += QStringLiteral("d\U0001F333");
    term(e, text, QStringLiteral("en"));
    const XmlNode root = exported();
    const XmlNode *termSec = root.child("text")
                                 ->child("body")
                                 ->child("conceptEntry")
                                 ->child("langSec")
                                 ->child("termSec");
    ASSERT_NE(termSec, nullptr);
    EXPECT_EQ(termSec->child("term")->Text, QStringLiteral("ab\tcd\U0001F333"));
}

TEST_F(TbxExportTest, AnEmptyTermbaseGivesAnEmptyBodyAndNoBackmatter)
{
    QDir().mkpath(lx::TermBasesFolder() + QStringLiteral("out"));
    const XmlNode root = exported();
    EXPECT_EQ(result.Entries, 0);
    ASSERT_NE(root.child("text"), nullptr);
    EXPECT_TRUE(root.child("text")->child("body")->Children.empty());
    EXPECT_EQ(root.child("text")->child("back"), nullptr);
    EXPECT_EQ(root.child("tbxHeader")->child("fileDesc")->child("titleStmt")->child("title")->Text,
              QStringLiteral("Demo"));
}

TEST_F(TbxExportTest, AFileThatCantBeWrittenIsAFileErrorAndLeavesNothing)
{
    try {
        WriteTbxFile(Process().TermDB, termbasePath(),
                     lx::TermBasesFolder() + QStringLiteral("no/such/folder/tb.tbx"));
        ADD_FAILURE() << "no error";
    } catch (const store::StoreError &error) {
        EXPECT_EQ(error.number(), 75);
    }
    EXPECT_FALSE(QFile::exists(lx::TermBasesFolder() + QStringLiteral("no/such/folder/tb.tbx")));
}

} // namespace
