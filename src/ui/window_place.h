#pragma once

#include <QSize>

#include <memory>

class QSettings;
class QSplitter;
class QWidget;

namespace lx::ui {

// The program's settings file, per user. Window places live in the group "Windows", apart from
// every other setting.
std::unique_ptr<QSettings> ProgramSettings();

// `wanted`, shrunk where needed to leave a margin of the available screen.
QSize FittingSize(QSize wanted);

// Centres `window` over `owner` (over the screen when there is none) and keeps it whole on the
// owner's screen, shrinking it if the screen is smaller.
void PlaceOver(QWidget &window, const QWidget *owner);

// Puts back the size, position and splitter place that SavePlace kept for this window (by its
// object name). Returns false, leaving the window as it is, when nothing was kept.
bool RestorePlace(QWidget &window, QSplitter *splitter = nullptr);
void SavePlace(const QWidget &window, const QSplitter *splitter = nullptr);

// The size alone of a dialog that is placed anew each time it opens; `variant` keeps one size
// for each of its uses (its caption, say).
void RestoreSize(QWidget &window, const QString &variant);
void SaveSize(const QWidget &window, const QString &variant);

// Shows a secondary window: over the main window when it comes up, where it stands when it is
// up already.
void ShowOverMain(QWidget &window);

} // namespace lx::ui
