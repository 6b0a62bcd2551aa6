#include "store_fixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

using namespace lx::store;

namespace {

// The ways a file comes to be open read-only: asked for, judged by the store's check, or the
// system's permissions on the folder or the file (these two only for a user who isn't root).
enum class ReadOnlyBy { Request, Check, FolderPermissions, FilePermissions };

class ReadOnlyOpen : public StoreTest, public ::testing::WithParamInterface<ReadOnlyBy> {
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        addParent(QStringLiteral("A"));
        addChild(QStringLiteral("A"), QStringLiteral("first"));
        path = db.Name();
        db.Close();
    }
    void TearDown() override
    {
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
        QFile::setPermissions(folder.root(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    Database open()
    {
        switch (GetParam()) {
        case ReadOnlyBy::Request:
            return DBEngine::OpenDatabase(path, false, true, QString());
        case ReadOnlyBy::Check: {
            NoWriteAccess noAccess;
            return DBEngine::OpenDatabase(path);
        }
        case ReadOnlyBy::FolderPermissions:
            QFile::setPermissions(folder.root(), QFile::ReadOwner | QFile::ExeOwner);
            return DBEngine::OpenDatabase(path);
        case ReadOnlyBy::FilePermissions:
            QFile::setPermissions(path, QFile::ReadOwner);
            return DBEngine::OpenDatabase(path);
        }
        return {};
    }

    QStringList sideFiles() const
    {
        return QDir(folder.root()).entryList({QStringLiteral("*-wal"), QStringLiteral("*-shm")});
    }

    QString path;
};

TEST_P(ReadOnlyOpen, ReadsEverythingWritesNothingAndSaysWhy)
{
    if (GetParam() >= ReadOnlyBy::FolderPermissions && ::geteuid() == 0)
        GTEST_SKIP() << "root writes whatever the permissions say; the Check case stands for it";
    const QByteArray before = FileBytes(path);
    ASSERT_TRUE(sideFiles().isEmpty());

    Database ro = open();
    EXPECT_FALSE(ro.Updatable());
    Recordset children = ro.OpenRecordset(QStringLiteral("SELECT * FROM Children"));
    EXPECT_EQ(column(children, QStringLiteral("Value")), QStringList{QStringLiteral("first")});
    EXPECT_TRUE(sideFiles().isEmpty()) << "an immutable open makes no side files";

    // Every write fails at once with the store's read-only error, naming the file.
    auto expectReadOnly = [&](auto &&write) {
        try {
            write();
            ADD_FAILURE() << "a write went through";
        } catch (const StoreError &e) {
            EXPECT_EQ(e.number(), err::ReadOnly);
            EXPECT_EQ(e.description(),
                      QStringLiteral("Cannot update. The file is read-only: ") + path);
        }
    };
    Recordset parents = ro.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    expectReadOnly([&] { parents.AddNew(); });
    expectReadOnly([&] { parents.Edit(); });
    expectReadOnly([&] { parents.Delete(); });
    expectReadOnly([&] { children.Edit(); });
    expectReadOnly([&] { ro.Append(ro.CreateTableDef(QStringLiteral("More"))); });
    parents.Close();
    children.Close();
    ro.Checkpoint(); // nothing to do, and no failure
    ro.Close();

    EXPECT_TRUE(sideFiles().isEmpty());
    EXPECT_EQ(FileBytes(path), before);
    TearDown();
    Database rw = DBEngine::OpenDatabase(path);
    EXPECT_TRUE(rw.Updatable()) << "writable again once the user may write";
}

INSTANTIATE_TEST_SUITE_P(Store, ReadOnlyOpen,
                         ::testing::Values(ReadOnlyBy::Request, ReadOnlyBy::Check,
                                           ReadOnlyBy::FolderPermissions,
                                           ReadOnlyBy::FilePermissions));

// Side files an earlier read-only open left, with the file's permissions of then, would keep
// the file from being written once it is writable again; empty, they are made anew.
TEST_F(StoreTest, StaleReadOnlySideFilesAreReplaced)
{
    const QString path = db.Name();
    db.Close();
    for (const char *suffix : {"-wal", "-shm"}) {
        QFile side(path + QLatin1String(suffix));
        ASSERT_TRUE(side.open(QIODevice::WriteOnly));
        side.close();
        side.setPermissions(QFile::ReadOwner);
    }
    // Root may write them anyway: the check stands for the user who can't.
    static QString stalePath;
    stalePath = path;
    const auto old = DBEngine::SetWritableCheck(
        [](const QString &file) { return !file.startsWith(stalePath + QLatin1Char('-')); });
    Database rw = DBEngine::OpenDatabase(path);
    DBEngine::SetWritableCheck(old);

    EXPECT_TRUE(rw.Updatable());
    Recordset rs = rw.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    rs.AddNew();
    rs.Collect(u"Key", QStringLiteral("NEW"));
    rs.Update();
    EXPECT_TRUE(QFile::permissions(path + QStringLiteral("-shm")) & QFile::WriteOwner);
}

// A value in a field that tables join on is set between double quotes by the program's
// queries; one holding a double quote would change which rows they touch.
TEST_F(StoreTest, RelatedFieldsRefuseADoubleQuoteOnEveryWrite)
{
    addParent(QStringLiteral("A"));
    const QString crafted = QStringLiteral("X\" OR Key <> \"");
    auto expectRefused = [&](Recordset &rs, QStringView field) {
        try {
            rs.Collect(field, crafted);
            rs.Update();
            ADD_FAILURE() << "a double quote went into " << field.toString().toStdString();
        } catch (const StoreError &e) {
            EXPECT_EQ(e.number(), err::ValidationRule);
            EXPECT_TRUE(e.description().contains(crafted)) << e.description().toStdString();
        }
        rs.CancelUpdate();
    };
    Recordset parents = db.OpenRecordset(QStringLiteral("PARENTS"), dbOpenTable);
    parents.AddNew();
    expectRefused(parents, u"Key"); // the primary side of the relation
    parents.MoveFirst();
    parents.Edit();
    expectRefused(parents, u"key");
    Recordset children = db.OpenRecordset(QStringLiteral("SELECT * FROM Children"));
    children.AddNew();
    expectRefused(children, u"Parent"); // the foreign side

    // Text that no table joins on keeps its double quotes.
    parents.Edit();
    parents.Collect(u"Info", QStringLiteral("a \"quoted\" note"));
    parents.Update();
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM PARENTS"), QStringLiteral("Key")),
              QStringList{QStringLiteral("A")});
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM PARENTS"), QStringLiteral("Info")),
              QStringList{QStringLiteral("a \"quoted\" note")});
    EXPECT_TRUE(
        query(QStringLiteral("SELECT * FROM Children"), QStringLiteral("Parent")).isEmpty());
}

} // namespace
