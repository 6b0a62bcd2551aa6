#include "hierarchy_data.h"

#include "bench_data.h"
#include "ontology/store/schema.h"

#include <QTemporaryDir>

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
};

std::string identifier(int i)
{
    return i == 0 ? std::string("ALL") : GeneratedIdentifier(i);
}

Hierarchy build()
{
    // Each concept hangs under an earlier one, so there are no cycles. Parents are drawn
    // mostly from recent concepts, which gives long branches; a parent already at the deepest
    // level passes the child on to its own parent.
    std::mt19937 rng(4242);
    std::vector<int> depth(kConcepts, 0);
    std::vector<std::pair<int, int>> links; // (child, parent)
    links.reserve(size_t(kConcepts) * 11 / 10);
    std::vector<int> firstParent(kConcepts, -1);
    int deep = -1;
    auto pick = [&](int i) {
        const int window = 1 + int(rng() % 2 ? rng() % 64 : rng() % unsigned(i));
        int p = std::max(0, i - window);
        while (depth[size_t(p)] >= kHierarchyDepth)
            p = firstParent[size_t(p)];
        return p;
    };
    for (int i = 1; i < kConcepts; ++i) {
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

    // The tables alone: the seed content would only be in the way here.
    static QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("hierarchy.ont"));
    store::Database file = store::DBEngine::Workspaces(0).CreateDatabase(path, store::dbLangGeneral,
                                                                         store::dbVersion40);
    BuildOntologyTables(file);
    file.Close();
    sqlite3 *db = OpenRaw(path);
    Exec(db, "BEGIN");
    sqlite3_stmt *insertConcept = nullptr;
    Check(sqlite3_prepare_v2(db,
                             "INSERT INTO CONCEPTS (Concept, Definition, Type, Subset_ID) "
                             "VALUES (?, 'A generated insertConcept.', ?, NULL)",
                             -1, &insertConcept, nullptr),
          db);
    for (int i = 0; i < kConcepts; ++i) {
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
    Exec(db, "COMMIT");
    sqlite3_close(db);
    return {path, QString::fromStdString(identifier(deep))};
}

const Hierarchy &hierarchy()
{
    static const Hierarchy h = build();
    return h;
}

} // namespace

const QString &HierarchyFile()
{
    return hierarchy().path;
}

QString DeepConcept()
{
    return hierarchy().deep;
}

} // namespace lx::bench
