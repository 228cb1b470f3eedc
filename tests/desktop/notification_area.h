// A notification area at the top of the desktop, and the console's icon in it as the user has it.
#pragma once

#include <vector>

#include "desktop/child_process.h"
#include "desktop/screen.h"

namespace zendrix::desktop {

class NotificationArea {
 public:
  // Once it takes icons.
  explicit NotificationArea(Screen& screen);

  void AwaitIcon();
  // What it looks like at the moment.
  std::vector<unsigned long> Icon() const;
  void Click(unsigned button = 1);

 private:
  Screen& screen_;
  ChildProcess area_;
};

}  // namespace zendrix::desktop
