// What a service manager promises, held by the real one (with a stand-in for systemd on a bus of its own), by
// the one for the Agent beside the console, and by the twin alike. What needs a right, a disabled service
// or a stop that takes its time is promised by the first and the twin alone: an Agent has none of it.
#include "platform/service_manager.h"

#include <gtest/gtest.h>

#include "platform/linux/linux_service_manager.h"
#include "platform/linux/local_service_manager.h"
#include "platform/memory/fake_service_manager.h"
#include "private_bus.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

// Each machine has one service, "ZENDRIX", running and enabled, and verbs that change it.
class RealMachine {
 public:
  static constexpr char kAsBegun[] = ",Zendrix Agent,Auto";
  ServiceManager& services() { return services_; }
  void SetState(const std::string& state) {
    systemd_.Set("ActiveState", state == "Running"         ? "active"
                                : state == "Start Pending" ? "activating"
                                : state == "Stop Pending"  ? "deactivating"
                                                           : "inactive");
  }
  void Disable() {
    systemd_.Set("LoadState", "masked");
    systemd_.Set("UnitFileState", "masked");
  }
  void Remove() {
    systemd_.Set("LoadState", "not-found");
    systemd_.Set("ActiveState", "inactive");
  }
  void DenyOnce(ServiceMethod) { systemd_.Next({.refusal = "org.freedesktop.DBus.Error.AccessDenied"}); }
  void Allow() { systemd_.Next({}); }
  void EndManager() {
    gone_ = std::make_unique<test::EnvironmentVariable>("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/bus/here");
  }

 private:
  test::PrivateBus bus_;
  test::FakeSystemd systemd_;
  // Never reached, however busy the machine is.
  LinuxServiceManager services_{ServiceDeadlines{std::chrono::seconds(100), std::chrono::seconds(100)}};
  std::unique_ptr<test::EnvironmentVariable> gone_;
};

class LocalMachine {
 public:
  static constexpr char kAsBegun[] = ",Zendrix Agent,Manual";
  LocalMachine() { EXPECT_EQ(services_.Run("ZENDRIX", ServiceMethod::kStart).value(), 0); }
  ~LocalMachine() { services_.Run("ZENDRIX", ServiceMethod::kStop).ok(); }
  LocalMachine(const LocalMachine&) = delete;
  LocalMachine& operator=(const LocalMachine&) = delete;

  ServiceManager& services() { return services_; }
  void Remove() {
    services_.Run("ZENDRIX", ServiceMethod::kStop).ok();
    services_ = LocalServiceManager({"ZENDRIX", folder_.Path("none"), folder_.path(), {}});
  }

 private:
  test::TemporaryFolder folder_;
  LocalServiceManager services_{
      {"ZENDRIX", ZENDRIX_TEST_AGENT, folder_.path(), {}, std::chrono::seconds(100)}};
};

class TwinMachine {
 public:
  static constexpr char kAsBegun[] = ",Zendrix Agent,Auto";
  TwinMachine() {
    services_.SetRunning("ZENDRIX");
    services_.At("ZENDRIX").display_name = "Zendrix Agent";
  }
  ServiceManager& services() { return services_; }
  void SetState(const std::string& state) { services_.At("ZENDRIX").state = state; }
  void Disable() { services_.At("ZENDRIX").start_mode = "Disabled"; }
  void Remove() { services_.SetMissing("ZENDRIX"); }
  void DenyOnce(ServiceMethod method) { services_.Script(method, 2); }
  void Allow() {}
  void EndManager() { services_.unavailable = true; }

 private:
  FakeServiceManager services_;
};

template <class Machine>
class AnyServiceManager : public ::testing::Test {
 protected:
  static constexpr auto kStart = ServiceMethod::kStart;
  static constexpr auto kStop = ServiceMethod::kStop;

  // The result, or the kind of error as a negative number.
  int Run(ServiceMethod method, const std::string& service = "ZENDRIX") {
    const auto result = machine_.services().Run(service, method);
    return result ? result.value() : -1 - static_cast<int>(result.error().kind);
  }
  std::string Properties(const std::string& service = "ZENDRIX") {
    const auto properties = machine_.services().Properties(service);
    if (!properties) return "error " + std::to_string(static_cast<int>(properties.error().kind));
    return properties.value().state + "," + properties.value().display_name + "," +
           properties.value().start_mode;
  }
  static int Failed(ErrorKind kind) { return -1 - static_cast<int>(kind); }
  static std::string Refused(ErrorKind kind) { return "error " + std::to_string(static_cast<int>(kind)); }

  Machine machine_;
};

using AllMachines = ::testing::Types<RealMachine, LocalMachine, TwinMachine>;
TYPED_TEST_SUITE(AnyServiceManager, AllMachines);

template <class Machine>
class ServiceManagerContract : public AnyServiceManager<Machine> {};

using Machines = ::testing::Types<RealMachine, TwinMachine>;
TYPED_TEST_SUITE(ServiceManagerContract, Machines);

TYPED_TEST(AnyServiceManager, StateFollowsTheMethods) {
  EXPECT_EQ(this->Properties(), std::string("Running") + TypeParam::kAsBegun);
  EXPECT_EQ(this->Run(this->kStop), 0);
  EXPECT_EQ(this->Properties(), std::string("Stopped") + TypeParam::kAsBegun);
  EXPECT_EQ(this->Run(this->kStart), 0);
  EXPECT_EQ(this->Properties(), std::string("Running") + TypeParam::kAsBegun);
}

TYPED_TEST(AnyServiceManager, WhatIsAlreadySoIsNoSuccess) {
  EXPECT_EQ(this->Run(this->kStart), 10);
  EXPECT_EQ(this->Run(this->kStop), 0);
  EXPECT_EQ(this->Run(this->kStop), 6);
}

TYPED_TEST(ServiceManagerContract, WhatIsAlreadySoHasItsOwnNumbers) {
  EXPECT_EQ(this->Run(this->kStart), 10);
  this->machine_.SetState("Start Pending");
  EXPECT_EQ(this->Run(this->kStart), 10);
  this->machine_.SetState("Stopped");
  EXPECT_EQ(this->Run(this->kStop), 6);
  this->machine_.SetState("Stop Pending");
  EXPECT_EQ(this->Run(this->kStop), 5);
  EXPECT_EQ(this->Properties(), "Stop Pending,Zendrix Agent,Auto");
}

TYPED_TEST(ServiceManagerContract, PendingStatesCanBeTurnedRound) {
  this->machine_.SetState("Start Pending");
  EXPECT_EQ(this->Run(this->kStop), 0);
  EXPECT_EQ(this->Properties(), "Stopped,Zendrix Agent,Auto");
  this->machine_.SetState("Stop Pending");
  EXPECT_EQ(this->Run(this->kStart), 0);
  EXPECT_EQ(this->Properties(), "Running,Zendrix Agent,Auto");
}

TYPED_TEST(ServiceManagerContract, DisabledServiceStopsButDoesNotStart) {
  this->machine_.Disable();
  EXPECT_EQ(this->Properties(), "Running,Zendrix Agent,Disabled");
  EXPECT_EQ(this->Run(this->kStart), 10);
  EXPECT_EQ(this->Run(this->kStop), 0);
  EXPECT_EQ(this->Run(this->kStart), 14);
  EXPECT_EQ(this->Properties(), "Stopped,Zendrix Agent,Disabled");
}

TYPED_TEST(ServiceManagerContract, RefusalLeavesTheStateAsItWas) {
  this->machine_.DenyOnce(this->kStop);
  EXPECT_EQ(this->Run(this->kStop), 2);
  EXPECT_EQ(this->Properties(), "Running,Zendrix Agent,Auto");
  this->machine_.Allow();
  EXPECT_EQ(this->Run(this->kStop), 0);
}

TYPED_TEST(AnyServiceManager, NamesAreComparedWithoutRegardToCase) {
  EXPECT_EQ(this->Run(this->kStop, "zendrix"), 0);
  EXPECT_EQ(this->Properties("Zendrix"), std::string("Stopped") + TypeParam::kAsBegun);
}

TYPED_TEST(AnyServiceManager, MissingServiceIsNotFound) {
  this->machine_.Remove();
  EXPECT_EQ(this->Run(this->kStart), this->Failed(ErrorKind::kNotFound));
  EXPECT_EQ(this->Run(this->kStop), this->Failed(ErrorKind::kNotFound));
  EXPECT_EQ(this->Properties(), this->Refused(ErrorKind::kNotFound));
}

TYPED_TEST(AnyServiceManager, NameThatNoServiceCanHaveIsNotFound) {
  EXPECT_EQ(this->Run(this->kStart, "a/b"), this->Failed(ErrorKind::kNotFound));
  EXPECT_EQ(this->Properties(""), this->Refused(ErrorKind::kNotFound));
}

TYPED_TEST(ServiceManagerContract, WithoutAManagerNothingCanBeHad) {
  this->machine_.EndManager();
  EXPECT_EQ(this->Run(this->kStart), this->Failed(ErrorKind::kUnavailable));
  EXPECT_EQ(this->Properties(), this->Refused(ErrorKind::kUnavailable));
}

}  // namespace
}  // namespace zendrix::platform
