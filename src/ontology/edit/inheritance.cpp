#include "ontology/edit/inheritance.h"

#include "core/process.h"
#include "core/store/errors.h"
#include "core/text/collation.h"
#include "ontology/store/lookups.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <memory>

namespace lx {

using store::Recordset;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

bool SameText(const QString &a, const QString &b)
{
    return text::CompareText(a, b) == 0;
}

// The walk goes on after any failure of the store, one statement at a time.
template <typename Statement> void IgnoringErrors(Statement &&statement)
{
    try {
        statement();
    } catch (const store::StoreError &) {
    }
}

// Default is a Yes/No field, never Null, read as the concept view reads it.
QString SlotValue(const QVariant &value, const QVariant &isDefault)
{
    return isDefault.toBool() ? value.toString() + kByDefault : value.toString();
}

int FillPairs(const QString &query, QStringView nameField, QStringView valueField, SlotPairs &pairs)
{
    Recordset rs = Process().OntoDB.OpenRecordset(query, store::dbOpenSnapshot);
    SlotPairs found;
    for (; !rs.Eof(); rs.MoveNext())
        found.push_back({rs.Value(nameField).toString(),
                         SlotValue(rs.Value(valueField), rs.Value(u"Default"))});
    if (found.empty())
        return 0;
    pairs = std::move(found);
    return int(pairs.size());
}

// Deletes, among the rows of Inherit with this Attr, those that `hit` picks. The index Attr
// leads straight to them, so the rest of the table is never read.
template <typename Hit> void RemoveWhere(const QString &attr, Hit &&hit)
{
    Recordset &rs = Process().rsInherit;
    rs.CancelUpdate(); // a pending AddNew would shadow the fields read below
    rs.Seek(u"=", attr);
    if (rs.NoMatch())
        return;
    for (; !rs.Eof() && SameText(rs.Value(u"Attr").toString(), attr); rs.MoveNext()) {
        if (hit(rs))
            rs.Delete();
    }
}

void AddInheritRow(const SlotPair &pair, const QString &from)
{
    Recordset &rs = Process().rsInherit;
    try {
        rs.AddNew();
        rs.Collect(u"Attr", pair.Name);
        rs.Collect(u"Value", pair.Value);
        rs.Collect(u"From", from);
        rs.Update();
    } catch (const store::StoreError &) {
        // A pair that is there already, or a value over 255 characters: passed over. The row
        // in hand is dropped, as moving on in the table would drop it.
        rs.CancelUpdate();
    }
}

// What the engine has read while an InheritanceReadCache lives; none otherwise.
struct ReadCache {
    QHash<QString, QStringList> parents;
    QHash<QString, QStringList> ancestors;
    QHash<QString, SlotPairs> relations;
    QHash<QString, SlotPairs> attributes;
};
std::unique_ptr<ReadCache> g_reads;

QStringList ParentsOf(const QString &identifier)
{
    if (g_reads) {
        if (const auto it = g_reads->parents.constFind(identifier); it != g_reads->parents.cend())
            return *it;
    }
    QStringList parents;
    GetParents(identifier, parents);
    if (g_reads)
        g_reads->parents.insert(identifier, parents);
    return parents;
}

int AncestorsOf(const QString &identifier, QStringList &ancestors)
{
    if (g_reads) {
        if (const auto it = g_reads->ancestors.constFind(identifier);
            it != g_reads->ancestors.cend()) {
            ancestors = *it;
            return int(ancestors.size());
        }
    }
    const int n = GetAncestors(identifier, ancestors);
    if (g_reads)
        g_reads->ancestors.insert(identifier, ancestors);
    return n;
}

SlotPairs LocalSlotsOf(const QString &identifier, QHash<QString, SlotPairs> ReadCache::*kind,
                       int (*read)(const QString &, SlotPairs &))
{
    if (g_reads) {
        const QHash<QString, SlotPairs> &cache = (*g_reads).*kind;
        if (const auto it = cache.constFind(identifier); it != cache.cend())
            return *it;
    }
    SlotPairs pairs;
    read(identifier, pairs);
    if (g_reads)
        ((*g_reads).*kind).insert(identifier, pairs);
    return pairs;
}

// What one concept's own slots do to the rows inherited so far.
void RemoveLocal(const QString &identifier, const QString &mode, const SlotPairs &pairs)
{
    for (const SlotPair &p : pairs) {
        if (p.Value == kNothing)
            RemoveByAttr(p.Name);
        else if (mode != kCumulative)
            RemoveByAttrOtherSource(p.Name, identifier);
        else
            RemoveByAttrValue(p.Name, p.Value);
    }
}

// One walk down from a parent. What it reads from the ontology doesn't change while it runs,
// so each concept's children and slots are read once, however often the walk passes by.
class InheritanceWalk {
public:
    InheritanceWalk(const QString &mode, const QString &include, AncestorTable &table)
        : m_mode(mode), m_include(include), m_table(table)
    {
        findChildrenInTable();
    }

    void walk(const QString &parent)
    {
        m_path.insert(parent.toCaseFolded());
        walkBelow(parent);
    }

private:
    // ISA has no index on the parent, so asking each parent for its children would read the
    // whole table every time. The walk only follows children that are in the ancestor table,
    // so they are found the other way round, from the parents of each row.
    void findChildrenInTable()
    {
        for (const AncestorRow &row : m_table) {
            if (row.Identifier.isEmpty())
                continue;
            QStringList parents;
            IgnoringErrors([&] { parents = ParentsOf(row.Identifier); });
            for (const QString &parent : parents)
                m_children[parent.toCaseFolded()] << row.Identifier;
        }
        for (QStringList &children : m_children)
            std::sort(children.begin(), children.end(), [](const QString &a, const QString &b) {
                return text::CompareText(a, b) < 0;
            });
    }

    void walkBelow(const QString &parent)
    {
        if (AllVisited(m_table))
            return;
        const QStringList children = m_children.value(parent.toCaseFolded());
        for (const QString &child : children) {
            if (!IsInAncestorTable(child, m_table))
                continue;
            if (m_include == kIncludeAll || m_include == kIncludeRels)
                apply(child, slotsOf(g_reads ? g_reads->relations : m_relations, child,
                                     GetLocalRelations));
            if (m_include == kIncludeAll || m_include == kIncludeAttrs)
                apply(child, slotsOf(g_reads ? g_reads->attributes : m_attributes, child,
                                     GetLocalAttributes));
            MarkVisited(child, m_table);
            // A child already on the way down closes a cycle in ISA: entering it again would
            // never end.
            const QString key = child.toCaseFolded();
            if (m_path.contains(key))
                continue;
            m_path.insert(key);
            walkBelow(child);
            m_path.remove(key);
        }
    }

    using Reader = int (*)(const QString &, SlotPairs &);
    const SlotPairs &slotsOf(QHash<QString, SlotPairs> &cache, const QString &child, Reader read)
    {
        auto it = cache.find(child);
        if (it == cache.end()) {
            SlotPairs pairs;
            IgnoringErrors([&] { read(child, pairs); });
            it = cache.insert(child, pairs);
        }
        return *it;
    }

    void apply(const QString &child, const SlotPairs &pairs)
    {
        for (const SlotPair &p : pairs) {
            if (p.Value == kNothing) {
                IgnoringErrors([&] { RemoveByAttr(p.Name); });
                continue;
            }
            if (m_mode != kCumulative)
                IgnoringErrors([&] { RemoveByAttrOtherSource(p.Name, child); });
            else
                IgnoringErrors([&] { RemoveByAttrValue(p.Name, p.Value); });
            AddInheritRow(p, child);
        }
    }

    const QString m_mode;
    const QString m_include;
    AncestorTable &m_table;
    QHash<QString, QStringList> m_children; // by the case-folded parent
    QHash<QString, SlotPairs> m_relations;
    QHash<QString, SlotPairs> m_attributes;
    QSet<QString> m_path; // case-folded concepts the walk is below
};

} // namespace

int GetLocalRelations(const QString &identifier, SlotPairs &pairs)
{
    const QString &q = Process().Quote;
    return FillPairs(QStringLiteral("SELECT * FROM RELATIONS WHERE Concept1 = ") + q + identifier +
                         q,
                     u"Rel", u"Concept2", pairs);
}

int GetLocalAttributes(const QString &identifier, SlotPairs &pairs)
{
    const QString &q = Process().Quote;
    return FillPairs(QStringLiteral("SELECT * from ATTRIBUTES WHERE Concept = ") + q + identifier +
                         q,
                     u"Attribute", u"Value", pairs);
}

AncestorTable MakeAncestorTable(const QStringList &ancestors)
{
    AncestorTable table;
    for (qsizetype i = 0; i + 1 < ancestors.size(); ++i) {
        if (ancestors[i] == Process().TopConcept)
            table.emplace_back();
        else
            table.push_back({ancestors[i], false});
    }
    return table;
}

bool AllVisited(const AncestorTable &table)
{
    return std::all_of(table.begin(), table.end(), [](const AncestorRow &row) {
        return !row.Identifier.isEmpty() && row.Visited;
    });
}

bool IsInAncestorTable(const QString &identifier, const AncestorTable &table)
{
    return std::any_of(table.begin(), table.end(), [&](const AncestorRow &row) {
        return !row.Identifier.isEmpty() && row.Identifier == identifier;
    });
}

void MarkVisited(const QString &identifier, AncestorTable &table)
{
    const auto row = std::find_if(table.begin(), table.end(), [&](const AncestorRow &r) {
        return !r.Identifier.isEmpty() && r.Identifier == identifier;
    });
    if (row != table.end())
        row->Visited = true;
}

void ClearInherit()
{
    Recordset &rs = Process().rsInherit;
    rs.CancelUpdate();
    if (rs.RecordCount() == 0)
        return;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext())
        rs.Delete();
}

void RemoveByAttr(const QString &attr)
{
    RemoveWhere(attr, [](const Recordset &) { return true; });
}

void RemoveByAttrValue(const QString &attr, const QString &value)
{
    RemoveWhere(
        attr, [&](const Recordset &rs) { return SameText(rs.Value(u"Value").toString(), value); });
}

void RemoveByAttrOtherSource(const QString &attr, const QString &identifier)
{
    RemoveWhere(attr, [&](const Recordset &rs) {
        return !SameText(rs.Value(u"From").toString(), identifier);
    });
}

InheritanceReadCache::InheritanceReadCache()
{
    if (!g_reads) {
        g_reads = std::make_unique<ReadCache>();
        m_owner = true;
    }
}

InheritanceReadCache::~InheritanceReadCache()
{
    if (m_owner)
        g_reads.reset();
}

void ComputeInheritance(const QString &identifier, const QString &mode, const QString &include)
{
    QStringList ancestors;
    const int n = AncestorsOf(identifier, ancestors);
    // The top concept and its direct children: nothing is computed, and Inherit keeps the
    // rows of the last computation, which the view then shows.
    if (n - 1 < 1)
        return;
    AncestorTable table = MakeAncestorTable(ancestors);
    ClearInherit();
    WalkInheritance(Process().TopConcept, mode, include, table);

    // The concept's own slots take effect whatever the include code says.
    const SlotPairs relations = LocalSlotsOf(identifier, &ReadCache::relations, GetLocalRelations);
    if (!relations.empty())
        RemoveLocal(identifier, mode, relations);
    const SlotPairs attributes =
        LocalSlotsOf(identifier, &ReadCache::attributes, GetLocalAttributes);
    if (!attributes.empty())
        RemoveLocal(identifier, mode, attributes);
}

void WalkInheritance(const QString &parent, const QString &mode, const QString &include,
                     AncestorTable &table)
{
    InheritanceWalk(mode, include, table).walk(parent);
}

QString InheritIncludeCode(bool relations, bool attributes)
{
    if (relations && attributes)
        return kIncludeAll;
    if (relations)
        return kIncludeRels;
    if (attributes)
        return kIncludeAttrs;
    return {};
}

std::vector<InheritRow> InheritRows()
{
    Recordset &rs = Process().rsInherit;
    rs.CancelUpdate();
    std::vector<InheritRow> rows;
    if (rs.RecordCount() == 0)
        return rows;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext())
        rows.push_back({rs.Value(u"Attr").toString(), rs.Value(u"Value").toString(),
                        rs.Value(u"From").toString()});
    return rows;
}

std::vector<InheritRow> RefreshInheritanceRows(const QString &identifier, bool cumulative,
                                               const QString &include)
{
    if (include.isEmpty())
        return {};
    ComputeInheritance(identifier, cumulative ? kCumulative : kExclusive, include);
    return InheritRows();
}

QString InheritClipboardText(const QString &identifier, bool cumulative, const QString &include,
                             const std::vector<InheritRow> &rows)
{
    QString includes = QStringLiteral("Attributes");
    if (include == kIncludeAll)
        includes = QStringLiteral("Relations and Attributes");
    else if (include == kIncludeRels)
        includes = QStringLiteral("Relations");

    QString text = QStringLiteral("Inherited properties for ") + identifier + QLatin1Char(':') +
                   kCrLf + QStringLiteral("Inheritance type: ") +
                   (cumulative ? QStringLiteral("Cumulative") : QStringLiteral("Exclusive")) +
                   kCrLf + QStringLiteral("Include: ") + includes + kCrLf + kCrLf +
                   QStringLiteral("Attribute;Value;From") + kCrLf;
    for (const InheritRow &row : rows)
        text += row.Attr + QLatin1Char(';') + row.Value + QLatin1Char(';') + row.From + kCrLf;
    return text;
}

} // namespace lx
