#pragma once

#include "core/signal_label.h"
#include "ui/forms.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
class QPlainTextEdit;
class QPushButton;

namespace lx::ui {

// The slot dialog: a relation slot, an IS-A link, a domain or range, or an attribute slot of
// the concept in txtConcept1. Its caption sets its mode when lblStart fires; the callers show
// and hide its boxes for their use before that.
class frmEditRel : public QDialog, public UnloadSteps {
    Q_OBJECT

public:
    frmEditRel();

    // The instance "Add Relation" keeps between its uses; the other uses load their own.
    static frmEditRel &DefaultInstance();

    void lblStart_Change();
    void lblRefresh_Change();
    void cmdAdd_Click();
    void cmdClose_Click();
    void chkNothing_Click();
    void Form_Unload() override;

    // The texts of the selected rows of the two lists, empty without a selection.
    QString RelationText() const;
    QString RelatedText() const;
    void SelectRelation(const QString &text);
    void SelectRelated(const QString &text);
    // Sizes the dialog for its use: as it was last left under this caption, else to the boxes
    // it shows.
    void FitToUse();

    QString Mode; // "AddRel", "AddISA", "EditISA", "DR", "AddAttr", "EditAttr"

    QLabel *lblConcept1, *lblRels, *lblConcepts, *lblValue;
    QLineEdit *txtConcept1;
    QListView *dblRels;
    QLineEdit *txtISA;
    QListView *dblConcepts;
    QPlainTextEdit *txtValue;
    QCheckBox *chkDefault, *chkNothing;
    QPushButton *cmdAdd, *cmdClose;
    SignalLabel *lblStart, *lblRefresh;

public Q_SLOTS:
    // Escape and the window's close button do what cmdClose does.
    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    bool m_default = false;
};

} // namespace lx::ui
