// A D-Bus daemon of the test's own, in place of the machine's, with a stand-in for systemd on it.
#pragma once

#include <gtest/gtest.h>
#include <sdbus-c++/sdbus-c++.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/linux/bus_message.h"
#include "platform/linux/posix.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace zendrix::test {

class PrivateBus {
 public:
  // `services`: a folder of service files, so that the bus starts programs for those who ask for them.
  explicit PrivateBus(const std::string& services = "") {
    folder_.Write("bus.conf",
                  "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
                  "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">"
                  "<busconfig><type>session</type><listen>unix:path=" +
                      folder_.Path("bus") + "</listen><auth>EXTERNAL</auth>" +
                      (services.empty() ? "" : "<servicedir>" + services + "</servicedir>") +
                      "<policy context=\"default\"><allow user=\"*\"/>"
                      "<allow own=\"*\"/><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                      "<allow receive_sender=\"*\"/></policy></busconfig>");
    const std::string program = platform::FindProgram("dbus-daemon");
    EXPECT_FALSE(program.empty()) << "package dbus";
    int told[2];
    EXPECT_EQ(pipe(told), 0);
    const std::string config = "--config-file=" + folder_.Path("bus.conf");
    const std::string print = "--print-address=" + std::to_string(told[1]);
    const char* arguments[] = {"dbus-daemon", config.c_str(), print.c_str(), "--nofork", nullptr};
    EXPECT_EQ(
        posix_spawn(&daemon_, program.c_str(), nullptr, nullptr, const_cast<char**>(arguments), environ), 0);
    close(told[1]);
    // The daemon tells its address when it listens; the pipe ends when the daemon does.
    char c = 0;
    while (read(told[0], &c, 1) == 1 && c != '\n') told_ += c;
    close(told[0]);
    EXPECT_FALSE(told_.empty()) << "the bus daemon did not come up";
    address_ = std::make_unique<EnvironmentVariable>("DBUS_SYSTEM_BUS_ADDRESS", address());
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  ~PrivateBus() {
    Freeze(false);
    kill(daemon_, SIGTERM);
    waitpid(daemon_, nullptr, 0);
  }

  std::string address() const { return "unix:path=" + folder_.Path("bus"); }
  // A bus that takes connections and says nothing.
  void Freeze(bool frozen) const { kill(daemon_, frozen ? SIGSTOP : SIGCONT); }

 private:
  TemporaryFolder folder_;
  std::string told_;
  pid_t daemon_ = 0;
  std::unique_ptr<EnvironmentVariable> address_;
};

// systemd's side of the bus: one unit, whose properties the test sets. A job is given, and its end told, as
// the test wants it.
class FakeSystemd {
 public:
  // What becomes of the next jobs.
  struct Plan {
    std::string result = "done";  // its end is never told when this is empty
    bool told_before_reply = false;
    std::string stranger = {};  // another program of the bus tells this end of the job first
    std::string refusal = {};   // D-Bus error in place of a job
    bool silent = false;        // no reply at all
  };

  FakeSystemd()
      : bus_(sdbus::createSystemBusConnection("org.freedesktop.systemd1")),
        strange_bus_(sdbus::createSystemBusConnection()) {
    unit_ = sdbus::createObject(*bus_, "/org/freedesktop/systemd1/unit/one");
    for (const char* name : {"LoadState", "ActiveState", "UnitFileState", "Description"}) {
      unit_->registerProperty(name).onInterface("org.freedesktop.systemd1.Unit").withGetter([this, name] {
        return Locked([&] { return unit_values_[name]; });
      });
    }
    constexpr char kService[] = "org.freedesktop.systemd1.Service";
    unit_->registerProperty("Result").onInterface(kService).withGetter(
        [this] { return Locked([&] { return service_result_; }); });
    unit_->registerProperty("ExecMainCode").onInterface(kService).withGetter([this] {
      return Locked([&] { return exit_code_; });
    });
    unit_->registerProperty("ExecMainStatus").onInterface(kService).withGetter([this] {
      return Locked([&] { return exit_status_; });
    });
    unit_->finishRegistration();
    manager_ = Manager(*bus_);
    manager_->registerMethod("LoadUnit")
        .onInterface(kManager)
        .implementedAs([this](Reply&& reply, const std::string& unit) {
          const std::lock_guard guard(mutex_);
          loaded_ = unit;
          if (silent_) return unanswered_.push_back(std::move(reply));
          reply.returnResults(sdbus::ObjectPath("/org/freedesktop/systemd1/unit/one"));
        });
    manager_->registerMethod("Subscribe").onInterface(kManager).implementedAs([this] {
      Locked([&] { subscribed_ = true; });
    });
    for (const std::string method : {"StartUnit", "StopUnit"}) {
      manager_->registerMethod(method).onInterface(kManager).implementedAs(
          [this, method](Reply&& reply, const std::string& unit, const std::string& mode) {
            const std::lock_guard guard(mutex_);
            jobs_.push_back(method + " " + unit + " " + mode);
            Take(method == "StartUnit", std::move(reply));
          });
    }
    manager_->finishRegistration();
    stranger_ = Manager(*strange_bus_);
    stranger_->finishRegistration();
    // Seen before it is answered.
    watch_ = bus_->addMatch(
        "type='method_call',interface='org.freedesktop.DBus.Properties'",
        [this](sdbus::Message& call) { Locked([&] { reads_.push_back(call.getMemberName()); }); });
    bus_->enterEventLoopAsync();
  }
  ~FakeSystemd() { bus_->leaveEventLoop(); }
  FakeSystemd(const FakeSystemd&) = delete;
  FakeSystemd& operator=(const FakeSystemd&) = delete;

  void Set(const std::string& name, const std::string& value) {
    Locked([&] { unit_values_[name] = value; });
  }
  void SetService(const std::string& result, std::int32_t exit_code, std::int32_t exit_status) {
    const std::lock_guard guard(mutex_);
    service_result_ = result;
    exit_code_ = exit_code;
    exit_status_ = exit_status;
  }
  void Next(const Plan& plan) {
    Locked([&] { plan_ = plan; });
  }
  // LoadUnit is never answered.
  void FallSilent() {
    Locked([&] { silent_ = true; });
  }
  std::vector<std::string> jobs() {
    return Locked([&] { return jobs_; });
  }
  // Whether the last job was asked for by somebody with a user who can be asked for the right.
  bool interactive() {
    return Locked([&] { return interactive_; });
  }
  std::string loaded() {
    return Locked([&] { return loaded_; });
  }
  // The calls that read properties.
  std::vector<std::string> reads() {
    return Locked([&] { return reads_; });
  }

 private:
  using Reply = sdbus::Result<sdbus::ObjectPath>;
  static constexpr char kManager[] = "org.freedesktop.systemd1.Manager";

  static std::unique_ptr<sdbus::IObject> Manager(sdbus::IConnection& bus) {
    auto manager = sdbus::createObject(bus, "/org/freedesktop/systemd1");
    manager->registerSignal("JobRemoved")
        .onInterface(kManager)
        .withParameters<std::uint32_t, sdbus::ObjectPath, std::string, std::string>();
    return manager;
  }

  template <class Body>
  std::invoke_result_t<Body> Locked(Body body) {
    const std::lock_guard guard(mutex_);
    return body();
  }

  void Take(bool start, Reply&& reply) {
    const auto* const call = manager_->getCurrentlyProcessedMessage();
    interactive_ = platform::AllowsInteractiveAuthorization(*call);
    if (plan_.silent) return unanswered_.push_back(std::move(reply));
    if (!plan_.refusal.empty()) return reply.returnError(sdbus::Error(plan_.refusal, "refused"));
    const sdbus::ObjectPath job("/org/freedesktop/systemd1/job/" + std::to_string(++last_job_));
    if (!plan_.stranger.empty()) Tell(*stranger_, call->getSender(), job, plan_.stranger);
    if (plan_.result == "done") unit_values_["ActiveState"] = start ? "active" : "inactive";
    // The end of somebody else's job comes first in any case.
    Tell(*manager_, "", sdbus::ObjectPath("/org/freedesktop/systemd1/job/999"), "dependency");
    if (plan_.told_before_reply) Tell(*manager_, "", job, plan_.result);
    reply.returnResults(job);
    if (!plan_.told_before_reply && !plan_.result.empty()) Tell(*manager_, "", job, plan_.result);
  }

  // Without a subscriber systemd tells nothing.
  void Tell(sdbus::IObject& teller, const std::string& to, const sdbus::ObjectPath& job,
            const std::string& result) {
    if (!subscribed_) return;
    auto signal = teller.createSignal(kManager, "JobRemoved");
    signal << last_job_ << job << std::string("zendrix.service") << result;
    if (!to.empty()) signal.setDestination(to);
    teller.emitSignal(signal);
  }

  std::mutex mutex_;
  std::map<std::string, std::string> unit_values_ = {{"LoadState", "loaded"},
                                                     {"ActiveState", "active"},
                                                     {"UnitFileState", "enabled"},
                                                     {"Description", "Zendrix Agent"}};
  std::string service_result_ = "success";
  std::int32_t exit_code_ = 0;
  std::int32_t exit_status_ = 0;
  Plan plan_;
  bool silent_ = false;
  bool subscribed_ = false;
  std::uint32_t last_job_ = 0;
  std::vector<std::string> jobs_;
  std::vector<std::string> reads_;
  std::string loaded_;
  bool interactive_ = false;
  std::unique_ptr<sdbus::IConnection> bus_;
  std::unique_ptr<sdbus::IConnection> strange_bus_;
  std::unique_ptr<sdbus::IObject> manager_;
  std::unique_ptr<sdbus::IObject> stranger_;
  std::unique_ptr<sdbus::IObject> unit_;
  sdbus::Slot watch_;
  std::vector<Reply> unanswered_;
};

}  // namespace zendrix::test
