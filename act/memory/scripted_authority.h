// An authority whose answers a test gives, at the moment when the test wants them.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "act/authority.h"

namespace zendrix::act {

class ScriptedAuthority : public Authority {
 public:
  struct Question {
    Caller caller;
    std::string action;
    AskedAbout about;
    std::uint64_t ticket = 0;
    std::function<void(Verdict)> answer;
    bool withdrawn = false;
  };

  void Ask(const Caller& caller, std::string_view action, const AskedAbout& about, std::uint64_t ticket,
           std::function<void(Verdict)> answer) override {
    questions.push_back({caller, std::string(action), about, ticket, std::move(answer)});
    if (at_once) questions.back().answer(*at_once);
  }
  void Withdraw(std::uint64_t ticket) override {
    for (Question& question : questions)
      if (question.ticket == ticket) question.withdrawn = true;
  }

  // Nothing: the test answers later.
  std::optional<Verdict> at_once = Verdict::kYes;
  std::vector<Question> questions;
};

}  // namespace zendrix::act
