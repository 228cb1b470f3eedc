// Records from the kernel as they come (agent/bpf/records.h), whoever brings them: programs in the kernel, or
// a test. Used by one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::agent {

class KernelStream {
 public:
  virtual ~KernelStream() = default;
  // Hands at most `most` waiting records to `take`, oldest first, and never waits. True when more may be
  // waiting. The bytes are the callee's only during the call.
  virtual bool Read(std::size_t most, const std::function<void(std::string_view)>& take) = 0;
  // What epoll may wait for; -1 where there is nothing.
  virtual int Handle() const { return -1; }
  // Whether the next record makes it ready. Of a stream that is busy none does, because waking the Agent for
  // records that it would find soon anyway costs whoever makes them.
  virtual bool Wakes() const { return false; }
  // How many records found no room since the start, by the RecordKind that is their position.
  virtual std::vector<std::uint64_t> Lost() const = 0;
  // What this kernel does not tell, for a person; empty when it tells all.
  virtual std::string Lacks() const = 0;
};

struct OpenedStream {
  std::unique_ptr<KernelStream> stream;  // null when it was refused
  std::string refusal;                   // why, for a person
};

// Loads the programs into the running kernel, where they stay as long as the stream lives.
OpenedStream OpenKernelStream();

}  // namespace zendrix::agent
