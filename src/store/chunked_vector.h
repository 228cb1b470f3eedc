// A growing list whose elements never move: it is made of chunks of 2^kBits elements, so growth copies
// nothing and a pointer to an element stays valid for the life of the list. Elements are plain data.
#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

namespace zendrix::store {

template <class T, unsigned kBits>
class ChunkedVector {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  T& operator[](std::size_t i) { return chunks_[i >> kBits][i & kMask]; }
  const T& operator[](std::size_t i) const { return chunks_[i >> kBits][i & kMask]; }
  T& back() { return (*this)[size_ - 1]; }
  const T& back() const { return (*this)[size_ - 1]; }

  void push_back(const T& value) {
    // A chunk is not initialised, so its pages are not touched before they are used.
    if ((size_ & kMask) == 0 && (size_ >> kBits) == chunks_.size()) {
      chunks_.push_back(std::make_unique_for_overwrite<T[]>(kMask + 1));
    }
    chunks_[size_ >> kBits][size_ & kMask] = value;
    ++size_;
  }

 private:
  static constexpr std::size_t kMask = (std::size_t{1} << kBits) - 1;
  std::vector<std::unique_ptr<T[]>> chunks_;
  std::size_t size_ = 0;
};

}  // namespace zendrix::store
