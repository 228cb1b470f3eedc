// A kernel stream that plays the records that a test gives it.
#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "agent/sources/kernel_stream.h"

namespace zendrix::agent {

class RecordedKernelStream : public KernelStream {
 public:
  void Play(std::string record) { waiting_.push_back(std::move(record)); }
  // `count` more records of this kind found no room.
  void Lose(std::size_t kind, std::uint64_t count) {
    if (lost_.size() <= kind) lost_.resize(kind + 1);
    lost_[kind] += count;
  }
  void SetLacks(std::string lacks) { lacks_ = std::move(lacks); }

  bool Read(std::size_t most, const std::function<void(std::string_view)>& take) override {
    for (; most > 0 && !waiting_.empty(); --most) {
      take(waiting_.front());
      waiting_.pop_front();
    }
    return !waiting_.empty();
  }
  std::vector<std::uint64_t> Lost() const override { return lost_; }
  bool Wakes() const override { return wakes_; }
  void SetWakes(bool wakes) { wakes_ = wakes; }
  std::string Lacks() const override { return lacks_; }

 private:
  std::deque<std::string> waiting_;
  std::vector<std::uint64_t> lost_;
  std::string lacks_;
  bool wakes_ = false;
};

}  // namespace zendrix::agent
