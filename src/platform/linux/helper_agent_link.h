// Tells by the helper. The user may take his time with its question, so it is asked on a thread of its own,
// one thing after the other in the order told, while the window goes on; the answer comes with a timer.
// Without timers (on a terminal) each call waits for its answer.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "platform/act_helper.h"
#include "platform/agent_link.h"
#include "platform/message_loop.h"

namespace zendrix::platform {

class HelperAgentLink : public AgentLink {
 public:
  // The helper may be called from another thread and has to outlive the process's last call.
  explicit HelperAgentLink(ActHelper& helper, TimerMaker* timers = nullptr);
  HelperAgentLink(const HelperAgentLink&) = delete;
  HelperAgentLink& operator=(const HelperAgentLink&) = delete;

  void Decide(std::int64_t alert_second, const std::string& code, bool block, OnTrouble trouble) override;
  void SetMail(const std::string& settings, OnTrouble trouble) override;

 private:
  struct Errand {
    std::function<Result<ActAnswer>()> ask;
    std::string not_told;  // how the sentence begins
    OnTrouble trouble;
  };
  struct Asked;

  void Run(Errand errand);
  void StartNext();
  void Look();
  static void Tell(const Errand& errand, const Result<ActAnswer>& answer);

  ActHelper& helper_;
  std::unique_ptr<Timer> timer_;
  std::deque<Errand> waiting_;    // the first is under way
  std::shared_ptr<Asked> asked_;  // null when nothing is
};

}  // namespace zendrix::platform
