#pragma once

class QTreeWidget;

namespace lx::ui {

// A click on a column head of a list view: the rows sort by that column, and the selected row
// stays in view.
void SortByColumn(QTreeWidget *list, int column);

} // namespace lx::ui
