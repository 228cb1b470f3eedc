// A text that is only shown, or clicked like a link or a flat button. It is always shown as plain text.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class Label : public Control {
 public:
  explicit Label(std::string name, std::string text = {})
      : Control(std::move(name)), caption(std::move(text)) {}

  Observed<std::string> caption;
  Observed<Colour> fore_colour{kSystemButtonText};
  Observed<Colour> back_colour{kSystemButtonFace};
  Observed<bool> emphasised{false};
  // A single line around the label, as on a flat button that is held down.
  Observed<bool> bordered{false};
  Signal<> clicked;

  // The behaviour of a label that stands for a flat button.
  void MouseDown() { bordered = true; }
  void MouseUp() {
    bordered = false;
    back_colour = kSystemButtonFace;
    fore_colour = kSystemButtonText;
  }
};

}  // namespace zendrix::widgets
