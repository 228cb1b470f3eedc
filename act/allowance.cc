#include "act/allowance.h"

#include <algorithm>

namespace zendrix::act {

bool Allowance::Take(std::uint32_t user, std::int64_t now_ms) {
  if (user == 0) return true;
  std::erase_if(whole_at_ms_, [now_ms](const auto& one) { return one.second <= now_ms; });
  if (!whole_at_ms_.contains(user) && whole_at_ms_.size() >= kMostUsers) return false;
  std::int64_t& whole_at_ms = whole_at_ms_.try_emplace(user, now_ms).first->second;
  if (whole_at_ms - now_ms > (kAtOnce - 1) * kEveryMs) return false;
  whole_at_ms += kEveryMs;
  return true;
}

}  // namespace zendrix::act
