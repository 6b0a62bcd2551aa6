#include "support/table_rows.h"
#include "termbase/exchange/tbx_map.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

using namespace lx;
using namespace lx::tbx;

namespace {

// Field `column` of each row of a seed source, keyed by the first field.
QHash<QString, QString> seedColumn(const char *file, int column)
{
    QHash<QString, QString> out;
    for (const QString &row : test::SourceRows(file))
        out.insert(row.section(QLatin1Char('\t'), 0, 0),
                   row.section(QLatin1Char('\t'), column, column));
    return out;
}

// The data category types that TBX-Basic allows on each element.
const QHash<QString, QSet<QString>> &basicTypes()
{
    static const QHash<QString, QSet<QString>> types{
        {QStringLiteral("descrip"), {"context", "definition", "subjectField"}},
        {QStringLiteral("termNote"),
         {"administrativeStatus", "grammaticalGender", "geographicalUsage", "partOfSpeech",
          "termLocation", "termType"}},
        {QStringLiteral("admin"), {"customerSubset", "projectSubset", "source"}},
        {QStringLiteral("ref"), {"crossReference"}},
        {QStringLiteral("xref"), {"externalCrossReference", "xGraphic"}},
        {QStringLiteral("note"), {""}},
        {QStringLiteral("transacGrp"), {"responsibility", "date"}},
    };
    return types;
}

} // namespace

TEST(TbxMapTest, HasOneRowForEachSeedCategoryInTheSeedsOrder)
{
    const QHash<QString, QString> seed = seedColumn("tb_datcats.tsv", 0);
    QSet<QString> mapped;
    for (const Category &c : Categories()) {
        EXPECT_TRUE(seed.contains(c.Id.toString())) << c.Id.toString().toStdString();
        EXPECT_FALSE(mapped.contains(c.Id.toString()))
            << "twice: " << c.Id.toString().toStdString();
        mapped.insert(c.Id.toString());
    }
    for (const QString &id : seed.keys())
        EXPECT_TRUE(mapped.contains(id)) << "no row: " << id.toStdString();
    EXPECT_EQ(FindCategory(u"5.1")->Type, u"definition");
    EXPECT_EQ(FindCategory(u"nonesuch"), nullptr);
}

TEST(TbxMapTest, NotesNameTheirCategoryByTheSeedsTypeWordAndReadBack)
{
    const QHash<QString, QString> typeWords = seedColumn("tb_datcats.tsv", 2);
    QSet<QString> noteWords;
    for (const Category &c : Categories()) {
        const QString word = c.Word.toString();
        EXPECT_EQ(word, typeWords.value(c.Id.toString())) << c.Id.toString().toStdString();
        if (c.Of != Kind::Note && c.Of != Kind::Basic)
            continue;
        if (c.Of == Kind::Note) {
            EXPECT_EQ(c.Type, c.Word);
            EXPECT_FALSE(noteWords.contains(word)) << "two notes named " << word.toStdString();
            noteWords.insert(word);
        }
        const auto back = ParseNote(NoteText(c.Word, QStringLiteral("a: b <c>")));
        ASSERT_TRUE(back) << word.toStdString();
        EXPECT_EQ(back->Value, QStringLiteral("a: b <c>"));
        // A Basic row shares its word with a Note row only as a variant held as a reference.
        if (back->Of != &c) {
            EXPECT_TRUE(c.Of == Kind::Basic && back->Of->Of == Kind::Note &&
                        c.Id == back->Of->Id.toString() + QLatin1Char('x'))
                << c.Id.toString().toStdString();
        }
    }
    EXPECT_EQ(ParseNote(QStringLiteral("termType: symbol"))->Of->Id, u"2.1");
    EXPECT_FALSE(ParseNote(QStringLiteral("a plain note")));
    EXPECT_FALSE(ParseNote(QStringLiteral("nonesuch: value")));
    EXPECT_FALSE(ParseNote(QStringLiteral("termbase: a frame, not a category of an element")));
    EXPECT_FALSE(ParseNote(QStringLiteral(": register")));
}

TEST(TbxMapTest, EntryIdsAreNamesAndComeBackToTheirConcept)
{
    const QRegularExpression ncname(QStringLiteral("^[A-Za-z_][A-Za-z0-9._-]*$"));
    const QStringList concepts{QStringLiteral("CAR-ENGINE"), QStringLiteral("3D-MODEL"),
                               QStringLiteral("-X"),         QStringLiteral("A_B"),
                               QStringLiteral("A__B"),       QStringLiteral("A B.C"),
                               QStringLiteral("Q&A<\"'>"),   QStringLiteral("CAFÉ"),
                               QStringLiteral("_"),          QString::fromUtf8("\xF0\x9F\x8C\xB3")};
    QSet<QString> ids;
    for (const QString &conceptId : concepts) {
        const QString id = EntryId(conceptId);
        EXPECT_TRUE(ncname.match(id).hasMatch()) << id.toStdString();
        EXPECT_FALSE(id.contains(QLatin1Char('.'))) << id.toStdString();
        EXPECT_EQ(ConceptOfEntryId(id), conceptId) << id.toStdString();
        ids.insert(id);
    }
    EXPECT_EQ(ids.size(), concepts.size());
    EXPECT_EQ(EntryId(QStringLiteral("CAR-ENGINE")), QStringLiteral("CAR-ENGINE"));
    EXPECT_EQ(EntryId(QStringLiteral("3D")), QStringLiteral("_u33_D"));
    for (const char *foreign : {"e.12", "c1_", "_x41_", "_u41_", "", "1A", "_u_", "a b"})
        EXPECT_FALSE(ConceptOfEntryId(QString::fromLatin1(foreign))) << foreign;
}

TEST(TbxMapTest, BasicRowsUseTbxBasicTypesAndReadBackToAPrimaryOfTheirKind)
{
    for (const Category &c : Categories()) {
        if (c.Of != Kind::Basic)
            continue;
        const std::string id = c.Id.toString().toStdString();
        ASSERT_TRUE(basicTypes().contains(c.Element.toString())) << id;
        EXPECT_TRUE(basicTypes()[c.Element.toString()].contains(c.Type.toString())) << id;
        EXPECT_NE(c.Levels, unsigned(NoLevel)) << id;
        const Category *back = CategoryFromTbx(c.Element, c.Type, c.Value, c.Targets);
        ASSERT_NE(back, nullptr) << id;
        if (c.Primary)
            EXPECT_EQ(back, &c) << id;
        else
            EXPECT_TRUE(back->Primary && back->Element == c.Element && back->Type == c.Type) << id;
    }
    // A source with a target is a bibliographic record's, one without a plain source text.
    EXPECT_EQ(CategoryFromTbx(u"admin", u"source", {}, true)->Id, u"10.20");
    EXPECT_EQ(CategoryFromTbx(u"admin", u"source", {}, false)->Id, u"10.19.1");
    // A subject field of another tool's file has no target and is still one.
    EXPECT_EQ(CategoryFromTbx(u"descrip", u"subjectField")->Id, u"4");
    EXPECT_EQ(CategoryFromTbx(u"transacGrp", u"date", u"modification")->Id, u"10.7.3");
    EXPECT_EQ(CategoryFromTbx(u"transacGrp", u"responsibility", u"origination")->Id, u"10.2.2.1");
    EXPECT_EQ(CategoryFromTbx(u"descrip", u"nonesuch"), nullptr);
}

TEST(TbxMapTest, LevelsFollowTheDialect)
{
    EXPECT_TRUE(AllowedAt(*FindCategory(u"5.1"), LanguageLevel));
    EXPECT_FALSE(AllowedAt(*FindCategory(u"5.1"), TermLevel));
    EXPECT_FALSE(AllowedAt(*FindCategory(u"4"), LanguageLevel));
    EXPECT_FALSE(AllowedAt(*FindCategory(u"10.3.3"), ConceptLevel)); // subsets only on terms
    EXPECT_FALSE(AllowedAt(*FindCategory(u"5.5.1"), TermLevel));     // pictures on concepts
    EXPECT_TRUE(AllowedAt(*FindCategory(u"5.5.2"), TermLevel));
    for (const Category &c : Categories()) {
        if (c.Element == u"termNote") {
            EXPECT_EQ(c.Levels, unsigned(TermLevel)) << c.Id.toString().toStdString();
        }
    }
}

TEST(TbxMapTest, ClosedListsMapBothWaysAndLeaveNoSeedValueOutsideTheDialect)
{
    QHash<QString, QStringList> picklists;
    for (const QString &row : test::SourceRows("tb_picklists.tsv"))
        picklists[row.section(QLatin1Char('\t'), 0, 0)] << row.section(QLatin1Char('\t'), 1, 1);
    int mapped = 0;
    for (const Category &c : Categories()) {
        if (!HasFixedValues(c.Id))
            continue;
        const QStringList allowed = FixedTbxValues(c.Element, c.Type);
        ASSERT_FALSE(allowed.isEmpty()) << c.Id.toString().toStdString();
        for (const QString &seedValue : picklists.value(c.Id.toString())) {
            const std::optional<QString> out = TbxValue(c.Id, seedValue);
            if (!out)
                continue; // goes out as a note
            ++mapped;
            EXPECT_TRUE(allowed.contains(*out)) << out->toStdString();
            EXPECT_EQ(SeedValue(c.Id, *out), seedValue);
        }
    }
    EXPECT_EQ(mapped, 19); // every pair of the table names a value the seed has
    EXPECT_EQ(TbxValue(u"2.1", QStringLiteral("phraseologicalUnit")), QStringLiteral("phrase"));
    EXPECT_EQ(TbxValue(u"2.2.2", QStringLiteral("otherGender")), QStringLiteral("other"));
    EXPECT_FALSE(TbxValue(u"2.1", QStringLiteral("symbol")));
    EXPECT_FALSE(SeedValue(u"2.8.2", QStringLiteral("standardizedTerm-admn-sts")));
    // A category with an open list keeps its value both ways.
    EXPECT_EQ(TbxValue(u"5.1", QStringLiteral("x & y")), QStringLiteral("x & y"));
    EXPECT_EQ(SeedValue(u"2.3.1", QStringLiteral("Québec")), QStringLiteral("Québec"));
}
