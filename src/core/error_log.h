// The console's own log and the system's one way of dying.
//
// A record is one line, "date,Computer,0,message", appended to KorvessaAdministratorEventLog.kvl in the
// program folder; the file is opened and closed for each line. Nothing here ever fails towards its caller.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/app_state.h"
#include "core/run_time_error.h"

namespace zendrix::core {

inline constexpr char kConsoleLogName[] = "KorvessaAdministratorEventLog.kvl";

class ErrorLog {
 public:
  explicit ErrorLog(AppState& state) : state_(state) {}

  // One ordinary line: "'proc': msg" as message. A failure to write is silent.
  void WriteLog(const std::string& proc, const std::string& msg);
  // Logs the error, tells the user in one sentence and ends the process through CloseAllAndEnd, exit
  // status 1. When the log cannot be written the user reads both errors instead.
  [[noreturn]] void WriteError(const std::string& proc, const RunTimeError& error);
  // Unloads the open form at index 0 as many times as there are open forms, then ends the process. A form
  // that is already being unloaded is skipped. An error inside an unload takes the fatal path again, and the
  // process still ends. Behind a fatal error the exit status is 1 whoever asks for the end: the unload of a
  // main window ends the process by itself, with a status of its own.
  [[noreturn]] void CloseAllAndEnd(int exit_status = 0);

  // Called with (procedure, error) before the fatal path shows its box; the inspector reports from it.
  std::function<void(const std::string&, const RunTimeError&)> on_fatal;
  // Called with the message field of every line handed to WriteLog and WriteError, written or not.
  std::function<void(const std::string&)> on_line;

 private:
  // Appends one line with this message; what stopped it, if anything did.
  std::optional<RunTimeError> WriteLine(const std::string& message);
  widgets::Form* FirstOpenForm() const;

  AppState& state_;
  bool fatal_ = false;                           // WriteError has been called
  std::vector<const widgets::Form*> unloading_;  // by CloseAllAndEnd, the outermost first
};

}  // namespace zendrix::core
