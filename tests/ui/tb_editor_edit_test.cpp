#include "core/signal_label.h"
#include "element_tree_fixture.h"
#include "termbase/store/lifecycle.h"
#include "ui/frm_onto_edit.h"
#include "ui/local_browser.h"

#include <QComboBox>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

namespace lx::test {
namespace {

// The entries of the tree fixture with values of every type: under the term 120 a term type
// (picklist), a reliability code (number) and a valency (text); under the entry 100 a note in
// English (text) and a date.
class ElementEditUi : public ElementTreeUi {
protected:
    void SetUp() override
    {
        ElementTreeUi::SetUp();
        value(130, "2.1", 120, "picklist_values", QStringLiteral("fullForm"));
        value(131, "3.4", 120, "number_values", 4);
        value(134, "2.2.5", 120, "text_values", QStringLiteral("Enter a valency"));
        value(132, "8", 100, "text_values", QStringLiteral("an old note"));
        add("elements_use_lang", {{"elemID", 132}, {"langID", "en"}});
        value(133, "10.7.1", 100, "date_values", QDate(2020, 3, 1));
    }

    void value(qint32 id, const char *category, qint32 parent, const char *table, QVariant v)
    {
        element(id, category, parent);
        add(table, {{"elemID", id}, {"value", v}});
    }

    QVariant stored(const char *table, qint32 id, const char *field = "value")
    {
        store::Recordset rs =
            Process().TermDB.OpenRecordset(QStringLiteral("SELECT * FROM %1 WHERE elemID = %2")
                                               .arg(QString::fromLatin1(table))
                                               .arg(id),
                                           store::dbOpenSnapshot);
        return rs.Eof() ? QVariant() : rs.Value(QString::fromLatin1(field));
    }

    void open(qint32 id)
    {
        editor->GoToElement(id);
        editor->Tree1_NodeClick(tree->currentItem());
    }
};

// A click on an attribute or a note fills the frame with its value in the control of its type;
// OK writes the new value, and an emptied value asks to delete the element.
TEST_F(ElementEditUi, TheEditFrameShowsAndWritesEachValueType)
{
    open(134);
    ASSERT_FALSE(editor->txtData->isHidden());
    EXPECT_EQ(editor->txtData->text(), QStringLiteral("Enter a valency"));
    EXPECT_EQ(editor->txtElem->text(), QStringLiteral("heron")) << "the parent's text";
    EXPECT_FALSE(editor->cmdEdit->isHidden());
    EXPECT_TRUE(editor->cmdAssert->isHidden());
    editor->txtData_Click();
    EXPECT_TRUE(editor->txtData->text().isEmpty()) << "a prompt goes at the first click";
    editor->txtData->setText(QStringLiteral("bivalent"));
    editor->cmdEdit->click();
    EXPECT_EQ(stored("text_values", 134).toString(), QStringLiteral("bivalent"));

    open(130);
    ASSERT_FALSE(editor->lstData->isHidden());
    ASSERT_NE(editor->lstData->currentItem(), nullptr);
    EXPECT_EQ(editor->lstData->currentItem()->text(), QStringLiteral("fullForm"));
    editor->lstData->setCurrentItem(
        editor->lstData->findItems(QStringLiteral("acronym"), Qt::MatchExactly).first());
    editor->cmdEdit->click();
    EXPECT_EQ(stored("picklist_values", 130).toString(), QStringLiteral("acronym"));

    open(131);
    ASSERT_FALSE(editor->sldData->isHidden()) << "3.4 is the one number with a slider";
    EXPECT_EQ(editor->sldData->value(), 4);
    editor->sldData->setValue(7);
    editor->cmdEdit->click();
    EXPECT_EQ(stored("number_values", 131).toInt(), 7);

    open(133);
    ASSERT_FALSE(editor->mskData->isHidden());
    EXPECT_EQ(editor->mskData->text(), QStringLiteral("01/03/2020"));
    editor->mskData->setText(QStringLiteral("31/02/2021"));
    user.answerMsgBox(msg::OK);
    editor->cmdEdit->click();
    EXPECT_TRUE(user.calls().last().text.startsWith(QStringLiteral("The date 31/02/2021")));
    EXPECT_EQ(stored("date_values", 133).toDate(), QDate(2020, 3, 1)) << "nothing written";
    editor->mskData->setText(QStringLiteral("15/06/2022"));
    editor->cmdEdit->click();
    EXPECT_EQ(stored("date_values", 133).toDate(), QDate(2022, 6, 15));

    // A note carries its language, which the frame changes with the value.
    open(132);
    ASSERT_FALSE(editor->lstLang->isHidden());
    EXPECT_EQ(editor->lstLang->currentText(), QStringLiteral("en"));
    editor->lstLang->setCurrentIndex(editor->lstLang->findText(QStringLiteral("es")));
    editor->txtData->setText(QStringLiteral("una nota"));
    editor->cmdEdit->click();
    EXPECT_EQ(stored("text_values", 132).toString(), QStringLiteral("una nota"));
    EXPECT_EQ(stored("elements_use_lang", 132, "langID").toString(), QStringLiteral("es"));

    // Emptied: the delete question; no keeps it.
    open(132);
    editor->txtData->clear();
    user.answerMsgBox(msg::No);
    editor->cmdEdit->click();
    EXPECT_EQ(user.calls().last().title, QStringLiteral("Confirm deletion"));
    EXPECT_EQ(stored("text_values", 132).toString(), QStringLiteral("una nota"));
}

TEST_F(ElementEditUi, AValueWhoseRowWentIsReportedAndNothingWritten)
{
    open(134);
    store::Recordset rs = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT * FROM text_values WHERE elemID = 134"), store::dbOpenDynaset);
    rs.Delete();
    rs.Close();
    editor->txtData->setText(QStringLiteral("x"));
    user.answerMsgBox(msg::OK);
    editor->cmdEdit->click();
    EXPECT_EQ(user.calls().last().text,
              QStringLiteral("Element not found. Fatal Error. Error Code TB004."));
    EXPECT_EQ(user.calls().last().title, QStringLiteral("Error"));
}

// Deleting the term takes its cross-reference and, as the last of its language, the section.
TEST_F(ElementEditUi, DeletingATermTakesItsBranchAndTheEmptiedSection)
{
    open(120);
    editor->TermCount = 5;
    user.answerMsgBox(msg::Yes);
    editor->mnuElemDelete->trigger();
    EXPECT_EQ(user.calls().last().text,
              QStringLiteral("Are You sure you want to delete this element?\r\nAll references to "
                             "it will be deleted as well,"));
    EXPECT_TRUE(stored("elements", 120, "elemID").isNull());
    EXPECT_TRUE(stored("elements", 121, "elemID").isNull()) << "the branch went";
    EXPECT_TRUE(stored("TERMS", 120, "term").isNull());
    EXPECT_TRUE(stored("elements", 110, "elemID").isNull()) << "the emptied section went";
    EXPECT_EQ(editor->TermCount, 4);
    EXPECT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), QStringLiteral("n 100"));

    // Folders ask nothing and keep everything.
    editor->Tree1->setCurrentItem(body());
    editor->mnuElemDelete_Click();
    EXPECT_EQ(user.pendingAnswers(), 0);
    EXPECT_FALSE(stored("elements", 100, "elemID").isNull());
}

// Deleting an entry that others point at takes the pointing elements too.
TEST_F(ElementEditUi, DeletingAnEntryTakesEveryElementThatPointsAtIt)
{
    open(102);
    editor->EntryCount = 4;
    user.answerMsgBox(msg::Yes);
    editor->mnuElemDelete->trigger();
    EXPECT_TRUE(stored("elements", 102, "elemID").isNull());
    EXPECT_TRUE(stored("elements", 121, "elemID").isNull()) << "the cross-reference to it";
    EXPECT_FALSE(stored("elements", 120, "elemID").isNull()) << "its holder stays";
    EXPECT_EQ(editor->EntryCount, 3);
    EXPECT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), QStringLiteral("n 3"));
}

// A term is renamed in place in TERMS only; a concept is changed in the ontology editor.
TEST_F(ElementEditUi, LabelsChangeInPlaceForTermsOnly)
{
    open(120);
    QTreeWidgetItem *term = tree->currentItem();
    term->setData(0, Qt::EditRole, QStringLiteral("grey heron"));
    EXPECT_EQ(stored("TERMS", 120, "term").toString(), QStringLiteral("grey heron"));
    EXPECT_EQ(term->text(0), QStringLiteral("grey heron"));
    user.answerMsgBox(msg::OK);
    term->setData(0, Qt::EditRole, QStringLiteral("  "));
    EXPECT_EQ(stored("TERMS", 120, "term").toString(), QStringLiteral("grey heron"));
    EXPECT_EQ(term->text(0), QStringLiteral("grey heron"));

    open(100);
    QTreeWidgetItem *entry = tree->currentItem();
    EXPECT_FALSE(entry->flags() & Qt::ItemIsEditable);
    entry->setData(0, Qt::EditRole, QStringLiteral("FISH"));
    EXPECT_EQ(entry->text(0), QStringLiteral("BIRD")) << "a concept isn't renamed here";
    editor->mnuElemModify_Click();
    EXPECT_EQ(form.txtCptSearch->text(), QStringLiteral("BIRD"));
}

// Browse Mode shows the entry's page, written into the "-publish" folder when missing; a file
// of the backmatter that isn't there is reported; attributes still open the frame.
TEST_F(ElementEditUi, BrowseModeShowsPagesAndFilesAndStillEditsValues)
{
    editor->ShowBrowser();
    EXPECT_TRUE(editor->BrowseMode());
    EXPECT_EQ(editor->lblTree2->text(), QStringLiteral("TERMBASE BROWSER"));
    EXPECT_TRUE(editor->Tree2->isHidden());

    open(100);
    const QString page = editor->PublishFolder() + QStringLiteral("BIRD.html");
    EXPECT_TRUE(QFileInfo::exists(page));
    EXPECT_EQ(editor->Browser->LocationURL(), QUrl::fromLocalFile(page));
    EXPECT_EQ(editor->txtElem->text(), QStringLiteral("BIRD"));

    element(140, "5.5.1", 100);
    element(141, "x5.5", 8);
    add("ref_values", {{"elemID", 141}, {"value", "heron.png"}});
    add("pointers", {{"elemID", 140}, {"targetID", 141}});
    user.answerMsgBox(msg::OK);
    open(140);
    EXPECT_TRUE(user.calls().last().text.startsWith(QStringLiteral("Target file ")));
    EXPECT_TRUE(user.calls().last().text.endsWith(
        QStringLiteral("heron.png not found. You should either copy this file yourself or "
                       "delete the reference from the backmatter.")));
    QFile file(editor->BackFolder() + QStringLiteral("heron.png"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    editor->CurrentElemID = 0;
    open(140);
    EXPECT_EQ(editor->Browser->LocationURL(), QUrl::fromLocalFile(file.fileName()));

    open(134);
    EXPECT_FALSE(editor->txtData->isHidden()) << "the frame opens in both modes";

    editor->ShowEditor();
    EXPECT_EQ(editor->lblTree2->text(), QStringLiteral("DATA CATEGORIES"));
    EXPECT_TRUE(editor->picBrowser->isHidden());
    const QString before = editor->txtElem->text();
    open(140);
    EXPECT_TRUE(user.unexpectedCalls().isEmpty()) << "no file is looked for in Edit Mode";
    EXPECT_EQ(editor->txtElem->text(), before);
}

// The ontology editor's word: a delete or a rename reads the tree again down to body; an add
// only the concept list; an empty caption nothing.
TEST_F(ElementEditUi, TheOntologyEditorsWordReachesTheTree)
{
    open(120);
    editor->lblOntoComm->setCaption(QString());
    EXPECT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), QStringLiteral("n 120"));
    ui::SendOntoComm(1, QStringLiteral("BIRD"));
    EXPECT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), QStringLiteral("n 120"));
    ui::SendOntoComm(3, QStringLiteral("BIRD"));
    EXPECT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), QStringLiteral("n 3"));
    EXPECT_TRUE(body()->isExpanded());
    EXPECT_EQ(body()->childCount(), 4);
}

} // namespace
} // namespace lx::test

namespace lx::test {
namespace {

TEST_F(ElementTreeUi, TheToolsMenuOpensTheTermbaseReports)
{
    editor->mnuToolsGenHTML->trigger();
    QWidget *reports = ui::Forms().FindByCaption(u"Generate HTML Reports (TermBase)");
    ASSERT_NE(reports, nullptr);
    ui::Forms().Unload(reports);
}

} // namespace
} // namespace lx::test
