#pragma once

#include "ontology/store/concept_list.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

// What the concept view of the ontology editor shows of one concept, read from the open
// ontology. The window puts it into its controls; nothing here knows widgets.
namespace lx {

// The parents, as lstISA lists them: ISA rows of the concept in order of ISA.
QStringList ReadParents(const QString &identifier);

// One row of lvwNames: the language's name, the name, and the Name_ID the name commands use.
struct NameRow {
    QString Language;
    QString Name;
    QVariant NameId;
    friend bool operator==(const NameRow &, const NameRow &) = default;
};
// The names in order of Lang_ID, then Name_ID.
QList<NameRow> ReadNames(const QString &identifier);

// lblRels/lstRels and lblAttrs/lstAttrs. Relations and attributes list the concept's domains
// and ranges instead of its slots.
struct SlotLists {
    QString RelsLabel;
    QStringList Rels;
    QString AttrsLabel;
    QStringList Attrs;
    friend bool operator==(const SlotLists &, const SlotLists &) = default;
};
SlotLists ReadSlots(const QString &identifier, int type);
// The lists one at a time: "Rel : Concept2" by Rel, "Attribute : Value" by Attribute, and the
// domains by Concept2; " (by default)" behind a default row.
QStringList ReadRelationSlots(const QString &identifier);
QStringList ReadAttributeSlots(const QString &identifier);
QStringList ReadDomains(const QString &identifier);

// The ancestors or descendants in the order of the walks; empty when there are none.
QStringList ReadAncestors(const QString &identifier);
QStringList ReadDescendants(const QString &identifier);

// Everything of a plain view, the slow lists aside. `currentType` is the type on screen: it
// stays when the concept is gone from the file, and the slots follow it.
struct ConceptViewData {
    ConceptHeading Heading;
    quint8 Type = 0;
    bool HasNote = false;
    QStringList Parents;
    QStringList Children;
    QList<NameRow> Names;
    SlotLists Slots;
};
ConceptViewData ReadConceptView(const QString &identifier, quint8 currentType);

} // namespace lx
