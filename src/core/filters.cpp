#include "core/filters.h"

#include "core/process.h"

namespace lx {

namespace {

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

bool FindInList(const QString &text, const QStringList &list)
{
    // Compared as the text is, case counting.
    return list.contains(text, Qt::CaseSensitive);
}

} // namespace lx
