// A link that keeps what it was told and makes the trouble that a test asks for.
#pragma once

#include <string>
#include <vector>

#include "platform/agent_link.h"

namespace zendrix::platform {

class RecordingAgentLink : public AgentLink {
 public:
  void Decide(std::int64_t alert_second, const std::string& code, bool block, OnTrouble on_trouble) override {
    Note(std::to_string(alert_second) + " " + code + (block ? " block" : " allow"), on_trouble);
  }
  void SetMail(const std::string& settings, OnTrouble on_trouble) override {
    Note("mail " + settings, on_trouble);
  }

  std::vector<std::string> told;
  std::string trouble;  // of every call; none while empty

 private:
  void Note(std::string what, const OnTrouble& on_trouble) {
    told.push_back(std::move(what));
    if (!trouble.empty()) on_trouble(trouble);
  }
};

}  // namespace zendrix::platform
