#pragma once

#include <QString>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

struct sqlite3;

namespace lx::bench {

inline constexpr int kConcepts = 100000;

// An ontology file of kConcepts generated concepts (identifiers of letters A-W and hyphens,
// with one "XYLOPHONE-LAST" added last), made once per run in a temporary folder.
const QString &ConceptsFile();
// The identifier of a concept near the end of the file.
QString LateConcept();
// A fresh, empty ontology file in the run's temporary folder.
QString FreshOntologyFile();

// A raw SQLite connection that can read and write our files: our collation registered, the
// same pragmas as the store.
sqlite3 *OpenRaw(const QString &path);

std::string GeneratedIdentifier(int i);

// Throws with SQLite's message unless `rc` is a success code.
void Check(int rc, sqlite3 *db);
// Runs `sql`, throwing on failure.
void Exec(sqlite3 *db, const std::string &sql);

// Steps through every row of `select`, reading the text of its first `columns` columns once;
// returns the bytes read.
size_t ReadAllRows(sqlite3 *db, const char *select, int columns);

// Rows 0 to count - 1 of the text values `row` gives, inserted by the statement `insert` with
// one parameter per value, in one transaction.
void InsertRows(sqlite3 *db, const char *insert, int count,
                const std::function<std::vector<std::string>(int)> &row);

} // namespace lx::bench
