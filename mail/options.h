// The command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zendrix::mail {

struct Options {
  bool help = false;
  bool once = false;
  bool trial = false;  // send a mail that says that mail arrives, and end
  std::optional<std::int64_t> for_seconds;
  std::int64_t interval_seconds = 2;
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
