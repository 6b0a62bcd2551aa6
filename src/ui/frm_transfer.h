#pragma once

#include "ontology/edit/subsets.h"
#include "ui/forms.h"

#include <QDialog>

class QComboBox;
class QPushButton;
class QTreeWidget;

namespace lx::ui {

// "Subset Transfer": the concepts of one subset, ticked and moved to another.
class frmTransfer : public QDialog, public UnloadSteps {
    Q_OBJECT

public:
    frmTransfer();

    // The source's concepts are let go.
    void Form_Unload() override;

    // The source's concepts in the list, the count and name in its head.
    void cbxFrom_Click();
    void cbxTo_Click();
    void cmdAll_Click();
    void cmdClear_Click();
    void cmdCancel_Click();
    void cmdTranfer_Click();

    QComboBox *cbxFrom, *cbxTo;
    QTreeWidget *ListView1;
    QPushButton *cmdAll, *cmdClear, *cmdTranfer, *cmdCancel;

private:
    void tickAll(bool ticked);
    QStringList ticked() const;

    SubsetTransfer m_source; // the source's concepts, kept open while they are listed
    int m_targetId = 0;
};

} // namespace lx::ui
