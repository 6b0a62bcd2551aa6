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
    editor.rsList = p.OntoDB.OpenRecordset(ConceptListQuery(p.OntoMeta), dbOpenSnapshot);
    if (editor.rsList.RecordCount() > 0) {
        editor.rsList.MoveLast(); // so that the count is exact
        editor.rsList.MoveFirst();
    }
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

ListRows ReadListRows(Recordset &rs, const QString &field)
{
    ListRows rows;
    if (!rs.isOpen() || rs.RecordCount() < 1)
        return rows;
    const auto count = qsizetype(rs.RecordCount());
    rows.texts.reserve(count);
    rows.bookmarks.reserve(size_t(count));
    const FieldRef source = field.isEmpty() ? rs.Fields(0) : rs.Fields(field);
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        const QVariant value = source.Value();
        rows.texts.append(value.isNull() ? QString() : value.toString());
        rows.bookmarks.push_back(rs.GetBookmark());
    }
    rs.MoveFirst();
    return rows;
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
