// The termbase editor's element tree on a termbase of 100,000 term entries (about 500,000
// elements), without a window on screen: opening, expanding "body", expanding one entry; each
// against the same reads in raw SQLite.
#include "bench_data.h"
#include "core/interaction.h"
#include "core/process.h"
#include "ontology/store/seed.h"
#include "publish/term_entry_page.h"
#include "termbase/edit/assert.h"
#include "termbase/edit/element_tree.h"
#include "termbase/edit/modify.h"
#include "termbase/store/lifecycle.h"
#include "termbase/store/schema.h"
#include "termbase_data.h"
#include "ui/frm_find.h"
#include "ui/frm_tb_editor.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <string>
#include <vector>

using namespace lx;

namespace {

using bench::EntryConcept;
using bench::EntryElement;
using bench::Files;
using bench::kBody;
using bench::kEntries;
using bench::Statement;

// The editor window with the ontology "open" (its path is all a termbase asks of it).
class Editor {
public:
    Editor()
    {
        ProcessState &p = Process();
        p.Quote = QStringLiteral("\"");
        p.OntoPath = Files().ontology;
    }
    ~Editor()
    {
        if (!Process().TermPath.isEmpty())
            CloseTermbase(window);
        ResetProcessState();
    }
    Editor(const Editor &) = delete;
    Editor &operator=(const Editor &) = delete;

    void open()
    {
        Process().TermPath = Files().termbase;
        OpenTermbase(window, Process().TermPath);
    }
    QTreeWidgetItem *root() const { return window.Tree1->topLevelItem(0); }

    ui::frmTBEDitor window;
};

// From the closed file to the categories in memory, the counts, and the root with its first
// level of children.
void BM_OpenTermbase100k(benchmark::State &state)
{
    Files();
    Editor editor;
    for (auto _ : state) {
        editor.open();
        editor.window.Tree1->expandItem(editor.root());
        if (editor.window.EntryCount != kEntries || editor.root()->childCount() != 3)
            state.SkipWithError("not open");
        state.PauseTiming();
        CloseTermbase(editor.window);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenTermbase100k)->Unit(benchmark::kMillisecond);

// The floor: the category names, the two counts and the root's children.
void BM_RawOpenTermbase100k(benchmark::State &state)
{
    Files();
    for (auto _ : state) {
        sqlite3 *db = bench::OpenRaw(Files().termbase);
        bench::Exec(db, "BEGIN");
        size_t bytes = bench::ReadAllRows(
            db,
            "SELECT datcats.categoryID, datcats.GI_name, datcats.type, datcats.value_type, "
            "datcats.needs_lang, datcats.forms_link, datcats.parentCatID, datcats_names.name "
            "FROM datcats JOIN datcats_names ON datcats.categoryID = datcats_names.categoryID "
            "WHERE datcats_names.langID = 'en' ORDER BY datcats.categoryID COLLATE LX",
            8);
        bytes += bench::ReadAllRows(db, "SELECT elemID FROM elements WHERE categoryID = '0.3'", 1);
        bytes += bench::ReadAllRows(db, "SELECT elemID FROM elements WHERE categoryID = '1'", 1);
        bytes += bench::ReadAllRows(db, "SELECT * FROM elements WHERE parentID = 1", 3);
        bench::Exec(db, "COMMIT");
        sqlite3_close(db);
        benchmark::DoNotOptimize(bytes);
    }
}
BENCHMARK(BM_RawOpenTermbase100k)->Unit(benchmark::kMillisecond);

QTreeWidgetItem *BodyNode(Editor &editor)
{
    editor.window.Tree1->expandItem(editor.root());
    return editor.root()->child(1);
}

// The user opens "body": 100,000 entries read, named after their concepts, sorted, each with
// its placeholder. The collapse that drops them isn't timed.
void BM_ExpandBody100k(benchmark::State &state)
{
    Files();
    Editor editor;
    editor.open();
    QTreeWidgetItem *body = BodyNode(editor);
    for (auto _ : state) {
        editor.window.Tree1->expandItem(body);
        if (body->childCount() != kEntries)
            state.SkipWithError("wrong count");
        state.PauseTiming();
        editor.window.Tree1->collapseItem(body);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_ExpandBody100k)->Unit(benchmark::kMillisecond);

// The reads alone, without the items.
void BM_ReadBodyChildren100k(benchmark::State &state)
{
    Files();
    Editor editor;
    editor.open();
    for (auto _ : state) {
        const QList<ElementNode> children = ReadElementChildren(kBody, false);
        if (children.size() != kEntries)
            state.SkipWithError("wrong count");
        benchmark::DoNotOptimize(children);
    }
}
BENCHMARK(BM_ReadBodyChildren100k)->Unit(benchmark::kMillisecond);

// The floor of one expansion: the children in category order, then per child its concept and
// whether it has children, by prepared statements.
struct RawReads {
    explicit RawReads(sqlite3 *db)
        : db(db), level(db, "SELECT elemID, categoryID FROM elements WHERE parentID = ? "
                            "ORDER BY categoryID COLLATE LX"),
          entryConcept(db, "SELECT Concept FROM TE_CONCEPTS WHERE elemID = ?"),
          lang(db, "SELECT langID FROM elements_use_lang WHERE elemID = ?"),
          below(db, "SELECT 1 FROM elements WHERE parentID = ? LIMIT 1")
    {}
    sqlite3 *db;
    Statement level, entryConcept, lang, below;
};

size_t RawExpand(RawReads &r, int parent)
{
    auto &[db, level, entryConcept, lang, below] = r;
    bench::Exec(db, "BEGIN");
    std::vector<std::pair<int, std::string>> children;
    level.bind(1, parent);
    while (sqlite3_step(level.get()) == SQLITE_ROW)
        children.emplace_back(sqlite3_column_int(level.get(), 0),
                              reinterpret_cast<const char *>(sqlite3_column_text(level.get(), 1)));
    sqlite3_reset(level.get());
    size_t found = 0;
    for (const auto &[id, category] : children) {
        sqlite3_stmt *value = (category == "0.3" ? entryConcept : lang).get();
        sqlite3_bind_int(value, 1, id);
        if (sqlite3_step(value) == SQLITE_ROW)
            found += size_t(sqlite3_column_bytes(value, 0));
        sqlite3_reset(value);
        sqlite3_bind_int(below.get(), 1, id);
        found += sqlite3_step(below.get()) == SQLITE_ROW;
        sqlite3_reset(below.get());
    }
    bench::Exec(db, "COMMIT");
    return children.size() + found;
}

void BM_RawExpandBody100k(benchmark::State &state)
{
    sqlite3 *db = bench::OpenRaw(Files().termbase);
    {
        RawReads reads(db);
        for (auto _ : state)
            benchmark::DoNotOptimize(RawExpand(reads, kBody));
    }
    sqlite3_close(db);
}
BENCHMARK(BM_RawExpandBody100k)->Unit(benchmark::kMillisecond);

// One entry in the middle of body opened: its two language sections.
void BM_ExpandEntry100k(benchmark::State &state)
{
    Files();
    Editor editor;
    editor.open();
    QTreeWidgetItem *body = BodyNode(editor);
    editor.window.Tree1->expandItem(body);
    QTreeWidgetItem *entry = body->child(kEntries / 2);
    for (auto _ : state) {
        editor.window.Tree1->expandItem(entry);
        if (entry->childCount() < 1)
            state.SkipWithError("no sections");
        state.PauseTiming();
        editor.window.Tree1->collapseItem(entry);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_ExpandEntry100k)->Unit(benchmark::kMicrosecond);

void BM_RawExpandEntry100k(benchmark::State &state)
{
    sqlite3 *db = bench::OpenRaw(Files().termbase);
    {
        RawReads reads(db);
        for (auto _ : state)
            benchmark::DoNotOptimize(RawExpand(reads, EntryElement(kEntries / 2)));
    }
    sqlite3_close(db);
}
BENCHMARK(BM_RawExpandEntry100k)->Unit(benchmark::kMicrosecond);

// The marks of the category pane for the clicked element's category, at every click: one
// query for the valid children, then the walk of the pane.
void BM_MarkValidCategories(benchmark::State &state)
{
    Files();
    Editor editor;
    editor.open();
    int n = 0;
    for (auto _ : state) {
        editor.window.CurrentCategory = (++n % 2) ? QStringLiteral("1") : QStringLiteral("0.3");
        editor.window.MarkValidCategories();
    }
}
BENCHMARK(BM_MarkValidCategories)->Unit(benchmark::kMillisecond);

// A term asserted into the English section of an entry, the writes and their checks.
void BM_AssertTerm100k(benchmark::State &state)
{
    Files();
    Editor editor;
    editor.open();
    ScriptedInteraction user; // a box shown would be a failure
    const InteractionScope scope(user);
    int n = 0;
    for (auto _ : state) {
        AssertInput input;
        input.CategoryId = QStringLiteral("1");
        input.From = AssertInput::Source::Text;
        input.Value = QStringLiteral("new term %1").arg(++n);
        input.LanguageShown = true;
        input.Language = QStringLiteral("en");
        input.Parent = EntryElement((n * 7919) % kEntries);
        if (!AssertElement(editor.window, input).Written)
            state.SkipWithError("not written");
    }
    if (!user.calls().isEmpty())
        state.SkipWithError("a box was shown");
}
BENCHMARK(BM_AssertTerm100k)->Unit(benchmark::kMillisecond)->Iterations(200);

// The page of an entry with its sections and terms, written from the database.
void BM_WriteTermEntryPage(benchmark::State &state)
{
    Files();
    Editor editor;
    editor.open();
    // The table of structures reads the ontology, which this run leaves closed.
    Process().TermMeta.CSBrowser = false;
    // The generated term types have no value rows: each page says so, and nobody answers.
    ScriptedInteraction user;
    const InteractionScope scope(user);
    const QString folder = QFileInfo(Files().termbase).dir().filePath(QStringLiteral("pages/"));
    QDir().mkpath(folder);
    for (auto _ : state)
        WriteTermEntryPage(QString::fromStdString(EntryConcept(42)), EntryElement(42), folder, true,
                           true, true, true);
}
BENCHMARK(BM_WriteTermEntryPage)->Unit(benchmark::kMillisecond);

} // namespace

namespace {

// An entry of fifty elements (its concept row, 49 text attributes) with ten cross-references
// to it from other entries' terms, written through the store while the clock stands.
constexpr qint32 kDeletedEntryBase = 50000000;
constexpr int kEntryElements = 50;
constexpr int kReferrers = 10;

qint32 AddEntryToDelete(int round)
{
    using namespace store;
    const qint32 entry = kDeletedEntryBase + round * 100;
    const WriteBatch batch(Process().TermDB);
    Recordset elements = Process().TermDB.OpenRecordset(QStringLiteral("elements"), dbOpenTable);
    Recordset texts = Process().TermDB.OpenRecordset(QStringLiteral("text_values"), dbOpenTable);
    Recordset pointers = Process().TermDB.OpenRecordset(QStringLiteral("pointers"), dbOpenTable);
    auto element = [&](qint32 id, const char *category, qint32 parent) {
        elements.AddNew();
        elements.Collect(u"elemID", id);
        elements.Collect(u"categoryID", QString::fromLatin1(category));
        elements.Collect(u"parentID", parent);
        elements.Update();
    };
    element(entry, "0.3", kBody);
    for (int i = 1; i < kEntryElements; ++i) {
        element(entry + i, "2.2.5", entry);
        texts.AddNew();
        texts.Collect(u"elemID", entry + i);
        texts.Collect(u"value", QStringLiteral("value %1").arg(i));
        texts.Update();
    }
    for (int i = 0; i < kReferrers; ++i) {
        const qint32 referrer = entry + kEntryElements + i;
        element(referrer, "9.2.3", EntryElement(i * 997 + round) + 2);
        pointers.AddNew();
        pointers.Collect(u"elemID", referrer);
        pointers.Collect(u"targetID", entry);
        pointers.Update();
    }
    return entry;
}

// The entry deleted as the editor deletes it: the ten referring elements, then the entry with
// its branch, values and pointers by the file's cascades.
void BM_DeleteEntry100k(benchmark::State &state)
{
    Files();
    Editor editor;
    editor.open();
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const qint32 entry = AddEntryToDelete(++round);
        state.ResumeTiming();
        const ElementDeletion deletion = DeleteElement(entry, entry, false);
        if (deletion.Referrers != kReferrers || deletion.Parent != kBody)
            state.SkipWithError("not deleted");
    }
}
BENCHMARK(BM_DeleteEntry100k)->Unit(benchmark::kMillisecond)->Iterations(50);

// The floor: the same deletes in raw SQLite, with the file's cascades switched on.
void BM_RawDeleteEntry100k(benchmark::State &state)
{
    Files();
    int round = 1000;
    for (auto _ : state) {
        state.PauseTiming();
        {
            Editor editor;
            editor.open();
            AddEntryToDelete(++round);
        }
        sqlite3 *db = bench::OpenRaw(Files().termbase);
        bench::Exec(db, "PRAGMA foreign_keys = ON");
        const int entry = kDeletedEntryBase + round * 100;
        state.ResumeTiming();
        Statement referrers(db, "SELECT elemID FROM pointers WHERE targetID = ?");
        referrers.bind(1, entry);
        std::vector<int> ids;
        while (sqlite3_step(referrers.get()) == SQLITE_ROW)
            ids.push_back(sqlite3_column_int(referrers.get(), 0));
        Statement remove(db, "DELETE FROM elements WHERE elemID = ?");
        for (int id : ids)
            remove.bind(1, id).run();
        remove.bind(1, entry).run();
        state.PauseTiming();
        sqlite3_close(db);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_RawDeleteEntry100k)->Unit(benchmark::kMillisecond)->Iterations(20);

} // namespace

namespace {

// An entry that sorts last, with a section whose language shows its code and one term in it.
constexpr qint32 kLastEntry = 60000000;

void AddLastEntry()
{
    using namespace store;
    const WriteBatch batch(Process().TermDB);
    auto row = [](const char *table,
                  std::initializer_list<std::pair<const char16_t *, QVariant>> values) {
        Recordset rs = Process().TermDB.OpenRecordset(QString::fromLatin1(table), dbOpenTable);
        rs.AddNew();
        for (const auto &[field, value] : values)
            rs.Collect(QStringView(field), value);
        rs.Update();
    };
    Recordset concepts = Process().TermDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    concepts.SetIndex(QStringLiteral("Concept"));
    concepts.Seek(u"=", QStringLiteral("ZZZZ-LAST"));
    if (concepts.NoMatch())
        row("CONCEPTS", {{u"Concept", QStringLiteral("ZZZZ-LAST")}});
    row("elements",
        {{u"elemID", kLastEntry}, {u"categoryID", QStringLiteral("0.3")}, {u"parentID", kBody}});
    row("TE_CONCEPTS", {{u"elemID", kLastEntry}, {u"Concept", QStringLiteral("ZZZZ-LAST")}});
    row("elements", {{u"elemID", kLastEntry + 1},
                     {u"categoryID", QStringLiteral("0.4")},
                     {u"parentID", kLastEntry}});
    row("elements_use_lang", {{u"elemID", kLastEntry + 1}, {u"langID", QStringLiteral("pt")}});
    row("elements", {{u"elemID", kLastEntry + 2},
                     {u"categoryID", QStringLiteral("1")},
                     {u"parentID", kLastEntry + 1}});
    row("TERMS", {{u"elemID", kLastEntry + 2},
                  {u"term", QStringLiteral("último término")},
                  {u"langID", QStringLiteral("pt")}});
}

// A term search from the root of a freshly opened tree: body opened, every entry and its
// sections but the last opened at once, then the walk to the one term that matches, the last.
void BM_FindLastTerm100k(benchmark::State &state)
{
    Files();
    Editor editor;
    editor.open();
    ScriptedInteraction user; // "Term not found." would be a failure
    const InteractionScope scope(user);
    AddLastEntry();
    ui::frmFind find(editor.window);
    find.optFindT->setChecked(true);
    for (auto _ : state) {
        state.PauseTiming();
        editor.window.LoadRootNode();
        editor.window.Tree1->setCurrentItem(editor.root());
        state.ResumeTiming();
        find.cbxFind->setEditText(QStringLiteral("último"));
        find.cmdFind_Click();
        const QTreeWidgetItem *found = editor.window.Tree1->currentItem();
        if (!found || found->text(0) != QStringLiteral("último término"))
            state.SkipWithError("not found");
    }
    if (!user.calls().isEmpty())
        state.SkipWithError("a box was shown");
    DeleteElement(kLastEntry, kLastEntry, false);
}
BENCHMARK(BM_FindLastTerm100k)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
