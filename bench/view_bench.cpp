// Opening a 100,000-concept ontology and typing in the search box, with the slow parts of the
// view off, through the editor interface without a window.
#include "bench_data.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/types.h"
#include "hierarchy_data.h"
#include "ontology/edit/concept_view.h"
#include "ontology/store/concept_list.h"
#include "ontology/store/lifecycle.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdexcept>
#include <string>

using namespace lx;

namespace {

// The hierarchy with what an open needs (MetaData, a subset, a language) and, on the deep
// concept, names, slots and a note, so that its view has something in every list.
const QString &ViewFile()
{
    static const QString path = [] {
        const QString copy =
            QFileInfo(bench::HierarchyFile()).dir().filePath(QStringLiteral("view.ont"));
        QFile::remove(copy);
        if (!QFile::copy(bench::HierarchyFile(), copy))
            throw std::runtime_error("cannot copy the hierarchy");
        sqlite3 *db = bench::OpenRaw(copy);
        const std::string deep = bench::DeepConcept().toStdString();
        bench::Exec(db, "BEGIN");
        bench::Exec(db, "INSERT INTO Subsets (Subset_ID, Subset) VALUES (1, 'General')");
        bench::Exec(db,
                    "INSERT INTO Languages (Lang_ID, Language, Show) VALUES ('en', 'English', -1), "
                    "('fr', 'French', -1)");
        bench::Exec(db, "INSERT INTO NAMES (Concept, Lang_ID, Name) VALUES ('" + deep +
                            "', 'en', 'deep one'), ('" + deep + "', 'fr', 'profond')");
        bench::Exec(db, "INSERT INTO RELATIONS (Concept1, Rel, \"Default\", Concept2) VALUES ('" +
                            deep + "', 'ALL', 0, 'ALL')");
        bench::Exec(db,
                    "INSERT INTO ATTRIBUTES (Concept, Attribute, \"Default\", Value) VALUES ('" +
                        deep + "', 'ALL', -1, 'some value')");
        bench::Exec(db, "COMMIT");
        sqlite3_close(db);
        // Dates go in through the store, in its own form.
        store::Database file = store::DBEngine::OpenDatabase(copy);
        store::Recordset meta = file.OpenRecordset(QStringLiteral("MetaData"), store::dbOpenTable);
        meta.AddNew();
        const QDateTime now = QDateTime::currentDateTime();
        for (const auto &[field, value] : {std::pair<QStringView, QVariant>{u"Name", "Bench"},
                                           {u"Created", now},
                                           {u"Modified", now},
                                           {u"Owner", ""},
                                           {u"Author", ""},
                                           {u"Description", ""},
                                           {u"Contact", ""},
                                           {u"MaxParents", 2},
                                           {u"ListTop", 0},
                                           {u"DefLang", "en"},
                                           {u"Naming", true},
                                           {u"AutoName", 0},
                                           {u"ActiveSet", 1}})
            meta.Collect(field, value);
        meta.Update();
        meta.Close();
        file.Close();
        return copy;
    }();
    return path;
}

// The window as the logic sees it: the list's rows kept as the real list keeps them, the view
// read whole and dropped.
class HeadlessEditor : public OntologyEditor {
public:
    void SetCaption(const QString &) override {}
    void SetWindowPointer(int) override {}
    void EnableOntologyCommands() override {}
    void DisableOntologyCommands() override {}
    void UpdateStatusCounts() override {}
    void ClearConceptView() override {}
    void LoadConceptView() override
    {
        if (CurrentConcept.isEmpty())
            return;
        const ConceptViewData view = ReadConceptView(CurrentConcept, CurrentType);
        CurrentType = view.Type;
        benchmark::DoNotOptimize(view);
    }
    void ShowConceptList() override
    {
        rows = ReadListRows(rsList, QStringLiteral("Concept"));
        texts.clear();
        texts.reserve(rows.size());
        for (const ListRow &row : rows)
            texts.append(row.text);
    }
    QString SelectFirstListRow() override { return rows.isEmpty() ? QString() : rows[0].text; }
    void BindConceptList(const QString &) override {}
    void UnloadOtherWindows() override {}
    PropertiesTexts ShowProperties(const PropertiesTexts &texts) override { return texts; }

    // The search box's change: the first match by prefix, then the whole view.
    void Search(const QString &text)
    {
        if (const std::optional<store::Bookmark> found = FindConceptByPrefix(rsList, text))
            CurrentConcept = rows[qsizetype(*found)].text;
        LoadConceptView();
    }

    QList<ListRow> rows;
    QStringList texts;
};

// The program's boxes and pointer with nobody at the screen; a box shown means a failure.
class Headless : public ScriptedInteraction {
public:
    Headless() : m_scope(*this) {}
    bool failed() const { return !calls().isEmpty(); }

private:
    InteractionScope m_scope;
};

void BM_OpenOntology100k(benchmark::State &state)
{
    Headless ui;
    const QString file = ViewFile();
    for (auto _ : state) {
        HeadlessEditor editor;
        Process().Quote = QStringLiteral("\""); // as the window's load sets it
        QString path = file;
        OpenOntology(editor, path);
        if (ui.failed() || editor.ListedConcepts != bench::kConcepts)
            state.SkipWithError("not every concept listed");
        state.PauseTiming();
        CloseOntology(editor, path);
        ResetProcessState();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenOntology100k)->Unit(benchmark::kMillisecond)->Iterations(5);

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
    for (const QString &target : {editor.rows.last().text, bench::DeepConcept()}) {
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

} // namespace
