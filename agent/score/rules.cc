#include "agent/score/rules.h"

#include <algorithm>
#include <array>

namespace zendrix::agent {
namespace {

constexpr double kHighestRisk = 0.99;

constexpr std::array<RuleFacts, kRuleCount> kRules = {{
    {101, 0.92, "program runs from a temporary folder"},
    {102, 0.60, "program runs from a hidden file or folder"},
    {103, 0.50, "program file was deleted while it runs"},
    {104, 0.95, "program runs from memory and never was a file"},
    {105, 0.60, "program runs from outside the system folders"},
    {106, 0.94, "program calls itself by the name of a kernel thread"},
    {201, 0.45, "port is open to all networks"},
    {202, 0.60, "port is none of a usual service"},
    {203, 0.30, "program behind the port cannot be told"},
    {204, 0.50, "port was opened while the Agent ran"},
    {301, 0.45, "connection goes out to an unusual port"},
    {302, 0.25, "program behind the connection cannot be told"},
    {401, 0.30, "login comes from another computer"},
    {402, 0.70, "root logged in from another computer"},
    {501, 0.94, "account other than root has all rights"},
    {502, 0.92, "account needs no password"},
    {503, 0.50, "service account may log in"},
    {504, 0.80, "account was added while the Agent ran"},
    {601, 0.93, "program that starts by itself lies in a temporary folder"},
    {602, 0.60, "program that starts by itself is hidden"},
    {603, 0.30, "program that starts by itself lies outside the system folders"},
    {604, 0.75, "entry that starts by itself was added while the Agent ran"},
    {701, 0.50, "memory is nearly full"},
    {702, 0.45, "memory use rose sharply"},
    {751, 0.50, "network transmission rose sharply"},
    {851, 0.95, "file in a temporary folder runs with the rights of its owner"},
    {852, 0.85, "hidden program file in a temporary folder"},
    {853, 0.45, "program file in a temporary folder"},
    {801, 0.70, "system folder was changed while the Agent ran"},
    {802, 0.85, "library list is loaded into every program"},
    {901, 0.85, "many logins failed"},
    {107, 0.75, "program is started by way of the loader so that its own file is not seen"},
}};

struct MonitorFacts {
  std::string_view name;
  std::string_view letters;
  int hundred;
};

constexpr std::array<MonitorFacts, 13> kMonitors = {{
    {monitor::kProcesses, "RP", 100},
    {monitor::kPorts, "LP", 200},
    {monitor::kConnections, "TC", 300},
    {monitor::kLogins, "LU", 400},
    {monitor::kAccounts, "SU", 500},
    {monitor::kAutorun, "AR", 600},
    {monitor::kMemory, "MU", 700},
    {monitor::kTraffic, "NT", 750},
    {monitor::kFolders, "WF", 800},
    {monitor::kSystem, "SY", 900},
    {monitor::kAgent, "MA", 950},
    {monitor::kAggregation, "AG", 0},
    {monitor::kCommunity, "CO", 0},
}};

const MonitorFacts& MonitorOf(std::string_view name) {
  static constexpr MonitorFacts kUnknown = {"", "XX", 0};
  const auto found = std::find_if(kMonitors.begin(), kMonitors.end(),
                                  [&](const MonitorFacts& facts) { return facts.name == name; });
  return found == kMonitors.end() ? kUnknown : *found;
}

}  // namespace

const std::vector<std::string_view>& ItemMonitors() {
  static const std::vector<std::string_view> kNames = {
      monitor::kAccounts,  monitor::kLogins, monitor::kAutorun,    monitor::kFolders,
      monitor::kProcesses, monitor::kPorts,  monitor::kConnections};
  return kNames;
}

const std::vector<std::string_view>& AllMonitors() {
  static const std::vector<std::string_view> kNames = [] {
    std::vector<std::string_view> names = {monitor::kAnalysis};
    for (const MonitorFacts& facts : kMonitors) names.push_back(facts.name);
    return names;
  }();
  return kNames;
}

const RuleFacts& FactsOf(Rule rule) {
  return kRules.at(static_cast<std::size_t>(rule));
}

std::vector<Rule> ByWeight(RuleSet rules) {
  std::vector<Rule> order;
  for (std::size_t i = 0; i < kRuleCount; ++i) {
    if (rules.Has(static_cast<Rule>(i))) order.push_back(static_cast<Rule>(i));
  }
  std::stable_sort(order.begin(), order.end(),
                   [](Rule a, Rule b) { return FactsOf(a).weight > FactsOf(b).weight; });
  return order;
}

double ComposeRisk(RuleSet rules) {
  double doubt = 1.0;
  for (const Rule rule : ByWeight(rules)) doubt *= 1.0 - FactsOf(rule).weight;
  return std::min(1.0 - doubt, kHighestRisk);
}

std::string EventCode(std::string_view monitor_name, RuleSet rules) {
  const MonitorFacts& facts = MonitorOf(monitor_name);
  const int number = rules.empty() ? facts.hundred : FactsOf(ByWeight(rules).front()).number;
  return std::string(facts.letters) + "," + std::to_string(number) + ",1";
}

}  // namespace zendrix::agent
