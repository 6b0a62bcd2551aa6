#include "support/scripted_user.h"
#include "termbase/edit/modify.h"
#include "termbase_edit_fixture.h"

using namespace lx;

namespace {

// An entry with an English section of two terms; a person record that the first term points
// at, and a note of the entry that points at the second term.
class ModifyTest : public TermbaseEditTest {
protected:
    void SetUp() override
    {
        TermbaseEditTest::SetUp();
        entry = element(QStringLiteral("0.3"), 3);
        section = element(QStringLiteral("0.4"), entry);
        addRow(QStringLiteral("elements_use_lang"),
               {{u"elemID", section}, {u"langID", QStringLiteral("en")}});
        for (qint32 *term : {&first, &second}) {
            *term = element(QStringLiteral("1"), section);
            addRow(QStringLiteral("TERMS"), {{u"elemID", *term},
                                             {u"term", QStringLiteral("t%1").arg(*term)},
                                             {u"langID", QStringLiteral("en")}});
        }
        person = element(QStringLiteral("x10.2.2"), 7);
        addRow(QStringLiteral("text_values"),
               {{u"elemID", person}, {u"value", QStringLiteral("Ana")}});
        responsible = element(QStringLiteral("10.2.2.1"), first);
        addRow(QStringLiteral("pointers"), {{u"elemID", responsible}, {u"targetID", person}});
        xref = element(QStringLiteral("3.5x"), entry);
        addRow(QStringLiteral("pointers"), {{u"elemID", xref}, {u"targetID", second}});
        note = element(QStringLiteral("8"), entry);
        addRow(QStringLiteral("text_values"),
               {{u"elemID", note}, {u"value", QStringLiteral("old")}});
        addRow(QStringLiteral("elements_use_lang"),
               {{u"elemID", note}, {u"langID", QStringLiteral("en")}});
    }
    QStringList elements()
    {
        return column(QStringLiteral("SELECT * FROM elements WHERE elemID > 15 ORDER BY elemID"),
                      u"elemID");
    }
    static QString n(qint32 id) { return QString::number(id); }

    qint32 entry = 0, section = 0, first = 0, second = 0, person = 0, responsible = 0, xref = 0,
           note = 0;
    test::ScriptedUser user;
};

TEST_F(ModifyTest, AValueAndItsLanguageAreWrittenBack)
{
    EXPECT_TRUE(WriteElementValue(
        {note, QStringLiteral("text"), QStringLiteral("new"), true, QStringLiteral("de")}));
    EXPECT_EQ(
        column(QStringLiteral("SELECT * FROM text_values WHERE elemID = ") + n(note), u"value"),
        QStringList{"new"});
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM elements_use_lang WHERE elemID = ") + n(note),
                     u"langID"),
              QStringList{"de"});
    // No row in the table the type names: TB004, nothing written.
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(WriteElementValue({note, QStringLiteral("number"), 4, false, {}}));
    EXPECT_EQ(user.calls()[0].text,
              QStringLiteral("Element not found. Fatal Error. Error Code TB004."));
    EXPECT_TRUE(IsEmptyEditValue(QString()));
    EXPECT_TRUE(IsEmptyEditValue(0));
    EXPECT_FALSE(IsEmptyEditValue(5));
}

TEST_F(ModifyTest, LabelsOfTermsAndRecordsChangeInTheirOwnTable)
{
    EXPECT_TRUE(LabelEditAllowed(QStringLiteral("term"), QStringLiteral("lsen")));
    EXPECT_TRUE(LabelEditAllowed(QStringLiteral("url"), QStringLiteral("container")));
    EXPECT_FALSE(LabelEditAllowed(QStringLiteral("url"), QStringLiteral("concept")));
    EXPECT_TRUE(LabelEditAllowed(QStringLiteral("responsible"), QStringLiteral("responsibles")));
    EXPECT_FALSE(LabelEditAllowed(QStringLiteral("concept"), QStringLiteral("folder")));

    EXPECT_TRUE(RenameElement(first, QStringLiteral("term"), QStringLiteral("renamed")));
    EXPECT_TRUE(RenameElement(person, QStringLiteral("responsible"), QStringLiteral("Ana B.")));
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM TERMS WHERE elemID = ") + n(first), u"term"),
              QStringList{"renamed"});
    EXPECT_EQ(
        column(QStringLiteral("SELECT * FROM text_values WHERE elemID = ") + n(person), u"value"),
        QStringList{"Ana B."});
    EXPECT_FALSE(RenameElement(99999, QStringLiteral("term"), QStringLiteral("x")));
}

TEST_F(ModifyTest, ADeleteTakesTheBranchAndEveryElementPointingAtIt)
{
    user.answerMsgBox(msg::No).answerMsgBox(msg::Yes);
    EXPECT_FALSE(ConfirmElementDelete());
    EXPECT_TRUE(ConfirmElementDelete());
    EXPECT_EQ(
        user.calls()[0].text,
        QStringLiteral("Are You sure you want to delete this element?\r\nAll references to it "
                       "will be deleted as well,"));
    EXPECT_EQ(user.calls()[0].title, QStringLiteral("Confirm deletion"));

    // The record goes with the responsible element that pointed at it.
    const ElementDeletion record = DeleteElement(person, person, false);
    EXPECT_EQ(record.Referrers, 1);
    EXPECT_FALSE(elements().contains(n(responsible)));

    // One term of two: the section stays; the cross-reference to it goes.
    const ElementDeletion one = DeleteElement(second, second, true);
    EXPECT_EQ(one.Parent, section);
    EXPECT_FALSE(one.SectionDeleted);
    EXPECT_FALSE(elements().contains(n(xref)));
    EXPECT_TRUE(column(QStringLiteral("SELECT * FROM TERMS WHERE elemID = ") + n(second), u"term")
                    .isEmpty());
    // The last term of its language takes the section along.
    EXPECT_TRUE(DeleteElement(first, first, true).SectionDeleted);
    EXPECT_EQ(elements(), (QStringList{n(entry), n(note)}));
    EXPECT_TRUE(
        column(QStringLiteral("SELECT * FROM elements_use_lang WHERE elemID = ") + n(section),
               u"langID")
            .isEmpty());
}

} // namespace
