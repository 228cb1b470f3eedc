// The arithmetic of a chart's axes: round numbers up the side, and those labels along the bottom that have
// room.
#pragma once

#include <vector>

namespace zendrix::qt {

// The axis of values: whole numbers from `low` to `high`, a tick at every `step`.
struct ValueScale {
  double low = 0, high = 1, step = 1;
  int ticks() const { return static_cast<int>((high - low) / step + 0.5) + 1; }
};
// Holds 0 and both values, in at most `most_steps` steps of 1, 2 or 5 and zeros behind it.
ValueScale ScaleOf(double lowest, double highest, int most_steps);

// A label along the bottom: its index, the place that it labels and its left edge, in pixels.
struct PlacedLabel {
  int index;
  double place;
  double left;
};
// Labels are centred at their places from `from` to `to`, the first and the last at the ends, and moved so
// far that they stay between 0 and `room`. Of those that are not blank each is shown, or every second, every
// third and so on, counted from the last, until they stand apart.
std::vector<PlacedLabel> LabelsWithRoom(const std::vector<double>& widths, double from, double to,
                                        double room);

}  // namespace zendrix::qt
