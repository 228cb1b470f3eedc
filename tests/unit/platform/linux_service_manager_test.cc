#include "platform/linux/linux_service_manager.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sdbus-c++/sdbus-c++.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <mutex>

#include "platform/linux/posix.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

// A bus of the test's own, in place of the machine's.
class PrivateBus {
 public:
  PrivateBus() {
    const std::string socket = folder_.Path("bus");
    folder_.Write("bus.conf",
                  "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
                  "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">"
                  "<busconfig><type>session</type><listen>unix:path=" +
                      socket +
                      "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow user=\"*\"/>"
                      "<allow own=\"*\"/><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                      "<allow receive_sender=\"*\"/></policy></busconfig>");
    const std::string program = FindProgram("dbus-daemon");
    EXPECT_FALSE(program.empty()) << "package dbus";
    const std::string config = "--config-file=" + folder_.Path("bus.conf");
    const char* arguments[] = {"dbus-daemon", config.c_str(), "--nofork", nullptr};
    EXPECT_EQ(
        posix_spawn(&daemon_, program.c_str(), nullptr, nullptr, const_cast<char**>(arguments), environ), 0);
    for (int i = 0; i < 2000 && !std::filesystem::exists(socket); ++i) poll(nullptr, 0, 5);
  }
  ~PrivateBus() {
    kill(daemon_, SIGTERM);
    waitpid(daemon_, nullptr, 0);
  }

  const std::string& folder() const { return folder_.path(); }

 private:
  test::TemporaryFolder folder_;
  pid_t daemon_ = 0;
};

// Whether a call says that a user is there to be asked for the right. The C++ layer does not tell.
bool MayAskTheUser(const sdbus::Message& message) {
  struct Handle : sdbus::Message {
    static void* Of(const sdbus::Message& of) { return of.*(&Handle::msg_); }
  };
  using Function = int (*)(void*);
  void* const found = dlsym(RTLD_DEFAULT, "sd_bus_message_get_allow_interactive_authorization");
  return found && reinterpret_cast<Function>(found)(Handle::Of(message)) > 0;
}

// systemd's side of the bus: one unit, whose properties the test sets.
class FakeSystemd {
 public:
  FakeSystemd() : bus_(sdbus::createSystemBusConnection("org.freedesktop.systemd1")) {
    manager_ = sdbus::createObject(*bus_, "/org/freedesktop/systemd1");
    const auto job = [this](const std::string& method) {
      return [this, method](const std::string& unit, const std::string& mode) {
        const std::lock_guard guard(mutex_);
        jobs_.push_back(method + " " + unit + " " + mode);
        interactive_ = MayAskTheUser(*manager_->getCurrentlyProcessedMessage());
        if (!refusal_.empty()) throw sdbus::Error(refusal_, "refused");
        return sdbus::ObjectPath("/org/freedesktop/systemd1/job/1");
      };
    };
    manager_->registerMethod("LoadUnit")
        .onInterface("org.freedesktop.systemd1.Manager")
        .implementedAs([this](const std::string& unit) {
          const std::lock_guard guard(mutex_);
          loaded_ = unit;
          return sdbus::ObjectPath("/org/freedesktop/systemd1/unit/one");
        });
    for (const char* method : {"StartUnit", "StopUnit"}) {
      manager_->registerMethod(method)
          .onInterface("org.freedesktop.systemd1.Manager")
          .implementedAs(job(method));
    }
    manager_->finishRegistration();
    unit_ = sdbus::createObject(*bus_, "/org/freedesktop/systemd1/unit/one");
    for (const char* name : {"LoadState", "ActiveState", "UnitFileState", "Description"}) {
      unit_->registerProperty(name)
          .onInterface("org.freedesktop.systemd1.Unit")
          .withGetter([this, name = std::string(name)] {
            const std::lock_guard guard(mutex_);
            return properties_[name];
          });
    }
    unit_->finishRegistration();
    bus_->enterEventLoopAsync();
  }
  ~FakeSystemd() { bus_->leaveEventLoop(); }

  void Set(const std::string& name, const std::string& value) {
    const std::lock_guard guard(mutex_);
    properties_[name] = value;
  }
  void Refuse(const std::string& error) {
    const std::lock_guard guard(mutex_);
    refusal_ = error;
  }
  std::vector<std::string> jobs() {
    const std::lock_guard guard(mutex_);
    return jobs_;
  }
  bool interactive() {
    const std::lock_guard guard(mutex_);
    return interactive_;
  }
  std::string loaded() {
    const std::lock_guard guard(mutex_);
    return loaded_;
  }

 private:
  std::mutex mutex_;
  std::map<std::string, std::string> properties_ = {{"LoadState", "loaded"},
                                                    {"ActiveState", "active"},
                                                    {"UnitFileState", "enabled"},
                                                    {"Description", "Zendrix Agent"}};
  std::vector<std::string> jobs_;
  std::string loaded_;
  std::string refusal_;
  bool interactive_ = false;
  std::unique_ptr<sdbus::IConnection> bus_;
  std::unique_ptr<sdbus::IObject> manager_;
  std::unique_ptr<sdbus::IObject> unit_;
};

class LinuxServiceManagerTest : public ::testing::Test {
 protected:
  std::string Properties() {
    const auto properties = services_.Properties("ZENDRIX");
    if (!properties) return "error " + std::to_string(static_cast<int>(properties.error().kind));
    return properties.value().state + "," + properties.value().display_name + "," +
           properties.value().start_mode;
  }
  int Run(ServiceMethod method) {
    const auto result = services_.Run("ZENDRIX", method);
    return result ? result.value() : -1;
  }

  PrivateBus bus_;
  test::EnvironmentVariable address_{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + bus_.folder() + "/bus"};
  FakeSystemd systemd_;
  LinuxServiceManager services_;
};

TEST_F(LinuxServiceManagerTest, PropertiesAreThoseOfTheUnit) {
  EXPECT_EQ(Properties(), "Running,Zendrix Agent,Auto");
  EXPECT_EQ(systemd_.loaded(), "zendrix.service");
  const std::map<std::string, std::string> states = {
      {"active", "Running"},           {"reloading", "Running"},
      {"activating", "Start Pending"}, {"deactivating", "Stop Pending"},
      {"inactive", "Stopped"},         {"failed", "Stopped"}};
  for (const auto& [active, state] : states) {
    systemd_.Set("ActiveState", active);
    EXPECT_EQ(Properties(), state + ",Zendrix Agent,Auto");
  }
  systemd_.Set("ActiveState", "inactive");
  const std::map<std::string, std::string> modes = {{"enabled", "Auto"},    {"enabled-runtime", "Auto"},
                                                    {"disabled", "Manual"}, {"static", "Manual"},
                                                    {"", "Manual"},         {"masked", "Disabled"}};
  for (const auto& [enabled, mode] : modes) {
    systemd_.Set("UnitFileState", enabled);
    EXPECT_EQ(Properties(), "Stopped,Zendrix Agent," + mode);
  }
}

TEST_F(LinuxServiceManagerTest, MethodsAreHandedToSystemd) {
  EXPECT_EQ(Run(ServiceMethod::kStop), 0);
  EXPECT_TRUE(systemd_.interactive());
  systemd_.Set("ActiveState", "inactive");
  EXPECT_EQ(Run(ServiceMethod::kStart), 0);
  EXPECT_EQ(systemd_.jobs(), (std::vector<std::string>{"StopUnit zendrix.service replace",
                                                       "StartUnit zendrix.service replace"}));
}

TEST_F(LinuxServiceManagerTest, WhatIsAlreadySoHasItsOwnAnswers) {
  EXPECT_EQ(Run(ServiceMethod::kStart), 10);
  systemd_.Set("ActiveState", "inactive");
  EXPECT_EQ(Run(ServiceMethod::kStop), 6);
  systemd_.Set("LoadState", "masked");
  EXPECT_EQ(Run(ServiceMethod::kStart), 14);
  EXPECT_TRUE(systemd_.jobs().empty());
}

TEST_F(LinuxServiceManagerTest, MissingUnitIsNotFound) {
  systemd_.Set("LoadState", "not-found");
  systemd_.Set("ActiveState", "inactive");
  EXPECT_EQ(services_.Run("ZENDRIX", ServiceMethod::kStart).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(services_.Properties("ZENDRIX").error().kind, ErrorKind::kNotFound);
}

TEST_F(LinuxServiceManagerTest, RefusalsOfSystemdBecomeNumbers) {
  systemd_.Set("ActiveState", "inactive");
  for (const auto& [error, number] :
       std::map<std::string, int>{{"org.freedesktop.DBus.Error.AccessDenied", 2},
                                  {"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", 2},
                                  {"org.freedesktop.systemd1.TransactionOrderIsCyclic", 18},
                                  {"org.freedesktop.systemd1.SomethingNew", 8}}) {
    systemd_.Refuse(error);
    EXPECT_EQ(Run(ServiceMethod::kStart), number) << error;
  }
}

TEST(ServiceManagerWithoutBusTest, NobodyAnswers) {
  const test::TemporaryFolder empty;
  const test::EnvironmentVariable address("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + empty.Path("bus"));
  LinuxServiceManager services;
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStop).error().kind, ErrorKind::kUnavailable);
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kUnavailable);
  const test::EnvironmentVariable nonsense("DBUS_SYSTEM_BUS_ADDRESS", "no address at all");
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kUnavailable);
}

TEST(ServiceManagerWithoutBusTest, BusWithoutSystemdDoesNotAnswerEither) {
  const PrivateBus bus;
  const test::EnvironmentVariable address("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + bus.folder() + "/bus");
  LinuxServiceManager services;
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStart).error().kind, ErrorKind::kUnavailable);
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kUnavailable);
}

TEST(UnitNameTest, IsTheServiceInLowerCase) {
  EXPECT_EQ(UnitName("ZENDRIX"), "zendrix.service");
  EXPECT_EQ(UnitName("A-b_1.x"), "a-b_1.x.service");
  for (const std::string& name : {std::string(), std::string("a b"), std::string("a/b"),
                                  std::string("a\0b", 3), std::string("a@b"), std::string(201, 'a')}) {
    EXPECT_FALSE(UnitName(name)) << name;
  }
}

TEST(RefusalOfTest, TimeOutsRightsAndAbsenceAreToldApart) {
  EXPECT_EQ(RefusalOf("org.freedesktop.DBus.Error.NoReply", "").value(), 7);
  EXPECT_EQ(RefusalOf("org.freedesktop.DBus.Error.Timeout", "").value(), 7);
  EXPECT_EQ(RefusalOf("org.freedesktop.PolicyKit1.Error.NotAuthorized", "").value(), 2);
  EXPECT_EQ(RefusalOf("org.freedesktop.DBus.Error.NotSupported", "").value(), 1);
  EXPECT_EQ(RefusalOf("org.freedesktop.systemd1.NoSuchUnit", "").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(RefusalOf("org.freedesktop.DBus.Error.ServiceUnknown", "").error().kind, ErrorKind::kUnavailable);
  EXPECT_EQ(RefusalOf("org.freedesktop.DBus.Error.Spawn.ChildExited", "").error().kind,
            ErrorKind::kUnavailable);
}

}  // namespace
}  // namespace zendrix::platform
