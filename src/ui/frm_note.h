#pragma once

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

namespace lx::ui {

// The working note of one concept. It keeps no state of its own: each button leaves its answer
// in txtNote and hides the dialog, OK the typed text, "&Delete" an empty box, "&Cancel" the
// cancel text of the notes.
class frmNote : public QDialog {
    Q_OBJECT

public:
    frmNote();

    void cmdOK_Click();
    void cmdDelete_Click();
    void cmdCancel_Click();

    QPlainTextEdit *txtNote;
    QPushButton *cmdOK, *cmdDelete, *cmdCancel;

public Q_SLOTS:
    // Escape and the window's close button cancel.
    void reject() override;
};

// Shows the note dialog modally under `caption`, starting with `text`, and returns what its
// text box holds afterwards; the dialog is unloaded.
QString AskNote(const QString &caption, const QString &text);

} // namespace lx::ui
