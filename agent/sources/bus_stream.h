// What the system bus tells of sessions and of unit files: logind (org.freedesktop.login1(5)) and systemd
// (org.freedesktop.systemd1(5)). The twin in memory/ plays what a test gives it. Only what logind itself says
// counts: anybody on the bus may send a message that looks like it. Used by one thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zendrix::agent {

// Texts as logind gives them; a user may have chosen some.
struct BusSession {
  std::string id;
  std::string user;     // empty: it ended before logind could be asked
  std::string line;     // terminal or display; empty for a session without one
  std::string from;     // computer that it came from; empty for a local one
  std::string purpose;  // "user", "greeter", "background", ...
};

struct BusNews {
  enum class Kind {
    kSession,
    kSessionEnded,  // only `id` counts
    kUnitsChanged,
    kGone,  // nothing more will come; `reason` says why
  };
  Kind kind = Kind::kGone;
  BusSession session = {};
  std::string reason = {};
};

class BusStream {
 public:
  virtual ~BusStream() = default;
  // What came since the last call, in its order; the first call tells every session that there is. Never
  // waits. A flood is told in parts.
  virtual std::vector<BusNews> Read() = 0;
};

struct OpenedBus {
  std::unique_ptr<BusStream> stream;  // null when it was refused
  std::string refusal;                // why, for a person
};

// The system bus, where logind is on it. It may take two seconds where something hangs.
OpenedBus OpenSystemBus();

}  // namespace zendrix::agent
