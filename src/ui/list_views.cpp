#include "ui/list_views.h"

#include "core/store/errors.h"
#include "core/text/collation.h"
#include "ontology/edit/concept_view.h"
#include "ui/named.h"

#include <QEvent>
#include <QLabel>
#include <QListView>
#include <QListWidget>
#include <QMouseEvent>
#include <QStringListModel>
#include <QTreeView>
#include <QTreeWidget>

#include <algorithm>
#include <numeric>

namespace lx::ui {

void ShowSlotLists(const SlotLists &slots, QLabel *lblRels, QListWidget *lstRels, QLabel *lblAttrs,
                   QListWidget *lstAttrs)
{
    lblRels->setText(slots.RelsLabel);
    lstRels->clear();
    lstRels->addItems(slots.Rels);
    lblAttrs->setText(slots.AttrsLabel);
    lstAttrs->clear();
    lstAttrs->addItems(slots.Attrs);
}

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

QListView *MakeTextList(QWidget *parent, const QString &name)
{
    auto *list = Named(new QListView(parent), name);
    list->setModel(new QStringListModel(list));
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Rows of one height need no measuring, however many there are.
    list->setUniformItemSizes(true);
    return list;
}

void SetTexts(QListView *list, const QStringList &texts)
{
    static_cast<QStringListModel *>(list->model())->setStringList(texts);
}

QStringList Texts(const QListView *list)
{
    return static_cast<const QStringListModel *>(list->model())->stringList();
}

QString CurrentText(const QListView *list)
{
    return list->currentIndex().data().toString();
}

void PagedListModel::setRows(ListRows rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int PagedListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant PagedListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    try {
        return m_rows.text(index.row());
    } catch (const store::StoreError &) {
        return {}; // a paint can't report a failed read; the row shows empty
    }
}

TextTableModel::TextTableModel(QStringList heads, QObject *parent)
    : QAbstractTableModel(parent), m_heads(std::move(heads))
{}

void TextTableModel::setRows(std::vector<QStringList> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

QString TextTableModel::text(int row, int column) const
{
    if (row < 0 || size_t(row) >= m_rows.size())
        return {};
    return m_rows[size_t(row)].value(column);
}

int TextTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int TextTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_heads.size());
}

QVariant TextTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    return text(index.row(), index.column());
}

QVariant TextTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return m_heads.value(section);
}

void TextTableModel::sort(int column, Qt::SortOrder order)
{
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> byRow(m_rows.size());
    std::iota(byRow.begin(), byRow.end(), 0);
    std::stable_sort(byRow.begin(), byRow.end(), [&](int a, int b) {
        const int c =
            text::CompareText(m_rows[size_t(a)].value(column), m_rows[size_t(b)].value(column));
        return order == Qt::AscendingOrder ? c < 0 : c > 0;
    });
    std::vector<QStringList> sorted;
    sorted.reserve(m_rows.size());
    std::vector<int> newRow(m_rows.size());
    for (size_t i = 0; i < byRow.size(); ++i) {
        sorted.push_back(std::move(m_rows[size_t(byRow[i])]));
        newRow[size_t(byRow[i])] = int(i);
    }
    m_rows = std::move(sorted);
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &index : before)
        after << this->index(newRow[size_t(index.row())], index.column());
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QTreeView *MakeTextTable(QWidget *parent, const QString &name, const QStringList &heads)
{
    auto *table = Named(new QTreeView(parent), name);
    table->setModel(new TextTableModel(heads, table));
    table->setRootIsDecorated(false);
    table->setItemsExpandable(false);
    table->setUniformRowHeights(true);
    table->setAlternatingRowColors(true);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    return table;
}

TextTableModel *TableModel(const QTreeView *table)
{
    return static_cast<TextTableModel *>(table->model());
}

bool KeepCurrentOnRightPress::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        if (static_cast<QMouseEvent *>(event)->button() == Qt::RightButton)
            return true; // the context menu event comes all the same
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lx::ui
