#include "ui/frm_onto_edit.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/text/like.h"
#include "ontology/store/lifecycle.h"
#include "ui/forms.h"
#include "ui/frm_about.h"
#include "ui/frm_properties.h"
#include "ui/images.h"

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

QString SelectedText(const QListWidget *list)
{
    const QListWidgetItem *item = list->currentItem();
    return item ? item->text() : QString();
}

// Paragraph breaks of the box as plain line breaks.
QString SelectionOf(const QTextCursor &cursor)
{
    return cursor.selectedText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

} // namespace

frmOntoEdit::frmOntoEdit()
{
    setObjectName(QStringLiteral("frmOntoEdit"));
    resize(980, 700);
    buildMenus();
    buildPopupMenus();
    buildToolBar();
    buildCentre();
    buildStatusBar();
    routeMenus();
    fixListColumns();
    setAcceptDrops(true);

    connect(txtCptSearch, &QLineEdit::textChanged, this,
            [this] { RunCommand([this] { txtCptSearch_Change(); }); });
    connect(dblConcepts, &QListView::clicked, this, Command(this, &frmOntoEdit::dblConcepts_Click));
    connect(dblConcepts, &QWidget::customContextMenuRequested, this,
            [this] { dblConcepts_MouseUp(); });
    // A double click on a parent or relative goes there; on a subclass it searches for it.
    for (QListWidget *list : {lstISA, lstAncestors, lstDescendants}) {
        connect(list, &QListWidget::itemDoubleClicked, this, [this, list] {
            const QString target = SelectedText(list);
            if (!target.isEmpty())
                RunCommand([this, target] { GoToConcept(target); });
        });
    }
    connect(lstSubclasses, &QListWidget::itemDoubleClicked, this,
            Command(this, &frmOntoEdit::lstSubclasses_DblClick));
    connect(lstISA, &QWidget::customContextMenuRequested, this, [this] { popUp(mnuISA); });
    connect(lstRels, &QWidget::customContextMenuRequested, this,
            [this] { popUp(CurrentType == 3 || CurrentType == 4 ? mnuDomain : mnuRel); });
    connect(lstAttrs, &QWidget::customContextMenuRequested, this,
            [this] { popUp(CurrentType == 3 || CurrentType == 4 ? mnuRange : mnuAttr); });
    connect(lvwNames, &QWidget::customContextMenuRequested, this, [this] { popUp(mnuName); });
    connect(lvwInherit, &QWidget::customContextMenuRequested, this,
            [this] { lvwInherit_MouseUp(); });

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
    for (QListWidget *list : {lstISA, lstDescendants, lstAncestors, lstSubclasses})
        list->clear();
    lvwInherit->clear();
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

// The concept's own row, its note and its type word; the lists of the view come with the
// concept view itself.
void frmOntoEdit::LoadConceptView()
{
    const bool slow = chkActivDesc->isChecked() || !optOff->isChecked();
    if (slow) {
        UI().SetMousePointer(pointer::Default);
        SetWindowPointer(pointer::Hourglass);
    }
    if (CurrentConcept.isEmpty())
        return;
    const ConceptHeading heading = ReadConceptHeading(CurrentConcept);
    if (heading.found) {
        txtDef->setPlainText(heading.definition);
        CurrentType = heading.type;
        StatusPanel(1)->setText(heading.subset);
        StatusPanel(2)->clear();
    }
    setNoteImage(HasNote(CurrentConcept));
    StatusPanel(2)->setText(TypeWord(CurrentType));
    SetWindowPointer(pointer::Arrow);
}

void frmOntoEdit::setNoteImage(bool hasNote)
{
    const QString key = hasNote ? QStringLiteral("note-in") : QStringLiteral("note-out");
    ToolButton(12)->setIcon(Image(key));
    ToolButton(12)->setProperty("imageKey", key);
}

void frmOntoEdit::ShowConceptList()
{
    m_listRows = ReadListRows(rsList, m_listField);
    QStringList texts;
    texts.reserve(m_listRows.size());
    for (const ListRow &row : m_listRows)
        texts.append(row.text);
    m_listModel->setStringList(texts);
}

QString frmOntoEdit::SelectFirstListRow()
{
    if (m_listModel->rowCount() == 0)
        return {};
    dblConcepts->setCurrentIndex(m_listModel->index(0));
    return ListText();
}

void frmOntoEdit::BindConceptList(const QString &field)
{
    const int row = dblConcepts->currentIndex().row();
    m_listField = field;
    ShowConceptList();
    if (row >= 0 && row < m_listModel->rowCount())
        dblConcepts->setCurrentIndex(m_listModel->index(row));
}

QString frmOntoEdit::ListText() const
{
    return dblConcepts->currentIndex().data().toString();
}

void frmOntoEdit::selectListRow(store::Bookmark bookmark)
{
    for (qsizetype row = 0; row < m_listRows.size(); ++row) {
        if (m_listRows[row].bookmark == bookmark) {
            dblConcepts->setCurrentIndex(m_listModel->index(int(row)));
            dblConcepts->scrollTo(dblConcepts->currentIndex());
            return;
        }
    }
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
    if (!Process().OntoPath.isEmpty())
        CloseOntology(*this, Process().OntoPath);
    QCoreApplication::exit(0);
}

void frmOntoEdit::closeEvent(QCloseEvent *event)
{
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
    NotAvailableYet();
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

void frmOntoEdit::NotAvailableYet()
{
    UI().MsgBox(QStringLiteral("This command is not available yet."));
}

// The search by prefix: the list follows the first match, and the view reloads either way.
void frmOntoEdit::txtCptSearch_Change()
{
    const QString text = txtCptSearch->text();
    if (text.isEmpty() || text == QLatin1String("Search..."))
        return;
    if (const std::optional<store::Bookmark> found = FindConceptByPrefix(rsList, text)) {
        selectListRow(*found);
        CurrentConcept = ListText();
    }
    LoadConceptView();
}

void frmOntoEdit::dblConcepts_Click()
{
    const QString kept = CurrentConcept;
    CurrentConcept = ListText();
    if (CurrentConcept.isEmpty())
        CurrentConcept = kept;
    if (CurrentConcept != kept)
        LoadConceptView();
}

void frmOntoEdit::dblConcepts_MouseUp()
{
    mnuConceptDelete->setEnabled(CurrentType != 100);
    popUp(mnuConcept);
}

void frmOntoEdit::lstSubclasses_DblClick()
{
    const QString child = SelectedText(lstSubclasses);
    if (!child.isEmpty())
        txtCptSearch->setText(child);
}

void frmOntoEdit::lvwInherit_MouseUp()
{
    if (lvwInherit->topLevelItemCount() > 0)
        popUp(mnuInherit);
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
