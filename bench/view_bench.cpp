// Opening ontologies of 100,000 and 350,000 concepts and typing in the search box, with the slow
// parts of the view off, through the editor interface without a window.
#include "bench_data.h"
#include "core/interaction.h"
#include "core/process.h"
#include "hierarchy_data.h"
#include "ontology/edit/concept_view.h"
#include "ontology/store/concept_list.h"
#include "ontology/store/lifecycle.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <stdexcept>

using namespace lx;

namespace {

// A copy of the hierarchy, ready to open.
const QString &ViewFile()
{
    static const QString path = [] {
        const QString copy =
            QFileInfo(bench::HierarchyFile()).dir().filePath(QStringLiteral("view.ont"));
        QFile::remove(copy);
        if (!QFile::copy(bench::HierarchyFile(), copy))
            throw std::runtime_error("cannot copy the hierarchy");
        bench::MakeOpenable(copy, bench::DeepConcept());
        return copy;
    }();
    return path;
}

// The window as the logic sees it: the list's rows read as the real list reads them, a page at a
// time as they are shown (here only the first), the view read whole and dropped.
class HeadlessEditor : public WindowlessEditor {
public:
    void LoadConceptView() override
    {
        if (CurrentConcept.isEmpty())
            return;
        const ConceptViewData view = ReadConceptView(CurrentConcept, CurrentType);
        CurrentType = view.Type;
        benchmark::DoNotOptimize(view);
    }
    void ShowConceptList() override { rows = ListRows(&rsList, QStringLiteral("Concept")); }
    QString SelectFirstListRow() override { return rows.text(0); }

    // The search box's change: the first match by prefix, then the whole view.
    void Search(const QString &text)
    {
        if (const std::optional<store::Bookmark> found = FindConceptByPrefix(rsList, text))
            CurrentConcept = rows.text(rows.rowOf(*found));
        LoadConceptView();
    }

    ListRows rows;
};

// The program's boxes and pointer with nobody at the screen; a box shown means a failure.
class Headless : public ScriptedInteraction {
public:
    Headless() : m_scope(*this) {}
    bool failed() const { return !calls().isEmpty(); }

private:
    InteractionScope m_scope;
};

void OpenEveryConcept(benchmark::State &state, const QString &file, int concepts)
{
    Headless ui;
    for (auto _ : state) {
        HeadlessEditor editor;
        Process().Quote = QStringLiteral("\""); // as the window's load sets it
        QString path = file;
        OpenOntology(editor, path);
        if (ui.failed() || editor.ListedConcepts != concepts || editor.TotalConcepts != concepts)
            state.SkipWithError("not every concept listed");
        state.PauseTiming();
        CloseOntology(editor, path);
        ResetProcessState();
        state.ResumeTiming();
    }
}

void BM_OpenOntology100k(benchmark::State &state)
{
    OpenEveryConcept(state, ViewFile(), bench::kConcepts);
}
BENCHMARK(BM_OpenOntology100k)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_OpenOntology350k(benchmark::State &state)
{
    OpenEveryConcept(state, bench::LargeHierarchyFile(), bench::kLargeConcepts);
}
BENCHMARK(BM_OpenOntology350k)->Unit(benchmark::kMillisecond)->Iterations(5);

// One key per iteration: the last identifier of the list typed key by key, where every prefix
// scans the snapshot from its first row (the worst case of the search), then the deep concept,
// whose view has something in every list.
void BM_SearchKeystroke(benchmark::State &state)
{
    Headless ui;
    HeadlessEditor editor;
    Process().Quote = QStringLiteral("\"");
    QString path = ViewFile();
    OpenOntology(editor, path);
    QStringList keys;
    for (const QString &target : {editor.rows.text(editor.rows.size() - 1), bench::DeepConcept()}) {
        for (qsizetype n = 1; n <= target.size(); ++n)
            keys.append(target.left(n));
    }
    qsizetype key = 0;
    for (auto _ : state) {
        editor.Search(keys[key]);
        key = (key + 1) % keys.size();
    }
    if (ui.failed())
        state.SkipWithError("the open or the search failed");
    CloseOntology(editor, path);
    ResetProcessState();
}
BENCHMARK(BM_SearchKeystroke)->Unit(benchmark::kMillisecond);

// The first search after an open for the last identifier of a 350,000-concept list: the rows
// that the open leaves unread are read here, once.
void BM_SearchLastAfterOpen350k(benchmark::State &state)
{
    Headless ui;
    QString last;
    for (auto _ : state) {
        state.PauseTiming();
        HeadlessEditor editor;
        Process().Quote = QStringLiteral("\"");
        QString path = bench::LargeHierarchyFile();
        OpenOntology(editor, path);
        if (last.isEmpty()) {
            last = editor.rows.text(editor.rows.size() - 1);
            InitRSListConcepts(editor); // a list as fresh as the open's
        }
        state.ResumeTiming();
        editor.Search(last);
        if (editor.CurrentConcept != last)
            state.SkipWithError("the last concept wasn't found");
        state.PauseTiming();
        CloseOntology(editor, path);
        ResetProcessState();
        state.ResumeTiming();
    }
    if (ui.failed())
        state.SkipWithError("the open or the search failed");
}
BENCHMARK(BM_SearchLastAfterOpen350k)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
