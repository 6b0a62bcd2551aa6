#include "ui/frm_rel_list.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "ontology/edit/slots.h"
#include "ui/list_views.h"
#include "ui/named.h"

#include <QHBoxLayout>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

namespace lx::ui {

frmRelList::frmRelList()
    : dblRels(MakeTextList(this, QStringLiteral("dblRels"))),
      cmdOK(Named(new QPushButton(QStringLiteral("&OK"), this), QStringLiteral("cmdOK"))),
      lblInverse(Named(new SignalLabel(this), QStringLiteral("lblInverse")))
{
    setObjectName(QStringLiteral("frmRelList"));
    setWindowTitle(QStringLiteral("Choose Parent Relation"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(dblRels, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    layout->addLayout(buttons);
    cmdOK->setDefault(true);
    resize(320, 420);
    connect(cmdOK, &QPushButton::clicked, this, Command(this, &frmRelList::cmdOK_Click));
    connect(lblInverse, &SignalLabel::captionChanged, this,
            Command(this, &frmRelList::lblInverse_Change));
}

// The relations and "RELATION", the window's own caption left out.
void frmRelList::lblInverse_Change()
{
    if (lblInverse->caption().isEmpty())
        return;
    const QString &quote = Process().Quote;
    SetTexts(dblRels, ReadConceptColumn(QStringLiteral("SELECT Concept from CONCEPTS WHERE ") +
                                        QStringLiteral("(Type = 4 or Concept = 'RELATION') AND "
                                                       "Concept <> ") +
                                        quote + windowTitle() + quote +
                                        QStringLiteral(" ORDER BY Concept")));
}

QString frmRelList::RelationText() const
{
    return CurrentText(dblRels);
}

void frmRelList::cmdOK_Click()
{
    if (RelationText().isEmpty()) {
        UI().MsgBox(QStringLiteral("You must select a parent relation."), msg::Information,
                    QStringLiteral("Error"));
        return;
    }
    hide();
}

} // namespace lx::ui
