// Which row stands at which place of a view, from 1 at the top. As long as a view shows all rows with the
// newest on top, nothing is stored; else one number a place. Adding at the top and at the bottom is O(1);
// anywhere else the shorter side moves. When memory runs out nothing has changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace zendrix::admin {

class GridOrder {
 public:
  std::uint32_t size() const { return size_; }
  std::uint32_t At(std::size_t place) const {
    return newest_first_ ? size_ - static_cast<std::uint32_t>(place) : cells_[begin_ + place - 1];
  }
  // Whether the place of every row follows from its number: the row at place p is row size() - p.
  bool newest_first() const { return newest_first_; }
  // Makes room for one more, so that the next Insert cannot fail.
  void MakeRoom();
  // `place` from 1 to size() + 1: the row that stood there comes behind it.
  void Insert(std::size_t place, std::uint32_t row);
  void Clear();
  // All places from the top down, to be put into another order.
  std::span<std::uint32_t> Cells();

 private:
  void Store(std::size_t in_front, std::size_t behind);

  bool newest_first_ = true;
  std::uint32_t size_ = 0;
  // Cells [begin_, begin_ + size_) of `room_` are in use; there is room on both sides.
  std::unique_ptr<std::uint32_t[]> cells_;
  std::size_t begin_ = 0;
  std::size_t room_ = 0;
};

}  // namespace zendrix::admin
