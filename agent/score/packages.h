// Which package a file belongs to, by the records that dpkg keeps (dpkg(1), /var/lib/dpkg/info): "NAME.list"
// has the paths of a package, one a line, and is written anew when the package is; "NAME.md5sums" has "SUM
// PATH" lines, the path without its first slash. The records are read through HostView; no dpkg is started.
// An index of all listed paths, 8 bytes each, is made at the first question and follows what is installed.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "agent/host/host_view.h"

namespace zendrix::agent {

class Packages {
 public:
  struct Owner {
    std::string package;         // with its architecture where the records have it: "libc6:amd64"
    bool unchanged = false;      // the contents are those of the package, or it does not say
    std::int64_t installed = 0;  // seconds since 1970
  };

  explicit Packages(HostView& host) : host_(host) {}

  // `md5` is the sum of the file's contents, empty when it could not be had: then it does not count as
  // unchanged where the package tells the sum. Nothing for a file of no package.
  std::optional<Owner> OwnerOf(const std::string& path, const std::string& md5);

 private:
  struct Record {
    std::string name;
    std::int64_t written_ns = 0;
  };

  void Follow();
  void ReadList(std::uint16_t number);
  bool Lists(const Record& record, const std::string& path);
  std::optional<std::string> SumOf(const Record& record, const std::string& path);

  HostView& host_;
  std::int64_t folder_ns_ = -1;
  std::vector<Record> records_;                   // by number; one that went has no name
  std::map<std::string, std::uint16_t> numbers_;  // by name
  std::vector<std::uint64_t> index_;              // sorted: 48 bits of the path's sum, 16 of the number
};

}  // namespace zendrix::agent
