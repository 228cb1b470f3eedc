// A value that raises a signal when it changes. Setting the value it already has raises nothing. A listener
// may set it again: the nested round tells every listener first, and none is left with a value that is no
// longer there.
#pragma once

#include <utility>

#include "widgets/signal.h"

namespace zendrix::widgets {

template <class T>
class Observed {
 public:
  Observed() = default;
  explicit Observed(T value) : value_(std::move(value)) {}

  const T& Get() const { return value_; }
  operator const T&() const { return value_; }  // NOLINT: reads like the value it holds
  Observed& operator=(T value) {
    Set(std::move(value));
    return *this;
  }
  // Out of line: it is called from hundreds of places.
  [[gnu::noinline]] void Set(T value) {
    if (value == value_) return;
    std::swap(value_, value);
    changed.Raise();
  }

  Signal<> changed;

 private:
  T value_{};
};

}  // namespace zendrix::widgets
