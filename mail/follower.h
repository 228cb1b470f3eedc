// Follows the monitoring file of a folder, across starts of this program and changes of the file: the Agent
// renames a full one to "KorvessaMonitoring-SECONDS.kvl" and begins anew (docs/formats.md). Only whole lines
// are handed on, each once. Reading is bounded: a line of more than 64 KB is passed over, and one call reads
// a few megabytes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace zendrix::mail {

// How far the file was read. It is kept from start to start.
struct Position {
  platform::FileIdentity file;  // zeros: there was none
  std::int64_t offset = 0;
  std::string
      before;  // the last bytes in front of the offset, 32 at most: whether the file is still that one
  bool mid_line = false;  // the offset lies in a line that is passed over

  bool operator==(const Position&) const = default;
};

struct Reading {
  Position position;
  bool replaced = false;  // the file is not the one that was read before, nor one that follows it
  bool more = false;      // there is more to read at once
  std::string error;      // why nothing could be read; empty also when there is no file
};

class Follower {
 public:
  static constexpr std::int64_t kMostBytes = 4 << 20;  // of one call
  static constexpr std::size_t kLongestLine = 65536;

  // `files` outlives the object.
  Follower(platform::Files& files, std::string folder);

  // Behind what the file holds now, for a first start. An error when it cannot be read.
  platform::Result<Position> End();

  // In front of every line that was written since `second`, for a start that reads again: lines before it may
  // follow.
  Position Begin(std::int64_t second);

  // Hands the whole lines behind `from` to `take`, and says how far it came. `replaced` lines are handed on
  // as well, from the new file's beginning; they may be old ones.
  using Take = std::function<void(std::string_view line, bool replaced)>;
  Reading ReadOn(const Position& from, const Take& take);

 private:
  struct Opened {
    std::unique_ptr<platform::ReadStream> stream;
    std::int64_t size = 0;
    platform::FileIdentity identity;
  };

  platform::Result<Opened> Open(const std::string& path);
  static bool IsThatOne(Opened& opened, const Position& position);
  // Reads from the position to the end or until `budget` is used up; true when the end was reached.
  static platform::Result<bool> ReadFile(Opened& opened, Position& position, std::int64_t& budget,
                                         const std::function<void(std::string_view)>& take);
  // The files put aside that have not been read to their end, oldest first: the one that the position is in,
  // and those behind it. Empty when the position is in none of them.
  std::vector<std::string> PutAside(const Position& position);

  platform::Files& files_;
  const std::string folder_;
  const std::string path_;
};

}  // namespace zendrix::mail
