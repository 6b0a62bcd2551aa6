// The IS-A walks: direct children and parents by the system's own queries, and the whole
// ancestry or descent of a concept by a walk that looks up each node it reaches, or reads the
// table through when it reaches much of it.
#include "core/process.h"
#include "core/store/graph.h"
#include "core/text/collation.h"
#include "core/text/unicode.h"
#include "ontology/store/lookups.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace lx {

using namespace store;

namespace {

// Text that stays where it was put, so that views of it last as long as the store.
class TextStore {
public:
    std::string_view keep(std::string_view text)
    {
        if (m_chunks.empty() || m_used + text.size() > m_size) {
            m_size = std::max(kChunk, text.size());
            m_chunks.push_back(std::make_unique<char[]>(m_size));
            m_used = 0;
        }
        char *at = m_chunks.back().get() + m_used;
        std::copy(text.begin(), text.end(), at);
        m_used += text.size();
        return {at, text.size()};
    }

private:
    static constexpr size_t kChunk = 256 * 1024;
    std::vector<std::unique_ptr<char[]>> m_chunks;
    size_t m_size = 0;
    size_t m_used = 0;
};

// Numbers for identifiers (UTF-8, as the store holds them), equal as the store compares them:
// without regard to case. Open addressing over one flat table, as a walk may number some
// 400,000 names; each name is kept once, in the spelling it was first met in.
class NodeIds {
public:
    NodeIds() : m_slots(64, -1) {}

    int idOf(std::string_view name)
    {
        const size_t h = hash(name);
        const size_t mask = m_slots.size() - 1;
        for (size_t i = h & mask;; i = (i + 1) & mask) {
            const int id = m_slots[i];
            if (id < 0) {
                m_slots[i] = int(m_names.size());
                m_names.push_back(m_text.keep(name));
                m_hashes.push_back(h);
                if (2 * m_names.size() > m_slots.size())
                    grow();
                return int(m_names.size()) - 1;
            }
            const std::string_view known = m_names[size_t(id)];
            if (m_hashes[size_t(id)] == h && (known == name || text::CompareText(known, name) == 0))
                return id;
        }
    }

    std::string_view name(int id) const { return m_names[size_t(id)]; }
    size_t size() const { return m_names.size(); }
    // `spelling` kept for good: the node's own name when it is spelt so.
    std::string_view keep(int id, std::string_view spelling)
    {
        return name(id) == spelling ? name(id) : m_text.keep(spelling);
    }

private:
    // FNV-1a over the folded code points, so that names equal to the collation hash alike.
    static size_t hash(std::string_view s)
    {
        quint64 h = 0xcbf29ce484222325ull;
        for (size_t i = 0; i < s.size();) {
            const auto byte = static_cast<unsigned char>(s[i]);
            const char32_t c = byte < 0x80 ? text::detail::AsciiLower(s[i++])
                                           : text::detail::Fold(text::detail::DecodeUtf8(s, i));
            h = (h ^ c) * 0x100000001b3ull;
        }
        return size_t(h);
    }

    void grow()
    {
        m_slots.assign(2 * m_slots.size(), -1);
        const size_t mask = m_slots.size() - 1;
        for (size_t id = 0; id < m_hashes.size(); ++id) {
            size_t i = m_hashes[id] & mask;
            while (m_slots[i] >= 0)
                i = (i + 1) & mask;
            m_slots[i] = int(id);
        }
    }

    TextStore m_text;
    std::vector<int> m_slots;
    std::vector<std::string_view> m_names;
    std::vector<size_t> m_hashes;
};

// A row of a link table as a walk follows it: from one node to another, and the spelling of
// the end it reaches.
struct Step {
    int from;
    int to;
    std::string_view spelling;
};

QString toQString(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

bool storeOrder(std::string_view a, std::string_view b)
{
    return text::CompareText(a, b) < 0;
}

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

// Below this many nodes a walk never turns to reading the whole table.
constexpr std::int64_t kMinimumProbe = 64;
// A walk that enters more than one node in this many rows of the table reads the table
// through instead: a look-up per node costs about three times a row read in order.
constexpr std::int64_t kLookupShare = 3;

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
QStringList walkOrder(int start, const std::vector<Step> &steps, size_t nodes)
{
    // Steps grouped by their `from` node (a counting sort), each group in the store's order.
    // Equal names can't share a group in a keyed table; the step number settles it if they
    // do, so the order never depends on the sort.
    std::vector<int> begin(nodes + 1, 0);
    for (const Step &step : steps)
        ++begin[size_t(step.from) + 1];
    for (size_t n = 0; n < nodes; ++n)
        begin[n + 1] += begin[n];
    std::vector<int> links(steps.size());
    {
        std::vector<int> fill(begin.begin(), begin.end() - 1);
        for (size_t e = 0; e < steps.size(); ++e)
            links[size_t(fill[size_t(steps[e].from)]++)] = int(e);
    }
    for (size_t n = 0; n < nodes; ++n) {
        if (begin[n + 1] - begin[n] < 2)
            continue;
        std::sort(links.begin() + begin[n], links.begin() + begin[n + 1], [&](int a, int b) {
            const int c = text::CompareText(steps[size_t(a)].spelling, steps[size_t(b)].spelling);
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
            const Step &step = steps[size_t(links[size_t(i)])];
            if (!listed[size_t(step.to)]) {
                listed[size_t(step.to)] = true;
                out << toQString(step.spelling);
            }
        }
        stack.push_back({node, begin[size_t(node)]});
    };
    enter(start);
    while (!stack.empty()) {
        Frame &top = stack.back();
        if (top.next == begin[size_t(top.node) + 1]) {
            stack.pop_back();
            continue;
        }
        const int to = steps[size_t(links[size_t(top.next++)])].to;
        if (!entered[size_t(to)])
            enter(to); // may move `top`; it isn't used again in this round
    }
    return out;
}

// The walk over the whole table, read through.
QStringList walkTable(const QString &start, LinkTable &links, Direction direction)
{
    const bool down = direction == Direction::ToChildren;
    NodeIds ids;
    const int startId = ids.idOf(start.toUtf8().toStdString());
    std::vector<Step> steps;
    steps.reserve(size_t(links.rowsAbout()));
    links.allRows([&](std::string_view child, std::string_view parent) {
        const std::string_view from = down ? parent : child;
        const std::string_view to = down ? child : parent;
        const int f = ids.idOf(from);
        const int t = ids.idOf(to);
        steps.push_back({f, t, ids.keep(t, to)});
    });
    return walkOrder(startId, steps, ids.size());
}

// The same order as walkOrder, walked node by node with one index look-up for each node
// entered, so that its cost follows what it reaches. Gives up (nothing) once it has entered
// more than `budget` nodes.
std::optional<QStringList> walkByLookups(const QString &start, LinkTable &links,
                                         std::int64_t budget)
{
    NodeIds ids;
    std::vector<bool> entered;
    std::vector<bool> listed;
    auto number = [&](std::string_view name) {
        const int id = ids.idOf(name);
        if (size_t(id) == entered.size()) {
            entered.push_back(false);
            listed.push_back(false);
        }
        return id;
    };
    std::vector<Step> next; // the next steps of every node on the stack, one run each
    struct Frame {
        size_t begin, end, at; // its run in `next`, and the place reached in it
    };
    std::vector<Frame> stack;
    QStringList out;
    std::int64_t lookups = 0;
    auto enter = [&](int node) {
        entered[size_t(node)] = true;
        const size_t begin = next.size();
        links.next(ids.name(node), [&](std::string_view end) {
            const int to = number(end);
            next.push_back({node, to, ids.keep(to, end)});
        });
        std::sort(next.begin() + qsizetype(begin), next.end(),
                  [](const Step &a, const Step &b) { return storeOrder(a.spelling, b.spelling); });
        for (size_t i = begin; i < next.size(); ++i) {
            if (!listed[size_t(next[i].to)]) {
                listed[size_t(next[i].to)] = true;
                out << toQString(next[i].spelling);
            }
        }
        stack.push_back({begin, next.size(), begin});
        return ++lookups <= budget;
    };
    if (!enter(number(start.toUtf8().toStdString())))
        return std::nullopt;
    while (!stack.empty()) {
        Frame &top = stack.back();
        if (top.at == top.end) {
            next.resize(top.begin);
            stack.pop_back();
            continue;
        }
        const int to = next[top.at++].to;
        if (!entered[size_t(to)] && !enter(to)) // may move `top`; it isn't used again
            return std::nullopt;
    }
    return out;
}

int walk(const QString &identifier, Direction direction, QStringList &list)
{
    LinkTable links(Process().OntoDB, u"ISA", u"Concept", u"ISA", direction);
    const std::int64_t budget = std::max(kMinimumProbe, links.rowsAbout() / kLookupShare);
    std::optional<QStringList> found = walkByLookups(identifier, links, budget);
    if (!found)
        found = walkTable(identifier, links, direction);
    if (found->isEmpty())
        return 0;
    list = std::move(*found);
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
