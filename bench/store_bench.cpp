// The record store against raw SQLite on a 100,000-row CONCEPTS table.
#include "bench_data.h"
#include "core/store/database.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

using namespace lx::store;
using lx::bench::ConceptsFile;

namespace {

void BM_SnapshotOpenMoveLast(benchmark::State &state)
{
    Database db = DBEngine::OpenDatabase(ConceptsFile());
    for (auto _ : state) {
        Recordset rs = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenSnapshot);
        rs.MoveLast();
        benchmark::DoNotOptimize(rs.RecordCount());
    }
}
BENCHMARK(BM_SnapshotOpenMoveLast)->Unit(benchmark::kMillisecond);

// The floor: the same rows stepped through with the C API, each text read once.
void BM_RawSelectAll(benchmark::State &state)
{
    sqlite3 *db = lx::bench::OpenRaw(ConceptsFile());
    for (auto _ : state) {
        benchmark::DoNotOptimize(lx::bench::ReadAllRows(db, "SELECT * FROM CONCEPTS", 4));
    }
    sqlite3_close(db);
}
BENCHMARK(BM_RawSelectAll)->Unit(benchmark::kMillisecond);

// The only match is the last row: the search goes through all of them.
void BM_FindFirstPrefix(benchmark::State &state)
{
    Database db = DBEngine::OpenDatabase(ConceptsFile());
    Recordset rs = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenSnapshot);
    for (auto _ : state) {
        rs.FindFirst(QStringLiteral("Concept LIKE \"X*\""));
        if (rs.NoMatch())
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_FindFirstPrefix)->Unit(benchmark::kMillisecond);

void BM_FindFirstEquals(benchmark::State &state)
{
    Database db = DBEngine::OpenDatabase(ConceptsFile());
    Recordset rs =
        db.OpenRecordset(QStringLiteral("SELECT * FROM CONCEPTS ORDER BY Concept"), dbOpenDynaset);
    const QString criteria = QStringLiteral("Concept = \"%1\"").arg(lx::bench::LateConcept());
    for (auto _ : state) {
        rs.FindFirst(criteria);
        if (rs.NoMatch())
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_FindFirstEquals)->Unit(benchmark::kMicrosecond);

// Looking at 20,000 concepts one after another, each found by criteria of its own; the counter
// is what SQLite's memory grew by meanwhile, which the bounded statement cache keeps flat.
void BM_FindFirstDistinctCriteria(benchmark::State &state)
{
    Database db = DBEngine::OpenDatabase(ConceptsFile());
    Recordset rs =
        db.OpenRecordset(QStringLiteral("SELECT * FROM CONCEPTS ORDER BY Concept"), dbOpenDynaset);
    const sqlite3_int64 before = sqlite3_memory_used();
    for (auto _ : state) {
        for (int i = 0; i < 20000; ++i) {
            rs.FindFirst(QStringLiteral("Concept = \"%1\"")
                             .arg(QString::fromStdString(lx::bench::GeneratedIdentifier(i * 5))));
            if (rs.NoMatch())
                state.SkipWithError("no match");
        }
    }
    state.counters["grown_MB"] = double(sqlite3_memory_used() - before) / (1024.0 * 1024.0);
    state.SetItemsProcessed(state.iterations() * 20000);
}
BENCHMARK(BM_FindFirstDistinctCriteria)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_Seek(benchmark::State &state)
{
    Database db = DBEngine::OpenDatabase(ConceptsFile());
    Recordset rs = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Concept"));
    const QString key = lx::bench::LateConcept();
    for (auto _ : state) {
        rs.Seek(u"=", key);
        if (rs.NoMatch())
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_Seek)->Unit(benchmark::kMicrosecond);

// New rows of CONCEPTS, each committed on its own, through the store...
void BM_UpdateRowByRow(benchmark::State &state)
{
    Database db = DBEngine::OpenDatabase(lx::bench::FreshOntologyFile());
    Recordset rs = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    int i = 0;
    const QString definition = QStringLiteral("A concept written row by row.");
    for (auto _ : state) {
        rs.AddNew();
        rs.Collect(u"Concept", QString::fromStdString(lx::bench::GeneratedIdentifier(i++)));
        rs.Collect(u"Definition", definition);
        rs.Collect(u"Type", 1);
        rs.Update();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_UpdateRowByRow)->Unit(benchmark::kMicrosecond);

// ...and the same rows with the C API alone, one transaction each, into the same kind of file.
void BM_RawInsertRowByRow(benchmark::State &state)
{
    sqlite3 *db = lx::bench::OpenRaw(lx::bench::FreshOntologyFile());
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO CONCEPTS (Concept, Definition, Type) VALUES (?, ?, 1)", -1,
                       &stmt, nullptr);
    int i = 0;
    const std::string definition = "A concept written row by row.";
    for (auto _ : state) {
        const std::string id = lx::bench::GeneratedIdentifier(i++);
        sqlite3_bind_text(stmt, 1, id.data(), int(id.size()), SQLITE_TRANSIENT);
        sqlite3_bind_text(stmt, 2, definition.data(), int(definition.size()), SQLITE_STATIC);
        if (sqlite3_step(stmt) != SQLITE_DONE)
            state.SkipWithError(sqlite3_errmsg(db));
        sqlite3_reset(stmt);
    }
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RawInsertRowByRow)->Unit(benchmark::kMicrosecond);

} // namespace
