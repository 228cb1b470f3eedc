// What a program's path says about it.
#pragma once

#include <string_view>

namespace zendrix::agent {

// Anybody may write there: /tmp, /var/tmp, /dev/shm, /run/shm.
bool InTemporaryFolder(std::string_view path);
// A folder or file on the way has a name that begins with a dot.
bool IsHidden(std::string_view path);
// A folder that only the system's administrator fills: /usr, /bin, /sbin, /lib..., /opt, /snap, /nix/store.
bool InSystemFolder(std::string_view path);
// Ports of services that a computer commonly offers or uses.
bool IsUsualPort(unsigned port);
// Names that the kernel gives its own threads ("kworker/0:1"), and names in brackets as process lists show
// them.
bool LooksLikeKernelThread(std::string_view process_name);

}  // namespace zendrix::agent
