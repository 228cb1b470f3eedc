#include "agent/host/distinct_name.h"
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
  const std::string name = DistinctName("/opt/a,b");
  Program program{name, name, {"/opt/a,b", false, false}};
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

std::string FailureAt(const std::string& line, const std::string& from = "") {
  std::string record(kLoginRecordSize, '\0');
  record.replace(8, line.size(), line);
  record.replace(76, from.size(), from);
  return record;
}

std::vector<std::string> Failures(FakeHost& host, std::uint64_t before, std::uint64_t now) {
  std::vector<std::string> texts;
  for (const FailedLogins& place : ReadFailedLogins(host, before, now))
    texts.push_back(std::to_string(place.count) + " " + place.where);
  return texts;
}

// Only the last one was read: twelve guesses from one computer and then one from another were told as
// thirteen of the other.
TEST(FailedLogins, AreReadOneByOneAndToldByTheirPlace) {
  FakeHost host;
  std::string& record = host.texts["/var/log/btmp"];
  record = FailureAt("tty1");
  for (int i = 0; i < 12; ++i) record += FailureAt("ssh:notty", "203.0.113.66");
  record += FailureAt("ssh:notty", "10.0.0.5") + "half a record";
  EXPECT_THAT(Failures(host, 1, 14),
              testing::ElementsAre("12 sshd from 203.0.113.66", "1 sshd from 10.0.0.5"));
  EXPECT_THAT(Failures(host, 14, 14), testing::IsEmpty());
  EXPECT_THAT(Failures(host, 20, 2), testing::ElementsAre("1 tty1", "1 sshd from 203.0.113.66"))
      << "a record that was begun anew";
}

TEST(FailedLogins, OfAFloodTheNewestAreReadAndTheOthersCounted) {
  FakeHost host;
  std::string& record = host.texts["/var/log/btmp"];
  for (int i = 0; i < 2100; ++i) record += FailureAt(i < 100 ? "tty1" : "tty2");
  EXPECT_THAT(Failures(host, 0, 2100), testing::ElementsAre("2000 tty2", "100 "));
  record.clear();
  for (int i = 0; i < 150; ++i) record += FailureAt("tty" + std::to_string(i));
  const auto places = Failures(host, 0, 150);
  ASSERT_EQ(places.size(), 101U);
  EXPECT_EQ(places.back(), "50 ");
}

TEST(FailedLogins, ThatCannotBeReadAreOnlyCounted) {
  FakeHost host;
  EXPECT_THAT(Failures(host, 1, 3), testing::ElementsAre("2 "));
}

}  // namespace
}  // namespace zendrix::agent
