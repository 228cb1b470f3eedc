// Sliders, lying.
#pragma once

#include "qt/bind.h"
#include "widgets/slider.h"

class QSlider;

namespace zendrix::qt {

QSlider* MakeSlider(widgets::Slider& slider, const QString& accessible_name, const Toolkit& kit);

}  // namespace zendrix::qt
