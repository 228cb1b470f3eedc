// The event grid's own view of the monitoring file: text lines, each split at its commas. Pieces 0 to 4 are
// time, host, monitor, change code and description; nothing else of a line is looked at, and a comma inside
// the description cuts it there. A line with fewer than five pieces gives no row.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace zendrix::admin {

struct GridRowFields {
  std::string_view time, host, monitor, code, description;
};

// Fields of a line that was cleaned and trimmed; views into it.
std::optional<GridRowFields> SplitGridLine(std::string_view line);

// Reads a file line by line. A line ends at a line feed, with or without a carriage return in front of it;
// the last line may end at the end of the file.
class GridLines {
 public:
  // Raises the run-time error of a file that cannot be opened.
  GridLines(platform::Files& files, const std::string& path);

  // The next line without its end; false at the end of the file. Raises when reading fails.
  bool Next(std::string& line);
  // Passes over up to this many lines; returns how many there were.
  std::int32_t Skip(std::int32_t lines);

 private:
  bool Fill();

  std::unique_ptr<platform::ReadStream> stream_;
  std::string buffer_;
  std::size_t place_ = 0;
};

}  // namespace zendrix::admin
