// Paths inside texts. A path is the host's own bytes, UTF-8 beyond ASCII; log lines, pages and messages are
// single-byte text (Windows-1252) and are decoded at the program's edges. Whoever puts a path into a text
// puts this there; whoever opens a file takes the path itself.
#pragma once

#include <string>
#include <string_view>

namespace zendrix::core {

// The path as a text writes it. A character that the code page lacks becomes "?".
std::string PathText(std::string_view path);

}  // namespace zendrix::core
