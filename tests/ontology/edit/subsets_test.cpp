#include "edit_fixture.h"
#include "ontology/edit/subsets.h"

using namespace lx;

namespace {

class SubsetsTest : public EditTest {
protected:
    QStringList subsetNames()
    {
        return column(QStringLiteral("SELECT * FROM Subsets ORDER BY Subset_ID"), u"Subset");
    }
    QStringList conceptsOf(int subset)
    {
        return column(QStringLiteral("SELECT * FROM CONCEPTS WHERE Subset_ID = ") +
                          QString::number(subset) + QStringLiteral(" ORDER BY Concept"),
                      u"Concept");
    }
};

// --- Adding -----------------------------------------------------------------------------------

TEST_F(SubsetsTest, AddChecksTheNameBeforeTheTable)
{
    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    EXPECT_FALSE(AddSubset(QString()));
    EXPECT_FALSE(AddSubset(QString(66, QLatin1Char('x'))));
    EXPECT_EQ(user.calls().at(0).text,
              QStringLiteral("Enter a name for the new subset in the box. Then press 'Add'"));
    EXPECT_EQ(user.calls().at(0).icon, msg::Information);
    EXPECT_EQ(user.calls().at(1).text, QStringLiteral("Subset name too long. Max: 65 chars."));
    EXPECT_EQ(user.calls().at(1).icon, msg::Exclamation);
    EXPECT_EQ(subsetNames(), QStringList{QStringLiteral("General")});
}

TEST_F(SubsetsTest, ANameOfExactly65CharactersIsAccepted)
{
    const QString name(65, QLatin1Char('x'));
    EXPECT_TRUE(AddSubset(name));
    EXPECT_EQ(subsetNames(), (QStringList{QStringLiteral("General"), name}));
}

TEST_F(SubsetsTest, ADuplicateNameIsRefused)
{
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(AddSubset(QStringLiteral("General")));
    EXPECT_EQ(user.calls().at(0).text, QStringLiteral("Subset exists already!"));
    EXPECT_EQ(user.calls().at(0).title, QStringLiteral("Error"));
}

TEST_F(SubsetsTest, TheLowestFreeIdFromTwoIsTaken)
{
    addSubset(3, QStringLiteral("Three"));
    EXPECT_TRUE(AddSubset(QStringLiteral("Two")));
    EXPECT_TRUE(AddSubset(QStringLiteral("Four")));
    EXPECT_EQ(subsetNames(), (QStringList{QStringLiteral("General"), QStringLiteral("Two"),
                                          QStringLiteral("Three"), QStringLiteral("Four")}));
}

TEST_F(SubsetsTest, After126AddedSubsetsTheLimitIsReached)
{
    for (int i = 2; i <= 127; ++i)
        ASSERT_TRUE(AddSubset(QStringLiteral("S") + QString::number(i)));
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(AddSubset(QStringLiteral("One too many")));
    EXPECT_EQ(user.calls().at(0).title, QStringLiteral("Limit reached"));
    EXPECT_EQ(user.calls().at(0).text,
              QStringLiteral("You can't define more than 127 subsets for one ontology!\n"
                             "Consider merging and removing existing subsets."));
    EXPECT_EQ(subsetNames().size(), 127);
}

// --- Activating and removing --------------------------------------------------------------

TEST_F(SubsetsTest, ActivatingSetsTheActiveSubset)
{
    addSubset(5, QStringLiteral("Birds"));
    EXPECT_TRUE(ActivateSubset(QStringLiteral("Birds")));
    EXPECT_EQ(Process().OntoMeta.ActiveSet, 5);

    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(ActivateSubset(QStringLiteral("Nowhere")));
    EXPECT_EQ(user.calls().at(0).text,
              QStringLiteral("Critical error. Please Report. Error Code LX005"));
    EXPECT_EQ(Process().OntoMeta.ActiveSet, 5);
}

TEST_F(SubsetsTest, RemovingTakesTheSubsetsConceptsAndWhatHangsOnThem)
{
    addSubset(2, QStringLiteral("Birds"));
    addConcept(QStringLiteral("ANIMAL"));
    addConcept(QStringLiteral("BIRD"), 2);
    addRow(QStringLiteral("Names"), {{u"Concept", QStringLiteral("BIRD")},
                                     {u"Lang_ID", QStringLiteral("en")},
                                     {u"Name", QStringLiteral("bird")}});
    addRow(QStringLiteral("ISA"),
           {{u"Concept", QStringLiteral("BIRD")}, {u"ISA", QStringLiteral("ANIMAL")}});
    user.answerMsgBox(msg::Yes);
    EXPECT_TRUE(RemoveSubset(QStringLiteral("Birds")));
    EXPECT_EQ(user.calls().at(0).text,
              QStringLiteral("Are you sure you want to remove subset \nBirds?\n"
                             "All concepts assigned to this subset will also be removed!"));
    EXPECT_EQ(subsetNames(), QStringList{QStringLiteral("General")});
    EXPECT_EQ(conceptsOf(1), QStringList{QStringLiteral("ANIMAL")});
    EXPECT_TRUE(conceptsOf(2).isEmpty());
    EXPECT_TRUE(column(QStringLiteral("SELECT * FROM Names"), u"Name").isEmpty());
    EXPECT_TRUE(column(QStringLiteral("SELECT * FROM ISA"), u"ISA").isEmpty());
}

TEST_F(SubsetsTest, OnlyNoKeepsTheSubset)
{
    addSubset(2, QStringLiteral("Birds"));
    user.answerMsgBox(msg::No).answerMsgBox(msg::Cancel);
    EXPECT_FALSE(RemoveSubset(QStringLiteral("Birds")));
    EXPECT_EQ(subsetNames().size(), 2);
    EXPECT_TRUE(RemoveSubset(QStringLiteral("Birds")));
    EXPECT_EQ(subsetNames().size(), 1);
}

TEST_F(SubsetsTest, ListedWithTheirCountsInIdOrder)
{
    addSubset(9, QStringLiteral("Apes"));
    addSubset(4, QStringLiteral("Zebras"));
    addConcept(QStringLiteral("Z1"), 4);
    addConcept(QStringLiteral("Z2"), 4);
    const QList<SubsetRow> rows = ReadSubsets();
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[1].Subset, QStringLiteral("Zebras"));
    EXPECT_EQ(rows[1].Count, 2);
    EXPECT_EQ(rows[2].Count, 0);
}

// --- Transfer ---------------------------------------------------------------------------------

TEST_F(SubsetsTest, TransferMovesTheTickedConceptsOnly)
{
    addSubset(2, QStringLiteral("Birds"));
    for (const char *id : {"CROW", "ANIMAL", "BIRD"})
        addConcept(QString::fromLatin1(id));
    SubsetTransfer transfer;
    EXPECT_EQ(transfer.OpenSource(1), (QStringList{QStringLiteral("ANIMAL"), QStringLiteral("BIRD"),
                                                   QStringLiteral("CROW")}));
    EXPECT_EQ(transfer.Transfer(
                  {QStringLiteral("BIRD"), QStringLiteral("CROW"), QStringLiteral("NOT-THERE")}, 2),
              2);
    transfer.Close();
    EXPECT_EQ(conceptsOf(1), QStringList{QStringLiteral("ANIMAL")});
    EXPECT_EQ(conceptsOf(2), (QStringList{QStringLiteral("BIRD"), QStringLiteral("CROW")}));
    EXPECT_TRUE(transfer.OpenSource(2).size() == 2 && transfer.HasRows());
    EXPECT_TRUE(transfer.OpenSource(7).isEmpty());
    EXPECT_FALSE(transfer.HasRows());
    EXPECT_EQ(TransferHeader(0, QStringLiteral("Birds")),
              QStringLiteral("0 Concepts in Birds subset"));
}

} // namespace
