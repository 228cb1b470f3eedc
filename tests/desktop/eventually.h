// Waiting for what other processes do: the condition is asked again and again, and what arrives on the buses
// is let in meanwhile. The bound is for hangs alone, and no test measures anything by it.
#pragma once

#include <functional>

namespace zendrix::desktop {

inline constexpr int kPatienceMs = 90'000;

// The same for a few seconds only, for an act that may have been lost, and is done again then: a key that
// came before a menu had the keyboard, a click on an icon that just moved.
bool ComesSoon(const std::function<bool()>& condition);
bool Eventually(const std::function<bool()>& condition);

}  // namespace zendrix::desktop
