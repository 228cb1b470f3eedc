// What looks leave out when there is more than they can take: it is counted, and it is never taken for gone.
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>

#include "agent/host/observe_autorun.h"
#include "agent/host/observe_folders.h"
#include "agent/host/observe_host.h"
#include "agent/sources/differences.h"
#include "platform/linux/posix.h"
#include "support/temporary_folder.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::vector<Account> kAnn = {{"ann", false, 1000, "/home/ann", "/bin/bash"}};
const std::string kUnits = "/home/ann/.config/systemd/user/";

std::string Entry(const std::string& command) {
  return "[Desktop Entry]\nExec=" + command + "\n";
}

class Limits : public ::testing::Test {
 protected:
  void AddFile(const std::string& path, const std::string& text) {
    host.texts[path] = text;
    host.facts[path] = {EntryKind::kFile, 0644, 5, 1};
  }
  std::vector<Item> Autorun() {
    missed = Shortfall();
    return ObserveAutorun(host, kAnn, &missed);
  }
  // What the look tells, "+description" and "-description", and "lost N".
  std::vector<std::string> Tell(std::string_view name, std::vector<Item> items) {
    std::vector<Observation> seen;
    differences.Take(host, {name}, std::move(items), missed, seen);
    std::vector<std::string> texts;
    for (const Observation& one : seen) {
      if (one.kind == Observation::Kind::kLost) {
        EXPECT_TRUE(one.left_out);
        texts.push_back("lost " + std::to_string(one.lost));
      } else {
        texts.push_back((one.kind == Observation::Kind::kCame ? "+" : "-") + one.item.description);
      }
    }
    return texts;
  }

  FakeHost host;
  Shortfall missed;
  Differences differences;
};

// 120 links to one file of 8,000 commands took 333 MB, and the service's limit ended the Agent for good.
TEST_F(Limits, UnitsWithoutEndTakeNoRoomWithoutEnd) {
  std::string commands;
  for (int i = 0; i < 5000; ++i) commands += "ExecStart=/a" + std::to_string(i) + "\n";
  for (int i = 0; i < 300; ++i) host.texts[kUnits + "u" + std::to_string(i) + ".service"] = commands;
  for (int i = 0; i < 300; ++i) host.texts[kUnits + "t" + std::to_string(i) + ".wants/x.service"] = commands;
  EXPECT_LE(Autorun().size(), 500U);
  EXPECT_GE(missed.CountOf(monitor::kAutorun), 31U * 3000U);
}

TEST_F(Limits, UnitOfManyCommandsGivesSixteen) {
  std::string commands;
  for (int i = 0; i < 20; ++i) commands += "ExecStart=/a" + std::to_string(i) + "\n";
  host.texts[kUnits + "u.service"] = commands;
  EXPECT_EQ(Autorun().size(), 16U);
  EXPECT_EQ(missed.CountOf(monitor::kAutorun), 4U);
}

TEST_F(Limits, FilesWithoutCommandsAreCountedToo) {
  for (int i = 0; i < 700; ++i) host.texts[kUnits + std::to_string(i) + ".service"] = "";
  EXPECT_THAT(Autorun(), IsEmpty());
  EXPECT_EQ(missed.CountOf(monitor::kAutorun), 200U);
}

TEST_F(Limits, OneAccountTakesNothingFromTheNext) {
  for (int i = 0; i < 700; ++i) host.texts[kUnits + std::to_string(i) + ".service"] = "ExecStart=/a\n";
  host.texts["/home/bob/.config/autostart/b.desktop"] = Entry("/tmp/b");
  std::vector<Account> accounts = kAnn;
  accounts.push_back({"bob", false, 1001, "/home/bob", "/bin/bash"});
  EXPECT_EQ(ObserveAutorun(host, accounts).back().description,
            "/home/bob/.config/autostart/b.desktop=/tmp/b");
}

TEST_F(Limits, OfAllAccountsFiveThousandEntriesAreTaken) {
  std::vector<Account> accounts;
  for (int i = 0; i < 12; ++i) {
    const std::string home = "/home/u" + std::to_string(i);
    accounts.push_back({"u", false, 1000, home, "/bin/bash"});
    for (int j = 0; j < 500; ++j)
      host.texts[home + "/.config/autostart/" + std::to_string(j) + ".desktop"] = Entry("/a");
  }
  EXPECT_EQ(ObserveAutorun(host, accounts, &missed).size(), 5000U);
  EXPECT_EQ(missed.CountOf(monitor::kAutorun), 1000U);
}

// 2,000 files of any name in front hid an entry, and those that were there before were told as gone.
TEST_F(Limits, NamesThatAreNoEntriesTakeNoPlace) {
  for (int i = 0; i < 3000; ++i) host.texts["/home/ann/.config/autostart/" + std::to_string(i)] = "";
  host.texts["/home/ann/.config/autostart/zz.desktop"] = Entry("/tmp/evil");
  EXPECT_EQ(Autorun().size(), 1U);
  EXPECT_EQ(missed.Count(), 0U);
}

TEST_F(Limits, EntryBehindTheLimitIsLostAndNotGone) {
  const std::string folder = "/home/ann/.config/autostart/";
  AddFile(folder + "zz.desktop", Entry("/tmp/evil"));
  EXPECT_THAT(Tell(monitor::kAutorun, Autorun()), ElementsAre("+" + folder + "zz.desktop=/tmp/evil"));
  for (int i = 0; i < 500; ++i) AddFile(folder + std::to_string(i) + ".desktop", Entry("/a"));
  auto told = Tell(monitor::kAutorun, Autorun());
  EXPECT_EQ(told.size(), 501U);
  EXPECT_EQ(told.front(), "lost 1");
  EXPECT_THAT(Tell(monitor::kAutorun, Autorun()), IsEmpty()) << "the same again";
  host.texts.erase(folder + "zz.desktop");
  host.facts.erase(folder + "zz.desktop");
  EXPECT_THAT(Tell(monitor::kAutorun, Autorun()), ElementsAre("-" + folder + "zz.desktop=/tmp/evil"));
}

TEST_F(Limits, EntryThatMayNotBeReadIsLostAndNotGone) {
  const std::string path = "/etc/xdg/autostart/a.desktop";
  AddFile(path, Entry("/usr/bin/a"));
  Tell(monitor::kAutorun, Autorun());
  host.texts.erase(path);
  EXPECT_THAT(Tell(monitor::kAutorun, Autorun()), ElementsAre("lost 1"));
  AddFile(path, Entry("/tmp/evil"));
  EXPECT_THAT(Tell(monitor::kAutorun, Autorun()),
              ElementsAre("-" + path + "=/usr/bin/a", "+" + path + "=/tmp/evil"));
}

TEST_F(Limits, SwitchedOffUnitIsNoLoss) {
  host.facts[kUnits + "off.service"] = {EntryKind::kOther, 0666, 0, 1};
  EXPECT_THAT(Autorun(), IsEmpty());
  EXPECT_EQ(missed.Count(), 0U);
}

TEST_F(Limits, EntryLargerThanWhatIsReadIsTold) {
  AddFile(kUnits + "u.service", "ExecStart=/a\n" + std::string(70000, '#') + "\nExecStart=/tmp/evil\n");
  EXPECT_EQ(Autorun().size(), 1U);
  EXPECT_EQ(missed.CountOf(monitor::kAutorun), 1U);
}

// A long command that changed in its middle, and one whose change was cleaned away, made no row.
TEST_F(Limits, ChangedCommandIsNewsHoweverItReads) {
  const std::string path = "/etc/xdg/autostart/a.desktop";
  for (const auto& [before, after] :
       {std::pair(std::string(300, 'a') + " --x " + std::string(300, 'b'),
                  std::string(300, 'a') + " --gpu-launcher=/home/evil " + std::string(300, 'b')),
        std::pair(std::string("/usr/bin/x a|b"), std::string("/usr/bin/x a;b"))}) {
    AddFile(path, Entry(before));
    Tell(monitor::kAutorun, Autorun());
    AddFile(path, Entry(after));
    const auto told = Tell(monitor::kAutorun, Autorun());
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].substr(1), told[1].substr(1));
    EXPECT_THAT(Tell(monitor::kAutorun, Autorun()), IsEmpty());
  }
}

TEST_F(Limits, DropInsAndPersonsOtherFolderOfUnitsAreRead) {
  host.texts["/etc/systemd/system/ssh.service.d/a.conf"] = "[Service]\nExecStartPost=/tmp/evil\n";
  host.texts["/etc/systemd/system/ssh.service.d/a.txt"] = "[Service]\nExecStartPost=/no\n";
  host.texts["/home/ann/.local/share/systemd/user/e.service"] = "[Service]\nExecStopPost=/tmp/evil2\n";
  std::vector<std::string> texts;
  for (const Item& item : Autorun()) texts.push_back(item.description);
  EXPECT_THAT(texts, ElementsAre("/etc/systemd/system/ssh.service.d/a.conf=/tmp/evil",
                                 "/home/ann/.local/share/systemd/user/e.service=/tmp/evil2"));
  EXPECT_THAT(AutorunFolders(host, kAnn), ::testing::Contains("/etc/systemd/system/ssh.service.d"));
}

TEST_F(Limits, ProgramBehindTheLimitOfATemporaryFolderIsSeenOnceItIsNamed) {
  for (int i = 0; i < 5000; ++i) host.facts["/tmp/" + std::to_string(i)] = {EntryKind::kFile, 0755, 5, 1};
  host.facts["/tmp/zz"] = {EntryKind::kFile, 04755, 5, 1};
  EXPECT_EQ(ObserveFolders(host, {}, &missed).size(), 5000U);
  EXPECT_EQ(missed.CountOf(monitor::kFolders), 1U);
  const auto items = ObserveFolders(host, {"/tmp/zz", "/tmp/none", "/tmp/7"});
  ASSERT_EQ(items.size(), 5001U);
  EXPECT_EQ(items.back().description, "/tmp/zz");
  EXPECT_TRUE(items.back().rules.Has(Rule::kSetUserIdInTemporaryFolder));
}

TEST_F(Limits, FilesThatAreNoProgramsTakeNoPlace) {
  for (int i = 0; i < 6000; ++i) host.facts["/tmp/" + std::to_string(i)] = {EntryKind::kFile, 0644, 5, 1};
  host.facts["/tmp/zz"] = {EntryKind::kFile, 0755, 5, 1};
  EXPECT_EQ(ObserveFolders(host, {}, &missed).size(), 1U);
  EXPECT_EQ(missed.Count(), 0U);
}

TEST_F(Limits, FileOfManyVersionsBehindALimitDoesNotFillTheRoom) {
  const std::string path = kUnits + "u.service";
  for (int version = 0; version < 10; ++version) {
    std::string commands;
    for (int i = 0; i < 20; ++i)
      commands += "ExecStart=/v" + std::to_string(version) + "/" + std::to_string(i) + "\n";
    AddFile(path, commands);
    Tell(monitor::kAutorun, Autorun());
  }
  missed = Shortfall();
  EXPECT_EQ(Tell(monitor::kAutorun, {}).size(), 32U);
}

TEST(NamesOfAFolder, AreTheFirstOfThoseThatFit) {
  const test::TemporaryFolder folder;
  for (const char* name : {"d", "b", "x1", "a", "c"}) folder.Write(name, "");
  const auto host = MakeLinuxHostView();
  const auto list =
      host->ListSome(folder.path(), 2, [](std::string_view name) { return !name.starts_with("a"); });
  EXPECT_THAT(list.names, ElementsAre("b", "c"));
  EXPECT_EQ(list.left_out, 2U);
}

// The open alone told whoever wrote into the pipe that somebody reads, and then that nobody does.
TEST(PlainFilesOnly, PipeAndWhatLeadsToItAreNotOpened) {
  const test::TemporaryFolder folder;
  const std::string pipe = folder.Path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  ASSERT_EQ(symlink("pipe", folder.Path("link").c_str()), 0);
  folder.Write("file", "0123456789");
  ASSERT_EQ(symlink("file", folder.Path("good").c_str()), 0);
  const platform::FileDescriptor opens(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  ASSERT_GE(inotify_add_watch(opens.get(), pipe.c_str(), IN_OPEN), 0);
  const auto host = MakeLinuxHostView();
  for (const char* name : {"pipe", "link", "none"}) {
    EXPECT_FALSE(host->ReadText(folder.Path(name), 10)) << name;
    EXPECT_FALSE(host->ReadFrom(folder.Path(name), 0, 10)) << name;
    EXPECT_FALSE(host->ReadPieces(folder.Path(name), 10, [](std::string_view) {})) << name;
  }
  char event[512];
  EXPECT_EQ(read(opens.get(), event, sizeof event), -1) << "somebody opened the pipe";
  EXPECT_FALSE(host->ReadText(folder.path(), 10));
  EXPECT_FALSE(host->ReadText("/dev/zero", 10));
  EXPECT_EQ(host->ReadText(folder.Path("good"), 4), "0123");
  EXPECT_EQ(host->ReadFrom(folder.Path("good"), 8, 4), "89");
  EXPECT_EQ(host->ReadFrom(folder.Path("good"), 80, 4), "");
  EXPECT_TRUE(host->ReadText("/proc/self/stat", 100));
}

}  // namespace
}  // namespace zendrix::agent
