#pragma once

#include "core/signal_label.h"
#include "ontology/views/hierarchy_tree.h"
#include "ui/forms.h"
#include "ui/tree_mirror.h"

#include <QMainWindow>

#include <vector>

class QAction;
class QComboBox;
class QLabel;
class QListWidget;
class QMenu;
class QProgressBar;
class QToolBar;
class QTreeWidget;
class QTreeWidgetItem;
class QWidget;

namespace lx::ui {

// The IS-A hierarchy below one top node as a tree, read a level at a time. Several may be open,
// one per top node, each found again by its caption. It shows the local slots of the clicked
// concept, finds concepts, and hands a concept to the editor.
class frmPartTree : public QMainWindow, public UnloadSteps {
    Q_OBJECT

public:
    frmPartTree();

    // Toolbar places count from 1: the find box, two separators, "find", a separator,
    // "properties".
    static constexpr int ToolBarPlaces = 6;
    QAction *ToolButton(int place) const { return m_places.value(place - 1); }
    QLabel *StatusPanel(int panel) const { return m_panels.value(panel - 1); }
    const HierarchyTree &Nodes() const { return m_tree; }
    // The item that shows a node.
    QTreeWidgetItem *ItemOf(HierarchyTree::Node node) const;

    void lblTopNode_Change();
    void lblFind_Change();
    void Tree1_Expand(QTreeWidgetItem *item);
    void Tree1_Collapse(QTreeWidgetItem *item);
    void Tree1_NodeClick(QTreeWidgetItem *item);
    void LoadTreeSlots();
    void Toolbar1_ButtonClick(const QString &key);
    void cbxFind_Change();
    void cbxFind_Click();
    // The find, typed (the toolbar's button, Enter in the box) or signalled through lblFind.
    void FindInTree(bool typed);
    void mnuOpenEditor_Click();
    void mnuOpenNav_Click();
    void StatusBar1_PanelClick();
    void Form_Resize();
    void Form_Unload() override;

    QToolBar *Toolbar1;
    QComboBox *cbxFind;
    QTreeWidget *Tree1;
    QLabel *lblRels, *lblAttrs;
    QListWidget *lstRels, *lstAttrs;
    QProgressBar *ProgressBar1;
    SignalLabel *lblTopNode, *lblFind;
    QMenu *mnuTree;
    QAction *mnuOpenEditor, *mnuOpenNav;

    // The concept of the last node click, and its Type.
    QString ClickedConcept;
    int ClickedType = 0;

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildToolBar();
    void buildCentre();
    void buildStatusBar();
    void buildMenu();
    void connectControls();
    HierarchyTree::Node nodeOf(const QTreeWidgetItem *item) const;
    // A collapse empties the find box.
    void treeCollapsed();
    void addToHistory(const QString &pattern);
    QString selectedText() const;
    void popUp();

    TreeMirror m_mirror{[this] { treeCollapsed(); }};
    HierarchyTree m_tree{&m_mirror};
    QList<QAction *> m_places;
    QList<QLabel *> m_panels;
    QWidget *m_slotsPane = nullptr;
    QString m_lastAdded; // the text last added to the find history
};

// Opens the tree of `topNode` under `caption`, or brings forward the one open under that
// caption: a minimised one comes back maximised (`raisedState`) or normal.
frmPartTree &ShowPartTree(const QString &topNode, const QString &caption,
                          Qt::WindowState raisedState = Qt::WindowMaximized);

} // namespace lx::ui
