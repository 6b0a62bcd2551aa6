#include "ontology/views/hierarchy_reads.h"

#include "core/process.h"
#include "core/store/graph.h"
#include "ontology/store/lookups.h"

namespace lx {

using namespace store;

QString DummyNodeText()
{
    return QStringLiteral("FCKMPSBLND");
}

// The node's level by the system's own query, then one index look-up per child for its expand
// sign, all in one read of the file.
QList<TreeChild> ReadTreeLevel(const QString &node)
{
    QStringList children;
    if (GetChildren(node, children) == 0)
        return {};
    LinkTable links(Process().OntoDB, u"ISA", u"Concept", u"ISA", Direction::ToChildren);
    QList<TreeChild> level;
    level.reserve(children.size());
    for (QString &child : children) {
        bool hasChildren = false;
        links.next(child.toStdString(), [&hasChildren](std::string_view) { hasChildren = true; });
        level.append({std::move(child), hasChildren});
    }
    return level;
}

std::optional<int> ReadTreeConceptType(const QString &identifier)
{
    const QString &q = Process().Quote;
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenDynaset);
    rs.FindFirst(QStringLiteral("Concept = ") + q + identifier + q);
    if (rs.NoMatch())
        return std::nullopt;
    const int type = rs.Value(u"Type").toInt();
    rs.Close();
    return type;
}

SlotLists ReadTreeSlots(const QString &identifier, int type)
{
    // 13 and 14 stand beside the attribute and relation types; the rest list their own slots.
    if (type == 13)
        type = 3;
    else if (type == 14)
        type = 4;
    return ReadSlots(identifier, type);
}

QString FindPattern(const QString &text)
{
    return text.endsWith(QLatin1Char('*')) ? text : text + QLatin1Char('*');
}

QStringList ConceptsLike(const QString &pattern)
{
    const QString &q = Process().Quote;
    QStringList found;
    Recordset rs =
        Process().OntoDB.OpenRecordset(QStringLiteral("SELECT Concept from CONCEPTS ") +
                                           QStringLiteral("WHERE Concept Like ") + q + pattern + q,
                                       dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        found.append(rs.Value(u"Concept").toString());
    rs.Close();
    return found;
}

} // namespace lx
