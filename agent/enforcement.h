// What is done about a program that the user blocked and that is there again with the same contents: the
// helper that acts is asked to block it again. The Agent itself changes nothing; the helper has a record of
// its own of what it blocked with a user's consent, and goes by that alone.
//
// The helper is asked beside the Agent's loop, which goes on looking meanwhile; the alerts wait for the
// answer, which has a deadline of its own.
//
// What became of it stands in the Community row behind the alert, in words of the Agent's own: a sentence of
// the helper's holds the program's name, which could read like a success. The sentence goes into the log.
#pragma once

#include <future>
#include <map>
#include <string>
#include <vector>

#include "agent/score/alert.h"
#include "platform/act_helper.h"

namespace zendrix::agent {

class Enforcement {
 public:
  // Null: there is nobody to ask. Outlives the object, and takes calls from another thread, one at a time.
  explicit Enforcement(platform::ActHelper* helper) : helper_(helper) {}

  // Asks for each that is to be blocked again. True when there is an answer to all; otherwise come again.
  bool IsAnswered(const std::vector<Alert>& alerts);
  // Says in the alerts what became of it, and waits for that where there is no answer yet. The lines for the
  // log. Alerts that could not be written come again; nobody is asked twice for one.
  std::vector<std::string> React(std::vector<Alert>& alerts);
  // The alerts stand in the file: the next ones are new.
  void Written() { outcomes_.clear(); }

 private:
  struct Outcome {
    bool acted = false;
    std::string reaction;
  };

  using Answer = platform::Result<platform::ActAnswer>;
  struct Question {
    BlockedAgain blocked;
    std::shared_future<Answer> answer;
  };

  static bool IsToBeBlocked(const Alert& alert) { return alert.blocked && !alert.IsQuiet(); }
  void Ask(const Alert& alert);
  static Outcome OutcomeOf(const Question& question, std::vector<std::string>& log);

  platform::ActHelper* const helper_;
  std::shared_future<Answer> last_;            // that was asked
  std::map<std::string, Question> questions_;  // by code, until their answer is taken
  std::map<std::string, Outcome> outcomes_;    // by code
};

}  // namespace zendrix::agent
