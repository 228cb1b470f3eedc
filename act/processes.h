// Running programs, as the helper ends them: by a handle on the one process, so that a number that was given
// to another process meanwhile hits nobody.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "act/store.h"

namespace zendrix::act {

// The program that an event told of.
struct ShownProgram {
  pid_t process = 0;
  FileId file;                         // that it runs
  std::optional<std::int64_t> moment;  // of the event, UTC seconds: what began later is another process
};

enum class Found {
  kIt,
  kGone,     // has ended, or the number belongs to one that began behind the event
  kAnother,  // runs another file, or in a container of its own, or cannot be looked at
};

class HeldProcess {
 public:
  virtual ~HeldProcess() = default;
  // Looked at anew with every call, and only ever this very process.
  virtual Found Is(const ShownProgram& shown) = 0;
  // Has it ended; its end comes a moment later.
  virtual void Kill() = 0;
  // Waits for its end for so long; 0: only looks.
  virtual bool HasEnded(std::int64_t milliseconds) = 0;
};

class Processes {
 public:
  virtual ~Processes() = default;
  // Null when there is no such process.
  virtual std::unique_ptr<HeldProcess> Hold(pid_t process) = 0;
};

}  // namespace zendrix::act
