#include "platform/linux/linux_instance_lock.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>

#include "family/korvessa_crypto_services.h"

namespace zendrix::platform {
namespace {

constexpr int kWaitingRequests = 8;

struct Address {
  sockaddr_un name{};
  socklen_t length = 0;
};

Address AddressOf(const std::string& lock_name) {
  std::array<char, 65> hash{};
  family::HashBytes(lock_name.data(), lock_name.size(), hash.data(), static_cast<std::int32_t>(hash.size()));
  const std::string text = std::string("zendrix-instance-") + hash.data();
  Address address;
  address.name.sun_family = AF_UNIX;
  // The first character stays NUL: that is what makes the name an abstract one.
  text.copy(address.name.sun_path + 1, sizeof address.name.sun_path - 1);
  address.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
  return address;
}

FileDescriptor MakeSocket() {
  return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

const sockaddr* Generic(const Address& address) {
  return reinterpret_cast<const sockaddr*>(&address.name);
}

bool MayAsk(const FileDescriptor& request) {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (getsockopt(request.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return false;
  return peer.uid == geteuid() || peer.uid == 0;
}

}  // namespace

bool LinuxInstanceLock::Acquire(const std::string& name) {
  if (socket_ && held_ == name) return true;
  FileDescriptor fresh = MakeSocket();
  const Address address = AddressOf(name);
  if (bind(fresh.get(), Generic(address), address.length) != 0) {
    // Only a name that is taken speaks of another instance. Where there are no such sockets at all, a second
    // console is a lesser evil than none.
    if (errno == EADDRINUSE) return false;
    fresh.Close();
  } else if (listen(fresh.get(), kWaitingRequests) != 0) {
    // The name is held all the same; nobody can ask.
  }
  socket_ = std::move(fresh);
  held_ = name;
  return true;
}

void LinuxInstanceLock::AskToComeForward(const std::string& name) {
  const FileDescriptor request = MakeSocket();
  const Address address = AddressOf(name);
  // Whether it arrives is nobody's concern: the queue of requests may be full, the holder may be gone.
  [[maybe_unused]] const int connected = connect(request.get(), Generic(address), address.length);
}

void LinuxInstanceLock::HandleRequests() {
  bool asked = false;
  for (int i = 0; i < kWaitingRequests; ++i) {
    const FileDescriptor request(accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!request) break;
    asked = MayAsk(request) || asked;
  }
  // A copy: the handler may set another one.
  if (const auto handler = handler_; asked && handler) handler();
}

}  // namespace zendrix::platform
