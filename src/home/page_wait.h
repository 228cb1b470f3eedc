// The wait of a procedure for its page: the event loop runs meanwhile, so anything may have changed, the
// page's own object included, when it returns.
#pragma once

#include <cstdint>

#include "core/app_state.h"

namespace zendrix::home {

// Serves the event loop until `done()`, which is asked before and after every step, ten seconds at the most.
// False when they have passed. Nothing but `done` and the state is used after the first step.
template <class Done>
bool WaitForPage(core::AppState& state, Done done) {
  constexpr std::int64_t kLongestWaitMs = 10000;
  constexpr std::int64_t kRestMs = 50;
  auto& seams = state.seams;
  const std::int64_t start = seams.clock.MonotonicMs();
  while (!done()) {
    seams.loop.ProcessMessages();
    if (done()) break;
    if (seams.clock.MonotonicMs() - start >= kLongestWaitMs) return false;
    seams.loop.WaitForMessages(kRestMs);
  }
  return true;
}

}  // namespace zendrix::home
