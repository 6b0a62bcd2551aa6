// The concept list, its search box and the concept view, driven as the user drives them.
#include "open_ontology_fixture.h"
#include "ui/frm_part_tree.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

namespace {

using lx::test::AddRow;
using lx::ui::Forms;

// A small zoo: objects under THING, a relation with its domain and range, an attribute with
// its domain and free range, names in two languages and one note.
const QList<lx::test::SampleConcept> Zoo{
    {QStringLiteral("THING"), 100, QStringLiteral("Whatever there is")},
    {QStringLiteral("ANIMAL"), 1, QVariant()},
    {QStringLiteral("BIRD"), 1, QStringLiteral("A feathered animal")},
    {QStringLiteral("SPARROW"), 1, QStringLiteral("A small bird")},
    {QStringLiteral("WING"), 1},
    {QStringLiteral("BEAK"), 1},
    {QStringLiteral("SEED"), 1},
    {QStringLiteral("EATS"), 4, QStringLiteral("Takes as food")},
    {QStringLiteral("HAS-PART"), 4},
    {QStringLiteral("DOMAIN"), 4},
    {QStringLiteral("RANGE"), 4},
    {QStringLiteral("COLOUR"), 3},
};

class ConceptViewTest : public lx::test::OpenOntologyTest {
protected:
    // The zoo in a file of its own, opened by the dialog.
    void openZoo(quint8 listTop = 0, int activeSet = 1)
    {
        const QString path = ontology(QStringLiteral("zoo"));
        lx::test::WriteOntologyFile(path, {QStringLiteral("Zoo"), listTop}, Zoo);
        {
            lx::store::Database db = lx::store::DBEngine::OpenDatabase(path);
            fill(db, activeSet);
            db.Close();
        }
        openByDialog(path);
    }

    static void fill(lx::store::Database &db, int activeSet)
    {
        const auto isa = [&db](const char *child, const char *parent) {
            AddRow(
                db, QStringLiteral("ISA"),
                {{u"Concept", QString::fromLatin1(child)}, {u"ISA", QString::fromLatin1(parent)}});
        };
        isa("ANIMAL", "THING");
        isa("BIRD", "ANIMAL");
        isa("SPARROW", "BIRD");
        for (const char *top :
             {"WING", "BEAK", "SEED", "EATS", "HAS-PART", "DOMAIN", "RANGE", "COLOUR"})
            isa(top, "THING");
        AddRow(db, QStringLiteral("Languages"),
               {{u"Lang_ID", QStringLiteral("en")}, {u"Language", QStringLiteral("English")}});
        AddRow(db, QStringLiteral("Languages"),
               {{u"Lang_ID", QStringLiteral("fr")}, {u"Language", QStringLiteral("French")}});
        for (const auto &[lang, name] : {std::pair{"fr", "oiseau"}, {"en", "bird"}, {"en", "fowl"}})
            AddRow(db, QStringLiteral("Names"),
                   {{u"Concept", QStringLiteral("BIRD")},
                    {u"Lang_ID", QString::fromLatin1(lang)},
                    {u"Name", QString::fromLatin1(name)}});
        const auto rel = [&db](const char *c1, const char *r, bool byDefault, const char *c2) {
            AddRow(db, QStringLiteral("RELATIONS"),
                   {{u"Concept1", QString::fromLatin1(c1)},
                    {u"Rel", QString::fromLatin1(r)},
                    {u"Default", byDefault},
                    {u"Concept2", QString::fromLatin1(c2)}});
        };
        const auto attr = [&db](const char *c, const char *a, bool byDefault, const char *v) {
            AddRow(db, QStringLiteral("ATTRIBUTES"),
                   {{u"Concept", QString::fromLatin1(c)},
                    {u"Attribute", QString::fromLatin1(a)},
                    {u"Default", byDefault},
                    {u"Value", QString::fromLatin1(v)}});
        };
        rel("ANIMAL", "HAS-PART", false, "WING");
        rel("BIRD", "HAS-PART", false, "BEAK");
        rel("BIRD", "EATS", true, "SEED");
        rel("EATS", "DOMAIN", false, "ANIMAL");
        rel("EATS", "RANGE", true, "SEED");
        rel("EATS", "HAS-PART", false, "WING"); // not listed for a relation
        rel("COLOUR", "DOMAIN", false, "BIRD");
        attr("COLOUR", "RANGE", false, "red");
        attr("BIRD", "COLOUR", false, "brown");
        AddRow(db, QStringLiteral("Notes"),
               {{u"Concept", QStringLiteral("BIRD")}, {u"Note", QStringLiteral("Check this")}});
        lx::store::Recordset meta =
            db.OpenRecordset(QStringLiteral("SELECT * FROM MetaData"), lx::store::dbOpenDynaset);
        meta.Edit();
        meta.Collect(u"ActiveSet", activeSet);
        meta.Update();
    }

    void search(const QString &text) { form.txtCptSearch->setText(text); }

    // Rows as the view shows them, whatever kind of view it is.
    static QStringList texts(const QAbstractItemView *list) { return rows(list, 1); }
    static QStringList rows(const QAbstractItemView *view, int columns)
    {
        QStringList out;
        const QAbstractItemModel *model = view->model();
        for (int i = 0; i < model->rowCount(); ++i) {
            QStringList cells;
            for (int c = 0; c < columns; ++c)
                cells << model->index(i, c).data().toString();
            out << cells.join(u'|');
        }
        return out;
    }
    QStringList listed() const
    {
        QStringList out;
        for (int i = 0; i < form.dblConcepts->model()->rowCount(); ++i)
            out << form.dblConcepts->model()->index(i, 0).data().toString();
        return out;
    }
    QString imageOfNote() const { return form.ToolButton(12)->property("imageKey").toString(); }
};

// ---- List modes ----

TEST_F(ConceptViewTest, EveryModeListsItsConceptsInOrderAndShowsTheFirst)
{
    openZoo();
    EXPECT_EQ(form.ListedConcepts, Zoo.size());
    EXPECT_EQ(listed().first(), QStringLiteral("ANIMAL"));
    EXPECT_TRUE(listed().contains(QStringLiteral("EATS")));
    EXPECT_EQ(form.StatusPanel(3)->text(), QStringLiteral("12 listed"));
    EXPECT_EQ(form.ListText(), QStringLiteral("ANIMAL"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("Undefined"));
}

TEST_F(ConceptViewTest, ModeTwoLeavesTheRelationsOut)
{
    openZoo(2);
    EXPECT_EQ(form.ListedConcepts, 8);
    EXPECT_FALSE(listed().contains(QStringLiteral("EATS")));
    EXPECT_TRUE(listed().contains(QStringLiteral("COLOUR")));
    search(QStringLiteral("EATS"));
    EXPECT_NE(form.ListText(), QStringLiteral("EATS"));
}

TEST_F(ConceptViewTest, AnEmptyActiveSubsetClearsTheView)
{
    openZoo(1, 2);
    EXPECT_EQ(form.ListedConcepts, 0);
    EXPECT_EQ(form.dblConcepts->model()->rowCount(), 0);
    EXPECT_TRUE(form.txtDef->toPlainText().isEmpty());
    EXPECT_EQ(form.CurrentConcept, lx::Process().TopConcept);
    EXPECT_EQ(form.StatusPanel(4)->text(), QStringLiteral("12 total"));
}

// ---- Search box ----

TEST_F(ConceptViewTest, SearchFollowsThePrefixAndStaysWhenNothingMatches)
{
    openZoo();
    search(QStringLiteral("B"));
    EXPECT_EQ(form.ListText(), QStringLiteral("BEAK"));
    search(QStringLiteral("BI"));
    EXPECT_EQ(form.ListText(), QStringLiteral("BIRD"));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("BIRD"));

    form.txtDef->setPlainText(QStringLiteral("edited on screen"));
    search(QStringLiteral("BIX"));
    EXPECT_EQ(form.ListText(), QStringLiteral("BIRD"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("A feathered animal"))
        << "the current concept is loaded again";

    search(QString());
    EXPECT_EQ(form.ListText(), QStringLiteral("BIRD"));
}

TEST_F(ConceptViewTest, TypingGoesThroughTheKeyFilterAndFocusSwapsTheHint)
{
    openZoo();
    QFocusEvent in(QEvent::FocusIn);
    QCoreApplication::sendEvent(form.txtCptSearch, &in);
    EXPECT_TRUE(form.txtCptSearch->text().isEmpty());

    // Naming is on in the zoo: identifiers are typed in upper case with hyphens.
    QTest::keyClicks(form.txtCptSearch, QStringLiteral("has p!"));
    EXPECT_EQ(form.txtCptSearch->text(), QStringLiteral("HAS-P"));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("HAS-PART"));

    QFocusEvent out(QEvent::FocusOut);
    QCoreApplication::sendEvent(form.txtCptSearch, &out);
    EXPECT_EQ(form.txtCptSearch->text(), QStringLiteral("Search..."));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("HAS-PART"));
}

TEST_F(ConceptViewTest, ClipboardKeysOfTheSearchBox)
{
    openZoo();
    user.SetClipboardText(QStringLiteral("kept"));
    form.txtCptSearch->clear();
    QTest::keyClick(form.txtCptSearch, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(user.ClipboardText(), QStringLiteral("kept")) << "an empty box copies nothing";

    user.SetClipboardText(QStringLiteral("spar row"));
    QTest::keyClick(form.txtCptSearch, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(form.txtCptSearch->text(), QStringLiteral("SPAR-ROW"));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("SPARROW")) << "the last match before -ROW";

    QTest::keyClick(form.txtCptSearch, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(user.ClipboardText(), QStringLiteral("SPAR-ROW"));

    form.txtCptSearch->clear();
    user.SetClipboardText(QString(300, u'a'));
    QTest::keyClick(form.txtCptSearch, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(form.txtCptSearch->text(), QString(255, u'A'));
}

// ---- Clicks on the list ----

TEST_F(ConceptViewTest, AClickOnTheCurrentRowLoadsNothingAgain)
{
    openZoo();
    search(QStringLiteral("BIRD"));
    form.txtDef->setPlainText(QStringLiteral("edited on screen"));
    Q_EMIT form.dblConcepts->clicked(form.dblConcepts->currentIndex());
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("edited on screen"));

    const QModelIndex sparrow =
        form.dblConcepts->model()->index(int(listed().indexOf(QStringLiteral("SPARROW"))), 0);
    form.dblConcepts->setCurrentIndex(sparrow);
    Q_EMIT form.dblConcepts->clicked(sparrow);
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("SPARROW"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("A small bird"));

    // The arrow keys move the selection as a click does.
    QTest::keyClick(form.dblConcepts, Qt::Key_Up);
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("SEED"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("Undefined"));
}

TEST_F(ConceptViewTest, ARightPressKeepsTheCurrentRowForThePopup)
{
    openZoo();
    form.resize(800, 600);
    form.show();
    search(QStringLiteral("THING"));
    const QModelIndex thing = form.dblConcepts->currentIndex();
    const QModelIndex sparrow =
        form.dblConcepts->model()->index(int(listed().indexOf(QStringLiteral("SPARROW"))), 0);
    form.dblConcepts->scrollTo(sparrow);
    const QPoint onSparrow = form.dblConcepts->visualRect(sparrow).center();
    ASSERT_TRUE(form.dblConcepts->viewport()->rect().contains(onSparrow));

    QTest::mousePress(form.dblConcepts->viewport(), Qt::RightButton, {}, onSparrow);
    QTest::mouseRelease(form.dblConcepts->viewport(), Qt::RightButton, {}, onSparrow);
    EXPECT_EQ(form.dblConcepts->currentIndex(), thing);
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("THING"));
    Q_EMIT form.dblConcepts->customContextMenuRequested(onSparrow);
    EXPECT_FALSE(form.mnuConceptDelete->isEnabled()) << "the popup is the top concept's";
    form.mnuConcept->hide();

    // The left button still picks a row.
    QTest::mouseClick(form.dblConcepts->viewport(), Qt::LeftButton, {}, onSparrow);
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("SPARROW"));
}

TEST_F(ConceptViewTest, SearchMovesTellTheListWhichRowsToRepaint)
{
    openZoo();
    search(QStringLiteral("BEAK"));
    QItemSelectionModel *selection = form.dblConcepts->selectionModel();
    QList<QModelIndex> left;
    QList<QModelIndex> entered;
    QObject::connect(selection, &QItemSelectionModel::selectionChanged,
                     [&](const QItemSelection &on, const QItemSelection &off) {
                         entered << on.indexes();
                         left << off.indexes();
                     });
    search(QStringLiteral("SP"));
    EXPECT_EQ(left, QList<QModelIndex>{form.dblConcepts->model()->index(
                        int(listed().indexOf(QStringLiteral("BEAK"))), 0)});
    EXPECT_EQ(entered, QList<QModelIndex>{form.dblConcepts->currentIndex()});
    EXPECT_EQ(selection->selectedIndexes(), QList<QModelIndex>{form.dblConcepts->currentIndex()});
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("SPARROW"));
}

TEST_F(ConceptViewTest, TheTopConceptCantBeDeletedFromThePopup)
{
    openZoo();
    search(QStringLiteral("THING"));
    Q_EMIT form.dblConcepts->customContextMenuRequested({});
    EXPECT_FALSE(form.mnuConceptDelete->isEnabled());
    form.mnuConcept->hide();
    search(QStringLiteral("BIRD"));
    Q_EMIT form.dblConcepts->customContextMenuRequested({});
    EXPECT_TRUE(form.mnuConceptDelete->isEnabled());
    form.mnuConcept->hide();
}

TEST_F(ConceptViewTest, ADoubleClickFindsTheConceptInTheFullTree)
{
    openZoo();
    search(QStringLiteral("SPARROW"));
    Q_EMIT form.dblConcepts->doubleClicked(form.dblConcepts->currentIndex());
    search(QStringLiteral("BIRD"));
    Q_EMIT form.dblConcepts->doubleClicked(form.dblConcepts->currentIndex());
    ASSERT_EQ(Forms().count(), 2);
    auto *tree = qobject_cast<lx::ui::frmPartTree *>(Forms().list().last());
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->windowTitle(), QStringLiteral("Zoo - Full tree"));
    const QTreeWidgetItem *found = tree->Tree1->currentItem();
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->text(0) + u'<' + found->parent()->text(0), QStringLiteral("BIRD<ANIMAL"));
    // The view stays on the concept.
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("BIRD"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("A feathered animal"));
}

// ---- The view per concept type ----

TEST_F(ConceptViewTest, AnObjectShowsEveryTab)
{
    openZoo();
    search(QStringLiteral("BIRD"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("A feathered animal"));
    EXPECT_EQ(form.StatusPanel(1)->text(), QStringLiteral("General"));
    EXPECT_EQ(form.StatusPanel(2)->text(), QStringLiteral("OBJECT"));
    EXPECT_EQ(imageOfNote(), QStringLiteral("note-in"));
    EXPECT_EQ(texts(form.lstISA), QStringList{QStringLiteral("ANIMAL")});
    EXPECT_EQ(texts(form.lstSubclasses), QStringList{QStringLiteral("SPARROW")});
    EXPECT_EQ(rows(form.lvwNames, 2),
              (QStringList{QStringLiteral("English|bird"), QStringLiteral("English|fowl"),
                           QStringLiteral("French|oiseau")}));
    EXPECT_FALSE(form.lvwNames->topLevelItem(0)->text(2).isEmpty()) << "the Name_ID";
    EXPECT_EQ(form.lblRels->text(), QStringLiteral("LOCAL RELATIONS"));
    EXPECT_EQ(texts(form.lstRels), (QStringList{QStringLiteral("EATS : SEED (by default)"),
                                                QStringLiteral("HAS-PART : BEAK")}));
    EXPECT_EQ(form.lblAttrs->text(), QStringLiteral("LOCAL ATTRIBUTES"));
    EXPECT_EQ(texts(form.lstAttrs), QStringList{QStringLiteral("COLOUR : brown")});
    EXPECT_TRUE(texts(form.lstAncestors).isEmpty()) << "the slow lists are off";

    search(QStringLiteral("SPARROW"));
    EXPECT_EQ(imageOfNote(), QStringLiteral("note-out"));
    EXPECT_TRUE(form.lstRels->count() == 0 && form.lstAttrs->count() == 0);
}

TEST_F(ConceptViewTest, RelationsAndAttributesShowDomainsAndRanges)
{
    openZoo();
    search(QStringLiteral("EATS"));
    EXPECT_EQ(form.StatusPanel(2)->text(), QStringLiteral("RELATION"));
    EXPECT_EQ(form.lblRels->text(), QStringLiteral("LOCAL DOMAINS"));
    EXPECT_EQ(texts(form.lstRels), QStringList{QStringLiteral("ANIMAL")});
    EXPECT_EQ(form.lblAttrs->text(), QStringLiteral("LOCAL RANGES"));
    EXPECT_EQ(texts(form.lstAttrs), QStringList{QStringLiteral("SEED (by default)")});

    search(QStringLiteral("COLOUR"));
    EXPECT_EQ(form.StatusPanel(2)->text(), QStringLiteral("ATTRIBUTE"));
    EXPECT_EQ(texts(form.lstRels), QStringList{QStringLiteral("BIRD")});
    EXPECT_EQ(texts(form.lstAttrs), QStringList{QStringLiteral("red")}) << "from ATTRIBUTES";

    search(QStringLiteral("THING"));
    EXPECT_EQ(form.StatusPanel(2)->text(), QStringLiteral("SPECIAL"));
    EXPECT_EQ(form.lblRels->text(), QStringLiteral("LOCAL RELATIONS"));
    EXPECT_EQ(form.lblAttrs->text(), QStringLiteral("LOCAL ATTRIBUTES"));
    EXPECT_EQ(form.lstSubclasses->count(), 9);
}

TEST_F(ConceptViewTest, NullsAreRepairedInTheFile)
{
    openZoo();
    search(QStringLiteral("ANIMAL"));
    {
        lx::store::Recordset sparrow = lx::Process().OntoDB.OpenRecordset(
            QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = \"SPARROW\""));
        sparrow.Edit();
        sparrow.Collect(u"Subset_ID", QVariant());
        sparrow.Update();
    }
    search(QStringLiteral("SPARROW"));
    EXPECT_EQ(form.StatusPanel(1)->text(), QStringLiteral("General"));
    lx::store::Recordset rs = lx::Process().OntoDB.OpenRecordset(
        QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = \"ANIMAL\" OR Concept = "
                       "\"SPARROW\" ORDER BY Concept"),
        lx::store::dbOpenSnapshot);
    EXPECT_EQ(rs.Value(u"Definition").toString(), QStringLiteral("Undefined"));
    rs.MoveNext();
    EXPECT_EQ(rs.Value(u"Subset_ID").toInt(), 1);
}

TEST_F(ConceptViewTest, SlowListsComeOnRequestUnderTheHourglass)
{
    openZoo();
    search(QStringLiteral("SPARROW"));
    EXPECT_TRUE(user.pointerHistory().isEmpty()) << "a fast view leaves the screen pointer";
    form.chkActiveAnc->setChecked(true);
    EXPECT_EQ(
        texts(form.lstAncestors),
        (QStringList{QStringLiteral("BIRD"), QStringLiteral("ANIMAL"), QStringLiteral("THING")}));
    form.chkActivDesc->setChecked(true);
    search(QStringLiteral("ANIMAL"));
    EXPECT_EQ(texts(form.lstDescendants),
              (QStringList{QStringLiteral("BIRD"), QStringLiteral("SPARROW")}));
    EXPECT_EQ(texts(form.lstAncestors), QStringList{QStringLiteral("THING")});
    EXPECT_EQ(user.pointerHistory(), QList<int>{lx::pointer::Default});
    EXPECT_EQ(form.cursor().shape(), Qt::ArrowCursor);

    form.chkActiveAnc->setChecked(false);
    EXPECT_EQ(form.lstAncestors->model()->rowCount(), 0);
}

TEST_F(ConceptViewTest, DoubleClicksOnTheViewsListsGoThere)
{
    openZoo();
    search(QStringLiteral("BIRD"));
    Q_EMIT form.lstISA->itemDoubleClicked(form.lstISA->item(0));
    form.lstISA->setCurrentRow(0);
    Q_EMIT form.lstISA->itemDoubleClicked(form.lstISA->item(0));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("ANIMAL"));
    EXPECT_EQ(form.ListText(), QStringLiteral("ANIMAL"));

    form.lstSubclasses->setCurrentRow(0);
    Q_EMIT form.lstSubclasses->itemDoubleClicked(form.lstSubclasses->item(0));
    EXPECT_EQ(form.txtCptSearch->text(), QStringLiteral("BIRD"));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("BIRD"));
}

TEST_F(ConceptViewTest, OpenRelationDialogsFollowTheConcept)
{
    openZoo();
    const auto dialog = [](const QString &caption) {
        auto &form = Forms().Load<QWidget>();
        form.setWindowTitle(caption);
        auto *box = new QLineEdit(&form);
        box->setObjectName(QStringLiteral("txtConcept1"));
        return box;
    };
    QLineEdit *relation = dialog(QStringLiteral("Add Relation"));
    QLineEdit *attribute = dialog(QStringLiteral("Edit Attribute"));
    QLineEdit *other = dialog(QStringLiteral("Relations"));
    search(QStringLiteral("SEED"));
    EXPECT_EQ(relation->text(), QStringLiteral("SEED"));
    EXPECT_EQ(attribute->text(), QStringLiteral("SEED"));
    EXPECT_TRUE(other->text().isEmpty());
}

// ---- Inheritance tab ----

TEST_F(ConceptViewTest, InheritanceSwitchesAndTheirList)
{
    openZoo();
    search(QStringLiteral("SPARROW"));
    EXPECT_FALSE(form.fralvwInclude->isEnabled());

    form.optCumulative->setChecked(true);
    EXPECT_TRUE(form.fralvwInclude->isEnabled() && form.chkInhRels->isEnabled());
    EXPECT_EQ(form.lvwInherit->model()->rowCount(), 0) << "nothing included yet";

    form.chkInhRels->setChecked(true);
    EXPECT_EQ(rows(form.lvwInherit, 3), (QStringList{QStringLiteral("EATS|SEED (by default)|BIRD"),
                                                     QStringLiteral("HAS-PART|WING|ANIMAL"),
                                                     QStringLiteral("HAS-PART|BEAK|BIRD")}));
    EXPECT_EQ(form.StatusPanel(1)->text(), QStringLiteral("General"));
    EXPECT_FALSE(form.lvwInherit->isHidden());

    form.optExclusive->setChecked(true);
    EXPECT_EQ(rows(form.lvwInherit, 3), (QStringList{QStringLiteral("EATS|SEED (by default)|BIRD"),
                                                     QStringLiteral("HAS-PART|BEAK|BIRD")}));

    form.lvwInherit->header()->sectionClicked(1);
    EXPECT_EQ(rows(form.lvwInherit, 3),
              (QStringList{QStringLiteral("HAS-PART|BEAK|BIRD"),
                           QStringLiteral("EATS|SEED (by default)|BIRD")}));
    form.optOff->setChecked(true);
    EXPECT_EQ(form.lvwInherit->model()->rowCount(), 0);
    EXPECT_FALSE(form.fralvwInclude->isEnabled() || form.chkInhAttrs->isEnabled());
    EXPECT_EQ(form.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ConceptViewTest, InheritancePopupGoesToItsCellsAndCopies)
{
    openZoo();
    search(QStringLiteral("SPARROW"));
    Q_EMIT form.lvwInherit->customContextMenuRequested({});
    EXPECT_FALSE(form.mnuInherit->isVisible()) << "no rows, no popup";

    form.optCumulative->setChecked(true);
    form.chkInhRels->setChecked(true);
    form.chkInhAttrs->setChecked(true);
    form.mnuInherit->findChild<QAction *>(QStringLiteral("mnuInheritCopy"))->trigger();
    EXPECT_EQ(user.ClipboardText(),
              QStringLiteral("Inherited properties for SPARROW:\r\nInheritance type: "
                             "Cumulative\r\nInclude: Relations and Attributes\r\n\r\n"
                             "Attribute;Value;From\r\n"
                             "COLOUR;brown;BIRD\r\nEATS;SEED (by default);BIRD\r\n"
                             "HAS-PART;WING;ANIMAL\r\nHAS-PART;BEAK;BIRD\r\n"));

    form.lvwInherit->setCurrentIndex(form.lvwInherit->model()->index(2, 0));
    form.mnuInherit->findChild<QAction *>(QStringLiteral("mnuInheritGoToValue"))->trigger();
    EXPECT_EQ(form.txtCptSearch->text(), QStringLiteral("WING"));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("WING"));
}

} // namespace
