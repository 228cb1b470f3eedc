// Shortening of paths for display: as much of the folders as fits, "...", and the file name with the
// separator in front of it.
#pragma once

#include <cstddef>
#include <string_view>

namespace zendrix::core {

// Position of the file name's separator: of the last "\", "/" or ":" that something else than a separator
// follows. A separator at the end belongs to the name. npos when the path is a plain name.
std::size_t SeparatorBeforeName(std::string_view path);

}  // namespace zendrix::core
