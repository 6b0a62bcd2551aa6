#pragma once

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>

namespace lx::ui {

// A character typed into `box` through a key filter (the key code to use, 0 to drop it), as a
// box's KeyPress handler does: true when the filter took the key, which the box then must not
// see. Editing and moving keys, and control chords, are left to the box.
template <class Filter> bool FilterTypedKey(QLineEdit *box, QEvent *event, Filter &&filter)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    const QString typed = key->text();
    if (typed.size() != 1 || typed[0].unicode() < 32 || (key->modifiers() & Qt::ControlModifier))
        return false;
    const int used = filter(int(typed[0].unicode()));
    if (used == typed[0].unicode())
        return false;
    if (used != 0)
        box->insert(QString(QChar(used)));
    return true;
}

} // namespace lx::ui
