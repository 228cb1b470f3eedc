// Outcome of a call to the outside: a value, or an error that says what kind of refusal it was. Seams
// return these instead of throwing, so that no exception ever crosses a seam.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace zendrix::platform {

enum class ErrorKind {
  kNotFound,          // no such file, service, library or function
  kPermissionDenied,  // access refused, or the thing is locked by somebody else at this moment
  kAlreadyExists,
  kNotRegular,  // a link, folder, device or other thing where a plain file is needed
  kNoSpace,
  kUnavailable,  // the facility itself does not answer
  kOther,
};

struct Error {
  ErrorKind kind = ErrorKind::kOther;
  std::string text;  // for a maintainer; in the platform's words
};

// Empty value for operations that only succeed or fail.
struct Done {};

template <class T>
class [[nodiscard]] Result {
 public:
  Result(T value) : outcome_(std::move(value)) {}      // NOLINT: a value is a result
  Result(Error error) : outcome_(std::move(error)) {}  // NOLINT: an error is a result

  bool ok() const { return std::holds_alternative<T>(outcome_); }
  explicit operator bool() const { return ok(); }
  // The value; only when ok().
  T& value() { return std::get<T>(outcome_); }
  const T& value() const { return std::get<T>(outcome_); }
  // The error; only when not ok().
  const Error& error() const { return std::get<Error>(outcome_); }

 private:
  std::variant<T, Error> outcome_;
};

using Status = Result<Done>;

}  // namespace zendrix::platform
