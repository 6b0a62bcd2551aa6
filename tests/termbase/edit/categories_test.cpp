#include "support/scripted_user.h"
#include "termbase/edit/assert.h"
#include "termbase_edit_fixture.h"

using namespace lx;
using Control = CategoryEditor::Control;

namespace {

using CategoriesTest = TermbaseEditTest;

TEST_F(CategoriesTest, TheTableAndItsLookupsInTheChosenLanguage)
{
    EXPECT_EQ(Process().DataCats.size(),
              column(QStringLiteral("SELECT * FROM datcats"), u"categoryID").size());
    EXPECT_EQ(CategoryName(QStringLiteral("0.2")), QStringLiteral("body"));
    EXPECT_EQ(CategoryType(QStringLiteral("10.18")), QStringLiteral("crossReference"));
    EXPECT_EQ(CategoryGI(QStringLiteral("3.2x")), QStringLiteral("ptr"));
    EXPECT_TRUE(CategoryName(QStringLiteral("no such")).isEmpty());
    const QString english = CategoryName(QStringLiteral("1"));

    Process().TermMeta.DCLang = QStringLiteral("es");
    LoadCategoryTable();
    EXPECT_NE(CategoryName(QStringLiteral("1")), english);
    EXPECT_FALSE(CategoryName(QStringLiteral("1")).isEmpty());
}

TEST_F(CategoriesTest, TheTreeHasItsSixTopsInTheirOrderAndChildrenInTextOrder)
{
    const QList<CategoryNode> tree = ReadCategoryTree();
    QStringList tops;
    for (const CategoryNode &top : tree)
        tops << top.Id;
    EXPECT_EQ(tops, (QStringList{"0", "1", "2", "descrip", "admin", "100"}));
    QStringList underTwo;
    for (const CategoryNode &child : tree[2].Children)
        underTwo << child.Id;
    EXPECT_EQ(underTwo.first(), QStringLiteral("2.1"));
    EXPECT_LT(underTwo.indexOf(QStringLiteral("3")), underTwo.indexOf(QStringLiteral("2.9")) + 2);

    // A top without a name in the language ends the tree there, with TB006.
    store::Recordset names = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT * FROM datcats_names WHERE categoryID = 'descrip'"),
        store::dbOpenDynaset);
    for (; !names.Eof(); names.MoveNext())
        names.Delete();
    names.Close();
    test::ScriptedUser user;
    user.answerMsgBox(msg::OK);
    EXPECT_EQ(ReadCategoryTree().size(), 3);
    EXPECT_EQ(
        user.calls()[0].text,
        QStringLiteral("Data category not found. Fatal error. Please report. Error Code TB006"));
}

TEST_F(CategoriesTest, ValidChildrenOfAnElementAndThoseAllowedEverywhere)
{
    const QSet<QString> body = ValidChildCategories(QStringLiteral("0.2"));
    EXPECT_TRUE(IsValidChild(body, QStringLiteral("0.3")));
    EXPECT_TRUE(IsValidChild(body, QStringLiteral("8"))); // "all"
    EXPECT_FALSE(IsValidChild(body, QStringLiteral("1")));
    EXPECT_TRUE(IsValidChild(ValidChildCategories(QStringLiteral("1")), QStringLiteral("2.1")));
}

TEST_F(CategoriesTest, EachCategoryGetsItsControl)
{
    EXPECT_EQ(ChooseCategoryEditor(QStringLiteral("1")).Shown, Control::Text);
    EXPECT_EQ(ChooseCategoryEditor(QStringLiteral("0.3")).Shown, Control::Concepts);
    const CategoryEditor picklist = ChooseCategoryEditor(QStringLiteral("2.1"));
    EXPECT_EQ(picklist.Shown, Control::Picklist);
    EXPECT_FALSE(picklist.Values.isEmpty());
    EXPECT_EQ(ChooseCategoryEditor(QStringLiteral("3.4")).Shown, Control::Number);
    EXPECT_EQ(ChooseCategoryEditor(QStringLiteral("10.7.1")).Shown, Control::Date);
    EXPECT_EQ(ChooseCategoryEditor(QStringLiteral("3.2x")).Shown, Control::Pointer);
    const CategoryEditor note = ChooseCategoryEditor(QStringLiteral("8"));
    EXPECT_EQ(note.Shown, Control::Text);
    EXPECT_TRUE(note.NeedsLang);
    const CategoryEditor record = ChooseCategoryEditor(QStringLiteral("x10.20"));
    EXPECT_EQ(record.Shown, Control::Record);
    EXPECT_EQ(record.RecordCommand, QStringLiteral("AddBibliography"));
    // References find nothing in an empty backmatter.
    EXPECT_EQ(ChooseCategoryEditor(QStringLiteral("5.5.1")).Shown, Control::NoElements);
    EXPECT_EQ(ChooseCategoryEditor(QStringLiteral("10.2.2.1")).Shown, Control::NoElements);
}

TEST_F(CategoriesTest, ReferencesListTheRecordsWhereTheyAreStored)
{
    const qint32 figure = element(QStringLiteral("x5.5"), 6);
    addRow(QStringLiteral("ref_values"),
           {{u"elemID", figure}, {u"value", QStringLiteral("a.png")}});
    const qint32 system = element(QStringLiteral("x4.2"), 8);
    addRow(QStringLiteral("text_values"), {{u"elemID", system}, {u"value", QStringLiteral("UDC")}});
    const qint32 person = element(QStringLiteral("x10.2.2"), 7);
    addRow(QStringLiteral("text_values"), {{u"elemID", person}, {u"value", QStringLiteral("Ana")}});

    const CategoryEditor refs = ChooseCategoryEditor(QStringLiteral("5.5.2"));
    EXPECT_EQ(refs.Shown, Control::Refs);
    EXPECT_EQ(refs.Values, QStringList{QStringLiteral("a.png")});
    // A classification system keeps its value as text and is found there.
    EXPECT_EQ(CollectRefValues(QStringLiteral("4.2")), QStringList{QStringLiteral("UDC")});
    const CategoryEditor persons = ChooseCategoryEditor(QStringLiteral("10.2.2.10"));
    EXPECT_EQ(persons.Shown, Control::BackmatterList);
    EXPECT_EQ(persons.Values, QStringList{QStringLiteral("Ana")});

    EXPECT_EQ(RefRecordCategory(QStringLiteral("5.5.1")), QStringLiteral("x5.5"));
    EXPECT_TRUE(RefRecordCategory(QStringLiteral("5.5.10")).isEmpty()); // "?" is one character
    EXPECT_EQ(RefRecordCategory(QStringLiteral("10.3.1.2")), QStringLiteral("x10.3"));
}

TEST_F(CategoriesTest, ElementsKnowTheirCategoryAndTheirEntrysConcept)
{
    addRow(QStringLiteral("CONCEPTS"), {{u"Concept", QStringLiteral("ANIMAL")}});
    AssertInput input;
    input.CategoryId = QStringLiteral("0.3");
    input.From = AssertInput::Source::Concepts;
    input.Value = QStringLiteral("ANIMAL");
    input.Parent = 3;
    ASSERT_TRUE(AssertElement(editor, input).Written);
    const qint32 entry = editor.LastElemID;
    const qint32 section = element(QStringLiteral("0.4"), entry);
    const qint32 term = element(QStringLiteral("1"), section);
    EXPECT_EQ(ElementCategory(term), QStringLiteral("1"));
    EXPECT_EQ(ElementConcept(term), QStringLiteral("ANIMAL"));
    EXPECT_TRUE(ElementConcept(3).isEmpty());

    test::ScriptedUser user;
    user.answerMsgBox(msg::OK);
    EXPECT_TRUE(ElementCategory(99999).isEmpty());
    EXPECT_EQ(user.calls()[0].text,
              QStringLiteral("Element not found. Fatal Error. Please report. Error Code GL001"));
    EXPECT_EQ(user.calls()[0].title, QStringLiteral("Error"));
}

} // namespace
