// A bar between what stands above it and what stands below, dragged by the user. It only tells where the
// pointer is; whoever owns the bar decides whether it goes there. All numbers are twips, places from the top
// left corner of the form.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class Splitter : public Control {
 public:
  // How far below its top the pointer holds it.
  static constexpr int kGrip = 40;

  Splitter(std::string name, int at, int thickness) : Control(std::move(name)), Top(at), Height(thickness) {}

  Observed<int> Top;
  Observed<int> Left{0};
  Observed<int> Width{0};
  Observed<int> Height;
  // The pointer moved under the held left button: its distance from the bar's top, below zero above it.
  Signal<int> dragged;
};

}  // namespace zendrix::widgets
