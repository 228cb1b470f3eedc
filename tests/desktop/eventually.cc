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

constexpr int kSoonMs = 5'000;

bool ComesWithin(int milliseconds, const std::function<bool()>& condition) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
  do {
    LetIn();
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  } while (Clock::now() < end);
  return false;
}

}  // namespace

bool ComesSoon(const std::function<bool()>& condition) {
  return ComesWithin(kSoonMs, condition);
}

bool Eventually(const std::function<bool()>& condition) {
  return ComesWithin(kPatienceMs, condition);
}

}  // namespace zendrix::desktop
