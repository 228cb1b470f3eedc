#include "agent/record/decisions.h"

#include <map>

#include "agent/host/text.h"
#include "agent/score/identity.h"

namespace zendrix::agent {
namespace {

constexpr std::int64_t kMostBytes = 1 << 20;
constexpr std::size_t kMostLines = 10000;
constexpr std::string_view kAlertLetters = "AG,";
constexpr std::uint64_t kLastSecond = 0x7FFFFFFF;

bool IsCode(std::string_view text) {
  return text.size() == kAlertLetters.size() + kCodeDigits && text.starts_with(kAlertLetters) &&
         text.find_first_not_of("0123456789ABCDEF", kAlertLetters.size()) == std::string_view::npos;
}

}  // namespace

std::vector<FiledDecision> ParseActivations(std::string_view text) {
  std::vector<FiledDecision> decisions;
  for (const std::string_view line : SplitLines(text)) {
    if (decisions.size() >= kMostFiled) break;
    const auto comma = line.rfind(',');
    if (comma == std::string_view::npos || !IsCode(line.substr(0, comma))) continue;
    const std::string_view action = line.substr(comma + 1);
    if (action == "0" || action == "1")
      decisions.push_back({std::string(line.substr(0, comma)), action == "1"});
  }
  return decisions;
}

std::string CheckedAlertsText(std::string_view old_text, const std::vector<DecidedAlert>& decided) {
  std::map<std::uint64_t, bool> blocked;
  for (const std::string_view raw : SplitLines(old_text)) {
    std::string_view line = Trim(raw);
    const bool block = line.ends_with('A');
    if (block) line.remove_suffix(1);
    std::uint64_t second = 0;
    if (blocked.size() < kMostLines && ReadNumber(line, second) && second <= kLastSecond)
      blocked.emplace(second, block);
  }
  for (const DecidedAlert& alert : decided) blocked[static_cast<std::uint64_t>(alert.second)] = alert.block;
  // The oldest go: their alerts are in files that were put aside long ago.
  while (blocked.size() > kMostLines) blocked.erase(blocked.begin());
  std::string text;
  for (const auto& [second, block] : blocked) text += std::to_string(second) + (block ? "A\r\n" : "\r\n");
  return text;
}

DecisionFiles::DecisionFiles(platform::Files& files, const std::string& activations_folder,
                             const std::string& folder)
    : files_(files),
      activations_path_(platform::JoinPath(activations_folder, kActivationsFile)),
      checked_path_(platform::JoinPath(folder, kCheckedAlertsFile)) {}

// Empty when there is none. A pipe, folder or device in its place is an error, which is told.
platform::Result<std::string> DecisionFiles::Read(const std::string& path) {
  const auto size = files_.Size(path);
  if (!size && size.error().kind == platform::ErrorKind::kNotFound) return std::string();
  if (!size) return size.error();
  if (size.value() > kMostBytes) return platform::Error{platform::ErrorKind::kOther, "it is too large"};
  return files_.ReadAll(path);
}

std::vector<std::string> DecisionFiles::Follow(Scorer& scorer, std::int64_t now_ms) {
  std::vector<std::string> messages;
  if (now_ms < next_ms_) return messages;
  next_ms_ = now_ms + kEveryMs;
  const auto filed = Read(activations_path_);
  if (filed && filed.value() != seen_) {
    seen_ = filed.value();
    for (const FiledDecision& decision : ParseActivations(seen_)) {
      if (!scorer.Decide(decision.code, decision.block)) continue;
      is_due_ = true;
      messages.push_back((decision.block ? "Blocked by the user; " : "Allowed by the user; ") +
                         CleanName(decision.code));
    }
  }
  platform::Status done = filed ? platform::Status(platform::Done{}) : platform::Status(filed.error());
  if (is_due_) {
    const auto decided = scorer.Decided();
    const auto old_text = Read(checked_path_);
    const std::string text = old_text ? CheckedAlertsText(old_text.value(), decided) : "";
    if (!old_text) {
      done = old_text.error();
    } else if (!decided.empty() && text != old_text.value()) {
      done = files_.WriteAll(checked_path_, text);
    }
    is_due_ = !done;
  }
  if (!done && !failing_) messages.push_back("Decisions cannot be kept; " + CleanText(done.error().text));
  failing_ = !done.ok();
  return messages;
}

}  // namespace zendrix::agent
