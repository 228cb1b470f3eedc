// What belongs to no single window: the shape of the pointer and the beep.
#pragma once

#include "widgets/observed.h"

namespace zendrix::widgets {

inline constexpr int kPointerDefault = 0;
inline constexpr int kPointerHourglass = 11;

struct Screen {
  Observed<int> MousePointer{kPointerDefault};
  Signal<> beep;
};

}  // namespace zendrix::widgets
