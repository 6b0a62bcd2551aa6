#pragma once

#include "ontology/store/onto_editor.h"

#include <QDialog>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace lx::ui {

// The properties of an ontology (or of a termbase): the caller fills the boxes, shows the
// dialog modally and reads them back. There is no cancel: closing the window is OK too.
class frmProperties : public QDialog {
    Q_OBJECT

public:
    frmProperties();

    // Stays open with a warning while the name is empty or too long; else hides the dialog.
    void cmdOK_Click();

    void SetTexts(const PropertiesTexts &texts);
    PropertiesTexts Texts() const;

    QLineEdit *txtName, *txtCreated, *txtModified, *txtOwner, *txtAuthor, *txtContact;
    QPlainTextEdit *txtDescription;
    QPushButton *cmdOK;

public Q_SLOTS:
    void reject() override;
};

} // namespace lx::ui
