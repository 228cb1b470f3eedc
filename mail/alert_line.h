// An alert as the monitoring file tells it: a full line of the monitor "Aggregation" whose Change is 0 or
// more, cleaned, split and cut by the console's own rules (docs/formats.md). Texts are Windows-1252 and were
// chosen by whoever is to be caught.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zendrix::mail {

struct Alert {
  std::int64_t second = 0;  // UTC
  std::string host;
  double risk = 0;  // 0 to 0.99
  std::string code;
  std::string facts;                                       // what speaks for it, parted by "; "
  std::vector<std::pair<std::string, std::string>> pairs;  // monitor and description
  std::string line;  // what it was read from, without what is not needed

  // One alert stands in the file twice when it is the first with its Change; both lines have the same key.
  std::string Key() const { return std::to_string(second) + " " + code; }
};

// Nothing for a line that is no alert.
std::optional<Alert> ParseAlert(std::string_view line);

// As the console shows it: 0.99 is 100 per cent.
int RiskPercent(const Alert& alert);

}  // namespace zendrix::mail
