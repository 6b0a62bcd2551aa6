#pragma once

#include <QString>
#include <QWidget>

#include <initializer_list>

namespace lx::ui {

// A new control with its object name, the name tests and handlers find it by.
template <class W> W *Named(W *widget, const QString &name)
{
    widget->setObjectName(name);
    return widget;
}

// Tab goes through `controls` in this order: the order in which they stand on screen.
inline void TabOrder(std::initializer_list<QWidget *> controls)
{
    QWidget *previous = nullptr;
    for (QWidget *control : controls) {
        if (previous)
            QWidget::setTabOrder(previous, control);
        previous = control;
    }
}

} // namespace lx::ui
