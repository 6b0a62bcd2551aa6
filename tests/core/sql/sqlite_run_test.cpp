#include "core/store/sql/jetsql.h"
#include "core/text/collation.h"
#include "core/text/like.h"
#include "fake_catalog.h"

#include <QStringList>

#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <vector>

// Runs emitted statements on a real SQLite database with the collation and LIKE function that
// the engine registers, to see that they are valid and select the right rows.
using namespace lx::store;
using namespace lx::store::sql;

namespace {

using Rows = std::vector<std::string>; // each row as its values joined by '|'

int CollateLx(void *, int na, const void *a, int nb, const void *b)
{
    return lx::text::CompareText(
        std::string_view(static_cast<const char *>(a), static_cast<std::size_t>(na)),
        std::string_view(static_cast<const char *>(b), static_cast<std::size_t>(nb)));
}

void LxLike(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL)
        return sqlite3_result_null(ctx);
    auto text = [](sqlite3_value *v) {
        const auto *p = reinterpret_cast<const char *>(sqlite3_value_text(v));
        return std::string_view(p, static_cast<std::size_t>(sqlite3_value_bytes(v)));
    };
    sqlite3_result_int(ctx, lx::text::LikeNoCase(text(argv[0]), text(argv[1])) ? 1 : 0);
}

class SqliteRun : public ::testing::Test {
protected:
    void SetUp() override
    {
        sqlite3 *raw = nullptr;
        ASSERT_EQ(sqlite3_open(":memory:", &raw), SQLITE_OK);
        m_db.reset(raw);
        sqlite3_create_collation_v2(raw, "LX", SQLITE_UTF8, nullptr, CollateLx, nullptr);
        sqlite3_create_function_v2(raw, "lx_like", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                                   LxLike, nullptr, nullptr, nullptr);
        for (const CatalogTable &t : lx::test::FakeTables()) {
            QStringList cols;
            for (const CatalogColumn &c : t.columns) {
                const bool text = c.type == dbText || c.type == dbMemo || c.type == dbDate;
                cols.push_back(SqlIdentifier(c.name) + (text
                                                            ? QStringLiteral(" TEXT COLLATE \"LX\"")
                                                            : QStringLiteral(" INTEGER")));
            }
            exec("CREATE TABLE " + SqlIdentifier(t.name).toStdString() + " (" +
                 cols.join(", ").toStdString() + ")");
        }
        exec(R"(INSERT INTO CONCEPTS VALUES ('ANIMAL', 'living', 1, 12), ('dog', 'barks', 1, 12),
                ('Cat', NULL, 4, 12), ('PART-OF', 'relation', 100, 3),
                ('O''BRIEN', 'a name', 1, 12))");
        exec(R"(INSERT INTO ISA VALUES ('DOG', 'animal'), ('cat', 'ANIMAL'), ('dog', 'PET'))");
        exec(R"(INSERT INTO elements VALUES (1, '0.4', 17), (2, '0.4', 18), (3, 'x', 17))");
        exec(R"(INSERT INTO TE_CONCEPTS VALUES (1, 'dog'), (2, 'cat'), (3, 'dog'))");
        exec(R"(INSERT INTO text_values VALUES (1, 'one'), (3, 'three'), (3, 'drei'))");
    }

    void exec(const std::string &sql)
    {
        char *msg = nullptr;
        ASSERT_EQ(sqlite3_exec(m_db.get(), sql.c_str(), nullptr, nullptr, &msg), SQLITE_OK)
            << (msg ? msg : "") << "\n"
            << sql;
    }

    // All rows of a statement, with the first `skip` columns left out.
    Rows run(const QString &sql, int skip = 0, const std::vector<sqlite3_int64> &params = {})
    {
        sqlite3_stmt *raw = nullptr;
        const QByteArray utf8 = sql.toUtf8();
        EXPECT_EQ(sqlite3_prepare_v2(m_db.get(), utf8.constData(), -1, &raw, nullptr), SQLITE_OK)
            << sqlite3_errmsg(m_db.get()) << "\n"
            << utf8.constData();
        std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> stmt(raw, sqlite3_finalize);
        for (std::size_t i = 0; i < params.size(); ++i)
            sqlite3_bind_int64(raw, static_cast<int>(i + 1), params[i]);
        Rows rows;
        while (raw && sqlite3_step(raw) == SQLITE_ROW) {
            std::string row;
            for (int c = skip; c < sqlite3_column_count(raw); ++c) {
                if (c > skip)
                    row += '|';
                const auto *v = reinterpret_cast<const char *>(sqlite3_column_text(raw, c));
                row += v ? v : "NULL";
            }
            rows.push_back(row);
        }
        return rows;
    }

    Rows query(const char *jet)
    {
        const CompiledQuery q = CompileSelect(QString::fromUtf8(jet), lx::test::FakeLookup());
        return run(q.sql, static_cast<int>(q.sources.size()));
    }

    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> m_db{nullptr, sqlite3_close};
};

TEST_F(SqliteRun, SingleTable)
{
    EXPECT_EQ(query("SELECT Concept FROM CONCEPTS ORDER BY Concept"),
              (Rows{"ANIMAL", "Cat", "dog", "O'BRIEN", "PART-OF"}));
    EXPECT_EQ(query(R"(SELECT Concept FROM CONCEPTS WHERE Concept Like "*a*" ORDER BY Concept)"),
              (Rows{"ANIMAL", "Cat", "PART-OF"}));
    EXPECT_EQ(query(R"(SELECT Type FROM CONCEPTS WHERE Concept = "o'brien")"), (Rows{"1"}));
    EXPECT_EQ(query("SELECT Concept FROM CONCEPTS WHERE (Subset_ID = 12AND Type <> 4) ORDER BY "
                    "Concept DESC"),
              (Rows{"O'BRIEN", "dog", "ANIMAL"}));
    EXPECT_EQ(query(R"(SELECT Concept & ":" & Definition FROM CONCEPTS WHERE Type = "4")"),
              (Rows{"Cat:"}));
}

TEST_F(SqliteRun, JoinsMatchWithoutRegardToCase)
{
    EXPECT_EQ(
        query(R"(SELECT CONCEPTS.Concept, ISA.ISA FROM CONCEPTS INNER JOIN ISA ON )"
              R"(CONCEPTS.Concept = ISA.Concept WHERE CONCEPTS.Concept = "DOG" ORDER BY ISA)"),
        (Rows{"dog|animal", "dog|PET"}));
}

TEST_F(SqliteRun, LeftJoinIsNullWithDistinctRow)
{
    EXPECT_EQ(query("SELECT DISTINCTROW CONCEPTS.Concept AS Conseto, CONCEPTS.Definition, "
                    "CONCEPTS.Type FROM CONCEPTS LEFT JOIN ISA ON CONCEPTS.Concept = ISA.Concept "
                    "WHERE ((CONCEPTS.Type <> 100) AND (ISA.Concept Is Null)) ORDER BY 1"),
              (Rows{"ANIMAL|living|1", "O'BRIEN|a name|1"}));
    // One row per concept although "dog" has two ISA rows.
    EXPECT_EQ(query("SELECT DISTINCTROW CONCEPTS.Concept FROM CONCEPTS INNER JOIN ISA ON "
                    "CONCEPTS.Concept = ISA.Concept ORDER BY CONCEPTS.Concept"),
              (Rows{"Cat", "dog"}));
    EXPECT_EQ(query("SELECT DISTINCT ISA.Concept FROM ISA ORDER BY ISA.Concept").size(), 2u);
}

TEST_F(SqliteRun, TwoJoinsWithAndWithoutParentheses)
{
    const Rows expected{"3|dog|drei", "1|dog|one", "3|dog|three"};
    EXPECT_EQ(query("SELECT elements.elemID, TE_CONCEPTS.Concept, value FROM (elements INNER "
                    "JOIN TE_CONCEPTS ON elements.elemID = TE_CONCEPTS.elemID) INNER JOIN "
                    "text_values ON elements.elemID = text_values.elemID ORDER BY value"),
              expected);
    EXPECT_EQ(query("SELECT elements.elemID, TE_CONCEPTS.Concept, value FROM elements INNER "
                    "JOIN TE_CONCEPTS ON elements.elemID = TE_CONCEPTS.elemID INNER JOIN "
                    "text_values ON elements.elemID = text_values.elemID ORDER BY value"),
              expected);
    EXPECT_EQ(query("SELECT * FROM elements WHERE categoryID = '0.4' AND parentID = 17"),
              (Rows{"1|0.4|17"}));
}

// The engine re-reads a row by its rowids and searches with criteria over the same pieces.
TEST_F(SqliteRun, PiecesComposeForRereadAndSearch)
{
    const CompiledQuery q = CompileSelect(
        u"SELECT elements.elemID, TE_CONCEPTS.Concept AS Name, value FROM elements INNER JOIN "
        u"TE_CONCEPTS ON elements.elemID = TE_CONCEPTS.elemID INNER JOIN text_values ON "
        u"elements.elemID = text_values.elemID WHERE parentID = 17",
        lx::test::FakeLookup());
    const QString rowids = QStringList(q.rowidSql.begin(), q.rowidSql.end()).join(", ");
    const QString criteria =
        CompileCriteriaSql(u"Name LIKE \"D*\" AND value = 'DREI'", [&](ColumnRef c) {
            for (std::size_t i = 0; i < q.columns.size(); ++i) {
                if (c.qualifier.isEmpty() &&
                    c.name.compare(q.columns[i].name, Qt::CaseInsensitive) == 0)
                    return std::optional<ColumnSql>({q.columnSql[i], q.columns[i].type});
            }
            return std::optional<ColumnSql>();
        });
    const Rows found = run("SELECT " + rowids + " " + q.fromSql + " WHERE (" + q.whereSql +
                           ") AND (" + criteria + ")");
    ASSERT_EQ(found.size(), 1u);
    const QStringList ids = QString::fromStdString(found[0]).split(u'|');
    std::vector<sqlite3_int64> params;
    QStringList conditions;
    for (std::size_t i = 0; i < q.rowidSql.size(); ++i) {
        params.push_back(ids[static_cast<qsizetype>(i)].toLongLong());
        conditions.push_back(q.rowidSql[i] + " IS ?");
    }
    const QString columns = QStringList(q.columnSql.begin(), q.columnSql.end()).join(", ");
    EXPECT_EQ(run("SELECT " + columns + " " + q.fromSql + " WHERE " + conditions.join(" AND "), 0,
                  params),
              (Rows{"3|dog|drei"}));
}

TEST_F(SqliteRun, HostileNamesStayQuoted)
{
    EXPECT_EQ(query(R"(SELECT [x"; DROP TABLE ISA; --].ISA FROM ISA AS [x"; DROP TABLE ISA; --] )"
                    R"(WHERE [x"; DROP TABLE ISA; --].Concept = 'x''); DROP TABLE ISA; --')"),
              Rows{});
    EXPECT_EQ(query("SELECT ISA FROM ISA").size(), 3u);
}

} // namespace
