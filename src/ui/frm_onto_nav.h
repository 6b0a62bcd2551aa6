#pragma once

#include "core/signal_label.h"
#include "ontology/views/hierarchy_tree.h"
#include "ui/forms.h"
#include "ui/tree_mirror.h"

#include <QMainWindow>
#include <QUrl>

#include <vector>

class QAction;
class QComboBox;
class QLabel;
class QMenu;
class QSplitter;
class QToolBar;
class QTreeWidget;
class QTreeWidgetItem;

namespace lx::ui {

class LocalBrowser;

// The ontology navigator: the concept tree on the left, the concept's page on the right in the
// embedded browser. Pages are written when the browser is about to show them and aren't there
// yet, so the window needs no publishing run before it; it can also publish the whole ontology
// as a site.
class frmOntoNav : public QMainWindow, public UnloadSteps {
    Q_OBJECT

public:
    frmOntoNav();

    // Toolbar places count from 1: "back", "forward", "find", "refresh".
    QAction *ToolButton(int place) const { return m_places.value(place - 1); }
    QLabel *StatusPanel(int panel) const { return m_panels.value(panel - 1); }
    const HierarchyTree &Nodes() const { return m_tree; }
    QTreeWidgetItem *ItemOf(HierarchyTree::Node node) const;
    // The publish folder, with its final separator.
    const QString &PublishPath() const { return m_folder; }

    void Form_Load();
    void lblGoTo_Change();
    void Tree1_Expand(QTreeWidgetItem *item);
    void Tree1_Collapse(QTreeWidgetItem *item);
    void Tree1_NodeClick(QTreeWidgetItem *item);
    void Toolbar1_ButtonClick(const QString &key);
    void BeforeNavigate2(const QUrl &url);
    // The page of the selected node written again and shown; `ignoreErrors` for the toolbar's
    // path, which passes over a failed step.
    void RegeneratePage(bool ignoreErrors);
    void FindInNavigator();
    void cbxFind_Change();
    void cbxFind_Click();
    void mnuPublishWhole_Click();
    void mnuPublishSelect_Click();
    void Form_Unload() override;
    // Shows the page of a concept (Navigate2).
    void ShowPage(const QString &identifier);

    QToolBar *Toolbar1;
    QComboBox *cbxFind;
    QTreeWidget *Tree1;
    LocalBrowser *Browser;
    QSplitter *imgSplitter;
    SignalLabel *lblGoTo;
    QMenu *mnuFile, *mnuBrowser, *mnuOnto;
    QAction *mnuFileRefresh, *mnuFilePrint, *mnuFileSaveAs, *mnuFileExit;
    QAction *mnuBrowserBack, *mnuBrowserForward;
    QAction *mnuOntoRefresh, *mnuPublishWhole, *mnuPublishSelect;

    static QString BaseCaption() { return QStringLiteral("Ontology Navigator"); }

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildMenus();
    void buildToolBar();
    void buildCentre();
    void buildStatusBar();
    void connectControls();
    void restorePlace();
    HierarchyTree::Node nodeOf(const QTreeWidgetItem *item) const;
    // A collapse empties the find box.
    void treeCollapsed();
    void addToHistory(const QString &text);
    bool filterFindKey(QEvent *event);
    void pasteIntoFind();

    TreeMirror m_mirror{[this] { treeCollapsed(); }};
    HierarchyTree m_tree{&m_mirror};
    QList<QAction *> m_places;
    QList<QLabel *> m_panels;
    QString m_folder;
    qint32 m_count = 0;
};

// The find box's key rule: letters in upper case, digits, backspace and the hyphen pass, a
// blank or an underscore becomes a hyphen; anything else is dropped (0).
int NavigatorFindKey(int key);

// Opens the navigator, or brings forward the one that is open.
frmOntoNav &ShowOntoNav();

} // namespace lx::ui
