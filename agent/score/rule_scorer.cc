#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "agent/score/alerts.h"
#include "agent/score/identity.h"
#include "agent/score/scorer.h"

namespace zendrix::agent {
namespace {

class RuleScorer : public Scorer {
 public:
  bool IsKnown(const Item&) const override { return false; }

  std::vector<Alert> Weigh(const std::vector<Event>& events, Moment now) override {
    for (const Event& event : events) Note(event);
    std::vector<Item> present;
    for (const Event& event : events) {
      if (event.item.rules.empty()) continue;
      const auto known = present_.find(event.item.subject);
      if (known == present_.end()) continue;
      for (const auto& [key, item] : known->second) present.push_back(item);
    }
    auto alerts = finder_.Find(events, present, now.monotonic_ms);
    for (Alert& alert : alerts) Describe(alert);
    return alerts;
  }

  std::vector<Alert> Rest(Moment) override { return {}; }

  void Raised(const std::vector<Alert>& alerts, std::int64_t, Moment now) override {
    finder_.Raised(alerts, now.monotonic_ms);
    if (written_.size() > kMostItems) written_.clear();
    for (const Alert& alert : alerts) written_.insert(alert.change);
  }

  void BeginFile() override {
    finder_ = {};
    present_.clear();
    written_.clear();
    items_ = 0;
  }

 private:
  using Key = std::tuple<std::string_view, std::string, std::string>;  // monitor, description, identity
  static constexpr std::size_t kMostItems = 20000;

  // What is there and unusual, by subject; what came beyond the limit is weighed alone.
  void Note(const Event& event) {
    const Item& item = event.item;
    if (item.rules.empty()) return;
    const Key key{item.monitor, item.description, item.identity};
    if (event.kind == EventKind::kRemoved) {
      const auto subject = present_.find(item.subject);
      if (subject == present_.end()) return;
      items_ -= subject->second.erase(key);
      if (subject->second.empty()) present_.erase(subject);
    } else if (event.kind == EventKind::kPresent || event.kind == EventKind::kAdded) {
      if (items_ >= kMostItems) return;
      // That it came lately is a fact about its coming, not about the thing.
      Item kept = item;
      kept.rules.Remove(NewsRules());
      if (kept.rules.empty()) return;
      if (present_[item.subject].emplace(key, std::move(kept)).second) ++items_;
    }
  }

  void Describe(Alert& alert) {
    constexpr std::size_t kMostFacts = 3;
    alert.code = AlertCode("", alert.subject);
    alert.change = identities_.ChangeOf(alert.risk, true, alert.code);
    alert.has_forerunner = written_.contains(alert.change);
    for (const Rule rule : ByWeight(alert.rules)) {
      if (alert.facts.size() < kMostFacts) alert.facts.emplace_back(FactsOf(rule).text);
    }
  }

  AlertFinder finder_;
  Identities identities_;
  std::set<std::string> written_;  // Change texts of this file
  std::map<std::string, std::map<Key, Item>> present_;
  std::size_t items_ = 0;
};

}  // namespace

std::unique_ptr<Scorer> MakeRuleScorer() {
  return std::make_unique<RuleScorer>();
}

}  // namespace zendrix::agent
