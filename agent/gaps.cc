#include "agent/gaps.h"

#include "agent/level_text.h"

namespace zendrix::agent {

std::vector<std::string> Gaps::Notice(const Clocks& now) {
  std::vector<std::string> told;
  if (before_) {
    const std::int64_t awake = now.monotonic_ms - before_->monotonic_ms;
    const std::int64_t passed = now.boot_ms - before_->boot_ms;
    const std::int64_t by_day = (now.utc - before_->utc) * 1000;
    if (passed - awake >= kSleepMs) {
      told.push_back("the computer slept for " + DurationText((passed - awake) / 1000));
    }
    if (awake >= kStallMs) {
      told.push_back("the Agent was held up for " + DurationText(awake / 1000) +
                     " - what came and went meanwhile may be missing");
    }
    if (by_day - passed >= kJumpMs) {
      told.push_back("the clock was set forward by " + DurationText((by_day - passed) / 1000));
    } else if (passed - by_day >= kJumpMs) {
      told.push_back("the clock was set back by " + DurationText((passed - by_day) / 1000));
    }
  }
  before_ = now;
  return told;
}

}  // namespace zendrix::agent
