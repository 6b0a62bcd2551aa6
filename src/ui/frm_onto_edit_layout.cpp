// The ontology editor's controls, menus, toolbar and status bar, and which handler each
// command runs. The handlers themselves are in frm_onto_edit.cpp.
#include "core/command.h"
#include "ontology/exchange/skos.h"
#include "ui/frm_batch_naming.h"
#include "ui/frm_gen_html.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_onto_nav.h"
#include "ui/frm_tb_editor.h"
#include "ui/images.h"
#include "ui/list_views.h"
#include "ui/named.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSplitter>
#include <QStatusBar>
#include <QStringListModel>
#include <QTabWidget>
#include <QToolBar>
#include <QTreeView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QMenu *MakeMenu(QMenuBar *bar, const QString &name, const QString &caption)
{
    QMenu *menu = bar->addMenu(caption);
    menu->setObjectName(name);
    return menu;
}

// A popup: a menu of the window that no menu bar shows.
QMenu *MakePopup(QWidget *owner, const QString &name, const QString &caption)
{
    auto *menu = new QMenu(caption, owner);
    menu->setObjectName(name);
    return menu;
}

QAction *MakeItem(QMenu *menu, const QString &name, const QString &caption)
{
    QAction *item = menu->addAction(caption);
    item->setObjectName(name);
    return item;
}

QListWidget *MakeList(QWidget *parent, const QString &name)
{
    return Named(new QListWidget(parent), name);
}

QTreeWidget *MakeListView(QWidget *parent, const QString &name, const QStringList &heads)
{
    auto *view = Named(new QTreeWidget(parent), name);
    view->setHeaderLabels(heads);
    view->setRootIsDecorated(false);
    view->setUniformRowHeights(true);
    view->setAlternatingRowColors(true);
    return view;
}

// A caption over a control, as one column.
QWidget *Captioned(QWidget *parent, QWidget *caption, QWidget *control)
{
    auto *box = new QWidget(parent);
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addWidget(caption);
    layout->addWidget(control, 1);
    return box;
}

QWidget *Captioned(QWidget *parent, const QString &caption, QWidget *control)
{
    return Captioned(parent, static_cast<QWidget *>(new QLabel(caption, parent)), control);
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
    QAction *exportSkos =
        MakeItem(mnuFile, QStringLiteral("mnuFileExportSkos"), QStringLiteral("Export as SKOS..."));
    connect(exportSkos, &QAction::triggered, this,
            [] { RunCommand([] { ExportOpenOntologyAsSkos(); }); });
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
    mnuTree->addSeparator();
    mnuTreeObject = MakeItem(mnuTree, QStringLiteral("mnuTreeObject"), QStringLiteral("&Object"));
    mnuTreeEvent = MakeItem(mnuTree, QStringLiteral("mnuTreeEvent"), QStringLiteral("&Event"));
    mnuTreeRel = MakeItem(mnuTree, QStringLiteral("mnuTreeRel"), QStringLiteral("&Relation"));
    mnuTreeAttr = MakeItem(mnuTree, QStringLiteral("mnuTreeAttr"), QStringLiteral("&Attribute"));
    mnuTree->addSeparator();
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
}

void frmOntoEdit::buildPopupMenus()
{
    mnuISA = MakePopup(this, QStringLiteral("mnuISA"), QStringLiteral("IS-A"));
    MakeItem(mnuISA, QStringLiteral("mnuISAAdd"), QStringLiteral("&Add IS-A link"));
    MakeItem(mnuISA, QStringLiteral("mnuISAEdit"), QStringLiteral("&Edit selected link"));
    MakeItem(mnuISA, QStringLiteral("mnuISADelete"), QStringLiteral("&Delete selected link"));

    mnuRel = MakePopup(this, QStringLiteral("mnuRel"), QStringLiteral("Relations"));
    MakeItem(mnuRel, QStringLiteral("mnuRelAdd"), QStringLiteral("&Add relation"));
    MakeItem(mnuRel, QStringLiteral("mnuRelDelete"), QStringLiteral("&Delete selected relation"));
    mnuRelGoTo = mnuRel->addMenu(QStringLiteral("&Go to"));
    mnuRelGoTo->setObjectName(QStringLiteral("mnuRelGoTo"));
    MakeItem(mnuRelGoTo, QStringLiteral("mnuRelGoToRel"), QStringLiteral("&Relation"));
    MakeItem(mnuRelGoTo, QStringLiteral("mnuRelGoToConcept"), QStringLiteral("Related &Concept"));

    mnuDomain = MakePopup(this, QStringLiteral("mnuDomain"), QStringLiteral("Domains"));
    MakeItem(mnuDomain, QStringLiteral("mnuDomainAdd"), QStringLiteral("&Add Domain"));
    MakeItem(mnuDomain, QStringLiteral("mnuDomainDelete"),
             QStringLiteral("&Delete selected Domain"));

    mnuAttr = MakePopup(this, QStringLiteral("mnuAttr"), QStringLiteral("Attributes"));
    MakeItem(mnuAttr, QStringLiteral("mnuAttrAdd"), QStringLiteral("&Add attribute"));
    MakeItem(mnuAttr, QStringLiteral("mnuAttrDelete"),
             QStringLiteral("&Delete selected attribute"));

    mnuRange = MakePopup(this, QStringLiteral("mnuRange"), QStringLiteral("Ranges"));
    MakeItem(mnuRange, QStringLiteral("mnuRangeAdd"), QStringLiteral("&Add Range"));
    MakeItem(mnuRange, QStringLiteral("mnuRangeDelete"), QStringLiteral("&Delete selected Range"));

    mnuName = MakePopup(this, QStringLiteral("mnuName"), QStringLiteral("Names"));
    MakeItem(mnuName, QStringLiteral("mnuNameAdd"), QStringLiteral("&Add Name"));
    MakeItem(mnuName, QStringLiteral("mnuNameEdit"), QStringLiteral("Edit Selected Name"));
    MakeItem(mnuName, QStringLiteral("mnuNameDelete"), QStringLiteral("&Deleted Selected Name"));

    mnuInherit = MakePopup(this, QStringLiteral("mnuInherit"), QStringLiteral("Inheritance"));
    MakeItem(mnuInherit, QStringLiteral("mnuInheritGoToAttr"), QStringLiteral("Go to &Attribute"));
    MakeItem(mnuInherit, QStringLiteral("mnuInheritGoToValue"), QStringLiteral("Go to &Value"));
    MakeItem(mnuInherit, QStringLiteral("mnuInheritGoToFrom"), QStringLiteral("Go to '&From'"));
    mnuInherit->addSeparator();
    MakeItem(mnuInherit, QStringLiteral("mnuInheritCopy"), QStringLiteral("&Copy to Clipboard"));

    mnuInstOf = MakePopup(this, QStringLiteral("mnuInstOf"), QStringLiteral("Instance-Of"));
    MakeItem(mnuInstOf, QStringLiteral("mnuInstOfAdd"), QStringLiteral("&Add Instance-Of link"));
    MakeItem(mnuInstOf, QStringLiteral("mnuInstOfDelete"),
             QStringLiteral("&Delete Instance-Of link"));
    mnuGoTo = MakePopup(this, QStringLiteral("mnuGoTo"), QStringLiteral("Go to"));
    MakeItem(mnuGoTo, QStringLiteral("mnuGoToItem"), QStringLiteral("Go to selected item"));
}

// Each menu command runs as a command: a store failure it doesn't handle ends in a message.
// Commands whose logic belongs to later steps say so instead of acting.
void frmOntoEdit::routeMenus()
{
    const auto route = [this](QAction *item, void (frmOntoEdit::*handler)()) {
        connect(item, &QAction::triggered, this, Command(this, handler));
    };
    route(mnuFileNew, &frmOntoEdit::mnuFileNew_Click);
    route(mnuFileOpen, &frmOntoEdit::mnuFileOPen_Click);
    route(mnuFileClose, &frmOntoEdit::mnuFileClose_Click);
    route(mnuFileImport, &frmOntoEdit::mnuFileImport_Click);
    route(mnuFileProperties, &frmOntoEdit::mnuFileProperties_Click);
    route(mnuFileExit, &frmOntoEdit::mnuFileExit_Click);
    route(mnuEditCopy, &frmOntoEdit::mnuEditCopy_Click);
    route(mnuToolsOptions, &frmOntoEdit::mnuToolsOptions_Click);
    route(mnuHelpTool, &frmOntoEdit::mnuHelpTool_Click);
    route(mnuHelpAbout, &frmOntoEdit::mnuHelpAbout_Click);
    connect(mnuToolsTBEd, &QAction::triggered, this, [] { RunCommand(ShowTermbaseEditor); });
    const std::pair<const char *, void (frmOntoEdit::*)()> names[] = {
        {"mnuNameAdd", &frmOntoEdit::mnuNameAdd_Click},
        {"mnuNameEdit", &frmOntoEdit::mnuNameEdit_Click},
        {"mnuNameDelete", &frmOntoEdit::mnuNameDelete_Click},
    };
    for (const auto &[name, handler] : names)
        route(mnuName->findChild<QAction *>(QLatin1String(name)), handler);
    route(mnuConceptAdd, &frmOntoEdit::mnuConceptAdd_Click);
    route(mnuConceptEdit, &frmOntoEdit::mnuConceptEdit_Click);
    route(mnuConceptEditDef, &frmOntoEdit::mnuConceptEditDef_Click);
    route(mnuConceptDelete, &frmOntoEdit::mnuConceptDelete_Click);
    connect(lblNewCpt, &SignalLabel::captionChanged, this,
            Command(this, &frmOntoEdit::lblNewCpt_Change));
    route(mnuConceptNote, &frmOntoEdit::mnuConceptNote_Click);
    route(mnuToolsListNotes, &frmOntoEdit::mnuToolsListNotes_Click);
    // mnuEditCut and mnuEditPaste have no handler: they do nothing.
    route(mnuTreeFull, &frmOntoEdit::mnuTreeFull_Click);
    route(mnuTreeObject, &frmOntoEdit::mnuTreeObject_Click);
    route(mnuTreeEvent, &frmOntoEdit::mnuTreeEvent_Click);
    route(mnuTreeRel, &frmOntoEdit::mnuTreeRel_Click);
    route(mnuTreeAttr, &frmOntoEdit::mnuTreeAttr_Click);
    route(mnuTreeSelConcept, &frmOntoEdit::mnuTreeSelConcept_Click);
    route(mnuConceptTree, &frmOntoEdit::mnuConceptTree_Click);
    connect(mnuToolsBatchNaming, &QAction::triggered, this, [] { RunCommand(ShowBatchNaming); });
    connect(mnuToolsOntoNav, &QAction::triggered, this, [] { RunCommand([] { ShowOntoNav(); }); });
    connect(mnuGenHTML, &QAction::triggered, this, [] { RunCommand(ShowOntologyReports); });
    connect(mnuFileExport, &QAction::triggered, this, [] { RunCommand(ShowOntologyExport); });
}

void frmOntoEdit::buildToolBar()
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
        QAction *button = ToolBar1->addAction(Image(QString::fromLatin1(def.image)), key);
        button->setObjectName(key);
        button->setToolTip(QString::fromLatin1(def.tip));
        button->setProperty("imageKey", QString::fromLatin1(def.image));
        connect(button, &QAction::triggered, this, [this, key] { ToolBar1_ButtonClick(key); });
        m_places.append(button);
        ++place;
    }
}

void frmOntoEdit::buildCentre()
{
    frmSearch = Named(new QGroupBox(QStringLiteral("Concepts"), this), QStringLiteral("frmSearch"));
    txtCptSearch = Named(new QLineEdit(frmSearch), QStringLiteral("txtCptSearch"));
    txtCptSearch->setClearButtonEnabled(false);
    dblConcepts = Named(new QListView(frmSearch), QStringLiteral("dblConcepts"));
    m_listModel = new PagedListModel(this);
    dblConcepts->setModel(m_listModel);
    dblConcepts->setEditTriggers(QAbstractItemView::NoEditTriggers);
    dblConcepts->setUniformItemSizes(true);
    dblConcepts->setContextMenuPolicy(Qt::CustomContextMenu);
    auto *searchLayout = new QVBoxLayout(frmSearch);
    searchLayout->addWidget(txtCptSearch);
    searchLayout->addWidget(dblConcepts, 1);

    tbsEdit = Named(new QTabWidget(this), QStringLiteral("tbsEdit"));
    tbsEdit->addTab(buildDescriptionTab(), QStringLiteral("Description"));
    tbsEdit->addTab(buildPropertiesTab(), QStringLiteral("Properties"));
    tbsEdit->addTab(buildRelativesTab(), QStringLiteral("Relatives"));
    tbsEdit->addTab(buildInheritanceTab(), QStringLiteral("Inheritance"));

    auto *splitter = new QSplitter(this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(frmSearch);
    splitter->addWidget(tbsEdit);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({270, 690});
    m_splitter = splitter;
    auto *centre = new QWidget(this);
    auto *layout = new QVBoxLayout(centre);
    layout->setContentsMargins(6, 6, 6, 0);
    layout->addWidget(splitter);
    setCentralWidget(centre);

    lblNewCpt = new SignalLabel(this);
    lblNewRel = new SignalLabel(this);
    lblNewAttr = new SignalLabel(this);
}

QWidget *frmOntoEdit::buildDescriptionTab()
{
    auto *tab = new QWidget(tbsEdit);
    txtDef = Named(new QPlainTextEdit(tab), QStringLiteral("txtDef"));
    // The definition changes only through its own command; the box shows it and lets the
    // user select and copy.
    txtDef->setReadOnly(true);
    txtDef->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtDef->installEventFilter(this);
    txtDef->viewport()->installEventFilter(this); // the double click lands on the viewport
    lstISA = MakeList(tab, QStringLiteral("lstISA"));
    lstSubclasses = MakeList(tab, QStringLiteral("lstSubclasses"));
    lvwNames = MakeListView(tab, QStringLiteral("lvwNames"),
                            {QStringLiteral("Language"), QStringLiteral("Name"), QString()});
    lvwNames->setColumnHidden(2, true); // Name_ID, for the name commands
    for (QWidget *list : {static_cast<QWidget *>(lstISA), static_cast<QWidget *>(lvwNames)})
        list->setContextMenuPolicy(Qt::CustomContextMenu);

    auto *grid = new QGridLayout(tab);
    grid->addWidget(Captioned(tab, QStringLiteral("Definition"), txtDef), 0, 0, 1, 2);
    grid->addWidget(Captioned(tab, QStringLiteral("Is a (parents)"), lstISA), 1, 0);
    grid->addWidget(Captioned(tab, QStringLiteral("Subclasses"), lstSubclasses), 1, 1);
    grid->addWidget(Captioned(tab, QStringLiteral("Names"), lvwNames), 2, 0, 1, 2);
    grid->setRowStretch(0, 3);
    grid->setRowStretch(1, 3);
    grid->setRowStretch(2, 2);
    return tab;
}

QWidget *frmOntoEdit::buildPropertiesTab()
{
    auto *tab = new QWidget(tbsEdit);
    lblRels = Named(new QLabel(QStringLiteral("LOCAL RELATIONS"), tab), QStringLiteral("lblRels"));
    lblAttrs =
        Named(new QLabel(QStringLiteral("LOCAL ATTRIBUTES"), tab), QStringLiteral("lblAttrs"));
    lstRels = MakeList(tab, QStringLiteral("lstRels"));
    lstAttrs = MakeList(tab, QStringLiteral("lstAttrs"));
    for (QListWidget *list : {lstRels, lstAttrs})
        list->setContextMenuPolicy(Qt::CustomContextMenu);
    auto *layout = new QVBoxLayout(tab);
    layout->addWidget(Captioned(tab, lblRels, lstRels));
    layout->addWidget(Captioned(tab, lblAttrs, lstAttrs));
    return tab;
}

QWidget *frmOntoEdit::buildRelativesTab()
{
    auto *tab = new QWidget(tbsEdit);
    lstAncestors = MakeTextList(tab, QStringLiteral("lstAncestors"));
    lstDescendants = MakeTextList(tab, QStringLiteral("lstDescendants"));
    chkActiveAnc = Named(new QCheckBox(QStringLiteral("Show all ancestors (slow)"), tab),
                         QStringLiteral("chkActiveAnc"));
    chkActivDesc = Named(new QCheckBox(QStringLiteral("Show all descendants (slow)"), tab),
                         QStringLiteral("chkActivDesc"));
    auto *grid = new QGridLayout(tab);
    grid->addWidget(Captioned(tab, chkActiveAnc, lstAncestors), 0, 0);
    grid->addWidget(Captioned(tab, chkActivDesc, lstDescendants), 0, 1);
    return tab;
}

QWidget *frmOntoEdit::buildInheritanceTab()
{
    auto *tab = new QWidget(tbsEdit);
    fraInherit =
        Named(new QGroupBox(QStringLiteral("Inheritance"), tab), QStringLiteral("fraInherit"));
    optOff = Named(new QRadioButton(QStringLiteral("Off"), fraInherit), QStringLiteral("optOff"));
    optCumulative = Named(new QRadioButton(QStringLiteral("Cumulative"), fraInherit),
                          QStringLiteral("optCumulative"));
    optExclusive = Named(new QRadioButton(QStringLiteral("Exclusive"), fraInherit),
                         QStringLiteral("optExclusive"));
    optOff->setToolTip(QStringLiteral("No Inheritance (Fast)"));
    optCumulative->setToolTip(QStringLiteral("True inheritance (Slow)"));
    optExclusive->setToolTip(QStringLiteral("Examine mode (Slower)"));
    optOff->setChecked(true);
    auto *kinds = new QVBoxLayout(fraInherit);
    for (QRadioButton *option : {optOff, optCumulative, optExclusive})
        kinds->addWidget(option);

    fralvwInclude =
        Named(new QGroupBox(QStringLiteral("Include"), tab), QStringLiteral("fralvwInclude"));
    chkInhRels = Named(new QCheckBox(QStringLiteral("Relations"), fralvwInclude),
                       QStringLiteral("chkInhRels"));
    chkInhAttrs = Named(new QCheckBox(QStringLiteral("Attributes"), fralvwInclude),
                        QStringLiteral("chkInhAttrs"));
    auto *include = new QVBoxLayout(fralvwInclude);
    include->addWidget(chkInhRels);
    include->addWidget(chkInhAttrs);
    include->addStretch();
    fralvwInclude->setEnabled(false); // until an inheritance kind is chosen

    lvwInherit = MakeTextTable(
        tab, QStringLiteral("lvwInherit"),
        {QStringLiteral("Attribute"), QStringLiteral("Value"), QStringLiteral("From")});
    lvwInherit->setContextMenuPolicy(Qt::CustomContextMenu);

    auto *grid = new QGridLayout(tab);
    grid->addWidget(fraInherit, 0, 0);
    grid->addWidget(fralvwInclude, 0, 1);
    grid->addWidget(lvwInherit, 1, 0, 1, 2);
    grid->setRowStretch(1, 1);
    return tab;
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

// The usual keys of the menu commands; Ctrl+F goes to the search box.
void frmOntoEdit::buildShortcuts()
{
    mnuFileNew->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    mnuFileOpen->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
    mnuFileClose->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
    mnuFileExit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    mnuHelpTool->setShortcut(QKeySequence(Qt::Key_F1));
    auto *search = Named(new QAction(this), QStringLiteral("actSearch"));
    search->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F));
    addAction(search);
    connect(search, &QAction::triggered, this, [this] {
        if (!txtCptSearch->isEnabled())
            return;
        txtCptSearch->setFocus(Qt::ShortcutFocusReason);
        txtCptSearch->selectAll();
    });
}

// lvwNames: the language narrow, the name the rest; lvwInherit: three equal thirds.
void frmOntoEdit::fixListColumns()
{
    const int language = 110;
    lvwNames->setColumnWidth(0, language);
    lvwNames->header()->setStretchLastSection(false);
    lvwNames->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    lvwInherit->header()->setSectionResizeMode(QHeaderView::Stretch);
}

} // namespace lx::ui
