// The IS-A walks on hierarchies of 100,000 and 350,000 concepts, against one recursive query
// in raw SQLite.
#include "bench_data.h"
#include "core/process.h"
#include "hierarchy_data.h"
#include "ontology/store/lookups.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

using namespace lx;
using lx::bench::HierarchyFile;

namespace {

// The hierarchy as the process's open ontology for the length of one benchmark.
class OpenHierarchy {
public:
    explicit OpenHierarchy(const QString &file = HierarchyFile())
    {
        Process().Quote = QStringLiteral("\"");
        Process().OntoDB = store::DBEngine::OpenDatabase(file);
    }
    ~OpenHierarchy()
    {
        Process().OntoDB.Close();
        ResetProcessState();
    }
    OpenHierarchy(const OpenHierarchy &) = delete;
    OpenHierarchy &operator=(const OpenHierarchy &) = delete;
};

void BM_GetDescendantsTop(benchmark::State &state)
{
    const OpenHierarchy open;
    const QString top = QStringLiteral("ALL");
    for (auto _ : state) {
        QStringList list;
        if (GetDescendants(top, list) != lx::bench::kConcepts - 1)
            state.SkipWithError("wrong count");
        benchmark::DoNotOptimize(list);
    }
}
BENCHMARK(BM_GetDescendantsTop)->Unit(benchmark::kMillisecond);

// The floor: the same set of concepts by one recursive query, each identifier read once.
void RawRecursiveDescendants(benchmark::State &state, const QString &file, const QString &start,
                             int expected)
{
    sqlite3 *db = lx::bench::OpenRaw(file);
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db,
                       "WITH RECURSIVE d(c) AS (SELECT Concept FROM ISA WHERE ISA = ?1 UNION "
                       "SELECT ISA.Concept FROM ISA JOIN d ON ISA.ISA = d.c) SELECT c FROM d",
                       -1, &stmt, nullptr);
    const QByteArray key = start.toUtf8();
    sqlite3_bind_text(stmt, 1, key.constData(), int(key.size()), SQLITE_STATIC);
    for (auto _ : state) {
        int rows = 0;
        size_t bytes = 0;
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            ++rows;
            bytes += size_t(sqlite3_column_bytes(stmt, 0));
            benchmark::DoNotOptimize(sqlite3_column_text(stmt, 0));
        }
        sqlite3_reset(stmt);
        if (rows != expected)
            state.SkipWithError("wrong count");
        benchmark::DoNotOptimize(bytes);
    }
    sqlite3_finalize(stmt);
    sqlite3_close(db);
}

void BM_RawRecursiveDescendants(benchmark::State &state)
{
    RawRecursiveDescendants(state, HierarchyFile(), QStringLiteral("ALL"),
                            lx::bench::kConcepts - 1);
}
BENCHMARK(BM_RawRecursiveDescendants)->Unit(benchmark::kMillisecond);

// A walk of some 20,000 concepts in a file of 350,000: its cost follows the subtree.
void BM_GetDescendantsMid350k(benchmark::State &state)
{
    const QString file = lx::bench::LargeHierarchyFile();
    const OpenHierarchy open(file);
    const QString mid = lx::bench::MidConcept();
    for (auto _ : state) {
        QStringList list;
        if (GetDescendants(mid, list) != lx::bench::MidDescendants())
            state.SkipWithError("wrong count");
        benchmark::DoNotOptimize(list);
    }
    state.counters["descendants"] = lx::bench::MidDescendants();
}
BENCHMARK(BM_GetDescendantsMid350k)->Unit(benchmark::kMillisecond);

void BM_RawRecursiveDescendantsMid350k(benchmark::State &state)
{
    RawRecursiveDescendants(state, lx::bench::LargeHierarchyFile(), lx::bench::MidConcept(),
                            lx::bench::MidDescendants());
}
BENCHMARK(BM_RawRecursiveDescendantsMid350k)->Unit(benchmark::kMillisecond);

void BM_GetAncestorsDeep(benchmark::State &state)
{
    const OpenHierarchy open;
    const QString deep = lx::bench::DeepConcept();
    int count = 0;
    for (auto _ : state) {
        QStringList list;
        count = GetAncestors(deep, list);
        if (count < lx::bench::kHierarchyDepth)
            state.SkipWithError("too few ancestors");
        benchmark::DoNotOptimize(list);
    }
    state.counters["ancestors"] = count;
}
BENCHMARK(BM_GetAncestorsDeep)->Unit(benchmark::kMicrosecond);

// For scale: one level by the system's own query.
void BM_GetChildrenTop(benchmark::State &state)
{
    const OpenHierarchy open;
    const QString top = QStringLiteral("ALL");
    int count = 0;
    for (auto _ : state) {
        QStringList list;
        count = GetChildren(top, list);
        benchmark::DoNotOptimize(list);
    }
    state.counters["children"] = count;
}
BENCHMARK(BM_GetChildrenTop)->Unit(benchmark::kMicrosecond);

} // namespace
