// An open file descriptor, closed when it goes; and the one kind of failure inside this library.
#pragma once

#include <unistd.h>

#include <string>
#include <utility>

namespace zendrix::family {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }

 private:
  int fd_ = -1;
};

// Why nothing was done, as a plain sentence for the user. Thrown and caught inside the library only.
struct Refused {
  std::string sentence;
  // Only for want of rights: the file is somebody else's, or lies where this user may not look. Whoever has
  // the rights may be asked.
  bool for_want_of_rights = false;
};

}  // namespace zendrix::family
