#include "agent/host/parse_processes.h"

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::uint64_t kExitingFlag = 0x00000004;
constexpr std::uint64_t kKernelThreadFlag = 0x00200000;
// Positions behind the name: state, parent, group, session, terminal, its group, flags, ... start time.
constexpr std::size_t kParentField = 1;
constexpr std::size_t kFlagsField = 6;
constexpr std::size_t kStartField = 19;

bool CutPrefix(std::string_view& text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) != prefix) return false;
  text.remove_prefix(prefix.size());
  return true;
}

bool CutSuffix(std::string_view& text, std::string_view suffix) {
  if (text.size() < suffix.size() || text.substr(text.size() - suffix.size()) != suffix) return false;
  text.remove_suffix(suffix.size());
  return true;
}

// VmRSS:	    1700 kB
std::optional<std::uint64_t> KilobytesOf(std::string_view text, std::string_view name) {
  for (const std::string_view line : SplitLines(text)) {
    const auto words = SplitWords(line);
    std::uint64_t kilobytes = 0;
    if (words.size() >= 2 && words[0] == name && ReadNumber(words[1], kilobytes)) return kilobytes;
  }
  return {};
}

}  // namespace

// 7561 (cat) R 7532 7532 4098 0 -1 4194304 101 0 0 0 0 0 0 0 20 0 1 0 102153 3133440 390 ...
// The name may hold blanks, parentheses and line ends: it runs from the first "(" to the last ")".
std::optional<ProcessStat> ParseProcessStat(std::string_view text) {
  const std::size_t open = text.find('(');
  const std::size_t close = text.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return {};
  const auto fields = SplitWords(Trim(text.substr(close + 1)));
  ProcessStat stat;
  std::uint64_t flags = 0;
  if (fields.size() <= kStartField || !ReadNumber(Trim(text.substr(0, open)), stat.pid) ||
      !ReadNumber(fields[kParentField], stat.parent) || !ReadNumber(fields[kFlagsField], flags) ||
      !ReadNumber(fields[kStartField], stat.start_ticks)) {
    return {};
  }
  stat.name = text.substr(open + 1, close - open - 1);
  stat.ended = fields[0] == "Z" || fields[0] == "X" || fields[0] == "x" || (flags & kExitingFlag) != 0;
  stat.kernel_thread = (flags & kKernelThreadFlag) != 0;
  return stat;
}

std::optional<std::uint64_t> ParseResidentKb(std::string_view text) {
  return KilobytesOf(text, "VmRSS:");
}

std::optional<std::uint64_t> ParseShareKb(std::string_view text) {
  return KilobytesOf(text, "Pss:");
}

ProgramFile ParseProgramFile(std::string_view target) {
  ProgramFile file;
  file.deleted = CutSuffix(target, " (deleted)");
  std::string_view name = target;
  file.in_memory = CutPrefix(name, "/memfd:");
  file.path = target;
  return file;
}

std::optional<std::uint64_t> ParseSocketInode(std::string_view target) {
  std::uint64_t inode = 0;
  if (!CutPrefix(target, "socket:[") || !CutSuffix(target, "]") || !ReadNumber(target, inode)) return {};
  return inode;
}

}  // namespace zendrix::agent
