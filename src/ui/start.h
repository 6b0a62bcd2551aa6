#pragma once

#include "ui/frm_splash.h"

#include <QStringList>

#include <chrono>

namespace lx::ui {

// Program start: the main window comes up disabled under the splash, the program's folders are
// made, and the splash's timer hands over. Throws std::filesystem::filesystem_error when a
// folder can't be created. The first ".ont" among arguments is opened once the window is up.
void Main(std::chrono::milliseconds splashInterval = frmSplash::DefaultInterval,
          const QStringList &arguments = {});

} // namespace lx::ui
