#include "agent/watch.h"

#include "agent/level_text.h"
#include "agent/sources/memory/recorded_source.h"
#include "platform/memory/fake_clock.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

constexpr char kModules[] = "System (kernel modules)";

class WatchTest : public ::testing::Test {
 protected:
  WatchTest() {
    host.texts["/etc/passwd"] = "root:x:0:0::/root:/bin/bash\n";
    host.AddProcess(10, "sshd", "/usr/sbin/sshd");
  }

  Watch Make(std::vector<Source*> sources) { return Watch(host, clock, 42, 5000, std::move(sources)); }

  static std::vector<std::string> Texts(const std::vector<Event>& events) {
    std::vector<std::string> texts;
    for (const Event& event : events) {
      const char* sign = event.kind == EventKind::kAdded     ? "+"
                         : event.kind == EventKind::kRemoved ? "-"
                                                             : "!";
      texts.push_back(sign + event.item.description);
    }
    return texts;
  }

  static WatchLevel LevelOf(const Watch& watch, std::string_view name) {
    for (const WatchLevel& level : watch.levels()) {
      if (level.watched == name) return level;
    }
    ADD_FAILURE() << "no level of " << name;
    return {};
  }

  FakeHost host;
  platform::FakeClock clock;
  RecordedSource events{{monitor::kProcesses, monitor::kSystem}, {Level::kEvents, "test", ""}};
};

TEST_F(WatchTest, MonitorsWithoutASourceAreLookedAt) {
  Watch watch = Make({});
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("+root", "+/usr/sbin/sshd:10"));
  host.AddProcess(11, "x", "/bin/x");
  EXPECT_THAT(Texts(watch.Turn()), IsEmpty()) << "not before the interval is over";
  clock.Advance(5000);
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("+/bin/x:11"));
  EXPECT_FALSE(watch.IsTold());
}

TEST_F(WatchTest, RestsAsLongAsTheMostEagerSourceThatCanDoAnything) {
  RecordedSource other{{monitor::kLogins}, {Level::kNotices, "test", ""}};
  events.SetTimes(kQuietRestMs, kGatherMs);
  Watch watch = Make({&events, &other});
  EXPECT_EQ(watch.RestMs(), kDrainMs);
  other.SetLevel({Level::kNone, "test", "gone"});
  watch.Turn();
  EXPECT_EQ(watch.RestMs(), kQuietRestMs);
}

TEST_F(WatchTest, MonitorOfASourceIsNotLookedAt) {
  Watch watch = Make({&events});
  events.Came(MakeItem(monitor::kProcesses, "/bin/a:7"));
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("+/bin/a:7", "+root"));
  events.Went(MakeItem(monitor::kProcesses, "/bin/a:7"));
  events.Happened(MakeItem(monitor::kSystem, "kernel module x"));
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("-/bin/a:7", "!kernel module x"));
  EXPECT_TRUE(watch.IsTold());
  EXPECT_EQ(LevelOf(watch, "Running Processes").level, events.level());
  EXPECT_EQ(LevelOf(watch, kModules).level.how, "test");
}

TEST_F(WatchTest, ThingThatComesAndGoesBetweenTwoTurnsIsToldInItsOrder) {
  Watch watch = Make({&events});
  watch.Turn();
  events.Came(MakeItem(monitor::kProcesses, "/bin/a:7"));
  events.Went(MakeItem(monitor::kProcesses, "/bin/a:7"));
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("+/bin/a:7", "-/bin/a:7"));
}

TEST_F(WatchTest, SourceThatCanDoNothingIsReplacedByLooksAndItsReasonTold) {
  events.SetLevel({Level::kNone, "BPF", "Operation not permitted"});
  Watch watch = Make({&events});
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("+root", "+/usr/sbin/sshd:10"));
  const WatchLevel level = LevelOf(watch, "Running Processes");
  EXPECT_EQ(level.level.level, Level::kPolling);
  EXPECT_THAT(level.level.reason, HasSubstr("no BPF: Operation not permitted"));
  EXPECT_THAT(LevelText(level), HasSubstr("Running Processes - a look every 5 s - "));
}

TEST_F(WatchTest, FirstOfTwoSourcesIsBelieved) {
  RecordedSource second({monitor::kProcesses}, {Level::kNotices, "second", ""});
  Watch watch = Make({&events, &second});
  watch.Turn();
  second.Came(MakeItem(monitor::kProcesses, "/bin/b:8"));
  EXPECT_THAT(Texts(watch.Turn()), IsEmpty());
  events.SetLevel({Level::kNone, "test", "gone"});
  second.Came(MakeItem(monitor::kProcesses, "/bin/c:9"));
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("+/bin/b:8", "+/bin/c:9")) << "its word counts from now on";
}

TEST_F(WatchTest, SourceThatFailsLaterHandsOverWithoutTellingAllAnew) {
  Watch watch = Make({&events});
  events.Came(MakeItem(monitor::kProcesses, "/usr/sbin/sshd:10"));
  events.Came(MakeItem(monitor::kProcesses, "/bin/ended:11"));
  watch.Turn();
  events.SetLevel({Level::kNone, "test", "it broke"});
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("-/bin/ended:11"));
  EXPECT_EQ(LevelOf(watch, "Running Processes").level.level, Level::kPolling);
  EXPECT_FALSE(watch.IsTold());
}

// The second one told its things while nobody needed them; they are what counts when the first one fails.
TEST_F(WatchTest, NextSourceTakesOverWithWhatItKnows) {
  RecordedSource first({monitor::kLogins}, {Level::kNotices, "first", ""});
  RecordedSource second({monitor::kLogins}, {Level::kNotices, "second", ""});
  Watch watch = Make({&first, &second});
  for (RecordedSource* source : {&first, &second}) {
    source->Came(MakeItem(monitor::kLogins, "ann on tty1"));
    source->Came(MakeItem(monitor::kLogins, "joe on tty4"));
  }
  first.Came(MakeItem(monitor::kLogins, "bob from far"));
  second.Came(MakeItem(monitor::kLogins, "bob from 192.0.2.7"));
  watch.Turn();
  second.Went(MakeItem(monitor::kLogins, "joe on tty4"));
  EXPECT_THAT(Texts(watch.Turn()), IsEmpty());
  first.SetLevel({Level::kNone, "first", "the bus went away"});
  second.Came(MakeItem(monitor::kLogins, "eve on tty5"));
  EXPECT_THAT(Texts(watch.Turn()),
              UnorderedElementsAre("-joe on tty4", "-bob from far", "+bob from 192.0.2.7", "+eve on tty5"));
  EXPECT_THAT(LevelOf(watch, "Logged-On Users").level.how, "second");
  EXPECT_THAT(LevelOf(watch, "Logged-On Users").level.reason, HasSubstr("no first: the bus went away"));
  second.Went(MakeItem(monitor::kLogins, "eve on tty5"));
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("-eve on tty5"));
}

TEST_F(WatchTest, SourceThatComesBackTellsOnlyWhatDiffers) {
  RecordedSource first({monitor::kLogins}, {Level::kNotices, "first", ""});
  RecordedSource second({monitor::kLogins}, {Level::kNotices, "second", ""});
  Watch watch = Make({&first, &second});
  first.Came(MakeItem(monitor::kLogins, "ann on tty1"));
  first.Came(MakeItem(monitor::kLogins, "bob from far"));
  second.Came(MakeItem(monitor::kLogins, "ann on tty1"));
  watch.Turn();
  first.SetLevel({Level::kNone, "first", "gone"});
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("-bob from far"));
  first.SetLevel({Level::kNotices, "first", ""});
  first.Went(MakeItem(monitor::kLogins, "bob from far"));
  first.Came(MakeItem(monitor::kLogins, "eve on tty9"));
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("+eve on tty9"));
  second.Came(MakeItem(monitor::kLogins, "joe on tty7"));
  EXPECT_THAT(Texts(watch.Turn()), IsEmpty());
}

TEST_F(WatchTest, SourceThatComesAfterLooksTakesOver) {
  events.SetLevel({Level::kNone, "test", "not yet"});
  Watch watch = Make({&events});
  watch.Turn();
  events.SetLevel({Level::kEvents, "test", ""});
  events.Came(MakeItem(monitor::kProcesses, "/usr/sbin/sshd:10"));
  events.Came(MakeItem(monitor::kProcesses, "/bin/b:8"));
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("+/bin/b:8"));
}

TEST_F(WatchTest, LossesAddUpUntilTheyAreTaken) {
  Watch watch = Make({&events});
  events.Lost(3);
  watch.Turn();
  events.Lost(4);
  watch.Turn();
  EXPECT_EQ(watch.TakeLost(), 7U);
  EXPECT_EQ(watch.TakeLost(), 0U);
}

// Both by the first look and by a later one.
TEST_F(WatchTest, WhatLooksLeaveOutIsCountedAndStandsInTheLevel) {
  std::string commands;
  for (int i = 0; i < 20; ++i) commands += "ExecStart=/usr/bin/a" + std::to_string(i) + "\n";
  host.texts["/etc/systemd/system/a.service"] = commands;
  Watch watch = Make({});
  watch.Turn();
  EXPECT_EQ(watch.TakeLeftOut(), 4U);
  EXPECT_THAT(LevelOf(watch, "Autorun Registry").level.reason,
              HasSubstr("4 entries are too many to look at, or may not be read"));
  EXPECT_EQ(LevelOf(watch, "System Users").level.reason, "");
  host.texts["/etc/systemd/system/b.service"] = commands;
  clock.Advance(60000);
  watch.Turn();
  EXPECT_EQ(watch.TakeLeftOut(), 4U);
  EXPECT_THAT(LevelOf(watch, "Autorun Registry").level.reason, HasSubstr("8 entries are too many"));
  clock.Advance(60000);
  watch.Turn();
  EXPECT_EQ(watch.TakeLeftOut(), 0U);
  EXPECT_EQ(watch.TakeLost(), 0U) << "nothing happened that was not seen";
}

TEST_F(WatchTest, KernelThatTellsOfNoModulesIsNotSaidToTellOfThem) {
  events.SetLevel({Level::kEvents, "test", "it loads none"});
  Watch watch = Make({&events});
  EXPECT_EQ(LevelOf(watch, "Running Processes").level, (SourceLevel{Level::kEvents, "test", ""}));
  EXPECT_EQ(
      LevelOf(watch, kModules).level,
      (SourceLevel{Level::kNone, "", "the list of loaded modules cannot be read; no test: it loads none"}));
}

// Where no source told of modules nothing was seen of them, and not a word of it.
TEST_F(WatchTest, ModulesThatNoSourceTellsOfAreLookedAtOnceAMinute) {
  host.texts["/proc/modules"] = "ext4 1011712 1 - Live 0x0000000000000000\nloop 40960 0 - Live 0x0\n";
  Watch watch = Make({});
  EXPECT_EQ(LevelOf(watch, kModules).level, (SourceLevel{Level::kPolling, "a look every 60 s", ""}));
  EXPECT_THAT(Texts(watch.Turn()), Not(Contains(HasSubstr("module")))) << "those were there";
  host.texts["/proc/modules"] = "evil|x 1 0 - Live 0x0\next4 1011712 1 - Live 0x0\ncut 1";
  clock.Advance(59000);
  EXPECT_THAT(Texts(watch.Turn()), IsEmpty());
  clock.Advance(1000);
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("!kernel module evil_x loaded"));
  clock.Advance(60000);
  EXPECT_THAT(Texts(watch.Turn()), IsEmpty());
  host.texts["/proc/modules"] += " 0 - Live 0x0\nloop 40960 0 - Live 0x0\n";
  clock.Advance(60000);
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("!kernel module cut loaded", "!kernel module loop loaded"));
}

TEST_F(WatchTest, ListOfModulesThatCannotBeReadForAWhileLosesNothingAndIsTold) {
  host.texts["/proc/modules"] = "loop 1\n";
  Watch watch = Make({});
  watch.Turn();
  host.texts.erase("/proc/modules");
  clock.Advance(60000);
  EXPECT_THAT(Texts(watch.Turn()), IsEmpty());
  clock.Advance(5000);
  watch.Turn();
  EXPECT_EQ(LevelOf(watch, kModules).level.level, Level::kNone);
  host.texts["/proc/modules"] = "loop 1\ndummy 1\n";
  clock.Advance(60000);
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("!kernel module dummy loaded"));
}

TEST_F(WatchTest, ModulesThatASourceTellsOfAreNotToldTwiceAndLookedAtWhenItFails) {
  host.texts["/proc/modules"] = "loop 1\n";
  Watch watch = Make({&events});
  watch.Turn();
  host.texts["/proc/modules"] = "loop 1\ntold 1\n";
  events.Happened(MakeItem(monitor::kSystem, "kernel module told"));
  clock.Advance(60000);
  EXPECT_THAT(Texts(watch.Turn()), ElementsAre("!kernel module told"));
  events.SetLevel({Level::kNone, "test", "it broke"});
  host.texts["/proc/modules"] += "untold 1\n";
  clock.Advance(60000);
  EXPECT_THAT(Texts(watch.Turn()), Contains("!kernel module untold loaded"));
  EXPECT_EQ(LevelOf(watch, kModules).level,
            (SourceLevel{Level::kPolling, "a look every 60 s", "no test: it broke"}));
}

TEST_F(WatchTest, WhatCannotBeSeenHasAReason) {
  Watch watch = Make({});
  EXPECT_EQ(LevelOf(watch, "System (failed logins)").level.level, Level::kNone);
  EXPECT_THAT(LevelOf(watch, "Listening Ports").level.reason, HasSubstr("other users"));
  host.links["/proc/1/exe"] = "/usr/lib/systemd/systemd";
  host.facts["/var/log/btmp"] = {EntryKind::kFile, 0600, 0, 1};
  Watch root = Make({});
  EXPECT_EQ(LevelOf(root, "System (failed logins)").level.level, Level::kPolling);
  EXPECT_EQ(LevelOf(root, "Listening Ports").level.reason, "");
}

}  // namespace
}  // namespace zendrix::agent
