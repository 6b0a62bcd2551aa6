#pragma once

#include <QString>

#include <vector>

// The nodes of one hierarchy tree window, its expansion and its find, apart from any widget: the
// window mirrors what the listener hears.
namespace lx {

// A tree that holds only what was opened. A node's text is a concept identifier and its only
// tie to the data; a concept with several parents stands once under each. A node with children
// that isn't expanded holds one dummy child. Nodes count from 1 in the order they were added
// (a removal closes the gap), which is the order in which a find steps through them.
class HierarchyTree {
public:
    using Node = int; // the same number for the node's whole life; 0 is no node

    class Listener {
    public:
        virtual ~Listener() = default;
        // `children` were added under `parent` (0 for the root), after its other children.
        virtual void NodesAdded(Node parent, const std::vector<Node> &children) = 0;
        // The first child of `parent`, or all of its children with their subtrees, are gone.
        virtual void FirstChildRemoved(Node parent) = 0;
        virtual void ChildrenRemoved(Node parent) = 0;
        // The node was expanded or collapsed.
        virtual void ExpandedChanged(Node node, bool expanded) = 0;
        // The node is selected now, and kept in view.
        virtual void SelectionChanged(Node node) = 0;
    };

    explicit HierarchyTree(Listener *listener = nullptr) : m_listener(listener) {}

    // A new root with this text and one dummy under it, whether or not it has children, unless
    // `withDummy` is false.
    Node AddRoot(const QString &identifier, bool withDummy = true);

    int Count() const { return int(m_order.size()); }
    Node At(int index) const; // 1 to Count(), else 0
    const QString &Text(Node node) const { return m_nodes[size_t(node)].text; }
    Node Parent(Node node) const { return m_nodes[size_t(node)].parent; }
    const std::vector<Node> &Children(Node node) const { return m_nodes[size_t(node)].children; }
    bool IsExpanded(Node node) const { return m_nodes[size_t(node)].expanded; }
    bool IsDummy(Node node) const;
    // The node's place, 1 to Count(); 0 when it doesn't exist.
    int IndexOf(Node node) const;
    // The child of `node` with exactly this text, first one first; 0 when there is none.
    Node ChildWithText(Node node, const QString &text) const;

    Node Selected() const { return m_selected; }
    void Select(Node node);
    // The user's own selection: the widget shows it already.
    void NoteSelected(Node node) { m_selected = node; }

    // The expand event: the dummy goes, the concept's children come in its place, each with a
    // dummy if it has children in turn. A node already expanded stays as it is.
    void Expand(Node node);
    // The collapse event: the children go, a dummy comes back whether or not any are left.
    void Collapse(Node node);

    // The find of the window, steps 3 to 5, for a pattern: the matching concepts are made to
    // exist in the tree once (SearchPrepared), then each find selects the next matching node
    // after the selected one, and wraps to the first. False when no concept matches.
    bool Find(const QString &pattern);
    // Opens the tree along the first path to each parent of the concept, so that its nodes
    // under those parents exist.
    void ExpandPathTo(const QString &identifier);

    bool SearchPrepared = false;
    // Whether the scan after a selected match passes over dummies. Off, a dummy is looked at
    // like any node, and only a pattern that matches the dummy's text can stop on it.
    bool SkipDummyInFind = true;

private:
    struct NodeData {
        QString text;
        Node parent = 0;
        std::vector<Node> children;
        bool expanded = false;
        bool removed = false;
    };

    Node addNode(Node parent, const QString &text);
    void addDummy(Node parent);
    void removeSubtrees(const std::vector<Node> &nodes);
    void open(Node node);
    bool stepToMatch(const QString &pattern);

    Listener *m_listener;
    std::vector<NodeData> m_nodes{NodeData{}}; // by node number; 0 stands for no node
    std::vector<Node> m_free;                  // numbers of removed nodes, to be used again
    std::vector<Node> m_order;                 // the nodes that exist, in the order they came
    Node m_selected = 0;
};

} // namespace lx
