#include "qt/bind.h"

#include <QWidget>

#include "qt/text_edge.h"
#include "widgets/control.h"

namespace zendrix::qt {

void BindControl(widgets::Control& control, QWidget* widget, const QString& accessible_name) {
  BindControlButUse(control, widget, accessible_name);
  Reflect(widget, control.enabled, [widget](bool usable) { widget->setEnabled(usable); });
}

void BindControlButUse(widgets::Control& control, QWidget* widget, const QString& accessible_name) {
  widget->setObjectName(ToQt(control.name()));
  if (!accessible_name.isEmpty()) widget->setAccessibleName(accessible_name);
  // A widget that has no parent yet would become a window of its own if it were shown now; it is shown with
  // its parent.
  if (!control.visible) widget->hide();
  Keep(widget, control.visible.changed.Connect([widget, &control] { widget->setVisible(control.visible); }));
  Reflect(widget, control.tip, [widget](const std::string& tip) { widget->setToolTip(ToolTipText(tip)); });
  Keep(widget, control.focus.Connect([widget] { widget->setFocus(Qt::OtherFocusReason); }));
  Keep(widget, control.to_front.Connect([widget] { widget->raise(); }));
}

}  // namespace zendrix::qt
