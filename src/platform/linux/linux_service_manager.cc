#include "platform/linux/linux_service_manager.h"

#include <poll.h>
#include <sdbus-c++/sdbus-c++.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "platform/linux/bounded_call.h"
#include "platform/linux/bus_message.h"
#include "platform/linux/service_outcomes.h"

namespace zendrix::platform {
namespace {

constexpr const char* kDestination = "org.freedesktop.systemd1";
constexpr const char* kManagerPath = "/org/freedesktop/systemd1";
constexpr const char* kManager = "org.freedesktop.systemd1.Manager";
constexpr const char* kUnit = "org.freedesktop.systemd1.Unit";
constexpr const char* kService = "org.freedesktop.systemd1.Service";
constexpr const char* kTimeOutError = "org.freedesktop.DBus.Error.Timeout";

using SteadyClock = std::chrono::steady_clock;
using Moment = SteadyClock::time_point;
using Properties = std::map<std::string, sdbus::Variant>;

// Microseconds until then; too late is an error of the bus like any other.
std::chrono::microseconds Until(Moment deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - SteadyClock::now());
  if (left.count() <= 0) throw sdbus::Error(kTimeOutError, "the deadline has passed");
  return left;
}

// A property, or `otherwise` when there is none of this name and type.
template <class T>
T PropertyOr(const Properties& properties, const char* name, T otherwise) {
  const auto found = properties.find(name);
  return found != properties.end() && found->second.containsValueOfType<T>() ? found->second.get<T>()
                                                                             : otherwise;
}

struct UnitState {
  std::string load;     // "loaded", "not-found", "masked", ...
  std::string active;   // "active", "activating", "inactive", ...
  std::string enabled;  // "enabled", "disabled", "masked", ...; empty for a unit without a file
  std::string description;

  bool Running() const { return active == "active" || active == "reloading"; }
  bool StartPending() const { return active == "activating"; }
  bool StopPending() const { return active == "deactivating"; }
};

// One dialogue with systemd. Everything throws sdbus::Error, also for a deadline that has passed.
class Systemd {
 public:
  explicit Systemd(Moment deadline)
      : deadline_(deadline),
        bus_(sdbus::createSystemBusConnection()),
        manager_(sdbus::createProxy(*bus_, kDestination, kManagerPath)) {}

  // Loads the unit's description when nobody did before; a unit that does not exist has the load state
  // "not-found".
  UnitState State(const std::string& unit) {
    sdbus::ObjectPath path;
    manager_->callMethod("LoadUnit")
        .onInterface(kManager)
        .withTimeout(Until(deadline_))
        .withArguments(unit)
        .storeResultsTo(path);
    unit_ = sdbus::createProxy(*bus_, kDestination, path);
    const Properties all = All(kUnit);
    const auto text = [&](const char* name) { return PropertyOr(all, name, std::string()); };
    return {text("LoadState"), text("ActiveState"), text("UnitFileState"), text("Description")};
  }

  // Starts a job and waits for its end; the result is systemd's word for it.
  std::string RunJob(const char* method, const std::string& unit) {
    // The signal may come before the reply that tells the job's name, so all are kept.
    std::map<std::string, std::string> ended;  // by sender and job
    bus_->setMethodCallTimeout(Until(deadline_));
    const auto rule = std::string("type='signal',sender='") + kDestination + "',path='" + kManagerPath +
                      "',interface='" + kManager + "',member='JobRemoved'";
    const auto listening = bus_->addMatch(rule, [&](sdbus::Message& signal) {
      std::uint32_t number = 0;
      sdbus::ObjectPath job;
      std::string of_unit;
      std::string result;
      try {
        signal >> number >> job >> of_unit >> result;
      } catch (const sdbus::Error&) {
        return;  // Nothing that systemd sends; and nothing may be thrown through the bus library.
      }
      ended[signal.getSender() + job] = result;
    });
    // Without a subscriber systemd keeps its signals to itself.
    manager_->callMethod("Subscribe").onInterface(kManager).withTimeout(Until(deadline_));
    auto call = manager_->createMethodCall(kManager, method);
    call << unit << std::string("replace");
    AllowInteractiveAuthorization(call);
    auto reply = manager_->callMethod(call, static_cast<std::uint64_t>(Until(deadline_).count()));
    sdbus::ObjectPath job;
    reply >> job;
    // Anybody can send a signal to this connection: only the one who gave the job can tell of its end.
    const std::string wanted = reply.getSender() + job;
    while (!ended.contains(wanted)) Wait();
    return ended[wanted];
  }

  // Why the last start of the unit failed.
  int WhyStartFailed() {
    constexpr std::int32_t kExited = 1;
    const Properties all = All(kService);
    const bool exited = PropertyOr(all, "ExecMainCode", std::int32_t{0}) == kExited;
    return StartFailure(PropertyOr(all, "Result", std::string()),
                        exited ? PropertyOr(all, "ExecMainStatus", std::int32_t{0}) : 0);
  }

 private:
  Properties All(const char* interface) {
    Properties all;
    unit_->callMethod("GetAll")
        .onInterface("org.freedesktop.DBus.Properties")
        .withTimeout(Until(deadline_))
        .withArguments(std::string(interface))
        .storeResultsTo(all);
    return all;
  }

  // Handles one message, or waits for the next.
  void Wait() {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(Until(deadline_));
    if (bus_->processPendingRequest()) return;
    const auto data = bus_->getEventLoopPollData();
    pollfd waiting{data.fd, data.events, 0};
    poll(&waiting, 1, static_cast<int>(left.count()));
  }

  const Moment deadline_;
  std::unique_ptr<sdbus::IConnection> bus_;
  std::unique_ptr<sdbus::IProxy> manager_;
  std::unique_ptr<sdbus::IProxy> unit_;
};

Error NoSuchUnit(const std::string& unit) {
  return {ErrorKind::kNotFound, unit + ": no such service"};
}

// What an error of the bus means to a caller of either kind.
template <class T>
Result<T> Outcome(const sdbus::Error& error) {
  const auto refusal = RefusalOf(error.getName(), error.getMessage());
  if (!refusal) return refusal.error();
  if constexpr (std::is_same_v<T, int>) {
    return refusal.value();
  } else {
    const bool denied = refusal.value() == kServiceNoAccess;
    return Error{denied ? ErrorKind::kPermissionDenied : ErrorKind::kOther, error.what()};
  }
}

template <class T>
using Body = std::function<Result<T>(const std::string& unit, Systemd& systemd)>;

template <class T>
Result<T> Talk(const std::string& unit, Moment deadline, const Body<T>& body) {
  std::unique_ptr<Systemd> systemd;
  try {
    systemd = std::make_unique<Systemd>(deadline);
  } catch (const sdbus::Error& error) {
    // Whatever keeps the connection from being made: there is no bus. Only one that says nothing is slow.
    if (error.getName() == kTimeOutError) return Outcome<T>(error);
    return Error{ErrorKind::kUnavailable, error.what()};
  }
  try {
    return body(unit, *systemd);
  } catch (const sdbus::Error& error) {
    return Outcome<T>(error);
  }
}

// Runs `body` with the unit's name and a connection, on a thread that is left to itself when it is late.
template <class T>
Result<T> Guarded(const std::string& service, std::chrono::milliseconds limit, Body<T> body) {
  const auto unit = UnitName(service);
  if (!unit) return NoSuchUnit(service);
  const Moment deadline = SteadyClock::now() + limit;
  return WithinDeadline<T>(
      deadline, [unit = *unit, deadline, body = std::move(body)] { return Talk<T>(unit, deadline, body); },
      [] { return Outcome<T>(sdbus::Error(kTimeOutError, "the bus does not answer")); });
}

Result<int> Start(const std::string& unit, Systemd& systemd) {
  const UnitState state = systemd.State(unit);
  if (state.load == "not-found") return NoSuchUnit(unit);
  if (state.Running() || state.StartPending()) return kServiceAlreadyRunning;
  if (state.load == "masked") return kServiceDisabled;
  const std::string result = systemd.RunJob("StartUnit", unit);
  return result == "failed" ? systemd.WhyStartFailed() : JobOutcome(result);
}

Result<int> Stop(const std::string& unit, Systemd& systemd) {
  const UnitState state = systemd.State(unit);
  if (state.load == "not-found") return NoSuchUnit(unit);
  if (state.StopPending()) return kServiceWrongState;
  if (!state.Running() && !state.StartPending()) return kServiceNotRunning;
  return JobOutcome(systemd.RunJob("StopUnit", unit));
}

Result<ServiceProperties> Look(const std::string& unit, Systemd& systemd) {
  const UnitState state = systemd.State(unit);
  if (state.load == "not-found") return NoSuchUnit(unit);
  const bool masked = state.enabled.starts_with("masked") || state.load == "masked";
  ServiceProperties properties;
  properties.state = state.Running()        ? "Running"
                     : state.StartPending() ? "Start Pending"
                     : state.StopPending()  ? "Stop Pending"
                                            : "Stopped";
  properties.display_name = state.description;
  properties.start_mode = masked ? "Disabled" : state.enabled.starts_with("enabled") ? "Auto" : "Manual";
  return properties;
}

}  // namespace

std::optional<std::string> UnitName(std::string_view service) {
  constexpr std::size_t kLongest = 200;
  if (service.empty() || service.size() > kLongest) return std::nullopt;
  std::string unit;
  for (const char c : service) {
    const bool upper = c >= 'A' && c <= 'Z';
    const bool other = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
    if (!upper && !other) return std::nullopt;
    unit += upper ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return unit + ".service";
}

Result<int> LinuxServiceManager::Run(const std::string& service, ServiceMethod method) {
  return Guarded<int>(service, deadlines_.run, method == ServiceMethod::kStart ? Start : Stop);
}

Result<ServiceProperties> LinuxServiceManager::Properties(const std::string& service) {
  return Guarded<ServiceProperties>(service, deadlines_.properties, Look);
}

}  // namespace zendrix::platform
