#pragma once

#include <QIcon>
#include <QString>

namespace lx::ui {

// The program's images by key ("new", "open", "note-out", ...): the desktop theme's icon
// where there is one, else a standard one of the style.
QIcon Image(const QString &key);

} // namespace lx::ui
