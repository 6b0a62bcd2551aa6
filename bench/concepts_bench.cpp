// A concept added to and deleted from a 100,000-concept ontology linked to two termbases of
// 100,000 concepts each: the writes of the dialog, the first name and the propagation of an add;
// for a delete, its checks, its cascades through 1,000 slots naming it, the orphan sweep and the
// propagation.
#include "bench_data.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "hierarchy_data.h"
#include "ontology/edit/concepts.h"
#include "ontology/edit/links.h"
#include "ontology/edit/names.h"
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

using bench::Beside;
using bench::CopyFresh;

constexpr int kSlots = 1000;

// The hierarchy, openable, with kSlots relation slots naming the deep concept.
const QString &OntologyTemplate()
{
    static const QString path = [] {
        const QString p = Beside(QStringLiteral("concepts-template.ont"));
        CopyFresh(bench::HierarchyFile(), p);
        bench::MakeOpenable(p, bench::DeepConcept());
        const std::string deep = bench::DeepConcept().toStdString();
        sqlite3 *db = bench::OpenRaw(p);
        bench::InsertRows(
            db,
            "INSERT INTO RELATIONS (Concept1, Rel, Concept2, \"Default\") "
            "VALUES (?, 'ALL', ?, 0)",
            kSlots, [&](int i) {
                return std::vector<std::string>{bench::GeneratedIdentifier((i + 1) * 37), deep};
            });
        sqlite3_close(db);
        return p;
    }();
    return path;
}

// A termbase holding the deep concept and 100,000 others.
const QString &TermbaseTemplate()
{
    static const QString path = [] {
        const QString p = Beside(QStringLiteral("concepts-template.ltb"));
        store::Database tb = store::DBEngine::Workspaces(0).CreateDatabase(p, store::dbLangGeneral);
        BuildTermbaseTables(tb);
        tb.Close();
        const std::string deep = bench::DeepConcept().toStdString();
        sqlite3 *db = bench::OpenRaw(p);
        bench::InsertRows(
            db, "INSERT INTO CONCEPTS (Concept) VALUES (?)", bench::kConcepts + 1, [&](int i) {
                return std::vector<std::string>{
                    i == bench::kConcepts ? deep : "TB-" + bench::GeneratedIdentifier(i)};
            });
        sqlite3_close(db);
        return p;
    }();
    return path;
}

// Fresh copies of the ontology and of two termbases linked to it, open as the process's.
struct LinkedFiles {
    QString ontology = Beside(QStringLiteral("concepts.ont"));
    QStringList termbases{Beside(QStringLiteral("concepts-a.ltb")),
                          Beside(QStringLiteral("concepts-b.ltb"))};

    void open()
    {
        CopyFresh(OntologyTemplate(), ontology);
        for (const QString &tb : termbases)
            CopyFresh(TermbaseTemplate(), tb);
        ProcessState &p = Process();
        p.Quote = QStringLiteral("\"");
        p.OntoPath = ontology;
        p.OntoDB = store::DBEngine::OpenDatabase(ontology);
        p.OntoMeta.ActiveSet = 1;
        p.OntoMeta.DefLang = QStringLiteral("en");
        p.TopConcept = QStringLiteral("ALL");
        store::Recordset links =
            p.OntoDB.OpenRecordset(QStringLiteral("TermBases"), store::dbOpenTable);
        for (const QString &tb : termbases) {
            links.AddNew();
            links.Collect(u"DBName", tb);
            links.Update();
        }
    }
    static void close()
    {
        Process().OntoDB.Close();
        ResetProcessState();
    }
};

void BM_AddConcept100k(benchmark::State &state)
{
    LinkedFiles files;
    files.open();
    int n = 0;
    for (auto _ : state) {
        NewConceptTexts texts{
            QStringLiteral("NEW-CONCEPT-%1").arg(++n), {}, bench::DeepConcept(), ctObject};
        if (!AddConcept(texts, {}))
            state.SkipWithError("the add was refused");
        AddDefaultName(texts.Concept);
        PropagateConceptToTermBases(texts.Concept, texts.Concept, opAddConcept);
    }
    LinkedFiles::close();
}
BENCHMARK(BM_AddConcept100k)->Unit(benchmark::kMillisecond)->Iterations(20);

void BM_DeleteConcept100k(benchmark::State &state)
{
    LinkedFiles files;
    for (auto _ : state) {
        state.PauseTiming();
        files.open();
        WindowlessEditor editor;
        editor.rsInverses =
            Process().OntoDB.OpenRecordset(QStringLiteral("INVERSES"), store::dbOpenTable);
        editor.rsInverses.SetIndex(QStringLiteral("Relation"));
        editor.CurrentConcept = bench::DeepConcept();
        editor.CurrentType = ctObject;
        ScriptedInteraction user;
        const InteractionScope scope(user);
        user.answerMsgBox(msg::Yes);
        state.ResumeTiming();

        const std::optional<DeletedConcept> deleted = DeleteConcept(editor);
        if (!deleted)
            state.SkipWithError("the delete did not run");
        DeleteOrphanConcepts([](const QString &orphan) {
            PropagateConceptToTermBases(orphan, orphan, opDeleteConcept);
        });
        PropagateConceptToTermBases(deleted->Identifier, deleted->Identifier, opDeleteConcept);

        state.PauseTiming();
        editor.rsInverses.Close();
        LinkedFiles::close();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_DeleteConcept100k)->Unit(benchmark::kMillisecond)->Iterations(3);

// The same rows deleted straight in SQLite: the concept with its cascades, and the one
// orphan query; the termbase rows by key.
void BM_RawDeleteConcept100k(benchmark::State &state)
{
    LinkedFiles files;
    const std::string deep = bench::DeepConcept().toStdString();
    for (auto _ : state) {
        state.PauseTiming();
        files.open();
        LinkedFiles::close();
        state.ResumeTiming();
        sqlite3 *db = bench::OpenRaw(files.ontology);
        sqlite3_stmt *del = nullptr;
        bench::Check(
            sqlite3_prepare_v2(db, "DELETE FROM CONCEPTS WHERE Concept = ?", -1, &del, nullptr),
            db);
        sqlite3_bind_text(del, 1, deep.data(), int(deep.size()), SQLITE_TRANSIENT);
        bench::Check(sqlite3_step(del), db);
        sqlite3_finalize(del);
        bench::Exec(db, "SELECT CONCEPTS.Concept FROM CONCEPTS LEFT JOIN ISA ON CONCEPTS.Concept "
                        "= ISA.Concept WHERE CONCEPTS.Type <> 100 AND ISA.Concept IS NULL");
        sqlite3_close(db);
        for (const QString &path : files.termbases) {
            sqlite3 *tb = bench::OpenRaw(path);
            bench::Exec(tb, "DELETE FROM CONCEPTS WHERE Concept = '" + deep + "'");
            sqlite3_close(tb);
        }
    }
}
BENCHMARK(BM_RawDeleteConcept100k)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
