#include "qt/contrast.h"

#include <algorithm>
#include <cmath>

namespace zendrix::qt {
namespace {

// Relative luminance, 0 for black to 1 for white.
double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
  const auto [low, high] = std::minmax({Luminance(one), Luminance(other)});
  return (high + 0.05) / (low + 0.05);
}

QColor Legible(const QColor& text, const QColor& ground) {
  constexpr int kSteps = 50;
  // Black and white are 21 apart, so one of the two can always be read.
  const QColor end = Contrast(Qt::black, ground) >= Contrast(Qt::white, ground) ? Qt::black : Qt::white;
  for (int step = 0; step < kSteps; ++step) {
    const double share = static_cast<double>(step) / kSteps;
    const auto mix = [share](float from, float to) { return static_cast<float>(from + share * (to - from)); };
    const QColor colour = QColor::fromRgbF(mix(text.redF(), end.redF()), mix(text.greenF(), end.greenF()),
                                           mix(text.blueF(), end.blueF()));
    if (Contrast(colour, ground) >= kReadable) return colour;
  }
  return end;
}

}  // namespace zendrix::qt
