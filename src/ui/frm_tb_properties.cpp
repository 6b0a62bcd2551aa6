#include "ui/frm_tb_properties.h"

#include "ui/named.h"

#include <QFormLayout>
#include <QLayout>
#include <QLineEdit>

namespace lx::ui {

frmTBProperties::frmTBProperties() : txtWOntology(new QLineEdit(this))
{
    setObjectName(QStringLiteral("frmTBProperties"));
    setWindowTitle(QStringLiteral("TermBase Properties"));
    txtWOntology->setObjectName(QStringLiteral("txtWOntology"));
    txtWOntology->setReadOnly(true);
    // The boxes of frmProperties stand in the form layout that opens the dialog's layout.
    if (auto *form = qobject_cast<QFormLayout *>(layout()->itemAt(0)->layout()))
        form->insertRow(0, QStringLiteral("Working Ontology:"), txtWOntology);
    TabOrder({txtWOntology, txtName});
}

} // namespace lx::ui
