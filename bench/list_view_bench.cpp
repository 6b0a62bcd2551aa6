// The descendants of the top concept of a 350,000-concept ontology, walked and shown in the
// window's list of descendants, without a window on screen.
#include "core/process.h"
#include "hierarchy_data.h"
#include "ontology/edit/concept_view.h"
#include "ui/list_views.h"

#include <QListView>
#include <QWidget>

#include <benchmark/benchmark.h>

using namespace lx;

namespace {

void BM_LoadDescendantsTop350k(benchmark::State &state)
{
    Process().Quote = QStringLiteral("\"");
    Process().OntoDB = store::DBEngine::OpenDatabase(bench::LargeHierarchyFile());
    QWidget tab;
    QListView *list = ui::MakeTextList(&tab, QStringLiteral("lstDescendants"));
    list->resize(300, 400);
    const QString top = QStringLiteral("ALL");
    for (auto _ : state) {
        ui::SetTexts(list, ReadDescendants(top));
        list->doItemsLayout();
        if (list->model()->rowCount() != bench::kLargeConcepts - 1)
            state.SkipWithError("wrong count");
        state.PauseTiming();
        ui::SetTexts(list, {});
        state.ResumeTiming();
    }
    Process().OntoDB.Close();
    ResetProcessState();
}
BENCHMARK(BM_LoadDescendantsTop350k)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
