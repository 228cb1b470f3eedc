// An alert: everything unusual that is known about one subject, mostly a program, and what the Agent makes of
// it. Texts are cleaned (see host/text.h) and can stand in a line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "agent/events/snapshot.h"
#include "agent/score/rules.h"

namespace zendrix::agent {

// A program that the user blocked, there again with the same contents.
struct BlockedAgain {
  std::string path;  // the host's bytes
  std::string sha256;
  std::vector<std::uint32_t> processes;  // that run it
};

struct Alert {
  std::string subject;
  RuleSet rules;
  double risk = 0;            // 0 to 0.99
  std::vector<Item> members;  // heaviest first; each was written as an event of its own before the alert
  std::string code = {};      // what it is about, without the number of its events (see identity.h)
  std::string change = {};    // text of the Change column; negative for what is stored and no alert
  std::vector<std::string> facts = {};  // what speaks for it, for a person; at most three, heaviest first
  // The file holds a line with this Change already, under which the console can file a decision.
  bool has_forerunner = false;
  std::optional<BlockedAgain> blocked = {};
  std::optional<bool> acted = {};  // whether it was blocked again; nothing when that was not tried
  std::string reaction = {};       // what became of that, for the Community row

  bool IsQuiet() const { return change.starts_with('-'); }
};

// The second that an alert of a batch is written with. Each alert has one of its own, since the console knows
// a decision by it; the quiet ones in front of the first share the batch's second, and so on.
inline std::int64_t SecondOfAlert(const std::vector<Alert>& alerts, std::size_t index, std::int64_t first) {
  for (std::size_t i = 0; i < index; ++i) {
    if (!alerts[i].IsQuiet()) ++first;
  }
  return first;
}

}  // namespace zendrix::agent
