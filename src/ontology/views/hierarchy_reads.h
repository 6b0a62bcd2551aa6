#pragma once

#include "ontology/edit/concept_view.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// What the hierarchy tree reads from the open ontology: one level of children at a time, the
// local slots of a clicked concept, the concepts a find text names.
namespace lx {

// The text of the one child that a node holds while its own children aren't read; it gives the
// node its expand sign.
QString DummyNodeText();

struct TreeChild {
    QString Text;
    bool HasChildren = false;
    friend bool operator==(const TreeChild &, const TreeChild &) = default;
};
// The children of `node` in identifier order, each with whether it has children of its own:
// one level, whatever lies below, so that a cycle in the links costs nothing more.
QList<TreeChild> ReadTreeLevel(const QString &node);

// The Type of a concept, none when it isn't in the file.
std::optional<int> ReadTreeConceptType(const QString &identifier);
// The local slots of a concept, or its domains and ranges for the attribute and relation
// types (3 or 13, 4 or 14).
SlotLists ReadTreeSlots(const QString &identifier, int type);

// A find text as a pattern: a prefix unless it ends in a wildcard run already.
QString FindPattern(const QString &text);
// The identifiers the pattern matches, as the store's Like compares (without regard to case).
QStringList ConceptsLike(const QString &pattern);

} // namespace lx
