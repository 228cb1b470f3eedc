#include "agent/events/ledger.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace zendrix::agent {
namespace {

bool IsSocket(const Item& item) {
  return item.monitor == monitor::kPorts || item.monitor == monitor::kConnections;
}

// Of "path:pid" the number.
std::string_view PidOf(std::string_view description) {
  const std::size_t colon = description.rfind(':');
  return colon == std::string_view::npos ? description : description.substr(colon + 1);
}

// Of "port:path" the port, of "address:port:path" address and port.
std::string_view PlaceOf(const Item& item) {
  const std::string_view text = item.description;
  std::size_t end = text.find(':');
  if (item.monitor == monitor::kConnections && end != std::string_view::npos) end = text.find(':', end + 1);
  return text.substr(0, end);
}

// As KeyOf, but for what a look may name otherwise than the source that told of it.
std::string PlaceKeyOf(const Item& item) {
  return IsSocket(item) ? std::string(item.monitor) + "\n" + std::string(PlaceOf(item)) : KeyOf(item);
}

std::size_t RankOf(std::string_view name) {
  const auto& names = ItemMonitors();
  return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
}

}  // namespace

std::string KeyOf(const Item& item) {
  std::string key(item.monitor);
  key += '\n';
  if (item.monitor == monitor::kProcesses) return key.append(PidOf(item.description));
  key += item.description;
  return IsSocket(item) ? key : key + "\n" + item.identity;
}

// Together kMostItems.
std::size_t Ledger::MostOf(std::string_view monitor_name) {
  if (monitor_name == monitor::kProcesses || monitor_name == monitor::kFolders ||
      monitor_name == monitor::kAutorun)
    return 5000;
  if (monitor_name == monitor::kConnections) return 2500;
  return monitor_name == monitor::kLogins ? 500 : 1000;
}

void Ledger::Came(Item item, std::vector<Event>& events) {
  std::string key = KeyOf(item);
  const auto known = entries_.find(key);
  if (known == entries_.end()) {
    Places& places = places_[item.monitor];
    if (places.taken >= MostOf(item.monitor)) return LeaveOut(places, std::move(key), std::move(item));
    ++places.taken;
    entries_.emplace(std::move(key), Entry{item, next_order_++});
    events.push_back(CameEvent(std::move(item)));
    return;
  }
  Entry& entry = known->second;
  RuleSet more = item.rules;
  more.Remove(entry.item.rules);
  if (entry.item.description == item.description && more.empty()) return;
  events.push_back(WentEvent(entry.item));
  entry.item = item;
  entry.order = next_order_++;
  events.push_back(CameEvent(std::move(item)));
}

void Ledger::Went(const Item& item, std::vector<Event>& events) {
  const std::string key = KeyOf(item);
  Places& places = places_[item.monitor];
  const auto known = entries_.find(key);
  if (known == entries_.end()) return StopWaiting(places, key);
  events.push_back(WentEvent(std::move(known->second.item)));
  entries_.erase(known);
  --places.taken;
  FillPlaces(item.monitor, events);
}

void Ledger::LeaveOut(Places& places, std::string key, Item item) {
  const auto waits = places.waits.find(key);
  if (waits != places.waits.end()) {
    places.waiting[waits->second] = std::move(item);
    return;
  }
  ++left_out_;
  if (places.waiting.size() >= kMostWaiting) return;
  places.waits.emplace(std::move(key), next_order_);
  places.waiting.emplace(next_order_++, std::move(item));
}

void Ledger::StopWaiting(Places& places, const std::string& key) {
  const auto waits = places.waits.find(key);
  if (waits == places.waits.end()) return;
  places.waiting.erase(waits->second);
  places.waits.erase(waits);
}

void Ledger::FillPlaces(std::string_view monitor_name, std::vector<Event>& events) {
  Places& places = places_[monitor_name];
  while (!places.waiting.empty() && places.taken < MostOf(monitor_name)) {
    Item item = places.waiting.begin()->second;
    StopWaiting(places, KeyOf(item));
    Came(std::move(item), events);
  }
}

void Ledger::Reconcile(std::span<const std::string_view> monitors, const std::vector<Item>& seen,
                       std::vector<Event>& events) {
  std::set<std::string> there;
  for (const Item& item : seen) there.insert(PlaceKeyOf(item));
  std::set<std::string> told;
  std::map<std::uint64_t, Item> went;  // in the order of coming
  std::erase_if(entries_, [&](const auto& known) {
    const Entry& entry = known.second;
    std::string place = PlaceKeyOf(entry.item);
    const bool looked_at = std::find(monitors.begin(), monitors.end(), entry.item.monitor) != monitors.end();
    if (looked_at && !there.contains(place)) {
      went.emplace(entry.order, entry.item);
      --places_[entry.item.monitor].taken;
      return true;
    }
    told.insert(std::move(place));
    return false;
  });
  for (auto& [order, item] : went) events.push_back(WentEvent(std::move(item)));
  // What waited and is still there is among what was seen.
  for (const std::string_view name : monitors) {
    places_[name].waiting.clear();
    places_[name].waits.clear();
  }
  for (const Item& item : seen) {
    if (!told.contains(PlaceKeyOf(item))) Came(item, events);
  }
}

std::vector<Item> Ledger::Items() const {
  std::vector<const Entry*> order;
  for (const auto& [key, entry] : entries_) order.push_back(&entry);
  std::sort(order.begin(), order.end(), [](const Entry* a, const Entry* b) {
    return std::tuple(RankOf(a->item.monitor), a->order) < std::tuple(RankOf(b->item.monitor), b->order);
  });
  std::vector<Item> items;
  for (const Entry* entry : order) items.push_back(entry->item);
  return items;
}

}  // namespace zendrix::agent
