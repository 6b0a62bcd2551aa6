#include "names_options_fixture.h"
#include "ui/frm_edit_rel.h"

#include <QCheckBox>
#include <QLabel>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStringListModel>

using namespace lx;
using namespace lx::test;

namespace {

QStringList Items(const QListWidget *list)
{
    QStringList items;
    for (int i = 0; i < list->count(); ++i)
        items << list->item(i)->text();
    return items;
}

QStringList Listed(const QListView *list)
{
    return qobject_cast<QStringListModel *>(list->model())->stringList();
}

void SelectItem(QListWidget *list, const QString &text)
{
    const QList<QListWidgetItem *> found = list->findItems(text, Qt::MatchExactly);
    ASSERT_FALSE(found.isEmpty()) << text.toStdString();
    list->setCurrentItem(found.first());
}

ui::frmEditRel *SlotDialog(QWidget *shown)
{
    auto *dialog = qobject_cast<ui::frmEditRel *>(shown);
    EXPECT_NE(dialog, nullptr);
    return dialog;
}

QAction *Item(const QMenu *menu, const char *name)
{
    return menu->findChild<QAction *>(QLatin1String(name));
}

// The sample ontology with its hierarchy, a second object pair, the relation pair EATS and
// EATEN-BY, the attribute COLOR and the fixed relations of domains and ranges.
class SlotCommandsTest : public NamesOptionsTest {
protected:
    void SetUp() override
    {
        const QString path = sample(QStringLiteral("Zoo"));
        store::Database db = store::DBEngine::OpenDatabase(path);
        for (const auto &[id, type] : {std::pair{"CAT", 1},
                                       {"DOG", 1},
                                       {"EATEN-BY", 4},
                                       {"COLOR", 3},
                                       {"DOMAIN", 14},
                                       {"RANGE", 14}})
            AddRow(db, QStringLiteral("CONCEPTS"),
                   {{u"Concept", QString::fromLatin1(id)}, {u"Type", type}, {u"Subset_ID", 1}});
        for (const auto &[child, parent] : {std::pair{"ANIMAL", "THING"},
                                            {"BIRD", "ANIMAL"},
                                            {"CAT", "ANIMAL"},
                                            {"DOG", "ANIMAL"}})
            AddRow(
                db, QStringLiteral("ISA"),
                {{u"Concept", QString::fromLatin1(child)}, {u"ISA", QString::fromLatin1(parent)}});
        for (const auto &[relation, inverse] :
             {std::pair{"EATS", "EATEN-BY"}, std::pair{"EATEN-BY", "EATS"}})
            AddRow(db, QStringLiteral("INVERSES"),
                   {{u"Relation", QString::fromLatin1(relation)},
                    {u"Inverse", QString::fromLatin1(inverse)}});
        db.Close();
        openByDialog(path);
        goTo(QStringLiteral("BIRD"));
    }
    void goTo(const QString &id)
    {
        form.GoToConcept(id);
        ASSERT_EQ(form.CurrentConcept, id);
    }
    QStringList relations()
    {
        QStringList rows;
        store::Recordset rs = Process().OntoDB.OpenRecordset(
            QStringLiteral("SELECT * FROM RELATIONS ORDER BY Relation_ID"), store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            rows << rs.Value(u"Concept1").toString() + QLatin1Char(' ') +
                        rs.Value(u"Rel").toString() + QLatin1Char(' ') +
                        rs.Value(u"Concept2").toString();
        return rows;
    }
    static qsizetype slotDialogs() { return ui::Forms().WithCaptionLike(u"*").size() - 1; }
};

TEST_F(SlotCommandsTest, AddRelationWritesThePairAndKeepsItsDialogForTheNextUse)
{
    user.onModal([](QWidget *shown) {
        ui::frmEditRel *dialog = SlotDialog(shown);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Add Relation"));
        EXPECT_EQ(dialog->Mode, QStringLiteral("AddRel"));
        EXPECT_EQ(dialog->txtConcept1->text(), QStringLiteral("BIRD"));
        EXPECT_TRUE(dialog->txtConcept1->isReadOnly());
        EXPECT_EQ(Listed(dialog->dblRels),
                  (QStringList{QStringLiteral("EATEN-BY"), QStringLiteral("EATS")}));
        // Neither relations nor attributes are related concepts.
        EXPECT_FALSE(Listed(dialog->dblConcepts).contains(QStringLiteral("COLOR")));
        EXPECT_FALSE(Listed(dialog->dblConcepts).contains(QStringLiteral("EATS")));
        dialog->SelectRelation(QStringLiteral("EATS"));
        dialog->SelectRelated(QStringLiteral("CAT"));
        dialog->cmdAdd->click();
    });
    Item(form.mnuRel, "mnuRelAdd")->trigger();

    EXPECT_EQ(relations(),
              (QStringList{QStringLiteral("BIRD EATS CAT"), QStringLiteral("CAT EATEN-BY BIRD")}));
    EXPECT_EQ(Items(form.lstRels), QStringList{QStringLiteral("EATS : CAT")});
    ui::frmEditRel &kept = ui::frmEditRel::DefaultInstance();
    EXPECT_FALSE(kept.isVisible());
    EXPECT_TRUE(kept.txtConcept1->text().isEmpty());

    // Hidden with its concept box empty, the dialog still hears of new concepts, and can't
    // find the type of no concept.
    user.answerMsgBox(msg::OK);
    ui::RefreshDialogs([](const QString &caption) { return caption == "Add Relation"; },
                       QStringLiteral("Concept"));
    EXPECT_EQ(user.calls().last().text,
              QStringLiteral("Critical error. Error code LX010. Please Report."));

    // The slot shows on the other side as its inverse; the same dialog serves there.
    goTo(QStringLiteral("CAT"));
    EXPECT_EQ(Items(form.lstRels), QStringList{QStringLiteral("EATEN-BY : BIRD")});
    user.onModal([&kept](QWidget *shown) {
        EXPECT_EQ(shown, &kept);
        EXPECT_EQ(kept.txtConcept1->text(), QStringLiteral("CAT"));
        kept.cmdClose->click();
    });
    Item(form.mnuRel, "mnuRelAdd")->trigger();
    EXPECT_EQ(relations().size(), 2);
}

TEST_F(SlotCommandsTest, DeleteAndGoToTakeTheSelectedItemApart)
{
    AddRow(Process().OntoDB, QStringLiteral("RELATIONS"),
           {{u"Concept1", QStringLiteral("BIRD")},
            {u"Rel", QStringLiteral("EATS")},
            {u"Concept2", QStringLiteral("CAT")}});
    AddRow(Process().OntoDB, QStringLiteral("RELATIONS"),
           {{u"Concept1", QStringLiteral("CAT")},
            {u"Rel", QStringLiteral("EATEN-BY")},
            {u"Concept2", QStringLiteral("BIRD")}});
    form.LoadSlots();
    SelectItem(form.lstRels, QStringLiteral("EATS : CAT"));
    form.lstRels_MouseUp();
    form.mnuRel->hide();
    EXPECT_TRUE(Item(form.mnuRel, "mnuRelDelete")->isEnabled());
    EXPECT_TRUE(form.mnuRelGoTo->isEnabled());

    Item(form.mnuRelGoTo, "mnuRelGoToRel")->trigger();
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("EATS"));
    goTo(QStringLiteral("BIRD"));
    SelectItem(form.lstRels, QStringLiteral("EATS : CAT"));
    Q_EMIT form.lstRels->itemDoubleClicked(form.lstRels->currentItem());
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("CAT"));

    goTo(QStringLiteral("BIRD"));
    SelectItem(form.lstRels, QStringLiteral("EATS : CAT"));
    user.answerMsgBox(msg::Yes);
    Item(form.mnuRel, "mnuRelDelete")->trigger();
    EXPECT_TRUE(relations().isEmpty());
    EXPECT_TRUE(Items(form.lstRels).isEmpty());

    // No popup at all on the top concept.
    goTo(QStringLiteral("THING"));
    Item(form.mnuRel, "mnuRelDelete")->setEnabled(true);
    form.lstRels_MouseUp();
    EXPECT_FALSE(form.mnuRel->isVisible());
}

TEST_F(SlotCommandsTest, IsaLinksThroughTheirDialogs)
{
    user.onModal([](QWidget *shown) {
        ui::frmEditRel *dialog = SlotDialog(shown);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Add ISA link"));
        EXPECT_EQ(dialog->txtISA->text(), QStringLiteral("ISA"));
        EXPECT_FALSE(dialog->txtISA->isHidden());
        EXPECT_TRUE(dialog->dblRels->isHidden());
        EXPECT_EQ(dialog->cmdClose->text(), QStringLiteral("&Cancel"));
        // Only concepts of the concept's own type; itself is refused by the dialog.
        EXPECT_EQ(Listed(dialog->dblConcepts),
                  (QStringList{QStringLiteral("ANIMAL"), QStringLiteral("BIRD"),
                               QStringLiteral("CAT"), QStringLiteral("DOG")}));
        dialog->SelectRelated(QStringLiteral("BIRD"));
        dialog->cmdAdd->click();
        EXPECT_EQ(dialog->txtConcept1->text(), QStringLiteral("BIRD")); // refused: still open
        dialog->SelectRelated(QStringLiteral("CAT"));
        dialog->cmdAdd->click();
    });
    user.answerMsgBox(msg::OK);
    const qsizetype before = user.calls().size();
    Item(form.mnuISA, "mnuISAAdd")->trigger();
    EXPECT_EQ(user.calls()[before + 1].text,
              QStringLiteral("No relation can hold between a concept and itself!"));
    EXPECT_EQ(Items(form.lstISA), (QStringList{QStringLiteral("ANIMAL"), QStringLiteral("CAT")}));
    EXPECT_EQ(slotDialogs(), 0);

    // The edit changes the first link, whichever is selected.
    SelectItem(form.lstISA, QStringLiteral("CAT"));
    form.lstISA_MouseUp();
    form.mnuISA->hide();
    EXPECT_TRUE(Item(form.mnuISA, "mnuISADelete")->isEnabled());
    user.onModal([](QWidget *shown) {
        ui::frmEditRel *dialog = SlotDialog(shown);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->cmdAdd->text(), QStringLiteral("&Modify"));
        dialog->SelectRelated(QStringLiteral("DOG"));
        dialog->cmdAdd->click();
    });
    Item(form.mnuISA, "mnuISAEdit")->trigger();
    EXPECT_EQ(Items(form.lstISA), (QStringList{QStringLiteral("CAT"), QStringLiteral("DOG")}));

    // A cancel changes nothing and leaves no dialog behind.
    user.onModal([](QWidget *shown) { SlotDialog(shown)->cmdClose->click(); });
    Item(form.mnuISA, "mnuISAAdd")->trigger();
    EXPECT_EQ(Items(form.lstISA), (QStringList{QStringLiteral("CAT"), QStringLiteral("DOG")}));
    EXPECT_EQ(slotDialogs(), 0);

    SelectItem(form.lstISA, QStringLiteral("DOG"));
    user.answerMsgBox(msg::Yes);
    Item(form.mnuISA, "mnuISADelete")->trigger();
    EXPECT_EQ(Items(form.lstISA), QStringList{QStringLiteral("CAT")});
    // With one parent left the delete is not offered; the edit is, on a selection.
    SelectItem(form.lstISA, QStringLiteral("CAT"));
    form.lstISA_MouseUp();
    form.mnuISA->hide();
    EXPECT_FALSE(Item(form.mnuISA, "mnuISADelete")->isEnabled());
    EXPECT_TRUE(Item(form.mnuISA, "mnuISAEdit")->isEnabled());

    // The top concept has no link to count: the store's failure ends the command.
    goTo(QStringLiteral("THING"));
    user.answerMsgBox(msg::OK);
    Q_EMIT form.lstISA->customContextMenuRequested({});
    EXPECT_TRUE(user.calls().last().text.contains(QStringLiteral("3021")));
    EXPECT_EQ(user.calls().last().icon, msg::Critical);
}

TEST_F(SlotCommandsTest, DomainsAndRangesOfRelationsAndAttributes)
{
    goTo(QStringLiteral("EATS"));
    EXPECT_EQ(form.lblRels->text(), QStringLiteral("LOCAL DOMAINS"));
    user.onModal([](QWidget *shown) {
        ui::frmEditRel *dialog = SlotDialog(shown);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->Mode, QStringLiteral("DR"));
        EXPECT_EQ(dialog->txtISA->text(), QStringLiteral("DOMAIN"));
        EXPECT_TRUE(dialog->chkDefault->isHidden());
        EXPECT_TRUE(Listed(dialog->dblConcepts).contains(QStringLiteral("THING")));
        dialog->SelectRelated(QStringLiteral("ANIMAL"));
        dialog->cmdAdd->click();
    });
    Item(form.mnuDomain, "mnuDomainAdd")->trigger();
    EXPECT_EQ(Items(form.lstRels), QStringList{QStringLiteral("ANIMAL")});

    // A relation's range is a concept of the list.
    user.onModal([](QWidget *shown) {
        ui::frmEditRel *dialog = SlotDialog(shown);
        ASSERT_NE(dialog, nullptr);
        EXPECT_FALSE(dialog->dblConcepts->isHidden());
        EXPECT_TRUE(dialog->txtValue->isHidden());
        EXPECT_TRUE(dialog->chkNothing->isHidden());
        dialog->SelectRelated(QStringLiteral("BIRD"));
        dialog->cmdAdd->click();
    });
    Item(form.mnuRange, "mnuRangeAdd")->trigger();
    EXPECT_EQ(Items(form.lstAttrs), QStringList{QStringLiteral("BIRD")});

    // A double click on a domain goes to it, whole.
    SelectItem(form.lstRels, QStringLiteral("ANIMAL"));
    Q_EMIT form.lstRels->itemDoubleClicked(form.lstRels->currentItem());
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("ANIMAL"));

    // An attribute's range is a typed value.
    goTo(QStringLiteral("COLOR"));
    user.onModal([](QWidget *shown) {
        ui::frmEditRel *dialog = SlotDialog(shown);
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(dialog->dblConcepts->isHidden());
        EXPECT_FALSE(dialog->txtValue->isHidden());
        dialog->txtValue->setPlainText(QStringLiteral("red, green or 'blue'"));
        dialog->cmdAdd->click();
    });
    Item(form.mnuRange, "mnuRangeAdd")->trigger();
    EXPECT_EQ(Items(form.lstAttrs), QStringList{QStringLiteral("red, green or 'blue'")});
    SelectItem(form.lstAttrs, QStringLiteral("red, green or 'blue'"));
    user.answerMsgBox(msg::Yes);
    Item(form.mnuRange, "mnuRangeDelete")->trigger();
    EXPECT_TRUE(Items(form.lstAttrs).isEmpty());
}

TEST_F(SlotCommandsTest, TheAttributeDialogStaysOpenAndFollowsTheConcept)
{
    Item(form.mnuAttr, "mnuAttrAdd")->trigger();
    auto *dialog = ui::Forms().Find<ui::frmEditRel>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->isModal());
    EXPECT_EQ(dialog->lblRels->text(), QStringLiteral("ATTRIBUTE"));
    EXPECT_TRUE(dialog->dblConcepts->isHidden());
    EXPECT_TRUE(dialog->chkDefault->isHidden());
    EXPECT_EQ(Listed(dialog->dblRels), QStringList{QStringLiteral("COLOR")});

    goTo(QStringLiteral("CAT"));
    EXPECT_EQ(dialog->txtConcept1->text(), QStringLiteral("CAT"));
    dialog->SelectRelation(QStringLiteral("COLOR"));
    dialog->txtValue->setPlainText(QStringLiteral("it's grey: mostly"));
    dialog->cmdAdd->click();
    EXPECT_EQ(Items(form.lstAttrs), QStringList{QStringLiteral("COLOR : it's grey: mostly")});
    EXPECT_FALSE(dialog->isVisible());

    // A value with a double quote breaks the search: the add ends with the store's failure.
    dialog->show();
    dialog->txtConcept1->setText(QStringLiteral("CAT"));
    dialog->txtValue->setPlainText(QStringLiteral("6\" tall"));
    user.answerMsgBox(msg::OK);
    dialog->cmdAdd->click();
    EXPECT_EQ(user.calls().last().icon, msg::Critical);
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM ATTRIBUTES"), u"Value"),
              QStringList{QStringLiteral("it's grey: mostly")});

    SelectItem(form.lstAttrs, QStringLiteral("COLOR : it's grey: mostly"));
    form.lstAttrs_MouseUp();
    form.mnuAttr->hide();
    EXPECT_TRUE(Item(form.mnuAttr, "mnuAttrDelete")->isEnabled());
    user.answerMsgBox(msg::Yes);
    Item(form.mnuAttr, "mnuAttrDelete")->trigger();
    EXPECT_TRUE(Items(form.lstAttrs).isEmpty());

    // A new attribute concept reaches the open dialog's list.
    AddRow(Process().OntoDB, QStringLiteral("CONCEPTS"),
           {{u"Concept", QStringLiteral("SIZE")}, {u"Type", 3}, {u"Subset_ID", 1}});
    ui::RefreshDialogs([](const QString &caption) { return caption == "Add Attribute"; },
                       QStringLiteral("Concept"));
    EXPECT_EQ(Listed(dialog->dblRels),
              (QStringList{QStringLiteral("COLOR"), QStringLiteral("SIZE")}));
    dialog->cmdClose->click();
    EXPECT_EQ(slotDialogs(), 0);
}

} // namespace
