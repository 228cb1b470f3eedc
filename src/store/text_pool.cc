#include "store/text_pool.h"

#include <algorithm>
#include <random>
#include <utility>

namespace zendrix::store {
namespace {

constexpr std::size_t kFirstTextSlots = 1024;
constexpr std::size_t kManySlots = 1024 * 1024;
constexpr std::size_t kFirstBlock = 16 * 1024;
constexpr std::size_t kLargestBlock = 1024 * 1024;

}  // namespace

std::uint64_t FreshSeed() {
  std::random_device device;
  return (static_cast<std::uint64_t>(device()) << 32) ^ device();
}

TextPool::TextPool() : slots_(kFirstTextSlots), mask_(kFirstTextSlots - 1) {
  entries_.push_back({"", 0});
}

TextId TextPool::Insert(std::string_view text, std::uint32_t hash, std::size_t slot) {
  if (entries_.size() * 5 >= slots_.size() * 3) {
    Grow();
    slot = SlotOf(text, hash);
  }
  const auto id = static_cast<TextId>(entries_.size());
  const std::string_view kept = Keep(text);
  entries_.push_back({kept.data(), kept.size()});
  slots_[slot] = static_cast<std::uint64_t>(hash) << 32 | id;
  return id;
}

// Large pools grow by less at a time: their slots are what counts in memory.
void TextPool::Grow() {
  std::vector<std::uint64_t> wider(slots_.size() * (slots_.size() < kManySlots ? 4 : 2));
  mask_ = wider.size() - 1;
  for (const std::uint64_t slot : slots_) {
    if (slot == 0) continue;
    std::size_t i = (slot >> 32) & mask_;
    while (wider[i] != 0) i = (i + 1) & mask_;
    wider[i] = slot;
  }
  slots_ = std::move(wider);
}

std::string_view TextPool::Keep(std::string_view text) {
  if (text.empty()) return {"", 0};
  if (text.size() > free_size_) {
    const std::size_t usual =
        std::min(kLargestBlock, kFirstBlock << std::min<std::size_t>(blocks_.size(), 6));
    const std::size_t size = std::max(usual, text.size());
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
    free_ = blocks_.back().get();
    free_size_ = size;
  }
  char* const place = free_;
  std::memcpy(place, text.data(), text.size());
  free_ += text.size();
  free_size_ -= text.size();
  kept_ += text.size();
  return {place, text.size()};
}

}  // namespace zendrix::store
