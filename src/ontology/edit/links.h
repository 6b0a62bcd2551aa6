#pragma once

#include <QString>
#include <QStringList>

#include <functional>

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

// Who hears how far an assignment has come: the name of each stage as it starts, then the rows
// of that stage done out of its total, now and then and once at its end.
struct AssignProgress {
    std::function<void(const QString &stage)> status = [](const QString &) {};
    std::function<void(qint64 done, qint64 total)> count = [](qint64, qint64) {};
};

// Links the termbase file at `path` to the working ontology after making the two agree: its
// concepts missing from the ontology are deleted once the user agrees (refused: nothing is
// written and false is returned), the ontology's concepts missing from it are added and said
// so.
bool AssignTermbase(const QString &path, const AssignProgress &progress = {});

// The paths of the linked termbase files, in the table's order.
QStringList ReadTermBaseLinks();

// Drops the link named `path`; the termbase file itself is left as it is.
void ReleaseTermbase(const QString &path);

} // namespace lx
