#include "ui/frm_properties.h"

#include "core/interaction.h"
#include "ontology/store/lifecycle.h"
#include "ui/named.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QLineEdit *MakeBox(QWidget *parent, const QString &name)
{
    auto *box = new QLineEdit(parent);
    box->setObjectName(name);
    return box;
}

} // namespace

frmProperties::frmProperties()
    : txtName(MakeBox(this, QStringLiteral("txtName"))),
      txtCreated(MakeBox(this, QStringLiteral("txtCreated"))),
      txtModified(MakeBox(this, QStringLiteral("txtModified"))),
      txtOwner(MakeBox(this, QStringLiteral("txtOwner"))),
      txtAuthor(MakeBox(this, QStringLiteral("txtAuthor"))),
      txtContact(MakeBox(this, QStringLiteral("txtContact"))),
      txtDescription(new QPlainTextEdit(this)), cmdOK(new QPushButton(QStringLiteral("OK"), this))
{
    setObjectName(QStringLiteral("frmProperties"));
    txtDescription->setObjectName(QStringLiteral("txtDescription"));
    txtDescription->setTabChangesFocus(true);
    txtDescription->setFixedHeight(txtName->sizeHint().height() * 4);
    txtAuthor->setToolTip(QStringLiteral("Contributors, acknowledgements"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("&Name:"), txtName);
    form->addRow(QStringLiteral("Created:"), txtCreated);
    form->addRow(QStringLiteral("Modified:"), txtModified);
    form->addRow(QStringLiteral("O&wner:"), txtOwner);
    form->addRow(QStringLiteral("&Author:"), txtAuthor);
    form->addRow(QStringLiteral("&Description:"), txtDescription);
    form->addRow(QStringLiteral("&Contact:"), txtContact);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);
    setMinimumWidth(440);
    txtName->setFocus(); // typing starts in the name
    TabOrder(
        {txtName, txtCreated, txtModified, txtOwner, txtAuthor, txtDescription, txtContact, cmdOK});

    connect(cmdOK, &QPushButton::clicked, this, &frmProperties::cmdOK_Click);
}

void frmProperties::cmdOK_Click()
{
    if (const std::optional<QString> warning = CheckPropertiesName(txtName->text())) {
        UI().MsgBox(*warning, msg::Exclamation);
        return;
    }
    hide();
}

// Escape and the window's close button: the dialog has no cancel, so they are its OK.
void frmProperties::reject()
{
    cmdOK_Click();
}

void frmProperties::SetTexts(const PropertiesTexts &texts)
{
    txtName->setText(texts.Name);
    txtCreated->setText(texts.Created);
    txtModified->setText(texts.Modified);
    txtOwner->setText(texts.Owner);
    txtAuthor->setText(texts.Author);
    txtDescription->setPlainText(texts.Description);
    txtContact->setText(texts.Contact);
}

PropertiesTexts frmProperties::Texts() const
{
    return {txtName->text(),   txtCreated->text(), txtModified->text(),
            txtOwner->text(),  txtAuthor->text(),  txtDescription->toPlainText(),
            txtContact->text()};
}

} // namespace lx::ui
