#include "platform/linux/service_outcomes.h"

#include <algorithm>
#include <iterator>

namespace zendrix::platform {
namespace {

struct Known {
  std::string_view name;
  int number;
};

constexpr Known kErrors[] = {
    {"org.freedesktop.DBus.Error.NotSupported", 1},
    {"org.freedesktop.DBus.Error.UnknownMethod", 1},
    {"org.freedesktop.DBus.Error.AccessDenied", kServiceNoAccess},
    {"org.freedesktop.DBus.Error.AuthFailed", kServiceNoAccess},
    {"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", kServiceNoAccess},
    {"org.freedesktop.PolicyKit1.Error.NotAuthorized", kServiceNoAccess},
    {"org.freedesktop.PolicyKit1.Error.Cancelled", kServiceNoAccess},
    {"org.freedesktop.systemd1.JobTypeNotApplicable", 4},
    {"org.freedesktop.systemd1.OnlyByDependency", 4},
    {"org.freedesktop.systemd1.ShuttingDown", kServiceWrongState},
    {"org.freedesktop.systemd1.TransactionIsDestructive", kServiceWrongState},
    {"org.freedesktop.systemd1.TransactionJobsConflicting", kServiceWrongState},
    {"org.freedesktop.DBus.Error.NoReply", kServiceTimeOut},
    {"org.freedesktop.DBus.Error.Timeout", kServiceTimeOut},
    {"org.freedesktop.DBus.Error.TimedOut", kServiceTimeOut},
    // The unit itself was found before: it is one that it needs that is missing.
    {"org.freedesktop.systemd1.NoSuchUnit", 13},
    {"org.freedesktop.systemd1.UnitMasked", kServiceDisabled},
    {"org.freedesktop.systemd1.TransactionOrderIsCyclic", 18},
    {"org.freedesktop.systemd1.BadUnitSetting", 21},
    {"org.freedesktop.DBus.Error.InvalidArgs", 21},
};

constexpr std::string_view kNoAnswer[] = {"org.freedesktop.DBus.Error.ServiceUnknown",
                                          "org.freedesktop.DBus.Error.NameHasNoOwner",
                                          "org.freedesktop.DBus.Error.NoServer",
                                          "org.freedesktop.DBus.Error.NoNetwork",
                                          "org.freedesktop.DBus.Error.BadAddress",
                                          "org.freedesktop.DBus.Error.Disconnected",
                                          "org.freedesktop.DBus.Error.FileNotFound",
                                          "System.Error.ENOENT",
                                          "System.Error.ECONNREFUSED",
                                          "System.Error.ECONNRESET",
                                          "System.Error.ENOTCONN",
                                          "System.Error.EPIPE",
                                          "System.Error.ENOMEDIUM",
                                          "System.Error.EINVAL"};

constexpr Known kJobs[] = {
    {"done", kServiceDone},
    {"unsupported", 1},
    {"dependency", 3},
    {"invalid", 4},
    {"canceled", kServiceWrongState},
    {"skipped", kServiceWrongState},
    {"assert", kServiceWrongState},
    {"once", kServiceWrongState},
    {"timeout", kServiceTimeOut},
    {"collected", 16},
};

template <std::size_t size>
const Known* Find(const Known (&table)[size], std::string_view name) {
  const auto found = std::find_if(std::begin(table), std::end(table),
                                  [&](const Known& known) { return known.name == name; });
  return found == std::end(table) ? nullptr : found;
}

}  // namespace

Result<int> RefusalOf(std::string_view dbus_error, const std::string& text) {
  if (const Known* const known = Find(kErrors, dbus_error)) return known->number;
  const bool unanswered =
      std::find(std::begin(kNoAnswer), std::end(kNoAnswer), dbus_error) != std::end(kNoAnswer);
  if (unanswered || dbus_error.starts_with("org.freedesktop.DBus.Error.Spawn.")) {
    return Error{ErrorKind::kUnavailable, std::string(dbus_error) + ": " + text};
  }
  return kServiceUnknownFailure;
}

int JobOutcome(std::string_view result) {
  const Known* const known = Find(kJobs, result);
  return known ? known->number : kServiceUnknownFailure;
}

int StartFailure(std::string_view service_result, std::int32_t exit_status) {
  // systemd's own exit statuses for what fails before the program runs.
  constexpr std::int32_t kNoExecutable = 203;
  constexpr std::int32_t kNoGroup = 216;
  constexpr std::int32_t kNoUser = 217;
  if (service_result == "timeout") return kServiceTimeOut;
  if (service_result == "start-limit-hit") return kServiceWrongState;
  if (exit_status == kNoExecutable) return kServiceNoProgram;
  if (exit_status == kNoGroup || exit_status == kNoUser) return 22;
  return kServiceUnknownFailure;
}

}  // namespace zendrix::platform
