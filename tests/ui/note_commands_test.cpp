#include "names_options_fixture.h"
#include "ontology/edit/notes.h"
#include "ui/frm_note.h"
#include "ui/frm_note_list.h"

#include <QPlainTextEdit>
#include <QPushButton>

using namespace lx;
using namespace lx::test;

namespace {

class NoteCommandsTest : public NamesOptionsTest {
protected:
    void SetUp() override
    {
        openSample();
        form.CurrentConcept = QStringLiteral("ANIMAL");
    }

    // The user finds `expected` in the note, types `typed` unless it is null, and presses
    // `button` ("cmdOK", "cmdDelete", "cmdCancel").
    void noteCommand(const char *button, const QString &typed = {}, const QString &expected = {})
    {
        user.onModal([=, this](QWidget *dialog) {
            auto *note = qobject_cast<ui::frmNote *>(dialog);
            ASSERT_NE(note, nullptr);
            caption = note->windowTitle();
            EXPECT_EQ(note->txtNote->toolTip(), QStringLiteral("Type in your note here"));
            EXPECT_EQ(note->txtNote->toPlainText(), expected);
            if (!typed.isNull())
                note->txtNote->setPlainText(typed);
            note->findChild<QPushButton *>(QLatin1String(button))->click();
            EXPECT_TRUE(note->isHidden());
        });
        form.mnuConceptNote->trigger();
    }
    QStringList notes(QStringView field = u"Note")
    {
        return column(QStringLiteral("SELECT * FROM Notes WHERE Concept = 'ANIMAL'"), field);
    }
    QString image() const { return form.ToolButton(12)->property("imageKey").toString(); }

    QString caption;
};

TEST_F(NoteCommandsTest, NewNoteIsSavedAndTheButtonShowsIt)
{
    ASSERT_TRUE(notes().isEmpty());
    noteCommand("cmdOK", QStringLiteral("ask the zoologist"));
    EXPECT_EQ(caption, QStringLiteral("Note - ANIMAL"));
    EXPECT_EQ(notes(), QStringList{QStringLiteral("ask the zoologist")});
    EXPECT_EQ(image(), QStringLiteral("note-in"));
    EXPECT_EQ(ui::Forms().Find<ui::frmNote>(), nullptr);

    noteCommand("cmdOK", QStringLiteral("asked"), QStringLiteral("ask the zoologist"));
    EXPECT_EQ(notes(), QStringList{QStringLiteral("asked")});
    EXPECT_EQ(image(), QStringLiteral("note-in"));
}

TEST_F(NoteCommandsTest, CancelWritesNothingAndDeleteWithoutNoteWritesAnEmptyOne)
{
    const QString before = image();
    noteCommand("cmdCancel", QStringLiteral("never mind"));
    EXPECT_TRUE(notes().isEmpty());
    EXPECT_EQ(image(), before);

    noteCommand("cmdDelete", QStringLiteral("typed, then deleted"));
    EXPECT_EQ(notes(), QStringList{QString()});
    EXPECT_EQ(image(), QStringLiteral("note-in"));
}

TEST_F(NoteCommandsTest, TheCancelTextCannotBeSavedAndDeleteRemovesTheNote)
{
    noteCommand("cmdOK", NoteCancelText);
    EXPECT_TRUE(notes().isEmpty());

    noteCommand("cmdOK", QStringLiteral("keep"));
    noteCommand("cmdCancel", QStringLiteral("changed"), QStringLiteral("keep"));
    EXPECT_EQ(notes(), QStringList{QStringLiteral("keep")});
    noteCommand("cmdDelete", QString(), QStringLiteral("keep"));
    EXPECT_TRUE(notes().isEmpty());
    EXPECT_EQ(image(), QStringLiteral("note-out"));
}

TEST_F(NoteCommandsTest, NoConceptNoDialog)
{
    form.CurrentConcept.clear();
    form.mnuConceptNote->trigger();
    EXPECT_TRUE(column(QStringLiteral("SELECT * FROM Notes"), u"Concept").isEmpty());
}

} // namespace

namespace {

// --- The list of notes ----------------------------------------------------------------------

class NoteListTest : public NoteCommandsTest {
protected:
    void SetUp() override
    {
        NoteCommandsTest::SetUp();
        for (const char *identifier : {"THING", "ANIMAL", "BIRD"}) {
            form.CurrentConcept = QString::fromLatin1(identifier);
            user.onModal([identifier](QWidget *dialog) {
                auto *note = qobject_cast<ui::frmNote *>(dialog);
                note->txtNote->setPlainText(QStringLiteral("about ") +
                                            QString::fromLatin1(identifier));
                note->cmdOK->click();
            });
            form.mnuConceptNote->trigger();
        }
        form.mnuToolsListNotes->trigger();
        list = ui::Forms().Find<ui::frmNoteList>();
        ASSERT_NE(list, nullptr);
    }
    QStringList stored()
    {
        return column(QStringLiteral("SELECT * FROM Notes ORDER BY Concept"), u"Concept");
    }
    QTreeWidgetItem *rowOf(const QString &identifier)
    {
        return list->ListView1->findItems(identifier, Qt::MatchExactly).value(0);
    }

    ui::frmNoteList *list = nullptr;
};

TEST_F(NoteListTest, ListShowsEveryNoteInConceptOrder)
{
    EXPECT_TRUE(list->isVisible());
    EXPECT_EQ(list->windowTitle(), QStringLiteral("Notes Management"));
    EXPECT_EQ(texts(list->ListView1), (QStringList{QStringLiteral("ANIMAL"), QStringLiteral("BIRD"),
                                                   QStringLiteral("THING")}));
    EXPECT_EQ(texts(list->ListView1, 2),
              (QStringList{QStringLiteral("about ANIMAL"), QStringLiteral("about BIRD"),
                           QStringLiteral("about THING")}));
    EXPECT_FALSE(list->ListView1->topLevelItem(0)->text(1).isEmpty());
    list->cmdClose->click();
    EXPECT_EQ(ui::Forms().Find<ui::frmNoteList>(), nullptr);
}

TEST_F(NoteListTest, EditTakesTheCurrentRowOnly)
{
    list->ListView1->setCurrentItem(rowOf(QStringLiteral("ANIMAL")));
    rowOf(QStringLiteral("BIRD"))->setSelected(true);
    form.CurrentConcept = QStringLiteral("ANIMAL");
    user.onModal([](QWidget *dialog) {
        auto *note = qobject_cast<ui::frmNote *>(dialog);
        EXPECT_EQ(note->windowTitle(), QStringLiteral("Note - ANIMAL"));
        EXPECT_EQ(note->txtNote->toPlainText(), QStringLiteral("about ANIMAL"));
        note->txtNote->setPlainText(QStringLiteral("edited"));
        note->cmdOK->click();
    });
    list->cmdEdit->click();
    EXPECT_EQ(texts(list->ListView1, 2),
              (QStringList{QStringLiteral("edited"), QStringLiteral("about BIRD"),
                           QStringLiteral("about THING")}));
}

TEST_F(NoteListTest, DeleteAsksFirstAndTakesEverySelectedNote)
{
    list->ListView1->clearSelection();
    user.answerMsgBox(msg::OK);
    list->cmdDelete->click();
    EXPECT_EQ(user.calls().back().text, QStringLiteral("Select one or more notes from the list."));
    EXPECT_EQ(user.calls().back().style, msg::Exclamation);

    rowOf(QStringLiteral("BIRD"))->setSelected(true);
    rowOf(QStringLiteral("THING"))->setSelected(true);
    user.answerMsgBox(msg::No);
    list->cmdDelete->click();
    EXPECT_EQ(stored().size(), 3);
    EXPECT_EQ(user.calls().back().text,
              QStringLiteral("Are you sure you want to delete selected note(s)?"));
    EXPECT_EQ(user.calls().back().style, msg::YesNo);

    user.answerMsgBox(msg::Yes);
    list->cmdDelete->click();
    EXPECT_EQ(stored(), QStringList{QStringLiteral("ANIMAL")});
    EXPECT_EQ(texts(list->ListView1), QStringList{QStringLiteral("ANIMAL")});

    // The editor shows BIRD, whose note went with the others.
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("BIRD"));
    EXPECT_EQ(image(), QStringLiteral("note-out"));
}

} // namespace
