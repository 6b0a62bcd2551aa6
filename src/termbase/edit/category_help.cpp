#include "termbase/edit/category_help.h"

#include "core/process.h"
#include "core/text/like.h"
#include "termbase/edit/categories.h"

namespace lx {

namespace {

bool IsBackmatter(const QString &categoryId)
{
    return text::Like(categoryId, u"x*");
}

} // namespace

QString CategoryHelpAddress(const QString &categoryId)
{
    const QString id = categoryId.trimmed();
    if (IsBackmatter(id))
        return {};
    return AppPath() + QStringLiteral("/DCHelp.html#") + id;
}

QString CategoryIdByName(const QString &name)
{
    QString found;
    for (const QStringList &row : Process().DataCats) {
        if (row.value(dcName) == name)
            found = row.value(dcId);
    }
    return found;
}

QStringList CategoryHelpItems()
{
    QStringList items;
    for (const QStringList &row : Process().DataCats) {
        const QString &id = row.value(dcId);
        if (IsBackmatter(id) || text::Like(id, u"0*"))
            continue;
        items << row.value(dcName) + QStringLiteral(" (") + id + QStringLiteral(")");
    }
    return items;
}

QString CategoryOfHelpItem(const QString &item)
{
    if (item.isEmpty())
        return {};
    const qsizetype open = item.indexOf(QStringLiteral(" ("));
    const QString tail = open < 0 ? item : item.mid(open);
    return tail.mid(2, tail.size() - 3);
}

} // namespace lx
