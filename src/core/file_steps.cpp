#include "core/file_steps.h"

#include "core/store/errors.h"

#include <QDir>
#include <QFileInfo>

namespace lx {

QString FolderOf(const QString &path)
{
    return path.left(path.size() - QFileInfo(path).fileName().size());
}

void CreateFolderIfMissing(const QString &folder)
{
    if (QFileInfo(folder).isDir())
        return;
    if (!QDir().mkdir(folder))
        throw store::StoreError(PathFileAccessError, QStringLiteral("Path/File access error"));
}

} // namespace lx
