// How many alerts are told in a minute: ten, and beyond these one of each kind of which that minute has none
// yet, so that alerts of one kind cannot keep one of another from being told. Kinds are few, so this stays
// bounded. Of what waits, the kinds take turns, the heaviest of each first; what was offered earlier goes in
// front of its equals.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace zendrix::agent {

class Ration {
 public:
  static constexpr std::size_t kInAMinute = 10;
  // So many that are not told now wait for a later minute.
  static constexpr std::size_t kMostPutOff = 200;

  struct Offered {
    int kind = 0;  // number of its heaviest fact
    double risk = 0;
  };
  // Positions in what was offered.
  struct Choice {
    std::vector<std::size_t> now;
    std::vector<std::size_t> later;
    std::vector<std::size_t> never;
  };

  Choice Choose(const std::vector<Offered>& offered, std::int64_t utc,
                std::size_t most_put_off = kMostPutOff) const;
  // One of this kind was told.
  void Count(int kind, std::int64_t utc);
  // Seconds until there is room again; 1 at least.
  static std::int64_t SecondsLeft(std::int64_t utc);

 private:
  std::int64_t minute_ = -1;
  std::size_t told_ = 0;
  std::map<int, std::size_t> by_kind_;  // of this minute
};

}  // namespace zendrix::agent
