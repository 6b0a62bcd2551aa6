#include "ui/list_views.h"

#include <QTreeWidget>

#include <algorithm>

namespace lx::ui {

// Text sorts without regard to case, as the store orders it.
void SortByColumn(QTreeWidget *list, int column)
{
    QTreeWidgetItem *selected = list->currentItem();
    QList<QTreeWidgetItem *> items;
    while (list->topLevelItemCount() > 0)
        items.append(list->takeTopLevelItem(0));
    std::stable_sort(items.begin(), items.end(),
                     [column](const QTreeWidgetItem *a, const QTreeWidgetItem *b) {
                         return a->text(column).compare(b->text(column), Qt::CaseInsensitive) < 0;
                     });
    list->addTopLevelItems(items);
    if (selected) {
        list->setCurrentItem(selected);
        list->scrollToItem(selected);
    }
}

} // namespace lx::ui
