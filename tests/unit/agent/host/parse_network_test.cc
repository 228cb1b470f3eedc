#include "agent/host/parse_network.h"

namespace zendrix::agent {
namespace {

constexpr const char* kHead =
    "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid\n";

std::string Row(const std::string& local, const std::string& remote, const std::string& state) {
  return "   0: " + local + " " + remote + " " + state +
         " 00000000:00000000 00:00000000 00000000     0        0 1599 1 000000000192a8ec 100 0 0 10 0\n";
}

TEST(ParseSocketTable, ReadsAListeningPort) {
  const auto sockets = ParseSocketTable(kHead + Row("00000000:07E8", "00000000:0000", "0A"));
  ASSERT_EQ(sockets.size(), 1U);
  EXPECT_EQ(sockets[0].state, SocketState::kListening);
  EXPECT_EQ(sockets[0].local.port, 2024);
  EXPECT_EQ(sockets[0].local.reach, AddressReach::kAny);
  EXPECT_EQ(sockets[0].inode, 1599U);
}

TEST(ParseSocketTable, ReadsAConnection) {
  const auto sockets = ParseSocketTable(Row("0100007F:0019", "0201A8C0:01BB", "01"));
  ASSERT_EQ(sockets.size(), 1U);
  EXPECT_EQ(sockets[0].state, SocketState::kEstablished);
  EXPECT_EQ(sockets[0].local.address, "127.0.0.1");
  EXPECT_EQ(sockets[0].local.reach, AddressReach::kLoopback);
  EXPECT_EQ(sockets[0].remote.address, "192.168.1.2");
  EXPECT_EQ(sockets[0].remote.reach, AddressReach::kOther);
  EXPECT_EQ(sockets[0].remote.port, 443);
}

TEST(ParseSocketTable, AddressOfSixHasNoColon) {
  const auto sockets = ParseSocketTable(
      Row("00000000000000000000000001000000:0016", "B80D0120000000000000000001000000:8000", "01"));
  ASSERT_EQ(sockets.size(), 1U);
  EXPECT_EQ(sockets[0].local.address, "--1");
  EXPECT_EQ(sockets[0].local.reach, AddressReach::kLoopback);
  EXPECT_EQ(sockets[0].remote.address, "2001-db8--1");
}

TEST(ParseSocketTable, AddressOfFourInsideSixIsWrittenAsFour) {
  const auto sockets = ParseSocketTable(
      Row("00000000000000000000000000000000:0016", "0000000000000000FFFF00000201A8C0:8000", "01"));
  ASSERT_EQ(sockets.size(), 1U);
  EXPECT_EQ(sockets[0].local.reach, AddressReach::kAny);
  EXPECT_EQ(sockets[0].remote.address, "192.168.1.2");
}

TEST(ParseSocketTable, DamagedRowsAreLeftOut) {
  const std::string text =
      kHead + Row("0000000:07E8", "00000000:0000", "0A") + Row("00000000:107E8", "00000000:0000", "0A") +
      Row("0000000G:07E8", "00000000:0000", "0A") + Row("00000000", "00000000:0000", "0A") +
      Row("00000000:07E8", "00000000:0000", "XX") + "0: 1\n\n" + Row("00000000:0001", "00000000:0000", "0A");
  const auto sockets = ParseSocketTable(text);
  ASSERT_EQ(sockets.size(), 1U);
  EXPECT_EQ(sockets[0].local.port, 1);
}

TEST(ParseTrafficBytes, AddsAllInterfacesButTheLoopback) {
  EXPECT_EQ(
      ParseTrafficBytes("Inter-|   Receive |  Transmit\n face |bytes    packets errs\n"
                        "    lo:    3267      29    0    0    0     0          0         0     3267      29\n"
                        "  eth0: 1000 4071    0    0    0     0          0         0   234    1740\n"
                        "  eth1:5 1 0 0 0 0 0 0 6 1\n"),
      1245U);
}

TEST(ParseTrafficBytes, NoOtherInterfaceGivesNothing) {
  EXPECT_FALSE(ParseTrafficBytes(""));
  EXPECT_FALSE(ParseTrafficBytes("lo: 1 2 3 4 5 6 7 8 9\n"));
  EXPECT_FALSE(ParseTrafficBytes("eth0: 1 2 3\n"));
  EXPECT_FALSE(ParseTrafficBytes("eth0: a 2 3 4 5 6 7 8 9\n"));
}

TEST(ParseMemoryPercent, IsTheShareThatIsNotAvailable) {
  EXPECT_EQ(ParseMemoryPercent("MemTotal: 1000 kB\nMemFree: 1 kB\nMemAvailable: 250 kB\n"), 75.0);
}

TEST(ParseMemoryPercent, NumbersNeedNoUnit) {
  EXPECT_EQ(ParseMemoryPercent("MemTotal: 1000\nMemAvailable: 250\nMemFree:\n"), 75.0);
  EXPECT_EQ(ParseMemoryPercent("MemTotal: 10 kB\nMemAvailable: 10 kB\n"), 0.0);
}

TEST(ParseMemoryPercent, DamagedTextGivesNothing) {
  EXPECT_FALSE(ParseMemoryPercent(""));
  EXPECT_FALSE(ParseMemoryPercent("MemTotal: 1000 kB\n"));
  EXPECT_FALSE(ParseMemoryPercent("MemTotal: 0 kB\nMemAvailable: 0 kB\n"));
  EXPECT_FALSE(ParseMemoryPercent("MemTotal: 10 kB\nMemAvailable: 11 kB\n"));
}

}  // namespace
}  // namespace zendrix::agent
