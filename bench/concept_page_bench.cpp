// One concept page of a concept 15 levels deep in the 100,000-concept hierarchy, with all four
// options on: every ancestor on the way carries relation and attribute slots, the concept has
// slots, children and a definition of its own. Paired with the same bytes written by plain
// writes, the floor of the file alone.
#include "bench_data.h"
#include "core/process.h"
#include "core/store/database.h"
#include "hierarchy_data.h"
#include "publish/html_stuff.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <cstdio>
#include <sqlite3.h>
#include <stdexcept>
#include <string>

using namespace lx;

namespace {

using bench::Beside;

// Two relations and two attributes on each ancestor of the deep concept, out of a few names so
// that nearer ancestors replace what farther ones gave; some are defaults.
void AddAncestorSlots(sqlite3 *db, const std::string &deep)
{
    bench::Exec(db, "CREATE TEMP TABLE up AS WITH RECURSIVE a(c) AS (SELECT ISA FROM ISA WHERE "
                    "Concept = '" +
                        deep +
                        "' UNION SELECT ISA.ISA FROM ISA JOIN a ON ISA.Concept = a.c) "
                        "SELECT c, row_number() OVER (ORDER BY c) AS n FROM a WHERE c <> 'ALL'");
    for (int k = 0; k < 2; ++k) {
        const std::string name =
            "'PAGE-" + std::string(k ? "B" : "A") + "-' || ((n + " + std::to_string(k) + ") % 5)";
        bench::Exec(db, "INSERT INTO RELATIONS (Concept1, Rel, \"Default\", Concept2) SELECT c, " +
                            name + " || '-REL', n % 3 = 0, 'PAGE-FILLER-' || (n % 7) FROM up");
        bench::Exec(db,
                    "INSERT INTO ATTRIBUTES (Concept, Attribute, \"Default\", Value) SELECT c, " +
                        name + " || '-ATTR', n % 4 = 0, 'value ' || n || ' & more' FROM up");
    }
}

// A copy of the hierarchy with the slots, the deep concept's own rows and three children.
const QString &PageOntology()
{
    static const QString path = [] {
        const QString p = Beside(QStringLiteral("concept-page.ont"));
        bench::CopyFresh(bench::HierarchyFile(), p);
        const std::string deep = bench::DeepConcept().toStdString();
        sqlite3 *db = bench::OpenRaw(p);
        bench::Exec(db, "BEGIN");
        for (int i = 0; i < 7; ++i) {
            const std::string n = std::to_string(i);
            bench::Exec(db, "INSERT INTO CONCEPTS (Concept, Type) VALUES ('PAGE-FILLER-" + n +
                                "', 1), ('PAGE-A-" + n + "-REL', 4), ('PAGE-B-" + n +
                                "-REL', 4), ('PAGE-A-" + n + "-ATTR', 3), ('PAGE-B-" + n +
                                "-ATTR', 3)");
        }
        bench::Exec(db, "INSERT INTO CONCEPTS (Concept, Type) VALUES ('PAGE-OWN-REL', 4), "
                        "('PAGE-OWN-ATTR', 3)");
        AddAncestorSlots(db, deep);
        bench::Exec(db, "UPDATE CONCEPTS SET Definition = 'A concept deep down, with <b>a "
                        "definition</b> of the usual length.' WHERE Concept = '" +
                            deep + "'");
        for (int i = 0; i < 3; ++i) {
            const std::string child = "PAGE-CHILD-" + std::to_string(i);
            bench::Exec(db, "INSERT INTO CONCEPTS (Concept, Type) VALUES ('" + child + "', 1)");
            bench::Exec(db,
                        "INSERT INTO ISA (Concept, ISA) VALUES ('" + child + "', '" + deep + "')");
            bench::Exec(db, "INSERT INTO RELATIONS (Concept1, Rel, \"Default\", Concept2) VALUES "
                            "('" +
                                deep + "', 'PAGE-OWN-REL', 0, '" + child + "')");
            bench::Exec(db, "INSERT INTO ATTRIBUTES (Concept, Attribute, \"Default\", Value) "
                            "VALUES ('" +
                                deep + "', 'PAGE-OWN-ATTR', 0, 'own " + std::to_string(i) + "')");
        }
        bench::Exec(db, "COMMIT");
        sqlite3_close(db);
        return p;
    }();
    return path;
}

QString PageFolder()
{
    const QString folder = Beside(QStringLiteral("concept-page-publish"));
    QDir().mkpath(folder);
    return folder + QLatin1Char('/');
}

class OpenPageOntology {
public:
    OpenPageOntology()
    {
        ProcessState &p = Process();
        p.Quote = QStringLiteral("\"");
        p.TopConcept = QStringLiteral("ALL");
        p.OntoDB = store::DBEngine::OpenDatabase(PageOntology());
        p.rsInherit = p.OntoDB.OpenRecordset(QStringLiteral("Inherit"), store::dbOpenTable);
        p.rsInherit.SetIndex(QStringLiteral("Attr"));
    }
    ~OpenPageOntology()
    {
        Process().rsInherit.Close();
        Process().OntoDB.Close();
        ResetProcessState();
    }
    OpenPageOntology(const OpenPageOntology &) = delete;
    OpenPageOntology &operator=(const OpenPageOntology &) = delete;
};

// The options as bits: 1 ancestors, 2 descendants, 4 inherited relations, 8 inherited attributes.
QString WriteDeepPage(int options = 15)
{
    const QString folder = PageFolder();
    WriteConceptPage(bench::DeepConcept(), folder, options & 1, options & 2, options & 4,
                     options & 8);
    return folder + bench::DeepConcept() + QStringLiteral(".html");
}

void BM_WriteConceptPage(benchmark::State &state)
{
    const OpenPageOntology open;
    QString page;
    const int options = int(state.range(0));
    for (auto _ : state)
        page = WriteDeepPage(options);
    QFile file(page);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (options == 15 &&
        (!bytes.contains("INHERITED<br>RELATIONS") || !bytes.contains("INHERITED<br>ATTRIBUTES") ||
         !bytes.contains("DESCENDANTS")))
        state.SkipWithError("the page lacks rows");
    state.counters["bytes"] = double(bytes.size());
}
// The argument is the options as bits (see WriteDeepPage): 15 is all on, 0 the page alone.
BENCHMARK(BM_WriteConceptPage)->Arg(15)->Arg(0)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);

void BM_RawWriteConceptPage(benchmark::State &state)
{
    QByteArray bytes;
    QString page;
    {
        const OpenPageOntology open;
        page = WriteDeepPage();
        QFile file(page);
        if (file.open(QIODevice::ReadOnly))
            bytes = file.readAll();
    }
    const std::string path = page.toStdString();
    for (auto _ : state) {
        std::remove(path.c_str());
        std::FILE *out = std::fopen(path.c_str(), "wb");
        if (!out ||
            std::fwrite(bytes.constData(), 1, size_t(bytes.size()), out) != size_t(bytes.size()))
            state.SkipWithError("cannot write the page");
        if (out)
            std::fclose(out);
    }
    state.counters["bytes"] = double(bytes.size());
}
BENCHMARK(BM_RawWriteConceptPage)->Unit(benchmark::kMillisecond);

} // namespace
