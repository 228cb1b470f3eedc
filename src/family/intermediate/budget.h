// What one click may cost: the console has one thread, which waits for the library.
#pragma once

#include <chrono>
#include <cstdint>

#include "family/intermediate/descriptor.h"
#include "family/intermediate/outside.h"

namespace zendrix::family {

// Bringing a file back has no budget: a file that could be put away must be able to come back.
class Budget {
 public:
  explicit Budget(const Outside& outside)
      : end_(std::chrono::steady_clock::now() + outside.most_time),
        free_(outside.free_bytes),
        left_(outside.most_copied) {}

  // Called behind each part that was read, with its size.
  void SpendTime(std::uint64_t bytes) {
    if (bytes <= free_) {
      free_ -= bytes;
      return;
    }
    if (std::chrono::steady_clock::now() > end_)
      throw Refused{"This file takes too long to put away. Nothing was changed."};
  }
  void SpendBytes(std::uint64_t bytes) {
    if (bytes > left_)
      throw Refused{"This file is too large to be copied to the quarantine's disk. Nothing was changed."};
    left_ -= bytes;
  }

 private:
  std::chrono::steady_clock::time_point end_;
  std::uint64_t free_;
  std::uint64_t left_;
};

}  // namespace zendrix::family
