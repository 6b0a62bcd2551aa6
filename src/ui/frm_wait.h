#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

namespace lx::ui {

// A small message window that a long job shows with its own text in lblMess; a job that counts
// its steps shows them in ProgressBar1 (hidden until then) and in the status panel.
class frmWait : public QWidget {
    Q_OBJECT

public:
    frmWait();

    // Shows the window centred on `owner` and paints it at once, before the job blocks.
    void ShowOver(const QWidget *owner);
    // One step more on the bar, up to its maximum, and the panel's text; the window is
    // painted and waiting events are processed, so that the program stays responsive.
    void Step(const QString &status);

    QLabel *lblMess;
    QProgressBar *ProgressBar1;
    QLabel *StatusPanel1;
};

} // namespace lx::ui
