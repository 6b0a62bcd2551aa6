#include "ui/frm_note.h"

#include "core/interaction.h"
#include "ontology/edit/notes.h"
#include "ui/forms.h"
#include "ui/named.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace lx::ui {

frmNote::frmNote()
    : txtNote(Named(new QPlainTextEdit(this), QStringLiteral("txtNote"))),
      cmdOK(Named(new QPushButton(QStringLiteral("OK"), this), QStringLiteral("cmdOK"))),
      cmdDelete(
          Named(new QPushButton(QStringLiteral("&Delete"), this), QStringLiteral("cmdDelete"))),
      cmdCancel(
          Named(new QPushButton(QStringLiteral("&Cancel"), this), QStringLiteral("cmdCancel")))
{
    setObjectName(QStringLiteral("frmNote"));
    txtNote->setToolTip(QStringLiteral("Type in your note here"));
    txtNote->setTabChangesFocus(true);
    cmdOK->setDefault(true);
    // Enter makes a new line in the note; Ctrl+Enter presses OK.
    for (const QKeySequence &keys :
         {QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(Qt::CTRL | Qt::Key_Enter)})
        connect(new QShortcut(keys, this), &QShortcut::activated, cmdOK, &QPushButton::click);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton *button : {cmdOK, cmdDelete, cmdCancel})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(txtNote);
    layout->addLayout(buttons);
    resize(420, 260);
    connect(cmdOK, &QPushButton::clicked, this, &frmNote::cmdOK_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmNote::cmdDelete_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmNote::cmdCancel_Click);
}

void frmNote::cmdOK_Click()
{
    hide();
}

void frmNote::cmdDelete_Click()
{
    txtNote->clear();
    hide();
}

void frmNote::cmdCancel_Click()
{
    txtNote->setPlainText(NoteCancelText);
    hide();
}

void frmNote::reject()
{
    cmdCancel_Click();
}

QString AskNote(const QString &caption, const QString &text)
{
    auto &dialog = Forms().Load<frmNote>();
    dialog.setWindowTitle(caption);
    dialog.txtNote->setPlainText(text);
    UI().ShowModal(&dialog);
    const QString answer = dialog.txtNote->toPlainText();
    Forms().Unload(&dialog);
    return answer;
}

} // namespace lx::ui
