#include "agent/enforcement.h"

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr char kActed[] = "success (moved to quarantine again)";
constexpr char kRefused[] = "failed (blocked before - the log says why not again)";
constexpr char kNoHelper[] = "failed (blocked before - there is no helper to do it again)";
constexpr char kNoAnswer[] = "failed (blocked before - the helper did not answer)";

}  // namespace

Enforcement::Outcome Enforcement::Ask(const BlockedAgain& blocked, std::vector<std::string>& log) {
  const auto answer = helper_->BlockAgain(blocked.path, blocked.sha256, blocked.processes);
  const std::string what = "Blocked before and there again: " + CleanName(blocked.path) + "; ";
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
    if (!alert.blocked || alert.IsQuiet()) continue;
    auto known = outcomes_.find(alert.code);
    if (known == outcomes_.end()) known = outcomes_.emplace(alert.code, Ask(*alert.blocked, log)).first;
    alert.acted = known->second.acted;
    alert.reaction = known->second.reaction;
  }
  return log;
}

}  // namespace zendrix::agent
