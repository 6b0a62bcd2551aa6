// Sorting names of many languages: the store's text order against SQLite's own NOCASE.
#include "bench_data.h"
#include "core/store/database.h"

#include <QString>

#include <benchmark/benchmark.h>
#include <random>
#include <sqlite3.h>
#include <vector>

using namespace lx::store;

namespace {

constexpr int kNames = 100000;

struct Language {
    const char *id;
    std::vector<const char *> syllables;
};

// Syllables of a few languages and scripts; a name is two to four of them, now and then two
// words, the first letter in upper case.
const std::vector<Language> &Languages()
{
    static const std::vector<Language> languages = {
        {"es", {"ár", "bol", "ca", "ña", "jo", "es", "pa", "ción", "güe", "ro"}},
        {"fr", {"é", "mi", "le", "ço", "ne", "fê", "te", "où", "ra", "gè"}},
        {"de", {"straß", "ü", "ber", "ö", "ko", "nig", "ä", "gel", "sch", "en"}},
        {"cs", {"ča", "ř", "ží", "ně", "ko", "ště", "dů", "ľa", "pro", "ý"}},
        {"pl", {"ł", "ó", "dź", "ż", "ą", "ę", "cz", "szy", "wa", "ń"}},
        {"en", {"ka", "ri", "son", "ber", "ta", "ma", "li", "ne", "do", "ve"}},
        {"el", {"α", "λφ", "ε", "ρο", "μέ", "γα", "κό", "σμος", "θε", "ός"}},
        {"ru", {"мо", "ск", "ва", "ру", "сс", "кий", "до", "бро", "же", "ль"}},
        {"ja", {"東", "京", "大", "学", "語", "日", "本", "山", "川", "中"}},
    };
    return languages;
}

QString Name(std::mt19937 &rng, const Language &language)
{
    QString name;
    const int words = rng() % 4 == 0 ? 2 : 1;
    for (int w = 0; w < words; ++w) {
        if (w)
            name += QLatin1Char(' ');
        QString word;
        for (int s = 2 + int(rng() % 3); s > 0; --s)
            word += QString::fromUtf8(language.syllables[rng() % language.syllables.size()]);
        word[0] = word[0].toUpper();
        name += word;
    }
    return name;
}

// An ontology file with kNames rows in Names, made once per run.
const QString &NamesFile()
{
    static const QString path = [] {
        const QString p = lx::bench::FreshOntologyFile();
        sqlite3 *db = lx::bench::OpenRaw(p);
        lx::bench::Exec(db, "PRAGMA foreign_keys = OFF; BEGIN");
        sqlite3_stmt *stmt = nullptr;
        lx::bench::Check(
            sqlite3_prepare_v2(db, "INSERT INTO Names (Concept, Lang_ID, Name) VALUES (?, ?, ?)",
                               -1, &stmt, nullptr),
            db);
        std::mt19937 rng(20261123);
        for (int i = 0; i < kNames; ++i) {
            const Language &language = Languages()[rng() % Languages().size()];
            const std::string conceptId = lx::bench::GeneratedIdentifier(i);
            const std::string name = Name(rng, language).toStdString();
            sqlite3_bind_text(stmt, 1, conceptId.data(), int(conceptId.size()), SQLITE_TRANSIENT);
            sqlite3_bind_text(stmt, 2, language.id, -1, SQLITE_STATIC);
            sqlite3_bind_text(stmt, 3, name.data(), int(name.size()), SQLITE_TRANSIENT);
            lx::bench::Check(sqlite3_step(stmt), db);
            sqlite3_reset(stmt);
        }
        sqlite3_finalize(stmt);
        lx::bench::Exec(db, "COMMIT");
        sqlite3_close(db);
        return p;
    }();
    return path;
}

void BM_SortNames100k(benchmark::State &state)
{
    Database db = DBEngine::OpenDatabase(NamesFile());
    for (auto _ : state) {
        Recordset rs =
            db.OpenRecordset(QStringLiteral("SELECT * FROM Names ORDER BY Name"), dbOpenSnapshot);
        rs.MoveLast();
        benchmark::DoNotOptimize(rs.RecordCount());
    }
}
BENCHMARK(BM_SortNames100k)->Unit(benchmark::kMillisecond);

// The same rows sorted by SQLite alone and stepped through, each text read once, under the
// given collation.
void RawSortNames(benchmark::State &state, const char *sql)
{
    sqlite3 *db = lx::bench::OpenRaw(NamesFile());
    for (auto _ : state) {
        benchmark::DoNotOptimize(lx::bench::ReadAllRows(db, sql, 4));
    }
    sqlite3_close(db);
}

// The floor: SQLite's own case-insensitive order, which knows no accents beyond ASCII...
void BM_RawSortNames100kNocase(benchmark::State &state)
{
    RawSortNames(state, "SELECT * FROM Names ORDER BY Name COLLATE NOCASE");
}
BENCHMARK(BM_RawSortNames100kNocase)->Unit(benchmark::kMillisecond);

// ...and the store's order called by SQLite alone: what the order itself costs.
void BM_RawSortNames100kLx(benchmark::State &state)
{
    RawSortNames(state, "SELECT * FROM Names ORDER BY Name COLLATE \"LX\"");
}
BENCHMARK(BM_RawSortNames100kLx)->Unit(benchmark::kMillisecond);

} // namespace
