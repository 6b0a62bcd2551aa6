#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// The slots of a concept after its creation: relation slots (written and deleted as mirrored
// pairs through INVERSES), domains and ranges of relation and attribute concepts, attribute
// slots, and the IS-A links. What the slot dialog and the editor's popups ask of the store.
namespace lx {

// --- The slot dialog ---------------------------------------------------------------------------

// The dialog's mode from its caption: "AddRel", "AddISA", "EditISA", "DR", "AddAttr" or
// "EditAttr"; empty for a caption it doesn't know.
QString EditRelMode(const QString &caption);
// The statements of its two lists for a mode and the type of its concept; empty for a list
// that the mode doesn't fill.
QString EditRelConceptQuery(const QString &mode, int type);
QString EditRelRelationQuery(const QString &mode);
// The Concept column of a statement, as a snapshot.
QStringList ReadConceptColumn(const QString &query);

// The dialog's boxes as the add reads them; a hidden box counts as not shown.
struct SlotDialogTexts {
    QString Concept;  // txtConcept1
    QString Relation; // the text of dblRels
    QString Related;  // the text of dblConcepts
    QString Value;    // txtValue
    QString Isa;      // txtISA
    bool RelatedShown = true;
    bool ValueShown = false;
    bool Default = false;
};

// The checks every mode shares, in order; the first refusal is told and gives false.
bool CheckSlotDialog(const SlotDialogTexts &texts);

// How an add of the dialog ended: written, found already there (told), or refused with the
// dialog to stay open (told).
enum class SlotAdd { Added, Exists, Refused };

// A relation slot and its mirror, with the inverse of the relation from INVERSES.
SlotAdd AddRelationSlot(const SlotDialogTexts &texts);
// An attribute slot: the attribute and its value, no mirror.
SlotAdd AddAttributeSlot(const SlotDialogTexts &texts);

// --- The editor's popups -----------------------------------------------------------------------

// A list item taken apart at its first colon: what stands left of " : ", and what follows it.
// An item without room left of its colon is error 5, as the text functions raise it.
struct SlotItem {
    QString Left;
    QString Right;
};
SlotItem SplitSlotItem(const QString &item);

// The rows that decide whether a popup offers its delete.
long RelationSlotCount(const QString &owner);
long DomainCount(const QString &owner);
long AttributeSlotCount(const QString &owner);
long RangeCount(const QString &owner, int type);
// The concept's IS-A rows, counted after MoveLast: a concept without a link fails with the
// store's "No current record."
long IsaLinkCount(const QString &owner);

// Asks, then deletes one row of the slot of `item` and one row of its mirror. False when the
// user said No or nothing was selected.
bool DeleteRelationSlot(const QString &owner, const QString &item);

// A domain of a relation or attribute concept. `listHasItems` is whether lstRels shows any
// row: only then is the domain looked for first. The domains after the write, or nothing when
// the domain was there already (told).
std::optional<QStringList> AddDomain(const QString &owner, const QString &domain, bool isDefault,
                                     bool listHasItems);
// A range: a concept for a relation (type 4), a literal for an attribute. True if written.
bool AddRange(const QString &owner, int type, const QString &range, bool isDefault,
              bool listHasItems);
// Ask, then delete the row of `item`. False when nothing was asked to go.
bool DeleteDomain(const QString &owner, const QString &item);
bool DeleteRange(const QString &owner, int type, const QString &item);

// Asks, then deletes the attribute slot of `item`. False when the user said No.
bool DeleteAttributeSlot(const QString &owner, const QString &item);

// --- IS-A links --------------------------------------------------------------------------------

// The parents after a new link, or nothing when the link is there already (told).
std::optional<QStringList> AddIsaLink(const QString &owner, const QString &parent);
// Changes the concept's first link in order of parents to `parent`: the parents after, or
// nothing when the new link is there already (told).
std::optional<QStringList> EditIsaLink(const QString &owner, const QString &parent);
// Asks, then deletes the link and refills the parents through `addParent`, pass after pass,
// for as long as it returns true. False when the user said No.
bool DeleteIsaLink(const QString &owner, const QString &parent,
                   const std::function<void()> &clearParents,
                   const std::function<bool(const QString &)> &addParent);

} // namespace lx
