#include "ui/frm_note_list.h"

#include "core/command.h"
#include "core/interaction.h"
#include "ontology/edit/notes.h"
#include "ui/forms.h"
#include "ui/frm_note.h"
#include "ui/frm_onto_edit.h"
#include "ui/named.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lx::ui {

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
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton *button : {cmdEdit, cmdDelete, cmdClose})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(ListView1); // the layout fits the list to the window
    layout->addLayout(buttons);
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
            item->setText(1, row.Date.toString());
        if (!row.Note.isNull())
            item->setText(2, row.Note.toString());
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
