#include "platform/linux/linux_shell.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/linux/detached_process.h"
#include "platform/linux/posix.h"
#include "platform/windows_1252.h"

namespace zendrix::platform {
namespace {

Status Start(const std::string& program, const std::vector<std::string>& arguments, int folder = -1) {
  const auto child = StartDetached(program, arguments, folder);
  if (!child) return child.error();
  ReapInBackground(child.value());
  return Done{};
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// "http://...", "https://...": a letter, then letters, digits, "+", "-", ".", then "://".
bool IsAddress(std::string_view document) {
  const std::string_view scheme = document.substr(0, document.find("://"));
  if (scheme.size() == document.size() || scheme.empty()) return false;
  const auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return letter(scheme.front()) && std::all_of(scheme.begin(), scheme.end(), [&](char c) {
           return letter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
         });
}

std::vector<std::string> PartsOf(const std::string& parameters) {
  std::vector<std::string> parts;
  bool quoted = false;
  bool inside = false;
  for (const char c : parameters) {
    if (c == ' ' && !quoted) {
      inside = false;
      continue;
    }
    if (!std::exchange(inside, true)) parts.emplace_back();
    if (c == '"')
      quoted = !quoted;
    else
      parts.back() += c;
  }
  return parts;
}

bool OthersMayWrite(const struct stat& status) {
  const bool ours = status.st_uid == 0 || status.st_uid == geteuid();
  return !ours || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

}  // namespace

Status LinuxShell::Open(const std::string& document) {
  if (document.empty() || document.front() == '-' ||
      std::any_of(document.begin(), document.end(), IsControl)) {
    return Error{ErrorKind::kOther, "not a document that can be opened"};
  }
  const std::string opener = FindProgram("xdg-open");
  if (opener.empty()) return ErrorFromErrno(ENOENT, "xdg-open");
  return Start(opener, {opener, IsAddress(document) ? Utf8FromBytes(document) : document});
}

Status LinuxShell::RunHidden(const std::vector<std::string>& arguments) {
  if (arguments.empty() || arguments.front().empty() ||
      std::any_of(arguments.begin(), arguments.end(), HasNul)) {
    return Error{ErrorKind::kOther, "not a command that can be run"};
  }
  const std::string& name = arguments.front();
  const std::string program = name.find('/') == std::string::npos ? FindProgram(name) : name;
  if (program.empty()) return ErrorFromErrno(ENOENT, name);
  return Start(program, arguments);
}

// What was looked at is what is started: the folder stays open in between, the program is named from there,
// and nobody but the user and root can put another one into it.
Status LinuxShell::OpenInstaller(const std::string& path, const std::string& parameters) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos || HasNul(path) || HasNul(parameters))
    return Error{ErrorKind::kOther, "not an installer's path"};
  const std::string name = path.substr(slash + 1);
  const FileDescriptor folder(open(path.substr(0, slash + 1).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return ErrorFromErrno(errno, path);
  const FileDescriptor file(
      openat(folder.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file) return ErrorFromErrno(errno, path);
  struct stat of_folder {};
  struct stat of_file {};
  if (fstat(folder.get(), &of_folder) != 0 || fstat(file.get(), &of_file) != 0)
    return ErrorFromErrno(errno, path);
  if (!S_ISREG(of_file.st_mode)) return Error{ErrorKind::kNotRegular, path + ": no plain file"};
  if (OthersMayWrite(of_folder) || OthersMayWrite(of_file))
    return Error{ErrorKind::kPermissionDenied, path + ": others could have changed it"};
  std::vector<std::string> arguments = PartsOf(parameters);
  arguments.insert(arguments.begin(), path);
  return Start("./" + name, arguments, folder.get());
}

}  // namespace zendrix::platform
