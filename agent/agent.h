// The Agent: looks at the host, writes what it sees, rests, and looks again. It writes two files of one
// folder, KorvessaMonitoring.kvl (see lines.h) and KorvessaEventLog.kvl ("seconds,host,thread,message"), and
// changes nothing else.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "agent/events/measures.h"
#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"
#include "agent/options.h"
#include "agent/record/event_file.h"
#include "agent/score/scorer.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace zendrix::agent {

struct AgentParts {
  HostView& host;
  platform::Files& files;
  platform::Clock& clock;
  std::ostream& errors;                  // for the person who started it
  std::function<bool()> stop_requested;  // asked between looks and while resting
  std::string host_name;                 // raw
  std::uint64_t own_pid = 0;
  std::function<void()> on_first_look = {};  // once, when it has been written
};

class Agent {
 public:
  // `options.folder` is set. What `parts` refers to outlives the object.
  Agent(AgentParts parts, Options options);

  // Runs to its end; the program's exit status: 0, or 1 when the last batch could not be written.
  int Run();

 private:
  bool OpenFolder();
  // One look. False when its batch could not be written; the next look then tells it all again.
  bool Look();
  // The second that the batch was written with; nothing when it was not.
  std::optional<std::int64_t> Write(const Batch& batch);
  void BeginAnewIfNeeded();
  std::int64_t NextLookAfter() const;
  void Rest(std::int64_t until_ms);
  void Log(const std::string& message);
  void Complain(const std::string& message);

  AgentParts parts_;
  const Options options_;
  const std::string host_name_;  // cleaned
  const std::string log_path_;
  EventFile file_;
  std::unique_ptr<Scorer> scorer_ = MakeRuleScorer();
  Measures measures_;
  Snapshot before_;
  bool begins_session_ = true;
  bool failing_ = false;
};

}  // namespace zendrix::agent
