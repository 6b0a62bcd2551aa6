#include "ui/frm_part_tree.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/errors.h"
#include "ontology/views/hierarchy_reads.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_onto_nav.h"
#include "ui/images.h"
#include "ui/list_views.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QProgressBar>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lx::ui {

using Node = HierarchyTree::Node;

namespace {

constexpr int HistorySize = 20;
constexpr int FindPlace = 4;
constexpr int PropertiesPlace = 6;
// The least sizes of the window, with the slot lists and without them.
constexpr QSize LeastWithSlots(400, 267);
constexpr QSize LeastTreeOnly(300, 167);

} // namespace

frmPartTree::frmPartTree()
{
    setObjectName(QStringLiteral("frmPartTree"));
    setAttribute(Qt::WA_DeleteOnClose, false); // the collection unloads it
    buildToolBar();
    buildCentre();
    buildStatusBar();
    buildMenu();
    connectControls();
    TabOrder({cbxFind, Tree1, lstRels, lstAttrs});
    lblTopNode = new SignalLabel(this);
    lblTopNode->setObjectName(QStringLiteral("lblTopNode"));
    lblFind = new SignalLabel(this);
    lblFind->setObjectName(QStringLiteral("lblFind"));
    connect(lblTopNode, &SignalLabel::captionChanged, this,
            Command(this, &frmPartTree::lblTopNode_Change));
    connect(lblFind, &SignalLabel::captionChanged, this,
            Command(this, &frmPartTree::lblFind_Change));
    if (!RestorePlace(*this))
        resize(FittingSize(QSize(460, 560)));
    Form_Resize();
    // Form_Load
    StatusPanel(2)->setText(Process().OntoMeta.Name);
}

void frmPartTree::buildToolBar()
{
    Toolbar1 = addToolBar(QStringLiteral("Toolbar1"));
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    Toolbar1->setMovable(false);
    Toolbar1->setIconSize(QSize(24, 24));
    cbxFind = Named(new QComboBox(Toolbar1), QStringLiteral("cbxFind"));
    cbxFind->setEditable(true);
    cbxFind->setInsertPolicy(QComboBox::NoInsert); // the find keeps the history itself
    cbxFind->setMinimumWidth(200);
    cbxFind->setMaxVisibleItems(HistorySize);
    m_places.append(Toolbar1->addWidget(cbxFind));
    m_places.append(Toolbar1->addSeparator());
    m_places.append(Toolbar1->addSeparator());
    QAction *find = Toolbar1->addAction(Image(QStringLiteral("find")), QStringLiteral("find"));
    find->setObjectName(QStringLiteral("find"));
    find->setToolTip(QStringLiteral("Find in the tree"));
    find->setEnabled(false); // until there is a text to find
    m_places.append(find);
    m_places.append(Toolbar1->addSeparator());
    QAction *properties =
        Toolbar1->addAction(Image(QStringLiteral("properties")), QStringLiteral("properties"));
    properties->setObjectName(QStringLiteral("properties"));
    properties->setToolTip(QStringLiteral("Local slots of the clicked concept"));
    properties->setCheckable(true);
    m_places.append(properties);
    connect(find, &QAction::triggered, this,
            [this] { RunCommand([this] { Toolbar1_ButtonClick(QStringLiteral("find")); }); });
    connect(properties, &QAction::triggered, this,
            [this] { RunCommand([this] { Toolbar1_ButtonClick(QStringLiteral("properties")); }); });
}

void frmPartTree::buildCentre()
{
    auto *centre = new QWidget(this);
    Tree1 = Named(new QTreeWidget(centre), QStringLiteral("Tree1"));
    m_mirror.Show(Tree1, &m_tree);
    Tree1->setHeaderHidden(true);
    Tree1->setUniformRowHeights(true);
    Tree1->setContextMenuPolicy(Qt::PreventContextMenu); // the popup comes on the release
    Tree1->viewport()->installEventFilter(new KeepCurrentOnRightPress(Tree1));
    Tree1->viewport()->installEventFilter(this);

    m_slotsPane = new QWidget(centre);
    lblRels = Named(new QLabel(QStringLiteral("LOCAL RELATIONS"), m_slotsPane),
                    QStringLiteral("lblRels"));
    lblAttrs = Named(new QLabel(QStringLiteral("LOCAL ATTRIBUTES"), m_slotsPane),
                     QStringLiteral("lblAttrs"));
    lstRels = Named(new QListWidget(m_slotsPane), QStringLiteral("lstRels"));
    lstAttrs = Named(new QListWidget(m_slotsPane), QStringLiteral("lstAttrs"));
    auto *slotsLayout = new QVBoxLayout(m_slotsPane);
    slotsLayout->setContentsMargins(0, 0, 0, 0);
    slotsLayout->addWidget(lblRels);
    slotsLayout->addWidget(lstRels, 1);
    slotsLayout->addWidget(lblAttrs);
    slotsLayout->addWidget(lstAttrs, 1);
    m_slotsPane->hide();

    // The tree takes three fifths of the width beside the lists, all of it without them.
    auto *layout = new QHBoxLayout(centre);
    layout->setContentsMargins(4, 4, 4, 0);
    layout->addWidget(Tree1, 3);
    layout->addWidget(m_slotsPane, 2);
    setCentralWidget(centre);
}

void frmPartTree::buildStatusBar()
{
    statusBar()->setObjectName(QStringLiteral("StatusBar1"));
    for (int stretch : {3, 2}) {
        auto *panel = new QLabel(this);
        panel->setFrameShape(QFrame::StyledPanel);
        panel->setMinimumWidth(60);
        panel->installEventFilter(this);
        statusBar()->addWidget(panel, stretch);
        m_panels.append(panel);
    }
    ProgressBar1 = Named(new QProgressBar(this), QStringLiteral("ProgressBar1"));
    ProgressBar1->setMaximumWidth(120);
    ProgressBar1->hide();
    statusBar()->addPermanentWidget(ProgressBar1);
    statusBar()->installEventFilter(this);
}

void frmPartTree::buildMenu()
{
    mnuTree = new QMenu(QStringLiteral("Tree"), this);
    mnuTree->setObjectName(QStringLiteral("mnuTree"));
    mnuOpenEditor = mnuTree->addAction(QStringLiteral("Open concept in &Editor"));
    mnuOpenEditor->setObjectName(QStringLiteral("mnuOpenEditor"));
    mnuOpenNav = mnuTree->addAction(QStringLiteral("Open concept in &Navigator"));
    mnuOpenNav->setObjectName(QStringLiteral("mnuOpenNav"));
    connect(mnuOpenEditor, &QAction::triggered, this,
            Command(this, &frmPartTree::mnuOpenEditor_Click));
    connect(mnuOpenNav, &QAction::triggered, this, Command(this, &frmPartTree::mnuOpenNav_Click));
}

void frmPartTree::connectControls()
{
    m_mirror.ConnectUser(this, {[this](QTreeWidgetItem *item) { Tree1_Expand(item); },
                                [this](QTreeWidgetItem *item) { Tree1_Collapse(item); },
                                [this](QTreeWidgetItem *item) { Tree1_NodeClick(item); }});
    connect(cbxFind, &QComboBox::editTextChanged, this,
            [this] { RunCommand([this] { cbxFind_Change(); }); });
    connect(cbxFind, &QComboBox::activated, this, [this] { cbxFind_Click(); });
    connect(cbxFind->lineEdit(), &QLineEdit::returnPressed, this,
            [this] { RunCommand([this] { FindInTree(true); }); });
    for (QListWidget *list : {lstRels, lstAttrs}) {
        connect(list, &QListWidget::itemClicked, list,
                [list](const QListWidgetItem *item) { list->setToolTip(item->text()); });
    }
}

void frmPartTree::treeCollapsed()
{
    cbxFind->setEditText(QString());
}

QTreeWidgetItem *frmPartTree::ItemOf(Node node) const
{
    return m_mirror.ItemOf(node);
}

Node frmPartTree::nodeOf(const QTreeWidgetItem *item) const
{
    return TreeMirror::NodeOf(item);
}

// A root with one dummy under it, whether or not it has children.
void frmPartTree::lblTopNode_Change()
{
    m_tree.AddRoot(lblTopNode->caption());
    StatusPanel(1)->setText(lblTopNode->caption());
}

void frmPartTree::lblFind_Change()
{
    cbxFind->setEditText(lblFind->caption());
    FindInTree(false);
}

void frmPartTree::Tree1_Expand(QTreeWidgetItem *item)
{
    m_tree.Expand(nodeOf(item));
}

void frmPartTree::Tree1_Collapse(QTreeWidgetItem *item)
{
    m_tree.Collapse(nodeOf(item));
}

void frmPartTree::Tree1_NodeClick(QTreeWidgetItem *item)
{
    m_tree.NoteSelected(nodeOf(item));
    ClickedConcept = item->text(0);
    StatusPanel(1)->setText(ClickedConcept);
    if (!ToolButton(PropertiesPlace)->isChecked())
        return;
    const std::optional<int> type = ReadTreeConceptType(ClickedConcept);
    if (!type) {
        UI().MsgBox(QStringLiteral("Fatal Error. Error code PT001. Please report"), msg::Critical,
                    QStringLiteral("Error"));
        return;
    }
    ClickedType = *type;
    if (!m_slotsPane->isHidden())
        LoadTreeSlots();
}

void frmPartTree::LoadTreeSlots()
{
    const SlotLists slots = ReadTreeSlots(ClickedConcept, ClickedType);
    ShowSlotLists(slots, lblRels, lstRels, lblAttrs, lstAttrs);
}

void frmPartTree::Toolbar1_ButtonClick(const QString &key)
{
    if (key == QLatin1String("find")) {
        FindInTree(true);
        return;
    }
    if (key != QLatin1String("properties"))
        return;
    const bool down = ToolButton(PropertiesPlace)->isChecked();
    m_slotsPane->setVisible(down);
    if (down) {
        if (QTreeWidgetItem *item = ItemOf(m_tree.Selected()))
            Tree1_NodeClick(item);
    }
    Form_Resize();
}

// No entry of the history is current but in the moment it is picked, and a pick is no change of
// the text for the find.
void frmPartTree::cbxFind_Change()
{
    if (cbxFind->currentIndex() >= 0) {
        const QString picked = cbxFind->currentText();
        const QSignalBlocker quiet(cbxFind);
        cbxFind->setCurrentIndex(-1);
        cbxFind->setEditText(picked);
        return;
    }
    m_tree.SearchPrepared = false;
    ToolButton(FindPlace)->setEnabled(!cbxFind->currentText().isEmpty());
}

void frmPartTree::cbxFind_Click()
{
    ToolButton(FindPlace)->setEnabled(true);
}

// The newest pattern first, at most HistorySize of them; the box keeps the text typed.
void frmPartTree::addToHistory(const QString &pattern)
{
    if (pattern == m_lastAdded)
        return;
    const QString typed = cbxFind->currentText();
    const QSignalBlocker quiet(cbxFind);
    if (cbxFind->count() == HistorySize)
        cbxFind->removeItem(HistorySize - 1);
    cbxFind->insertItem(0, pattern);
    cbxFind->setCurrentIndex(-1);
    cbxFind->setEditText(typed);
    m_lastAdded = pattern;
}

void frmPartTree::FindInTree(bool typed)
{
    if (typed && cbxFind->currentText().size() < 3) {
        UI().MsgBox(QStringLiteral("Type at least three characters!"), msg::Information);
        return;
    }
    const QString pattern = FindPattern(cbxFind->currentText());
    addToHistory(pattern);
    bool found = true;
    try {
        found = m_tree.Find(pattern);
    } catch (const store::StoreError &) {
        // The find goes as far as it can; the tree keeps what it opened.
    }
    if (!found)
        UI().MsgBox(QStringLiteral("String not found"), msg::Exclamation);
}

QString frmPartTree::selectedText() const
{
    const QTreeWidgetItem *item = ItemOf(m_tree.Selected());
    return item ? item->text(0) : QString();
}

void frmPartTree::mnuOpenEditor_Click()
{
    const QString identifier = selectedText();
    frmOntoEdit *editor = Forms().Find<frmOntoEdit>();
    if (identifier.isEmpty() || !editor)
        return;
    editor->GoToConcept(identifier);
    if (editor->isMinimized())
        editor->showNormal();
    editor->raise();
    editor->activateWindow();
}

// The navigator, opened if it isn't, goes to the selected concept.
void frmPartTree::mnuOpenNav_Click()
{
    QWidget *navigator = Forms().FindByCaption(u"Ontology Navigator*");
    if (!navigator)
        navigator = &ShowOntoNav();
    if (navigator->isMinimized())
        navigator->showNormal();
    navigator->raise();
    navigator->activateWindow();
    if (auto *lblGoTo = navigator->findChild<SignalLabel *>(QStringLiteral("lblGoTo"))) {
        lblGoTo->setCaption(QString());
        lblGoTo->setCaption(selectedText());
    }
}

void frmPartTree::StatusBar1_PanelClick()
{
    if (frmOntoEdit *editor = Forms().Find<frmOntoEdit>())
        editor->txtCptSearch->setText(StatusPanel(1)->text());
}

void frmPartTree::popUp()
{
    mnuTree->popup(QCursor::pos());
}

// The least size follows the lists; the layout places the rest.
void frmPartTree::Form_Resize()
{
    setMinimumSize(m_slotsPane->isHidden() ? LeastTreeOnly : LeastWithSlots);
}

void frmPartTree::Form_Unload()
{
    if (isVisible())
        SavePlace(*this);
}

void frmPartTree::closeEvent(QCloseEvent *event)
{
    RunCommand([this] { Forms().Unload(this); });
    event->accept();
}

// A click on a status panel sends the concept of panel 1 to the editor; the right button
// brings up the popup, on the status bar as on the tree.
bool frmPartTree::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::MouseButtonRelease)
        return QMainWindow::eventFilter(watched, event);
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (watched == Tree1->viewport()) {
        if (mouse->button() == Qt::RightButton)
            popUp();
        return false;
    }
    if (watched == statusBar() || m_panels.contains(watched)) {
        if (watched != statusBar())
            RunCommand([this] { StatusBar1_PanelClick(); });
        if (mouse->button() == Qt::RightButton)
            popUp();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

frmPartTree &ShowPartTree(const QString &topNode, const QString &caption,
                          Qt::WindowState raisedState)
{
    for (QWidget *form : Forms().list()) {
        auto *tree = qobject_cast<frmPartTree *>(form);
        if (!tree || tree->windowTitle() != caption)
            continue;
        if (tree->isMinimized())
            tree->setWindowState(raisedState);
        tree->raise();
        tree->activateWindow();
        tree->setFocus();
        return *tree;
    }
    auto &tree = Forms().Load<frmPartTree>();
    tree.lblTopNode->setCaption(topNode);
    tree.setWindowTitle(caption);
    ShowOverMain(tree);
    return tree;
}

} // namespace lx::ui
