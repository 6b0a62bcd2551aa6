// The concept view of the ontology editor: every tab filled for CurrentConcept, and the
// inheritance tab with its switches, sorting and popup.
#include "core/command.h"
#include "core/interaction.h"
#include "core/text/collation.h"
#include "core/text/like.h"
#include "ui/forms.h"
#include "ui/frm_onto_edit.h"
#include "ui/images.h"
#include "ui/list_views.h"

#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QToolBar>
#include <QTreeView>
#include <QTreeWidget>

namespace lx::ui {

namespace {

QString CurrentText(const QListWidget *list)
{
    const QListWidgetItem *item = list->currentItem();
    return item ? item->text() : QString();
}

} // namespace

void frmOntoEdit::connectView()
{
    // A double click on a parent or relative goes there; on a subclass it searches for it.
    const auto goTo = [this](const QString &target) {
        if (!target.isEmpty())
            RunCommand([this, target] { GoToConcept(target); });
    };
    connect(lstISA, &QListWidget::itemDoubleClicked, this,
            [this, goTo] { goTo(CurrentText(lstISA)); });
    for (QListView *list : {lstAncestors, lstDescendants}) {
        connect(list, &QListView::doubleClicked, this,
                [goTo](const QModelIndex &index) { goTo(index.data().toString()); });
    }
    connect(lstSubclasses, &QListWidget::itemDoubleClicked, this,
            Command(this, &frmOntoEdit::lstSubclasses_DblClick));
    connect(lvwNames, &QWidget::customContextMenuRequested, this, [this] { lvwNames_MouseUp(); });
    lvwNames->header()->setSectionsClickable(true);
    connect(lvwNames->header(), &QHeaderView::sectionClicked, this,
            &frmOntoEdit::lvwNames_ColumnClick);
    connect(lvwInherit, &QWidget::customContextMenuRequested, this,
            [this] { lvwInherit_MouseUp(); });

    // Switches act whenever their value changes, also when the program sets it.
    const auto onCheck = [this](QAbstractButton *button, void (frmOntoEdit::*handler)()) {
        connect(button, &QAbstractButton::toggled, this, Command(this, handler));
    };
    const auto onSet = [this](QRadioButton *option, void (frmOntoEdit::*handler)()) {
        connect(option, &QRadioButton::toggled, this, [this, handler](bool set) {
            if (set)
                RunCommand([this, handler] { (this->*handler)(); });
        });
    };
    onCheck(chkActiveAnc, &frmOntoEdit::chkActiveAnc_Click);
    onCheck(chkActivDesc, &frmOntoEdit::chkActivDesc_Click);
    onCheck(chkInhRels, &frmOntoEdit::chkInhRels_Click);
    onCheck(chkInhAttrs, &frmOntoEdit::chkInhAttrs_Click);
    onSet(optOff, &frmOntoEdit::optOff_Click);
    onSet(optCumulative, &frmOntoEdit::optCumulative_Click);
    onSet(optExclusive, &frmOntoEdit::optExclusive_Click);

    lvwInherit->header()->setSectionsClickable(true);
    connect(lvwInherit->header(), &QHeaderView::sectionClicked, this,
            [this](int column) { lvwInherit_ColumnClick(column); });
    const std::pair<const char *, void (frmOntoEdit::*)()> inherit[] = {
        {"mnuInheritGoToAttr", &frmOntoEdit::mnuInheritGoToAttr_Click},
        {"mnuInheritGoToValue", &frmOntoEdit::mnuInheritGoToValue_Click},
        {"mnuInheritGoToFrom", &frmOntoEdit::mnuInheritGoToFrom_Click},
        {"mnuInheritCopy", &frmOntoEdit::mnuInheritCopy_Click},
    };
    for (const auto &[name, handler] : inherit) {
        if (auto *item = mnuInherit->findChild<QAction *>(QLatin1String(name)))
            connect(item, &QAction::triggered, this, Command(this, handler));
    }
}

// The slow lists and the inheritance run only on request, under the hourglass.
void frmOntoEdit::LoadConceptView()
{
    if (chkActivDesc->isChecked() || !optOff->isChecked()) {
        UI().SetMousePointer(pointer::Default);
        SetWindowPointer(pointer::Hourglass);
    }
    if (CurrentConcept.isEmpty())
        return;
    const ConceptViewData view = ReadConceptView(CurrentConcept, CurrentType);
    // A concept deleted behind the view leaves its definition and type on screen.
    if (view.Heading.found) {
        txtDef->setPlainText(view.Heading.definition);
        CurrentType = view.Heading.type;
        StatusPanel(1)->setText(view.Heading.subset);
        StatusPanel(2)->clear();
    }
    setNoteImage(view.HasNote);
    StatusPanel(2)->setText(TypeWord(CurrentType));
    lstISA->clear();
    lstISA->addItems(view.Parents);
    lstSubclasses->clear();
    lstSubclasses->addItems(view.Children);
    showNames(view.Names);
    showSlots(view.Slots);
    if (chkActivDesc->isChecked())
        LoadDescendants();
    if (chkActiveAnc->isChecked())
        LoadAncestors();
    if (!optOff->isChecked())
        RefreshInheritance();
    feedOpenSlotDialogs();
    SetWindowPointer(pointer::Arrow);
}

// An open relation or attribute dialog follows the concept on screen.
void frmOntoEdit::feedOpenSlotDialogs()
{
    for (QWidget *form : Forms().list()) {
        const QString caption = form->windowTitle();
        if (!text::Like(caption, u"* Relation") && !text::Like(caption, u"* Attribute"))
            continue;
        if (QObject *box = form->findChild<QObject *>(QStringLiteral("txtConcept1")))
            box->setProperty("text", CurrentConcept);
    }
}

bool frmOntoEdit::HasNote()
{
    return lx::HasNote(CurrentConcept);
}

void frmOntoEdit::RefreshNoteImage()
{
    setNoteImage(!CurrentConcept.isEmpty() && HasNote());
}

void frmOntoEdit::setNoteImage(bool hasNote)
{
    const QString key = hasNote ? QStringLiteral("note-in") : QStringLiteral("note-out");
    ToolButton(12)->setIcon(Image(key));
    ToolButton(12)->setProperty("imageKey", key);
}

void frmOntoEdit::LoadNames()
{
    showNames(ReadNames(CurrentConcept));
}

void frmOntoEdit::showNames(const QList<NameRow> &names)
{
    lvwNames->clear();
    for (const NameRow &name : names) {
        auto *item = new QTreeWidgetItem(lvwNames);
        item->setText(0, name.Language);
        item->setText(1, name.Name);
        item->setText(2, name.NameId.toString());
    }
}

void frmOntoEdit::LoadSlots()
{
    showSlots(ReadSlots(CurrentConcept, CurrentType));
}

void frmOntoEdit::showSlots(const SlotLists &slots)
{
    ShowSlotLists(slots, lblRels, lstRels, lblAttrs, lstAttrs);
}

void frmOntoEdit::LoadAncestors()
{
    SetTexts(lstAncestors,
             chkActiveAnc->isChecked() ? ReadAncestors(CurrentConcept) : QStringList());
}

void frmOntoEdit::LoadDescendants()
{
    SetTexts(lstDescendants,
             chkActivDesc->isChecked() ? ReadDescendants(CurrentConcept) : QStringList());
}

void frmOntoEdit::chkActiveAnc_Click()
{
    LoadAncestors();
}

void frmOntoEdit::chkActivDesc_Click()
{
    LoadDescendants();
}

// The walk can take long: the list is hidden and the status bar says so while it runs.
void frmOntoEdit::RefreshInheritance()
{
    TextTableModel *rows = TableModel(lvwInherit);
    rows->clear();
    if (optOff->isChecked())
        return;
    const QString include = InheritIncludeCode(chkInhRels->isChecked(), chkInhAttrs->isChecked());
    if (include.isEmpty())
        return;
    const QString kept = StatusPanel(1)->text();
    StatusPanel(1)->setText(QStringLiteral("Calculating..."));
    SetWindowPointer(pointer::Hourglass);
    lvwInherit->hide();
    const std::vector<InheritRow> found =
        RefreshInheritanceRows(CurrentConcept, optCumulative->isChecked(), include);
    std::vector<QStringList> cells;
    cells.reserve(found.size());
    for (const InheritRow &row : found)
        cells.push_back({row.Attr, row.Value, row.From});
    rows->setRows(std::move(cells));
    if (m_inheritSortKey >= 0)
        rows->sort(m_inheritSortKey);
    // As in a list of this kind, the first row is the selected one until the user picks.
    if (rows->rowCount() > 0)
        lvwInherit->setCurrentIndex(rows->index(0, 0));
    lvwInherit->show();
    StatusPanel(1)->setText(kept);
    SetWindowPointer(pointer::Arrow);
}

void frmOntoEdit::optOff_Click()
{
    TableModel(lvwInherit)->clear();
    for (QWidget *control :
         {static_cast<QWidget *>(fralvwInclude), static_cast<QWidget *>(chkInhRels),
          static_cast<QWidget *>(chkInhAttrs)})
        control->setEnabled(false);
}

void frmOntoEdit::optCumulative_Click()
{
    RefreshInheritance();
    for (QWidget *control :
         {static_cast<QWidget *>(fralvwInclude), static_cast<QWidget *>(chkInhRels),
          static_cast<QWidget *>(chkInhAttrs)})
        control->setEnabled(true);
}

void frmOntoEdit::optExclusive_Click()
{
    optCumulative_Click(); // the same steps; RefreshInheritance reads which option is set
}

void frmOntoEdit::chkInhRels_Click()
{
    RefreshInheritance();
}

void frmOntoEdit::chkInhAttrs_Click()
{
    RefreshInheritance();
}

// Once a head is clicked the list stays sorted on that column.
void frmOntoEdit::lvwInherit_ColumnClick(int column)
{
    m_inheritSortKey = column;
    TableModel(lvwInherit)->sort(column);
}

void frmOntoEdit::lvwInherit_MouseUp()
{
    if (TableModel(lvwInherit)->rowCount() > 0)
        popUp(mnuInherit);
}

void frmOntoEdit::goToInheritColumn(int column)
{
    const QModelIndex current = lvwInherit->currentIndex();
    if (current.isValid())
        txtCptSearch->setText(TableModel(lvwInherit)->text(current.row(), column));
}

void frmOntoEdit::mnuInheritGoToAttr_Click()
{
    goToInheritColumn(0);
}

void frmOntoEdit::mnuInheritGoToValue_Click()
{
    goToInheritColumn(1);
}

void frmOntoEdit::mnuInheritGoToFrom_Click()
{
    goToInheritColumn(2);
}

// The rows as the list shows them, in its present order.
void frmOntoEdit::mnuInheritCopy_Click()
{
    const TextTableModel *shown = TableModel(lvwInherit);
    const int count = shown->rowCount();
    if (count == 0)
        return;
    std::vector<InheritRow> rows;
    rows.reserve(size_t(count));
    for (int i = 0; i < count; ++i)
        rows.push_back({shown->text(i, 0), shown->text(i, 1), shown->text(i, 2)});
    UI().SetClipboardText(InheritClipboardText(
        CurrentConcept, optCumulative->isChecked(),
        InheritIncludeCode(chkInhRels->isChecked(), chkInhAttrs->isChecked()), rows));
}

} // namespace lx::ui
