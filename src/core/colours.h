// Ramps of colours. A colour is a 32-bit number with red in the low byte, then green, then blue.
#pragma once

#include <cstdint>
#include <vector>

namespace zendrix::core {

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
