// The export file of a 100,000-concept ontology, and its import into an empty one, against the
// same rows inserted with plain SQLite one committed row at a time.
#include "bench_data.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "hierarchy_data.h"
#include "ontology/exchange/export.h"
#include "ontology/exchange/import.h"
#include "publish/text_channel.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdexcept>

using namespace lx;

namespace {

using bench::Beside;

QString Copy(const QString &from, const QString &name)
{
    const QString to = Beside(name);
    bench::CopyFresh(from, to);
    return to;
}

// The hierarchy with a subset, open as the process's ontology.
void OpenHierarchy(const QString &name)
{
    const QString path = Copy(bench::HierarchyFile(), name);
    bench::MakeOpenable(path, bench::DeepConcept());
    Process().Quote = QStringLiteral("\"");
    Process().OntoDB = store::DBEngine::OpenDatabase(path);
}

QStringList AllConcepts()
{
    QStringList ids;
    store::Recordset rs = Process().OntoDB.OpenRecordset(
        QStringLiteral("SELECT Concept FROM CONCEPTS ORDER BY Concept"), store::dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        ids << rs.Value(u"Concept").toString();
    return ids;
}

// The export of the whole hierarchy, made once.
const QString &ExportFile()
{
    static const QString path = [] {
        OpenHierarchy(QStringLiteral("export-source.ont"));
        const QString file = Beside(QStringLiteral("all.oxp"));
        WriteExportFile(file, AllConcepts());
        Process().OntoDB.Close();
        ResetProcessState();
        return file;
    }();
    return path;
}

void BM_Export100k(benchmark::State &state)
{
    OpenHierarchy(QStringLiteral("export.ont"));
    const QStringList ids = AllConcepts();
    ScriptedInteraction user;
    const InteractionScope scope(user);
    for (auto _ : state)
        WriteExportFile(Beside(QStringLiteral("out.oxp")), ids);
    if (!user.calls().isEmpty())
        state.SkipWithError("a box was shown");
    Process().OntoDB.Close();
    ResetProcessState();
}
BENCHMARK(BM_Export100k)->Unit(benchmark::kMillisecond)->Iterations(1);

// An empty ontology with the one subset the import gives new concepts.
QString EmptyTarget()
{
    const QString path = Copy(bench::FreshOntologyFile(), QStringLiteral("import.ont"));
    sqlite3 *db = bench::OpenRaw(path);
    bench::Exec(db, "INSERT OR IGNORE INTO Subsets (Subset_ID, Subset) VALUES (1, 'General')");
    sqlite3_close(db);
    return path;
}

void BM_Import100k(benchmark::State &state)
{
    const QString file = ExportFile();
    ScriptedInteraction user;
    const InteractionScope scope(user);
    for (auto _ : state) {
        state.PauseTiming();
        Process().Quote = QStringLiteral("\"");
        Process().OntoDB = store::DBEngine::OpenDatabase(EmptyTarget());
        OntologyImport import;
        import.FileName = file;
        import.CheckFile();
        state.ResumeTiming();
        benchmark::DoNotOptimize(import.Import());
        state.PauseTiming();
        Process().OntoDB.Close();
        ResetProcessState();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_Import100k)->Unit(benchmark::kMillisecond)->Iterations(1);

// The floor: the file's IS-A and DEFINITION records as plain inserts and updates, each
// committed by itself, the same look-ups before each.
void BM_RawImport100k(benchmark::State &state)
{
    const QStringList lines = ReadCodePageLines(ExportFile());
    for (auto _ : state) {
        state.PauseTiming();
        sqlite3 *db = bench::OpenRaw(EmptyTarget());
        sqlite3_stmt *find = nullptr, *addConcept = nullptr, *findLink = nullptr,
                     *addLink = nullptr, *define = nullptr;
        const auto prepare = [db](const char *sql, sqlite3_stmt **s) {
            bench::Check(sqlite3_prepare_v2(db, sql, -1, s, nullptr), db);
        };
        prepare("SELECT 1 FROM CONCEPTS WHERE Concept = ?", &find);
        prepare("INSERT INTO CONCEPTS (Concept, Type, Subset_ID) VALUES (?, ?, 1)", &addConcept);
        prepare("SELECT 1 FROM ISA WHERE Concept = ? AND ISA = ?", &findLink);
        prepare("INSERT INTO ISA (Concept, ISA) VALUES (?, ?)", &addLink);
        prepare("UPDATE CONCEPTS SET Definition = ? WHERE Concept = ?", &define);
        state.ResumeTiming();
        const auto text = [](sqlite3_stmt *s, int at, const QByteArray &value) {
            sqlite3_bind_text(s, at, value.constData(), int(value.size()), SQLITE_TRANSIENT);
        };
        const auto exists = [&](sqlite3_stmt *s) {
            const bool found = sqlite3_step(s) == SQLITE_ROW;
            sqlite3_reset(s);
            return found;
        };
        for (const QString &line : lines) {
            QStringList f;
            const int kind = ClassifyImportLine(line);
            if ((kind != 1 && kind != 3) || !ParseImportLine(line, kind, f))
                continue;
            const QByteArray owner = f[0].toUtf8(), filler = f[1].toUtf8();
            if (kind == 3) {
                text(define, 1, filler);
                text(define, 2, owner);
                sqlite3_step(define);
                sqlite3_reset(define);
                continue;
            }
            for (const QByteArray &id : {owner, filler}) {
                text(find, 1, id);
                if (exists(find))
                    continue;
                text(addConcept, 1, id);
                sqlite3_bind_int(addConcept, 2, f[2].toInt());
                sqlite3_step(addConcept);
                sqlite3_reset(addConcept);
            }
            text(findLink, 1, owner);
            text(findLink, 2, filler);
            if (!exists(findLink)) {
                text(addLink, 1, owner);
                text(addLink, 2, filler);
                sqlite3_step(addLink);
                sqlite3_reset(addLink);
            }
        }
        state.PauseTiming();
        for (sqlite3_stmt *s : {find, addConcept, findLink, addLink, define})
            sqlite3_finalize(s);
        sqlite3_close(db);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_RawImport100k)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
