// What a program's file holds and whose it is. Answers are kept as long as the file's size and time stay the
// same, which is looked at once a second at most; and so much is read in a second and no more, so that a host
// that makes programs by the thousand does not keep the Agent reading.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "agent/host/host_view.h"
#include "agent/score/baseline.h"
#include "agent/score/packages.h"

namespace zendrix::agent {

struct Contents {
  std::string sha256;  // empty: it could not be read, or not now
  PackageOf package;
  std::int64_t installed = 0;  // when the package was, seconds since 1970
};

class ProgramFiles {
 public:
  explicit ProgramFiles(HostView& host) : host_(host), packages_(host) {}

  // `path` is the host's bytes; for one that names no file of this host the answer is empty.
  Contents Of(const std::string& path, std::int64_t now_ms);

 private:
  struct Known {
    std::int64_t size = -1;
    std::int64_t modified_ns = 0;
    std::int64_t looked_ms = 0;
    Contents contents;
  };

  Contents Read(const std::string& path, std::int64_t size);
  bool MayRead(std::int64_t size, std::int64_t now_ms);

  HostView& host_;
  Packages packages_;
  std::unordered_map<std::string, Known> known_;
  std::int64_t second_ = 0;
  std::int64_t read_ = 0;  // bytes in this second
};

}  // namespace zendrix::agent
