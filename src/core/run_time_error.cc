#include "core/run_time_error.h"

#include <array>
#include <string_view>

namespace zendrix::core {
namespace {

constexpr int kDeviceError = 57;
constexpr int kDiskFull = 61;

struct Entry {
  int number;
  std::string_view description;
};

constexpr std::array kDescriptions = {
    Entry{kInvalidProcedureCall, "Invalid procedure call or argument"},
    Entry{kOverflow, "Overflow"},
    Entry{kOutOfMemory, "Out of memory"},
    Entry{kSubscriptOutOfRange, "Subscript out of range"},
    Entry{kTypeMismatch, "Type mismatch"},
    Entry{kFileNotFound, "File not found"},
    Entry{kDeviceError, "Device I/O error"},
    Entry{kDiskFull, "Disk full"},
    Entry{kInputPastEnd, "Input past end of file"},
    Entry{kPermissionDenied, "Permission denied"},
    Entry{kObjectNotSet, "Object variable or With block variable not set"},
    Entry{kKeyExists, "This key is already associated with an element of this collection"},
    Entry{
        kBadCriterion,
        "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another."},
    Entry{kElementNotFound, "Element not found"},
    Entry{kKeyNotUnique, "Key is not unique in collection"},
};

int NumberOf(platform::ErrorKind kind) {
  switch (kind) {
    case platform::ErrorKind::kPermissionDenied:
      return kPermissionDenied;
    case platform::ErrorKind::kNotFound:
      return kFileNotFound;
    case platform::ErrorKind::kNoSpace:
      return kDiskFull;
    case platform::ErrorKind::kAlreadyExists:
    case platform::ErrorKind::kNotRegular:
    case platform::ErrorKind::kUnavailable:
    case platform::ErrorKind::kOther:
      break;
  }
  return kDeviceError;
}

}  // namespace

std::string DescriptionOf(int number) {
  for (const Entry& entry : kDescriptions) {
    if (entry.number == number) return std::string(entry.description);
  }
  return "Application-defined or object-defined error";
}

void Raise(int number) {
  throw RunTimeError{number, DescriptionOf(number)};
}

RunTimeError FromPlatform(const platform::Error& error) {
  const int number = NumberOf(error.kind);
  return RunTimeError{number, DescriptionOf(number), error.text};
}

}  // namespace zendrix::core
