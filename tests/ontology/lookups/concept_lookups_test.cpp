#include "core/program.h"
#include "core/store/errors.h"
#include "ontology/store/lookups.h"
#include "ontology_fixture.h"
#include "support/scripted_user.h"

using namespace lx;
using namespace lx::store;

namespace {

class ConceptLookups : public OntologyTest {
protected:
    void addSubset(int id, const char *name)
    {
        addRow(QStringLiteral("Subsets"),
               {{u"Subset_ID", id}, {u"Subset", QString::fromLatin1(name)}});
    }
};

void expectCriticalBox(const test::ScriptedUser &user, const char *text)
{
    ASSERT_EQ(user.calls().size(), 1);
    const auto &call = user.calls().front();
    EXPECT_EQ(call.text, QString::fromLatin1(text));
    EXPECT_EQ(call.title, QStringLiteral("Error"));
    EXPECT_EQ(call.icon, msg::Critical);
    EXPECT_EQ(call.buttons, msg::OKOnly);
}

TEST_F(ConceptLookups, ExistenceAndType)
{
    addConcept(QStringLiteral("RUN"), 2);
    addConcept(QStringLiteral("PART-OF"), 4);
    addConcept(QStringLiteral("O'BRIEN"));
    {
        test::ScriptedUser user;
        EXPECT_TRUE(ConceptExists(QStringLiteral("O'BRIEN")));
        EXPECT_TRUE(ConceptExists(QStringLiteral("run")));
        EXPECT_FALSE(ConceptExists(QStringLiteral("RU")));
        EXPECT_EQ(ConceptType(QStringLiteral("RUN")), 2);
        EXPECT_EQ(ConceptType(QStringLiteral("part-of")), 4);
        EXPECT_TRUE(user.calls().isEmpty());
    }
    test::ScriptedUser user;
    user.answerMsgBox(msg::OK);
    EXPECT_EQ(ConceptType(QStringLiteral("GHOST")), 1); // goes on as an object
    expectCriticalBox(user, "Critical error. Error code LX010. Please Report.");
}

TEST_F(ConceptLookups, DefinitionForDisplay)
{
    addConcept(QStringLiteral("LINES"), 1, QStringLiteral("first\r\nsecond\nthird"));
    addConcept(QStringLiteral("NULL-DEF"), 1, QVariant());
    EXPECT_EQ(ConceptDefinition(QStringLiteral("LINES")),
              QStringLiteral("\"first  second third\""));
    EXPECT_EQ(ConceptDefinition(QStringLiteral("NULL-DEF")), QStringLiteral("Undefined"));

    // Read only: the Null stays in the file.
    Recordset rs = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenSnapshot);
    rs.FindFirst(QStringLiteral("Concept = 'NULL-DEF'"));
    EXPECT_TRUE(rs.Fields(u"Definition").Value().isNull());
    rs.Close();

    test::ScriptedUser user;
    user.answerMsgBox(msg::OK);
    EXPECT_EQ(ConceptDefinition(QStringLiteral("GHOST")), QString());
    expectCriticalBox(user, "Critical error. Error code LX038. Please Report.");
}

TEST_F(ConceptLookups, TopConceptAndTheRepairOfAll)
{
    // No type 100 and no "ALL": the name stands anyway, and nothing is added.
    EXPECT_EQ(GetTopConcept(), QStringLiteral("ALL"));
    EXPECT_FALSE(ConceptExists(QStringLiteral("ALL")));

    addConcept(QStringLiteral("ALL"), 1);
    EXPECT_EQ(GetTopConcept(), QStringLiteral("ALL"));
    EXPECT_EQ(ConceptType(QStringLiteral("ALL")), 100);
}

TEST_F(ConceptLookups, FirstTopLevelConceptWins)
{
    addConcept(QStringLiteral("ALL"), 2);
    addConcept(QStringLiteral("THING"), 100);
    addConcept(QStringLiteral("UNIVERSE"), 100);
    EXPECT_EQ(GetTopConcept(), QStringLiteral("THING"));
    EXPECT_EQ(ConceptType(QStringLiteral("ALL")), 2); // a type 100 was found: no repair
}

TEST_F(ConceptLookups, SubsetsByNameAndNumber)
{
    addSubset(1, "Core");
    addSubset(7, "Medicine");
    {
        test::ScriptedUser user;
        EXPECT_EQ(SubsetIdOf(QStringLiteral("medicine")), 7);
        EXPECT_EQ(SubsetIdOf(QStringLiteral("Core")), 1);
    }
    EXPECT_EQ(SubsetNameOf(7), QStringLiteral("Medicine"));
    EXPECT_EQ(SubsetNameOf(2), QStringLiteral("Error"));
    EXPECT_STORE_ERROR(SubsetNameOf(256), err::Overflow);

    test::ScriptedUser user;
    user.answerMsgBox(msg::OK);
    EXPECT_EQ(SubsetIdOf(QStringLiteral("Law")), 0);
    ASSERT_EQ(user.calls().size(), 1);
    EXPECT_EQ(user.calls()[0].text,
              QStringLiteral("Critical error. Please Report. Error Code LX005"));
    EXPECT_EQ(user.calls()[0].style, msg::OKOnly);
    EXPECT_EQ(user.calls()[0].title, ProgramName());
}

TEST_F(ConceptLookups, CountSubset)
{
    addSubset(1, "Core");
    addSubset(2, "Law");
    for (int i = 0; i < 5; ++i)
        addConcept(QStringLiteral("C%1").arg(i), 1, QStringLiteral("x"), i < 3 ? 1 : 2);
    addConcept(QStringLiteral("LOOSE"));
    EXPECT_EQ(CountSubset(1), 3);
    EXPECT_EQ(CountSubset(2), 2);
    EXPECT_EQ(CountSubset(3), 0);
}

} // namespace

namespace {

// No identifier holds a double quote: the store refuses one, and a lookup given one answers
// "no such concept" instead of running criteria that it would break out of.
TEST_F(ConceptLookups, AnIdentifierWithADoubleQuoteNamesNoConcept)
{
    addConcept(QStringLiteral("TOP"), 100);
    addConcept(QStringLiteral("RUN"), 2);
    const QString crafted = QStringLiteral("X\" OR Concept <> \"");
    EXPECT_STORE_ERROR(addConcept(crafted), err::ValidationRule);
    EXPECT_STORE_ERROR(link(QStringLiteral("RUN"), QStringLiteral("TOP\"")), err::ValidationRule);

    test::ScriptedUser user;
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(ConceptExists(crafted));
    EXPECT_FALSE(ConceptExists(QStringLiteral("RUN\"")));
    EXPECT_EQ(ConceptType(crafted), 1) << "not the type of the first row";
    expectCriticalBox(user, "Critical error. Error code LX010. Please Report.");
}

// On a file open read-only the top concept is repaired in memory only.
TEST_F(ConceptLookups, AReadOnlyFileIsRepairedInMemoryOnly)
{
    addConcept(QStringLiteral("ALL"), 1);
    const QString path = db.Name();
    db.Close();
    const QByteArray before = FileBytes(path);
    {
        NoWriteAccess noAccess;
        Process().OntoDB = db = DBEngine::OpenDatabase(path);
    }
    EXPECT_EQ(GetTopConcept(), QStringLiteral("ALL"));
    db.Close();
    EXPECT_EQ(FileBytes(path), before);
}

} // namespace
