#include "agent/events/pace.h"

#include <algorithm>
#include <array>
#include <utility>

#include "agent/events/ledger.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kMostKnown = 20000;    // keys of this run
constexpr std::size_t kMostHeld = 20000;     // items that wait
constexpr std::size_t kMostEnded = 2000;     // counted items that an alert may still name
constexpr std::size_t kMostSubjects = 1000;  // told apart within a minute

// Items that a monitor may tell at once, and milliseconds until one more is granted. An item makes two rows,
// one when it comes and one when it goes: a busy day of programs and connections stays below 30,000.
struct Limit {
  std::string_view monitor;
  double most;
  double refill_ms;
};
constexpr std::array<Limit, 4> kLimits = {{
    {monitor::kProcesses, 5000, 30000},
    {monitor::kConnections, 3000, 30000},
    // Numbers that go up and down all day say little more each time: below 500 a day.
    {monitor::kMemory, 200, 300000},
    {monitor::kTraffic, 200, 300000},
}};
constexpr Limit kOtherLimit = {"", 1000, 60000};
// What is neither new nor unusual leaves this share to what is.
constexpr double kKeptForNews = 0.2;

const Limit& LimitOf(std::string_view name) {
  const auto found =
      std::find_if(kLimits.begin(), kLimits.end(), [&](const Limit& limit) { return limit.monitor == name; });
  return found == kLimits.end() ? kOtherLimit : *found;
}

bool IsShortLived(const Item& item) {
  return item.monitor == monitor::kProcesses || item.monitor == monitor::kConnections;
}

// What makes an item known: the program, for a connection also the port. Addresses are too many.
std::string KindOf(const Item& item) {
  std::string kind(item.monitor);
  kind += "\n" + item.subject;
  if (item.monitor != monitor::kConnections) return kind;
  const std::size_t port = item.description.find(':');
  if (port == std::string::npos) return kind;
  return kind + "\n" + item.description.substr(port, item.description.find(':', port + 1) - port);
}

}  // namespace

Pace::Pace(std::int64_t now_ms, std::function<bool(const Item&)> is_known)
    : is_known_(std::move(is_known)), minute_began_ms_(now_ms) {}

void Pace::Begin(const std::vector<Event>& present) {
  for (const Event& event : present) IsNews(event.item);
}

std::vector<Event> Pace::Take(std::vector<Event> events, std::int64_t now_ms) {
  std::vector<Event> told;
  for (Event& event : events) {
    if (event.kind == EventKind::kAdded) {
      TakeCame(std::move(event), now_ms, told);
    } else if (event.kind == EventKind::kRemoved) {
      TakeWent(std::move(event), told);
    } else if (event.kind != EventKind::kHappened || Grant(event.item, true, now_ms)) {
      told.push_back(std::move(event));
    } else {
      Count(event, Why::kFlood);
    }
  }
  TellSettled(now_ms, told);
  return told;
}

// Also makes it known.
bool Pace::IsNews(const Item& item) {
  std::string kind = KindOf(item);
  if (known_.contains(kind)) return false;
  const bool known_to_host = is_known_ && is_known_(item);
  if (known_order_.size() >= kMostKnown) {
    known_.erase(known_order_.front());
    known_order_.pop_front();
  }
  known_order_.push_back(kind);
  known_.insert(std::move(kind));
  return !known_to_host;
}

bool Pace::Grant(const Item& item, bool at_once, std::int64_t now_ms) {
  const Limit& limit = LimitOf(item.monitor);
  const auto [at, is_new] = allowances_.try_emplace(item.monitor, Allowance{limit.most, now_ms});
  Allowance& allowance = at->second;
  allowance.rows = std::min(
      limit.most, allowance.rows + static_cast<double>(now_ms - allowance.filled_ms) / limit.refill_ms);
  allowance.filled_ms = now_ms;
  if (allowance.rows < 1 || (!at_once && allowance.rows < limit.most * kKeptForNews)) return false;
  if (at_once && at_once_.size() < kMostSubjects) {
    std::uint64_t& told = at_once_[std::string(item.monitor) + "\n" + item.subject];
    if (told >= kMostOfOneSubject) return false;
    ++told;
  }
  allowance.rows -= 1;
  return true;
}

bool Pace::MayTellNumber(const Item& item, std::int64_t now_ms) {
  if (Grant(item, !item.rules.empty(), now_ms)) return true;
  Event event;
  event.item = item;
  Count(event, Why::kFlood);
  return false;
}

void Pace::TakeCame(Event event, std::int64_t now_ms, std::vector<Event>& told) {
  const bool is_news = IsNews(event.item);
  if (IsShortLived(event.item) && !is_news && event.item.rules.empty()) {
    Hold(std::move(event), now_ms);
  } else if (Grant(event.item, true, now_ms)) {
    told.push_back(std::move(event));
    gave_news_ = true;
  } else {
    Count(event, Why::kFlood);
    std::string key = KeyOf(event.item);
    silent_.insert_or_assign(std::move(key), std::move(event));
  }
}

void Pace::Hold(Event event, std::int64_t now_ms) {
  std::string key = KeyOf(event.item);
  if (held_.size() >= kMostHeld) {
    Count(event, Why::kFlood);
    silent_.insert_or_assign(std::move(key), std::move(event));
    return;
  }
  held_.insert_or_assign(key, Held{std::move(event), next_number_});
  due_.push_back({now_ms + kSettledMs, std::move(key), next_number_++});
}

void Pace::TakeWent(Event event, std::vector<Event>& told) {
  const std::string key = KeyOf(event.item);
  auto held = held_.extract(key);
  auto silent = silent_.extract(key);
  if (!held && !silent) {
    told.push_back(std::move(event));
    return;
  }
  if (held) Count(held.mapped().event, Why::kShort);
  if (ended_.size() >= kMostEnded) {
    ended_.erase(ended_order_.front());
    ended_order_.pop_front();
  }
  if (ended_.insert_or_assign(key, std::move(held ? held.mapped().event : silent.mapped())).second) {
    ended_order_.push_back(key);
  }
}

void Pace::TellSettled(std::int64_t now_ms, std::vector<Event>& told) {
  for (; !due_.empty() && due_.front().at_ms <= now_ms; due_.pop_front()) {
    const auto held = held_.find(due_.front().key);
    if (held == held_.end() || held->second.number != due_.front().number) continue;
    if (Grant(held->second.event.item, false, now_ms)) {
      told.push_back(std::move(held->second.event));
    } else {
      Count(held->second.event, Why::kFlood);
      silent_.insert_or_assign(held->first, std::move(held->second.event));
    }
    held_.erase(held);
  }
}

void Pace::Count(const Event& event, Why why) {
  ++(why == Why::kShort ? short_ : flood_);
  ++counted_;
  if (by_subject_.size() < kMostSubjects || by_subject_.contains(event.item.subject)) {
    ++by_subject_[event.item.subject];
  }
}

std::optional<Event> Pace::Minute(std::int64_t now_ms) {
  if (now_ms - minute_began_ms_ < kMinuteMs) return {};
  minute_began_ms_ = now_ms;
  at_once_.clear();
  return Rest();
}

std::optional<Event> Pace::Rest() {
  if (short_ == 0 && flood_ == 0) return {};
  Event event;
  event.kind = EventKind::kHappened;
  event.item.monitor = monitor::kSystem;
  event.item.subject = "counted";
  event.original = 0;
  event.change = static_cast<double>(short_ + flood_);
  std::string& text = event.item.description;
  text = "counted and not listed";
  if (short_ > 0) text += " - " + std::to_string(short_) + " known that ended within 5 seconds";
  if (flood_ > 0) text += " - " + std::to_string(flood_) + " too many to list";
  std::vector<std::pair<std::string, std::uint64_t>> most(by_subject_.begin(), by_subject_.end());
  std::stable_sort(most.begin(), most.end(),
                   [](const auto& a, const auto& b) { return a.second > b.second; });
  constexpr std::size_t kNamed = 3;
  std::string_view separator = " - mostly ";
  for (std::size_t i = 0; i < std::min(kNamed, most.size()); ++i) {
    text.append(separator).append(most[i].first).append(" ").append(std::to_string(most[i].second));
    separator = " - ";
  }
  short_ = 0;
  flood_ = 0;
  by_subject_.clear();
  return event;
}

std::vector<Event> Pace::Release(const Item& item) {
  const std::string key = KeyOf(item);
  for (auto* const kept : {&silent_, &ended_}) {
    const auto at = kept->find(key);
    if (at == kept->end() || at->second.item.description != item.description) continue;
    std::vector<Event> told = {at->second};
    if (kept == &ended_) {
      told.push_back(WentEvent(at->second.item));
      std::erase(ended_order_, key);
    }
    kept->erase(at);
    return told;
  }
  const auto held = held_.find(key);
  if (held == held_.end() || held->second.event.item.description != item.description) return {};
  std::vector<Event> told = {std::move(held->second.event)};
  held_.erase(held);
  return told;
}

bool Pace::IsTold(const Item& item) const {
  const std::string key = KeyOf(item);
  return !held_.contains(key) && !silent_.contains(key);
}

}  // namespace zendrix::agent
