#include "core/interaction.h"
#include "ontology/edit/edit_fixture.h"
#include "ontology/exchange/export.h"
#include "support/temp_store.h"

#include <QFile>

using namespace lx;

namespace {

// ALL at the top; ANIMAL below it with a definition over two lines and quotes, BIRD below
// ANIMAL with slots; the relation EATS with two ranges and a default domain; the attribute
// COLOR with its range.
class ExportTest : public EditTest {
protected:
    void SetUp() override
    {
        EditTest::SetUp();
        add(QStringLiteral("ALL"), 100, QStringLiteral("The top"));
        add(QStringLiteral("ANIMAL"), 1, QStringLiteral("A \"living\"\r\nbeing"));
        add(QStringLiteral("BIRD"), 1, QVariant());
        add(QStringLiteral("EATS"), 4, QStringLiteral("Takes as food"));
        add(QStringLiteral("COLOR"), 3, QStringLiteral("Hue"));
        add(QStringLiteral("DOMAIN"), 14, QVariant());
        add(QStringLiteral("RANGE"), 14, QVariant());
        for (const auto &[child, parent] : {std::pair{"ANIMAL", "ALL"}, {"BIRD", "ANIMAL"}})
            addRow(QStringLiteral("ISA"), {{u"Concept", QString::fromLatin1(child)},
                                           {u"ISA", QString::fromLatin1(parent)}});
        relation("BIRD", "EATS", "ANIMAL", false);
        relation("EATS", "DOMAIN", "ANIMAL", true);
        relation("EATS", "RANGE", "BIRD", false);
        relation("EATS", "RANGE", "ANIMAL", false);
        addRow(QStringLiteral("ATTRIBUTES"), {{u"Concept", QStringLiteral("BIRD")},
                                              {u"Attribute", QStringLiteral("COLOR")},
                                              {u"Value", QStringLiteral("red")},
                                              {u"Default", true}});
        addRow(QStringLiteral("ATTRIBUTES"), {{u"Concept", QStringLiteral("COLOR")},
                                              {u"Attribute", QStringLiteral("RANGE")},
                                              {u"Value", QStringLiteral("any hue")}});
    }
    void add(const QString &id, int type, const QVariant &definition)
    {
        addRow(QStringLiteral("CONCEPTS"),
               {{u"Concept", id}, {u"Definition", definition}, {u"Type", type}, {u"Subset_ID", 1}});
    }
    void relation(const char *a, const char *rel, const char *b, bool isDefault)
    {
        addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QString::fromLatin1(a)},
                                             {u"Rel", QString::fromLatin1(rel)},
                                             {u"Concept2", QString::fromLatin1(b)},
                                             {u"Default", isDefault}});
    }
};

TEST_F(ExportTest, EachBlockHoldsItsRecordsInTheirOrder)
{
    EXPECT_EQ(BuildConceptExport(QStringLiteral("ALL")),
              QStringLiteral("(ALL DEFINITION VALUE \"The top\")\r\n"
                             "(ALL SUBCLASSES VALUE ANIMAL)"));
    EXPECT_EQ(BuildConceptExport(QStringLiteral("ANIMAL")),
              QStringLiteral("(ANIMAL IS-A VALUE ALL 1)\r\n"
                             "(ANIMAL DEFINITION VALUE \"A \"living\"  being\")\r\n"
                             "(ANIMAL SUBCLASSES VALUE BIRD)"));
    EXPECT_EQ(BuildConceptExport(QStringLiteral("BIRD")),
              QStringLiteral("(BIRD IS-A VALUE ANIMAL 1)\r\n"
                             "(BIRD DEFINITION VALUE Undefined)\r\n"
                             "(BIRD EATS SEM ANIMAL)\r\n"
                             "(BIRD COLOR DEFAULT red)"));
    EXPECT_EQ(BuildConceptExport(QStringLiteral("EATS")),
              QStringLiteral("(EATS DEFINITION VALUE \"Takes as food\")\r\n"
                             "(EATS DOMAIN DEFAULT ANIMAL)\r\n"
                             "(EATS RANGE SEM ANIMAL)\r\n"
                             "(EATS RANGE SEM BIRD)"));
    EXPECT_EQ(BuildConceptExport(QStringLiteral("COLOR")),
              QStringLiteral("(COLOR DEFINITION VALUE \"Hue\")\r\n"
                             "(COLOR RANGE VALUE any hue)"));
}

TEST_F(ExportTest, TheFileEndsInOneLineEndAndAnExistingOneIsReplacedAfterOneButton)
{
    const QString folder = this->folder.path(QStringLiteral("onto-publish"));
    QDir().mkpath(folder);
    {
        QFile old(folder + QStringLiteral("/export.oxp"));
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write("old content that is longer than the new one, by far, by far, by far");
    }
    user.answerInputBox(QStringLiteral("export.oxp")).answerMsgBox(msg::OK);
    int exported = 0;
    ASSERT_TRUE(ExportSelectedConcepts(folder, {QStringLiteral("ALL"), QStringLiteral("COLOR")},
                                       [&exported](int done) { exported = done; }));
    EXPECT_EQ(exported, 2);
    EXPECT_EQ(user.calls()[0].text, QStringLiteral("Enter output file name: "));
    EXPECT_EQ(user.calls()[0].defaultText, QStringLiteral("export.oxp"));
    EXPECT_EQ(user.calls()[1].text, QStringLiteral("File exists. Overwrite?"));
    EXPECT_EQ(user.calls()[1].buttons, msg::OKOnly);
    EXPECT_EQ(FileBytes(folder + QStringLiteral("/export.oxp")),
              QByteArray("(ALL DEFINITION VALUE \"The top\")\r\n(ALL SUBCLASSES VALUE ANIMAL)\r\n"
                         "(COLOR DEFINITION VALUE \"Hue\")\r\n(COLOR RANGE VALUE any hue)\r\n"));

    // Nothing selected, and a cancelled name: no file.
    user.answerMsgBox(msg::OK).answerInputBox(QString());
    EXPECT_FALSE(ExportSelectedConcepts(folder, {}));
    EXPECT_EQ(user.calls()[2].text, QStringLiteral("No concepts have been selected!"));
    EXPECT_FALSE(ExportSelectedConcepts(folder, {QStringLiteral("ALL")}));
}

// A long selection is read in a few passes: its file holds the same bytes as block by block.
TEST_F(ExportTest, ALongSelectionWritesTheSameBlocks)
{
    const QStringList each{"ALL", "ANIMAL", "BIRD", "EATS", "COLOR", "DOMAIN", "RANGE"};
    QStringList many;
    QString expected;
    for (int i = 0; i < 40; ++i) {
        for (const QString &id : each) {
            many << (i % 2 ? id.toLower() : id);
            expected += BuildConceptExport(many.last()) + QStringLiteral("\r\n");
        }
    }
    const QString path = folder.path(QStringLiteral("many.oxp"));
    WriteExportFile(path, many);
    EXPECT_EQ(FileBytes(path), expected.toLatin1());
}

TEST_F(ExportTest, AConceptGoneFromTheFileStillGetsItsBlock)
{
    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    EXPECT_EQ(BuildConceptExport(QStringLiteral("GONE")),
              QStringLiteral("(GONE DEFINITION VALUE )"));
    EXPECT_TRUE(user.calls()[0].text.contains(QStringLiteral("LX038")));
    EXPECT_TRUE(user.calls()[1].text.contains(QStringLiteral("LX010")));
}

} // namespace
