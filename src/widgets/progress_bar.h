// A bar of progress in per cent.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class ProgressBar : public Control {
 public:
  explicit ProgressBar(std::string name) : Control(std::move(name)) {}
  // 0 to 100.
  Observed<int> value{0};
  void Show(long long percent) { value = percent < 0 ? 0 : percent > 100 ? 100 : static_cast<int>(percent); }
};

}  // namespace zendrix::widgets
