// The names of the current concept in lvwNames: its popup and the commands that add, edit and
// delete a name through the naming dialog.
#include "core/interaction.h"
#include "core/process.h"
#include "ontology/edit/names.h"
#include "ui/forms.h"
#include "ui/frm_names.h"
#include "ui/frm_onto_edit.h"
#include "ui/list_views.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTreeWidget>

namespace lx::ui {

namespace {

constexpr int NameColumn = 1;
constexpr int NameIdColumn = 2;

// The dialog in "Name" mode over the current concept, its definition shown but not editable.
frmNames &LoadNamingDialog(const QString &identifier, const QString &definition)
{
    auto &dialog = Forms().Load<frmNames>();
    dialog.lblStart->setCaption(QStringLiteral("Name"));
    dialog.txtConcept->setText(identifier);
    dialog.txtDef->setPlainText(definition);
    return dialog;
}

bool Accepted(const frmNames &dialog)
{
    return dialog.lblStart->caption() == QLatin1String("OK");
}

} // namespace

void frmOntoEdit::mnuNameAdd_Click()
{
    frmNames &dialog = LoadNamingDialog(CurrentConcept, txtDef->toPlainText());
    dialog.setWindowTitle(QStringLiteral("Naming") + QStringLiteral(" - ") + CurrentConcept);
    UI().ShowModal(&dialog);
    if (Accepted(dialog) && !dialog.txtName->text().isEmpty()) {
        AddName(CurrentConcept, dialog.SelectedLangId(), dialog.txtName->text());
        LoadNames();
    }
    Forms().Unload(&dialog);
}

// The dialog opens on the row's language and name, under its own caption.
void frmOntoEdit::mnuNameEdit_Click()
{
    const QTreeWidgetItem *row = lvwNames->currentItem();
    if (!row)
        return; // the popup doesn't offer the command on an empty list
    const qint32 nameId = row->text(NameIdColumn).toInt();
    frmNames &dialog = LoadNamingDialog(CurrentConcept, txtDef->toPlainText());
    dialog.SelectLanguage(row->text(0));
    dialog.txtName->setText(row->text(NameColumn));
    UI().ShowModal(&dialog);
    if (Accepted(dialog)) {
        EditName(nameId, dialog.SelectedLangId(), dialog.txtName->text());
        LoadNames();
    }
    Forms().Unload(&dialog);
}

// No question first, and the last name may go too.
void frmOntoEdit::mnuNameDelete_Click()
{
    const QTreeWidgetItem *row = lvwNames->currentItem();
    if (!row)
        return;
    DeleteName(row->text(NameIdColumn).toInt());
    LoadNames();
}

void frmOntoEdit::lvwNames_MouseUp()
{
    if (CurrentConcept.isEmpty())
        CurrentConcept = Process().TopConcept;
    const bool any = lvwNames->topLevelItemCount() > 0;
    for (const char *name : {"mnuNameEdit", "mnuNameDelete"}) {
        if (auto *item = mnuName->findChild<QAction *>(QLatin1String(name)))
            item->setEnabled(any);
    }
    popUp(mnuName);
}

void frmOntoEdit::lvwNames_ColumnClick(int column)
{
    SortByColumn(lvwNames, column);
}

void frmOntoEdit::AddDefaultName()
{
    lx::AddDefaultName(CurrentConcept);
    LoadNames();
}

} // namespace lx::ui
