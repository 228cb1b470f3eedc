// A box that the user ticks or clears.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class CheckBox : public Control {
 public:
  CheckBox(std::string name, std::string text) : Control(std::move(name)), caption(std::move(text)) {}
  Observed<std::string> caption;
  Observed<bool> checked{false};
  // The user clicked it; `checked` has its new value already.
  Signal<> clicked;
};

}  // namespace zendrix::widgets
