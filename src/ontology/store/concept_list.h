#pragma once

#include "core/process.h"
#include "core/store/recordset.h"
#include "ontology/store/onto_editor.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <unordered_map>
#include <vector>

// The concept list of the ontology editor: the recordset behind it, its counts and its search,
// and what the view shows of the concept row itself.
namespace lx {

// The query of the list mode in `meta.ListTop`: 1 the active subset, 2 everything but
// relations, anything else everything; identifiers only, in their order.
QString ConceptListQuery(const OntoMetaData &meta);

// Rows of CONCEPTS.
qint32 CountConcepts();

// Rebuilds the list from the mode's query, selects its first row and loads that concept. With
// no rows the view is cleared and CurrentConcept falls back to the top concept.
void InitRSListConcepts(OntologyEditor &editor);

// The rows of a list over a recordset, read a page at a time as they are asked for, so that a
// list of a whole ontology costs what is shown of it. The recordset must have bookmarks that
// are row positions, as a snapshot's are; reading a page leaves it on the row it was on.
class ListRows {
public:
    static constexpr qsizetype kPageRows = 256;

    ListRows() = default;
    // Over `rs`, from `field` (the first field when empty, as an unbound list shows); no rows
    // when `rs` is null or closed. Reads no row: the count is the recordset's.
    ListRows(store::Recordset *rs, const QString &field);

    qsizetype size() const { return m_count; }
    QString text(qsizetype row);
    // The row that a bookmark of the recordset stands for; -1 for none.
    qsizetype rowOf(store::Bookmark bookmark) const;
    // Pages read so far.
    qsizetype pagesRead() const { return qsizetype(m_pages.size()); }

private:
    const QStringList &page(qsizetype index);

    store::Recordset *m_rs = nullptr;
    QString m_field;
    qsizetype m_count = 0;
    std::unordered_map<qsizetype, QStringList> m_pages;
};

// The first row, in list order, whose identifier starts with `prefix`; rs is left on it.
std::optional<store::Bookmark> FindConceptByPrefix(store::Recordset &rs, const QString &prefix);

// What the view shows of the concept's own row. Opening a concept repairs a Null definition
// ("Undefined") and a Null subset (1) in the file.
struct ConceptHeading {
    bool found = false;
    QString definition;
    quint8 type = 0;
    QString subset; // the subset's name
};
ConceptHeading ReadConceptHeading(const QString &identifier);

// Whether the concept has a working note.
bool HasNote(const QString &identifier);

// The word for a concept type in the status bar: "OBJECT", ..., "SPECIAL" for any other.
QString TypeWord(int type);

} // namespace lx
