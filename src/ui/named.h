#pragma once

#include <QString>

namespace lx::ui {

// A new control with its object name, the name tests and handlers find it by.
template <class W> W *Named(W *widget, const QString &name)
{
    widget->setObjectName(name);
    return widget;
}

} // namespace lx::ui
