#pragma once

#include <QString>
#include <QStringList>

#include <vector>

// The inheritance engine: which relation and attribute slots a concept inherits from its
// ancestors, and from which ancestor each one comes. The result goes row by row into the
// scratch table Inherit of the open ontology, through Process().rsInherit (index Attr); its
// rows stay there until the next computation.
namespace lx {

// The blocking value: this concept and what is below it don't have the slot.
inline const QString kNothing = QStringLiteral("*NOTHING*");
// What a default slot carries behind its value; it has no other force.
inline const QString kByDefault = QStringLiteral(" (by default)");

// Mode codes of fraInherit and include codes of chkInhRels/chkInhAttrs. A mode other than
// "c" is exclusive.
inline const QString kCumulative = QStringLiteral("c");
inline const QString kExclusive = QStringLiteral("x");
inline const QString kIncludeAll = QStringLiteral("all");
inline const QString kIncludeRels = QStringLiteral("rels");
inline const QString kIncludeAttrs = QStringLiteral("attrs");

// A slot as the engine sees it: (name, value), the value with kByDefault behind it for a
// default slot.
struct SlotPair {
    QString Name;
    QString Value;
    friend bool operator==(const SlotPair &, const SlotPair &) = default;
};
using SlotPairs = std::vector<SlotPair>;

// The concept's own slots in the store's order. They fill `pairs` and return the count; with
// a count of 0 `pairs` isn't touched.
int GetLocalRelations(const QString &identifier, SlotPairs &pairs);
int GetLocalAttributes(const QString &identifier, SlotPairs &pairs);

// The ancestors that one computation walks through. An empty row (no identifier) stands where
// the top concept was; it never counts as visited.
struct AncestorRow {
    QString Identifier;
    bool Visited = false;
    friend bool operator==(const AncestorRow &, const AncestorRow &) = default;
};
using AncestorTable = std::vector<AncestorRow>;

// Rows for all entries of the ancestor list but its last, which is taken to be the top
// concept: that holds for one chain of parents only, and otherwise the last ancestor is
// simply missing. The top concept itself leaves its row empty.
AncestorTable MakeAncestorTable(const QStringList &ancestors);
bool AllVisited(const AncestorTable &table);
bool IsInAncestorTable(const QString &identifier, const AncestorTable &table);
void MarkVisited(const QString &identifier, AncestorTable &table);

// Empties Inherit.
void ClearInherit();
// Delete the rows of Inherit with that Attr; with that Attr and Value; with that Attr and a
// From other than `identifier`. Text compares as in the store, without regard to case.
void RemoveByAttr(const QString &attr);
void RemoveByAttrValue(const QString &attr, const QString &value);
void RemoveByAttrOtherSource(const QString &attr, const QString &identifier);

// While one lives, the engine keeps what it reads of the ontology (parents, local slots,
// ancestors) from one computation to the next, for runs over many concepts during which
// nothing but Inherit is written, such as a publish. Only the outermost of nested ones counts.
class InheritanceReadCache {
public:
    InheritanceReadCache();
    ~InheritanceReadCache();
    InheritanceReadCache(const InheritanceReadCache &) = delete;
    InheritanceReadCache &operator=(const InheritanceReadCache &) = delete;

private:
    bool m_owner = false;
};

// Fills Inherit with what `identifier` inherits: mode kCumulative or kExclusive, include
// kIncludeAll, kIncludeRels or kIncludeAttrs. The concept's own slots only take rows away, whatever
// the include code. For the top concept and its direct children nothing is computed and
// Inherit keeps the rows of the last computation.
void ComputeInheritance(const QString &identifier, const QString &mode, const QString &include);

// Adds the slots of the children of `parent` that are in the ancestor table, then walks down
// through each of them, until every row of the table is visited. Store errors are passed over
// statement by statement, a failed Update (a pair already there, a value too long) too.
void WalkInheritance(const QString &parent, const QString &mode, const QString &include,
                     AncestorTable &table);

// One row of Inherit as lvwInherit lists it.
struct InheritRow {
    QString Attr;
    QString Value;
    QString From;
    friend bool operator==(const InheritRow &, const InheritRow &) = default;
};

// The include code of the two switches; empty when neither is checked.
QString InheritIncludeCode(bool relations, bool attributes);
// The rows of Inherit from first to last, in the order of its index Attr.
std::vector<InheritRow> InheritRows();
// What RefreshInheritance lists once inheritance isn't off: nothing without an include code
// (Inherit untouched), else the rows after ComputeInheritance.
std::vector<InheritRow> RefreshInheritanceRows(const QString &identifier, bool cumulative,
                                               const QString &include);
// The clipboard text of mnuInheritCopy for the rows as the list shows them.
QString InheritClipboardText(const QString &identifier, bool cumulative, const QString &include,
                             const std::vector<InheritRow> &rows);

} // namespace lx
