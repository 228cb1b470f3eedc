#include "agent/enforcement.h"

#include <chrono>
#include <system_error>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr char kActed[] = "success (moved to quarantine again)";
constexpr char kRefused[] = "failed (blocked before - the log says why not again)";
constexpr char kNoHelper[] = "failed (blocked before - there is no helper to do it again)";
constexpr char kNoAnswer[] = "failed (blocked before - the helper did not answer)";

}  // namespace

void Enforcement::Ask(const Alert& alert) {
  if (questions_.contains(alert.code) || outcomes_.contains(alert.code)) return;
  // One after the other; where one got no answer, those behind it do not wait for theirs.
  std::shared_future<Answer> before;
  if (!questions_.empty()) before = last_;
  try {
    last_ = std::async(std::launch::async, [helper = helper_, blocked = *alert.blocked, before]() -> Answer {
              if (before.valid() && !before.get()) return before.get().error();
              return helper->BlockAgain(blocked.path, blocked.sha256, blocked.processes);
            }).share();
  } catch (const std::system_error& error) {  // no thread to be had
    std::promise<Answer> none;
    none.set_value(platform::Error{platform::ErrorKind::kUnavailable, error.what()});
    last_ = none.get_future().share();
  }
  questions_.emplace(alert.code, Question{*alert.blocked, last_});
}

bool Enforcement::IsAnswered(const std::vector<Alert>& alerts) {
  if (helper_ == nullptr) return true;
  bool all = true;
  for (const Alert& alert : alerts) {
    if (!IsToBeBlocked(alert)) continue;
    Ask(alert);
    const auto asked = questions_.find(alert.code);
    all = all && (asked == questions_.end() ||
                  asked->second.answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
  }
  return all;
}

Enforcement::Outcome Enforcement::OutcomeOf(const Question& question, std::vector<std::string>& log) {
  const Answer& answer = question.answer.get();
  const std::string what = "Blocked before and there again: " + CleanName(question.blocked.path) + "; ";
  if (answer) {
    log.push_back(what + CleanText(answer.value().sentence));
    return {answer.value().done, answer.value().done ? kActed : kRefused};
  }
  log.push_back(what + CleanText(answer.error().text));
  const bool absent = answer.error().kind == platform::ErrorKind::kUnavailable;
  return {false, absent ? kNoHelper : kNoAnswer};
}

std::vector<std::string> Enforcement::React(std::vector<Alert>& alerts) {
  std::vector<std::string> log;
  if (helper_ == nullptr) return log;
  for (Alert& alert : alerts) {
    if (!IsToBeBlocked(alert)) continue;
    Ask(alert);
    if (const auto asked = questions_.find(alert.code); asked != questions_.end()) {
      outcomes_.emplace(alert.code, OutcomeOf(asked->second, log));
      questions_.erase(asked);
    }
    const Outcome& outcome = outcomes_.at(alert.code);
    alert.acted = outcome.acted;
    alert.reaction = outcome.reaction;
  }
  return log;
}

}  // namespace zendrix::agent
