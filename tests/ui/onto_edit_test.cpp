#include "open_ontology_fixture.h"
#include "ui/frm_about.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_onto_options.h"
#include "ui/images.h"
#include "ui_fixture.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <QToolBar>

namespace {

using lx::test::VisibleMenus;
using lx::ui::Forms;
using lx::ui::frmOntoEdit;

class OntoEditTest : public lx::test::UiTest {
protected:
    frmOntoEdit &form = Forms().Get<frmOntoEdit>();
};

TEST_F(OntoEditTest, LoadLeavesTheNoOntologyState)
{
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor"));
    EXPECT_EQ(form.BaseCaption, QStringLiteral("Ontology Editor"));
    EXPECT_EQ(lx::Process().Quote, QStringLiteral("\""));
    EXPECT_EQ(form.txtCptSearch->text(), QStringLiteral("Search..."));
    EXPECT_EQ(VisibleMenus(form), (QStringList{QStringLiteral("&Ontology"), QStringLiteral("&Edit"),
                                               QStringLiteral("&Help")}));
    EXPECT_FALSE(form.mnuFileClose->isEnabled());
    EXPECT_FALSE(form.mnuFileProperties->isEnabled());
    EXPECT_TRUE(form.mnuFileNew->isEnabled());
    EXPECT_FALSE(form.dblConcepts->isEnabled());
    EXPECT_FALSE(form.tbsEdit->isEnabled());
}

TEST_F(OntoEditTest, ToolBarHasItsPlacesKeysAndTips)
{
    const QStringList keys{QStringLiteral("New"),
                           QStringLiteral("Open"),
                           QStringLiteral("Close"),
                           {},
                           QStringLiteral("Properties"),
                           {},
                           QStringLiteral("FullTree"),
                           {},
                           QStringLiteral("NewCpt"),
                           QStringLiteral("DeleteCpt"),
                           {},
                           QStringLiteral("Note"),
                           {},
                           QStringLiteral("tbeditor"),
                           {},
                           QStringLiteral("Help")};
    ASSERT_EQ(form.ToolBar1->actions().size(), frmOntoEdit::ToolBarPlaces);
    for (int place = 1; place <= frmOntoEdit::ToolBarPlaces; ++place) {
        QAction *button = form.ToolButton(place);
        EXPECT_EQ(button->isSeparator(), keys[place - 1].isEmpty()) << "place " << place;
        EXPECT_EQ(button->objectName(), keys[place - 1]) << "place " << place;
    }
    const QStringList tips{
        QStringLiteral("New ontology"),          QStringLiteral("Open ontology"),
        QStringLiteral("Close ontology"),        QStringLiteral("Ontology properties"),
        QStringLiteral("Ontology hierarchy"),    QStringLiteral("Add concept"),
        QStringLiteral("Delete concept"),        QStringLiteral("Working note"),
        QStringLiteral("Start Termbase Editor"), QStringLiteral("Help")};
    const QStringList images{QStringLiteral("new"),      QStringLiteral("open"),
                             QStringLiteral("close"),    QStringLiteral("properties"),
                             QStringLiteral("tree"),     QStringLiteral("newcpt"),
                             QStringLiteral("delcpt"),   QStringLiteral("note-out"),
                             QStringLiteral("tbeditor"), QStringLiteral("help")};
    QStringList shownTips, shownImages;
    for (int place = 1; place <= frmOntoEdit::ToolBarPlaces; ++place) {
        if (form.ToolButton(place)->isSeparator())
            continue;
        shownTips << form.ToolButton(place)->toolTip();
        shownImages << form.ToolButton(place)->property("imageKey").toString();
        EXPECT_FALSE(form.ToolButton(place)->icon().isNull()) << "place " << place;
    }
    EXPECT_EQ(shownTips, tips);
    EXPECT_EQ(shownImages, images);
    EXPECT_FALSE(lx::ui::Image(QStringLiteral("note-in")).isNull());
}

TEST_F(OntoEditTest, OntologyCommandsComeAndGoTogether)
{
    form.EnableOntologyCommands();
    EXPECT_EQ(VisibleMenus(form).size(), 6);
    for (int place = 3; place <= 15; ++place)
        EXPECT_TRUE(form.ToolButton(place)->isEnabled()) << "place " << place;
    EXPECT_TRUE(form.txtCptSearch->isEnabled());

    form.DisableOntologyCommands();
    EXPECT_EQ(VisibleMenus(form).size(), 3);
    EXPECT_FALSE(form.ToolButton(3)->isEnabled());
    EXPECT_TRUE(form.ToolButton(16)->isEnabled());
}

TEST_F(OntoEditTest, StatusCountsAndTheTotalKeptAfterAClose)
{
    form.StatusPanel(1)->setText(QStringLiteral("General"));
    form.TotalConcepts = 120;
    form.ListedConcepts = 80;
    form.UpdateStatusCounts();
    EXPECT_EQ(form.StatusPanel(3)->text(), QStringLiteral("80 listed"));
    EXPECT_EQ(form.StatusPanel(4)->text(), QStringLiteral("120 total"));

    form.TotalConcepts = 0;
    form.UpdateStatusCounts();
    EXPECT_TRUE(form.StatusPanel(1)->text().isEmpty());
    EXPECT_TRUE(form.StatusPanel(3)->text().isEmpty());
    EXPECT_EQ(form.StatusPanel(4)->text(), QStringLiteral("120 total"));
}

TEST_F(OntoEditTest, HelpFromMenuOrToolBarIsNotThereYet)
{
    user.answerMsgBox(lx::msg::OK).answerMsgBox(lx::msg::OK);
    form.mnuHelpTool->trigger();
    form.ToolButton(16)->trigger();
    ASSERT_EQ(user.calls().size(), 2);
    for (const auto &call : user.calls()) {
        EXPECT_EQ(call.text, QStringLiteral("Not yet!"));
        EXPECT_EQ(call.style, lx::msg::OKOnly);
        EXPECT_EQ(call.title, QStringLiteral("Lexarbor"));
    }
}

TEST_F(OntoEditTest, AboutIsModalAndUnloadedAfter)
{
    QWidget *shown = nullptr;
    user.onModal([&shown](QWidget *dialog) {
        shown = dialog;
        // The user reads the box and presses OK.
        qobject_cast<lx::ui::frmAbout *>(dialog)->cmdOK->click();
        EXPECT_FALSE(dialog->isVisible());
    });
    form.mnuHelpAbout->trigger();

    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->objectName(), QStringLiteral("frmAbout"));
    EXPECT_EQ(Forms().Find<lx::ui::frmAbout>(), nullptr);
    EXPECT_EQ(Forms().list(), QList<QWidget *>{&form});
}

// The inheritance kinds read as words, their costs in the tool tips; the definition shows but
// takes no typing.
TEST_F(OntoEditTest, InheritanceCaptionsAndAReadOnlyDefinition)
{
    const std::pair<QRadioButton *, const char *> options[] = {
        {form.optOff, "Off|No Inheritance (Fast)"},
        {form.optCumulative, "Cumulative|True inheritance (Slow)"},
        {form.optExclusive, "Exclusive|Examine mode (Slower)"},
    };
    for (const auto &[option, expected] : options)
        EXPECT_EQ(option->text() + QLatin1Char('|') + option->toolTip(),
                  QString::fromLatin1(expected));

    form.EnableOntologyCommands();
    form.txtDef->setPlainText(QStringLiteral("A feathered animal"));
    QTest::keyClicks(form.txtDef, QStringLiteral("typed"));
    QTest::keyClick(form.txtDef, Qt::Key_Backspace);
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("A feathered animal"));
}

// Ctrl+O, Ctrl+N and F1 reach their commands, Ctrl+F the search box; the file dialogs say what
// they are for.
TEST_F(OntoEditTest, TheUsualKeysReachTheirCommands)
{
    form.show();
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    user.answerOpenFile(std::nullopt).answerSaveFile(std::nullopt).answerMsgBox(lx::msg::OK);
    QTest::keyClick(&form, Qt::Key_O, Qt::ControlModifier);
    QTest::keyClick(&form, Qt::Key_N, Qt::ControlModifier);
    QTest::keyClick(&form, Qt::Key_F1);
    ASSERT_EQ(user.calls().size(), 3);
    EXPECT_EQ(user.calls()[0].request.title, QStringLiteral("Open Ontology"));
    EXPECT_EQ(user.calls()[1].request.title, QStringLiteral("New Ontology"));
    EXPECT_EQ(user.calls()[2].text, QStringLiteral("Not yet!"));

    form.EnableOntologyCommands();
    QTest::keyClick(&form, Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), form.txtCptSearch);
    // The menus show the keys of Close and Exit.
    EXPECT_EQ(form.mnuFileClose->shortcut(), QKeySequence(QStringLiteral("Ctrl+W")));
    EXPECT_EQ(form.mnuFileExit->shortcut(), QKeySequence(QStringLiteral("Ctrl+Q")));
}

TEST_F(OntoEditTest, CutAndPasteInTheMenuDoNothing)
{
    form.EnableOntologyCommands();
    form.txtDef->setPlainText(QStringLiteral("A feathered animal"));
    form.txtDef->selectAll();
    form.mnuEditCut->trigger();
    form.mnuEditPaste->trigger();
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("A feathered animal"));
    EXPECT_TRUE(user.calls().isEmpty());
}

// Ctrl+C, Ctrl+X and Ctrl+V in the definition go through the program's clipboard.
TEST_F(OntoEditTest, DefinitionClipboardKeys)
{
    form.EnableOntologyCommands();
    QPlainTextEdit *box = form.txtDef;
    box->setPlainText(QStringLiteral("A feathered animal"));
    user.SetClipboardText(QStringLiteral("kept"));

    QTest::keyClick(box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(user.ClipboardText(), QStringLiteral("kept")) << "nothing selected";

    QTextCursor cursor = box->textCursor();
    cursor.setPosition(2);
    cursor.setPosition(11, QTextCursor::KeepAnchor); // "feathered"
    box->setTextCursor(cursor);
    QTest::keyClick(box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(user.ClipboardText(), QStringLiteral("feathered"));
    EXPECT_EQ(box->toPlainText(), QStringLiteral("A feathered animal"));

    QTest::keyClick(box, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(box->toPlainText(), QStringLiteral("A  animal"));

    user.SetClipboardText(QStringLiteral("winged"));
    QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(box->toPlainText(), QStringLiteral("A winged animal"));

    box->selectAll();
    form.mnuEditCopy->trigger();
    EXPECT_EQ(user.ClipboardText(), QStringLiteral("A winged animal"));
}

using GoToConceptTest = lx::test::OpenOntologyTest;

// In list mode 2 a relation isn't listed: going to it asks to change the option.
TEST_F(GoToConceptTest, AConceptHiddenByTheListModeBringsUpTheQuestion)
{
    openByDialog(sample(QStringLiteral("Birds"), 2));
    form.GoToConcept(QStringLiteral("BIRD"));
    EXPECT_EQ(form.ListText(), QStringLiteral("BIRD"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("A feathered animal"));
    EXPECT_EQ(user.calls().size(), 1) << "a listed concept asks nothing";

    const QString question =
        QStringLiteral("This concept can't be displayed because it belongs to a set of top nodes "
                       "or relationships banned by the display options.Do you want to change "
                       "this option?");
    user.answerMsgBox(lx::msg::No);
    form.GoToConcept(QStringLiteral("EATS"));
    ASSERT_EQ(user.calls().size(), 2);
    EXPECT_EQ(user.calls()[1].text, question);
    EXPECT_EQ(user.calls()[1].style, lx::msg::YesNo | lx::msg::Information);
    EXPECT_EQ(form.ListText(), QStringLiteral("BIRD")) << "the list stays where it was";

    // Yes goes to the options; with relations listed again the second try finds it.
    user.answerMsgBox(lx::msg::Yes).onModal([](QWidget *dialog) {
        auto *options = qobject_cast<lx::ui::frmOntoOptions *>(dialog);
        ASSERT_NE(options, nullptr);
        options->optEvery->setChecked(true);
        options->cmdOK->click();
    });
    form.GoToConcept(QStringLiteral("EATS"));
    ASSERT_EQ(user.calls().size(), 4);
    EXPECT_EQ(user.calls()[2].text, question);
    EXPECT_EQ(form.ListText(), QStringLiteral("EATS"));
}

} // namespace
