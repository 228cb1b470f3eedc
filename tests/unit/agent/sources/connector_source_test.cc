// The process connector and taskstats, recorded; the real ones at the end.
#include "agent/sources/connector_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <sys/wait.h>

#include "agent/sources/memory/recorded_netlink.h"
#include "support/kernel_load.h"
#include "unit/agent/fake_host.h"
#include "unit/agent/sources/netlink_bytes.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Kind = Observation::Kind;

constexpr char kEndedBefore[] = "an unknown program (it ended before it could be looked at)";
constexpr char kRanAnother[] = "an unknown program (it ran another program before it could be looked at)";

class ConnectorTest : public ::testing::Test {
 protected:
  void SetUp() override {
    host.AddProcess(1, "init", "/usr/sbin/init");
    host.links["/proc/1/ns/mnt"] = "mnt:[4026531841]";
    EntryFacts folder;
    folder.kind = EntryKind::kFolder;
    for (const char* name : {"/usr/bin", "/tmp"}) host.facts[name] = folder;
    AddFile("/usr/bin/short", 700);
  }

  void AddFile(const std::string& path, std::uint64_t inode) {
    EntryFacts file;
    file.kind = EntryKind::kFile;
    file.mode = 0755;
    file.device = 5;
    file.inode = inode;
    host.facts[path] = file;
  }

  ConnectorSource& Source() {
    if (source) return *source;
    OpenedConnector opened;
    opened.notices = std::make_unique<RecordedNetlink>(notices);
    if (with_ends) opened.ends = std::make_unique<RecordedNetlink>(ends);
    opened.family = test::kFamily;
    source = std::make_unique<ConnectorSource>(SourceParts{host, 50, [this] { return now_ns; }},
                                               std::move(opened));
    source->Drain(seen);
    seen.clear();
    return *source;
  }

  void Play(std::uint32_t what, std::vector<std::uint32_t> data, std::uint32_t processor = 0) {
    notices.waiting.emplace_back(
        test::ProcessNoticeText(what, processor, numbers[processor]++, std::move(data)));
  }
  void Forked(std::uint32_t parent, std::uint32_t pid) { Play(1, {parent, parent, pid, pid}); }
  void Executed(std::uint32_t pid) { Play(2, {pid, pid}); }
  void Ended(std::uint32_t pid) { Play(0x80000000, {pid, pid, 0, 17, 1, 1}); }

  // "+" came, "-" went, "!" lost
  std::vector<std::string> Drained() {
    seen.clear();
    Source().Drain(seen);
    std::vector<std::string> lines;
    for (const Observation& observation : seen) {
      if (observation.kind == Kind::kLost) lines.push_back("!" + std::to_string(observation.lost));
      if (observation.kind == Kind::kCame) lines.push_back("+" + observation.item.description);
      if (observation.kind == Kind::kWent) lines.push_back("-" + observation.item.description);
    }
    return lines;
  }

  FakeHost host;
  NetlinkScript notices;
  NetlinkScript ends;
  bool with_ends = true;
  std::int64_t now_ns = 1'000'000'000'000;
  std::map<std::uint32_t, std::uint32_t> numbers;
  std::vector<Observation> seen;
  std::unique_ptr<ConnectorSource> source;
};

TEST_F(ConnectorTest, ProgramThatLivesIsNamedByProcAndItsEndIsTold) {
  Source();
  Forked(1, 60);
  Executed(60);
  host.AddProcess(60, "editor", "/usr/bin/editor", 777);
  EXPECT_THAT(Drained(), ElementsAre("+/usr/bin/editor:60"));
  EXPECT_EQ(seen[0].item.identity, "777");
  EXPECT_EQ(seen[0].item.parent, "/usr/sbin/init");
  EXPECT_EQ(seen[0].seen_ns, now_ns);
  host.RemoveProcess(60);
  Ended(60);
  EXPECT_THAT(Drained(), ElementsAre("-/usr/bin/editor:60"));
}

TEST_F(ConnectorTest, ProgramThatEndedAtOnceIsNamedByTheNumberOfItsFile) {
  Source();
  Forked(1, 60);
  Executed(60);
  Ended(60);
  ends.waiting.emplace_back(test::EndText(60, 1, 5, 700, "short"));
  EXPECT_THAT(Drained(), ElementsAre("+/usr/bin/short:60", "-/usr/bin/short:60"));
  EXPECT_EQ(seen[0].item.parent, "/usr/sbin/init");
  EXPECT_EQ(seen[0].item.program, "/usr/bin/short");
}

TEST_F(ConnectorTest, ProgramOfATemporaryFolderIsFoundWithinASecondOfItsComing) {
  Source();
  Executed(60);
  Ended(60);
  ends.waiting.emplace_back(test::EndText(60, 1, 5, 800, "x"));
  EXPECT_THAT(Drained(),
              ElementsAre("+" + std::string(kEndedBefore) + ":60", "-" + std::string(kEndedBefore) + ":60"));
  AddFile("/tmp/x", 800);
  now_ns += ProgramIndex::kReadTemporaryAgainNs;
  Executed(61);
  Ended(61);
  ends.waiting.emplace_back(test::EndText(61, 1, 5, 800, "x"));
  EXPECT_THAT(Drained(), ElementsAre("+/tmp/x:61", "-/tmp/x:61"));
  EXPECT_TRUE(seen[0].item.rules.Has(Rule::kProgramInTemporaryFolder));
}

TEST_F(ConnectorTest, NeighbourOfAProgramThatWasSeenIsFound) {
  host.facts["/opt/tools"] = host.facts["/tmp"];
  AddFile("/opt/tools/long", 900);
  AddFile("/opt/tools/short", 901);
  Source();
  Executed(60);
  host.AddProcess(60, "long", "/opt/tools/long", 777);
  EXPECT_THAT(Drained(), ElementsAre("+/opt/tools/long:60"));
  Executed(61);
  Ended(61);
  ends.waiting.emplace_back(test::EndText(61, 60, 5, 901, "short"));
  EXPECT_THAT(Drained(), ElementsAre("+/opt/tools/short:61", "-/opt/tools/short:61"));
}

TEST_F(ConnectorTest, NumberOfAFileThatIsAnothersNowNamesNobody) {
  Source();
  Executed(60);
  Ended(60);
  ends.waiting.emplace_back(test::EndText(60, 1, 5, 700, "short"));
  EXPECT_THAT(Drained(), SizeIs(2));
  AddFile("/usr/bin/short", 701);
  Executed(61);
  Ended(61);
  ends.waiting.emplace_back(test::EndText(61, 1, 5, 700, "short"));
  EXPECT_THAT(Drained(),
              ElementsAre("+" + std::string(kEndedBefore) + ":61", "-" + std::string(kEndedBefore) + ":61"));
  Executed(62);
  Ended(62);
  ends.waiting.emplace_back(test::EndText(62, 1, 6, 701, "short"));
  EXPECT_THAT(Drained(),
              ElementsAre("+" + std::string(kEndedBefore) + ":62", "-" + std::string(kEndedBefore) + ":62"))
      << "the number of another device";
}

TEST_F(ConnectorTest, EndThatTaskstatsTellsOneTurnEarlierStillNamesTheProgram) {
  Source();
  ends.waiting.emplace_back(test::EndText(60, 1, 5, 700, "short"));
  EXPECT_THAT(Drained(), IsEmpty());
  Executed(60);
  Ended(60);
  EXPECT_THAT(Drained(), ElementsAre("+/usr/bin/short:60", "-/usr/bin/short:60"));
  Drained();
  Executed(60);
  Ended(60);
  EXPECT_THAT(Drained(), IsEmpty());
  EXPECT_THAT(Drained(),
              ElementsAre("+" + std::string(kEndedBefore) + ":60", "-" + std::string(kEndedBefore) + ":60"))
      << "turns later the number may be another's";
}

TEST_F(ConnectorTest, EndThatTaskstatsTellsOneTurnLaterStillNamesTheProgram) {
  Source();
  Forked(1, 60);
  Executed(60);
  Forked(1, 61);
  Executed(61);
  host.AddProcess(61, "editor", "/usr/bin/editor", 777);
  EXPECT_THAT(Drained(), ElementsAre("+/usr/bin/editor:61")) << "the others do not wait for it";
  ends.waiting.emplace_back(test::EndText(60, 1, 5, 700, "short"));
  Ended(60);
  EXPECT_THAT(Drained(), ElementsAre("+/usr/bin/short:60", "-/usr/bin/short:60"));
}

TEST_F(ConnectorTest, OnlyTheLastOfSeveralProgramsOfAProcessIsNamed) {
  Source();
  Executed(60);
  Executed(60);
  host.AddProcess(60, "editor", "/usr/bin/editor", 777);
  EXPECT_THAT(Drained(), ElementsAre("+" + std::string(kRanAnother) + ":60",
                                     "-" + std::string(kRanAnother) + ":60", "+/usr/bin/editor:60"));
}

TEST_F(ConnectorTest, ProgramThatCameWhileProcWasReadIsNotTakenForTheOneBefore) {
  Source();
  host.AddProcess(60, "second", "/usr/bin/second", 777);
  Executed(60);
  notices.on_empty = [this] { Executed(60); };
  EXPECT_THAT(Drained(), ElementsAre("+" + std::string(kRanAnother) + ":60"));
  EXPECT_THAT(Drained(), ElementsAre("-" + std::string(kRanAnother) + ":60", "+/usr/bin/second:60"));
}

TEST_F(ConnectorTest, CopyIsToldWhenItHasLivedForASecond) {
  Source();
  Forked(1, 60);
  host.AddProcess(60, "init", "/usr/sbin/init", 777);
  EXPECT_THAT(Drained(), IsEmpty());
  now_ns += ProcessTable::kSettledAfterNs;
  EXPECT_THAT(Drained(), ElementsAre("+/usr/sbin/init:60"));
}

TEST_F(ConnectorTest, ThreadsAreNoProcesses) {
  Source();
  Executed(60);
  host.AddProcess(60, "editor", "/usr/bin/editor", 777);
  Play(1, {60, 60, 61, 60});
  Play(0x80000000, {61, 60, 0, 17, 1, 1});
  EXPECT_THAT(Drained(), ElementsAre("+/usr/bin/editor:60"));
}

TEST_F(ConnectorTest, WithoutTaskstatsWhatEndedAtOnceIsUnknownAndTheLevelSaysSo) {
  with_ends = false;
  EXPECT_EQ(Source().level().reason, "what ends at once cannot be named");
  EXPECT_EQ(Source().level().level, Level::kNotices);
  Executed(60);
  Ended(60);
  EXPECT_THAT(Drained(),
              ElementsAre("+" + std::string(kEndedBefore) + ":60", "-" + std::string(kEndedBefore) + ":60"));
}

TEST_F(ConnectorTest, MissingNumbersOfAProcessorAreLosses) {
  Source();
  Play(4, {1, 1, 0, 0});  // a kind that is not looked at counts all the same
  Play(4, {1, 1, 0, 0}, 1);
  EXPECT_THAT(Drained(), IsEmpty());
  numbers[0] += 3;
  numbers[1] += 2;
  Play(4, {1, 1, 0, 0});
  Play(4, {1, 1, 0, 0}, 1);
  EXPECT_THAT(Drained(), ElementsAre("!5"));
  numbers[0] = 0;  // began anew
  Play(4, {1, 1, 0, 0});
  EXPECT_THAT(Drained(), IsEmpty());
}

TEST_F(ConnectorTest, AfterALossTheTableIsHeldAgainstProc) {
  Source();
  host.AddProcess(60, "editor", "/usr/bin/editor", 777);
  EXPECT_THAT(Drained(), IsEmpty()) << "nobody told of it";
  notices.waiting.emplace_back(std::nullopt);
  now_ns += ConnectorSource::kLooksApartNs;
  EXPECT_THAT(Drained(), ElementsAre("+/usr/bin/editor:60"));
  host.RemoveProcess(60);
  now_ns += ConnectorSource::kLookEveryNs;
  EXPECT_THAT(Drained(), ElementsAre("-/usr/bin/editor:60")) << "and once in half a minute";
}

TEST_F(ConnectorTest, BusyComputerIsLookedAtAllTheSame) {
  Source();
  host.AddProcess(60, "editor", "/usr/bin/editor", 777);
  now_ns += ConnectorSource::kLookEveryNs;
  notices.on_empty = [this] { Executed(99); };
  EXPECT_THAT(Drained(), IsEmpty()) << "something waits";
  now_ns += ConnectorSource::kLooksApartNs;
  notices.on_empty = [this] { Executed(99); };
  EXPECT_THAT(Drained(), ::testing::Contains("+/usr/bin/editor:60"));
}

TEST_F(ConnectorTest, TheAgentItselfIsNotTold) {
  Source();
  Executed(50);
  host.AddProcess(50, "agent", "/usr/bin/agent", 5);
  EXPECT_THAT(Drained(), IsEmpty());
}

TEST_F(ConnectorTest, RefusedConnectorGivesNothingButItsReason) {
  OpenedConnector refused;
  refused.refusal = "no right";
  ConnectorSource nothing({host, 50, [this] { return now_ns; }}, std::move(refused));
  EXPECT_EQ(nothing.level(), (SourceLevel{Level::kNone, "process connector", "no right"}));
  EXPECT_EQ(nothing.Handle(), -1);
  nothing.Drain(seen);
  EXPECT_THAT(seen, IsEmpty());
}

TEST(ProcessNotices, TornAndForeignMessagesAreLeftOut) {
  const std::string one = test::ProcessNoticeText(1, 2, 3, {10, 11, 12, 13});
  ASSERT_THAT(ReadProcessNotices(one), SizeIs(1));
  const ProcessNotice notice = ReadProcessNotices(one)[0];
  EXPECT_EQ(notice.processor, 2U);
  EXPECT_EQ(notice.number, 3U);
  EXPECT_EQ(notice.parent, 11U);
  EXPECT_EQ(notice.pid, 13U);
  EXPECT_TRUE(notice.is_thread);
  for (std::size_t size = 0; size < one.size(); ++size)
    EXPECT_THAT(ReadProcessNotices(std::string_view(one).substr(0, size)), IsEmpty()) << size;
  // Whole messages that hold less than they should.
  for (std::size_t size = 0; size < 16 + 20 + 16 + 16; ++size) {
    const std::string body = one.substr(16, size > 16 ? size - 16 : 0);
    EXPECT_THAT(ReadProcessNotices(MessageText(3, 0, body)), IsEmpty()) << size;
  }
  std::string foreign = one;
  foreign[16] = 9;
  EXPECT_THAT(ReadProcessNotices(foreign), IsEmpty());
  EXPECT_THAT(ReadProcessNotices(test::ProcessNoticeText(0, 0, 0, {1}) + one), SizeIs(2));
  EXPECT_EQ(ReadProcessNotices(test::ProcessNoticeText(0, 0, 0, {1}))[0].error, 1U);
}

TEST(LastPrograms, TornOlderAndForeignMessagesAreLeftOut) {
  const std::string one = test::EndText(60, 7, 5, 700, "short");
  const auto read = ReadLastPrograms(one, test::kFamily);
  ASSERT_THAT(read, SizeIs(1));
  EXPECT_EQ(read[0].pid, 60U);
  EXPECT_EQ(read[0].parent, 7U);
  EXPECT_EQ(read[0].file, (FileIdentity{5, 700}));
  EXPECT_EQ(read[0].comm, "short");
  for (std::size_t size = 0; size < one.size(); ++size)
    EXPECT_THAT(ReadLastPrograms(std::string_view(one).substr(0, size), test::kFamily), IsEmpty()) << size;
  EXPECT_THAT(ReadLastPrograms(one, test::kFamily + 1), IsEmpty());
  EXPECT_THAT(ReadLastPrograms(test::EndText(60, 7, 5, 700, "x", 11), test::kFamily), IsEmpty())
      << "tells no file";
  EXPECT_THAT(ReadLastPrograms(test::EndText(60, 7, 5, 700, "x", 15), test::kFamily), IsEmpty())
      << "other fields";
  EXPECT_THAT(ReadLastPrograms(test::EndText(60, 7, 5, 700, "x", 16), test::kFamily), SizeIs(1));
  EXPECT_THAT(ReadLastPrograms(test::EndText(60, 7, 5, 0, "kthread"), test::kFamily), IsEmpty());
}

TEST(LastPrograms, AnswersAreRead) {
  const std::string attributes = AttributeText(CTRL_ATTR_FAMILY_NAME, "TASKSTATS") +
                                 AttributeText(CTRL_ATTR_FAMILY_ID, std::string("\x1f\0", 2));
  EXPECT_EQ(ReadTaskstatsFamily(MessageText(GENL_ID_CTRL, 0, std::string(4, '\0') + attributes)), 31);
  EXPECT_FALSE(ReadTaskstatsFamily(MessageText(GENL_ID_CTRL, 0, "\1")));
  EXPECT_EQ(ReadErrorNumber(MessageText(NLMSG_ERROR, 0, test::BytesOf(std::int32_t{0}))), 0);
  EXPECT_EQ(ReadErrorNumber(MessageText(NLMSG_ERROR, 0, test::BytesOf(std::int32_t{-EPERM}))), EPERM);
  EXPECT_FALSE(ReadErrorNumber(MessageText(NLMSG_ERROR, 0, "ab")));
  EXPECT_FALSE(ReadErrorNumber(MessageText(GENL_ID_CTRL, 0, test::BytesOf(std::int32_t{0}))));
}

// The real kernel.
TEST(RealConnector, ProgramsThatEndAtOnceAreNamedAndNoneIsMissed) {
  const auto host = MakeLinuxHostView();
  const auto source = MakeConnectorSource(*host, static_cast<std::uint64_t>(getpid()));
  if (source->level().level == Level::kNone) GTEST_SKIP() << "SKIPPED: " << source->level().reason;
  std::vector<Observation> seen;
  source->Drain(seen);
  seen.clear();
  constexpr int kCount = 200;
  std::set<std::string> expected;
  for (int i = 0; i < kCount; ++i) {
    const pid_t pid = test::Spawn("/usr/bin/true");
    ASSERT_GT(pid, 0);
    waitpid(pid, nullptr, 0);
    expected.insert(":" + std::to_string(pid));
    if (i % 20 == 19) source->Drain(seen);
  }
  for (int i = 0; i < 3; ++i) source->Drain(seen);
  const bool names_ended =
      source->level().reason == "what ends at once is known by the number of its file alone";
  int named = 0;
  for (const Observation& observation : seen) {
    if (observation.kind != Kind::kCame) continue;
    const std::string& text = observation.item.description;
    const bool is_ours = expected.erase(text.substr(text.rfind(':'))) == 1;
    if (is_ours && text.starts_with("/usr/bin/true:")) ++named;
    if (!is_ours) continue;
    EXPECT_TRUE(text.starts_with("/usr/bin/true:") || text.starts_with("an unknown program")) << text;
  }
  EXPECT_THAT(expected, IsEmpty()) << "every one of them is told";
  // Elsewhere, as on overlayfs, stat(2) shows another device than the kernel has.
  struct statfs disk = {};
  statfs("/usr/bin/true", &disk);
  const bool numbers_agree =
      disk.f_type == EXT4_SUPER_MAGIC || disk.f_type == XFS_SUPER_MAGIC || disk.f_type == TMPFS_MAGIC;
  if (!names_ended || !numbers_agree)
    GTEST_SKIP() << "SKIPPED: " << named << " named; files have no numbers here";
  EXPECT_EQ(named, kCount);
}

}  // namespace
}  // namespace zendrix::agent
