// Sessions of users as logind tells them on the system bus, also those that write no record of a log-in; and
// a word to others when unit files changed. A session that serves no user (the greeter, jobs of cron) is left
// out. One that ended before logind could be asked about it is told as that of an unknown user.
//
// Where there is no bus, or no logind on it, the level is kNone with the reason; it is tried again once a
// minute. Between two times it knows what it told, and tells the difference.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "agent/sources/bus_stream.h"
#include "agent/sources/source.h"
#include "platform/clock.h"

namespace zendrix::agent {

class BusSource : public Source {
 public:
  static constexpr std::int64_t kTryAgainMs = 60000;
  static constexpr std::size_t kMostSessions = 2000;

  // `open` is asked at once. `clock` outlives the object; so does what `units_changed` refers to.
  BusSource(platform::Clock& clock, std::function<OpenedBus()> open,
            std::function<void()> units_changed = {});

  std::span<const std::string_view> Monitors() const override;
  SourceLevel level() const override;
  int Handle() const override { return -1; }
  std::int64_t RestMs() const override { return kQuietRestMs; }
  void Drain(std::vector<Observation>& into) override;

 private:
  void Open(std::int64_t now_ms);
  void Take(const BusNews& news, std::vector<Observation>& into);
  void Forget(const std::map<std::string, Item>& still, std::vector<Observation>& into);

  platform::Clock& clock_;
  const std::function<OpenedBus()> open_;
  const std::function<void()> units_changed_;
  std::unique_ptr<BusStream> stream_;
  std::string refusal_;
  bool is_new_ = false;  // the first reading tells all that there is
  std::int64_t next_try_ms_ = 0;
  std::map<std::string, Item> sessions_;  // told, by id
};

// The one of the running computer.
std::unique_ptr<Source> MakeBusSource(platform::Clock& clock, std::function<void()> units_changed);

}  // namespace zendrix::agent
