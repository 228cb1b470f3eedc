// What the kernel tells of processes where no programs of the Agent's run in it: the process connector
// (include/uapi/linux/cn_proc.h) says that a process came, runs another program or ended, but not which
// program; taskstats (Documentation/accounting/taskstats.rst) says of a process that ended which file it ran.
// Readers of both, and the questions that begin them. Pure functions on bytes: what is short or of another
// kind gives no value.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "agent/host/netlink.h"
#include "agent/sources/kernel_records.h"

namespace zendrix::agent {

struct ProcessNotice {
  enum class Kind {
    kForked,  // `pid` is the new process
    kExecuted,
    kEnded,
    kAnswered,  // the question was heard; `error` says how
    kOther,     // counts, but says nothing here
  };
  Kind kind = Kind::kOther;
  std::uint32_t processor = 0;  // each numbers its notices by itself
  std::uint32_t number = 0;
  std::uint64_t pid = 0;
  std::uint64_t parent = 0;  // kForked
  bool is_thread = false;    // kForked, kEnded: not the whole process
  std::uint32_t error = 0;   // kAnswered: as errno
};

std::vector<ProcessNotice> ReadProcessNotices(std::string_view datagram);
// Asks for all of them; the answer is kAnswered.
std::string ProcessNoticesQuestion();

// What a process ran when it ended.
struct LastProgram {
  std::uint64_t pid = 0;
  std::uint64_t parent = 0;
  FileIdentity file;
  std::string comm;
};

std::vector<LastProgram> ReadLastPrograms(std::string_view datagram, std::uint16_t family);
// Which number taskstats has among the generic families of this kernel.
std::string TaskstatsFamilyQuestion();
std::optional<std::uint16_t> ReadTaskstatsFamily(std::string_view datagram);
// Asks to be told of every end on these processors ("0-3"). The answer is an error that may be none.
std::string LastProgramsQuestion(std::uint16_t family, const std::string& processors);
// The number of the error; no value for anything else.
std::optional<int> ReadErrorNumber(std::string_view datagram);

}  // namespace zendrix::agent
