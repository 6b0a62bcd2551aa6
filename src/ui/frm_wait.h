#pragma once

#include <QWidget>

class QLabel;

namespace lx::ui {

// A small message window that a long job shows with its own text in lblMess.
class frmWait : public QWidget {
    Q_OBJECT

public:
    frmWait();

    QLabel *lblMess;
};

} // namespace lx::ui
