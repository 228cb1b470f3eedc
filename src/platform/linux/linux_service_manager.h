// systemd over the system bus. The service "ZENDRIX" is the unit "zendrix.service". The user may be asked for
// the right to start or stop it by the desktop's own agent; the call waits for that. Every call makes its own
// connection, so that a bus that was restarted is no trouble.
//
// A call has one deadline for everything: connection, questions, permission and job. The dialogue runs on a
// thread of its own, because the bus library cannot bound the opening of a connection: a bus or a peer that
// never answers costs the caller the deadline and not more. Nothing is sent behind the deadline.
//
// Results of Run. A job is done when systemd's JobRemoved signal for that very job says so, not when it was
// accepted. "running" is asked before, because systemd itself calls a start of a running unit a success.
//
//   0  job "done"
//   1  errors NotSupported, UnknownMethod; job "unsupported"
//   2  errors AccessDenied, AuthFailed, InteractiveAuthorizationRequired, and PolicyKit's NotAuthorized and
//      Cancelled (the user closed the question)
//   3  job "dependency": a unit that this one needs did not start
//   4  errors JobTypeNotApplicable, OnlyByDependency; job "invalid"
//   5  errors ShuttingDown, TransactionIsDestructive, TransactionJobsConflicting; jobs "canceled" (another
//      request took its place), "skipped", "assert", "once"; a failed start with the service result
//      "start-limit-hit"; a stop of a unit that is stopping already
//   6  a stop of a unit that is not running
//   7  the deadline; errors NoReply, Timeout, TimedOut; job "timeout"; a failed start with the service result
//      "timeout"
//   9  a failed start whose program could not be executed (exit status 203)
//  10  a start of a unit that is running or starting
//  13  error NoSuchUnit: a unit that this one needs is missing
//  14  a start of a masked unit; error UnitMasked
//  16  job "collected": the unit was unloaded under the job
//  18  error TransactionOrderIsCyclic
//  21  errors InvalidArgs, BadUnitSetting
//  22  a failed start whose user or group does not exist (exit status 216, 217)
//   8  everything else, job "failed" included
//
// Errors of both calls: kNotFound when there is no such unit, kUnavailable when there is no bus or no systemd
// on it. Properties also has kPermissionDenied, and kOther at the deadline and for every other refusal: a
// manager is there then.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "platform/service_manager.h"

namespace zendrix::platform {

// The longest that a call may take.
struct ServiceDeadlines {
  // Long enough for a user who has to type a password.
  std::chrono::milliseconds run = std::chrono::seconds(60);
  std::chrono::milliseconds properties = std::chrono::seconds(5);
};

class LinuxServiceManager : public ServiceManager {
 public:
  explicit LinuxServiceManager(ServiceDeadlines deadlines = {}) : deadlines_(deadlines) {}

  Result<int> Run(const std::string& service, ServiceMethod method) override;
  // State: "Running", "Start Pending", "Stop Pending" or "Stopped"; start mode: "Auto" for a unit that is
  // enabled, "Disabled" for one that is masked, otherwise "Manual".
  Result<ServiceProperties> Properties(const std::string& service) override;

 private:
  ServiceDeadlines deadlines_;
};

// "ZENDRIX" -> "zendrix.service"; nothing for a name that no unit can have.
std::optional<std::string> UnitName(std::string_view service);

}  // namespace zendrix::platform
