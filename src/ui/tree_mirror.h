#pragma once

#include "ontology/views/hierarchy_tree.h"

#include <functional>
#include <vector>

class QObject;
class QTreeWidget;
class QTreeWidgetItem;

namespace lx::ui {

// Shows the nodes of a hierarchy tree in a tree widget, as the tree tells it of them: an item
// per node, kept by node number. A window that shows a hierarchy owns one, gives it to its
// HierarchyTree as the listener and hands it the widget once the widget is made.
class TreeMirror : public HierarchyTree::Listener {
public:
    using Node = HierarchyTree::Node;

    // `collapsed` runs after each collapse the tree reports (a window empties its find box).
    explicit TreeMirror(std::function<void()> collapsed = {});
    void Show(QTreeWidget *widget, const HierarchyTree *tree);

    // The window's handlers of what the user does in the widget; each runs as a command.
    struct UserHandlers {
        std::function<void(QTreeWidgetItem *)> Expand, Collapse, Click;
    };
    // Connects the widget's signals to `handlers` for as long as `context` lives. The program's
    // own moves are passed over; the keys move the selection as a click does, while a mouse
    // press leaves it to the click.
    void ConnectUser(QObject *context, const UserHandlers &handlers);

    QTreeWidgetItem *ItemOf(Node node) const;
    static Node NodeOf(const QTreeWidgetItem *item);
    // True while the widget changes by the program, not by the user.
    bool ProgramMove() const { return m_programMove; }

    void NodesAdded(Node parent, const std::vector<Node> &children) override;
    void FirstChildRemoved(Node parent) override;
    void ChildrenRemoved(Node parent) override;
    void ExpandedChanged(Node node, bool expanded) override;
    void SelectionChanged(Node node) override;

private:
    void forget(QTreeWidgetItem *item);

    QTreeWidget *m_widget = nullptr;
    const HierarchyTree *m_tree = nullptr;
    std::function<void()> m_collapsed;
    std::vector<QTreeWidgetItem *> m_items; // by node number
    bool m_programMove = false;
};

} // namespace lx::ui
