#include "ontology/store/concept_list.h"

#include "core/store/types.h"
#include "ontology/store/lookups.h"

namespace lx {

using namespace store;

// Only the identifier: the list shows nothing else and searches nothing else, and a snapshot
// of every column of a large ontology costs several times the memory and time.
QString ConceptListQuery(const OntoMetaData &meta)
{
    switch (meta.ListTop) {
    case 1:
        return QStringLiteral("SELECT Concept From CONCEPTS ") +
               QStringLiteral("WHERE (Subset_ID = ") + QString::number(meta.ActiveSet) +
               QStringLiteral(") ") + QStringLiteral("ORDER BY Concept");
    case 2:
        return QStringLiteral("SELECT Concept From CONCEPTS ") +
               QStringLiteral("WHERE Type <> 4 AND Type <> 14 ") +
               QStringLiteral("ORDER BY Concept");
    default:
        return QStringLiteral("SELECT Concept From CONCEPTS ") + QStringLiteral("ORDER BY Concept");
    }
}

// A table's count is the store's own count of rows: no row is read or copied.
qint32 CountConcepts()
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    const auto count = qint32(rs.RecordCount());
    rs.Close();
    return count;
}

void InitRSListConcepts(OntologyEditor &editor)
{
    ProcessState &p = Process();
    // The snapshot's count is exact without a MoveLast: the store counts the rows not yet read,
    // and the list reads only the rows it shows.
    editor.rsList = p.OntoDB.OpenRecordset(ConceptListQuery(p.OntoMeta), dbOpenSnapshot);
    editor.ShowConceptList();
    editor.ListedConcepts = qint32(editor.rsList.RecordCount());
    if (editor.ListedConcepts < 1) {
        // On the first open of a run TopConcept is still empty here: the open sets it after.
        editor.CurrentConcept = p.TopConcept;
        editor.ClearConceptView();
        return;
    }
    editor.CurrentConcept = editor.SelectFirstListRow();
    editor.LoadConceptView();
}

ListRows::ListRows(Recordset *rs, const QString &field) : m_rs(rs)
{
    if (!rs || !rs->isOpen())
        return;
    m_field = field.isEmpty() ? rs->Fields(0).Name() : rs->Fields(field).Name();
    m_count = qsizetype(rs->RecordCount());
}

QString ListRows::text(qsizetype row)
{
    if (row < 0 || row >= m_count)
        return {};
    const QStringList &rows = page(row / kPageRows);
    const qsizetype at = row % kPageRows;
    return at < rows.size() ? rows[at] : QString();
}

qsizetype ListRows::rowOf(Bookmark bookmark) const
{
    return bookmark >= 0 && bookmark < m_count ? qsizetype(bookmark) : -1;
}

const QStringList &ListRows::page(qsizetype index)
{
    if (const auto it = m_pages.find(index); it != m_pages.end())
        return it->second;
    QStringList rows;
    Recordset &rs = *m_rs;
    const std::optional<Bookmark> kept =
        rs.Eof() || rs.Bof() ? std::nullopt : std::optional(rs.GetBookmark());
    rows.reserve(kPageRows);
    const FieldRef source = rs.Fields(m_field);
    rs.SetBookmark(index * kPageRows);
    for (; rows.size() < kPageRows && !rs.Eof(); rs.MoveNext()) {
        const QVariant value = source.Value();
        rows.append(TextOrEmpty(value));
    }
    if (kept)
        rs.SetBookmark(*kept);
    return m_pages.emplace(index, std::move(rows)).first->second;
}

std::optional<Bookmark> FindConceptByPrefix(Recordset &rs, const QString &prefix)
{
    const QString &quote = Process().Quote;
    rs.FindFirst(QStringLiteral("Concept LIKE ") + quote + prefix + QStringLiteral("*") + quote);
    if (rs.NoMatch())
        return std::nullopt;
    return rs.GetBookmark();
}

ConceptHeading ReadConceptHeading(const QString &identifier)
{
    ConceptHeading heading;
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Concept"));
    rs.Seek(u"=", identifier);
    if (!rs.NoMatch()) {
        heading.found = true;
        // Nulls are repaired on disk, or only here when the file is open read-only.
        const bool repair = Process().OntoDB.Updatable();
        const bool nullDefinition = rs.Value(u"definition").isNull();
        if (nullDefinition && repair) {
            rs.Edit();
            rs.Collect(u"definition", QStringLiteral("Undefined"));
            rs.Update();
        }
        heading.definition = nullDefinition && !repair ? QStringLiteral("Undefined")
                                                       : rs.Fields(u"definition").Text();
        heading.type = quint8(rs.Value(u"Type").toInt());
        const bool nullSubset = rs.Value(u"subset_ID").isNull();
        if (nullSubset && repair) {
            rs.Edit();
            rs.Collect(u"subset_ID", 1);
            rs.Update();
        }
        heading.subset = SubsetNameOf(nullSubset ? 1 : rs.Value(u"subset_ID").toInt());
    }
    rs.Close();
    return heading;
}

bool HasNote(const QString &identifier)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Notes"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Concept"));
    rs.Seek(u"=", identifier);
    const bool found = !rs.NoMatch();
    rs.Close();
    return found;
}

QString TypeWord(int type)
{
    switch (type) {
    case 1:
        return QStringLiteral("OBJECT");
    case 2:
        return QStringLiteral("EVENT");
    case 3:
        return QStringLiteral("ATTRIBUTE");
    case 4:
        return QStringLiteral("RELATION");
    default:
        return QStringLiteral("SPECIAL");
    }
}

} // namespace lx
