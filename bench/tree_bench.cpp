// Expanding a node of 10,000 children in the hierarchy tree window, without a window on
// screen, against the same reads in raw SQLite.
#include "bench_data.h"
#include "core/process.h"
#include "ontology/views/hierarchy_reads.h"
#include "ui/frm_part_tree.h"

#include <QTreeWidget>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <string>
#include <vector>

using namespace lx;

namespace {

constexpr int kWideChildren = 10000;
// One child in this many has a child of its own, so that its node gets a dummy.
constexpr int kParentShare = 10;

// "WIDE" under the seed's "OBJECT", with kWideChildren children.
const QString &WideFile()
{
    static const QString path = [] {
        const QString p = bench::FreshOntologyFile();
        sqlite3 *db = bench::OpenRaw(p);
        const auto child = [](int i) { return "W-" + bench::GeneratedIdentifier(i); };
        const auto grandchild = [](int i) { return "G-" + bench::GeneratedIdentifier(i); };
        const int grandchildren = kWideChildren / kParentShare;
        bench::Exec(db, "INSERT INTO CONCEPTS (Concept, Definition, Type, Subset_ID) VALUES "
                        "('WIDE', 'Undefined', 1, 1)");
        bench::Exec(db, "INSERT INTO ISA (Concept, ISA) VALUES ('WIDE', 'OBJECT')");
        const char *addConcept = "INSERT INTO CONCEPTS (Concept, Definition, Type, Subset_ID) "
                                 "VALUES (?, 'Undefined', 1, 1)";
        bench::InsertRows(db, addConcept, kWideChildren,
                          [&](int i) { return std::vector<std::string>{child(i)}; });
        bench::InsertRows(db, addConcept, grandchildren,
                          [&](int i) { return std::vector<std::string>{grandchild(i)}; });
        const char *link = "INSERT INTO ISA (Concept, ISA) VALUES (?, ?)";
        bench::InsertRows(db, link, kWideChildren, [&](int i) {
            return std::vector<std::string>{child(i), "WIDE"};
        });
        bench::InsertRows(db, link, grandchildren, [&](int i) {
            return std::vector<std::string>{grandchild(i), child(i * kParentShare)};
        });
        sqlite3_close(db);
        return p;
    }();
    return path;
}

class OpenWide {
public:
    OpenWide()
    {
        Process().Quote = QStringLiteral("\"");
        Process().OntoDB = store::DBEngine::OpenDatabase(WideFile());
    }
    ~OpenWide()
    {
        Process().OntoDB.Close();
        ResetProcessState();
    }
    OpenWide(const OpenWide &) = delete;
    OpenWide &operator=(const OpenWide &) = delete;
};

// The user's expansion of the node in the window: the level read and its 10,000 items made;
// the collapse that drops them again isn't timed.
void BM_ExpandNode10k(benchmark::State &state)
{
    const OpenWide open;
    ui::frmPartTree tree;
    tree.lblTopNode->setCaption(QStringLiteral("WIDE"));
    QTreeWidgetItem *root = tree.Tree1->topLevelItem(0);
    for (auto _ : state) {
        tree.Tree1->expandItem(root);
        if (root->childCount() != kWideChildren)
            state.SkipWithError("wrong count");
        state.PauseTiming();
        tree.Tree1->collapseItem(root);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_ExpandNode10k)->Unit(benchmark::kMillisecond);

// The reads alone, without the items.
void BM_ReadTreeLevel10k(benchmark::State &state)
{
    const OpenWide open;
    for (auto _ : state) {
        const QList<TreeChild> level = ReadTreeLevel(QStringLiteral("WIDE"));
        if (level.size() != kWideChildren)
            state.SkipWithError("wrong count");
        benchmark::DoNotOptimize(level);
    }
}
BENCHMARK(BM_ReadTreeLevel10k)->Unit(benchmark::kMillisecond);

// The floor: the children in order, then one look-up per child for children of its own.
void BM_RawExpandNode10k(benchmark::State &state)
{
    sqlite3 *db = bench::OpenRaw(WideFile());
    sqlite3_stmt *level = nullptr;
    sqlite3_stmt *below = nullptr;
    bench::Check(sqlite3_prepare_v2(db, "SELECT Concept FROM ISA WHERE ISA = ?1 ORDER BY Concept",
                                    -1, &level, nullptr),
                 db);
    bench::Check(
        sqlite3_prepare_v2(db, "SELECT 1 FROM ISA WHERE ISA = ?1 LIMIT 1", -1, &below, nullptr),
        db);
    sqlite3_bind_text(level, 1, "WIDE", -1, SQLITE_STATIC);
    for (auto _ : state) {
        bench::Exec(db, "BEGIN"); // one read of the file, as the store's own look-ups make
        std::vector<std::pair<std::string, bool>> children;
        while (sqlite3_step(level) == SQLITE_ROW)
            children.emplace_back(reinterpret_cast<const char *>(sqlite3_column_text(level, 0)),
                                  false);
        sqlite3_reset(level);
        for (auto &[text, hasChildren] : children) {
            sqlite3_bind_text(below, 1, text.data(), int(text.size()), SQLITE_STATIC);
            hasChildren = sqlite3_step(below) == SQLITE_ROW;
            sqlite3_reset(below);
        }
        bench::Exec(db, "COMMIT");
        if (children.size() != size_t(kWideChildren))
            state.SkipWithError("wrong count");
        benchmark::DoNotOptimize(children);
    }
    sqlite3_finalize(level);
    sqlite3_finalize(below);
    sqlite3_close(db);
}
BENCHMARK(BM_RawExpandNode10k)->Unit(benchmark::kMillisecond);

} // namespace
