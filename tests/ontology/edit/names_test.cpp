#include "edit_fixture.h"
#include "ontology/edit/names.h"
#include "ontology/store/lookups.h"

using namespace lx;

namespace {

class NamesTest : public EditTest {
protected:
    void SetUp() override
    {
        EditTest::SetUp();
        addConcept(QStringLiteral("BIG-HOUSE"));
    }
    QStringList names()
    {
        return column(QStringLiteral("SELECT * FROM Names ORDER BY Lang_ID, Name_ID"), u"Name");
    }
    QStringList langs()
    {
        return column(QStringLiteral("SELECT * FROM Names ORDER BY Lang_ID, Name_ID"), u"Lang_ID");
    }
    qint32 firstNameId()
    {
        return column(QStringLiteral("SELECT * FROM Names ORDER BY Name_ID"), u"Name_ID")
            .first()
            .toInt();
    }
};

// --- The first name of a new concept --------------------------------------------------------

struct AutoNameCase {
    quint8 autoName;
    const char *expected;
};

class AddDefaultNameTest : public NamesTest, public ::testing::WithParamInterface<AutoNameCase> {};

TEST_P(AddDefaultNameTest, NamesTheConceptInTheDefaultLanguage)
{
    Process().OntoMeta.AutoName = GetParam().autoName;
    Process().OntoMeta.DefLang = QStringLiteral("de");
    AddDefaultName(QStringLiteral("BIG-HOUSE"));
    EXPECT_EQ(names(), QStringList{QString::fromUtf8(GetParam().expected)});
    EXPECT_EQ(langs(), QStringList{QStringLiteral("de")});
}

// 0 ("automatic naming" unticked) doesn't turn the name off: it names as 2 does.
INSTANTIATE_TEST_SUITE_P(EachAutoName, AddDefaultNameTest,
                         ::testing::Values(AutoNameCase{0, "big house"},
                                           AutoNameCase{1, "BIG-HOUSE"},
                                           AutoNameCase{2, "big house"}));

// --- The dialog's OK by mode ------------------------------------------------------------------

TEST_F(NamesTest, NameModeTurnsDoubleQuotesIntoApostrophes)
{
    NamesTexts texts{QStringLiteral("X\"Y"), QStringLiteral("the \"big\" house"), QString()};
    EXPECT_TRUE(AcceptNamesTexts(QStringLiteral("Name"), texts));
    EXPECT_EQ(texts.Name, QStringLiteral("the 'big' house"));
    EXPECT_EQ(texts.Concept, QStringLiteral("X\"Y")) << "only the mode's own box is cleaned";
}

TEST_F(NamesTest, NameModeRefusesAnEmptyName)
{
    user.answerMsgBox(msg::OK);
    NamesTexts texts;
    EXPECT_FALSE(AcceptNamesTexts(QStringLiteral("Name"), texts));
    EXPECT_EQ(user.calls().at(0).text, QStringLiteral("Concept name cannot be the empty string!"));
}

TEST_F(NamesTest, RenameModeNormalizesUnderTheNamingRuleOnly)
{
    NamesTexts texts{QStringLiteral("big \"house"), {}, {}};
    Process().OntoMeta.Naming = true;
    EXPECT_TRUE(AcceptNamesTexts(QStringLiteral("Rename"), texts));
    EXPECT_EQ(texts.Concept, QString::fromUtf8("BIG-").append(QChar(0)).append(u"HOUSE"));

    texts.Concept = QStringLiteral("big \"house");
    Process().OntoMeta.Naming = false;
    EXPECT_TRUE(AcceptNamesTexts(QStringLiteral("Rename"), texts));
    EXPECT_EQ(texts.Concept, QStringLiteral("big 'house"));
}

TEST_F(NamesTest, RenameModeRefusesAnEmptyIdentifier)
{
    user.answerMsgBox(msg::OK);
    Process().OntoMeta.Naming = true;
    NamesTexts texts;
    EXPECT_FALSE(AcceptNamesTexts(QStringLiteral("Rename"), texts));
    EXPECT_EQ(user.calls().at(0).text,
              QStringLiteral("Concept Identifier cannot be the empty string!"));
}

TEST_F(NamesTest, DefinitionModeAsksBeforeRemovingTheDefinition)
{
    user.answerMsgBox(msg::No).answerMsgBox(msg::Yes);
    NamesTexts texts;
    EXPECT_FALSE(AcceptNamesTexts(QStringLiteral("Definition"), texts));
    EXPECT_TRUE(AcceptNamesTexts(QStringLiteral("Definition"), texts));
    EXPECT_EQ(texts.Def, QStringLiteral("Undefined"));
    EXPECT_EQ(user.calls().at(0).text, QStringLiteral("Do you want to remove this definition?"));
    EXPECT_EQ(msg::ButtonSet(user.calls().at(0).style), msg::YesNo);
}

TEST_F(NamesTest, AnyOtherModeLeavesTheBoxesAsTheyAre)
{
    NamesTexts texts{QStringLiteral("a\""), QString(), QString()};
    EXPECT_TRUE(AcceptNamesTexts(QStringLiteral("Edit"), texts));
    EXPECT_EQ(texts.Concept, QStringLiteral("a\""));
    EXPECT_TRUE(texts.Name.isEmpty());
}

// --- Rows of Names ----------------------------------------------------------------------------

TEST_F(NamesTest, TwoNamesInOneLanguageAreBothKept)
{
    AddName(QStringLiteral("BIG-HOUSE"), QStringLiteral("en"), QStringLiteral("mansion"));
    AddName(QStringLiteral("BIG-HOUSE"), QStringLiteral("en"), QStringLiteral("big house"));
    EXPECT_EQ(names(), (QStringList{QStringLiteral("mansion"), QStringLiteral("big house")}));
}

TEST_F(NamesTest, EditChangesLanguageAndNameOfTheOneRow)
{
    AddName(QStringLiteral("BIG-HOUSE"), QStringLiteral("en"), QStringLiteral("mansion"));
    AddName(QStringLiteral("BIG-HOUSE"), QStringLiteral("en"), QStringLiteral("villa"));
    EditName(firstNameId(), QStringLiteral("de"), QStringLiteral("Herrenhaus"));
    EXPECT_EQ(names(), (QStringList{QStringLiteral("Herrenhaus"), QStringLiteral("villa")}));
    EditName(9999, QStringLiteral("de"), QStringLiteral("nobody")); // gone: no error
    EXPECT_EQ(names().size(), 2);
}

TEST_F(NamesTest, DeleteTakesEvenTheLastName)
{
    AddName(QStringLiteral("BIG-HOUSE"), QStringLiteral("en"), QStringLiteral("mansion"));
    DeleteName(firstNameId());
    EXPECT_TRUE(names().isEmpty());
}

} // namespace
