#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

// Working notes (table Notes): one dated text per concept for the ontology's editors.
namespace lx {

// What the note dialog leaves in its text box when cancelled; a note with exactly this text
// can't be saved.
inline const QString NoteCancelText = QStringLiteral("Canceladorrr!");

// What editing a note did to the table.
enum class NoteOutcome {
    Unchanged, // cancelled, or nothing to do
    Added,     // a new row; the note button shows "note-in"
    Saved,     // an existing row took the new text and date
    Deleted,   // the existing row was deleted
};

// The dialog as the caller shows it: takes the caption and the starting text, returns what is
// in txtNote when it hides (the typed text, empty for "&Delete", the cancel text).
using NoteDialog = std::function<QString(const QString &caption, const QString &text)>;

// The note of `identifier` through the dialog; an empty identifier does nothing.
NoteOutcome EditNote(const QString &identifier, const NoteDialog &dialog);

// One row of the notes list; Null values stay null.
struct NoteListRow {
    QString Concept;
    QVariant Date;
    QVariant Note;
};

// Every note of the ontology in the order of the index Concept, whatever the active subset.
QList<NoteListRow> ReadNotes();

// Deletes the note of each of `concepts` found by the index Concept.
void DeleteNotes(const QStringList &concepts);

} // namespace lx
