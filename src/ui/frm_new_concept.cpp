#include "ui/frm_new_concept.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/text/like.h"
#include "ontology/store/lookups.h"
#include "ui/forms.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_rel_list.h"
#include "ui/key_filter.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStringListModel>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

constexpr int MaxIdentifierLength = 255; // the room of CONCEPTS.Concept

} // namespace

frmNewConcept::frmNewConcept()
    : txtConcept(Named(new QLineEdit(this), QStringLiteral("txtConcept"))),
      txtDef(Named(new QPlainTextEdit(this), QStringLiteral("txtDef"))),
      dblParents(Named(new QListView(this), QStringLiteral("dblParents"))),
      cmdAdd(Named(new QPushButton(QStringLiteral("&Add"), this), QStringLiteral("cmdAdd"))),
      cmdAddInv(Named(new QPushButton(QStringLiteral("&OK"), this), QStringLiteral("cmdAddInv"))),
      cmdClose(Named(new QPushButton(QStringLiteral("&Close"), this), QStringLiteral("cmdClose"))),
      lblRefresh(Named(new SignalLabel(this), QStringLiteral("lblRefresh"))),
      m_parents(new QStringListModel(this))
{
    setObjectName(QStringLiteral("frmNewConcept"));
    setWindowTitle(QStringLiteral("Add Concept"));
    txtConcept->setToolTip(QStringLiteral("Type in a concept to search"));
    txtConcept->setMaxLength(MaxIdentifierLength);
    txtConcept->installEventFilter(this);
    txtDef->setTabChangesFocus(true);
    dblParents->setModel(m_parents);
    dblParents->setEditTriggers(QAbstractItemView::NoEditTriggers);
    dblParents->setUniformItemSizes(true); // a parent list may hold a whole ontology

    auto *types = new QGroupBox(QStringLiteral("Concept Type"), this);
    auto *typeRow = new QHBoxLayout(types);
    const char *captions[] = {"Object", "Event", "Attribute", "Relation"};
    for (int i = 1; i <= 4; ++i) {
        optCType[size_t(i)] = Named(new QRadioButton(QString::fromLatin1(captions[i - 1]), types),
                                    QStringLiteral("optCType%1").arg(i));
        typeRow->addWidget(optCType[size_t(i)]);
        connect(optCType[size_t(i)], &QRadioButton::clicked, this,
                Command(this, &frmNewConcept::optCType_Click));
    }
    optCType[1]->setChecked(true);

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("CONCEPT"), txtConcept);
    form->addRow(QStringLiteral("DEFINITION"), txtDef);
    form->addRow(QStringLiteral("PARENT CONCEPT"), dblParents);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton *button : {cmdAdd, cmdAddInv, cmdClose})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form, 1);
    layout->addWidget(types);
    layout->addLayout(buttons);
    cmdAddInv->hide();
    cmdAdd->setDefault(true);
    resize(460, 520);

    connect(cmdAdd, &QPushButton::clicked, this, Command(this, &frmNewConcept::cmdAdd_Click));
    connect(cmdAddInv, &QPushButton::clicked, this, &frmNewConcept::cmdAddInv_Click);
    connect(cmdClose, &QPushButton::clicked, this, &frmNewConcept::cmdClose_Click);
    connect(lblRefresh, &SignalLabel::captionChanged, this,
            [this] { RunCommand([this] { lblRefresh_Change(); }); });

    FillParentList();
}

void frmNewConcept::FillParentList()
{
    const QString kept = ParentText();
    m_parents->setStringList(ReadParentList(SelectedType()));
    if (!kept.isEmpty())
        SelectParent(kept);
}

void frmNewConcept::optCType_Click()
{
    FillParentList();
}

void frmNewConcept::lblRefresh_Change()
{
    if (!lblRefresh->caption().isEmpty())
        optCType_Click();
}

int frmNewConcept::SelectedType() const
{
    for (int i = 1; i <= 4; ++i) {
        if (optCType[size_t(i)]->isChecked())
            return i;
    }
    return ctObject;
}

QString frmNewConcept::ParentText() const
{
    const QModelIndex current = dblParents->currentIndex();
    return current.isValid() && dblParents->selectionModel()->isSelected(current)
               ? current.data().toString()
               : QString();
}

void frmNewConcept::SelectParent(const QString &parent)
{
    const int row = int(m_parents->stringList().indexOf(parent));
    if (row < 0)
        return;
    const QModelIndex index = m_parents->index(row);
    dblParents->setCurrentIndex(index);
    dblParents->scrollTo(index);
}

void frmNewConcept::cmdAdd_Click()
{
    NewConceptTexts texts{txtConcept->text(), txtDef->toPlainText(), ParentText(), SelectedType()};
    const bool added = AddConcept(texts, [this] { return askInverse(); });
    // The boxes show the cleaning, whether the add went through or not.
    txtConcept->setText(texts.Concept);
    txtDef->setPlainText(texts.Def);
    if (!added)
        return;

    FillParentList();
    if (frmOntoEdit *editor = Forms().Find<frmOntoEdit>()) {
        // Cleared first, so that the same identifier twice still fires.
        editor->lblNewCpt->setCaption(QString());
        editor->lblNewCpt->setCaption(texts.Concept);
    }
    if (auto *relations = Forms().Find<frmRelList>())
        Forms().Unload(relations);
    // The slot dialogs list the concepts: they take the new one in.
    RefreshDialogs(
        [](const QString &caption) {
            return text::Like(caption, u"* Relation") || text::Like(caption, u"* link") ||
                   text::Like(caption, u"* Attribute");
        },
        QStringLiteral("Concept"));
    txtConcept->clear();
    txtDef->clear();
    txtConcept->setFocus();
}

InverseTexts frmNewConcept::askInverse()
{
    auto &inverse = Forms().Load<frmNewConcept>();
    inverse.SetUpAsInverse(*this);
    UI().ShowModal(&inverse);
    // Read whether confirmed or not; a cancelled dialog reads as empty.
    InverseTexts texts;
    if (!inverse.m_inverseCancelled)
        texts = {inverse.txtConcept->text(), inverse.ParentText(), inverse.txtDef->toPlainText()};
    Forms().Unload(&inverse);
    return texts;
}

void frmNewConcept::SetUpAsInverse(const QWidget &owner)
{
    setWindowTitle(QStringLiteral("Add Inverse Relation"));
    optCType[4]->setChecked(true);
    optCType_Click();
    for (int i = 1; i <= 3; ++i)
        optCType[size_t(i)]->setEnabled(false);
    cmdAdd->setEnabled(false);
    cmdAdd->hide();
    cmdAdd->setDefault(false);
    cmdAddInv->show();
    cmdAddInv->setEnabled(true);
    cmdAddInv->setDefault(true);
    cmdClose->setText(QStringLiteral("&Cancel"));
    PlaceOver(*this, &owner);
}

void frmNewConcept::cmdAddInv_Click()
{
    hide();
}

void frmNewConcept::cmdClose_Click()
{
    if (windowTitle() == QLatin1String("Add Inverse Relation")) {
        // The caller waits on this instance and unloads it once it has read it.
        m_inverseCancelled = true;
        hide();
        return;
    }
    Forms().Unload(this);
}

void frmNewConcept::reject()
{
    cmdClose_Click();
}

int frmNewConcept::txtConcept_KeyPress(int key)
{
    return Process().OntoMeta.Naming ? FilterNamingKey(key) : key;
}

// Typed characters go through the naming filter while the naming rule is on.
bool frmNewConcept::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtConcept &&
        FilterTypedKey(txtConcept, event, [this](int key) { return txtConcept_KeyPress(key); }))
        return true;
    return QDialog::eventFilter(watched, event);
}

} // namespace lx::ui
