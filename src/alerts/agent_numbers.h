// How the Agent writes the numbers that stand in an event's description: with "." as the decimal point, on
// every computer. (The columns Original and Change are something else: the reader has already put those into
// the user's form.)
#pragma once

#include "platform/locale.h"

namespace zendrix::alerts {

// For reading such a number; what is shown is written in the user's form.
inline const platform::LocaleInfo& AgentNumbers() {
  static const platform::LocaleInfo numbers;
  return numbers;
}

}  // namespace zendrix::alerts
