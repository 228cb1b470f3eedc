#include "family/intermediate/untouchable.h"

#include <fcntl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "family/intermediate/descriptor.h"

namespace zendrix::family {
namespace {

constexpr std::array kFolders = {"/boot",
                                 "/proc",
                                 "/sys",
                                 "/lib",
                                 "/lib32",
                                 "/lib64",
                                 "/usr/lib/systemd",
                                 "/usr/lib32",
                                 "/usr/lib64",
                                 "/usr/lib/x86_64-linux-gnu",
                                 "/usr/lib/i386-linux-gnu",
                                 "/usr/lib/aarch64-linux-gnu",
                                 "/usr/lib/arm-linux-gnueabihf",
                                 "/etc/pam.d",
                                 "/etc/security",
                                 "/etc/ld.so.conf.d",
                                 "/etc/sudoers.d",
                                 "/etc/apt",
                                 "/var/lib/dpkg"};

constexpr std::array kFiles = {
    "/etc/passwd",      "/etc/shadow",     "/etc/group",      "/etc/gshadow",       "/etc/fstab",
    "/etc/hosts",       "/etc/hostname",   "/etc/machine-id", "/etc/nsswitch.conf", "/etc/sudoers",
    "/etc/ld.so.cache", "/etc/ld.so.conf", "/etc/crypttab",   "/etc/resolv.conf",   "/etc/localtime",
    "/etc/profile",     "/etc/login.defs", "/etc/shells",     "/etc/inittab"};

// In any of the program folders.
constexpr std::array kPrograms = {
    "sh",     "bash",        "dash",      "init",     "login",  "su",       "sudo",    "mount",   "umount",
    "passwd", "dbus-daemon", "systemctl", "systemd",  "agetty", "getty",    "apt",     "apt-get", "dpkg",
    "env",    "cp",          "mv",        "rm",       "ls",     "cat",      "chmod",   "chown",   "ln",
    "mkdir",  "fsck",        "reboot",    "shutdown", "ip",     "ldconfig", "busybox", "perl",    "python3"};

constexpr std::array kProgramFolders = {"/bin", "/sbin", "/usr/bin", "/usr/sbin"};

bool IsSameFile(const std::string& path, const struct stat& status) {
  struct stat other = {};
  return ::stat(path.c_str(), &other) == 0 && other.st_dev == status.st_dev && other.st_ino == status.st_ino;
}

// The folder itself, not what a link of that name leads to: "/lib" may be a link to "/usr/lib", where much
// lies that is none of the system's.
bool LeadsThrough(const Place& place, const std::string& folder) {
  struct stat status = {};
  if (folder.empty() || ::lstat(folder.c_str(), &status) != 0) return false;
  return std::find(place.folders.begin(), place.folders.end(), FolderId(status.st_dev, status.st_ino)) !=
         place.folders.end();
}

bool IsInSystemFolder(const Place& place) {
  return std::any_of(kFolders.begin(), kFolders.end(),
                     [&](const char* folder) { return LeadsThrough(place, folder); });
}

bool IsSystemFile(const struct stat& status) {
  return std::any_of(kFiles.begin(), kFiles.end(),
                     [&](const char* path) { return IsSameFile(path, status); });
}

// Also by what a name is a link to: "python3" is "python3.11".
bool IsRepairProgram(const Place& place, const struct stat& status) {
  for (const std::string folder : kProgramFolders) {
    if (!LeadsThrough(place, folder)) continue;
    for (const char* program : kPrograms)
      if (IsSameFile(folder + "/" + program, status)) return true;
  }
  return false;
}

// A line of /proc/self/maps:
//   7f603b61e000-7f603b644000 r--p 00000000 fe:00 1579      /usr/lib/x86_64-linux-gnu/libc.so.6
// Lines of a text file; none when there is no such file. A file that is there and cannot be read refuses the
// whole operation: what must not be touched has to be known.
std::vector<std::string> LinesOf(const char* path) {
  const Descriptor file(::open(path, O_RDONLY | O_CLOEXEC));
  if (!file.valid() && errno != ENOENT)
    throw Refused{"The computer is short of resources. Nothing was changed."};
  std::string text;
  std::array<char, 4096> block;
  for (ssize_t got; file.valid() && (got = ::read(file.get(), block.data(), block.size())) > 0;)
    text.append(block.data(), static_cast<std::size_t>(got));
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

// By device and number, which hold where the path does not (another root folder); and by the path, for file
// systems that show other numbers here than elsewhere.
bool IsMapped(const std::string& line, const struct stat& status) {
  unsigned device_major = 0, device_minor = 0;
  unsigned long long inode = 0;
  if (std::sscanf(line.c_str(), "%*s %*s %*s %x:%x %llu", &device_major, &device_minor, &inode) != 3 ||
      inode == 0)
    return false;
  if (makedev(device_major, device_minor) == status.st_dev && inode == status.st_ino) return true;
  const auto slash = line.find('/');
  return slash != std::string::npos && IsSameFile(line.substr(slash), status);
}

bool RunsThisProcess(const struct stat& status) {
  if (IsSameFile("/proc/self/exe", status)) return true;
  const auto maps = LinesOf("/proc/self/maps");
  return std::any_of(maps.begin(), maps.end(),
                     [&](const std::string& line) { return IsMapped(line, status); });
}

bool IsShellOrInit(const struct stat& status) {
  for (const char* path : {"/proc/1/exe", "/sbin/init", "/bin/sh", "/bin/bash"})
    if (IsSameFile(path, status)) return true;
  const auto shells = LinesOf("/etc/shells");
  return std::any_of(shells.begin(), shells.end(), [&](const std::string& line) {
    return line.starts_with('/') && IsSameFile(line, status);
  });
}

}  // namespace

bool IsUntouchable(const Place& place, const struct stat& status, const std::string& program_folder) {
  return LeadsThrough(place, program_folder) || IsInSystemFolder(place) || IsSystemFile(status) ||
         IsShellOrInit(status) || RunsThisProcess(status) || IsRepairProgram(place, status);
}

}  // namespace zendrix::family
