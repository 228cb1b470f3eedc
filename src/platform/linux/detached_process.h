// A program that goes on by itself: a session of its own, no input and no output, no descriptor of this
// process, no signal blocked or ignored, and the user's own environment (clean_environment.h). Nothing
// passes through a command interpreter.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/result.h"

namespace zendrix::platform {

// `program` is a path; `arguments` begin with the program's name. The process is a child of this one until
// this one ends: whoever starts it waits for it, or has that done in the background. `folder` is an open one
// that it starts in and that a relative `program` is looked for in; below 0 it starts where this process is.
Result<pid_t> StartDetached(const std::string& program, const std::vector<std::string>& arguments,
                            int folder = -1);

// Takes the child's end off the process table whenever it comes. Without a thread it is taken off when this
// process ends.
void ReapInBackground(pid_t child);

}  // namespace zendrix::platform
