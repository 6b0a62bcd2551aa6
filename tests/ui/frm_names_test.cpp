#include "names_options_fixture.h"
#include "ui/frm_names.h"

#include <QPlainTextEdit>

using namespace lx;
using namespace lx::test;

namespace {

class FrmNamesTest : public NamesOptionsTest {
protected:
    ui::frmNames &load() { return ui::Forms().Load<ui::frmNames>(); }
};

// --- Loading --------------------------------------------------------------------------------

TEST_F(FrmNamesTest, EnglishIsSelectedAndTheDefaultLanguageTicked)
{
    openSample();
    Process().OntoMeta.DefLang = QStringLiteral("de");
    ui::frmNames &dialog = load();
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Naming & Defining"));
    EXPECT_EQ(texts(dialog.lvwLangs),
              (QStringList{QStringLiteral("English"), QStringLiteral("German")}));
    EXPECT_EQ(texts(dialog.lvwLangs, 1), (QStringList{QStringLiteral("en"), QStringLiteral("de")}));
    EXPECT_EQ(ticked(dialog.lvwLangs), QStringList{QStringLiteral("German")});
    EXPECT_EQ(selected(dialog.lvwLangs), QStringLiteral("English"));
    EXPECT_EQ(dialog.SelectedLangId(), QStringLiteral("en"));
}

TEST_F(FrmNamesTest, WithoutEnglishTheFirstLanguageIsSelected)
{
    openSample({{QStringLiteral("es"), QStringLiteral("Spanish"), true},
                {QStringLiteral("en"), QStringLiteral("English"), false},
                {QStringLiteral("it"), QStringLiteral("Italian"), true}});
    ui::frmNames &dialog = load();
    ASSERT_EQ(dialog.lvwLangs->topLevelItemCount(), 2);
    EXPECT_EQ(selected(dialog.lvwLangs), texts(dialog.lvwLangs).first());
}

// --- Modes ----------------------------------------------------------------------------------

struct ModeCase {
    const char *mode;
    bool identifier, name, def, langs;
};

class FrmNamesModeTest : public FrmNamesTest, public ::testing::WithParamInterface<ModeCase> {};

TEST_P(FrmNamesModeTest, EnablesOnlyTheBoxesOfTheMode)
{
    openSample();
    ui::frmNames &dialog = load();
    dialog.lblStart->setCaption(QString::fromLatin1(GetParam().mode));
    EXPECT_EQ(dialog.txtConcept->isEnabled(), GetParam().identifier);
    EXPECT_EQ(dialog.txtName->isEnabled(), GetParam().name);
    EXPECT_EQ(dialog.txtDef->isEnabled(), GetParam().def);
    EXPECT_EQ(dialog.lvwLangs->isEnabled(), GetParam().langs);
    EXPECT_EQ(dialog.lvwLangs->toolTip(),
              QStringLiteral("Use Lexarbor's options s to Add/Remove languages"));
}

INSTANTIATE_TEST_SUITE_P(EachMode, FrmNamesModeTest,
                         ::testing::Values(ModeCase{"Name", false, true, false, true},
                                           ModeCase{"Rename", true, false, false, false},
                                           ModeCase{"Definition", false, false, true, false}));

TEST_F(FrmNamesTest, CancelChangesNothingAndSaysCancel)
{
    openSample();
    ui::frmNames &dialog = load();
    dialog.lblStart->setCaption(QStringLiteral("Definition"));
    dialog.txtDef->setPlainText(QString());
    dialog.cmdCancel->click();
    EXPECT_EQ(dialog.lblStart->caption(), QStringLiteral("Cancel"));
    EXPECT_TRUE(dialog.txtDef->toPlainText().isEmpty());
}

// --- The language list --------------------------------------------------------------------

TEST_F(FrmNamesTest, AClickTicksOneLanguageOnly)
{
    openSample();
    ui::frmNames &dialog = load();
    dialog.lvwLangs_ItemClick(row(dialog.lvwLangs, QStringLiteral("German")));
    EXPECT_EQ(ticked(dialog.lvwLangs), QStringList{QStringLiteral("German")});
    EXPECT_EQ(dialog.SelectedLangId(), QStringLiteral("de"));
}

TEST_F(FrmNamesTest, AHeadClickSortsAndKeepsTheSelection)
{
    openSample();
    ui::frmNames &dialog = load();
    dialog.lvwLangs_ColumnClick(1);
    EXPECT_EQ(texts(dialog.lvwLangs, 1), (QStringList{QStringLiteral("de"), QStringLiteral("en")}));
    EXPECT_EQ(selected(dialog.lvwLangs), QStringLiteral("English"));
}

} // namespace
