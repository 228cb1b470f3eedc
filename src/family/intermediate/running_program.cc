#include "family/intermediate/running_program.h"

#include <arpa/inet.h>
#include <limits.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <set>

#include "family/intermediate/read_number.h"
#include "family/intermediate/same_file.h"
#include "family/intermediate/text_file.h"

namespace zendrix::family {
namespace {

// Moments are told in whole seconds, and that of the computer's start is rounded too.
constexpr std::int64_t kClockSlack = 2;
constexpr std::size_t kStartField = 19;  // counted from the one behind the name, which is the state
constexpr std::string_view kListening = "0A";

// What stands behind the name in "4711 (a name) S 1 ...": the name may hold anything, ")" included.
std::vector<std::string_view> FieldsBehindName(std::string_view text) {
  const auto behind_name = text.rfind(')');
  if (behind_name == std::string_view::npos) return {};
  return WordsOf(text.substr(behind_name + 1));
}

bool IsAlive(const std::vector<std::string_view>& fields) {
  return fields.size() > kStartField && fields[0] != "Z" && fields[0] != "X";
}

// A process whose first thread has ended looks as if it had ended itself, while others of it go on.
bool HasLivingThread(const std::string& folder) {
  const std::string threads = folder + "/task/";
  for (const auto& name : NamesIn(threads)) {
    const std::string text = TextOf(threads + name + "/stat").value_or("");
    if (IsAlive(FieldsBehindName(text))) return true;
  }
  return false;
}

// Whether a process exists of which nothing can be read: /proc can be mounted so (hidepid) that the processes
// of others are out of sight. That of the first process tells, for it is always there and somebody else's.
bool IsHidden(const std::string& number, const Outside& outside) {
  if (::access((outside.proc + "/" + number).c_str(), F_OK) == 0) return true;
  if (TextOf(outside.proc + "/1/stat")) return false;
  pid_t process = 0;
  return ReadNumber(number, process) && process > 0 && (::kill(process, 0) == 0 || errno != ESRCH);
}

struct Process {
  bool lives = false;
  bool hidden = false;
  std::int64_t began = 0;
};

Process ProcessOf(const std::string& number, const Outside& outside) {
  Process process;
  const std::string folder = outside.proc + "/" + number;
  const auto text = TextOf(folder + "/stat");
  if (!text) {
    process.lives = process.hidden = IsHidden(number, outside);
    return process;
  }
  const auto fields = FieldsBehindName(*text);
  std::int64_t ticks = 0;
  if (fields.size() <= kStartField || !ReadNumber(fields[kStartField], ticks)) return process;
  process.lives = IsAlive(fields) || HasLivingThread(folder);
  // Where the clock was set forward since, a process of before the event seems to have begun behind it.
  process.began =
      StartOfComputer(outside.proc).value_or(0) + ticks / ::sysconf(_SC_CLK_TCK) - outside.clock_set.forward;
  return process;
}

// "0100007F:1F90" as "127.0.0.1" and 8080: the kernel tells addresses as words of the machine's own order.
struct Endpoint {
  std::string address;  // with "-" where IPv6 has ":", as descriptions write it
  unsigned port = 0;
};

Endpoint EndpointOf(std::string_view text) {
  constexpr std::size_t kWordDigits = 8, kMostWords = 4;
  Endpoint endpoint;
  const auto colon = std::min(text.find(':'), text.size());
  if (colon < text.size()) ReadNumber(text.substr(colon + 1), endpoint.port, 16);
  const std::size_t count = colon / kWordDigits;
  std::array<std::uint32_t, kMostWords> words = {};
  if (count != 1 && count != kMostWords) return endpoint;
  for (std::size_t i = 0; i < count; ++i)
    ReadNumber(text.substr(i * kWordDigits, kWordDigits), words.at(i), 16);
  // An IPv4 address may be told as "::ffff:10.0.0.7".
  const bool mapped = count == kMostWords && words[0] == 0 && words[1] == 0 && words[2] == htonl(0xFFFF);
  const bool short_form = count == 1 || mapped;
  std::array<char, INET6_ADDRSTRLEN> written = {};
  ::inet_ntop(short_form ? AF_INET : AF_INET6, mapped ? &words[3] : words.data(), written.data(),
              written.size());
  endpoint.address = written.data();
  std::replace(endpoint.address.begin(), endpoint.address.end(), ':', '-');
  return endpoint;
}

bool IsMeant(const Subject& subject, std::string_view local, std::string_view remote) {
  unsigned port = 0;
  if (!ReadNumber(subject.reading.port, port)) return false;
  if (subject.kind == DescriptionKind::kListeningPort) return EndpointOf(local).port == port;
  std::string address(subject.reading.address);
  std::replace(address.begin(), address.end(), ':', '-');
  const Endpoint there = EndpointOf(remote);
  return there.address == address && (there.port == port || EndpointOf(local).port == port);
}

// Where the computer's tables of sockets are. A service with a sandbox may live in a network of its own,
// whose tables are empty, so they are read as the first process sees them. Empty when none can be read.
std::string FolderOfTables(const Outside& outside) {
  for (const char* folder : {"/1/net", "/net"}) {
    if (::access((outside.proc + folder + "/tcp").c_str(), R_OK) == 0) return outside.proc + folder;
  }
  return "";
}

// Sockets that the event may speak of: "socket:[4711]", as a process's list of open files names them. Nothing
// when they cannot be read, which is not the same as none.
std::optional<std::set<std::string>> SocketsOf(const Subject& subject, const Outside& outside) {
  const bool listening = subject.kind == DescriptionKind::kListeningPort;
  const std::string folder = FolderOfTables(outside);
  std::set<std::string> sockets;
  for (const char* table : {"/tcp", "/tcp6"}) {
    const auto text = TextOf(folder + table);
    if (!text) {
      // A computer without IPv6 has no table of it.
      const bool has_none =
          !folder.empty() && ::access((folder + table).c_str(), F_OK) != 0 && errno == ENOENT;
      if (!has_none) return std::nullopt;
      continue;
    }
    for (const auto line : LinesOf(*text)) {
      // "0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 00000000 1000 0 4711 ..."
      const auto words = WordsOf(line);
      if (words.size() < 10 || words[9] == "0" || (words[3] == kListening) != listening) continue;
      if (IsMeant(subject, words[1], words[2])) sockets.insert("socket:[" + std::string(words[9]) + "]");
    }
  }
  return sockets;
}

std::string TargetOf(const std::string& link) {
  std::array<char, PATH_MAX> target = {};
  const ssize_t length = ::readlink(link.c_str(), target.data(), target.size());
  return {target.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
}

struct Holders {
  std::vector<std::string> processes;
  std::set<std::string> unseen;  // sockets whose holder is out of sight
};

Holders HoldersOf(const std::set<std::string>& sockets, const Outside& outside) {
  Holders holders{{}, sockets};
  for (const auto& process : NamesIn(outside.proc)) {
    if (process.find_first_not_of("0123456789") != std::string::npos) continue;
    const std::string open_files = outside.proc + "/" + process + "/fd";
    bool holds = false;
    for (const auto& name : NamesIn(open_files)) {
      const std::string target = TargetOf(open_files + "/" + name);
      if (!sockets.contains(target)) continue;
      holds = true;
      holders.unseen.erase(target);
    }
    if (holds) holders.processes.push_back(process);
  }
  return holders;
}

// Whether a process is known by this path, as the Agent sees it: that is how the event came by it.
bool IsKnownAs(const std::string& process, const std::string& path, const Outside& outside) {
  const std::string name = TargetOf(outside.proc + "/" + process + "/exe");
  return name == path || name == path + " (deleted)";
}

// Whether a process sees the computer's files where we see them: it lives in our mount namespace, or in that
// of the first process, of which ours is a copy when we are a service with a sandbox. Nothing when it cannot
// be told.
std::optional<bool> SeesOurFiles(const std::string& process, const Outside& outside) {
  struct stat its = {}, other = {};
  if (::stat((outside.proc + "/" + process + "/ns/mnt").c_str(), &its) != 0) return std::nullopt;
  const auto is_its = [&](const char* whose) {
    return ::stat((outside.proc + whose + "/ns/mnt").c_str(), &other) == 0 && other.st_dev == its.st_dev &&
           other.st_ino == its.st_ino;
  };
  if (is_its("/self") || is_its("/1")) return true;
  return other.st_ino == 0 ? std::nullopt : std::optional(false);
}

[[noreturn]] void RefuseState(ProgramState state, const std::string& name) {
  if (state == ProgramState::kElsewhere)
    throw Refused{"The program of this event runs in a container of its own and is not " + name +
                  ". Nothing was changed."};
  if (state == ProgramState::kAnother)
    throw Refused{"The program of this event is not the file " + name + ". Nothing was changed."};
  throw Refused{"It cannot be told whether the program of this event is " + name + ". Nothing was changed."};
}

void RequireUnchanged(const Subject& subject, const Event& event, const Outside& outside) {
  const std::string name = NameToTell(subject.file.place.path);
  const struct stat& status = subject.file.status;
  if (!event.moment)
    throw Refused{"The program of this event has ended, and when the event was is not known, so " + name +
                  " stays where it is."};
  const std::int64_t changed = std::max(status.st_ctim.tv_sec, status.st_mtim.tv_sec);
  if (changed > *event.moment) throw Refused{name + " was changed after this event. Nothing was changed."};
  if (changed > *event.moment - outside.clock_set.back)
    throw Refused{"The clock was set back, so it cannot be told whether " + name +
                  " was changed after this event. Nothing was changed."};
}

// An event of a moment that is still to come has a wrong moment, and every change of the file so far would
// count as earlier.
Event WithBelievedMoment(const Event& event, const Outside& outside) {
  Event believed = event;
  if (event.moment && *event.moment > outside.now() + kClockSlack) believed.moment.reset();
  return believed;
}

}  // namespace

ProgramState StateOf(const std::string& process, const struct stat& file, const Event& event,
                     const Outside& outside) {
  const Process found = ProcessOf(process, outside);
  if (found.hidden) return ProgramState::kUnknown;
  if (!found.lives || (event.moment && found.began > *event.moment + kClockSlack)) return ProgramState::kGone;
  const std::string folder = outside.proc + "/" + process;
  struct stat executable = {};
  const auto sees_our_files = SeesOurFiles(process, outside);
  if (!sees_our_files) return ProgramState::kUnknown;
  if (!*sees_our_files) return ProgramState::kElsewhere;
  if (::stat((folder + "/exe").c_str(), &executable) != 0) return ProgramState::kUnknown;
  const bool same = executable.st_dev == file.st_dev && executable.st_ino == file.st_ino;
  return same ? ProgramState::kThisFile : ProgramState::kAnother;
}

void RequireTheProgram(const Subject& subject, const Event& told, const Outside& outside) {
  const Event event = WithBelievedMoment(told, outside);
  std::vector<std::string> processes;
  std::set<std::string> unseen;
  if (subject.kind == DescriptionKind::kRunningProcess) {
    if (!subject.reading.process.empty()) processes.emplace_back(subject.reading.process);
  } else if (subject.kind == DescriptionKind::kListeningPort ||
             subject.kind == DescriptionKind::kConnection) {
    const auto sockets = SocketsOf(subject, outside);
    if (!sockets) RefuseState(ProgramState::kUnknown, NameToTell(subject.file.place.path));
    if (!sockets->empty()) {
      Holders holders = HoldersOf(*sockets, outside);
      processes = std::move(holders.processes);
      unseen = std::move(holders.unseen);
    }
  } else {
    return;
  }
  const std::string name = NameToTell(subject.file.place.path);
  auto worst = ProgramState::kGone;
  bool runs = false;
  for (const auto& process : processes) {
    const ProgramState state = StateOf(process, subject.file.status, event, outside);
    if (state == ProgramState::kThisFile) {
      runs = true;
    } else if (state != ProgramState::kGone) {
      // One that only goes by the file's name may be the event's, whoever else is at the same port.
      if (IsKnownAs(process, subject.file.place.path, outside)) RefuseState(state, name);
      worst = state;
    }
  }
  // Somebody holds the port whose open files may not be looked at.
  if (!unseen.empty()) RefuseState(ProgramState::kUnknown, name);
  if (runs) return;
  if (worst != ProgramState::kGone) RefuseState(worst, name);
  RequireUnchanged(subject, event, outside);
}

}  // namespace zendrix::family
