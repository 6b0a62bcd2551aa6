#include "help_page.h"

#include <QHash>

namespace lx::mkseed {

namespace {

QString Escaped(const QString &text)
{
    return text.toHtmlEscaped();
}

QString LinkTo(const QString &id, const QString &text)
{
    return QStringLiteral("<a href=\"#%1\">%2</a>").arg(Escaped(id), Escaped(text));
}

QString EnglishName(const HelpCategory &category)
{
    return category.names.isEmpty() ? category.id : category.names.first().second;
}

// What the editor offers for a value of the category, in words.
QString ValueInWords(const HelpCategory &category)
{
    if (category.gi == QLatin1String("ptr"))
        return QStringLiteral("A pointer to another element of the termbase.");
    if (category.gi == QLatin1String("ref"))
        return QStringLiteral("A reference to a record of the backmatter.");
    if (category.gi == QLatin1String("refObject"))
        return QStringLiteral("A file copied into the backmatter.");
    if (category.valueType == QLatin1String("text"))
        return QStringLiteral("Text.");
    if (category.valueType == QLatin1String("picklist"))
        return QStringLiteral("One value of a closed list.");
    if (category.valueType == QLatin1String("number"))
        return QStringLiteral("A number.");
    if (category.valueType == QLatin1String("date"))
        return QStringLiteral("A date, day/month/year.");
    if (category.valueType == QLatin1String("container"))
        return QStringLiteral("None: it groups the categories below it.");
    return QStringLiteral("None of its own.");
}

QString Row(const QString &head, const QString &cell)
{
    return QStringLiteral("<tr><th>%1</th><td>%2</td></tr>\n").arg(head, cell);
}

class PageWriter {
public:
    explicit PageWriter(const std::vector<HelpCategory> &categories) : m_categories(categories)
    {
        for (const HelpCategory &c : categories)
            m_byId.insert(c.id, &c);
    }

    QString page() const
    {
        QString html = QStringLiteral(
            "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<title>Data Categories Help</title>\n<style>\n"
            "body { font-family: sans-serif; font-size: 10pt; margin: 1em 2em; }\n"
            "h1 { font-size: 14pt; }\n"
            "h2 { font-size: 12pt; margin: 1.6em 0 0.3em; border-bottom: 1px solid #aaa; }\n"
            "h2 .id { font-weight: normal; color: #555; }\n"
            "ul.contents { list-style: none; padding-left: 0; }\n"
            "ul.contents ul { list-style: none; padding-left: 1.5em; }\n"
            "table.facts { border-collapse: collapse; }\n"
            "table.facts th { width: 7em; text-align: left; vertical-align: top; "
            "padding-right: 1em; font-weight: normal; color: #555; }\n"
            "</style>\n</head>\n<body>\n<h1>Data categories</h1>\n"
            "<p>The data categories of a termbase, numbered after ISO 12620. Each section "
            "defines one category and says what its value is and where it may be added. The "
            "categories of the backmatter records are described with the records "
            "themselves.</p>\n");
        html += contents();
        for (const HelpCategory &c : m_categories)
            html += section(c);
        html += QStringLiteral("</body>\n</html>\n");
        return html;
    }

private:
    QString contents() const
    {
        QString html = QStringLiteral("<ul class=\"contents\">\n");
        for (const HelpCategory &c : m_categories)
            if (!m_byId.contains(c.parent))
                html += contentsItem(c);
        return html + QStringLiteral("</ul>\n");
    }

    QString contentsItem(const HelpCategory &category) const
    {
        QString html = QStringLiteral("<li>") + LinkTo(category.id, EnglishName(category)) +
                       QStringLiteral(" (") + Escaped(category.id) + QStringLiteral(")");
        QString children;
        for (const HelpCategory &c : m_categories)
            if (c.parent == category.id)
                children += contentsItem(c);
        if (!children.isEmpty())
            html += QStringLiteral("\n<ul>\n") + children + QStringLiteral("</ul>\n");
        return html + QStringLiteral("</li>\n");
    }

    QString nameOrId(const QString &id) const
    {
        const HelpCategory *c = m_byId.value(id);
        return c ? LinkTo(id, EnglishName(*c)) : Escaped(id);
    }

    QString section(const HelpCategory &category) const
    {
        QString html = QStringLiteral("<h2 id=\"%1\">%2 <span class=\"id\">%1</span></h2>\n")
                           .arg(Escaped(category.id), Escaped(EnglishName(category)));
        html += QStringLiteral("<p>") + Escaped(category.definition) + QStringLiteral("</p>\n");
        html += QStringLiteral("<table class=\"facts\">\n");
        if (m_byId.contains(category.parent))
            html += Row(QStringLiteral("Group"), nameOrId(category.parent));
        html += Row(QStringLiteral("Value"), ValueInWords(category));
        if (category.needsLang)
            html +=
                Row(QStringLiteral("Language"), QStringLiteral("The value carries a language."));
        if (!category.values.isEmpty())
            html +=
                Row(QStringLiteral("Values"), Escaped(category.values.join(QStringLiteral(", "))));
        if (!category.allowedUnder.isEmpty()) {
            QStringList under;
            for (const QString &id : category.allowedUnder)
                under << (id == QLatin1String("all") ? QStringLiteral("any element")
                                                     : nameOrId(id));
            html += Row(QStringLiteral("Added under"), under.join(QStringLiteral(", ")));
        }
        QStringList names;
        for (qsizetype i = 1; i < category.names.size(); ++i)
            names << Escaped(category.names[i].first) + QStringLiteral(": ") +
                         Escaped(category.names[i].second);
        if (!names.isEmpty())
            html += Row(QStringLiteral("Names"), names.join(QStringLiteral("; ")));
        return html + QStringLiteral("</table>\n");
    }

    const std::vector<HelpCategory> &m_categories;
    QHash<QString, const HelpCategory *> m_byId;
};

} // namespace

QString CategoryHelpPage(const std::vector<HelpCategory> &categories)
{
    return PageWriter(categories).page();
}

} // namespace lx::mkseed
