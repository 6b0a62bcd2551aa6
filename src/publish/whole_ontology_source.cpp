#include "publish/whole_ontology_source.h"

#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/text/collation.h"
#include "core/text/unicode.h"
#include "ontology/edit/inheritance.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cstdint>

namespace lx {

using store::Recordset;

namespace {

// Inherit's fields hold at most this many characters.
constexpr qsizetype kInheritFieldSize = 255;

// Identifiers the store takes as equal have one key: its order counts two texts equal exactly
// when they are equal without case (and to the collator, which then agrees).
QString KeyOf(QStringView text)
{
    QString key;
    key.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        const char32_t c = text::detail::Fold(text::detail::DecodeUtf16(text, i));
        if (QChar::requiresSurrogates(c)) {
            key += QChar(QChar::highSurrogate(c));
            key += QChar(QChar::lowSurrogate(c));
        } else {
            key += QChar(char16_t(c));
        }
    }
    return key;
}

bool SameText(const QString &a, const QString &b)
{
    return text::CompareText(a, b) == 0;
}

bool InStoreOrder(const QString &a, const QString &b)
{
    return text::CompareText(a, b) < 0;
}

// An ISA row seen from one of its ends: the concept at the other end and its spelling there.
struct Link {
    int to;
    QString spelling;
};

struct Node {
    bool inConcepts = false;
    QString definition;
    std::vector<Link> parents;  // ordered by the parents' spelling
    std::vector<Link> children; // ordered by the children's spelling
    // The slots as the engine reads them (table order) and as the page lists them (by name).
    SlotPairs relationPairs;
    SlotPairs attributePairs;
    std::vector<PageSlot> relations;
    std::vector<PageSlot> attributes;
};

void SortLinks(std::vector<Link> &links)
{
    std::stable_sort(links.begin(), links.end(), [](const Link &a, const Link &b) {
        return InStoreOrder(a.spelling, b.spelling);
    });
}

void SortSlots(std::vector<PageSlot> &slots)
{
    std::stable_sort(slots.begin(), slots.end(), [](const PageSlot &a, const PageSlot &b) {
        return InStoreOrder(a.Name, b.Name);
    });
}

// Default is read as each reader reads it: the engine takes a Null for False, and so does the
// page, comparing with True.
QString EngineValue(const QVariant &value, const QVariant &isDefault)
{
    return isDefault.toBool() ? value.toString() + kByDefault : value.toString();
}

bool PageDefault(const QVariant &isDefault)
{
    return !isDefault.isNull() && isDefault.toBool();
}

// The rows of Inherit, in the order they were added; the table reads them by Attr, then in
// that order.
class MemoryInherit {
public:
    void assign(std::vector<InheritRow> rows) { m_rows = std::move(rows); }

    void clear()
    {
        m_rows.clear();
        m_changed = true;
    }

    template <typename Hit> void removeWhere(const QString &attr, Hit &&hit)
    {
        const auto gone = std::remove_if(m_rows.begin(), m_rows.end(), [&](const InheritRow &r) {
            return SameText(r.Attr, attr) && hit(r);
        });
        m_changed = m_changed || gone != m_rows.end();
        m_rows.erase(gone, m_rows.end());
    }

    // A row the table would refuse is passed over: an empty or too long field, or a pair of
    // Attr and Value that is there already.
    void add(const SlotPair &pair, const QString &from)
    {
        for (const QString *field : {&pair.Name, &pair.Value, &from}) {
            if (field->isEmpty() || field->size() > kInheritFieldSize)
                return;
        }
        for (const InheritRow &row : m_rows) {
            if (SameText(row.Attr, pair.Name) && SameText(row.Value, pair.Value))
                return;
        }
        m_rows.push_back({pair.Name, pair.Value, from});
        m_changed = true;
    }

    std::vector<InheritRow> inIndexOrder() const
    {
        std::vector<InheritRow> rows = m_rows;
        std::stable_sort(rows.begin(), rows.end(), [](const InheritRow &a, const InheritRow &b) {
            return InStoreOrder(a.Attr, b.Attr);
        });
        return rows;
    }

    const std::vector<InheritRow> &inAddedOrder() const { return m_rows; }
    bool changed() const { return m_changed; }

private:
    std::vector<InheritRow> m_rows;
    bool m_changed = false;
};

} // namespace

struct WholeOntologySource::Data {
    QStringList concepts;
    std::vector<Node> nodes;
    QHash<QString, int> ids; // by KeyOf
    MemoryInherit inherit;
    // Marks of the walks over the IS-A links, by node: a walk owns the marks equal to its
    // number, so nothing is cleared between walks.
    std::vector<std::uint32_t> entered;
    std::vector<std::uint32_t> listed;
    std::uint32_t walkNumber = 0;

    int idOf(const QString &identifier)
    {
        const QString key = KeyOf(identifier);
        const auto it = ids.constFind(key);
        if (it != ids.cend())
            return *it;
        nodes.emplace_back();
        ids.insert(key, int(nodes.size()) - 1);
        return int(nodes.size()) - 1;
    }

    const Node *find(const QString &identifier) const
    {
        const auto it = ids.constFind(KeyOf(identifier));
        return it == ids.cend() ? nullptr : &nodes[size_t(*it)];
    }

    void read();
    QStringList walk(const QString &start, std::vector<Link> Node::*links);
    void computeInheritance(const QString &identifier, const QString &mode, const QString &include);
};

void WholeOntologySource::Data::read()
{
    store::Database &db = Process().OntoDB;
    store::ForEachRow(db, QStringLiteral("CONCEPTS"), [&](const Recordset &rs) {
        const QString identifier = rs.Value(u"Concept").toString();
        concepts << identifier;
        Node &node = nodes[size_t(idOf(identifier))];
        node.inConcepts = true;
        node.definition = rs.Value(u"definition").toString();
    });
    store::ForEachRow(db, QStringLiteral("ISA"), [&](const Recordset &rs) {
        const QString child = rs.Value(u"Concept").toString();
        const QString parent = rs.Value(u"ISA").toString();
        const int c = idOf(child);
        const int p = idOf(parent);
        nodes[size_t(c)].parents.push_back({p, parent});
        nodes[size_t(p)].children.push_back({c, child});
    });
    store::ForEachRow(db, QStringLiteral("RELATIONS"), [&](const Recordset &rs) {
        Node &node = nodes[size_t(idOf(rs.Value(u"Concept1").toString()))];
        const QString rel = rs.Value(u"Rel").toString();
        const QVariant filler = rs.Value(u"Concept2");
        const QVariant isDefault = rs.Value(u"Default");
        node.relationPairs.push_back({rel, EngineValue(filler, isDefault)});
        node.relations.push_back({rel, filler.toString(), PageDefault(isDefault)});
    });
    store::ForEachRow(db, QStringLiteral("ATTRIBUTES"), [&](const Recordset &rs) {
        Node &node = nodes[size_t(idOf(rs.Value(u"Concept").toString()))];
        const QString attribute = rs.Value(u"Attribute").toString();
        const QVariant value = rs.Value(u"Value");
        const QVariant isDefault = rs.Value(u"Default");
        node.attributePairs.push_back({attribute, EngineValue(value, isDefault)});
        node.attributes.push_back({attribute, value.toString(), PageDefault(isDefault)});
    });
    for (Node &node : nodes) {
        SortLinks(node.parents);
        SortLinks(node.children);
        SortSlots(node.relations);
        SortSlots(node.attributes);
    }
    inherit.assign(lx::InheritRows());
    entered.assign(nodes.size(), 0);
    listed.assign(nodes.size(), 0);
}

// The ancestors or descendants in the order of the store's walks: first the start's next
// concepts, then for each of them in turn what its own walk adds, each concept once, spelt as
// the link that first reached it. A concept met again while its walk is under way closes a
// cycle and isn't entered again.
QStringList WholeOntologySource::Data::walk(const QString &start, std::vector<Link> Node::*links)
{
    QStringList out;
    const auto it = ids.constFind(KeyOf(start));
    if (it == ids.cend())
        return out;
    const std::uint32_t mark = ++walkNumber;
    struct Frame {
        int node;
        size_t next;
    };
    std::vector<Frame> stack;
    const auto enter = [&](int node) {
        entered[size_t(node)] = mark;
        for (const Link &link : nodes[size_t(node)].*links) {
            if (listed[size_t(link.to)] != mark) {
                listed[size_t(link.to)] = mark;
                out << link.spelling;
            }
        }
        stack.push_back({node, 0});
    };
    enter(*it);
    while (!stack.empty()) {
        Frame &top = stack.back();
        const std::vector<Link> &next = nodes[size_t(top.node)].*links;
        if (top.next == next.size()) {
            stack.pop_back();
            continue;
        }
        const int to = next[top.next++].to;
        if (entered[size_t(to)] != mark)
            enter(to); // may move `top`; it isn't used again in this round
    }
    return out;
}

namespace {

// One computation's walk down from the top concept through the ancestor table, by the engine's
// rules: children in the store's order, each ancestor's slots applied as it is reached (again
// when it is reached again), a blocking value taking the slot away.
class MemoryWalk {
public:
    using SlotsOf = const SlotPairs &(*)(const Node &);

    MemoryWalk(const std::vector<Node> &nodes, const QHash<QString, int> &ids, const QString &mode,
               const QString &include, AncestorTable &table, MemoryInherit &inherit)
        : m_nodes(nodes), m_ids(ids), m_mode(mode), m_include(include), m_table(table),
          m_inherit(inherit)
    {
        // The parents of a concept that isn't in CONCEPTS aren't found: the engine reads them
        // through a join with it.
        for (const AncestorRow &row : m_table) {
            if (row.Identifier.isEmpty())
                continue;
            const Node *node = find(row.Identifier);
            if (!node || !node->inConcepts)
                continue;
            for (const Link &parent : node->parents)
                m_children[parent.spelling.toCaseFolded()] << row.Identifier;
        }
        for (QStringList &children : m_children)
            std::sort(children.begin(), children.end(), InStoreOrder);
    }

    void walk(const QString &parent)
    {
        m_path.insert(parent.toCaseFolded());
        walkBelow(parent);
    }

    // What a slot of `owner` does to the rows inherited so far, before the slot itself is
    // added, if it is.
    static void removeFor(const QString &owner, const QString &mode, const SlotPair &p,
                          MemoryInherit &inherit)
    {
        if (p.Value == kNothing)
            inherit.removeWhere(p.Name, [](const InheritRow &) { return true; });
        else if (mode != kCumulative)
            inherit.removeWhere(p.Name,
                                [&](const InheritRow &r) { return !SameText(r.From, owner); });
        else
            inherit.removeWhere(p.Name,
                                [&](const InheritRow &r) { return SameText(r.Value, p.Value); });
    }

private:
    const Node *find(const QString &identifier) const
    {
        const auto it = m_ids.constFind(KeyOf(identifier));
        return it == m_ids.cend() ? nullptr : &m_nodes[size_t(*it)];
    }

    void walkBelow(const QString &parent)
    {
        if (AllVisited(m_table))
            return;
        const QStringList children = m_children.value(parent.toCaseFolded());
        for (const QString &child : children) {
            if (!IsInAncestorTable(child, m_table))
                continue;
            const Node *node = find(child);
            if (node && (m_include == kIncludeAll || m_include == kIncludeRels))
                apply(child, node->relationPairs);
            if (node && (m_include == kIncludeAll || m_include == kIncludeAttrs))
                apply(child, node->attributePairs);
            MarkVisited(child, m_table);
            // A child already on the way down closes a cycle in ISA.
            const QString key = child.toCaseFolded();
            if (m_path.contains(key))
                continue;
            m_path.insert(key);
            walkBelow(child);
            m_path.remove(key);
        }
    }

    void apply(const QString &child, const SlotPairs &pairs)
    {
        for (const SlotPair &p : pairs) {
            removeFor(child, m_mode, p, m_inherit);
            if (p.Value != kNothing)
                m_inherit.add(p, child);
        }
    }

    const std::vector<Node> &m_nodes;
    const QHash<QString, int> &m_ids;
    const QString m_mode;
    const QString m_include;
    AncestorTable &m_table;
    MemoryInherit &m_inherit;
    QHash<QString, QStringList> m_children; // by the case-folded parent
    QSet<QString> m_path;                   // case-folded concepts the walk is below
};

} // namespace

void WholeOntologySource::Data::computeInheritance(const QString &identifier, const QString &mode,
                                                   const QString &include)
{
    const QStringList found = walk(identifier, &Node::parents);
    // The top concept and its direct children: nothing is computed, and the rows of the last
    // computation stay.
    if (found.size() - 1 < 1)
        return;
    AncestorTable table = MakeAncestorTable(found);
    inherit.clear();
    MemoryWalk(nodes, ids, mode, include, table, inherit).walk(Process().TopConcept);
    // The concept's own slots take effect whatever the include code says.
    if (const Node *node = find(identifier)) {
        for (const SlotPairs *pairs : {&node->relationPairs, &node->attributePairs}) {
            for (const SlotPair &p : *pairs)
                MemoryWalk::removeFor(identifier, mode, p, inherit);
        }
    }
}

WholeOntologySource::WholeOntologySource() : d(std::make_unique<Data>())
{
    d->read();
}

WholeOntologySource::~WholeOntologySource() = default;

const QStringList &WholeOntologySource::concepts() const
{
    return d->concepts;
}

QString WholeOntologySource::definition(const QString &identifier)
{
    const Node *node = d->find(identifier);
    return node && node->inConcepts ? node->definition : QString();
}

QStringList WholeOntologySource::parents(const QString &identifier)
{
    QStringList found;
    if (const Node *node = d->find(identifier)) {
        for (const Link &link : node->parents)
            found << link.spelling;
    }
    return found;
}

QStringList WholeOntologySource::children(const QString &identifier)
{
    QStringList found;
    if (const Node *node = d->find(identifier)) {
        for (const Link &link : node->children)
            found << link.spelling;
    }
    return found;
}

QStringList WholeOntologySource::descendants(const QString &identifier)
{
    return d->walk(identifier, &Node::children);
}

QStringList WholeOntologySource::ancestors(const QString &identifier)
{
    return d->walk(identifier, &Node::parents);
}

std::vector<PageSlot> WholeOntologySource::relations(const QString &identifier)
{
    const Node *node = d->find(identifier);
    return node ? node->relations : std::vector<PageSlot>();
}

std::vector<PageSlot> WholeOntologySource::attributes(const QString &identifier)
{
    const Node *node = d->find(identifier);
    return node ? node->attributes : std::vector<PageSlot>();
}

std::vector<InheritRow> WholeOntologySource::inherited(const QString &identifier,
                                                       const QString &include)
{
    d->computeInheritance(identifier, kExclusive, include);
    return d->inherit.inIndexOrder();
}

void WholeOntologySource::storeInherit()
{
    if (!d->inherit.changed())
        return;
    const store::WriteBatch batch(Process().OntoDB);
    ClearInherit();
    // In the order they were added, so that rows of one Attr read back in the same order.
    Recordset &rs = Process().rsInherit;
    for (const InheritRow &row : d->inherit.inAddedOrder()) {
        rs.AddNew();
        rs.Collect(u"Attr", row.Attr);
        rs.Collect(u"Value", row.Value);
        rs.Collect(u"From", row.From);
        rs.Update();
    }
}

} // namespace lx
