#include "termbase_data.h"

#include "bench_data.h"
#include "core/process.h"
#include "ontology/store/seed.h"
#include "termbase/store/schema.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

namespace lx::bench {

namespace {

// Each entry takes six numbers: the entry, its English section, the English term, the term's
// type, and for every second entry a Spanish section with its term.
constexpr int kFirstEntry = 100;
constexpr int kStride = 6;

// The elements, their concepts, languages and terms, in one transaction.
qint64 FillEntries(sqlite3 *db)
{
    bench::Exec(db, "BEGIN");
    Statement ontologyConcept(db, "INSERT INTO CONCEPTS (Concept) VALUES (?)");
    Statement element(db, "INSERT INTO elements (elemID, categoryID, parentID) VALUES (?, ?, ?)");
    Statement entry(db, "INSERT INTO TE_CONCEPTS (elemID, Concept) VALUES (?, ?)");
    Statement lang(db, "INSERT INTO elements_use_lang (elemID, langID) VALUES (?, ?)");
    Statement term(db, "INSERT INTO TERMS (elemID, term, langID) VALUES (?, ?, ?)");
    qint64 count = 0;
    auto add = [&](int id, const std::string &category, int parent) {
        element.bind(1, id).bind(2, category).bind(3, parent).run();
        ++count;
    };
    for (int i = 0; i < kEntries; ++i) {
        const std::string name = EntryConcept(i);
        const int e = EntryElement(i);
        ontologyConcept.bind(1, name).run();
        add(e, "0.3", kBody);
        entry.bind(1, e).bind(2, name).run();
        add(e + 1, "0.4", e);
        lang.bind(1, e + 1).bind(2, "en").run();
        add(e + 2, "1", e + 1);
        term.bind(1, e + 2).bind(2, "term " + name).bind(3, "en").run();
        add(e + 3, "2.1", e + 2);
        if (i % 2 == 0) {
            add(e + 4, "0.4", e);
            lang.bind(1, e + 4).bind(2, "es").run();
            add(e + 5, "1", e + 4);
            term.bind(1, e + 5).bind(2, "término " + name).bind(3, "es").run();
        }
    }
    bench::Exec(db, "COMMIT");
    return count;
}

} // namespace

int EntryElement(int i)
{
    return kFirstEntry + i * kStride;
}

std::string EntryConcept(int i)
{
    return bench::GeneratedIdentifier(i) + "-" + std::to_string(i);
}

Statement::Statement(sqlite3 *db, const char *sql) : m_db(db)
{
    bench::Check(sqlite3_prepare_v2(db, sql, -1, &m_stmt, nullptr), db);
}

Statement::~Statement()
{
    sqlite3_finalize(m_stmt);
}

Statement &Statement::bind(int i, int value)
{
    sqlite3_bind_int(m_stmt, i, value);
    return *this;
}

Statement &Statement::bind(int i, const std::string &text)
{
    sqlite3_bind_text(m_stmt, i, text.data(), int(text.size()), SQLITE_TRANSIENT);
    return *this;
}

void Statement::run()
{
    const int rc = sqlite3_step(m_stmt);
    if (rc != SQLITE_DONE)
        bench::Check(rc, m_db);
    sqlite3_reset(m_stmt);
}

const TermbaseFiles &Files()
{
    static QTemporaryDir home;
    static const TermbaseFiles files = [] {
        qputenv("LEXARBOR_HOME", QFile::encodeName(home.path()));
        EnsureSeedFile();
        TermbaseFiles f;
        f.ontology = bench::FreshOntologyFile();
        f.termbase = QDir(home.path()).filePath(QStringLiteral("large.ltb"));
        ProcessState &p = Process();
        p.Quote = QStringLiteral("\"");
        p.OntoDB = store::DBEngine::OpenDatabase(f.ontology);
        CreateTermbaseSchema(f.termbase);
        p.OntoDB.Close();
        ResetProcessState();

        sqlite3 *db = bench::OpenRaw(f.termbase);
        Statement meta(db, "INSERT INTO MetaData (Name, Ontology, DCLang, DCList) VALUES "
                           "('Large', ?, 'en', 'tree')");
        meta.bind(1, f.ontology.toStdString()).run();
        f.elements = FillEntries(db);
        sqlite3_close(db);
        return f;
    }();
    return files;
}

} // namespace lx::bench
