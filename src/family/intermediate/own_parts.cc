#include "family/intermediate/own_parts.h"

#include <fcntl.h>
#include <strings.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstdio>
#include <map>

#include "family/intermediate/file_work.h"
#include "family/intermediate/same_file.h"
#include "family/intermediate/text_file.h"

namespace zendrix::family {
namespace {

// A program folder has a few hundred; a folder with more than this is none of ours.
constexpr int kMostInFolder = 20'000;
constexpr int kDeepest = 16;

// A line of the list of what a process has mapped:
//   7f603b61e000-7f603b644000 r--p 00000000 fe:00 1579      /usr/lib/x86_64-linux-gnu/libc.so.6
// By device and number, which hold where the path does not (another root folder); and by the path, for file
// systems that show other numbers here than elsewhere.
bool IsMapped(const std::string& line, const struct stat& status) {
  unsigned device_major = 0, device_minor = 0;
  unsigned long long inode = 0;
  if (std::sscanf(line.c_str(), "%*s %*s %*s %x:%x %llu", &device_major, &device_minor, &inode) != 3 ||
      inode == 0)
    return false;
  if (makedev(device_major, device_minor) == status.st_dev && inode == status.st_ino) return true;
  const auto slash = line.find('/');
  return slash != std::string::npos && IsSameFile(line.substr(slash), status);
}

bool Uses(const std::string& process, const struct stat& status) {
  if (IsSameFile(process + "/exe", status)) return true;
  const std::string maps = TextOf(process + "/maps").value_or("");
  for (const auto line : LinesOf(maps))
    if (IsMapped(std::string(line), status)) return true;
  return false;
}

// Processes that this one started, and those that they started.
std::vector<std::string> Offspring(const Outside& outside) {
  std::map<std::string, std::string> parents;
  for (const auto& name : zendrix::family::NamesIn(outside.proc)) {
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    const std::string text = TextOf(outside.proc + "/" + name + "/stat").value_or("");
    const auto words = WordsOf(std::string_view(text).substr(std::min(text.rfind(')'), text.size())));
    if (words.size() > 2) parents[name] = words[2];
  }
  const std::string own = std::to_string(::getpid());
  std::vector<std::string> offspring;
  for (const auto& [name, parent] : parents) {
    std::string above = parent;
    // A list read while processes come and go may hold a circle.
    for (std::size_t step = 0; step < parents.size() && above != own && parents.contains(above); ++step)
      above = parents.at(above);
    if (above == own) offspring.push_back(name);
  }
  return offspring;
}

bool IsUsed(const struct stat& status, const Outside& outside) {
  if (Uses("/proc/self", status)) return true;
  for (const auto& process : Offspring(outside))
    if (Uses(outside.proc + "/" + process, status)) return true;
  return false;
}

// Whether one of the files below the folder is this one: the folder may be mounted a second time in part.
bool IsBelow(int folder, const struct stat& status, int depth, int& left) {
  for (const auto& name : NamesIn(folder)) {
    if (name == "." || name == "..") continue;
    if (--left < 0) return false;
    struct stat one = {};
    if (::fstatat(folder, name.c_str(), &one, AT_SYMLINK_NOFOLLOW) != 0) continue;
    if (one.st_dev == status.st_dev && one.st_ino == status.st_ino) return true;
    if (!S_ISDIR(one.st_mode) || depth == 0) continue;
    const Descriptor next(
        ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (next.valid() && IsBelow(next.get(), status, depth - 1, left)) return true;
  }
  return false;
}

bool IsInFolder(const std::string& folder, const struct stat& status) {
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  int left = kMostInFolder;
  return opened.valid() && IsBelow(opened.get(), status, kDeepest, left);
}

bool IsNamedLikeOurs(const std::string& name) {
  constexpr std::string_view kOurs = "zendrix", kFamily = "libKorvessa", kBrowser = "QtWebEngineProcess";
  return ::strncasecmp(name.c_str(), kOurs.data(), kOurs.size()) == 0 || name.starts_with(kFamily) ||
         name == kBrowser;
}

bool IsNamedPart(const struct stat& status, const Outside& outside) {
  for (const auto& folder : outside.own_folders)
    for (const auto& name : zendrix::family::NamesIn(folder))
      if (IsNamedLikeOurs(name) && IsSameFile(folder + "/" + name, status)) return true;
  return false;
}

// "ExecStart=-/opt/agent/zendrix-agent --folder /var/lib/zendrix"
bool IsStartedBy(const std::string& unit, const struct stat& status) {
  constexpr std::string_view kKey = "ExecStart=";
  for (const auto line : LinesOf(unit)) {
    if (!line.starts_with(kKey)) continue;
    const auto words = WordsOf(line.substr(kKey.size()));
    if (words.empty()) continue;
    const auto slash = words[0].find('/');
    if (slash != std::string_view::npos && IsSameFile(std::string(words[0].substr(slash)), status))
      return true;
  }
  return false;
}

bool IsServiceProgram(const struct stat& status, const Outside& outside) {
  for (const auto& folder : outside.unit_folders)
    for (const auto& name : zendrix::family::NamesIn(folder))
      if (IsNamedLikeOurs(name) && IsStartedBy(TextOf(folder + "/" + name).value_or(""), status)) return true;
  return false;
}

}  // namespace

bool IsOwnPart(const NamedFile& file, const std::string& program_folder, const Outside& outside) {
  return LeadsThrough(file.place, program_folder) || IsInFolder(program_folder, file.status) ||
         IsUsed(file.status, outside) || IsNamedPart(file.status, outside) ||
         IsServiceProgram(file.status, outside);
}

}  // namespace zendrix::family
