#include "publish/term_entry_page.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/types.h"
#include "core/text/like.h"
#include "publish/html_stuff.h"
#include "publish/text_channel.h"
#include "termbase/edit/categories.h"

#include <QDateTime>
#include <QFile>

namespace lx {

using namespace store;

namespace {

const QString Q = QStringLiteral("\"");
const QString kCrLf = QStringLiteral("\r\n");
const QString kErrorTitle = QStringLiteral("Error");

// A value of the termbase in a page: its markup characters and quotes as entities.
QString Escaped(const QString &text)
{
    QString out = HtmlText(text);
    out.replace(u'"', QStringLiteral("&quot;"));
    return out;
}

void Fatal(const QString &message)
{
    UI().MsgBox(message, msg::Critical, kErrorTitle);
}

QString Text(const QVariant &value)
{
    if (value.typeId() == QMetaType::QDateTime)
        return value.toDateTime().date().toString(QStringLiteral("dd/MM/yyyy"));
    if (value.typeId() == QMetaType::QDate)
        return value.toDate().toString(QStringLiteral("dd/MM/yyyy"));
    return value.isNull() ? QString() : value.toString();
}

// The target of the element's pointer, or nothing when the pointer or its target is missing.
std::optional<qint32> PointerTarget(qint32 elemId)
{
    Recordset &pointers = Process().rsPointers;
    pointers.Seek(u"=", elemId);
    if (pointers.NoMatch())
        return std::nullopt;
    return pointers.Value(u"targetID").toInt();
}

// The value of the pointer's target in `table`, empty when either row is missing.
QString TargetValue(qint32 elemId, Recordset &table)
{
    const std::optional<qint32> target = PointerTarget(elemId);
    if (!target)
        return {};
    table.Seek(u"=", *target);
    return table.NoMatch() ? QString() : Text(table.Value(u"value"));
}

QString Link(const QString &target, const QString &text)
{
    return QStringLiteral("<a href =") + Q + Escaped(target) + Q + QStringLiteral(">") +
           Escaped(text) + QStringLiteral("<a><br>");
}

// The link to the page of the entry that holds the pointer's target; empty without one.
QString CrossReferenceLink(qint32 elemId)
{
    const std::optional<qint32> target = PointerTarget(elemId);
    const QString entryConcept = target ? ElementConcept(*target) : QString();
    if (entryConcept.isEmpty())
        return {};
    return Link(entryConcept + QStringLiteral(".html"), entryConcept);
}

// The value of an element of an ordinary category, from the table its value type names.
void ReadGeneralValue(qint32 elemId, const QString &category, QVariant &value, QString &valueType,
                      QString &language)
{
    const QStringList *row = DataCatRow(category);
    if (!row) {
        Fatal(QStringLiteral("Element not found. Fatal Error. Please report."));
        return;
    }
    valueType = row->value(dcValueType);
    if (valueType != QLatin1String("container") && valueType != QLatin1String("none")) {
        Recordset table =
            Process().TermDB.OpenRecordset(valueType + QStringLiteral("_values"), dbOpenTable);
        table.SetIndex(QStringLiteral("elemID"));
        table.Seek(u"=", elemId);
        if (table.NoMatch())
            Fatal(QStringLiteral("Element not found. Fatal Error"));
        else
            value = Text(table.Value(u"value"));
        table.Close();
    }
    language.clear();
    if (CategoryNeedsLang(category)) {
        Recordset &langs = Process().rsElemLang;
        langs.Seek(u"=", elemId);
        if (!langs.NoMatch())
            language = langs.Value(u"langID").toString();
    }
}

QString LanguageName(const QString &code)
{
    static const std::pair<const char *, const char *> names[] = {
        {"en", "English"}, {"es", "Spanish"},   {"fr", "French"},
        {"de", "German"},  {"it", "Italian"},   {"nl", "Dutch"},
        {"sv", "Swedish"}, {"no", "Norwegian"}, {"da", "Danish"},
    };
    for (const auto &[key, name] : names) {
        if (code == QLatin1String(key))
            return QString::fromLatin1(name);
    }
    return code;
}

Recordset Select(const QString &where)
{
    return Process().TermDB.OpenRecordset(QStringLiteral("SELECT * from elements ") + where,
                                          dbOpenSnapshot);
}

QString TableOpening(const QString &title)
{
    return QStringLiteral("<table border=") + Q + QStringLiteral("2") + Q +
           QStringLiteral(" cellpadding=") + Q + QStringLiteral("2") + Q +
           QStringLiteral(" > <tr><td colspan= ") + Q + QStringLiteral("2") + Q +
           QStringLiteral("><center><strong> ") + title +
           QStringLiteral("</strong></center> </td></tr>");
}

// One language section's table, piece by piece; false when a term of it is missing, which
// abandons the page.
bool PrintSection(TextChannel &page, qint32 section)
{
    ProcessState &p = Process();
    p.rsElemLang.Seek(u"=", section);
    const QString code =
        p.rsElemLang.NoMatch() ? QString() : p.rsElemLang.Value(u"langID").toString();
    page.Print(TableOpening(Escaped(code.isEmpty() ? QString() : LanguageName(code))));
    Recordset own = Select(QStringLiteral("WHERE elemID = ") + QString::number(section));
    const QString data = ElementsToHtml(own);
    if (!data.isEmpty())
        page.Print(QStringLiteral("<tr><td colspan= ") + Q + QStringLiteral("2") + Q +
                   QStringLiteral(">") + data + QStringLiteral("</td></tr>"));
    Recordset terms = Select(QStringLiteral("WHERE parentID = ") + QString::number(section) +
                             QStringLiteral("AND categoryID = '1'"));
    for (; !terms.Eof(); terms.MoveNext()) {
        const qint32 term = terms.Value(u"elemID").toInt();
        Recordset termRows = p.TermDB.OpenRecordset(QStringLiteral("TERMS"), dbOpenTable);
        termRows.SetIndex(QStringLiteral("elemID"));
        termRows.Seek(u"=", term);
        if (termRows.NoMatch()) {
            Fatal(QStringLiteral("Element not found. Fatal Error"));
            return false;
        }
        page.Print(QStringLiteral("<tr><td>") + QStringLiteral("<strong>") +
                   Escaped(termRows.Value(u"term").toString()) + QStringLiteral("</strong></td>"));
        Recordset termElement = Select(QStringLiteral("WHERE elemID = ") + QString::number(term));
        const QString termData = ElementsToHtml(termElement);
        page.Print(QStringLiteral("<td>") + (termData.isEmpty() ? QStringLiteral(" ") : termData) +
                   QStringLiteral("</td></tr>"));
    }
    page.Print(QStringLiteral("</table><p></p>"));
    return true;
}

} // namespace

void ReadElementValue(qint32 elemId, QVariant &value, QString &valueType, QString &language,
                      bool forPage)
{
    ProcessState &p = Process();
    p.rsElements.Seek(u"=", elemId);
    if (p.rsElements.NoMatch()) {
        Fatal(QStringLiteral("Element not found. Fatal Error. Error Code TB008."));
        return;
    }
    const QString category = p.rsElements.Value(u"categoryID").toString();
    const auto like = [&category](const char16_t *pattern) {
        return text::Like(category, QStringView(pattern));
    };
    if (category == QLatin1String("1")) {
        Recordset terms = p.TermDB.OpenRecordset(QStringLiteral("TERMS"), dbOpenTable);
        terms.SetIndex(QStringLiteral("elemID"));
        terms.Seek(u"=", elemId);
        if (terms.NoMatch()) {
            Fatal(QStringLiteral("Element not found. Fatal Error. Error Code TB009"));
            return;
        }
        value = Escaped(terms.Value(u"term").toString());
        language = terms.Value(u"langID").toString();
    } else if (category == QLatin1String("0.4")) {
        p.rsElemLang.Seek(u"=", elemId);
        language = p.rsElemLang.NoMatch() ? QString() : p.rsElemLang.Value(u"langID").toString();
    } else if (category == QLatin1String("5.5.1")) {
        const QString file = TargetValue(elemId, p.rsRefValues);
        value = QStringLiteral("<br>") + kCrLf + QStringLiteral("<img src=") + Q + Escaped(file) +
                Q + QStringLiteral(" alt =") + Q + Escaped(file) + Q + QStringLiteral("><br>");
    } else if (category == QLatin1String("5.3x") || like(u"5.5.?")) {
        const QString file = TargetValue(elemId, p.rsRefValues);
        value = Link(file, file);
    } else if (category == QLatin1String("10.21.1")) {
        const QString url = TargetValue(elemId, p.rsTextValues);
        value = Link(url, url);
    } else if (category == QLatin1String("4") || category == QLatin1String("10.20") ||
               like(u"10.2.2.*")) {
        value = Escaped(TargetValue(elemId, p.rsTextValues));
    } else if (category == QLatin1String("10.6.1") || category == QLatin1String("3.5x") ||
               category == QLatin1String("3.2x") || like(u"10.18.?") || like(u"9.2.*")) {
        const QString link = CrossReferenceLink(elemId);
        value = link.isEmpty() ? QString() : QStringLiteral(": ") + link;
    } else if (category == QLatin1String("10.18")) {
        p.rsTextValues.Seek(u"=", elemId);
        const QString description =
            p.rsTextValues.NoMatch() ? QString() : Text(p.rsTextValues.Value(u"value"));
        const QString link = CrossReferenceLink(elemId);
        value = link.isEmpty() ? QString() : Escaped(description) + QStringLiteral(": ") + link;
    } else {
        QVariant raw;
        ReadGeneralValue(elemId, category, raw, valueType, language);
        if (!raw.isNull())
            value = forPage ? QVariant(Escaped(raw.toString())) : raw;
    }
}

QString ElementsToHtml(Recordset &rs)
{
    QString html;
    if (rs.RecordCount() < 1)
        return html;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        const QString category = rs.Value(u"categoryID").toString();
        const qint32 elemId = rs.Value(u"elemID").toInt();
        const bool section = category == QLatin1String("0.4") || category == QLatin1String("1");
        if (!section) {
            QVariant value;
            QString valueType, language;
            ReadElementValue(elemId, value, valueType, language);
            const QString text = value.toString();
            if (!text.isEmpty())
                html += QStringLiteral("<strong>") + Escaped(CategoryName(category)) +
                        QStringLiteral(": </strong>") + text;
            if (!language.isEmpty())
                html += QStringLiteral(" <em> (") + Escaped(language) + QStringLiteral(")</em>");
            html += QStringLiteral("<br>") + kCrLf;
        }
        Recordset children = Process().TermDB.OpenRecordset(
            QStringLiteral("SELECT * FROM elements ") + QStringLiteral("WHERE parentID = ") +
                QString::number(elemId) + QStringLiteral("AND categoryID <> '1'"),
            dbOpenSnapshot);
        const QString inner = ElementsToHtml(children);
        if (!inner.isEmpty())
            html += section ? inner
                            : kCrLf + QStringLiteral("<blockquote>") + inner + kCrLf +
                                  QStringLiteral("</blockquote>");
    }
    return html;
}

void WriteTermEntryPage(const QString &entryConcept, qint32 elemId, const QString &folder,
                        bool ancestors, bool descendants, bool inheritedRelations,
                        bool inheritedAttributes)
{
    const std::optional<QString> path = ConceptPagePath(entryConcept, folder);
    if (!path) {
        UI().MsgBox(QStringLiteral("No page is written for the concept \"") + entryConcept +
                        QStringLiteral("\": a page's file name is its identifier, and this one "
                                       "holds a character that would lead out of the folder."),
                    msg::Exclamation);
        return;
    }
    TextChannel page(*path);
    page.Print(PageHead(entryConcept));
    page.Print(PageTitleBlock(entryConcept));
    const QString entry = QString::number(elemId);
    Recordset data = Select(QStringLiteral("WHERE parentID = ") + entry +
                            QStringLiteral(" AND categoryID <> '0.4'"));
    if (data.RecordCount() > 0) {
        const QString text = ElementsToHtml(data);
        if (!text.isEmpty())
            page.Print(text + kCrLf + QStringLiteral("<hr>") + kCrLf + QStringLiteral("<p></p>"));
    }
    if (Process().TermMeta.CSBrowser)
        page.Print(BuildConceptStructures(entryConcept, ancestors, descendants, inheritedRelations,
                                          inheritedAttributes) +
                   kCrLf + QStringLiteral("<hr>") + kCrLf + QStringLiteral("<p></p>"));
    Recordset sections = Select(QStringLiteral("WHERE parentID = ") + entry +
                                QStringLiteral(" AND categoryID = '0.4'"));
    for (; !sections.Eof(); sections.MoveNext()) {
        if (!PrintSection(page, sections.Value(u"elemID").toInt())) {
            page.Close(); // the page stays as far as it came
            return;
        }
    }
    sections.Close();
    page.Print(QStringLiteral("</BODY>") + kCrLf + QStringLiteral("</HTML>"));
    page.Close();
}

} // namespace lx
