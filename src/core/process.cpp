#include "core/process.h"

#include "core/app_folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cstdlib>
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
// Set in the restarted process to what GLIBC_TUNABLES was before: "=" and its value, or empty
// when it was unset.
constexpr const char *RestartMark = "LEXARBOR_HEAP_RESTART";
constexpr std::string_view HugePageTunable = "glibc.malloc.hugetlb";
} // namespace

std::optional<std::string> HugePageTunables(const char *current)
{
    const std::string tunables = current ? current : "";
    if (tunables.find(HugePageTunable) != std::string::npos)
        return std::nullopt;
    return (tunables.empty() ? std::string() : tunables + ':') + std::string(HugePageTunable) +
           "=1";
}

void StartWithHugePageHeap(char **argv)
{
#if defined(__GLIBC__) && defined(__linux__)
    if (const char *mark = std::getenv(RestartMark)) {
        if (*mark == '=')
            setenv("GLIBC_TUNABLES", mark + 1, 1);
        else
            unsetenv("GLIBC_TUNABLES");
        unsetenv(RestartMark);
        return;
    }
    const char *current = std::getenv("GLIBC_TUNABLES");
    const std::optional<std::string> tunables = HugePageTunables(current);
    if (!tunables)
        return;
    setenv(RestartMark, current ? (std::string("=") + current).c_str() : "", 1);
    setenv("GLIBC_TUNABLES", tunables->c_str(), 1);
    execv("/proc/self/exe", argv);
    // Not restarted: the environment as it was, and on without huge pages.
    if (current)
        setenv("GLIBC_TUNABLES", current, 1);
    else
        unsetenv("GLIBC_TUNABLES");
    unsetenv(RestartMark);
#else
    (void)argv;
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
