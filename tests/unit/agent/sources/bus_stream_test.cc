// The stream of the real bus library on a bus of the test's own, with stand-ins for logind and systemd.
#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "agent/sources/bus_source.h"
#include "platform/linux/linux_clock.h"
#include "unit/platform/private_bus.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kManager[] = "org.freedesktop.login1.Manager";
constexpr char kSession[] = "org.freedesktop.login1.Session";

// logind's side of the bus. Its sessions are made before it tells of them.
class FakeLogind {
 public:
  explicit FakeLogind(const char* name = "org.freedesktop.login1")
      : bus_(name ? sdbus::createSystemBusConnection(name) : sdbus::createSystemBusConnection()) {
    manager_ = sdbus::createObject(*bus_, "/org/freedesktop/login1");
    using Entry = sdbus::Struct<std::string, std::uint32_t, std::string, std::string, sdbus::ObjectPath>;
    manager_->registerMethod("ListSessions").onInterface(kManager).implementedAs([this] {
      std::vector<Entry> list;
      for (const auto& [id, session] : sessions_) list.emplace_back(id, 1000, "x", "seat0", PathOf(id));
      return list;
    });
    for (const char* signal : {"SessionNew", "SessionRemoved"})
      manager_->registerSignal(signal).onInterface(kManager).withParameters<std::string, sdbus::ObjectPath>();
    manager_->finishRegistration();
  }
  ~FakeLogind() {
    if (!loop_.joinable()) return;
    bus_->leaveEventLoop();
    loop_.join();
  }
  FakeLogind(const FakeLogind&) = delete;
  FakeLogind& operator=(const FakeLogind&) = delete;

  // Not while it runs.
  void Add(const std::string& id, const std::map<std::string, std::string>& texts, bool remote = false) {
    auto session = sdbus::createObject(*bus_, PathOf(id));
    for (const auto& [name, text] : texts) {
      session->registerProperty(name).onInterface(kSession).withGetter([text = text] { return text; });
    }
    session->registerProperty("Remote").onInterface(kSession).withGetter([remote] { return remote; });
    session->registerProperty("VTNr").onInterface(kSession).withGetter([] { return std::uint32_t{2}; });
    session->finishRegistration();
    sessions_[id] = std::move(session);
  }
  // Until it goes, or the bus does.
  void Run() {
    loop_ = std::thread([this] {
      try {
        bus_->enterEventLoop();
      } catch (const sdbus::Error&) {
      }
    });
  }
  void Tell(const std::string& signal_name, const std::string& id, const std::string& to = "") {
    auto signal = manager_->createSignal(kManager, signal_name);
    signal << id << PathOf(id);
    if (!to.empty()) signal.setDestination(to);
    manager_->emitSignal(signal);
  }

 private:
  static sdbus::ObjectPath PathOf(const std::string& id) {
    return sdbus::ObjectPath("/org/freedesktop/login1/session/" + id);
  }

  std::unique_ptr<sdbus::IConnection> bus_;
  std::unique_ptr<sdbus::IObject> manager_;
  std::map<std::string, std::unique_ptr<sdbus::IObject>> sessions_;
  std::thread loop_;
};

class FakeUnits {
 public:
  FakeUnits() : bus_(sdbus::createSystemBusConnection("org.freedesktop.systemd1")) {
    manager_ = sdbus::createObject(*bus_, "/org/freedesktop/systemd1");
    manager_->registerSignal("UnitFilesChanged")
        .onInterface("org.freedesktop.systemd1.Manager")
        .withParameters<>();
    manager_->registerMethod("Subscribe")
        .onInterface("org.freedesktop.systemd1.Manager")
        .implementedAs([this] {
          const std::lock_guard guard(mutex_);
          ++subscribed_;
        });
    manager_->finishRegistration();
    bus_->enterEventLoopAsync();
  }
  ~FakeUnits() { bus_->leaveEventLoop(); }
  FakeUnits(const FakeUnits&) = delete;
  FakeUnits& operator=(const FakeUnits&) = delete;
  // Without a subscriber systemd tells nothing.
  void Tell() {
    const std::lock_guard guard(mutex_);
    if (subscribed_ > 0)
      manager_->emitSignal("UnitFilesChanged").onInterface("org.freedesktop.systemd1.Manager");
  }

 private:
  std::mutex mutex_;
  int subscribed_ = 0;
  std::unique_ptr<sdbus::IConnection> bus_;
  std::unique_ptr<sdbus::IObject> manager_;
};

class RealBus : public testing::Test {
 protected:
  void SetUp() override {
    if (OpenSystemBus().refusal == "this Agent was built without libsystemd")
      GTEST_SKIP() << "built without libsystemd";
  }
  void Start() {
    source = std::make_unique<BusSource>(clock, OpenSystemBus, [this] { ++units; });
  }
  void Drain() {
    std::vector<Observation> seen;
    source->Drain(seen);
    for (const Observation& one : seen)
      texts.push_back((one.kind == Observation::Kind::kCame ? "+" : "-") + one.item.description);
  }
  // Drains until it holds, for a minute at most.
  template <class Holds>
  bool Until(Holds holds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    for (;;) {
      Drain();
      if (holds()) return true;
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

  test::PrivateBus bus;
  platform::LinuxClock clock;
  std::unique_ptr<BusSource> source;
  std::vector<std::string> texts;
  int units = 0;
};

TEST_F(RealBus, SessionsComeAndGo) {
  FakeLogind logind;
  logind.Add("1", {{"Name", "ann"}, {"TTY", "tty2"}, {"Class", "user"}, {"RemoteHost", ""}});
  logind.Add("2", {{"Name", "bob"}, {"TTY", ""}, {"Class", "user"}, {"RemoteHost", "192.0.2.7"}}, true);
  logind.Add("c3", {{"Name", "gdm"}, {"TTY", "tty1"}, {"Class", "greeter"}});
  logind.Add("4", {{"Name", "joe"}, {"Display", ":0"}, {"TTY", ""}, {"Class", "user"}});
  logind.Run();
  Start();
  EXPECT_EQ(source->level(), (SourceLevel{Level::kNotices, "logind", ""}));
  Drain();
  EXPECT_THAT(texts, testing::UnorderedElementsAre("+ann on tty2", "+bob from 192.0.2.7", "+joe on _0"));
  texts.clear();
  logind.Tell("SessionRemoved", "2");
  EXPECT_TRUE(Until([&] { return !texts.empty(); }));
  logind.Tell("SessionNew", "2");
  EXPECT_TRUE(Until([&] { return texts.size() == 2; }));
  EXPECT_THAT(texts, ElementsAre("-bob from 192.0.2.7", "+bob from 192.0.2.7"));
}

TEST_F(RealBus, SessionThatEndsAtOnceIsToldAllTheSame) {
  FakeLogind logind;
  logind.Run();
  Start();
  logind.Tell("SessionNew", "9");  // nothing answers for it any more
  logind.Tell("SessionRemoved", "9");
  EXPECT_TRUE(Until([&] { return texts.size() == 2; }));
  EXPECT_THAT(texts, ElementsAre("+an unknown user on no terminal", "-an unknown user on no terminal"));
}

// Anybody may send a signal of this name; only logind's counts.
TEST_F(RealBus, StrangerCannotTellOfSessions) {
  FakeLogind logind;
  logind.Add("1", {{"Name", "ann"}, {"TTY", "tty2"}, {"Class", "user"}});
  logind.Run();
  Start();
  Drain();
  FakeLogind stranger(nullptr);
  for (int i = 1; i < 40; ++i) {
    // To whoever is on the bus, whatever it asked for.
    stranger.Tell("SessionRemoved", "1", ":1." + std::to_string(i));
    stranger.Tell("SessionNew", "66", ":1." + std::to_string(i));
  }
  stranger.Tell("SessionRemoved", "1");
  texts.clear();
  logind.Tell("SessionNew", "7");
  EXPECT_TRUE(Until([&] { return !texts.empty(); }));
  EXPECT_THAT(texts, ElementsAre("+an unknown user on no terminal"));
}

TEST_F(RealBus, ChangedUnitsAreToldToASubscriber) {
  FakeLogind logind;
  logind.Run();
  FakeUnits systemd;
  Start();
  systemd.Tell();
  EXPECT_TRUE(Until([&] { return units > 0; }));
}

TEST_F(RealBus, WithoutLogindTheLevelSaysSo) {
  Start();
  EXPECT_EQ(source->level().level, Level::kNone);
  EXPECT_THAT(source->level().reason, HasSubstr("logind does not answer"));
}

TEST_F(RealBus, LogindThatEndsLowersTheLevel) {
  {
    FakeLogind logind;
    logind.Add("1", {{"Name", "ann"}, {"TTY", "tty2"}, {"Class", "user"}});
    logind.Run();
    Start();
    Drain();
    texts.clear();
  }
  EXPECT_TRUE(Until([&] { return source->level().level == Level::kNone; }));
  EXPECT_EQ(source->level().reason, "logind ended");
  EXPECT_THAT(texts, IsEmpty());
}

TEST(NoBus, TheLevelSaysWhy) {
  const test::EnvironmentVariable nowhere("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
  platform::LinuxClock clock;
  BusSource source(clock, OpenSystemBus);
  EXPECT_EQ(source.level().level, Level::kNone);
  EXPECT_NE(source.level().reason, "");
}

TEST(DyingBus, TheLevelFalls) {
  platform::LinuxClock clock;
  auto bus = std::make_unique<test::PrivateBus>();
  std::unique_ptr<BusSource> source;
  {
    FakeLogind logind;
    logind.Run();
    source = std::make_unique<BusSource>(clock, OpenSystemBus);
    if (source->level().level == Level::kNone) GTEST_SKIP() << source->level().reason;
    bus.reset();
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    std::vector<Observation> seen;
    while (source->level().level != Level::kNone && std::chrono::steady_clock::now() < end)
      source->Drain(seen);
  }
  EXPECT_EQ(source->level().level, Level::kNone);
  // A bus that ends in order takes its names back first.
  EXPECT_THAT(source->level().reason, testing::AnyOf("the system bus went away", "logind ended"));
}

}  // namespace
}  // namespace zendrix::agent
