// Where the Agent learns of what happens. A source stands for one way of being told: by the kernel, by a
// notice that something changed, or by looking again and again. It reports what came, what went, what merely
// happened, and how much it had to let pass; the loop drains every source in turn on one thread.
//
// A source never fails in silence: what it cannot do is its level, with the reason in words for a person, and
// what it missed is an observation of its own. Texts of items come cleaned (agent/host/text.h), since whoever
// is to be caught chose them.
//
// A source begins with what is there already: its first Drain tells every item that it finds as kCame. From
// then on its observations add up to what is there now. A kCame of an item that is there already says that
// the facts about it (its rules) changed; a kWent bears the monitor, description and identity of its kCame.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "agent/events/snapshot.h"

namespace zendrix::agent {

inline constexpr std::int64_t kDrainMs = 50;  // between two drains of what is told of many events
inline constexpr std::int64_t kQuietRestMs =
    250;                                       // the longest rest of a source that says when it has something
inline constexpr std::int64_t kGatherMs = 10;  // what is told at once comes in twos and threes

struct Observation {
  enum class Kind {
    kCame,
    kWent,
    kHappened,  // and left nothing behind
    kLost,      // events of this source that nobody saw
  };
  Kind kind = Kind::kCame;
  std::int64_t seen_ns = 0;  // CLOCK_BOOTTIME
  Item item;                 // of kLost only the monitor, empty when it may be any of the source's
  std::uint64_t lost = 0;    // kLost: events not seen
  bool left_out = false;     // kLost: they are entries of a look, too many for it or not to be read
};

// How well something is watched, best first.
enum class Level {
  kEvents,   // the kernel tells every event
  kNotices,  // it tells that something changed, and the Agent reads
  kPolling,  // the Agent looks from time to time: what comes and goes between two looks is not seen
  kNone,
};

struct SourceLevel {
  Level level = Level::kNone;
  std::string how;     // "BPF", "inotify", ...
  std::string reason;  // why it is no better, for a person; empty when there is nothing to say
  friend bool operator==(const SourceLevel&, const SourceLevel&) = default;
};

class Source {
 public:
  virtual ~Source() = default;
  // The monitors (agent/score/rules.h) that this source reports, always the same.
  virtual std::span<const std::string_view> Monitors() const = 0;
  // The level at present. A source that can do nothing at all says kNone, and why.
  virtual SourceLevel level() const = 0;
  // What epoll may wait for; -1 for a source that is drained at each turn only.
  virtual int Handle() const = 0;
  // How long its Drain may wait while nothing is ready at Handle(), in milliseconds. Each time that the Agent
  // wakes costs more than an empty Drain, because by then others used the processor.
  virtual std::int64_t RestMs() const { return kDrainMs; }
  // How long after a Drain what is ready at Handle() may gather, in milliseconds.
  virtual std::int64_t GatherMs() const { return kGatherMs; }
  // Adds what was seen since the last call, in the order in which it was seen. Never waits. A flood is told
  // in parts: one call adds a bounded number, and the next goes on.
  virtual void Drain(std::vector<Observation>& into) = 0;
};

}  // namespace zendrix::agent
