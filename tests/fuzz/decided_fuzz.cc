// What the console's user, or a program of his, put into the two files of decisions: no reading crashes,
// every decision taken is a code and an action to the letter, and no second stands twice in what the console
// will read. An input is both files, the first to its first NUL.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

#include "agent/host/text.h"
#include "agent/record/decisions.h"

namespace {

using namespace zendrix::agent;

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view filed = input.substr(0, input.find('\0'));
  const auto decisions = ParseActivations(filed);
  Require(decisions.size() <= kMostFiled);
  for (const FiledDecision& decision : decisions) {
    Require(filed.find(decision.code + (decision.block ? ",1" : ",0")) != std::string_view::npos);
  }
  const std::string_view old_text = input.substr(std::min(filed.size() + 1, input.size()));
  const std::string text = CheckedAlertsText(old_text, {{1700000000, true}, {5, false}});
  std::set<std::string_view> seconds;
  for (std::string_view line : SplitLines(text)) {
    if (line.ends_with('A')) line.remove_suffix(1);
    std::uint64_t second = 0;
    Require(ReadNumber(line, second) && seconds.insert(line).second);
  }
  Require(seconds.contains("1700000000") && seconds.contains("5"));
  Require(CheckedAlertsText(text, {}) == text);
  return 0;
}
