#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

namespace lx::ui {

// The program's images by key ("new", "open", "note-out", ...), drawn by the program itself so
// that they look the same on every desktop. An unknown key gives an empty icon.
QIcon Image(const QString &key);
// One image drawn at size x size pixels, for sizes beyond the icon's (the desktop's icon theme);
// a null pixmap for an unknown key.
QPixmap DrawImage(const QString &key, int size);

} // namespace lx::ui
