// A named panel of a status bar, with a text.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class Panel : public Control {
 public:
  explicit Panel(std::string name, std::string help = {}) : Control(std::move(name)) {
    tip = std::move(help);
  }
  Observed<std::string> text;
  // Twips; told by the screen toolkit.
  Observed<int> width{0};
};

}  // namespace zendrix::widgets
