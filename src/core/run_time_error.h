// The run-time errors of the system's rules. They are thrown inside a room, carry the number that the log
// shows, and are caught by the two guards of guards.h and nowhere else, unless a rule names the number.
#pragma once

#include <string>

#include "platform/result.h"

namespace zendrix::core {

inline constexpr int kInvalidProcedureCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kFileNotFound = 53;
inline constexpr int kInputPastEnd = 62;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kKeyExists = 457;
inline constexpr int kBadCriterion = 3001;
inline constexpr int kElementNotFound = 35601;
inline constexpr int kKeyNotUnique = 35602;

struct RunTimeError {
  int number = 0;
  std::string description;
  // The platform's own words, for a maintainer; never part of a log line or message.
  std::string detail = {};
};

// The fixed description that belongs to a number; "Application-defined or object-defined error" for others.
std::string DescriptionOf(int number);

[[noreturn]] void Raise(int number);

// The run-time error for a failed call of the platform: no permission is 70, a missing thing 53, a
// full disk 61, and all else 57 (device I/O error).
RunTimeError FromPlatform(const platform::Error& error);

// The value of a seam's result; throws the matching run-time error when there is none.
template <class T>
T ValueOrRaise(platform::Result<T> result) {
  if (!result) throw FromPlatform(result.error());
  return std::move(result.value());
}

}  // namespace zendrix::core
