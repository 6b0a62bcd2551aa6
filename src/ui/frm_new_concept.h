#pragma once

#include "core/signal_label.h"
#include "ontology/edit/concepts.h"

#include <QDialog>

#include <array>

class QLineEdit;
class QListView;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QStringListModel;

namespace lx::ui {

// "Add Concept": the identifier, the parent and the type of a new concept. Modeless, it stays
// open after each add. A second instance, captioned "Add Inverse Relation" and shown modally
// by the first, asks for the inverse of a new relation.
class frmNewConcept : public QDialog {
    Q_OBJECT

public:
    frmNewConcept();

    // Fills the parent list for the selected type: its concepts and the top concept.
    void FillParentList();
    void optCType_Click();
    void cmdAdd_Click();
    // The inverse instance: only hides, the first instance reads it after the modal wait.
    void cmdAddInv_Click();
    void cmdClose_Click();
    void lblRefresh_Change();
    int txtConcept_KeyPress(int key);

    // Makes this instance the inverse dialog of the relation dialog `owner`, over it.
    void SetUpAsInverse(const QWidget &owner);
    // The selected parent: the text of dblParents, empty if no row is selected.
    QString ParentText() const;
    void SelectParent(const QString &parent);
    // The type of the checked option, 1 to 4.
    int SelectedType() const;

    QLineEdit *txtConcept;
    QPlainTextEdit *txtDef;
    QListView *dblParents;
    std::array<QRadioButton *, 5> optCType{}; // indexes 1 to 4
    QPushButton *cmdAdd, *cmdAddInv, *cmdClose;
    SignalLabel *lblRefresh;

public Q_SLOTS:
    // Escape and the window's close button do what cmdClose does.
    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    InverseTexts askInverse();

    QStringListModel *m_parents;
    bool m_inverseCancelled = false;
};

} // namespace lx::ui
