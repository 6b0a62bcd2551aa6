#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

// Names given to, or taken from, many concepts in one language at once, and the ways the batch
// dialog picks its concepts out of its list. The picks answer with indexes into the list as it
// stands on screen, so that the dialog only has to select them.
namespace lx {

// The identifiers of the ontology, by identifier or in the table's own order.
QStringList ReadBatchConcepts(bool alphabetical);

// Every item that the pattern matches whole, case counting ("*", "?", "#", "[...]"). A pattern
// of fewer than 3 characters is refused with a message, and so is a pattern that matches
// nothing; both give no indexes.
QList<int> PickByExpression(const QStringList &items, const QString &pattern);

// The items that are concepts of the subset, found by walking the list and the subset's
// concepts (in identifier order) side by side: with the list in any other order, the walk
// stops matching at the first concept of the subset that doesn't come up next.
QList<int> PickBySubset(const QStringList &items, int subsetId);

// The descendants of the one selected item; `selected` holds the indexes selected now. Anything
// but exactly one, or a leaf, is refused with a message and gives no indexes.
QList<int> PickSubhierarchy(const QStringList &items, const QList<int> &selected);

// Called after each concept of a run with the number done so far.
using BatchStep = std::function<void(int done)>;

// A new name in `langId` for each concept still in the ontology: the identifier itself when
// `asIs`, else the identifier made natural. Names already there stay, so a second run gives a
// second name. Each name is written as it is made. Returns the number of names added.
int AddBatchNames(const QStringList &concepts, const QString &langId, bool asIs,
                  const BatchStep &step = {});

// Every name in `langId` of each concept, typed by hand or not. Returns the number removed.
int RemoveBatchNames(const QStringList &concepts, const QString &langId,
                     const BatchStep &step = {});

} // namespace lx
