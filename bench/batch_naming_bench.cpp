// Names for every concept of a 100,000-concept ontology in one batch run, each name its own
// committed write, and the removal of those names again; against the same writes in plain
// SQLite, one statement each, prepared once.
#include "bench_data.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "hierarchy_data.h"
#include "ontology/edit/batch_naming.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

using namespace lx;

namespace {

using bench::Beside;
using bench::CopyFresh;

// The hierarchy, openable (languages "en" and "fr").
const QString &NamingTemplate()
{
    static const QString path = [] {
        const QString p = Beside(QStringLiteral("naming-template.ont"));
        CopyFresh(bench::HierarchyFile(), p);
        bench::MakeOpenable(p, bench::DeepConcept());
        return p;
    }();
    return path;
}

// A fresh copy of the template; with `named`, every concept has a French name already.
QString FreshCopy(bool named)
{
    const QString copy = Beside(QStringLiteral("naming-run.ont"));
    CopyFresh(NamingTemplate(), copy);
    if (named) {
        sqlite3 *db = bench::OpenRaw(copy);
        bench::Exec(db, "INSERT INTO Names (Concept, Lang_ID, Name) "
                        "SELECT Concept, 'fr', lower(Concept) FROM CONCEPTS");
        sqlite3_close(db);
    }
    return copy;
}

std::vector<std::string> AllConcepts(sqlite3 *db)
{
    std::vector<std::string> concepts;
    sqlite3_stmt *stmt = nullptr;
    bench::Check(
        sqlite3_prepare_v2(db, "SELECT Concept FROM CONCEPTS ORDER BY Concept", -1, &stmt, nullptr),
        db);
    while (sqlite3_step(stmt) == SQLITE_ROW)
        concepts.emplace_back(reinterpret_cast<const char *>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    return concepts;
}

// The file open as the process's ontology, its concepts listed as the dialog lists them.
QStringList OpenForRun(const QString &path)
{
    ProcessState &p = Process();
    p.Quote = QStringLiteral("\"");
    p.OntoDB = store::DBEngine::OpenDatabase(path);
    return ReadBatchConcepts(true);
}

void CloseRun()
{
    Process().OntoDB.Close();
    ResetProcessState();
}

void BM_BatchNaming100k(benchmark::State &state)
{
    ScriptedInteraction user; // a box shown would be a failure
    const InteractionScope scope(user);
    for (auto _ : state) {
        state.PauseTiming();
        const QStringList concepts = OpenForRun(FreshCopy(false));
        state.ResumeTiming();
        if (AddBatchNames(concepts, QStringLiteral("fr"), false) != concepts.size())
            state.SkipWithError("a concept went without its name");
        state.PauseTiming();
        CloseRun();
        state.ResumeTiming();
    }
    if (!user.calls().isEmpty())
        state.SkipWithError("a box was shown");
}
BENCHMARK(BM_BatchNaming100k)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_RawBatchNaming100k(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        sqlite3 *db = bench::OpenRaw(FreshCopy(false));
        const std::vector<std::string> concepts = AllConcepts(db);
        state.ResumeTiming();
        sqlite3_stmt *find = nullptr;
        sqlite3_stmt *insert = nullptr;
        bench::Check(
            sqlite3_prepare_v2(db, "SELECT 1 FROM CONCEPTS WHERE Concept = ?", -1, &find, nullptr),
            db);
        bench::Check(
            sqlite3_prepare_v2(db, "INSERT INTO Names (Concept, Lang_ID, Name) VALUES (?, 'fr', ?)",
                               -1, &insert, nullptr),
            db);
        for (const std::string &concept_ : concepts) {
            sqlite3_bind_text(find, 1, concept_.data(), int(concept_.size()), SQLITE_STATIC);
            const bool found = sqlite3_step(find) == SQLITE_ROW;
            sqlite3_reset(find);
            if (!found)
                continue;
            sqlite3_bind_text(insert, 1, concept_.data(), int(concept_.size()), SQLITE_STATIC);
            sqlite3_bind_text(insert, 2, concept_.data(), int(concept_.size()), SQLITE_STATIC);
            if (sqlite3_step(insert) != SQLITE_DONE)
                state.SkipWithError(sqlite3_errmsg(db));
            sqlite3_reset(insert);
        }
        sqlite3_finalize(find);
        sqlite3_finalize(insert);
        state.PauseTiming();
        sqlite3_close(db);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_RawBatchNaming100k)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_BatchRemoveNames100k(benchmark::State &state)
{
    ScriptedInteraction user;
    const InteractionScope scope(user);
    for (auto _ : state) {
        state.PauseTiming();
        const QStringList concepts = OpenForRun(FreshCopy(true));
        state.ResumeTiming();
        if (RemoveBatchNames(concepts, QStringLiteral("fr")) < concepts.size())
            state.SkipWithError("a name was left");
        state.PauseTiming();
        CloseRun();
        state.ResumeTiming();
    }
    if (!user.calls().isEmpty())
        state.SkipWithError("a box was shown");
}
BENCHMARK(BM_BatchRemoveNames100k)->Unit(benchmark::kMillisecond)->Iterations(1);

// The "+" keeps SQLite on the Concept index: by the language it would visit every French name
// for each concept.
void BM_RawBatchRemoveNames100k(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        sqlite3 *db = bench::OpenRaw(FreshCopy(true));
        const std::vector<std::string> concepts = AllConcepts(db);
        state.ResumeTiming();
        sqlite3_stmt *remove = nullptr;
        bench::Check(sqlite3_prepare_v2(db,
                                        "DELETE FROM Names WHERE Concept = ? AND +Lang_ID = 'fr'",
                                        -1, &remove, nullptr),
                     db);
        for (const std::string &concept_ : concepts) {
            sqlite3_bind_text(remove, 1, concept_.data(), int(concept_.size()), SQLITE_STATIC);
            if (sqlite3_step(remove) != SQLITE_DONE)
                state.SkipWithError(sqlite3_errmsg(db));
            sqlite3_reset(remove);
        }
        sqlite3_finalize(remove);
        state.PauseTiming();
        sqlite3_close(db);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_RawBatchRemoveNames100k)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
