// What must never be put in quarantine, whatever an event says, because the computer or the console would not
// work without it:
// - what this process runs on (the console itself, its libraries, the C library, the loader), the first
// process of the
//   system, and the shells, whatever names they have;
// - everything under /boot, /dev, /proc, /sys, the system's library folders and systemd's own folder;
// - the accounts, mounts, names and rights of the system under /etc;
// - the programs that a repair needs: login, su, sudo, mount, the package manager and the like;
// - everything in the console's own folder.
#pragma once

#include <sys/stat.h>

#include <string>

namespace zendrix::family {

bool IsUntouchable(const std::string& path, const struct stat& status, const std::string& program_folder);

}  // namespace zendrix::family
