#include "agent/score/subjects.h"

#include <algorithm>

namespace zendrix::agent {
namespace {

constexpr double kHeavier = 0.01;

// Whether there can be several of what the fact speaks of.
bool HasMore(int number) {
  return number == kNewPort || number == kNewConnection || number == kNewAutostart || number == kNewFile ||
         number == kNewLogin;
}

}  // namespace

bool Subject::Add(const Item& item, std::vector<Fact> facts) {
  bool is_news = false;
  double doubt = 1;
  for (Fact& fact : facts) {
    doubt *= 1 - fact.weight;
    const auto [at, is_new] = facts_.try_emplace(fact.number);
    Held& held = at->second;
    if (held.texts.size() < kMostTexts) held.texts.insert(fact.text);
    is_news = is_news || is_new || fact.weight > held.fact.weight + kHeavier;
    if (is_new) {
      held.fact = std::move(fact);
      continue;
    }
    ++held.fact.count;
    if (fact.number == kPasswordGuessing) {  // its count is a sum of its own
      held.fact = std::move(fact);
      held.texts = {held.fact.text};
    } else if (fact.weight > held.fact.weight) {
      const int count = held.fact.count;
      held.fact = std::move(fact);
      held.fact.count = count;
    }
  }
  const auto known = std::find_if(members_.begin(), members_.end(), [&](const Member& member) {
    return member.item.monitor == item.monitor && member.item.description == item.description;
  });
  if (known != members_.end()) {
    known->item.rules.Add(item.rules);
    known->doubt = std::min(known->doubt, doubt);
    return is_news;
  }
  if (members_.size() >= kMostMembers) {
    const auto lightest = std::max_element(
        members_.begin(), members_.end(), [](const Member& a, const Member& b) { return a.doubt < b.doubt; });
    if (lightest->doubt < doubt) return is_news;
    *lightest = {item, doubt};
    return is_news;
  }
  members_.push_back({item, doubt});
  return is_news;
}

std::vector<Fact> Subject::Facts() const {
  std::vector<Fact> facts;
  for (const auto& [number, held] : facts_) {
    facts.push_back(held.fact);
    if (!HasMore(number) || held.texts.size() < 2) continue;
    facts.back().text += " and " + std::to_string(held.texts.size() - 1) +
                         (held.texts.size() < kMostTexts ? " more" : " or more");
  }
  std::stable_sort(facts.begin(), facts.end(),
                   [](const Fact& a, const Fact& b) { return a.weight > b.weight; });
  return facts;
}

std::vector<Item> Subject::Members() const {
  std::vector<Member> order = members_;
  std::stable_sort(order.begin(), order.end(),
                   [](const Member& a, const Member& b) { return a.doubt < b.doubt; });
  std::vector<Item> items;
  for (Member& member : order) items.push_back(std::move(member.item));
  return items;
}

RuleSet Subject::Rules() const {
  RuleSet rules;
  for (const Member& member : members_) rules.Add(member.item.rules);
  return rules;
}

Subject* Subjects::At(const std::string& name, std::int64_t now_ms) {
  const auto found = all_.find(name);
  if (found != all_.end()) {
    if (!found->second.waits && now_ms - found->second.touched_ms >= kForgetMs) {
      found->second = Subject();
      found->second.name = name;
    }
    return &found->second;
  }
  if (all_.size() >= kMost) {
    std::erase_if(all_, [&](const auto& entry) {
      return !entry.second.waits && now_ms - entry.second.touched_ms >= kForgetMs;
    });
    if (all_.size() >= kMost) std::erase_if(all_, [](const auto& entry) { return !entry.second.waits; });
    if (all_.size() >= kMost) return nullptr;
  }
  Subject& made = all_[name];
  made.name = name;
  return &made;
}

}  // namespace zendrix::agent
