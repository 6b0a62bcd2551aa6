#include "ontology/views/hierarchy_tree.h"

#include "core/store/errors.h"
#include "core/text/like.h"
#include "ontology/store/lookups.h"
#include "ontology/views/hierarchy_reads.h"

#include <algorithm>

namespace lx {

namespace {

// Nodes match a pattern as the program's own comparisons do: case counts.
bool Matches(const QString &text, const QString &pattern)
{
    return text::Like(text, pattern);
}

} // namespace

HierarchyTree::Node HierarchyTree::AddRoot(const QString &identifier, bool withDummy)
{
    const Node root = addNode(0, identifier);
    if (m_listener)
        m_listener->NodesAdded(0, {root});
    if (withDummy)
        addDummy(root);
    return root;
}

HierarchyTree::Node HierarchyTree::At(int index) const
{
    return index >= 1 && index <= Count() ? m_order[size_t(index - 1)] : 0;
}

int HierarchyTree::IndexOf(Node node) const
{
    const auto at = std::find(m_order.begin(), m_order.end(), node);
    return at == m_order.end() ? 0 : int(at - m_order.begin()) + 1;
}

bool HierarchyTree::IsDummy(Node node) const
{
    return Text(node) == DummyNodeText();
}

HierarchyTree::Node HierarchyTree::ChildWithText(Node node, const QString &text) const
{
    for (const Node child : Children(node)) {
        if (Text(child) == text)
            return child;
    }
    return 0;
}

void HierarchyTree::Select(Node node)
{
    m_selected = node;
    if (m_listener)
        m_listener->SelectionChanged(node);
}

HierarchyTree::Node HierarchyTree::addNode(Node parent, const QString &text)
{
    Node node = 0;
    if (m_free.empty()) {
        node = Node(m_nodes.size());
        m_nodes.emplace_back();
    } else {
        node = m_free.back();
        m_free.pop_back();
    }
    NodeData &data = m_nodes[size_t(node)];
    data = NodeData{text, parent, {}, false, false};
    if (parent)
        m_nodes[size_t(parent)].children.push_back(node);
    m_order.push_back(node);
    return node;
}

void HierarchyTree::addDummy(Node parent)
{
    const Node dummy = addNode(parent, DummyNodeText());
    if (m_listener)
        m_listener->NodesAdded(parent, {dummy});
}

// Marks the nodes and everything below them removed, then closes the gaps they leave.
void HierarchyTree::removeSubtrees(const std::vector<Node> &nodes)
{
    std::vector<Node> pending = nodes;
    while (!pending.empty()) {
        const Node node = pending.back();
        pending.pop_back();
        NodeData &data = m_nodes[size_t(node)];
        pending.insert(pending.end(), data.children.begin(), data.children.end());
        data = NodeData{};
        data.removed = true;
        m_free.push_back(node);
        if (m_selected == node)
            m_selected = 0;
    }
    std::erase_if(m_order, [this](Node node) { return m_nodes[size_t(node)].removed; });
}

void HierarchyTree::Expand(Node node)
{
    NodeData &data = m_nodes[size_t(node)];
    if (data.expanded)
        return;
    data.expanded = true;
    if (m_listener)
        m_listener->ExpandedChanged(node, true);
    if (!data.children.empty() && IsDummy(data.children.front())) {
        const Node dummy = data.children.front();
        data.children.erase(data.children.begin());
        removeSubtrees({dummy});
        if (m_listener)
            m_listener->FirstChildRemoved(node);
    }
    const QList<TreeChild> level = ReadTreeLevel(Text(node));
    std::vector<Node> added;
    added.reserve(size_t(level.size()));
    for (const TreeChild &child : level)
        added.push_back(addNode(node, child.Text));
    if (m_listener && !added.empty())
        m_listener->NodesAdded(node, added);
    for (qsizetype i = 0; i < level.size(); ++i) {
        if (level[i].HasChildren)
            addDummy(added[size_t(i)]);
    }
}

void HierarchyTree::Collapse(Node node)
{
    NodeData &data = m_nodes[size_t(node)];
    const std::vector<Node> children = std::move(data.children);
    data.children.clear();
    removeSubtrees(children);
    if (m_listener)
        m_listener->ChildrenRemoved(node);
    addDummy(node);
    m_nodes[size_t(node)].expanded = false;
    if (m_listener)
        m_listener->ExpandedChanged(node, false);
}

// Expands a node that isn't; one whose first child is still the dummy is expanded afresh.
void HierarchyTree::open(Node node)
{
    if (!IsExpanded(node))
        Expand(node);
    const std::vector<Node> &children = Children(node);
    if (!children.empty() && IsDummy(children.front())) {
        Collapse(node);
        Expand(node);
    }
}

void HierarchyTree::ExpandPathTo(const QString &identifier)
{
    QStringList parents;
    GetParents(identifier, parents);
    for (const QString &parent : parents) {
        QStringList ancestors;
        const int n = GetAncestors(parent, ancestors);
        if (n == 0)
            return;
        // The walk lists the top last: the root stands for it, or stands below it.
        Node current = At(1);
        Select(current);
        open(current);
        for (int j = n - 1; j >= 1; --j) {
            if (const Node next = ChildWithText(current, ancestors[j - 1])) {
                open(next);
                current = next;
            }
        }
        if (const Node last = ChildWithText(current, parent))
            open(last);
    }
}

bool HierarchyTree::Find(const QString &pattern)
{
    if (!SearchPrepared) {
        QStringList found;
        try {
            found = ConceptsLike(pattern);
        } catch (const store::StoreError &) {
            // A pattern the store refuses finds nothing.
        }
        if (found.isEmpty())
            return false;
        for (const QString &identifier : found)
            ExpandPathTo(identifier);
        SearchPrepared = true;
    }
    // A wrap selects the first node and steps once more; where the first node is the one
    // match, that second round ends on it instead of going round again.
    if (!stepToMatch(pattern)) {
        Select(At(1));
        stepToMatch(pattern);
    }
    return true;
}

// From a selected match, the next matching node after it; else the first match of all. False
// when the selected node matched and none came after it.
bool HierarchyTree::stepToMatch(const QString &pattern)
{
    const int count = Count();
    const Node selected = m_selected;
    if (selected && Matches(Text(selected), pattern)) {
        Select(selected);
        for (int i = IndexOf(selected) + 1; i <= count; ++i) {
            const Node node = At(i);
            if (!(SkipDummyInFind && IsDummy(node)) && Matches(Text(node), pattern)) {
                Select(node);
                return true;
            }
        }
        return false;
    }
    for (int i = 1; i <= count; ++i) {
        if (Matches(Text(At(i)), pattern)) {
            Select(At(i));
            break;
        }
    }
    return true;
}

} // namespace lx
