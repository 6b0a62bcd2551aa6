#include "ui/frm_onto_edit.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "ui/forms.h"
#include "ui/frm_about.h"
#include "ui/images.h"

#include <QCoreApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QMenu *MakeMenu(QMenuBar *bar, const QString &name, const QString &caption)
{
    QMenu *menu = bar->addMenu(caption);
    menu->setObjectName(name);
    return menu;
}

QAction *MakeItem(QMenu *menu, const QString &name, const QString &caption)
{
    QAction *item = menu->addAction(caption);
    item->setObjectName(name);
    return item;
}

struct ToolButtonDef {
    int place;
    const char *key;
    const char *image;
    const char *tip;
};

// Places 4, 6, 8, 11, 13 and 15 are separators.
constexpr ToolButtonDef ToolButtons[] = {
    {1, "New", "new", "New ontology"},
    {2, "Open", "open", "Open ontology"},
    {3, "Close", "close", "Close ontology"},
    {5, "Properties", "properties", "Ontology properties"},
    {7, "FullTree", "tree", "Ontology hierarchy"},
    {9, "NewCpt", "newcpt", "Add concept"},
    {10, "DeleteCpt", "delcpt", "Delete concept"},
    {12, "Note", "note-out", "Working note"},
    {14, "tbeditor", "tbeditor", "Start Termbase Editor"},
    {16, "Help", "help", "Help"},
};

} // namespace

frmOntoEdit::frmOntoEdit()
{
    setObjectName(QStringLiteral("frmOntoEdit"));
    resize(960, 680);
    buildMenus();
    buildToolBar();
    buildCentre();
    buildStatusBar();

    Process().Quote = QString(QChar(34));
    DisableOntologyCommands();
    BaseCaption = QStringLiteral("Ontology Editor");
    setWindowTitle(BaseCaption);
    txtCptSearch->setText(QStringLiteral("Search..."));
    UpdateStatusCounts();
}

void frmOntoEdit::buildMenus()
{
    QMenuBar *bar = menuBar();
    mnuFile = MakeMenu(bar, QStringLiteral("mnuFile"), QStringLiteral("&Ontology"));
    mnuFileNew = MakeItem(mnuFile, QStringLiteral("mnuFileNew"), QStringLiteral("&New"));
    mnuFileOpen = MakeItem(mnuFile, QStringLiteral("mnuFileOpen"), QStringLiteral("&Open"));
    mnuFileClose = MakeItem(mnuFile, QStringLiteral("mnuFileClose"), QStringLiteral("&Close"));
    mnuFile->addSeparator();
    mnuFileImport = MakeItem(mnuFile, QStringLiteral("mnuFileImport"), QStringLiteral("Import"));
    mnuFileExport = MakeItem(mnuFile, QStringLiteral("mnuFileExport"), QStringLiteral("Export"));
    mnuFile->addSeparator();
    mnuFileProperties =
        MakeItem(mnuFile, QStringLiteral("mnuFileProperties"), QStringLiteral("P&roperties"));
    mnuFile->addSeparator();
    mnuFileExit = MakeItem(mnuFile, QStringLiteral("mnuFileExit"), QStringLiteral("&Exit"));

    mnuEdit = MakeMenu(bar, QStringLiteral("mnuEdit"), QStringLiteral("&Edit"));
    mnuEditCopy = MakeItem(mnuEdit, QStringLiteral("mnuEditCopy"), QStringLiteral("Copy"));
    mnuEditCut = MakeItem(mnuEdit, QStringLiteral("mnuEditCut"), QStringLiteral("Cut"));
    mnuEditPaste = MakeItem(mnuEdit, QStringLiteral("mnuEditPaste"), QStringLiteral("Paste"));

    mnuConcept = MakeMenu(bar, QStringLiteral("mnuConcept"), QStringLiteral("&Concept"));
    mnuConceptAdd = MakeItem(mnuConcept, QStringLiteral("mnuConceptAdd"), QStringLiteral("&Add"));
    mnuConceptEdit =
        MakeItem(mnuConcept, QStringLiteral("mnuConceptEdit"), QStringLiteral("Edit &Identifier"));
    mnuConceptEditDef = MakeItem(mnuConcept, QStringLiteral("mnuConceptEditDef"),
                                 QStringLiteral("Edit &Definition"));
    mnuConceptDelete =
        MakeItem(mnuConcept, QStringLiteral("mnuConceptDelete"), QStringLiteral("&Delete"));
    mnuConcept->addSeparator();
    mnuConceptTree =
        MakeItem(mnuConcept, QStringLiteral("mnuConceptTree"), QStringLiteral("Find in &Tree"));
    mnuConceptNote =
        MakeItem(mnuConcept, QStringLiteral("mnuConceptNote"), QStringLiteral("Working &Note"));

    mnuTree = MakeMenu(bar, QStringLiteral("mnuTree"), QStringLiteral("&Tree"));
    mnuTreeFull = MakeItem(mnuTree, QStringLiteral("mnuTreeFull"), QStringLiteral("&Full Tree"));
    mnuTreeObject = MakeItem(mnuTree, QStringLiteral("mnuTreeObject"), QStringLiteral("&Object"));
    mnuTreeEvent = MakeItem(mnuTree, QStringLiteral("mnuTreeEvent"), QStringLiteral("&Event"));
    mnuTreeRel = MakeItem(mnuTree, QStringLiteral("mnuTreeRel"), QStringLiteral("&Relation"));
    mnuTreeAttr = MakeItem(mnuTree, QStringLiteral("mnuTreeAttr"), QStringLiteral("&Attribute"));
    mnuTreeSelConcept =
        MakeItem(mnuTree, QStringLiteral("mnuTreeSelConcept"), QStringLiteral("&Selected Concept"));

    mnuTools = MakeMenu(bar, QStringLiteral("mnuTools"), QStringLiteral("Too&ls"));
    mnuToolsTBEd =
        MakeItem(mnuTools, QStringLiteral("mnuToolsTBEd"), QStringLiteral("&TermBase Editor"));
    mnuToolsOntoNav = MakeItem(mnuTools, QStringLiteral("mnuToolsOntoNav"),
                               QStringLiteral("Ontology &Navigator"));
    mnuGenHTML =
        MakeItem(mnuTools, QStringLiteral("mnuGenHTML"), QStringLiteral("&Generate HTML Reports"));
    mnuToolsBatchNaming =
        MakeItem(mnuTools, QStringLiteral("mnuToolsBatchNaming"), QStringLiteral("&Batch Naming"));
    mnuToolsListNotes =
        MakeItem(mnuTools, QStringLiteral("mnuToolsListNotes"), QStringLiteral("&List Notes"));
    mnuTools->addSeparator();
    mnuToolsOptions =
        MakeItem(mnuTools, QStringLiteral("mnuToolsOptions"), QStringLiteral("&Options"));

    mnuHelp = MakeMenu(bar, QStringLiteral("mnuHelp"), QStringLiteral("&Help"));
    mnuHelpTool = MakeItem(mnuHelp, QStringLiteral("mnuHelpTool"), QStringLiteral("&Help Tool"));
    mnuHelpAbout = MakeItem(mnuHelp, QStringLiteral("mnuHelpAbout"), QStringLiteral("&About"));

    connect(mnuFileExit, &QAction::triggered, this, Command(this, &frmOntoEdit::mnuFileExit_Click));
    connect(mnuHelpTool, &QAction::triggered, this, Command(this, &frmOntoEdit::mnuHelpTool_Click));
    connect(mnuHelpAbout, &QAction::triggered, this,
            Command(this, &frmOntoEdit::mnuHelpAbout_Click));
}

void frmOntoEdit::buildToolBar()
{
    ToolBar1 = addToolBar(QStringLiteral("ToolBar1"));
    ToolBar1->setObjectName(QStringLiteral("ToolBar1"));
    ToolBar1->setMovable(false);
    int place = 1;
    for (const ToolButtonDef &def : ToolButtons) {
        for (; place < def.place; ++place)
            m_places.append(ToolBar1->addSeparator());
        const QString key = QString::fromLatin1(def.key);
        QAction *button = ToolBar1->addAction(Image(QString::fromLatin1(def.image)), key);
        button->setObjectName(key);
        button->setToolTip(QString::fromLatin1(def.tip));
        button->setProperty("imageKey", QString::fromLatin1(def.image));
        connect(button, &QAction::triggered, this,
                [this, key] { RunCommand([this, key] { ToolBar1_ButtonClick(key); }); });
        m_places.append(button);
        ++place;
    }
}

void frmOntoEdit::buildCentre()
{
    frmSearch = new QGroupBox(this);
    frmSearch->setObjectName(QStringLiteral("frmSearch"));
    txtCptSearch = new QLineEdit(frmSearch);
    txtCptSearch->setObjectName(QStringLiteral("txtCptSearch"));
    dblConcepts = new QListView(frmSearch);
    dblConcepts->setObjectName(QStringLiteral("dblConcepts"));
    auto *searchLayout = new QVBoxLayout(frmSearch);
    searchLayout->addWidget(txtCptSearch);
    searchLayout->addWidget(dblConcepts);

    tbsEdit = new QTabWidget(this);
    tbsEdit->setObjectName(QStringLiteral("tbsEdit"));
    for (const char *tab : {"Description", "Properties", "Relatives", "Inheritance"})
        tbsEdit->addTab(new QWidget(tbsEdit), QString::fromLatin1(tab));

    auto *splitter = new QSplitter(this);
    splitter->addWidget(frmSearch);
    splitter->addWidget(tbsEdit);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({260, 700});
    setCentralWidget(splitter);

    lblNewCpt = new SignalLabel(this);
    lblNewRel = new SignalLabel(this);
    lblNewAttr = new SignalLabel(this);
}

void frmOntoEdit::buildStatusBar()
{
    statusBar()->setObjectName(QStringLiteral("StatusBar1"));
    const int stretch[] = {3, 1, 1, 1};
    for (int s : stretch) {
        auto *panel = new QLabel(this);
        panel->setFrameShape(QFrame::StyledPanel);
        panel->setMinimumWidth(90);
        statusBar()->addWidget(panel, s);
        m_panels.append(panel);
    }
}

void frmOntoEdit::EnableOntologyCommands()
{
    setOntologyCommands(true);
}

void frmOntoEdit::DisableOntologyCommands()
{
    setOntologyCommands(false);
}

void frmOntoEdit::setOntologyCommands(bool enabled)
{
    for (int place = 3; place <= 15; ++place)
        ToolButton(place)->setEnabled(enabled);
    for (QWidget *control :
         {static_cast<QWidget *>(tbsEdit), static_cast<QWidget *>(frmSearch),
          static_cast<QWidget *>(txtCptSearch), static_cast<QWidget *>(dblConcepts)})
        control->setEnabled(enabled);
    for (QAction *item : {mnuFileClose, mnuFileExport, mnuFileImport, mnuFileProperties})
        item->setEnabled(enabled);
    for (QMenu *menu : {mnuConcept, mnuTree, mnuTools})
        menu->menuAction()->setVisible(enabled);
}

void frmOntoEdit::UpdateStatusCounts()
{
    if (TotalConcepts != 0) {
        StatusPanel(3)->setText(QString::number(ListedConcepts) + QStringLiteral(" listed"));
        StatusPanel(4)->setText(QString::number(TotalConcepts) + QStringLiteral(" total"));
        return;
    }
    for (int panel = 1; panel <= 3; ++panel)
        StatusPanel(panel)->clear();
}

void frmOntoEdit::ToolBar1_ButtonClick(const QString &key)
{
    if (key == QLatin1String("Help"))
        mnuHelpTool_Click();
}

void frmOntoEdit::mnuHelpTool_Click()
{
    UI().MsgBox(QStringLiteral("Not yet!"));
}

void frmOntoEdit::mnuHelpAbout_Click()
{
    auto &about = Forms().Get<frmAbout>();
    UI().ShowModal(&about);
    Forms().Unload(&about);
}

void frmOntoEdit::mnuFileExit_Click()
{
    QCoreApplication::quit();
}

} // namespace lx::ui
