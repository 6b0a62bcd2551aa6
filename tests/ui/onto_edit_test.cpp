#include "ui/frm_about.h"
#include "ui/frm_onto_edit.h"
#include "ui_fixture.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTabWidget>
#include <QToolBar>

namespace {

using lx::ui::Forms;
using lx::ui::frmOntoEdit;

class OntoEditTest : public lx::test::UiTest {
protected:
    frmOntoEdit &form = Forms().Get<frmOntoEdit>();

    QStringList visibleMenus() const
    {
        QStringList menus;
        for (const QAction *menu : form.menuBar()->actions()) {
            if (menu->isVisible())
                menus << menu->text();
        }
        return menus;
    }
};

TEST_F(OntoEditTest, LoadLeavesTheNoOntologyState)
{
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor"));
    EXPECT_EQ(form.BaseCaption, QStringLiteral("Ontology Editor"));
    EXPECT_EQ(lx::Process().Quote, QStringLiteral("\""));
    EXPECT_EQ(form.txtCptSearch->text(), QStringLiteral("Search..."));
    EXPECT_EQ(visibleMenus(), (QStringList{QStringLiteral("&Ontology"), QStringLiteral("&Edit"),
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
    EXPECT_EQ(form.ToolButton(14)->toolTip(), QStringLiteral("Start Termbase Editor"));
    EXPECT_EQ(form.ToolButton(12)->property("imageKey").toString(), QStringLiteral("note-out"));
}

TEST_F(OntoEditTest, OntologyCommandsComeAndGoTogether)
{
    form.EnableOntologyCommands();
    EXPECT_EQ(visibleMenus().size(), 6);
    for (int place = 3; place <= 15; ++place)
        EXPECT_TRUE(form.ToolButton(place)->isEnabled()) << "place " << place;
    EXPECT_TRUE(form.txtCptSearch->isEnabled());

    form.DisableOntologyCommands();
    EXPECT_EQ(visibleMenus().size(), 3);
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

} // namespace
