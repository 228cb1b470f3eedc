// Which program a file is, asked by the numbers of the file. It knows the files of the folders where programs
// are or are put by whoever breaks in, those that it was told of, and their neighbours; an answer is checked
// before it is given, since a file may have been replaced and its number be another's now.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "agent/host/host_view.h"
#include "agent/sources/kernel_records.h"

namespace zendrix::agent {

class ProgramIndex {
 public:
  static constexpr std::size_t kMost = 50'000;
  static constexpr std::size_t kMostOfOneFolder = 5'000;
  static constexpr std::size_t kMostFolders = 100;  // of programs that it was told of
  static constexpr std::int64_t kReadAgainNs = 10'000'000'000;
  static constexpr std::int64_t kReadTemporaryAgainNs = 1'000'000'000;

  // `host` outlives the object.
  explicit ProgramIndex(HostView& host) : host_(host) {}

  // `path` as the host has it.
  void Learn(const std::string& path);
  // No value when no known path leads to this file. A stranger makes it read the folders again.
  std::optional<std::string> PathOf(const FileIdentity& file, std::int64_t now_ns);

 private:
  using Key = std::pair<std::uint64_t, std::uint64_t>;

  void ReadFolder(const std::string& folder);
  std::optional<std::string> Known(const FileIdentity& file);

  HostView& host_;
  std::map<Key, std::string> paths_;
  std::set<std::string> folders_;
  std::vector<std::string> unread_;  // of them
  std::optional<std::int64_t> read_ns_;
  std::optional<std::int64_t> read_temporary_ns_;
};

}  // namespace zendrix::agent
