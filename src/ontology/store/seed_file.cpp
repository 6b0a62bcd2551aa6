#include "core/app_folders.h"
#include "core/process.h"
#include "seed.h"

#include <QFile>
#include <QFileInfo>

// Q_INIT_RESOURCE can't stand inside a namespace. The resource comes with this static library,
// whose object a program might otherwise leave out.
static void InitSeedResource()
{
    Q_INIT_RESOURCE(lexarbor_seed);
}

namespace lx {

namespace {

// Copies the file called name to target: the copy installed with the program when there is one,
// else the one built into it. False if no copy could be made.
bool CopyOut(const QString &name, const QString &target)
{
    const QString installed = SharedDataFolder() + QLatin1Char('/') + name;
    QString source = QStringLiteral(":/lexarbor/") + name;
    if (QFileInfo::exists(installed))
        source = installed;
    else
        InitSeedResource();
    if (!QFile::copy(source, target))
        return false;
    // Both sources are read-only; the store opens the seed for writing too.
    return QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
}

} // namespace

bool EnsureSeedFile()
{
    const QString target = SeedDatabasePath();
    return QFileInfo::exists(target) || CopyOut(QStringLiteral("res.dat"), target);
}

QString EnsureHelpFile()
{
    const QString target = AppPath() + QStringLiteral("/DCHelp.html");
    if (QFileInfo::exists(target))
        return target;
    CopyOut(QStringLiteral("DCHelp.html"), target);
    return QFileInfo::exists(target) ? target : QString();
}

} // namespace lx
