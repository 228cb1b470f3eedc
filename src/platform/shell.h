// Handing things to the user's desktop: a web address to the browser, a program to start. Nothing waits
// and no outcome beyond "it could be handed over" is known.
#pragma once

#include <string>
#include <vector>

#include "platform/result.h"

namespace zendrix::platform {

class Shell {
 public:
  virtual ~Shell() = default;
  // The verb "open" on a document or address. Never passes through a command interpreter.
  virtual Status Open(const std::string& document) = 0;
  // Starts a program with arguments, without a window, and does not wait.
  virtual Status RunHidden(const std::vector<std::string>& arguments) = 0;
  // The verb "open" on an installer, with its parameters as one text, in a window of its own. It gets
  // whatever rights the user has, and so it is started only when nobody but the user and the machine's
  // administrator could have put it there or changed it; anything else is refused with kPermissionDenied.
  virtual Status OpenInstaller(const std::string& path, const std::string& parameters) = 0;
};

}  // namespace zendrix::platform
