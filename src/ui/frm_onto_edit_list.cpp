// The concept list of the ontology editor and its search box: which concept is current.
#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "ontology/store/lookups.h"
#include "ui/forms.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_part_tree.h"
#include "ui/list_views.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QScopedValueRollback>

namespace lx::ui {

namespace {

constexpr int KeyC = 67;
constexpr int KeyV = 86;
constexpr int MaxPaste = 255;

const QString kSearchHint = QStringLiteral("Search...");

bool IsClipboardKey(const QKeyEvent *key)
{
    return (key->modifiers() & Qt::ControlModifier) &&
           (key->key() == Qt::Key_C || key->key() == Qt::Key_V);
}

} // namespace

void frmOntoEdit::connectList()
{
    connect(txtCptSearch, &QLineEdit::textChanged, this,
            [this] { RunCommand([this] { txtCptSearch_Change(); }); });
    txtCptSearch->installEventFilter(this);
    connect(dblConcepts, &QListView::clicked, this, Command(this, &frmOntoEdit::dblConcepts_Click));
    // Moving the selection with the keys is a click too; the program's own moves are not. Their
    // signals still reach the view, which repaints the rows left and entered.
    connect(dblConcepts->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        if (!m_movingList)
            RunCommand([this] { dblConcepts_Click(); });
    });
    dblConcepts->viewport()->installEventFilter(new KeepCurrentOnRightPress(dblConcepts));
    connect(dblConcepts, &QListView::doubleClicked, this,
            Command(this, &frmOntoEdit::dblConcepts_DblClick));
    connect(dblConcepts, &QWidget::customContextMenuRequested, this,
            [this] { dblConcepts_MouseUp(); });
}

void frmOntoEdit::ShowConceptList()
{
    const QScopedValueRollback moving(m_movingList, true);
    m_listModel->setRows(ListRows(&rsList, m_listField));
}

QString frmOntoEdit::SelectFirstListRow()
{
    if (m_listModel->rowCount() == 0)
        return {};
    const QScopedValueRollback moving(m_movingList, true);
    dblConcepts->setCurrentIndex(m_listModel->index(0));
    return ListText();
}

void frmOntoEdit::BindConceptList(const QString &field)
{
    // A field naming the column already shown shows the same rows: the list keeps its pages and
    // its selection. No field names the first column.
    const auto column = [this](const QString &name) {
        return name.isEmpty() ? rsList.Fields(0).Name() : rsList.Fields(name).Name();
    };
    const bool sameColumn =
        field == m_listField ||
        (rsList.isOpen() && column(field).compare(column(m_listField), Qt::CaseInsensitive) == 0);
    m_listField = field;
    if (sameColumn && m_listModel->rowCount() == (rsList.isOpen() ? int(rsList.RecordCount()) : 0))
        return;
    const int row = dblConcepts->currentIndex().row();
    ShowConceptList();
    const QScopedValueRollback moving(m_movingList, true);
    if (row >= 0 && row < m_listModel->rowCount())
        dblConcepts->setCurrentIndex(m_listModel->index(row));
}

QString frmOntoEdit::ListText() const
{
    return dblConcepts->currentIndex().data().toString();
}

void frmOntoEdit::selectListRow(store::Bookmark bookmark)
{
    const qsizetype row = m_listModel->rows().rowOf(bookmark);
    if (row < 0)
        return;
    const QScopedValueRollback moving(m_movingList, true);
    dblConcepts->setCurrentIndex(m_listModel->index(int(row)));
    dblConcepts->scrollTo(dblConcepts->currentIndex());
}

// The search by prefix: the list follows the first match, and the view reloads either way.
void frmOntoEdit::txtCptSearch_Change()
{
    const QString text = txtCptSearch->text();
    if (text.isEmpty() || text == kSearchHint)
        return;
    if (const std::optional<store::Bookmark> found = FindConceptByPrefix(rsList, text)) {
        selectListRow(*found);
        CurrentConcept = ListText();
    }
    LoadConceptView();
}

void frmOntoEdit::txtCptSearch_GotFocus()
{
    txtCptSearch->clear();
}

void frmOntoEdit::txtCptSearch_LostFocus()
{
    txtCptSearch->setText(kSearchHint);
}

int frmOntoEdit::txtCptSearch_KeyPress(int key)
{
    return FilterConceptKey(key);
}

// Ctrl+C copies the whole box; Ctrl+V pastes a character at a time in identifier form, each
// one searching as if typed.
void frmOntoEdit::txtCptSearch_KeyUp(int key, Qt::KeyboardModifiers shift)
{
    if (!(shift & Qt::ControlModifier))
        return;
    if (key == KeyC) {
        if (!txtCptSearch->text().isEmpty())
            UI().SetClipboardText(txtCptSearch->text());
    } else if (key == KeyV) {
        const QString pasted = UI().ClipboardText().left(MaxPaste);
        for (const QChar ch : pasted)
            txtCptSearch->setText(txtCptSearch->text() + NormalizeIdentifier(QString(ch)));
    }
}

// Focus, the key filter and the clipboard keys of the search box. The box's own clipboard
// keys would act at key down and past the program's clipboard, so they are kept from it.
bool frmOntoEdit::searchBoxEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
        txtCptSearch_GotFocus();
        return false;
    case QEvent::FocusOut:
        txtCptSearch_LostFocus();
        return false;
    case QEvent::ShortcutOverride:
        return false;
    case QEvent::KeyPress: {
        auto *key = static_cast<QKeyEvent *>(event);
        if (IsClipboardKey(key))
            return true;
        const QString typed = key->text();
        if (typed.size() != 1 || typed[0].unicode() < 32 ||
            (key->modifiers() & Qt::ControlModifier))
            return false; // editing and moving keys work as usual
        const int used = txtCptSearch_KeyPress(typed[0].unicode());
        if (used == typed[0].unicode())
            return false;
        if (used != 0)
            txtCptSearch->insert(QString(QChar(used)));
        return true;
    }
    case QEvent::KeyRelease: {
        auto *key = static_cast<QKeyEvent *>(event);
        if (!IsClipboardKey(key))
            return false;
        RunCommand([this, k = key->key(), m = key->modifiers()] { txtCptSearch_KeyUp(k, m); });
        return true;
    }
    default:
        return false;
    }
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

// The full tree of the ontology finds the concept; a tree not yet open is opened first.
void frmOntoEdit::dblConcepts_DblClick()
{
    if (CurrentConcept.isEmpty())
        return;
    ShowPartTree(Process().TopConcept, Process().OntoMeta.Name + QStringLiteral(" - Full tree"),
                 Qt::WindowNoState)
        .lblFind->setCaption(CurrentConcept);
}

void frmOntoEdit::lstSubclasses_DblClick()
{
    const QListWidgetItem *item = lstSubclasses->currentItem();
    if (item && !item->text().isEmpty())
        txtCptSearch->setText(item->text());
}

} // namespace lx::ui
