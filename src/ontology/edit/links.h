#pragma once

#include <QString>

// The termbase files linked to the ontology (table TermBases) and how concept edits reach them.
namespace lx {

// Operations carried into the linked termbases.
enum ConceptOperation {
    opAddConcept = 1,
    opDeleteConcept = 2,
    opRenameConcept = 3,
};

// Walks TermBases: a link to a file that isn't there is found again through the file dialog
// or, when the user won't or can't, dropped after saying so. A cancelled dialog ends the walk.
void CheckTermBaseLinks();

// Checks the links, then adds `newId` (operation 1), deletes `oldId` (2) or renames `oldId`
// to `newId` (any other) in the CONCEPTS of every linked file, straight on disk. Returns true
// when the ontology has at least one link: the caller then tells the open termbase windows.
bool PropagateConceptToTermBases(const QString &newId, const QString &oldId, int operation);

} // namespace lx
