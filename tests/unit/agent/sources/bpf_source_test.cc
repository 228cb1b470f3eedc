// The source under recorded streams: what the kernel would tell, on a host made of texts.
#include "agent/sources/bpf_source.h"

#include <gmock/gmock.h>
#include <sys/sysmacros.h>

#include "../fake_host.h"
#include "agent/sources/memory/recorded_kernel_stream.h"
#include "kernel_record_bytes.h"

namespace zendrix::agent {
namespace {

using namespace test_records;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::uint64_t kOwnPid = 50;
constexpr std::uint8_t kClosed = 7;
constexpr std::uint8_t kFinWait = 4;

std::string Line(const Observation& seen) {
  if (seen.kind == Observation::Kind::kLost)
    return "lost " + std::to_string(seen.lost) + " " + std::string(seen.item.monitor);
  const char sign = seen.kind == Observation::Kind::kCame   ? '+'
                    : seen.kind == Observation::Kind::kWent ? '-'
                                                            : '!';
  return sign + std::string(" ") + seen.item.description;
}

class RecordedKernel : public testing::Test {
 protected:
  RecordedKernel() {
    host.links["/proc/1/ns/mnt"] = "mnt:[" + std::to_string(kHostMounts) + "]";
    host.links["/proc/self/ns/net"] = "net:[" + std::to_string(kHostNetwork) + "]";
    host.AddProcess(1, "init", "/usr/sbin/init", 1);
    Reopen();
  }

  void Reopen() {
    OpenedStream opened;
    auto made = std::make_unique<RecordedKernelStream>();
    stream = made.get();
    opened.stream = std::move(made);
    source =
        std::make_unique<BpfSource>(SourceParts{host, kOwnPid, [this] { return now_ns; }}, std::move(opened));
  }

  // What one turn tells, as lines.
  std::vector<std::string> Drain() {
    last.clear();
    source->Drain(last);
    std::vector<std::string> lines;
    for (const Observation& seen : last) lines.push_back(Line(seen));
    return lines;
  }
  std::vector<std::string> DrainOf(std::initializer_list<std::string> records) {
    for (const std::string& record : records) stream->Play(record);
    return Drain();
  }
  // A connection in the host's table; the address in hexadecimal as the kernel prints it.
  void SetTable(const std::string& rows) { host.texts["/proc/net/tcp"] = "  sl  local_address ...\n" + rows; }
  static std::string Row(const std::string& local, const std::string& remote, const std::string& state,
                         int inode) {
    return "   0: " + local + " " + remote + " " + state + " 00000000:00000000 00:00000000 00000000 0 0 " +
           std::to_string(inode) + " 1\n";
  }

  FakeHost host;
  std::int64_t now_ns = 100 * kSecond;
  RecordedKernelStream* stream = nullptr;
  std::unique_ptr<BpfSource> source;
  std::vector<Observation> last;
};

TEST_F(RecordedKernel, BeginsWithWhatIsThere) {
  host.AddProcess(20, "sshd", "/usr/sbin/sshd", 5);
  EXPECT_THAT(Drain(), UnorderedElementsAre("+ /usr/sbin/init:1", "+ /usr/sbin/sshd:20"));
  EXPECT_THAT(Drain(), IsEmpty());
}

TEST_F(RecordedKernel, RestsOnlyWhileTheKernelWouldWakeIt) {
  EXPECT_EQ(source->RestMs(), kDrainMs);
  EXPECT_EQ(source->GatherMs(), kDrainMs);
  stream->SetWakes(true);
  EXPECT_EQ(source->RestMs(), kQuietRestMs);
}

TEST_F(RecordedKernel, ProgramComesAndGoes) {
  Drain();
  EXPECT_THAT(DrainOf({Fork(100, 7, 1, 900), Exec{}.Bytes(), Exit(100, 7)}),
              ElementsAre("+ /usr/bin/true:100", "- /usr/bin/true:100"));
  EXPECT_EQ(last[0].seen_ns, 1000);
  EXPECT_EQ(last[1].seen_ns, 2000);
  EXPECT_EQ(last[0].item.identity, "7");
  EXPECT_EQ(last[1].item.identity, "7");
}

TEST_F(RecordedKernel, OneProgramTakesThePlaceOfAnother) {
  Drain();
  EXPECT_THAT(DrainOf({Exec{.path = "/usr/bin/sh"}.Bytes(), Exec{}.Bytes()}),
              ElementsAre("+ /usr/bin/sh:100", "- /usr/bin/sh:100", "+ /usr/bin/true:100"));
}

TEST_F(RecordedKernel, WhatStartedAProgramIsToldWithItEveryTime) {
  Drain();
  const auto at = static_cast<std::uint64_t>(now_ns);
  DrainOf({Exec{.path = "/tmp/x", .comm = "x"}.Bytes(), Fork(101, 8, 100, at)});
  EXPECT_EQ(last[0].item.parent, "/usr/sbin/init");
  now_ns += kSecond;
  Drain();
  ASSERT_EQ(last.size(), 1U);
  EXPECT_EQ(last[0].item.parent, "/tmp/x");
  host.AddProcess(100, "x", "/tmp/x (deleted)", 7);
  host.AddProcess(101, "x", "/tmp/x", 8);
  now_ns += 31 * kSecond;
  Drain();
  ASSERT_EQ(last.size(), 1U);
  EXPECT_EQ(last[0].item.parent, "/usr/sbin/init");
}

// What a daemon does: the process that was started ends, its copy goes on.
TEST_F(RecordedKernel, CopyThatLivesOnIsToldAfterASecond) {
  Drain();
  const auto at = static_cast<std::uint64_t>(now_ns);
  EXPECT_THAT(DrainOf({Exec{.path = "/usr/sbin/cron"}.Bytes(), Fork(101, 8, 100, at), Exit(100, 7)}),
              ElementsAre("+ /usr/sbin/cron:100", "- /usr/sbin/cron:100"));
  now_ns += kSecond - 1;
  EXPECT_THAT(Drain(), IsEmpty());
  now_ns += 1;
  EXPECT_THAT(Drain(), ElementsAre("+ /usr/sbin/cron:101"));
  EXPECT_EQ(last[0].seen_ns, static_cast<std::int64_t>(at));
  EXPECT_THAT(DrainOf({Exit(101, 8)}), ElementsAre("- /usr/sbin/cron:101"));
}

TEST_F(RecordedKernel, CopyThatBecomesAnotherProgramOrEndsIsNotTold) {
  Drain();
  const auto at = static_cast<std::uint64_t>(now_ns);
  DrainOf({Fork(101, 8, 1, at), Fork(102, 8, 1, at)});
  DrainOf({Exec{.pid = 101, .start_ticks = 8}.Bytes(), Exit(102, 8)});
  now_ns += 2 * kSecond;
  EXPECT_THAT(Drain(), IsEmpty());
}

TEST_F(RecordedKernel, EndOfAnEarlierProcessOfThisNumberIsNotThisOnes) {
  Drain();
  DrainOf({Exec{}.Bytes()});
  EXPECT_THAT(DrainOf({Exit(100, 6)}), IsEmpty());
  EXPECT_THAT(DrainOf({Exit(100, 7), Exit(100, 7)}), ElementsAre("- /usr/bin/true:100"));
}

TEST_F(RecordedKernel, NumberThatIsUsedAgainEndsTheOneBefore) {
  Drain();
  DrainOf({Exec{}.Bytes()});
  EXPECT_THAT(DrainOf({Exec{.start_ticks = 9, .path = "/usr/bin/sh"}.Bytes()}),
              ElementsAre("- /usr/bin/true:100", "+ /usr/bin/sh:100"));
  EXPECT_EQ(last[0].item.identity, "7");
  EXPECT_EQ(last[1].item.identity, "9");
}

TEST_F(RecordedKernel, AgentDoesNotTellOfItself) {
  host.AddProcess(kOwnPid, "agent", "/usr/bin/zendrix-agent");
  EXPECT_THAT(Drain(), ElementsAre("+ /usr/sbin/init:1"));
  EXPECT_THAT(DrainOf({Exec{.pid = kOwnPid}.Bytes(), Fork(kOwnPid, 1, 1, 1), Exit(kOwnPid, 7)}), IsEmpty());
}

TEST_F(RecordedKernel, FactsAboutAProgramAreKept) {
  Drain();
  DrainOf({Exec{.path = "/tmp/.x", .comm = "kworker/0:1"}.Bytes()});
  EXPECT_EQ(last[0].item.rules,
            (RuleSet{Rule::kProgramInTemporaryFolder, Rule::kProgramHidden, Rule::kNamedLikeKernelThread}));
}

TEST_F(RecordedKernel, WhatChangesAboutAProgramIsToldAtTheNextLook) {
  Drain();
  DrainOf({Exec{.path = "/tmp/x", .comm = "x"}.Bytes()});
  host.AddProcess(100, "x", "/tmp/x (deleted)", 7);
  now_ns += 31 * kSecond;
  EXPECT_THAT(Drain(), ElementsAre("+ /tmp/x:100"));
  EXPECT_TRUE(last[0].item.rules.Has(Rule::kProgramDeleted));
  now_ns += 31 * kSecond;
  EXPECT_THAT(Drain(), IsEmpty());
}

TEST_F(RecordedKernel, ProgramOfAnotherMountNamespaceBearsIt) {
  Drain();
  host.facts["/usr/bin/true"].device = makedev(8, 1);
  host.facts["/usr/bin/true"].inode = 56;
  DrainOf({Exec{.mount_namespace = 4026532000}.Bytes()});
  EXPECT_EQ(last[0].item.description, "/usr/bin/true in mount namespace 4026532000:100");
  EXPECT_EQ(last[0].item.subject, "/usr/bin/true in another mount namespace");
  host.facts["/usr/bin/true"].inode = 55;
  DrainOf({Exec{.pid = 101, .mount_namespace = 4026532000}.Bytes()});
  EXPECT_EQ(last[0].item.description, "/usr/bin/true:101");
  EXPECT_EQ(last[0].item.subject, "/usr/bin/true");
  DrainOf({Exec{.pid = 102, .mount_namespace = 0, .inode = 57}.Bytes()});
  EXPECT_EQ(last[0].item.description, "/usr/bin/true in no mount namespace:102");
}

TEST_F(RecordedKernel, ProcessThatWasThereInAnotherMountNamespaceBearsIt) {
  host.AddProcess(30, "postgres", "/usr/bin/postgres", 5);
  host.links["/proc/30/ns/mnt"] = "mnt:[4026532001]";
  host.facts["/proc/30/exe"].inode = 3;
  EXPECT_THAT(Drain(), UnorderedElementsAre("+ /usr/sbin/init:1",
                                            "+ /usr/bin/postgres in mount namespace 4026532001:30"));
  EXPECT_THAT(DrainOf({Exit(30, 5)}), ElementsAre("- /usr/bin/postgres in mount namespace 4026532001:30"));
}

TEST_F(RecordedKernel, PathThatIsTooLongIsLookedUpOrUnknown) {
  Drain();
  EXPECT_THAT(DrainOf({Exec{.flags = kExecPathCut}.Bytes()}),
              ElementsAre("+ an unknown program (its path is too long):100"));
  host.AddProcess(101, "deep", "/a/very/long/path", 7);
  EXPECT_THAT(DrainOf({Exec{.pid = 101, .flags = kExecPathCut}.Bytes()}),
              ElementsAre("+ /a/very/long/path:101"));
  // Another process has the number by now.
  host.AddProcess(102, "other", "/usr/bin/other", 8);
  EXPECT_THAT(DrainOf({Exec{.pid = 102, .flags = kExecPathCut}.Bytes()}),
              ElementsAre("+ an unknown program (its path is too long):102"));
}

TEST_F(RecordedKernel, ConnectionComesAndGoesWithItsProgram) {
  Drain();
  DrainOf({Exec{.path = "/usr/bin/curl"}.Bytes()});
  EXPECT_THAT(DrainOf({Tcp{}.Bytes()}), ElementsAre("+ 198.51.100.7:443:/usr/bin/curl"));
  // The end comes from whoever runs when the last packet arrives.
  EXPECT_THAT(
      DrainOf(
          {Tcp{.old_state = kTcpEstablished, .new_state = kFinWait, .local_port = 40000, .pid = 1}.Bytes()}),
      ElementsAre("- 198.51.100.7:443:/usr/bin/curl"));
}

TEST_F(RecordedKernel, EqualConnectionsComeWithTheFirstAndGoWithTheLast) {
  Drain();
  DrainOf({Exec{.path = "/usr/bin/curl"}.Bytes()});
  EXPECT_THAT(DrainOf({Tcp{.socket = 1, .inode = 1}.Bytes(), Tcp{.socket = 2, .inode = 2}.Bytes()}),
              ElementsAre("+ 198.51.100.7:443:/usr/bin/curl"));
  const Tcp end{.old_state = kTcpEstablished, .new_state = kFinWait, .socket = 1, .inode = 0};
  EXPECT_THAT(DrainOf({end.Bytes()}), IsEmpty());
  Tcp second = end;
  second.socket = 2;
  EXPECT_THAT(DrainOf({second.Bytes(), second.Bytes()}), ElementsAre("- 198.51.100.7:443:/usr/bin/curl"));
}

TEST_F(RecordedKernel, ConnectionWithinTheComputerIsLeftOut) {
  Drain();
  EXPECT_THAT(
      DrainOf({Tcp{.remote = "127.0.0.1"}.Bytes(), Tcp{.remote = "::1", .socket = 2, .inode = 2}.Bytes()}),
      IsEmpty());
}

TEST_F(RecordedKernel, ProgramBehindAConnectionIsNeverGuessed) {
  Drain();
  EXPECT_THAT(DrainOf({Tcp{.pid = 200}.Bytes()}),
              ElementsAre("+ 198.51.100.7:443:an unknown program (it ended before it could be looked at)"));
  EXPECT_THAT(DrainOf({Tcp{.remote_port = 2049, .socket = 2, .inode = 0, .kernel = true}.Bytes()}),
              ElementsAre("+ 198.51.100.7:2049:an unknown program (the kernel itself)"));
}

TEST_F(RecordedKernel, PortListensUntilItIsClosed) {
  Drain();
  DrainOf({Exec{.path = "/usr/sbin/sshd"}.Bytes()});
  const Tcp listening{
      .new_state = kTcpListen, .local = "0.0.0.0", .local_port = 22, .remote = "0.0.0.0", .remote_port = 0};
  EXPECT_THAT(DrainOf({listening.Bytes()}), ElementsAre("+ 22:/usr/sbin/sshd"));
  EXPECT_EQ(last[0].item.monitor, monitor::kPorts);
  EXPECT_TRUE(last[0].item.rules.Has(Rule::kPortOpenToAll));
  Tcp closed = listening;
  closed.old_state = kTcpListen;
  closed.new_state = kClosed;
  EXPECT_THAT(DrainOf({closed.Bytes()}), ElementsAre("- 22:/usr/sbin/sshd"));
}

TEST_F(RecordedKernel, ConnectionThatCameInBelongsToWhoListens) {
  Drain();
  DrainOf({Exec{.path = "/usr/sbin/sshd"}.Bytes(),
           Tcp{.new_state = kTcpListen, .local = "::", .local_port = 22, .remote = "::", .remote_port = 0}
               .Bytes()});
  // Whoever runs when the packet arrives has nothing to do with it.
  const Tcp accepted{.old_state = kTcpSynReceived,
                     .new_state = kTcpEstablished,
                     .local_port = 22,
                     .remote_port = 51000,
                     .pid = 1,
                     .start_ticks = 1,
                     .socket = 2,
                     .inode = 0};
  EXPECT_THAT(DrainOf({accepted.Bytes()}), ElementsAre("+ 198.51.100.7:22:/usr/sbin/sshd"));
  // In another network the same port is another's.
  Tcp elsewhere = accepted;
  elsewhere.network = 4026532999;
  elsewhere.socket = 3;
  EXPECT_THAT(DrainOf({elsewhere.Bytes()}), ElementsAre("+ 198.51.100.7:22"));
}

TEST_F(RecordedKernel, PortOfTwoProgramsGivesNoNameToWhatComesIn) {
  Drain();
  const Tcp listening{
      .new_state = kTcpListen, .local = "0.0.0.0", .local_port = 80, .remote = "0.0.0.0", .remote_port = 0};
  Tcp other = listening;
  other.pid = 101;
  other.socket = 2;
  other.inode = 901;
  DrainOf({Exec{.path = "/usr/sbin/a"}.Bytes(), Exec{.pid = 101, .path = "/usr/sbin/b"}.Bytes(),
           listening.Bytes(), other.Bytes()});
  EXPECT_THAT(DrainOf({Tcp{.old_state = kTcpSynReceived,
                           .new_state = kTcpEstablished,
                           .local_port = 80,
                           .socket = 3,
                           .inode = 0}
                           .Bytes()}),
              ElementsAre("+ 198.51.100.7:80"));
}

// A socket's number may be used again; the end of the one before was lost.
TEST_F(RecordedKernel, SocketWhoseEndWasLostGoesWithItsSuccessor) {
  Drain();
  DrainOf({Exec{.path = "/usr/bin/curl"}.Bytes(), Tcp{}.Bytes()});
  EXPECT_THAT(DrainOf({Tcp{.old_state = kTcpSynReceived,
                           .new_state = kTcpEstablished,
                           .local_port = 22,
                           .remote_port = 51000,
                           .inode = 0}
                           .Bytes()}),
              ElementsAre("- 198.51.100.7:443:/usr/bin/curl", "+ 198.51.100.7:22"));
  // It is in the host's table, and so stays.
  SetTable(Row("050200C0:0016", "076433C6:C738", "01", 0));
  now_ns += 31 * kSecond;
  EXPECT_THAT(Drain(), Not(Contains(HasSubstr("198.51.100.7"))));
}

TEST_F(RecordedKernel, SocketsThatWereThereGoWithTheirRecords) {
  host.AddProcess(20, "sshd", "/usr/sbin/sshd", 5);
  host.links["/proc/20/fd/3"] = "socket:[900]";
  host.links["/proc/20/fd/4"] = "socket:[901]";
  SetTable(Row("00000000:0016", "00000000:0000", "0A", 900) +
           Row("050200C0:0016", "076433C6:C738", "01", 901));
  EXPECT_THAT(Drain(), UnorderedElementsAre("+ /usr/sbin/init:1", "+ /usr/sbin/sshd:20",
                                            "+ 22:/usr/sbin/sshd", "+ 198.51.100.7:22:/usr/sbin/sshd"));
  EXPECT_THAT(DrainOf({Tcp{.old_state = kTcpEstablished,
                           .new_state = kFinWait,
                           .local_port = 22,
                           .remote_port = 51000,
                           .inode = 0}
                           .Bytes()}),
              ElementsAre("- 198.51.100.7:22:/usr/sbin/sshd"));
  EXPECT_THAT(
      DrainOf({Tcp{.old_state = kTcpListen, .new_state = kClosed, .local_port = 22, .socket = 3}.Bytes()}),
      ElementsAre("- 22:/usr/sbin/sshd"));
}

TEST_F(RecordedKernel, SocketThatALookFoundFirstIsNotToldAgain) {
  Drain();
  DrainOf({Exec{.path = "/usr/bin/curl"}.Bytes()});
  host.AddProcess(100, "curl", "/usr/bin/curl", 7);
  host.links["/proc/100/fd/3"] = "socket:[900]";
  SetTable(Row("050200C0:9C40", "076433C6:01BB", "01", 900));
  now_ns += 31 * kSecond;
  EXPECT_THAT(Drain(), ElementsAre("+ 198.51.100.7:443:/usr/bin/curl"));
  EXPECT_THAT(DrainOf({Tcp{}.Bytes()}), IsEmpty());
  EXPECT_THAT(DrainOf({Tcp{.old_state = kTcpEstablished, .new_state = kFinWait, .inode = 0}.Bytes()}),
              ElementsAre("- 198.51.100.7:443:/usr/bin/curl"));
}

TEST_F(RecordedKernel, PortThatTheKernelHasYetToChooseIsLookedFor) {
  Drain();
  host.AddProcess(100, "nc", "/usr/bin/nc", 7);
  host.links["/proc/100/fd/3"] = "socket:[900]";
  SetTable(Row("00000000:9C40", "00000000:0000", "0A", 900));
  now_ns += kSecond;
  EXPECT_THAT(DrainOf({Exec{.path = "/usr/bin/nc"}.Bytes(),
                       Tcp{.new_state = kTcpListen, .local = "0.0.0.0", .remote = "0.0.0.0"}.Bytes()}),
              ElementsAre("+ /usr/bin/nc:100", "+ 40000:/usr/bin/nc"));
}

TEST_F(RecordedKernel, LossesAreCountedAndMadeGood) {
  Drain();
  DrainOf({Exec{.pid = 100}.Bytes(), Exec{.pid = 101, .path = "/usr/bin/old"}.Bytes()});
  stream->Lose(kRecordExec, 2);
  stream->Lose(kRecordExit, 1);
  stream->Lose(kRecordSocket, 4);
  // 100 ended, 101 runs another program now, 102 came; none of it was heard.
  host.AddProcess(101, "new", "/usr/bin/new", 7);
  host.AddProcess(102, "other", "/usr/bin/other", 9);
  now_ns += kSecond;
  EXPECT_THAT(Drain(), UnorderedElementsAre("lost 4 TCP Connections", "lost 3 Running Processes",
                                            "- /usr/bin/true:100", "- /usr/bin/old:101", "+ /usr/bin/new:101",
                                            "+ /usr/bin/other:102"));
  now_ns += kSecond;
  EXPECT_THAT(Drain(), IsEmpty());
}

TEST_F(RecordedKernel, LooksAreASecondApartHoweverMuchIsLost) {
  Drain();
  stream->Lose(kRecordExec, 1);
  host.AddProcess(102, "other", "/usr/bin/other", 9);
  now_ns += kSecond - 1;
  EXPECT_THAT(Drain(), ElementsAre("lost 1 Running Processes"));
  now_ns += 1;
  EXPECT_THAT(Drain(), ElementsAre("+ /usr/bin/other:102"));
}

TEST_F(RecordedKernel, DamagedRecordCountsAsLost) {
  Drain();
  EXPECT_THAT(DrainOf({"", "damaged", Exec{}.Bytes().substr(0, 50)}), ElementsAre("lost 3 "));
}

// Who may not see the others' processes in /proc would otherwise take them all for gone.
TEST_F(RecordedKernel, HiddenProcessesAreNotTakenForGone) {
  Drain();
  DrainOf({Exec{}.Bytes()});
  host.RemoveProcess(1);
  now_ns += 31 * kSecond;
  EXPECT_THAT(Drain(), IsEmpty());
}

TEST_F(RecordedKernel, FloodIsToldInParts) {
  Drain();
  for (std::uint32_t i = 0; i < BpfSource::kMostRecords + 10; ++i)
    stream->Play(Exec{.pid = 1000 + i}.Bytes());
  EXPECT_EQ(Drain().size(), BpfSource::kMostRecords);
  EXPECT_EQ(Drain().size(), 10U);
}

TEST_F(RecordedKernel, SocketsBeyondTheTableAreCounted) {
  Drain();
  DrainOf({Exec{}.Bytes()});
  std::size_t told = 0;
  std::uint64_t lost = 0;
  for (std::uint64_t i = 0; i < SocketTable::kMostSockets + 5; ++i) {
    stream->Play(Tcp{.socket = 1000 + i, .inode = 1'000'000 + i}.Bytes());
  }
  for (int turn = 0; turn < 8; ++turn) {
    Drain();
    for (const Observation& seen : last) {
      told += seen.kind == Observation::Kind::kCame;
      lost += seen.lost;
    }
  }
  EXPECT_EQ(told, 1U);  // all of one description
  EXPECT_EQ(lost, 5U);
}

TEST_F(RecordedKernel, ModuleIsToldWithItsLoader) {
  Drain();
  DrainOf({Exec{.path = "/usr/bin/kmod"}.Bytes()});
  EXPECT_THAT(DrainOf({Module("dummy|x", 100, 7)}),
              ElementsAre("! kernel module dummy_x loaded by /usr/bin/kmod"));
  EXPECT_EQ(last[0].item.monitor, monitor::kSystem);
}

TEST_F(RecordedKernel, LevelTellsWhatTheKernelLacks) {
  EXPECT_EQ(source->level(), (SourceLevel{Level::kEvents, "BPF", ""}));
  stream->SetLacks("no modules");
  EXPECT_EQ(source->level(), (SourceLevel{Level::kEvents, "BPF", "no modules"}));
}

TEST_F(RecordedKernel, RefusedProgramsGiveNothingAndTheReason) {
  BpfSource refused({host, kOwnPid, [this] { return now_ns; }}, {nullptr, "no right"});
  EXPECT_EQ(refused.level(), (SourceLevel{Level::kNone, "BPF", "no right"}));
  refused.Drain(last);
  EXPECT_THAT(last, IsEmpty());
}

}  // namespace
}  // namespace zendrix::agent
