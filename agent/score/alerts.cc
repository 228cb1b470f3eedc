#include "agent/score/alerts.h"

#include <algorithm>

namespace zendrix::agent {
namespace {

bool SameEvent(const Item& a, const Item& b) {
  return a.monitor == b.monitor && a.description == b.description;
}

void AddMember(Alert& alert, const Item& item) {
  alert.rules.Add(item.rules);
  const auto known = std::find_if(alert.members.begin(), alert.members.end(),
                                  [&](const Item& member) { return SameEvent(member, item); });
  if (known == alert.members.end()) {
    alert.members.push_back(item);
  } else {
    known->rules.Add(item.rules);
  }
}

}  // namespace

std::vector<Alert> AlertFinder::Find(const std::vector<Event>& events, const std::vector<Item>& present,
                                     std::int64_t now_ms) const {
  std::vector<Alert> alerts;
  std::map<std::string, std::size_t> by_subject;
  for (const Event& event : events) {
    if (event.item.rules.empty() || event.kind == EventKind::kRemoved) continue;
    const auto [at, is_new] = by_subject.emplace(event.item.subject, alerts.size());
    if (is_new) alerts.emplace_back().subject = event.item.subject;
    AddMember(alerts[at->second], event.item);
  }
  for (const Item& item : present) {
    const auto at = by_subject.find(item.subject);
    if (at != by_subject.end() && !item.rules.empty()) AddMember(alerts[at->second], item);
  }
  for (Alert& alert : alerts) {
    alert.risk = ComposeRisk(alert.rules);
    std::stable_sort(alert.members.begin(), alert.members.end(), [](const Item& a, const Item& b) {
      return ComposeRisk(a.rules) > ComposeRisk(b.rules);
    });
  }
  std::erase_if(alerts, [&](const Alert& alert) {
    const auto raised = raised_ms_.find({alert.subject, alert.rules.bits()});
    return raised != raised_ms_.end() && now_ms - raised->second < kRepeatAfterMs;
  });
  std::stable_sort(alerts.begin(), alerts.end(),
                   [](const Alert& a, const Alert& b) { return a.risk < b.risk; });
  return alerts;
}

void AlertFinder::Raised(const std::vector<Alert>& alerts, std::int64_t now_ms) {
  // What may be raised again needs no memory; this keeps a host of short-lived names from filling it.
  std::erase_if(raised_ms_, [&](const auto& entry) { return now_ms - entry.second >= kRepeatAfterMs; });
  for (const Alert& alert : alerts) raised_ms_[{alert.subject, alert.rules.bits()}] = now_ms;
}

}  // namespace zendrix::agent
