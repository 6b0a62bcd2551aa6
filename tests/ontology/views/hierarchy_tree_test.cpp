#include "ontology/lookups/ontology_fixture.h"
#include "ontology/views/hierarchy_reads.h"
#include "ontology/views/hierarchy_tree.h"

#include <QHash>

#include <random>

using namespace lx;
using Node = HierarchyTree::Node;

namespace {

// A second tree built from nothing but what the listener hears, as the window builds its own.
class Mirror : public HierarchyTree::Listener {
public:
    void NodesAdded(Node parent, const std::vector<Node> &children) override
    {
        for (const Node child : children) {
            EXPECT_FALSE(kids.contains(child)) << "a number in use came again";
            kids[parent].append(child);
            kids[child];
        }
    }
    void FirstChildRemoved(Node parent) override { drop(kids[parent].takeFirst()); }
    void ChildrenRemoved(Node parent) override
    {
        for (const Node child : kids[parent])
            drop(child);
        kids[parent].clear();
    }
    void ExpandedChanged(Node node, bool isExpanded) override { expanded[node] = isExpanded; }
    void SelectionChanged(Node node) override { selected = node; }

    QHash<Node, QList<Node>> kids;
    QHash<Node, bool> expanded;
    Node selected = 0;

private:
    void drop(Node node)
    {
        expanded.remove(node);
        for (const Node child : kids.take(node))
            drop(child);
    }
};

class HierarchyTreeTest : public OntologyTest {
protected:
    // THING above ANIMAL and PLANT; BIRD under ANIMAL; BAT under both ANIMAL and WING-OWNER;
    // BIRD is a WING-OWNER too; STONE has no children.
    void SetUp() override
    {
        OntologyTest::SetUp();
        for (const char *id : {"THING", "ANIMAL", "PLANT", "BIRD", "BAT", "WING-OWNER", "STONE"})
            addConcept(QString::fromLatin1(id));
        for (const auto &[child, parent] : {std::pair{"ANIMAL", "THING"},
                                            {"PLANT", "THING"},
                                            {"STONE", "THING"},
                                            {"WING-OWNER", "THING"},
                                            {"BIRD", "ANIMAL"},
                                            {"BAT", "ANIMAL"},
                                            {"BAT", "WING-OWNER"},
                                            {"BIRD", "WING-OWNER"}})
            link(QString::fromLatin1(child), QString::fromLatin1(parent));
    }

    QStringList texts(Node node) const
    {
        QStringList out;
        for (const Node child : tree.Children(node))
            out << tree.Text(child);
        return out;
    }
    QStringList order() const
    {
        QStringList out;
        for (int i = 1; i <= tree.Count(); ++i)
            out << tree.Text(tree.At(i));
        return out;
    }
    // The path of texts from the root to the selected node.
    QString selectedPath() const
    {
        QString path;
        for (Node n = tree.Selected(); n; n = tree.Parent(n))
            path = path.isEmpty() ? tree.Text(n) : tree.Text(n) + QLatin1Char('/') + path;
        return path;
    }
    // The mirror holds the same nodes under the same parents, in the same order.
    void expectMirrored(Node node) const
    {
        const std::vector<Node> &children = tree.Children(node);
        EXPECT_EQ(mirror.kids.value(node), QList<Node>(children.begin(), children.end()))
            << tree.Text(node).toStdString();
        EXPECT_EQ(mirror.expanded.value(node), tree.IsExpanded(node));
        for (const Node child : children)
            expectMirrored(child);
    }

    const QString dummy = DummyNodeText();
    Mirror mirror;
    HierarchyTree tree{&mirror};
};

// A level comes on expansion only, in identifier order, with a dummy under each child that has
// children; a collapse drops the subtree and brings the dummy back, even under a node whose
// children are gone, and the next expansion reads the file afresh.
TEST_F(HierarchyTreeTest, LevelsAreReadOnExpansionAndDroppedOnCollapse)
{
    EXPECT_EQ(dummy, QStringLiteral("FCKMPSBLND"));
    const Node root = tree.AddRoot(QStringLiteral("THING"));
    EXPECT_EQ(order(), (QStringList{QStringLiteral("THING"), dummy}));

    tree.Expand(root);
    EXPECT_EQ(texts(root), (QStringList{QStringLiteral("ANIMAL"), QStringLiteral("PLANT"),
                                        QStringLiteral("STONE"), QStringLiteral("WING-OWNER")}));
    const Node animal = tree.Children(root)[0];
    EXPECT_EQ(texts(animal), QStringList{dummy});
    EXPECT_TRUE(tree.Children(tree.Children(root)[1]).empty()) << "a leaf shows no sign";
    tree.Expand(animal);
    EXPECT_EQ(texts(animal), (QStringList{QStringLiteral("BAT"), QStringLiteral("BIRD")}));
    EXPECT_EQ(tree.Count(), 8);

    tree.Collapse(root);
    EXPECT_EQ(order(), (QStringList{QStringLiteral("THING"), dummy}));
    EXPECT_FALSE(tree.IsExpanded(root));

    addConcept(QStringLiteral("AIR"));
    link(QStringLiteral("AIR"), QStringLiteral("THING"));
    tree.Expand(root);
    EXPECT_EQ(texts(root).first(), QStringLiteral("AIR"));

    // A leaf with a dummy: the sign shows until the first expansion, and again after a collapse.
    HierarchyTree leaf;
    const Node stone = leaf.AddRoot(QStringLiteral("STONE"));
    leaf.Expand(stone);
    EXPECT_TRUE(leaf.Children(stone).empty());
    leaf.Collapse(stone);
    ASSERT_EQ(leaf.Children(stone).size(), 1u);
    EXPECT_TRUE(leaf.IsDummy(leaf.Children(stone).front()));
    expectMirrored(root);
}

// Nodes count in the order they came: a level rebuilt goes to the end of the count.
TEST_F(HierarchyTreeTest, NodesCountInTheOrderTheyCame)
{
    const Node root = tree.AddRoot(QStringLiteral("THING"));
    tree.Expand(root);
    const Node animal = tree.Children(root)[0];
    const Node owner = tree.Children(root)[3];
    tree.Expand(animal);
    tree.Expand(owner);
    tree.Collapse(animal);
    tree.Expand(animal);
    EXPECT_EQ(
        order(),
        (QStringList{QStringLiteral("THING"), QStringLiteral("ANIMAL"), QStringLiteral("PLANT"),
                     QStringLiteral("STONE"), QStringLiteral("WING-OWNER"), QStringLiteral("BAT"),
                     QStringLiteral("BIRD"), QStringLiteral("BAT"), QStringLiteral("BIRD")}));
    EXPECT_EQ(tree.IndexOf(owner), 5);
    EXPECT_EQ(tree.At(0), 0);
    EXPECT_EQ(tree.At(tree.Count() + 1), 0);
    expectMirrored(root);
}

// A concept with two parents is found under each in turn, and the find wraps to the first.
TEST_F(HierarchyTreeTest, FindStepsThroughEveryOccurrenceAndWraps)
{
    tree.AddRoot(QStringLiteral("THING"));
    ASSERT_TRUE(tree.Find(QStringLiteral("BAT*")));
    EXPECT_TRUE(tree.SearchPrepared);
    EXPECT_EQ(selectedPath(), QStringLiteral("THING/ANIMAL/BAT"));
    ASSERT_TRUE(tree.Find(QStringLiteral("BAT*")));
    EXPECT_EQ(selectedPath(), QStringLiteral("THING/WING-OWNER/BAT"));
    ASSERT_TRUE(tree.Find(QStringLiteral("BAT*")));
    EXPECT_EQ(selectedPath(), QStringLiteral("THING/ANIMAL/BAT"));
    EXPECT_EQ(mirror.selected, tree.Selected());

    // Wildcards of the user's own; nodes match with case counting.
    tree.SearchPrepared = false;
    ASSERT_TRUE(tree.Find(QStringLiteral("B?R*")));
    EXPECT_EQ(selectedPath(), QStringLiteral("THING/ANIMAL/BIRD"));
    tree.SearchPrepared = false;
    tree.Select(tree.At(1));
    EXPECT_TRUE(tree.Find(QStringLiteral("bird*"))) << "the file compares without case";
    EXPECT_EQ(tree.Selected(), tree.At(1)) << "the nodes with case";

    tree.SearchPrepared = false;
    EXPECT_FALSE(tree.Find(QStringLiteral("ZEBRA*")));
    EXPECT_FALSE(tree.SearchPrepared);
    EXPECT_FALSE(tree.Find(QStringLiteral("[*")));
    expectMirrored(tree.At(1));
}

// The root as the one match ends the find on the root instead of going round for ever; a
// child of the top concept is found only where its level is open already.
TEST_F(HierarchyTreeTest, FindOfTheRootAndOfTheTopLevel)
{
    const Node root = tree.AddRoot(QStringLiteral("THING"));
    EXPECT_TRUE(tree.Find(QStringLiteral("THING*")));
    EXPECT_TRUE(tree.Find(QStringLiteral("THING*")));
    EXPECT_EQ(tree.Selected(), root);

    tree.SearchPrepared = false;
    EXPECT_TRUE(tree.Find(QStringLiteral("PLANT*")));
    EXPECT_EQ(tree.Selected(), root) << "the walk to a top-level concept ends at once";
    tree.Expand(root);
    tree.SearchPrepared = false;
    EXPECT_TRUE(tree.Find(QStringLiteral("PLANT*")));
    EXPECT_EQ(selectedPath(), QStringLiteral("THING/PLANT"));
}

// A partial tree opens along the way to a concept below its root; a concept beside it stays
// unfound.
TEST_F(HierarchyTreeTest, PartialTrees)
{
    const Node root = tree.AddRoot(QStringLiteral("WING-OWNER"));
    EXPECT_TRUE(tree.Find(QStringLiteral("BIRD")));
    EXPECT_EQ(selectedPath(), QStringLiteral("WING-OWNER/BIRD"));
    addConcept(QStringLiteral("OAK"));
    link(QStringLiteral("OAK"), QStringLiteral("PLANT"));
    tree.SearchPrepared = false;
    EXPECT_TRUE(tree.Find(QStringLiteral("OAK*")));
    EXPECT_EQ(tree.Selected(), root);
    expectMirrored(root);
}

// A concept linked below its own descendant: expansion goes one level at a time round the
// cycle, and a find ends.
TEST_F(HierarchyTreeTest, ACycleNeitherHangsExpansionNorFind)
{
    link(QStringLiteral("ANIMAL"), QStringLiteral("BIRD"));
    const Node root = tree.AddRoot(QStringLiteral("THING"));
    tree.Expand(root);
    Node node = tree.ChildWithText(root, QStringLiteral("ANIMAL"));
    for (int level = 0; level < 6; ++level) {
        tree.Expand(node);
        node =
            tree.ChildWithText(node, level % 2 ? QStringLiteral("ANIMAL") : QStringLiteral("BIRD"));
        ASSERT_NE(node, 0) << level;
    }
    tree.Collapse(root);
    EXPECT_TRUE(tree.Find(QStringLiteral("BIRD*")));
    EXPECT_TRUE(tree.Find(QStringLiteral("ANIMAL*")));
    EXPECT_GT(tree.Count(), 2);
    expectMirrored(root);
}

// Random expansions, collapses and finds: the listener's tree never drifts from the model.
TEST_F(HierarchyTreeTest, TheListenerHearsEveryChange)
{
    std::mt19937 rng(7);
    const Node root = tree.AddRoot(QStringLiteral("THING"));
    const QStringList finds{QStringLiteral("B*"), QStringLiteral("BAT"), QStringLiteral("W*")};
    for (int step = 0; step < 200; ++step) {
        const Node node = tree.At(1 + int(rng() % unsigned(tree.Count())));
        switch (rng() % 3) {
        case 0:
            tree.Expand(node);
            break;
        case 1:
            tree.Collapse(node);
            break;
        default:
            tree.SearchPrepared = rng() % 2;
            tree.Find(finds[int(rng() % 3)]);
        }
        if (HasFailure())
            break;
    }
    expectMirrored(root);
    EXPECT_EQ(mirror.selected, tree.Selected());
}

TEST_F(HierarchyTreeTest, TypesAndSlotsOfAClickedConcept)
{
    addConcept(QStringLiteral("DOMAIN"), 4);
    addConcept(QStringLiteral("RANGE"), 4);
    addConcept(QStringLiteral("SIZE"), 13);
    addConcept(QStringLiteral("OWNS"), 14);
    addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("SIZE")},
                                         {u"Rel", QStringLiteral("DOMAIN")},
                                         {u"Concept2", QStringLiteral("THING")},
                                         {u"Default", false}});
    addRow(QStringLiteral("ATTRIBUTES"), {{u"Concept", QStringLiteral("SIZE")},
                                          {u"Attribute", QStringLiteral("RANGE")},
                                          {u"Value", QStringLiteral("1-10")},
                                          {u"Default", true}});
    addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("OWNS")},
                                         {u"Rel", QStringLiteral("RANGE")},
                                         {u"Concept2", QStringLiteral("THING")},
                                         {u"Default", false}});
    addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("BIRD")},
                                         {u"Rel", QStringLiteral("OWNS")},
                                         {u"Concept2", QStringLiteral("BAT")},
                                         {u"Default", true}});

    EXPECT_EQ(ReadTreeConceptType(QStringLiteral("SIZE")), 13);
    EXPECT_EQ(ReadTreeConceptType(QStringLiteral("GONE")), std::nullopt);
    EXPECT_EQ(ReadTreeSlots(QStringLiteral("SIZE"), 13),
              (SlotLists{QStringLiteral("LOCAL DOMAINS"),
                         {QStringLiteral("THING")},
                         QStringLiteral("LOCAL RANGES"),
                         {QStringLiteral("1-10 (by default)")}}));
    EXPECT_EQ(ReadTreeSlots(QStringLiteral("OWNS"), 14), (SlotLists{QStringLiteral("LOCAL DOMAINS"),
                                                                    {},
                                                                    QStringLiteral("LOCAL RANGES"),
                                                                    {QStringLiteral("THING")}}));
    EXPECT_EQ(ReadTreeSlots(QStringLiteral("BIRD"), 100),
              (SlotLists{QStringLiteral("LOCAL RELATIONS"),
                         {QStringLiteral("OWNS : BAT (by default)")},
                         QStringLiteral("LOCAL ATTRIBUTES"),
                         {}}));
    EXPECT_EQ(FindPattern(QStringLiteral("AB")), QStringLiteral("AB*"));
    EXPECT_EQ(FindPattern(QStringLiteral("A*B*")), QStringLiteral("A*B*"));
}

} // namespace
