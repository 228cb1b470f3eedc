// Whether an event's program is the file that its path names. A path alone proves nothing: a process in a
// mount namespace of its own can have any path, and a process number is given to another process in time.
#pragma once

#include <sys/stat.h>

#include <string>
#include <vector>

#include "family/intermediate/event.h"
#include "family/intermediate/outside.h"
#include "family/intermediate/subject.h"

namespace zendrix::family {

enum class ProgramState {
  kGone,       // no such process any more, or its number belongs to one that began behind the event
  kThisFile,   // runs this very file, in the mount namespace of this process
  kAnother,    // runs another file
  kElsewhere,  // runs in a mount namespace of its own
  kUnknown,    // may not be looked at
};

ProgramState StateOf(const std::string& process, const struct stat& file, const Event& event,
                     const Outside& outside);

// Of an event about a program, a port or a connection: while a process of it lives, that must run this very
// file; when none does, the file must be as it was at the moment of the event, and a moment that is still to
// come is as good as none. Refuses otherwise. Events of other kinds say nothing about a process.
void RequireTheProgram(const Subject& subject, const Event& event, const Outside& outside);

}  // namespace zendrix::family
