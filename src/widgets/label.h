// Labels, pictures and frames: the controls that only show something, or are clicked like a link.
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

// Shows one picture of a picture list, by key. Empty shows nothing.
class Image : public Control {
 public:
  explicit Image(std::string name, std::string key = {})
      : Control(std::move(name)), picture(std::move(key)) {}
  Observed<std::string> picture;
  Signal<> clicked;
};

// An area that holds other controls.
class Frame : public Control {
 public:
  explicit Frame(std::string name, bool shown = true) : Control(std::move(name)) { visible = shown; }
};

}  // namespace zendrix::widgets
