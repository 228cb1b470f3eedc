#include "agent/sources/differences.h"

#include <iterator>
#include <set>
#include <string>
#include <utility>

namespace zendrix::agent {
namespace {

// Of what is behind a limit; without one, a file that is written again and again would fill the room.
constexpr std::size_t kMostKept = 10000;
constexpr int kMostKeptOfFile = 16;

}  // namespace

void Differences::Take(HostView& host, const std::vector<std::string_view>& monitors, std::vector<Item> items,
                       const Shortfall& missed, std::vector<Observation>& into) {
  std::map<std::string_view, std::vector<Item>> seen;
  std::set<std::string> places;
  for (const std::string_view name : monitors) seen[name];
  for (Item& item : items) {
    places.insert(item.place);
    seen[item.monitor].push_back(std::move(item));
  }
  std::vector<Item> came;
  for (const std::string_view name : monitors) {
    std::vector<Item>& now = seen[name];
    auto difference = Compare(before_[name], now);
    std::size_t kept = 0;
    std::map<std::string, int> kept_of;
    for (Item& item : difference.removed) {
      const bool may_be_there = !item.place.empty() && missed.Covers(item.place) && kept < kMostKept &&
                                (!places.contains(item.place) ||
                                 (missed.IsPartOf(item.place) && kept_of[item.place]++ < kMostKeptOfFile));
      if (may_be_there && host.Look(item.place)) {
        ++kept;
        now.push_back(std::move(item));
      } else {
        into.push_back({Observation::Kind::kWent, 0, std::move(item), 0});
      }
    }
    came.insert(came.end(), std::make_move_iterator(difference.added.begin()),
                std::make_move_iterator(difference.added.end()));
    before_[name] = std::move(now);
    const std::uint64_t count = missed.CountOf(name);
    const std::uint64_t count_before = std::exchange(left_out_[name], count);
    if (count <= count_before) continue;
    Observation lost;
    lost.kind = Observation::Kind::kLost;
    lost.item.monitor = name;
    lost.lost = count - count_before;
    lost.left_out = true;
    into.push_back(std::move(lost));
  }
  // What went goes first, whatever its monitor.
  for (Item& item : came) into.push_back({Observation::Kind::kCame, 0, std::move(item), 0});
}

std::uint64_t Differences::LeftOutOf(std::string_view monitor) const {
  const auto found = left_out_.find(monitor);
  return found == left_out_.end() ? 0 : found->second;
}

std::uint64_t Differences::left_out() const {
  std::uint64_t sum = 0;
  for (const auto& [name, count] : left_out_) sum += count;
  return sum;
}

}  // namespace zendrix::agent
