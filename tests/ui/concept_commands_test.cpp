#include "names_options_fixture.h"
#include "termbase/store/schema.h"
#include "ui/frm_names.h"
#include "ui/frm_new_concept.h"
#include "ui/frm_tb_editor.h"

#include <QListView>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QStringListModel>
#include <QTest>

using namespace lx;
using namespace lx::test;

namespace {

// The sample ontology with its IS-A links, linked to two termbase files, and a termbase editor
// that records what it hears.
class ConceptCommandsTest : public NamesOptionsTest {
protected:
    void SetUp() override
    {
        openSample();
        for (const auto &[child, parent] :
             {std::pair{"ANIMAL", "THING"}, {"BIRD", "ANIMAL"}, {"EATS", "THING"}})
            AddRow(
                Process().OntoDB, QStringLiteral("ISA"),
                {{u"Concept", QString::fromLatin1(child)}, {u"ISA", QString::fromLatin1(parent)}});
        for (const QString &name : {QStringLiteral("a.ltb"), QStringLiteral("b.ltb")}) {
            const QString path = cwd.filePath(name);
            store::Database tb =
                store::DBEngine::Workspaces(0).CreateDatabase(path, store::dbLangGeneral);
            BuildTermbaseTables(tb);
            AddRow(tb, QStringLiteral("CONCEPTS"), {{u"Concept", QStringLiteral("BIRD")}});
            tb.Close();
            termbases << path;
            AddRow(Process().OntoDB, QStringLiteral("TermBases"), {{u"DBName", path}});
        }
        editor = &ui::Forms().Load<ui::frmTBEDitor>();
        editor->setWindowTitle(QStringLiteral("TermBase Editor"));
        QObject::connect(editor->lblOntoComm, &SignalLabel::captionChanged,
                         [this](const QString &caption) {
                             if (!caption.isEmpty())
                                 heard << caption;
                         });
    }

    // The concepts of each linked file, joined.
    QStringList linked() const
    {
        QStringList out;
        for (const QString &path : termbases) {
            store::Database tb = store::DBEngine::OpenDatabase(path);
            QStringList ids;
            store::Recordset rs = tb.OpenRecordset(
                QStringLiteral("SELECT * FROM CONCEPTS ORDER BY Concept"), store::dbOpenSnapshot);
            for (; !rs.Eof(); rs.MoveNext())
                ids << rs.Value(u"Concept").toString();
            rs.Close();
            tb.Close();
            out << ids.join(u',');
        }
        return out;
    }

    ui::frmNewConcept &addDialog()
    {
        form.mnuConceptAdd->trigger();
        ui::frmNewConcept *dialog = ui::Forms().Find<ui::frmNewConcept>();
        EXPECT_NE(dialog, nullptr);
        return *dialog;
    }

    QStringList termbases;
    ui::frmTBEDitor *editor = nullptr;
    QStringList heard;
};

TEST_F(ConceptCommandsTest, AnAddReachesTheListTheNamesAndEveryLinkedFile)
{
    ui::frmNewConcept &dialog = addDialog();
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Add Concept"));
    EXPECT_FALSE(dialog.isModal());
    EXPECT_TRUE(dialog.optCType[1]->isChecked());
    EXPECT_EQ(
        qobject_cast<QStringListModel *>(dialog.dblParents->model())->stringList(),
        (QStringList{QStringLiteral("ANIMAL"), QStringLiteral("BIRD"), QStringLiteral("THING")}));

    dialog.txtConcept->setText(QStringLiteral("HORSE"));
    dialog.txtDef->setPlainText(QStringLiteral("typed, then lost"));
    dialog.SelectParent(QStringLiteral("ANIMAL"));
    dialog.cmdAdd->click();

    EXPECT_EQ(column(QStringLiteral("SELECT * FROM ISA WHERE Concept = 'HORSE'"), u"ISA"),
              QStringList{QStringLiteral("ANIMAL")});
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM Names WHERE Concept = 'HORSE'"), u"Name"),
              QStringList{QStringLiteral("horse")});
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("HORSE"));
    EXPECT_EQ(form.ListText(), QStringLiteral("HORSE"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("HORSE"));
    EXPECT_EQ(linked(), (QStringList(2, QStringLiteral("BIRD,HORSE"))));
    EXPECT_EQ(heard, QStringList{QStringLiteral("1HORSE")});
    // The dialog stays open for the next one, its boxes empty.
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(dialog.txtConcept->text().isEmpty());
}

TEST_F(ConceptCommandsTest, ARelationAsksForItsInverseInASecondDialog)
{
    ui::frmNewConcept &dialog = addDialog();
    dialog.optCType[4]->click();
    EXPECT_EQ(qobject_cast<QStringListModel *>(dialog.dblParents->model())->stringList(),
              (QStringList{QStringLiteral("EATS"), QStringLiteral("THING")}));
    dialog.txtConcept->setText(QStringLiteral("HUNTS"));
    dialog.SelectParent(QStringLiteral("EATS"));
    user.onModal([](QWidget *shown) {
        auto *inverse = qobject_cast<ui::frmNewConcept *>(shown);
        ASSERT_NE(inverse, nullptr);
        EXPECT_EQ(inverse->windowTitle(), QStringLiteral("Add Inverse Relation"));
        EXPECT_TRUE(inverse->optCType[4]->isChecked());
        EXPECT_FALSE(inverse->optCType[1]->isEnabled());
        EXPECT_TRUE(inverse->cmdAdd->isHidden());
        EXPECT_EQ(inverse->cmdClose->text(), QStringLiteral("&Cancel"));
        inverse->txtConcept->setText(QStringLiteral("HUNTED-BY"));
        inverse->SelectParent(QStringLiteral("EATS"));
        inverse->cmdAddInv->click();
    });
    dialog.cmdAdd->click();

    EXPECT_EQ(column(QStringLiteral("SELECT * FROM INVERSES ORDER BY Relation"), u"Inverse"),
              (QStringList{QStringLiteral("HUNTS"), QStringLiteral("HUNTED-BY")}));
    // Only the relation is named and carried into the termbases.
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM Names"), u"Concept"),
              QStringList{QStringLiteral("HUNTS")});
    EXPECT_EQ(linked(), (QStringList(2, QStringLiteral("BIRD,HUNTS"))));
    EXPECT_EQ(ui::Forms().WithCaptionLike(u"Add Inverse Relation").size(), 0);
}

TEST_F(ConceptCommandsTest, RenameAndDeleteReachEveryLinkedFile)
{
    form.txtCptSearch->setText(QStringLiteral("BIRD"));
    ASSERT_EQ(form.CurrentConcept, QStringLiteral("BIRD"));
    user.onModal([](QWidget *shown) {
        auto *names = qobject_cast<ui::frmNames *>(shown);
        ASSERT_NE(names, nullptr);
        EXPECT_EQ(names->lblStart->caption(), QStringLiteral("Rename"));
        names->txtConcept->setText(QStringLiteral("FOWL"));
        names->cmdOK->click();
    });
    form.mnuConceptEdit->trigger();
    EXPECT_EQ(linked(), (QStringList(2, QStringLiteral("FOWL"))));
    EXPECT_EQ(heard, QStringList{QStringLiteral("3FOWL")});
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM ISA WHERE Concept = 'FOWL'"), u"ISA"),
              QStringList{QStringLiteral("ANIMAL")});

    // ANIMAL goes, and FOWL with it, having no other parent.
    form.txtCptSearch->setText(QStringLiteral("ANIMAL"));
    user.answerMsgBox(msg::Yes);
    form.mnuConceptDelete->trigger();
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM CONCEPTS ORDER BY Concept"), u"Concept"),
              (QStringList{QStringLiteral("EATS"), QStringLiteral("THING")}));
    EXPECT_EQ(linked(), (QStringList(2, QString())));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("EATS"));
    EXPECT_EQ(form.ListText(), QStringLiteral("EATS"));
}

// A double click on the definition box runs Edit Definition.
TEST_F(ConceptCommandsTest, ADefinitionIsEditedThroughTheNamingDialog)
{
    form.txtCptSearch->setText(QStringLiteral("BIRD"));
    user.onModal([](QWidget *shown) {
        auto *names = qobject_cast<ui::frmNames *>(shown);
        ASSERT_NE(names, nullptr);
        EXPECT_EQ(names->windowTitle(), QStringLiteral("Edit definition of  - BIRD"));
        EXPECT_EQ(names->txtDef->toPlainText(), QStringLiteral("A feathered animal"));
        names->txtDef->setPlainText(QStringLiteral("A \"winged\" animal"));
        names->cmdOK->click();
    });
    QTest::mouseDClick(form.txtDef->viewport(), Qt::LeftButton);
    EXPECT_EQ(
        column(QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = 'BIRD'"), u"definition"),
        QStringList{QStringLiteral("A 'winged' animal")});
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("A 'winged' animal"));
}

} // namespace
