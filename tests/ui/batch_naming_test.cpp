#include "names_options_fixture.h"
#include "ontology/edit/batch_naming.h"
#include "ontology/edit/names.h"
#include "ui/frm_batch_naming.h"

#include <QComboBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QListView>
#include <QProgressBar>
#include <QRadioButton>
#include <QStatusBar>

using namespace lx;
using namespace lx::test;
using namespace Qt::StringLiterals;

namespace {

// The CONCEPTS row of `identifier`, found by its index, for a test to change or delete.
store::Recordset ConceptRow(const QString &identifier)
{
    store::Recordset rs = Process().OntoDB.OpenRecordset(u"CONCEPTS"_s, store::dbOpenTable);
    rs.SetIndex(u"Concept"_s);
    rs.Seek(u"=", identifier);
    return rs;
}

// The batch dialog opened from the editor's menu over the sample: THING at the top, ANIMAL
// under it, BIRD under ANIMAL; EATS in a second subset "Verbs".
class BatchNamingTest : public NamesOptionsTest {
protected:
    void SetUp() override
    {
        openSample();
        store::Database &db = Process().OntoDB;
        AddRow(db, QStringLiteral("ISA"), {{u"Concept", u"ANIMAL"_s}, {u"ISA", u"THING"_s}});
        AddRow(db, QStringLiteral("ISA"), {{u"Concept", u"BIRD"_s}, {u"ISA", u"ANIMAL"_s}});
        AddRow(db, QStringLiteral("ISA"), {{u"Concept", u"EATS"_s}, {u"ISA", u"THING"_s}});
        AddRow(db, QStringLiteral("Subsets"), {{u"Subset_ID", 2}, {u"Subset", u"Verbs"_s}});
        store::Recordset eats = ConceptRow(u"EATS"_s);
        eats.Edit();
        eats.Collect(u"Subset_ID", 2);
        eats.Update();
        eats.Close();
        form.mnuToolsBatchNaming->trigger();
        dialog = ui::Forms().Find<ui::frmBatchNaming>();
        ASSERT_NE(dialog, nullptr);
        m_opening = asked().size();
    }

    // What the dialog asked the user, leaving out the opening of the ontology.
    QList<ScriptedInteraction::Call> asked() const { return user.calls().mid(m_opening); }

    QString status() const { return dialog->StatusPanel2->text(); }
    QStringList selected() const
    {
        QStringList concepts;
        for (int row : dialog->SelectedIndexes())
            concepts.append(dialog->ListedConcepts()[row]);
        return concepts;
    }
    void pickLanguage(const QString &language)
    {
        dialog->lvwLangs->setCurrentItem(row(dialog->lvwLangs, language));
    }
    void selectConcept(const QString &identifier)
    {
        dialog->SelectIndexes({int(dialog->ListedConcepts().indexOf(identifier))});
    }
    void selectAll()
    {
        dialog->optAll->setChecked(true);
        dialog->cmdSelect->click();
    }
    QStringList names(const QString &langId)
    {
        return column(QStringLiteral("SELECT * FROM Names WHERE Lang_ID = \"%1\" ORDER BY "
                                     "Concept, Name_ID")
                          .arg(langId),
                      u"Name");
    }
    ui::frmBatchNaming *dialog = nullptr;

private:
    qsizetype m_opening = 0;
};

// --- The dialog and its list ----------------------------------------------------------------

TEST_F(BatchNamingTest, OpensWithTheListInOrderEveryLanguageAndNoSelection)
{
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Batch Naming"));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->ListedConcepts(),
              (QStringList{u"ANIMAL"_s, u"BIRD"_s, u"EATS"_s, u"THING"_s}));
    EXPECT_TRUE(dialog->optAlpha->isChecked());
    EXPECT_EQ(status(), QStringLiteral("0 Concepts selected"));
    // Every language, shown in the editor or not.
    EXPECT_EQ(texts(dialog->lvwLangs), (QStringList{u"English"_s, u"French"_s, u"German"_s}));
    EXPECT_EQ(texts(dialog->lvwLangs, 1), (QStringList{u"en"_s, u"fr"_s, u"de"_s}));
    EXPECT_EQ(dialog->cbxSubset->count(), 2);
    // A second use of the menu brings the same window forward.
    form.mnuToolsBatchNaming->trigger();
    EXPECT_EQ(ui::Forms().WithCaptionLike(u"Batch Naming").size(), 1);
}

TEST_F(BatchNamingTest, SortsAsEnteredAndRefreshesBackToAlphabetical)
{
    dialog->optAsEntered->setChecked(true);
    EXPECT_EQ(dialog->ListedConcepts().size(), 4);
    selectAll();
    dialog->cmdRefresh->click();
    EXPECT_TRUE(dialog->optAlpha->isChecked());
    EXPECT_EQ(dialog->ListedConcepts(),
              (QStringList{u"ANIMAL"_s, u"BIRD"_s, u"EATS"_s, u"THING"_s}));
    EXPECT_TRUE(selected().isEmpty());
    // The subsets are added again, as each fill adds them.
    EXPECT_EQ(dialog->cbxSubset->count(), 4);
}

TEST_F(BatchNamingTest, AnOntologyWithoutConceptsSaysSoAsTheDialogOpens)
{
    dialog->cmdCancel->click();
    FlushDeletes();
    for (const QString &identifier : {u"EATS"_s, u"BIRD"_s, u"ANIMAL"_s, u"THING"_s})
        ConceptRow(identifier).Delete();
    user.answerMsgBox(msg::OK);
    form.mnuToolsBatchNaming->trigger();
    ASSERT_EQ(asked().size(), 1);
    EXPECT_EQ(asked()[0].text, QStringLiteral("The list of concepts is empty!"));
    dialog = ui::Forms().Find<ui::frmBatchNaming>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->ListedConcepts().isEmpty());
}

// --- Selecting ------------------------------------------------------------------------------

TEST_F(BatchNamingTest, AnExpressionSelectsWholeMatchesAndRefusesShortOrEmptyOnes)
{
    dialog->optRegExp->setChecked(true);
    EXPECT_TRUE(dialog->txtRegExp->isEnabled());
    EXPECT_FALSE(dialog->cbxSubset->isEnabled());

    user.answerMsgBox(msg::OK);
    dialog->txtRegExp->setText(u"B*"_s);
    dialog->cmdSelect->click();
    user.answerMsgBox(msg::OK);
    dialog->txtRegExp->setText(u"bir*"_s); // case counts
    dialog->cmdSelect->click();
    ASSERT_EQ(asked().size(), 2);
    EXPECT_EQ(asked()[0].text, QStringLiteral("Enter at least 3 characters!"));
    EXPECT_EQ(asked()[0].title, QStringLiteral("Error"));
    EXPECT_EQ(asked()[1].text, QStringLiteral("No concepts matched your criteria."));
    EXPECT_EQ(status(), QStringLiteral("0 Concepts selected"));

    dialog->txtRegExp->setText(u"[AB]?[!X]*"_s);
    dialog->cmdSelect->click();
    EXPECT_EQ(selected(), (QStringList{u"ANIMAL"_s, u"BIRD"_s}));
    EXPECT_EQ(status(), QStringLiteral("2 Concepts selected"));
}

TEST_F(BatchNamingTest, ASubsetSelectsItsConceptsByWalkingTheListInOrder)
{
    dialog->optSubset->setChecked(true);
    dialog->cbxSubset->setCurrentText(u"General"_s);
    dialog->cmdSelect->click();
    EXPECT_EQ(selected(), (QStringList{u"ANIMAL"_s, u"BIRD"_s, u"THING"_s}));
    EXPECT_EQ(status(), QStringLiteral("3 Concepts selected"));

    // The walk waits in the list for the subset's next concept in identifier order: a concept
    // of the subset standing before its turn is passed by.
    EXPECT_EQ(PickBySubset({u"THING"_s, u"ANIMAL"_s, u"BIRD"_s, u"EATS"_s}, 1), (QList<int>{1, 2}));
    EXPECT_EQ(PickBySubset({u"ANIMAL"_s, u"THING"_s, u"BIRD"_s}, 1), (QList<int>{0, 2}));
}

TEST_F(BatchNamingTest, ASubhierarchySelectsTheConceptAndItsDescendants)
{
    dialog->optHier->setChecked(true);
    user.answerMsgBox(msg::OK);
    dialog->cmdSelect->click(); // nothing selected
    selectConcept(u"BIRD"_s);
    user.answerMsgBox(msg::OK);
    dialog->cmdSelect->click();
    ASSERT_EQ(asked().size(), 2);
    EXPECT_EQ(asked()[0].text,
              QStringLiteral("For this option you must select ONE concept in the list."));
    EXPECT_EQ(asked()[0].title, QStringLiteral("Select error"));
    EXPECT_EQ(asked()[1].text, QStringLiteral("The concept you selected is a leaf"));

    dialog->cmdClear->click();
    selectConcept(u"ANIMAL"_s);
    dialog->cmdSelect->click();
    EXPECT_EQ(selected(), (QStringList{u"ANIMAL"_s, u"BIRD"_s}));
    EXPECT_EQ(status(), QStringLiteral("2 Concepts selected"));
}

TEST_F(BatchNamingTest, AClickAfterAnotherModeSwitchesToManualSelection)
{
    selectAll();
    EXPECT_EQ(status(), QStringLiteral("4 Concepts selected"));
    const QModelIndex bird = dialog->lstConcepts->model()->index(1, 0);
    dialog->lstConcepts->selectionModel()->select(bird, QItemSelectionModel::ClearAndSelect);
    dialog->lstConcepts_Click();
    EXPECT_TRUE(dialog->optSelect->isChecked());
    EXPECT_FALSE(dialog->cmdSelect->isEnabled());
    EXPECT_TRUE(selected().isEmpty());
    EXPECT_EQ(status(), QStringLiteral("0 Concepts selected"));
    // Now in manual mode, the next click keeps its line.
    dialog->lstConcepts->selectionModel()->select(bird, QItemSelectionModel::Select);
    dialog->lstConcepts_Click();
    EXPECT_EQ(selected(), QStringList{u"BIRD"_s});
    EXPECT_EQ(status(), QStringLiteral("1 Concepts selected"));
}

// --- Running --------------------------------------------------------------------------------

TEST_F(BatchNamingTest, NothingSelectedIsRefused)
{
    user.answerMsgBox(msg::OK);
    dialog->cmdOK->click();
    ASSERT_EQ(asked().size(), 1);
    EXPECT_EQ(asked()[0].text, QStringLiteral("No concepts have been selected!"));
    EXPECT_EQ(asked()[0].title, QStringLiteral("Error"));
    EXPECT_EQ(asked()[0].icon, msg::Information);
}

TEST_F(BatchNamingTest, AddingNamesEverySelectedConceptAndASecondRunDoublesThem)
{
    form.CurrentConcept = u"ANIMAL"_s;
    form.LoadNames();
    pickLanguage(u"German"_s);
    dialog->optConvert->setChecked(true);
    selectAll();
    dialog->cmdOK->click();
    EXPECT_EQ(names(u"de"_s), (QStringList{u"animal"_s, u"bird"_s, u"eats"_s, u"thing"_s}));
    // The editor shows the new name of the concept on screen.
    EXPECT_EQ(texts(form.lvwNames, 1), QStringList{u"animal"_s});
    // The selection stays for another run, which adds the same names again.
    EXPECT_EQ(status(), QStringLiteral("4 Concepts selected"));
    dialog->cmdOK->click();
    EXPECT_EQ(names(u"de"_s).size(), 8);
    EXPECT_TRUE(names(u"en"_s).isEmpty());
    EXPECT_FALSE(dialog->ProgressBar1->isVisible());
}

TEST_F(BatchNamingTest, AddingAsIsGivesTheIdentifiersAndSkipsConceptsGoneMeanwhile)
{
    pickLanguage(u"French"_s); // not shown in the editor, still a language to name in
    dialog->optAsIs->setChecked(true);
    selectAll();
    ConceptRow(u"EATS"_s).Delete();
    dialog->cmdOK->click();
    EXPECT_EQ(names(u"fr"_s), (QStringList{u"ANIMAL"_s, u"BIRD"_s, u"THING"_s}));
}

TEST_F(BatchNamingTest, RemovingTakesEveryNameOfTheLanguageOfTheSelectedConcepts)
{
    AddName(u"BIRD"_s, u"de"_s, u"Vogel"_s); // typed by hand
    AddName(u"BIRD"_s, u"de"_s, u"Piepmatz"_s);
    AddName(u"BIRD"_s, u"en"_s, u"Bird"_s);
    AddName(u"ANIMAL"_s, u"de"_s, u"Tier"_s);
    AddName(u"THING"_s, u"de"_s, u"Ding"_s);
    EXPECT_EQ(RemoveBatchNames({u"BIRD"_s, u"THING"_s}, u"de"_s), 3);
    EXPECT_EQ(names(u"de"_s), QStringList{u"Tier"_s});
    EXPECT_EQ(names(u"en"_s), QStringList{u"Bird"_s});

    dialog->optRemove->setChecked(true);
    pickLanguage(u"German"_s);
    selectConcept(u"ANIMAL"_s);
    dialog->cmdOK->click();
    EXPECT_TRUE(names(u"de"_s).isEmpty());
    EXPECT_EQ(names(u"en"_s), QStringList{u"Bird"_s});
}

// A write the store refuses ends the run with its message; the bar goes and the pointer comes
// back, and the dialog stays usable.
TEST_F(BatchNamingTest, AFailedRunLeavesTheDialogUsable)
{
    pickLanguage(u"French"_s);
    store::Recordset french = Process().OntoDB.OpenRecordset(
        u"SELECT * FROM Languages WHERE Lang_ID = \"fr\""_s, store::dbOpenDynaset);
    french.Delete(); // gone while the dialog still lists it
    french.Close();
    selectAll();
    user.answerMsgBox(msg::OK);
    dialog->cmdOK->click();
    ASSERT_EQ(asked().size(), 1);
    EXPECT_EQ(asked()[0].icon, msg::Critical);
    EXPECT_TRUE(names(u"fr"_s).isEmpty());
    EXPECT_FALSE(dialog->ProgressBar1->isVisible());
    EXPECT_EQ(user.MousePointer(), pointer::Default);

    pickLanguage(u"German"_s);
    dialog->cmdOK->click();
    EXPECT_EQ(names(u"de"_s).size(), 4);
}

// The form keeps its size from one opening to the next.
TEST_F(BatchNamingTest, RemembersItsSize)
{
    const QSize wanted = dialog->minimumSizeHint() + QSize(40, 20);
    dialog->resize(wanted);
    dialog->cmdCancel->click();
    FlushDeletes();
    form.mnuToolsBatchNaming->trigger();
    auto *again = ui::Forms().Find<ui::frmBatchNaming>();
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->size(), wanted);
}

} // namespace
