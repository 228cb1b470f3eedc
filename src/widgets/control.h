// What every control on a form has: its given name, whether it is shown and usable, and a tip. Texts are
// single-byte (Windows-1252) and always shown as plain text.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "widgets/observed.h"

namespace zendrix::widgets {

// A colour as the system writes it: blue, green, red from the high byte down, or, with the top bit set, the
// number of a colour of the user's desktop.
using Colour = std::uint32_t;
inline constexpr Colour kSystemHighlight = 0x8000000D;
inline constexpr Colour kSystemButtonFace = 0x8000000F;
inline constexpr Colour kSystemButtonText = 0x80000012;

class Control {
 public:
  explicit Control(std::string name) : name_(std::move(name)) {}
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& name() const { return name_; }
  Observed<bool> visible{true};
  Observed<bool> enabled{true};
  Observed<std::string> tip;
  // Asks for the keyboard.
  Signal<> focus;
  // Asks to be drawn in front of its neighbours.
  Signal<> to_front;

 protected:
  ~Control() = default;

 private:
  std::string name_;
};

}  // namespace zendrix::widgets
