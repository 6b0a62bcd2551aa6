#include "names_options_fixture.h"
#include "ui/frm_names.h"

#include <QMenu>
#include <QPlainTextEdit>

using namespace lx;
using namespace lx::test;

namespace {

class NameCommandsTest : public NamesOptionsTest {
protected:
    void SetUp() override
    {
        openSample();
        form.CurrentConcept = QStringLiteral("ANIMAL");
        form.LoadNames();
    }

    QAction *item(const char *name) const
    {
        return form.mnuName->findChild<QAction *>(QLatin1String(name));
    }

    // The user names the concept in the dialog, in `language` if given, and presses OK.
    static ScriptedInteraction::ModalScript nameIt(const QString &name,
                                                   const QString &language = {})
    {
        return [name, language](QWidget *dialog) {
            auto *names = qobject_cast<ui::frmNames *>(dialog);
            ASSERT_NE(names, nullptr);
            if (!language.isEmpty())
                names->lvwLangs_ItemClick(row(names->lvwLangs, language));
            names->txtName->setText(name);
            names->cmdOK->click();
        };
    }

    void addName(const QString &name, const QString &language = {})
    {
        user.onModal(nameIt(name, language));
        item("mnuNameAdd")->trigger();
    }

    QStringList storedNames()
    {
        return column(QStringLiteral("SELECT * FROM Names ORDER BY Name_ID"), u"Name");
    }
    QStringList storedLangs()
    {
        return column(QStringLiteral("SELECT * FROM Names ORDER BY Name_ID"), u"Lang_ID");
    }
    void selectName(int index)
    {
        form.lvwNames->setCurrentItem(form.lvwNames->topLevelItem(index));
    }
};

// --- Adding ---------------------------------------------------------------------------------

TEST_F(NameCommandsTest, AddGoesToTheSelectedLanguageNotTheTickedOne)
{
    Process().OntoMeta.DefLang = QStringLiteral("de");
    user.onModal([](QWidget *dialog) {
        auto *names = qobject_cast<ui::frmNames *>(dialog);
        ASSERT_NE(names, nullptr);
        EXPECT_EQ(names->windowTitle(), QStringLiteral("Naming - ANIMAL"));
        EXPECT_EQ(names->txtConcept->text(), QStringLiteral("ANIMAL"));
        EXPECT_FALSE(names->txtConcept->isEnabled()) << "the identifier can't be changed here";
        EXPECT_EQ(ticked(names->lvwLangs), QStringList{QStringLiteral("German")});
        names->txtName->setText(QStringLiteral("the \"wild\" one"));
        names->cmdOK->click();
    });
    item("mnuNameAdd")->trigger();
    EXPECT_EQ(storedNames(), QStringList{QStringLiteral("the 'wild' one")});
    EXPECT_EQ(storedLangs(), QStringList{QStringLiteral("en")});
    EXPECT_EQ(texts(form.lvwNames), QStringList{QStringLiteral("English")});
    EXPECT_EQ(texts(form.lvwNames, 1), QStringList{QStringLiteral("the 'wild' one")});
}

TEST_F(NameCommandsTest, AClickedLanguageTakesTheName)
{
    addName(QStringLiteral("Tier"), QStringLiteral("German"));
    EXPECT_EQ(storedLangs(), QStringList{QStringLiteral("de")});
}

TEST_F(NameCommandsTest, CancelAddsNothing)
{
    user.onModal([](QWidget *dialog) {
        auto *names = qobject_cast<ui::frmNames *>(dialog);
        names->txtName->setText(QStringLiteral("beast"));
        names->cmdCancel->click();
    });
    item("mnuNameAdd")->trigger();
    EXPECT_TRUE(storedNames().isEmpty());
    EXPECT_EQ(ui::Forms().Find<ui::frmNames>(), nullptr) << "the dialog is unloaded";
}

TEST_F(NameCommandsTest, NamesAreListedByLanguageThenInOrderOfEntry)
{
    addName(QStringLiteral("Tier"), QStringLiteral("German"));
    addName(QStringLiteral("beast"));
    addName(QStringLiteral("animal"));
    EXPECT_EQ(texts(form.lvwNames, 1), (QStringList{QStringLiteral("Tier"), QStringLiteral("beast"),
                                                    QStringLiteral("animal")}));
}

// --- Editing and deleting ---------------------------------------------------------------------

TEST_F(NameCommandsTest, EditOpensOnTheRowsLanguageAndName)
{
    addName(QStringLiteral("beast"));
    addName(QStringLiteral("Tier"), QStringLiteral("German"));
    selectName(0); // German sorts first
    user.onModal([](QWidget *dialog) {
        auto *names = qobject_cast<ui::frmNames *>(dialog);
        EXPECT_EQ(names->windowTitle(), QStringLiteral("Naming & Defining"));
        EXPECT_EQ(selected(names->lvwLangs), QStringLiteral("German"));
        EXPECT_EQ(names->txtName->text(), QStringLiteral("Tier"));
        names->txtName->setText(QStringLiteral("Lebewesen"));
        names->cmdOK->click();
    });
    item("mnuNameEdit")->trigger();
    EXPECT_EQ(storedNames(), (QStringList{QStringLiteral("beast"), QStringLiteral("Lebewesen")}));
    EXPECT_EQ(texts(form.lvwNames, 1),
              (QStringList{QStringLiteral("Lebewesen"), QStringLiteral("beast")}));
}

TEST_F(NameCommandsTest, EditCanMoveANameToAnotherLanguage)
{
    addName(QStringLiteral("beast"));
    selectName(0);
    user.onModal(nameIt(QStringLiteral("Biest"), QStringLiteral("German")));
    item("mnuNameEdit")->trigger();
    EXPECT_EQ(storedLangs(), QStringList{QStringLiteral("de")});
}

TEST_F(NameCommandsTest, DeleteAsksNothingAndTakesEvenTheLastName)
{
    addName(QStringLiteral("beast"));
    selectName(0);
    item("mnuNameDelete")->trigger();
    EXPECT_TRUE(storedNames().isEmpty());
    EXPECT_EQ(form.lvwNames->topLevelItemCount(), 0);
}

// --- Popup, sorting and the first name --------------------------------------------------------

TEST_F(NameCommandsTest, ThePopupOffersEditAndDeleteOnlyOverNames)
{
    form.lvwNames_MouseUp();
    form.mnuName->hide();
    EXPECT_FALSE(item("mnuNameEdit")->isEnabled());
    EXPECT_FALSE(item("mnuNameDelete")->isEnabled());
    EXPECT_TRUE(item("mnuNameAdd")->isEnabled());

    addName(QStringLiteral("beast"));
    form.CurrentConcept.clear();
    form.lvwNames_MouseUp();
    form.mnuName->hide();
    EXPECT_TRUE(item("mnuNameEdit")->isEnabled());
    EXPECT_EQ(form.CurrentConcept, Process().TopConcept);
}

TEST_F(NameCommandsTest, AHeadClickSortsTheNames)
{
    addName(QStringLiteral("beast"));
    addName(QStringLiteral("Tier"), QStringLiteral("German"));
    form.lvwNames_ColumnClick(1);
    EXPECT_EQ(texts(form.lvwNames, 1),
              (QStringList{QStringLiteral("beast"), QStringLiteral("Tier")}));
}

TEST_F(NameCommandsTest, TheFirstNameOfANewConceptIsShownAtOnce)
{
    Process().OntoMeta.AutoName = 2;
    form.CurrentConcept = QStringLiteral("BIRD");
    form.AddDefaultName();
    EXPECT_EQ(texts(form.lvwNames, 1), QStringList{QStringLiteral("bird")});
    EXPECT_EQ(texts(form.lvwNames), QStringList{QStringLiteral("English")});
}

} // namespace
