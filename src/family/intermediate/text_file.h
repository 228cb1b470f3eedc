// Text files of the system: records, tables of the kernel, lists of processes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::family {

// The whole text; nothing when it cannot be read. Files that are longer than `most` are cut there.
std::optional<std::string> TextOf(const std::string& path, std::size_t most = std::size_t{64} << 20);
// Views into the text, without line ends.
std::vector<std::string_view> LinesOf(std::string_view text);
// Views into the line: what blanks and tabs separate.
std::vector<std::string_view> WordsOf(std::string_view line);
// Names in a folder without "." and ".."; none when it cannot be read.
std::vector<std::string> NamesIn(const std::string& folder);

}  // namespace zendrix::family
