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

} // namespace
