#include "qt/bind_slider.h"

#include <QSlider>

namespace zendrix::qt {

QSlider* MakeSlider(widgets::Slider& slider, const QString& accessible_name, const Toolkit& kit) {
  auto* widget = new QSlider(Qt::Horizontal);
  BindControl(slider, widget, accessible_name);
  widget->setRange(slider.low(), slider.high());
  widget->setSingleStep(slider.small_step());
  widget->setPageStep(slider.large_step());
  Reflect(widget, slider.value, [widget](int value) { widget->setValue(value); });
  // A value that the logic set comes back as itself and changes nothing.
  QObject::connect(widget, &QSlider::valueChanged, widget, [&slider, guard = &kit.guard](int value) {
    (*guard)(slider.name(), [&] { slider.value = value; });
  });
  return widget;
}

}  // namespace zendrix::qt
