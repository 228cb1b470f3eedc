// Waiting for what other processes do: the condition is asked again and again, and what arrives on the buses
// is let in meanwhile. The bound is for hangs alone, and no test measures anything by it.
#pragma once

#include <functional>

namespace zendrix::desktop {

inline constexpr int kPatienceMs = 90'000;

bool Eventually(const std::function<bool()>& condition);

}  // namespace zendrix::desktop
