#include "core/interaction.h"
#include "ontology/edit/notes.h"
#include "ui/forms.h"
#include "ui/frm_note.h"
#include "ui/frm_onto_edit.h"

#include <QPlainTextEdit>

namespace lx::ui {

// The dialog's text box is its answer; a new note turns the note button to "note-in".
void frmOntoEdit::mnuConceptNote_Click()
{
    const NoteOutcome outcome =
        EditNote(CurrentConcept, [](const QString &caption, const QString &text) {
            auto &dialog = Forms().Load<frmNote>();
            dialog.setWindowTitle(caption);
            dialog.txtNote->setPlainText(text);
            UI().ShowModal(&dialog);
            const QString answer = dialog.txtNote->toPlainText();
            Forms().Unload(&dialog);
            return answer;
        });
    if (outcome == NoteOutcome::Added)
        setNoteImage(true);
}

} // namespace lx::ui
