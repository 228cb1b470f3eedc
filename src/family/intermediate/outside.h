// What the rules of quarantine ask of the computer around them. Everything here can be another place in a
// test; ThisComputer says how it is in earnest.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "family/intermediate/clock_watch.h"

namespace zendrix::family {

struct Outside {
  // Who clicks. The superuser is bound by more rules than others.
  uid_t user = 0;
  // Whether files of others may be taken too. Only for the superuser, and only where somebody has asked the
  // one who clicks for his consent.
  bool any_owner = false;
  // The moment of the click, in UTC seconds.
  std::function<std::int64_t()> now = [] { return std::int64_t{::time(nullptr)}; };
  // How far the clock was set since the quarantine was configured; the quarantine itself keeps watch.
  ClockSet clock_set;
  // Processes and what they have open.
  std::string proc = "/proc";
  // Records of installed packages, and the folder that their paths start at.
  std::string package_records = "/var/lib/dpkg";
  std::string package_root;
  // Other package managers: asked where their program is there.
  std::string rpm = "/usr/bin/rpm";
  std::string pacman = "/usr/bin/pacman";
  std::chrono::milliseconds tool_time{1500};
  // Folders whose entries start by themselves, with all below them.
  std::vector<std::string> autostart_places;
  // Left alone when the superuser clicks, but for the exceptions below them.
  std::vector<std::string> system_places;
  std::vector<std::string> system_exceptions;
  // Folders in which what is named like a part of Zendrix is one.
  std::vector<std::string> own_folders;
  // Folders of system services; one of ours says where the Agent is.
  std::vector<std::string> unit_folders;
  // File systems (by the type that statfs tells) that do not outlive a restart.
  std::vector<std::uint64_t> memory_file_systems;
  // What one click may cost: time in all, and bytes copied from one file system to another.
  std::chrono::milliseconds most_time{2000};
  // Bytes that may always be read: on a busy machine a small file must not be refused for want of time.
  std::uint64_t free_bytes = std::uint64_t{8} << 20;
  std::uint64_t most_copied = std::uint64_t{256} << 20;
};

// Of the account; empty when it has none.
std::string HomeOf(uid_t user);
// Those whose entries start for everybody.
std::vector<std::string> SharedAutostartPlaces();
Outside ThisComputer();
// The same for the superuser who acts for another user: that user's autostart places count as well, and
// files of any owner may be taken.
Outside ThisComputerFor(uid_t user);

}  // namespace zendrix::family
