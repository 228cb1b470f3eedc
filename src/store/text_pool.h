// Texts stored once. A text that is interned gets a number; equal texts get the same one, so that texts of
// one pool are compared by their numbers. Bytes lie in big blocks that never move: every view handed out
// stays valid as long as the pool does. When memory runs out, std::bad_alloc leaves the pool as it was. Texts
// come from files that others write, so every pool has a hash
// seed of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "store/chunked_vector.h"

namespace zendrix::store {

using TextId = std::uint32_t;
inline constexpr TextId kEmptyText = 0;
inline constexpr TextId kNoText = 0xFFFFFFFF;

// A seed that differs from one call to the next.
std::uint64_t FreshSeed();

// Loads from any address, aligned or not.
inline std::uint64_t Load8(const char* p) {
  std::uint64_t value;
  std::memcpy(&value, p, sizeof value);
  return value;
}
inline std::uint64_t Load4(const char* p) {
  std::uint32_t value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

// Whether `size` bytes, at least one, are the same: for short texts faster than a call. Loads overlap at
// the end.
inline bool SameBytes(const char* one, const char* other, std::size_t size) {
  if (size >= 8) {
    for (std::size_t i = 0; i + 8 < size; i += 8) {
      if (Load8(one + i) != Load8(other + i)) return false;
    }
    return Load8(one + size - 8) == Load8(other + size - 8);
  }
  if (size >= 4) return Load4(one) == Load4(other) && Load4(one + size - 4) == Load4(other + size - 4);
  return one[0] == other[0] && one[size / 2] == other[size / 2] && one[size - 1] == other[size - 1];
}

// A hash that is fast on short texts.
class TextHash {
 public:
  TextHash() : one_(FreshSeed()), other_(FreshSeed()) {}

  std::uint32_t operator()(std::string_view text) const {
    const char* p = text.data();
    std::size_t left = text.size();
    std::uint64_t state = other_;
    for (; left > 16; p += 16, left -= 16) state = Fold(Load8(p) ^ one_, Load8(p + 8) ^ state);
    std::uint64_t a = 0, b = 0;
    if (left >= 8) {  // the two loads overlap when there are fewer than 16 bytes
      a = Load8(p);
      b = Load8(p + left - 8);
    } else if (left >= 4) {
      a = Load4(p);
      b = Load4(p + left - 4);
    } else if (left > 0) {
      a = Byte(p, 0) << 16 | Byte(p, left / 2) << 8 | Byte(p, left - 1);
    }
    state = Fold(a ^ one_ ^ text.size(), b ^ state);
    return static_cast<std::uint32_t>(state ^ state >> 32);
  }

 private:
  __extension__ using Wide = unsigned __int128;

  // The two halves of a full product folded together: each bit of the result depends on all bits of both
  // factors. Both contain secret bits, so no file can be made of texts that collide.
  static std::uint64_t Fold(std::uint64_t a, std::uint64_t b) {
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
  }
  static std::uint64_t Byte(const char* p, std::size_t i) { return static_cast<unsigned char>(p[i]); }

  std::uint64_t one_;
  std::uint64_t other_;
};

class TextPool {
 public:
  TextPool();

  // A text and its hash, for a later Intern.
  struct Hashed {
    std::string_view text;
    std::uint32_t hash;
  };

  // The number of the text, which is stored if it is new. The empty text has number 0.
  TextId Intern(std::string_view text) { return Intern(Hashed{text, hash_(text)}); }
  TextId Intern(const Hashed& hashed) {
    if (hashed.text.empty()) return kEmptyText;
    const std::size_t slot = SlotOf(hashed.text, hashed.hash);
    return slots_[slot] != 0 ? static_cast<TextId>(slots_[slot]) : Insert(hashed.text, hashed.hash, slot);
  }
  // Prefetches the text's slot while other work is done before its Intern.
  Hashed Prepare(std::string_view text) const {
    const Hashed hashed{text, hash_(text)};
    __builtin_prefetch(&slots_[hashed.hash & mask_]);
    return hashed;
  }
  // Further steps of the same, each a while behind the one before: what an Intern will look at.
  void FetchEntry(const Hashed& hashed) const {
    if (const std::uint64_t slot = slots_[hashed.hash & mask_]; slot >> 32 == hashed.hash)
      __builtin_prefetch(&entries_[static_cast<TextId>(slot)]);
  }
  void FetchText(const Hashed& hashed) const {
    if (const std::uint64_t slot = slots_[hashed.hash & mask_]; slot >> 32 == hashed.hash)
      __builtin_prefetch(entries_[static_cast<TextId>(slot)].data());
  }
  // The number of the text, or kNoText when the pool does not hold it.
  TextId Lookup(std::string_view text) const {
    if (text.empty()) return kEmptyText;
    const std::size_t slot = SlotOf(text, hash_(text));
    return slots_[slot] != 0 ? static_cast<TextId>(slots_[slot]) : kNoText;
  }
  std::string_view Text(TextId id) const { return {entries_[id].data(), entries_[id].size}; }
  // Numbers run from 0 to size() - 1.
  std::uint32_t size() const { return static_cast<std::uint32_t>(entries_.size()); }

  // Stores a text without a number.
  std::string_view Keep(std::string_view text);
  // Bytes of the texts and of what belongs to each.
  std::size_t bytes() const { return kept_ + entries_.size() * (sizeof(Entry) + sizeof(std::uint64_t)); }

 private:
  // Twelve bytes, not sixteen: large pools have millions of these.
  struct Entry {
    Entry() = default;
    Entry(const char* data, std::size_t length) : size(static_cast<std::uint32_t>(length)) {
      std::memcpy(place, &data, sizeof data);
    }
    const char* data() const {
      const char* at;
      std::memcpy(&at, place, sizeof at);
      return at;
    }
    std::uint32_t size;
    char place[sizeof(const char*)];
  };
  static_assert(sizeof(Entry) == 12);

  // The slot that holds the text, or the free one where it belongs.
  std::size_t SlotOf(std::string_view text, std::uint32_t hash) const {
    for (std::size_t i = hash & mask_;; i = (i + 1) & mask_) {
      const std::uint64_t slot = slots_[i];
      if (slot == 0) return i;
      if (slot >> 32 != hash) continue;
      const std::string_view held = Text(static_cast<TextId>(slot));
      if (held.size() == text.size() && SameBytes(held.data(), text.data(), text.size())) return i;
    }
  }
  TextId Insert(std::string_view text, std::uint32_t hash, std::size_t slot);
  void Grow();

  TextHash hash_;
  ChunkedVector<Entry, 12> entries_;
  // Open addressing: hash in the upper half, number of the entry in the lower; 0 is a free slot (number 0
  // is the empty text, which is never looked for here).
  std::vector<std::uint64_t> slots_;
  std::size_t mask_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  char* free_ = nullptr;
  std::size_t free_size_ = 0;
  std::size_t kept_ = 0;
};

}  // namespace zendrix::store
