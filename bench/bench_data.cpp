#include "bench_data.h"

#include "core/text/collation.h"
#include "ontology/store/schema.h"

#include <QTemporaryDir>

#include <memory>
#include <random>
#include <sqlite3.h>
#include <stdexcept>

namespace lx::bench {

namespace {

QTemporaryDir &Folder()
{
    static QTemporaryDir dir;
    return dir;
}

int collate(void *, int la, const void *a, int lb, const void *b)
{
    return text::CompareText(std::string_view(static_cast<const char *>(a), size_t(la)),
                             std::string_view(static_cast<const char *>(b), size_t(lb)));
}

} // namespace

void Check(int rc, sqlite3 *db)
{
    if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW)
        throw std::runtime_error(sqlite3_errmsg(db));
}

void Exec(sqlite3 *db, const std::string &sql)
{
    Check(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), db);
}

std::string GeneratedIdentifier(int i)
{
    // Syllables from A-W only, so a prefix "X" matches nothing but the last concept.
    static const char *const syllables[] = {"KA", "LO", "MEN", "TRI", "SU", "VE", "PAR",
                                            "DO", "NI", "GRA", "BE",  "HU", "WO", "FEL",
                                            "RA", "ST", "QUI", "JO",  "CE", "TA"};
    std::mt19937 rng(unsigned(i) * 2654435761u);
    std::string id;
    const int words = 1 + int(rng() % 3);
    for (int w = 0; w < words; ++w) {
        if (w)
            id += '-';
        const int parts = 1 + int(rng() % 3);
        for (int p = 0; p < parts; ++p)
            id += syllables[rng() % 20];
    }
    id += '-' + std::to_string(i);
    return id;
}

QString LateConcept()
{
    return QString::fromStdString(GeneratedIdentifier(kConcepts - 10));
}

QString FreshOntologyFile()
{
    static int n = 0;
    const QString path = Folder().filePath(QStringLiteral("fresh%1.ont").arg(++n));
    store::Database db = CreateOntologySchema(path);
    db.Close();
    return path;
}

sqlite3 *OpenRaw(const QString &path)
{
    sqlite3 *db = nullptr;
    Check(sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr), db);
    sqlite3_create_collation(db, "LX", SQLITE_UTF8, nullptr, collate);
    Check(sqlite3_exec(
              db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL; PRAGMA foreign_keys=ON;",
              nullptr, nullptr, nullptr),
          db);
    return db;
}

const QString &ConceptsFile()
{
    static const QString path = [] {
        const QString p = FreshOntologyFile();
        const std::string definition = "A concept generated for measuring, with a definition of "
                                       "about the usual length.";
        sqlite3 *db = OpenRaw(p);
        InsertRows(db,
                   "INSERT INTO CONCEPTS (Concept, Definition, Type, Subset_ID) "
                   "VALUES (?, ?, 1, NULL)",
                   kConcepts, [&](int i) {
                       return std::vector<std::string>{i == kConcepts - 1
                                                           ? std::string("XYLOPHONE-LAST")
                                                           : GeneratedIdentifier(i),
                                                       definition};
                   });
        sqlite3_close(db);
        return p;
    }();
    return path;
}

size_t ReadAllRows(sqlite3 *db, const char *select, int columns)
{
    sqlite3_stmt *stmt = nullptr;
    Check(sqlite3_prepare_v2(db, select, -1, &stmt, nullptr), db);
    size_t bytes = 0;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        for (int c = 0; c < columns; ++c) {
            sqlite3_column_text(stmt, c); // the text itself, as a reader takes it
            bytes += size_t(sqlite3_column_bytes(stmt, c));
        }
    }
    sqlite3_finalize(stmt);
    return bytes;
}

void InsertRows(sqlite3 *db, const char *insert, int count,
                const std::function<std::vector<std::string>(int)> &row)
{
    Exec(db, "BEGIN");
    sqlite3_stmt *stmt = nullptr;
    Check(sqlite3_prepare_v2(db, insert, -1, &stmt, nullptr), db);
    for (int i = 0; i < count; ++i) {
        const std::vector<std::string> values = row(i);
        for (size_t v = 0; v < values.size(); ++v)
            sqlite3_bind_text(stmt, int(v) + 1, values[v].data(), int(values[v].size()),
                              SQLITE_TRANSIENT);
        Check(sqlite3_step(stmt), db);
        sqlite3_reset(stmt);
    }
    sqlite3_finalize(stmt);
    Exec(db, "COMMIT");
}

} // namespace lx::bench
