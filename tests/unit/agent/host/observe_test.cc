#include <cstring>

#include "agent/host/observe_accounts.h"
#include "agent/host/observe_autorun.h"
#include "agent/host/observe_folders.h"
#include "agent/host/observe_host.h"
#include "agent/host/observe_processes.h"
#include "agent/host/observe_sockets.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

constexpr const char* kSocketTail = " 00000000:00000000 00:00000000 00000000     0        0 ";

class Observers : public ::testing::Test {
 protected:
  void AddSocket(const std::string& local, const std::string& remote, const std::string& state, int inode,
                 const std::string& table = "/proc/net/tcp") {
    host.texts[table] += "   0: " + local + " " + remote + " " + state + kSocketTail + std::to_string(inode) +
                         " 1 0 100 0 0 10 0\n";
  }

  void GiveSocket(int pid, int inode) {
    host.links["/proc/" + std::to_string(pid) + "/fd/" + std::to_string(inode)] =
        "socket:[" + std::to_string(inode) + "]";
  }

  std::vector<Item> Processes() { return ObserveProcesses(ReadProcesses(host, 1)); }
  std::vector<Item> Sockets() { return ObserveSockets(host, ReadProcesses(host, 1)); }

  static Item Find(const std::vector<Item>& items, const std::string& description) {
    for (const Item& item : items) {
      if (item.description == description) return item;
    }
    ADD_FAILURE() << "no item " << description;
    return {};
  }

  static std::vector<std::string> Descriptions(const std::vector<Item>& items) {
    std::vector<std::string> texts;
    for (const Item& item : items) texts.push_back(item.description);
    return texts;
  }

  FakeHost host;
};

TEST_F(Observers, ProcessIsPathAndPid) {
  host.AddProcess(812, "sshd", "/usr/sbin/sshd");
  const auto items = Processes();
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0].monitor, "Running Processes");
  EXPECT_EQ(items[0].description, "/usr/sbin/sshd:812");
  EXPECT_TRUE(items[0].rules.empty());
}

TEST_F(Observers, AgentAndKernelThreadsAreLeftOut) {
  host.AddProcess(1, "Agent", "/tmp/zendrix-agent");
  host.texts["/proc/2/stat"] = FakeHost::StatText(2, "kthreadd", 2129984, 1);
  EXPECT_TRUE(Processes().empty());
}

TEST_F(Observers, EndedProcessIsLeftOut) {
  host.texts["/proc/9/stat"] = "9 (sh) Z 1 9 9 0 -1 4194304 0 0 0 0 0 0 0 0 20 0 1 0 55 0 0\n";
  EXPECT_TRUE(Processes().empty());
}

TEST_F(Observers, ProcessWithoutReadablePathGoesByItsName) {
  host.AddProcess(5, "sshd", "");
  const auto items = Processes();
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0].description, "sshd:5");
  EXPECT_TRUE(items[0].rules.empty());
}

TEST_F(Observers, ProcessThatVanishedBetweenTwoReadsIsLeftOut) {
  host.links["/proc/7/exe"] = "/usr/bin/x";
  EXPECT_TRUE(Processes().empty());
}

TEST_F(Observers, PlaceOfAProgramIsJudged) {
  host.AddProcess(10, "a", "/tmp/a");
  host.AddProcess(11, "b", "/home/ann/.b/b");
  host.AddProcess(12, "c", "/memfd:c (deleted)");
  host.AddProcess(13, "d", "/usr/bin/d (deleted)");
  host.AddProcess(14, "kworker/0:9", "/usr/bin/e");
  const auto items = Processes();
  EXPECT_EQ(Find(items, "/tmp/a:10").rules, RuleSet({Rule::kProgramInTemporaryFolder}));
  EXPECT_EQ(Find(items, "/home/ann/.b/b:11").rules,
            RuleSet({Rule::kProgramOutsideSystem, Rule::kProgramHidden}));
  EXPECT_EQ(Find(items, "/memfd_c:12").rules, RuleSet({Rule::kProgramInMemory}));
  EXPECT_EQ(Find(items, "/usr/bin/d:13").rules, RuleSet({Rule::kProgramDeleted}));
  EXPECT_EQ(Find(items, "/usr/bin/e:14").rules, RuleSet({Rule::kNamedLikeKernelThread}));
}

TEST_F(Observers, ProgramNameCannotBreakALine) {
  host.AddProcess(10, "a", "/usr/x|y * z;Autorun Registry=q\r\n1,h,1,System|");
  EXPECT_EQ(Processes()[0].description, "/usr/x_y _ z_Autorun Registry_q__1_h_1_System_~0c8be87885a7:10");
}

TEST_F(Observers, LargestProgramsComeFirstAndAddUp) {
  host.AddProcess(10, "a", "/usr/bin/a");
  host.AddProcess(11, "b", "/usr/bin/b");
  host.AddProcess(12, "b", "/usr/bin/b");
  host.AddProcess(13, "c", "/usr/bin/c");
  host.texts["/proc/13/status"] = "VmRSS: 10 kB\n";
  EXPECT_THAT(LargestPrograms(host, ReadProcesses(host, 1)), ::testing::ElementsAre("b", "a"));
}

// Five processes that share most of their memory are no large program.
TEST_F(Observers, WhatProgramsShareIsDividedWhereItCanBeSeen) {
  const auto share = [&](int pid, int kilobytes) {
    host.texts["/proc/" + std::to_string(pid) + "/smaps_rollup"] =
        "00400000-7fff0000 ---p 00000000 00:00 0 [rollup]\nRss: 1000 kB\nPss:    " +
        std::to_string(kilobytes) + " kB\nPss_Dirty: 1 kB\n";
  };
  for (int pid = 10; pid < 15; ++pid)
    host.AddProcess(static_cast<std::uint64_t>(pid), "many", "/usr/bin/many");
  host.AddProcess(20, "one", "/usr/bin/one");
  host.AddProcess(21, "two", "/usr/bin/two");
  const auto largest = [&] { return LargestPrograms(host, ReadProcesses(host, 1)); };
  EXPECT_THAT(largest(), ::testing::ElementsAre("many", "one"));
  for (int pid = 10; pid < 15; ++pid) share(pid, 100);
  share(20, 900);
  EXPECT_THAT(largest(), ::testing::ElementsAre("many", "one")) << "one of the shares cannot be seen";
  share(21, 950);
  EXPECT_THAT(largest(), ::testing::ElementsAre("two", "one"));
  for (int pid = 30; pid < 70; ++pid) {
    host.AddProcess(static_cast<std::uint64_t>(pid), "many", "/usr/bin/many");
    share(pid, 100);
  }
  EXPECT_THAT(largest(), ::testing::ElementsAre("many", "one")) << "too many to look at";
}

TEST_F(Observers, ListeningPortIsPortAndProgram) {
  host.AddProcess(10, "sshd", "/usr/sbin/sshd");
  GiveSocket(10, 77);
  AddSocket("00000000:0016", "00000000:0000", "0A", 77);
  const auto items = Sockets();
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0].monitor, "Listening Ports");
  EXPECT_EQ(items[0].description, "22:/usr/sbin/sshd");
  EXPECT_EQ(items[0].subject, "/usr/sbin/sshd");
  EXPECT_EQ(items[0].rules, RuleSet({Rule::kPortOpenToAll}));
}

TEST_F(Observers, PortOfAnUnknownProgramSaysSo) {
  AddSocket("0100007F:1F90", "00000000:0000", "0A", 77);
  const auto items = Sockets();
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0].description, "8080:an unknown program");
  EXPECT_EQ(items[0].rules, RuleSet({Rule::kPortOfUnknownProgram}));
}

TEST_F(Observers, PortOpenForBothFamiliesIsOneItem) {
  AddSocket("0100007F:07E8", "00000000:0000", "0A", 0);
  AddSocket("00000000000000000000000000000000:07E8", "00000000000000000000000000000000:0000", "0A", 0,
            "/proc/net/tcp6");
  const auto items = Sockets();
  ASSERT_EQ(items.size(), 1U);
  EXPECT_TRUE(items[0].rules.Has(Rule::kPortOpenToAll));
  EXPECT_TRUE(items[0].rules.Has(Rule::kPortUnusual));
}

TEST_F(Observers, PortThatOpensUpToAllNetworksIsNews) {
  AddSocket("0100007F:0016", "00000000:0000", "0A", 0);
  const auto before = Sockets();
  host.texts.clear();
  AddSocket("00000000:0016", "00000000:0000", "0A", 0);
  EXPECT_EQ(Compare(before, Sockets()).added.size(), 1U);
}

TEST_F(Observers, OutgoingConnectionIsAddressPortAndProgram) {
  host.AddProcess(10, "nc", "/usr/bin/nc");
  GiveSocket(10, 78);
  AddSocket("0501A8C0:9000", "0201A8C0:115C", "01", 78);
  const auto items = Sockets();
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0].monitor, "TCP Connections");
  EXPECT_EQ(items[0].description, "192.168.1.2:4444:/usr/bin/nc");
  EXPECT_EQ(items[0].rules, RuleSet({Rule::kConnectionToUnusualPort}));
}

TEST_F(Observers, IncomingConnectionNamesThePortItCameInOn) {
  AddSocket("00000000:0016", "00000000:0000", "0A", 0);
  AddSocket("0501A8C0:0016", "0201A8C0:D431", "01", 0);
  EXPECT_EQ(Find(Sockets(), "192.168.1.2:22").rules, RuleSet({Rule::kConnectionOfUnknownProgram}));
}

TEST_F(Observers, ConnectionsWithinTheComputerAndClosedOnesAreLeftOut) {
  AddSocket("0100007F:9000", "0100007F:115C", "01", 0);
  AddSocket("0501A8C0:9000", "0201A8C0:115C", "06", 0);
  EXPECT_TRUE(Sockets().empty());
}

TEST_F(Observers, AccountsAreJudged) {
  host.texts["/etc/passwd"] =
      "root:x:0:0::/root:/bin/bash\ntoor:x:0:0::/root:/bin/bash\ndaemon:x:1:1::/:/usr/sbin/nologin\n"
      "pg:x:101:1::/:/bin/sh\nann::1000:1::/home/ann:/bin/sh\n";
  const auto items = ObserveAccounts(ReadAccounts(host));
  EXPECT_THAT(Descriptions(items), ::testing::ElementsAre("root", "toor", "daemon", "pg", "ann"));
  EXPECT_TRUE(items[0].rules.empty());
  EXPECT_EQ(items[1].rules, RuleSet({Rule::kSecondRoot}));
  EXPECT_TRUE(items[2].rules.empty());
  EXPECT_EQ(items[3].rules, RuleSet({Rule::kServiceAccountWithShell}));
  EXPECT_EQ(items[4].rules, RuleSet({Rule::kNoPassword}));
}

TEST_F(Observers, AccountThatGainsAllRightsIsNews) {
  host.texts["/etc/passwd"] = "ann:x:1000:1::/home/ann:/bin/sh\n";
  const auto before = ObserveAccounts(ReadAccounts(host));
  host.texts["/etc/passwd"] = "ann:x:0:1::/home/ann:/bin/sh\n";
  EXPECT_EQ(Compare(before, ObserveAccounts(ReadAccounts(host))).added.size(), 1U);
}

TEST_F(Observers, LoginsSayWhereTheyComeFrom) {
  const auto record = [](const std::string& line, const std::string& user, const std::string& from) {
    std::string bytes(kLoginRecordSize, '\0');
    bytes[0] = 7;
    bytes.replace(8, line.size(), line);
    bytes.replace(44, user.size(), user);
    bytes.replace(76, from.size(), from);
    return bytes;
  };
  host.texts["/run/utmp"] = record("tty1", "ann", "") + record("pts/0", "bob", "10.0.0.9") +
                            record("pts/1", "root", "10.0.0.9") + record("tty7", "eve", ":0");
  const auto items = ObserveLogins(host);
  EXPECT_THAT(Descriptions(items), ::testing::ElementsAre("ann on tty1", "bob from 10.0.0.9",
                                                          "root from 10.0.0.9", "eve on tty7"));
  EXPECT_EQ(items[0].monitor, "Logged-On Users");
  EXPECT_EQ(items[1].rules, RuleSet({Rule::kLoginFromElsewhere}));
  EXPECT_EQ(items[2].rules, RuleSet({Rule::kLoginAsRootFromElsewhere}));
}

TEST_F(Observers, FailedLoginsAreCountedByRecords) {
  EXPECT_FALSE(CountFailedLogins(host));
  host.facts["/var/log/btmp"] = {EntryKind::kFile, 0600, 3 * 384 + 5, 0};
  EXPECT_EQ(CountFailedLogins(host), 3U);
}

TEST_F(Observers, AutorunReadsEntriesOfTheSystemAndOfEachPerson) {
  host.texts["/etc/passwd"] = "ann:x:1000:1::/home/ann:/bin/sh\nsvc:x:10:1::/srv:/bin/false\n";
  host.texts["/etc/xdg/autostart/a.desktop"] = "[Desktop Entry]\nExec=xdg-user-dirs-update\n";
  host.texts["/etc/xdg/autostart/notes.txt"] = "[Desktop Entry]\nExec=no\n";
  host.texts["/etc/systemd/system/multi-user.target.wants/cron.service"] =
      "[Service]\nExecStart=/usr/sbin/cron -f\n";
  host.texts["/home/ann/.config/autostart/b.desktop"] = "[Desktop Entry]\nExec=/tmp/.x/b --k=v\n";
  host.texts["/srv/.config/autostart/c.desktop"] = "[Desktop Entry]\nExec=no\n";
  const auto items = ObserveAutorun(host, ReadAccounts(host));
  EXPECT_THAT(
      Descriptions(items),
      ::testing::ElementsAre("/etc/xdg/autostart/a.desktop=xdg-user-dirs-update",
                             "/etc/systemd/system/multi-user.target.wants/cron.service=/usr/sbin/cron -f",
                             "/home/ann/.config/autostart/b.desktop=/tmp/.x/b --k_v"));
  EXPECT_TRUE(items[0].rules.empty());
  EXPECT_TRUE(items[1].rules.empty());
  EXPECT_EQ(items[2].rules, RuleSet({Rule::kAutorunInTemporaryFolder, Rule::kAutorunHidden}));
  EXPECT_EQ(items[2].subject, "/tmp/.x/b");
}

TEST_F(Observers, FoldersListSystemFoldersWholeAndProgramsOfTemporaryOnes) {
  host.facts["/etc/cron.d/job"] = {EntryKind::kFile, 0644, 5, 1};
  host.facts["/usr/local/bin/sub"] = {EntryKind::kFolder, 0755, 5, 1};
  host.facts["/tmp/notes"] = {EntryKind::kFile, 0644, 5, 1};
  host.facts["/tmp/run"] = {EntryKind::kFile, 0755, 5, 1};
  host.facts["/tmp/.run"] = {EntryKind::kFile, 04755, 5, 1};
  const auto items = ObserveFolders(host);
  EXPECT_THAT(Descriptions(items), ::testing::ElementsAre("/etc/cron.d/job", "/tmp/.run", "/tmp/run"));
  EXPECT_EQ(items[0].monitor, "Windows Folder");
  EXPECT_TRUE(items[0].rules.empty());
  EXPECT_EQ(items[1].monitor, "Windows Folder");
  EXPECT_EQ(items[1].rules,
            RuleSet({Rule::kSetUserIdInTemporaryFolder, Rule::kHiddenProgramInTemporaryFolder}));
  EXPECT_EQ(items[2].rules, RuleSet({Rule::kProgramFileInTemporaryFolder}));
}

TEST_F(Observers, ChangedFileIsGoneAndComeAgain) {
  host.facts["/etc/cron.d/job"] = {EntryKind::kFile, 0644, 5, 1};
  const auto before = ObserveFolders(host);
  host.facts["/etc/cron.d/job"].modified_ns = 2;
  const auto difference = Compare(before, ObserveFolders(host));
  EXPECT_EQ(difference.removed.size(), 1U);
  EXPECT_EQ(difference.added.size(), 1U);
}

TEST_F(Observers, PreloadListIsUnusualByBeingThere) {
  host.facts["/etc/ld.so.preload"] = {EntryKind::kFile, 0644, 5, 1};
  EXPECT_EQ(ObserveFolders(host)[0].rules, RuleSet({Rule::kPreloadList}));
}

TEST_F(Observers, LineOfAccountsThatCannotBeReadIsAnItemWithoutRules) {
  host.texts["/etc/passwd"] = "eve::zero:0::/:/bin/sh\n";
  const auto items = ObserveAccounts(ReadAccounts(host));
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0].description, "a line that cannot be read - eve__zero_0__/_/bin/sh");
  EXPECT_TRUE(items[0].rules.empty());
}

// A container's /usr/bin/tail was told as the host's when nobody but looks told of it.
TEST_F(Observers, ProgramOfAnotherMountNamespaceDoesNotPassForTheHosts) {
  host.AddProcess(1, "init", "/sbin/init");
  host.AddProcess(10, "tail", "/usr/bin/tail");
  host.AddProcess(11, "cat", "/usr/bin/cat");
  host.AddProcess(12, "sh", "/usr/bin/sh");
  host.links["/proc/1/ns/mnt"] = "mnt:[4]";
  host.links["/proc/10/ns/mnt"] = "mnt:[5]";
  host.links["/proc/11/ns/mnt"] = "mnt:[5]";
  host.links["/proc/12/ns/mnt"] = "mnt:[4]";
  host.facts["/usr/bin/tail"] = {EntryKind::kFile, 0755, 1, 1, 8, 100};
  host.facts["/proc/10/exe"] = {EntryKind::kFile, 0755, 1, 1, 9, 100};
  host.facts["/usr/bin/cat"] = {EntryKind::kFile, 0755, 1, 1, 8, 101};
  host.facts["/proc/11/exe"] = {EntryKind::kFile, 0755, 1, 1, 8, 101};
  GiveSocket(10, 77);
  AddSocket("00000000:0016", "00000000:0000", "0A", 77);
  const std::vector<std::string_view> monitors = {monitor::kProcesses, monitor::kPorts};
  const auto items = ObserveItems(host, 1, monitors);
  EXPECT_THAT(Descriptions(items),
              ::testing::UnorderedElementsAre("/usr/bin/tail in mount namespace 5:10", "/usr/bin/cat:11",
                                              "/usr/bin/sh:12", "22:/usr/bin/tail in mount namespace 5"));
  EXPECT_EQ(Find(items, "/usr/bin/tail in mount namespace 5:10").program, "");
}

TEST_F(Observers, FileMayBearTheWordDeletedInItsName) {
  host.AddProcess(10, "x", "/usr/bin/x (deleted)");
  host.AddProcess(11, "y", "/usr/bin/y (deleted)");
  host.facts["/usr/bin/x (deleted)"] = {EntryKind::kFile, 0755, 1, 1, 8, 100};
  host.facts["/proc/10/exe"] = {EntryKind::kFile, 0755, 1, 1, 8, 100};
  host.facts["/usr/bin/y (deleted)"] = {EntryKind::kFile, 0755, 1, 1, 8, 101};
  host.facts["/proc/11/exe"] = {EntryKind::kFile, 0755, 1, 1, 8, 102};
  const auto items = Processes();
  EXPECT_TRUE(Find(items, "/usr/bin/x (deleted):10").rules.empty());
  EXPECT_EQ(Find(items, "/usr/bin/y:11").rules, RuleSet({Rule::kProgramDeleted}));
}

TEST_F(Observers, FilesThatRuleCronShellsAndRightsAreLookedAt) {
  for (const char* path :
       {"/etc/anacrontab", "/etc/crontab", "/etc/profile", "/etc/sudoers", "/var/spool/cron/crontabs/ann"})
    host.facts[path] = {EntryKind::kFile, 0600, 5, 1};
  EXPECT_THAT(Descriptions(ObserveFolders(host)),
              ::testing::UnorderedElementsAre("/etc/anacrontab", "/etc/crontab", "/etc/profile",
                                              "/etc/sudoers", "/var/spool/cron/crontabs/ann"));
}

TEST_F(Observers, HostThatShowsNothingGivesAnEmptyLook) {
  const auto seen = ObserveHost(host, 5, 1);
  EXPECT_EQ(seen.taken_ms, 5);
  EXPECT_TRUE(seen.items.empty());
  EXPECT_FALSE(seen.memory_percent);
  EXPECT_FALSE(seen.traffic_bytes);
}

}  // namespace
}  // namespace zendrix::agent
