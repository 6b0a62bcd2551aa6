#pragma once

#include <QDateTime>
#include <QString>

#include <exception>
#include <optional>

// Small steps on files and folders that the life cycles of both kinds of file share.
namespace lx {

// The connect string of the seed file res.dat.
inline const QString kSeedConnect = QStringLiteral(";pwd=fennelgrotto");

// The seven text boxes of the properties dialog, as text.
struct PropertiesTexts {
    QString Name;
    QString Created;
    QString Modified;
    QString Owner;
    QString Author;
    QString Description;
    QString Contact;

    bool operator==(const PropertiesTexts &) const = default;
};

// Dates as the properties dialogs show them, and back. TextToDate fails with error 13 on a
// text that isn't a date.
QString DateToText(const QDateTime &date);
QDateTime TextToDate(const QString &text);

// The seven boxes of a properties dialog, from the metadata of either kind of file.
template <class Meta> PropertiesTexts PropertiesTextsOf(const Meta &meta)
{
    return {meta.Name,
            DateToText(meta.Created),
            DateToText(meta.Modified),
            meta.Owner,
            meta.Author,
            meta.Description,
            meta.Contact};
}

// The runtime error of a folder that can't be made.
inline constexpr int PathFileAccessError = 75;

// The path less the file title, with its trailing separator.
QString FolderOf(const QString &path);

// Makes the folder (one level) unless it is there; StoreError 75 "Path/File access error"
// when it can't be made.
void CreateFolderIfMissing(const QString &folder);

// A path stands between double quotes in criteria (the links of an ontology to its termbases),
// so a file whose path holds one is neither created, opened nor assigned. Says so and returns
// true for such a path.
bool RefuseDoubleQuotedPath(const QString &path);

// Why the seed file res.dat can't be read, or nothing when it can. Checked before a new file is
// made from it, so a missing seed stops the command before anything is written.
std::optional<QString> SeedFileProblem();

// Runs one statement of a routine that goes on whatever fails.
template <class Step> void IgnoreErrors(Step &&step)
{
    try {
        step();
    } catch (const std::exception &) {
        // Ignored: the next statement runs regardless.
    }
}

} // namespace lx
