#include "publish/whole_ontology_source.h"

#include "core/process.h"
#include "core/store/database.h"
#include "core/text/collation.h"
#include "core/text/unicode.h"
#include "ontology/edit/inheritance.h"

#include <QHash>

#include <algorithm>
#include <cstdint>
#include <optional>

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

// A concept of the ancestor table below one of its parents there.
struct TableChild {
    QString spelling; // as the table holds it
    int node;
    size_t row;
};
// The children within the ancestor table by parent, each list in the store's order.
using TableChildren = std::vector<std::pair<int, std::vector<TableChild>>>;

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
    // The concept last asked for: a page asks for the same one many times over, and its two
    // computations share its ancestors.
    QString current;
    int currentNode = -1;
    std::optional<QStringList> currentAncestors;
    std::vector<int> currentAncestorNodes; // the node of each of them
    std::optional<TableChildren> currentTableChildren;

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

    // The node of an identifier, -1 for one that is nowhere in the tables read.
    int lookup(const QString &identifier)
    {
        if (currentNode >= 0 && identifier == current)
            return currentNode;
        const auto it = ids.constFind(KeyOf(identifier));
        const int node = it == ids.cend() ? -1 : *it;
        current = identifier;
        currentNode = node;
        currentAncestors.reset();
        currentTableChildren.reset();
        return node;
    }

    const Node *find(const QString &identifier)
    {
        const int node = lookup(identifier);
        return node < 0 ? nullptr : &nodes[size_t(node)];
    }

    // The spellings of a concept's links of one kind, in their order.
    QStringList spellings(const QString &identifier, std::vector<Link> Node::*links)
    {
        QStringList found;
        if (const Node *node = find(identifier)) {
            for (const Link &link : node->*links)
                found << link.spelling;
        }
        return found;
    }

    void read();
    QStringList walk(int start, std::vector<Link> Node::*links,
                     std::vector<int> *reached = nullptr);
    const QStringList &ancestorsOf(const QString &identifier);
    const TableChildren &tableChildren(const AncestorTable &table);
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
QStringList WholeOntologySource::Data::walk(int start, std::vector<Link> Node::*links,
                                            std::vector<int> *reached)
{
    QStringList out;
    if (start < 0)
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
                if (reached)
                    reached->push_back(link.to);
            }
        }
        stack.push_back({node, 0});
    };
    enter(start);
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

const QStringList &WholeOntologySource::Data::ancestorsOf(const QString &identifier)
{
    const int node = lookup(identifier);
    if (!currentAncestors) {
        currentAncestorNodes.clear();
        currentAncestors = walk(node, &Node::parents, &currentAncestorNodes);
    }
    return *currentAncestors;
}

// The engine finds the children within the table from the parents of each row; those of a
// concept that isn't in CONCEPTS aren't found, as it reads them through a join with it. Row i
// of the table stands for ancestor i, unless it was left empty.
const TableChildren &WholeOntologySource::Data::tableChildren(const AncestorTable &table)
{
    if (currentTableChildren)
        return *currentTableChildren;
    TableChildren children;
    for (size_t row = 0; row < table.size(); ++row) {
        if (table[row].Identifier.isEmpty())
            continue;
        const int node = currentAncestorNodes[row];
        if (!nodes[size_t(node)].inConcepts)
            continue;
        for (const Link &parent : nodes[size_t(node)].parents) {
            auto group = std::find_if(children.begin(), children.end(),
                                      [&](const auto &g) { return g.first == parent.to; });
            if (group == children.end())
                group = children.insert(children.end(), {parent.to, {}});
            group->second.push_back({table[row].Identifier, node, row});
        }
    }
    for (auto &group : children)
        std::sort(group.second.begin(), group.second.end(),
                  [](const TableChild &a, const TableChild &b) {
                      return InStoreOrder(a.spelling, b.spelling);
                  });
    currentTableChildren = std::move(children);
    return *currentTableChildren;
}

namespace {

// One computation's walk down from the top concept through the ancestor table, by the engine's
// rules: children in the store's order, each ancestor's slots applied as it is reached (again
// when it is reached again), a blocking value taking the slot away.
class MemoryWalk {
public:
    MemoryWalk(const std::vector<Node> &nodes, const TableChildren &children, const QString &mode,
               const QString &include, AncestorTable &table, MemoryInherit &inherit)
        : m_nodes(nodes), m_children(children), m_mode(mode), m_include(include), m_table(table),
          m_inherit(inherit),
          m_emptyRow(std::any_of(table.begin(), table.end(),
                                 [](const AncestorRow &r) { return r.Identifier.isEmpty(); }))
    {}

    void walk(int top)
    {
        m_path.push_back(top);
        walkBelow(top);
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
    // The table's rows are distinct concepts, so a row is found by its place, and it is
    // all visited when no row is empty and each was marked once.
    bool allVisited() const { return !m_emptyRow && m_visited == m_table.size(); }

    void walkBelow(int parent)
    {
        if (allVisited())
            return;
        const auto group = std::find_if(m_children.begin(), m_children.end(),
                                        [&](const auto &g) { return g.first == parent; });
        if (group == m_children.end())
            return;
        for (const TableChild &child : group->second) {
            const Node &node = m_nodes[size_t(child.node)];
            if (m_include == kIncludeAll || m_include == kIncludeRels)
                apply(child.spelling, node.relationPairs);
            if (m_include == kIncludeAll || m_include == kIncludeAttrs)
                apply(child.spelling, node.attributePairs);
            if (!m_table[child.row].Visited) {
                m_table[child.row].Visited = true;
                ++m_visited;
            }
            // A child already on the way down closes a cycle in ISA.
            if (std::find(m_path.begin(), m_path.end(), child.node) != m_path.end())
                continue;
            m_path.push_back(child.node);
            walkBelow(child.node);
            m_path.pop_back();
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
    const TableChildren &m_children;
    const QString m_mode;
    const QString m_include;
    AncestorTable &m_table;
    MemoryInherit &m_inherit;
    const bool m_emptyRow;
    size_t m_visited = 0;
    std::vector<int> m_path; // the concepts the walk is below
};

} // namespace

void WholeOntologySource::Data::computeInheritance(const QString &identifier, const QString &mode,
                                                   const QString &include)
{
    const QStringList &found = ancestorsOf(identifier);
    // The top concept and its direct children: nothing is computed, and the rows of the last
    // computation stay.
    if (found.size() - 1 < 1)
        return;
    AncestorTable table = MakeAncestorTable(found);
    inherit.clear();
    const auto top = ids.constFind(KeyOf(Process().TopConcept));
    if (top != ids.cend())
        MemoryWalk(nodes, tableChildren(table), mode, include, table, inherit).walk(*top);
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
    return d->spellings(identifier, &Node::parents);
}

QStringList WholeOntologySource::children(const QString &identifier)
{
    return d->spellings(identifier, &Node::children);
}

QStringList WholeOntologySource::descendants(const QString &identifier)
{
    return d->walk(d->lookup(identifier), &Node::children);
}

QStringList WholeOntologySource::ancestors(const QString &identifier)
{
    return d->ancestorsOf(identifier);
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
