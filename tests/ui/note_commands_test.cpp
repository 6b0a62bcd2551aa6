#include "names_options_fixture.h"
#include "ontology/edit/notes.h"
#include "ui/frm_note.h"

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
}

TEST_F(NoteCommandsTest, NoConceptNoDialog)
{
    form.CurrentConcept.clear();
    form.mnuConceptNote->trigger();
    EXPECT_TRUE(column(QStringLiteral("SELECT * FROM Notes"), u"Concept").isEmpty());
}

} // namespace
