#pragma once

#include <QString>

namespace lx {

// Fills the new termbase at `path` with the rows of the seed file's termbase tables: character
// sets, languages, data categories and their names, the fixed frame of elements, picklists and
// valid families, in that order. Store errors go to the caller.
void CopyTermbaseSeed(const QString &path);

// Puts every concept of the open ontology (OntoDB) but the top concept into the termbase's
// CONCEPTS.
void CopyWorkingConcepts(const QString &path);

} // namespace lx
