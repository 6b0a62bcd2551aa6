#include "ui/frm_transfer.h"

#include "core/command.h"
#include "core/interaction.h"
#include "ontology/store/lookups.h"
#include "ui/named.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QPushButton *MakeButton(QWidget *parent, const QString &name, const QString &caption)
{
    return Named(new QPushButton(caption, parent), name);
}

} // namespace

frmTransfer::frmTransfer()
    : cbxFrom(Named(new QComboBox(this), QStringLiteral("cbxFrom"))),
      cbxTo(Named(new QComboBox(this), QStringLiteral("cbxTo"))),
      ListView1(Named(new QTreeWidget(this), QStringLiteral("ListView1"))),
      cmdAll(MakeButton(this, QStringLiteral("cmdAll"), QStringLiteral("Select &All"))),
      cmdClear(MakeButton(this, QStringLiteral("cmdClear"), QStringLiteral("C&lear Selection"))),
      cmdTranfer(MakeButton(this, QStringLiteral("cmdTranfer"), QStringLiteral("&Transfer"))),
      cmdCancel(MakeButton(this, QStringLiteral("cmdCancel"), QStringLiteral("&Close")))
{
    setObjectName(QStringLiteral("frmTransfer"));
    setWindowTitle(QStringLiteral("Subset Transfer"));
    ListView1->setRootIsDecorated(false);
    ListView1->setColumnCount(1);

    auto *subsets = new QGridLayout;
    subsets->addWidget(new QLabel(QStringLiteral("From:"), this), 0, 0);
    subsets->addWidget(cbxFrom, 0, 1);
    subsets->addWidget(new QLabel(QStringLiteral("To:"), this), 1, 0);
    subsets->addWidget(cbxTo, 1, 1);
    subsets->setColumnStretch(1, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdAll);
    buttons->addWidget(cmdClear);
    buttons->addStretch();
    buttons->addWidget(cmdTranfer);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(subsets);
    layout->addWidget(ListView1, 1);
    layout->addLayout(buttons);
    resize(440, 460);

    connect(cbxFrom, &QComboBox::currentTextChanged, this,
            Command(this, &frmTransfer::cbxFrom_Click));
    connect(cbxTo, &QComboBox::currentTextChanged, this, Command(this, &frmTransfer::cbxTo_Click));
    connect(cmdAll, &QPushButton::clicked, this, &frmTransfer::cmdAll_Click);
    connect(cmdClear, &QPushButton::clicked, this, &frmTransfer::cmdClear_Click);
    connect(cmdTranfer, &QPushButton::clicked, this, Command(this, &frmTransfer::cmdTranfer_Click));
    connect(cmdCancel, &QPushButton::clicked, this, &frmTransfer::cmdCancel_Click);

    // Both lists start on the first subset.
    const QStringList names = ReadSubsetNames();
    cbxFrom->addItems(names);
    cbxTo->addItems(names);
}

void frmTransfer::Form_Unload()
{
    m_source.Close();
}

void frmTransfer::cbxFrom_Click()
{
    const QString name = cbxFrom->currentText();
    ListView1->clear();
    if (name.isEmpty())
        return;
    const QStringList concepts = m_source.OpenSource(SubsetIdOf(name));
    for (const QString &identifier : concepts)
        (new QTreeWidgetItem(ListView1, {identifier}))->setCheckState(0, Qt::Unchecked);
    ListView1->setHeaderLabels({TransferHeader(concepts.size(), name)});
}

void frmTransfer::cbxTo_Click()
{
    if (!cbxTo->currentText().isEmpty())
        m_targetId = SubsetIdOf(cbxTo->currentText());
}

void frmTransfer::tickAll(bool ticked)
{
    for (int i = 0; i < ListView1->topLevelItemCount(); ++i)
        ListView1->topLevelItem(i)->setCheckState(0, ticked ? Qt::Checked : Qt::Unchecked);
}

void frmTransfer::cmdAll_Click()
{
    tickAll(true);
}

void frmTransfer::cmdClear_Click()
{
    tickAll(false);
}

void frmTransfer::cmdCancel_Click()
{
    hide();
}

QStringList frmTransfer::ticked() const
{
    QStringList concepts;
    for (int i = 0; i < ListView1->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = ListView1->topLevelItem(i);
        if (item->checkState(0) == Qt::Checked)
            concepts.append(item->text(0));
    }
    return concepts;
}

void frmTransfer::cmdTranfer_Click()
{
    const QString source = cbxFrom->currentText();
    const QString target = cbxTo->currentText();
    if (source == target) {
        UI().MsgBox(QStringLiteral("Source subset can't be the same as target subset."),
                    msg::Critical, QStringLiteral("Error"));
        return;
    }
    if (UI().MsgBox(QStringLiteral("Are you sure you want to transfer all selected concepts\n"
                                   "from ") +
                        source + QStringLiteral("\nto ") + target,
                    msg::YesNo, QStringLiteral("Confirm transfer")) != msg::Yes)
        return;
    if (!m_source.HasRows()) {
        UI().MsgBox(QStringLiteral("Nothing to transfer!"), msg::Exclamation);
        return;
    }
    const int moved = m_source.Transfer(ticked(), m_targetId);
    // Emptied first, so that the same name refills the list.
    cbxFrom->setCurrentIndex(-1);
    cbxFrom->setCurrentIndex(cbxFrom->findText(source));
    UI().MsgBox(QString::number(moved) + QStringLiteral(" Concepts transferred."),
                msg::Information);
}

} // namespace lx::ui
