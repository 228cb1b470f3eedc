// Which programs were blocked with a user's consent: path and contents, when and by whom. By it, and by
// nothing else, a program is blocked again without anybody being asked: what a desktop user's files say of
// decisions could be written by the very program that is to be caught.
//
// One text file in the helper's own folder (root, 0700), replaced as a whole:
//   "zendrix-blocks 1"                      LF
//   one line per program, oldest first: UTC seconds, user id, SHA-256, path (bytes below 33, "%" and 127 as
//   %xx), separated by tabs and ended by LF
//   "sum", tab, SHA-256 of all above        LF
// There is exactly one way to write it; every other text is damaged. A damaged file is set aside under a name
// with the second, and nothing is blocked by it any more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"

namespace zendrix::act {

struct BlockedProgram {
  std::string path;  // absolute; the file system's bytes
  std::string sha256;
  std::int64_t when = 0;  // UTC seconds
  std::uint32_t user = 0;
  friend bool operator==(const BlockedProgram&, const BlockedProgram&) = default;
};

// Nothing when the text is damaged.
std::optional<std::vector<BlockedProgram>> ParseBlocks(std::string_view text);
std::string TextOfBlocks(const std::vector<BlockedProgram>& blocks);

bool IsSha256(std::string_view text);

class BlockRecord {
 public:
  // Beyond it the oldest is forgotten.
  static constexpr std::size_t kMost = 1000;

  // `files` and `clock` outlive the object.
  BlockRecord(platform::Files& files, platform::Clock& clock, std::string path)
      : files_(files), clock_(clock), path_(std::move(path)) {}

  // The one with this path and these contents. Nothing also when the record cannot be read.
  std::optional<BlockedProgram> Find(const std::string& path, const std::string& sha256);
  // Known ones are told anew. What could not be written is not held either.
  platform::Status Add(const BlockedProgram& program);
  platform::Status Forget(const std::string& path, const std::string& sha256);

 private:
  // False, with the reason in `why_`, when the file is there and can be neither read nor set aside.
  bool Load();
  platform::Status Write(std::vector<BlockedProgram> blocks);

  platform::Files& files_;
  platform::Clock& clock_;
  const std::string path_;
  std::optional<std::vector<BlockedProgram>> blocks_;  // once read
  platform::Error why_;
};

}  // namespace zendrix::act
