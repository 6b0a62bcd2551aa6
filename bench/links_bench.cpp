// Assigning a 100,000-concept termbase to a 100,000-concept ontology: every termbase concept is
// looked up in the ontology, every ontology concept in the termbase; one in a hundred differs.
#include "bench_data.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "ontology/edit/links.h"
#include "termbase/store/schema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdexcept>
#include <string>

using namespace lx;

namespace {

QString BesideConcepts(const QString &name)
{
    return QFileInfo(bench::ConceptsFile()).dir().filePath(name);
}

// The termbase as it is before each assignment: the ontology's identifiers, except that every
// hundredth is one of its own.
const QString &TermbaseTemplate()
{
    static const QString path = [] {
        const QString p = BesideConcepts(QStringLiteral("assign-template.ltb"));
        store::Database tb = store::DBEngine::Workspaces(0).CreateDatabase(p, store::dbLangGeneral);
        BuildTermbaseTables(tb);
        store::Recordset meta = tb.OpenRecordset(QStringLiteral("MetaData"), store::dbOpenTable);
        meta.AddNew();
        meta.Collect(u"Name", QStringLiteral("bench"));
        meta.Update();
        meta.Close();
        tb.Close();
        sqlite3 *db = bench::OpenRaw(p);
        bench::InsertRows(
            db, "INSERT INTO CONCEPTS (Concept) VALUES (?)", bench::kConcepts - 1, [](int i) {
                return std::vector<std::string>{i % 100 == 50 ? "TB-ONLY-" + std::to_string(i)
                                                              : bench::GeneratedIdentifier(i)};
            });
        sqlite3_close(db);
        return p;
    }();
    return path;
}

// A fresh copy of the ontology and of the termbase template for one run.
struct AssignFiles {
    QString ontology = BesideConcepts(QStringLiteral("assign.ont"));
    QString termbase = BesideConcepts(QStringLiteral("assign.ltb"));

    AssignFiles()
    {
        copy(bench::ConceptsFile(), ontology);
        freshTermbase();
    }
    void freshTermbase() const { copy(TermbaseTemplate(), termbase); }

private:
    static void copy(const QString &from, const QString &to)
    {
        for (const char *suffix : {"", "-wal", "-shm"})
            QFile::remove(to + QLatin1String(suffix));
        if (!QFile::copy(from, to))
            throw std::runtime_error("cannot copy a bench file");
    }
};

void BM_AssignTermbase100k(benchmark::State &state)
{
    const AssignFiles files;
    ProcessState &p = Process();
    p.Quote = QStringLiteral("\"");
    p.OntoPath = files.ontology;
    p.OntoDB = store::DBEngine::OpenDatabase(files.ontology);
    for (auto _ : state) {
        ScriptedInteraction user;
        const InteractionScope scope(user);
        user.answerMsgBox(msg::Yes).answerMsgBox(msg::OK);
        if (!AssignTermbase(files.termbase) || user.pendingAnswers() != 0 ||
            !user.unexpectedCalls().isEmpty())
            state.SkipWithError("the assignment did not run as scripted");
        state.PauseTiming();
        ReleaseTermbase(files.termbase);
        files.freshTermbase();
        state.ResumeTiming();
    }
    p.OntoDB.Close();
    ResetProcessState();
}
BENCHMARK(BM_AssignTermbase100k)->Unit(benchmark::kMillisecond)->Iterations(2);

// The same lookups, deletions and additions through prepared statements, each write committed
// on its own as the store does.
void BM_RawAssignTermbase100k(benchmark::State &state)
{
    const AssignFiles files;
    for (auto _ : state) {
        sqlite3 *onto = bench::OpenRaw(files.ontology);
        sqlite3 *tb = bench::OpenRaw(files.termbase);
        sqlite3_stmt *inOnto = nullptr, *tbAll = nullptr, *ontoAll = nullptr, *inTb = nullptr,
                     *del = nullptr, *add = nullptr;
        bench::Check(sqlite3_prepare_v2(onto, "SELECT 1 FROM CONCEPTS WHERE Concept = ?", -1,
                                        &inOnto, nullptr),
                     onto);
        bench::Check(
            sqlite3_prepare_v2(onto, "SELECT Concept FROM CONCEPTS", -1, &ontoAll, nullptr), onto);
        bench::Check(sqlite3_prepare_v2(tb, "SELECT Concept FROM CONCEPTS ORDER BY Concept", -1,
                                        &tbAll, nullptr),
                     tb);
        bench::Check(
            sqlite3_prepare_v2(tb, "SELECT 1 FROM CONCEPTS WHERE Concept = ?", -1, &inTb, nullptr),
            tb);
        bench::Check(
            sqlite3_prepare_v2(tb, "DELETE FROM CONCEPTS WHERE Concept = ?", -1, &del, nullptr),
            tb);
        bench::Check(
            sqlite3_prepare_v2(tb, "INSERT INTO CONCEPTS (Concept) VALUES (?)", -1, &add, nullptr),
            tb);
        std::vector<std::string> unmatched;
        while (sqlite3_step(tbAll) == SQLITE_ROW) {
            const char *id = reinterpret_cast<const char *>(sqlite3_column_text(tbAll, 0));
            sqlite3_bind_text(inOnto, 1, id, -1, SQLITE_TRANSIENT);
            if (sqlite3_step(inOnto) != SQLITE_ROW)
                unmatched.emplace_back(id);
            sqlite3_reset(inOnto);
        }
        for (const std::string &id : unmatched) {
            sqlite3_bind_text(del, 1, id.data(), int(id.size()), SQLITE_TRANSIENT);
            bench::Check(sqlite3_step(del), tb);
            sqlite3_reset(del);
        }
        while (sqlite3_step(ontoAll) == SQLITE_ROW) {
            const char *id = reinterpret_cast<const char *>(sqlite3_column_text(ontoAll, 0));
            sqlite3_bind_text(inTb, 1, id, -1, SQLITE_TRANSIENT);
            const bool present = sqlite3_step(inTb) == SQLITE_ROW;
            sqlite3_reset(inTb);
            if (!present) {
                sqlite3_bind_text(add, 1, id, -1, SQLITE_TRANSIENT);
                bench::Check(sqlite3_step(add), tb);
                sqlite3_reset(add);
            }
        }
        for (sqlite3_stmt *stmt : {inOnto, tbAll, ontoAll, inTb, del, add})
            sqlite3_finalize(stmt);
        sqlite3_close(tb);
        sqlite3_close(onto);
        state.PauseTiming();
        files.freshTermbase();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_RawAssignTermbase100k)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace
