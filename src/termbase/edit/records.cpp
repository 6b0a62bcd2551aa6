#include "termbase/edit/records.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/types.h"
#include "termbase/edit/assert.h"
#include "termbase/store/lifecycle.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <initializer_list>
#include <utility>

namespace lx {

using namespace store;

namespace {

struct TextRecordWords {
    const char *command;
    const char *title;
    const char *prompt;
    const char *category;
};

constexpr TextRecordWords kTextRecords[] = {
    {"AddSubjectFieldSet", "New Subject Field Set", "Enter subject field set (e.g.: medicine)",
     "xx4"},
    {"AddUrl", "New URL", "Enter URL. Don't forget to include initial sequence (e.g.: 'http://')",
     "x10.21.1"},
    {"AddFpi", "New FPI", "Enter FPI:", "x10.21.2"},
};

void addText(qint32 elemId, const QString &value)
{
    Recordset rs = Process().TermDB.OpenRecordset(QStringLiteral("text_values"), dbOpenTable);
    rs.AddNew();
    rs.Collect(u"elemID", elemId);
    rs.Collect(u"value", value);
    rs.Update();
    rs.Close();
}

qint32 addRecord(TermbaseEditor &editor, const char *category, qint32 parent, const QString &value)
{
    const qint32 id = AddElementRow(editor, QString::fromLatin1(category), parent);
    addText(id, value);
    return id;
}

// The filled fields, each a child of the record in the order given.
void addChildren(TermbaseEditor &editor, qint32 record,
                 std::initializer_list<std::pair<const char *, const QString *>> fields)
{
    for (const auto &[category, value] : fields) {
        if (!value->isEmpty())
            addRecord(editor, category, record, *value);
    }
}

// A copy that is whole or absent: written under another name and put in place at the end.
bool copyWhole(const QString &source, const QString &target)
{
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        return false;
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    constexpr qint64 kChunk = 1 << 20;
    while (!in.atEnd()) {
        const QByteArray chunk = in.read(kChunk);
        if (chunk.isEmpty() && in.error() != QFileDevice::NoError) {
            out.cancelWriting();
            return false;
        }
        if (out.write(chunk) != chunk.size()) {
            out.cancelWriting();
            return false;
        }
    }
    return out.commit();
}

QString folderOf(const QString &folder)
{
    QDir().mkpath(folder);
    return folder + QLatin1Char('/');
}

void tell(const QString &text)
{
    UI().MsgBox(text, msg::Exclamation);
}

} // namespace

bool AddTextRecord(TermbaseEditor &editor, const QString &command)
{
    for (const TextRecordWords &words : kTextRecords) {
        if (command != QLatin1String(words.command))
            continue;
        const QString answer =
            UI().InputBox(QString::fromLatin1(words.prompt), QString::fromLatin1(words.title));
        if (answer.isEmpty())
            return false;
        if (answer.contains(QLatin1Char('"'))) {
            tell(QStringLiteral("A record can't hold a double quote (\")."));
            return false;
        }
        addRecord(editor, words.category, editor.CurrentElemID, answer);
        return true;
    }
    return false;
}

qint32 AddPersonRecord(TermbaseEditor &editor, const PersonFields &person)
{
    const qint32 record = addRecord(editor, "x10.2.2", editor.CurrentElemID, person.Alias);
    addChildren(editor, record,
                {{"x10.2.2.2", &person.Name},
                 {"x10.2.2.3", &person.Role},
                 {"x10.2.2.4", &person.Email},
                 {"x10.2.2.5", &person.Phone},
                 {"x10.2.2.6", &person.Remarks}});
    return record;
}

std::optional<QString> AliasProblem(const QString &alias)
{
    for (const QChar c : {QChar(u'/'), QChar(u'\\'), QChar(u':'), QChar(u'"'), QChar(0)}) {
        if (alias.contains(c))
            return QStringLiteral("An alias can't hold / \\ : or \" (it names the person's page).");
    }
    if (alias == QLatin1String(".") || alias == QLatin1String(".."))
        return QStringLiteral("An alias can't be . or ..");
    return std::nullopt;
}

qint32 AddBibliographyRecord(TermbaseEditor &editor, const BiblioFields &source)
{
    const qint32 record = addRecord(editor, "x10.20", editor.CurrentElemID, source.Descriptor);
    addChildren(editor, record,
                {{"x10.20.1", &source.Author},
                 {"x10.20.2", &source.Date},
                 {"x10.20.3", &source.Article},
                 {"x10.20.4", &source.Book},
                 {"x10.20.8", &source.Pages},
                 {"x10.20.5", &source.PHouse},
                 {"x10.20.6", &source.PPlace}});
    return record;
}

std::optional<QString> BinaryRecordFilter(const QString &categoryId)
{
    if (categoryId == QLatin1String("x5.5"))
        return QStringLiteral(
            "Graphics Files(*.gif;*.jpg;*jpeg;*.bmp;*.pcx;*.png)|*.gif;*.jpg;*jpeg;*.bmp;*.pcx;*."
            "png|Sound Files(*.wav;*.au;*.mp3)|*.wav; *.au;*.mp3|Video Files(*.avi;*.mpg;*.mov)|*."
            "avi;*.mpg;*.mov|Table Files(*.html;*.htm)|*.html;*.htm|Program Files(*.exe;*.com;*."
            "bin)|*.exe;*.com;*.bin|All Files(*.*)|*.*");
    if (categoryId == QLatin1String("x11.1"))
        return QStringLiteral(
            "KWIC files(*.cnc;*.dat;*txt;*.doc)|*.cnc;*.dat;*txt;*.doc|All Files(*.*)|*.*");
    return std::nullopt;
}

bool AddBinaryRecord(TermbaseEditor &editor, const QString &categoryId, const QString &source)
{
    const QFileInfo info(source);
    const QString name = info.fileName();
    if (!info.isFile() || !info.isReadable()) {
        tell(QStringLiteral("The file ") + source + QStringLiteral(" can't be read."));
        return false;
    }
    if (name.contains(QLatin1Char('"'))) {
        tell(QStringLiteral("The name of the file ") + name +
             QStringLiteral(" holds a double quote (\"): rename the file first."));
        return false;
    }
    const QString &termbase = Process().TermMeta.Name;
    for (const QString &folder :
         {folderOf(TermbaseBackFolder(termbase)), folderOf(TermbasePublishFolder(termbase))}) {
        if (!copyWhole(source, folder + name)) {
            tell(QStringLiteral("The file ") + name + QStringLiteral(" could not be copied into ") +
                 QDir::toNativeSeparators(folder) + QLatin1Char('.'));
            return false;
        }
    }
    const QString container =
        categoryId == QLatin1String("x5.5") ? QStringLiteral("x2") : QStringLiteral("x11");
    Recordset containers = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT * FROM elements WHERE categoryID = ") + Quoted(container),
        dbOpenSnapshot);
    if (containers.RecordCount() < 1) {
        UI().MsgBox(
            QStringLiteral("Element not found. Critical Error. Please Report. Error Code TB003."),
            msg::Critical, QStringLiteral("Error"));
        return false;
    }
    Recordset refs = Process().TermDB.OpenRecordset(QStringLiteral("ref_values"), dbOpenTable);
    refs.SetIndex(QStringLiteral("value"));
    refs.Seek(u"=", name);
    if (refs.NoMatch()) {
        containers.MoveLast();
        const qint32 parent = containers.Value(u"elemID").toInt();
        const qint32 id = AddElementRow(editor, categoryId, parent);
        refs.AddNew();
        refs.Collect(u"elemID", id);
        refs.Collect(u"value", name);
    } else {
        refs.Edit();
        refs.Collect(u"value", name);
    }
    refs.Update();
    refs.SetIndex(QStringLiteral("elemID"));
    refs.Close();
    return true;
}

} // namespace lx
