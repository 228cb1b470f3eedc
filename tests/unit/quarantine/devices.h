// Folders on two different file systems, found at run time, and a file system without room.
#pragma once

#include <functional>
#include <string>

namespace zendrix::test {

// Two folders of this machine in which files can be made, on different devices. The second is a memory file
// system mounted for this process alone when there is no other and the tests run as the superuser.
struct TwoDevices {
  std::string one;
  std::string other;
};
const TwoDevices& Devices();

// A small disk at a folder of the child process that asks for it: a memory file system of a mount namespace
// of its own where the system permits that (always for the superuser of a machine, mostly for users),
// otherwise a limit on the size of files, which makes the same system calls fail in the same places.
class SmallDisk {
 public:
  explicit SmallDisk(const std::string& folder);
  ~SmallDisk();
  // Leaves room for that many bytes (at most that many bytes in one file, under a limit).
  void Fill(std::size_t room) const;
  void Free() const;
  bool mounted() const { return mounted_; }

 private:
  const std::string folder_;
  bool mounted_ = false;
};

// Runs the body in a child process and hands back what it says; text in brackets when it died.
std::string InChild(const std::function<std::string()>& body);
// The same in a process without special rights, also when the tests are run by the superuser.
std::string AsNobody(const std::function<std::string()>& body);
inline constexpr unsigned kNobody = 65534;

}  // namespace zendrix::test
