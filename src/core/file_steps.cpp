#include "core/file_steps.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
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

bool RefuseDoubleQuotedPath(const QString &path)
{
    if (!path.contains(QLatin1Char('"')))
        return false;
    UI().MsgBox(QStringLiteral("The file name must not contain a double quote (\"): ") + path,
                msg::Exclamation);
    return true;
}

std::optional<QString> SeedFileProblem()
{
    const QString path = SeedDatabasePath();
    try {
        store::Database seed = store::DBEngine::OpenDatabase(path, false, true, kSeedConnect);
        seed.Close();
        return std::nullopt;
    } catch (const store::StoreError &error) {
        return QStringLiteral("The seed file can't be read: ") + error.description();
    }
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
