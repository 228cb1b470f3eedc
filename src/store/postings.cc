#include "store/postings.h"

#include <bit>

#include "store/text_pool.h"

namespace zendrix::store {
namespace {

constexpr std::size_t kFirstPostingSlots = 256;

// A list of n rows has room for the next power of two.
std::size_t RoomFor(std::uint32_t size) {
  return std::bit_ceil(static_cast<std::size_t>(size));
}

}  // namespace

Postings::Postings() : seed_(FreshSeed() | 1), slots_(kFirstPostingSlots) {}

std::size_t Postings::SlotOf(std::uint64_t key) const {
  const std::size_t mask = slots_.size() - 1;
  const std::uint64_t mixed = (key ^ key >> 32) * seed_;
  std::size_t i = (mixed ^ mixed >> 32) & mask;
  while (slots_[i].size != 0 && slots_[i].key != key) i = (i + 1) & mask;
  return i;
}

Postings::Rows Postings::Find(std::uint64_t key) const {
  const Slot& slot = slots_[SlotOf(key)];
  if (slot.size == 0) return {};
  if (slot.size == 1) return {&slot.place, 1};
  return {pool_.data() + slot.place, slot.size};
}

void Postings::Add(std::uint64_t key) {
  const std::uint32_t row = indexed_++;
  Slot& slot = slots_[SlotOf(key)];
  if (slot.size == 0) {
    slot = {key, 1, row};
    if (++used_ * 2 > slots_.size()) Grow();
    return;
  }
  if (slot.size == RoomFor(slot.size)) {  // full: the list moves to twice the room at the end of the pool
    const auto old = slot.place;
    const auto place = static_cast<std::uint32_t>(pool_.size());
    pool_.resize(pool_.size() + RoomFor(slot.size + 1));
    if (slot.size == 1) {
      pool_[place] = old;
    } else {
      for (std::uint32_t i = 0; i < slot.size; ++i) pool_[place + i] = pool_[old + i];
    }
    slot.place = place;
  }
  pool_[slot.place + slot.size++] = row;
}

void Postings::Grow() {
  std::vector<Slot> old(slots_.size() * 2);
  old.swap(slots_);
  for (const Slot& slot : old) {
    if (slot.size != 0) slots_[SlotOf(slot.key)] = slot;
  }
}

}  // namespace zendrix::store
