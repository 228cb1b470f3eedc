// The Agent: one loop on one thread. At every turn it asks its sources what they saw, decides what of it is
// told and how soon, and writes it. Into one folder it writes KorvessaMonitoring.kvl in one form (see
// lines.h) and KorvessaEventLog.kvl ("seconds,host,thread,message"); as a service into two folders, one for
// each form. Beside its lock it keeps zendrix-agent.status, which tells a person how it watches. It changes
// nothing else.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "agent/enforcement.h"
#include "agent/events/measures.h"
#include "agent/events/pace.h"
#include "agent/gaps.h"
#include "agent/host/host_view.h"
#include "agent/level_text.h"
#include "agent/options.h"
#include "agent/record/decisions.h"
#include "agent/record/recording.h"
#include "agent/score/scorer.h"
#include "agent/watch.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace zendrix::agent {

// In the folder of the lock; JSON.
inline constexpr char kStatusFile[] = "zendrix-agent.status";

struct AgentParts {
  HostView& host;
  platform::Files& files;
  platform::Clock& clock;
  Scorer& scorer;
  std::ostream& errors;                  // for the person who started it
  std::function<bool()> stop_requested;  // asked at every turn
  std::string host_name;                 // raw
  std::uint64_t own_pid = 0;
  std::function<void()> on_first_look = {};  // once, when it has been written
  std::vector<Source*> sources = {};         // best first; what they do not cover is looked at
  Numbers* numbers = nullptr;                // null: the numbers come from looks alone
  // Rests for so many milliseconds at most, less when a source has something; nothing: the clock's Sleep.
  std::function<void(std::int64_t)> wait = {};
  platform::ActHelper* helper = nullptr;       // blocks again what was blocked before; nullptr: nobody does
  std::function<std::int64_t()> boot_ms = {};  // CLOCK_BOOTTIME; nothing: the clock that never goes back
  MakeLike make_like = {};                     // for a log that begins anew; nothing: with its usual rights
};

class Agent {
 public:
  // `options.folder` or `options.state` is set. What `parts` refers to outlives the object.
  Agent(AgentParts parts, Options options);

  // Runs to its end; the program's exit status: 0, or 1 when a file could not be used at the start or its
  // last batch could not be written.
  int Run();

 private:
  bool OpenRecordings();
  void Turn();
  void NoticeFirst(std::vector<Event>& told);
  void NoticeChanges(std::vector<Event>& told);
  void TakeNumbers(std::vector<Event>& told);
  void TellGaps(std::vector<Event>& told);
  void TellDowntime(std::vector<Event>& told);
  void TellLosses(std::vector<Event>& told);
  void TellLevels(std::vector<Event>& told);
  void EndMinute(std::vector<Event>& told);
  void TellOfAgent(const std::string& message, double count, std::vector<Event>& told);

  void Deliver(const std::vector<Event>& told, bool at_end);
  void FollowDecisions();
  void WriteFirst(bool at_end);
  void NoteUnweighed(const std::vector<Event>& events);
  std::vector<Event> Present() const;
  Recording& First() { return recordings_.front(); }

  void End();
  void Rest();
  bool IsWaiting() const;
  void WriteStatus(bool running);
  void Log(const std::string& message);
  Moment Now() const;

  AgentParts parts_;
  const Options options_;
  const std::string status_path_;
  std::vector<Recording> recordings_;
  Enforcement enforcement_;
  DecisionFiles decisions_;  // its own in the first folder
  Watch watch_;
  Pace pace_;
  Measures measures_;
  Gaps gaps_;
  std::vector<WatchLevel> levels_told_;
  std::vector<Event> unweighed_;
  std::uint64_t weighed_never_ = 0;
  std::int64_t started_ = 0;  // UTC seconds
  std::int64_t started_ms_ = 0;
  std::int64_t next_numbers_ms_ = 0;
  std::int64_t not_pressed_before_ms_ = 0;
  std::int64_t minute_ends_ms_ = 0;
  MinuteNumbers minute_;
  MinuteNumbers last_minute_;
  std::uint64_t counted_before_ = 0;
  std::uint64_t lost_ = 0;  // to be told
  std::uint64_t left_out_ = 0;
  std::int64_t next_loss_ms_ = 0;
  bool is_first_ = true;
  bool status_failing_ = false;
};

}  // namespace zendrix::agent
