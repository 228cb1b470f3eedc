// The console's own log and the system's one way of dying.
//
// A record is one line, "date,Computer,0,message", appended to KorvessaAdministratorEventLog.kvl in the
// program folder; the file is opened and closed for each line. Nothing here ever fails towards its caller.
#pragma once

#include <functional>
#include <string>

#include "core/app_state.h"
#include "core/run_time_error.h"

namespace zendrix::core {

inline constexpr char kConsoleLogName[] = "KorvessaAdministratorEventLog.kvl";

class ErrorLog {
 public:
  explicit ErrorLog(AppState& state) : state_(state) {}

  // One ordinary line: "'proc': msg" as message. A failure to write is silent.
  void WriteLog(const std::string& proc, const std::string& msg);
  // Logs the error, tells the user in one sentence and ends the process through CloseAllAndEnd.
  [[noreturn]] void WriteError(const std::string& proc, const RunTimeError& error);
  // Unloads the open form at index 0 as many times as there are open forms, then ends the process.
  [[noreturn]] void CloseAllAndEnd(int exit_status = 0);

  // Called with (procedure, error) before the fatal path shows its box; the inspector reports from it.
  std::function<void(const std::string&, const RunTimeError&)> on_fatal;
  // Called with the message field of every line handed to WriteLog and WriteError, written or not.
  std::function<void(const std::string&)> on_line;

 private:
  AppState& state_;
};

}  // namespace zendrix::core
