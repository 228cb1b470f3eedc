#include "mail/alert_line.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/number_rules.h"
#include "core/text_rules.h"

namespace zendrix::mail {
namespace {

constexpr std::size_t kFieldsOfAFullLine = 7;
constexpr std::size_t kShortWidth = 50;
constexpr std::size_t kCodeWidth = 100;
constexpr std::size_t kLongWidth = 1536;
constexpr std::int64_t kLastSecond = 0x7FFFFFFF;
constexpr double kHighestRisk = 0.99;

bool ReadSecond(std::string_view text, std::int64_t& second) {
  const auto read = std::from_chars(text.data(), text.data() + text.size(), second);
  return read.ec == std::errc() && read.ptr == text.data() + text.size() && second >= 0 &&
         second <= kLastSecond;
}

std::vector<std::pair<std::string, std::string>> PairsOf(std::string_view description) {
  std::vector<std::pair<std::string, std::string>> pairs;
  for (const std::string_view item : core::Split(description, ";")) {
    const auto equals = item.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string name(item.substr(0, equals));
    for (const std::string_view value : core::Split(item.substr(equals + 1), " * ")) {
      pairs.emplace_back(name, value);
    }
  }
  return pairs;
}

}  // namespace

std::optional<Alert> ParseAlert(std::string_view line) {
  const std::string clean = core::CleanLine(line);
  const auto fields = core::Split(core::Trim(clean), "|");
  if (fields.size() < kFieldsOfAFullLine) return std::nullopt;
  const auto stamp = core::Split(fields[0], ",");
  if (stamp.size() != 4 || stamp[3] != "Aggregation") return std::nullopt;
  Alert alert;
  if (!ReadSecond(stamp[0], alert.second)) return std::nullopt;
  alert.risk = core::Val(fields[2].substr(0, kShortWidth));
  if (!(alert.risk >= 0)) return std::nullopt;
  alert.risk = std::min(alert.risk, kHighestRisk);
  alert.host = stamp[1].substr(0, kShortWidth);
  const auto description = fields[3].substr(0, kLongWidth);
  alert.pairs = PairsOf(description);
  alert.facts = fields[4].substr(0, kLongWidth);
  alert.code = fields[5].substr(0, kCodeWidth);
  alert.line = std::to_string(alert.second) + "," + alert.host + ",0,Aggregation|0|";
  for (const std::string_view field : {fields[2].substr(0, kShortWidth), description,
                                       std::string_view(alert.facts), std::string_view(alert.code)}) {
    alert.line.append(field).append("|");
  }
  alert.line += "0";
  return alert;
}

int RiskPercent(const Alert& alert) {
  return static_cast<int>(core::RoundToLong(alert.risk * 100 / kHighestRisk));
}

}  // namespace zendrix::mail
