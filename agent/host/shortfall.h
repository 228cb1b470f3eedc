// What looks at the host had to leave out: entries behind a limit, and files that are there but may not be
// read. What lies in such a place may still be there although the look does not show it, so it is not taken
// for gone.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace zendrix::agent {

class Shortfall {
 public:
  // `place` is a file or a folder that was not seen whole.
  void Add(std::string_view monitor, const std::string& place, std::uint64_t count) {
    counts_[monitor] += count;
    places_.insert(place);
  }
  std::uint64_t CountOf(std::string_view monitor) const {
    const auto found = counts_.find(monitor);
    return found == counts_.end() ? 0 : found->second;
  }
  // Of all monitors.
  std::uint64_t Count() const {
    std::uint64_t sum = 0;
    for (const auto& [monitor, count] : counts_) sum += count;
    return sum;
  }
  // Whether the file, or a folder above it, was not seen whole.
  bool Covers(std::string path) const {
    while (!path.empty()) {
      if (places_.contains(path)) return true;
      path.resize(std::min(path.rfind('/'), path.size() - 1));
    }
    return false;
  }
  bool IsPartOf(const std::string& place) const { return places_.contains(place); }

 private:
  std::map<std::string_view, std::uint64_t> counts_;  // by monitor
  std::set<std::string> places_;
};

}  // namespace zendrix::agent
