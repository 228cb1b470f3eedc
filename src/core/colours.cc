#include "core/colours.h"

#include <algorithm>
#include <array>

#include "core/number_rules.h"

namespace zendrix::core {
namespace {

constexpr int kGradientSteps = 256;

int Part(std::int32_t colour, std::size_t index) {
  return static_cast<int>((static_cast<std::uint32_t>(colour) >> (8 * index)) & 0xFF);
}

}  // namespace

std::vector<std::int32_t> GradientColors(int steps, std::int32_t from, std::int32_t to) {
  std::vector<std::int32_t> colours;
  if (steps <= 0) return colours;
  std::array<int, 3> parts = {Part(from, 0), Part(from, 1), Part(from, 2)};
  std::array<double, 3> step{};
  for (std::size_t i = 0; i < parts.size(); ++i)
    step[i] = (parts[i] - Part(to, i)) / static_cast<double>(steps);
  for (int n = 0; n < steps; ++n) {
    colours.push_back(parts[0] | parts[1] << 8 | parts[2] << 16);
    // Rounding at every step can run past the end of a ramp; a part is a byte and stays one.
    for (std::size_t i = 0; i < parts.size(); ++i)
      parts[i] = std::clamp(RoundToLong(parts[i] - step[i]), 0, 255);
  }
  return colours;
}

GradientLines PaintGradient(std::int32_t from, std::int32_t to) {
  GradientLines lines;
  lines.colours = GradientColors(kGradientSteps, from, to);
  return lines;
}

}  // namespace zendrix::core
