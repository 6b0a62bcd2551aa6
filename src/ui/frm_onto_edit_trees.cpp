// The hierarchy trees the ontology editor opens: the full tree, the trees of the four kinds of
// concept, and the tree below the current concept.
#include "core/process.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_part_tree.h"

namespace lx::ui {

namespace {

void ShowTree(const QString &topNode, const QString &what)
{
    ShowPartTree(topNode, Process().OntoMeta.Name + QStringLiteral(" - ") + what);
}

} // namespace

void frmOntoEdit::mnuTreeFull_Click()
{
    ShowTree(Process().TopConcept, QStringLiteral("Full tree"));
}

void frmOntoEdit::mnuTreeObject_Click()
{
    ShowTree(QStringLiteral("OBJECT"), QStringLiteral("OBJECT partial tree"));
}

void frmOntoEdit::mnuTreeEvent_Click()
{
    ShowTree(QStringLiteral("EVENT"), QStringLiteral("EVENT partial tree"));
}

void frmOntoEdit::mnuTreeRel_Click()
{
    ShowTree(QStringLiteral("RELATION"), QStringLiteral("RELATION partial tree"));
}

void frmOntoEdit::mnuTreeAttr_Click()
{
    ShowTree(QStringLiteral("ATTRIBUTE"), QStringLiteral("ATTRIBUTE partial tree"));
}

void frmOntoEdit::mnuTreeSelConcept_Click()
{
    ShowTree(CurrentConcept, CurrentConcept + QStringLiteral(" partial tree"));
}

// As the double click on the list: the full tree finds the current concept.
void frmOntoEdit::mnuConceptTree_Click()
{
    dblConcepts_DblClick();
}

} // namespace lx::ui
