#include "agent/score/ration.h"

#include <algorithm>
#include <utility>

namespace zendrix::agent {
namespace {

constexpr std::int64_t kMinute = 60;

}  // namespace

Ration::Choice Ration::Choose(const std::vector<Offered>& offered, std::int64_t utc,
                              std::size_t most_put_off) const {
  std::vector<std::size_t> order(offered.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  const auto is_heavier = [&](std::size_t a, std::size_t b) { return offered[a].risk > offered[b].risk; };
  std::stable_sort(order.begin(), order.end(), is_heavier);
  std::vector<std::size_t> turn(offered.size());  // which of its kind it is
  std::map<int, std::size_t> seen;
  for (const std::size_t at : order) turn[at] = seen[offered[at].kind]++;
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return turn[a] < turn[b]; });

  const bool is_new_minute = utc / kMinute != minute_;
  std::size_t told = is_new_minute ? 0 : told_;
  std::map<int, std::size_t> by_kind = is_new_minute ? std::map<int, std::size_t>() : by_kind_;
  Choice choice;
  for (const std::size_t at : order) {
    const int kind = offered[at].kind;
    if (told < kInAMinute || !by_kind.contains(kind)) {
      ++told;
      ++by_kind[kind];
      choice.now.push_back(at);
    } else {
      (choice.later.size() < most_put_off ? choice.later : choice.never).push_back(at);
    }
  }
  return choice;
}

void Ration::Count(int kind, std::int64_t utc) {
  if (utc / kMinute != minute_) {
    minute_ = utc / kMinute;
    told_ = 0;
    by_kind_.clear();
  }
  ++told_;
  ++by_kind_[kind];
}

std::int64_t Ration::SecondsLeft(std::int64_t utc) {
  return kMinute - utc % kMinute;
}

}  // namespace zendrix::agent
