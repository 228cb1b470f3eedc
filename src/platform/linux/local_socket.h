// Sockets of this machine that carry nothing but the fact of a connection and who made it. None of them ever
// blocks, and none is handed down to a started program.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <optional>
#include <string>

#include "platform/linux/posix.h"

namespace zendrix::platform {

class LocalAddress {
 public:
  // A socket file. Nothing for a path that is longer than a socket's may be.
  static std::optional<LocalAddress> OfFile(const std::string& path);
  // A name in the kernel's abstract name space: every program of the machine sees it, and it is gone with its
  // socket. At most 100 characters.
  static LocalAddress OfName(const std::string& name);

  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address_); }
  socklen_t length() const { return length_; }

 private:
  sockaddr_un address_{};
  socklen_t length_ = 0;
};

// A socket that listens there; none when the address is taken or cannot be had. `taken` tells which.
FileDescriptor ListenAt(const LocalAddress& address, bool& taken);
// A connection to who listens there; none when nobody does, or too many wait already.
FileDescriptor ConnectTo(const LocalAddress& address);

struct Peer {
  uid_t user = 0;
  pid_t process = 0;
};
// Who is at the other end of a connection, as the kernel noted it when the listener or the connection was
// made.
std::optional<Peer> PeerOf(const FileDescriptor& connection);

// Whether the process runs the very file that this one runs; nothing when that cannot be seen.
std::optional<bool> RunsThisExecutable(pid_t process);

}  // namespace zendrix::platform
