// What holds for all rows from one on, until another takes over: few values for many rows. A value is taken
// up only when it differs from the one that holds, and only when a row comes under it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace zendrix::admin {

// `Held` is made of the `Value` that it then compares equal to. It never moves.
template <class Value, class Held>
class Stretches {
 public:
  // From the next row on this value holds.
  void Announce(Value value) {
    if (!stretches_.empty() && stretches_.back().held->value == value)
      announced_.reset();
    else
      announced_ = std::move(value);
  }
  // Takes the announced value up. `row` is the next row.
  template <class Make>
  void Begin(std::uint32_t row, Make make) {
    if (!announced_) return;
    stretches_.push_back({row, make(*announced_)});
    announced_.reset();
  }
  // What holds for a row; null where nothing was announced.
  Held* Of(std::uint32_t row) const {
    const std::size_t number = NumberOf(row);
    return number == 0 ? nullptr : stretches_[number - 1].held.get();
  }
  // From 1; 0 where nothing was announced.
  std::size_t NumberOf(std::uint32_t row) const {
    if (stretches_.size() == 1) return stretches_[0].from <= row ? 1 : 0;
    const auto behind = std::ranges::upper_bound(stretches_, row, {}, &Stretch::from);
    return static_cast<std::size_t>(behind - stretches_.begin());
  }
  // What holds for any row at all.
  template <class Visit>
  void ForEach(Visit visit) const {
    for (const Stretch& stretch : stretches_) visit(*stretch.held);
  }
  void Clear() {
    stretches_.clear();
    announced_.reset();
  }

 private:
  struct Stretch {
    std::uint32_t from;
    std::unique_ptr<Held> held;
  };
  std::vector<Stretch> stretches_;
  std::optional<Value> announced_;
};

}  // namespace zendrix::admin
