// The IS-A walks: direct children and parents by the system's own queries, and the whole
// ancestry or descent of a concept from one query and a walk in memory.
#include "core/process.h"
#include "core/store/graph.h"
#include "core/text/collation.h"
#include "core/text/unicode.h"
#include "ontology/store/lookups.h"

#include <algorithm>
#include <vector>

namespace lx {

using namespace store;

namespace {

// Numbers for identifiers, equal as the store compares them: without regard to case. Open
// addressing over one flat table, as a walk may number some 200,000 names.
class NodeIds {
public:
    explicit NodeIds(size_t expected)
    {
        size_t capacity = 16;
        while (capacity < 2 * expected)
            capacity *= 2;
        m_slots.assign(capacity, -1);
        m_names.reserve(expected);
        m_hashes.reserve(expected);
    }

    int idOf(QStringView name)
    {
        const size_t h = hash(name);
        const size_t mask = m_slots.size() - 1;
        for (size_t i = h & mask;; i = (i + 1) & mask) {
            const int id = m_slots[i];
            if (id < 0) {
                m_slots[i] = int(m_names.size());
                m_names.push_back(name);
                m_hashes.push_back(h);
                return m_slots[i];
            }
            if (m_hashes[size_t(id)] == h && text::CompareText(m_names[size_t(id)], name) == 0)
                return id;
        }
    }

    size_t size() const { return m_names.size(); }

private:
    // FNV-1a over the folded code points, so that names equal to the collation hash alike.
    static size_t hash(QStringView s)
    {
        quint64 h = 0xcbf29ce484222325ull;
        for (qsizetype i = 0; i < s.size();) {
            const char16_t u = s[i].unicode();
            const char32_t c = u < 0x80 ? text::detail::AsciiLower(s[i++].unicode())
                                        : text::detail::Fold(text::detail::DecodeUtf16(s, i));
            h = (h ^ c) * 0x100000001b3ull;
        }
        return size_t(h);
    }

    std::vector<int> m_slots;
    std::vector<QStringView> m_names;
    std::vector<size_t> m_hashes;
};

// Fills the list from field 0 of a query's rows; the list isn't touched when there are none.
int fillFromQuery(const QString &query, QStringView field, QStringList &list)
{
    Recordset rs = Process().OntoDB.OpenRecordset(query, dbOpenSnapshot);
    if (rs.RecordCount() == 0)
        return 0;
    rs.MoveLast();
    const long count = rs.RecordCount();
    rs.MoveFirst();
    QStringList rows;
    rows.reserve(count);
    for (long i = 0; i < count; ++i) {
        rows << rs.Fields(field).Text();
        rs.MoveNext();
    }
    list = std::move(rows);
    return int(list.size());
}

// The order of the walks: first the start's next nodes (sorted), then, for each of them in
// turn, what its own walk adds; every node once, at its first place. Unfolded, that is the
// sequence "next nodes of x, then the sequence of each next node", kept at first occurrences.
// A node met a second time was walked in full the first time (in a graph without cycles), so
// its sequence adds nothing new and it is walked only once. A node met again while its own
// walk is still under way closes a cycle: the walk ends there and the order stays.
//
// A walk to the children goes from an edge's parent to its child, a walk to the parents the
// other way; the node reached keeps the spelling of its end of the edge. Rows the walk never
// reaches (when the whole table was read) are grouped but never followed.
QStringList walkOrder(const QString &start, const std::vector<Edge> &edges, Direction direction)
{
    const bool down = direction == Direction::ToChildren;
    auto fromOf = [down](const Edge &e) -> const QString & { return down ? e.second : e.first; };
    auto toOf = [down](const Edge &e) -> const QString & { return down ? e.first : e.second; };

    NodeIds ids(2 * edges.size() + 1);
    const int startId = ids.idOf(start);
    std::vector<int> fromIds(edges.size());
    std::vector<int> toIds(edges.size());
    for (size_t e = 0; e < edges.size(); ++e) {
        fromIds[e] = ids.idOf(fromOf(edges[e]));
        toIds[e] = ids.idOf(toOf(edges[e]));
    }

    // Edge numbers grouped by their `from` node (a counting sort), each group in the store's
    // order. Equal names can't share a group in a keyed table; the edge number settles it if
    // they do, so the order never depends on the sort.
    const size_t nodes = ids.size();
    std::vector<int> begin(nodes + 1, 0);
    for (int f : fromIds)
        ++begin[size_t(f) + 1];
    for (size_t n = 0; n < nodes; ++n)
        begin[n + 1] += begin[n];
    std::vector<int> links(edges.size());
    {
        std::vector<int> fill(begin.begin(), begin.end() - 1);
        for (size_t e = 0; e < edges.size(); ++e)
            links[size_t(fill[size_t(fromIds[e])]++)] = int(e);
    }
    for (size_t n = 0; n < nodes; ++n) {
        if (begin[n + 1] - begin[n] < 2)
            continue;
        std::sort(links.begin() + begin[n], links.begin() + begin[n + 1], [&](int a, int b) {
            const int c = text::CompareText(toOf(edges[size_t(a)]), toOf(edges[size_t(b)]));
            return c < 0 || (c == 0 && a < b);
        });
    }

    std::vector<bool> entered(nodes, false); // walked, or on the way (a cycle back to it ends)
    std::vector<bool> listed(nodes, false);
    QStringList out;
    struct Frame {
        int node;
        int next; // position in links
    };
    std::vector<Frame> stack;
    auto enter = [&](int node) {
        entered[size_t(node)] = true;
        for (int i = begin[size_t(node)]; i < begin[size_t(node) + 1]; ++i) {
            const int e = links[size_t(i)];
            const int to = toIds[size_t(e)];
            if (!listed[size_t(to)]) {
                listed[size_t(to)] = true;
                out << toOf(edges[size_t(e)]);
            }
        }
        stack.push_back({node, begin[size_t(node)]});
    };
    enter(startId);
    while (!stack.empty()) {
        Frame &top = stack.back();
        if (top.next == begin[size_t(top.node) + 1]) {
            stack.pop_back();
            continue;
        }
        const int to = toIds[size_t(links[size_t(top.next++)])];
        if (!entered[size_t(to)])
            enter(to); // may move `top`; it isn't used again in this round
    }
    return out;
}

int walk(const QString &identifier, Direction direction, QStringList &list)
{
    const LinkRows rows =
        ReachableEdges(Process().OntoDB, u"ISA", u"Concept", u"ISA", identifier, direction);
    QStringList found = walkOrder(identifier, rows.edges, direction);
    if (found.isEmpty())
        return 0;
    list = std::move(found);
    return int(list.size());
}

} // namespace

int GetChildren(const QString &identifier, QStringList &list)
{
    const QString &q = Process().Quote;
    return fillFromQuery(QStringLiteral("SELECT Concept FROM ISA WHERE ISA = ") + q + identifier +
                             q + QStringLiteral(" ORDER BY Concept"),
                         u"Concept", list);
}

int GetParents(const QString &identifier, QStringList &list)
{
    const QString &q = Process().Quote;
    return fillFromQuery(
        QStringLiteral("SELECT CONCEPTS.Concept, ISA.ISA FROM CONCEPTS INNER JOIN ISA ON "
                       "CONCEPTS.Concept = ISA.Concept WHERE CONCEPTS.Concept = ") +
            q + identifier + q + QStringLiteral(" ORDER BY ISA.ISA"),
        u"ISA", list);
}

int GetAncestors(const QString &identifier, QStringList &list)
{
    return walk(identifier, Direction::ToParents, list);
}

int GetDescendants(const QString &identifier, QStringList &list)
{
    return walk(identifier, Direction::ToChildren, list);
}

bool IsLeaf(const QString &identifier)
{
    QStringList children;
    return GetChildren(identifier, children) == 0;
}

} // namespace lx
