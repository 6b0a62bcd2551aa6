// A relation slot added on a 100,000-concept ontology holding 200,000 slots already: the add of
// the slot dialog (the search for the slot, the inverse, both rows) and the list of the concept
// on screen read again, against the same writes and read in plain SQLite.
#include "bench_data.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "hierarchy_data.h"
#include "ontology/edit/concept_view.h"
#include "ontology/edit/slots.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdexcept>
#include <string>

using namespace lx;

namespace {

constexpr int kExistingSlots = 200000;

// The hierarchy, openable, with the relation pair OWNS/OWNED-BY and kExistingSlots slots
// between its concepts.
const QString &SlotsFile()
{
    static const QString path = [] {
        const QString p =
            QFileInfo(bench::HierarchyFile()).dir().filePath(QStringLiteral("slots.ont"));
        for (const char *suffix : {"", "-wal", "-shm"})
            QFile::remove(p + QLatin1String(suffix));
        if (!QFile::copy(bench::HierarchyFile(), p))
            throw std::runtime_error("cannot copy a bench file");
        bench::MakeOpenable(p, bench::DeepConcept());
        sqlite3 *db = bench::OpenRaw(p);
        bench::Exec(db, "INSERT INTO CONCEPTS (Concept, Definition, Type, Subset_ID) VALUES "
                        "('OWNS', 'Undefined', 4, 1), ('OWNED-BY', 'Undefined', 4, 1)");
        bench::Exec(db, "INSERT INTO INVERSES (Relation, Inverse) VALUES ('OWNS', 'OWNED-BY'), "
                        "('OWNED-BY', 'OWNS')");
        bench::InsertRows(
            db,
            "INSERT INTO RELATIONS (Concept1, Rel, Concept2, \"Default\") "
            "VALUES (?, 'OWNS', ?, 0)",
            kExistingSlots, [](int i) {
                return std::vector<std::string>{
                    bench::GeneratedIdentifier(1 + i % (bench::kConcepts - 1)),
                    bench::GeneratedIdentifier(1 + (i * 7 + 13) % (bench::kConcepts - 1))};
            });
        sqlite3_close(db);
        return p;
    }();
    return path;
}

// A fresh copy, so that every run adds to the same file.
QString FreshCopy()
{
    const QString copy = QFileInfo(SlotsFile()).dir().filePath(QStringLiteral("slots-run.ont"));
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(copy + QLatin1String(suffix));
    if (!QFile::copy(SlotsFile(), copy))
        throw std::runtime_error("cannot copy a bench file");
    return copy;
}

QString Owner(int i)
{
    return QString::fromStdString(
        bench::GeneratedIdentifier(1 + (i * 101 + 5) % (bench::kConcepts - 1)));
}

QString Related(int i)
{
    return QString::fromStdString(
        bench::GeneratedIdentifier(1 + (i * 53 + 11) % (bench::kConcepts - 1)));
}

void BM_AddRelationSlot100k(benchmark::State &state)
{
    const QString path = FreshCopy();
    ProcessState &p = Process();
    p.Quote = QStringLiteral("\"");
    p.OntoDB = store::DBEngine::OpenDatabase(path);
    ScriptedInteraction user; // a box shown would be a failure
    const InteractionScope scope(user);
    int n = 0;
    for (auto _ : state) {
        SlotDialogTexts texts;
        texts.Concept = Owner(++n);
        texts.Relation = QStringLiteral("OWNS");
        texts.Related = Related(n);
        if (AddRelationSlot(texts) != SlotAdd::Added)
            state.SkipWithError("the slot was not added");
        benchmark::DoNotOptimize(ReadRelationSlots(texts.Concept));
    }
    if (!user.calls().isEmpty())
        state.SkipWithError("a box was shown");
    p.OntoDB.Close();
    ResetProcessState();
}
BENCHMARK(BM_AddRelationSlot100k)->Unit(benchmark::kMillisecond)->Iterations(200);

// The floor: the inverse looked up, both rows written, the concept's slots read back, each
// statement prepared once.
void BM_RawAddRelationSlot100k(benchmark::State &state)
{
    sqlite3 *db = bench::OpenRaw(FreshCopy());
    sqlite3_stmt *inverse = nullptr;
    sqlite3_stmt *insert = nullptr;
    sqlite3_stmt *read = nullptr;
    bench::Check(sqlite3_prepare_v2(db, "SELECT Inverse FROM INVERSES WHERE Relation = ?", -1,
                                    &inverse, nullptr),
                 db);
    bench::Check(sqlite3_prepare_v2(db,
                                    "INSERT INTO RELATIONS (Concept1, Rel, Concept2) "
                                    "VALUES (?, ?, ?)",
                                    -1, &insert, nullptr),
                 db);
    bench::Check(sqlite3_prepare_v2(db,
                                    "SELECT Rel, Concept2, \"Default\" FROM RELATIONS "
                                    "WHERE Concept1 = ? ORDER BY Rel",
                                    -1, &read, nullptr),
                 db);
    const auto bind = [](sqlite3_stmt *s, int at, const std::string &text) {
        sqlite3_bind_text(s, at, text.c_str(), int(text.size()), SQLITE_TRANSIENT);
    };
    int n = 0;
    for (auto _ : state) {
        const std::string owner = Owner(++n).toStdString();
        const std::string related = Related(n).toStdString();
        bind(inverse, 1, "OWNS");
        sqlite3_step(inverse);
        const std::string inv = reinterpret_cast<const char *>(sqlite3_column_text(inverse, 0));
        sqlite3_reset(inverse);
        for (const auto &[a, rel, b] :
             {std::tuple{owner, std::string("OWNS"), related}, std::tuple{related, inv, owner}}) {
            bind(insert, 1, a);
            bind(insert, 2, rel);
            bind(insert, 3, b);
            if (sqlite3_step(insert) != SQLITE_DONE)
                state.SkipWithError(sqlite3_errmsg(db));
            sqlite3_reset(insert);
        }
        bind(read, 1, owner);
        while (sqlite3_step(read) == SQLITE_ROW)
            benchmark::DoNotOptimize(sqlite3_column_text(read, 1));
        sqlite3_reset(read);
    }
    for (sqlite3_stmt *s : {inverse, insert, read})
        sqlite3_finalize(s);
    sqlite3_close(db);
}
BENCHMARK(BM_RawAddRelationSlot100k)->Unit(benchmark::kMillisecond)->Iterations(200);

} // namespace
