// The line that goes with every file in quarantine: where it came from and what it was like. One file per
// entry,
// "<name>.manifest", one line of fields separated by tabs and ended by a line feed:
//   "2", path (bytes below 33, "%" and 127 as %xx), owner, group, mode (octal), access time, time of last
//   change (seconds.nanoseconds), size, SHA-256 of the contents, moment of the move (UTC,
//   seconds.nanoseconds), the alert's DateUTC (written like the path), moment of the event (UTC seconds,
//   empty when not known), SHA-256 of all that stands before the last tab
// Older ones begin with "1" and have neither alert nor event. There is exactly one way to write a manifest of
// each kind; every other line is damaged.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zendrix::family {

struct Manifest {
  std::string path;  // absolute
  uid_t owner = 0;
  gid_t group = 0;
  mode_t mode = 0;  // permissions with set-user-id, set-group-id and sticky bit
  timespec accessed = {};
  timespec modified = {};
  std::uint64_t size = 0;
  std::string sha256;
  timespec moved = {};
  int version = 2;
  std::string alert;
  std::optional<std::int64_t> event;
};

// Bytes below 33, "%" and 127 as %xx, so that a text is one word.
std::string Escape(std::string_view text);
// The text behind that, put behind `bytes`. False when it is none that Escape makes, or holds a NUL.
bool Unescape(std::string_view text, std::string& bytes);

std::string LineOf(const Manifest& manifest);
// Nothing when the line is damaged.
std::optional<Manifest> ManifestOf(std::string_view line);

}  // namespace zendrix::family
