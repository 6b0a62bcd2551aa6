#include "names_options_fixture.h"
#include "termbase/store/schema.h"
#include "ui/frm_onto_options.h"
#include "ui/frm_transfer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStatusBar>

using namespace lx;
using namespace lx::test;

namespace {

using Options = ui::frmOntoOptions;

class OntoOptionsTest : public NamesOptionsTest {
protected:
    void SetUp() override { openSample(); }

    // The user works in the options dialog, then leaves it as the script says.
    void options(std::function<void(Options &)> script)
    {
        user.onModal([script](QWidget *dialog) {
            auto *options = qobject_cast<Options *>(dialog);
            ASSERT_NE(options, nullptr);
            script(*options);
        });
        form.mnuToolsOptions->trigger();
    }

    QStringList subsets() { return column(QStringLiteral("SELECT * FROM Subsets"), u"Subset"); }
};

// --- What Cancel undoes -----------------------------------------------------------------------

TEST_F(OntoOptionsTest, CancelUndoesOnlyTheParentsLimitAndTheListMode)
{
    options([](Options &o) {
        EXPECT_EQ(o.windowTitle(), QStringLiteral("Options"));
        EXPECT_EQ(o.txtNoParents->text(), QStringLiteral("2"));
        EXPECT_TRUE(o.optEvery->isChecked());
        EXPECT_TRUE(o.chkNameRestrict->isChecked());
        EXPECT_EQ(o.cbxLangs->currentText(), QStringLiteral("English"));
        o.txtNoParents->setText(QStringLiteral("4"));
        o.optTop->setChecked(true);
        o.cbxLangs->setCurrentText(QStringLiteral("German"));
        o.chkNameRestrict->setChecked(false);
        row(o.lvwLangs, QStringLiteral("French"))->setCheckState(0, Qt::Checked);
        o.cmdCancel->click();
    });
    const OntoMetaData &meta = Process().OntoMeta;
    EXPECT_EQ(meta.MaxParents, 2);
    EXPECT_EQ(meta.ListTop, 0);
    EXPECT_EQ(meta.DefLang, QStringLiteral("de"));
    EXPECT_FALSE(meta.Naming);
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM Languages WHERE Show = -1 ORDER BY Lang_ID"),
                     u"Lang_ID"),
              (QStringList{QStringLiteral("de"), QStringLiteral("en"), QStringLiteral("fr")}));
    EXPECT_EQ(ui::Forms().Find<Options>(), nullptr);
}

TEST_F(OntoOptionsTest, AnAutomaticNamingChoiceStandsAfterCancel)
{
    options([this](Options &o) {
        EXPECT_FALSE(o.chkAddNames->isChecked());
        EXPECT_FALSE(o.optAsIs->isEnabled());
        user.answerMsgBox(msg::OK);
        o.chkAddNames->click();
        EXPECT_TRUE(o.optAsIs->isEnabled());
        o.optAsIs->click();
        o.cmdCancel->click();
    });
    EXPECT_EQ(Process().OntoMeta.AutoName, 1);
    const auto &help = user.calls().back();
    EXPECT_EQ(help.icon, msg::Information);
    EXPECT_TRUE(help.text.startsWith(
        QStringLiteral("This option adds names to concepts as they are entered.\n")));
    EXPECT_TRUE(help.text.endsWith(QStringLiteral(
        "lower case and hyphens to blanks.\nThese options also apply to batch conversions.")));
}

TEST_F(OntoOptionsTest, UntickingAutomaticNamingWritesNothing)
{
    Process().OntoMeta.AutoName = 2;
    options([](Options &o) {
        EXPECT_TRUE(o.optConvert->isChecked());
        o.chkAddNames->click();
        EXPECT_FALSE(o.optConvert->isEnabled());
        o.cmdOK->click();
    });
    EXPECT_EQ(Process().OntoMeta.AutoName, 2);
}

// --- OK ---------------------------------------------------------------------------------------

TEST_F(OntoOptionsTest, OkTakesTheListModeAndRebuildsTheList)
{
    options([](Options &o) {
        o.optTop->setChecked(true);
        o.cmdOK->click();
    });
    EXPECT_EQ(Process().OntoMeta.ListTop, 2);
    EXPECT_EQ(form.ListedConcepts, 3) << "the relation is left out";
    EXPECT_EQ(form.StatusPanel(3)->text(), QStringLiteral("3 listed"));
}

TEST_F(OntoOptionsTest, OkMakesTheDefaultLanguageAWorkingOne)
{
    options([](Options &o) {
        o.cbxLangs->setCurrentText(QStringLiteral("French"));
        o.cmdOK->click();
    });
    EXPECT_EQ(Process().OntoMeta.DefLang, QStringLiteral("fr"));
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM Languages WHERE Show = -1 ORDER BY Lang_ID"),
                     u"Lang_ID")
                  .size(),
              3);
}

// --- The parents limit ----------------------------------------------------------------------

TEST_F(OntoOptionsTest, ALimitAboveFourIsStoredButNotShownAgain)
{
    options([](Options &o) {
        o.txtNoParents->setText(QStringLiteral("5"));
        o.cmdOK->click();
    });
    EXPECT_EQ(Process().OntoMeta.MaxParents, 5);
    options([](Options &o) {
        EXPECT_NE(o.txtNoParents->text(), QStringLiteral("5"));
        o.cmdCancel->click();
    });
    EXPECT_EQ(Process().OntoMeta.MaxParents, 5);
}

TEST_F(OntoOptionsTest, MoreThanNineParentsIsRefused)
{
    options([this](Options &o) {
        user.answerMsgBox(msg::OK);
        o.txtNoParents->setText(QStringLiteral("10"));
        EXPECT_EQ(user.calls().back().text, QStringLiteral("No way!"));
        EXPECT_EQ(o.txtNoParents->text(), QStringLiteral("9"));
        o.cmdOK->click();
    });
    EXPECT_EQ(Process().OntoMeta.MaxParents, 9);
}

TEST_F(OntoOptionsTest, ThreeParentsByTheArrowsBringsAdvice)
{
    options([this](Options &o) {
        user.answerMsgBox(msg::OK);
        o.UpDown1->setValue(3);
        EXPECT_EQ(o.txtNoParents->text(), QStringLiteral("3"));
        EXPECT_EQ(user.calls().back().text,
                  QStringLiteral("It is highly advisable to restrict the maximum number of "
                                 "parents of each concept to 2!"));
        EXPECT_EQ(user.calls().back().icon, msg::Exclamation);
        o.cmdCancel->click();
    });
}

// --- Subsets ----------------------------------------------------------------------------------

TEST_F(OntoOptionsTest, AnAddedSubsetIsListedWithItsCount)
{
    options([](Options &o) {
        EXPECT_EQ(o.lblActiveSubset->text(), QStringLiteral("General"));
        o.txtNewSubset->setText(QStringLiteral("Birds"));
        o.cmdAdd->click();
        EXPECT_EQ(texts(o.ListView1),
                  (QStringList{QStringLiteral("General"), QStringLiteral("Birds")}));
        EXPECT_EQ(texts(o.ListView1, 1), (QStringList{QStringLiteral("4"), QStringLiteral("0")}));
        o.cmdOK->click();
    });
    EXPECT_EQ(subsets(), (QStringList{QStringLiteral("General"), QStringLiteral("Birds")}));
}

TEST_F(OntoOptionsTest, RemovingASubsetActivatesTheRowSelectedAfter)
{
    options([this](Options &o) {
        for (const char *name : {"Birds", "Fish"}) {
            o.txtNewSubset->setText(QString::fromLatin1(name));
            o.cmdAdd->click();
        }
        o.ListView1->setCurrentItem(row(o.ListView1, QStringLiteral("Fish")));
        o.cmdActivate->click();
        EXPECT_EQ(o.lblActiveSubset->text(), QStringLiteral("Fish"));
        EXPECT_EQ(Process().OntoMeta.ActiveSet, 3);

        o.ListView1->setCurrentItem(row(o.ListView1, QStringLiteral("Birds")));
        user.answerMsgBox(msg::Yes);
        o.cmdRemove->click();
        EXPECT_EQ(texts(o.ListView1),
                  (QStringList{QStringLiteral("General"), QStringLiteral("Fish")}));
        EXPECT_EQ(o.lblActiveSubset->text(), QStringLiteral("General"));
        o.cmdOK->click();
    });
    EXPECT_EQ(Process().OntoMeta.ActiveSet, 1);
}

TEST_F(OntoOptionsTest, RemovingASubsetTakesItsConceptsOutOfTheList)
{
    options([this](Options &o) {
        // The activation after the refill finds no row left.
        user.answerMsgBox(msg::Yes).answerMsgBox(msg::OK);
        o.cmdRemove->click();
        EXPECT_EQ(o.ListView1->topLevelItemCount(), 0);
        EXPECT_EQ(user.calls().back().text,
                  QStringLiteral("Select a concept from the list below first."));
        EXPECT_EQ(user.calls().back().icon, msg::Information);
        o.cmdOK->click();
    });
    EXPECT_TRUE(column(QStringLiteral("SELECT * FROM CONCEPTS"), u"Concept").isEmpty());
    EXPECT_EQ(form.ListedConcepts, 0);
}

// --- Transfer ---------------------------------------------------------------------------------

TEST_F(OntoOptionsTest, TransferMovesTheTickedConceptsAndCountsThem)
{
    options([this](Options &o) {
        o.txtNewSubset->setText(QStringLiteral("Birds"));
        o.cmdAdd->click();
        user.onModal([this](QWidget *dialog) {
            auto *transfer = qobject_cast<ui::frmTransfer *>(dialog);
            ASSERT_NE(transfer, nullptr);
            EXPECT_EQ(transfer->windowTitle(), QStringLiteral("Subset Transfer"));
            EXPECT_EQ(transfer->ListView1->headerItem()->text(0),
                      QStringLiteral("4 Concepts in General subset"));
            transfer->cbxTo->setCurrentText(QStringLiteral("Birds"));
            row(transfer->ListView1, QStringLiteral("BIRD"))->setCheckState(0, Qt::Checked);
            user.answerMsgBox(msg::Yes).answerMsgBox(msg::OK);
            transfer->cmdTranfer->click();
            EXPECT_EQ(user.calls().back().text, QStringLiteral("1 Concepts transferred."));
            EXPECT_EQ(transfer->ListView1->headerItem()->text(0),
                      QStringLiteral("3 Concepts in General subset"));
            transfer->cmdCancel->click();
        });
        o.cmdTransfer->click();
        EXPECT_EQ(texts(o.ListView1, 1), (QStringList{QStringLiteral("4"), QStringLiteral("0")}))
            << "the counts aren't refreshed";
        o.cmdOK->click();
    });
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM CONCEPTS WHERE Subset_ID = 2"), u"Concept"),
              QStringList{QStringLiteral("BIRD")});
}

TEST_F(OntoOptionsTest, TransferRefusesOneSubsetAndAnEmptySource)
{
    options([this](Options &o) {
        o.txtNewSubset->setText(QStringLiteral("Birds"));
        o.cmdAdd->click();
        user.onModal([this](QWidget *dialog) {
            auto *transfer = qobject_cast<ui::frmTransfer *>(dialog);
            user.answerMsgBox(msg::OK);
            transfer->cmdTranfer->click();
            EXPECT_EQ(user.calls().back().text,
                      QStringLiteral("Source subset can't be the same as target subset."));
            EXPECT_EQ(user.calls().back().icon, msg::Critical);

            transfer->cbxFrom->setCurrentText(QStringLiteral("Birds"));
            EXPECT_EQ(transfer->ListView1->headerItem()->text(0),
                      QStringLiteral("0 Concepts in Birds subset"));
            user.answerMsgBox(msg::Yes).answerMsgBox(msg::OK);
            transfer->cmdTranfer->click();
            EXPECT_EQ(user.calls().back().text, QStringLiteral("Nothing to transfer!"));
            transfer->cmdCancel->click();
        });
        o.cmdTransfer->click();
        o.cmdOK->click();
    });
}

} // namespace

namespace {

// --- Linked databases -------------------------------------------------------------------------

class LinkedDatabasesTest : public OntoOptionsTest {
protected:
    // A termbase below the program's TermBases folder holding `concepts`.
    static QString writeTermbase(const QString &title, const QStringList &concepts)
    {
        const QString path = TermBasesFolder() + title + QStringLiteral(".ltb");
        store::Database tb =
            store::DBEngine::Workspaces(0).CreateDatabase(path, store::dbLangGeneral);
        BuildTermbaseTables(tb);
        AddRow(tb, QStringLiteral("MetaData"), {{u"Name", title}});
        for (const QString &identifier : concepts)
            AddRow(tb, QStringLiteral("CONCEPTS"), {{u"Concept", identifier}});
        tb.Close();
        return path;
    }
    QStringList links() { return column(QStringLiteral("SELECT * FROM TermBases"), u"DBName"); }
};

TEST_F(LinkedDatabasesTest, AssignAddsTheMissingConceptsListsTheLinkAndClearsTheBars)
{
    const QString path =
        writeTermbase(QStringLiteral("zoo"), {QStringLiteral("BIRD"), QStringLiteral("DODO")});
    options([&](Options &o) {
        EXPECT_EQ(o.cmdLink->toolTip(),
                  QStringLiteral("Assign existing database to this ontology"));
        EXPECT_EQ(o.ListView2->topLevelItemCount(), 0);
        user.answerOpenFile(path).answerMsgBox(msg::Yes).answerMsgBox(msg::OK);
        o.cmdLink->click();
        const auto &calls = user.calls();
        ASSERT_GE(calls.size(), 3);
        EXPECT_EQ(calls[calls.size() - 3].request.filter,
                  QStringLiteral("Lexarbor TermBase Files (*.ltb)|*.ltb|"));
        EXPECT_EQ(calls[calls.size() - 3].request.initialDir, TermBasesFolder());
        EXPECT_TRUE(calls[calls.size() - 2].text.startsWith(QStringLiteral("1 concepts used in ")));
        EXPECT_TRUE(calls.back().text.startsWith(QStringLiteral("3 concepts were added to ")));
        EXPECT_EQ(texts(o.ListView2), QStringList{path});
        EXPECT_TRUE(o.StatusBar1->currentMessage().isEmpty());
        EXPECT_EQ(o.ProgressBar1->value(), 0);
        o.cmdOK->click();
    });
    EXPECT_EQ(links(), QStringList{path});
}

TEST_F(LinkedDatabasesTest, RefusalAndCancelLinkNothing)
{
    const QString path = writeTermbase(QStringLiteral("zoo"), {QStringLiteral("DODO")});
    options([&](Options &o) {
        user.answerOpenFile(std::nullopt);
        o.cmdLink->click();
        user.answerOpenFile(path).answerMsgBox(msg::No);
        o.cmdLink->click();
        EXPECT_EQ(o.ListView2->topLevelItemCount(), 0);
        o.cmdOK->click();
    });
    EXPECT_TRUE(links().isEmpty());
}

TEST_F(LinkedDatabasesTest, AnOpenTermbaseStopsTheAssignment)
{
    Process().TermPath = QStringLiteral("/somewhere/open.ltb");
    options([&](Options &o) {
        user.answerMsgBox(msg::OK);
        o.cmdLink->click();
        EXPECT_EQ(user.calls().back().text,
                  QStringLiteral("A termbase is open. Close the TermBase Editor and try again."));
        EXPECT_EQ(user.calls().back().icon, msg::Exclamation);
        o.cmdOK->click();
    });
    Process().TermPath.clear();
}

TEST_F(LinkedDatabasesTest, ReleaseNeedsASelectionAndLeavesTheFileAlone)
{
    const QString path = writeTermbase(QStringLiteral("zoo"), {});
    options([&](Options &o) {
        user.answerOpenFile(path).answerMsgBox(msg::OK);
        o.cmdLink->click();
        ASSERT_EQ(texts(o.ListView2), QStringList{path});

        user.answerMsgBox(msg::OK);
        o.cmdRelease->click();
        EXPECT_EQ(user.calls().back().text, QStringLiteral("Select a database from list first."));
        EXPECT_EQ(user.calls().back().icon, msg::Information);
        EXPECT_EQ(texts(o.ListView2), QStringList{path});

        o.ListView2->setCurrentItem(o.ListView2->topLevelItem(0));
        o.cmdRelease->click();
        EXPECT_EQ(o.ListView2->topLevelItemCount(), 0);
        o.cmdOK->click();
    });
    EXPECT_TRUE(links().isEmpty());
    EXPECT_EQ(MetaDataField(path, u"Ontology").toString(), Process().OntoPath);
}

} // namespace
