// An index: for each key the ascending list of the rows that have it. Rows are only ever added, in ascending
// order, and never removed. A list handed out stays valid until the next row is added.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zendrix::store {

class Postings {
 public:
  using Rows = std::span<const std::uint32_t>;

  Postings();

  // Rows [0, indexed()) have been added.
  std::uint32_t indexed() const { return indexed_; }
  // The next row has this key.
  void Add(std::uint64_t key);
  Rows Find(std::uint64_t key) const;

 private:
  // Most keys occur once: such a row stands in the slot itself.
  struct Slot {
    std::uint64_t key;
    std::uint32_t size;   // 0: a free slot
    std::uint32_t place;  // the row itself when size is 1, else the beginning of the list in the pool
  };

  std::size_t SlotOf(std::uint64_t key) const;
  void Grow();

  std::uint64_t seed_;
  std::vector<Slot> slots_;
  std::size_t used_ = 0;
  std::vector<std::uint32_t> pool_;
  std::uint32_t indexed_ = 0;
};

}  // namespace zendrix::store
