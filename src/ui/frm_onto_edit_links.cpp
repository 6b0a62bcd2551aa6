#include "ontology/edit/links.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_tb_editor.h"

namespace lx::ui {

void frmOntoEdit::PropagateConceptToTermBases(const QString &newId, const QString &oldId,
                                              int operation)
{
    if (lx::PropagateConceptToTermBases(newId, oldId, operation))
        SendOntoComm(operation, CurrentConcept);
}

} // namespace lx::ui
