// What a program's file holds and whose it is. Answers are kept as long as the file is the same: device,
// inode, size and the times of its contents and of its change, of which nobody can set the last. Of a running
// program it is the file that runs, which need not be the one that has its path by now. It is looked at once
// a second at most; and so much is read in a second and no more, so that a host that makes programs by the
// thousand does not keep the Agent reading.
//
// A file beyond 64 MB is summed up by its beginning, its end, samples between them, its size and the time of
// its last change.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "agent/host/host_view.h"
#include "agent/score/baseline.h"
#include "agent/score/packages.h"

namespace zendrix::agent {

struct Contents {
  std::string sha256;       // empty: it could not be read
  bool is_put_off = false;  // not now: too much was read in this second
  PackageOf package;
  std::int64_t installed = 0;  // when the package was, seconds since 1970
};

// What is told of a running program beside its path; 0: nothing.
struct Running {
  std::uint64_t inode = 0;
  std::uint64_t process = 0;
};

class ProgramFiles {
 public:
  static constexpr std::int64_t kWhole = 64 << 20;  // larger files are summed up by samples

  explicit ProgramFiles(HostView& host) : host_(host), packages_(host) {}

  // `path` is the host's bytes; for one that names no file of this host the answer is empty.
  Contents Of(const std::string& path, std::int64_t now_ms, const Running& running = {});

 private:
  struct Known {
    EntryFacts facts;
    std::int64_t looked_ms = 0;
    Contents contents;
  };

  std::string WhereItIs(const std::string& path, const Running& running, std::optional<EntryFacts>& facts);
  Contents Read(const std::string& path, const std::string& from, const EntryFacts& facts);
  std::string SampledSum(const std::string& from, const EntryFacts& facts);
  bool MayRead(std::int64_t size, std::int64_t now_ms);

  HostView& host_;
  Packages packages_;
  std::unordered_map<std::string, Known> known_;
  std::int64_t second_ = 0;
  std::int64_t read_ = 0;  // bytes in this second
};

}  // namespace zendrix::agent
