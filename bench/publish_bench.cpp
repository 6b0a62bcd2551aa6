// The whole publish of an ontology: every concept's page with all sections, the index and the
// frame page. Paired with the same bytes written to the same files by plain writes, in the same
// run: the floor of the files alone.
#include "bench_data.h"
#include "core/process.h"
#include "core/store/database.h"
#include "hierarchy_data.h"
#include "publish/ontology_site.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <cstdio>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace lx;

namespace {

// A copy of `hierarchy` with slots: every fifth concept carries a relation to an earlier
// concept and an attribute, every fifteenth of them as a default, so that pages below them
// inherit something; the relation and attribute names are concepts of their own.
QString SlottedCopy(const QString &hierarchy, const QString &name)
{
    const QString path = QFileInfo(hierarchy).dir().filePath(name);
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(suffix));
    if (!QFile::copy(hierarchy, path))
        throw std::runtime_error("cannot copy the hierarchy");
    sqlite3 *db = bench::OpenRaw(path);
    bench::Exec(db, "BEGIN");
    for (int k = 0; k < 8; ++k) {
        const std::string n = std::to_string(k);
        bench::Exec(db, "INSERT INTO CONCEPTS (Concept, Type) VALUES ('SITE-REL-" + n +
                            "', 4), ('SITE-ATTR-" + n + "', 3)");
    }
    bench::Exec(db, "CREATE TEMP TABLE c AS SELECT Concept, rowid AS n FROM CONCEPTS "
                    "WHERE Concept NOT LIKE 'SITE-%'");
    bench::Exec(db, "INSERT INTO RELATIONS (Concept1, Rel, \"Default\", Concept2) "
                    "SELECT a.Concept, 'SITE-REL-' || (a.n % 8), a.n % 15 = 0, b.Concept "
                    "FROM c a JOIN c b ON b.n = a.n / 2 WHERE a.n % 5 = 0");
    bench::Exec(db, "INSERT INTO ATTRIBUTES (Concept, Attribute, \"Default\", Value) "
                    "SELECT Concept, 'SITE-ATTR-' || (n % 8), n % 15 = 0, 'value ' || n "
                    "FROM c WHERE n % 5 = 0");
    bench::Exec(db, "COMMIT");
    sqlite3_close(db);
    return path;
}

const QString &Slotted10k()
{
    static const QString path =
        SlottedCopy(bench::SmallHierarchyFile(), QStringLiteral("publish10k.ont"));
    return path;
}

QString SiteFolder(const QString &ontology)
{
    const QString folder = QFileInfo(ontology).dir().filePath(
        QFileInfo(ontology).completeBaseName() + QStringLiteral("-publish"));
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    return folder + QLatin1Char('/');
}

class OpenSiteOntology {
public:
    explicit OpenSiteOntology(const QString &path)
    {
        ProcessState &p = Process();
        p.Quote = QStringLiteral("\"");
        p.TopConcept = QStringLiteral("ALL");
        p.OntoDB = store::DBEngine::OpenDatabase(path);
        p.rsInherit = p.OntoDB.OpenRecordset(QStringLiteral("Inherit"), store::dbOpenTable);
        p.rsInherit.SetIndex(QStringLiteral("Attr"));
    }
    ~OpenSiteOntology()
    {
        Process().rsInherit.Close();
        Process().OntoDB.Close();
        ResetProcessState();
    }
    OpenSiteOntology(const OpenSiteOntology &) = delete;
    OpenSiteOntology &operator=(const OpenSiteOntology &) = delete;
};

// The site of the 10,000 concepts as written by the program: file names and bytes.
using Site = std::vector<std::pair<std::string, QByteArray>>;

Site ReadSite(const QString &folder)
{
    Site site;
    for (const QString &name : QDir(folder).entryList(QDir::Files)) {
        QFile file(folder + name);
        if (file.open(QIODevice::ReadOnly))
            site.emplace_back((folder + name).toStdString(), file.readAll());
    }
    return site;
}

const Site &Published10k()
{
    static const Site site = [] {
        const OpenSiteOntology open(Slotted10k());
        const QString folder = SiteFolder(Slotted10k());
        PublishWholeOntology(folder, QStringLiteral("bench"));
        return ReadSite(folder);
    }();
    return site;
}

void BM_PublishOntology10k(benchmark::State &state)
{
    const OpenSiteOntology open(Slotted10k());
    const QString folder = SiteFolder(Slotted10k());
    // The floor replaces pages that are there; so does every timed run. The first run into the
    // emptied folder is left out: creating files just after thousands were deleted costs the
    // file system several times as much, whoever writes them.
    PublishWholeOntology(folder, QStringLiteral("bench"));
    int pages = 0;
    for (auto _ : state)
        pages = PublishWholeOntology(folder, QStringLiteral("bench"));
    if (pages != bench::kSmallConcepts + 16)
        state.SkipWithError("not every concept got its page");
    size_t bytes = 0;
    for (const auto &[name, content] : ReadSite(folder))
        bytes += size_t(content.size());
    state.counters["pages"] = pages;
    state.counters["MB"] = double(bytes) / 1e6;
}
BENCHMARK(BM_PublishOntology10k)->Unit(benchmark::kSecond)->Iterations(2);

void BM_RawWritePages10k(benchmark::State &state)
{
    const Site &site = Published10k();
    size_t bytes = 0;
    for (auto _ : state) {
        bytes = 0;
        for (const auto &[path, content] : site) {
            std::remove(path.c_str());
            std::FILE *out = std::fopen(path.c_str(), "wb");
            if (!out || std::fwrite(content.constData(), 1, size_t(content.size()), out) !=
                            size_t(content.size()))
                state.SkipWithError("cannot write a page");
            if (out)
                std::fclose(out);
            bytes += size_t(content.size());
        }
    }
    state.counters["pages"] = double(site.size());
    state.counters["MB"] = double(bytes) / 1e6;
}
BENCHMARK(BM_RawWritePages10k)->Unit(benchmark::kSecond);

// The 100,000-concept hierarchy, once: long, so only when LEXARBOR_BENCH_WHOLE_PUBLISH is set.
void BM_PublishOntology100k(benchmark::State &state)
{
    if (qEnvironmentVariableIsEmpty("LEXARBOR_BENCH_WHOLE_PUBLISH")) {
        state.SkipWithError("set LEXARBOR_BENCH_WHOLE_PUBLISH=1 to run");
        for (auto _ : state) {
        }
        return;
    }
    const QString file = SlottedCopy(bench::HierarchyFile(), QStringLiteral("publish100k.ont"));
    const OpenSiteOntology open(file);
    const QString folder = SiteFolder(file);
    int pages = 0;
    for (auto _ : state)
        pages = PublishWholeOntology(folder, QStringLiteral("bench"));
    state.counters["pages"] = pages;
}
BENCHMARK(BM_PublishOntology100k)->Unit(benchmark::kSecond)->Iterations(1);

} // namespace
