#include "agent/score/identity.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "agent/score/digest.h"

namespace zendrix::agent {
namespace {

constexpr std::uint64_t kNames = 10000000000;  // ten digits
constexpr int kRiskSteps = 10000;              // four decimals
constexpr int kMostWrittenRisk = 9899;

std::string Padded(std::uint64_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

}  // namespace

std::string AlertCode(std::string_view key, std::string_view about) {
  // The key has one width, so that no other pair of key and name runs together to the same text.
  std::string digits = Sha256Of(Sha256Of(key) + std::string(about)).substr(0, kCodeDigits);
  for (char& digit : digits) digit = digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit;
  return "AG," + digits;
}

std::string Identities::ChangeOf(double risk, bool is_alert, const std::string& code) {
  const int steps = std::clamp(static_cast<int>(std::lround(risk * kRiskSteps)), 0, kMostWrittenRisk);
  const std::string head = (is_alert ? "0." : "-0.") + Padded(static_cast<std::uint64_t>(steps), 4);
  std::uint64_t name = ShortSumOf(code) % kNames;
  if (codes_.size() >= kMost) codes_.clear();
  for (;;) {
    const std::string change = head + Padded(name, 10);
    const auto [at, is_new] = codes_.emplace(change, code);
    if (is_new || at->second == code) return change;
    name = (name + 1) % kNames;
  }
}

}  // namespace zendrix::agent
