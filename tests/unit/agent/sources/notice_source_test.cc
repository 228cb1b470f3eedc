#include "agent/sources/notice_source.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

#include "agent/sources/memory/recorded_notices.h"
#include "platform/linux/linux_clock.h"
#include "platform/memory/fake_clock.h"
#include "support/temporary_folder.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class NoticeTest : public testing::Test {
 protected:
  NoticeTest() {
    script.folders = {"/etc", "/var/spool/cron", "/run",     "/tmp", "/var/tmp", "/dev/shm",
                      "/usr", "/etc/cron.d",     "/home/ann"};
    host.texts["/etc/passwd"] = "ann:x:1000:1000::/home/ann:/bin/bash\n";
  }

  // What one Drain tells, as "+description" and "-description".
  std::vector<std::string> Drain() {
    std::vector<Observation> seen;
    source.Drain(seen);
    std::vector<std::string> texts;
    for (const Observation& one : seen) {
      if (one.kind == Observation::Kind::kLost) {
        EXPECT_TRUE(one.left_out);
        texts.push_back("lost " + std::to_string(one.lost));
        continue;
      }
      texts.push_back((one.kind == Observation::Kind::kCame ? "+" : "-") + one.item.description);
    }
    return texts;
  }
  std::vector<std::string> DrainLater(std::int64_t milliseconds = NoticeSource::kQuietMs) {
    EXPECT_THAT(Drain(), IsEmpty()) << "not before it is quiet";
    clock.Advance(milliseconds);
    return Drain();
  }
  void AddJob(const std::string& path = "/etc/cron.d/job") {
    host.facts[path] = {EntryKind::kFile, 0755, 5, 1};
  }

  FakeHost host;
  platform::FakeClock clock;
  NoticeScript script;
  NoticeSource source{host, clock, std::make_unique<RecordedNotices>(script), ""};
};

TEST_F(NoticeTest, BeginsWithWhatIsThere) {
  AddJob();
  EXPECT_THAT(Drain(), ElementsAre("+ann", "+/etc/cron.d/job"));
  EXPECT_THAT(Drain(), IsEmpty());
  EXPECT_EQ(source.level(), (SourceLevel{Level::kNotices, "inotify", ""}));
}

TEST_F(NoticeTest, ChangeIsToldWhenItHasBeenQuietForAMoment) {
  Drain();
  AddJob();
  EXPECT_THAT(Drain(), IsEmpty()) << "nobody said a word";
  script.Change("/etc/cron.d", "job", IN_CLOSE_WRITE);
  EXPECT_THAT(DrainLater(), ElementsAre("+/etc/cron.d/job"));
  host.facts.clear();
  script.Change("/etc/cron.d", "job", IN_DELETE);
  EXPECT_THAT(DrainLater(), ElementsAre("-/etc/cron.d/job"));
}

TEST_F(NoticeTest, RestsUnlessSomethingIsToBeLookedAtSoon) {
  Drain();
  EXPECT_EQ(source.RestMs(), kQuietRestMs);
  script.Change("/etc/cron.d", "job", IN_CLOSE_WRITE);
  Drain();
  EXPECT_EQ(source.RestMs(), kDrainMs) << "no notice tells that it has been quiet";
  clock.Advance(NoticeSource::kQuietMs);
  Drain();
  EXPECT_EQ(source.RestMs(), kQuietRestMs);
}

TEST_F(NoticeTest, FolderThatIsNeverQuietIsLookedAtAllTheSame) {
  Drain();
  AddJob("/tmp/x");
  int turns = 0;
  std::vector<std::string> told;
  for (; told.empty() && turns < 100; ++turns) {
    script.Change("/tmp", "noise", IN_CREATE);
    told = Drain();
    clock.Advance(20);
  }
  EXPECT_THAT(told, ElementsAre("+/tmp/x"));
  EXPECT_LE(turns, 27);
}

TEST_F(NoticeTest, OnlyTheNamesThatMatterCountInFoldersOfManyFiles) {
  Drain();
  host.texts["/etc/passwd"] += "eve:x:1001:1001::/home/eve:/bin/bash\n";
  script.Change("/etc", "hosts", IN_CLOSE_WRITE);
  EXPECT_THAT(DrainLater(1000), IsEmpty());
  script.Change("/etc", "passwd", IN_MOVED_TO);
  EXPECT_THAT(DrainLater(), ElementsAre("+eve"));
  EXPECT_FALSE(script.numbers.contains("/home/eve"));
  script.folders.insert("/home/eve");
  clock.Advance(NoticeSource::kLookEveryMs);
  Drain();
  EXPECT_TRUE(script.numbers.contains("/home/eve")) << "a home of its own to watch";
}

TEST_F(NoticeTest, FolderThatComesLaterIsWaitedForInTheOneAbove) {
  Drain();
  EXPECT_TRUE(script.numbers.contains("/home/ann"));
  script.folders.insert("/home/ann/.config");
  script.Change("/home/ann", "unrelated", IN_CREATE);
  EXPECT_THAT(Drain(), IsEmpty());
  EXPECT_FALSE(script.numbers.contains("/home/ann/.config"));
  script.Change("/home/ann", ".config", IN_CREATE);
  EXPECT_THAT(DrainLater(), IsEmpty());
  script.folders.insert("/home/ann/.config/autostart");
  host.texts["/home/ann/.config/autostart/x.desktop"] = "[Desktop Entry]\nExec=/tmp/x\n";
  script.Change("/home/ann/.config", "autostart", IN_MOVED_TO);
  EXPECT_THAT(DrainLater(), ElementsAre("+/home/ann/.config/autostart/x.desktop=/tmp/x"));
  EXPECT_TRUE(script.numbers.contains("/home/ann/.config/autostart"));
}

TEST_F(NoticeTest, LostNoticesMakeItLookAtEverything) {
  Drain();
  AddJob();
  script.Add(-1, IN_Q_OVERFLOW, "");
  EXPECT_THAT(DrainLater(), ElementsAre("+/etc/cron.d/job"));
}

TEST_F(NoticeTest, EverythingIsLookedAtOnceAMinute) {
  Drain();
  AddJob();
  clock.Advance(NoticeSource::kLookEveryMs - 1);
  EXPECT_THAT(Drain(), IsEmpty());
  clock.Advance(1);
  EXPECT_THAT(Drain(), ElementsAre("+/etc/cron.d/job"));
}

TEST_F(NoticeTest, FolderThatCannotBeWatchedIsTold) {
  script.refused["/etc/cron.d"] = {platform::ErrorKind::kNoSpace, "too many watches"};
  script.refused["/home/ann/.config/autostart"] = {platform::ErrorKind::kPermissionDenied, "refused"};
  Drain();
  EXPECT_EQ(source.level().level, Level::kNotices);
  EXPECT_EQ(source.level().reason, "1 folders are looked at once a minute: too many watches");
}

TEST_F(NoticeTest, SystemFolderThatMayNotBeReadIsTold) {
  script.refused["/var/spool/cron/crontabs"] = {platform::ErrorKind::kPermissionDenied, "refused"};
  Drain();
  EXPECT_EQ(source.level().reason, "/var/spool/cron/crontabs may not be read");
}

TEST_F(NoticeTest, FilesThatRuleCronAndRightsAreWatched) {
  Drain();
  for (const char* name : {"crontab", "anacrontab", "profile", "sudoers"}) {
    AddJob(std::string("/etc/") + name);
    script.Change("/etc", name, IN_CLOSE_WRITE);
    EXPECT_THAT(DrainLater(), ElementsAre(std::string("+/etc/") + name));
  }
}

TEST_F(NoticeTest, ProgramBehindTheLimitOfATemporaryFolderIsToldOnceItIsNamed) {
  for (int i = 0; i < 5000; ++i) AddJob("/tmp/" + std::to_string(i));
  Drain();
  AddJob("/tmp/zz");
  AddJob("/tmp/zy");
  script.Change("/tmp", "zz", IN_CLOSE_WRITE);
  EXPECT_THAT(DrainLater(), ::testing::UnorderedElementsAre("+/tmp/zz", "lost 2"));
  EXPECT_THAT(source.level().reason, HasSubstr("2 entries are too many to look at"));
  AddJob("/tmp/zz");
  script.Change("/tmp", "0", IN_CLOSE_WRITE);
  EXPECT_THAT(DrainLater(), IsEmpty()) << "it is still there";
  host.facts.erase("/tmp/zz");
  script.Change("/tmp", "zz", IN_DELETE);
  EXPECT_THAT(DrainLater(), ElementsAre("-/tmp/zz"));
}

TEST_F(NoticeTest, LevelSaysThatFilesBehindLinksAreNotFollowed) {
  host.texts["/etc/systemd/system/a.service"] = "ExecStart=/usr/bin/a\n";
  host.facts["/etc/systemd/system/a.service"] = {EntryKind::kLink, 0777, 5, 1};
  Drain();
  EXPECT_EQ(source.level().reason, "what links among the autorun entries lead to is looked at once a minute");
}

TEST_F(NoticeTest, WithoutAStreamThereIsOnlyTheReason) {
  NoticeSource none(host, clock, nullptr, "no more descriptors");
  std::vector<Observation> seen;
  none.Drain(seen);
  EXPECT_THAT(seen, IsEmpty());
  EXPECT_EQ(none.level(), (SourceLevel{Level::kNone, "inotify", "no more descriptors"}));
  EXPECT_EQ(none.Handle(), -1);
}

TEST(ParseNotices, CutRecordEndsTheList) {
  NoticeScript script;
  script.Add(1, IN_CREATE, "a");
  script.Add(2, IN_DELETE_SELF, "");
  const std::string whole = script.waiting;
  EXPECT_EQ(ParseNotices(whole).size(), 2U);
  EXPECT_TRUE(ParseNotices(whole)[1].moved);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_LT(ParseNotices(std::string_view(whole).substr(0, size)).size(), 2U);
  }
  script.Add(3, IN_CREATE, "x");
  std::string lying = script.waiting;
  lying[12] = '\xFF';
  EXPECT_LE(ParseNotices(lying).size(), 1U);
}

TEST(RealNotices, ProgramInATemporaryFolderIsTold) {
  const auto host = MakeLinuxHostView();
  platform::LinuxClock clock;
  const auto source = MakeNoticeSource(*host, clock);
  if (source->level().level == Level::kNone) GTEST_SKIP() << "no inotify here: " << source->level().reason;
  std::vector<Observation> seen;
  source->Drain(seen);
  const std::string path = "/tmp/zendrix-test-notice-" + std::to_string(getpid());
  seen.clear();
  { std::ofstream(path) << "#!/bin/true\n"; }
  ASSERT_EQ(chmod(path.c_str(), 0700), 0);
  const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  const auto told = [&] {
    return std::any_of(seen.begin(), seen.end(),
                       [&](const Observation& one) { return one.item.description == path; });
  };
  while (!told() && std::chrono::steady_clock::now() < give_up) source->Drain(seen);
  unlink(path.c_str());
  EXPECT_TRUE(told());
}

}  // namespace
}  // namespace zendrix::agent
