// The inheritance engine on the 100,000-concept hierarchy, for a concept at its deepest level.
#include "bench_data.h"
#include "core/process.h"
#include "hierarchy_data.h"
#include "ontology/edit/inheritance.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <map>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

using namespace lx;

namespace {

std::vector<std::string> ancestorsOf(sqlite3 *db, const std::string &concept_)
{
    sqlite3_stmt *stmt = nullptr;
    bench::Check(
        sqlite3_prepare_v2(db,
                           "WITH RECURSIVE a(c) AS (SELECT ISA FROM ISA WHERE Concept = ?1 "
                           "UNION SELECT ISA.ISA FROM ISA JOIN a ON ISA.Concept = a.c) "
                           "SELECT c FROM a WHERE c <> 'ALL'",
                           -1, &stmt, nullptr),
        db);
    sqlite3_bind_text(stmt, 1, concept_.c_str(), -1, SQLITE_TRANSIENT);
    std::vector<std::string> found;
    while (sqlite3_step(stmt) == SQLITE_ROW)
        found.emplace_back(reinterpret_cast<const char *>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    return found;
}

// A copy of the hierarchy whose deep concept's ancestors carry slots: on each, `perAncestor`
// relations and as many attributes out of a few names, so later ancestors replace, exclude
// and block what earlier ones gave; some are defaults. The deep concept has two of its own.
QString SlottedHierarchy(int perAncestor)
{
    static std::map<int, QString> files;
    QString &path = files[perAncestor];
    if (path.isEmpty()) {
        const QString copy = QFileInfo(bench::HierarchyFile())
                                 .dir()
                                 .filePath(QStringLiteral("slotted-%1.ont").arg(perAncestor));
        if (!QFile::copy(bench::HierarchyFile(), copy))
            throw std::runtime_error("cannot copy the hierarchy");
        sqlite3 *db = bench::OpenRaw(copy);
        bench::Exec(db, "BEGIN");
        for (int i = 0; i < 8; ++i) {
            bench::Exec(db, "INSERT INTO CONCEPTS (Concept, Type) VALUES ('BENCH-REL-" +
                                std::to_string(i) + "', 4), ('BENCH-ATTR-" + std::to_string(i) +
                                "', 3), ('BENCH-FILLER-" + std::to_string(i) + "', 1)");
        }
        bench::Exec(db, "INSERT OR IGNORE INTO CONCEPTS (Concept, Type) VALUES ('*NOTHING*', 1)");
        const std::string deep = bench::DeepConcept().toStdString();
        int n = 0;
        for (const std::string &ancestor : ancestorsOf(db, deep)) {
            for (int k = 0; k < perAncestor; ++k, ++n) {
                const std::string which = std::to_string((n * 7 + k) % 8);
                const std::string isDefault = n % 5 == 0 ? "-1" : "0";
                const std::string filler =
                    n % 11 == 0 ? "*NOTHING*" : "BENCH-FILLER-" + std::to_string(n % 8);
                bench::Exec(
                    db, "INSERT INTO RELATIONS (Concept1, Rel, \"Default\", Concept2) VALUES ('" +
                            ancestor + "', 'BENCH-REL-" + which + "', " + isDefault + ", '" +
                            filler + "')");
                bench::Exec(db, "INSERT INTO ATTRIBUTES (Concept, Attribute, \"Default\", Value) "
                                "VALUES ('" +
                                    ancestor + "', 'BENCH-ATTR-" + which + "', " + isDefault +
                                    ", 'value " + std::to_string(n % 13) + "')");
            }
        }
        bench::Exec(db, "INSERT INTO RELATIONS (Concept1, Rel, \"Default\", Concept2) VALUES ('" +
                            deep + "', 'BENCH-REL-1', 0, 'BENCH-FILLER-1')");
        bench::Exec(db,
                    "INSERT INTO ATTRIBUTES (Concept, Attribute, \"Default\", Value) VALUES ('" +
                        deep + "', 'BENCH-ATTR-2', 0, '*NOTHING*')");
        bench::Exec(db, "COMMIT");
        sqlite3_close(db);
        path = copy;
    }
    return path;
}

void BM_ComputeInheritanceDeep(benchmark::State &state)
{
    Process().Quote = QStringLiteral("\"");
    Process().TopConcept = QStringLiteral("ALL");
    Process().OntoDB = store::DBEngine::OpenDatabase(SlottedHierarchy(int(state.range(0))));
    Process().rsInherit =
        Process().OntoDB.OpenRecordset(QStringLiteral("Inherit"), store::dbOpenTable);
    Process().rsInherit.SetIndex(QStringLiteral("Attr"));
    const QString deep = bench::DeepConcept();
    for (auto _ : state)
        ComputeInheritance(deep, kCumulative, kIncludeAll);
    const auto rows = InheritRows();
    if (rows.empty())
        state.SkipWithError("nothing inherited");
    state.counters["rows"] = double(rows.size());
    Process().rsInherit.Close();
    Process().OntoDB.Close();
    ResetProcessState();
}
// The argument is the number of relations, and of attributes, on each ancestor.
BENCHMARK(BM_ComputeInheritanceDeep)->Arg(1)->Arg(3)->Unit(benchmark::kMillisecond);

} // namespace
