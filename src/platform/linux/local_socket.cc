#include "platform/linux/local_socket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace zendrix::platform {
namespace {

// More than any desktop asks at once; beyond it a request is dropped.
constexpr int kBacklog = 64;

FileDescriptor MakeSocket() {
  return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

}  // namespace

std::optional<LocalAddress> LocalAddress::OfFile(const std::string& path) {
  LocalAddress address;
  if (path.size() >= sizeof address.address_.sun_path) return std::nullopt;
  address.address_.sun_family = AF_UNIX;
  path.copy(address.address_.sun_path, path.size());
  address.length_ = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size() + 1);
  return address;
}

LocalAddress LocalAddress::OfName(const std::string& name) {
  LocalAddress address;
  address.address_.sun_family = AF_UNIX;
  // The first character stays NUL: that is what makes the name an abstract one.
  const std::size_t copied = name.copy(address.address_.sun_path + 1, sizeof address.address_.sun_path - 1);
  address.length_ = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + copied);
  return address;
}

FileDescriptor ListenAt(const LocalAddress& address, bool& taken) {
  FileDescriptor socket = MakeSocket();
  const bool bound = bind(socket.get(), address.get(), address.length()) == 0;
  taken = !bound && errno == EADDRINUSE;
  if (!bound || listen(socket.get(), kBacklog) != 0) socket.Close();
  return socket;
}

FileDescriptor ConnectTo(const LocalAddress& address) {
  FileDescriptor connection = MakeSocket();
  if (connect(connection.get(), address.get(), address.length()) != 0) connection.Close();
  return connection;
}

std::optional<Peer> PeerOf(const FileDescriptor& connection) {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (getsockopt(connection.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return std::nullopt;
  return Peer{peer.uid, peer.pid};
}

std::optional<bool> RunsThisExecutable(pid_t process) {
  struct stat own {};
  struct stat other {};
  const std::string path = "/proc/" + std::to_string(process) + "/exe";
  if (stat("/proc/self/exe", &own) != 0 || stat(path.c_str(), &other) != 0) return std::nullopt;
  return own.st_dev == other.st_dev && own.st_ino == other.st_ino;
}

}  // namespace zendrix::platform
