// An area that holds other controls.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class Frame : public Control {
 public:
  explicit Frame(std::string name, bool shown = true) : Control(std::move(name)) { visible = shown; }
};

}  // namespace zendrix::widgets
