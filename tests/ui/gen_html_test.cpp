// The report dialog driven as the user drives it: its list, selection modes, sorts, refresh and
// the runs that write pages or an export file.
#include "publish_fixture.h"
#include "ui/frm_gen_html.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

namespace {

using lx::msg::Exclamation;
using lx::msg::Information;
using lx::ui::Forms;
using lx::ui::frmGenHTML;

QString S(const char *text)
{
    return QString::fromUtf8(text);
}

class GenHtmlTest : public lx::test::PublishFormsTest {
protected:
    frmGenHTML &openReports()
    {
        openZoo();
        form.mnuGenHTML->trigger();
        frmGenHTML *dialog = Forms().Find<frmGenHTML>();
        EXPECT_NE(dialog, nullptr);
        return *dialog;
    }
    // The last message asked, with its icon.
    std::pair<QString, int> lastMessage() const
    {
        return {user.calls().last().text, user.calls().last().icon};
    }
    void select(frmGenHTML &dialog, const QStringList &ids)
    {
        for (int i = 0; i < dialog.lstConcepts->count(); ++i)
            dialog.lstConcepts->item(i)->setSelected(
                ids.contains(dialog.lstConcepts->item(i)->text()));
    }
    QString status(frmGenHTML &dialog) const { return dialog.StatusPanel(2)->text(); }
};

TEST_F(GenHtmlTest, OpensOnTheOntologysConceptsAlphabeticallyWithItsFolderAndSubsets)
{
    frmGenHTML &dialog = openReports();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.windowTitle(), S("Generate HTML Reports (Ontology)"));
    EXPECT_EQ(dialog.txtPath->text(), publishFolder());
    EXPECT_EQ(texts(dialog.lstConcepts),
              (QStringList{S("ANIMAL"), S("BAT"), S("BIRD"), S("EATS"), S("STONE"), S("THING")}));
    EXPECT_EQ(dialog.SortState, S("Alpha"));
    EXPECT_EQ(status(dialog), S("0 Concepts selected"));
    EXPECT_EQ(dialog.cbxSubset->currentText(), S("General"));
    EXPECT_EQ(dialog.cbxSubset->count(), 2);
    EXPECT_TRUE(dialog.chkCSReport->isHidden());
    EXPECT_FALSE(dialog.fraInclude->isHidden());
    EXPECT_EQ(dialog.lstConcepts->toolTip(), S("Use CTRL and SHIFT for multi-selection"));
    EXPECT_EQ(dialog.cmdCancel->text(), S("&Close"));

    // Refreshing lists the subsets again each time, and the concepts once.
    dialog.cmdRefresh->click();
    dialog.cmdRefresh->click();
    EXPECT_EQ(dialog.cbxSubset->count(), 6);
    EXPECT_EQ(dialog.lstConcepts->count(), 6);

    // The same menu again brings the open dialog forward.
    form.mnuGenHTML->trigger();
    EXPECT_EQ(Forms().WithCaptionLike(u"Generate HTML Reports*").size(), 1);
}

TEST_F(GenHtmlTest, ExpressionAndSubsetModesSelectByTheirRules)
{
    frmGenHTML &dialog = openReports();
    dialog.optRegExp->click();
    EXPECT_TRUE(dialog.txtRegExp->isEnabled());
    EXPECT_FALSE(dialog.cbxSubset->isEnabled());
    dialog.txtRegExp->setText(S("BI"));
    user.answerMsgBox(lx::msg::OK);
    dialog.cmdSelect->click();
    EXPECT_EQ(lastMessage(), std::make_pair(S("Enter at least 3 characters!"), Information));
    EXPECT_EQ(user.calls().last().title, S("Error"));

    dialog.txtRegExp->setText(S("BIR"));
    user.answerMsgBox(lx::msg::OK);
    dialog.cmdSelect->click();
    EXPECT_EQ(lastMessage(), std::make_pair(S("No concepts matched your criteria."), Information));
    EXPECT_EQ(status(dialog), S("0 Concepts selected"));

    dialog.txtRegExp->setText(S("B??*"));
    dialog.cmdSelect->click();
    EXPECT_EQ(texts(dialog.lstConcepts, true), (QStringList{S("BAT"), S("BIRD")}));
    EXPECT_EQ(status(dialog), S("2 Concepts selected"));

    // Another mode clears what was selected.
    dialog.optSubset->click();
    EXPECT_TRUE(texts(dialog.lstConcepts, true).isEmpty());
    EXPECT_TRUE(dialog.cbxSubset->isEnabled());
    dialog.cbxSubset->setEditText(S("Minerals"));
    dialog.cmdSelect->click();
    EXPECT_EQ(texts(dialog.lstConcepts, true), QStringList{S("STONE")});

    // All, then a click in the list switches to manual selection, which clears it.
    dialog.optAll->click();
    dialog.cmdSelect->click();
    EXPECT_EQ(status(dialog), S("6 Concepts selected"));
    Q_EMIT dialog.lstConcepts->itemClicked(dialog.lstConcepts->item(1));
    EXPECT_TRUE(dialog.optSelect->isChecked());
    EXPECT_EQ(status(dialog), S("0 Concepts selected"));
    EXPECT_FALSE(dialog.cmdSelect->isEnabled());
}

TEST_F(GenHtmlTest, TheSubhierarchyIsTheChosenConceptAndItsDescendants)
{
    frmGenHTML &dialog = openReports();
    dialog.optHier->click();
    select(dialog, {S("ANIMAL"), S("BAT")});
    user.answerMsgBox(lx::msg::OK);
    dialog.cmdSelect->click();
    EXPECT_EQ(
        lastMessage(),
        std::make_pair(S("For this option you must select ONE concept in the list."), Exclamation));
    EXPECT_EQ(user.calls().last().title, S("Select error"));

    select(dialog, {S("THING")});
    user.answerMsgBox(lx::msg::OK);
    dialog.cmdSelect->click();
    EXPECT_EQ(lastMessage(),
              std::make_pair(S("The concept you selected is not valid."), Exclamation));

    select(dialog, {S("BIRD")});
    user.answerMsgBox(lx::msg::OK);
    dialog.cmdSelect->click();
    EXPECT_EQ(lastMessage(), std::make_pair(S("The concept you selected is a leaf"), Exclamation));

    select(dialog, {S("ANIMAL")});
    dialog.cmdSelect->click();
    EXPECT_EQ(texts(dialog.lstConcepts, true), (QStringList{S("ANIMAL"), S("BAT"), S("BIRD")}));
    EXPECT_EQ(status(dialog), S("3 Concepts selected"));
    EXPECT_EQ(user.MousePointer(), lx::pointer::Default);
}

TEST_F(GenHtmlTest, AsEnteredIsTheTableOrderAndASortLosesTheSelection)
{
    frmGenHTML &dialog = openReports();
    select(dialog, {S("BAT")});
    dialog.optAsEntered->click();
    EXPECT_EQ(texts(dialog.lstConcepts),
              (QStringList{S("THING"), S("ANIMAL"), S("BIRD"), S("EATS"), S("BAT"), S("STONE")}));
    EXPECT_EQ(dialog.SortState, S("AsEntered"));
    EXPECT_TRUE(texts(dialog.lstConcepts, true).isEmpty());
    dialog.optAlpha->click();
    EXPECT_EQ(texts(dialog.lstConcepts).first(), S("ANIMAL"));
}

TEST_F(GenHtmlTest, ARunWritesThePagesOfTheSelectionWithItsOptionsAndEmptiesIt)
{
    frmGenHTML &dialog = openReports();
    dialog.chkAncestors->setChecked(false);
    select(dialog, {S("BAT"), S("BIRD")});
    dialog.cmdOK->click();
    EXPECT_EQ(pagesWritten(), (QStringList{S("BAT.html"), S("BIRD.html")}));
    EXPECT_FALSE(bytes(page(S("BIRD"))).contains("ANCESTORS"));
    EXPECT_TRUE(bytes(page(S("BIRD"))).contains("<strong>Definition</strong>: A feathered animal"));
    EXPECT_EQ(status(dialog), S("Generated 2 out of 2"));
    EXPECT_TRUE(texts(dialog.lstConcepts, true).isEmpty());
    EXPECT_TRUE(dialog.ProgressBar1->isHidden());
    EXPECT_TRUE(dialog.isVisible());

    user.answerMsgBox(lx::msg::OK);
    dialog.cmdOK->click();
    EXPECT_EQ(lastMessage(), std::make_pair(S("No concepts have been selected!"), Information));

    // Close empties the path and unloads the dialog.
    dialog.cmdCancel->click();
    lx::test::FlushDeletes();
    EXPECT_EQ(Forms().Find<frmGenHTML>(), nullptr);
}

TEST_F(GenHtmlTest, TheExportRoleWritesTheSelectedBlocksToTheFileNamed)
{
    openZoo();
    form.mnuFileExport->trigger();
    frmGenHTML *dialog = Forms().Find<frmGenHTML>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowTitle(), S("Export Ontology"));
    EXPECT_TRUE(dialog->fraInclude->isHidden());
    EXPECT_TRUE(dialog->chkCSReport->isHidden());
    EXPECT_EQ(dialog->fraSelect->title(), S("Export"));
    select(*dialog, {S("BAT"), S("STONE")});
    user.answerInputBox(S("zoo.oxp"));
    dialog->cmdOK->click();
    EXPECT_EQ(user.calls().last().text, S("Enter output file name: "));
    const QByteArray file = bytes(publishFolder() + S("/zoo.oxp"));
    EXPECT_TRUE(file.startsWith("(BAT IS-A VALUE ANIMAL"));
    EXPECT_TRUE(file.contains("\r\n(STONE IS-A VALUE THING"));
    EXPECT_EQ(status(*dialog), S("Exported 2 out of 2"));
    EXPECT_TRUE(texts(dialog->lstConcepts, true).isEmpty());
    EXPECT_TRUE(pagesWritten() == QStringList{S("zoo.oxp")});
    EXPECT_EQ(user.MousePointer(), lx::pointer::Default);
}

TEST_F(GenHtmlTest, BrowseTakesTheFolderChosen)
{
    frmGenHTML &dialog = openReports();
    user.answerFolder(home.path());
    dialog.cmdBrowse->click();
    EXPECT_EQ(user.calls().last().request.initialDir, publishFolder());
    EXPECT_EQ(dialog.txtPath->text(), home.path());
    EXPECT_EQ(dialog.OutputFolder, home.path());
    user.answerFolder(std::nullopt);
    dialog.cmdBrowse->click();
    EXPECT_EQ(dialog.txtPath->text(), home.path());
}

} // namespace
