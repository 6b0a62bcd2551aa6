#pragma once

#include "core/store/database.h"

#include <QString>

namespace lx {

// Concept type codes of CONCEPTS.Type.
enum ConceptTypeCode : int {
    ctObject = 1,
    ctEvent = 2,
    ctAttribute = 3,
    ctRelation = 4,
    ctSpecial = 5,
    ctHiddenSpecial = 14,
    ctTop = 100,
};

// Builds an empty ontology file at `path`: the twelve tables with their fields and indexes,
// then the thirteen relations, all cascading updates and deletes. Fails with 3204 when the
// file exists. The new file becomes the process's open ontology (OntoPath and OntoDB), and the
// seed content is copied into it; a missing seed file fails with the store's error, leaving the
// new file behind.
store::Database CreateOntologySchema(const QString &path);

// The tables and relations alone, on an open, empty database.
void BuildOntologyTables(store::Database &db);

} // namespace lx
