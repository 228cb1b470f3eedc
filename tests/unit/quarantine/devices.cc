#include "unit/quarantine/devices.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace zendrix::test {
namespace {

constexpr char kFiller[] = "/filler";

void Write(const char* path, const std::string& text) {
  const int file = open(path, O_WRONLY | O_CLOEXEC);
  if (file < 0) return;
  if (write(file, text.data(), text.size()) < 0) perror(path);
  close(file);
}

// Mounts of this process that nobody else sees. A user gets them together with a user namespace in which he
// is who he was.
bool UnshareMounts() {
  const std::string user = std::to_string(geteuid()), group = std::to_string(getegid());
  if (geteuid() == 0) {
    if (unshare(CLONE_NEWNS) != 0) return false;
  } else {
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    Write("/proc/self/setgroups", "deny");
    Write("/proc/self/uid_map", user + " " + user + " 1");
    Write("/proc/self/gid_map", group + " " + group + " 1");
  }
  // In a bare chroot "/" is no mount and this fails; what is mounted there is taken away at the end in any
  // case.
  mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
  return true;
}

bool MountMemory(const std::string& folder, const char* options) {
  return mount("none", folder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, options) == 0;
}

// A folder for the whole run when there is only one file system.
class MountedFolder {
 public:
  MountedFolder() : path_("/tmp/zendrix-mount-XXXXXX") {
    if (!mkdtemp(path_.data()) || geteuid() != 0 || !UnshareMounts() ||
        !MountMemory(path_, "size=64m,mode=1777"))
      throw std::runtime_error("no second file system: neither found nor mounted");
  }
  MountedFolder(const MountedFolder&) = delete;
  MountedFolder& operator=(const MountedFolder&) = delete;
  ~MountedFolder() {
    // Not by a child process of the one that mounted it.
    if (getpid() != maker_) return;
    umount2(path_.c_str(), MNT_DETACH);
    rmdir(path_.c_str());
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  const pid_t maker_ = getpid();
};

TwoDevices FindDevices() {
  std::vector<std::pair<dev_t, std::string>> found;
  // Memory first: what is tested is the order of the steps, not the speed of the disk.
  for (const char* path : {"/dev/shm", "/tmp", "/var/tmp", "/run", "/run/lock", "."}) {
    struct stat status = {};
    const std::string real = std::filesystem::exists(path) ? std::filesystem::canonical(path).string() : "";
    if (real.empty() || stat(real.c_str(), &status) != 0 || access(real.c_str(), W_OK | X_OK) != 0) continue;
    if (found.empty() || found[0].first != status.st_dev) found.emplace_back(status.st_dev, real);
    if (found.size() == 2) return {found[0].second, found[1].second};
  }
  static const MountedFolder mounted;
  return {found.at(0).second, mounted.path()};
}

std::string HearChild(pid_t child, int from) {
  std::string said;
  char block[4096];
  for (ssize_t got; (got = read(from, block, sizeof block)) > 0;)
    said.append(block, static_cast<std::size_t>(got));
  close(from);
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) said += "[ended with status " + std::to_string(status) + "]";
  return said;
}

}  // namespace

const TwoDevices& Devices() {
  static const TwoDevices devices = FindDevices();
  return devices;
}

SmallDisk::SmallDisk(const std::string& folder) : folder_(folder) {
  mounted_ = UnshareMounts() && MountMemory(folder, "size=512k,mode=0777");
  signal(SIGXFSZ, SIG_IGN);
}

SmallDisk::~SmallDisk() {
  if (mounted_) umount2(folder_.c_str(), MNT_DETACH);
}

void SmallDisk::Fill(std::size_t room) const {
  if (!mounted_) {
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = room;
    setrlimit(RLIMIT_FSIZE, &limit);
    return;
  }
  const int filler = open((folder_ + kFiller).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  const std::string block(4096, 'f');
  off_t size = 0;
  while (write(filler, block.data(), block.size()) > 0) size += static_cast<off_t>(block.size());
  if (ftruncate(filler, size - static_cast<off_t>(room)) != 0) perror("filler");
  close(filler);
}

void SmallDisk::Free() const {
  if (mounted_) {
    unlink((folder_ + kFiller).c_str());
    return;
  }
  rlimit limit = {};
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_FSIZE, &limit);
}

std::string InChild(const std::function<std::string()>& body) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no child process");
  if (child == 0) {
    close(ends[0]);
    std::string said;
    try {
      said = body();
    } catch (const std::exception& error) {
      said = std::string("thrown: ") + error.what();
    }
    _exit(write(ends[1], said.data(), said.size()) == static_cast<ssize_t>(said.size()) ? 0 : 1);
  }
  close(ends[1]);
  return HearChild(child, ends[0]);
}

std::string AsNobody(const std::function<std::string()>& body) {
  return InChild([&]() -> std::string {
    const bool super = geteuid() == 0;
    if (super && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) return "could not give up its rights";
    return body();
  });
}

}  // namespace zendrix::test
