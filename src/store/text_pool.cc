#include "store/text_pool.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace zendrix::store {
namespace {

__extension__ using Wide = unsigned __int128;

constexpr std::uint64_t kOne = 0x9E3779B97F4A7C15;
constexpr std::uint64_t kTwo = 0xD6E8FEB86659FD93;
constexpr std::size_t kFirstSlots = 1024;
constexpr std::size_t kFirstBlock = 16 * 1024;
constexpr std::size_t kLargestBlock = 1024 * 1024;

std::uint64_t Load8(const char* p) {
  std::uint64_t value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

std::uint64_t Load4(const char* p) {
  std::uint32_t value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

// The two halves of a full product folded together: each bit of the result depends on all bits of both
// factors.
std::uint64_t Fold(std::uint64_t a, std::uint64_t b) {
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

}  // namespace

std::uint64_t FreshSeed() {
  std::random_device device;
  return (static_cast<std::uint64_t>(device()) << 32) ^ device();
}

TextPool::TextPool() : seed_(FreshSeed()), slots_(kFirstSlots), mask_(kFirstSlots - 1) {
  entries_.push_back({"", 0, 0});
}

std::uint32_t TextPool::Hash(std::string_view text) const {
  const char* p = text.data();
  std::size_t left = text.size();
  std::uint64_t state = seed_;
  for (; left > 16; p += 16, left -= 16) state = Fold(Load8(p) ^ kOne, Load8(p + 8) ^ state);
  std::uint64_t a = 0, b = 0;
  if (left >= 8) {  // the two loads overlap when there are fewer than 16 bytes
    a = Load8(p);
    b = Load8(p + left - 8);
  } else if (left >= 4) {
    a = Load4(p);
    b = Load4(p + left - 4);
  } else if (left > 0) {
    const auto byte = [p](std::size_t i) {
      return static_cast<std::uint64_t>(static_cast<unsigned char>(p[i]));
    };
    a = byte(0) << 16 | byte(left / 2) << 8 | byte(left - 1);
  }
  state = Fold(a ^ kOne, b ^ state);
  state = Fold(state ^ text.size(), kTwo);
  return static_cast<std::uint32_t>(state ^ state >> 32);
}

TextId TextPool::Lookup(std::string_view text) const {
  if (text.empty()) return kEmptyText;
  const std::uint32_t hash = Hash(text);
  for (std::size_t i = hash & mask_; slots_[i] != 0; i = (i + 1) & mask_) {
    const auto id = static_cast<TextId>(slots_[i]);
    if (slots_[i] >> 32 == hash && Text(id) == text) return id;
  }
  return kNoText;
}

TextId TextPool::InternHashed(std::string_view text, std::uint32_t hash) {
  std::size_t i = hash & mask_;
  for (; slots_[i] != 0; i = (i + 1) & mask_) {
    const auto id = static_cast<TextId>(slots_[i]);
    if (slots_[i] >> 32 == hash && Text(id) == text) return id;
  }
  const auto id = static_cast<TextId>(entries_.size());
  const std::string_view kept = Keep(text);
  entries_.push_back({kept.data(), static_cast<std::uint32_t>(kept.size()), hash});
  slots_[i] = static_cast<std::uint64_t>(hash) << 32 | id;
  if (entries_.size() * 5 > slots_.size() * 3) Grow();
  return id;
}

void TextPool::Grow() {
  std::vector<std::uint64_t> wider(slots_.size() * 2);
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
    free_size_ = std::max(usual, text.size());
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(free_size_));
    free_ = blocks_.back().get();
  }
  char* const place = free_;
  std::memcpy(place, text.data(), text.size());
  free_ += text.size();
  free_size_ -= text.size();
  return {place, text.size()};
}

}  // namespace zendrix::store
