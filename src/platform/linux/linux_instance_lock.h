// The instance lock: one console per executable. Two locks, because neither does alone.
//
// The user's own: a lock file in the user's runtime folder, which nobody else can enter, held through the
// kernel's file lock: free again the moment its process is gone, however that ended. Beside it stands a
// socket on which another start asks for the window.
//
// Across users: a name in the kernel's abstract name space, which any program of the machine can take. So a
// holder is only believed when it is a console: its executable is this very file (device and inode of
// /proc/PID/exe), or it belongs to the administrator. Where the executable cannot be seen, as an ordinary
// user cannot see another one's, the holder is not believed: a second console is a lesser evil than a machine
// on which one user's program keeps everybody else from the console. There are several names, so that one
// that is taken by something else still leaves room. Their files and names are hashes of the lock's name.
//
// A connection with one byte is a request to come forward; which byte does not matter, so another process can
// cause nothing else, and only a process of the same user or of the administrator can: one that shows a
// window on somebody else's screen has no use for this one's. However many requests wait, the handler is
// called once. Nothing here ever blocks.
#pragma once

#include <sys/types.h>

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "platform/instance_lock.h"
#include "platform/linux/posix.h"

namespace zendrix::platform {

struct RuntimeFolder {
  std::string path;
  bool make = false;  // when it is missing
};
// Folders for the user's own lock, the best first: XDG_RUNTIME_DIR, /run/user/UID, and one in /tmp. One that
// is not the user's alone, or can't be written, is passed over.
std::vector<RuntimeFolder> RuntimeFolders();

class LinuxInstanceLock : public InstanceLock {
 public:
  explicit LinuxInstanceLock(std::vector<RuntimeFolder> folders = RuntimeFolders())
      : folders_(std::move(folders)) {}

  LinuxInstanceLock(const LinuxInstanceLock&) = delete;
  LinuxInstanceLock& operator=(const LinuxInstanceLock&) = delete;
  ~LinuxInstanceLock() override { Release(); }

  bool Acquire(const std::string& name) override;
  // Takes the files away too. Those of a killed process stay, and are in nobody's way.
  void Release() override;
  void AskToComeForward(const std::string& name) override;
  void OnAskedToComeForward(std::function<void()> handler) override { handler_ = std::move(handler); }

  // For the message loop to watch: readable when something waits. -1 while no lock is held.
  int Descriptor() const { return watch_.get(); }
  // To be called when the descriptor is readable.
  void HandleRequests();

 private:
  void Watch(const FileDescriptor& what) const;
  void AcceptFrom(const FileDescriptor& listener);

  std::vector<RuntimeFolder> folders_;
  std::optional<std::string> held_;
  std::function<void()> handler_;
  std::string folder_;     // where the user's own lock is; empty when it could not be had
  FileDescriptor file_;    // the user's own lock
  FileDescriptor own_;     // its socket
  FileDescriptor global_;  // the name across users
  FileDescriptor watch_;   // all that can be readable, as one descriptor
  std::deque<FileDescriptor> connections_;
};

}  // namespace zendrix::platform
