#include "termbase/edit/modify.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/types.h"

#include <functional>

namespace lx {

using namespace store;

namespace {

// Runs a step of the delete; a store failure in it is passed over.
void Step(const std::function<void()> &step)
{
    try {
        step();
    } catch (const StoreError &) {
    }
}

// Deletes the element's row: its branch, values and pointers go by the file's relations.
bool DeleteRow(qint32 elemId)
{
    Recordset &elements = Process().rsElements;
    elements.Seek(u"=", elemId);
    if (elements.NoMatch())
        return false;
    elements.Delete();
    return true;
}

} // namespace

bool IsEmptyEditValue(const QVariant &value)
{
    if (value.isNull())
        return true;
    if (value.typeId() == QMetaType::Int || value.typeId() == QMetaType::LongLong)
        return value.toLongLong() == 0;
    return value.toString().isEmpty();
}

bool WriteElementValue(const ElementEdit &edit)
{
    ProcessState &p = Process();
    Recordset table =
        p.TermDB.OpenRecordset(edit.ValueType + QStringLiteral("_values"), dbOpenTable);
    table.SetIndex(QStringLiteral("elemID"));
    table.Seek(u"=", edit.Element);
    if (table.NoMatch()) {
        UI().MsgBox(QStringLiteral("Element not found. Fatal Error. Error Code TB004."),
                    msg::Critical, QStringLiteral("Error"));
        return false;
    }
    table.Edit();
    table.Collect(u"value", edit.Value);
    table.Update();
    table.Close();
    if (edit.LanguageShown) {
        Recordset &langs = p.rsElemLang;
        langs.Seek(u"=", edit.Element);
        if (!langs.NoMatch() && langs.Value(u"langID").toString() != edit.Language) {
            langs.Edit();
            langs.Collect(u"langID", edit.Language);
            langs.Update();
        }
    }
    return true;
}

bool LabelEditAllowed(const QString &kind, const QString &parentKind)
{
    if (kind == QLatin1String("term"))
        return true;
    if (kind == QLatin1String("url") || kind == QLatin1String("pub") ||
        kind == QLatin1String("subjectfield"))
        return parentKind == QLatin1String("container");
    if (kind == QLatin1String("responsible"))
        return parentKind == QLatin1String("responsibles");
    return false;
}

bool RenameElement(qint32 elemId, const QString &kind, const QString &text)
{
    ProcessState &p = Process();
    p.rsElements.Seek(u"=", elemId);
    if (p.rsElements.NoMatch())
        return false;
    const bool term = kind == QLatin1String("term");
    Recordset table = p.TermDB.OpenRecordset(
        term ? QStringLiteral("TERMS") : QStringLiteral("text_values"), dbOpenTable);
    table.SetIndex(QStringLiteral("elemID"));
    table.Seek(u"=", elemId);
    if (table.NoMatch())
        return false;
    table.Edit();
    table.Collect(term ? u"term" : u"value", text);
    table.Update();
    return true;
}

bool ConfirmElementDelete()
{
    return UI().MsgBox(QStringLiteral("Are You sure you want to delete this element?") +
                           QStringLiteral("\r\n") +
                           QStringLiteral("All references to it will be deleted as well,"),
                       msg::YesNo | msg::Exclamation,
                       QStringLiteral("Confirm deletion")) == msg::Yes;
}

ElementDeletion DeleteElement(qint32 elemId, qint32 pointedAt, bool isTerm)
{
    ProcessState &p = Process();
    ElementDeletion deletion;
    Step([&] {
        QList<qint32> referrers;
        Recordset rs = p.TermDB.OpenRecordset(
            QStringLiteral("SELECT * from pointers WHERE targetID = ") + QString::number(pointedAt),
            dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            referrers.append(rs.Value(u"elemID").toInt());
        rs.Close();
        for (const qint32 referrer : referrers)
            Step([&] { deletion.Referrers += DeleteRow(referrer) ? 1 : 0; });
    });
    Step([&] {
        p.rsElements.Seek(u"=", elemId);
        if (p.rsElements.NoMatch())
            return;
        deletion.Parent = p.rsElements.Value(u"parentID").toInt();
        p.rsElements.Delete();
    });
    if (isTerm && deletion.Parent != 0) {
        Step([&] {
            Recordset rest =
                p.TermDB.OpenRecordset(QStringLiteral("SELECT * from elements WHERE parentID = ") +
                                           QString::number(deletion.Parent),
                                       dbOpenSnapshot);
            if (rest.RecordCount() < 1)
                deletion.SectionDeleted = DeleteRow(deletion.Parent);
        });
    }
    return deletion;
}

} // namespace lx
