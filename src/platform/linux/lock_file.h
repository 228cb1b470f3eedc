// The user's own instance lock: a file under the kernel's file lock, in a folder that nobody else can enter.
#pragma once

#include <string>

#include "platform/linux/posix.h"

namespace zendrix::platform {

enum class LockOutcome {
  kHeld,      // by the descriptor that came with it, until that is closed or the process ends
  kTaken,     // by another process, or by another descriptor of this one
  kUnusable,  // no lock can be had here: missing, foreign, full or read-only
};

struct FileLock {
  LockOutcome outcome = LockOutcome::kUnusable;
  FileDescriptor file = FileDescriptor();
};

// Whether the folder is a real one, this user's, and closed to everybody else. With `make` it is made when it
// is missing.
bool IsPrivateFolder(const std::string& folder, bool make);

// Takes the lock on the plain file `path`, which is made when it is missing and stays behind: the next
// process takes it as it is. A link, or anything but a plain file of this user's with one name, is unusable.
FileLock LockFile(const std::string& path);

}  // namespace zendrix::platform
