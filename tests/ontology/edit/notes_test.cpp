#include "edit_fixture.h"
#include "ontology/edit/notes.h"

#include <QDate>

using namespace lx;

namespace {

class NotesTest : public EditTest {
protected:
    void SetUp() override
    {
        EditTest::SetUp();
        addSubset(2, QStringLiteral("Other"));
        addConcept(QStringLiteral("HOUSE"));
        addConcept(QStringLiteral("TREE"));
        addConcept(QStringLiteral("ANIMAL"), 2);
    }
    QStringList notes(QStringView field = u"Note")
    {
        return column(QStringLiteral("SELECT * FROM Notes ORDER BY Concept"), field);
    }
    // A dialog that records what it was shown and answers `answer`.
    NoteDialog answering(const QString &answer)
    {
        return [this, answer](const QString &caption, const QString &text) {
            shownCaption = caption;
            shownText = text;
            ++shown;
            return answer;
        };
    }
    void addNote(const QString &identifier, const QVariant &text, const QVariant &date = {})
    {
        addRow(QStringLiteral("Notes"),
               {{u"Concept", identifier}, {u"Note", text}, {u"Date", date}});
    }

    QDate dateOf(const QString &identifier)
    {
        lx::store::Recordset rs = db.OpenRecordset(
            QStringLiteral("SELECT * FROM Notes WHERE Concept = '%1'").arg(identifier),
            lx::store::dbOpenSnapshot);
        return rs.Eof() ? QDate() : rs.Value(u"Date").toDateTime().date();
    }

    QString shownCaption, shownText;
    int shown = 0;
};

// --- The note of a concept ------------------------------------------------------------------

TEST_F(NotesTest, NewNoteIsAddedWithTodaysDateUnlessCancelled)
{
    EXPECT_EQ(EditNote(QString(), answering(QStringLiteral("x"))), NoteOutcome::Unchanged);
    EXPECT_EQ(shown, 0) << "no concept, no box";
    EXPECT_EQ(EditNote(QStringLiteral("HOUSE"), answering(NoteCancelText)), NoteOutcome::Unchanged);
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE(notes().isEmpty());

    EXPECT_EQ(EditNote(QStringLiteral("HOUSE"), answering(QStringLiteral("check the roof"))),
              NoteOutcome::Added);
    EXPECT_EQ(shownCaption, QStringLiteral("Note - HOUSE"));
    EXPECT_EQ(shownText, QString());
    // Delete on a concept without a note writes an empty one.
    EXPECT_EQ(EditNote(QStringLiteral("TREE"), answering(QString())), NoteOutcome::Added);
    EXPECT_EQ(notes(u"Concept"), (QStringList{QStringLiteral("HOUSE"), QStringLiteral("TREE")}));
    EXPECT_EQ(notes(), (QStringList{QStringLiteral("check the roof"), QString()}));
    EXPECT_EQ(dateOf(QStringLiteral("HOUSE")), QDate::currentDate());
}

TEST_F(NotesTest, ExistingNoteIsShownAndKeptSavedOrDeleted)
{
    addNote(QStringLiteral("HOUSE"), QStringLiteral("old"), QDateTime(QDate(2001, 2, 3), {}));
    addNote(QStringLiteral("TREE"), QStringLiteral("other"));
    EXPECT_EQ(EditNote(QStringLiteral("HOUSE"), answering(NoteCancelText)), NoteOutcome::Unchanged);
    EXPECT_EQ(shownText, QStringLiteral("old"));
    EXPECT_EQ(dateOf(QStringLiteral("HOUSE")), QDate(2001, 2, 3));

    EXPECT_EQ(EditNote(QStringLiteral("HOUSE"), answering(QStringLiteral("new"))),
              NoteOutcome::Saved);
    EXPECT_EQ((QStringList{QStringLiteral("new"), QStringLiteral("other")}), notes());
    EXPECT_EQ(dateOf(QStringLiteral("HOUSE")), QDate::currentDate());

    EXPECT_EQ(EditNote(QStringLiteral("HOUSE"), answering(QString())), NoteOutcome::Deleted);
    EXPECT_EQ(notes(u"Concept"), QStringList{QStringLiteral("TREE")});
}

// --- The list -------------------------------------------------------------------------------

TEST_F(NotesTest, ListHasEveryNoteInConceptOrderWithNullsKept)
{
    addNote(QStringLiteral("TREE"), QStringLiteral("t"), QDateTime(QDate(2020, 1, 1), {}));
    addNote(QStringLiteral("ANIMAL"), QVariant()); // outside the active subset
    addNote(QStringLiteral("HOUSE"), QStringLiteral("h"));
    const QList<NoteListRow> rows = ReadNotes();
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0].Concept, QStringLiteral("ANIMAL"));
    EXPECT_TRUE(rows[0].Note.isNull());
    EXPECT_EQ(rows[1].Concept, QStringLiteral("HOUSE"));
    EXPECT_TRUE(rows[1].Date.isNull());
    EXPECT_EQ(rows[2].Concept, QStringLiteral("TREE"));
    EXPECT_EQ(rows[2].Note.toString(), QStringLiteral("t"));
    EXPECT_EQ(rows[2].Date.toDateTime().date(), QDate(2020, 1, 1));
}

} // namespace
