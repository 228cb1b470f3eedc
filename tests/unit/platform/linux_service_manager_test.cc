#include "platform/linux/linux_service_manager.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <map>

#include "private_bus.h"

namespace zendrix::platform {
namespace {

using test::FakeSystemd;
using test::PrivateBus;

constexpr ServiceDeadlines kShort{std::chrono::milliseconds(300), std::chrono::milliseconds(300)};
// Never reached, however busy the machine is.
constexpr ServiceDeadlines kLong{std::chrono::seconds(100), std::chrono::seconds(100)};

class LinuxServiceManagerTest : public ::testing::Test {
 protected:
  static std::string Text(const Result<ServiceProperties>& properties) {
    if (!properties) return "error " + std::to_string(static_cast<int>(properties.error().kind));
    return properties.value().state + "," + properties.value().display_name + "," +
           properties.value().start_mode;
  }
  std::string Properties() { return Text(services_.Properties("ZENDRIX")); }
  int Run(ServiceMethod method) {
    const auto result = services_.Run("ZENDRIX", method);
    return result ? result.value() : -1;
  }
  // The number of a start, or a stop, whose job goes this way.
  int Start(const FakeSystemd::Plan& plan) {
    systemd_.Set("ActiveState", "inactive");
    systemd_.Next(plan);
    return Run(ServiceMethod::kStart);
  }
  int Stop(const FakeSystemd::Plan& plan) {
    systemd_.Set("ActiveState", "active");
    systemd_.Next(plan);
    return Run(ServiceMethod::kStop);
  }

  PrivateBus bus_;
  FakeSystemd systemd_;
  LinuxServiceManager services_{kLong};
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
  const std::map<std::string, std::string> modes = {
      {"enabled", "Auto"}, {"enabled-runtime", "Auto"}, {"disabled", "Manual"},        {"static", "Manual"},
      {"", "Manual"},      {"masked", "Disabled"},      {"masked-runtime", "Disabled"}};
  for (const auto& [enabled, mode] : modes) {
    systemd_.Set("UnitFileState", enabled);
    EXPECT_EQ(Properties(), "Stopped,Zendrix Agent," + mode);
  }
  systemd_.Set("UnitFileState", "enabled");
  systemd_.Set("LoadState", "masked");
  EXPECT_EQ(Properties(), "Stopped,Zendrix Agent,Disabled");
}

// Four reads, one after the other, showed a unit that never was when it changed between them, and each had a
// time limit of its own.
TEST_F(LinuxServiceManagerTest, PropertiesAreReadInOneGo) {
  Properties();
  EXPECT_EQ(systemd_.reads(), std::vector<std::string>{"GetAll"});
}

TEST_F(LinuxServiceManagerTest, MethodsAreHandedToSystemdWithAUserToAsk) {
  EXPECT_EQ(Run(ServiceMethod::kStop), 0);
  EXPECT_TRUE(systemd_.interactive());
  EXPECT_EQ(Run(ServiceMethod::kStart), 0);
  EXPECT_EQ(systemd_.jobs(), (std::vector<std::string>{"StopUnit zendrix.service replace",
                                                       "StartUnit zendrix.service replace"}));
}

TEST_F(LinuxServiceManagerTest, WhatIsAlreadySoIsNoJob) {
  EXPECT_EQ(Run(ServiceMethod::kStart), 10);
  systemd_.Set("ActiveState", "inactive");
  EXPECT_EQ(Run(ServiceMethod::kStop), 6);
  systemd_.Set("ActiveState", "deactivating");
  EXPECT_EQ(Run(ServiceMethod::kStop), 5);
  systemd_.Set("LoadState", "masked");
  EXPECT_EQ(Run(ServiceMethod::kStart), 14);
  EXPECT_TRUE(systemd_.jobs().empty());
}

// An accepted job was called a success although it failed a moment later.
TEST_F(LinuxServiceManagerTest, JobIsDoneWhenItsOwnSignalSaysSo) {
  for (const bool before_reply : {false, true}) {
    EXPECT_EQ(Start({.result = "done", .told_before_reply = before_reply}), 0);
    EXPECT_EQ(Start({.result = "dependency", .told_before_reply = before_reply}), 3);
    EXPECT_EQ(Stop({.result = "canceled", .told_before_reply = before_reply}), 5);
  }
  EXPECT_EQ(Stop({.result = "failed"}), 8);
  EXPECT_EQ(Stop({.result = "timeout"}), 7);
}

TEST_F(LinuxServiceManagerTest, EndOfAJobToldByAStrangerIsNotBelieved) {
  EXPECT_EQ(Start({.result = "dependency", .stranger = "done"}), 3);
}

TEST_F(LinuxServiceManagerTest, FailedStartSaysWhyWhereTheServiceTells) {
  const FakeSystemd::Plan failed{.result = "failed"};
  EXPECT_EQ(Start(failed), 8);
  systemd_.SetService("exit-code", 1, 203);
  EXPECT_EQ(Start(failed), 9);
  EXPECT_EQ(Stop(failed), 8);
  systemd_.SetService("exit-code", 1, 217);
  EXPECT_EQ(Start(failed), 22);
  // The number of a signal is no exit status.
  systemd_.SetService("signal", 2, 203);
  EXPECT_EQ(Start(failed), 8);
  systemd_.SetService("timeout", 2, 9);
  EXPECT_EQ(Start(failed), 7);
}

TEST_F(LinuxServiceManagerTest, MissingUnitIsNotFound) {
  systemd_.Set("LoadState", "not-found");
  systemd_.Set("ActiveState", "inactive");
  EXPECT_EQ(services_.Run("ZENDRIX", ServiceMethod::kStart).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(services_.Run("ZENDRIX", ServiceMethod::kStop).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(services_.Properties("ZENDRIX").error().kind, ErrorKind::kNotFound);
}

TEST_F(LinuxServiceManagerTest, EveryRefusalOfSystemdBecomesItsNumber) {
  const std::map<std::string, int> numbers = {{"DBus.Error.NotSupported", 1},
                                              {"DBus.Error.UnknownMethod", 1},
                                              {"DBus.Error.AccessDenied", 2},
                                              {"DBus.Error.AuthFailed", 2},
                                              {"DBus.Error.InteractiveAuthorizationRequired", 2},
                                              {"PolicyKit1.Error.NotAuthorized", 2},
                                              {"PolicyKit1.Error.Cancelled", 2},
                                              {"systemd1.JobTypeNotApplicable", 4},
                                              {"systemd1.OnlyByDependency", 4},
                                              {"systemd1.ShuttingDown", 5},
                                              {"systemd1.TransactionIsDestructive", 5},
                                              {"systemd1.TransactionJobsConflicting", 5},
                                              {"DBus.Error.NoReply", 7},
                                              {"DBus.Error.Timeout", 7},
                                              {"DBus.Error.TimedOut", 7},
                                              {"systemd1.LoadFailed", 8},
                                              {"systemd1.SomethingNew", 8},
                                              {"systemd1.NoSuchUnit", 13},
                                              {"systemd1.UnitMasked", 14},
                                              {"systemd1.TransactionOrderIsCyclic", 18},
                                              {"systemd1.BadUnitSetting", 21},
                                              {"DBus.Error.InvalidArgs", 21},
                                              // Nobody there: the method could not be run.
                                              {"DBus.Error.ServiceUnknown", -1},
                                              {"DBus.Error.NameHasNoOwner", -1},
                                              {"DBus.Error.Spawn.ChildExited", -1}};
  for (const auto& [name, number] : numbers) {
    const FakeSystemd::Plan refused{.refusal = "org.freedesktop." + name};
    EXPECT_EQ(Start(refused), number) << name;
    EXPECT_EQ(Stop(refused), number) << name;
  }
}

TEST_F(LinuxServiceManagerTest, EveryEndOfAJobBecomesItsNumber) {
  const std::map<std::string, int> numbers = {{"done", 0},    {"unsupported", 1}, {"dependency", 3},
                                              {"invalid", 4}, {"canceled", 5},    {"skipped", 5},
                                              {"assert", 5},  {"once", 5},        {"timeout", 7},
                                              {"failed", 8},  {"new word", 8},    {"collected", 16}};
  for (const auto& [result, number] : numbers) {
    EXPECT_EQ(Start({.result = result}), number) << result;
    EXPECT_EQ(Stop({.result = result}), number) << result;
  }
}

// The limit was each call's own: a manager that answered slowly, or told no end of the job, held the console
// for a sum that nobody had set.
TEST_F(LinuxServiceManagerTest, JobWithoutAnEndIsATimeOut) {
  LinuxServiceManager services(kShort);
  systemd_.Set("ActiveState", "inactive");
  systemd_.Next({.result = ""});
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStart).value(), 7);
  systemd_.Next({.silent = true});
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStart).value(), 7);
}

TEST_F(LinuxServiceManagerTest, ManagerThatNeverAnswersIsATimeOut) {
  LinuxServiceManager services(kShort);
  systemd_.FallSilent();
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStop).value(), 7);
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kOther);
  EXPECT_TRUE(systemd_.jobs().empty());
}

// The bus library waits for the greeting of the bus for a minute and a half, whatever its caller would like.
TEST_F(LinuxServiceManagerTest, BusThatNeverAnswersIsATimeOut) {
  LinuxServiceManager services(kShort);
  bus_.Freeze(true);
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStop).value(), 7);
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kOther);
}

// What is late must not happen behind the caller's back.
TEST_F(LinuxServiceManagerTest, NothingIsAskedForBehindTheDeadline) {
  LinuxServiceManager services(kShort);
  bus_.Freeze(true);
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStop).value(), 7);
  bus_.Freeze(false);
  // By this answer the bus has handled what was sent while it was frozen.
  EXPECT_EQ(Properties(), "Running,Zendrix Agent,Auto");
  EXPECT_TRUE(systemd_.jobs().empty());
}

TEST(ServiceManagerWithoutBusTest, NobodyAnswers) {
  const test::TemporaryFolder empty;
  const test::EnvironmentVariable address("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + empty.Path("bus"));
  LinuxServiceManager services(kLong);
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStop).error().kind, ErrorKind::kUnavailable);
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kUnavailable);
  const test::EnvironmentVariable nonsense("DBUS_SYSTEM_BUS_ADDRESS", "no address at all");
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kUnavailable);
}

TEST(ServiceManagerWithoutBusTest, BusWithoutSystemdDoesNotAnswerEither) {
  const PrivateBus bus;
  LinuxServiceManager services(kLong);
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStart).error().kind, ErrorKind::kUnavailable);
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kUnavailable);
}

TEST(UnitNameTest, IsTheServiceInLowerCase) {
  EXPECT_EQ(UnitName("ZENDRIX"), "zendrix.service");
  EXPECT_EQ(UnitName("A-b_1.x"), "a-b_1.x.service");
  EXPECT_EQ(UnitName("AZaz09"), "azaz09.service");
  EXPECT_TRUE(UnitName(std::string(200, 'a')));
  for (const std::string& name :
       {std::string(), std::string("a b"), std::string("a/b"), std::string("a\0b", 3), std::string("a@b"),
        std::string("a[b"), std::string("a`b"), std::string("a{b"), std::string("a:b"),
        std::string(201, 'a')}) {
    EXPECT_FALSE(UnitName(name)) << name;
  }
}

}  // namespace
}  // namespace zendrix::platform
