// The command line.
#pragma once

#include <string>
#include <vector>

#include "platform/run_time_options.h"

namespace zendrix::mail {

struct Options : platform::RunTime {
  Options() : RunTime{2, {}} {}

  bool help = false;
  bool once = false;
  bool trial = false;       // send a mail that says that mail arrives, and end
  std::string folder;       // of the monitoring file; empty: that of the executable
  std::string settings;     // of the SMTP file; empty: `folder`
  std::string state;        // of the state file; empty: `folder`
  std::string authorities;  // a file of certificates; empty: the computer's
};

struct ParsedOptions {
  Options options;
  std::string error;  // one line for the user, empty when the command line is in order
};

// `arguments` without the program's name.
ParsedOptions ParseOptions(const std::vector<std::string>& arguments);

extern const char* const kHelpText;

}  // namespace zendrix::mail
