#include "core/interaction.h"
#include "core/program.h"
#include "edit_fixture.h"
#include "ontology/edit/concept_view.h"
#include "ontology/edit/inheritance.h"
#include "ontology/edit/slots.h"
#include "ontology/store/lookups.h"

using namespace lx;

namespace {

// THING at the top; the objects DOG, CAT and PET; the relation pair OWNS/OWNED-BY, the
// relation LIKES without an inverse row, and the attribute COLOR.
class SlotsTest : public EditTest {
protected:
    void SetUp() override
    {
        EditTest::SetUp();
        Process().TopConcept = QStringLiteral("THING");
        addConceptOf(QStringLiteral("THING"), 100);
        for (const char *object : {"DOG", "CAT", "PET"})
            addConceptOf(QString::fromLatin1(object), 1);
        for (const char *relation : {"OWNS", "OWNED-BY", "LIKES"})
            addConceptOf(QString::fromLatin1(relation), 4);
        addConceptOf(QStringLiteral("COLOR"), 3);
        // The fixed relations of domains and ranges, as the seed has them.
        addConceptOf(QStringLiteral("DOMAIN"), 14);
        addConceptOf(QStringLiteral("RANGE"), 14);
        inverse(QStringLiteral("OWNS"), QStringLiteral("OWNED-BY"));
        inverse(QStringLiteral("OWNED-BY"), QStringLiteral("OWNS"));
    }
    void addConceptOf(const QString &id, int type)
    {
        addRow(QStringLiteral("CONCEPTS"), {{u"Concept", id},
                                            {u"Definition", QStringLiteral("Undefined")},
                                            {u"Type", type},
                                            {u"Subset_ID", 1}});
    }
    void inverse(const QString &relation, const QString &inverse)
    {
        addRow(QStringLiteral("INVERSES"), {{u"Relation", relation}, {u"Inverse", inverse}});
    }
    void isa(const QString &child, const QString &parent)
    {
        addRow(QStringLiteral("ISA"), {{u"Concept", child}, {u"ISA", parent}});
    }
    // Every RELATIONS row as "Concept1 Rel Concept2", with "*" behind a default one.
    QStringList relations()
    {
        QStringList out;
        store::Recordset rs = db.OpenRecordset(
            QStringLiteral("SELECT * FROM RELATIONS ORDER BY Relation_ID"), store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            out << rs.Value(u"Concept1").toString() + QLatin1Char(' ') +
                       rs.Value(u"Rel").toString() + QLatin1Char(' ') +
                       rs.Value(u"Concept2").toString() +
                       (rs.Value(u"Default").toBool() ? QStringLiteral("*") : QString());
        return out;
    }
    QStringList attributes()
    {
        QStringList out;
        store::Recordset rs = db.OpenRecordset(
            QStringLiteral("SELECT * FROM ATTRIBUTES ORDER BY Property_ID"), store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            out << rs.Value(u"Concept").toString() + QLatin1Char('|') +
                       rs.Value(u"Attribute").toString() + QLatin1Char('|') +
                       rs.Value(u"Value").toString();
        return out;
    }
    static SlotDialogTexts slot(const QString &owner, const QString &relation,
                                const QString &related, bool isDefault = false)
    {
        SlotDialogTexts texts;
        texts.Concept = owner;
        texts.Relation = relation;
        texts.Related = related;
        texts.Default = isDefault;
        return texts;
    }
    static SlotDialogTexts attribute(const QString &owner, const QString &attr,
                                     const QString &value)
    {
        SlotDialogTexts texts;
        texts.Concept = owner;
        texts.Relation = attr;
        texts.Value = value;
        texts.RelatedShown = false;
        texts.ValueShown = true;
        return texts;
    }
    void expectBox(qsizetype at, const QString &text, int icon, const QString &title)
    {
        ASSERT_GT(user.calls().size(), at);
        const auto &call = user.calls()[at];
        EXPECT_EQ(call.text, text);
        EXPECT_EQ(call.icon, icon);
        EXPECT_EQ(call.title, title);
    }
};

TEST_F(SlotsTest, ASlotIsWrittenWithItsMirrorAndShowsOnBothSides)
{
    EXPECT_EQ(AddRelationSlot(
                  slot(QStringLiteral("DOG"), QStringLiteral("OWNS"), QStringLiteral("CAT"), true)),
              SlotAdd::Added);
    EXPECT_EQ(relations(),
              (QStringList{QStringLiteral("DOG OWNS CAT*"), QStringLiteral("CAT OWNED-BY DOG*")}));
    EXPECT_EQ(ReadRelationSlots(QStringLiteral("CAT")),
              QStringList{QStringLiteral("OWNED-BY : DOG (by default)")});

    // The same slot again, and its mirror from the other side, are both there already.
    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    EXPECT_EQ(
        AddRelationSlot(slot(QStringLiteral("DOG"), QStringLiteral("OWNS"), QStringLiteral("CAT"))),
        SlotAdd::Exists);
    EXPECT_EQ(AddRelationSlot(
                  slot(QStringLiteral("CAT"), QStringLiteral("OWNED-BY"), QStringLiteral("DOG"))),
              SlotAdd::Exists);
    expectBox(1, QStringLiteral("Relation exists."), msg::Critical, QStringLiteral("Error"));
    EXPECT_EQ(relations().size(), 2);
}

TEST_F(SlotsTest, ADeleteTakesOneRowOnEachSideAndADefaultItemFindsNothing)
{
    // A mirror row that stands alone gets a second copy when its pair is added.
    addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("CAT")},
                                         {u"Rel", QStringLiteral("OWNED-BY")},
                                         {u"Concept2", QStringLiteral("DOG")}});
    ASSERT_EQ(
        AddRelationSlot(slot(QStringLiteral("DOG"), QStringLiteral("OWNS"), QStringLiteral("CAT"))),
        SlotAdd::Added);
    ASSERT_EQ(relations().size(), 3);

    user.answerMsgBox(msg::Yes);
    EXPECT_TRUE(DeleteRelationSlot(QStringLiteral("DOG"), QStringLiteral("OWNS : CAT")));
    expectBox(0, QStringLiteral("Confirm deletion of relation:\r\nDOG : OWNS : CAT"),
              msg::Exclamation, QStringLiteral("Confirm Delete"));
    EXPECT_EQ(user.calls()[0].buttons, msg::YesNo);
    EXPECT_EQ(relations(), QStringList{QStringLiteral("CAT OWNED-BY DOG")});

    // No keeps everything; the suffix of a default slot stays in the related concept.
    ASSERT_EQ(AddRelationSlot(
                  slot(QStringLiteral("PET"), QStringLiteral("OWNS"), QStringLiteral("CAT"), true)),
              SlotAdd::Added);
    user.answerMsgBox(msg::No).answerMsgBox(msg::Yes);
    EXPECT_FALSE(DeleteRelationSlot(QStringLiteral("PET"), QStringLiteral("OWNS : CAT")));
    EXPECT_TRUE(
        DeleteRelationSlot(QStringLiteral("PET"), QStringLiteral("OWNS : CAT (by default)")));
    EXPECT_EQ(relations().size(), 3);
    EXPECT_FALSE(DeleteRelationSlot(QStringLiteral("PET"), QString()));
}

TEST_F(SlotsTest, ARelationWithoutInverseIsRefusedOnAddAndPassedOverOnDelete)
{
    user.answerMsgBox(msg::OK);
    EXPECT_EQ(AddRelationSlot(
                  slot(QStringLiteral("DOG"), QStringLiteral("LIKES"), QStringLiteral("CAT"))),
              SlotAdd::Refused);
    expectBox(0,
              QStringLiteral("Data integrity error. Inverse relation of LIKES can't be "
                             "found.\r\nError Code LX001."),
              msg::Critical, ProgramName());
    EXPECT_TRUE(relations().isEmpty());

    addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("DOG")},
                                         {u"Rel", QStringLiteral("LIKES")},
                                         {u"Concept2", QStringLiteral("CAT")}});
    user.answerMsgBox(msg::Yes);
    EXPECT_TRUE(DeleteRelationSlot(QStringLiteral("DOG"), QStringLiteral("LIKES : CAT")));
    EXPECT_TRUE(relations().isEmpty());
    EXPECT_EQ(user.calls().size(), 2); // the question, and no word of the missing inverse
}

TEST_F(SlotsTest, TheDialogChecksComeInTheirOrder)
{
    SlotDialogTexts texts = attribute(QStringLiteral("DOG"), QString(), QString());
    texts.RelatedShown = true;
    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK).answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    EXPECT_FALSE(CheckSlotDialog(texts));
    texts.Value = QStringLiteral("5");
    EXPECT_FALSE(CheckSlotDialog(texts));
    texts.Related = QStringLiteral("DOG");
    EXPECT_FALSE(CheckSlotDialog(texts));
    texts.Related = QStringLiteral("CAT");
    EXPECT_TRUE(CheckSlotDialog(texts));
    texts.Relation.clear();
    EXPECT_EQ(AddRelationSlot(texts), SlotAdd::Refused);
    expectBox(0, QStringLiteral("You must type in a value (literal or numerical)."),
              msg::Exclamation, QStringLiteral("Error"));
    expectBox(1, QStringLiteral("You must select a related concept!"), msg::Exclamation,
              QStringLiteral("Error"));
    expectBox(2, QStringLiteral("No relation can hold between a concept and itself!"),
              msg::Information, QStringLiteral("Error"));
    expectBox(3, QStringLiteral("You must select a relation!"), msg::Exclamation, ProgramName());
}

TEST_F(SlotsTest, ItemsSplitAtTheirFirstColon)
{
    const SlotItem parts = SplitSlotItem(QStringLiteral("OWNS : a:b : c"));
    EXPECT_EQ(parts.Left, QStringLiteral("OWNS"));
    EXPECT_EQ(parts.Right, QStringLiteral("a:b : c"));
    EXPECT_EQ(SplitSlotItem(QStringLiteral("A:B")).Left, QString());
    EXPECT_STORE_ERROR(SplitSlotItem(QStringLiteral("no colon")), store::err::InvalidProcedureCall);
    EXPECT_STORE_ERROR(SplitSlotItem(QStringLiteral(": x")), store::err::InvalidProcedureCall);
}

TEST_F(SlotsTest, DomainsAndRangesPerConceptType)
{
    const QString owns = QStringLiteral("OWNS");
    const auto domains = AddDomain(owns, QStringLiteral("PET"), false, false);
    ASSERT_TRUE(domains);
    EXPECT_EQ(*domains, QStringList{QStringLiteral("PET")});
    // Without items in the list the add doesn't look: a second copy goes in.
    EXPECT_TRUE(AddDomain(owns, QStringLiteral("PET"), false, false));
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(AddDomain(owns, QStringLiteral("PET"), false, true));
    expectBox(0, QStringLiteral("Domain exists."), msg::Exclamation, ProgramName());

    // A relation's range is a concept, an attribute's a value in ATTRIBUTES.
    EXPECT_TRUE(AddRange(owns, 4, QStringLiteral("CAT"), false, false));
    EXPECT_TRUE(AddRange(QStringLiteral("COLOR"), 3, QStringLiteral("red 'or' blue"), false, true));
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(
        AddRange(QStringLiteral("COLOR"), 3, QStringLiteral("red 'or' blue"), false, true));
    expectBox(1, QStringLiteral("Range exists."), msg::Exclamation, ProgramName());
    EXPECT_EQ(ReadSlots(owns, 4).Attrs, QStringList{QStringLiteral("CAT")});
    EXPECT_EQ(ReadSlots(QStringLiteral("COLOR"), 3).Attrs,
              QStringList{QStringLiteral("red 'or' blue")});
    EXPECT_EQ(DomainCount(owns), 2);
    EXPECT_EQ(RangeCount(owns, 4), 1);
    EXPECT_EQ(RangeCount(QStringLiteral("COLOR"), 3), 1);

    // The domain delete stops on an empty selection; the range delete asks first.
    EXPECT_FALSE(DeleteDomain(owns, QString()));
    user.answerMsgBox(msg::Yes).answerMsgBox(msg::Yes).answerMsgBox(msg::Yes);
    EXPECT_TRUE(DeleteDomain(owns, QStringLiteral("PET")));
    EXPECT_FALSE(DeleteRange(owns, 4, QString()));
    EXPECT_TRUE(DeleteRange(QStringLiteral("COLOR"), 3, QStringLiteral("red 'or' blue")));
    expectBox(2, QStringLiteral("Confirm deletion of DOMAIN:\r\nOWNS : PET"), msg::Exclamation,
              QStringLiteral("Confirm Delete"));
    expectBox(3, QStringLiteral("Confirm deletion of RANGE:\r\nOWNS : "), msg::Exclamation,
              QStringLiteral("Confirm Delete"));
    EXPECT_EQ(DomainCount(owns), 1);
    EXPECT_EQ(RangeCount(QStringLiteral("COLOR"), 3), 0);
    // Domains and ranges have no mirror.
    EXPECT_EQ(relations(),
              (QStringList{QStringLiteral("OWNS DOMAIN PET"), QStringLiteral("OWNS RANGE CAT")}));
}

TEST_F(SlotsTest, AttributeSlotsKeepQuotesApostrophesAndColonsInTheirValues)
{
    const QString value = QStringLiteral("it's 'dark': 5:00");
    EXPECT_EQ(AddAttributeSlot(attribute(QStringLiteral("DOG"), QStringLiteral("COLOR"), value)),
              SlotAdd::Added);
    EXPECT_EQ(AddAttributeSlot(attribute(QStringLiteral("DOG"), QStringLiteral("COLOR"),
                                         QStringLiteral("brown"))),
              SlotAdd::Added);
    user.answerMsgBox(msg::OK);
    EXPECT_EQ(AddAttributeSlot(attribute(QStringLiteral("DOG"), QStringLiteral("COLOR"), value)),
              SlotAdd::Exists);
    expectBox(0, QStringLiteral("Attribute-value pair exists."), msg::Critical,
              QStringLiteral("Error"));
    const QStringList items = ReadAttributeSlots(QStringLiteral("DOG"));
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(AttributeSlotCount(QStringLiteral("DOG")), 2);

    user.answerMsgBox(msg::Yes);
    EXPECT_TRUE(DeleteAttributeSlot(QStringLiteral("DOG"), QStringLiteral("COLOR : ") + value));
    expectBox(1, QStringLiteral("Confirm deletion of Attribute:\r\nCOLOR : ") + value,
              msg::Exclamation, QStringLiteral("Confirm Delete"));
    EXPECT_EQ(attributes(), QStringList{QStringLiteral("DOG|COLOR|brown")});

    // A double quote breaks the criterion of the search: the store's failure ends the add
    // before anything is written.
    EXPECT_THROW(AddAttributeSlot(attribute(QStringLiteral("DOG"), QStringLiteral("COLOR"),
                                            QStringLiteral("6\" tall"))),
                 store::StoreError);
    EXPECT_EQ(attributes().size(), 1);

    user.answerMsgBox(msg::OK);
    EXPECT_EQ(AddAttributeSlot(attribute(QStringLiteral("DOG"), QString(), QStringLiteral("x"))),
              SlotAdd::Refused);
    expectBox(2, QStringLiteral("You must select an attribute!"), msg::Exclamation,
              QStringLiteral("Error"));
}

TEST_F(SlotsTest, IsaLinksAddEditAndExist)
{
    isa(QStringLiteral("DOG"), QStringLiteral("THING"));
    const auto added = AddIsaLink(QStringLiteral("DOG"), QStringLiteral("PET"));
    ASSERT_TRUE(added);
    EXPECT_EQ(*added, (QStringList{QStringLiteral("PET"), QStringLiteral("THING")}));
    EXPECT_EQ(IsaLinkCount(QStringLiteral("DOG")), 2);

    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    EXPECT_FALSE(AddIsaLink(QStringLiteral("DOG"), QStringLiteral("PET")));
    EXPECT_FALSE(EditIsaLink(QStringLiteral("DOG"), QStringLiteral("THING")));
    expectBox(0, QStringLiteral("ISA link exists."), msg::Exclamation, ProgramName());
    expectBox(1, QStringLiteral("ISA link exists."), msg::Exclamation, ProgramName());

    // The edit changes the first link in order of parents, whatever was selected.
    const auto edited = EditIsaLink(QStringLiteral("DOG"), QStringLiteral("CAT"));
    ASSERT_TRUE(edited);
    EXPECT_EQ(*edited, (QStringList{QStringLiteral("CAT"), QStringLiteral("THING")}));

    // A concept without a link can't count its links.
    EXPECT_STORE_ERROR(IsaLinkCount(QStringLiteral("THING")), store::err::NoCurrentRecord);
}

TEST_F(SlotsTest, ALinkBelowOnesOwnDescendantIsKeptAndTheWalksEnd)
{
    isa(QStringLiteral("PET"), QStringLiteral("THING"));
    isa(QStringLiteral("DOG"), QStringLiteral("PET"));
    addRow(QStringLiteral("ATTRIBUTES"), {{u"Concept", QStringLiteral("PET")},
                                          {u"Attribute", QStringLiteral("COLOR")},
                                          {u"Value", QStringLiteral("any")}});
    ASSERT_TRUE(AddIsaLink(QStringLiteral("PET"), QStringLiteral("DOG")));

    QStringList ancestors;
    GetAncestors(QStringLiteral("DOG"), ancestors);
    EXPECT_TRUE(ancestors.contains(QStringLiteral("PET")));
    QStringList descendants;
    GetDescendants(QStringLiteral("PET"), descendants);
    EXPECT_TRUE(descendants.contains(QStringLiteral("DOG")));
    Process().rsInherit = db.OpenRecordset(QStringLiteral("Inherit"), store::dbOpenTable);
    Process().rsInherit.SetIndex(QStringLiteral("Attr"));
    ComputeInheritance(QStringLiteral("DOG"), kCumulative, kIncludeAll);
    ComputeInheritance(QStringLiteral("PET"), kExclusive, kIncludeAll);
}

TEST_F(SlotsTest, ADeleteRefillsFromTheFirstRowOnEachPass)
{
    for (const char *parent : {"CAT", "PET", "THING"})
        isa(QStringLiteral("DOG"), QString::fromLatin1(parent));
    QStringList shown;
    const auto keep = [&shown](const QString &parent) {
        shown << parent;
        return shown.size() < 5;
    };
    const auto clear = [&shown] { shown.clear(); };

    user.answerMsgBox(msg::No).answerMsgBox(msg::Yes).answerMsgBox(msg::Yes);
    EXPECT_FALSE(DeleteIsaLink(QStringLiteral("DOG"), QStringLiteral("PET"), clear, keep));
    EXPECT_TRUE(DeleteIsaLink(QStringLiteral("DOG"), QStringLiteral("PET"), clear, keep));
    expectBox(0, QStringLiteral("Confirm deletion of link:\r\nDOG : ISA : PET"), msg::Exclamation,
              QStringLiteral("Confirm Delete"));
    // Two parents left: the first comes back on every pass, until the list stops it.
    EXPECT_EQ(shown, QStringList(5, QStringLiteral("CAT")));
    // One left: the list shows it once and the loop ends.
    EXPECT_TRUE(DeleteIsaLink(QStringLiteral("DOG"), QStringLiteral("CAT"), clear, keep));
    EXPECT_EQ(shown, QStringList{QStringLiteral("THING")});
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM ISA"), u"ISA"),
              QStringList{QStringLiteral("THING")});
    EXPECT_FALSE(DeleteIsaLink(QStringLiteral("DOG"), QString(), clear, keep));
}

TEST_F(SlotsTest, TheDialogsModesAndLists)
{
    EXPECT_EQ(EditRelMode(QStringLiteral("Add Relation")), QStringLiteral("AddRel"));
    EXPECT_EQ(EditRelMode(QStringLiteral("Edit Range")), QStringLiteral("DR"));
    EXPECT_EQ(EditRelMode(QStringLiteral("Edit Attribute")), QStringLiteral("EditAttr"));
    EXPECT_EQ(EditRelMode(QStringLiteral("add relation")), QString());

    // Related concepts and domains: neither relations nor attributes, but the top concept and
    // the fixed relations.
    EXPECT_EQ(
        ReadConceptColumn(EditRelConceptQuery(QStringLiteral("DR"), 4)),
        (QStringList{QStringLiteral("CAT"), QStringLiteral("DOG"), QStringLiteral("DOMAIN"),
                     QStringLiteral("PET"), QStringLiteral("RANGE"), QStringLiteral("THING")}));
    EXPECT_EQ(
        ReadConceptColumn(EditRelConceptQuery(QStringLiteral("AddISA"), 4)),
        (QStringList{QStringLiteral("LIKES"), QStringLiteral("OWNED-BY"), QStringLiteral("OWNS")}));
    EXPECT_EQ(ReadConceptColumn(EditRelConceptQuery(QStringLiteral("EditAttr"), 1)),
              (QStringList{QStringLiteral("CAT"), QStringLiteral("DOG"), QStringLiteral("PET")}));
    EXPECT_EQ(ReadConceptColumn(EditRelRelationQuery(QStringLiteral("AddAttr"))),
              QStringList{QStringLiteral("COLOR")});
    EXPECT_TRUE(EditRelRelationQuery(QStringLiteral("DR")).isEmpty());
    EXPECT_TRUE(EditRelConceptQuery(QString(), 1).isEmpty());
}

} // namespace
