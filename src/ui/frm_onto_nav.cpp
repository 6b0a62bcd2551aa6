#include "ui/frm_onto_nav.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/errors.h"
#include "ontology/store/concept_list.h"
#include "ontology/store/lifecycle.h"
#include "ontology/store/lookups.h"
#include "publish/html_stuff.h"
#include "publish/ontology_site.h"
#include "ui/frm_gen_html.h"
#include "ui/frm_wait.h"
#include "ui/images.h"
#include "ui/local_browser.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QSettings>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lx::ui {

using Node = HierarchyTree::Node;

namespace {

constexpr int HistorySize = 20;
constexpr int FindPlace = 3;
constexpr int MaxPaste = 255;
// The window's least size, and the least widths of the tree and of the browser.
constexpr QSize LeastSize(400, 233);
constexpr int LeastTreeWidth = 33;
constexpr int LeastBrowserWidth = 100;
// The place the window takes the first time, in pixels: 1,000 and 6,500 units of fifteen.
constexpr int DefaultCorner = 67;
constexpr int DefaultSide = 433;

// The file of the page that failed to be deleted: a run-time error of its own number.
constexpr int FileNotFound = 53;

} // namespace

int NavigatorFindKey(int key)
{
    if (key >= 'a' && key <= 'z')
        return key - 32;
    if ((key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9') || key == '\b' || key == '-')
        return key;
    if (key == ' ' || key == '_')
        return '-';
    return 0;
}

frmOntoNav::frmOntoNav()
{
    setObjectName(QStringLiteral("frmOntoNav"));
    setAttribute(Qt::WA_DeleteOnClose, false); // the collection unloads it
    setWindowTitle(BaseCaption());
    buildMenus();
    buildToolBar();
    buildCentre();
    buildStatusBar();
    lblGoTo = Named(new SignalLabel(this), QStringLiteral("lblGoTo"));
    connectControls();
    TabOrder({cbxFind, Tree1, Browser});
    setMinimumSize(LeastSize);
    Form_Load();
}

void frmOntoNav::buildMenus()
{
    const auto item = [](QMenu *menu, const char *name, const QString &caption) {
        QAction *action = menu->addAction(caption);
        action->setObjectName(QLatin1String(name));
        return action;
    };
    mnuFile = menuBar()->addMenu(QStringLiteral("&File"));
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    mnuFileRefresh = item(mnuFile, "mnuFileRefresh", QStringLiteral("&Generate Again (refresh)"));
    mnuFilePrint = item(mnuFile, "mnuFilePrint", QStringLiteral("&Print"));
    mnuFileSaveAs = item(mnuFile, "mnuFileSaveAs", QStringLiteral("Save &As..."));
    mnuFile->addSeparator();
    mnuFileExit = item(mnuFile, "mnuFileExit", QStringLiteral("E&xit"));
    mnuBrowser = menuBar()->addMenu(QStringLiteral("&Browser"));
    mnuBrowser->setObjectName(QStringLiteral("mnuBrowser"));
    mnuBrowserBack = item(mnuBrowser, "mnuBrowserBack", QStringLiteral("&Back"));
    mnuBrowserForward = item(mnuBrowser, "mnuBrowserForward", QStringLiteral("&Forward"));
    mnuOnto = menuBar()->addMenu(QStringLiteral("&Ontology"));
    mnuOnto->setObjectName(QStringLiteral("mnuOnto"));
    mnuOntoRefresh = item(mnuOnto, "mnuOntoRefresh", QStringLiteral("&Refresh"));
    mnuOnto->addSeparator();
    mnuPublishWhole = item(mnuOnto, "mnuPublishWhole", QStringLiteral("&Publish whole ontology"));
    mnuPublishSelect = item(mnuOnto, "mnuPublishSelect", QStringLiteral("&Select Concepts..."));
    // mnuBrowserBack, mnuBrowserForward, mnuFilePrint and mnuFileSaveAs have no handler.
}

void frmOntoNav::buildToolBar()
{
    Toolbar1 = addToolBar(QStringLiteral("Toolbar1"));
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    Toolbar1->setMovable(false);
    Toolbar1->setIconSize(QSize(24, 24));
    const std::pair<const char *, const char *> buttons[] = {
        {"back", "Back"},
        {"forward", "Forward"},
        {"find", "Find in the tree"},
        {"refresh", "Generate the page again"}};
    for (const auto &[key, tip] : buttons) {
        const QString name = QLatin1String(key);
        QAction *button = Toolbar1->addAction(Image(name), name);
        button->setObjectName(name);
        button->setToolTip(QLatin1String(tip));
        connect(button, &QAction::triggered, this,
                [this, name] { RunCommand([this, name] { Toolbar1_ButtonClick(name); }); });
        m_places.append(button);
    }
    ToolButton(FindPlace)->setEnabled(false); // until there is a text to find
}

void frmOntoNav::buildCentre()
{
    auto *left = new QWidget(this);
    cbxFind = Named(new QComboBox(left), QStringLiteral("cbxFind"));
    cbxFind->setEditable(true);
    cbxFind->setInsertPolicy(QComboBox::NoInsert); // the find keeps the history itself
    cbxFind->setMaxVisibleItems(HistorySize);
    cbxFind->lineEdit()->installEventFilter(this);
    Tree1 = Named(new QTreeWidget(left), QStringLiteral("Tree1"));
    m_mirror.Show(Tree1, &m_tree);
    Tree1->setHeaderHidden(true);
    Tree1->setUniformRowHeights(true);
    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->addWidget(cbxFind);
    leftLayout->addWidget(Tree1, 1);
    left->setMinimumWidth(LeastTreeWidth);

    Browser = Named(new LocalBrowser(this), QStringLiteral("Browser"));
    Browser->setMinimumWidth(LeastBrowserWidth);
    imgSplitter = Named(new QSplitter(this), QStringLiteral("imgSplitter"));
    imgSplitter->setChildrenCollapsible(false);
    imgSplitter->addWidget(left);
    imgSplitter->addWidget(Browser);
    imgSplitter->setStretchFactor(1, 1);
    imgSplitter->setSizes({150, 283});
    setCentralWidget(imgSplitter);
}

void frmOntoNav::buildStatusBar()
{
    statusBar()->setObjectName(QStringLiteral("StatusBar1"));
    for (int stretch : {3, 2}) {
        auto *panel = new QLabel(this);
        panel->setFrameShape(QFrame::StyledPanel);
        panel->setMinimumWidth(60);
        statusBar()->addWidget(panel, stretch);
        m_panels.append(panel);
    }
}

void frmOntoNav::connectControls()
{
    connect(lblGoTo, &SignalLabel::captionChanged, this,
            Command(this, &frmOntoNav::lblGoTo_Change));
    m_mirror.ConnectUser(this, {[this](QTreeWidgetItem *item) { Tree1_Expand(item); },
                                [this](QTreeWidgetItem *item) { Tree1_Collapse(item); },
                                [this](QTreeWidgetItem *item) { Tree1_NodeClick(item); }});
    connect(cbxFind, &QComboBox::editTextChanged, this,
            [this] { RunCommand([this] { cbxFind_Change(); }); });
    connect(cbxFind, &QComboBox::activated, this,
            [this] { RunCommand([this] { cbxFind_Click(); }); });
    connect(Browser, &LocalBrowser::BeforeNavigate, this,
            [this](const QUrl &url) { RunCommand([this, &url] { BeforeNavigate2(url); }); });
    connect(mnuFileRefresh, &QAction::triggered, this,
            [this] { RunCommand([this] { RegeneratePage(false); }); });
    connect(mnuOntoRefresh, &QAction::triggered, this,
            [this] { RunCommand([this] { RegeneratePage(false); }); });
    connect(mnuFileExit, &QAction::triggered, this,
            [this] { RunCommand([this] { Forms().Unload(this); }); });
    connect(mnuPublishWhole, &QAction::triggered, this,
            Command(this, &frmOntoNav::mnuPublishWhole_Click));
    connect(mnuPublishSelect, &QAction::triggered, this,
            Command(this, &frmOntoNav::mnuPublishSelect_Click));
}

void frmOntoNav::restorePlace()
{
    const auto settings = ProgramSettings();
    settings->beginGroup(QStringLiteral("Settings"));
    const bool kept = settings->contains(QStringLiteral("MainLeft"));
    const QRect place(settings->value(QStringLiteral("MainLeft"), DefaultCorner).toInt(),
                      settings->value(QStringLiteral("MainTop"), DefaultCorner).toInt(),
                      settings->value(QStringLiteral("MainWidth"), DefaultSide).toInt(),
                      settings->value(QStringLiteral("MainHeight"), DefaultSide).toInt());
    resize(place.size().expandedTo(LeastSize));
    if (kept)
        move(place.topLeft());
    setProperty("placeKept", kept);
}

void frmOntoNav::Form_Load()
{
    restorePlace();
    ProcessState &p = Process();
    m_folder = PublishFolder() + QLatin1Char('/');
    Browser->SetFolders({PublishFolder()});
    QStringList children;
    const bool any = GetChildren(p.TopConcept, children) > 0;
    const Node root = m_tree.AddRoot(p.TopConcept, any);
    if (QTreeWidgetItem *item = ItemOf(root))
        item->setData(0, Qt::UserRole + 1, QStringLiteral("TopNode"));
    if (!any)
        UI().MsgBox(QStringLiteral("The Ontology is empty"));
    m_count = CountConcepts();
    setWindowTitle(windowTitle() + QStringLiteral(" - ") + p.OntoMeta.Name);
    StatusPanel(2)->setText(QString::number(m_count) + QStringLiteral(" Concepts"));
    ShowPage(p.TopConcept);
}

void frmOntoNav::treeCollapsed()
{
    cbxFind->setEditText(QString());
}

QTreeWidgetItem *frmOntoNav::ItemOf(Node node) const
{
    return m_mirror.ItemOf(node);
}

Node frmOntoNav::nodeOf(const QTreeWidgetItem *item) const
{
    return TreeMirror::NodeOf(item);
}

void frmOntoNav::lblGoTo_Change()
{
    if (lblGoTo->caption().isEmpty())
        return;
    cbxFind->setEditText(lblGoTo->caption());
    FindInNavigator();
    if (QTreeWidgetItem *item = ItemOf(m_tree.Selected()))
        Tree1_NodeClick(item);
}

void frmOntoNav::Tree1_Expand(QTreeWidgetItem *item)
{
    m_tree.Expand(nodeOf(item));
}

void frmOntoNav::Tree1_Collapse(QTreeWidgetItem *item)
{
    m_tree.Collapse(nodeOf(item));
}

void frmOntoNav::Tree1_NodeClick(QTreeWidgetItem *item)
{
    m_tree.NoteSelected(nodeOf(item));
    ShowPage(item->text(0));
}

void frmOntoNav::ShowPage(const QString &identifier)
{
    const QString file = m_folder + identifier + QStringLiteral(".html");
    // The page is made before the browser asks for it; the browser's own notice finds it there.
    BeforeNavigate2(QUrl::fromLocalFile(file));
    Browser->Navigate(file);
}

void frmOntoNav::BeforeNavigate2(const QUrl &url)
{
    UI().SetMousePointer(pointer::Hourglass);
    try {
        WritePageIfMissing(url.toLocalFile(), m_folder);
    } catch (const store::StoreError &) {
        // The browser shows its own error for a page that isn't there.
    }
    UI().SetMousePointer(pointer::Default);
}

void frmOntoNav::Toolbar1_ButtonClick(const QString &key)
{
    if (key == QLatin1String("back"))
        Browser->GoBack();
    else if (key == QLatin1String("forward"))
        Browser->GoForward();
    else if (key == QLatin1String("refresh"))
        RegeneratePage(true);
    else if (key == QLatin1String("find"))
        FindInNavigator();
}

// The file is deleted only when the test says that it isn't there, which fails; an existing
// page is replaced by the writer itself.
void frmOntoNav::RegeneratePage(bool ignoreErrors)
{
    const QTreeWidgetItem *item = ItemOf(m_tree.Selected());
    if (!item)
        return;
    const QString identifier = item->text(0);
    const QString file = m_folder + identifier + QStringLiteral(".html");
    if (!QFile::exists(file) && !QFile::remove(file) && !ignoreErrors)
        throw store::StoreError(FileNotFound, QStringLiteral("File not found"));
    UI().SetMousePointer(pointer::Hourglass);
    try {
        WriteConceptPage(identifier, m_folder, true, true, true, true);
    } catch (const store::StoreError &) {
        UI().SetMousePointer(pointer::Default);
        if (!ignoreErrors)
            throw;
    }
    Browser->Navigate(file);
    UI().SetMousePointer(pointer::Default);
}

// Every text goes into the history, the same one again too; the newest first, at most
// HistorySize of them.
void frmOntoNav::addToHistory(const QString &text)
{
    const QSignalBlocker quiet(cbxFind);
    if (cbxFind->count() == HistorySize)
        cbxFind->removeItem(HistorySize - 1);
    cbxFind->insertItem(0, text);
    cbxFind->setCurrentIndex(-1);
    cbxFind->setEditText(text);
}

void frmOntoNav::FindInNavigator()
{
    const QString text = cbxFind->currentText();
    if (text.size() < 3) {
        UI().MsgBox(QStringLiteral("You must include at least three characters for your search"),
                    msg::Exclamation);
        return;
    }
    bool found = true;
    m_tree.SkipDummyInFind = false;
    try {
        found = m_tree.Find(text + QLatin1Char('*'));
    } catch (const store::StoreError &) {
        // The find goes as far as it can; the tree keeps what it opened.
    }
    if (!found) {
        UI().MsgBox(QStringLiteral("String not found"), msg::Exclamation);
        return;
    }
    addToHistory(text);
}

void frmOntoNav::cbxFind_Change()
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

void frmOntoNav::cbxFind_Click()
{
    FindInNavigator();
}

// Typed keys go through the box's rule; Enter finds; Ctrl+C and Ctrl+V copy and paste.
bool frmOntoNav::filterFindKey(QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->modifiers() & Qt::ControlModifier) {
        if (key->key() == Qt::Key_C) {
            if (!cbxFind->currentText().isEmpty())
                UI().SetClipboardText(cbxFind->currentText());
            return true;
        }
        if (key->key() == Qt::Key_V) {
            RunCommand([this] { pasteIntoFind(); });
            return true;
        }
        return false;
    }
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        RunCommand([this] { FindInNavigator(); });
        return true;
    }
    const QString typed = key->text();
    if (typed.size() != 1 || key->key() == Qt::Key_Backspace)
        return false;
    const int used = NavigatorFindKey(typed[0].unicode());
    if (used != typed[0].unicode() && used != 0)
        cbxFind->lineEdit()->insert(QString(QChar(used)));
    return used != typed[0].unicode();
}

// A dropped character comes in as the character of code 0.
void frmOntoNav::pasteIntoFind()
{
    const QString pasted = UI().ClipboardText().left(MaxPaste);
    QString text = cbxFind->currentText();
    for (const QChar ch : pasted)
        text += QChar(char16_t(NavigatorFindKey(ch.unicode())));
    cbxFind->setEditText(text);
}

void frmOntoNav::mnuPublishWhole_Click()
{
    ProcessState &p = Process();
    if (UI().MsgBox(PublishWholeQuestion(p.OntoFolder), msg::YesNo | msg::Exclamation,
                    QStringLiteral("Publish Ontology")) != msg::Yes)
        return;
    UI().SetMousePointer(pointer::Hourglass);
    auto &wait = Forms().Load<frmWait>();
    wait.lblMess->setText(QStringLiteral("Generating HTML files. Please wait..."));
    wait.ShowOver(this);
    const auto progress = [&wait](int done, int total) {
        if (done == 0) {
            wait.ProgressBar1->setRange(0, total);
            wait.ProgressBar1->setValue(0);
            wait.ProgressBar1->show();
            return;
        }
        wait.Step(QString::number(done) + QStringLiteral(" Files"));
    };
    const QString site = SiteName(p.OntoMeta.Name);
    int written = 0;
    try {
        written = PublishWholeOntology(m_folder, site, progress);
    } catch (...) {
        Forms().Unload(&wait);
        UI().SetMousePointer(pointer::Default);
        throw;
    }
    wait.ProgressBar1->hide();
    StatusPanel(2)->setText(QString::number(written));
    Forms().Unload(&wait);
    UI().SetMousePointer(pointer::Default);
    UI().MsgBox(PublishWholeReport(site), msg::Information, QStringLiteral("Publishing"));
}

void frmOntoNav::mnuPublishSelect_Click()
{
    ShowOntologyReports();
}

void frmOntoNav::Form_Unload()
{
    if (isMinimized() || !isVisible())
        return;
    const auto settings = ProgramSettings();
    settings->beginGroup(QStringLiteral("Settings"));
    settings->setValue(QStringLiteral("MainLeft"), x());
    settings->setValue(QStringLiteral("MainTop"), y());
    settings->setValue(QStringLiteral("MainWidth"), width());
    settings->setValue(QStringLiteral("MainHeight"), height());
}

void frmOntoNav::closeEvent(QCloseEvent *event)
{
    RunCommand([this] { Forms().Unload(this); });
    event->accept();
}

bool frmOntoNav::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == cbxFind->lineEdit() && filterFindKey(event))
        return true;
    return QMainWindow::eventFilter(watched, event);
}

frmOntoNav &ShowOntoNav()
{
    if (auto *open = qobject_cast<frmOntoNav *>(Forms().FindByCaption(u"Ontology Navigator*"))) {
        if (open->isMinimized())
            open->showNormal();
        open->raise();
        open->activateWindow();
        return *open;
    }
    auto &navigator = Forms().Load<frmOntoNav>();
    if (navigator.property("placeKept").toBool())
        navigator.show();
    else
        ShowOverMain(navigator);
    return navigator;
}

} // namespace lx::ui
