// CUList: a list of unique texts with insertion order; keys do not regard case.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zendrix::store {

class CUList {
 public:
  struct Entry {
    std::string key;
    std::string item;
  };

  // Adds the item under the key. A key that is already there is ignored: the first item stays.
  void SetItemData(std::string_view key, std::string_view item);
  // The item of the key, or null.
  const std::string* ItemData(std::string_view key) const;
  // All entries in insertion order.
  const std::vector<Entry>& ColList() const { return entries_; }
  void Clear();

 private:
  std::vector<Entry> entries_;
  std::unordered_map<std::string, std::size_t> places_;  // upper-case key to index
};

}  // namespace zendrix::store
