#include "desktop/eventually.h"

#include <glib.h>

#include <chrono>
#include <thread>

namespace zendrix::desktop {
namespace {

void LetIn() {
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
}

}  // namespace

bool Eventually(const std::function<bool()>& condition) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::milliseconds(kPatienceMs);
  do {
    LetIn();
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  } while (Clock::now() < end);
  return false;
}

}  // namespace zendrix::desktop
