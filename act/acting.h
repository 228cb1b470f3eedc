// What the helper does for those who may ask it: puts programs in quarantine that the Agent told of, ends
// them, and brings them back.
//
//  Block       a file that an alert of the Agent's names, moved to quarantine with the caller's consent, and
//              the one process that was shown ended. Everything is checked before anybody is asked, and again
//              behind the answer; the contents must be the same then.
//  Allow       an entry of the quarantine put back, with an administrator's consent. It is no longer blocked
//              by itself from then on.
//  Decide      a user's decision on an alert that the Agent told of, filed where the Agent follows it: a
//  Block
//              with the caller's consent, an Allow with an administrator's. It moves no file. Whoever has
//              just blocked or allowed a file for the same alert has consented.
//  SetMail     the settings of e-mail laid down for the mailer with their side file, with an administrator's
//              consent.
//  BlockAgain  for the Agent alone, without asking: a program whose path and contents are both those of a
//              Block that was authorised (block_record.h).
//
// Every refusal says in one sentence why (Windows-1252, 255 bytes at most) and leaves everything as it was,
// unless it says otherwise. Runs on one thread; what waits for the authority is bounded.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "act/agent_word.h"
#include "act/allowance.h"
#include "act/authority.h"
#include "act/block_record.h"
#include "act/decision_record.h"
#include "act/processes.h"
#include "act/store.h"
#include "platform/clock.h"

namespace zendrix::act {

struct Answer {
  bool done = false;  // moved, and no process of it that was shown goes on
  std::string sentence;
};
using Reply = std::function<void(const Answer&)>;

struct BlockRequest {
  ShownEvent event;
  bool shown = true;  // whether the alert's page has a row for the event
};

// All outlive the object.
struct ActingParts {
  AgentWord& agent;
  Store& store;
  Processes& processes;
  Authority& authority;
  BlockRecord& record;
  DecisionRecord& decisions;
  platform::Files& mail_files;
  std::string mail_settings;  // the file that the mailer reads
  platform::Clock& clock;
  uid_t agent_user;
  std::function<bool(uid_t)> is_administrator;
};

class Acting {
 public:
  static constexpr std::size_t kMostPending = 8;
  static constexpr std::size_t kLongestText = 8192;
  static constexpr std::size_t kMostProcesses = 16;
  static constexpr std::size_t kLongestMail = std::size_t{64} << 10;
  // A consent covers the decision of the same click for so long.
  static constexpr std::int64_t kConsentMs = 120'000;

  explicit Acting(const ActingParts& parts) : parts_(parts) {}

  void Block(const Caller& caller, const BlockRequest& request, Reply reply);
  void Allow(const Caller& caller, const std::string& entry, Reply reply);
  void Decide(const Caller& caller, const ShownAlert& alert, bool block, Reply reply);
  void SetMail(const Caller& caller, const std::string& settings, Reply reply);
  Answer BlockAgain(const Caller& caller, const std::string& path, const std::string& sha256,
                    const std::vector<pid_t>& processes);
  // One line per entry, as the family library writes them; otherwise the sentence that says why not.
  // Root, the Agent and administrators see all, anybody else what was his or was blocked by his consent.
  Answer List(const Caller& caller);

  // Whoever is no longer there wants nothing any more: what he asked for is dropped without a reply.
  void CallerGone(const std::string& name);
  // Nobody is waited for any more: every question ends unanswered, and whoever asked is told.
  void GiveUp();
  bool IsBusy() const { return !pending_.empty(); }

 private:
  struct Pending {
    std::string caller;
    std::uint32_t user = 0;
    std::function<void(Verdict)> go_on;
  };
  struct Consent {
    std::uint32_t user = 0;
    std::int64_t alert_second = 0;
    std::string path;  // of the file that was moved
    bool block = false;
    std::int64_t until_ms = 0;
  };
  struct Held {
    std::unique_ptr<HeldProcess> process;
    ShownProgram shown;
  };

  void Ask(const Caller& caller, std::string_view action, const AskedAbout& about,
           std::function<void(Verdict)> go_on);
  // Counts as a question of his.
  std::string WhyNotNow(const Caller& caller);
  bool AsksTooOften(Allowance& allowance, const Caller& caller) const;
  Answer TakeShown(const family::Event& event, const Caller& caller, const TakenFile& looked, Held& held);
  Answer Restore(const family::Entry& entry, const Caller& caller);
  Answer FileDecision(const ShownAlert& alert, bool block);
  Answer LayDownMail(const std::string& settings);
  void Consented(const Caller& caller, const std::string& alert_second, const std::string& path, bool block);
  // Takes the consent: it covers one decision, on an alert about the file that it was given for.
  bool HasConsented(const Caller& caller, const ShownAlert& alert, std::string_view description, bool block);
  // What is to be said behind the move of the file; empty when there is nothing to say. `done` becomes false
  // where a process goes on.
  std::string EndAll(std::vector<Held>& held, bool& done);

  const ActingParts parts_;
  std::uint64_t last_ticket_ = 0;
  std::map<std::uint64_t, Pending> pending_;
  std::vector<Consent> consents_;
  Allowance allowance_;           // of calls for which nobody is asked
  Allowance question_allowance_;  // of all others, so that the former cannot use it up
};

}  // namespace zendrix::act
