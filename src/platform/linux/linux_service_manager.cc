#include "platform/linux/linux_service_manager.h"

#include <dlfcn.h>
#include <sdbus-c++/sdbus-c++.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>

namespace zendrix::platform {
namespace {

constexpr const char* kDestination = "org.freedesktop.systemd1";
constexpr const char* kManager = "org.freedesktop.systemd1.Manager";
constexpr const char* kUnit = "org.freedesktop.systemd1.Unit";
constexpr auto kAskTimeout = std::chrono::seconds(10);
// Long enough for a user who looks for his password.
constexpr auto kRunTimeout = std::chrono::minutes(2);
constexpr int kAlreadyRunning = 10;
constexpr int kNotRunning = 6;
constexpr int kDisabled = 14;
constexpr int kUnknownFailure = 8;

struct UnitState {
  std::string load;     // "loaded", "not-found", "masked", ...
  std::string active;   // "active", "activating", "inactive", ...
  std::string enabled;  // "enabled", "disabled", "masked", ...; empty for a unit without a file
  std::string description;

  bool Running() const { return active == "active" || active == "reloading"; }
  bool StartPending() const { return active == "activating"; }
};

// The message's handle is there for derived classes only; the pointer to member is taken as one.
class MessageHandle : public sdbus::MethodCall {
 public:
  static void* Of(const sdbus::MethodCall& call) { return call.*(&MessageHandle::msg_); }
};

// The bus library can tell the service manager that a user is there to be asked for the right, but the C++
// layer does not offer it. The function is looked up, because only the C++ layer is linked; without it the
// answer is "no access".
void AllowInteractiveAuthorization(const sdbus::MethodCall& call) {
  using Function = int (*)(void* message, int allow);
  void* const found = dlsym(RTLD_DEFAULT, "sd_bus_message_set_allow_interactive_authorization");
  if (found) reinterpret_cast<Function>(found)(MessageHandle::Of(call), 1);
}

std::uint64_t Microseconds(std::chrono::microseconds timeout) {
  return static_cast<std::uint64_t>(timeout.count());
}

class Systemd {
 public:
  explicit Systemd(std::unique_ptr<sdbus::IConnection> bus)
      : bus_(std::move(bus)), manager_(Proxy("/org/freedesktop/systemd1")) {}

  // Loads the unit's description when nobody did before; a unit that does not exist has the load state
  // "not-found".
  UnitState State(const std::string& unit) {
    sdbus::ObjectPath path;
    manager_->callMethod("LoadUnit")
        .onInterface(kManager)
        .withTimeout(kAskTimeout)
        .withArguments(unit)
        .storeResultsTo(path);
    const auto proxy = Proxy(path);
    return {Property(*proxy, "LoadState"), Property(*proxy, "ActiveState"), Property(*proxy, "UnitFileState"),
            Property(*proxy, "Description")};
  }

  // Accepted, not done: the job goes on behind the answer.
  void RunJob(const char* method, const std::string& unit) {
    auto call = manager_->createMethodCall(kManager, method);
    call << unit << std::string("replace");
    AllowInteractiveAuthorization(call);
    manager_->callMethod(call, Microseconds(kRunTimeout));
  }

 private:
  std::unique_ptr<sdbus::IProxy> Proxy(const std::string& path) {
    return sdbus::createProxy(*bus_, kDestination, path);
  }

  static std::string Property(sdbus::IProxy& proxy, const std::string& name) {
    sdbus::Variant value;
    proxy.callMethod("Get")
        .onInterface("org.freedesktop.DBus.Properties")
        .withTimeout(kAskTimeout)
        .withArguments(std::string(kUnit), name)
        .storeResultsTo(value);
    return value.get<std::string>();
  }

  std::unique_ptr<sdbus::IConnection> bus_;
  std::unique_ptr<sdbus::IProxy> manager_;
};

Error NoSuchUnit(const std::string& unit) {
  return {ErrorKind::kNotFound, unit + ": no such service"};
}

// Runs `body` with the unit's name and a connection; everything the bus library throws becomes an outcome.
template <class T, class Body>
Result<T> Guarded(const std::string& service, Body body) {
  const auto unit = UnitName(service);
  if (!unit) return NoSuchUnit(service);
  std::unique_ptr<sdbus::IConnection> bus;
  try {
    bus = sdbus::createSystemBusConnection();
  } catch (const std::exception& error) {
    return Error{ErrorKind::kUnavailable, error.what()};
  }
  try {
    Systemd systemd(std::move(bus));
    return body(*unit, systemd);
  } catch (const sdbus::Error& error) {
    const auto refusal = RefusalOf(error.getName(), error.getMessage());
    if (!refusal) return refusal.error();
    if constexpr (std::is_same_v<T, int>) {
      return refusal.value();
    } else {
      return Error{refusal.value() == 2 ? ErrorKind::kPermissionDenied : ErrorKind::kUnavailable,
                   error.what()};
    }
  } catch (const std::exception& error) {
    return Error{ErrorKind::kUnavailable, error.what()};
  }
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

Result<int> RefusalOf(std::string_view dbus_error, const std::string& text) {
  struct Known {
    std::string_view name;
    int number;
  };
  static constexpr Known kNumbers[] = {
      {"org.freedesktop.DBus.Error.NotSupported", 1},
      {"org.freedesktop.DBus.Error.UnknownMethod", 1},
      {"org.freedesktop.DBus.Error.AccessDenied", 2},
      {"org.freedesktop.DBus.Error.AuthFailed", 2},
      {"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", 2},
      {"org.freedesktop.PolicyKit1.Error.NotAuthorized", 2},
      {"org.freedesktop.PolicyKit1.Error.Cancelled", 2},
      {"org.freedesktop.systemd1.JobTypeNotApplicable", 4},
      {"org.freedesktop.systemd1.OnlyByDependency", 4},
      {"org.freedesktop.systemd1.ShuttingDown", 5},
      {"org.freedesktop.systemd1.TransactionIsDestructive", 5},
      {"org.freedesktop.systemd1.TransactionJobsConflicting", 5},
      {"org.freedesktop.DBus.Error.NoReply", 7},
      {"org.freedesktop.DBus.Error.Timeout", 7},
      {"org.freedesktop.DBus.Error.TimedOut", 7},
      {"org.freedesktop.systemd1.UnitMasked", kDisabled},
      {"org.freedesktop.systemd1.TransactionOrderIsCyclic", 18},
      {"org.freedesktop.DBus.Error.InvalidArgs", 21},
  };
  static constexpr std::string_view kNoAnswer[] = {"org.freedesktop.DBus.Error.ServiceUnknown",
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
  Error error{ErrorKind::kUnavailable, std::string(dbus_error) + ": " + text};
  for (const Known& known : kNumbers) {
    if (known.name == dbus_error) return known.number;
  }
  if (dbus_error == "org.freedesktop.systemd1.NoSuchUnit") {
    error.kind = ErrorKind::kNotFound;
    return error;
  }
  const bool unanswered =
      std::find(std::begin(kNoAnswer), std::end(kNoAnswer), dbus_error) != std::end(kNoAnswer);
  if (unanswered || dbus_error.starts_with("org.freedesktop.DBus.Error.Spawn.")) return error;
  return kUnknownFailure;
}

Result<int> LinuxServiceManager::Run(const std::string& service, ServiceMethod method) {
  return Guarded<int>(service, [&](const std::string& unit, Systemd& systemd) -> Result<int> {
    const UnitState state = systemd.State(unit);
    if (state.load == "not-found") return NoSuchUnit(unit);
    const bool up = state.Running() || state.StartPending();
    if (method == ServiceMethod::kStart) {
      if (up) return kAlreadyRunning;
      if (state.load == "masked") return kDisabled;
      systemd.RunJob("StartUnit", unit);
    } else {
      if (!up) return kNotRunning;
      systemd.RunJob("StopUnit", unit);
    }
    return 0;
  });
}

Result<ServiceProperties> LinuxServiceManager::Properties(const std::string& service) {
  return Guarded<ServiceProperties>(
      service, [&](const std::string& unit, Systemd& systemd) -> Result<ServiceProperties> {
        const UnitState state = systemd.State(unit);
        if (state.load == "not-found") return NoSuchUnit(unit);
        ServiceProperties properties;
        properties.state = state.Running()                  ? "Running"
                           : state.StartPending()           ? "Start Pending"
                           : state.active == "deactivating" ? "Stop Pending"
                                                            : "Stopped";
        properties.display_name = state.description;
        properties.start_mode = state.enabled.starts_with("enabled")                            ? "Auto"
                                : state.enabled.starts_with("masked") || state.load == "masked" ? "Disabled"
                                                                                                : "Manual";
        return properties;
      });
}

}  // namespace zendrix::platform
