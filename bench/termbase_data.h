#pragma once

#include <QString>

#include <string>

struct sqlite3;
struct sqlite3_stmt;

// The termbase of 100,000 term entries that the termbase benchmarks share, and a prepared
// statement for their raw floors.
namespace lx::bench {

inline constexpr int kEntries = 100000;
inline constexpr int kBody = 3;

// The element of entry i; its English section, term and term type follow it, and for every
// second entry a Spanish section with its term.
int EntryElement(int i);
std::string EntryConcept(int i);

struct TermbaseFiles {
    QString ontology;
    QString termbase;
    qint64 elements = 0;
};

// A termbase made by the program from the seed, under an empty ontology, then filled with raw
// SQLite; made once per run.
const TermbaseFiles &Files();

class Statement {
public:
    Statement(sqlite3 *db, const char *sql);
    ~Statement();
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    Statement &bind(int i, int value);
    Statement &bind(int i, const std::string &text);
    void run();
    sqlite3_stmt *get() const { return m_stmt; }

private:
    sqlite3 *m_db;
    sqlite3_stmt *m_stmt = nullptr;
};

} // namespace lx::bench
