// What is there now, item by item, kept from what the sources tell. It is what a new monitoring file begins
// with, and it forgives: a thing that comes twice came once, and one that goes without having come is passed
// over.
//
// A process is known by its number alone: a program that another one takes the place of (exec) went.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "agent/events/events.h"
#include "agent/events/snapshot.h"

namespace zendrix::agent {

// What tells an item from all others: its monitor, and what of it stays the same while it is there.
std::string KeyOf(const Item& item);

class Ledger {
 public:
  // More is there on no ordinary computer, and a session of so many rows still fits into one file. Each
  // monitor has places of its own, so that many things of one kind take none from another.
  static constexpr std::size_t kMostItems = 20000;
  static std::size_t MostOf(std::string_view monitor_name);
  // So many of a monitor that found no place are remembered, and take the next that becomes free.
  static constexpr std::size_t kMostWaiting = 1000;

  // Both add to `events` what changed by it. What comes again with more that is unusual about it came again.
  void Came(Item item, std::vector<Event>& events);
  void Went(const Item& item, std::vector<Event>& events);

  // A look saw just these items of these monitors, which another source told of before: what is not among
  // them went, what nobody told of came. A program's name as it was told first stays, since it may have been
  // told better than a look can.
  void Reconcile(std::span<const std::string_view> monitors, const std::vector<Item>& seen,
                 std::vector<Event>& events);

  // In the order of the monitors and, within one, of coming.
  std::vector<Item> Items() const;
  std::size_t size() const { return entries_.size(); }
  // Items that found no room since the last call.
  std::uint64_t TakeLeftOut() { return std::exchange(left_out_, 0); }

 private:
  struct Entry {
    Item item;
    std::uint64_t order = 0;
  };
  std::unordered_map<std::string, Entry> entries_;  // by KeyOf
  // Of one monitor.
  struct Places {
    std::size_t taken = 0;
    std::map<std::uint64_t, Item> waiting;                 // oldest first
    std::unordered_map<std::string, std::uint64_t> waits;  // by KeyOf
  };
  void LeaveOut(Places& places, std::string key, Item item);
  static void StopWaiting(Places& places, const std::string& key);
  void FillPlaces(std::string_view monitor_name, std::vector<Event>& events);
  std::map<std::string_view, Places> places_;
  std::uint64_t next_order_ = 0;
  std::uint64_t left_out_ = 0;
};

}  // namespace zendrix::agent
