#include "ontology/store/lookups.h"
#include "ontology_fixture.h"

#include <QHash>
#include <QSet>

#include <random>

using namespace lx;

namespace {

class Walks : public OntologyTest {
protected:
    // Adds a random graph of `nodes` concepts, named in mixed case so that the store's order isn't
    // the order of creation. Each node links to one to three earlier ones: diamonds everywhere, no
    // cycles.
    QStringList addRandomGraph(std::mt19937 &rng, int graph, int nodes)
    {
        const QString letters = QStringLiteral("abcDEFghIJ'");
        QStringList names;
        QSet<QString> folded;
        while (names.size() < nodes) {
            QString name = QStringLiteral("G%1-").arg(graph);
            for (int k = 1 + int(rng() % 3); k > 0; --k)
                name += letters[int(rng() % letters.size())];
            if (!folded.contains(name.toCaseFolded())) {
                folded.insert(name.toCaseFolded());
                names << name;
                addConcept(name);
            }
        }
        for (int i = 1; i < nodes; ++i) {
            QSet<int> parents;
            for (int k = 1 + int(rng() % 3); k > 0; --k)
                parents.insert(int(rng() % unsigned(i)));
            for (int p : parents)
                link(names[i], names[p]);
        }
        return names;
    }
};

// The walks written out step by step from their definition, one query per concept, as a
// reference for the order. A walk's result depends on its concept alone, so each is kept once
// made (else diamonds make the reference exponential). Ends only on graphs without cycles.
class Reference {
public:
    const QStringList &ancestors(const QString &id)
    {
        if (const auto it = m_ancestors.constFind(id); it != m_ancestors.cend())
            return *it;
        QStringList list;
        const int n = GetParents(id, list);
        for (int i = 0; i < n; ++i)
            for (const QString &a : ancestors(list[i]))
                if (!FindInList(a, list))
                    list << a;
        return *m_ancestors.insert(id, list);
    }

    const QStringList &descendants(const QString &id)
    {
        if (const auto it = m_descendants.constFind(id); it != m_descendants.cend())
            return *it;
        QStringList list;
        const int n = GetChildren(id, list);
        for (int i = 0; i < n; ++i) {
            if (IsLeaf(list[i]))
                continue;
            for (const QString &d : descendants(list[i]))
                if (!FindInList(d, list))
                    list << d;
        }
        return *m_descendants.insert(id, list);
    }

private:
    QHash<QString, QStringList> m_ancestors;
    QHash<QString, QStringList> m_descendants;
};

QStringList ancestors(const QString &id)
{
    QStringList list;
    GetAncestors(id, list);
    return list;
}

QStringList descendants(const QString &id)
{
    QStringList list;
    GetDescendants(id, list);
    return list;
}

TEST_F(Walks, DirectChildrenAndParentsSortedByIdentifier)
{
    for (const char *id : {"ALL", "thing", "Beta", "ALPHA", "O'BRIEN"})
        addConcept(QString::fromLatin1(id));
    link(QStringLiteral("thing"), QStringLiteral("ALL"));
    link(QStringLiteral("Beta"), QStringLiteral("ALL"));
    link(QStringLiteral("ALPHA"), QStringLiteral("ALL"));
    link(QStringLiteral("O'BRIEN"), QStringLiteral("thing"));
    link(QStringLiteral("O'BRIEN"), QStringLiteral("Beta"));

    QStringList list;
    EXPECT_EQ(GetChildren(QStringLiteral("all"), list), 3);
    EXPECT_EQ(list, (QStringList{"ALPHA", "Beta", "thing"}));
    EXPECT_EQ(GetParents(QStringLiteral("O'BRIEN"), list), 2);
    EXPECT_EQ(list, (QStringList{"Beta", "thing"}));
    EXPECT_FALSE(IsLeaf(QStringLiteral("THING")));
    EXPECT_TRUE(IsLeaf(QStringLiteral("O'BRIEN")));

    // With nothing found, every routine leaves the caller's list as it was.
    const QStringList before{QStringLiteral("KEEP")};
    list = before;
    EXPECT_EQ(GetChildren(QStringLiteral("O'BRIEN"), list), 0);
    EXPECT_EQ(GetParents(QStringLiteral("ALL"), list), 0);
    EXPECT_EQ(GetAncestors(QStringLiteral("ALL"), list), 0);
    EXPECT_EQ(GetDescendants(QStringLiteral("O'BRIEN"), list), 0);
    EXPECT_EQ(GetDescendants(QStringLiteral("NO-SUCH"), list), 0);
    EXPECT_EQ(list, before);
}

TEST_F(Walks, SharedGrandparentStandsOnceAtItsFirstPlace)
{
    //        ALL
    //       /   \.
    //   ANIMAL   MACHINE
    //     |   \    |
    //    PET   ROBOT-DOG (is an ANIMAL and a MACHINE)
    //     |   /
    //   ROBOT-PUPPY
    for (const char *id : {"ALL", "ANIMAL", "MACHINE", "PET", "ROBOT-DOG", "ROBOT-PUPPY"})
        addConcept(QString::fromLatin1(id));
    link(QStringLiteral("ANIMAL"), QStringLiteral("ALL"));
    link(QStringLiteral("MACHINE"), QStringLiteral("ALL"));
    link(QStringLiteral("PET"), QStringLiteral("ANIMAL"));
    link(QStringLiteral("ROBOT-DOG"), QStringLiteral("ANIMAL"));
    link(QStringLiteral("ROBOT-DOG"), QStringLiteral("MACHINE"));
    link(QStringLiteral("ROBOT-PUPPY"), QStringLiteral("PET"));
    link(QStringLiteral("ROBOT-PUPPY"), QStringLiteral("ROBOT-DOG"));

    QStringList list;
    EXPECT_EQ(GetAncestors(QStringLiteral("ROBOT-PUPPY"), list), 5);
    EXPECT_EQ(list, (QStringList{"PET", "ROBOT-DOG", "ANIMAL", "ALL", "MACHINE"}));
    EXPECT_EQ(ancestors(QStringLiteral("ROBOT-DOG")), (QStringList{"ANIMAL", "MACHINE", "ALL"}));
    EXPECT_EQ(GetDescendants(QStringLiteral("ALL"), list), 5);
    EXPECT_EQ(list, (QStringList{"ANIMAL", "MACHINE", "PET", "ROBOT-DOG", "ROBOT-PUPPY"}));
    EXPECT_EQ(descendants(QStringLiteral("MACHINE")), (QStringList{"ROBOT-DOG", "ROBOT-PUPPY"}));
}

void ExpectStepByStepOrder(const QStringList &names)
{
    Reference reference;
    for (const QString &name : names) {
        SCOPED_TRACE(name.toStdString());
        EXPECT_EQ(ancestors(name), reference.ancestors(name));
        EXPECT_EQ(descendants(name), reference.descendants(name));
    }
}

TEST_F(Walks, MatchTheStepByStepWalkOnRandomGraphs)
{
    std::mt19937 rng(20240611);
    for (int graph = 0; graph < 11; ++graph) {
        SCOPED_TRACE(graph);
        ExpectStepByStepOrder(addRandomGraph(rng, graph, 10 + int(rng() % 30)));
    }
}

TEST_F(Walks, WalksThatReadTheWholeTableKeepTheOrder)
{
    // One graph alone in the file: walks from near its roots reach most of the table and read
    // it through, walks from near its leaves look their nodes up.
    std::mt19937 rng(20240612);
    ExpectStepByStepOrder(addRandomGraph(rng, 0, 300));
}

TEST_F(Walks, CycleEndsTheWalkAndKeepsTheOrder)
{
    // ALL > A > B > C > A, and C > D. Nothing keeps the cycle out of a file made elsewhere.
    for (const char *id : {"ALL", "A", "B", "C", "D"})
        addConcept(QString::fromLatin1(id));
    link(QStringLiteral("A"), QStringLiteral("ALL"));
    link(QStringLiteral("B"), QStringLiteral("A"));
    link(QStringLiteral("C"), QStringLiteral("B"));
    link(QStringLiteral("A"), QStringLiteral("C"));
    link(QStringLiteral("D"), QStringLiteral("C"));

    // A concept on a cycle is its own descendant and ancestor.
    EXPECT_EQ(descendants(QStringLiteral("A")), (QStringList{"B", "C", "A", "D"}));
    EXPECT_EQ(descendants(QStringLiteral("ALL")), (QStringList{"A", "B", "C", "D"}));
    EXPECT_EQ(ancestors(QStringLiteral("D")), (QStringList{"C", "B", "A", "ALL"}));
    EXPECT_EQ(ancestors(QStringLiteral("A")), (QStringList{"ALL", "C", "B", "A"}));
}

TEST_F(Walks, ConceptReachedUnderTwoSpellingsStandsOnce)
{
    // Links keep the spelling they were written with; the store takes them as one concept.
    for (const char *id : {"TOP", "LEFT", "RIGHT", "LEAF"})
        addConcept(QString::fromLatin1(id));
    link(QStringLiteral("LEFT"), QStringLiteral("TOP"));
    link(QStringLiteral("RIGHT"), QStringLiteral("TOP"));
    link(QStringLiteral("leaf"), QStringLiteral("LEFT"));
    link(QStringLiteral("Leaf"), QStringLiteral("right"));
    EXPECT_EQ(descendants(QStringLiteral("top")), (QStringList{"LEFT", "RIGHT", "leaf"}));
    EXPECT_EQ(ancestors(QStringLiteral("LEAF")), (QStringList{"LEFT", "right", "TOP"}));
}

} // namespace
