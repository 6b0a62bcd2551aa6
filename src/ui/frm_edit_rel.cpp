#include "ui/frm_edit_rel.h"

#include "core/command.h"
#include "ontology/edit/slots.h"
#include "ontology/store/lookups.h"
#include "ui/frm_onto_edit.h"
#include "ui/list_views.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStringListModel>
#include <QVBoxLayout>

#include <algorithm>

namespace lx::ui {

namespace {

constexpr int MinimumWidth = 420;

void Select(QListView *list, const QString &text)
{
    const auto *model = qobject_cast<const QStringListModel *>(list->model());
    const qsizetype row = model ? model->stringList().indexOf(text) : -1;
    if (row < 0)
        return;
    const QModelIndex index = list->model()->index(int(row), 0);
    list->setCurrentIndex(index);
    list->scrollTo(index);
}

// The selection survives a refill where its text is still listed.
void Refill(QListView *list, const QStringList &texts)
{
    const QString kept = CurrentText(list);
    SetTexts(list, texts);
    if (!kept.isEmpty())
        Select(list, kept);
}

// Cleared first, so that the same concept twice still fires.
void Signal(SignalLabel *label, const QString &text)
{
    label->setCaption(QString());
    label->setCaption(text);
}

} // namespace

frmEditRel::frmEditRel()
    : lblConcept1(
          Named(new QLabel(QStringLiteral("CONCEPT"), this), QStringLiteral("lblConcept1"))),
      lblRels(Named(new QLabel(QStringLiteral("RELATIONSHIP"), this), QStringLiteral("lblRels"))),
      lblConcepts(Named(new QLabel(QStringLiteral("RELATED CONCEPT"), this),
                        QStringLiteral("lblConcepts"))),
      lblValue(Named(new QLabel(QStringLiteral("VALUE"), this), QStringLiteral("lblValue"))),
      txtConcept1(Named(new QLineEdit(this), QStringLiteral("txtConcept1"))),
      dblRels(MakeTextList(this, QStringLiteral("dblRels"))),
      txtISA(Named(new QLineEdit(this), QStringLiteral("txtISA"))),
      dblConcepts(MakeTextList(this, QStringLiteral("dblConcepts"))),
      txtValue(Named(new QPlainTextEdit(this), QStringLiteral("txtValue"))),
      chkDefault(
          Named(new QCheckBox(QStringLiteral("Default"), this), QStringLiteral("chkDefault"))),
      chkNothing(Named(new QCheckBox(QStringLiteral("Don't inherit this!"), this),
                       QStringLiteral("chkNothing"))),
      cmdAdd(Named(new QPushButton(QStringLiteral("&Add"), this), QStringLiteral("cmdAdd"))),
      cmdClose(Named(new QPushButton(QStringLiteral("&Close"), this), QStringLiteral("cmdClose"))),
      lblStart(Named(new SignalLabel(this), QStringLiteral("lblStart"))),
      lblRefresh(Named(new SignalLabel(this), QStringLiteral("lblRefresh")))
{
    setObjectName(QStringLiteral("frmEditRel"));
    txtISA->setReadOnly(true);
    txtValue->setTabChangesFocus(true);
    for (QLabel *label : {lblConcept1, lblRels, lblConcepts, lblValue})
        label->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    lblConcept1->setBuddy(txtConcept1);
    lblRels->setBuddy(dblRels);
    lblConcepts->setBuddy(dblConcepts);
    lblValue->setBuddy(txtValue);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblConcept1);
    layout->addWidget(txtConcept1);
    layout->addWidget(lblRels);
    layout->addWidget(dblRels, 1);
    layout->addWidget(txtISA);
    layout->addWidget(lblConcepts);
    layout->addWidget(dblConcepts, 2);
    layout->addWidget(lblValue);
    layout->addWidget(txtValue, 1);
    auto *checks = new QHBoxLayout;
    checks->addWidget(chkDefault);
    checks->addWidget(chkNothing);
    checks->addStretch();
    layout->addLayout(checks);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdClose);
    layout->addLayout(buttons);
    cmdAdd->setDefault(true);
    // A label goes with the box under it: hiding the box hides it.
    dblConcepts->installEventFilter(this);
    txtValue->installEventFilter(this);
    txtISA->hide();
    txtValue->hide();
    lblValue->hide();
    TabOrder({txtConcept1, dblRels, txtISA, dblConcepts, txtValue, chkDefault, chkNothing, cmdAdd,
              cmdClose});
    resize(420, 560);

    connect(cmdAdd, &QPushButton::clicked, this, Command(this, &frmEditRel::cmdAdd_Click));
    connect(cmdClose, &QPushButton::clicked, this, Command(this, &frmEditRel::cmdClose_Click));
    connect(chkNothing, &QCheckBox::clicked, this, Command(this, &frmEditRel::chkNothing_Click));
    connect(lblStart, &SignalLabel::captionChanged, this,
            Command(this, &frmEditRel::lblStart_Change));
    connect(lblRefresh, &SignalLabel::captionChanged, this,
            Command(this, &frmEditRel::lblRefresh_Change));
    // A double click on a concept picks it, as the button would.
    connect(dblConcepts, &QListView::doubleClicked, cmdAdd, &QPushButton::click);
}

frmEditRel &frmEditRel::DefaultInstance()
{
    for (QWidget *form : Forms().list()) {
        if (auto *dialog = qobject_cast<frmEditRel *>(form); dialog && dialog->m_default)
            return *dialog;
    }
    auto &dialog = Forms().Load<frmEditRel>();
    dialog.m_default = true;
    return dialog;
}

void frmEditRel::lblStart_Change()
{
    if (lblStart->caption().isEmpty())
        return;
    const int type = ConceptType(txtConcept1->text());
    Mode = EditRelMode(windowTitle());
    const QString concepts = EditRelConceptQuery(Mode, type);
    Refill(dblConcepts, concepts.isEmpty() ? QStringList() : ReadConceptColumn(concepts));
    const QString relations = EditRelRelationQuery(Mode);
    Refill(dblRels, relations.isEmpty() ? QStringList() : ReadConceptColumn(relations));
}

void frmEditRel::lblRefresh_Change()
{
    if (lblRefresh->caption().isEmpty())
        return;
    lblStart->setCaption(QString());
    lblStart->setCaption(QStringLiteral("refresh"));
}

QString frmEditRel::RelationText() const
{
    return CurrentText(dblRels);
}

QString frmEditRel::RelatedText() const
{
    return CurrentText(dblConcepts);
}

void frmEditRel::SelectRelation(const QString &text)
{
    Select(dblRels, text);
}

void frmEditRel::SelectRelated(const QString &text)
{
    Select(dblConcepts, text);
}

void frmEditRel::cmdAdd_Click()
{
    SlotDialogTexts texts;
    texts.Concept = txtConcept1->text();
    texts.Relation = RelationText();
    texts.Related = RelatedText();
    texts.Value = txtValue->toPlainText();
    texts.Isa = txtISA->text();
    texts.RelatedShown = !dblConcepts->isHidden();
    texts.ValueShown = !txtValue->isHidden();
    texts.Default = chkDefault->isChecked();
    if (!CheckSlotDialog(texts))
        return;
    frmOntoEdit *editor = Forms().Find<frmOntoEdit>();
    if (Mode == QLatin1String("AddRel")) {
        const SlotAdd outcome = AddRelationSlot(texts);
        if (outcome == SlotAdd::Refused)
            return;
        if (outcome == SlotAdd::Added && editor)
            Signal(editor->lblNewRel, txtConcept1->text());
        txtConcept1->clear();
    } else if (Mode == QLatin1String("AddAttr")) {
        if (AddAttributeSlot(texts) == SlotAdd::Refused)
            return;
        if (editor)
            Signal(editor->lblNewAttr, txtConcept1->text());
        txtConcept1->clear();
    }
    // The other modes leave every write to the command that opened the dialog.
    hide();
}

void frmEditRel::cmdClose_Click()
{
    Forms().Unload(this);
}

void frmEditRel::reject()
{
    RunCommand([this] { cmdClose_Click(); });
}

// A form that is gone reads as new: its concept box is empty.
void frmEditRel::Form_Unload()
{
    SaveSize(*this, windowTitle());
    txtConcept1->clear();
}

void frmEditRel::chkNothing_Click()
{
    const bool nothing = chkNothing->isChecked();
    txtValue->setPlainText(nothing ? QStringLiteral("*NOTHING*") : QString());
    txtValue->setReadOnly(nothing);
    if (nothing)
        chkDefault->setChecked(false);
    chkDefault->setEnabled(!nothing);
}

void frmEditRel::FitToUse()
{
    adjustSize();
    resize(std::max(width(), MinimumWidth), height()); // room for long identifiers
    RestoreSize(*this, windowTitle());
}

void frmEditRel::hideEvent(QHideEvent *event)
{
    SaveSize(*this, windowTitle());
    QDialog::hideEvent(event);
}

bool frmEditRel::eventFilter(QObject *watched, QEvent *event)
{
    const bool shown = event->type() == QEvent::ShowToParent;
    if (shown || event->type() == QEvent::HideToParent) {
        if (watched == txtValue)
            lblValue->setVisible(shown);
        else if (watched == dblConcepts)
            lblConcepts->setVisible(shown);
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace lx::ui
