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

  Told TellsAlert(const ShownAlert& wanted, std::string& description) override {
    if (!readable) return Told::kUnreadable;
    for (const ShownAlert& alert : told_alerts) {
      if (alert.second != wanted.second || alert.code != wanted.code) continue;
      description = alert_description;
      return Told::kYes;
    }
    return Told::kNo;
  }

  std::vector<ShownEvent> told;
  std::vector<ShownAlert> told_alerts;
  std::string alert_description = "Running Processes=/tmp/dropper:4711;";
  bool readable = true;
};

}  // namespace zendrix::act
