#include "publish/html_stuff.h"

#include "core/file_steps.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "ontology/edit/inheritance.h"
#include "ontology/store/lookups.h"
#include "publish/text_channel.h"

#include <QFile>

#include <algorithm>

namespace lx {

using store::Recordset;

namespace {

const QString Q = QStringLiteral("\"");
const QString kCrLf = QStringLiteral("\r\n");
const QString kRowEnd = QStringLiteral("</td></tr>");
const QString kSmallLineEnd = QStringLiteral("</small><br>");
const QString kDefaultLineEnd = QStringLiteral("&nbsp;(by default)</small><br>");
const QString kIndent = QStringLiteral("<small>&nbsp;&nbsp;&nbsp; ");

const QStringList kFixedTopNodes = {
    QStringLiteral("OBJECT"),        QStringLiteral("EVENT"),
    QStringLiteral("PROPERTY"),      QStringLiteral("RELATION"),
    QStringLiteral("ATTRIBUTE"),     QStringLiteral("PHYSICAL-OBJECT"),
    QStringLiteral("MENTAL-OBJECT"), QStringLiteral("INTANGIBLE-OBJECT"),
    QStringLiteral("SOCIAL-OBJECT"), QStringLiteral("PHYSICAL-EVENT"),
    QStringLiteral("MENTAL-EVENT"),  QStringLiteral("SOCIAL-EVENT"),
};

// Appends `text` as HtmlText gives it. Pages are built by appending into one string, as a
// whole publish writes some hundred thousand items.
void AppendHtmlText(QString &out, QStringView text)
{
    qsizetype plain = 0; // start of the run not yet appended
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t ch = text[i].unicode();
        if (ch != u'<' && ch != u'>' && ch != u'&')
            continue;
        out += text.sliced(plain, i - plain);
        out += ch == u'<' ? u"&lt;" : ch == u'>' ? u"&gt;" : u"&amp;";
        plain = i + 1;
    }
    out += text.sliced(plain);
}

// The opening of a link to a concept's page. The target stands as it is, unencoded: pages are
// named by their identifier alone.
void AppendHref(QString &out, const QString &target)
{
    out += u"<a href = \"";
    out += target;
    out += u".html\">";
}

void AppendConceptItem(QString &items, const QString &identifier)
{
    items += u"<small>";
    AppendHref(items, identifier);
    AppendHtmlText(items, identifier);
    items += u" </a> </small><br>";
}

const QString &SlotLineEnd(bool isDefault)
{
    return isDefault ? kDefaultLineEnd : kSmallLineEnd;
}

// Appends a row when it has items; a row without items isn't written at all.
void AddRow(QString &table, const QString &opening, const QString &items)
{
    if (items.isEmpty())
        return;
    table += opening;
    table += items;
    table += kRowEnd;
}

// The query with the identifier between quotes, unescaped, as every criterion stands.
Recordset Snapshot(const QString &select, const QString &identifier, const QString &orderBy)
{
    const QString &q = Process().Quote;
    return Process().OntoDB.OpenRecordset(select + q + identifier + q + orderBy,
                                          store::dbOpenSnapshot);
}

QString ListItems(const QStringList &list)
{
    QString items;
    for (const QString &identifier : list)
        AppendConceptItem(items, identifier);
    return items;
}

// A concept reached along two paths stands in the list twice; its item is written once.
QString SortedUniqueItems(QStringList list)
{
    SortStringList(list);
    QString items;
    for (qsizetype i = 0; i < list.size(); ++i) {
        // Sorted, a repeat follows its first: looking back one entry is the test for "seen".
        if (i == 0 || list[i] != list[i - 1])
            AppendConceptItem(items, list[i]);
    }
    return items;
}

QString RelationItems(const std::vector<PageSlot> &relations)
{
    QString items;
    const QString *remembered = nullptr;
    for (const PageSlot &slot : relations) {
        if (!remembered || slot.Name != *remembered) {
            items += u"<small>";
            AppendHref(items, slot.Name);
            AppendHtmlText(items, slot.Name);
            items += u"</a> : ";
        } else {
            items += kIndent;
        }
        AppendHref(items, slot.Value);
        AppendHtmlText(items, slot.Value);
        items += u"</a>";
        items += SlotLineEnd(slot.Default);
        remembered = &slot.Name;
    }
    return items;
}

// The name of an attribute is written on every line, repeated or not: the indented form of a
// repeat is never used for attributes.
QString AttributeItems(const std::vector<PageSlot> &attributes)
{
    QString items;
    for (const PageSlot &slot : attributes) {
        items += u"<small>";
        AppendHref(items, slot.Name);
        AppendHtmlText(items, slot.Name);
        items += u"</a> : ";
        AppendHtmlText(items, slot.Value);
        items += SlotLineEnd(slot.Default);
    }
    return items;
}

// The rows that the concept inherits, as the engine leaves them in Inherit. Links in these
// rows close with "<a>".
QString InheritedItems(const std::vector<InheritRow> &rows, bool relations)
{
    QString items;
    const QString *remembered = nullptr;
    for (const InheritRow &row : rows) {
        if (!remembered || row.Attr != *remembered) {
            items += u"<small>";
            AppendHref(items, row.Attr);
            AppendHtmlText(items, row.Attr);
            items += u"<a>  : ";
        } else {
            items += kIndent;
        }
        const bool isDefault = row.Value.endsWith(kByDefault);
        const QString value = isDefault ? row.Value.chopped(kByDefault.size()) : row.Value;
        if (relations) {
            AppendHref(items, value);
            AppendHtmlText(items, value);
            items += isDefault ? u"<a> (by default) (from " : u"<a> (from ";
        } else {
            AppendHtmlText(items, value);
            items += isDefault ? u" (by default) (from " : u" (from ";
        }
        AppendHref(items, row.From);
        AppendHtmlText(items, row.From);
        items += u"<a>)";
        items += kSmallLineEnd;
        remembered = &row.Attr;
    }
    return items;
}

// The stamp for this second. The date is shown to the second, and a run writes many pages a
// second: turning the clock into a local date for each would cost more than a small page.
QString CurrentStamp()
{
    thread_local qint64 second = -1;
    thread_local QString stamp;
    const qint64 now = QDateTime::currentMSecsSinceEpoch() / 1000;
    if (now != second) {
        second = now;
        stamp = GeneratedStamp(QDateTime::fromSecsSinceEpoch(now));
    }
    return stamp;
}

// A Default compared with True: a Null is no default.
bool IsDefault(const QVariant &field)
{
    return !field.isNull() && field.toBool();
}

std::vector<PageSlot> StoredSlots(const QString &select, const QString &identifier,
                                  const QString &orderBy, QStringView nameField,
                                  QStringView valueField)
{
    Recordset rs = Snapshot(select, identifier, orderBy);
    std::vector<PageSlot> slots;
    for (; !rs.Eof(); rs.MoveNext())
        slots.push_back({rs.Value(nameField).toString(), rs.Value(valueField).toString(),
                         IsDefault(rs.Value(u"Default"))});
    return slots;
}

// Each piece read from the open ontology when it is asked for, the inherited rows by the
// inheritance engine itself.
class StorePageSource final : public ConceptPageSource {
public:
    QString definition(const QString &identifier) override
    {
        Recordset rs =
            Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), store::dbOpenTable);
        rs.SetIndex(QStringLiteral("Concept"));
        rs.Seek(u"=", identifier);
        return rs.NoMatch() ? QString() : rs.Value(u"definition").toString();
    }

    QStringList parents(const QString &identifier) override
    {
        Recordset rs = Snapshot(QStringLiteral("SELECT * FROM ISA WHERE Concept = "), identifier,
                                QStringLiteral(" ORDER BY ISA"));
        QStringList found;
        for (; !rs.Eof(); rs.MoveNext())
            found << rs.Value(u"ISA").toString();
        return found;
    }

    QStringList children(const QString &identifier) override
    {
        QStringList found;
        GetChildren(identifier, found);
        return found;
    }

    QStringList descendants(const QString &identifier) override
    {
        QStringList found;
        GetDescendants(identifier, found);
        return found;
    }

    QStringList ancestors(const QString &identifier) override
    {
        QStringList found;
        GetAncestors(identifier, found);
        return found;
    }

    std::vector<PageSlot> relations(const QString &identifier) override
    {
        return StoredSlots(QStringLiteral("SELECT * FROM RELATIONS WHERE Concept1 = "), identifier,
                           QStringLiteral(" ORDER BY Rel"), u"Rel", u"Concept2");
    }

    std::vector<PageSlot> attributes(const QString &identifier) override
    {
        return StoredSlots(QStringLiteral("SELECT * FROM ATTRIBUTES WHERE Concept = "), identifier,
                           QStringLiteral(" ORDER BY Attribute"), u"Attribute", u"Value");
    }

    std::vector<InheritRow> inherited(const QString &identifier, const QString &include) override
    {
        ComputeInheritance(identifier, kExclusive, include);
        return InheritRows();
    }
};

} // namespace

QString PageHead(const QString &identifier)
{
    return QStringLiteral("<HTML>") + kCrLf + QStringLiteral("<HEAD>") + QStringLiteral("<TITLE>") +
           HtmlText(identifier) + QStringLiteral("</TITLE>") + QStringLiteral("</HEAD>") + kCrLf +
           QStringLiteral("<BODY BACKGROUND=") + Q + QStringLiteral("ontoback.jpg") + Q +
           QStringLiteral(">") + kCrLf + QStringLiteral("<meta name=") + Q +
           QStringLiteral("GENERATOR") + Q + QStringLiteral("content=") + Q +
           QStringLiteral("Silvanite Lexarbor") + Q + QStringLiteral(">") + kCrLf;
}

QString PageTitleBlock(const QString &identifier)
{
    return CurrentStamp() + kCrLf + QStringLiteral("<CENTER><H3>") + HtmlText(identifier) +
           QStringLiteral("</CENTER></H3>") + kCrLf + QStringLiteral("<hr>");
}

QString HtmlText(const QString &text)
{
    QString out;
    out.reserve(text.size());
    AppendHtmlText(out, text);
    return out;
}

QString GeneratedStamp(const QDateTime &now)
{
    return QStringLiteral("<SMALL>Generated by <a href =") + Q + kWebSiteAddress + Q +
           QStringLiteral(">Lexarbor</a>. Updated: ") + DateToText(now) +
           QStringLiteral("</SMALL>");
}

bool IsFixedTopNode(const QString &identifier)
{
    return identifier == Process().TopConcept || kFixedTopNodes.contains(identifier);
}

void SortStringList(QStringList &list)
{
    // Binary order, as a plain exchange sort under binary comparison would leave it; equal
    // entries are the same text, so the sort needn't be stable.
    std::sort(list.begin(), list.end(),
              [](const QString &a, const QString &b) { return a.compare(b) < 0; });
}

std::optional<QString> ConceptPagePath(const QString &identifier, const QString &folder)
{
    if (identifier.contains(u'/') || identifier.contains(u'\\') || identifier.contains(QChar(0)))
        return std::nullopt;
    QString base = folder;
    if (base.endsWith(u'\\'))
        base.back() = u'/';
    return base + identifier + QStringLiteral(".html");
}

QString BuildConceptStructures(const QString &identifier, bool ancestors, bool descendants,
                               bool inheritedRelations, bool inheritedAttributes)
{
    // The inheritance engine writes Inherit row by row: in one transaction, the rows of a
    // table cost one commit instead of one each.
    const store::WriteBatch batch(Process().OntoDB);
    StorePageSource source;
    return BuildConceptStructures(source, identifier, ancestors, descendants, inheritedRelations,
                                  inheritedAttributes);
}

QString BuildConceptStructures(ConceptPageSource &source, const QString &identifier, bool ancestors,
                               bool descendants, bool inheritedRelations, bool inheritedAttributes)
{
    QString table = QStringLiteral("<p></p><table border=") + Q + QStringLiteral("2") + Q +
                    QStringLiteral(" cellpadding=") + Q + QStringLiteral("2") + Q +
                    QStringLiteral(" > <tr><td colspan= ") + Q + QStringLiteral("2") + Q +
                    QStringLiteral("><center><strong> Conceptual Structures ") +
                    QStringLiteral("</strong></center> </td></tr>");

    const QString parents = ListItems(source.parents(identifier));
    if (!parents.isEmpty()) {
        AddRow(table, QStringLiteral("<tr><td><strong>ISA</strong></td><td>"), parents);
        // Only a concept with parents gets its SUBCLASSES row.
        AddRow(table, QStringLiteral("<tr><td><strong>SUBCLASSES</strong></td><td>"),
               ListItems(source.children(identifier)));
    }
    if (descendants)
        AddRow(table, QStringLiteral("<tr><td><strong>DESCENDANTS</strong></td><td>"),
               SortedUniqueItems(source.descendants(identifier)));
    if (ancestors)
        AddRow(table, QStringLiteral("<tr><td><strong>ANCESTORS</strong></td><td>"),
               SortedUniqueItems(source.ancestors(identifier)));
    AddRow(table, QStringLiteral("<tr><td><strong>RELATIONS</strong></td><td>"),
           RelationItems(source.relations(identifier)));
    AddRow(table, QStringLiteral("<tr><td><strong>ATTRIBUTES</strong></td><td>"),
           AttributeItems(source.attributes(identifier)));
    if (inheritedRelations)
        AddRow(table, QStringLiteral("<tr><td><strong>INHERITED<br>RELATIONS</strong></td><td>"),
               InheritedItems(source.inherited(identifier, kIncludeRels), true));
    if (inheritedAttributes)
        AddRow(table, QStringLiteral("<tr><td><strong>INHERITED<br>ATTRIBUTES</strong></td><td>"),
               InheritedItems(source.inherited(identifier, kIncludeAttrs), false));
    return table + QStringLiteral("</table><p></p>");
}

void WriteConceptPage(const QString &identifier, const QString &folder, bool ancestors,
                      bool descendants, bool inheritedRelations, bool inheritedAttributes)
{
    const store::WriteBatch batch(Process().OntoDB);
    StorePageSource source;
    WriteConceptPage(source, identifier, folder, ancestors, descendants, inheritedRelations,
                     inheritedAttributes);
}

void WriteConceptPage(ConceptPageSource &source, const QString &identifier, const QString &folder,
                      bool ancestors, bool descendants, bool inheritedRelations,
                      bool inheritedAttributes)
{
    const std::optional<QString> path = ConceptPagePath(identifier, folder);
    if (!path) {
        UI().MsgBox(QStringLiteral("No page is written for the concept \"") + identifier +
                        QStringLiteral("\": a page's file name is its identifier, and this one "
                                       "holds a character that would lead out of the folder "
                                       "(\"/\", \"\\\" or the character of code 0)."),
                    msg::Exclamation);
        return;
    }
    QFile::remove(*path); // when it is there

    TextChannel page(*path);
    page.Print(PageHead(identifier));
    page.Print(PageTitleBlock(identifier));
    const QString definition = source.definition(identifier);
    if (!definition.isEmpty())
        page.Print(QStringLiteral("<strong>Definition</strong>: ") + definition + kCrLf +
                   QStringLiteral("<hr>") + kCrLf);
    if (!IsFixedTopNode(identifier)) {
        QString table = BuildConceptStructures(source, identifier, ancestors, descendants,
                                               inheritedRelations, inheritedAttributes);
        if (!table.isEmpty()) {
            table += u"\r\n<hr>\r\n<p></p>";
            page.Print(table);
        }
    }
    page.Print(QStringLiteral("</BODY>") + kCrLf + QStringLiteral("</HTML>"));
    page.Close();
}

} // namespace lx
