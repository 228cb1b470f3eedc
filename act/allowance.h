// How often somebody may have the helper work without anybody being asked: so many calls at once, and one
// more every half second. Root may always. Bounded: of more users than it can hold, the new one waits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

namespace zendrix::act {

class Allowance {
 public:
  static constexpr std::int64_t kAtOnce = 40;
  static constexpr std::int64_t kEveryMs = 500;
  static constexpr std::size_t kMostUsers = 64;

  // False: not now. `now_ms` never goes back.
  bool Take(std::uint32_t user, std::int64_t now_ms);

 private:
  // The moment at which everything that was taken is there again.
  std::map<std::uint32_t, std::int64_t> whole_at_ms_;
};

}  // namespace zendrix::act
