#include "agent/watch.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "agent/host/observe_accounts.h"

namespace zendrix::agent {
namespace {

constexpr char kModules[] = "System (kernel modules)";

std::string Joined(const std::string& first, const std::string& second) {
  return first.empty() || second.empty() ? first + second : first + "; " + second;
}

}  // namespace

Watch::Watch(HostView& host, platform::Clock& clock, std::uint64_t own_pid, std::int64_t interval_ms,
             std::vector<Source*> sources, const Numbers* numbers)
    : host_(host),
      clock_(clock),
      own_pid_(own_pid),
      interval_ms_(interval_ms),
      sources_(std::move(sources)),
      numbers_(numbers),
      module_looks_(host, clock) {
  ShareOut();
}

std::vector<Event> Watch::Turn() {
  std::vector<SourceLevel> now;
  for (const Source* source : sources_) now.push_back(source->level());
  if (now != source_levels_) ShareOut();
  for (WatchLevel& level : levels_) {
    if (level.watched == monitor::kMemory || level.watched == monitor::kTraffic)
      level.level = LevelOfNumber(level.watched);
    if (level.watched == kModules) level.level = LevelOfModules();
  }
  std::vector<Event> events;
  for (Source* source : sources_) {
    seen_.clear();
    source->Drain(seen_);
    Take(*source, events);
  }
  HandOver(events);
  Look(events);
  LookAtModules(events);
  return events;
}

std::uint64_t Watch::TakeLost() {
  const std::uint64_t left_out = ledger_.TakeLeftOut();
  const std::uint64_t lost = std::exchange(lost_, 0);
  return lost > std::numeric_limits<std::uint64_t>::max() - left_out ? lost : lost + left_out;
}

bool Watch::IsTold() const {
  return std::any_of(source_levels_.begin(), source_levels_.end(), [](const SourceLevel& level) {
    return level.level == Level::kEvents || level.level == Level::kNotices;
  });
}

std::int64_t Watch::RestMs() const {
  std::int64_t rest = kQuietRestMs;
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    if (source_levels_[i].level != Level::kNone) rest = std::min(rest, sources_[i]->RestMs());
  }
  return rest;
}

// Not in the turn in which it takes over: what it tells then is compared with what is known.
bool Watch::Covers(const Source& source, std::string_view name) const {
  if (std::find(taken_over_.begin(), taken_over_.end(), name) != taken_over_.end()) return false;
  return std::find(covered_.begin(), covered_.end(), std::pair(name, &source)) != covered_.end();
}

const Source* Watch::CoverOf(std::string_view name) const {
  const auto found = std::find_if(covered_.begin(), covered_.end(),
                                  [&](const auto& covered) { return covered.first == name; });
  return found == covered_.end() ? nullptr : found->second;
}

void Watch::ShareOut() {
  const bool is_first = covered_.empty();
  const auto before_covered = covered_;
  source_levels_.clear();
  for (const Source* source : sources_) source_levels_.push_back(source->level());
  covered_.clear();
  std::vector<std::string_view> looked_at;
  for (const std::string_view name : ItemMonitors()) {
    const Source* best = nullptr;
    for (std::size_t i = 0; i < sources_.size() && best == nullptr; ++i) {
      const auto names = sources_[i]->Monitors();
      const bool reports = std::find(names.begin(), names.end(), name) != names.end();
      if (reports && source_levels_[i].level != Level::kNone) best = sources_[i];
    }
    covered_.emplace_back(name, best);
    if (best == nullptr) looked_at.push_back(name);
  }
  for (const auto& [name, source] : before_covered) {
    const Source* const now = CoverOf(name);
    if (is_first || now == source) continue;
    if (now != nullptr) taken_over_.push_back(name);
    if (source == nullptr) continue;
    auto& told = unused_[{source, name}];
    for (Item& item : ledger_.Items()) {
      if (item.monitor == name) told.insert_or_assign(KeyOf(item), std::move(item));
    }
  }
  const auto before = looks_ ? looks_->Monitors() : std::span<const std::string_view>();
  if (!looks_ || !std::equal(before.begin(), before.end(), looked_at.begin(), looked_at.end())) {
    looks_ = std::make_unique<PollingSource>(host_, clock_, own_pid_, interval_ms_, std::move(looked_at));
    looks_are_new_ = true;
  }
  levels_ = LevelsNow();
}

void Watch::Take(const Source& source, std::vector<Event>& events) {
  events.reserve(events.size() + seen_.size());
  for (Observation& seen : seen_) {
    switch (seen.kind) {
      case Observation::Kind::kCame:
        if (Covers(source, seen.item.monitor)) {
          ledger_.Came(std::move(seen.item), events);
        } else {
          Note(source, std::move(seen));
        }
        break;
      case Observation::Kind::kWent:
        if (Covers(source, seen.item.monitor)) {
          ledger_.Went(seen.item, events);
        } else {
          Note(source, std::move(seen));
        }
        break;
      case Observation::Kind::kHappened:
        events.push_back(HappenedEvent(std::move(seen.item)));
        break;
      case Observation::Kind::kLost:
        NoteLost(seen);
        break;
    }
  }
}

void Watch::NoteLost(const Observation& seen) {
  std::uint64_t& sum = seen.left_out ? left_out_ : lost_;
  sum = seen.lost > std::numeric_limits<std::uint64_t>::max() - sum ? sum : sum + seen.lost;
}

void Watch::Note(const Source& source, Observation seen) {
  auto& items = unused_[{&source, seen.item.monitor}];
  std::string key = KeyOf(seen.item);
  if (seen.kind == Observation::Kind::kWent) {
    items.erase(key);
  } else if (items.size() < Ledger::kMostItems) {
    items.insert_or_assign(std::move(key), std::move(seen.item));
  }
}

void Watch::HandOver(std::vector<Event>& events) {
  for (const std::string_view name : std::exchange(taken_over_, {})) {
    const auto known = unused_.extract({CoverOf(name), name});
    std::vector<Item> items;
    if (known) {
      for (auto& [key, item] : known.mapped()) items.push_back(std::move(item));
    }
    ledger_.Reconcile({&name, 1}, items, events);
  }
}

void Watch::Look(std::vector<Event>& events) {
  seen_.clear();
  const std::uint64_t left_out = looks_->left_out();
  looks_->Drain(seen_);
  if (looks_->left_out() != left_out) levels_ = LevelsNow();
  for (const Observation& seen : seen_) {
    if (seen.kind == Observation::Kind::kLost) NoteLost(seen);
    if (looks_are_new_) continue;
    if (seen.kind == Observation::Kind::kCame) ledger_.Came(seen.item, events);
    if (seen.kind == Observation::Kind::kWent) ledger_.Went(seen.item, events);
  }
  if (!std::exchange(looks_are_new_, false)) return;
  // The first look of new looks tells everything, also what another source told of before it failed.
  std::vector<Item> items;
  for (Observation& seen : seen_) {
    if (seen.kind == Observation::Kind::kCame) items.push_back(std::move(seen.item));
  }
  ledger_.Reconcile(looks_->Monitors(), items, events);
}

SourceLevel Watch::LevelOfNumber(std::string_view name) const {
  SourceLevel level = looks_->level();
  if (numbers_ == nullptr) return level;
  const bool is_memory = name == monitor::kMemory;
  const std::string& refusal = is_memory ? numbers_->pressure_refusal() : numbers_->links_refusal();
  if (refusal.empty()) {
    level.how += is_memory ? " and at once when memory runs short" : " at the kernel's counters";
  } else {
    level.reason = (is_memory ? "no pressure-stall trigger: " : "no rtnetlink: ") + refusal;
  }
  return level;
}

void Watch::LookAtModules(std::vector<Event>& events) {
  seen_.clear();
  module_looks_.Drain(seen_);
  if (LevelOfModules().level != Level::kPolling) return;
  for (Observation& seen : seen_) events.push_back(HappenedEvent(std::move(seen.item)));
}

SourceLevel Watch::LevelOfModules() const {
  std::string reason;
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    const auto names = sources_[i]->Monitors();
    if (std::find(names.begin(), names.end(), monitor::kSystem) == names.end()) continue;
    const SourceLevel& level = source_levels_[i];
    // What a source lacks although the kernel tells it every event is what only this kernel does not tell.
    if (level.level == Level::kEvents && level.reason.empty()) return level;
    reason = Joined(reason, "no " + level.how + ": " + level.reason);
  }
  SourceLevel looks = module_looks_.level();
  looks.reason = Joined(looks.reason, reason);
  return looks;
}

std::vector<WatchLevel> Watch::LevelsNow() const {
  std::vector<WatchLevel> levels;
  const auto reason_of = [&](std::string_view name) {
    std::string reason;
    for (std::size_t i = 0; i < sources_.size(); ++i) {
      const auto names = sources_[i]->Monitors();
      if (std::find(names.begin(), names.end(), name) == names.end()) continue;
      if (source_levels_[i].level != Level::kNone) continue;
      reason = Joined(reason, "no " + source_levels_[i].how + ": " + source_levels_[i].reason);
    }
    return reason;
  };
  const std::string untold = WhatLooksCannotTell(host_);
  for (const auto& [name, source] : covered_) {
    SourceLevel level = source == nullptr ? looks_->level() : source->level();
    const bool names_programs =
        name == monitor::kProcesses || name == monitor::kPorts || name == monitor::kConnections;
    if (level.level == Level::kEvents)
      level.reason.clear();  // no better there is; what else it lacks stands below
    if (level.level != Level::kEvents) level.reason = Joined(level.reason, reason_of(name));
    if (const std::uint64_t left_out = source == nullptr ? looks_->LeftOutOf(name) : 0; left_out > 0) {
      level.reason = Joined(
          level.reason, std::to_string(left_out) + " entries are too many to look at, or may not be read");
    }
    if (source == nullptr && names_programs) level.reason = Joined(untold, level.reason);
    levels.push_back({std::string(name), level});
  }
  for (const std::string_view name : {monitor::kMemory, monitor::kTraffic}) {
    levels.push_back({std::string(name), LevelOfNumber(name)});
  }
  levels.push_back({kModules, LevelOfModules()});
  const bool logins = CountFailedLogins(host_).has_value();
  const SourceLevel none = {Level::kNone, "", "the record of failed logins cannot be seen"};
  levels.push_back({"System (failed logins)", logins ? looks_->level() : none});
  return levels;
}

}  // namespace zendrix::agent
