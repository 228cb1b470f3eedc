#include <dirent.h>
#include <fcntl.h>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "agent/host/host_view.h"
#include "agent/host/netlink.h"
#include "agent/host/parse_sock_diag.h"

namespace zendrix::agent {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

EntryKind KindOf(mode_t mode) {
  if (S_ISREG(mode)) return EntryKind::kFile;
  if (S_ISDIR(mode)) return EntryKind::kFolder;
  return S_ISLNK(mode) ? EntryKind::kLink : EntryKind::kOther;
}

EntryFacts FactsOf(const struct stat& facts) {
  EntryFacts seen;
  seen.kind = KindOf(facts.st_mode);
  seen.mode = facts.st_mode & 07777U;
  seen.size = facts.st_size;
  seen.modified_ns = static_cast<std::int64_t>(facts.st_mtim.tv_sec) * 1000000000 + facts.st_mtim.tv_nsec;
  seen.device = facts.st_dev;
  seen.inode = facts.st_ino;
  seen.changed_ns = static_cast<std::int64_t>(facts.st_ctim.tv_sec) * 1000000000 + facts.st_ctim.tv_nsec;
  return seen;
}

class LinuxHostView : public HostView {
 public:
  std::optional<std::string> ReadText(const std::string& path, std::size_t limit) override {
    std::string text;
    const auto end = Read(path, limit, [&](std::string_view piece) { text.append(piece); });
    if (end == End::kStopped) return {};
    return text;
  }

  bool ReadPieces(const std::string& path, std::size_t limit,
                  const std::function<void(std::string_view)>& take) override {
    std::size_t size = 0;
    const auto end = Read(path, limit + 1, [&](std::string_view piece) {
      size += piece.size();
      take(piece);
    });
    return end == End::kReached && size <= limit;
  }

  std::optional<std::string> ReadFrom(const std::string& path, std::uint64_t from,
                                      std::size_t limit) override {
    const Descriptor file = OpenPlain(path);
    if (file.number() < 0) return {};
    std::string text(limit, '\0');
    const ssize_t got = pread(file.number(), text.data(), text.size(), static_cast<off_t>(from));
    if (got < 0) return {};
    text.resize(static_cast<std::size_t>(got));
    return text;
  }

  std::optional<std::string> ReadLink(const std::string& path) override {
    std::string target(4096, '\0');
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    if (length < 0) return {};
    target.resize(static_cast<std::size_t>(length));
    return target;
  }

  std::vector<std::string> List(const std::string& folder) override {
    std::vector<std::string> names;
    ForEachName(folder, [&](std::string_view name) { names.emplace_back(name); });
    std::sort(names.begin(), names.end());
    return names;
  }

  NameList ListSome(const std::string& folder, std::size_t limit,
                    const std::function<bool(std::string_view)>& wanted) override {
    NameList some;
    ForEachName(folder, [&](std::string_view name) {
      if (wanted(name)) some.Add(std::string(name), limit);
    });
    some.Finish();
    return some;
  }

  std::optional<EntryFacts> Look(const std::string& path) override {
    struct stat facts = {};
    if (lstat(path.c_str(), &facts) != 0) return {};
    return FactsOf(facts);
  }

  std::optional<EntryFacts> LookThrough(const std::string& path) override {
    struct stat facts = {};
    if (stat(path.c_str(), &facts) != 0) return {};
    return FactsOf(facts);
  }

  std::optional<std::vector<Socket>> Sockets() override {
    auto stream = OpenNetlink(NETLINK_SOCK_DIAG, 0, kDumpRoom);
    std::vector<Socket> sockets;
    if (!stream || !Dump(*stream.value(), AF_INET, sockets)) return {};
    // A kernel without IPv6 has none of its sockets.
    Dump(*stream.value(), AF_INET6, sockets);
    return sockets;
  }

 private:
  static constexpr int kDumpRoom = 1 << 20;
  static constexpr int kAnswerMs = 1000;
  static constexpr std::size_t kMostSockets = 1'000'000;

  static bool Dump(NetlinkStream& stream, std::uint8_t family, std::vector<Socket>& into) {
    if (!stream.Send(SocketDumpQuestion(family))) return false;
    std::string datagram;
    for (;;) {
      if (stream.Receive(datagram, kAnswerMs) != NetlinkStream::Outcome::kGot) return false;
      const DumpPart part = ReadDumpPart(datagram, into);
      if (part != DumpPart::kMore) return part == DumpPart::kDone;
      if (into.size() > kMostSockets) return false;
    }
  }

  template <class Take>
  static void ForEachName(const std::string& folder, Take take) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.c_str()), closedir);
    if (!entries) return;
    while (const dirent* entry = readdir(entries.get())) {
      const std::string_view name = entry->d_name;
      if (name != "." && name != "..") take(name);
    }
  }

  // A plain file, or none. O_PATH only finds what lies there (open(2)): it neither waits for a pipe nor wakes
  // a device, and what was found to be a plain file is then opened by its number, whatever lies there by now.
  static Descriptor OpenPlain(const std::string& path) {
    const Descriptor found(open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat facts = {};
    if (found.number() < 0 || fstat(found.number(), &facts) != 0 || !S_ISREG(facts.st_mode))
      return Descriptor(-1);
    const std::string self = "/proc/self/fd/" + std::to_string(found.number());
    return Descriptor(open(self.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  }

  enum class End { kReached, kStopped };

  // Up to `limit` bytes.
  template <class Take>
  static End Read(const std::string& path, std::size_t limit, Take take) {
    const Descriptor file = OpenPlain(path);
    if (file.number() < 0) return End::kStopped;
    char buffer[16384];
    for (std::size_t size = 0; size < limit;) {
      const ssize_t got = read(file.number(), buffer, std::min(sizeof buffer, limit - size));
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) return End::kStopped;
      if (got == 0) break;
      take(std::string_view(buffer, static_cast<std::size_t>(got)));
      size += static_cast<std::size_t>(got);
    }
    return End::kReached;
  }
};

}  // namespace

std::unique_ptr<HostView> MakeLinuxHostView() {
  return std::make_unique<LinuxHostView>();
}

}  // namespace zendrix::agent
