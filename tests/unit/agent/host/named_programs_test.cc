#include "agent/host/observe_accounts.h"
#include "agent/host/observe_folders.h"
#include "agent/host/observe_processes.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

TEST(PreloadList, NamesItsLibrariesAndBelongsToTheFirst) {
  FakeHost host;
  host.facts["/etc/ld.so.preload"] = {EntryKind::kFile, 0644, 5, 1};
  host.texts["/etc/ld.so.preload"] = "# /no/this.so\n/lib/a.so:/lib/b.so relative.so # /no/that.so\n";
  std::vector<std::string> names;
  for (const Item& item : ObserveFolders(host)) {
    names.push_back(item.description + " " + item.subject + " " + item.program);
    EXPECT_EQ(item.rules, RuleSet({Rule::kPreloadList}));
  }
  EXPECT_THAT(names, testing::ElementsAre("/etc/ld.so.preload /lib/a.so /lib/a.so",
                                          "/lib/a.so /lib/a.so /lib/a.so", "/lib/b.so /lib/b.so /lib/b.so"));
}

TEST(PreloadList, WithLibrariesByTheThousandNamesAFew) {
  FakeHost host;
  host.facts["/etc/ld.so.preload"] = {EntryKind::kFile, 0644, 5, 1};
  for (int i = 0; i < 3000; ++i) host.texts["/etc/ld.so.preload"] += "/l" + std::to_string(i) + " ";
  EXPECT_EQ(ObserveFolders(host).size(), 9U);
}

// What is kept about a program goes by its file, so the items have to name it.
TEST(ProgramOfAnItem, IsItsFileOnThisHostWhereThereIsOne) {
  Program program{"/opt/a_b", "/opt/a_b", {"/opt/a,b", false, false}};
  EXPECT_EQ(HostPathOf(program), "/opt/a,b");
  EXPECT_EQ(ProcessItem(program, 7, 1, {}).program, "/opt/a,b");
  EXPECT_EQ(ParentKeyOf(program), "/opt/a,b");
  program.file.deleted = true;
  EXPECT_EQ(HostPathOf(program), "");
  program.file = {"/opt/a,b", false, true};
  EXPECT_EQ(HostPathOf(program), "");
  program = {"/opt/a in mount namespace 5", "/opt/a in another mount namespace", {"/opt/a", false, false}};
  EXPECT_EQ(HostPathOf(program), "");
  EXPECT_EQ(ParentKeyOf(program), "/opt/a in another mount namespace");
}

TEST(ProgramOfAnItem, KnowsWhatStartedIt) {
  FakeHost host;
  host.AddProcess(1, "init", "/sbin/init");
  host.AddProcess(10, "sshd", "/usr/sbin/sshd");
  const auto items = ObserveProcesses(ReadProcesses(host, 0));
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[1].program, "/usr/sbin/sshd");
  EXPECT_EQ(items[1].parent, "/sbin/init");
}

TEST(LastFailedLogin, TellsTheProgramAndTheComputer) {
  FakeHost host;
  EXPECT_EQ(LastFailedLogin(host), "");
  std::string record(kLoginRecordSize, '\0');
  record.replace(8, 4, "tty1");
  host.texts["/var/log/btmp"] = record + "half a record";
  EXPECT_EQ(LastFailedLogin(host), "tty1");
  record.replace(8, 9, "ssh:notty");
  record.replace(76, 9, "192.0.2.7");
  host.texts["/var/log/btmp"] = std::string(kLoginRecordSize, '\1') + record + "half a record";
  EXPECT_EQ(LastFailedLogin(host), "sshd from 192.0.2.7");
}

}  // namespace
}  // namespace zendrix::agent
