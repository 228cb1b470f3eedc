// How far a file was read, and whether a file found later is that one with more behind: it must be the same
// file, and its last bytes in front of the place must be those that stood there.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/files.h"

namespace zendrix::admin {

class FileBookmark {
 public:
  struct Place {
    std::int32_t lines = 0;     // in front of it
    std::int64_t offset = 0;    // bytes
    bool line_is_open = false;  // the last line lacked its end: what follows up to one belongs to it
  };

  void Forget() { place_.reset(); }
  // Remembers the place in the file of this path that `stream` reads. Forgets where that is not possible.
  void Mark(const std::string& path, platform::ReadStream& stream, const Place& place);
  // The place, if so many lines were read of this path and `stream` still reads that file. Moves the stream.
  std::optional<Place> Find(const std::string& path, std::int32_t lines, platform::ReadStream& stream) const;

 private:
  static constexpr std::size_t kCompared = 4096;
  struct Bytes {
    std::array<char, kCompared> text;
    std::size_t size = 0;
  };
  static std::optional<Bytes> BytesBefore(platform::ReadStream& stream, std::int64_t offset);

  std::string path_;
  std::optional<Place> place_;
  platform::FileIdentity identity_;
  Bytes before_;
};

}  // namespace zendrix::admin
