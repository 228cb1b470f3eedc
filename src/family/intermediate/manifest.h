// The line that goes with every file in quarantine: where it came from and what it was like. One file per
// entry,
// "<name>.manifest", one line of fields separated by tabs:
//   "1", path (bytes below 33, "%" and 127 as %XX), owner, group, mode (octal), access time, change time
//   (seconds.nanoseconds), size, SHA-256, moment of the move (UTC seconds)
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zendrix::family {

struct Manifest {
  std::string path;
  uid_t owner = 0;
  gid_t group = 0;
  mode_t mode = 0;
  timespec accessed = {};
  timespec modified = {};
  std::uint64_t size = 0;
  std::string sha256;
  std::int64_t moved = 0;
};

std::string LineOf(const Manifest& manifest);
// Nothing when the line is damaged.
std::optional<Manifest> ManifestOf(std::string_view line);

}  // namespace zendrix::family
