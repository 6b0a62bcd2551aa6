#include "element_tree_fixture.h"
#include "termbase/edit/element_tree.h"
#include "ui/images.h"

#include <QLineEdit>
#include <QMenu>
#include <QToolBar>

namespace lx::test {
namespace {

using ui::frmTBEDitor;

TEST_F(ElementTreeUi, OpeningShowsTheRootWithAPlaceholderSelectedAndClicked)
{
    ASSERT_EQ(tree->topLevelItemCount(), 1);
    EXPECT_EQ(root()->text(0), QStringLiteral("Termbase"));
    EXPECT_EQ(frmTBEDitor::NodeKey(root()), QStringLiteral("n1"));
    EXPECT_EQ(frmTBEDitor::NodeKind(root()), QStringLiteral("termbase"));
    EXPECT_FALSE(root()->icon(0).isNull());
    ASSERT_EQ(root()->childCount(), 1);
    EXPECT_EQ(root()->child(0)->text(0), QStringLiteral("FCNGMPSSBLND"));
    EXPECT_TRUE(frmTBEDitor::NodeKey(root()->child(0)).isEmpty());
    EXPECT_EQ(tree->currentItem(), root());
    EXPECT_EQ(editor->CurrentElemID, 1);
    EXPECT_EQ(editor->CurrentCategory, QStringLiteral("0"));
    EXPECT_FALSE(enabled("concept") || enabled("term") || enabled("delete"));
    EXPECT_TRUE(editor->ToolButton(14)->isEnabled()) << "the other buttons stay";

    root()->setExpanded(true);
    EXPECT_EQ(texts(root()), (QStringList{QStringLiteral("Header"), QStringLiteral("body"),
                                          QStringLiteral("backmatter")}));
    EXPECT_EQ(frmTBEDitor::NodeKey(root()->child(1)), QStringLiteral("n 3"));
    EXPECT_EQ(root()->child(0)->childCount(), 0) << "an empty header has no plus sign";
    EXPECT_EQ(root()->child(2)->childCount(), 1);
}

// Body sorts its entries by text; a row added while a branch is open shows after a collapse
// and an expand, and collapsing the root alone hands it to the click logic.
TEST_F(ElementTreeUi, BranchesAreReadWhenOpenedAndDroppedWhenClosed)
{
    root()->setExpanded(true);
    body()->setExpanded(true);
    EXPECT_EQ(texts(body()), (QStringList{QStringLiteral("ANIMAL"), QStringLiteral("BIRD"),
                                          QStringLiteral("EATS"), QStringLiteral("Term entry")}));
    QTreeWidgetItem *bird = find(QStringLiteral("n 100"));
    ASSERT_NE(bird, nullptr);
    EXPECT_EQ(frmTBEDitor::NodeKind(bird), QStringLiteral("concept"));
    EXPECT_EQ(bird->childCount(), 1);
    bird->setExpanded(true);
    ASSERT_EQ(texts(bird), QStringList{QStringLiteral("English")});
    EXPECT_EQ(frmTBEDitor::NodeKind(bird->child(0)), QStringLiteral("lsen"));
    EXPECT_FALSE(bird->child(0)->icon(0).isNull());

    entry(104, "ANIMAL");
    EXPECT_EQ(body()->childCount(), 4) << "nothing is read before the branch is opened again";
    body()->setExpanded(false);
    ASSERT_EQ(body()->childCount(), 1);
    EXPECT_EQ(body()->child(0)->text(0), QStringLiteral("FCNGMPSSBLND"));
    EXPECT_EQ(find(QStringLiteral("n 110")), nullptr) << "the closed branch is gone";
    body()->setExpanded(true);
    EXPECT_EQ(texts(body()), (QStringList{QStringLiteral("ANIMAL"), QStringLiteral("ANIMAL"),
                                          QStringLiteral("BIRD"), QStringLiteral("EATS"),
                                          QStringLiteral("Term entry")}));

    select(body());
    EXPECT_EQ(editor->CurrentElemID, 3);
    root()->setExpanded(false);
    EXPECT_EQ(root()->childCount(), 1);
    EXPECT_EQ(editor->CurrentElemID, 1) << "the root is handled as clicked";
}

TEST_F(ElementTreeUi, TheToolbarOffersAnEntryAtBodyATermAtAConcept)
{
    editor->GoToElement(121);
    select(find(QStringLiteral("n 100")));
    EXPECT_EQ(editor->CurrentCategory, QStringLiteral("0.3"));
    EXPECT_FALSE(enabled("concept"));
    EXPECT_TRUE(enabled("term"));
    EXPECT_TRUE(enabled("delete"));
    select(find(QStringLiteral("n 120")));
    EXPECT_FALSE(enabled("concept") || enabled("term"));
    EXPECT_TRUE(enabled("delete"));
    select(body());
    EXPECT_TRUE(enabled("concept"));
    EXPECT_FALSE(enabled("term") || enabled("delete"));
    select(find(QStringLiteral("n 110")));
    EXPECT_FALSE(enabled("concept") || enabled("term") || enabled("delete"));
}

TEST_F(ElementTreeUi, GoToElementOpensTheWayDownAndSelects)
{
    editor->GoToElement(121);
    QTreeWidgetItem *xref = tree->currentItem();
    ASSERT_NE(xref, nullptr);
    EXPECT_EQ(frmTBEDitor::NodeKey(xref), QStringLiteral("n 121"));
    EXPECT_EQ(frmTBEDitor::NodeKind(xref), QStringLiteral("xref"));
    EXPECT_EQ(xref->text(0), QStringLiteral("Related term"));
    for (QTreeWidgetItem *up = xref->parent(); up; up = up->parent())
        EXPECT_TRUE(up->isExpanded()) << up->text(0).toStdString();

    // The cross-reference's popup leads to its target.
    editor->Tree1_MouseUp(Qt::RightButton);
    EXPECT_TRUE(editor->mnuElem->isVisible());
    EXPECT_TRUE(editor->mnuElemGoTo->isVisible());
    EXPECT_EQ(editor->mnuElemGoTo->text(), QStringLiteral("Go to x-ref'ed element"));
    EXPECT_FALSE(editor->mnuElemModify->isVisible());
    EXPECT_FALSE(editor->mnuElemSep1->isVisible());
    editor->mnuElem->hide();
    editor->mnuElemGoTo->trigger();
    EXPECT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), QStringLiteral("n 102"));
    EXPECT_EQ(tree->currentItem()->text(0), QStringLiteral("EATS"));

    // The way down to a leaf that is open already ends at the leaf.
    editor->GoToElement(120);
    EXPECT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), QStringLiteral("n 120"));
}

TEST_F(ElementTreeUi, TheElementPopupFitsTheKindAndABrokenCrossReferenceIsReported)
{
    root()->setExpanded(true);
    select(body());
    editor->Tree1_MouseUp(Qt::RightButton);
    EXPECT_FALSE(editor->mnuElem->isVisible()) << "nothing for a folder";
    select(root());
    editor->Tree1_MouseUp(Qt::RightButton);
    EXPECT_FALSE(editor->mnuElem->isVisible()) << "nothing for the root";

    editor->GoToElement(120);
    editor->Tree1_MouseUp(Qt::LeftButton);
    EXPECT_FALSE(editor->mnuElem->isVisible());
    editor->Tree1_MouseUp(Qt::RightButton);
    EXPECT_TRUE(editor->mnuElem->isVisible());
    EXPECT_TRUE(editor->mnuElemDelete->isVisible());
    EXPECT_TRUE(editor->mnuElemModify->isVisible());
    EXPECT_TRUE(editor->mnuElemSep1->isVisible());
    EXPECT_FALSE(editor->mnuElemGoTo->isVisible());
    editor->mnuElem->hide();
    editor->mnuElemModify->trigger();
    const auto *rename = tree->findChild<QLineEdit *>();
    ASSERT_NE(rename, nullptr) << "a term is renamed in place";
    EXPECT_EQ(rename->text(), QStringLiteral("heron"));

    // A cross-reference without its pointer row.
    element(122, "9.2.1", 120);
    editor->ReturnToElement();
    editor->GoToElement(122);
    ASSERT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), QStringLiteral("n 122"));
    const QString before = frmTBEDitor::NodeKey(tree->currentItem());
    user.answerMsgBox(msg::OK);
    editor->mnuElemGoTo->trigger();
    EXPECT_EQ(user.calls().last().text, QStringLiteral("Data integrity error. Error Code TB001."));
    EXPECT_EQ(user.calls().last().title, QStringLiteral("Error"));
    EXPECT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), before);
}

// After a write the current branch is read again: an element with children reloads itself, a
// leaf reloads its parent and opens again with its new child.
TEST_F(ElementTreeUi, ReturnToElementShowsWhatWasWritten)
{
    editor->GoToElement(110);
    QTreeWidgetItem *section = tree->currentItem();
    section->setExpanded(true);
    element(123, "1", 110);
    editor->ReturnToElement();
    section = find(QStringLiteral("n 110"));
    ASSERT_NE(section, nullptr);
    EXPECT_EQ(tree->currentItem(), section);
    EXPECT_TRUE(section->isExpanded());
    EXPECT_EQ(section->childCount(), 2);
    EXPECT_NE(find(QStringLiteral("n 123")), nullptr);

    editor->GoToElement(123);
    ASSERT_EQ(frmTBEDitor::NodeKey(tree->currentItem()), QStringLiteral("n 123"));
    ASSERT_EQ(tree->currentItem()->childCount(), 0);
    element(124, "2.1", 123);
    editor->ReturnToElement();
    QTreeWidgetItem *term = tree->currentItem();
    ASSERT_NE(term, nullptr);
    EXPECT_EQ(frmTBEDitor::NodeKey(term), QStringLiteral("n 123"));
    EXPECT_TRUE(term->isExpanded());
    EXPECT_EQ(texts(term), QStringList{QStringLiteral("Term type")});
}

} // namespace
} // namespace lx::test

namespace lx::test {
namespace {

// Every kind a node can take, and the two marks of the category pane, has an image of its own.
TEST(ElementImages, EveryKindIsDrawn)
{
    const char *keys[] = {
        "termbase",  "folder",        "concept",       "term",         "attribute", "xref",
        "note",      "subjectfield",  "context",       "figure",       "audio",     "video",
        "table",     "binary",        "responsible",   "responsibles", "pub",       "url",
        "container", "classifsystem", "conceptsystem", "subset",       "world",     "lsen",
        "lses",      "lsde",          "lsfr",          "lsca",         "lsit",      "lssv",
        "lsno",      "lsnl",          "lsda",          "lsgen",        "active",    "inactive"};
    for (const char *key : keys)
        EXPECT_FALSE(ui::Image(QString::fromLatin1(key)).isNull()) << key;
}

} // namespace
} // namespace lx::test
