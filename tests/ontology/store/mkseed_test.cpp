#include "support/temp_store.h"

#include <QDir>
#include <QFile>
#include <QProcess>

namespace {

struct ToolRun {
    int exitCode;
    QString errors;
};

// Builds a seed file from a copy of the real sources, after `change` was applied to one file.
class MkseedTest : public ::testing::Test {
protected:
    void SetUp() override { fresh(); }

    // The real sources, afresh.
    void fresh()
    {
        const QDir real(QStringLiteral(LEXARBOR_SEED_SOURCES));
        ASSERT_TRUE(QDir(sources()).removeRecursively());
        ASSERT_TRUE(QDir().mkpath(sources()));
        for (const QString &name : real.entryList({QStringLiteral("*.tsv")}, QDir::Files))
            ASSERT_TRUE(QFile::copy(real.filePath(name), QDir(sources()).filePath(name)));
    }

    QString sources() const { return folder.path(QStringLiteral("seed")); }
    QString output() const { return folder.path(QStringLiteral("res.dat")); }

    // Appends lines to a source; returns the number of the first appended line.
    int append(const QString &file, const QStringList &lines)
    {
        QFile f(QDir(sources()).filePath(file));
        EXPECT_TRUE(f.open(QIODevice::ReadWrite | QIODevice::Append));
        f.seek(0);
        const int first = int(f.readAll().count('\n')) + 1;
        f.write((lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8());
        return first;
    }

    QString help() const { return folder.path(QStringLiteral("DCHelp.html")); }

    // Replaces the line `from` of a source by `to`; returns its number.
    int replace(const QString &file, const QString &from, const QString &to)
    {
        QFile f(QDir(sources()).filePath(file));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly));
        QStringList lines = QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'));
        f.close();
        const int at = int(lines.indexOf(from));
        EXPECT_GE(at, 0) << from.toStdString();
        lines[at] = to;
        EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(lines.join(QLatin1Char('\n')).toUtf8());
        return at + 1;
    }

    ToolRun run()
    {
        QProcess tool;
        tool.start(QStringLiteral(LEXARBOR_MKSEED), {sources(), output(), help()});
        EXPECT_TRUE(tool.waitForFinished(-1));
        return {tool.exitCode(), QString::fromLocal8Bit(tool.readAllStandardError())};
    }

    TempFolder folder;
};

} // namespace

// A bad source stops the build with its file and line, and an earlier seed file stays.
TEST_F(MkseedTest, RefusesBadSourcesByFileAndLine)
{
    struct Case {
        const char *what;
        const char *file;
        QStringList lines; // the first one is at fault
        const char *reason;
    };
    const QList<Case> cases = {
        {"unknown parent", "isa.tsv", {"HAS-PART\tNOBODY"}, "ISA refuses the row"},
        {"too few values", "concepts.tsv", {"BROKEN\t1\t1"}, "3 values, 4 expected"},
        {"second top", "concepts.tsv", {"ROOT\t100\t1\tAnother top."}, "second top concept"},
        {"orphan", "concepts.tsv", {"LONELY\t1\t1\tNo parent."}, "LONELY has no parent"},
        {"one-way inverse", "inverses.tsv", {"HAS-PART\tHAS-MEMBER"}, "is missing"},
        {"not a boolean", "languages.tsv", {"xx\tTest\tyes"}, "Show must be true or false"},
        {"long attribute",
         "concepts.tsv",
         {QStringLiteral("ATTR-%1\t3\t1\tToo long.").arg(QString(50, QLatin1Char('X')))},
         "50 characters"},
        {"unknown category",
         "tb_valid_families.tsv",
         {"0.3\t99.9\t*"},
         "valid_families refuses the row"},
        {"parent after child",
         "tb_datcats.tsv",
         {"7.7.7\tdescrip\tlate\ttext\tfalse\tfalse\t7.7"},
         "datcats refuses the row"},
        {"unnamed category",
         "tb_datcats.tsv",
         {"7.9\tdescrip\tunnamed\ttext\tfalse\tfalse\t7"},
         "7.9 has no name in en"},
        {"definition of a record", "tb_datcats_help.tsv", {"x10.3\tA subset."}, "x10.3 isn't"},
    };
    for (const Case &c : cases) {
        fresh();
        QFile old(output());
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write("old");
        old.close();

        const QString file = QString::fromLatin1(c.file);
        const int line = append(file, c.lines);
        const ToolRun r = run();
        EXPECT_EQ(r.exitCode, 1) << c.what;
        EXPECT_TRUE(r.errors.contains(QStringLiteral("%1:%2:").arg(file).arg(line)))
            << c.what << ": " << r.errors.toStdString();
        EXPECT_TRUE(r.errors.contains(QLatin1String(c.reason)))
            << c.what << ": " << r.errors.toStdString();
        ASSERT_TRUE(old.open(QIODevice::ReadOnly));
        EXPECT_EQ(old.readAll(), QByteArray("old")) << c.what;
        old.close();
        EXPECT_FALSE(QFile::exists(output() + QStringLiteral(".part"))) << c.what;
    }
}

TEST_F(MkseedTest, RefusesAnIsaCycle)
{
    append(QStringLiteral("concepts.tsv"),
           {QStringLiteral("LOOP-A\t1\t1\tOne."), QStringLiteral("LOOP-B\t1\t1\tTwo.")});
    append(QStringLiteral("isa.tsv"),
           {QStringLiteral("LOOP-A\tLOOP-B"), QStringLiteral("LOOP-B\tLOOP-A")});
    const ToolRun r = run();
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.errors.contains(QStringLiteral("cycle"))) << r.errors.toStdString();
    EXPECT_FALSE(QFile::exists(output()));
}

// Every category but the backmatter's needs its definition, which its help section shows.
TEST_F(MkseedTest, WritesAHelpSectionPerCategoryAndRefusesOneWithoutDefinition)
{
    ASSERT_EQ(run().exitCode, 0);
    QFile page(help());
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QString html = QString::fromUtf8(page.readAll());
    EXPECT_TRUE(html.contains(QStringLiteral("<h2 id=\"5.3x\">Context file")));
    EXPECT_TRUE(html.contains(QStringLiteral("<h2 id=\"10.2.2.10\">")));
    EXPECT_FALSE(html.contains(QStringLiteral("id=\"x"))) << "no backmatter sections";
    EXPECT_FALSE(html.contains(QStringLiteral("<script")));
    page.close();

    append(QStringLiteral("tb_datcats.tsv"),
           {QStringLiteral("7.4\tdescrip\tundefined\ttext\tfalse\tfalse\t7")});
    append(QStringLiteral("tb_datcats_names.tsv"),
           {QStringLiteral("7.4\ten\tUndefined"), QStringLiteral("7.4\tes\tIndefinido")});
    const ToolRun r = run();
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.errors.contains(QStringLiteral("7.4 has no definition")))
        << r.errors.toStdString();
}

// "Help on this" finds a category by its name in the pane, the last of equal names winning, and
// the help's list reads the identifier after " (": names that would mislead either are refused.
TEST_F(MkseedTest, RefusesNamesThatHelpCouldNotFindItsCategoryBy)
{
    struct Case {
        const char *from;
        const char *to;
        const char *reason;
    };
    const Case cases[] = {
        {"7\tit\tStruttura concettuale", "7\tit\tStruttura (concetti)", "the name of 7 holds"},
        {"x10.3\tnl\tDeelverzamelingsrecord", "x10.3\tnl\tBegripsstructuur",
         "x10.3 shares the nl name Begripsstructuur with 7"},
        {"7.3\tde\tBegriffsplan", "7.3\tde\tBegriffsstruktur", "7.3 shares the de name"},
    };
    for (const Case &c : cases) {
        fresh();
        const QString file = QStringLiteral("tb_datcats_names.tsv");
        const int line = replace(file, QString::fromUtf8(c.from), QString::fromUtf8(c.to));
        const ToolRun r = run();
        EXPECT_EQ(r.exitCode, 1) << c.to;
        EXPECT_TRUE(r.errors.contains(QStringLiteral("%1:%2:").arg(file).arg(line)))
            << r.errors.toStdString();
        EXPECT_TRUE(r.errors.contains(QString::fromUtf8(c.reason))) << r.errors.toStdString();
    }
    // Backmatter records may share a name among themselves: they have no help.
    fresh();
    replace(QStringLiteral("tb_datcats_names.tsv"), QStringLiteral("x9.1\ten\tThesaurus"),
            QStringLiteral("x9.1\ten\tThesauri"));
    EXPECT_EQ(run().exitCode, 0);
}
