// The TBX-Basic import of the 100,000-entry termbase's export into an empty termbase under an
// ontology that has its concepts, against a plain reading of the same file with the same rows
// written by prepared SQLite statements.
#include "bench_data.h"
#include "core/process.h"
#include "core/store/database.h"
#include "termbase/exchange/tbx_export.h"
#include "termbase/exchange/tbx_import.h"
#include "termbase/store/schema.h"
#include "termbase_data.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

using namespace lx;

namespace {

struct ImportFiles {
    QString tbx;      // the export of the large termbase
    QString ontology; // the concepts of its entries
    QString empty;    // a termbase with no entries under that ontology
    QString target;   // a fresh copy of `empty` for each run
};

const ImportFiles &Files()
{
    static const ImportFiles files = [] {
        const bench::TermbaseFiles &large = bench::Files();
        const QDir dir = QFileInfo(large.termbase).dir();
        ImportFiles f;
        f.tbx = dir.filePath(QStringLiteral("import.tbx"));
        f.ontology = dir.filePath(QStringLiteral("import.ont"));
        f.empty = dir.filePath(QStringLiteral("empty.ltb"));
        f.target = dir.filePath(QStringLiteral("target.ltb"));
        ExportTbx(large.termbase, f.tbx);
        QFile::copy(large.ontology, f.ontology);
        sqlite3 *db = bench::OpenRaw(f.ontology);
        bench::InsertRows(db,
                          "INSERT INTO CONCEPTS (Concept, definition, Type, subset_ID) VALUES "
                          "(?, 'Undefined', 1, 1)",
                          bench::kEntries,
                          [](int i) { return std::vector<std::string>{bench::EntryConcept(i)}; });
        sqlite3_close(db);
        ProcessState &p = Process();
        p.Quote = QStringLiteral("\"");
        p.OntoDB = store::DBEngine::OpenDatabase(f.ontology);
        CreateTermbaseSchema(f.empty);
        p.OntoDB.Close();
        ResetProcessState();
        return f;
    }();
    return files;
}

void FreshTarget()
{
    QFile::remove(Files().target);
    QFile::copy(Files().empty, Files().target);
}

void BM_TbxImport100k(benchmark::State &state)
{
    Files();
    TbxImportResult result;
    for (auto _ : state) {
        state.PauseTiming();
        FreshTarget();
        ProcessState &p = Process();
        p.Quote = QStringLiteral("\"");
        p.OntoDB = store::DBEngine::OpenDatabase(Files().ontology);
        p.TermDB = store::DBEngine::OpenDatabase(Files().target);
        state.ResumeTiming();
        result = ImportTbx(Files().tbx, {});
        state.PauseTiming();
        p.TermDB.Close();
        p.OntoDB.Close();
        ResetProcessState();
        state.ResumeTiming();
    }
    if (result.Failed || result.Added != bench::kEntries)
        state.SkipWithError("entries missing");
    state.counters["MB"] = double(QFileInfo(Files().tbx).size()) / 1e6;
}
BENCHMARK(BM_TbxImport100k)->Unit(benchmark::kMillisecond)->Iterations(1);

// The floor: the file read once with the same reader, and for each entry its element, concept,
// sections, terms and notes inserted through prepared statements in one transaction.
void BM_RawTbxImport100k(benchmark::State &state)
{
    Files();
    for (auto _ : state) {
        state.PauseTiming();
        FreshTarget();
        state.ResumeTiming();
        sqlite3 *db = bench::OpenRaw(Files().target);
        bench::Exec(db, "BEGIN");
        {
            bench::Statement element(
                db, "INSERT INTO elements (elemID, categoryID, parentID) VALUES (?, ?, ?)");
            bench::Statement entry(db, "INSERT INTO TE_CONCEPTS (elemID, Concept) VALUES (?, ?)");
            bench::Statement lang(db,
                                  "INSERT INTO elements_use_lang (elemID, langID) VALUES (?, ?)");
            bench::Statement term(db, "INSERT INTO TERMS (elemID, term, langID) VALUES (?, ?, ?)");
            bench::Statement text(db, "INSERT INTO text_values (elemID, value) VALUES (?, ?)");
            QFile file(Files().tbx);
            file.open(QIODevice::ReadOnly);
            QXmlStreamReader xml(&file);
            int next = 1000, entryId = 0, sectionId = 0, termId = 0;
            std::string language;
            while (!xml.atEnd()) {
                if (xml.readNext() != QXmlStreamReader::StartElement)
                    continue;
                const QStringView name = xml.name();
                if (name == u"conceptEntry") {
                    entryId = ++next;
                    element.bind(1, entryId).bind(2, "0.3").bind(3, bench::kBody).run();
                    entry.bind(1, entryId)
                        .bind(2,
                              xml.attributes().value(QStringLiteral("id")).toString().toStdString())
                        .run();
                } else if (name == u"langSec") {
                    sectionId = ++next;
                    language =
                        xml.attributes().value(QStringLiteral("xml:lang")).toString().toStdString();
                    element.bind(1, sectionId).bind(2, "0.4").bind(3, entryId).run();
                    lang.bind(1, sectionId).bind(2, language).run();
                } else if (name == u"term") {
                    termId = ++next;
                    element.bind(1, termId).bind(2, "1").bind(3, sectionId).run();
                    term.bind(1, termId)
                        .bind(2, xml.readElementText().toStdString())
                        .bind(3, language)
                        .run();
                } else if (name == u"note") {
                    const int id = ++next;
                    element.bind(1, id).bind(2, "8").bind(3, termId).run();
                    text.bind(1, id).bind(2, xml.readElementText().toStdString()).run();
                }
            }
        }
        bench::Exec(db, "COMMIT");
        sqlite3_close(db);
    }
}
BENCHMARK(BM_RawTbxImport100k)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
