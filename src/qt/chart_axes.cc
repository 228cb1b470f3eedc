#include "qt/chart_axes.h"

#include <algorithm>
#include <cmath>

namespace zendrix::qt {

namespace {

constexpr double kGap = 8;

double StepOf(double span, int most_steps) {
  for (double power = 1;; power *= 10) {
    for (const double digit : {1.0, 2.0, 5.0})
      if (span <= digit * power * most_steps) return digit * power;
  }
}

}  // namespace

ValueScale ScaleOf(double lowest, double highest, int most_steps) {
  lowest = std::min(lowest, 0.0);
  highest = std::max(highest, 0.0);
  if (lowest == highest) return {};
  // Rounding both ends outwards may take one step more than the span.
  const int inner_steps = lowest < 0 && highest > 0 ? std::max(most_steps - 1, 1) : most_steps;
  const double step = StepOf(highest - lowest, inner_steps);
  return {std::floor(lowest / step) * step, std::ceil(highest / step) * step, step};
}

std::vector<PlacedLabel> LabelsWithRoom(const std::vector<double>& widths, double from, double to,
                                        double room) {
  const int count = static_cast<int>(widths.size());
  std::vector<PlacedLabel> all;  // from the last
  for (int i = count - 1; i >= 0; --i) {
    const double width = widths[static_cast<std::size_t>(i)];
    if (width <= 0) continue;
    const double place = count == 1 ? (from + to) / 2 : from + (to - from) * i / (count - 1);
    all.push_back({i, place, std::max(std::min(place - width / 2, room - width), 0.0)});
  }
  for (std::size_t every = 1;; ++every) {
    std::vector<PlacedLabel> shown;
    bool apart = true;
    for (std::size_t i = 0; i < all.size(); i += every) {
      const double right = all[i].left + widths[static_cast<std::size_t>(all[i].index)];
      if (!shown.empty() && right + kGap > shown.back().left) apart = false;
      shown.push_back(all[i]);
    }
    if (apart) return shown;
  }
}

}  // namespace zendrix::qt
