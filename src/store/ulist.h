// CUList: a list of unique texts in insertion order; keys ignore case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::store {

class CUList {
 public:
  struct Entry {
    std::string key;
    std::string item;
  };

  CUList();

  // Adds the item under the key. A key that is already there is ignored: the first item stays.
  void SetItemData(std::string_view key, std::string_view item);
  // The item of the key, or null.
  const std::string* ItemData(std::string_view key) const;
  // All entries in insertion order.
  const std::vector<Entry>& ColList() const { return entries_; }
  void Clear();

 private:
  // The slot that holds the key, or the free one where it belongs.
  std::size_t SlotOf(std::string_view key) const;
  void Grow();

  std::uint64_t seed_;  // keys come from files that others write
  std::vector<Entry> entries_;
  std::vector<std::uint32_t> slots_;  // open addressing: index of the entry plus 1, 0 free
};

}  // namespace zendrix::store
