#pragma once

#include "core/signal_label.h"
#include "ontology/edit/names.h"

#include <QDialog>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace lx::ui {

// "Naming & Defining": one dialog for a concept's names, its identifier and its definition.
// The caller sets the mode in lblStart ("Name", "Rename", "Definition") before showing it
// modally, and reads lblStart back after: "OK" when accepted, "Cancel" when not.
class frmNames : public QDialog {
    Q_OBJECT

public:
    frmNames();

    // The mode's boxes enabled, the others not.
    void lblStart_Change();
    // Cleans the mode's box; stays open while it is refused, else sets "OK" and hides.
    void cmdOK_Click();
    void cmdCancel_Click();
    // A single choice: the clicked language is ticked and selected, every other one unticked.
    void lvwLangs_ItemClick(QTreeWidgetItem *item);
    void lvwLangs_ColumnClick(int column);
    // The key to use for a character typed in txtConcept, 0 to drop it.
    int txtConcept_KeyPress(int key);

    // The Lang_ID of the selected language, which decides where a name goes; empty if none.
    QString SelectedLangId() const;
    // Selects every language whose name is `language`: the last one stays selected.
    void SelectLanguage(const QString &language);

    QLineEdit *txtConcept, *txtName;
    QPlainTextEdit *txtDef;
    QTreeWidget *lvwLangs;
    QPushButton *cmdOK, *cmdCancel;
    SignalLabel *lblStart;

public Q_SLOTS:
    // Escape and the window's close button cancel.
    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fillLanguages();
};

} // namespace lx::ui
