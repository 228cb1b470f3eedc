// Clicks with the mouse on a picture or a text that leads somewhere. The keyboard's way there is a button
// beside it, so it is no stop of its own.
#pragma once

#include <string>

#include "qt/bind.h"

namespace zendrix::qt {

// Raises `clicked` when the left button is pressed and released over the widget.
void BindClick(const std::string& name, widgets::Signal<>& clicked, QWidget* widget, const Toolkit& kit);

}  // namespace zendrix::qt
