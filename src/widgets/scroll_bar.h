// A standing scroll bar: a whole number between two ends, both included, which may move. The value follows
// an end that passes it.
#pragma once

#include <algorithm>

#include "widgets/control.h"

namespace zendrix::widgets {

class ScrollBar : public Control {
 public:
  explicit ScrollBar(std::string name, int low = 1, int high = 1)
      : Control(std::move(name)), minimum(low), maximum(high), value(low) {
    minimum.changed.ConnectForever([this] { Scroll(value); });
    maximum.changed.ConnectForever([this] { Scroll(value); });
  }

  // Set by the program. A maximum below the minimum counts as the minimum.
  Observed<int> minimum, maximum;
  // Of an arrow key, and of a page key.
  Observed<int> small_step{1}, large_step{1};
  // Changed by Scroll.
  Observed<int> value;

  // As far towards this number as the ends let it.
  void Scroll(int wanted) { value = std::max(minimum.Get(), std::min(wanted, maximum.Get())); }
};

}  // namespace zendrix::widgets
