// How long a test waits for what the program does in its own time; reached only where it does not do it.
#pragma once

namespace zendrix::e2e {

inline constexpr int kPatienceMs = 60'000;

}  // namespace zendrix::e2e
