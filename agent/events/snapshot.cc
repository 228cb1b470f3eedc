#include "agent/events/snapshot.h"

#include <set>
#include <tuple>

namespace zendrix::agent {
namespace {

using Key = std::tuple<std::string_view, std::string_view, std::string_view>;

Key OrderOf(const Item& item) {
  return {item.monitor, item.description, item.identity};
}

std::vector<Item> NotIn(const std::vector<Item>& items, const std::vector<Item>& others) {
  std::set<Key> known;
  for (const Item& item : others) known.insert(OrderOf(item));
  std::vector<Item> missing;
  for (const Item& item : items) {
    if (known.insert(OrderOf(item)).second) missing.push_back(item);
  }
  return missing;
}

}  // namespace

Difference Compare(const std::vector<Item>& before, const std::vector<Item>& now) {
  return {NotIn(before, now), NotIn(now, before)};
}

}  // namespace zendrix::agent
