// A whole number between two ends, both included, set by dragging or by steps of the keyboard.
#pragma once

#include <algorithm>
#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class Slider : public Control {
 public:
  Slider(std::string name, int low, int high, int small_step = 1, int large_step = 10)
      : Control(std::move(name)),
        value(low),
        low_(low),
        high_(high),
        small_step_(small_step),
        large_step_(large_step) {}
  int low() const { return low_; }
  int high() const { return high_; }
  // Of an arrow key, and of a page key.
  int small_step() const { return small_step_; }
  int large_step() const { return large_step_; }
  Observed<int> value;

  // The number cut to an integer, or the end that it lies behind; what is no number is the lower end.
  void Put(double number) {
    value = number > low_ ? static_cast<int>(std::min(number, static_cast<double>(high_))) : low_;
  }

 private:
  int low_, high_, small_step_, large_step_;
};

}  // namespace zendrix::widgets
