#include "store_fixture.h"

#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace lx::store;

TEST(StoreFiles, CreateRefusesAnExistingFileAndOpenNeverCreatesOne)
{
    TempFolder folder;
    const QString path = folder.path(QStringLiteral("a.ont"));
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral, dbVersion40);
    db.Close();
    EXPECT_STORE_ERROR(DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral, dbVersion40),
                       err::DatabaseExists);

    const QString missing = folder.path(QStringLiteral("missing.ont"));
    EXPECT_STORE_ERROR(DBEngine::OpenDatabase(missing), err::FileNotFound);
    EXPECT_FALSE(QFileInfo::exists(missing));

    Database again =
        DBEngine::OpenDatabase(path, false, false, QStringLiteral(";pwd=fennelgrotto"));
    EXPECT_TRUE(again.isOpen());
    EXPECT_EQ(again.Name(), path);
}

TEST(StoreFiles, FilesThatAreNotStoreFilesAreRefusedUntouched)
{
    TempFolder folder;
    const QByteArray text = "Concept\tDefinition\r\nALL\tthe top\r\n";
    const QString textPath = folder.path(QStringLiteral("text.ont"));
    QFile f(textPath);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(text);
    f.close();
    EXPECT_STORE_ERROR(DBEngine::OpenDatabase(textPath), err::UnrecognizedFormat);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), text);
    f.close();

    const QString empty = folder.path(QStringLiteral("empty.ont"));
    QFile(empty).open(QIODevice::WriteOnly);
    EXPECT_STORE_ERROR(DBEngine::OpenDatabase(empty), err::UnrecognizedFormat);
    EXPECT_EQ(QFileInfo(empty).size(), 0);

    // A SQLite file of some other program.
    const QString foreign = folder.path(QStringLiteral("other.db"));
    sqlite3 *raw = nullptr;
    sqlite3_open(foreign.toUtf8().constData(), &raw);
    sqlite3_exec(raw, "CREATE TABLE t(x); INSERT INTO t VALUES (1);", nullptr, nullptr, nullptr);
    sqlite3_close(raw);
    EXPECT_STORE_ERROR(DBEngine::OpenDatabase(foreign), err::UnrecognizedFormat);

    // A store file cut in half.
    const QString whole = folder.path(QStringLiteral("whole.ont"));
    {
        Database db = DBEngine::Workspaces(0).CreateDatabase(whole, dbLangGeneral, dbVersion40);
        TableDef t = db.CreateTableDef(QStringLiteral("T"));
        t.Fields.push_back(t.CreateField(QStringLiteral("A"), dbText, 10));
        db.Append(t);
        db.Checkpoint();
        db.Close();
    }
    QFile wf(whole);
    ASSERT_TRUE(wf.open(QIODevice::ReadOnly));
    const QByteArray bytes = wf.readAll();
    wf.close();
    const QString halfPath = folder.path(QStringLiteral("half.ont"));
    QFile half(halfPath);
    ASSERT_TRUE(half.open(QIODevice::WriteOnly));
    half.write(bytes.left(bytes.size() / 2));
    half.close();
    try {
        Database db = DBEngine::OpenDatabase(halfPath);
        db.OpenRecordset(QStringLiteral("T"), dbOpenSnapshot);
        ADD_FAILURE() << "a half file opened";
    } catch (const StoreError &e) {
        EXPECT_TRUE(e.number() == err::UnrecognizedFormat || e.number() == err::ObjectNotFound)
            << e.number();
    }
}

TEST(StoreFiles, TheCatalogComesBackWithTheFile)
{
    TempFolder folder;
    const QString path = folder.path(QStringLiteral("c.ont"));
    {
        Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral, dbVersion40);
        TableDef t = db.CreateTableDef(QStringLiteral("Words"));
        t.Fields.push_back(t.CreateField(QStringLiteral("Word"), dbText, 12));
        Index i = t.CreateIndex(QStringLiteral("Word"));
        i.Fields.push_back(i.CreateField(QStringLiteral("Word")));
        t.Indexes.push_back(i);
        db.Append(t);
        db.Close();
    }
    Database db = DBEngine::OpenDatabase(path);
    const std::vector<TableDef> tables = db.TableDefs();
    ASSERT_EQ(tables.size(), 1u);
    EXPECT_EQ(tables[0].Name, QStringLiteral("Words"));
    EXPECT_EQ(tables[0].Fields[0].Size, 12);
    Recordset rs = db.OpenRecordset(QStringLiteral("words"));
    rs.AddNew();
    EXPECT_STORE_ERROR(rs.Collect(u"WORD", QStringLiteral("thirteen char"));
                       rs.Update(), err::FieldTooSmall);
}

// Each Update is committed when it returns: a writer killed without closing loses nothing.
TEST_F(StoreTest, AKilledWriterLosesNoUpdatedRow)
{
    const QString path = db.Name();
    db.Close();
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        Database writer = DBEngine::OpenDatabase(path);
        Recordset rs = writer.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
        for (int i = 0; i < 50; ++i) {
            rs.AddNew();
            rs.Collect(u"Key", QStringLiteral("K%1").arg(i));
            rs.Update();
        }
        ::kill(::getpid(), SIGKILL);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    Database reader = DBEngine::OpenDatabase(path);
    Recordset rs = reader.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    EXPECT_EQ(rs.RecordCount(), 50);
}
