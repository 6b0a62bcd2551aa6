#include "core/app_folders.h"
#include "core/process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <filesystem>
#include <gtest/gtest.h>

namespace {

// Points AppPath at a folder for the length of a test.
class HomeScope {
public:
    explicit HomeScope(const QString &home) : m_old(qgetenv("LEXARBOR_HOME"))
    {
        qputenv("LEXARBOR_HOME", QFile::encodeName(home));
    }
    ~HomeScope()
    {
        if (m_old.isNull())
            qunsetenv("LEXARBOR_HOME");
        else
            qputenv("LEXARBOR_HOME", m_old);
    }

private:
    QByteArray m_old;
};

TEST(AppPath, HomeOverridesAndLosesItsTrailingSeparator)
{
    QTemporaryDir home;
    const HomeScope scope(home.path() + QStringLiteral("/"));
    EXPECT_EQ(lx::AppPath(), home.path());
    EXPECT_EQ(lx::OntologiesFolder(), home.path() + QStringLiteral("/Ontologies/"));
    EXPECT_EQ(lx::TermBasesFolder(), home.path() + QStringLiteral("/TermBases/"));
    EXPECT_EQ(lx::SeedDatabasePath(), home.path() + QStringLiteral("/res.dat"));
}

TEST(AppPath, WithoutHomeIsTheExecutablesFolder)
{
    const QByteArray old = qgetenv("LEXARBOR_HOME");
    qunsetenv("LEXARBOR_HOME");
    const QString path = lx::AppPath();
    if (!old.isNull())
        qputenv("LEXARBOR_HOME", old);
    EXPECT_EQ(path, QCoreApplication::applicationDirPath());
    EXPECT_FALSE(path.endsWith(QLatin1Char('/')));
}

TEST(AppPath, ReadOnlyProgramFolderFallsBackToTheUsersDataFolderUnlessHomeIsSet)
{
    const QString program = QStringLiteral("/usr/bin");
    const QString data = QStringLiteral("/home/u/.local/share/Lexarbor/");
    QStringList asked;
    const auto readOnly = [&asked](const QString &folder) {
        asked << folder;
        return false;
    };
    const auto writable = [](const QString &) { return true; };

    EXPECT_EQ(lx::ResolveAppPath({}, program, readOnly, data),
              QStringLiteral("/home/u/.local/share/Lexarbor"));
    EXPECT_EQ(asked, QStringList{program}); // the program's folder is what gets checked
    EXPECT_EQ(lx::ResolveAppPath({}, program, writable, data), program);
    // A home given by hand wins even over a read-only program folder, and isn't checked itself.
    asked.clear();
    EXPECT_EQ(lx::ResolveAppPath(QStringLiteral("/srv/lx/"), program, readOnly, data),
              QStringLiteral("/srv/lx"));
    EXPECT_TRUE(asked.isEmpty());
}

TEST(ProgramFolders, AMissingDataFolderIsCreatedWithItsParents)
{
    QTemporaryDir root;
    const QString home = root.path() + QStringLiteral("/share/Lexarbor");
    const HomeScope scope(home);
    lx::EnsureProgramFolders();
    EXPECT_TRUE(QDir(home + QStringLiteral("/Ontologies")).exists());
    EXPECT_TRUE(QDir(home + QStringLiteral("/TermBases")).exists());
}

TEST(ProgramFolders, MissingFoldersAreCreatedAndPresentOnesLeftAlone)
{
    QTemporaryDir home;
    const HomeScope scope(home.path());
    lx::EnsureProgramFolders();
    EXPECT_TRUE(QDir(lx::OntologiesFolder()).exists());
    EXPECT_TRUE(QDir(lx::TermBasesFolder()).exists());

    QFile kept(lx::OntologiesFolder() + QStringLiteral("kept.ont"));
    ASSERT_TRUE(kept.open(QIODevice::WriteOnly));
    kept.close();
    lx::EnsureProgramFolders();
    EXPECT_TRUE(kept.exists());
    EXPECT_EQ(QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              (QStringList{QStringLiteral("Ontologies"), QStringLiteral("TermBases")}));
}

TEST(ProgramFolders, AFileInTheWayEndsStartWithAnError)
{
    QTemporaryDir home;
    // A file where the folder should be: it can be neither used nor created.
    QFile blocker(home.path() + QStringLiteral("/Ontologies"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const HomeScope scope(home.path());
    EXPECT_THROW(lx::EnsureProgramFolders(), std::filesystem::filesystem_error);
}

TEST(HugePageHeap, TheTunableIsAddedOnceAndOthersAreKept)
{
    EXPECT_EQ(lx::HugePageTunables(nullptr), std::optional<std::string>("glibc.malloc.hugetlb=1"));
    EXPECT_EQ(lx::HugePageTunables(""), std::optional<std::string>("glibc.malloc.hugetlb=1"));
    EXPECT_EQ(lx::HugePageTunables("glibc.malloc.tcache_count=0"),
              std::optional<std::string>("glibc.malloc.tcache_count=0:glibc.malloc.hugetlb=1"));
    // The user's own choice, huge pages or not, stands.
    EXPECT_EQ(lx::HugePageTunables("glibc.malloc.hugetlb=0"), std::nullopt);
    EXPECT_EQ(lx::HugePageTunables("a=1:glibc.malloc.hugetlb=2"), std::nullopt);
}

} // namespace
