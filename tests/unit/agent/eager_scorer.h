// Twin of what decides on alerts, for tests of what writes them: everything unusual that comes is an alert at
// once, one for each subject, however often it comes. Nothing is known to it.
#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "agent/score/identity.h"
#include "agent/score/scorer.h"

namespace zendrix::agent {

class EagerScorer : public Scorer {
 public:
  bool is_waiting = false;

  bool IsKnown(const Item&) const override { return false; }
  bool IsWaiting() const override { return is_waiting; }

  std::vector<Alert> Weigh(const std::vector<Event>& events, Moment) override {
    for (const Event& event : events) {
      if (event.item.rules.empty() || event.kind == EventKind::kRemoved) continue;
      Alert& alert = waiting_[event.item.subject];
      alert.subject = event.item.subject;
      alert.rules.Add(event.item.rules);
      alert.members.push_back(event.item);
    }
    std::vector<Alert> alerts;
    for (auto& [subject, alert] : waiting_) alerts.push_back(Described(alert));
    std::stable_sort(alerts.begin(), alerts.end(),
                     [](const Alert& a, const Alert& b) { return a.risk < b.risk; });
    return alerts;
  }

  std::vector<Alert> Rest(Moment) override { return {}; }

  void Raised(const std::vector<Alert>& alerts, std::int64_t, Moment) override {
    for (const Alert& alert : alerts) written_.insert(alert.change);
    waiting_.clear();
  }

  void BeginFile() override {
    waiting_.clear();
    written_.clear();
  }

 private:
  Alert Described(Alert alert) {
    alert.risk = ComposeRisk(alert.rules);
    alert.code = AlertCode("", alert.subject);
    alert.change = identities_.ChangeOf(alert.risk, true, alert.code);
    alert.has_forerunner = written_.contains(alert.change);
    for (const Rule rule : ByWeight(alert.rules)) {
      if (alert.facts.size() < 3) alert.facts.emplace_back(FactsOf(rule).text);
    }
    return alert;
  }

  Identities identities_;
  std::map<std::string, Alert> waiting_;  // by subject, until some are written
  std::set<std::string> written_;         // Change texts of the file
};

}  // namespace zendrix::agent
