// What a program's path says about it. One path has many spellings ("/usr/../tmp/x", "//tmp/x"), and whoever
// hides a program chooses among them, so a path is looked at as it stands and with its ".." taken away.
#pragma once

#include <string>
#include <string_view>

namespace zendrix::agent {

// The path without doubled slashes, "." and ".." as far as that can be told without looking at the host.
std::string NormalPath(std::string_view path);
// Anybody may write there: /tmp, /var/tmp, /dev/shm, /run/shm, /run/user/UID (there its user).
bool InTemporaryFolder(std::string_view path);
// A folder or file on the way has a name that begins with a dot.
bool IsHidden(std::string_view path);
// A folder that only the system's administrator fills: /usr, /bin, /sbin, /lib..., /opt, /snap, /nix/store.
// Never so for a path with "..", which may lead anywhere once a link stands in front of it.
bool InSystemFolder(std::string_view path);
// A program that runs what others wrote: shells, Python and the like, by the name of its file.
bool IsInterpreter(std::string_view path);
// The program that loads others, so that their own files are not what was started: "ld-linux-x86-64.so.2".
bool IsLoader(std::string_view path);
// Ports of services that a computer commonly offers or uses.
bool IsUsualPort(unsigned port);
// Names that the kernel gives its own threads ("kworker/0:1"), and names in brackets as process lists show
// them. A name that only begins alike ("kworkers", "[", which is a program) is none.
bool LooksLikeKernelThread(std::string_view process_name);

}  // namespace zendrix::agent
