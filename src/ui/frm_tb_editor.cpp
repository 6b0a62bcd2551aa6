#include "ui/frm_tb_editor.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "termbase/edit/categories.h"
#include "termbase/exchange/tbx_export.h"
#include "termbase/exchange/tbx_import.h"
#include "termbase/store/lifecycle.h"
#include "ui/forms.h"
#include "ui/frm_about.h"
#include "ui/frm_dc_help.h"
#include "ui/frm_find.h"
#include "ui/frm_gen_html.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_properties.h"
#include "ui/frm_tb_options.h"
#include "ui/frm_tb_properties.h"
#include "ui/images.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QProgressBar>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

struct ToolButtonDef {
    int place;
    const char *key;
    const char *tip;
};

// Missing places are separators.
constexpr ToolButtonDef ToolButtons[] = {
    {1, "new", "New TermBase"},
    {2, "open", "Open TermBase"},
    {3, "close", "Close TermBase"},
    {5, "find", "Find Concept"},
    {6, "properties", "TermBase Properties"},
    {8, "concept", "Add Concept"},
    {9, "term", "Add Term"},
    {11, "delete", "Delete"},
    {13, "editor", "Edit Mode"},
    {14, "browser", "Browse Mode"},
    {16, "back", "Back"},
    {17, "refresh", "Refresh"},
    {18, "forward", "Forward"},
    {20, "help", "Help"},
};

QAction *MakeItem(QMenu *menu, const char *name, const QString &text)
{
    QAction *item = menu->addAction(text);
    item->setObjectName(QString::fromLatin1(name));
    return item;
}

} // namespace

frmTBEDitor::frmTBEDitor()
{
    setObjectName(QStringLiteral("frmTBEDitor"));
    lblOntoComm = new SignalLabel(this);
    connect(lblOntoComm, &SignalLabel::captionChanged, this, &frmTBEDitor::lblOntoComm_Change);
    buildMenus();
    buildToolBar();
    buildCentre();
    buildElementTree();
    buildBrowser();
    wireEditCommands();
    AttachCategoryHelp(*this);
    for (int i = 0; i < 3; ++i) {
        auto *panel = Named(new QLabel(this), QStringLiteral("Panel%1").arg(i + 1));
        statusBar()->addWidget(panel, i == 0 ? 2 : 1);
        m_panels.append(panel);
    }
    setMinimumSize(470, 330);
    resize(FittingSize(QSize(860, 600)));
    DisableEditor();
    SetCaption(BaseCaption);
    ShowCounts();
}

void frmTBEDitor::buildMenus()
{
    mnuFile = menuBar()->addMenu(QStringLiteral("&File"));
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    mnuFileNew = MakeItem(mnuFile, "mnuFileNew", QStringLiteral("&New"));
    mnuFileOPen = MakeItem(mnuFile, "mnuFileOPen", QStringLiteral("&Open"));
    mnuFileClose = MakeItem(mnuFile, "mnuFileClose", QStringLiteral("&Close"));
    mnuFileExportTbx = MakeItem(mnuFile, "mnuFileExportTbx", QStringLiteral("Export as TBX..."));
    mnuFileImportTbx = MakeItem(mnuFile, "mnuFileImportTbx", QStringLiteral("Import TBX..."));
    mnuFile->addSeparator();
    mnuFileProperties = MakeItem(mnuFile, "mnuFileProperties", QStringLiteral("P&roperties"));
    mnuFilePrint = MakeItem(mnuFile, "mnuFilePrint", QStringLiteral("&Print"));
    mnuFile->addSeparator();
    mnuFileExit = MakeItem(mnuFile, "mnuFileExit", QStringLiteral("E&xit"));
    mnuFileNew->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    mnuFileOPen->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
    mnuFileClose->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));

    mnuEdit = menuBar()->addMenu(QStringLiteral("&Edit"));
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    mnuEditFind = MakeItem(mnuEdit, "mnuEditFind", QStringLiteral("&Find Concept"));
    mnuEditFind->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F));
    mnuEdit->addSeparator();
    mnuEditEditor = MakeItem(mnuEdit, "mnuEditEditor", QStringLiteral("&Edit Mode"));
    mnuEditBrowser = MakeItem(mnuEdit, "mnuEditBrowser", QStringLiteral("&Browse Mode"));
    mnuEditEditor->setCheckable(true);
    mnuEditBrowser->setCheckable(true);
    mnuEditEditor->setChecked(true);

    mnuTools = menuBar()->addMenu(QStringLiteral("&Tools"));
    mnuTools->setObjectName(QStringLiteral("mnuTools"));
    mnuToolsGenHTML =
        MakeItem(mnuTools, "mnuToolsGenHTML", QStringLiteral("&Generate HTML Reports"));
    mnuToolsOptions = MakeItem(mnuTools, "mnuToolsOptions", QStringLiteral("&Options"));

    mnuHelp = menuBar()->addMenu(QStringLiteral("&Help"));
    mnuHelp->setObjectName(QStringLiteral("mnuHelp"));
    mnuHelpTool = MakeItem(mnuHelp, "mnuHelpTool", QStringLiteral("&Help Tool"));
    mnuHelpTool->setShortcut(QKeySequence(Qt::Key_F1));
    mnuHelpAbout = MakeItem(mnuHelp, "mnuHelpAbout", QStringLiteral("&About"));

    const auto route = [this](QAction *item, void (frmTBEDitor::*handler)()) {
        connect(item, &QAction::triggered, this, Command(this, handler));
    };
    route(mnuFileNew, &frmTBEDitor::mnuFileNew_Click);
    route(mnuFileOPen, &frmTBEDitor::mnuFileOPen_Click);
    route(mnuFileClose, &frmTBEDitor::mnuFileClose_Click);
    route(mnuFileProperties, &frmTBEDitor::mnuFileProperties_Click);
    route(mnuFileExit, &frmTBEDitor::mnuFileExit_Click);
    route(mnuFileExportTbx, &frmTBEDitor::mnuFileExportTbx_Click);
    route(mnuFileImportTbx, &frmTBEDitor::mnuFileImportTbx_Click);
    route(mnuToolsOptions, &frmTBEDitor::mnuToolsOptions_Click);
    connect(mnuToolsGenHTML, &QAction::triggered, this, [] { RunCommand(ShowTermbaseReports); });
    route(mnuHelpTool, &frmTBEDitor::mnuHelpTool_Click);
    connect(mnuHelpAbout, &QAction::triggered, this, [] { RunCommand(ShowAbout); });
    // Printing comes later; the modes are routed with the browser.
    connect(mnuFilePrint, &QAction::triggered, this,
            Command(this, &frmTBEDitor::mnuFilePrint_Click));
    connect(mnuEditFind, &QAction::triggered, this,
            [this] { RunCommand([this] { ShowFind(*this); }); });
}

void frmTBEDitor::buildToolBar()
{
    ToolBar1 = addToolBar(QStringLiteral("ToolBar1"));
    ToolBar1->setObjectName(QStringLiteral("ToolBar1"));
    ToolBar1->setMovable(false);
    ToolBar1->setIconSize(QSize(24, 24));
    ToolBar1->setToolButtonStyle(Qt::ToolButtonIconOnly);
    int place = 1;
    for (const ToolButtonDef &def : ToolButtons) {
        for (; place < def.place; ++place)
            m_places.append(ToolBar1->addSeparator());
        const QString key = QString::fromLatin1(def.key);
        const QString tip = QString::fromLatin1(def.tip);
        QAction *button = ToolBar1->addAction(Image(key), tip);
        button->setObjectName(key);
        button->setToolTip(tip);
        button->setProperty("imageKey", key);
        connect(button, &QAction::triggered, this, [this, key] { ToolBar1_ButtonClick(key); });
        m_places.append(button);
        ++place;
    }
}

void frmTBEDitor::buildCentre()
{
    auto *left = new QWidget(this);
    lblTree1 = Named(new QLabel(QStringLiteral("ELEMENTS"), left), QStringLiteral("lblTree1"));
    Tree1 = Named(new QTreeWidget(left), QStringLiteral("Tree1"));
    Tree1->setHeaderHidden(true);
    fraEdit = Named(new QGroupBox(left), QStringLiteral("fraEdit"));
    fraEdit->hide();
    auto *right = new QWidget(this);
    lblTree2 =
        Named(new QLabel(QStringLiteral("DATA CATEGORIES"), right), QStringLiteral("lblTree2"));
    Tree2 = Named(new QTreeWidget(right), QStringLiteral("Tree2"));
    Tree2->setHeaderHidden(true);
    ListView1 = Named(new QListWidget(right), QStringLiteral("ListView1"));
    ListView1->hide();
    picBrowser = Named(new QWidget(right), QStringLiteral("picBrowser"));
    picBrowser->hide();
    buildEditFrame();

    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->addWidget(lblTree1);
    leftLayout->addWidget(Tree1, 1);
    leftLayout->addWidget(fraEdit);
    auto *rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->addWidget(lblTree2);
    rightLayout->addWidget(Tree2, 1);
    rightLayout->addWidget(ListView1, 1);
    rightLayout->addWidget(picBrowser, 1);
    splitter = Named(new QSplitter(this), QStringLiteral("splitter"));
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(left);
    splitter->addWidget(right);
    auto *centre = new QWidget(this);
    auto *layout = new QVBoxLayout(centre);
    layout->setContentsMargins(6, 6, 6, 0);
    layout->addWidget(splitter);
    setCentralWidget(centre);
}

void frmTBEDitor::SetCaption(const QString &caption)
{
    setWindowTitle(caption);
}

void frmTBEDitor::SetWindowPointer(int pointer)
{
    setCursor(pointer == pointer::Hourglass ? Qt::WaitCursor : Qt::ArrowCursor);
}

// Buttons 3 to `lastButton`, the trees and the commands that need a termbase.
void frmTBEDitor::setEditorCommands(bool enabled, int lastButton)
{
    for (int place = 3; place <= lastButton; ++place)
        ToolButton(place)->setEnabled(enabled);
    Tree1->setEnabled(enabled);
    Tree2->setEnabled(enabled);
    mnuFileClose->setEnabled(enabled);
    mnuFileProperties->setEnabled(enabled);
    mnuFileExportTbx->setEnabled(enabled);
    mnuFileImportTbx->setEnabled(enabled);
    mnuFilePrint->setEnabled(enabled);
    mnuEdit->menuAction()->setVisible(enabled);
    mnuTools->menuAction()->setVisible(enabled);
}

void frmTBEDitor::DisableEditor()
{
    setEditorCommands(false, 19);
}

// Buttons 16 to 18 belong to Browse Mode and stay as they are.
void frmTBEDitor::EnableEditor()
{
    setEditorCommands(true, 14);
    if (Tree1->topLevelItemCount() > 0)
        SetElementToolbar(); // the element buttons follow the selected node
}

void frmTBEDitor::ShowCategoryPane(bool asList)
{
    Tree2->setVisible(!asList);
    ListView1->setVisible(asList);
}

void frmTBEDitor::ShowCounts()
{
    StatusPanel(1)->setText(Process().OntoMeta.Name);
    StatusPanel(2)->setText(QString::number(EntryCount) + QStringLiteral(" Term Entries"));
    StatusPanel(3)->setText(QString::number(TermCount) + QStringLiteral(" Terms"));
}

void frmTBEDitor::ClearStatusPanels()
{
    for (QLabel *panel : std::as_const(m_panels))
        panel->clear();
}

void frmTBEDitor::ClearTermbaseView()
{
    Tree1->clear();
    Tree2->clear();
    ListView1->clear();
    Tree1->hide();
    Tree2->hide();
    ListView1->hide();
    picBrowser->hide();
    fraEdit->hide();
}

// The category table and pane first, then the element tree.
void frmTBEDitor::LoadTermbaseView()
{
    LoadCategoryTable();
    LoadCategoryTree();
    Tree1->show();
    LoadRootNode();
    Tree1->setCurrentItem(Tree1->topLevelItem(0));
    Tree1_NodeClick(Tree1->topLevelItem(0));
}

// The names change everywhere: the pane, and the element tree from its root.
void frmTBEDitor::ReloadCategoryNames()
{
    LoadTermbaseView();
}

void SendOntoComm(int operation, const QString &currentConcept)
{
    for (QWidget *form : Forms().list()) {
        auto *editor = qobject_cast<frmTBEDitor *>(form);
        if (!editor || !editor->windowTitle().startsWith(QLatin1String("TermBase ")))
            continue;
        editor->lblOntoComm->setCaption(QString());
        editor->lblOntoComm->setCaption(QString::number(operation) + currentConcept);
    }
}

void frmTBEDitor::SetOntologyPanel(const QString &text)
{
    if (auto *ontology = Forms().Find<frmOntoEdit>())
        ontology->StatusPanel(1)->setText(text);
}

PropertiesTexts frmTBEDitor::ShowNewTermbaseProperties(const PropertiesTexts &texts,
                                                       const QString &workingOntology)
{
    auto &dialog = Forms().Load<frmTBProperties>();
    dialog.txtWOntology->setText(workingOntology);
    dialog.SetTexts(texts);
    UI().ShowModal(&dialog);
    const PropertiesTexts result = dialog.Texts();
    Forms().Unload(&dialog);
    return result;
}

PropertiesTexts frmTBEDitor::ShowTermbaseProperties(const PropertiesTexts &texts)
{
    auto &dialog = Forms().Load<frmProperties>();
    dialog.setWindowTitle(QStringLiteral("TermBase Properties"));
    dialog.SetTexts(texts);
    UI().ShowModal(&dialog);
    const PropertiesTexts result = dialog.Texts();
    Forms().Unload(&dialog);
    return result;
}

TermbaseOptionsChoice frmTBEDitor::ShowTermbaseOptions(const TermbaseOptionsChoice &current)
{
    auto &dialog = Forms().Load<frmTBOptions>();
    dialog.SetChoice(current);
    UI().ShowModal(&dialog);
    const TermbaseOptionsChoice choice = dialog.Choice();
    Forms().Unload(&dialog);
    return choice;
}

void frmTBEDitor::mnuFileNew_Click()
{
    NewTermbase(*this);
}

void frmTBEDitor::mnuFileOPen_Click()
{
    OpenTermbaseByDialog(*this);
}

void frmTBEDitor::mnuFileClose_Click()
{
    CloseTermbaseCommand(*this);
}

void frmTBEDitor::mnuFileProperties_Click()
{
    EditTermbaseProperties(*this);
}

// Only this window goes; the ontology stays open.
void frmTBEDitor::mnuFileExit_Click()
{
    CloseTermbaseCommand(*this);
    Forms().Unload(this);
}

void frmTBEDitor::mnuToolsOptions_Click()
{
    SetTermbaseOptions(*this);
}

// The export shows its progress in the status bar while it runs.
void frmTBEDitor::mnuFileExportTbx_Click()
{
    ProgressBar1->setRange(0, 0);
    ProgressBar1->show();
    ExportOpenTermbaseAsTbx([this](int done, int total) {
        ProgressBar1->setRange(0, total);
        ProgressBar1->setValue(done);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
    ProgressBar1->hide();
}

// The import shows its progress in the status bar and reloads the tree when it has written.
void frmTBEDitor::mnuFileImportTbx_Click()
{
    ProgressBar1->setRange(0, 0);
    ProgressBar1->show();
    ImportTbxIntoOpenTermbase(*this, [this](qint64 done, qint64 total) {
        ProgressBar1->setRange(0, int(total));
        ProgressBar1->setValue(int(done));
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
    ProgressBar1->hide();
}

void frmTBEDitor::mnuHelpTool_Click()
{
    UI().MsgBox(QStringLiteral("Not yet!"));
}

// Closing the window unloads it.
void frmTBEDitor::closeEvent(QCloseEvent *event)
{
    RunCommand([this] { Forms().Unload(this); });
    event->accept();
}

void frmTBEDitor::Form_Unload()
{
    if (isVisible())
        SavePlace(*this, splitter);
    CloseTermbaseCommand(*this);
    for (QWidget *form : Forms().WithCaptionLike(u"Find"))
        Forms().Unload(form);
    for (QWidget *form : Forms().WithCaptionLike(u"*Help"))
        Forms().Unload(form);
}

// Where it stood in the last run, else over the ontology editor.
void ShowTermbaseEditor()
{
    frmTBEDitor &editor = Forms().Get<frmTBEDitor>();
    if (!editor.isVisible() && RestorePlace(editor, editor.splitter)) {
        editor.show();
        editor.raise();
        return;
    }
    ShowOverMain(editor);
}

} // namespace lx::ui
