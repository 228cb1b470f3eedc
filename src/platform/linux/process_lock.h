// A lock file that tells who holds it, for a program that works in the background and is looked for by
// others.
//
// It is the kernel's record lock, so that two things need no trust in what a file says: the lock goes with
// its process, however that ended, and a file that was left behind locks nobody out; and the kernel itself
// names the holder, so that no number from an earlier start, or from a copied folder, can pass for it. A
// second record of the same file says that the holder is past its beginnings. Looking changes nothing: it
// cannot get in the way of a program that takes the lock at that moment.
//
// The file is its owner's alone, because whoever may open it may also lock it.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/lock_file.h"
#include "platform/linux/posix.h"

namespace zendrix::platform {

class ProcessLock {
 public:
  // Takes the lock until the object goes. The file is made when it is missing, and stays. A link, or anything
  // but a plain file of this user's with one name, is unusable. One object for a file and process: the kernel
  // knows processes, not descriptors.
  LockOutcome Acquire(const std::string& path);
  // From here on the holder counts as ready.
  void SetReady();
  // Whether the file still has its name: without it nobody can find the holder any more.
  bool CanBeFound() const;

 private:
  FileDescriptor file_;
};

struct LockHolder {
  pid_t process = 0;  // 0 for one that cannot be seen from here, as from inside a container
  bool ready = false;
};

// Who holds the lock; nothing when nobody does, or when it is this process itself. Of a file that may not be
// read the kernel's table of locks tells.
std::optional<LockHolder> HolderOf(const std::string& path);

// The same from the table (proc_locks(5)): the records of this file, which the table names as
// "major:minor:inode".
std::optional<LockHolder> HolderInTable(std::string_view table, std::string_view file);

}  // namespace zendrix::platform
