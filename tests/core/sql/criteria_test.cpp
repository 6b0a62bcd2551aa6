#include "core/store/errors.h"
#include "core/store/sql/jetsql.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

using namespace lx::store;
using namespace lx::store::sql;

namespace {

// Row layout for the in-memory cases.
const char *const kColumns[] = {"Concept", "Type", "Definition", "Code", "Stamp", "Show"};

std::optional<ColumnSlot> Slot(ColumnRef c)
{
    if (!c.qualifier.isEmpty() && c.qualifier.compare(u"CONCEPTS", Qt::CaseInsensitive) != 0)
        return std::nullopt;
    for (int i = 0; i < 6; ++i) {
        if (c.name.compare(QLatin1String(kColumns[i]), Qt::CaseInsensitive) == 0)
            return ColumnSlot{i, i == 1 || i == 5 ? dbLong : dbText};
    }
    return std::nullopt;
}

const Cell kRows[][6] = {
    {Cell::fromText("Dog"), Cell::fromInteger(1), Cell::fromText("barks"), Cell::fromText("12"),
     Cell::fromText("2024-01-31T00:00:00"), Cell::fromInteger(-1)},
    {Cell::fromText("cat"), Cell::fromInteger(4), Cell::null(), Cell::fromText("0.4"),
     Cell::fromText("2023-05-01T10:00:00"), Cell::fromInteger(0)},
    {Cell::fromText("PART-OF"), Cell::fromInteger(100), Cell::fromText("rel"),
     Cell::fromText("abc"), Cell::null(), Cell::fromInteger(0)},
    {Cell::null(), Cell::null(), Cell::fromText("x"), Cell::null(), Cell::null(),
     Cell::fromReal(2.5)},
};

struct CriteriaCase {
    const char *criteria;
    std::set<int> rows; // the rows that match
};

const CriteriaCase kCases[] = {
    {R"(Concept = "dog")", {0}},
    {R"(Concept = 'DOG' OR Concept = "Cat")", {0, 1}},
    {R"("dog" = CONCEPTS.Concept)", {0}},
    {R"(Concept LIKE "d*")", {0}},
    {R"(Concept NOT LIKE "d*")", {1, 2}},
    {R"(Concept LIKE Concept & "")", {0, 1, 2}},
    {R"(Type LIKE "1*")", {0, 2}}, // a number is matched by its text
    {"Type = 100", {2}},
    {R"(Type = "4")", {1}}, // a text literal holding a number compares as one
    {R"(Type = "x")", {}},  // and one that does not never equals
    {R"(Type <> "x")", {0, 1, 2}},
    {"Code = 12", {0}}, // a text column holding a number, against a number
    {R"(Code = "0.4")", {1}},
    {"Type > 1", {1, 2}},
    {"5 > Type", {0, 1}},
    {"Definition Is Null", {1}},
    {"Definition Is Not Null", {0, 2, 3}},
    {R"(NOT (Definition = "barks"))", {2, 3}},
    {R"(NOT (Concept = "dog"))", {1, 2}}, // NOT of Null is Null
    {R"(Concept = "dog" OR Type = Null)", {0}},
    {R"(NOT (Concept = "dog" AND Type = Null))", {1, 2}},
    {"Type IN (1, 4)", {0, 1}},
    {"Type NOT IN (1, 4)", {2}},
    {"Type NOT IN (1, Null)", {}},
    {"Type BETWEEN 2 AND 100", {1, 2}},
    {"Type NOT BETWEEN 2 AND 100", {0}},
    {R"(Concept & "!" = "DOG!")", {0}},
    {R"(Definition & Concept = "cat")", {1}}, // Null & text is the text
    {"Type * 2 + 1 = 9", {1}},
    {"-Type = -4", {1}},
    {"Type / 8 = 0.5", {1}},
    {"Type / 0 = 1", {}},
    {"Stamp = #1/31/2024#", {0}},
    {"Stamp < #2024-01-01 00:00#", {1}},
    {"Show = True", {0}},
    {"Show = False", {1, 2}},
    {"Show", {0, 3}},
    {"Show = 2.5", {3}},
};

TEST(Criteria, InMemoryTableOfCases)
{
    for (const CriteriaCase &c : kCases) {
        Predicate p;
        try {
            p = CompileCriteria(QString::fromUtf8(c.criteria), Slot);
        } catch (const StoreError &e) {
            ADD_FAILURE() << c.criteria << ": " << e.description().toStdString();
            continue;
        }
        std::set<int> matched;
        for (int r = 0; r < 4; ++r) {
            if (p(kRows[r]))
                matched.insert(r);
        }
        EXPECT_EQ(matched, c.rows) << c.criteria;
    }
}

struct SqlCase {
    const char *criteria;
    const char *sql;
};

const SqlCase kSqlCases[] = {
    {R"(Concept = "O'BRIEN")", R"(("T"."Concept" COLLATE "LX" = 'O''BRIEN'))"},
    {R"(Concept LIKE "ab*")", R"(lx_like("T"."Concept", 'ab*'))"},
    {R"(Concept= "X" AND ISA= "Y")",
     R"((("T"."Concept" COLLATE "LX" = 'X') AND ("T"."ISA" COLLATE "LX" = 'Y')))"},
    {"Type = 100", R"(("T"."Type" = 100))"},
    {R"(DBName = "C:\x.ltb")", R"(("T"."DBName" COLLATE "LX" = 'C:\x.ltb'))"},
    {R"(Concept1 = "A" AND Rel = "B" AND Concept2 = "C")",
     R"(((("T"."Concept1" COLLATE "LX" = 'A') AND ("T"."Rel" COLLATE "LX" = 'B')) AND ("T"."Concept2" COLLATE "LX" = 'C')))"},
    {"t.[Concept] = 'ALL'", R"(("t"."Concept" COLLATE "LX" = 'ALL'))"},
};

TEST(Criteria, SqlTableOfCases)
{
    auto resolver = [](ColumnRef c) {
        const QString table = c.qualifier.isEmpty() ? QStringLiteral("T") : c.qualifier.toString();
        return std::optional<ColumnSql>({SqlIdentifier(table) + u'.' + SqlIdentifier(c.name), {}});
    };
    for (const SqlCase &c : kSqlCases)
        EXPECT_EQ(CompileCriteriaSql(QString::fromUtf8(c.criteria), resolver).toStdString(), c.sql)
            << c.criteria;
}

TEST(Criteria, Errors)
{
    struct ErrorCase {
        const char *criteria;
        int number;
    };
    const ErrorCase cases[] = {
        {R"(Concept = "AB"C")", err::SyntaxErrorInExpression},
        {R"(Concept = "AB)", err::SyntaxErrorInExpression},
        {"", err::SyntaxErrorInExpression},
        {"Concept =", err::SyntaxErrorInExpression},
        {"Concept = 1 ORDER BY Concept", err::SyntaxErrorInExpression},
        {"Nope = 1", err::UnknownFieldInCriteria},
        {"ISA.Concept = 1", err::UnknownFieldInCriteria},
    };
    auto sqlResolver = [](ColumnRef c) {
        return Slot(c) ? std::optional<ColumnSql>({SqlIdentifier(c.name), {}}) : std::nullopt;
    };
    for (const ErrorCase &c : cases) {
        const QString text = QString::fromUtf8(c.criteria);
        int memory = 0;
        int sql = 0;
        try {
            CompileCriteria(text, Slot);
        } catch (const StoreError &e) {
            memory = e.number();
        }
        try {
            CompileCriteriaSql(text, sqlResolver);
        } catch (const StoreError &e) {
            sql = e.number();
        }
        EXPECT_EQ(memory, c.number) << c.criteria;
        EXPECT_EQ(sql, c.number) << c.criteria;
    }
}

} // namespace
