// Sockets by sock_diag, recorded; the real ones at the end.
#include "agent/sources/socket_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "agent/sources/memory/recorded_netlink.h"
#include "support/kernel_load.h"
#include "unit/agent/fake_host.h"
#include "unit/agent/sources/netlink_bytes.h"

namespace zendrix::agent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = Observation::Kind;

constexpr std::uint8_t kClosed = 7;

class TableHost : public FakeHost {
 public:
  std::vector<Socket> table;
  std::optional<std::vector<Socket>> Sockets() override { return table; }
  void Add(SocketState state, std::uint16_t local_port, const std::string& remote, std::uint16_t remote_port,
           std::uint64_t inode) {
    Socket socket;
    socket.local.address = "10.0.0.1";
    socket.local.port = local_port;
    socket.remote.address = remote;
    socket.remote.port = remote_port;
    socket.state = state;
    socket.inode = inode;
    table.push_back(std::move(socket));
  }
};

class SocketSourceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    host.AddProcess(1, "init", "/usr/sbin/init");
    host.AddProcess(60, "sshd", "/usr/sbin/sshd");
    host.links["/proc/60/fd/3"] = "socket:[600]";
    host.links["/proc/60/fd/4"] = "socket:[601]";
    host.Add(SocketState::kListening, 22, "", 0, 600);
    source = std::make_unique<SocketSource>(SourceParts{host, 50, [this] { return now_ns; }},
                                            std::make_unique<RecordedNetlink>(ends), "");
  }

  void Ended(std::uint16_t local_port, const char* remote, std::uint16_t remote_port) {
    ends.waiting.emplace_back(
        test::DiagText(test::DiagMessage(kClosed, "10.0.0.1", local_port, remote, remote_port, 0)));
  }

  std::vector<std::string> Drained() {
    std::vector<Observation> seen;
    source->Drain(seen);
    std::vector<std::string> lines;
    for (const Observation& observation : seen) {
      const char* const sign = observation.kind == Kind::kCame   ? "+"
                               : observation.kind == Kind::kWent ? "-"
                                                                 : "!";
      lines.push_back(sign + observation.item.description);
    }
    return lines;
  }

  TableHost host;
  NetlinkScript ends;
  std::int64_t now_ns = 1'000'000'000'000;
  std::unique_ptr<SocketSource> source;
};

TEST_F(SocketSourceTest, TableIsAskedForOnceASecond) {
  EXPECT_THAT(Drained(), ElementsAre("+22:/usr/sbin/sshd"));
  host.Add(SocketState::kEstablished, 22, "192.0.2.7", 50000, 601);
  now_ns += SocketSource::kLookEveryNs - 1;
  EXPECT_THAT(Drained(), IsEmpty());
  now_ns += 1;
  EXPECT_THAT(Drained(), ElementsAre("+192.0.2.7:22:/usr/sbin/sshd"));
}

TEST_F(SocketSourceTest, EndOfAKnownConnectionIsToldAtOnce) {
  host.Add(SocketState::kEstablished, 22, "192.0.2.7", 50000, 601);
  Drained();
  host.table.pop_back();
  Ended(22, "192.0.2.7", 50000);
  EXPECT_THAT(Drained(), ElementsAre("-192.0.2.7:22:/usr/sbin/sshd"));
  now_ns += SocketSource::kLookEveryNs;
  EXPECT_THAT(Drained(), IsEmpty());
}

TEST_F(SocketSourceTest, ConnectionThatWasInNoTableIsToldWithoutAProgram) {
  Drained();
  Ended(40000, "192.0.2.8", 443);
  EXPECT_THAT(Drained(), ElementsAre("+192.0.2.8:443", "-192.0.2.8:443"));
  Ended(22, "192.0.2.9", 50001);
  EXPECT_THAT(Drained(), ElementsAre("+192.0.2.9:22:/usr/sbin/sshd", "-192.0.2.9:22:/usr/sbin/sshd"))
      << "it came in where somebody listens";
}

TEST_F(SocketSourceTest, WhatIsNoConnectionWithAnotherComputerIsNotTold) {
  Drained();
  Ended(40000, "127.0.0.1", 80);
  Ended(22, "0.0.0.0", 0);
  ends.waiting.emplace_back("torn");
  EXPECT_THAT(Drained(), IsEmpty());
  host.table.clear();
  now_ns += SocketSource::kLookEveryNs;
  EXPECT_THAT(Drained(), ElementsAre("-22:/usr/sbin/sshd")) << "the table says that it went";
}

TEST_F(SocketSourceTest, NoticesThatFoundNoRoomAreLosses) {
  Drained();
  ends.waiting.emplace_back(std::nullopt);
  Ended(40000, "192.0.2.8", 443);
  EXPECT_THAT(Drained(), ElementsAre("!", "+192.0.2.8:443", "-192.0.2.8:443"));
}

TEST_F(SocketSourceTest, RefusedSourceGivesNothingButItsReason) {
  SocketSource nothing({host, 50, [this] { return now_ns; }}, nullptr, "no");
  EXPECT_EQ(nothing.level(), (SourceLevel{Level::kNone, "sock_diag", "no"}));
  std::vector<Observation> seen;
  nothing.Drain(seen);
  EXPECT_THAT(seen, IsEmpty());
  EXPECT_EQ(source->level().level, Level::kNotices);
}

// The real kernel, in a network namespace where each address is the computer's own.
TEST(RealSocketSource, ConnectionThatLivesForAMomentIsTold) {
  const pid_t child = fork();
  if (child == 0) {
    constexpr std::uint16_t kPort = 7777;
    constexpr int kCount = 100;
    if (!test::EnterOwnNetwork()) _exit(77);
    const auto host = MakeLinuxHostView();
    const int listening = test::ListenOn(kPort);
    const auto source = MakeSocketSource(*host, 0);
    if (source->level().level == Level::kNone) _exit(77);
    std::vector<Observation> seen;
    source->Drain(seen);
    for (int i = 1; i <= kCount; ++i) test::ConnectOnce(listening, test::MeasuredAddress(i, kPort));
    std::set<std::string> expected;
    for (int i = 1; i <= kCount; ++i) {
      const sockaddr_in address = test::MeasuredAddress(i, kPort);
      char text[INET_ADDRSTRLEN] = {};
      inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
      expected.insert(text);
    }
    // The kernel tells of an end when it comes to it.
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!expected.empty() && std::chrono::steady_clock::now() < give_up) {
      seen.clear();
      source->Drain(seen);
      for (const Observation& observation : seen)
        expected.erase(observation.item.description.substr(0, observation.item.description.find(':')));
      std::this_thread::yield();
    }
    _exit(expected.empty() ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "SKIPPED: no network namespace, or no sock_diag, here";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace zendrix::agent
