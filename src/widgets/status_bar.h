// A status bar: named panels with a text each, and a bar of progress.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class Panel : public Control {
 public:
  explicit Panel(std::string name, std::string help = {}) : Control(std::move(name)) {
    tip = std::move(help);
  }
  Observed<std::string> text;
  // Twips; told by the screen toolkit.
  Observed<int> width{0};
};

class ProgressBar : public Control {
 public:
  explicit ProgressBar(std::string name) : Control(std::move(name)) {}
  // 0 to 100.
  Observed<int> value{0};
  void Show(long long percent) { value = percent < 0 ? 0 : percent > 100 ? 100 : static_cast<int>(percent); }
};

}  // namespace zendrix::widgets
