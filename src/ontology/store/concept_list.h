#pragma once

#include "core/process.h"
#include "core/store/recordset.h"
#include "ontology/store/onto_editor.h"

#include <QString>
#include <QStringList>

#include <optional>
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

// The rows of a list over a recordset: the texts shown and, row for row, the bookmarks to find
// them again.
struct ListRows {
    QStringList texts;
    std::vector<store::Bookmark> bookmarks;
};

// The rows of `rs` in order, from `field` (the first field when empty, as an unbound list
// shows); `rs` is left on its first row.
ListRows ReadListRows(store::Recordset &rs, const QString &field);

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
