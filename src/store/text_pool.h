// Texts stored once. A text that is interned gets a number; equal texts get the same one, so that texts of
// one pool are compared by their numbers. Bytes lie in big blocks that never move: every view handed out
// stays valid as long as the pool does. Texts come from files that others write, so the hash is seeded anew
// for every pool.
#pragma once

#include <cstddef>
#include <cstdint>
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

class TextPool {
 public:
  TextPool();

  // The number of the text, which is stored if it is new. The empty text has number 0.
  TextId Intern(std::string_view text) { return text.empty() ? kEmptyText : InternHashed(text, Hash(text)); }
  // The number of the text, or kNoText when the pool does not hold it.
  TextId Lookup(std::string_view text) const;
  std::string_view Text(TextId id) const { return {entries_[id].data, entries_[id].size}; }
  // Numbers run from 0 to size() - 1.
  std::uint32_t size() const { return static_cast<std::uint32_t>(entries_.size()); }

  // Stores a text without a number.
  std::string_view Keep(std::string_view text);

 private:
  struct Entry {
    const char* data;
    std::uint32_t size;
    std::uint32_t hash;
  };

  std::uint32_t Hash(std::string_view text) const;
  TextId InternHashed(std::string_view text, std::uint32_t hash);
  void Grow();

  std::uint64_t seed_;
  ChunkedVector<Entry, 12> entries_;
  // Open addressing: hash in the upper half, number of the entry in the lower; 0 is a vacant slot (number 0
  // is the empty text, which is never looked for here).
  std::vector<std::uint64_t> slots_;
  std::size_t mask_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  char* free_ = nullptr;
  std::size_t free_size_ = 0;
};

}  // namespace zendrix::store
