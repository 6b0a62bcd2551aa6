#pragma once

#include "ontology/store/onto_editor.h"
#include "ontology/store/schema.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// A concept's life: its birth in the "Add Concept" dialog (with the inverse of a relation), the
// change of its identifier or definition, and its deletion with the orphans that it leaves.
// The store's relations carry a rename or a delete into every other table of the ontology.
namespace lx {

// The parents offered for a concept of `type`: the concepts of that type and the top concept,
// in list order.
QString ParentListQuery(int type);
QStringList ReadParentList(int type);

// The boxes of the "Add Concept" dialog: the add cleans them in place, and the dialog shows
// them as the add left them.
struct NewConceptTexts {
    QString Concept;
    QString Def;
    QString Parent; // the text of the parent list: its selected row
    int Type = ctObject;
};

// What the inverse dialog holds when it closes, confirmed or not; all empty when cancelled.
struct InverseTexts {
    QString Concept;
    QString Parent;
    QString Def;
};
using InverseDialog = std::function<InverseTexts()>;

// The add of the "Add Concept" dialog up to its writes: cleans the texts, checks them in order
// (the first refusal is told and ends the add with false), then writes the concept's CONCEPTS
// and ISA rows, or, for a relation, asks `askInverse` and writes the pair with its INVERSES.
// Store errors go to the caller with the rows written so far left in place.
bool AddConcept(NewConceptTexts &texts, const InverseDialog &askInverse);

// The writes of a relation and its inverse, after the inverse dialog's checks (told, false).
bool AddInverseRelation(const QString &relation, const QString &parent, const QString &definition,
                        const InverseTexts &inverse);

// The new identifier of a concept, on its CONCEPTS row; the store's cascades do the rest.
// False, after saying so, when `newId` is in use; nothing is written then.
bool RenameConcept(const QString &oldId, const QString &newId);

// The concept's definition, written to its row.
void SaveDefinition(const QString &identifier, const QString &definition);

// A deleted concept, with the inverse that went with a relation (empty if none).
struct DeletedConcept {
    QString Identifier;
    QString Inverse;
};

// The checks and questions of "&Delete" on the editor's current concept, then its CONCEPTS row
// (and its inverse's) deleted: nothing if the user stops or the concept can't go.
std::optional<DeletedConcept> DeleteConcept(OntologyEditor &editor);

// Deletes every concept left without a parent (the top concept aside), pass after pass until
// none is left; `deleted` hears of each one as it goes.
void DeleteOrphanConcepts(const std::function<void(const QString &)> &deleted);

} // namespace lx
