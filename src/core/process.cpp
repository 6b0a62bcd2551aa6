#include "core/process.h"

#include "core/app_folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <filesystem>
#include <unistd.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace lx {

ProcessState &Process()
{
    static ProcessState state;
    return state;
}

void ResetProcessState()
{
    Process() = ProcessState{};
}

QString ResolveAppPath(const QString &home, const QString &programFolder,
                       const std::function<bool(const QString &)> &writable,
                       const QString &dataFolder)
{
    QString path = home;
    if (path.isEmpty())
        path = writable(programFolder) ? programFolder : dataFolder;
    // cleanPath drops trailing separators but keeps the root itself.
    return QDir::cleanPath(path);
}

QString UserDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Lexarbor");
}

QString AppPath()
{
    return ResolveAppPath(
        qEnvironmentVariable("LEXARBOR_HOME"), QCoreApplication::applicationDirPath(),
        [](const QString &folder) { return access(QFile::encodeName(folder), W_OK) == 0; },
        UserDataFolder());
}

QString SharedDataFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../share/lexarbor"));
}

QString OntologiesFolder()
{
    return AppPath() + QStringLiteral("/Ontologies/");
}

QString TermBasesFolder()
{
    return AppPath() + QStringLiteral("/TermBases/");
}

QString SeedDatabasePath()
{
    return AppPath() + QStringLiteral("/res.dat");
}

void KeepLargeBuffersInHeap()
{
#ifdef __GLIBC__
    mallopt(M_MMAP_THRESHOLD, 256 * 1024 * 1024);
    mallopt(M_TRIM_THRESHOLD, 512 * 1024 * 1024);
#endif
}

namespace {

void CreateFolderIfMissing(const QString &folder)
{
    const std::filesystem::path path(QFile::encodeName(folder).toStdString());
    if (!std::filesystem::is_directory(path))
        std::filesystem::create_directory(path); // one level, as the program folder exists
}

} // namespace

void EnsureProgramFolders()
{
    // The user's data folder may not exist yet; the program folder always does.
    std::filesystem::create_directories(QFile::encodeName(AppPath()).toStdString());
    CreateFolderIfMissing(OntologiesFolder());
    CreateFolderIfMissing(TermBasesFolder());
}

} // namespace lx
