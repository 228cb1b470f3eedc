// Keeps exceptions inside slots. One that reaches the toolkit's edge was caught by neither guard, so it takes
// the one fatal path: it is logged, the user is told, and the process ends.
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "core/error_log.h"

namespace zendrix::qt {

class SlotGuard {
 public:
  explicit SlotGuard(core::ErrorLog& log) : log_(log) {}

  template <class Body>
  void operator()(const std::string& place, Body&& body) const noexcept {
    try {
      std::forward<Body>(body)();
    } catch (const core::RunTimeError& error) {
      log_.WriteError(place, error);
    } catch (const std::exception& error) {
      log_.WriteError(place, {core::kOutOfMemory, error.what()});
    }
  }

 private:
  core::ErrorLog& log_;
};

}  // namespace zendrix::qt
