// The SKOS Turtle of a 100,000-concept ontology, against a plain SQLite read of the same tables.
#include "bench_data.h"
#include "core/process.h"
#include "core/store/database.h"
#include "hierarchy_data.h"
#include "ontology/exchange/skos.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdexcept>

using namespace lx;

namespace {

using bench::Beside;

// A copy of the hierarchy with what an open needs, made once.
const QString &SkosSourceFile()
{
    static const QString path = [] {
        const QString to = Beside(QStringLiteral("skos-source.ont"));
        bench::CopyFresh(bench::HierarchyFile(), to);
        bench::MakeOpenable(to, bench::DeepConcept());
        return to;
    }();
    return path;
}

void BM_SkosExport100k(benchmark::State &state)
{
    Process().Quote = QStringLiteral("\"");
    Process().OntoDB = store::DBEngine::OpenDatabase(SkosSourceFile());
    const QString out = Beside(QStringLiteral("out.ttl"));
    for (auto _ : state)
        benchmark::DoNotOptimize(WriteSkosFile(out, QStringLiteral("http://example.org/bench/")));
    state.counters["MB"] = double(QFileInfo(out).size()) / 1e6;
    Process().OntoDB.Close();
    ResetProcessState();
}
BENCHMARK(BM_SkosExport100k)->Unit(benchmark::kMillisecond)->Iterations(1);

// The floor: every row of the tables the export reads, through plain SQLite, nothing written.
void BM_RawSkosRead100k(benchmark::State &state)
{
    sqlite3 *db = bench::OpenRaw(SkosSourceFile());
    for (auto _ : state) {
        size_t bytes = 0;
        bytes += bench::ReadAllRows(
            db, "SELECT Concept, Definition, Type, Subset_ID FROM CONCEPTS ORDER BY Concept", 4);
        bytes += bench::ReadAllRows(db, "SELECT Concept, ISA FROM ISA ORDER BY Concept, ISA", 2);
        bytes += bench::ReadAllRows(db, "SELECT Concept, Lang_ID, Name FROM Names", 3);
        bytes += bench::ReadAllRows(db, "SELECT Concept, Note FROM Notes", 2);
        bytes += bench::ReadAllRows(db, "SELECT Concept1, Rel, Concept2 FROM RELATIONS", 3);
        bytes += bench::ReadAllRows(db, "SELECT Concept, Attribute, Value FROM ATTRIBUTES", 3);
        benchmark::DoNotOptimize(bytes);
    }
    sqlite3_close(db);
}
BENCHMARK(BM_RawSkosRead100k)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
