// What a widget is to assistive programs, where the toolkit takes it for a mere holder of others.
#pragma once

#include <QAccessible>
#include <QWidget>

namespace zendrix::qt {

// Before an assistive program first asks about the widget.
void TellRole(QWidget* widget, QAccessible::Role role);

}  // namespace zendrix::qt
