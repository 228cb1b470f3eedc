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

void Ledger::Came(Item item, std::vector<Event>& events) {
  std::string key = KeyOf(item);
  const auto known = entries_.find(key);
  if (known == entries_.end()) {
    if (entries_.size() >= kMostItems) {
      ++left_out_;
      return;
    }
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
  const auto known = entries_.find(KeyOf(item));
  if (known == entries_.end()) return;
  events.push_back(WentEvent(std::move(known->second.item)));
  entries_.erase(known);
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
      return true;
    }
    told.insert(std::move(place));
    return false;
  });
  for (auto& [order, item] : went) events.push_back(WentEvent(std::move(item)));
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
