// What must never be put in quarantine, whatever an event says, because the computer or the console would not
// work without it:
// - what this process runs on (the console itself, its libraries, the C library, the loader), the first
// process of
//   the system, and the shells, whatever names they have;
// - everything under /boot, /proc, /sys, the system's library folders and systemd's own folder;
// - the accounts, mounts, names and rights of the system under /etc;
// - the programs that a repair needs: login, su, sudo, mount, the package manager and the like;
// - everything in the console's own folder, the quarantine included.
// Files and folders are known by what they are, not only by how the path is written: another way to the same
// folder (a second mount of it) changes nothing.
#pragma once

#include <sys/stat.h>

#include <string>

#include "family/intermediate/named_file.h"

namespace zendrix::family {

// `status` is that of the file in the place.
bool IsUntouchable(const Place& place, const struct stat& status, const std::string& program_folder);

}  // namespace zendrix::family
