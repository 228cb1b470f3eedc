// A whole number between two ends, both included, set by dragging.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

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
