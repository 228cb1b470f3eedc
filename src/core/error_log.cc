#include "core/error_log.h"

#include <algorithm>
#include <cstdlib>

#include "core/date_rules.h"
#include "core/guards.h"
#include "core/letter_case.h"
#include "core/moments.h"

namespace zendrix::core {
namespace {

constexpr int kFatalStatus = 1;

std::string NumberAndText(const RunTimeError& error) {
  return std::to_string(error.number) + ": " + error.description;
}

// Holds a form in a list for as long as its unload runs, also when that is left by an exception.
class InList {
 public:
  InList(std::vector<const widgets::Form*>& list, const widgets::Form* form) : list_(list) {
    list_.push_back(form);
  }
  ~InList() { list_.pop_back(); }
  InList(const InList&) = delete;
  InList& operator=(const InList&) = delete;

 private:
  std::vector<const widgets::Form*>& list_;
};

}  // namespace

void ErrorLog::WriteLog(const std::string& proc, const std::string& msg) {
  // The log is the last resort and has none of its own: on any failure the caller simply continues.
  (void)WriteLine("'" + proc + "': " + msg);
}

std::optional<RunTimeError> ErrorLog::WriteLine(const std::string& message) {
  if (on_line) on_line(message);
  return ErrorOf([&] {
    platform::Seams& seams = state_.seams;
    const std::string date = ShortDateLongTime(Now(seams.clock, seams.family), seams.locale.Current());
    const std::string computer = ProperCase(seams.host.ComputerName().substr(0, 255));
    const std::string path = platform::JoinPath(state_.ProgramFolder, kConsoleLogName);
    ValueOrRaise(seams.files.Append(path, date + "," + computer + ",0," + message + "\r\n"));
  });
}

void ErrorLog::WriteError(const std::string& proc, const RunTimeError& error) {
  fatal_ = true;
  if (on_fatal) on_fatal(proc, error);
  const std::optional<RunTimeError> failed =
      WriteLine("An error has occurred in procedure '" + proc + "'. Error " + NumberAndText(error));
  if (failed) {
    state_.seams.message_boxes.Show({"ErrorLog.WriteError",
                                     "Fatal error writing Error Log.\r\n" + NumberAndText(*failed) +
                                         "\r\nThe application will stop.\r\nInitial error was " +
                                         NumberAndText(error),
                                     platform::BoxIcon::kNone, platform::BoxButtons::kOk});
  } else {
    state_.seams.message_boxes.Show({state_.ProductName, "Unexpected Error. Zendrix is exiting.",
                                     platform::BoxIcon::kStop, platform::BoxButtons::kOk});
  }
  CloseAllAndEnd();
}

void ErrorLog::CloseAllAndEnd(int exit_status) {
  for (std::size_t left = state_.forms.open().size(); left > 0; --left) {
    widgets::Form* const form = FirstOpenForm();
    if (form == nullptr) break;
    const InList unloading(unloading_, form);
    OrFatal(*this, "ErrorLog:CloseAllAndEnd", [&] { form->Unload(widgets::UnloadCause::kCode); });
  }
  state_.seams.process.End(fatal_ ? kFatalStatus : exit_status);
  std::abort();  // not reached; the compiler does not trust a virtual function's promise never to return
}

widgets::Form* ErrorLog::FirstOpenForm() const {
  const auto& open = state_.forms.open();
  // A form whose unload led here (a main window's does, and so does an error in any unload) is still in the
  // list and must not hide the forms behind it; skipping it is also what ends the recursion.
  const auto found = std::find_if(open.begin(), open.end(), [&](const widgets::Form* form) {
    return form->loaded() && std::find(unloading_.begin(), unloading_.end(), form) == unloading_.end();
  });
  return found == open.end() ? nullptr : *found;
}

}  // namespace zendrix::core
