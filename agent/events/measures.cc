#include "agent/events/measures.h"

#include <algorithm>
#include <cmath>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr double kMemoryStep = 5;         // points of per cent
constexpr double kMemoryNearlyFull = 90;  // per cent
constexpr double kMemorySharpRise = 20;   // points of per cent between two reports
constexpr double kRateStep = 64;          // KB per second
constexpr double kRateSharp = 1024;       // KB per second
constexpr double kRateSharpFactor = 8;    // times the usual rate
constexpr int kRatesBeforeJudging = 3;
constexpr double kRateInertia = 0.8;
constexpr std::uint64_t kManyFailedLogins = 5;

double ValueOf(const std::optional<Event>& event) {
  return event ? event->original + event->change : 0;
}

// The new value beside the one last reported; a first value counts as no change.
Event MeasuredEvent(std::string_view monitor_name, double value, const std::optional<Event>& before) {
  Event event;
  event.kind = EventKind::kMeasured;
  event.item.monitor = monitor_name;
  event.item.subject = monitor_name;
  event.item.description = Decimal(value, 2);
  event.original = before ? ValueOf(before) : value;
  event.change = before ? value - event.original : 0;
  if (before) event.reading_before = before->reading;
  return event;
}

// As the value stands in a list of what is: no change, and no rule about one.
Event AsPresent(Event event) {
  const bool nearly_full = event.item.rules.Has(Rule::kMemoryNearlyFull);
  event.original = ValueOf(event);
  event.change = 0;
  event.reading_before.clear();
  event.item.rules = nearly_full ? RuleSet{Rule::kMemoryNearlyFull} : RuleSet();
  return event;
}

}  // namespace

std::vector<Event> Measures::Take(const Snapshot& seen, const MayTell& may_tell) {
  std::vector<Event> events;
  TakeMemory(seen, may_tell, events);
  TakeTraffic(seen, may_tell, events);
  TakeFailedLogins(seen, events);
  return events;
}

std::vector<Event> Measures::Present() const {
  std::vector<Event> events;
  if (memory_) events.push_back(AsPresent(*memory_));
  if (traffic_) events.push_back(AsPresent(*traffic_));
  return events;
}

bool Measures::WantsMemoryUsers(const Snapshot& seen) const {
  return seen.memory_percent &&
         (!memory_ || std::abs(*seen.memory_percent - ValueOf(memory_)) >= kMemoryStep);
}

void Measures::TakeMemory(const Snapshot& seen, const MayTell& may_tell, std::vector<Event>& events) {
  if (!WantsMemoryUsers(seen)) return;
  const double percent = *seen.memory_percent;
  Event event = MeasuredEvent(monitor::kMemory, percent, memory_);
  for (const std::string& program : seen.memory_users) event.item.description += ":" + program;
  event.reading = Decimal(percent, 2) + " percent";
  if (percent >= kMemoryNearlyFull) event.item.rules.Add(Rule::kMemoryNearlyFull);
  if (event.change >= kMemorySharpRise) event.item.rules.Add(Rule::kMemoryRise);
  if (memory_ && may_tell && !may_tell(event.item)) return;
  memory_ = event;
  events.push_back(std::move(event));
}

void Measures::TakeTraffic(const Snapshot& seen, const MayTell& may_tell, std::vector<Event>& events) {
  const std::optional<std::uint64_t> before = bytes_;
  const double seconds = static_cast<double>(seen.taken_ms - bytes_at_ms_) / 1000;
  bytes_ = seen.traffic_bytes;
  bytes_at_ms_ = seen.taken_ms;
  // The counters begin anew when an interface goes and comes again.
  if (!before || !bytes_ || *bytes_ < *before || seconds <= 0) return;
  const double rate = static_cast<double>(*bytes_ - *before) / 1024 / seconds;
  const bool sharp =
      rates_ >= kRatesBeforeJudging && rate >= kRateSharp && rate >= kRateSharpFactor * usual_rate_;
  usual_rate_ = rates_ == 0 ? rate : kRateInertia * usual_rate_ + (1 - kRateInertia) * rate;
  ++rates_;
  const double last = ValueOf(traffic_);
  const bool moved = std::abs(rate - last) >= kRateStep && (rate >= 2 * last || rate <= last / 2);
  if (traffic_ && !moved && !sharp) return;
  Event event = MeasuredEvent(monitor::kTraffic, rate, traffic_);
  event.reading = Decimal(rate, 2) + " KB per second";
  if (sharp) event.item.rules.Add(Rule::kTrafficRise);
  if (traffic_ && may_tell && !may_tell(event.item)) return;
  traffic_ = event;
  events.push_back(std::move(event));
}

void Measures::TakeFailedLogins(const Snapshot& seen, std::vector<Event>& events) {
  const std::optional<std::uint64_t> before = failed_logins_;
  failed_logins_ = seen.failed_logins;
  if (!before || !failed_logins_ || *failed_logins_ == *before) return;
  // A record that became shorter was begun anew.
  const std::uint64_t base = *failed_logins_ < *before ? 0 : *before;
  std::uint64_t rest = *failed_logins_ - base;
  const auto tell = [&](const std::string& place, std::uint64_t count) {
    count = std::min(count, rest);
    if (count == 0) return;
    rest -= count;
    Event event;
    event.kind = EventKind::kHappened;
    event.item.monitor = monitor::kSystem;
    const std::string where = place.empty() ? "" : " at " + place;
    event.item.subject = "failed logins" + where;
    event.item.description = "failed logins " + std::to_string(count) + where;
    event.original = static_cast<double>(base);
    event.change = static_cast<double>(count);
    if (count >= kManyFailedLogins) event.item.rules.Add(Rule::kFailedLogins);
    events.push_back(std::move(event));
  };
  for (const FailedLogins& place : seen.new_failed_logins) tell(place.where, place.count);
  tell("", rest);
}

}  // namespace zendrix::agent
