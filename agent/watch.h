// All sources together: which of them covers which monitor, and what they saw as events in the order in which
// it was seen. A monitor is covered by the first source given that can do anything at all for it, and by
// looks from time to time when none can; when a source's level changes, what it covered is shared out anew,
// and only what the next one sees otherwise is told.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "agent/events/ledger.h"
#include "agent/host/host_view.h"
#include "agent/sources/module_looks.h"
#include "agent/sources/numbers.h"
#include "agent/sources/polling_source.h"
#include "agent/sources/source.h"
#include "platform/clock.h"

namespace zendrix::agent {

// How one thing is watched. What is watched is mostly a monitor.
struct WatchLevel {
  std::string watched;
  SourceLevel level;
  friend bool operator==(const WatchLevel&, const WatchLevel&) = default;
};

class Watch {
 public:
  // The references, `sources` and `numbers` outlive the object. `own_pid` is not reported.
  Watch(HostView& host, platform::Clock& clock, std::uint64_t own_pid, std::int64_t interval_ms,
        std::vector<Source*> sources, const Numbers* numbers = nullptr);

  // What was seen since the last call; the first call tells everything that is there as having come.
  std::vector<Event> Turn();
  // Events that no source could tell, since the last call.
  std::uint64_t TakeLost();
  // Entries that looks left out, being too many or not to be read, since the last call.
  std::uint64_t TakeLeftOut() { return std::exchange(left_out_, 0); }

  const Ledger& ledger() const { return ledger_; }
  const std::vector<WatchLevel>& levels() const { return levels_; }
  // Whether any source is told of events or changes, so that it is worth draining many times a second.
  bool IsTold() const;
  // How long the next Turn may wait while nothing is ready at the sources' handles, in milliseconds.
  std::int64_t RestMs() const;

 private:
  void ShareOut();
  bool Covers(const Source& source, std::string_view name) const;
  const Source* CoverOf(std::string_view name) const;
  void Note(const Source& source, Observation seen);
  void NoteLost(const Observation& seen);
  void Take(const Source& source, std::vector<Event>& events);
  void HandOver(std::vector<Event>& events);
  void Look(std::vector<Event>& events);
  void LookAtModules(std::vector<Event>& events);
  std::vector<WatchLevel> LevelsNow() const;
  SourceLevel LevelOfNumber(std::string_view name) const;
  SourceLevel LevelOfModules() const;

  HostView& host_;
  platform::Clock& clock_;
  const std::uint64_t own_pid_;
  const std::int64_t interval_ms_;
  const std::vector<Source*> sources_;
  const Numbers* const numbers_;
  std::vector<SourceLevel> source_levels_;                           // as the work was shared out
  std::vector<std::pair<std::string_view, const Source*>> covered_;  // nullptr: by looks
  // What is there by sources whose monitors better ones cover, for the moment in which these fail. By KeyOf.
  std::map<std::pair<const Source*, std::string_view>, std::map<std::string, Item>> unused_;
  std::vector<std::string_view> taken_over_;  // monitors that another source covers since this turn
  std::unique_ptr<PollingSource> looks_;
  bool looks_are_new_ = false;
  ModuleLooks module_looks_;
  std::vector<Observation> seen_;
  Ledger ledger_;
  std::vector<WatchLevel> levels_;
  std::uint64_t lost_ = 0;
  std::uint64_t left_out_ = 0;
};

}  // namespace zendrix::agent
