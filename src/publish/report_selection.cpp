#include "publish/report_selection.h"

#include "core/process.h"
#include "core/store/database.h"
#include "core/text/like.h"

#include <QSet>

namespace lx {

QStringList ReportList::Open(const QString &job)
{
    m_rows.Close();
    ProcessState &p = Process();
    if (text::Like(job, u"Name*") || text::Like(job, u"Ontology*"))
        m_rows = p.OntoDB.OpenRecordset(QStringLiteral("SELECT Concept FROM CONCEPTS ORDER BY "
                                                       "Concept"),
                                        store::dbOpenSnapshot);
    else if (text::Like(job, u"TermBase*"))
        m_rows = p.TermDB.OpenRecordset(QStringLiteral("SELECT * FROM TE_CONCEPTS ORDER BY "
                                                       "Concept"),
                                        store::dbOpenSnapshot);
    QStringList concepts;
    if (!m_rows.isOpen())
        return concepts;
    for (m_rows.MoveFirst(); !m_rows.Eof(); m_rows.MoveNext())
        concepts.append(store::TextOrEmpty(m_rows.Value(u"Concept")));
    if (!concepts.isEmpty())
        m_rows.MoveFirst();
    return concepts;
}

std::optional<qint32> ReportList::EntryOf(const QString &identifier)
{
    if (!m_rows.isOpen() || m_rows.RecordCount() == 0)
        return std::nullopt;
    m_rows.FindFirst(QStringLiteral("Concept = ") + Quoted(identifier));
    if (m_rows.NoMatch())
        return std::nullopt;
    return m_rows.Value(u"elemID").toInt();
}

QStringList ReadReportConcepts(bool alphabetical)
{
    if (alphabetical)
        return store::ReadColumn(Process().OntoDB,
                                 QStringLiteral("SELECT Concept FROM CONCEPTS ORDER BY Concept"),
                                 u"Concept");
    // As entered is the table's own order; a query without an order would come by the index.
    QStringList concepts;
    store::Recordset rs =
        Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), store::dbOpenTable);
    for (; !rs.Eof(); rs.MoveNext())
        concepts.append(store::TextOrEmpty(rs.Value(u"Concept")));
    return concepts;
}

QStringList ReadReportSubsets()
{
    QStringList names;
    store::Recordset rs =
        Process().OntoDB.OpenRecordset(QStringLiteral("Subsets"), store::dbOpenTable);
    rs.SetIndex(QStringLiteral("Subset_ID"));
    for (; !rs.Eof(); rs.MoveNext())
        names.append(store::TextOrEmpty(rs.Value(u"Subset")));
    return names;
}

QList<int> PatternSelection(const QStringList &items, const QString &pattern)
{
    QList<int> selected;
    for (int i = 0; i < items.size(); ++i) {
        if (text::Like(items[i], pattern))
            selected.append(i);
    }
    return selected;
}

QList<int> SubsetSelection(const QStringList &items, int subsetId)
{
    const QStringList members =
        store::ReadColumn(Process().OntoDB,
                          QStringLiteral("SELECT Concept, Subset_ID ") +
                              QStringLiteral("FROM CONCEPTS WHERE Subset_ID = ") +
                              QString::number(subsetId) + QStringLiteral(" ORDER BY CONCEPT"),
                          u"Concept");
    QList<int> selected;
    qsizetype next = 0;
    for (int i = 0; i < items.size() && next < members.size(); ++i) {
        if (items[i] == members[next]) {
            selected.append(i);
            ++next;
        }
    }
    return selected;
}

QList<int> HierarchySelection(const QStringList &items, const QStringList &descendants,
                              int selectedBefore)
{
    QSet<QString> wanted;
    for (const QString &d : descendants) {
        if (!d.isEmpty())
            wanted.insert(d);
    }
    QList<int> selected;
    const qsizetype enough = descendants.size() + 1;
    for (int i = 0; i < items.size(); ++i) {
        if (selectedBefore + selected.size() == enough)
            break;
        if (wanted.contains(items[i]))
            selected.append(i);
    }
    return selected;
}

} // namespace lx
