// A decision changes one line of the activations file, or adds one, whatever the file and the history hold.
// An input is the file, a byte 1F and the monitoring file.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "alerts/activations.h"
#include "support/fuzzed_alerts.h"

using namespace zendrix;
using test::Require;

namespace {

constexpr std::size_t kMostDecisions = 12;

// Lines without their ends; what stands behind the last end is a line unless it is empty. A carriage return
// there ends no line: it is the line's own.
std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string line = text.substr(start, end - start);
    if (end < text.size() && line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
    start = end + 1;
  }
  return lines;
}

// The decision's line is the one that every changed or added line of the file has become.
void RequireOneDecision(const std::vector<std::string>& before, const std::vector<std::string>& after,
                        const std::string& action) {
  Require(after.size() == before.size() || after.size() == before.size() + 1, "at most one line more");
  const bool added = after.size() > before.size();
  std::string decision = added ? after.back() : "";
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] == after[i]) continue;
    Require(!added, "a line replaced or a line added");
    Require(decision.empty() || decision == after[i], "one decision");
    decision = after[i];
    const std::string code = decision.substr(0, decision.size() - 2);
    Require(before[i].find(code) != std::string::npos, "only lines with the code replaced");
  }
  if (!decision.empty()) Require(decision.ends_with("," + action), "the action at the end");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  test::FuzzedAlerts console;
  const std::string file = test::TakePiece(input);
  if (!file.empty()) console.Put(alerts::kActivationsFile, file);
  console.Put("KorvessaMonitoring.kvl", input);
  if (!console.Load()) return 0;
  const std::vector<std::string> ids = console.Ids(kMostDecisions);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    console.alerts().GetNotableInfo(ids[i]);
    const std::string action = i % 2 ? alerts::kBlockAction : alerts::kAllowAction;
    const std::vector<std::string> before = LinesOf(console.Get(alerts::kActivationsFile));
    const auto decide = [&] {
      alerts::UpdateActivations(console.state(), console.log(), &console.table(), console.alerts().context(),
                                action);
      return console.Get(alerts::kActivationsFile);
    };
    const std::string once = decide();
    RequireOneDecision(before, LinesOf(once), action);
    Require(decide() == once, "a second time changes nothing");
  }
  for (const std::string& path : console.Paths())
    Require(!path.ends_with(".tmp"), "no temporary file left behind");
  return 0;
}
