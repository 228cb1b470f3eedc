// Shows one picture of a picture list, by key; an empty key shows nothing.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class Image : public Control {
 public:
  explicit Image(std::string name, std::string key = {})
      : Control(std::move(name)), picture(std::move(key)) {}
  Observed<std::string> picture;
  Signal<> clicked;
};

}  // namespace zendrix::widgets
