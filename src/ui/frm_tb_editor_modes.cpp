// The termbase editor's two modes: Edit Mode with the data category pane, Browse Mode with the
// embedded browser showing the page of an entry or a file of the backmatter; the toolbar, and
// the ontology editor's word that concepts changed.
#include "core/command.h"
#include "core/file_steps.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/errors.h"
#include "core/text/like.h"
#include "publish/html_stuff.h"
#include "publish/term_entry_page.h"
#include "termbase/edit/element_tree.h"
#include "termbase/store/lifecycle.h"
#include "ui/forms.h"
#include "ui/frm_dc_help.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_tb_editor.h"
#include "ui/list_views.h"
#include "ui/local_browser.h"
#include "ui/named.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QToolBar>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

constexpr int EditorButton = 13;
constexpr int BrowserButton = 14;
constexpr int FirstBrowseButton = 16;
constexpr int LastBrowseButton = 18;

// A file name of the backmatter that stays in its folder.
bool IsPlainFileName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('\\')) &&
           !name.contains(QLatin1Char(':')) && !name.contains(QChar(0));
}

// The folder with its final separator, made when it is missing.
QString FolderOf(const QString &folder)
{
    QDir().mkpath(folder);
    return QDir::toNativeSeparators(folder + QLatin1Char('/'));
}

} // namespace

void frmTBEDitor::buildBrowser()
{
    Browser = Named(new LocalBrowser(picBrowser), QStringLiteral("Browser"));
    auto *layout = new QVBoxLayout(picBrowser);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(Browser);
    for (int place : {EditorButton, BrowserButton})
        ToolButton(place)->setCheckable(true);
    ToolButton(EditorButton)->setChecked(true);
    for (int place = FirstBrowseButton; place <= LastBrowseButton; ++place)
        ToolButton(place)->setEnabled(false);
    connect(mnuEditEditor, &QAction::triggered, this, Command(this, &frmTBEDitor::ShowEditor));
    connect(mnuEditBrowser, &QAction::triggered, this, Command(this, &frmTBEDitor::ShowBrowser));
}

bool frmTBEDitor::BrowseMode() const
{
    return mnuEditBrowser->isChecked();
}

QString frmTBEDitor::PublishFolder() const
{
    return FolderOf(TermbasePublishFolder(Process().TermMeta.Name));
}

QString frmTBEDitor::BackFolder() const
{
    return FolderOf(TermbaseBackFolder(Process().TermMeta.Name));
}

// The browser reads the termbase's own two folders and nothing else.
void frmTBEDitor::pointBrowserAtTermbase()
{
    Browser->SetFolders({PublishFolder(), BackFolder()});
}

// The browser, the mode's check in the menu and the toolbar, and the browser's buttons.
void frmTBEDitor::setBrowseMode(bool browse)
{
    picBrowser->setVisible(browse);
    Browser->setVisible(browse);
    mnuEditBrowser->setChecked(browse);
    mnuEditEditor->setChecked(!browse);
    ToolButton(EditorButton)->setChecked(!browse);
    ToolButton(BrowserButton)->setChecked(browse);
    for (int place = FirstBrowseButton; place <= LastBrowseButton; ++place)
        ToolButton(place)->setEnabled(browse);
}

void frmTBEDitor::ShowBrowser()
{
    lblTree2->setText(QStringLiteral("TERMBASE BROWSER"));
    Tree2->hide();
    ListView1->hide();
    setBrowseMode(true);
    CurrentElemID = 0;
    Tree1_NodeClick(Tree1->currentItem());
}

void frmTBEDitor::ShowEditor()
{
    lblTree2->setText(QStringLiteral("DATA CATEGORIES"));
    const bool asList = Process().TermMeta.DCList == QLatin1String("list");
    ListView1->setVisible(asList);
    Tree2->setVisible(!asList);
    setBrowseMode(false);
    CurrentElemID = 0;
    CurrentCategory = QStringLiteral("0");
    Tree1_NodeClick(Tree1->currentItem());
}

// The page of the entry's concept, written when there is none yet.
void frmTBEDitor::ShowEntryPage(QTreeWidgetItem *node)
{
    if (!BrowseMode())
        return;
    const QString folder = PublishFolder();
    const std::optional<QString> page = ConceptPagePath(node->text(0), folder);
    if (!page)
        return;
    if (!QFileInfo::exists(*page))
        WriteTermEntryPage(node->text(0), KeyElement(NodeKey(node)), folder, true, true, true,
                           true);
    pointBrowserAtTermbase();
    Browser->Navigate(*page);
}

// The file of a backmatter record, or of the record an element points at.
void frmTBEDitor::ShowBackmatterFile(QTreeWidgetItem *node)
{
    if (!BrowseMode()) {
        fraEdit->hide();
        return;
    }
    QString name;
    if (text::Like(CurrentCategory, u"x*")) {
        name = node->text(0);
    } else {
        const std::optional<QString> record = BackmatterFileOf(KeyElement(NodeKey(node)));
        if (!record) {
            fraEdit->hide();
            return;
        }
        name = *record;
    }
    const QString file = BackFolder() + name;
    if (!IsPlainFileName(name) || !QFileInfo::exists(file)) {
        UI().MsgBox(QStringLiteral("Target file ") + file +
                        QStringLiteral(" not found. You should either copy this file ") +
                        QStringLiteral("yourself or delete the reference from the backmatter."),
                    msg::Exclamation);
    } else {
        pointBrowserAtTermbase();
        Browser->Navigate(file);
        txtElem->setText(node->text(0).toUpper());
    }
    fraEdit->hide();
}

// The page of the selected entry written again, with every structure, and shown.
void frmTBEDitor::RegenerateEntryPage()
{
    QTreeWidgetItem *node = Tree1->currentItem();
    if (!node || IsPlaceholderNode(node))
        return;
    const QString folder = PublishFolder();
    const std::optional<QString> page = ConceptPagePath(node->text(0), folder);
    if (!page)
        return;
    // The page is written over; the file is never removed first.
    WriteTermEntryPage(node->text(0), KeyElement(NodeKey(node)), folder, true, true, true, true);
    pointBrowserAtTermbase();
    Browser->Navigate(*page);
}

// The list is filled when it is shown: a hidden one is left for then.
// Printing stands in the menu with no action behind it, as in the navigator: the engine of
// this platform fails when it lays out a page for print.
void frmTBEDitor::mnuFilePrint_Click() {}

void frmTBEDitor::ReloadConcepts()
{
    if (!dbcConcepts->isHidden())
        SetTexts(dbcConcepts, ReadTermbaseConcepts());
}

// A concept added (1), deleted (2) or renamed (3) in the ontology: after a delete or a rename
// the tree is read again down to "body"; the concept list always.
void frmTBEDitor::lblOntoComm_Change()
{
    const QString caption = lblOntoComm->caption();
    if (caption.isEmpty() || Process().TermPath.isEmpty())
        return;
    const int operation = caption.left(1).toInt();
    if (operation == 2 || operation == 3) {
        IgnoreErrors([&] {
            Tree1->hide();
            QTreeWidgetItem *root = Tree1->topLevelItem(0);
            if (root) {
                root->setExpanded(false);
                root->setExpanded(true);
                QTreeWidgetItem *reached = root;
                for (int i = 0; i < root->childCount(); ++i) {
                    QTreeWidgetItem *child = root->child(i);
                    if (text::Like(child->text(0), u"body*")) {
                        child->setExpanded(true);
                        reached = child;
                        break;
                    }
                }
                Tree1->setCurrentItem(reached);
            }
            Tree1->show();
        });
    }
    try {
        ReloadConcepts();
    } catch (const store::StoreError &error) {
        // The ontology editor may be writing the same table: one more try.
        if (error.number() == 3426)
            IgnoreErrors([this] { ReloadConcepts(); });
    }
}

// A category of the pane handled as clicked, when it is active for the selected element.
void frmTBEDitor::ClickPaneCategory(const QString &key)
{
    for (QTreeWidgetItemIterator it(Tree2); *it; ++it) {
        if (CategoryNodeKey(*it) != key)
            continue;
        if (IsActiveCategoryNode(*it))
            Tree2_NodeClick(*it);
        return;
    }
}

void frmTBEDitor::ToolBar1_ButtonClick(const QString &key)
{
    const std::pair<const char *, QAction *> routes[] = {
        {"new", mnuFileNew},
        {"open", mnuFileOPen},
        {"close", mnuFileClose},
        {"find", mnuEditFind},
        {"properties", mnuFileProperties},
        {"delete", mnuElemDelete},
        {"editor", mnuEditEditor},
        {"browser", mnuEditBrowser},
        {"print", mnuFilePrint},
    };
    for (const auto &[name, item] : routes) {
        if (key == QLatin1String(name)) {
            item->trigger();
            return;
        }
    }
    RunCommand([&] {
        if (key == QLatin1String("concept"))
            ClickPaneCategory(QStringLiteral("n0.3"));
        else if (key == QLatin1String("term"))
            ClickPaneCategory(QStringLiteral("n1"));
        else if (key == QLatin1String("back"))
            Browser->GoBack();
        else if (key == QLatin1String("forward"))
            Browser->GoForward();
        else if (key == QLatin1String("refresh"))
            RegenerateEntryPage();
        else if (key == QLatin1String("help"))
            ShowCategoryHelp(QStringLiteral("1"));
    });
}

} // namespace lx::ui
