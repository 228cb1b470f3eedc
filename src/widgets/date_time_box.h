// A date with its time of day that the user picks, or nothing. A moment is kept as what the clock on the wall
// shows, in seconds since it showed 1970-01-01 00:00; its text is a matter of the picture.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "widgets/control.h"

namespace zendrix::widgets {

class DateTimeBox : public Control {
 public:
  using Moment = std::int64_t;

  explicit DateTimeBox(std::string name) : Control(std::move(name)) {}

  // Announced whoever changed it.
  Observed<std::optional<Moment>> moment;
  // How it is shown, in the vocabulary of the regional settings.
  Observed<std::string> picture{"MM/dd/yyyy hh:mm:ss tt"};
  // What the user begins with who wants a moment where there is none.
  std::function<Moment()> proposal = [] { return Moment{0}; };

  // The user's acts.
  void Pick(Moment picked) { moment = picked; }
  void Begin() {
    if (!moment.Get()) moment = proposal();
  }
  void Empty() { moment = std::nullopt; }
};

}  // namespace zendrix::widgets
