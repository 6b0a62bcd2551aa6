#pragma once

#include <QIcon>
#include <QString>

namespace lx::ui {

// The program's images by key ("new", "open", "note-out", ...), drawn by the program itself so
// that they look the same on every desktop. An unknown key gives an empty icon.
QIcon Image(const QString &key);

} // namespace lx::ui
