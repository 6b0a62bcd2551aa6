#include "core/store/database.h"
#include "termbase/edit/categories.h"
#include "termbase/edit/element_tree.h"
#include "termbase/store/fake_editor.h"
#include "termbase/store/lifecycle.h"
#include "termbase/store/termbase_fixture.h"

#include <algorithm>
#include <QDateTime>

using namespace lx;
using namespace lx::store;

namespace {

// A termbase from the seed, open in the editor with its English category names, and a way to
// add elements and their values to it.
class ElementTreeTest : public TermbaseFixture {
protected:
    void SetUp() override
    {
        TermbaseFixture::SetUp();
        {
            Database db = createTermbase();
            Recordset meta = db.OpenRecordset(QStringLiteral("MetaData"), dbOpenTable);
            meta.AddNew();
            meta.Collect(u"Name", QStringLiteral("Demo"));
            meta.Collect(u"Ontology", Process().OntoPath);
            meta.Collect(u"DCLang", QStringLiteral("en"));
            meta.Collect(u"DCList", QStringLiteral("tree"));
            meta.Update();
            meta.Close();
            Recordset concepts = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
            someConcept = concepts.Value(u"Concept").toString();
            concepts.Close();
            db.Close();
        }
        Process().TermPath = termbasePath();
        OpenTermbase(editor, Process().TermPath);
        ASSERT_FALSE(Process().TermPath.isEmpty());
        LoadCategoryTable();
    }
    void TearDown() override
    {
        if (!Process().TermPath.isEmpty())
            CloseTermbase(editor);
        TermbaseFixture::TearDown();
    }

    void addRow(const char *table, std::initializer_list<std::pair<const char *, QVariant>> row)
    {
        Recordset rs = Process().TermDB.OpenRecordset(QString::fromLatin1(table), dbOpenTable);
        rs.AddNew();
        for (const auto &[name, value] : row)
            rs.Collect(QString::fromLatin1(name), value);
        rs.Update();
        rs.Close();
    }
    void element(qint32 id, const char *category, qint32 parent)
    {
        addRow("elements", {{"elemID", id}, {"categoryID", category}, {"parentID", parent}});
    }
    void value(const char *table, qint32 id, const QString &text)
    {
        addRow(table, {{"elemID", id}, {"value", text}});
    }
    void pointer(qint32 id, qint32 target)
    {
        addRow("pointers", {{"elemID", id}, {"targetID", target}});
    }

    static ElementLook look(qint32 id, const char *category)
    {
        return ClassifyElement(id, QString::fromLatin1(category));
    }

    FakeTermbaseEditor editor;
    QString someConcept;
};

TEST(ElementKeys, RootHasNoBlankOthersAreBlankLedAndTheNumberComesBack)
{
    EXPECT_EQ(ElementKey(1), QStringLiteral("n1"));
    EXPECT_EQ(ElementKey(11), QStringLiteral("n 11"));
    EXPECT_EQ(ElementKey(3), QStringLiteral("n 3"));
    EXPECT_EQ(KeyElement(QStringLiteral("n1")), 1);
    EXPECT_EQ(KeyElement(QStringLiteral("n 1025")), 1025);
}

// Every row of the classification, its edge cases and the order in which rows are tried.
TEST(ElementRules, KindsAndSourcesFollowTheTableInItsOrder)
{
    using S = ElementSource;
    const struct {
        const char *id;
        const char *kind;
        S source;
    } cases[] = {
        {"2.1", "attribute", S::Name},
        {"2.2.4", "attribute", S::Name},
        {"2.9.1", "attribute", S::Name},
        {"3.4", "attribute", S::Name},
        {"0.3", "concept", S::Concept},
        {"0.4", "", S::Language},
        {"1", "term", S::Term},
        {"8", "note", S::Name},
        {"x3", "responsibles", S::Name}, // not a container
        {"x5.5", "binary", S::RefValue},
        {"5.3x", "context", S::PointerRef},
        {"5.5.1", "figure", S::PointerRef},
        {"5.5.2", "audio", S::PointerRef},
        {"5.5.3", "video", S::PointerRef},
        {"5.5.4", "table", S::PointerRef},
        {"5.5.5", "binary", S::PointerRef},
        {"10.2.2.1", "responsible", S::PointerTextName},
        {"10.2.2.9", "responsible", S::PointerTextName},
        {"10.2.2.10", "responsible", S::PointerTextName}, // inside the text range
        {"10.20", "pub", S::PointerText},
        {"4", "subjectfield", S::PointerText},
        {"10.21.1", "url", S::PointerText},
        {"10.21.2", "url", S::PointerText},
        {"9.2.1", "xref", S::Name},
        {"9.2.4", "xref", S::Name},
        {"3.5x", "xref", S::Name},
        {"3.2x", "xref", S::Name},
        {"10.6.1", "xref", S::Name},
        {"10.18.5", "xref", S::Name},
        {"10.18.6", "xref", S::Name},
        {"10.18", "xref", S::TextValue},
        {"x10.3", "subset", S::Name},
        {"xx4", "subjectfield", S::TextValue},
        {"x10.2.2", "responsible", S::TextValue},
        {"x10.20", "pub", S::TextValue},
        {"x10.21.1", "url", S::TextValue},
        {"x10.21.2", "url", S::TextValue},
        {"x4.2", "classifsystem", S::Name},
        {"x7.2", "conceptsystem", S::Name},
        {"x9.1", "conceptsystem", S::Name},
        {"x11.1", "context", S::RefValue},
        {"x1", "container", S::Name},
        {"x2", "container", S::Name},
        {"x11", "attribute", S::Name}, // "x4" comes after "x11" in text order: no range
        {"0", "folder", S::Name},
        {"0.2", "folder", S::Name},
        {"5.1", "attribute", S::Name},
        {"10.2.2", "attribute", S::Name},
        {"X3", "attribute", S::Name}, // case counts
    };
    for (const auto &c : cases) {
        const ElementRule rule = ElementRuleOf(QString::fromLatin1(c.id));
        EXPECT_EQ(rule.Kind, QString::fromLatin1(c.kind)) << c.id;
        EXPECT_EQ(rule.Source, c.source) << c.id;
    }
}

TEST(ElementRules, LanguageSectionsNameTheFixedLanguagesAndShowOtherCodes)
{
    const ElementLook none = LanguageSectionLook(std::nullopt, QStringLiteral("Language section"));
    EXPECT_EQ(none.Kind, QStringLiteral("world"));
    EXPECT_EQ(none.Text, QStringLiteral("Language section"));
    const std::pair<const char *, const char *> fixed[] = {
        {"en", "English"}, {"es", "Spanish"}, {"de", "German"},  {"fr", "French"},
        {"ca", "Catalan"}, {"it", "Italian"}, {"sv", "Swedish"}, {"no", "Norwegian"},
        {"nl", "Dutch"},   {"da", "Danish"},
    };
    for (const auto &[code, text] : fixed) {
        const ElementLook look = LanguageSectionLook(QString::fromLatin1(code), QString());
        EXPECT_EQ(look.Kind, QStringLiteral("ls") + QString::fromLatin1(code));
        EXPECT_EQ(look.Text, QString::fromLatin1(text));
    }
    const ElementLook other = LanguageSectionLook(QStringLiteral("pt"), QString());
    EXPECT_EQ(other.Kind, QStringLiteral("lsgen"));
    EXPECT_EQ(other.Text, QStringLiteral("pt"));
}

TEST_F(ElementTreeTest, TextsComeFromTheValueTablesOrFallBackToTheName)
{
    element(100, "0.3", 3);
    addRow("TE_CONCEPTS", {{"elemID", 100}, {"Concept", someConcept}});
    element(101, "0.3", 3); // no someConcept row
    element(110, "0.4", 100);
    addRow("elements_use_lang", {{"elemID", 110}, {"langID", "en"}});
    element(111, "0.4", 100);
    addRow("elements_use_lang", {{"elemID", 111}, {"langID", "pt"}});
    element(112, "0.4", 100); // no language row
    element(120, "1", 110);
    addRow("TERMS", {{"elemID", 120}, {"term", "heron"}, {"langID", "en"}});
    element(121, "1", 110);
    element(130, "10.18", 100);
    value("text_values", 130, QStringLiteral("see also"));
    element(131, "x5.5", 9);
    value("ref_values", 131, QStringLiteral("heron.png"));
    element(132, "5.5.1", 100);
    pointer(132, 131);
    element(133, "x10.2.2", 7);
    value("text_values", 133, QStringLiteral("Ann Smith"));
    element(134, "10.2.2.1", 120);
    pointer(134, 133);
    element(135, "10.21.1", 120);
    pointer(135, 133);
    element(136, "5.5.2", 100); // no pointer
    element(137, "5.5.3", 100); // a pointer to an element without a value
    pointer(137, 130);
    element(138, "10.2.2.10", 120);
    pointer(138, 133);

    const auto expect = [](const ElementLook &look, const char *kind, const QString &text) {
        EXPECT_EQ(look.Kind, QString::fromLatin1(kind)) << text.toStdString();
        EXPECT_EQ(look.Text, text);
    };
    expect(look(100, "0.3"), "concept", someConcept);
    expect(look(101, "0.3"), "concept", CategoryName(QStringLiteral("0.3")));
    expect(look(110, "0.4"), "lsen", QStringLiteral("English"));
    expect(look(111, "0.4"), "lsgen", QStringLiteral("pt"));
    expect(look(112, "0.4"), "world", CategoryName(QStringLiteral("0.4")));
    expect(look(120, "1"), "term", QStringLiteral("heron"));
    expect(look(121, "1"), "term", CategoryName(QStringLiteral("1")));
    expect(look(130, "10.18"), "xref", QStringLiteral("see also"));
    expect(look(131, "x5.5"), "binary", QStringLiteral("heron.png"));
    expect(look(132, "5.5.1"), "figure", QStringLiteral("heron.png"));
    expect(look(133, "x10.2.2"), "responsible", QStringLiteral("Ann Smith"));
    expect(look(134, "10.2.2.1"), "responsible",
           CategoryName(QStringLiteral("10.2.2.1")) + QStringLiteral(": Ann Smith"));
    expect(look(135, "10.21.1"), "url", QStringLiteral("Ann Smith"));
    expect(look(136, "5.5.2"), "audio", CategoryName(QStringLiteral("5.5.2")));
    expect(look(137, "5.5.3"), "video", CategoryName(QStringLiteral("5.5.3")));
    expect(look(138, "10.2.2.10"), "responsible",
           CategoryName(QStringLiteral("10.2.2.10")) + QStringLiteral(": Ann Smith"));
    EXPECT_EQ(look(8, "x4").Kind, QStringLiteral("attribute"));
    EXPECT_EQ(CrossRefTarget(132), 131);
    EXPECT_EQ(CrossRefTarget(136), 0);

    // Children read for a whole branch at once look as each one read alone.
    for (qint32 parent : {3, 100, 110, 120}) {
        for (const ElementNode &node : ReadElementChildren(parent, false)) {
            const ElementLook alone = ClassifyElement(node.ElemID, node.CategoryID);
            EXPECT_EQ(node.Kind, alone.Kind) << node.ElemID;
            EXPECT_EQ(node.Text, alone.Text) << node.ElemID;
        }
    }
    // Two and three levels down in one read: each parent's branch as read alone, the parents
    // in the order of their numbers.
    for (int depth : {2, 3}) {
        QList<qint32> parents{3};
        for (int d = 1; d < depth; ++d) {
            QList<qint32> next;
            for (qint32 parent : std::as_const(parents))
                for (const ElementNode &node : ReadElementChildren(parent, false))
                    next << node.ElemID;
            std::sort(next.begin(), next.end());
            parents = next;
        }
        QStringList alone, together;
        for (qint32 parent : std::as_const(parents))
            for (const ElementNode &node : ReadElementChildren(parent, false))
                alone << QStringLiteral("%1/%2 %3 %4 %5")
                             .arg(parent)
                             .arg(node.ElemID)
                             .arg(node.Kind, node.Text)
                             .arg(node.HasChildren);
        for (const ElementNode &node : ReadElementLevel(3, depth))
            together << QStringLiteral("%1/%2 %3 %4 %5")
                            .arg(node.Parent)
                            .arg(node.ElemID)
                            .arg(node.Kind, node.Text)
                            .arg(node.HasChildren);
        EXPECT_FALSE(alone.isEmpty()) << depth;
        EXPECT_EQ(together, alone) << depth;
    }
}

TEST_F(ElementTreeTest, ChildrenOfTheRootKeepTheTableOrderOthersTheCategoryOrder)
{
    const QList<ElementNode> top = ReadElementChildren(1, true);
    ASSERT_EQ(top.size(), 3);
    EXPECT_EQ(top[0].ElemID, 2);
    EXPECT_EQ(top[1].ElemID, 3);
    EXPECT_EQ(top[1].Text, QStringLiteral("body"));
    EXPECT_EQ(top[1].Kind, QStringLiteral("folder"));
    EXPECT_EQ(top[2].ElemID, 4);
    EXPECT_FALSE(top[0].HasChildren);
    EXPECT_FALSE(top[1].HasChildren); // an empty body has no plus sign
    EXPECT_TRUE(top[2].HasChildren);

    element(100, "0.3", 3);
    element(200, "8", 100);
    element(201, "0.4", 100);
    element(202, "2.1", 100);
    element(300, "1", 201);
    const QList<ElementNode> entry = ReadElementChildren(100, false);
    ASSERT_EQ(entry.size(), 3);
    EXPECT_EQ(entry[0].CategoryID, QStringLiteral("0.4"));
    EXPECT_EQ(entry[1].CategoryID, QStringLiteral("2.1"));
    EXPECT_EQ(entry[2].CategoryID, QStringLiteral("8"));
    EXPECT_TRUE(entry[0].HasChildren);
    EXPECT_FALSE(entry[1].HasChildren);
    EXPECT_TRUE(ReadElementChildren(1, true)[1].HasChildren);
    EXPECT_TRUE(ReadElementChildren(300, false).isEmpty());
}

TEST_F(ElementTreeTest, ThePathGoesUpToTheRootAndStopsAtALoopOfParents)
{
    element(100, "0.3", 3);
    element(201, "0.4", 100);
    element(300, "1", 201);
    EXPECT_EQ(ElementPath(300), (QList<qint32>{300, 201, 100, 3}));
    EXPECT_EQ(ElementPath(3), QList<qint32>{3});
    EXPECT_TRUE(ElementPath(1).isEmpty());

    // A damaged file: two elements each other's parent.
    element(400, "0.3", 3);
    element(401, "0.4", 400);
    Recordset rs = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT * FROM elements WHERE elemID = 400"), dbOpenDynaset);
    rs.Edit();
    rs.Collect(u"parentID", 401);
    rs.Update();
    rs.Close();
    EXPECT_EQ(ElementPath(400), (QList<qint32>{400, 401}));
}

} // namespace
