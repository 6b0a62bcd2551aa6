// The slots of the current concept after its creation: IS-A links in lstISA, relation slots or
// domains in lstRels, attribute slots or ranges in lstAttrs, each with its popup and the slot
// dialog.
#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "ontology/edit/concept_view.h"
#include "ontology/edit/slots.h"
#include "ui/forms.h"
#include "ui/frm_edit_rel.h"
#include "ui/frm_onto_edit.h"
#include "ui/list_views.h"
#include "ui/window_place.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>

namespace lx::ui {

namespace {

// The most items a list box holds.
constexpr int ListBoxCapacity = 32767;

void Enable(const QMenu *menu, const char *item, bool enabled)
{
    if (auto *action = menu->findChild<QAction *>(QLatin1String(item)))
        action->setEnabled(enabled);
    else if (auto *sub = menu->findChild<QMenu *>(QLatin1String(item)))
        sub->setEnabled(enabled);
}

void SetItems(QListWidget *list, const QStringList &items)
{
    list->clear();
    list->addItems(items);
}

// A new instance over the editor's concept; its caption sets its mode when lblStart fires.
frmEditRel &LoadSlotDialog(const QString &caption, const QString &owner)
{
    auto &dialog = Forms().Load<frmEditRel>();
    dialog.setWindowTitle(caption);
    dialog.txtConcept1->show();
    dialog.txtConcept1->setText(owner);
    dialog.txtConcept1->setReadOnly(true);
    return dialog;
}

// txtISA stands where the relation list would be, with the fixed relation.
void FixRelation(frmEditRel &dialog, const QString &relation)
{
    dialog.txtISA->show();
    dialog.txtISA->setText(relation);
    dialog.dblRels->hide();
}

void Start(frmEditRel &dialog)
{
    dialog.lblStart->setCaption(QString());
    dialog.lblStart->setCaption(QStringLiteral("Start"));
    dialog.FitToUse();
}

// Shows the dialog modally; its concept box is empty when the user cancelled (the dialog is
// unloaded then) and null when it is gone.
frmEditRel *ShowSlotDialog(frmEditRel &dialog)
{
    QPointer<frmEditRel> guard(&dialog);
    UI().ShowModal(&dialog);
    if (!guard)
        return nullptr;
    if (guard->txtConcept1->text().isEmpty()) {
        Forms().Unload(guard);
        return nullptr;
    }
    return guard;
}

frmEditRel &LoadIsaDialog(const QString &caption, const QString &owner)
{
    frmEditRel &dialog = LoadSlotDialog(caption, owner);
    FixRelation(dialog, QStringLiteral("ISA"));
    dialog.cmdClose->setText(QStringLiteral("&Cancel"));
    return dialog;
}

} // namespace

void frmOntoEdit::connectSlots()
{
    const auto route = [this](QMenu *menu, const char *name, void (frmOntoEdit::*handler)()) {
        if (auto *item = menu->findChild<QAction *>(QLatin1String(name)))
            connect(item, &QAction::triggered, this, Command(this, handler));
    };
    route(mnuISA, "mnuISAAdd", &frmOntoEdit::mnuISAAdd_Click);
    route(mnuISA, "mnuISAEdit", &frmOntoEdit::mnuISAEdit_Click);
    route(mnuISA, "mnuISADelete", &frmOntoEdit::mnuISADelete_Click);
    route(mnuRel, "mnuRelAdd", &frmOntoEdit::mnuRelAdd_Click);
    route(mnuRel, "mnuRelDelete", &frmOntoEdit::mnuRelDelete_Click);
    route(mnuRelGoTo, "mnuRelGoToRel", &frmOntoEdit::mnuRelGoToRel_Click);
    route(mnuRelGoTo, "mnuRelGoToConcept", &frmOntoEdit::mnuRelGoToConcept_Click);
    route(mnuDomain, "mnuDomainAdd", &frmOntoEdit::mnuDomainAdd_Click);
    route(mnuDomain, "mnuDomainDelete", &frmOntoEdit::mnuDomainDelete_Click);
    route(mnuRange, "mnuRangeAdd", &frmOntoEdit::mnuRangeAdd_Click);
    route(mnuRange, "mnuRangeDelete", &frmOntoEdit::mnuRangeDelete_Click);
    route(mnuAttr, "mnuAttrAdd", &frmOntoEdit::mnuAttrAdd_Click);
    route(mnuAttr, "mnuAttrDelete", &frmOntoEdit::mnuAttrDelete_Click);

    connect(lstISA, &QWidget::customContextMenuRequested, this,
            Command(this, &frmOntoEdit::lstISA_MouseUp));
    connect(lstRels, &QWidget::customContextMenuRequested, this,
            Command(this, &frmOntoEdit::lstRels_MouseUp));
    connect(lstAttrs, &QWidget::customContextMenuRequested, this,
            Command(this, &frmOntoEdit::lstAttrs_MouseUp));
    connect(lstRels, &QListWidget::itemDoubleClicked, this,
            Command(this, &frmOntoEdit::lstRels_DblClick));
    connect(lblNewRel, &SignalLabel::captionChanged, this,
            Command(this, &frmOntoEdit::lblNewRel_Change));
    connect(lblNewAttr, &SignalLabel::captionChanged, this,
            Command(this, &frmOntoEdit::lblNewAttr_Change));
}

// --- IS-A links --------------------------------------------------------------------------------

// Only a concept with more than one parent offers the delete; one without any parent fails.
void frmOntoEdit::lstISA_MouseUp()
{
    const bool selected = !CurrentText(lstISA).isEmpty();
    Enable(mnuISA, "mnuISADelete", selected);
    Enable(mnuISA, "mnuISAEdit", selected);
    Enable(mnuISA, "mnuISADelete", IsaLinkCount(CurrentConcept) != 1);
    popUp(mnuISA);
}

void frmOntoEdit::mnuISAAdd_Click()
{
    frmEditRel &dialog = LoadIsaDialog(QStringLiteral("Add ISA link"), CurrentConcept);
    Start(dialog);
    frmEditRel *shown = ShowSlotDialog(dialog);
    if (!shown)
        return;
    if (const auto parents = AddIsaLink(CurrentConcept, shown->RelatedText()))
        SetItems(lstISA, *parents);
    Forms().Unload(shown);
}

void frmOntoEdit::mnuISAEdit_Click()
{
    frmEditRel &dialog = LoadIsaDialog(QStringLiteral("Edit ISA link"), CurrentConcept);
    dialog.cmdAdd->setText(QStringLiteral("&Modify"));
    Start(dialog);
    frmEditRel *shown = ShowSlotDialog(dialog);
    if (!shown)
        return;
    if (const auto parents = EditIsaLink(CurrentConcept, shown->RelatedText()))
        SetItems(lstISA, *parents);
    Forms().Unload(shown);
}

void frmOntoEdit::mnuISADelete_Click()
{
    DeleteIsaLink(
        CurrentConcept, CurrentText(lstISA), [this] { lstISA->clear(); },
        [this](const QString &parent) {
            if (lstISA->count() >= ListBoxCapacity)
                return false;
            lstISA->addItem(parent);
            return true;
        });
}

// --- Relation slots and domains ----------------------------------------------------------------

void frmOntoEdit::lstRels_MouseUp()
{
    if (CurrentConcept.isEmpty() || CurrentConcept == Process().TopConcept)
        return;
    const bool selected = !CurrentText(lstRels).isEmpty();
    if (CurrentType != 3 && CurrentType != 4) {
        const bool any = RelationSlotCount(CurrentConcept) >= 1 && selected;
        Enable(mnuRel, "mnuRelDelete", any);
        Enable(mnuRel, "mnuRelGoTo", any);
        popUp(mnuRel);
        return;
    }
    Enable(mnuDomain, "mnuDomainDelete", DomainCount(CurrentConcept) >= 1 && selected);
    popUp(mnuDomain);
}

// The one instance of "Add Relation" stays loaded, hidden, between its uses.
void frmOntoEdit::mnuRelAdd_Click()
{
    frmEditRel &dialog = frmEditRel::DefaultInstance();
    dialog.setWindowTitle(QStringLiteral("Add Relation"));
    dialog.txtConcept1->setText(CurrentConcept);
    dialog.txtConcept1->setReadOnly(true);
    Start(dialog);
    UI().ShowModal(&dialog);
}

void frmOntoEdit::mnuRelDelete_Click()
{
    if (DeleteRelationSlot(CurrentConcept, CurrentText(lstRels)))
        LoadSlots();
}

// A domain is the whole item; a slot's related concept stands right of its first colon.
void frmOntoEdit::lstRels_DblClick()
{
    const QString item = CurrentText(lstRels);
    if (item.isEmpty())
        return;
    GoToConcept(lblRels->text() == QLatin1String("LOCAL DOMAINS") ? item
                                                                  : SplitSlotItem(item).Right);
}

void frmOntoEdit::mnuRelGoToRel_Click()
{
    const QString item = CurrentText(lstRels);
    if (!item.isEmpty())
        GoToConcept(SplitSlotItem(item).Left);
}

void frmOntoEdit::mnuRelGoToConcept_Click()
{
    lstRels_DblClick();
}

void frmOntoEdit::mnuDomainAdd_Click()
{
    frmEditRel &dialog = LoadSlotDialog(QStringLiteral("Add Domain"), CurrentConcept);
    FixRelation(dialog, QStringLiteral("DOMAIN"));
    dialog.cmdAdd->setText(QStringLiteral("&Add"));
    dialog.cmdClose->setText(QStringLiteral("&Cancel"));
    dialog.chkDefault->hide();
    Start(dialog);
    frmEditRel *shown = ShowSlotDialog(dialog);
    if (!shown)
        return;
    if (const auto domains = AddDomain(CurrentConcept, shown->RelatedText(),
                                       shown->chkDefault->isChecked(), lstRels->count() > 0))
        SetItems(lstRels, *domains);
    Forms().Unload(shown);
}

void frmOntoEdit::mnuDomainDelete_Click()
{
    if (DeleteDomain(CurrentConcept, CurrentText(lstRels)))
        LoadSlots();
}

// --- Attribute slots and ranges ----------------------------------------------------------------

void frmOntoEdit::lstAttrs_MouseUp()
{
    if (CurrentConcept.isEmpty() || CurrentConcept == Process().TopConcept)
        return;
    const bool selected = !CurrentText(lstAttrs).isEmpty();
    if (CurrentType != 3 && CurrentType != 4) {
        Enable(mnuAttr, "mnuAttrDelete", AttributeSlotCount(CurrentConcept) >= 1 && selected);
        popUp(mnuAttr);
        return;
    }
    Enable(mnuRange, "mnuRangeDelete", RangeCount(CurrentConcept, CurrentType) >= 1 && selected);
    popUp(mnuRange);
}

// A relation's range is a concept of the list; an attribute's is a typed value.
void frmOntoEdit::mnuRangeAdd_Click()
{
    frmEditRel &dialog = LoadSlotDialog(QStringLiteral("Add Range"), CurrentConcept);
    FixRelation(dialog, QStringLiteral("RANGE"));
    dialog.cmdAdd->setText(QStringLiteral("&Add"));
    dialog.cmdClose->setText(QStringLiteral("&Cancel"));
    dialog.chkDefault->hide();
    dialog.chkNothing->hide();
    const int type = CurrentType;
    if (type != 4) {
        dialog.dblConcepts->hide();
        dialog.txtValue->show();
    }
    Start(dialog);
    frmEditRel *shown = ShowSlotDialog(dialog);
    if (!shown)
        return;
    const QString range = type == 4 ? shown->RelatedText() : shown->txtValue->toPlainText();
    AddRange(CurrentConcept, type, range, shown->chkDefault->isChecked(), lstAttrs->count() > 0);
    LoadSlots();
    Forms().Unload(shown);
}

void frmOntoEdit::mnuRangeDelete_Click()
{
    if (DeleteRange(CurrentConcept, CurrentType, CurrentText(lstAttrs)))
        LoadSlots();
}

// Modeless, unlike the other slot dialogs: the editor stays in use while it is open.
void frmOntoEdit::mnuAttrAdd_Click()
{
    frmEditRel &dialog = LoadSlotDialog(QStringLiteral("Add Attribute"), CurrentConcept);
    dialog.dblConcepts->hide();
    dialog.lblRels->setText(QStringLiteral("ATTRIBUTE"));
    dialog.lblValue->setText(QStringLiteral("VALUE"));
    dialog.txtValue->show();
    dialog.chkDefault->hide();
    dialog.chkNothing->hide();
    Start(dialog);
    ShowOverMain(dialog);
}

void frmOntoEdit::mnuAttrDelete_Click()
{
    if (DeleteAttributeSlot(CurrentConcept, CurrentText(lstAttrs)))
        LoadSlots();
}

// --- Signals of the dialog ---------------------------------------------------------------------

// The lists are read for the concept on screen, whichever concept the dialog wrote to.
void frmOntoEdit::lblNewRel_Change()
{
    if (!lblNewRel->caption().isEmpty())
        SetItems(lstRels, ReadRelationSlots(CurrentConcept));
}

void frmOntoEdit::lblNewAttr_Change()
{
    if (!lblNewAttr->caption().isEmpty())
        SetItems(lstAttrs, ReadAttributeSlots(CurrentConcept));
}

} // namespace lx::ui
