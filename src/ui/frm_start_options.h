#pragma once

#include <QDialog>

class QPushButton;
class QRadioButton;

namespace lx::ui {

// "Options for new ontology": a choice of top nodes and of relations. Nothing shows this
// dialog and no choice reaches the copy of the seed content, which always takes everything;
// its one button only hides it.
class frmStartOptions : public QDialog {
    Q_OBJECT

public:
    frmStartOptions();

    QRadioButton *optFullTop;
    QRadioButton *optReducedTop;
    QRadioButton *optNoTop;
    QRadioButton *optFullRelations;
    QRadioButton *optNoRelations;
    QPushButton *cmdOK;
};

} // namespace lx::ui
