#pragma once

#include <QWidget>

class QPushButton;
class QTreeWidget;

namespace lx::ui {

// "Notes Management": every note of the ontology, modeless; edits one note through frmNote,
// deletes several at once.
class frmNoteList : public QWidget {
    Q_OBJECT

public:
    frmNoteList();

    // One row per note in concept order: Concept, then Date and Note where not Null.
    void FillList();
    void cmdEdit_Click();
    void cmdDelete_Click();
    void cmdClose_Click();

    QTreeWidget *ListView1;
    QPushButton *cmdEdit, *cmdDelete, *cmdClose;

private:
    void refreshNoteButton();
};

} // namespace lx::ui
