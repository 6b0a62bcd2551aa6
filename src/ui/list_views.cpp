#include "ui/list_views.h"

#include <QTreeWidget>

namespace lx::ui {

void SortByColumn(QTreeWidget *list, int column)
{
    list->sortItems(column, Qt::AscendingOrder);
    if (QTreeWidgetItem *selected = list->currentItem())
        list->scrollToItem(selected);
}

} // namespace lx::ui
