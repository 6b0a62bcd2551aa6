#pragma once

#include "core/store/database.h"

#include <QString>

namespace lx {

// Builds an empty termbase file at `path`: the eighteen tables with their fields and indexes,
// then the twenty-one relations, all cascading updates and deletes. Fails with 3204 when the
// file exists. The file is then filled from the seed (CopyTermbaseSeed) and with the working
// ontology's concepts (CopyWorkingConcepts); it is closed when this returns.
void CreateTermbaseSchema(const QString &path);

// The tables and relations alone, on an open, empty database.
void BuildTermbaseTables(store::Database &db);

// The seven tables that a new termbase takes from the seed file (charsets, langs, datcats,
// datcats_names, elements, picklists, valid_families) and the relations among them: the shape
// of the termbase part of res.dat, which also holds the ontology's tables.
void BuildTermbaseSeedTables(store::Database &db);

} // namespace lx
