#include "ui/frm_records.h"

#include "core/command.h"
#include "core/interaction.h"
#include "publish/person_page.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QLineEdit *Field(QWidget *form, QFormLayout *layout, const char *name, const QString &caption)
{
    auto *box = Named(new QLineEdit(form), QString::fromLatin1(name));
    layout->addRow(caption, box);
    return box;
}

// The form's fields above, OK and Cancel below on the right.
void LayOut(QDialog *form, QFormLayout *fields, QPushButton *ok, QPushButton *cancel)
{
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto *layout = new QVBoxLayout(form);
    layout->addLayout(fields);
    layout->addLayout(buttons);
    ok->setDefault(true);
    form->resize(420, form->sizeHint().height());
}

} // namespace

frmPerson::frmPerson()
{
    setObjectName(QStringLiteral("frmPerson"));
    setWindowTitle(QStringLiteral("Person"));
    auto *fields = new QFormLayout;
    txtAlias = Field(this, fields, "txtAlias", QStringLiteral("Alias:"));
    txtAlias->setToolTip(QStringLiteral("A *short*, unique name that identifies this person"));
    txtName = Field(this, fields, "txtName", QStringLiteral("Name:"));
    txtRole = Field(this, fields, "txtRole", QStringLiteral("Role:"));
    txtRole->setToolTip(QStringLiteral("Role or activity within project"));
    txtEmail = Field(this, fields, "txtEmail", QStringLiteral("E-mail:"));
    txtPhone = Field(this, fields, "txtPhone", QStringLiteral("Phone:"));
    txtRemarks = Field(this, fields, "txtRemarks", QStringLiteral("Remarks:"));
    cmdOK = Named(new QPushButton(QStringLiteral("OK"), this), QStringLiteral("cmdOK"));
    cmdCancel = Named(new QPushButton(QStringLiteral("Cancel"), this), QStringLiteral("cmdCancel"));
    LayOut(this, fields, cmdOK, cmdCancel);
    TabOrder({txtAlias, txtName, txtRole, txtEmail, txtPhone, txtRemarks, cmdOK, cmdCancel});
    RestoreSize(*this, windowTitle());
    connect(cmdOK, &QPushButton::clicked, this, Command(this, &frmPerson::cmdOK_Click));
    connect(cmdCancel, &QPushButton::clicked, this, Command(this, &frmPerson::cmdCancel_Click));
}

PersonFields frmPerson::Fields() const
{
    return {txtAlias->text(), txtName->text(),  txtRole->text(),
            txtEmail->text(), txtPhone->text(), txtRemarks->text()};
}

void frmPerson::cmdCancel_Click()
{
    txtAlias->clear();
    hide();
}

void frmPerson::reject()
{
    cmdCancel_Click();
}

void frmPerson::cmdOK_Click()
{
    if (txtAlias->text().isEmpty()) {
        UI().MsgBox(QStringLiteral("The 'Alias' field is obligatory."));
        return;
    }
    if (const std::optional<QString> problem = AliasProblem(txtAlias->text())) {
        UI().MsgBox(*problem, msg::Exclamation);
        return;
    }
    if (QFileInfo::exists(PersonPagePath(txtAlias->text())) &&
        UI().MsgBox(QStringLiteral("Person definition (") + txtAlias->text() +
                        QStringLiteral(") exists. Overwrite?"),
                    msg::YesNo | msg::Exclamation) != msg::Yes) {
        txtAlias->clear(); // a cancel; the dialog stays
        return;
    }
    WritePersonPage(Fields());
    hide();
}

void frmPerson::hideEvent(QHideEvent *event)
{
    SaveSize(*this, windowTitle());
    QDialog::hideEvent(event);
}

frmBiblio::frmBiblio()
{
    setObjectName(QStringLiteral("frmBiblio"));
    setWindowTitle(QStringLiteral("Bibliographical Record"));
    auto *fields = new QFormLayout;
    txtDescriptor = Field(this, fields, "txtDescriptor", QStringLiteral("Descriptor:"));
    txtAuthor = Field(this, fields, "txtAuthor", QStringLiteral("Author:"));
    txtDate = Field(this, fields, "txtDate", QStringLiteral("Date:"));
    txtArticle = Field(this, fields, "txtArticle", QStringLiteral("Article:"));
    txtBook = Field(this, fields, "txtBook", QStringLiteral("Book:"));
    txtPages = Field(this, fields, "txtPages", QStringLiteral("Pages:"));
    txtPHouse = Field(this, fields, "txtPHouse", QStringLiteral("Publishing house:"));
    txtPPlace = Field(this, fields, "txtPPlace", QStringLiteral("Place of publication:"));
    cmdOK = Named(new QPushButton(QStringLiteral("OK"), this), QStringLiteral("cmdOK"));
    cmdCancel = Named(new QPushButton(QStringLiteral("Cancel"), this), QStringLiteral("cmdCancel"));
    LayOut(this, fields, cmdOK, cmdCancel);
    TabOrder({txtDescriptor, txtAuthor, txtDate, txtArticle, txtBook, txtPages, txtPHouse,
              txtPPlace, cmdOK, cmdCancel});
    RestoreSize(*this, windowTitle());
    connect(cmdOK, &QPushButton::clicked, this, Command(this, &frmBiblio::cmdOK_Click));
    connect(cmdCancel, &QPushButton::clicked, this, Command(this, &frmBiblio::cmdCancel_Click));
}

BiblioFields frmBiblio::Fields() const
{
    return {txtDescriptor->text(), txtAuthor->text(), txtDate->text(),   txtArticle->text(),
            txtBook->text(),       txtPages->text(),  txtPHouse->text(), txtPPlace->text()};
}

void frmBiblio::cmdCancel_Click()
{
    txtDescriptor->clear();
    hide();
}

void frmBiblio::reject()
{
    cmdCancel_Click();
}

void frmBiblio::cmdOK_Click()
{
    if (txtDescriptor->text().isEmpty()) {
        UI().MsgBox(QStringLiteral(
            "You must provide a unique descriptor for each bibliographical record."));
        return;
    }
    if (txtDescriptor->text().contains(QLatin1Char('"'))) {
        UI().MsgBox(QStringLiteral("A descriptor can't hold a double quote (\")."),
                    msg::Exclamation);
        return;
    }
    hide();
}

void frmBiblio::hideEvent(QHideEvent *event)
{
    SaveSize(*this, windowTitle());
    QDialog::hideEvent(event);
}

} // namespace lx::ui
