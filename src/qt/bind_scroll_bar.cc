#include "qt/bind_scroll_bar.h"

#include <QScrollBar>

namespace zendrix::qt {

QScrollBar* MakeScrollBar(widgets::ScrollBar& bar, const QString& accessible_name, const Toolkit& kit) {
  auto* widget = new QScrollBar(Qt::Vertical);
  BindControl(bar, widget, accessible_name);
  widget->setFocusPolicy(Qt::StrongFocus);
  Reflect(widget, bar.minimum, [widget](int end) { widget->setMinimum(end); });
  Reflect(widget, bar.maximum, [widget](int end) { widget->setMaximum(end); });
  Reflect(widget, bar.small_step, [widget](int step) { widget->setSingleStep(step); });
  Reflect(widget, bar.large_step, [widget](int step) { widget->setPageStep(step); });
  Reflect(widget, bar.value, [widget](int value) { widget->setValue(value); });
  // A value that the logic set comes back as itself and changes nothing.
  QObject::connect(widget, &QScrollBar::valueChanged, widget, [&bar, guard = &kit.guard](int value) {
    (*guard)(bar.name(), [&] { bar.Scroll(value); });
  });
  return widget;
}

}  // namespace zendrix::qt
