#include "platform/linux/linux_shell.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "platform/linux/detached_process.h"
#include "platform/linux/posix.h"
#include "platform/windows_1252.h"

namespace zendrix::platform {
namespace {

Status Start(const std::string& program, const std::vector<std::string>& arguments) {
  const auto child = StartDetached(program, arguments);
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

}  // namespace zendrix::platform
