// The failure styles of the system, once each. A procedure with the fatal style ends the process through
// WriteError on any run-time error; one with the logging style writes a line and goes on behind the guard;
// single steps whose errors the rules ignore have a guard of their own.
#pragma once

#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/error_log.h"

namespace zendrix::core {

// Runs `body`; a run-time error ends the process under the name `proc`.
template <class Body>
auto OrFatal(ErrorLog& log, const std::string& proc, Body&& body) -> decltype(body()) {
  try {
    return std::forward<Body>(body)();
  } catch (const RunTimeError& error) {
    log.WriteError(proc, error);
  } catch (const std::bad_alloc&) {
    log.WriteError(proc, RunTimeError{kOutOfMemory, DescriptionOf(kOutOfMemory)});
  }
}

// Runs `body`; the run-time error that ended it, if one did. Memory that runs out is one like any other.
template <class Body>
std::optional<RunTimeError> ErrorOf(Body&& body) {
  try {
    std::forward<Body>(body)();
    return std::nullopt;
  } catch (const RunTimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return RunTimeError{kOutOfMemory, DescriptionOf(kOutOfMemory)};
  }
}

// Runs `body`; a run-time error becomes the log line "number: description" under the name `proc`. Returns
// whether the body came to its end.
template <class Body>
bool OrLog(ErrorLog& log, std::string_view proc, Body&& body) {
  const auto error = ErrorOf(std::forward<Body>(body));
  if (error) log.WriteLog(std::string(proc), std::to_string(error->number) + ": " + error->description);
  return !error;
}

// Runs `body` where the rules ignore every run-time error; the work goes on behind the guard.
template <class Body>
void OrIgnore(Body&& body) {
  (void)ErrorOf(std::forward<Body>(body));
}

}  // namespace zendrix::core
