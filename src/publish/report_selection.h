#pragma once

#include "core/store/recordset.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// What the report dialog reads and how it picks concepts out of its list: the list of
// concepts of the ontology or of the termbase, the subsets, and the selection modes.
namespace lx {

// The concepts of the report list for a job word: "Name..." and "Ontology..." list the
// ontology's concepts, "TermBase..." the termbase's term entries by concept, both
// alphabetically. The termbase's rows stay open so that a report finds each entry's element.
class ReportList {
public:
    QStringList Open(const QString &job);
    // The element of the term entry of `identifier`, none when it has left the termbase.
    std::optional<qint32> EntryOf(const QString &identifier);
    void Close() { m_rows.Close(); }

private:
    store::Recordset m_rows;
};

// The ontology's concepts alphabetically, or as entered (table order).
QStringList ReadReportConcepts(bool alphabetical);
// The names of the ontology's subsets in the order of their number.
QStringList ReadReportSubsets();

// The indexes of `items` that a wildcard pattern matches as a whole, case counting ("*", "?",
// "#", "[...]").
QList<int> PatternSelection(const QStringList &items, const QString &pattern);
// The indexes of `items` that belong to the subset, found by walking the list and the subset's
// concepts (alphabetical) side by side: an item that doesn't come up next in the subset stops
// all further matches, so a list sorted "as entered" may get fewer than the subset holds.
QList<int> SubsetSelection(const QStringList &items, int subsetId);
// The indexes of `items` that are among `descendants` (empty entries skipped); the scan stops
// once `selectedBefore` and those found make the number of descendants + 1.
QList<int> HierarchySelection(const QStringList &items, const QStringList &descendants,
                              int selectedBefore);

} // namespace lx
