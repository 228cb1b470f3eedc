// Controls that hold one value set by the user.
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

class Slider : public Control {
 public:
  Slider(std::string name, int low, int high) : Control(std::move(name)), low_(low), high_(high) {}
  int low() const { return low_; }
  int high() const { return high_; }
  Observed<int> value{0};

 private:
  int low_, high_;
};

}  // namespace zendrix::widgets
