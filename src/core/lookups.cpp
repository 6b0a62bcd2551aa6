#include "core/lookups.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/errors.h"

namespace lx {

using namespace store;

namespace {

const QString kErrorTitle = QStringLiteral("Error");

// A Null read into a number is the platform's "Invalid use of Null", as everywhere else.
int intValue(const FieldRef &field)
{
    const QVariant v = field.Value();
    if (v.isNull())
        throw StoreError::make(err::InvalidUseOfNull);
    return v.toInt();
}

// CONCEPTS as a snapshot, on the row of the identifier if there is one.
Recordset findConcept(const QString &identifier)
{
    const QString &q = Process().Quote;
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenSnapshot);
    rs.FindFirst(QStringLiteral("Concept = ") + q + identifier + q);
    return rs;
}

bool isUpperOrDigit(int c)
{
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

} // namespace

// --- Filters ----------------------------------------------------------------------------------

int FilterConceptKey(int key)
{
    if (Process().OntoMeta.Naming)
        return FilterNamingKey(key);
    return key == 34 ? 39 : key;
}

int FilterNamingKey(int key)
{
    if (key >= 'a' && key <= 'z')
        return key - ('a' - 'A');
    if (isUpperOrDigit(key) || key == 8)
        return key;
    if (key == ' ' || key == '-' || key == '_')
        return '-';
    return 0;
}

QString NormalizeIdentifier(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar ch : text) {
        // Everything outside ASCII counts as "anything else", accented letters too.
        const int c = ch.unicode() < 128 ? ch.unicode() : 0;
        if (isUpperOrDigit(c) || c == 8 || c == '-')
            out += QChar(c);
        else if (c >= 'a' && c <= 'z')
            out += QChar(c - ('a' - 'A'));
        else if (c == ' ' || c == '_')
            out += u'-';
        else
            out += QChar(0);
        // The rule trims blanks after every character. Blanks never get in (they become
        // hyphens), so this removes nothing; it stays for the day the table changes.
        qsizetype begin = 0;
        qsizetype end = out.size();
        while (begin < end && out[begin] == u' ')
            ++begin;
        while (end > begin && out[end - 1] == u' ')
            --end;
        if (begin > 0 || end < out.size())
            out = out.mid(begin, end - begin);
    }
    return out;
}

QString IdentifierToName(const QString &identifier)
{
    QString name = identifier;
    for (QChar &ch : name)
        ch = ch == u'-' ? QChar(u' ') : ch.toLower();
    return name;
}

QString ReplaceDoubleQuotes(const QString &text)
{
    QString out = text;
    out.replace(QChar(34), QChar(39));
    return out;
}

void FlattenLines(QString &text)
{
    for (QChar &ch : text)
        if (ch == u'\r' || ch == u'\n')
            ch = u' ';
}

// --- Concepts ---------------------------------------------------------------------------------

bool ConceptExists(const QString &identifier)
{
    return !findConcept(identifier).NoMatch();
}

int ConceptType(const QString &identifier)
{
    Recordset rs = findConcept(identifier);
    if (rs.NoMatch()) {
        UI().MsgBox(QStringLiteral("Critical error. Error code LX010. Please Report."),
                    msg::Critical, kErrorTitle);
        return 1;
    }
    return intValue(rs.Fields(u"Type"));
}

QString ConceptDefinition(const QString &identifier)
{
    Recordset rs = findConcept(identifier);
    if (rs.NoMatch()) {
        UI().MsgBox(QStringLiteral("Critical error. Error code LX038. Please Report."),
                    msg::Critical, kErrorTitle);
        return QString();
    }
    const QVariant definition = rs.Fields(u"definition").Value();
    if (definition.isNull())
        return QStringLiteral("Undefined");
    QString text = definition.toString();
    FlattenLines(text);
    return Process().Quote + text + Process().Quote;
}

QString GetTopConcept()
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenDynaset);
    rs.FindFirst(QStringLiteral("Type = 100"));
    if (!rs.NoMatch())
        return rs.Fields(u"Concept").Text();
    // A file from before the top-level type: its "ALL" becomes the top concept.
    rs.FindFirst(QStringLiteral("Concept = 'ALL'"));
    if (!rs.NoMatch()) {
        rs.Edit();
        rs.Collect(u"Type", 100);
        rs.Update();
    }
    return QStringLiteral("ALL");
}

// --- Languages and subsets --------------------------------------------------------------------

QString LanguageNameOf(const QString &code)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Languages"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Lang_ID"));
    rs.Seek(u"=", code);
    return rs.NoMatch() ? QString() : rs.Fields(u"Language").Text();
}

QString LanguageCodeOf(const QString &name)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Languages"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Language"));
    rs.Seek(u"=", name);
    return rs.NoMatch() ? QString() : rs.Fields(u"Lang_ID").Text();
}

int SubsetIdOf(const QString &name)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Subsets"), dbOpenTable);
    rs.MoveFirst();
    rs.SetIndex(QStringLiteral("Subset"));
    rs.Seek(u"=", name);
    if (rs.NoMatch()) {
        UI().MsgBox(QStringLiteral("Critical error. Please Report. Error Code LX005"));
        return 0;
    }
    if (rs.Fields(u"subset_ID").Value().isNull()) {
        rs.Edit();
        rs.Collect(u"subset_ID", 1);
        rs.Update();
        return 1;
    }
    return intValue(rs.Fields(u"subset_ID"));
}

QString SubsetNameOf(int subsetId)
{
    // The key goes in as a byte; a number outside 0 to 255 doesn't convert.
    if (subsetId < 0 || subsetId > 255)
        throw StoreError::make(err::Overflow);
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Subsets"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Subset_ID"));
    rs.Seek(u"=", subsetId);
    return rs.NoMatch() ? QStringLiteral("Error") : rs.Fields(u"Subset").Text();
}

long CountSubset(int subsetId)
{
    Recordset rs = Process().OntoDB.OpenRecordset(
        QStringLiteral("SELECT Concept FROM CONCEPTS WHERE (Subset_ID = ") +
            QString::number(subsetId) + QStringLiteral(")"),
        dbOpenSnapshot);
    if (rs.RecordCount() > 0)
        rs.MoveLast();
    return rs.RecordCount();
}

} // namespace lx
