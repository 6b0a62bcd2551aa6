// The navigator: its tree, its pages on demand, its commands and its find box. The browser
// itself is looked at on screen, not here.
#include "publish_fixture.h"
#include "ui/frm_onto_nav.h"
#include "ui/frm_part_tree.h"
#include "ui/frm_wait.h"
#include "ui/local_browser.h"

#include <QAction>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTreeWidget>

namespace {

using lx::msg::Exclamation;
using lx::ui::Forms;
using lx::ui::frmOntoNav;

QString S(const char *text)
{
    return QString::fromUtf8(text);
}

class OntoNavTest : public lx::test::PublishFormsTest {
protected:
    frmOntoNav &openNavigator()
    {
        openZoo();
        form.mnuToolsOntoNav->trigger();
        frmOntoNav *navigator = Forms().Find<frmOntoNav>();
        EXPECT_NE(navigator, nullptr);
        return *navigator;
    }
    static QTreeWidgetItem *child(QTreeWidgetItem *item, const QString &text)
    {
        for (int i = 0; i < item->childCount(); ++i) {
            if (item->child(i)->text(0) == text)
                return item->child(i);
        }
        return nullptr;
    }
    static QString selected(const frmOntoNav &nav)
    {
        const QTreeWidgetItem *item = nav.ItemOf(nav.Nodes().Selected());
        return item ? item->text(0) : QString();
    }
    static QStringList history(const frmOntoNav &nav)
    {
        QStringList out;
        for (int i = 0; i < nav.cbxFind->count(); ++i)
            out << nav.cbxFind->itemText(i);
        return out;
    }
    static void type(frmOntoNav &nav, const QString &keys)
    {
        for (const QChar ch : keys) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(ch));
            QCoreApplication::sendEvent(nav.cbxFind->lineEdit(), &press);
        }
    }
    static void chord(frmOntoNav &nav, Qt::Key key)
    {
        QKeyEvent press(QEvent::KeyPress, key, Qt::ControlModifier);
        QCoreApplication::sendEvent(nav.cbxFind->lineEdit(), &press);
    }
    void addSlot(const char *owner, const char *attribute, const char *value)
    {
        lx::store::Recordset rs =
            lx::Process().OntoDB.OpenRecordset(S("ATTRIBUTES"), lx::store::dbOpenTable);
        rs.AddNew();
        rs.Collect(u"Concept", S(owner));
        rs.Collect(u"Attribute", S(attribute));
        rs.Collect(u"Value", S(value));
        rs.Collect(u"Default", false);
        rs.Update();
    }
};

TEST_F(OntoNavTest, OpensOnTheTopConceptAndWritesItsPageAlone)
{
    frmOntoNav &nav = openNavigator();
    EXPECT_TRUE(nav.isVisible());
    EXPECT_EQ(nav.windowTitle(), S("Ontology Navigator - Zoo"));
    EXPECT_EQ(nav.StatusPanel(2)->text(), S("6 Concepts"));
    ASSERT_EQ(nav.Tree1->topLevelItemCount(), 1);
    QTreeWidgetItem *root = nav.Tree1->topLevelItem(0);
    EXPECT_EQ(root->text(0), S("THING"));
    EXPECT_EQ(root->data(0, Qt::UserRole + 1).toString(), S("TopNode"));
    ASSERT_EQ(root->childCount(), 1);
    EXPECT_EQ(root->child(0)->text(0), S("FCKMPSBLND"));
    EXPECT_EQ(pagesWritten(), QStringList{S("THING.html")});
    EXPECT_EQ(nav.Browser->LocationURL(), QUrl::fromLocalFile(page(S("THING"))));
    EXPECT_EQ(nav.Browser->Folders(), QStringList{lx::PublishFolder()});

    // Expanding reads one level; the menu's commands without an action are there.
    root->setExpanded(true);
    QStringList children;
    for (int i = 0; i < root->childCount(); ++i)
        children << root->child(i)->text(0);
    EXPECT_EQ(children, (QStringList{S("ANIMAL"), S("EATS"), S("STONE")}));
    // Moving with the keys shows the page as a click does.
    nav.Tree1->setCurrentItem(root->child(1));
    EXPECT_EQ(selected(nav), S("EATS"));
    EXPECT_EQ(pagesWritten(), (QStringList{S("EATS.html"), S("THING.html")}));
    for (QAction *idle : {nav.mnuBrowserBack, nav.mnuBrowserForward, nav.mnuFilePrint})
        idle->trigger();
    EXPECT_EQ(nav.mnuFileRefresh->text(), S("&Generate Again (refresh)"));
    EXPECT_EQ(nav.mnuPublishWhole->text(), S("&Publish whole ontology"));

    // The editor's menu raises the same window.
    form.mnuToolsOntoNav->trigger();
    EXPECT_EQ(Forms().WithCaptionLike(u"Ontology Navigator*").size(), 1);
}

TEST_F(OntoNavTest, AClickWritesAMissingPageOnceAndRefreshWritesItAgain)
{
    frmOntoNav &nav = openNavigator();
    QTreeWidgetItem *root = nav.Tree1->topLevelItem(0);
    root->setExpanded(true);
    QTreeWidgetItem *stone = child(root, S("STONE"));
    ASSERT_NE(stone, nullptr);
    Q_EMIT nav.Tree1->itemClicked(stone, 0);
    const QByteArray first = bytes(page(S("STONE")));
    EXPECT_TRUE(first.contains("<CENTER><H3>STONE</CENTER></H3>"));
    EXPECT_EQ(nav.Browser->LocationURL(), QUrl::fromLocalFile(page(S("STONE"))));

    // A second visit shows the page as it was; a link followed to a new page writes that one.
    addSlot("STONE", "EATS", "great");
    Q_EMIT nav.Tree1->itemClicked(stone, 0);
    EXPECT_FALSE(bytes(page(S("STONE"))).contains("great"));
    nav.BeforeNavigate2(QUrl::fromLocalFile(page(S("HARDNESS"))));
    EXPECT_TRUE(QFile::exists(page(S("HARDNESS"))));
    EXPECT_EQ(selected(nav), S("STONE")); // the tree doesn't follow the browser

    // The toolbar's refresh writes the selected node's page from the file as it is now.
    nav.ToolButton(4)->trigger();
    EXPECT_TRUE(bytes(page(S("STONE"))).contains("great"));

    // The menu's refresh of a page that isn't there fails on the delete and writes nothing;
    // the toolbar's goes past the failure.
    ASSERT_TRUE(QFile::remove(page(S("STONE"))));
    user.answerMsgBox(lx::msg::OK);
    nav.mnuOntoRefresh->trigger();
    EXPECT_EQ(user.calls().last().text, S("Error 53 - File not found"));
    EXPECT_FALSE(QFile::exists(page(S("STONE"))));
    nav.ToolButton(4)->trigger();
    EXPECT_TRUE(QFile::exists(page(S("STONE"))));
    EXPECT_EQ(user.MousePointer(), lx::pointer::Default);
}

TEST_F(OntoNavTest, FindOpensThePathAndGoToShowsThePage)
{
    frmOntoNav &nav = openNavigator();
    EXPECT_FALSE(nav.ToolButton(3)->isEnabled());
    nav.cbxFind->setEditText(S("BA"));
    EXPECT_TRUE(nav.ToolButton(3)->isEnabled());
    user.answerMsgBox(lx::msg::OK);
    nav.ToolButton(3)->trigger();
    EXPECT_EQ(user.calls().last().text,
              S("You must include at least three characters for your search"));
    EXPECT_EQ(user.calls().last().icon, Exclamation);

    nav.cbxFind->setEditText(S("BAT"));
    nav.ToolButton(3)->trigger();
    EXPECT_EQ(selected(nav), S("BAT"));
    EXPECT_FALSE(QFile::exists(page(S("BAT")))); // a find alone shows no page
    nav.ToolButton(3)->trigger();
    // The text without its "*", once for each find.
    EXPECT_EQ(history(nav), (QStringList{S("BAT"), S("BAT")}));

    user.answerMsgBox(lx::msg::OK);
    nav.cbxFind->setEditText(S("ZEBRA"));
    nav.ToolButton(3)->trigger();
    EXPECT_EQ(user.calls().last().text, S("String not found"));

    // The signal finds and shows; two characters are refused there as well.
    nav.lblGoTo->setCaption(S("BIRD"));
    EXPECT_EQ(selected(nav), S("BIRD"));
    EXPECT_TRUE(QFile::exists(page(S("BIRD"))));
    user.answerMsgBox(lx::msg::OK);
    nav.lblGoTo->setCaption(S("BI"));
    EXPECT_EQ(user.calls().last().text,
              S("You must include at least three characters for your search"));

    // A collapse empties the box.
    nav.Tree1->topLevelItem(0)->setExpanded(false);
    EXPECT_TRUE(nav.cbxFind->currentText().isEmpty());
}

TEST_F(OntoNavTest, TheFindBoxTakesIdentifierCharactersAndCopiesAndPastes)
{
    frmOntoNav &nav = openNavigator();
    type(nav, S("ab c_d-9!"));
    EXPECT_EQ(nav.cbxFind->currentText(), S("AB-C-D-9"));
    chord(nav, Qt::Key_C);
    EXPECT_EQ(user.ClipboardText(), S("AB-C-D-9"));

    nav.cbxFind->setEditText(QString());
    user.SetClipboardText(S("x.") + QString(298, u'Y'));
    chord(nav, Qt::Key_V);
    const QString pasted = nav.cbxFind->currentText();
    ASSERT_EQ(pasted.size(), 255);
    EXPECT_EQ(pasted.left(3), S("X") + QChar(0) + S("Y"));

    EXPECT_EQ(lx::ui::NavigatorFindKey('q'), 'Q');
    EXPECT_EQ(lx::ui::NavigatorFindKey('\b'), '\b');
    EXPECT_EQ(lx::ui::NavigatorFindKey(0xE9), 0);
}

TEST_F(OntoNavTest, PublishingTheWholeOntologyAsksThenWritesTheSiteAndReports)
{
    frmOntoNav &nav = openNavigator();
    user.answerMsgBox(lx::msg::No);
    nav.mnuPublishWhole->trigger();
    EXPECT_EQ(user.calls().last().title, S("Publish Ontology"));
    EXPECT_EQ(user.calls().last().buttons, lx::msg::YesNo);
    EXPECT_EQ(user.calls().last().icon, Exclamation);
    EXPECT_EQ(pagesWritten(), QStringList{S("THING.html")});

    user.answerMsgBox(lx::msg::Yes).answerMsgBox(lx::msg::OK);
    nav.mnuPublishWhole->trigger();
    EXPECT_EQ(pagesWritten(), (QStringList{S("ANIMAL.html"), S("BAT.html"), S("BIRD.html"),
                                           S("EATS.html"), S("STONE.html"), S("THING.html"),
                                           S("zoo-index.html"), S("zoo-publish.html")}));
    EXPECT_EQ(user.calls().last().title, S("Publishing"));
    EXPECT_TRUE(user.calls().last().text.startsWith(
        S("You can now use your web browser to navigate your ontology. Just double-click on file "
          "'zoo-publish.html'")));
    EXPECT_EQ(nav.StatusPanel(2)->text(), S("6"));
    lx::test::FlushDeletes();
    EXPECT_EQ(Forms().Find<lx::ui::frmWait>(), nullptr);
    EXPECT_EQ(user.MousePointer(), lx::pointer::Default);
}

TEST_F(OntoNavTest, TheTreeWindowOpensTheNavigatorOnItsConcept)
{
    openZoo();
    form.mnuTreeFull->trigger();
    auto *tree = Forms().Find<lx::ui::frmPartTree>();
    ASSERT_NE(tree, nullptr);
    tree->lblFind->setCaption(S("BIRD"));
    tree->mnuOpenNav->trigger();
    frmOntoNav *nav = Forms().Find<frmOntoNav>();
    ASSERT_NE(nav, nullptr);
    EXPECT_EQ(selected(*nav), S("BIRD"));
    EXPECT_TRUE(QFile::exists(page(S("BIRD"))));
}

TEST_F(OntoNavTest, ThePlaceIsKeptBetweenOpenings)
{
    frmOntoNav &nav = openNavigator();
    nav.resize(700, 500);
    nav.mnuFileExit->trigger();
    lx::test::FlushDeletes();
    ASSERT_EQ(Forms().Find<frmOntoNav>(), nullptr);
    const auto settings = lx::ui::ProgramSettings();
    EXPECT_EQ(settings->value(S("Settings/MainWidth")).toInt(), 700);
    EXPECT_EQ(settings->value(S("Settings/MainHeight")).toInt(), 500);
    form.mnuToolsOntoNav->trigger();
    ASSERT_NE(Forms().Find<frmOntoNav>(), nullptr);
    EXPECT_EQ(Forms().Find<frmOntoNav>()->size(), QSize(700, 500));
}

} // namespace
