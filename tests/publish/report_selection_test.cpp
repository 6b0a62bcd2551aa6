// How the report dialog picks concepts out of its list.
#include "publish/report_selection.h"
#include "support/empty_ontology.h"

using namespace lx;

namespace {

QString S(const char *text)
{
    return QString::fromUtf8(text);
}

TEST(ReportSelection, APatternMatchesWholeItemsCaseCounting)
{
    const QStringList items{S("CAR"), S("SPORTS-CAR"), S("CART"), S("car"), S("CAR-2"), S("CUR")};
    // No wildcards are added: "CAR" is the identifier CAR and nothing else.
    EXPECT_EQ(PatternSelection(items, S("CAR")), QList<int>{0});
    EXPECT_EQ(PatternSelection(items, S("*CAR")), (QList<int>{0, 1}));
    EXPECT_EQ(PatternSelection(items, S("C?R")), (QList<int>{0, 5}));
    EXPECT_EQ(PatternSelection(items, S("CAR-#")), QList<int>{4});
    EXPECT_EQ(PatternSelection(items, S("[A-C]AR*")), (QList<int>{0, 2, 4}));
    EXPECT_TRUE(PatternSelection(items, S("BUS")).isEmpty());
}

TEST(ReportSelection, TheSubhierarchyScanStopsOnceAllAreFound)
{
    const QStringList items{S("A"), S("B"), S("C"), S("D"), S("E")};
    // B and D below the chosen concept: found, then the scan ends.
    EXPECT_EQ(HierarchySelection(items, {S("B"), S("D")}, 1), (QList<int>{1, 3}));
    // Empty entries are passed over; a concept listed twice (two parents) keeps the scan going.
    EXPECT_EQ(HierarchySelection(items, {QString(), S("E")}, 1), QList<int>{4});
    EXPECT_EQ(HierarchySelection(items, {S("B"), S("B")}, 1), QList<int>{1});
    // Already at the number wanted: nothing more.
    EXPECT_TRUE(HierarchySelection(items, {S("B")}, 2).isEmpty());
}

class SubsetSelectionTest : public EmptyOntologyTest {
protected:
    void SetUp() override
    {
        EmptyOntologyTest::SetUp();
        addRow(S("Subsets"), {{u"Subset_ID", 1}, {u"Subset", S("General")}});
        addRow(S("Subsets"), {{u"Subset_ID", 3}, {u"Subset", S("Vehicles")}});
        addRow(S("Subsets"), {{u"Subset_ID", 2}, {u"Subset", S("Animals")}});
        // Entered in this order; BUS, CAR and VAN are vehicles.
        for (const auto &[id, subset] :
             {std::pair{"VAN", 3}, {"ANT", 2}, {"CAR", 3}, {"BEE", 2}, {"BUS", 3}, {"ALL", 1}})
            addRow(S("CONCEPTS"), {{u"Concept", S(id)}, {u"Type", 1}, {u"Subset_ID", subset}});
    }
};

TEST_F(SubsetSelectionTest, AlphabeticalListsGetTheWholeSubsetAsEnteredOnesMayNot)
{
    const QStringList alpha = ReadReportConcepts(true);
    EXPECT_EQ(alpha, (QStringList{S("ALL"), S("ANT"), S("BEE"), S("BUS"), S("CAR"), S("VAN")}));
    EXPECT_EQ(SubsetSelection(alpha, 3), (QList<int>{3, 4, 5}));

    const QStringList entered = ReadReportConcepts(false);
    EXPECT_EQ(entered, (QStringList{S("VAN"), S("ANT"), S("CAR"), S("BEE"), S("BUS"), S("ALL")}));
    // The walk waits for BUS first; VAN and CAR come before it in the list and are missed.
    EXPECT_EQ(SubsetSelection(entered, 3), QList<int>{4});
    EXPECT_TRUE(SubsetSelection(entered, 9).isEmpty());
}

TEST_F(SubsetSelectionTest, TheListAndTheSubsetsComeInTheirOrder)
{
    EXPECT_EQ(ReadReportSubsets(), (QStringList{S("General"), S("Animals"), S("Vehicles")}));
    ReportList list;
    EXPECT_EQ(list.Open(S("Ontology")).size(), 6);
    EXPECT_EQ(list.Open(S("Name")).first(), S("ALL"));
    EXPECT_TRUE(list.Open(S("Other")).isEmpty());
}

} // namespace
