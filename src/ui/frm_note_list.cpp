#include "ui/frm_note_list.h"

#include "core/command.h"
#include "core/file_steps.h"
#include "core/interaction.h"
#include "ontology/edit/notes.h"
#include "ui/forms.h"
#include "ui/frm_note.h"
#include "ui/frm_onto_edit.h"
#include "ui/named.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace lx::ui {

namespace {

// A note wraps in the width of its column, and its row grows to hold it.
class WrappingDelegate : public QStyledItemDelegate {
public:
    explicit WrappingDelegate(QTreeView *view) : QStyledItemDelegate(view), m_view(view) {}

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const QSize hint = QStyledItemDelegate::sizeHint(option, index);
        constexpr int Margins = 8;
        const int width = std::max(m_view->columnWidth(index.column()) - Margins, Margins);
        const QRect text = option.fontMetrics.boundingRect(
            QRect(0, 0, width, 1 << 20), Qt::TextWordWrap, index.data().toString());
        return {hint.width(), std::max(hint.height(), text.height() + Margins / 2)};
    }

private:
    QTreeView *m_view;
};

} // namespace

frmNoteList::frmNoteList()
    : ListView1(Named(new QTreeWidget(this), QStringLiteral("ListView1"))),
      cmdEdit(Named(new QPushButton(QStringLiteral("&Edit"), this), QStringLiteral("cmdEdit"))),
      cmdDelete(
          Named(new QPushButton(QStringLiteral("&Delete"), this), QStringLiteral("cmdDelete"))),
      cmdClose(Named(new QPushButton(QStringLiteral("&Close"), this), QStringLiteral("cmdClose")))
{
    setObjectName(QStringLiteral("frmNoteList"));
    setWindowTitle(QStringLiteral("Notes Management"));
    ListView1->setHeaderLabels(
        {QStringLiteral("Concept"), QStringLiteral("Date"), QStringLiteral("Note")});
    ListView1->setRootIsDecorated(false);
    ListView1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    ListView1->setAlternatingRowColors(true);
    // A note shows whole: its lines wrap in the column and the row grows to hold them.
    ListView1->setWordWrap(true);
    ListView1->setUniformRowHeights(false);
    ListView1->setTextElideMode(Qt::ElideNone);
    ListView1->setColumnWidth(0, 160);
    ListView1->setColumnWidth(1, 140);
    ListView1->setItemDelegateForColumn(2, new WrappingDelegate(ListView1));
    // Row heights follow the width the note column gets.
    connect(ListView1->header(), &QHeaderView::sectionResized, ListView1,
            [this] { ListView1->doItemsLayout(); });
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton *button : {cmdEdit, cmdDelete, cmdClose})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(ListView1); // the layout fits the list to the window
    layout->addLayout(buttons);
    resize(720, 420);
    connect(cmdEdit, &QPushButton::clicked, this, Command(this, &frmNoteList::cmdEdit_Click));
    connect(cmdDelete, &QPushButton::clicked, this, Command(this, &frmNoteList::cmdDelete_Click));
    connect(cmdClose, &QPushButton::clicked, this, &frmNoteList::cmdClose_Click);
    FillList();
}

void frmNoteList::FillList()
{
    ListView1->clear();
    for (const NoteListRow &row : ReadNotes()) {
        auto *item = new QTreeWidgetItem(ListView1);
        item->setText(0, row.Concept);
        if (!row.Date.isNull())
            item->setText(1, DateToText(row.Date.toDateTime()));
        if (!row.Note.isNull()) {
            item->setText(2, row.Note.toString());
            item->setToolTip(2, row.Note.toString());
        }
        for (int column = 0; column < 3; ++column)
            item->setTextAlignment(column, Qt::AlignLeft | Qt::AlignTop);
    }
}

// One note at a time: the current row's, even when several rows are selected.
void frmNoteList::cmdEdit_Click()
{
    if (ListView1->topLevelItemCount() == 0)
        return;
    const QTreeWidgetItem *current = ListView1->currentItem();
    const QString identifier = current ? current->text(0) : QString();
    if (identifier.isEmpty())
        return;
    EditNote(identifier, AskNote);
    FillList();
    refreshNoteButton();
}

void frmNoteList::cmdDelete_Click()
{
    const QList<QTreeWidgetItem *> selected = ListView1->selectedItems();
    if (selected.isEmpty()) {
        UI().MsgBox(QStringLiteral("Select one or more notes from the list."), msg::Exclamation);
        return;
    }
    if (UI().MsgBox(QStringLiteral("Are you sure you want to delete selected note(s)?"),
                    msg::YesNo) == msg::No)
        return;
    QStringList concepts;
    for (const QTreeWidgetItem *item : selected)
        concepts.append(item->text(0));
    DeleteNotes(concepts);
    FillList();
    refreshNoteButton();
}

// A note of the concept shown in the editor may have come or gone.
void frmNoteList::refreshNoteButton()
{
    if (frmOntoEdit *editor = Forms().Find<frmOntoEdit>())
        editor->RefreshNoteImage();
}

void frmNoteList::cmdClose_Click()
{
    Forms().Unload(this);
}

} // namespace lx::ui
