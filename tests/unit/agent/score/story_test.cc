// A month of a household's computer and some days of a build machine, in simulated time: the attacks are
// found and the ordinary days are quiet.
#include <random>

#include "agent/events/measures.h"
#include "agent/host/observe_accounts.h"
#include "alerts/risk.h"
#include "platform/memory/fixed_locale.h"
#include "unit/agent/score/scored_host.h"

namespace zendrix::agent {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;

constexpr const char* kFirefox = "/usr/lib/firefox-esr/firefox-esr";
constexpr const char* kSession = "/usr/bin/gnome-shell";
constexpr const char* kSteam = "/home/ann/.local/share/Steam/ubuntu12_32/steam";

class Story : public testing::Test {
 protected:
  int Any(int most) { return static_cast<int>(random_() % static_cast<unsigned>(most)); }
  std::string Address(int net) { return "151.101." + std::to_string(net) + "." + std::to_string(Any(250)); }
  bool IsIntrusion(const Alert& alert) {
    core::Settings settings;
    settings.NormalTop = 90.909088F;
    settings.SuspiciousTop = 95.454544F;
    return alerts::GetRiskName(alert.change, settings, platform::LocaleInfo()) == alerts::kIntrusion;
  }
  // Guessed passwords, as the record of failed logins shows them.
  void Guess(int count) {
    std::string record(kLoginRecordSize, '\0');
    record[0] = 6;
    record.replace(8, 9, "ssh:notty");
    record.replace(44, 4, "root");
    record.replace(76, 12, "203.0.113.99");
    for (int i = 0; i < count; ++i) failures_ += record;
    pc.host.texts["/var/log/btmp"] = failures_;
    pc.host.facts["/var/log/btmp"] = {EntryKind::kFile, 0600, static_cast<std::int64_t>(failures_.size()), 0};
    Snapshot seen;
    seen.failed_logins = CountFailedLogins(pc.host);
    seen.new_failed_logins =
        ReadFailedLogins(pc.host, measures_.failed_logins().value_or(0), seen.failed_logins.value_or(0));
    pc.Turn(measures_.Take(seen));
  }
  void NoGuessesYet() {
    Snapshot seen;
    seen.failed_logins = 0;
    measures_.Take(seen);
  }
  // How many alerts there were on the days of a span that nothing happened on.
  int MostAlertsOfADay(int first, int last, const std::set<int>& but) {
    std::size_t most = 0;
    for (int day = first; day <= last; ++day) {
      if (!but.contains(day)) most = std::max(most, pc.AlertsOn(day).size());
    }
    return static_cast<int>(most);
  }
  std::string Told(int first, int last) {
    std::string text;
    for (int day = first; day <= last; ++day) {
      for (const Alert& alert : pc.AlertsOn(day)) {
        text += "day " + std::to_string(day) + " " + alert.change + " " + alert.subject;
        for (const std::string& fact : alert.facts) text += "; " + fact;
        text += "\n";
      }
    }
    return text;
  }

  ScoredHost pc;

 private:
  std::mt19937 random_{7};
  Measures measures_;
  std::string failures_;
};

class Household : public Story {
 protected:
  Household() {
    for (const char* path :
         {kFirefox, kSession, "/usr/bin/bash", "/usr/bin/ls", "/usr/sbin/sshd", "/usr/bin/transmission"})
      pc.Put(path, path);
    NoGuessesYet();
  }

  void Boot(int day) {
    pc.At(day, 7.5);
    std::vector<Item> there;
    for (int i = 0; i < 60; ++i) {
      const std::string program = "/usr/lib/system/daemon" + std::to_string(i);
      Item item = MakeItem(monitor::kProcesses, program + ":" + std::to_string(100 + i), {}, program);
      item.program = program;
      item.parent = "/usr/lib/systemd/systemd";
      there.push_back(item);
    }
    for (const char* name : {"root", "ann", "bob", "www-data"})
      there.push_back(MakeItem(monitor::kAccounts, name, {}, std::string("account ") + name));
    pc.IsThere(there);
    pc.Start(kSession, "/usr/lib/gdm");
    pc.Login("ann on tty2");
    pc.Listen("/usr/sbin/sshd", 22);
    pc.Listen("/usr/sbin/cupsd", 631);
  }

  void Browse(double hour, int day) {
    pc.At(day, hour);
    pc.Start(kFirefox, kSession);
    for (int i = 0; i < 30; ++i) pc.Connect(kFirefox, Address(Any(200)), Any(20) == 0 ? 8443 : 443);
    for (int i = 0; i < 5; ++i) pc.Start("/usr/bin/tool" + std::to_string(Any(40)), "/usr/bin/bash");
    pc.Start("/usr/lib/libreoffice/program/soffice.bin", kSession);
  }

  // A game's own starter, in a hidden folder, that listens and talks to everybody.
  void Play(int day) {
    pc.At(day, 19);
    pc.Start(kSteam, kSession);
    pc.Listen(kSteam, 27036);
    for (int i = 0; i < 10; ++i) pc.Connect(kSteam, Address(Any(50)), 27017 + static_cast<unsigned>(Any(20)));
    if (day % 6 == 0)
      pc.Start("/home/ann/.local/share/Steam/common/game" + std::to_string(day) + "/run", kSteam);
  }

  void Upgrade(int day) {
    pc.At(day, 12);
    pc.Start("/usr/bin/apt", "/usr/bin/bash");
    pc.Start("/usr/bin/dpkg", "/usr/bin/apt");
    std::map<std::string, std::string> files;
    for (int i = 0; i < 20; ++i)
      files["/usr/bin/tool" + std::to_string(i)] = "version of day " + std::to_string(day);
    files["/usr/sbin/served" + std::to_string(day)] = "a new service";
    pc.Install("tools" + std::to_string(day), files);
    pc.Account("_served" + std::to_string(day));
    const std::string served = "/usr/sbin/served" + std::to_string(day);
    pc.Start(served, "/usr/lib/systemd/systemd");
    pc.Listen(served, 9000 + static_cast<unsigned>(day));
    for (int i = 0; i < 20; ++i) pc.Start("/usr/bin/tool" + std::to_string(i), "/usr/bin/dpkg");
  }

  void LiveTo(int last) {
    for (; day_ <= last; ++day_) {
      Boot(day_);
      Browse(8, day_);
      if (day_ % 7 == 5) Upgrade(day_);
      pc.At(day_, 14);
      pc.Login("ann from 192.168.1.20", {Rule::kLoginFromElsewhere});
      pc.Listen("/usr/bin/transmission", 50000 + static_cast<unsigned>(Any(9000)));
      for (int i = 0; i < 30; ++i) pc.Connect("/usr/bin/transmission", Address(Any(250)), 6881);
      if (day_ % 9 == 4) {
        pc.At(day_, 16);
        pc.Start("/home/ann/Downloads/editor-1." + std::to_string(day_) + ".AppImage", kSession);
        pc.Start("/tmp/.mount_edit" + std::to_string(day_) + "/usr/bin/editor", kSession);
      }
      if (day_ % 2 == 0) Play(day_);
      Browse(20.5, day_);
      pc.Wait(60);
    }
  }

  int day_ = 0;
};

TEST_F(Household, QuietMonthStaysWithinOneAlertADay) {
  LiveTo(29);
  EXPECT_EQ(Told(0, 6), "") << "the week of learning";
  EXPECT_LE(MostAlertsOfADay(7, 29, {}), 1) << Told(7, 29);
  EXPECT_LE(pc.alerts.size(), 8U) << Told(7, 29);
  EXPECT_LE(pc.quiet.size(), 30U * 20U);
}

TEST_F(Household, DropperWithAutostartAndBeaconIsAnIntrusionWithinTenSeconds) {
  LiveTo(17);
  pc.At(18, 21);
  const std::int64_t begun = pc.utc;
  const std::string dropper = "/tmp/.cache-7f/updater";
  pc.Put(dropper, "evil");
  pc.Start(dropper, "/usr/bin/bash");
  pc.Wait(1);
  pc.Autostart("updater.desktop", dropper);
  pc.Connect(dropper, "203.0.113.66", 4444);
  pc.Listen(dropper, 4444);
  pc.Wait(9);
  ASSERT_FALSE(pc.AlertsOn(18).empty());
  const ScoredHost::Told told = pc.alerts.back();
  EXPECT_TRUE(IsIntrusion(told.alert)) << told.alert.change;
  EXPECT_EQ(told.alert.subject, dropper);
  EXPECT_LE(told.utc - begun, 10);
  std::vector<std::string> rows;
  for (const Item& item : told.alert.members) rows.push_back(item.description);
  EXPECT_THAT(rows, Contains("203.0.113.66:4444:" + dropper));
  EXPECT_THAT(rows, Contains("4444:" + dropper));
  EXPECT_THAT(rows, Contains(HasSubstr("updater.desktop=" + dropper)));
  EXPECT_EQ(told.alert.facts.size(), 3U);
}

// Nothing of it lies in a temporary folder, so no hard rule helps.
TEST_F(Household, DropperInAHiddenFolderIsFoundByWhatIsNewAboutIt) {
  LiveTo(24);
  pc.At(25, 21);
  const std::string dropper = "/home/ann/.config/.upd/helper";
  pc.Put(dropper, "evil");
  pc.Start(dropper, "/usr/lib/libreoffice/program/soffice.bin");
  pc.Autostart("helper.desktop", dropper);
  pc.Connect(dropper, "203.0.113.66", 4444);
  pc.Wait(10);
  ASSERT_FALSE(pc.alerts.empty());
  EXPECT_EQ(pc.alerts.back().alert.subject, dropper);
  EXPECT_TRUE(IsIntrusion(pc.alerts.back().alert));
}

TEST_F(Household, GuessedPasswordsAreAnIntrusionAtTheProgramThatTakesThem) {
  LiveTo(20);
  pc.At(21, 3);
  const std::int64_t begun = pc.utc;
  for (int i = 0; i < 12; ++i) {
    pc.Connect("/usr/sbin/sshd", "203.0.113.99", 22);
    Guess(1);
    pc.Wait(5);
  }
  pc.Wait(10);
  ASSERT_FALSE(pc.AlertsOn(21).empty());
  const ScoredHost::Told told = pc.alerts.back();
  EXPECT_TRUE(IsIntrusion(told.alert)) << told.alert.change;
  EXPECT_EQ(told.alert.subject, "failed logins at sshd from 203.0.113.99");
  EXPECT_THAT(told.alert.facts, Contains(HasSubstr("logins failed in 10 minutes")));
  EXPECT_LE(told.utc - begun, 9 * 5 + 10) << "ten seconds behind the tenth";
  EXPECT_EQ(pc.AlertsOn(21).size(), 1U) << Told(0, 21);
}

TEST_F(Household, PreloadedLibraryIsAnIntrusionThatNamesTheLibrary) {
  LiveTo(26);
  pc.At(27, 4);
  const std::int64_t begun = pc.utc;
  pc.Put("/usr/lib/x86_64-linux-gnu/libselinux.so.0", "evil");
  pc.Preload("/usr/lib/x86_64-linux-gnu/libselinux.so.0");
  pc.Wait(10);
  ASSERT_EQ(pc.AlertsOn(27).size(), 1U) << Told(27, 27);
  const ScoredHost::Told told = pc.alerts.back();
  EXPECT_TRUE(IsIntrusion(told.alert)) << told.alert.change;
  EXPECT_EQ(told.alert.subject, "/usr/lib/x86_64-linux-gnu/libselinux.so.0");
  EXPECT_THAT(told.alert.facts, Contains("is loaded into every program"));
  EXPECT_LE(told.utc - begun, 10);
}

TEST_F(Household, AttackInTheWeekOfLearningIsFoundByItsHardFacts) {
  LiveTo(1);
  pc.At(2, 21);
  pc.Put("/tmp/x", "evil");
  pc.Start("/tmp/x", "/usr/bin/bash");
  pc.Listen("/tmp/x", 4444);
  pc.Autostart("x.desktop", "/tmp/x");
  pc.Wait(10);
  ASSERT_EQ(pc.AlertsOn(2).size(), 1U) << Told(0, 2);
  const Alert& alert = pc.alerts.back().alert;
  EXPECT_TRUE(IsIntrusion(alert));
  EXPECT_EQ(alert.members.size(), 3U);
  EXPECT_THAT(alert.facts, ::testing::UnorderedElementsAre("runs from /tmp", "opened port 4444",
                                                           HasSubstr("starts by itself")));
}

class BuildMachine : public Story {
 protected:
  // Each build runs programs that nobody ever saw, out of temporary folders and out of its own.
  void Build(int number) {
    const std::string job = "/home/build/job-" + std::to_string(number);
    for (int i = 0; i < 100; ++i) pc.Start(i % 2 ? "/usr/bin/cc1plus" : "/usr/bin/ld", "/usr/bin/make");
    for (int i = 0; i < 15; ++i) {
      pc.Start("/tmp/tmp." + std::to_string(number) + "/conftest" + std::to_string(i), "/usr/bin/dash");
      pc.Start(job + "/test_" + std::to_string(i), "/usr/bin/ctest");
      pc.Listen(job + "/test_" + std::to_string(i), 40000 + static_cast<unsigned>(Any(9000)));
    }
    pc.Connect("/usr/bin/git", Address(1), 443);
    pc.Wait(60);
  }
  void LiveTo(int last, int builds) {
    NoGuessesYet();
    for (int day = 0; day <= last; ++day) {
      for (int i = 0; i < builds; ++i) {
        pc.At(day, 1 + i * 22.0 / builds);
        Build(++builds_);
      }
    }
  }
  int builds_ = 0;
};

TEST_F(BuildMachine, DayOfBuildsStaysWithinTheBudgetAndHidesNoAttack) {
  LiveTo(8, 4);
  const int day = 9;
  for (int i = 0; i < 40; ++i) {
    pc.At(day, 1 + i / 2.0);
    Build(++builds_);
  }
  EXPECT_LE(pc.AlertsOn(day).size(), 2U) << Told(day, day);
  pc.At(day, 22);
  pc.alerts.clear();
  const std::string dropper = "/home/build/.npm/.x/agent";
  pc.Put(dropper, "evil");
  pc.Start(dropper, "/usr/bin/dash");
  pc.Autostart("agent.desktop", dropper);
  pc.Connect(dropper, "203.0.113.66", 4444);
  pc.Wait(10);
  ASSERT_EQ(pc.alerts.size(), 1U) << Told(day, day);
  EXPECT_EQ(pc.alerts[0].alert.subject, dropper);
  EXPECT_TRUE(IsIntrusion(pc.alerts[0].alert));
  for (int i = 0; i < 15; ++i) Guess(1);
  pc.Wait(10);
  pc.Preload("/tmp/libx.so");
  pc.Wait(10);
  ASSERT_EQ(pc.alerts.size(), 3U) << Told(day, day);
  EXPECT_EQ(pc.alerts[1].alert.subject, "failed logins at sshd from 203.0.113.99");
  EXPECT_EQ(pc.alerts[2].alert.subject, "/tmp/libx.so");
  EXPECT_TRUE(IsIntrusion(pc.alerts[1].alert));
  EXPECT_TRUE(IsIntrusion(pc.alerts[2].alert));
}

}  // namespace
}  // namespace zendrix::agent
