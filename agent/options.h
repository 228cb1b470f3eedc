// The command line.
#pragma once

#include <string>
#include <vector>

#include "agent/record/lines.h"
#include "platform/run_time_options.h"

namespace zendrix::agent {

// What the program is asked to do.
enum class Task {
  kRecord,
  kStart,    // have an Agent started that goes on by itself
  kStop,     // have the folder's Agent stopped
  kStatus,   // say how the folder's Agent watches, or would watch
  kExplain,  // say what an alert's risk is made of
};

struct Options : platform::RunTime {
  Options() : RunTime{5, {}} {}

  Task task = Task::kRecord;
  bool help = false;
  bool once = false;
  std::string folder;  // empty: the folder of the executable
  std::string state;   // both forms at once, in folders of their own in this one; in place of folder and form
  Form form = Form::kHome;
  std::string alert;   // to be explained; empty: all are listed
  bool plain = false;  // nothing that takes a right or reaches into the kernel
};

struct ParsedOptions {
  Options options;
  std::string error;  // one line for the user, empty when the command line is in order
};

// `arguments` without the program's name.
ParsedOptions ParseOptions(const std::vector<std::string>& arguments);

extern const char* const kHelpText;

}  // namespace zendrix::agent
