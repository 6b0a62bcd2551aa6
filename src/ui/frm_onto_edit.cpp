#include "ui/frm_onto_edit.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/text/like.h"
#include "ontology/store/lifecycle.h"
#include "ui/forms.h"
#include "ui/frm_about.h"
#include "ui/frm_onto_options.h"
#include "ui/frm_properties.h"
#include "ui/images.h"
#include "ui/list_views.h"
#include "ui/window_place.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSplitter>
#include <QStringListModel>
#include <QTabWidget>
#include <QTextCursor>
#include <QToolBar>
#include <QTreeWidget>
#include <QUrl>

namespace lx::ui {

namespace {

constexpr int KeyC = 67;
constexpr int KeyV = 86;
constexpr int KeyX = 88;

// Paragraph breaks of the box as plain line breaks.
QString SelectionOf(const QTextCursor &cursor)
{
    return cursor.selectedText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

} // namespace

frmOntoEdit::frmOntoEdit()
{
    setObjectName(QStringLiteral("frmOntoEdit"));
    buildMenus();
    buildPopupMenus();
    buildToolBar();
    buildCentre();
    buildStatusBar();
    routeMenus();
    buildShortcuts();
    fixListColumns();
    // Where the last run left it, else centred in a size that suits the screen.
    if (!RestorePlace(*this, m_splitter)) {
        resize(FittingSize(QSize(1100, 760)));
        PlaceOver(*this, nullptr);
    }
    setAcceptDrops(true);

    connectList();
    connectView();
    connectSlots();

    Process().Quote = QString(QChar(34));
    DisableOntologyCommands();
    BaseCaption = QStringLiteral("Ontology Editor");
    setWindowTitle(BaseCaption);
    txtCptSearch->setText(QStringLiteral("Search..."));
    UpdateStatusCounts();
}

void frmOntoEdit::SetCaption(const QString &caption)
{
    setWindowTitle(caption);
}

void frmOntoEdit::SetWindowPointer(int pointer)
{
    setCursor(pointer == pointer::Hourglass ? Qt::WaitCursor : Qt::ArrowCursor);
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

// A new file starts with the inheritance engine and the slow lists off.
void frmOntoEdit::ClearConceptView()
{
    txtDef->clear();
    txtCptSearch->clear();
    for (QListWidget *list : {lstISA, lstSubclasses})
        list->clear();
    for (QListView *list : {lstDescendants, lstAncestors})
        SetTexts(list, {});
    TableModel(lvwInherit)->clear();
    lvwNames->clear();
    lstRels->clear();
    lstAttrs->clear();
    chkActivDesc->setChecked(false);
    chkActiveAnc->setChecked(false);
    optOff->setChecked(true);
    optCumulative->setChecked(false);
    optExclusive->setChecked(false);
    tbsEdit->setCurrentIndex(0);
}

void frmOntoEdit::UnloadOtherWindows()
{
    const QList<QWidget *> forms = Forms().list();
    for (qsizetype i = forms.size() - 1; i >= 1; --i) {
        if (!text::Like(forms[i]->windowTitle(), u"Ontology Editor*"))
            Forms().Unload(forms[i]);
    }
}

PropertiesTexts frmOntoEdit::ShowProperties(const PropertiesTexts &texts)
{
    auto &dialog = Forms().Load<frmProperties>();
    dialog.setWindowTitle(QStringLiteral("Ontology Properties"));
    dialog.SetTexts(texts);
    UI().ShowModal(&dialog);
    const PropertiesTexts result = dialog.Texts();
    Forms().Unload(&dialog);
    return result;
}

void frmOntoEdit::GoToConcept(const QString &identifier)
{
    txtCptSearch->setText(identifier);
    if (ListText() == identifier)
        return;
    // The list mode hides it.
    const int answer =
        UI().MsgBox(QStringLiteral("This concept can't be displayed because it belongs to a set ") +
                        QStringLiteral("of top nodes or relationships banned by the display "
                                       "options.") +
                        QStringLiteral("Do you want to change this option?"),
                    msg::YesNo | msg::Information);
    if (answer != msg::Yes)
        return;
    mnuToolsOptions_Click();
    txtCptSearch->clear();
    GoToConcept(identifier);
}

void frmOntoEdit::ToolBar1_ButtonClick(const QString &key)
{
    const std::pair<const char *, QAction *> routes[] = {
        {"New", mnuFileNew},
        {"Open", mnuFileOpen},
        {"Close", mnuFileClose},
        {"Properties", mnuFileProperties},
        {"FullTree", mnuTreeFull},
        {"NewCpt", mnuConceptAdd},
        {"DeleteCpt", mnuConceptDelete},
        {"Note", mnuConceptNote},
        {"tbeditor", mnuToolsTBEd},
        {"Help", mnuHelpTool},
    };
    for (const auto &[name, item] : routes) {
        if (key == QLatin1String(name))
            item->trigger();
    }
}

void frmOntoEdit::mnuFileNew_Click()
{
    NewOntology(*this);
}

void frmOntoEdit::mnuFileOPen_Click()
{
    OpenOntologyByDialog(*this);
}

void frmOntoEdit::mnuFileClose_Click()
{
    CloseOntology(*this, Process().OntoPath);
}

void frmOntoEdit::mnuFileProperties_Click()
{
    EditOntologyProperties(*this);
}

// Ends the program at once: the windows aren't unloaded one by one.
void frmOntoEdit::mnuFileExit_Click()
{
    SavePlace(*this, m_splitter);
    if (!Process().OntoPath.isEmpty())
        CloseOntology(*this, Process().OntoPath);
    QCoreApplication::exit(0);
}

void frmOntoEdit::closeEvent(QCloseEvent *event)
{
    SavePlace(*this, m_splitter);
    if (!Process().OntoPath.isEmpty())
        CloseOntology(*this, Process().OntoPath);
    const QList<QWidget *> forms = Forms().list();
    for (qsizetype i = forms.size() - 1; i >= 1; --i)
        Forms().Unload(forms[i]);
    event->accept();
}

void frmOntoEdit::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void frmOntoEdit::dropEvent(QDropEvent *event)
{
    QStringList files;
    for (const QUrl &url : event->mimeData()->urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    if (files.isEmpty())
        return;
    event->acceptProposedAction();
    RunCommand([this, files] { OpenDroppedOntology(*this, files); });
}

void frmOntoEdit::mnuEditCopy_Click()
{
    txtDef_KeyUp(KeyC, Qt::ControlModifier);
}

void frmOntoEdit::mnuToolsOptions_Click()
{
    ShowOntologyOptions(*this);
}

void frmOntoEdit::mnuHelpTool_Click()
{
    UI().MsgBox(QStringLiteral("Not yet!"));
}

void frmOntoEdit::mnuHelpAbout_Click()
{
    ShowAbout();
}

void frmOntoEdit::popUp(QMenu *menu)
{
    menu->popup(QCursor::pos());
}

// Ctrl+C, Ctrl+V and Ctrl+X go through the program's clipboard, at key up.
void frmOntoEdit::txtDef_KeyUp(int key, Qt::KeyboardModifiers shift)
{
    if (!(shift & Qt::ControlModifier))
        return;
    QTextCursor cursor = txtDef->textCursor();
    if (key == KeyC || key == KeyX) {
        if (!cursor.hasSelection())
            return;
        UI().SetClipboardText(SelectionOf(cursor));
        if (key == KeyX)
            cursor.removeSelectedText();
    } else if (key == KeyV) {
        cursor.insertText(UI().ClipboardText());
    }
}

bool frmOntoEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtCptSearch)
        return searchBoxEvent(event) || QMainWindow::eventFilter(watched, event);
    // A double click on the definition edits it.
    if (watched == txtDef->viewport() && event->type() == QEvent::MouseButtonDblClick) {
        RunCommand([this] { txtDef_DblClick(); });
        return true;
    }
    if (watched != txtDef ||
        (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease &&
         event->type() != QEvent::ShortcutOverride))
        return QMainWindow::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool clipboardKey = (key->modifiers() & Qt::ControlModifier) &&
                              (key->key() == KeyC || key->key() == KeyV || key->key() == KeyX);
    if (!clipboardKey)
        return QMainWindow::eventFilter(watched, event);
    // The box's own clipboard keys would act at key down, past the program's clipboard.
    if (event->type() == QEvent::KeyRelease)
        txtDef_KeyUp(key->key(), key->modifiers());
    return event->type() != QEvent::ShortcutOverride;
}

} // namespace lx::ui
