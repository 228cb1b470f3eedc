// A source that plays what a test gives it.
#pragma once

#include <iterator>
#include <utility>

#include "agent/sources/source.h"

namespace zendrix::agent {

class RecordedSource : public Source {
 public:
  RecordedSource(std::vector<std::string_view> monitors, SourceLevel level)
      : monitors_(std::move(monitors)), level_(std::move(level)) {}

  // The next Drain hands these out, once.
  void Play(std::vector<Observation> observations) {
    waiting_.insert(waiting_.end(), std::make_move_iterator(observations.begin()),
                    std::make_move_iterator(observations.end()));
  }
  void Came(Item item) { Play({{Observation::Kind::kCame, 0, std::move(item), 0}}); }
  void Went(Item item) { Play({{Observation::Kind::kWent, 0, std::move(item), 0}}); }
  void Happened(Item item) { Play({{Observation::Kind::kHappened, 0, std::move(item), 0}}); }
  void Lost(std::uint64_t events) { Play({{Observation::Kind::kLost, 0, {}, events}}); }
  void SetLevel(SourceLevel level) { level_ = std::move(level); }

  std::span<const std::string_view> Monitors() const override { return monitors_; }
  SourceLevel level() const override { return level_; }
  int Handle() const override { return handle_; }
  std::int64_t RestMs() const override { return rest_ms_; }
  std::int64_t GatherMs() const override { return gather_ms_; }
  void SetHandle(int handle) { handle_ = handle; }
  void SetTimes(std::int64_t rest_ms, std::int64_t gather_ms) {
    rest_ms_ = rest_ms;
    gather_ms_ = gather_ms;
  }
  void Drain(std::vector<Observation>& into) override {
    into.insert(into.end(), std::make_move_iterator(waiting_.begin()),
                std::make_move_iterator(waiting_.end()));
    waiting_.clear();
  }

 private:
  std::vector<std::string_view> monitors_;
  SourceLevel level_;
  std::vector<Observation> waiting_;
  int handle_ = -1;
  std::int64_t rest_ms_ = kDrainMs;
  std::int64_t gather_ms_ = kGatherMs;
};

}  // namespace zendrix::agent
