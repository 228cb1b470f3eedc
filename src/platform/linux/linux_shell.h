// Starting things on the user's desktop. Nothing ever passes through a command interpreter of ours: programs
// are started with their arguments as they are, in a session of their own, with no input and no output, with
// the user's own environment (clean_environment.h), and are waited for in the background so that none stays
// behind as a zombie.
#pragma once

#include "platform/shell.h"

namespace zendrix::platform {

class LinuxShell : public Shell {
 public:
  // Hands the document to xdg-open. A document that is empty, begins with "-" (it would be read as an option)
  // or holds a control character is refused. Characters beyond ASCII in an address ("scheme://...") are
  // handed over in UTF-8; a path is handed over byte by byte.
  Status Open(const std::string& document) override;
  // A program name without "/" is looked for on PATH.
  Status RunHidden(const std::vector<std::string>& arguments) override;
  // Started as a program, in the folder that it lies in. It must be a plain file and no link; it and its
  // folder must belong to root or to the user, and nobody else may write to either. Parameters are parted at
  // blanks; quotes hold one together and are not part of it.
  Status OpenInstaller(const std::string& path, const std::string& parameters) override;
};

}  // namespace zendrix::platform
