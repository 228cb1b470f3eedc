// The shipped data files as a test reads them, straight from the source tree.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::test {

inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

inline std::filesystem::path DescriptionPath(int number) {
  return std::filesystem::path(ZENDRIX_DATA) / "descriptions" /
         ("KorvessaDesc" + std::to_string(number) + ".kvl");
}

inline std::string DescriptionBytes(int number) {
  return ReadBytes(DescriptionPath(number));
}

// The lines as the console has them: split at CR LF, with an empty one behind the last line end.
inline std::vector<std::string> DescriptionLines(int number) {
  const std::string bytes = DescriptionBytes(number);
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end; (end = bytes.find("\r\n", start)) != std::string::npos; start = end + 2) {
    lines.push_back(bytes.substr(start, end - start));
  }
  lines.push_back(bytes.substr(start));
  return lines;
}

// The same without that last one.
inline std::vector<std::string> WrittenLines(int number) {
  std::vector<std::string> lines = DescriptionLines(number);
  lines.pop_back();
  return lines;
}

inline bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// Every piece of `text` from one `open` to the next `close`, both included.
inline std::vector<std::string> Between(std::string_view text, std::string_view open,
                                        std::string_view close) {
  std::vector<std::string> pieces;
  for (std::size_t start = text.find(open); start != std::string_view::npos;
       start = text.find(open, start + 1)) {
    const std::size_t end = text.find(close, start + open.size());
    if (end == std::string_view::npos) break;
    pieces.emplace_back(text.substr(start, end + close.size() - start));
  }
  return pieces;
}

// The monitors that the consoles know by name, in every spelling that is seen.
inline const std::vector<std::string>& MonitorSpellings() {
  static const std::vector<std::string> names = {"Monitoring Agent",
                                                 "Test Monitoring Agent",
                                                 "Monitor Analysis Agent #1",
                                                 "Monitor Analysis Agent #2",
                                                 "AI Monitor",
                                                 "Aggregation",
                                                 "Community",
                                                 "Autorun Registry",
                                                 "Folder Contents",
                                                 "Windows Folder",
                                                 "Network Transmission Rate",
                                                 "Logged-on Users",
                                                 "Logged-On Users",
                                                 "Memory Utilization",
                                                 "Listening Ports",
                                                 "Running Processes",
                                                 "System Users",
                                                 "Tcp Connections",
                                                 "TCP Connections",
                                                 "Tcp Port",
                                                 "System"};
  return names;
}

}  // namespace zendrix::test
