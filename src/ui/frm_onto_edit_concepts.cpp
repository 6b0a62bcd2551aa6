// A concept's birth in "Add Concept", the change of its identifier and definition through the
// naming dialog, and its deletion; each change reaches the linked termbases and the open
// dialogs that list concepts.
#include "core/interaction.h"
#include "core/process.h"
#include "core/text/like.h"
#include "ontology/edit/concepts.h"
#include "ontology/edit/links.h"
#include "ontology/store/concept_list.h"
#include "ui/forms.h"
#include "ui/frm_import.h"
#include "ui/frm_names.h"
#include "ui/frm_new_concept.h"
#include "ui/frm_onto_edit.h"
#include "ui/window_place.h"

#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>

namespace lx::ui {

namespace {

bool Accepted(const frmNames &dialog)
{
    return dialog.lblStart->caption() == QLatin1String("OK");
}

bool IsSlotDialog(const QString &caption)
{
    return text::Like(caption, u"* Relation") || text::Like(caption, u"* link");
}

} // namespace

// The dialog's one instance, shown without an owner; it stays open between adds.
void frmOntoEdit::mnuConceptAdd_Click()
{
    ShowOverMain(Forms().Get<frmNewConcept>());
}

void frmOntoEdit::lblNewCpt_Change()
{
    const QString identifier = lblNewCpt->caption();
    if (identifier.isEmpty())
        return;
    CurrentConcept = identifier;
    AddDefaultName();
    InitRSListConcepts(*this);
    UpdateStatusCounts();
    txtCptSearch->setText(identifier); // moves the list to the new concept
    ++ListedConcepts;
    ++TotalConcepts;
    if (!ToolButton(10)->isEnabled()) {
        // The ontology had no concept to show until now.
        for (int place : {10, 11, 12})
            ToolButton(place)->setEnabled(true);
        for (QWidget *control :
             std::initializer_list<QWidget *>{txtDef, lstISA, lstRels, chkActivDesc})
            control->setEnabled(true);
        mnuConcept->setEnabled(true);
    }
    PropagateConceptToTermBases(identifier, identifier, opAddConcept);
    UpdateStatusCounts();
}

void frmOntoEdit::mnuConceptEdit_Click()
{
    const QString oldId = CurrentConcept;
    auto &dialog = Forms().Load<frmNames>();
    dialog.txtConcept->setText(CurrentConcept);
    dialog.lblStart->setCaption(QStringLiteral("Rename"));
    UI().ShowModal(&dialog);
    const QString newId = dialog.txtConcept->text();
    if (!Accepted(dialog) || newId == oldId || newId.isEmpty() || !RenameConcept(oldId, newId)) {
        Forms().Unload(&dialog);
        return;
    }
    CurrentConcept = newId;
    if (CurrentType == ctTop)
        Process().TopConcept = newId;
    Forms().Unload(&dialog);
    PropagateConceptToTermBases(newId, oldId, opRenameConcept);
    InitRSListConcepts(*this);
    UpdateStatusCounts();
    // The slot dialogs hear of it, and so does "Add Concept"; "Add Attribute" doesn't.
    RefreshDialogs(IsSlotDialog, CurrentConcept);
    RefreshDialogs([](const QString &caption) { return caption == QLatin1String("Add Concept"); },
                   CurrentConcept);
}

void frmOntoEdit::mnuConceptEditDef_Click()
{
    auto &dialog = Forms().Load<frmNames>();
    dialog.setWindowTitle(QStringLiteral("Edit definition of ") + QStringLiteral(" - ") +
                          CurrentConcept);
    dialog.lblStart->setCaption(QStringLiteral("Definition"));
    dialog.txtConcept->setText(CurrentConcept);
    dialog.txtDef->setPlainText(txtDef->toPlainText());
    UI().ShowModal(&dialog);
    const QString definition = dialog.txtDef->toPlainText();
    if (Accepted(dialog) && definition != txtDef->toPlainText()) {
        SaveDefinition(CurrentConcept, definition);
        txtDef->setPlainText(definition);
    }
    Forms().Unload(&dialog);
}

void frmOntoEdit::txtDef_DblClick()
{
    mnuConceptEditDef_Click();
}

void frmOntoEdit::mnuConceptDelete_Click()
{
    const std::optional<DeletedConcept> deleted = DeleteConcept(*this);
    if (!deleted)
        return;
    DeleteOrphanConcepts([this](const QString &orphan) {
        PropagateConceptToTermBases(orphan, orphan, opDeleteConcept);
    });
    RefreshDialogs(
        [](const QString &caption) {
            return caption == QLatin1String("Add Concept") || IsSlotDialog(caption) ||
                   text::Like(caption, u"* Attribute");
        },
        QStringLiteral("Delete"));
    PropagateConceptToTermBases(deleted->Identifier, deleted->Identifier, opDeleteConcept);
    // The operation looks up its second argument, so the inverse stays in the termbases.
    if (!deleted->Inverse.isEmpty())
        PropagateConceptToTermBases(deleted->Inverse, deleted->Identifier, opDeleteConcept);
    InitRSListConcepts(*this);
    --TotalConcepts;
    ListedConcepts = TotalConcepts - 1;
    dblConcepts->setFocus();
    dblConcepts_Click();
    UpdateStatusCounts();
}

void frmOntoEdit::mnuFileImport_Click()
{
    ImportFile(QString());
}

void frmOntoEdit::ImportFile(const QString &file)
{
    auto &dialog = Forms().Load<frmImport>();
    if (!file.isEmpty())
        dialog.SetImportFile(file);
    UI().ShowModal(&dialog);
    Forms().Unload(&dialog);
    InitRSListConcepts(*this);
    UpdateStatusCounts();
}

} // namespace lx::ui
