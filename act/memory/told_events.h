// The Agent's word as a test gives it.
#pragma once

#include <vector>

#include "act/agent_word.h"

namespace zendrix::act {

class ToldEvents : public AgentWord {
 public:
  Told Tells(const ShownEvent& wanted) override {
    if (!readable) return Told::kUnreadable;
    for (const ShownEvent& event : told) {
      if (event.monitor == wanted.monitor && event.description == wanted.description &&
          event.second == wanted.second && event.alert_second == wanted.alert_second)
        return Told::kYes;
    }
    return Told::kNo;
  }

  std::vector<ShownEvent> told;
  bool readable = true;
};

}  // namespace zendrix::act
