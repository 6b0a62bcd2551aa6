#include "core/process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <filesystem>

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

QString AppPath()
{
    QString path = qEnvironmentVariable("LEXARBOR_HOME");
    if (path.isEmpty())
        path = QCoreApplication::applicationDirPath();
    // cleanPath drops trailing separators but keeps the root itself.
    return QDir::cleanPath(path);
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
    CreateFolderIfMissing(OntologiesFolder());
    CreateFolderIfMissing(TermBasesFolder());
}

} // namespace lx
