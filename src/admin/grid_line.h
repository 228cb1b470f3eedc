// The event grid's own view of a line of the monitoring file: it is split at its commas. Pieces 0 to 4 are
// time, host, monitor, change code and description; nothing else of a line is looked at, and a comma inside
// the description cuts it there. A line with fewer than five pieces gives no row.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace zendrix::admin {

struct GridRowFields {
  std::string_view time, host, monitor, code, description;
  // Host, monitor and code as they stand, commas included.
  std::string_view source;
};

// Control characters become blanks, in place; the line without the blanks at its ends.
std::string_view CleanGridLine(std::span<char> line);

// Fields of a line that was cleaned; views into it.
std::optional<GridRowFields> SplitGridLine(std::string_view line);

}  // namespace zendrix::admin
