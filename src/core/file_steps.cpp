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

namespace {
const QString DateFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss");
} // namespace

QString DateToText(const QDateTime &date)
{
    return date.toString(DateFormat);
}

QDateTime TextToDate(const QString &text)
{
    QDateTime date = QDateTime::fromString(text.trimmed(), DateFormat);
    if (!date.isValid())
        date = QDateTime::fromString(text.trimmed(), Qt::ISODate);
    if (!date.isValid())
        throw store::StoreError(13, QStringLiteral("Type mismatch"));
    return date;
}

} // namespace lx
