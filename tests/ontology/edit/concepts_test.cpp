#include "core/interaction.h"
#include "edit_fixture.h"
#include "ontology/edit/concepts.h"

using namespace lx;

namespace {

const QString kStop = QStringLiteral("is already in use. Please, try again.");

// An ontology under the top concept ALL, with HOUSE below it.
class ConceptsTest : public EditTest {
protected:
    void SetUp() override
    {
        EditTest::SetUp();
        Process().TopConcept = QStringLiteral("ALL");
        addRow(QStringLiteral("CONCEPTS"), {{u"Concept", QStringLiteral("ALL")},
                                            {u"Definition", QStringLiteral("Undefined")},
                                            {u"Type", 100},
                                            {u"Subset_ID", 1}});
        add(QStringLiteral("HOUSE"));
    }
    // An object below `parent`, written as the dialog writes it.
    void add(const QString &id, const QString &parent = QStringLiteral("ALL"), int type = 1)
    {
        NewConceptTexts texts{id, {}, parent, type};
        ASSERT_TRUE(AddConcept(texts, {}));
    }
    QStringList rows(const QString &query, QStringView a, QStringView b)
    {
        QStringList out;
        store::Recordset rs = db.OpenRecordset(query, store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            out << rs.Value(a).toString() + QLatin1Char('>') + rs.Value(b).toString();
        return out;
    }
    QStringList concepts() { return column(QStringLiteral("SELECT * FROM CONCEPTS"), u"Concept"); }
    QStringList isa()
    {
        return rows(QStringLiteral("SELECT * FROM ISA ORDER BY Concept"), u"Concept", u"ISA");
    }
    QStringList inverses()
    {
        return rows(QStringLiteral("SELECT * FROM INVERSES ORDER BY Relation"), u"Relation",
                    u"Inverse");
    }
};

TEST_F(ConceptsTest, AddWritesTheRowAndItsLinkWithTheIdentifierAsDefinition)
{
    addSubset(3, QStringLiteral("Buildings"));
    Process().OntoMeta.ActiveSet = 3;
    NewConceptTexts texts{QStringLiteral("big \"red\" barn"), QStringLiteral("typed, then lost"),
                          QStringLiteral("HOUSE"), 2};
    ASSERT_TRUE(AddConcept(texts, {}));
    EXPECT_EQ(texts.Concept, QStringLiteral("big 'red' barn"));
    EXPECT_EQ(texts.Def, texts.Concept);
    store::Recordset rs = db.OpenRecordset(QStringLiteral("SELECT * FROM CONCEPTS WHERE Type = 2"),
                                           store::dbOpenSnapshot);
    EXPECT_EQ(rs.Value(u"Concept").toString(), texts.Concept);
    EXPECT_EQ(rs.Value(u"definition").toString(), texts.Concept);
    EXPECT_EQ(rs.Value(u"subset_ID").toInt(), 3);
    EXPECT_TRUE(isa().contains(QStringLiteral("big 'red' barn>HOUSE")));

    // Under the naming rule two spellings of one identifier collide.
    Process().OntoMeta.Naming = true;
    NewConceptTexts again{QStringLiteral("Big_red barn"), {}, QStringLiteral("ALL"), 1};
    add(QStringLiteral("BIG-RED-BARN"));
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(AddConcept(again, {}));
    EXPECT_EQ(again.Concept, QStringLiteral("BIG-RED-BARN"));
    EXPECT_EQ(user.calls().last().text, QStringLiteral("The string you have used to name the "
                                                       "concept \r\n(\"BIG-RED-BARN\")\r\n") +
                                            kStop);
    EXPECT_EQ(user.calls().last().title, QStringLiteral("error"));
    EXPECT_EQ(user.calls().last().style, msg::Critical);
}

TEST_F(ConceptsTest, RefusalsComeInOrderAndWriteNothing)
{
    struct Case {
        NewConceptTexts texts;
        QString message;
        int icon;
        QString title;
    };
    const QList<Case> cases{
        {{QString(), {}, QString(), 1},
         QStringLiteral("You must specify a concept name"),
         msg::Exclamation,
         QStringLiteral("Error")},
        {{QStringLiteral("SHED"), {}, QString(), 1},
         QStringLiteral("You must make this concept \r\na CHILD of an existent concept."),
         msg::Exclamation,
         QStringLiteral("Error")},
        // Parent equal to the name beats the duplicate check, though HOUSE exists.
        {{QStringLiteral("HOUSE"), {}, QStringLiteral("HOUSE"), 1},
         QStringLiteral("A concept can't have itself as its superordinate concept."),
         msg::Information,
         QStringLiteral("Error")},
        // Any case, any subset.
        {{QStringLiteral("house"), {}, QStringLiteral("ALL"), 1},
         QStringLiteral("The string you have used to name the concept \r\n(\"house\")\r\n") + kStop,
         msg::Critical,
         QStringLiteral("error")},
    };
    const QStringList before = concepts();
    for (Case c : cases) {
        user.answerMsgBox(msg::OK);
        EXPECT_FALSE(AddConcept(c.texts, {})) << c.message.toStdString();
        EXPECT_EQ(user.calls().last().text, c.message);
        EXPECT_EQ(msg::Icon(user.calls().last().style), c.icon);
        EXPECT_EQ(user.calls().last().title, c.title);
    }
    EXPECT_EQ(concepts(), before);
}

TEST_F(ConceptsTest, ARelationComesWithItsInverseAsAPair)
{
    NewConceptTexts texts{QStringLiteral("OWNS"), {}, QStringLiteral("ALL"), ctRelation};
    ASSERT_TRUE(AddConcept(texts, [] {
        return InverseTexts{QStringLiteral("OWNED-BY"), QStringLiteral("ALL"), QString()};
    }));
    store::Recordset rs =
        db.OpenRecordset(QStringLiteral("SELECT * FROM CONCEPTS WHERE Type = 4 ORDER BY Concept"),
                         store::dbOpenSnapshot);
    EXPECT_EQ(rs.Value(u"Concept").toString(), QStringLiteral("OWNED-BY"));
    EXPECT_EQ(rs.Value(u"definition").toString(), QStringLiteral("Undefined"));
    rs.MoveNext();
    EXPECT_EQ(rs.Value(u"definition").toString(), QStringLiteral("OWNS"));
    EXPECT_EQ(isa(), (QStringList{QStringLiteral("HOUSE>ALL"), QStringLiteral("OWNED-BY>ALL"),
                                  QStringLiteral("OWNS>ALL")}));
    EXPECT_EQ(inverses(),
              (QStringList{QStringLiteral("OWNED-BY>OWNS"), QStringLiteral("OWNS>OWNED-BY")}));
}

TEST_F(ConceptsTest, AnInverseRefusedWritesNothingButAStoreRefusalLeavesTheRelation)
{
    const QStringList before = concepts();
    const QList<std::pair<InverseTexts, QString>> refusals{
        {{}, QStringLiteral("You must specify an inverse relation")}, // the dialog cancelled
        {{QStringLiteral("HAS"), QString(), QString()},
         QStringLiteral("You must specify a parent for the new relation")},
        {{QStringLiteral("OWNS"), QStringLiteral("ALL"), QString()},
         QStringLiteral("A relation and its inverse can't have the same name!")},
    };
    for (const auto &[inverse, message] : refusals) {
        NewConceptTexts texts{QStringLiteral("OWNS"), {}, QStringLiteral("ALL"), ctRelation};
        user.answerMsgBox(msg::OK);
        EXPECT_FALSE(AddConcept(texts, [&] { return inverse; }));
        EXPECT_EQ(user.calls().last().text, message);
        EXPECT_EQ(user.calls().last().style, msg::Exclamation);
    }
    EXPECT_EQ(concepts(), before);

    // An inverse that exists already is refused by the store after the relation's row.
    NewConceptTexts texts{QStringLiteral("OWNS"), {}, QStringLiteral("ALL"), ctRelation};
    EXPECT_THROW(
        AddConcept(
            texts,
            [] {
                return InverseTexts{QStringLiteral("HOUSE"), QStringLiteral("ALL"), QString()};
            }),
        store::StoreError);
    EXPECT_TRUE(concepts().contains(QStringLiteral("OWNS")));
    EXPECT_FALSE(isa().join(u',').contains(QStringLiteral("OWNS")));
    EXPECT_TRUE(inverses().isEmpty());
}

TEST_F(ConceptsTest, RenameCascadesToEveryTableAndRefusesAnIdentifierInUse)
{
    NewConceptTexts rel{QStringLiteral("OWNS"), {}, QStringLiteral("ALL"), ctRelation};
    ASSERT_TRUE(AddConcept(rel, [] {
        return InverseTexts{QStringLiteral("OWNED-BY"), QStringLiteral("ALL"), QString()};
    }));
    add(QStringLiteral("SHED"), QStringLiteral("HOUSE"));
    addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("HOUSE")},
                                         {u"Rel", QStringLiteral("OWNS")},
                                         {u"Concept2", QStringLiteral("SHED")}});
    addRow(QStringLiteral("ATTRIBUTES"),
           {{u"Concept", QStringLiteral("HOUSE")}, {u"Attribute", QStringLiteral("OWNS")}});
    addRow(QStringLiteral("Names"), {{u"Concept", QStringLiteral("HOUSE")},
                                     {u"Lang_ID", QStringLiteral("en")},
                                     {u"Name", QStringLiteral("house")}});
    addRow(QStringLiteral("Notes"),
           {{u"Concept", QStringLiteral("HOUSE")}, {u"Note", QStringLiteral("n")}});

    EXPECT_TRUE(RenameConcept(QStringLiteral("HOUSE"), QStringLiteral("HOME")));
    EXPECT_TRUE(RenameConcept(QStringLiteral("OWNS"), QStringLiteral("HAS")));
    EXPECT_EQ(isa(), (QStringList{QStringLiteral("HAS>ALL"), QStringLiteral("HOME>ALL"),
                                  QStringLiteral("OWNED-BY>ALL"), QStringLiteral("SHED>HOME")}));
    EXPECT_EQ(inverses(),
              (QStringList{QStringLiteral("HAS>OWNED-BY"), QStringLiteral("OWNED-BY>HAS")}));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM RELATIONS WHERE Concept2 = 'SHED'"), u"Concept1",
                   u"Rel"),
              QStringList{QStringLiteral("HOME>HAS")});
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM ATTRIBUTES"), u"Concept", u"Attribute"),
              QStringList{QStringLiteral("HOME>HAS")});
    for (const char *table : {"Names", "Notes"})
        EXPECT_EQ(column(QStringLiteral("SELECT * FROM %1").arg(QLatin1String(table)), u"Concept"),
                  QStringList{QStringLiteral("HOME")});

    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(RenameConcept(QStringLiteral("SHED"), QStringLiteral("home")));
    EXPECT_EQ(user.calls().last().text, QStringLiteral("Concept:\r\n(\"home\")\r\n") + kStop);
    EXPECT_TRUE(concepts().contains(QStringLiteral("SHED")));
}

class DeleteTest : public ConceptsTest {
protected:
    void SetUp() override
    {
        ConceptsTest::SetUp();
        Process().OntoPath = QStringLiteral("open.ont");
        editor.rsInverses = db.OpenRecordset(QStringLiteral("INVERSES"), store::dbOpenTable);
        editor.rsInverses.SetIndex(QStringLiteral("Relation"));
    }
    std::optional<DeletedConcept> remove(const QString &id, int type, int answers = 1)
    {
        editor.CurrentConcept = id;
        editor.CurrentType = quint8(type);
        for (int i = 0; i < answers; ++i)
            user.answerMsgBox(msg::Yes);
        std::optional<DeletedConcept> deleted = DeleteConcept(editor);
        DeleteOrphanConcepts([this](const QString &orphan) { orphans << orphan; });
        return deleted;
    }

    WindowlessEditor editor;
    QStringList orphans;
};

TEST_F(DeleteTest, ASubtreeGoesUnlessAnotherParentHoldsIt)
{
    add(QStringLiteral("ROOM"), QStringLiteral("HOUSE"));
    add(QStringLiteral("BED"), QStringLiteral("ROOM"));
    add(QStringLiteral("SHED"));
    add(QStringLiteral("DOOR"), QStringLiteral("ROOM"));
    addRow(QStringLiteral("ISA"),
           {{u"Concept", QStringLiteral("DOOR")}, {u"ISA", QStringLiteral("SHED")}});

    const std::optional<DeletedConcept> deleted = remove(QStringLiteral("HOUSE"), 1);
    ASSERT_TRUE(deleted);
    EXPECT_EQ(deleted->Identifier, QStringLiteral("HOUSE"));
    EXPECT_TRUE(deleted->Inverse.isEmpty());
    EXPECT_EQ(user.calls().first().text,
              QStringLiteral(" Are you sure you want to delete this concept?\r\nHOUSE\r\nAll "
                             "references to this concept will be deleted as well. Proceed?"));
    EXPECT_EQ(user.calls().first().title, QStringLiteral("Confirm Deletion"));
    orphans.sort();
    EXPECT_EQ(orphans, (QStringList{QStringLiteral("BED"), QStringLiteral("ROOM")}));
    QStringList left = concepts();
    left.sort();
    EXPECT_EQ(left,
              (QStringList{QStringLiteral("ALL"), QStringLiteral("DOOR"), QStringLiteral("SHED")}));
    EXPECT_EQ(isa(), (QStringList{QStringLiteral("DOOR>SHED"), QStringLiteral("SHED>ALL")}));
}

TEST_F(DeleteTest, ARelationTakesItsInverseAndTheSlotsOfBoth)
{
    NewConceptTexts rel{QStringLiteral("OWNS"), {}, QStringLiteral("ALL"), ctRelation};
    ASSERT_TRUE(AddConcept(rel, [] {
        return InverseTexts{QStringLiteral("OWNED-BY"), QStringLiteral("ALL"), QString()};
    }));
    add(QStringLiteral("SHED"));
    addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("HOUSE")},
                                         {u"Rel", QStringLiteral("OWNS")},
                                         {u"Concept2", QStringLiteral("SHED")}});
    addRow(QStringLiteral("RELATIONS"), {{u"Concept1", QStringLiteral("SHED")},
                                         {u"Rel", QStringLiteral("OWNED-BY")},
                                         {u"Concept2", QStringLiteral("HOUSE")}});

    const std::optional<DeletedConcept> deleted = remove(QStringLiteral("OWNS"), ctRelation, 2);
    ASSERT_TRUE(deleted);
    EXPECT_EQ(deleted->Inverse, QStringLiteral("OWNED-BY"));
    EXPECT_EQ(user.calls().last().text,
              QStringLiteral("This concept is a relation. Its inverse relation will also be "
                             "deleted. Proceed?"));
    EXPECT_FALSE(concepts().contains(QStringLiteral("OWNED-BY")));
    EXPECT_TRUE(inverses().isEmpty());
    EXPECT_TRUE(
        column(QStringLiteral("SELECT * FROM RELATIONS WHERE Rel <> 'DOMAIN'"), u"Rel").isEmpty());
}

TEST_F(DeleteTest, NoStopsAndTheTopIsRefusedOnlyAfterYes)
{
    const QStringList before = concepts();
    user.answerMsgBox(msg::No);
    editor.CurrentConcept = QStringLiteral("HOUSE");
    editor.CurrentType = 1;
    EXPECT_FALSE(DeleteConcept(editor));

    editor.CurrentConcept = QStringLiteral("ALL");
    editor.CurrentType = ctTop;
    user.answerMsgBox(msg::Yes).answerMsgBox(msg::OK);
    EXPECT_FALSE(DeleteConcept(editor));
    EXPECT_EQ(user.calls().size(), 3);
    EXPECT_EQ(user.calls().last().text,
              QStringLiteral("This is the top-level concept.\r\nIt cannot be deleted."));
    EXPECT_EQ(concepts(), before);

    editor.CurrentConcept.clear();
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(DeleteConcept(editor));
    EXPECT_EQ(user.calls().last().text, QStringLiteral("You must select a concept in the list"));
}

} // namespace
