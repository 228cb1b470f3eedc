#include "family/intermediate/untouchable.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>

namespace zendrix::family {
namespace {

constexpr std::array kFolders = {"/boot/",
                                 "/dev/",
                                 "/proc/",
                                 "/sys/",
                                 "/lib/",
                                 "/lib32/",
                                 "/lib64/",
                                 "/usr/lib/systemd/",
                                 "/usr/lib64/",
                                 "/usr/lib/x86_64-linux-gnu/",
                                 "/usr/lib/aarch64-linux-gnu/",
                                 "/etc/pam.d/",
                                 "/etc/security/",
                                 "/etc/ld.so.conf.d/",
                                 "/etc/apt/",
                                 "/var/lib/dpkg/",
                                 "/etc/systemd/system.conf.d/"};

constexpr std::array kFiles = {
    "/etc/passwd",      "/etc/shadow",     "/etc/group",      "/etc/gshadow",       "/etc/fstab",
    "/etc/hosts",       "/etc/hostname",   "/etc/machine-id", "/etc/nsswitch.conf", "/etc/sudoers",
    "/etc/ld.so.cache", "/etc/ld.so.conf", "/etc/crypttab",   "/etc/resolv.conf",   "/etc/localtime"};

// By name in any of the program folders.
constexpr std::array kPrograms = {
    "sh",     "bash",        "dash",      "init",     "login",  "su",       "sudo",    "mount",   "umount",
    "passwd", "dbus-daemon", "systemctl", "systemd",  "agetty", "getty",    "apt",     "apt-get", "dpkg",
    "env",    "cp",          "mv",        "rm",       "ls",     "cat",      "chmod",   "chown",   "ln",
    "mkdir",  "fsck",        "reboot",    "shutdown", "ip",     "ldconfig", "busybox", "perl",    "python3"};

constexpr std::array kProgramFolders = {"/bin/", "/sbin/", "/usr/bin/", "/usr/sbin/"};

bool IsSameFile(const std::string& path, const struct stat& status) {
  struct stat other = {};
  return ::stat(path.c_str(), &other) == 0 && other.st_dev == status.st_dev && other.st_ino == status.st_ino;
}

bool RunsThisProcess(const struct stat& status) {
  std::ifstream maps("/proc/self/maps");
  std::string previous;
  for (std::string line; std::getline(maps, line);) {
    const auto slash = line.find('/');
    if (slash == std::string::npos) continue;
    std::string path = line.substr(slash);
    if (path == previous) continue;
    if (IsSameFile(path, status)) return true;
    previous = std::move(path);
  }
  return false;
}

bool IsShellOrInit(const struct stat& status) {
  for (const char* path : {"/proc/1/exe", "/sbin/init", "/bin/sh", "/bin/bash", "/proc/self/exe"})
    if (IsSameFile(path, status)) return true;
  const passwd* user = ::getpwuid(::getuid());  // NOLINT: one thread
  return user && user->pw_shell && IsSameFile(user->pw_shell, status);
}

bool IsNamed(std::string_view path) {
  const auto begins = [&](std::string_view folder) { return path.starts_with(folder); };
  if (std::any_of(kFolders.begin(), kFolders.end(), begins)) return true;
  if (std::find(kFiles.begin(), kFiles.end(), path) != kFiles.end()) return true;
  const auto name = path.substr(path.rfind('/') + 1);
  const auto folder = path.substr(0, path.size() - name.size());
  return std::find(kProgramFolders.begin(), kProgramFolders.end(), folder) != kProgramFolders.end() &&
         std::find(kPrograms.begin(), kPrograms.end(), name) != kPrograms.end();
}

}  // namespace

bool IsUntouchable(const std::string& path, const struct stat& status, const std::string& program_folder) {
  if (!program_folder.empty() && path.starts_with(program_folder + "/")) return true;
  return IsNamed(path) || IsShellOrInit(status) || RunsThisProcess(status);
}

}  // namespace zendrix::family
