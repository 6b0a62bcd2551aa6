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

bool EnsureSeedFile()
{
    const QString target = SeedDatabasePath();
    if (QFileInfo::exists(target))
        return true;
    InitSeedResource();
    if (!QFile::copy(QStringLiteral(":/lexarbor/res.dat"), target))
        return false;
    // A copy out of the resources is read-only; the store opens the seed for writing too.
    return QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
}

QString EnsureHelpFile()
{
    const QString target = AppPath() + QStringLiteral("/DCHelp.html");
    if (QFileInfo::exists(target))
        return target;
    InitSeedResource();
    if (!QFile::copy(QStringLiteral(":/lexarbor/DCHelp.html"), target))
        return {};
    QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
    return target;
}

} // namespace lx
