#include "platform/linux/linux_host_info.h"

#include <pwd.h>
#include <unistd.h>

#include "platform/linux/posix.h"

namespace zendrix::platform {

std::string LinuxHostInfo::ComputerName() {
  char name[256] = {};
  // A name that does not fit is cut; the last character stays the end.
  if (gethostname(name, sizeof name - 1) != 0) return {};
  return name;
}

std::string LinuxHostInfo::SystemInformationTool() {
  for (const char* name : {"hardinfo2", "hardinfo", "kinfocenter", "lshw-gtk", "gnome-system-monitor",
                           "mate-system-monitor", "plasma-systemmonitor", "xfce4-taskmanager"}) {
    if (std::string path = FindProgram(name); !path.empty()) return path;
  }
  return {};
}

std::string LinuxHostInfo::UserName() {
  const passwd* const account = getpwuid(geteuid());
  return account && account->pw_name ? account->pw_name : std::string();
}

bool LinuxHostInfo::RunsAsRoot() {
  return geteuid() == 0;
}

}  // namespace zendrix::platform
