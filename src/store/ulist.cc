#include "store/ulist.h"

#include "core/letter_case.h"
#include "store/text_pool.h"

namespace zendrix::store {
namespace {

constexpr std::size_t kFirstListSlots = 16;

}  // namespace

CUList::CUList() : seed_(FreshSeed()), slots_(kFirstListSlots) {}

std::size_t CUList::SlotOf(std::string_view key) const {
  std::uint64_t state = seed_;
  for (const char c : key) {
    state = (state ^ static_cast<unsigned char>(core::UpperByte(c))) * 0x9E3779B97F4A7C15;
    state ^= state >> 29;
  }
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = state & mask;
  while (slots_[i] != 0 && !core::EqualNoCase(entries_[slots_[i] - 1].key, key)) i = (i + 1) & mask;
  return i;
}

void CUList::SetItemData(std::string_view key, std::string_view item) {
  const std::size_t slot = SlotOf(key);
  if (slots_[slot] != 0) return;
  entries_.push_back({std::string(key), std::string(item)});
  slots_[slot] = static_cast<std::uint32_t>(entries_.size());
  if (entries_.size() * 2 > slots_.size()) Grow();
}

const std::string* CUList::ItemData(std::string_view key) const {
  const std::uint32_t place = slots_[SlotOf(key)];
  return place == 0 ? nullptr : &entries_[place - 1].item;
}

void CUList::Clear() {
  entries_.clear();
  slots_.assign(kFirstListSlots, 0);
}

void CUList::Grow() {
  slots_.assign(slots_.size() * 2, 0);
  for (std::size_t i = 0; i < entries_.size(); ++i)
    slots_[SlotOf(entries_[i].key)] = static_cast<std::uint32_t>(i + 1);
}

}  // namespace zendrix::store
