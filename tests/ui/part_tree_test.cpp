// The hierarchy tree windows, opened from the editor and driven as the user drives them.
#include "open_ontology_fixture.h"
#include "ui/frm_part_tree.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QSettings>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidget>

namespace {

using lx::test::AddRow;
using lx::ui::Forms;
using lx::ui::frmPartTree;

// THING above ANIMAL, OBJECT and WING-OWNER; BAT and BIRD under both ANIMAL and WING-OWNER;
// OBJECT above STONE; SIZE an attribute with a domain and a range.
const QList<lx::test::SampleConcept> Hierarchy{
    {QStringLiteral("THING"), 100},  {QStringLiteral("ANIMAL"), 1},
    {QStringLiteral("OBJECT"), 1},   {QStringLiteral("WING-OWNER"), 1},
    {QStringLiteral("BAT"), 1},      {QStringLiteral("BIRD"), 1},
    {QStringLiteral("STONE"), 1},    {QStringLiteral("SIZE"), 3},
    {QStringLiteral("DOMAIN"), 4},   {QStringLiteral("RANGE"), 4},
    {QStringLiteral("HAS-PART"), 4},
};

class PartTreeTest : public lx::test::OpenOntologyTest {
protected:
    void openHierarchy()
    {
        const QString path = ontology(QStringLiteral("zoo"));
        lx::test::WriteOntologyFile(path, {QStringLiteral("Zoo")}, Hierarchy);
        lx::store::Database db = lx::store::DBEngine::OpenDatabase(path);
        const auto isa = [&db](const char *child, const char *parent) {
            AddRow(
                db, QStringLiteral("ISA"),
                {{u"Concept", QString::fromLatin1(child)}, {u"ISA", QString::fromLatin1(parent)}});
        };
        for (const char *top :
             {"ANIMAL", "OBJECT", "WING-OWNER", "SIZE", "DOMAIN", "RANGE", "HAS-PART"})
            isa(top, "THING");
        for (const char *animal : {"BAT", "BIRD"}) {
            isa(animal, "ANIMAL");
            isa(animal, "WING-OWNER");
        }
        isa("STONE", "OBJECT");
        AddRow(db, QStringLiteral("RELATIONS"),
               {{u"Concept1", QStringLiteral("SIZE")},
                {u"Rel", QStringLiteral("DOMAIN")},
                {u"Concept2", QStringLiteral("ANIMAL")},
                {u"Default", false}});
        AddRow(db, QStringLiteral("ATTRIBUTES"),
               {{u"Concept", QStringLiteral("SIZE")},
                {u"Attribute", QStringLiteral("RANGE")},
                {u"Value", QStringLiteral("small")},
                {u"Default", true}});
        AddRow(db, QStringLiteral("RELATIONS"),
               {{u"Concept1", QStringLiteral("BIRD")},
                {u"Rel", QStringLiteral("HAS-PART")},
                {u"Concept2", QStringLiteral("ANIMAL")},
                {u"Default", false}});
        db.Close();
        openByDialog(path);
    }

    static QList<frmPartTree *> trees()
    {
        QList<frmPartTree *> found;
        for (QWidget *window : Forms().list()) {
            if (auto *tree = qobject_cast<frmPartTree *>(window))
                found << tree;
        }
        return found;
    }
    static QStringList childTexts(const QTreeWidgetItem *item)
    {
        QStringList out;
        for (int i = 0; i < item->childCount(); ++i)
            out << item->child(i)->text(0);
        return out;
    }
    static QTreeWidgetItem *child(QTreeWidgetItem *item, const QString &text)
    {
        for (int i = 0; i < item->childCount(); ++i) {
            if (item->child(i)->text(0) == text)
                return item->child(i);
        }
        return nullptr;
    }
    // The texts from the root down to the tree's current item.
    static QString currentPath(const frmPartTree &tree)
    {
        QStringList path;
        for (const QTreeWidgetItem *item = tree.Tree1->currentItem(); item; item = item->parent())
            path.prepend(item->text(0));
        return path.join(u'/');
    }
    static QStringList history(const frmPartTree &tree)
    {
        QStringList out;
        for (int i = 0; i < tree.cbxFind->count(); ++i)
            out << tree.cbxFind->itemText(i);
        return out;
    }
    static void click(QWidget *widget, Qt::MouseButton button = Qt::LeftButton)
    {
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(2, 2),
                            widget->mapToGlobal(QPointF(2, 2)), button, Qt::NoButton,
                            Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &release);
    }
    static void typeAndFind(frmPartTree &tree, const QString &text)
    {
        tree.cbxFind->setEditText(text);
        tree.ToolButton(4)->trigger();
    }

    const QString dummy = QStringLiteral("FCKMPSBLND");
};

// Each command opens its own tree once, found again by its caption; the toolbar's tree button
// is the full tree's command.
TEST_F(PartTreeTest, EachTreeCommandOpensOneWindowPerCaption)
{
    openHierarchy();
    form.mnuTreeFull->trigger();
    form.ToolButton(7)->trigger();
    ASSERT_EQ(trees().size(), 1);
    frmPartTree &full = *trees().first();
    EXPECT_EQ(full.windowTitle(), QStringLiteral("Zoo - Full tree"));
    EXPECT_TRUE(full.isVisible());
    ASSERT_EQ(full.Tree1->topLevelItemCount(), 1);
    EXPECT_EQ(full.Tree1->topLevelItem(0)->text(0), QStringLiteral("THING"));
    EXPECT_EQ(childTexts(full.Tree1->topLevelItem(0)), QStringList{dummy});
    EXPECT_EQ(full.StatusPanel(1)->text(), QStringLiteral("THING"));
    EXPECT_EQ(full.StatusPanel(2)->text(), QStringLiteral("Zoo"));

    const std::pair<QAction *, const char *> partial[] = {
        {form.mnuTreeObject, "Zoo - OBJECT partial tree|OBJECT"},
        {form.mnuTreeEvent, "Zoo - EVENT partial tree|EVENT"},
        {form.mnuTreeRel, "Zoo - RELATION partial tree|RELATION"},
        {form.mnuTreeAttr, "Zoo - ATTRIBUTE partial tree|ATTRIBUTE"},
    };
    for (const auto &[command, expected] : partial) {
        command->trigger();
        const frmPartTree &tree = *trees().last();
        EXPECT_EQ(tree.windowTitle() + QLatin1Char('|') + tree.Tree1->topLevelItem(0)->text(0),
                  QLatin1String(expected));
    }
    form.txtCptSearch->setText(QStringLiteral("ANIMAL"));
    form.mnuTreeSelConcept->trigger();
    EXPECT_EQ(trees().last()->windowTitle(), QStringLiteral("Zoo - ANIMAL partial tree"));
    EXPECT_EQ(trees().size(), 6);

    // The same tree again: the window that is there, a minimised one maximised.
    frmPartTree *object = trees()[1];
    object->showMinimized();
    form.mnuTreeObject->trigger();
    EXPECT_EQ(trees().size(), 6);
    EXPECT_TRUE(object->windowState() & Qt::WindowMaximized);
}

// A level comes with its expansion, a dummy under each child with children of its own, and
// goes with the collapse, which brings the dummy back and empties the find box.
TEST_F(PartTreeTest, ExpandingReadsALevelAndCollapsingDropsIt)
{
    openHierarchy();
    form.mnuTreeFull->trigger();
    frmPartTree &tree = *trees().first();
    QTreeWidgetItem *root = tree.Tree1->topLevelItem(0);
    tree.Tree1->expandItem(root);
    EXPECT_EQ(childTexts(root), (QStringList{QStringLiteral("ANIMAL"), QStringLiteral("DOMAIN"),
                                             QStringLiteral("HAS-PART"), QStringLiteral("OBJECT"),
                                             QStringLiteral("RANGE"), QStringLiteral("SIZE"),
                                             QStringLiteral("WING-OWNER")}));
    QTreeWidgetItem *animal = child(root, QStringLiteral("ANIMAL"));
    EXPECT_EQ(childTexts(animal), QStringList{dummy});
    EXPECT_EQ(child(root, QStringLiteral("SIZE"))->childCount(), 0);
    tree.Tree1->expandItem(animal);
    EXPECT_EQ(childTexts(animal), (QStringList{QStringLiteral("BAT"), QStringLiteral("BIRD")}));

    tree.cbxFind->setEditText(QStringLiteral("BAT"));
    tree.Tree1->collapseItem(root);
    EXPECT_EQ(childTexts(root), QStringList{dummy});
    EXPECT_EQ(tree.Nodes().Count(), 2);
    EXPECT_TRUE(tree.cbxFind->currentText().isEmpty());
    EXPECT_FALSE(tree.ToolButton(4)->isEnabled());
    tree.Tree1->expandItem(root);
    EXPECT_EQ(childTexts(child(root, QStringLiteral("ANIMAL"))), QStringList{dummy});
}

// Typed finds need three characters, step through every place of a concept and keep a
// history of twenty, newest first; the one through lblFind runs with any length.
TEST_F(PartTreeTest, FindStepsThroughTheTreeAndKeepsAHistory)
{
    openHierarchy();
    form.mnuTreeFull->trigger();
    frmPartTree &tree = *trees().first();
    EXPECT_FALSE(tree.ToolButton(4)->isEnabled());
    const qsizetype before = user.calls().size();
    user.answerMsgBox(lx::msg::OK);
    typeAndFind(tree, QStringLiteral("BA"));
    ASSERT_EQ(user.calls().size(), before + 1);
    EXPECT_EQ(user.calls().last().text, QStringLiteral("Type at least three characters!"));
    EXPECT_EQ(user.calls().last().icon, lx::msg::Information);
    EXPECT_EQ(tree.cbxFind->count(), 0);

    typeAndFind(tree, QStringLiteral("BAT"));
    EXPECT_EQ(currentPath(tree), QStringLiteral("THING/ANIMAL/BAT"));
    tree.ToolButton(4)->trigger();
    EXPECT_EQ(currentPath(tree), QStringLiteral("THING/WING-OWNER/BAT"));
    Q_EMIT tree.cbxFind->lineEdit()->returnPressed(); // Enter finds as the button does
    EXPECT_EQ(currentPath(tree), QStringLiteral("THING/ANIMAL/BAT")) << "wrapped round";
    EXPECT_EQ(history(tree), QStringList{QStringLiteral("BAT*")});
    EXPECT_EQ(tree.cbxFind->currentText(), QStringLiteral("BAT"));

    tree.lblFind->setCaption(QStringLiteral("BI"));
    EXPECT_EQ(currentPath(tree), QStringLiteral("THING/ANIMAL/BIRD"));
    EXPECT_EQ(tree.cbxFind->currentText(), QStringLiteral("BI"));

    user.answerMsgBox(lx::msg::OK);
    typeAndFind(tree, QStringLiteral("ZEBRA"));
    EXPECT_EQ(user.calls().last().text, QStringLiteral("String not found"));
    EXPECT_EQ(user.calls().last().icon, lx::msg::Exclamation);

    for (int i = 0; i < 25; ++i) {
        user.answerMsgBox(lx::msg::OK);
        typeAndFind(tree, QStringLiteral("X%1").arg(i, 2, 10, QLatin1Char('0')));
    }
    const QStringList kept = history(tree);
    EXPECT_EQ(kept.size(), 20);
    EXPECT_EQ(kept.first(), QStringLiteral("X24*"));
    EXPECT_EQ(kept.last(), QStringLiteral("X05*"));
}

// A pick from the history enables the find and leaves the prepared find as it is; typing in
// the box starts the find afresh.
TEST_F(PartTreeTest, APickFromTheHistoryIsNoChangeOfTheText)
{
    openHierarchy();
    form.mnuTreeFull->trigger();
    frmPartTree &tree = *trees().first();
    typeAndFind(tree, QStringLiteral("BAT"));
    typeAndFind(tree, QStringLiteral("STONE"));
    ASSERT_TRUE(tree.Nodes().SearchPrepared);
    tree.cbxFind->showPopup();
    QAbstractItemView *list = tree.cbxFind->view();
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(tree.cbxFind->currentText(), QStringLiteral("BAT*"));
    EXPECT_TRUE(tree.Nodes().SearchPrepared);
    EXPECT_TRUE(tree.ToolButton(4)->isEnabled());
    QTest::keyClick(tree.cbxFind->lineEdit(), Qt::Key_Backspace);
    EXPECT_EQ(tree.cbxFind->currentText(), QStringLiteral("BAT"));
    EXPECT_FALSE(tree.Nodes().SearchPrepared);
}

// The double click on the list and "Find in Tree" open the full tree and find the concept in
// it; a second double click on another concept goes to the same window.
TEST_F(PartTreeTest, TheEditorFindsItsConceptInTheFullTree)
{
    openHierarchy();
    form.txtCptSearch->setText(QStringLiteral("BIRD"));
    Q_EMIT form.dblConcepts->doubleClicked(form.dblConcepts->currentIndex());
    ASSERT_EQ(trees().size(), 1);
    frmPartTree &tree = *trees().first();
    EXPECT_EQ(tree.windowTitle(), QStringLiteral("Zoo - Full tree"));
    EXPECT_EQ(currentPath(tree), QStringLiteral("THING/ANIMAL/BIRD"));

    tree.showMinimized();
    form.txtCptSearch->setText(QStringLiteral("STONE"));
    form.mnuConceptTree->trigger();
    EXPECT_EQ(trees().size(), 1);
    EXPECT_FALSE(tree.isMinimized());
    EXPECT_EQ(currentPath(tree), QStringLiteral("THING/OBJECT/STONE"));
}

// The popup hands the selected concept to the editor and to the navigator. A click on the status
// bar sends panel 1 to the editor's search box.
TEST_F(PartTreeTest, ThePopupAndTheStatusBarHandConceptsToTheEditor)
{
    openHierarchy();
    form.mnuTreeFull->trigger();
    frmPartTree &tree = *trees().first();
    EXPECT_EQ(tree.mnuOpenEditor->text(), QStringLiteral("Open concept in &Editor"));
    EXPECT_EQ(tree.mnuOpenNav->text(), QStringLiteral("Open concept in &Navigator"));
    tree.lblFind->setCaption(QStringLiteral("STONE"));
    tree.mnuOpenEditor->trigger();
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("STONE"));

    QTreeWidgetItem *object = tree.Tree1->currentItem()->parent();
    Q_EMIT tree.Tree1->itemClicked(object, 0);
    EXPECT_EQ(tree.StatusPanel(1)->text(), QStringLiteral("OBJECT"));
    click(tree.StatusPanel(1));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("OBJECT"));

    // An open navigator hears of the selected concept, the empty text first.
    auto &navigator = Forms().Load<QWidget>();
    navigator.setWindowTitle(QStringLiteral("Ontology Navigator - Zoo"));
    auto *lblGoTo = new lx::SignalLabel(&navigator);
    lblGoTo->setObjectName(QStringLiteral("lblGoTo"));
    QStringList heard;
    QObject::connect(lblGoTo, &lx::SignalLabel::captionChanged,
                     [&heard](const QString &caption) { heard << caption; });
    lblGoTo->setCaption(QStringLiteral("STONE"));
    tree.mnuOpenNav->trigger();
    EXPECT_EQ(heard, (QStringList{QStringLiteral("STONE"), QString(), QStringLiteral("OBJECT")}));

    click(tree.statusBar(), Qt::RightButton);
    EXPECT_TRUE(tree.mnuTree->isVisible());
    tree.mnuTree->hide();
    click(tree.Tree1->viewport(), Qt::RightButton);
    EXPECT_TRUE(tree.mnuTree->isVisible());
    tree.mnuTree->hide();
}

// The properties button shows the local slots of the clicked concept, domains and ranges for
// an attribute; a concept gone from the file says so and leaves the lists.
TEST_F(PartTreeTest, ThePropertiesButtonShowsTheLocalSlots)
{
    openHierarchy();
    form.mnuTreeFull->trigger();
    frmPartTree &tree = *trees().first();
    tree.lblFind->setCaption(QStringLiteral("BIRD"));
    EXPECT_FALSE(tree.lstRels->isVisible());
    const int narrow = tree.minimumWidth();
    tree.ToolButton(6)->trigger();
    EXPECT_TRUE(tree.lstRels->isVisible());
    EXPECT_GT(tree.minimumWidth(), narrow);
    EXPECT_EQ(tree.lblRels->text(), QStringLiteral("LOCAL RELATIONS"));
    EXPECT_EQ(tree.lstRels->item(0)->text(), QStringLiteral("HAS-PART : ANIMAL"));

    tree.lblFind->setCaption(QStringLiteral("SIZE"));
    Q_EMIT tree.Tree1->itemClicked(tree.Tree1->currentItem(), 0);
    EXPECT_EQ(tree.ClickedType, 3);
    EXPECT_EQ(tree.lblRels->text() + QLatin1Char('|') + tree.lstRels->item(0)->text(),
              QStringLiteral("LOCAL DOMAINS|ANIMAL"));
    EXPECT_EQ(tree.lblAttrs->text() + QLatin1Char('|') + tree.lstAttrs->item(0)->text(),
              QStringLiteral("LOCAL RANGES|small (by default)"));

    lx::Process()
        .OntoDB.OpenRecordset(QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = \"SIZE\""))
        .Delete();
    user.answerMsgBox(lx::msg::OK);
    Q_EMIT tree.Tree1->itemClicked(tree.Tree1->currentItem(), 0);
    EXPECT_EQ(user.calls().last().text,
              QStringLiteral("Fatal Error. Error code PT001. Please report"));
    EXPECT_EQ(user.calls().last().title, QStringLiteral("Error"));
    EXPECT_EQ(user.calls().last().icon, lx::msg::Critical);
    EXPECT_EQ(tree.lblRels->text(), QStringLiteral("LOCAL DOMAINS"));

    tree.ToolButton(6)->trigger();
    EXPECT_FALSE(tree.lstRels->isVisible());
    EXPECT_EQ(tree.minimumWidth(), narrow);
}

// A concept linked below its own descendant: the tree goes round the cycle a level at a time
// and a find ends.
TEST_F(PartTreeTest, ACycleInTheLinksDoesNotHang)
{
    openHierarchy();
    AddRow(lx::Process().OntoDB, QStringLiteral("ISA"),
           {{u"Concept", QStringLiteral("ANIMAL")}, {u"ISA", QStringLiteral("BIRD")}});
    form.mnuTreeFull->trigger();
    frmPartTree &tree = *trees().first();
    tree.lblFind->setCaption(QStringLiteral("BIRD"));
    QTreeWidgetItem *bird = tree.Tree1->currentItem();
    ASSERT_NE(bird, nullptr);
    for (const char *next : {"ANIMAL", "BIRD", "ANIMAL", "BIRD"}) {
        tree.Tree1->expandItem(bird);
        bird = child(bird, QString::fromLatin1(next));
        ASSERT_NE(bird, nullptr) << next;
    }
    typeAndFind(tree, QStringLiteral("ANIMAL"));
    EXPECT_EQ(tree.Tree1->currentItem()->text(0), QStringLiteral("ANIMAL"));
}

// The window opens over the editor, comes back in the size it was closed in, and Tab goes
// from the find box to the tree and on to the lists.
TEST_F(PartTreeTest, TheWindowKeepsItsSizeAndItsTabOrder)
{
    openHierarchy();
    form.mnuTreeFull->trigger();
    frmPartTree *tree = trees().first();
    QWidget *next = tree->cbxFind->nextInFocusChain();
    while (tree->cbxFind->isAncestorOf(next))
        next = next->nextInFocusChain();
    EXPECT_EQ(next, tree->Tree1);
    tree->resize(520, 610);
    tree->close();
    lx::test::FlushDeletes();
    EXPECT_TRUE(trees().isEmpty());
    form.mnuTreeFull->trigger();
    EXPECT_EQ(trees().first()->size(), QSize(520, 610));
}

} // namespace
