#include "admin/grid_order.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zendrix::admin {

namespace {
constexpr std::size_t kLeastRoom = 64;
}  // namespace

// Moves all places into fresh cells with so much room on either side.
void GridOrder::Store(std::size_t in_front, std::size_t behind) {
  auto cells = std::make_unique_for_overwrite<std::uint32_t[]>(in_front + size_ + behind);
  for (std::size_t i = 0; i < size_; ++i) cells[in_front + i] = At(i + 1);
  cells_ = std::move(cells);
  begin_ = in_front;
  room_ = in_front + size_ + behind;
  newest_first_ = false;
}

void GridOrder::MakeRoom() {
  if (newest_first_) return;
  if (begin_ == 0 || begin_ + size_ == room_) {
    const std::size_t room = std::max<std::size_t>(size_ / 4, kLeastRoom);
    Store(room, room);
  }
}

void GridOrder::Insert(std::size_t place, std::uint32_t row) {
  if (newest_first_) {
    if (place == 1 && row == size_) {
      ++size_;
      return;
    }
    Store(kLeastRoom, kLeastRoom);
  }
  MakeRoom();
  const std::size_t before = place - 1;
  std::uint32_t* const first = cells_.get() + begin_;
  if (before < size_ - before) {
    std::memmove(first - 1, first, before * sizeof *first);
    --begin_;
  } else {
    std::memmove(first + before + 1, first + before, (size_ - before) * sizeof *first);
  }
  ++size_;
  cells_[begin_ + before] = row;
}

void GridOrder::Clear() {
  *this = {};
}

std::span<std::uint32_t> GridOrder::Cells() {
  if (newest_first_) Store(kLeastRoom, kLeastRoom);
  return {cells_.get() + begin_, size_};
}

}  // namespace zendrix::admin
