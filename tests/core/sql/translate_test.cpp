#include "core/store/errors.h"
#include "core/store/sql/jetsql.h"
#include "fake_catalog.h"

#include <gtest/gtest.h>

using namespace lx::store;
using namespace lx::store::sql;

namespace {

CompiledQuery Compile(const char *jet)
{
    return CompileSelect(QString::fromUtf8(jet), lx::test::FakeLookup());
}

// The number of the StoreError that compiling throws; 0 when it compiles.
int ErrorOf(const char *jet, QString *description = nullptr)
{
    try {
        Compile(jet);
    } catch (const StoreError &e) {
        if (description)
            *description = e.description();
        return e.number();
    }
    return 0;
}

struct ShapeCase {
    const char *jet;
    const char *sql;
};

const ShapeCase kShapes[] = {
    // A number run into a keyword; numbers go out bare.
    {"SELECT Concept FROM CONCEPTS WHERE (Subset_ID = 12AND Type <> 4) ORDER BY Concept",
     R"(SELECT "CONCEPTS".rowid, "CONCEPTS"."Concept" FROM "CONCEPTS" WHERE (("CONCEPTS"."Subset_ID" = 12) AND ("CONCEPTS"."Type" <> 4)) ORDER BY "CONCEPTS"."Concept")"},
    // Apostrophes doubled; text compared by the store's collation.
    {R"(SELECT ISA FROM ISA WHERE Concept = "O'BRIEN")",
     R"(SELECT "ISA".rowid, "ISA"."ISA" FROM "ISA" WHERE ("ISA"."Concept" COLLATE "LX" = 'O''BRIEN'))"},
    // A doubled quote inside a literal is one quote; single quotes work alike.
    {R"(SELECT ISA FROM ISA WHERE Concept = "a""b" OR Concept = 'it''s')",
     R"(SELECT "ISA".rowid, "ISA"."ISA" FROM "ISA" WHERE (("ISA"."Concept" COLLATE "LX" = 'a"b') OR ("ISA"."Concept" COLLATE "LX" = 'it''s')))"},
    {R"(SELECT ISA FROM ISA WHERE Concept Like "AB*" AND ISA NOT LIKE '[!a-c]#')",
     R"(SELECT "ISA".rowid, "ISA"."ISA" FROM "ISA" WHERE (lx_like("ISA"."Concept", 'AB*') AND (NOT lx_like("ISA"."ISA", '[!a-c]#'))))"},
    // Reserved words as names: qualified, bracketed, or simply not reserved in the dialect.
    {"SELECT [Default], Value, Date, [From], Name from langs ORDER BY langs.order DESC;",
     R"(SELECT "langs".rowid, "langs"."Default", "langs"."Value", "langs"."Date", "langs"."From", "langs"."Name" FROM "langs" ORDER BY "langs"."order" DESC)"},
    {"SELECT langID FROM langs WHERE [Default] = True AND Date >= #1/31/2024 10:05 PM#",
     R"(SELECT "langs".rowid, "langs"."langID" FROM "langs" WHERE (("langs"."Default" = (-1)) AND ("langs"."Date" COLLATE "LX" >= '2024-01-31T22:05:00')))"},
    {"SELECT langID FROM langs WHERE Name IS NOT NULL AND [order] IN (1, 2.5) AND NOT "
     "[order] BETWEEN -1 AND 3",
     R"(SELECT "langs".rowid, "langs"."langID" FROM "langs" WHERE ((("langs"."Name" IS NOT NULL) AND ("langs"."order" IN (1, 2.5))) AND (NOT ("langs"."order" BETWEEN (- 1) AND 3))))"},
    // & reads Null as empty text; a text expression sorts by the store's collation.
    {R"(SELECT Concept & "-" & ISA AS Pair FROM ISA ORDER BY Concept & ISA)",
     R"(SELECT "ISA".rowid, (COALESCE("ISA"."Concept", '') || '-' || COALESCE("ISA"."ISA", '')) FROM "ISA" ORDER BY (COALESCE("ISA"."Concept", '') || COALESCE("ISA"."ISA", '')) COLLATE "LX")"},
    // Left-nested joins lose their parentheses; a join on the right keeps them.
    {"SELECT value FROM (elements INNER JOIN TE_CONCEPTS ON elements.elemID = "
     "TE_CONCEPTS.elemID) LEFT JOIN text_values ON elements.elemID = text_values.elemID",
     R"(SELECT "elements".rowid, "TE_CONCEPTS".rowid, "text_values".rowid, "text_values"."value" FROM "elements" INNER JOIN "TE_CONCEPTS" ON ("elements"."elemID" = "TE_CONCEPTS"."elemID") LEFT JOIN "text_values" ON ("elements"."elemID" = "text_values"."elemID"))"},
    {"SELECT value FROM elements INNER JOIN (TE_CONCEPTS INNER JOIN text_values ON "
     "TE_CONCEPTS.elemID = text_values.elemID) ON elements.elemID = TE_CONCEPTS.elemID",
     R"(SELECT "elements".rowid, "TE_CONCEPTS".rowid, "text_values".rowid, "text_values"."value" FROM "elements" INNER JOIN ("TE_CONCEPTS" INNER JOIN "text_values" ON ("TE_CONCEPTS"."elemID" = "text_values"."elemID")) ON ("elements"."elemID" = "TE_CONCEPTS"."elemID"))"},
    // Aliases are quoted like any name; the missing side of the LEFT JOIN keeps DISTINCTROW
    // from grouping by it.
    {R"(SELECT DISTINCTROW c.Concept FROM CONCEPTS AS c LEFT JOIN ISA [i"x] ON c.Concept = [i"x].Concept WHERE [i"x].ISA Is Null)",
     R"(SELECT "c".rowid, "i""x".rowid, "c"."Concept" FROM "CONCEPTS" AS "c" LEFT JOIN "ISA" AS "i""x" ON ("c"."Concept" COLLATE "LX" = "i""x"."Concept") WHERE ("i""x"."ISA" IS NULL) GROUP BY "c".rowid)"},
    {"SELECT DISTINCT ISA FROM ISA ORDER BY 1",
     R"(SELECT DISTINCT NULL, "ISA"."ISA" FROM "ISA" ORDER BY "ISA"."ISA")"},
    // A number column against a text that holds a number keeps SQLite's numeric comparison.
    {R"(SELECT Concept FROM CONCEPTS WHERE Type = "4" AND Type / 2 > 1)",
     R"(SELECT "CONCEPTS".rowid, "CONCEPTS"."Concept" FROM "CONCEPTS" WHERE (("CONCEPTS"."Type" = 4) AND ((CAST("CONCEPTS"."Type" AS REAL) / 2) > 1)))"},
};

TEST(JetSql, EmittedShapes)
{
    for (const ShapeCase &c : kShapes) {
        try {
            EXPECT_EQ(Compile(c.jet).sql.toStdString(), c.sql) << c.jet;
        } catch (const StoreError &e) {
            ADD_FAILURE() << c.jet << ": " << e.description().toStdString();
        }
    }
}

TEST(JetSql, PiecesMakeUpTheStatement)
{
    const CompiledQuery q =
        Compile(R"(SELECT CONCEPTS.Concept, ISA.ISA FROM CONCEPTS INNER JOIN ISA ON )"
                R"(CONCEPTS.Concept = ISA.Concept WHERE CONCEPTS.Concept = "X" ORDER BY ISA.ISA)");
    EXPECT_EQ(q.fromSql,
              QStringLiteral(R"(FROM "CONCEPTS" INNER JOIN "ISA" ON )"
                             R"(("CONCEPTS"."Concept" COLLATE "LX" = "ISA"."Concept"))"));
    EXPECT_EQ(q.whereSql, QStringLiteral(R"(("CONCEPTS"."Concept" COLLATE "LX" = 'X'))"));
    EXPECT_EQ(q.orderBySql, QStringLiteral(R"(ORDER BY "ISA"."ISA")"));
    EXPECT_TRUE(q.groupBySql.isEmpty());
    ASSERT_EQ(q.rowidSql.size(), 2u);
    EXPECT_EQ(q.rowidSql[1], QStringLiteral(R"("ISA".rowid)"));
    ASSERT_EQ(q.columnSql.size(), 2u);
    EXPECT_EQ(q.columnSql[0], QStringLiteral(R"("CONCEPTS"."Concept")"));
    EXPECT_EQ(q.sql, QStringLiteral("SELECT ") + q.rowidSql[0] + ", " + q.rowidSql[1] + ", " +
                         q.columnSql[0] + ", " + q.columnSql[1] + " " + q.fromSql + " WHERE " +
                         q.whereSql + " " + q.orderBySql);
    ASSERT_EQ(q.joinKeys.size(), 1u);
    EXPECT_EQ(q.joinKeys[0].leftSource, 0);
    EXPECT_EQ(q.joinKeys[0].leftColumn, QStringLiteral("Concept"));
    EXPECT_EQ(q.joinKeys[0].rightSource, 1);
    EXPECT_EQ(q.joinKeys[0].rightColumn, QStringLiteral("Concept"));
}

struct ErrorCase {
    const char *jet;
    int number;
};

const ErrorCase kErrors[] = {
    {R"(SELECT * FROM ISA WHERE Concept = "AB"C")", err::SyntaxErrorInQueryExpression},
    {R"(SELECT * FROM ISA WHERE Concept = "AB"C" ORDER BY ISA)", err::SyntaxErrorInQueryExpression},
    {R"(SELECT * FROM ISA WHERE Concept = "abc)", err::SyntaxErrorInQueryExpression},
    {R"(SELECT * FROM ISA WHERE Concept = "a" = "b")", err::SyntaxErrorInQueryExpression},
    {"SELECT * FROM ISA WHERE", err::SyntaxErrorInQueryExpression},
    {"SELECT * FROM ISA WHERE Concept = = 1", err::SyntaxErrorInQueryExpression},
    {"SELECT * FROM ISA WHERE Concept @ 1", err::SyntaxErrorInQueryExpression},
    {"SELECT * FROM ISA WHERE Concept = #not a date#", err::SyntaxErrorInQueryExpression},
    {"SELECT * FROM ISA WHERE [Concept = 1", err::SyntaxErrorInQueryExpression},
    {"SELECT * FROM ISA WHERE Len(Concept) = 1", err::SyntaxErrorInQueryExpression},
    {"SELECT Concept ISA FROM ISA", err::SyntaxErrorInQueryExpression},
    {"UPDATE ISA SET Concept = 1", err::InvalidSql},
    {"", err::InvalidSql},
    {"SELECT * FROM", err::SyntaxErrorInFrom},
    {"SELECT * FROM ISA garbage here", err::SyntaxErrorInFrom},
    {"SELECT * FROM ISA, ISA", err::SyntaxErrorInFrom},
    {"SELECT * FROM (ISA INNER JOIN CONCEPTS ON ISA.Concept = CONCEPTS.Concept",
     err::SyntaxErrorInFrom},
    {"SELECT * FROM ISA INNER JOIN CONCEPTS", err::SyntaxErrorInJoin},
    {"SELECT * FROM ISA INNER CONCEPTS ON ISA.Concept = CONCEPTS.Concept", err::SyntaxErrorInJoin},
    {"SELECT * FROM ISA ORDER Concept", err::SyntaxErrorInOrderBy},
    {"SELECT * FROM ISA ORDER BY", err::SyntaxErrorInOrderBy},
    {"SELECT * FROM ISA ORDER BY 3", err::SyntaxErrorInOrderBy},
    {"SELECT * FROM NOPE", err::CannotFindInputTable},
    {"SELECT * FROM ISA INNER JOIN NOPE ON ISA.Concept = NOPE.Concept", err::CannotFindInputTable},
    {"SELECT Nope.* FROM ISA", err::CannotFindInputTable},
    {"SELECT Nope FROM ISA", err::TooFewParameters},
    {"SELECT CONCEPTS.Concept FROM ISA", err::TooFewParameters},
    {"SELECT ISA.Nope FROM ISA", err::TooFewParameters},
    {"SELECT * FROM ISA WHERE Nope = 1 ORDER BY Other", err::TooFewParameters},
    // A table known by an alias is no longer known by its own name.
    {"SELECT CONCEPTS.Concept FROM CONCEPTS AS c", err::TooFewParameters},
};

TEST(JetSql, ErrorNumbers)
{
    for (const ErrorCase &c : kErrors)
        EXPECT_EQ(ErrorOf(c.jet), c.number) << c.jet;
}

TEST(JetSql, ErrorMessagesNameWhatIsWrong)
{
    QString text;
    // The quoted expression runs to the end of its clause.
    ErrorOf(R"(SELECT * FROM ISA WHERE Concept = "AB"C"D" ORDER BY ISA)", &text);
    EXPECT_TRUE(text.endsWith(QStringLiteral(R"('Concept = "AB"C"D"'.)"))) << text.toStdString();
    ErrorOf("SELECT Nope, Other FROM ISA WHERE nope = 1", &text);
    EXPECT_EQ(text, QStringLiteral("Too few parameters. Expected 2."));
    ErrorOf("SELECT * FROM Nope", &text);
    EXPECT_TRUE(text.contains(QStringLiteral("'Nope'")));
}

TEST(JetSql, ResultNamesAndSources)
{
    struct Expect {
        const char *name;
        int source;
        const char *base;
        FieldType type;
    };
    struct NamingCase {
        const char *jet;
        std::vector<Expect> columns;
    };
    const NamingCase cases[] = {
        {"SELECT * FROM CONCEPTS INNER JOIN ISA ON CONCEPTS.Concept = ISA.Concept",
         {{"CONCEPTS.Concept", 0, "Concept", dbText},
          {"Definition", 0, "Definition", dbMemo},
          {"Type", 0, "Type", dbLong},
          {"Subset_ID", 0, "Subset_ID", dbLong},
          {"ISA.Concept", 1, "Concept", dbText},
          {"ISA", 1, "ISA", dbText}}},
        {R"(SELECT DISTINCTROW CONCEPTS.Concept AS Conseto, ISA.ISA, concept & "x", )"
         R"(Type = 1 FROM CONCEPTS LEFT JOIN ISA ON CONCEPTS.Concept = ISA.Concept)",
         {{"Conseto", 0, "Concept", dbText},
          {"ISA", 1, "ISA", dbText},
          {"Expr1000", -1, "", dbText},
          {"Expr1001", -1, "", dbBoolean}}},
        // An unqualified name found in two tables is taken from the first one written.
        {"SELECT Concept, isa.* FROM ISA INNER JOIN CONCEPTS ON ISA.Concept = CONCEPTS.Concept",
         {{"Concept", 0, "Concept", dbText},
          {"Concept", 0, "Concept", dbText},
          {"ISA", 0, "ISA", dbText}}},
        {"SELECT CONCEPTS.Concept, ISA.Concept FROM CONCEPTS INNER JOIN ISA ON CONCEPTS.Concept "
         "= ISA.Concept",
         {{"CONCEPTS.Concept", 0, "Concept", dbText}, {"ISA.Concept", 1, "Concept", dbText}}},
    };
    for (const NamingCase &c : cases) {
        const CompiledQuery q = Compile(c.jet);
        ASSERT_EQ(q.columns.size(), c.columns.size()) << c.jet;
        ASSERT_EQ(q.columnSql.size(), c.columns.size()) << c.jet;
        for (std::size_t i = 0; i < c.columns.size(); ++i) {
            const OutputColumn &col = q.columns[i];
            EXPECT_EQ(col.name.toStdString(), c.columns[i].name) << c.jet;
            EXPECT_EQ(col.source, c.columns[i].source) << c.jet << " #" << i;
            EXPECT_EQ(col.baseColumn.toStdString(), c.columns[i].base) << c.jet << " #" << i;
            EXPECT_EQ(col.type, c.columns[i].type) << c.jet << " #" << i;
        }
    }
}

TEST(JetSql, OuterJoinsMarkTheirNullableSide)
{
    const CompiledQuery left =
        Compile("SELECT * FROM (CONCEPTS LEFT OUTER JOIN ISA ON CONCEPTS.Concept = ISA.Concept) "
                "INNER JOIN TE_CONCEPTS ON TE_CONCEPTS.Concept = CONCEPTS.Concept");
    ASSERT_EQ(left.sources.size(), 3u);
    EXPECT_FALSE(left.sources[0].nullable);
    EXPECT_TRUE(left.sources[1].nullable);
    EXPECT_FALSE(left.sources[2].nullable);
    EXPECT_EQ(left.sources[2].table, QStringLiteral("TE_CONCEPTS"));

    const CompiledQuery right =
        Compile("SELECT * FROM CONCEPTS AS c RIGHT JOIN ISA ON c.Concept = ISA.Concept");
    EXPECT_TRUE(right.sources[0].nullable);
    EXPECT_EQ(right.sources[0].alias, QStringLiteral("c"));
    EXPECT_FALSE(right.sources[1].nullable);
}

TEST(JetSql, OrderByResultAlias)
{
    const CompiledQuery q = Compile(R"(SELECT Concept & "!" AS Loud FROM ISA ORDER BY Loud DESC)");
    EXPECT_EQ(q.orderBySql, QStringLiteral("ORDER BY ") + q.columnSql[0] +
                                QStringLiteral(R"( COLLATE "LX" DESC)"));
}

TEST(JetSql, LiteralsAndNames)
{
    EXPECT_EQ(SqlLiteral(u"O'BRIEN"), QStringLiteral("'O''BRIEN'"));
    EXPECT_EQ(SqlLiteral(u"C:\\x.ltb"), QStringLiteral("'C:\\x.ltb'"));
    EXPECT_EQ(SqlLiteral(QStringView(u"a\0b", 3)), QStringLiteral("CAST(X'610062' AS TEXT)"));
    EXPECT_EQ(SqlIdentifier(u"Order"), QStringLiteral("\"Order\""));
    EXPECT_EQ(SqlIdentifier(u"a\"b"), QStringLiteral("\"a\"\"b\""));
}

} // namespace
