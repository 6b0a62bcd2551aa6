#include "ui/list_views.h"

#include "core/text/collation.h"

#include <QTreeWidget>

#include <algorithm>

namespace lx::ui {

// Text sorts as the store orders it.
void SortByColumn(QTreeWidget *list, int column)
{
    QTreeWidgetItem *selected = list->currentItem();
    QList<QTreeWidgetItem *> items;
    while (list->topLevelItemCount() > 0)
        items.append(list->takeTopLevelItem(0));
    std::stable_sort(items.begin(), items.end(),
                     [column](const QTreeWidgetItem *a, const QTreeWidgetItem *b) {
                         return text::CompareText(a->text(column), b->text(column)) < 0;
                     });
    list->addTopLevelItems(items);
    if (selected) {
        list->setCurrentItem(selected);
        list->scrollToItem(selected);
    }
}

} // namespace lx::ui
