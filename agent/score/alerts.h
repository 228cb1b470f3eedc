// Groups unusual events into alerts: one for each subject that gave an unusual event, with everything else
// unusual that is known about the subject at this moment.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "agent/events/events.h"
#include "agent/score/alert.h"

namespace zendrix::agent {

class AlertFinder {
 public:
  // An alert that says the same of the same subject is not raised again within this time.
  static constexpr std::int64_t kRepeatAfterMs = 10 * 60 * 1000;

  // The heaviest alert comes last, since the console shows the newest on top. `events` are those of this
  // look, `present` all items that are there now. Nothing is taken for raised until Raised is told so: a
  // batch that could not be written is found again at the next look.
  std::vector<Alert> Find(const std::vector<Event>& events, const std::vector<Item>& present,
                          std::int64_t now_ms) const;
  void Raised(const std::vector<Alert>& alerts, std::int64_t now_ms);

 private:
  using Key = std::pair<std::string, std::uint32_t>;  // subject, rules
  std::map<Key, std::int64_t> raised_ms_;
};

}  // namespace zendrix::agent
