#include "platform/linux/linux_instance_lock.h"

#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>

#include "family/korvessa_crypto_services.h"
#include "platform/files.h"
#include "platform/linux/local_socket.h"
#include "platform/linux/lock_file.h"

namespace zendrix::platform {
namespace {

// Names across users: more than users who sit at one machine.
constexpr int kGlobalNames = 8;
constexpr std::size_t kMostConnections = 16;
// Connections handled at once: the rest is still there the next time.
constexpr int kAcceptedAtOnce = 64;

// What files and names of a lock begin with.
std::string StemOf(const std::string& lock_name) {
  std::array<char, 65> hash{};
  family::HashBytes(lock_name.data(), lock_name.size(), hash.data(), static_cast<std::int32_t>(hash.size()));
  return std::string("zendrix-instance-") + hash.data();
}

std::string LockPath(const std::string& folder, const std::string& stem) {
  return JoinPath(folder, stem + ".lock");
}

// Half a hash will do here: the path of a socket has to be short.
std::string SocketPath(const std::string& folder, const std::string& stem) {
  return JoinPath(folder, stem.substr(0, stem.size() - 32));
}

LocalAddress GlobalAddress(const std::string& stem, int number) {
  return LocalAddress::OfName(stem + "-" + std::to_string(number));
}

// Whether a connection leads to a console of this executable.
bool LeadsToAConsole(const FileDescriptor& connection) {
  const auto peer = PeerOf(connection);
  if (!peer) return false;
  return RunsThisExecutable(peer->process).value_or(peer->user == 0);
}

void RemoveSocket(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode)) unlink(path.c_str());
}

// The socket of the user's own lock. The lock is held, so that a socket file of this name is a dead
// process's.
FileDescriptor ListenBeside(const std::string& folder, const std::string& stem) {
  const std::string path = SocketPath(folder, stem);
  const auto address = LocalAddress::OfFile(path);
  if (!address) return FileDescriptor();
  RemoveSocket(path);
  bool taken = false;
  return ListenAt(*address, taken);
}

// The names across users. Each step looks at all that come later too, so that of two starts at the same
// moment at least one sees the other.
struct GlobalNames {
  bool taken_by_a_console = false;
  FileDescriptor held;
};

GlobalNames TakeGlobalName(const std::string& stem) {
  GlobalNames names;
  for (int i = 0; i < kGlobalNames && !names.taken_by_a_console; ++i) {
    const LocalAddress address = GlobalAddress(stem, i);
    bool taken = true;
    if (!names.held) names.held = ListenAt(address, taken);
    if (!taken) continue;
    const FileDescriptor holder = ConnectTo(address);
    names.taken_by_a_console = holder && LeadsToAConsole(holder);
  }
  return names;
}

bool MayAsk(const FileDescriptor& connection) {
  const auto peer = PeerOf(connection);
  return peer && (peer->user == geteuid() || peer->user == 0);
}

// Any byte will do.
void Ask(const FileDescriptor& connection) {
  send(connection.get(), "f", 1, MSG_NOSIGNAL | MSG_DONTWAIT);
}

}  // namespace

std::vector<RuntimeFolder> RuntimeFolders() {
  std::vector<RuntimeFolder> folders;
  if (const char* given = std::getenv("XDG_RUNTIME_DIR")) folders.push_back({given, false});
  const std::string user = std::to_string(geteuid());
  folders.push_back({"/run/user/" + user, false});
  folders.push_back({"/tmp/zendrix-" + user, true});
  return folders;
}

bool LinuxInstanceLock::Acquire(const std::string& name) {
  if (held_ == name) return true;
  const std::string stem = StemOf(name);
  FileLock lock;
  std::string own_folder;
  for (const RuntimeFolder& folder : folders_) {
    if (!IsPrivateFolder(folder.path, folder.make)) continue;
    lock = LockFile(LockPath(folder.path, stem));
    if (lock.outcome == LockOutcome::kTaken) return false;
    if (lock.outcome == LockOutcome::kUnusable) continue;
    own_folder = folder.path;
    break;
  }
  GlobalNames names = TakeGlobalName(stem);
  if (names.taken_by_a_console) {
    if (lock.file) unlink(LockPath(own_folder, stem).c_str());
    return false;
  }
  // Where neither lock can be had, a second console is a lesser evil than none.
  Release();
  file_ = std::move(lock.file);
  if (file_) own_ = ListenBeside(own_folder, stem);
  folder_ = own_folder;
  global_ = std::move(names.held);
  watch_ = FileDescriptor(epoll_create1(EPOLL_CLOEXEC));
  Watch(own_);
  Watch(global_);
  held_ = name;
  return true;
}

void LinuxInstanceLock::Release() {
  if (held_ && file_) {
    const std::string stem = StemOf(*held_);
    RemoveSocket(SocketPath(folder_, stem));
    unlink(LockPath(folder_, stem).c_str());
  }
  connections_.clear();
  for (FileDescriptor* const descriptor : {&watch_, &own_, &global_, &file_}) descriptor->Close();
  held_.reset();
}

void LinuxInstanceLock::AskToComeForward(const std::string& name) {
  const std::string stem = StemOf(name);
  // Whether it arrives is nobody's concern: the queue may be full, the holder may be gone.
  for (const RuntimeFolder& folder : folders_) {
    if (!IsPrivateFolder(folder.path, false)) continue;
    const auto address = LocalAddress::OfFile(SocketPath(folder.path, stem));
    const FileDescriptor holder = address ? ConnectTo(*address) : FileDescriptor();
    if (holder && MayAsk(holder)) return Ask(holder);
  }
  for (int i = 0; i < kGlobalNames; ++i) {
    const FileDescriptor holder = ConnectTo(GlobalAddress(stem, i));
    if (holder && LeadsToAConsole(holder)) return Ask(holder);
  }
}

void LinuxInstanceLock::Watch(const FileDescriptor& what) const {
  epoll_event event{};
  event.events = EPOLLIN;
  if (what) epoll_ctl(watch_.get(), EPOLL_CTL_ADD, what.get(), &event);
}

void LinuxInstanceLock::AcceptFrom(const FileDescriptor& listener) {
  for (int i = 0; i < kAcceptedAtOnce; ++i) {
    FileDescriptor connection(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!connection) return;
    if (!MayAsk(connection)) continue;
    Watch(connection);
    connections_.push_back(std::move(connection));
    if (connections_.size() > kMostConnections) connections_.pop_front();
  }
}

void LinuxInstanceLock::HandleRequests() {
  AcceptFrom(own_);
  AcceptFrom(global_);
  bool asked = false;
  // A connection without a byte is a start that looks who is there, or one whose byte is yet to come.
  std::erase_if(connections_, [&](const FileDescriptor& connection) {
    char byte = 0;
    const ssize_t got = recv(connection.get(), &byte, 1, 0);
    asked = asked || got > 0;
    return got >= 0 || (errno != EAGAIN && errno != EINTR);
  });
  // A copy: the handler may set another one.
  if (const auto handler = handler_; asked && handler) handler();
}

}  // namespace zendrix::platform
