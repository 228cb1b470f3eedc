// The pointer is an hourglass for as long as this object lives, around anything that may keep the user
// waiting.
#pragma once

#include "widgets/screen.h"

namespace zendrix::widgets {

class WaitPointer {
 public:
  explicit WaitPointer(Screen& screen) : screen_(screen) { screen_.MousePointer = kPointerHourglass; }
  ~WaitPointer() { screen_.MousePointer = kPointerDefault; }
  WaitPointer(const WaitPointer&) = delete;
  WaitPointer& operator=(const WaitPointer&) = delete;

 private:
  Screen& screen_;
};

}  // namespace zendrix::widgets
