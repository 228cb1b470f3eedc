// A box filled with a colour.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class ColourBox : public Control {
 public:
  explicit ColourBox(std::string name) : Control(std::move(name)) {}
  Observed<Colour> colour{0};
};

}  // namespace zendrix::widgets
