// The TBX-Basic export of the termbase of 100,000 entries, against a plain SQLite read of the
// same tables with the same entries written by the same XML writer.
#include "bench_data.h"
#include "termbase/exchange/tbx_export.h"
#include "termbase_data.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QXmlStreamWriter>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

using namespace lx;

namespace {

QString OutFile()
{
    return QFileInfo(bench::Files().termbase).dir().filePath(QStringLiteral("large.tbx"));
}

void BM_TbxExport100k(benchmark::State &state)
{
    bench::Files();
    TbxExportResult result;
    for (auto _ : state)
        result = ExportTbx(bench::Files().termbase, OutFile());
    if (result.Entries != bench::kEntries)
        state.SkipWithError("entries missing");
    state.counters["MB"] = double(QFileInfo(OutFile()).size()) / 1e6;
}
BENCHMARK(BM_TbxExport100k)->Unit(benchmark::kMillisecond)->Iterations(1);

QString Text(sqlite3_stmt *row, int column)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(row, column)),
                             sqlite3_column_bytes(row, column));
}

// The floor: each table the export reads, once, through plain SQLite, then an entry, its
// sections and terms (and a note for the term's type) written for each concept.
void BM_RawTbxExport100k(benchmark::State &state)
{
    bench::Files();
    for (auto _ : state) {
        sqlite3 *db = bench::OpenRaw(bench::Files().termbase);
        bench::Exec(db, "BEGIN");
        size_t bytes = bench::ReadAllRows(db, "SELECT categoryID, type FROM datcats", 2);
        bytes += bench::ReadAllRows(
            db, "SELECT elemID, categoryID, parentID FROM elements ORDER BY elemID", 3);
        for (const char *table : {"text_values", "picklist_values", "ref_values", "number_values",
                                  "date_values", "elements_use_lang", "pointers"}) {
            const std::string select = std::string("SELECT * FROM ") + table;
            bytes += bench::ReadAllRows(db, select.c_str(), 2);
        }
        QHash<int, QString> concepts, terms;
        {
            bench::Statement rows(db, "SELECT elemID, Concept FROM TE_CONCEPTS");
            while (sqlite3_step(rows.get()) == SQLITE_ROW)
                concepts.insert(sqlite3_column_int(rows.get(), 0), Text(rows.get(), 1));
        }
        {
            bench::Statement rows(db, "SELECT elemID, term, langID FROM TERMS");
            while (sqlite3_step(rows.get()) == SQLITE_ROW)
                terms.insert(sqlite3_column_int(rows.get(), 0), Text(rows.get(), 1));
        }
        bench::Exec(db, "COMMIT");
        sqlite3_close(db);

        QSaveFile file(OutFile());
        file.open(QIODevice::WriteOnly);
        QXmlStreamWriter x(&file);
        x.setAutoFormatting(true);
        x.setAutoFormattingIndent(1);
        x.writeStartDocument();
        x.writeStartElement(QStringLiteral("tbx"));
        x.writeStartElement(QStringLiteral("body"));
        auto section = [&](int id, const QString &lang, bool typed) {
            x.writeStartElement(QStringLiteral("langSec"));
            x.writeAttribute(QStringLiteral("xml:lang"), lang);
            x.writeStartElement(QStringLiteral("termSec"));
            x.writeTextElement(QStringLiteral("term"), terms.value(id));
            if (typed)
                x.writeTextElement(QStringLiteral("note"), QStringLiteral("termType: "));
            x.writeEndElement();
            x.writeEndElement();
        };
        for (int i = 0; i < bench::kEntries; ++i) {
            const int e = bench::EntryElement(i);
            x.writeStartElement(QStringLiteral("conceptEntry"));
            x.writeAttribute(QStringLiteral("id"), concepts.value(e));
            section(e + 2, QStringLiteral("en"), true);
            if (i % 2 == 0)
                section(e + 5, QStringLiteral("es"), false);
            x.writeEndElement();
        }
        x.writeEndDocument();
        file.commit();
        benchmark::DoNotOptimize(bytes);
    }
}
BENCHMARK(BM_RawTbxExport100k)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
