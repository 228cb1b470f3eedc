// What counts as unusual, and how much. Each rule is one fact about one item, with a weight between 0 and 1:
// the share of the remaining doubt that the fact takes away. Facts about one subject (mostly one program)
// compose as 1 - (1 - w1)(1 - w2)..., each rule counted once, and the result is cut at 0.99, the highest risk
// that the monitoring file knows. So one strong fact or several weak ones raise an alert, and the order in
// which they come does not matter. The weights are judgement, not measurement; the table in rules.cc is the
// one place to change them. Numbers and positions are part of what is written: they may be added to, never
// reused.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::agent {

// Monitor names as the console knows them.
namespace monitor {
inline constexpr std::string_view kSystem = "System";
// What the Agent says about its own watching; both consoles know it by this name and picture.
inline constexpr std::string_view kAgent = "Monitoring Agent";
inline constexpr std::string_view kProcesses = "Running Processes";
inline constexpr std::string_view kPorts = "Listening Ports";
inline constexpr std::string_view kConnections = "TCP Connections";
// With a capital O: the console writes the user's name into an alert under this spelling only.
inline constexpr std::string_view kLogins = "Logged-On Users";
inline constexpr std::string_view kAccounts = "System Users";
inline constexpr std::string_view kAutorun = "Autorun Registry";
// Of the two names that the console knows for folders, the one whose alerts name the file.
inline constexpr std::string_view kFolders = "Windows Folder";
inline constexpr std::string_view kMemory = "Memory Utilization";
inline constexpr std::string_view kTraffic = "Network Transmission Rate";
inline constexpr std::string_view kAggregation = "Aggregation";
inline constexpr std::string_view kCommunity = "Community";
inline constexpr std::string_view kAnalysis = "Monitor Analysis Agent #1";
}  // namespace monitor

// The monitors that report items, in the order in which a baseline lists them.
const std::vector<std::string_view>& ItemMonitors();
// Every monitor that a line may name.
const std::vector<std::string_view>& AllMonitors();

// A rule's value is its position in a rule set.
enum class Rule : std::uint32_t {
  kProgramInTemporaryFolder,
  kProgramHidden,
  kProgramDeleted,
  kProgramInMemory,
  kProgramOutsideSystem,
  kNamedLikeKernelThread,
  kPortOpenToAll,
  kPortUnusual,
  kPortOfUnknownProgram,
  kPortNew,
  kConnectionToUnusualPort,
  kConnectionOfUnknownProgram,
  kLoginFromElsewhere,
  kLoginAsRootFromElsewhere,
  kSecondRoot,
  kNoPassword,
  kServiceAccountWithShell,
  kAccountNew,
  kAutorunInTemporaryFolder,
  kAutorunHidden,
  kAutorunOutsideSystem,
  kAutorunNew,
  kMemoryNearlyFull,
  kMemoryRise,
  kTrafficRise,
  kSetUserIdInTemporaryFolder,
  kHiddenProgramInTemporaryFolder,
  kProgramFileInTemporaryFolder,
  kSystemFolderChanged,
  kPreloadList,
  kFailedLogins,
  kStartedByLoader,
};
inline constexpr std::size_t kRuleCount = static_cast<std::size_t>(Rule::kStartedByLoader) + 1;

class RuleSet {
 public:
  RuleSet() = default;
  RuleSet(std::initializer_list<Rule> rules) {
    for (const Rule rule : rules) Add(rule);
  }
  void Add(Rule rule) { bits_ |= 1U << static_cast<std::uint32_t>(rule); }
  void Add(RuleSet other) { bits_ |= other.bits_; }
  void Remove(RuleSet other) { bits_ &= ~other.bits_; }
  bool Has(Rule rule) const { return (bits_ >> static_cast<std::uint32_t>(rule) & 1U) != 0; }
  bool empty() const { return bits_ == 0; }
  std::uint32_t bits() const { return bits_; }
  friend bool operator==(RuleSet, RuleSet) = default;

 private:
  std::uint32_t bits_ = 0;
};

// The rules that say no more than that a thing came while the Agent ran.
inline RuleSet NewsRules() {
  return {Rule::kPortNew, Rule::kAccountNew, Rule::kAutorunNew, Rule::kSystemFolderChanged};
}

struct RuleFacts {
  int number;             // three digits; the hundreds tell the monitor
  double weight;          // between 0 and 1
  std::string_view text;  // for the person who reads it; no separators of a line
};
const RuleFacts& FactsOf(Rule rule);

// The rules of the set, heaviest first.
std::vector<Rule> ByWeight(RuleSet rules);

// Risk of everything known about one subject, 0 to 0.99.
double ComposeRisk(RuleSet rules);

// Code of an event: letters of the monitor, number of the heaviest rule (the monitor's hundred and "00" when
// none applies), and 1, such as "RP,101,1".
std::string EventCode(std::string_view monitor_name, RuleSet rules);

}  // namespace zendrix::agent
