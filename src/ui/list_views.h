#pragma once

#include "ontology/store/concept_list.h"

#include <QAbstractListModel>
#include <QAbstractTableModel>
#include <QObject>
#include <QStringList>

#include <vector>

class QLabel;
class QListView;
class QListWidget;
class QTreeView;
class QTreeWidget;
class QWidget;

namespace lx {
struct SlotLists;
}

namespace lx::ui {

// A click on a column head of a list view: the rows sort by that column, and the selected row
// stays in view.
void SortByColumn(QTreeWidget *list, int column);

// A list of plain texts that may hold a whole ontology: a view over one list of strings, with
// no item object per row. Not editable in place.
QListView *MakeTextList(QWidget *parent, const QString &name);
void SetTexts(QListView *list, const QStringList &texts);
QStringList Texts(const QListView *list);
// The text of the current row, empty without one.
QString CurrentText(const QListView *list);

// The local slots of a concept in the two lists of a window, under their labels.
void ShowSlotLists(const SlotLists &slots, QLabel *lblRels, QListWidget *lstRels, QLabel *lblAttrs,
                   QListWidget *lstAttrs);

// Rows of texts in fixed columns, for a list view that may hold a whole ontology. A sort keeps
// rows of equal text in their order and ignores case, as the store orders text.
class TextTableModel : public QAbstractTableModel {
public:
    TextTableModel(QStringList heads, QObject *parent);

    void clear() { setRows({}); }
    void setRows(std::vector<QStringList> rows); // one cell per column in each row
    QString text(int row, int column) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    QStringList m_heads;
    std::vector<QStringList> m_rows;
};

// A list over the rows of a recordset that reads a page of them when the view first asks for one
// of its rows: a view of uniform rows asks only for those it shows.
class PagedListModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void setRows(ListRows rows);
    ListRows &rows() { return m_rows; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    mutable ListRows m_rows; // reading a page changes only what is kept, not what is shown
};

// A table of texts under the given heads, over a TextTableModel of its own.
QTreeView *MakeTextTable(QWidget *parent, const QString &name, const QStringList &heads);
TextTableModel *TableModel(const QTreeView *table);

// Keeps a view's current row where it is on a right press: the right button opens a popup on
// the row that was current, it doesn't pick another. Install on the view's viewport.
class KeepCurrentOnRightPress : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace lx::ui
