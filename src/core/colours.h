// Colours as the system writes them: a 32-bit number with red in the low byte, then green, then blue. A
// negative number stands for a colour of the user's desktop.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace zendrix::core {

// The desktop's colour of an index (15 button face, 18 button text, ...).
using DesktopColour = std::function<std::int32_t(std::int32_t index)>;

// A system colour's actual value; any other colour as it is.
std::int32_t SystemColorValue(std::int32_t colour, const DesktopColour& desktop);

// `steps` colours from `from` towards `to`. Each part (red, green, blue) is rounded to an integer, ties to
// even, after every step and the next step starts from the rounded one; so a part that would move by less
// than a half per step stays where it is. Parts keep within 0 to 255. No steps give no colours.
std::vector<std::int32_t> GradientColors(int steps, std::int32_t from, std::int32_t to);

// A ramp as lines to draw across a picture: line i runs from x = 0 to `scale_width` at y = i of
// `scale_height`.
struct GradientLines {
  double scale_width = 1;
  double scale_height = 256;
  std::vector<std::int32_t> colours;
};
GradientLines PaintGradient(std::int32_t from, std::int32_t to);

}  // namespace zendrix::core
