#include "ontology/edit/notes.h"
#include "ui/forms.h"
#include "ui/frm_note.h"
#include "ui/frm_note_list.h"
#include "ui/frm_onto_edit.h"
#include "ui/window_place.h"

namespace lx::ui {

// The dialog's text box is its answer; the note button follows a note added or deleted.
void frmOntoEdit::mnuConceptNote_Click()
{
    const NoteOutcome outcome = EditNote(CurrentConcept, AskNote);
    if (outcome == NoteOutcome::Added)
        setNoteImage(true);
    else if (outcome == NoteOutcome::Deleted)
        setNoteImage(false);
}

// The list is modeless: one window, brought back if already loaded.
void frmOntoEdit::mnuToolsListNotes_Click()
{
    ShowOverMain(Forms().Get<frmNoteList>());
}

} // namespace lx::ui
