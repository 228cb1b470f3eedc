// Boxes filled with a colour. A screen reader is told its number, as "#FF8080".
#pragma once

#include <QString>

#include "qt/bind.h"
#include "widgets/colour_box.h"

namespace zendrix::qt {

QWidget* MakeColourBox(widgets::ColourBox& box, const QString& accessible_name, const Toolkit& kit);
// Red, green and blue in hexadecimal.
QString ColourText(widgets::Colour colour, const Toolkit& kit);

}  // namespace zendrix::qt
