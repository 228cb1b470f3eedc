// A host that lives in simulated time, as the scorer sees it: verbs for what happens, and the alerts by day.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "agent/events/events.h"
#include "agent/host/observe_autorun.h"
#include "agent/host/observe_folders.h"
#include "agent/host/observe_processes.h"
#include "agent/host/places.h"
#include "agent/host/text.h"
#include "agent/score/digest.h"
#include "agent/score/scorer.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {

class ScoredHost {
 public:
  static constexpr std::int64_t kDay = 86400;
  static constexpr std::int64_t kBegin = 1700006400;  // a midnight

  ScoredHost() { Restart(); }

  // Where the memory is kept from now on; in memory until then.
  void KeepIn(const std::string& path) {
    path_ = path;
    Restart();
  }

  // The Agent ends and starts again, with what it has kept.
  void Restart() {
    scorer_.reset();
    scorer_ = MakeBaselineScorer({host, path_, utc});
  }

  void At(int day, double hour) {
    const std::int64_t then = kBegin + day * kDay + static_cast<std::int64_t>(hour * 3600);
    Wait(std::max<std::int64_t>(then - utc, 0));
  }
  // What waits comes due on the way.
  void Wait(std::int64_t seconds) {
    if (seconds <= 0) return;
    const std::int64_t until = utc + seconds;
    for (utc = std::min(until, utc + 3); utc < until; utc = until) Turn({});
    Turn({});
  }

  // A file that can be run, so that its contents can be told.
  void Put(const std::string& path, const std::string& contents) {
    host.texts[path] = contents;
    host.facts[path] = {EntryKind::kFile, 0755, static_cast<std::int64_t>(contents.size()), ++changes_};
  }
  // A package with these files, installed now.
  void Install(const std::string& package, const std::map<std::string, std::string>& files) {
    std::string list, sums;
    for (const auto& [path, contents] : files) {
      Put(path, contents);
      list += path + "\n";
      sums += Md5Of(contents) + "  " + path.substr(1) + "\n";
    }
    const std::string info = "/var/lib/dpkg/info";
    host.texts[info + "/" + package + ".list"] = list;
    host.texts[info + "/" + package + ".md5sums"] = sums;
    host.facts[info + "/" + package + ".list"] = {EntryKind::kFile, 0644, 1, utc * 1000000000};
    host.facts[info] = {EntryKind::kFolder, 0755, 1, utc * 1000000000 + ++changes_};
  }

  // The rules are those that the observers give.
  void Start(const std::string& program, const std::string& parent, RuleSet more = {}) {
    Item item = Of(monitor::kProcesses, CleanName(program) + ":" + std::to_string(++pid_), program, more);
    item.parent = parent;
    Came(item);
  }
  void Connect(const std::string& program, const std::string& address, unsigned port) {
    const RuleSet more = IsUsualPort(port) ? RuleSet{} : RuleSet{Rule::kConnectionToUnusualPort};
    Came(Of(monitor::kConnections, address + ":" + std::to_string(port) + ":" + CleanName(program), program,
            more));
  }
  void Listen(const std::string& program, unsigned port) {
    RuleSet more = {Rule::kPortOpenToAll};
    if (!IsUsualPort(port)) more.Add(Rule::kPortUnusual);
    Came(Of(monitor::kPorts, std::to_string(port) + ":" + CleanName(program), program, more));
  }
  // A desktop entry of the person "ann".
  void Autostart(const std::string& name, const std::string& command) {
    host.texts["/home/ann/.config/autostart/" + name] = "[Desktop Entry]\nExec=" + command + "\n";
    Look([&] { return ObserveAutorun(host, {{"ann", false, 1000, "/home/ann", "/bin/bash"}}); });
  }
  void Preload(const std::string& library) {
    host.texts["/etc/ld.so.preload"] = library + "\n";
    host.facts["/etc/ld.so.preload"] = {EntryKind::kFile, 0644, 1, ++changes_};
    Look([&] { return ObserveFolders(host); });
  }
  void Account(const std::string& name, RuleSet rules = {}) {
    Came(MakeItem(monitor::kAccounts, name, rules, "account " + name));
  }
  void Login(const std::string& who, RuleSet rules = {}) {
    Came(MakeItem(monitor::kLogins, who, rules, "login of " + who.substr(0, who.find(' '))));
  }
  // What an observer sees that it did not see at its last look.
  template <class Observe>
  void Look(Observe observe) {
    const auto seen = observe();
    Turn(ChangeEvents({{}, Compare(looked_, seen).added}));
    looked_.insert(looked_.end(), seen.begin(), seen.end());
  }
  void Came(const Item& item) { Turn(ChangeEvents({{}, {item}})); }
  void IsThere(const std::vector<Item>& items) { Turn(PresentEvents(items)); }

  void Turn(const std::vector<Event>& events) {
    const Moment now{utc, (utc - kBegin) * 1000};
    auto due = scorer_->Weigh(events, now);
    if (due.empty() || !writes) return;
    if (react) std::for_each(due.begin(), due.end(), react);
    const std::int64_t second = std::max(utc, last_second_ + 1);
    scorer_->Raised(due, second, now);
    last_second_ = SecondOfAlert(due, due.size() - 1, second);
    for (const Alert& alert : due) (alert.IsQuiet() ? quiet : alerts).push_back({utc, alert});
  }

  struct Told {
    std::int64_t utc;
    Alert alert;
  };
  std::vector<Alert> AlertsOn(int day) const {
    std::vector<Alert> found;
    for (const Told& told : alerts) {
      if ((told.utc - kBegin) / kDay == day) found.push_back(told.alert);
    }
    return found;
  }

  Scorer& scorer() { return *scorer_; }

  FakeHost host;
  std::int64_t utc = kBegin;
  std::vector<Told> alerts;
  std::vector<Told> quiet;
  bool writes = true;
  std::function<void(Alert&)> react;  // before an alert is written
  int last_pid() const { return pid_; }

  static std::string Md5Of(const std::string& contents) {
    Sum sum(SumKind::kMd5);
    sum.Add(contents);
    return sum.Digits();
  }

 private:
  static Item Of(std::string_view monitor_name, const std::string& description, const std::string& program,
                 RuleSet more) {
    Item item =
        MakeItem(monitor_name, description, RulesOfProgram({program, false, false}), CleanName(program));
    item.rules.Add(more);
    item.program = program;
    return item;
  }

  std::string path_;
  std::vector<Item> looked_;
  std::unique_ptr<Scorer> scorer_;
  std::int64_t changes_ = 0;
  std::int64_t last_second_ = 0;
  int pid_ = 1000;
};

}  // namespace zendrix::agent
