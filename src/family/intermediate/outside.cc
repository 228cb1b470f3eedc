#include "family/intermediate/outside.h"

#include <dirent.h>
#include <linux/magic.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <memory>

namespace zendrix::family {
namespace {

constexpr std::size_t kPasswordBuffer = 16384;

std::vector<std::string> AutostartPlaces(uid_t user) {
  std::vector<std::string> places = SharedAutostartPlaces();
  const std::string home = HomeOf(user);
  if (home.size() > 1) {
    places.push_back(home + "/.config/autostart");
    places.push_back(home + "/.config/systemd/user");
  }
  const char* const config = std::getenv("XDG_CONFIG_HOME");
  if (config && *config == '/') {
    places.push_back(std::string(config) + "/autostart");
    places.push_back(std::string(config) + "/systemd/user");
  }
  return places;
}

// "/lib", "/lib64" and whatever else a system has of them.
std::vector<std::string> SystemPlaces() {
  std::vector<std::string> places = {"/usr", "/boot", "/bin", "/sbin", "/var/lib", "/etc"};
  const std::unique_ptr<DIR, int (*)(DIR*)> root(::opendir("/"), ::closedir);
  while (const dirent* entry = root ? ::readdir(root.get()) : nullptr)
    if (std::string(entry->d_name).starts_with("lib")) places.push_back("/" + std::string(entry->d_name));
  return places;
}

std::string ExecutableFolder() {
  std::array<char, 4096> path = {};
  const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
  const std::string executable(path.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
  return executable.substr(0, executable.rfind('/'));
}

}  // namespace

// From the accounts, not from the environment: what a program was started with is no proof of whose it is.
std::string HomeOf(uid_t user) {
  passwd entry = {};
  passwd* found = nullptr;
  std::array<char, kPasswordBuffer> buffer = {};
  if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) != 0 || !found || !found->pw_dir)
    return "";
  return found->pw_dir;
}

std::vector<std::string> SharedAutostartPlaces() {
  return {"/etc/xdg/autostart",
          "/etc/systemd/system",
          "/etc/systemd/user",
          "/run/systemd/system",
          "/etc/cron.d",
          "/etc/cron.hourly",
          "/etc/cron.daily",
          "/etc/cron.weekly",
          "/etc/cron.monthly",
          "/var/spool/cron/crontabs",
          "/etc/init.d",
          "/etc/profile.d",
          "/usr/local/lib/systemd/system"};
}

Outside ThisComputerFor(uid_t user) {
  Outside outside = ThisComputer();
  outside.any_owner = true;
  for (std::string& place : AutostartPlaces(user)) outside.autostart_places.push_back(std::move(place));
  return outside;
}

Outside ThisComputer() {
  Outside outside;
  outside.user = ::geteuid();
  outside.autostart_places = AutostartPlaces(outside.user);
  outside.system_places = SystemPlaces();
  outside.system_exceptions = {"/usr/local"};
  outside.own_folders = {ExecutableFolder(),
                         "/usr/bin",
                         "/usr/sbin",
                         "/usr/libexec",
                         "/usr/lib/zendrix",
                         "/usr/libexec/zendrix",
                         "/usr/local/bin",
                         "/usr/local/sbin",
                         "/usr/local/lib/zendrix",
                         "/usr/local/libexec",
                         "/opt/zendrix",
                         "/opt/zendrix/bin",
                         "/usr/lib/qt6/libexec",
                         "/usr/libexec/qt6",
                         "/usr/lib/qt6",
                         "/usr/lib/systemd/system",
                         "/etc/systemd/system",
                         "/usr/local/lib/systemd/system"};
  outside.unit_folders = {"/etc/systemd/system", "/usr/local/lib/systemd/system", "/usr/lib/systemd/system",
                          "/lib/systemd/system"};
  outside.memory_file_systems = {TMPFS_MAGIC, RAMFS_MAGIC};
  return outside;
}

}  // namespace zendrix::family
