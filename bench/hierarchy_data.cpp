#include "hierarchy_data.h"

#include "bench_data.h"
#include "core/store/database.h"
#include "core/store/types.h"
#include "ontology/store/schema.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <random>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace lx::bench {

namespace {

struct Hierarchy {
    QString path;
    QString deep;
    QString mid;
    int midDescendants = 0;
};

std::string identifier(int i)
{
    return i == 0 ? std::string("ALL") : GeneratedIdentifier(i);
}

QTemporaryDir &folder()
{
    static QTemporaryDir dir;
    return dir;
}

// Distinct descendants of `start`, children listed by parent.
int countDescendants(int start, const std::vector<std::vector<int>> &children)
{
    std::vector<bool> seen(children.size(), false);
    std::vector<int> todo{start};
    int count = 0;
    while (!todo.empty()) {
        const int n = todo.back();
        todo.pop_back();
        for (int c : children[size_t(n)]) {
            if (!seen[size_t(c)]) {
                seen[size_t(c)] = true;
                ++count;
                todo.push_back(c);
            }
        }
    }
    return count;
}

// The concept whose descent is nearest to `target`, among those whose first-parent subtree
// comes near it.
std::pair<int, int> conceptWithDescendants(const std::vector<std::pair<int, int>> &links,
                                           const std::vector<int> &firstParent, int target)
{
    const size_t n = firstParent.size();
    std::vector<int> subtree(n, 1);
    for (size_t i = n - 1; i > 0; --i)
        subtree[size_t(firstParent[i])] += subtree[i]; // parents come before their children
    std::vector<std::vector<int>> children(n);
    for (const auto &[child, parent] : links)
        children[size_t(parent)].push_back(child);
    std::pair<int, int> best{-1, 0};
    for (size_t i = 1; i < n; ++i) {
        if (subtree[i] < target / 2 || subtree[i] > target * 2)
            continue;
        const int count = countDescendants(int(i), children);
        if (best.first < 0 || std::abs(count - target) < std::abs(best.second - target))
            best = {int(i), count};
    }
    if (best.first < 0)
        throw std::runtime_error("no concept with the wanted number of descendants");
    return best;
}

void insertRows(sqlite3 *db, const std::vector<std::pair<int, int>> &links, int concepts)
{
    sqlite3_stmt *insertConcept = nullptr;
    Check(sqlite3_prepare_v2(db,
                             "INSERT INTO CONCEPTS (Concept, Definition, Type, Subset_ID) "
                             "VALUES (?, 'A generated concept.', ?, NULL)",
                             -1, &insertConcept, nullptr),
          db);
    for (int i = 0; i < concepts; ++i) {
        const std::string id = identifier(i);
        sqlite3_bind_text(insertConcept, 1, id.data(), int(id.size()), SQLITE_TRANSIENT);
        sqlite3_bind_int(insertConcept, 2, i == 0 ? 100 : 1);
        Check(sqlite3_step(insertConcept), db);
        sqlite3_reset(insertConcept);
    }
    sqlite3_finalize(insertConcept);
    sqlite3_stmt *insertLink = nullptr;
    Check(sqlite3_prepare_v2(db, "INSERT INTO ISA (Concept, ISA) VALUES (?, ?)", -1, &insertLink,
                             nullptr),
          db);
    for (const auto &[child, parent] : links) {
        const std::string c = identifier(child);
        const std::string p = identifier(parent);
        sqlite3_bind_text(insertLink, 1, c.data(), int(c.size()), SQLITE_TRANSIENT);
        sqlite3_bind_text(insertLink, 2, p.data(), int(p.size()), SQLITE_TRANSIENT);
        Check(sqlite3_step(insertLink), db);
        sqlite3_reset(insertLink);
    }
    sqlite3_finalize(insertLink);
}

// The rows that make a hierarchy openable, in the caller's transaction.
void insertOpenableRows(sqlite3 *db, const std::string &deep)
{
    Exec(db, "INSERT INTO Subsets (Subset_ID, Subset) VALUES (1, 'General')");
    Exec(db, "INSERT INTO Languages (Lang_ID, Language, Show) VALUES ('en', 'English', -1), "
             "('fr', 'French', -1)");
    Exec(db, "INSERT INTO NAMES (Concept, Lang_ID, Name) VALUES ('" + deep +
                 "', 'en', 'deep one'), ('" + deep + "', 'fr', 'profond')");
    Exec(db, "INSERT INTO RELATIONS (Concept1, Rel, \"Default\", Concept2) VALUES ('" + deep +
                 "', 'ALL', 0, 'ALL')");
    Exec(db, "INSERT INTO ATTRIBUTES (Concept, Attribute, \"Default\", Value) VALUES ('" + deep +
                 "', 'ALL', -1, 'some value')");
}

// Dates go in through the store, in its own form.
void addMetaData(const QString &path)
{
    store::Database file = store::DBEngine::OpenDatabase(path);
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
}

Hierarchy build(int concepts, const QString &name, bool openable)
{
    // Each concept hangs under an earlier one, so there are no cycles. Parents are drawn
    // mostly from recent concepts, which gives long branches; a parent already at the deepest
    // level passes the child on to its own parent.
    std::mt19937 rng(4242);
    std::vector<int> depth(size_t(concepts), 0);
    std::vector<std::pair<int, int>> links; // (child, parent)
    links.reserve(size_t(concepts) * 11 / 10);
    std::vector<int> firstParent(size_t(concepts), -1);
    int deep = -1;
    auto pick = [&](int i) {
        const int window = 1 + int(rng() % 2 ? rng() % 64 : rng() % unsigned(i));
        int p = std::max(0, i - window);
        while (depth[size_t(p)] >= kHierarchyDepth)
            p = firstParent[size_t(p)];
        return p;
    };
    for (int i = 1; i < concepts; ++i) {
        const int p = pick(i);
        firstParent[size_t(i)] = p;
        links.emplace_back(i, p);
        depth[size_t(i)] = depth[size_t(p)] + 1;
        if (rng() % 10 == 0) {
            const int q = pick(i);
            if (q != p) {
                links.emplace_back(i, q);
                depth[size_t(i)] = std::max(depth[size_t(i)], depth[size_t(q)] + 1);
            }
        }
        if (deep < 0 && depth[size_t(i)] == kHierarchyDepth)
            deep = i;
    }
    if (deep < 0)
        throw std::runtime_error("no concept at the deepest level");

    Hierarchy h;
    h.path = folder().filePath(name);
    h.deep = QString::fromStdString(identifier(deep));
    if (openable) {
        const auto [mid, count] = conceptWithDescendants(links, firstParent, 20000);
        h.mid = QString::fromStdString(identifier(mid));
        h.midDescendants = count;
    }

    // A file written before by the same generator may stand in for the large one: writing it
    // takes much longer than any benchmark on it.
    const QString kept = qEnvironmentVariable("LEXARBOR_BENCH_LARGE_FILE");
    if (openable && !kept.isEmpty() && QFileInfo::exists(kept)) {
        h.path = kept;
        return h;
    }

    // The tables alone: the seed content would only be in the way here.
    store::Database file = store::DBEngine::Workspaces(0).CreateDatabase(
        h.path, store::dbLangGeneral, store::dbVersion40);
    BuildOntologyTables(file);
    file.Close();
    sqlite3 *db = OpenRaw(h.path);
    Exec(db, "BEGIN");
    insertRows(db, links, concepts);
    if (openable)
        insertOpenableRows(db, identifier(deep));
    Exec(db, "COMMIT");
    sqlite3_close(db);
    if (openable)
        addMetaData(h.path);
    return h;
}

const Hierarchy &hierarchy()
{
    static const Hierarchy h = build(kConcepts, QStringLiteral("hierarchy.ont"), false);
    return h;
}

const Hierarchy &small()
{
    static const Hierarchy h = build(kSmallConcepts, QStringLiteral("hierarchy10k.ont"), false);
    return h;
}

const Hierarchy &large()
{
    static const Hierarchy h = build(kLargeConcepts, QStringLiteral("large.ont"), true);
    return h;
}

} // namespace

const QString &HierarchyFile()
{
    return hierarchy().path;
}

const QString &SmallHierarchyFile()
{
    return small().path;
}

QString DeepConcept()
{
    return hierarchy().deep;
}

const QString &LargeHierarchyFile()
{
    return large().path;
}

QString MidConcept()
{
    return large().mid;
}

int MidDescendants()
{
    return large().midDescendants;
}

void MakeOpenable(const QString &path, const QString &deep)
{
    sqlite3 *db = OpenRaw(path);
    Exec(db, "BEGIN");
    insertOpenableRows(db, deep.toStdString());
    Exec(db, "COMMIT");
    sqlite3_close(db);
    addMetaData(path);
}

QString Beside(const QString &name)
{
    return QFileInfo(HierarchyFile()).dir().filePath(name);
}

void CopyFresh(const QString &from, const QString &to)
{
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(to + QLatin1String(suffix));
    if (!QFile::copy(from, to))
        throw std::runtime_error("cannot copy a bench file");
}

} // namespace lx::bench
