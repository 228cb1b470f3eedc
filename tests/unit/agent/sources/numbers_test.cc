// Numbers under recorded answers, and against the running kernel.
#include "agent/sources/numbers.h"

#include <linux/if_link.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>

#include <deque>
#include <utility>

#include "agent/host/host_view.h"
#include "agent/host/parse_link_stats.h"
#include "agent/host/parse_network.h"

namespace zendrix::agent {
namespace {

using Outcome = NetlinkStream::Outcome;

// One interface's part of the answer.
std::string LinkText(std::uint32_t number, std::uint64_t received, std::uint64_t sent,
                     std::size_t size = sizeof(rtnl_link_stats64)) {
  rtnl_link_stats64 stats = {};
  stats.rx_bytes = received;
  stats.tx_bytes = sent;
  stats.rx_packets = 77;
  if_stats_msg head = {};
  head.ifindex = number;
  std::string value(reinterpret_cast<const char*>(&stats), sizeof stats);
  value.resize(size);
  return MessageText(RTM_NEWSTATS, NLM_F_MULTI,
                     std::string(reinterpret_cast<const char*>(&head), sizeof head) +
                         AttributeText(IFLA_STATS_LINK_64, value));
}

std::string Done() {
  return MessageText(NLMSG_DONE, NLM_F_MULTI, std::string(4, '\0'));
}

struct LinkScript {
  std::deque<std::string> datagrams;
  int asked = 0;
  bool sends = true;
};

class RecordedLinks : public NetlinkStream {
 public:
  explicit RecordedLinks(LinkScript& script) : script_(script) {}
  bool Send(std::string_view message) override {
    ++script_.asked;
    EXPECT_EQ(message, LinkStatsQuestion());
    return script_.sends;
  }
  Outcome Receive(std::string& datagram, int) override {
    if (script_.datagrams.empty()) return Outcome::kNone;
    datagram = script_.datagrams.front();
    script_.datagrams.pop_front();
    return Outcome::kGot;
  }
  int Handle() const override { return -1; }

 private:
  LinkScript& script_;
};

struct PressureScript {
  bool fires = false;
  std::string error;
};

class RecordedPressure : public PressureTrigger {
 public:
  explicit RecordedPressure(PressureScript& script) : script_(script) {}
  platform::Result<bool> Fired() override {
    if (!script_.error.empty()) return platform::Error{platform::ErrorKind::kOther, script_.error};
    return std::exchange(script_.fires, false);
  }

 private:
  PressureScript& script_;
};

class NumbersTest : public testing::Test {
 protected:
  Numbers Make() {
    return Numbers(std::unique_ptr<PressureTrigger>(std::make_unique<RecordedPressure>(pressure)),
                   std::unique_ptr<NetlinkStream>(std::make_unique<RecordedLinks>(links)));
  }
  PressureScript pressure;
  LinkScript links;
};

TEST_F(NumbersTest, InterfacesAddUpWithoutTheLoopback) {
  Numbers numbers = Make();
  links.datagrams = {LinkText(1, 1000000, 1000000) + LinkText(2, 100, 20), LinkText(7, 3, 4) + Done()};
  EXPECT_EQ(numbers.TrafficBytes(), 127U);
  links.datagrams = {LinkText(1, 5, 5) + Done()};
  EXPECT_EQ(numbers.TrafficBytes(), std::nullopt) << "there is none but the loopback";
  EXPECT_EQ(numbers.links_refusal(), "");
  links.datagrams = {LinkText(2, 101, 20) + Done()};
  EXPECT_EQ(numbers.TrafficBytes(), 121U);
}

TEST_F(NumbersTest, RecordsOfOtherKernelsAreReadAsFarAsTheyGo) {
  std::optional<std::uint64_t> total;
  EXPECT_EQ(ReadLinkStatsPart(LinkText(2, 100, 20, sizeof(rtnl_link_stats64) + 16), total), DumpPart::kMore);
  EXPECT_EQ(ReadLinkStatsPart(LinkText(3, 1, 2, offsetof(rtnl_link_stats64, tx_bytes) + 8), total),
            DumpPart::kMore);
  EXPECT_EQ(total, 123U);
  EXPECT_EQ(ReadLinkStatsPart(LinkText(4, 9, 9, offsetof(rtnl_link_stats64, tx_bytes) + 7), total),
            DumpPart::kMore);
  EXPECT_EQ(total, 123U);
}

TEST_F(NumbersTest, AnswerThatIsCutCountsNothingTwice) {
  const std::string whole = LinkText(2, 100, 20) + LinkText(3, 7, 0) + Done();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    std::optional<std::uint64_t> total;
    const DumpPart part = ReadLinkStatsPart(whole.substr(0, size), total);
    EXPECT_EQ(part, DumpPart::kMore) << size;
    EXPECT_TRUE(!total || total == 120U || total == 127U) << size;
  }
}

TEST_F(NumbersTest, HalfAnAnswerIsNoneAndIsToldOnce) {
  Numbers numbers = Make();
  links.datagrams = {LinkText(2, 100, 20)};
  EXPECT_EQ(numbers.TrafficBytes(), std::nullopt);
  EXPECT_EQ(numbers.links_refusal(), "the kernel did not answer to its end");
  links.datagrams = {LinkText(2, 100, 20) + Done()};
  EXPECT_EQ(numbers.TrafficBytes(), std::nullopt);
  EXPECT_EQ(links.asked, 1);
}

TEST_F(NumbersTest, RefusalHasItsReason) {
  Numbers numbers = Make();
  links.datagrams = {MessageText(NLMSG_ERROR, 0, std::string(20, '\1'))};
  EXPECT_EQ(numbers.TrafficBytes(), std::nullopt);
  EXPECT_EQ(numbers.links_refusal(), "the kernel refused");
  Numbers deaf = Make();
  links.sends = false;
  links.datagrams = {LinkText(2, 100, 20) + Done()};
  EXPECT_EQ(deaf.TrafficBytes(), std::nullopt);
  EXPECT_EQ(deaf.links_refusal(), "the kernel refused");
}

TEST_F(NumbersTest, PressureIsToldOnceAndItsEndHasAReason) {
  Numbers numbers = Make();
  EXPECT_FALSE(numbers.IsPressed());
  pressure.fires = true;
  EXPECT_TRUE(numbers.IsPressed());
  EXPECT_FALSE(numbers.IsPressed());
  EXPECT_EQ(numbers.pressure_refusal(), "");
  pressure.error = "the kernel took it away";
  EXPECT_FALSE(numbers.IsPressed());
  EXPECT_EQ(numbers.pressure_refusal(), "the kernel took it away");
  pressure = {true, ""};
  EXPECT_FALSE(numbers.IsPressed()) << "it is not asked again";
}

TEST_F(NumbersTest, WhatCannotBeHadIsSaid) {
  const platform::Error none{platform::ErrorKind::kNotFound, "/proc/pressure/memory: none"};
  const platform::Error denied{platform::ErrorKind::kPermissionDenied, "netlink: denied"};
  Numbers numbers{platform::Result<std::unique_ptr<PressureTrigger>>(none),
                  platform::Result<std::unique_ptr<NetlinkStream>>(denied)};
  EXPECT_FALSE(numbers.IsPressed());
  EXPECT_EQ(numbers.TrafficBytes(), std::nullopt);
  EXPECT_EQ(numbers.pressure_refusal(), none.text);
  EXPECT_EQ(numbers.links_refusal(), denied.text);
}

TEST(RealNumbers, CountersAreThoseOfTheTable) {
  const auto host = MakeLinuxHostView();
  const auto total = [&] { return ParseTrafficBytes(host->ReadText("/proc/net/dev", 1 << 20).value_or("")); };
  const auto numbers = MakeNumbers();
  const auto before = total();
  const auto bytes = numbers->TrafficBytes();
  const auto after = total();
  if (!numbers->links_refusal().empty()) GTEST_SKIP() << "no rtnetlink here: " << numbers->links_refusal();
  EXPECT_EQ(bytes.has_value(), before.has_value());
  if (!bytes) GTEST_SKIP() << "there is no interface but the loopback";
  EXPECT_GE(*bytes, *before);
  EXPECT_LE(*bytes, *after);
}

TEST(RealNumbers, TriggerIsTakenOrRefusedWithAReason) {
  auto trigger = OpenPressureTrigger();
  if (!trigger) GTEST_SKIP() << "no pressure-stall trigger here: " << trigger.error().text;
  EXPECT_TRUE(trigger.value()->Fired().ok());
}

}  // namespace
}  // namespace zendrix::agent
