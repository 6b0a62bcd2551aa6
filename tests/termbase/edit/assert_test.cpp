#include "support/scripted_user.h"
#include "termbase/edit/assert.h"
#include "termbase_edit_fixture.h"

using namespace lx;
using Source = AssertInput::Source;
using Branch = AssertResult::Branch;

namespace {

// A termbase with the concepts ANIMAL and BIRD, and an entry for ANIMAL.
class AssertTest : public TermbaseEditTest {
protected:
    void SetUp() override
    {
        TermbaseEditTest::SetUp();
        for (const char *id : {"ANIMAL", "BIRD"})
            addRow(QStringLiteral("CONCEPTS"), {{u"Concept", QString::fromLatin1(id)}});
        entry = editor.LastElemID + 1;
        ASSERT_TRUE(
            assertValue(QStringLiteral("0.3"), Source::Concepts, QStringLiteral("ANIMAL"), 3)
                .Written);
    }
    AssertResult assertValue(const QString &category, Source from, const QString &value,
                             qint32 parent, const QString &language = {})
    {
        AssertInput input;
        input.CategoryId = category;
        input.From = from;
        input.Value = value;
        input.Parent = parent;
        input.LanguageShown = !language.isEmpty();
        input.Language = language;
        return AssertElement(editor, input);
    }
    AssertResult term(const QString &text, const QString &language)
    {
        return assertValue(QStringLiteral("1"), Source::Text, text, entry, language);
    }
    QStringList terms()
    {
        return column(QStringLiteral("SELECT * FROM TERMS ORDER BY elemID"), u"term");
    }
    QStringList sections()
    {
        return column(QStringLiteral("SELECT * FROM elements WHERE categoryID = '0.4' ORDER BY "
                                     "elemID"),
                      u"elemID");
    }

    qint32 entry = 0;
    test::ScriptedUser user;
};

TEST_F(AssertTest, TermsGoIntoTheSectionOfTheirLanguage)
{
    EXPECT_EQ(editor.EntryCount, 1);
    const AssertResult first = term(QStringLiteral("animal"), QStringLiteral("en"));
    EXPECT_TRUE(first.NewSection);
    EXPECT_FALSE(first.SectionsFound);
    const AssertResult second = term(QStringLiteral("beast"), QStringLiteral("en"));
    EXPECT_FALSE(second.NewSection);
    EXPECT_TRUE(second.SectionsFound);
    EXPECT_TRUE(term(QStringLiteral("animal"), QStringLiteral("de")).NewSection);
    EXPECT_EQ(terms(), (QStringList{"animal", "beast", "animal"}));
    EXPECT_EQ(sections().size(), 2);
    EXPECT_EQ(editor.TermCount, 3);
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM TERMS WHERE langID = 'de'"), u"term"),
              QStringList{"animal"});
}

TEST_F(AssertTest, ASectionThatLostItsLanguageRefusesWithoutAWord)
{
    element(QStringLiteral("0.4"), entry); // no row in elements_use_lang
    const qsizetype before = column(QStringLiteral("SELECT * FROM elements"), u"elemID").size();
    EXPECT_FALSE(term(QStringLiteral("animal"), QStringLiteral("en")).Written);
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM elements"), u"elemID").size(), before);
    EXPECT_TRUE(user.calls().isEmpty());
}

TEST_F(AssertTest, RefusalsComeInTheirOrderAndWriteNothing)
{
    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK).answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    AssertInput input;
    input.CategoryId = QStringLiteral("1");
    input.LanguageShown = true;
    EXPECT_TRUE(AssertElement(editor, input).RefusedForLanguage);
    EXPECT_FALSE(term(QStringLiteral("   "), QStringLiteral("en")).Written);
    EXPECT_FALSE(
        assertValue(QStringLiteral("3.4"), Source::Number, QStringLiteral("0"), entry).Written);
    EXPECT_FALSE(
        assertValue(QStringLiteral("0.3"), Source::Concepts, QStringLiteral("ANIMAL"), 3).Written);
    EXPECT_EQ(user.calls()[0].text,
              QStringLiteral("This element requires a language to be specified"));
    EXPECT_EQ(user.calls()[0].icon, msg::Information);
    EXPECT_EQ(user.calls()[1].text, QStringLiteral("You must specify a value"));
    EXPECT_EQ(user.calls()[1].icon, msg::Critical);
    EXPECT_EQ(user.calls()[3].text, QStringLiteral("TermEntry exists!"));
    EXPECT_EQ(editor.EntryCount, 1);
    EXPECT_TRUE(terms().isEmpty());
    // No category prepared: nothing, not a word.
    input.LanguageShown = false;
    input.CategoryId.clear();
    input.Value = QStringLiteral("x");
    EXPECT_FALSE(AssertElement(editor, input).Written);
    EXPECT_EQ(user.calls().size(), 4);
}

TEST_F(AssertTest, ValuesGoToTheTableOfTheirControl)
{
    const QString picked = ChooseCategoryEditor(QStringLiteral("2.1")).Values.first();
    EXPECT_EQ(assertValue(QStringLiteral("2.1"), Source::Picklist, picked, entry).Went,
              Branch::General);
    assertValue(QStringLiteral("3.4"), Source::Number, QStringLiteral("7"), entry);
    assertValue(QStringLiteral("10.7.1"), Source::Date, QStringLiteral("24/12/2025"), entry);
    const qint32 note = editor.LastElemID + 1;
    assertValue(QStringLiteral("8"), Source::Text, QStringLiteral("it's \"quoted\""), entry,
                QStringLiteral("en"));
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM picklist_values"), u"value"),
              QStringList{picked});
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM number_values"), u"value"), QStringList{"7"});
    EXPECT_TRUE(column(QStringLiteral("SELECT * FROM date_values"), u"value")
                    .first()
                    .startsWith(QStringLiteral("2025-12-24")));
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM text_values"), u"value"),
              QStringList{"it's \"quoted\""});
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM elements_use_lang WHERE elemID = ") +
                         QString::number(note),
                     u"langID"),
              QStringList{"en"});

    // A day that isn't one, and a value that isn't in the list: told, nothing written.
    const qsizetype before = column(QStringLiteral("SELECT * FROM elements"), u"elemID").size();
    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    EXPECT_FALSE(
        assertValue(QStringLiteral("10.7.1"), Source::Date, QStringLiteral("31/02/2025"), entry)
            .Written);
    EXPECT_FALSE(
        assertValue(QStringLiteral("2.1"), Source::Picklist, QStringLiteral("nonsense"), entry)
            .Written);
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM elements"), u"elemID").size(), before);
}

TEST_F(AssertTest, ReferencesPointAtTheirRecordOrAtNothing)
{
    // No subject field set at all: the element stands without a pointer.
    assertValue(QStringLiteral("4"), Source::Picklist, QStringLiteral("Zoology"), entry);
    EXPECT_TRUE(column(QStringLiteral("SELECT * FROM pointers"), u"targetID").isEmpty());
    const qint32 set = element(QStringLiteral("xx4"), 8);
    addRow(QStringLiteral("text_values"),
           {{u"elemID", set}, {u"value", QStringLiteral("Zoology")}});
    assertValue(QStringLiteral("4"), Source::Picklist, QStringLiteral("Zoology"), entry);
    // One that has gone since the list was filled: told, nothing written.
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(
        assertValue(QStringLiteral("4"), Source::Picklist, QStringLiteral("Gone"), entry).Written);
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM pointers ORDER BY elemID"), u"targetID"),
              QStringList{QString::number(set)});

    // A file record named by lstRefs; an unknown one is TB005 and leaves the element bare.
    const qint32 figure = element(QStringLiteral("x5.5"), 6);
    addRow(QStringLiteral("ref_values"),
           {{u"elemID", figure}, {u"value", QStringLiteral("a.png")}});
    assertValue(QStringLiteral("5.5.1"), Source::Refs, QStringLiteral("a.png"), entry);
    user.answerMsgBox(msg::OK);
    EXPECT_TRUE(
        assertValue(QStringLiteral("5.5.1"), Source::Refs, QStringLiteral("b.png"), entry).Written);
    EXPECT_EQ(user.calls()[1].text,
              QStringLiteral("Inconsistency error. Element does not exist. Error Code TB005"));
    EXPECT_EQ(
        column(QStringLiteral("SELECT * FROM pointers WHERE targetID = ") + QString::number(figure),
               u"elemID")
            .size(),
        1);
}

TEST_F(AssertTest, CrossReferencesAndTheirRefusals)
{
    term(QStringLiteral("animal"), QStringLiteral("en"));
    const qint32 theTerm = editor.LastElemID;
    const qint32 section = theTerm - 1;
    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    EXPECT_FALSE(CompleteCrossReference(editor, entry, entry, QStringLiteral("0.3"),
                                        QStringLiteral("3.5x")));
    EXPECT_FALSE(CompleteCrossReference(editor, entry, section, QStringLiteral("0.4"),
                                        QStringLiteral("3.5x")));
    EXPECT_FALSE(
        CompleteCrossReference(editor, theTerm, 2, QStringLiteral("x1"), QStringLiteral("3.5x")));
    EXPECT_EQ(user.calls()[0].text,
              QStringLiteral("An element can't be cross-referenced to itself!"));
    EXPECT_EQ(user.calls()[1].text, QStringLiteral("Element can't be cross-referenced."));
    EXPECT_TRUE(user.calls()[2].text.endsWith(
        QStringLiteral(". Only terms, can be cross-referenced  by an element of this kind.")));

    // A plain one takes the category's type as its text.
    EXPECT_TRUE(CompleteCrossReference(editor, entry, theTerm, QStringLiteral("1"),
                                       QStringLiteral("3.5x")));
    // "10.18" asks for a description: 51 characters are too many, 50 are taken.
    user.answerInputBox(QString(51, QLatin1Char('d'))).answerMsgBox(msg::OK);
    EXPECT_FALSE(
        CompleteCrossReference(editor, entry, 2, QStringLiteral("x1"), QStringLiteral("10.18")));
    user.answerInputBox(QString(50, QLatin1Char('d')));
    EXPECT_TRUE(
        CompleteCrossReference(editor, entry, 2, QStringLiteral("x1"), QStringLiteral("10.18")));
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM text_values ORDER BY elemID"), u"value"),
              (QStringList{CategoryType(QStringLiteral("3.5x")), QString(50, QLatin1Char('d'))}));
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM pointers ORDER BY elemID"), u"targetID"),
              (QStringList{QString::number(theTerm), "2"}));
}

} // namespace
