// What the description of an event says: one function per kind of description, used by the alert's page to
// fill its rows and by the quarantine to find the file, so that a click can never mean another file than the
// row beside it. Pure functions; every result is a view into the description.
#pragma once

#include <optional>
#include <string_view>

namespace zendrix::family {

struct DescriptionReading {
  // The file that is meant, as it is written there; empty when the description names none. The page shows
  // what stands behind its last "\": a path with one is shown under another name than the file has here.
  std::string_view path;
  // Of a running process: the program as the page names it, which without a "\" is the whole description.
  std::string_view program;
  // What stands behind the last colon of a running process; nothing without a colon.
  std::optional<std::string_view> behind_colon;
  // The same when it is a process number.
  std::string_view process;
  std::string_view port;
  std::string_view address;
  // Of an autostart entry: what it starts. Its path is that of the entry.
  std::string_view command;
};

// "/opt/tool:4711", "C:\Tools\server.exe:1234": program, then the number of its process.
DescriptionReading ReadRunningProcess(std::string_view description);
// "8080:/opt/server": port, then the program. Without a colon the program is not known.
DescriptionReading ReadListeningPort(std::string_view description);
// "10.0.0.7:443:/opt/client": address, port, program. Only the first two colons count, for the path may hold
// one of its own.
DescriptionReading ReadConnection(std::string_view description);
// "/home/u/.config/autostart/x.desktop=/opt/tool --quiet": the entry, then the command that it starts.
DescriptionReading ReadAutostartEntry(std::string_view description);
// "/tmp/tool"
DescriptionReading ReadFolderEntry(std::string_view description);

enum class DescriptionKind { kRunningProcess, kListeningPort, kConnection, kAutostartEntry, kFolderEntry };

// The kind of the descriptions of a monitor; nothing for monitors whose descriptions name no file.
std::optional<DescriptionKind> KindOfMonitor(std::string_view monitor);
DescriptionReading ReadDescription(DescriptionKind kind, std::string_view description);

}  // namespace zendrix::family
