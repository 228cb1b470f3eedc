#include "agent/host/parse_sock_diag.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/netlink.h>

#include "agent/host/observe_sockets.h"
#include "support/kernel_load.h"
#include "unit/agent/fake_host.h"
#include "unit/agent/sources/netlink_bytes.h"

namespace zendrix::agent {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::uint8_t kEstablished = 1;
constexpr std::uint8_t kListen = 10;

TEST(ParseSockDiag, SocketsAreReadWithStateEndsAndInode) {
  std::vector<Socket> sockets;
  const std::string datagram =
      test::DiagText(test::DiagMessage(kListen, "0.0.0.0", 22, "0.0.0.0", 0, 100)) +
      test::DiagText(test::DiagMessage(kEstablished, "fe80::1", 22, "2001:db8::7", 50000, 4000000000U));
  EXPECT_EQ(ReadDumpPart(datagram, sockets), DumpPart::kMore);
  ASSERT_THAT(sockets, SizeIs(2));
  EXPECT_EQ(sockets[0].state, SocketState::kListening);
  EXPECT_EQ(sockets[0].local.port, 22);
  EXPECT_EQ(sockets[0].local.reach, AddressReach::kAny);
  EXPECT_EQ(sockets[0].inode, 100U);
  EXPECT_EQ(sockets[1].state, SocketState::kEstablished);
  EXPECT_EQ(sockets[1].local.address, "fe80--1");
  EXPECT_EQ(sockets[1].remote.address, "2001-db8--7");
  EXPECT_EQ(sockets[1].remote.port, 50000);
  EXPECT_EQ(sockets[1].inode, 4000000000U);
}

TEST(ParseSockDiag, AnswerEndsWithDoneAndIsRefusedByAnError) {
  std::vector<Socket> sockets;
  const std::string one = test::DiagText(test::DiagMessage(kListen, "0.0.0.0", 22, "0.0.0.0", 0, 1));
  EXPECT_EQ(ReadDumpPart(one + MessageText(NLMSG_DONE, 0, "\0\0\0\0"), sockets), DumpPart::kDone);
  EXPECT_THAT(sockets, SizeIs(1));
  EXPECT_EQ(ReadDumpPart(MessageText(NLMSG_ERROR, 0, "") + one, sockets), DumpPart::kRefused);
  EXPECT_THAT(sockets, SizeIs(1));
}

TEST(ParseSockDiag, TornMessagesAreLeftOut) {
  const std::string one = test::DiagText(test::DiagMessage(kListen, "0.0.0.0", 22, "0.0.0.0", 0, 1));
  for (std::size_t size = 0; size < one.size(); ++size) {
    std::vector<Socket> sockets;
    EXPECT_EQ(ReadDumpPart(std::string_view(one).substr(0, size), sockets), DumpPart::kMore);
    EXPECT_THAT(sockets, IsEmpty()) << size;
  }
  std::vector<Socket> sockets;
  ReadDumpPart(MessageText(SOCK_DIAG_BY_FAMILY, 0, one.substr(16, sizeof(inet_diag_msg) - 1)), sockets);
  EXPECT_THAT(sockets, IsEmpty()) << "a whole message with less than a socket in it";
  auto other = test::DiagMessage(kListen, "0.0.0.0", 22, "0.0.0.0", 0, 1);
  other.idiag_family = AF_UNIX;
  ReadDumpPart(test::DiagText(other), sockets);
  EXPECT_THAT(sockets, IsEmpty()) << "of another family";
}

TEST(Netlink, MessagesOfOddLengthFollowEachOtherAligned) {
  const std::string datagram = MessageText(7, 2, "abcde") + MessageText(8, 0, "");
  const auto messages = SplitMessages(datagram);
  ASSERT_THAT(messages, SizeIs(2));
  EXPECT_EQ(messages[0].type, 7);
  EXPECT_EQ(messages[0].flags, 2);
  EXPECT_EQ(messages[0].body, "abcde");
  EXPECT_EQ(messages[1].type, 8);
  const std::string nested = AttributeText(1, "x") + AttributeText(0x8002, "yz");
  const auto attributes = SplitAttributes(nested);
  ASSERT_THAT(attributes, SizeIs(2));
  EXPECT_EQ(attributes[0].value, "x");
  EXPECT_EQ(attributes[1].type, 2) << "without the bit that says it is nested";
  EXPECT_EQ(attributes[1].value, "yz");
  EXPECT_THAT(SplitAttributes(nested.substr(0, 5)), SizeIs(1));
  EXPECT_THAT(SplitAttributes(nested.substr(0, 4)), IsEmpty());
}

class HostOfTables : public FakeHost {
 public:
  std::optional<std::vector<Socket>> asked;
  std::optional<std::vector<Socket>> Sockets() override { return asked; }
};

TEST(ReadSockets, KernelIsAskedFirstAndTheTextIsTheWayOut) {
  HostOfTables host;
  host.texts["/proc/net/tcp"] = "  sl\n   0: 00000000:07E8 00000000:0000 0A 0:0 00:0 0 0 0 1599 1\n";
  ASSERT_THAT(ReadSockets(host), SizeIs(1));
  EXPECT_EQ(ReadSockets(host)[0].inode, 1599U);
  host.asked.emplace();
  EXPECT_THAT(ReadSockets(host), IsEmpty()) << "an empty answer is an answer";
}

// The real kernel.
TEST(RealSockets, PortThatListensHereIsAmongTheSocketsThatTheKernelTells) {
  const auto host = MakeLinuxHostView();
  if (!host->Sockets()) GTEST_SKIP() << "SKIPPED: the kernel does not tell its sockets here";
  const int listening = test::ListenOn(0);
  ASSERT_GE(listening, 0);
  sockaddr_in own = {};
  socklen_t size = sizeof own;
  getsockname(listening, reinterpret_cast<sockaddr*>(&own), &size);
  const auto is_there = [&] {
    const auto sockets = host->Sockets().value();
    return std::any_of(sockets.begin(), sockets.end(), [&](const Socket& socket) {
      return socket.state == SocketState::kListening && socket.local.port == ntohs(own.sin_port) &&
             socket.inode != 0;
    });
  };
  EXPECT_TRUE(is_there());
  close(listening);
  EXPECT_FALSE(is_there());
}

}  // namespace
}  // namespace zendrix::agent
