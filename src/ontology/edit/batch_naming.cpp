#include "ontology/edit/batch_naming.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/recordset.h"
#include "core/text/collation.h"
#include "core/text/like.h"
#include "ontology/store/lookups.h"

#include <QSet>

namespace lx {

using namespace store;

namespace {

constexpr int MinPatternLength = 3;

// Text as the store compares it: without regard to case.
bool SameText(const QString &a, const QString &b)
{
    return text::CompareText(a, b) == 0;
}

void Advance(const BatchStep &step, int done)
{
    if (step)
        step(done);
}

} // namespace

QStringList ReadBatchConcepts(bool alphabetical)
{
    const QString query = alphabetical
                              ? QStringLiteral("SELECT Concept FROM CONCEPTS ORDER BY Concept")
                              : QStringLiteral("SELECT Concept FROM CONCEPTS");
    QStringList concepts;
    Recordset rs = Process().OntoDB.OpenRecordset(query, dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        concepts.append(rs.Fields(0).Text());
    rs.Close();
    return concepts;
}

QList<int> PickByExpression(const QStringList &items, const QString &pattern)
{
    if (pattern.size() < MinPatternLength) {
        UI().MsgBox(QStringLiteral("Enter at least 3 characters!"), msg::Information,
                    QStringLiteral("Error"));
        return {};
    }
    QList<int> picked;
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (text::Like(items[i], pattern))
            picked.append(int(i));
    }
    if (picked.isEmpty())
        UI().MsgBox(QStringLiteral("No concepts matched your criteria."), msg::Information);
    return picked;
}

QList<int> PickBySubset(const QStringList &items, int subsetId)
{
    Recordset rs = Process().OntoDB.OpenRecordset(
        QStringLiteral("SELECT Concept, Subset_ID ") +
            QStringLiteral("FROM CONCEPTS WHERE Subset_ID = ") + QString::number(subsetId) +
            QStringLiteral(" ORDER BY CONCEPT"),
        dbOpenSnapshot);
    QList<int> picked;
    for (qsizetype i = 0; i < items.size() && !rs.Eof(); ++i) {
        if (items[i] == rs.Fields(u"Concept").Text()) {
            picked.append(int(i));
            rs.MoveNext();
        }
    }
    rs.Close();
    return picked;
}

QList<int> PickSubhierarchy(const QStringList &items, const QList<int> &selected)
{
    if (selected.size() != 1) {
        UI().MsgBox(QStringLiteral("For this option you must select ONE concept in the list."),
                    msg::Exclamation, QStringLiteral("Select error"));
        return {};
    }
    QStringList descendants;
    if (GetDescendants(items[selected.first()], descendants) == 0) {
        UI().MsgBox(QStringLiteral("The concept you selected is a leaf"), msg::Exclamation);
        return {};
    }
    descendants.removeAll(QString());
    const QSet<QString> wanted(descendants.cbegin(), descendants.cend());
    QList<int> picked;
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (wanted.contains(items[i]))
            picked.append(int(i));
    }
    return picked;
}

int AddBatchNames(const QStringList &concepts, const QString &langId, bool asIs,
                  const BatchStep &step)
{
    Recordset names = Process().OntoDB.OpenRecordset(QStringLiteral("Names"), dbOpenTable);
    Recordset known = Process().OntoDB.OpenRecordset(QStringLiteral("Concepts"), dbOpenTable);
    known.SetIndex(QStringLiteral("Concept"));
    int added = 0;
    for (qsizetype i = 0; i < concepts.size(); ++i) {
        const QString &identifier = concepts[i];
        known.Seek(u"=", identifier);
        if (!known.NoMatch()) {
            names.AddNew();
            names.Collect(u"Concept", identifier);
            names.Collect(u"Lang_ID", langId);
            names.Collect(u"Name", asIs ? identifier : IdentifierToName(identifier));
            names.Update();
            ++added;
        }
        Advance(step, int(i) + 1);
    }
    known.Close();
    names.Close();
    return added;
}

// Each concept's names are read by the concept alone and the language is tested here: with the
// language in the query the store may walk every name of that language for each concept.
int RemoveBatchNames(const QStringList &concepts, const QString &langId, const BatchStep &step)
{
    int removed = 0;
    for (qsizetype i = 0; i < concepts.size(); ++i) {
        Recordset rs =
            Process().OntoDB.OpenRecordset(QStringLiteral("SELECT * from Names WHERE ") +
                                               QStringLiteral("Concept = ") + Quoted(concepts[i]),
                                           dbOpenDynaset);
        for (; !rs.Eof(); rs.MoveNext()) {
            if (!SameText(rs.Fields(u"Lang_ID").Text(), langId))
                continue;
            rs.Edit();
            rs.Delete();
            ++removed;
        }
        rs.Close();
        Advance(step, int(i) + 1);
    }
    return removed;
}

} // namespace lx
