#pragma once

#include "core/signal_label.h"

#include <QDialog>

class QListView;
class QPushButton;

namespace lx::ui {

// "Choose Parent Relation": a relation to choose among the relation concepts. No command of
// the editor opens it; the concept dialog unloads it after each add.
class frmRelList : public QDialog {
    Q_OBJECT

public:
    frmRelList();

    void lblInverse_Change();
    void cmdOK_Click();
    QString RelationText() const;

    QListView *dblRels;
    QPushButton *cmdOK;
    SignalLabel *lblInverse;
};

} // namespace lx::ui
