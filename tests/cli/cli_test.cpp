#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct Outcome {
    int status = -1;
    QString out;
    QString err;
};

// The command line tool run in a folder of its own, as its own program home.
class CliTest : public ::testing::Test {
protected:
    Outcome run(const QStringList &args)
    {
        QProcess process;
        process.setWorkingDirectory(dir.path());
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("LEXARBOR_HOME"), dir.path());
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(LEXARBOR_CLI), args);
        EXPECT_TRUE(process.waitForFinished(60000));
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
    QString path(const QString &name) const { return dir.filePath(name); }

    QTemporaryDir dir;
};

TEST_F(CliTest, NewWalkExportImportAndInheritGoRoundTheSameFile)
{
    ASSERT_EQ(run({"new", path("a.ont")}).status, 0);
    EXPECT_NE(run({"new", path("a.ont")}).status, 0); // there already

    const Outcome children = run({"walk", path("a.ont"), "children", "RELATION"});
    EXPECT_EQ(children.status, 0);
    EXPECT_TRUE(children.out.split(u'\n').contains(QStringLiteral("ASSOCIATIVE-RELATION")));

    ASSERT_EQ(run({"export", path("a.ont"), path("all.oxp")}).status, 0);
    QFile all(path("all.oxp"));
    ASSERT_TRUE(all.open(QIODevice::ReadOnly));
    const QByteArray bytes = all.readAll();
    EXPECT_TRUE(bytes.startsWith("("));
    EXPECT_TRUE(bytes.endsWith(")\r\n"));
    ASSERT_EQ(run({"export", path("a.ont"), path("one.oxp"), "RELATION"}).status, 0);
    QFile one(path("one.oxp"));
    ASSERT_TRUE(one.open(QIODevice::ReadOnly));
    EXPECT_TRUE(one.readAll().startsWith("(RELATION IS-A VALUE "));

    ASSERT_EQ(run({"new", path("b.ont")}).status, 0);
    const Outcome import =
        run({"import", path("b.ont"), path("all.oxp"), "--log", path("log.txt")});
    EXPECT_EQ(import.status, 0) << import.err.toStdString();
    QFile log(path("log.txt"));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("IMPORT LOG:"));

    const Outcome inherit = run({"inherit", path("a.ont"), "PRECEDES"});
    EXPECT_EQ(inherit.status, 0);
    EXPECT_TRUE(inherit.out.contains(QStringLiteral("\t")));
}

TEST_F(CliTest, FailuresSayWhyInOneLineAndExitNonZero)
{
    ASSERT_EQ(run({"new", path("a.ont")}).status, 0);
    const Outcome missing = run({"walk", path("a.ont"), "parents", "NOPE"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, QStringLiteral("lexarbor-cli: no such concept: NOPE\n"));
    EXPECT_EQ(run({"walk", path("none.ont"), "parents", "X"}).status, 1);
    EXPECT_EQ(run({"bogus"}).status, 2);
    EXPECT_EQ(run({}).status, 2);
    EXPECT_EQ(run({"export", "--help"}).status, 0);
    QFile junk(path("junk.ont"));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write("this is no ontology");
    junk.close();
    EXPECT_EQ(run({"walk", path("junk.ont"), "parents", "X"}).status, 1);
}

// The whole publish: into the ontology's own folder or into the one named, and a folder that
// can't be made is a failure.
TEST_F(CliTest, PublishWritesTheSiteWhereAskedAndFailsWhereItCannot)
{
    ASSERT_EQ(run({"new", path("Birds.ont")}).status, 0);
    const Outcome own = run({"publish", path("Birds.ont")});
    EXPECT_EQ(own.status, 0) << own.err.toStdString();
    // 71 concepts of the seed, the index and the frame page.
    const QStringList site = QDir(path("Birds-publish")).entryList(QDir::Files);
    EXPECT_EQ(site.size(), 73);
    EXPECT_TRUE(site.contains(QStringLiteral("birds-index.html")));
    EXPECT_TRUE(site.contains(QStringLiteral("birds-publish.html")));
    EXPECT_TRUE(site.contains(QStringLiteral("ALL.html")));
    EXPECT_TRUE(own.out.startsWith(QStringLiteral("71 pages")));

    ASSERT_EQ(run({"publish", path("Birds.ont"), path("out/site")}).status, 0);
    EXPECT_EQ(QDir(path("out/site")).entryList(QDir::Files).size(), 73);

    QFile blocker(path("file"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const Outcome blocked = run({"publish", path("Birds.ont"), path("file/site")});
    EXPECT_EQ(blocked.status, 1);
    EXPECT_TRUE(blocked.err.startsWith(QStringLiteral("lexarbor-cli: ")));
    EXPECT_EQ(blocked.err.count(u'\n'), 1);
    EXPECT_EQ(run({"publish", path("none.ont")}).status, 1);
    EXPECT_EQ(run({"publish"}).status, 2);
    EXPECT_EQ(run({"publish", "--help"}).status, 0);
}

TEST_F(CliTest, SkosExportWritesTurtleUnderTheBaseGivenOrTheDefaultOne)
{
    EXPECT_TRUE(run({"--help"}).out.contains(QStringLiteral("skos-export FILE.ont OUT.ttl")));
    EXPECT_EQ(run({"skos-export", path("a.ont")}).status, 2);
    EXPECT_EQ(run({"skos-export", path("none.ont"), path("x.ttl")}).status, 1);
    ASSERT_EQ(run({"new", path("a.ont")}).status, 0);

    const Outcome plain = run({"skos-export", path("a.ont"), path("a.ttl")});
    EXPECT_EQ(plain.status, 0) << plain.err.toStdString();
    QFile a(path("a.ttl"));
    ASSERT_TRUE(a.open(QIODevice::ReadOnly));
    EXPECT_TRUE(a.readAll().contains("<http://example.org/a/concept/ALL> a skos:Concept"));

    ASSERT_EQ(run({"skos-export", path("a.ont"), path("b.ttl"), "--base", "urn:x:"}).status, 0);
    QFile b(path("b.ttl"));
    ASSERT_TRUE(b.open(QIODevice::ReadOnly));
    EXPECT_TRUE(b.readAll().contains("<urn:x:concept/ALL> a skos:Concept"));

    EXPECT_EQ(run({"skos-export", path("a.ont"), path("no/such/dir/c.ttl")}).status, 1);
}

// A new termbase from the command line is the editor's: linked in the ontology, with its folders,
// and its export is a TBX-Basic file; each way of going wrong ends with one line and status 1.
TEST_F(CliTest, TbNewMakesATermbaseThatTbxExportWrites)
{
    EXPECT_TRUE(run({"--help"}).out.contains(QStringLiteral("tbx-export FILE.ltb OUT.tbx")));
    ASSERT_EQ(run({"new", path("a.ont")}).status, 0);
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("tb")));
    const Outcome made = run({"tb-new", path("tb/words.ltb"), path("a.ont")});
    ASSERT_EQ(made.status, 0) << made.err.toStdString();
    EXPECT_EQ(made.err, QString());
    EXPECT_TRUE(QDir(path("tb/words-back")).exists());
    EXPECT_TRUE(QDir(path("tb/words-publish")).exists());

    const Outcome out = run({"tbx-export", path("tb/words.ltb"), path("words.tbx")});
    EXPECT_EQ(out.status, 0) << out.err.toStdString();
    EXPECT_EQ(out.out, QStringLiteral("0 entries, 0 terms.\n"));
    QFile tbx(path("words.tbx"));
    ASSERT_TRUE(tbx.open(QIODevice::ReadOnly));
    const QByteArray text = tbx.readAll();
    EXPECT_TRUE(text.contains("<tbx xmlns=\"urn:iso:std:iso:30042:ed-2\" type=\"TBX-Basic\""));
    EXPECT_TRUE(text.contains("<title>words</title>"));

    auto fails = [this](const QStringList &args, const char *says) {
        const Outcome o = run(args);
        EXPECT_EQ(o.status, 1) << args.join(u' ').toStdString();
        EXPECT_TRUE(o.err.startsWith(QStringLiteral("lexarbor-cli: ") + QString::fromUtf8(says)))
            << o.err.toStdString();
        EXPECT_EQ(o.err.count(u'\n'), 1) << o.err.toStdString();
    };
    fails({"tb-new", path("tb/words.ltb"), path("a.ont")}, "the file exists already");
    fails({"tb-new", path("beside.ltb"), path("a.ont")}, "a termbase cannot reside");
    fails({"tb-new", path("tb/b.ltb"), path("none.ont")}, "no such file");
    fails({"tb-new", path("tb/a-name-of-more-than-25-chars.ltb"), path("a.ont")},
          "a termbase's name");
    fails({"tbx-export", path("none.ltb"), path("x.tbx")}, "no such file");
    fails({"tbx-export", path("a.ont"), path("x.tbx")}, "not a Lexarbor termbase");
    fails({"tbx-export", path("tb/words.ltb"), path("no/such/dir/x.tbx")}, "cannot write");
    EXPECT_FALSE(QFile::exists(path("x.tbx")));
    EXPECT_EQ(run({"tb-new", path("tb/c.ltb")}).status, 2);
    EXPECT_EQ(run({"tbx-export", path("tb/words.ltb")}).status, 2);
    EXPECT_EQ(run({"tbx-export", "--help"}).status, 0);
}

// The import puts a TBX file's entries into a termbase from the command line, under the
// termbase's own working ontology; a bad file changes nothing and ends with status 1.
TEST_F(CliTest, TbxImportReadsAFileIntoATermbase)
{
    EXPECT_TRUE(run({"tbx-import", "--help"}).out.contains(QStringLiteral("--add-concepts-under")));
    ASSERT_EQ(run({"new", path("a.ont")}).status, 0);
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("tb")));
    ASSERT_EQ(run({"tb-new", path("tb/words.ltb"), path("a.ont")}).status, 0);
    const auto write = [this](const char *name, const QByteArray &text) {
        QFile file(path(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return path(QString::fromLatin1(name));
    };
    const QString in = write(
        "in.tbx", "<tbx type='TBX-Basic' style='dca' xml:lang='en' "
                  "xmlns='urn:iso:std:iso:30042:ed-2'><text><body>\n"
                  "<conceptEntry id='OBJECT'><langSec xml:lang='en'><termSec><term>thing</term>"
                  "</termSec></langSec></conceptEntry>\n"
                  "<conceptEntry id='UNICORN'><langSec xml:lang='en'><termSec><term>unicorn</term>"
                  "</termSec></langSec></conceptEntry>\n</body></text></tbx>\n");
    const Outcome first = run({"tbx-import", path("tb/words.ltb"), in});
    EXPECT_EQ(first.status, 0) << first.err.toStdString();
    EXPECT_TRUE(first.out.contains(QStringLiteral("line 3: the concept \"UNICORN\" is not in")))
        << first.out.toStdString();
    EXPECT_TRUE(first.out.contains(QStringLiteral("1 entries added, 0 merged, 1 left out")));

    const Outcome second = run({"tbx-import", path("tb/words.ltb"), in, "--add-concepts-under",
                                "OBJECT", "--log", path("import.log")});
    EXPECT_EQ(second.status, 0) << second.err.toStdString();
    EXPECT_EQ(second.out, QStringLiteral("1 entries added, 1 merged, 0 left out; 1 new terms.\n"));
    QFile log(path("import.log"));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("the concept \"UNICORN\" is added under \"OBJECT\""));
    EXPECT_EQ(run({"walk", path("a.ont"), "parents", "UNICORN"}).out, QStringLiteral("OBJECT\n"));

    ASSERT_EQ(run({"tbx-export", path("tb/words.ltb"), path("out.tbx")}).status, 0);
    QFile out(path("out.tbx"));
    ASSERT_TRUE(out.open(QIODevice::ReadOnly));
    const QByteArray exported = out.readAll();
    EXPECT_TRUE(exported.contains("<term>thing</term>") &&
                exported.contains("<term>unicorn</term>"));

    const QString bad = write("bad.tbx", "<tbx type='TBX-Basic' style='dca' xml:lang='en' "
                                         "xmlns='urn:iso:std:iso:30042:ed-2'><text><body>\n"
                                         "<conceptEntry id='EVENT'>\n<langSec><termSec><term>x"
                                         "</term></termSec></langSec></conceptEntry>\n"
                                         "</body></text></tbx>\n");
    const Outcome refused = run({"tbx-import", path("tb/words.ltb"), bad});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.out.contains(QStringLiteral("line 3: a language section without")))
        << refused.out.toStdString();
    EXPECT_TRUE(refused.err.startsWith(QStringLiteral("lexarbor-cli: nothing was imported")));
    EXPECT_EQ(run({"tbx-import", path("none.ltb"), in}).status, 1);
    EXPECT_EQ(run({"tbx-import", path("tb/words.ltb")}).status, 2);
}

} // namespace
