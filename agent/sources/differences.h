// What looks at the host tell: what came and what went between one and the next, and how much each had to
// leave out. What a look could not see is not taken for gone as long as it is there (agent/host/shortfall.h).
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "agent/host/host_view.h"
#include "agent/host/shortfall.h"
#include "agent/sources/source.h"

namespace zendrix::agent {

class Differences {
 public:
  // `items` are what a look saw of these monitors, `missed` what it left out. Entries left out are told as
  // lost when they become more.
  void Take(HostView& host, const std::vector<std::string_view>& monitors, std::vector<Item> items,
            const Shortfall& missed, std::vector<Observation>& into);
  // Left out at the last look of each monitor.
  std::uint64_t left_out() const;
  std::uint64_t LeftOutOf(std::string_view monitor) const;

 private:
  std::map<std::string_view, std::vector<Item>> before_;  // by monitor
  std::map<std::string_view, std::uint64_t> left_out_;    // likewise
};

}  // namespace zendrix::agent
