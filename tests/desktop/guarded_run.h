// Runs tests so that nothing of them outlives them. The calling process becomes the guard: it adopts whatever
// the tests leave behind, ends it, and removes their folder, however they ended. When the guard itself is
// killed, the tests are killed with it, and a process that stood by for this ends the rest.
//
// The tests run as an ordinary user: when the superuser calls, as "nobody", in a network name space of their
// own with nothing but the loopback in it.
#pragma once

#include <functional>
#include <string>

namespace zendrix::desktop {

// `prepare` runs as the caller, with the fresh folder; then `tests`, as the ordinary user, who owns the
// folder's "mine". Returns the exit status for main.
int GuardedRun(const std::function<void(const std::string& folder)>& prepare,
               const std::function<int(const std::string& folder)>& tests);

}  // namespace zendrix::desktop
