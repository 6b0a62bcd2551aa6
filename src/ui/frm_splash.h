#pragma once

#include <QWidget>

#include <chrono>

class QLabel;
class QTimer;

namespace lx::ui {

// The splash shown while the program starts; its timer hands over to the main window.
class frmSplash : public QWidget {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds DefaultInterval{3500};

    explicit frmSplash(std::chrono::milliseconds interval = DefaultInterval);

    // Enables the main window, puts the screen pointer back and unloads the splash.
    void tmrSplash_Timer();

    QTimer *tmrSplash;
    QLabel *lblProductName;
    QLabel *lblVersion;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void dismiss();
    void centreOnScreen();
};

} // namespace lx::ui
