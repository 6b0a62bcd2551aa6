#include "store_fixture.h"

#include <QDateTime>

#include <functional>
#include <set>

using namespace lx::store;

namespace {

// Rows of Children with texts that read as numbers or not, numbers, dates, truth values and
// Nulls, so that every kind of field meets every kind of literal.
class CriteriaStoreTest : public StoreTest {
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        for (const char *k : {"p", "4", "abc"})
            addParent(QString::fromLatin1(k));
        const QVariant null;
        const QVariant texts[] = {"4",   "4.0", " 4 ", "abc", "",   "-2",
                                  "1e3", "0.5", null,  "ABC", "10", "2024-01-31T00:00:00"};
        const QVariant numbers[] = {4, 0, -2, 1000, null, 10, 5, 4, -1, null, 1, 0};
        const QVariant parents[] = {"p", "4", null, "abc", "p", null};
        Recordset rs = db.OpenRecordset(QStringLiteral("Children"), dbOpenTable);
        for (int i = 0; i < 12; ++i) {
            rs.AddNew();
            rs.Collect(u"Value", texts[i]);
            rs.Collect(u"order", numbers[i]);
            rs.Collect(u"Parent", parents[i % 6]);
            rs.Collect(u"Default", i % 3 == 2 ? null : QVariant(i % 3 == 0));
            if (i % 4 != 3)
                rs.Collect(u"Date", QDateTime(QDate(2024, 1, 29 + i % 4), QTime(i % 2 * 10, 0)));
            rs.Update();
        }
    }

    // The Ids that FindFirst and FindNext visit, or the error number.
    static std::set<int> found(Recordset &rs, const QString &criteria, int *error)
    {
        std::set<int> ids;
        *error = 0;
        try {
            rs.FindFirst(criteria);
            while (!rs.NoMatch()) {
                ids.insert(rs.Fields(u"Id").Value().toInt());
                rs.FindNext(criteria);
            }
        } catch (const StoreError &e) {
            *error = e.number();
        }
        return ids;
    }

    // Runs criteria through a snapshot and a dynaset of the same rows and expects the same rows.
    std::set<int> same(const QString &criteria)
    {
        int snapshotError = 0;
        int dynasetError = 0;
        const std::set<int> a = found(snapshot, criteria, &snapshotError);
        const std::set<int> b = found(dynaset, criteria, &dynasetError);
        EXPECT_EQ(a, b) << criteria.toStdString();
        EXPECT_EQ(snapshotError, dynasetError) << criteria.toStdString();
        return a;
    }

    void openBoth()
    {
        const QString sql = QStringLiteral("SELECT * FROM Children");
        snapshot = db.OpenRecordset(sql, dbOpenSnapshot);
        dynaset = db.OpenRecordset(sql, dbOpenDynaset);
    }

    Recordset snapshot;
    Recordset dynaset;
};

TEST_F(CriteriaStoreTest, SnapshotAndDynasetFindTheSameRowsForEveryKindOfComparison)
{
    openBoth();
    const char *const fields[] = {"Value", "[order]", "Default", "Date", "Parent", "Id"};
    const char *const literals[] = {
        "4",     "4.0",    "-2",      "0",      "1000", "0.5",         "\"4\"",
        "'4.0'", "\" 4\"", "\"abc\"", "\"\"",   "'x'",  "#1/31/2024#", "#2024-01-29 10:00#",
        "True",  "False",  "Null",    "\"-2\"", "'1e3'"};
    const char *const ops[] = {"=", "<>", "<", ">", "<=", ">="};
    int compared = 0;
    for (const char *f : fields) {
        const QString field = QString::fromLatin1(f);
        for (const char *l : literals) {
            const QString literal = QString::fromLatin1(l);
            for (const char *op : ops) {
                same(field + u' ' + QLatin1String(op) + u' ' + literal);
                same(literal + u' ' + QLatin1String(op) + u' ' + field);
                compared += 2;
            }
            same(field + QStringLiteral(" IN (") + literal + QStringLiteral(", 10)"));
            same(field + QStringLiteral(" NOT IN (") + literal + QStringLiteral(", \"abc\")"));
            same(field + QStringLiteral(" BETWEEN ") + literal + QStringLiteral(" AND 10"));
            same(field + QStringLiteral(" BETWEEN -5 AND ") + literal);
            same(field + QStringLiteral(" LIKE ") + literal);
        }
        for (const char *other : fields)
            same(field + QStringLiteral(" = ") + QString::fromLatin1(other));
        same(field + QStringLiteral(" LIKE \"4*\""));
        same(field + QStringLiteral(" Is Null"));
        same(QStringLiteral("NOT (") + field + QStringLiteral(" = 4)"));
    }
    EXPECT_GT(compared, 1000);
    // Truth values taken as values are True = -1 in both.
    for (const char *criteria :
         {"[order] = ([order] = 4)", "Default = (Value = 4)", "Value & (Id > 6) = \"abc-1\"",
          "-(Id = 2) = 1", "Value IN (4, Id > 6)", "[order] BETWEEN (Id > 6) AND 0"})
        same(QString::fromLatin1(criteria));

    // The semantics pinned down: a text compares with a bare number by its value when it reads
    // as one; any other text sorts after every number; text against text is by collation.
    auto ids = [&](const char *criteria) { return same(QString::fromLatin1(criteria)); };
    EXPECT_EQ(ids("Value = 4"), (std::set<int>{1, 2, 3}));
    EXPECT_EQ(ids("Value = \"4\""), (std::set<int>{1}));
    EXPECT_EQ(ids("Value = \"abc\""), (std::set<int>{4, 10}));
    EXPECT_EQ(ids("Value > 100"), (std::set<int>{4, 5, 7, 10, 12}));
    EXPECT_EQ(ids("Value < 0"), (std::set<int>{6}));
    EXPECT_EQ(ids("[order] = \"4.0\""), (std::set<int>{1, 8}));
    EXPECT_EQ(ids("[order] <> \"x\""), (std::set<int>{1, 2, 3, 4, 6, 7, 8, 9, 11, 12}));
    EXPECT_EQ(ids("Parent = 4"), (std::set<int>{2, 8}));
    EXPECT_EQ(ids("Value IN (4, \"abc\")"), (std::set<int>{1, 2, 3, 4, 10}));
}

// One nesting limit for every form of deep expression: whatever the parser takes, SQLite takes
// too, in criteria, in a query's WHERE, and in both at once; one level more is a syntax error.
TEST_F(CriteriaStoreTest, EveryNestingTheParserTakesRunsAndOneMoreIsASyntaxError)
{
    auto repeat = [](const char *s, int n) { return QString::fromLatin1(s).repeated(n); };
    struct Form {
        const char *name;
        std::function<QString(int)> text;
    };
    const Form forms[] = {
        {"NOT", [&](int n) { return repeat("NOT ", n) + "Value = 'a'"; }},
        {"NOT ()", [&](int n) { return repeat("NOT (", n) + "Value = 'a'" + repeat(")", n); }},
        {"()", [&](int n) { return repeat("(", n) + "Value = 'a'" + repeat(")", n); }},
        {"minus", [&](int n) { return repeat("- ", n) + "[order] = 1"; }},
        {"right +",
         [&](int n) { return "[order] = " + repeat("(1 + ", n) + "1" + repeat(")", n); }},
        {"left +", [&](int n) { return "[order] = " + repeat("(", n) + "1" + repeat(" + 1)", n); }},
        {"right /",
         [&](int n) { return "[order] = " + repeat("(1 / ", n) + "1" + repeat(")", n); }},
        {"left /", [&](int n) { return "[order] = 1" + repeat(" / 1", n); }},
        {"right &",
         [&](int n) { return "Value = " + repeat("('a' & ", n) + "'b'" + repeat(")", n); }},
        {"=",
         [&](int n) { return "[order] = " + repeat("([order] = ", n) + "1" + repeat(")", n); }},
        {"IN",
         [&](int n) {
             return "[order] IN (" + repeat("([order] IN (", n) + "1" + repeat("))", n) + ")";
         }},
        {"mixed IN",
         [&](int n) {
             return "Value IN (" + repeat("(Value IN (4, ", n) + "4" + repeat("))", n) + ")";
         }},
        {"mixed BETWEEN",
         [&](int n) {
             return "Value BETWEEN 1 AND " + repeat("(Value BETWEEN 1 AND ", n) + "2" +
                    repeat(")", n);
         }},
        {"LIKE",
         [&](int n) { return "Value LIKE " + repeat("(Value LIKE ", n) + "'a'" + repeat(")", n); }},
        {"AND OR",
         [&](int n) {
             return repeat("(Value = 'a' OR ([order] = 1 AND ", n) + "Id = 1" + repeat("))", n);
         }},
        {"flat -", [&](int n) { return "[order] = 1" + repeat(" - 1", n); }},
        {"flat &", [&](int n) { return "Value = 'a'" + repeat(" & 'a'", n); }},
    };
    Recordset snap = db.OpenRecordset(QStringLiteral("SELECT * FROM Children"), dbOpenSnapshot);
    for (const Form &form : forms) {
        // The deepest text of this form that the parser takes.
        int deepest = 0;
        for (int n = 1; n < 1000 && deepest == 0; ++n) {
            try {
                snap.FindFirst(form.text(n));
            } catch (const StoreError &e) {
                ASSERT_EQ(e.number(), err::SyntaxErrorInExpression) << form.name;
                deepest = n - 1;
            }
        }
        ASSERT_GT(deepest, 0) << form.name;
        const QString text = form.text(deepest);
        const QString where = QStringLiteral("SELECT * FROM Children WHERE ") + text;
        try {
            Recordset dyn = db.OpenRecordset(QStringLiteral("Children"), dbOpenDynaset);
            dyn.FindFirst(text);
            Recordset both = db.OpenRecordset(where, dbOpenDynaset);
            both.FindFirst(text);
            Recordset query = db.OpenRecordset(where, dbOpenSnapshot);
        } catch (const StoreError &e) {
            ADD_FAILURE() << form.name << " at " << deepest << ": "
                          << e.description().toStdString();
        }
        const QString deeper = form.text(deepest + 1);
        Recordset dyn = db.OpenRecordset(QStringLiteral("Children"), dbOpenDynaset);
        EXPECT_STORE_ERROR(dyn.FindFirst(deeper), err::SyntaxErrorInExpression);
        EXPECT_STORE_ERROR(
            db.OpenRecordset(QStringLiteral("SELECT * FROM Children WHERE ") + deeper,
                             dbOpenDynaset),
            err::SyntaxErrorInQueryExpression);
    }
}

// Generated criteria can be long without being deep: 72 KB of ORs work everywhere, and 72 KB of
// nesting is a syntax error, never a crash.
TEST_F(CriteriaStoreTest, LongCriteriaWorkAndDeepOnesFailCleanly)
{
    openBoth();
    QString chain = QStringLiteral("Value = \"none\"");
    for (int i = 0; chain.size() < 72 * 1024; ++i)
        chain += QStringLiteral(" OR Value = \"v%1\" OR [order] = %2").arg(i).arg(2000 + i);
    chain += QStringLiteral(" OR Value = \"-2\"");
    EXPECT_EQ(same(chain), (std::set<int>{6}));
    Recordset query =
        db.OpenRecordset(QStringLiteral("SELECT * FROM Children WHERE ") + chain, dbOpenDynaset);
    EXPECT_EQ(query.RecordCount(), 1);
    // A long list of items that a text meets as numbers goes to SQLite in parts.
    QString list = QStringLiteral("Value IN (\"x\"");
    for (int i = 0; i < 300; ++i)
        list += QStringLiteral(", %1").arg(i == 250 ? -2 : 5000 + i);
    EXPECT_EQ(same(list + u')'), (std::set<int>{6}));

    QString nested = QStringLiteral("1");
    while (nested.size() < 72 * 1024)
        nested = u'(' + nested + QStringLiteral(" + Id").repeated(150) + u')';
    for (const QString &deep :
         {QStringLiteral("[order] = ") + nested, QStringLiteral("NOT ").repeated(18000) + "Id = 1",
          QString(36 * 1024, u'(') + "Id = 1" + QString(36 * 1024, u')')}) {
        EXPECT_STORE_ERROR(snapshot.FindFirst(deep), err::SyntaxErrorInExpression);
        EXPECT_STORE_ERROR(dynaset.FindFirst(deep), err::SyntaxErrorInExpression);
        EXPECT_STORE_ERROR(db.OpenRecordset(QStringLiteral("SELECT * FROM Children WHERE ") + deep),
                           err::SyntaxErrorInQueryExpression);
    }
}

} // namespace
