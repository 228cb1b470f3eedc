// The alerts that found no room although each would have been one: how many, of what kinds, and where a few
// of them were seen. They become one alert that tells their number, at once and then once an hour, so that
// whoever drowns an alert in others is told of all the same. Bounded.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "agent/score/subjects.h"

namespace zendrix::agent {

class LeftOut {
 public:
  // No path and no name of a thing reads like this.
  static constexpr char kSubject[] = "alerts that found no room";
  static constexpr std::int64_t kEverySeconds = 3600;

  void Add(std::vector<Fact> facts, const Item& member);
  std::size_t count() const { return count_; }
  // Whether there are some, and the last that were told lie back far enough.
  bool IsDue(std::int64_t utc) const;
  void WasTold(std::int64_t utc);
  // Rows of the old file are no help in the new one.
  void BeginFile() { subject_ = Subject(); }

  // Their number, then the heaviest of what they had, each with how many had it.
  std::vector<Fact> Facts() const;
  // What they were seen on.
  Subject AsSubject() const;

 private:
  static constexpr std::size_t kMostKinds = 3;

  std::size_t count_ = 0;
  std::map<int, Fact> kinds_;  // by number
  Subject subject_;
  std::int64_t told_utc_ = 0;
};

}  // namespace zendrix::agent
