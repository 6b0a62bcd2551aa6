#include "ui/tree_mirror.h"

#include "core/command.h"

#include <QApplication>
#include <QSignalBlocker>
#include <QTreeWidget>

namespace lx::ui {

TreeMirror::TreeMirror(std::function<void()> collapsed) : m_collapsed(std::move(collapsed)) {}

void TreeMirror::Show(QTreeWidget *widget, const HierarchyTree *tree)
{
    m_widget = widget;
    m_tree = tree;
}

void TreeMirror::ConnectUser(QObject *context, const UserHandlers &handlers)
{
    const auto byUser = [this](const std::function<void(QTreeWidgetItem *)> &handler) {
        return [this, handler](QTreeWidgetItem *item) {
            if (!m_programMove)
                RunCommand([&handler, item] { handler(item); });
        };
    };
    QObject::connect(m_widget, &QTreeWidget::itemExpanded, context, byUser(handlers.Expand));
    QObject::connect(m_widget, &QTreeWidget::itemCollapsed, context, byUser(handlers.Collapse));
    QObject::connect(m_widget, &QTreeWidget::itemClicked, context,
                     [click = handlers.Click](QTreeWidgetItem *item) {
                         RunCommand([&click, item] { click(item); });
                     });
    QObject::connect(m_widget, &QTreeWidget::currentItemChanged, context,
                     [this, click = handlers.Click](QTreeWidgetItem *item) {
                         if (!m_programMove && item && QApplication::mouseButtons() == Qt::NoButton)
                             RunCommand([&click, item] { click(item); });
                     });
}

QTreeWidgetItem *TreeMirror::ItemOf(Node node) const
{
    return node > 0 && size_t(node) < m_items.size() ? m_items[size_t(node)] : nullptr;
}

TreeMirror::Node TreeMirror::NodeOf(const QTreeWidgetItem *item)
{
    return item ? item->data(0, Qt::UserRole).toInt() : 0;
}

void TreeMirror::NodesAdded(Node parent, const std::vector<Node> &children)
{
    QList<QTreeWidgetItem *> items;
    items.reserve(qsizetype(children.size()));
    for (const Node node : children) {
        auto *item = new QTreeWidgetItem(QStringList{m_tree->Text(node)});
        item->setData(0, Qt::UserRole, node);
        if (m_items.size() <= size_t(node))
            m_items.resize(size_t(node) + 1, nullptr);
        m_items[size_t(node)] = item;
        items.append(item);
    }
    const QSignalBlocker quiet(m_widget);
    if (QTreeWidgetItem *above = ItemOf(parent))
        above->addChildren(items);
    else
        m_widget->addTopLevelItems(items);
}

// The item and the items below it no longer show nodes.
void TreeMirror::forget(QTreeWidgetItem *item)
{
    m_items[size_t(NodeOf(item))] = nullptr;
    for (int i = 0; i < item->childCount(); ++i)
        forget(item->child(i));
}

void TreeMirror::FirstChildRemoved(Node parent)
{
    QTreeWidgetItem *item = ItemOf(parent);
    if (!item || item->childCount() == 0)
        return;
    const QSignalBlocker quiet(m_widget);
    QTreeWidgetItem *first = item->takeChild(0);
    forget(first);
    delete first;
}

void TreeMirror::ChildrenRemoved(Node parent)
{
    QTreeWidgetItem *item = ItemOf(parent);
    if (!item)
        return;
    const QSignalBlocker quiet(m_widget);
    const QList<QTreeWidgetItem *> children = item->takeChildren();
    for (QTreeWidgetItem *child : children)
        forget(child);
    qDeleteAll(children);
}

void TreeMirror::ExpandedChanged(Node node, bool expanded)
{
    if (QTreeWidgetItem *item = ItemOf(node); item && item->isExpanded() != expanded) {
        m_programMove = true;
        item->setExpanded(expanded);
        m_programMove = false;
    }
    if (!expanded && m_collapsed)
        m_collapsed();
}

void TreeMirror::SelectionChanged(Node node)
{
    m_programMove = true;
    if (QTreeWidgetItem *item = ItemOf(node)) {
        m_widget->setCurrentItem(item);
        m_widget->scrollToItem(item);
    } else {
        m_widget->setCurrentItem(nullptr);
    }
    m_programMove = false;
}

} // namespace lx::ui
