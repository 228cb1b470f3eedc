#include "agent/events/pace.h"

#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class PaceTest : public ::testing::Test {
 protected:
  static Event Came(const std::string& program, int pid, RuleSet rules = {}) {
    return CameEvent(MakeItem(monitor::kProcesses, program + ":" + std::to_string(pid), rules, program));
  }
  static Event Went(const std::string& program, int pid) {
    return WentEvent(MakeItem(monitor::kProcesses, program + ":" + std::to_string(pid), {}, program));
  }
  static std::vector<std::string> Texts(const std::vector<Event>& events) {
    std::vector<std::string> texts;
    for (const Event& event : events)
      texts.push_back((event.kind == EventKind::kRemoved ? "-" : "+") + event.item.description);
    return texts;
  }
  std::vector<std::string> Take(const std::vector<Event>& events, std::int64_t now_ms) {
    return Texts(pace.Take(events, now_ms));
  }
  std::string MinuteText(std::int64_t now_ms) {
    const auto row = pace.Minute(now_ms);
    return row ? row->item.description : "";
  }

  Pace pace{0};
};

TEST_F(PaceTest, ProgramThatWasNeverSeenIsToldAtOnce) {
  EXPECT_THAT(Take({Came("/bin/a", 1)}, 0), ElementsAre("+/bin/a:1"));
  EXPECT_THAT(Take({Went("/bin/a", 1)}, 10), ElementsAre("-/bin/a:1"));
}

TEST_F(PaceTest, KnownProgramIsToldWhenItHasLivedFiveSeconds) {
  pace.Begin(PresentEvents({MakeItem(monitor::kProcesses, "/bin/a:1", {}, "/bin/a")}));
  EXPECT_THAT(Take({Came("/bin/a", 2)}, 0), IsEmpty());
  EXPECT_THAT(Take({}, 4999), IsEmpty());
  EXPECT_THAT(Take({}, 5000), ElementsAre("+/bin/a:2"));
  EXPECT_THAT(Take({Went("/bin/a", 2)}, 6000), ElementsAre("-/bin/a:2"));
}

TEST_F(PaceTest, KnownProgramThatEndedEarlierIsOnlyCounted) {
  Take({Came("/bin/a", 1)}, 0);
  EXPECT_THAT(Take({Came("/bin/a", 2), Went("/bin/a", 2), Came("/bin/a", 3)}, 100), IsEmpty());
  EXPECT_THAT(Take({Went("/bin/a", 3)}, 4000), IsEmpty());
  EXPECT_THAT(Take({}, 10000), IsEmpty());
  EXPECT_EQ(pace.counted(), 2U);
  EXPECT_EQ(MinuteText(59999), "");
  EXPECT_EQ(MinuteText(60000),
            "counted and not listed - 2 known that ended within 5 seconds - mostly /bin/a 2");
  EXPECT_EQ(MinuteText(120000), "") << "nothing more to count";
}

TEST_F(PaceTest, UnusualProgramIsToldAtOnceEachTime) {
  Take({Came("/tmp/a", 1, {Rule::kProgramInTemporaryFolder})}, 0);
  EXPECT_THAT(Take({Came("/tmp/a", 2, {Rule::kProgramInTemporaryFolder})}, 0), ElementsAre("+/tmp/a:2"));
}

TEST_F(PaceTest, WhatTheHostKnowsFromEarlierRunsIsNoNews) {
  Pace knowing(0, [](const Item& item) { return item.subject == "/bin/old"; });
  EXPECT_THAT(Texts(knowing.Take({Came("/bin/old", 1), Came("/bin/new", 2)}, 0)), ElementsAre("+/bin/new:2"));
}

TEST_F(PaceTest, ConnectionIsKnownByItsProgramAndPort) {
  const auto connection = [](const std::string& place) {
    return CameEvent(MakeItem(monitor::kConnections, place + ":/bin/a", {}, "/bin/a"));
  };
  EXPECT_THAT(Take({connection("10.0.0.1:443")}, 0), ElementsAre("+10.0.0.1:443:/bin/a"));
  EXPECT_THAT(Take({connection("10.0.0.2:443")}, 0), IsEmpty());
  EXPECT_THAT(Take({connection("10.0.0.2:4444")}, 0), ElementsAre("+10.0.0.2:4444:/bin/a"));
}

TEST_F(PaceTest, AccountsPortsAndTheLikeAreToldAtOnceAlways) {
  const Event account = CameEvent(MakeItem(monitor::kAccounts, "ann"));
  for (int i = 0; i < 3; ++i)
    EXPECT_THAT(Take({account, WentEvent(account.item)}, i), ElementsAre("+ann", "-ann"));
}

TEST_F(PaceTest, FloodOfOneUnusualProgramIsToldAsItsBeginningAndANumber) {
  std::vector<Event> flood;
  for (int pid = 0; pid < 1000; ++pid) {
    flood.push_back(Came("/tmp/x", pid, {Rule::kProgramInTemporaryFolder}));
    flood.push_back(Went("/tmp/x", pid));
  }
  EXPECT_EQ(Take(flood, 0).size(), 2 * Pace::kMostOfOneSubject);
  EXPECT_EQ(MinuteText(60000), "counted and not listed - 970 too many to list - mostly /tmp/x 970");
}

TEST_F(PaceTest, FloodOfNewProgramsIsBoundedAndCounted) {
  std::size_t told = 0;
  constexpr int kStarts = 100000;
  for (int second = 0; second < 10; ++second) {
    std::vector<Event> flood;
    for (int i = 0; i < kStarts / 10; ++i) {
      const int pid = second * kStarts / 10 + i;
      flood.push_back(Came("/tmp/" + std::to_string(pid), pid, {Rule::kProgramInTemporaryFolder}));
    }
    told += Take(flood, second * 1000).size();
  }
  EXPECT_EQ(told, 5000U);
  EXPECT_EQ(pace.counted(), 95000U);
  EXPECT_THAT(MinuteText(60000), HasSubstr(" 95000 too many to list"));
}

TEST_F(PaceTest, DayOfNewProgramsWithoutAnEndStaysBelowThirtyThousandRows) {
  std::size_t told = 0;
  int pid = 0;
  for (std::int64_t second = 0; second < 24 * 3600; second += 10) {
    std::vector<Event> events;
    for (int i = 0; i < 3; ++i, ++pid) {
      events.push_back(Came("/bin/" + std::to_string(pid), pid));
      events.push_back(Went("/bin/" + std::to_string(pid), pid));
    }
    told += Take(events, second * 1000).size();
  }
  EXPECT_LT(told, 30000U);
  EXPECT_GT(told, 10000U);
}

TEST_F(PaceTest, OrdinaryProgramsLeaveRoomForNews) {
  Take({Came("/bin/a", 0)}, 0);
  std::vector<Event> many;
  for (int pid = 1; pid < 6000; ++pid) many.push_back(Came("/bin/a", pid));
  Take(many, 1);
  EXPECT_LT(Take({}, 5001).size(), 4100U);
  EXPECT_THAT(Take({Came("/bin/new", 9000)}, 5002), ElementsAre("+/bin/new:9000"));
}

TEST_F(PaceTest, WhatWasHeldBackIsToldWhenAnAlertNamesIt) {
  Take({Came("/bin/a", 1)}, 0);
  Take({Came("/bin/a", 2), Came("/bin/a", 3), Went("/bin/a", 3)}, 0);
  EXPECT_FALSE(pace.IsTold(Came("/bin/a", 2).item));
  EXPECT_THAT(Texts(pace.Release(Came("/bin/a", 2).item)), ElementsAre("+/bin/a:2"));
  EXPECT_TRUE(pace.IsTold(Came("/bin/a", 2).item));
  EXPECT_THAT(Texts(pace.Release(Came("/bin/a", 3).item)), ElementsAre("+/bin/a:3", "-/bin/a:3"));
  EXPECT_THAT(Texts(pace.Release(Came("/bin/a", 3).item)), IsEmpty());
  EXPECT_THAT(Texts(pace.Release(Came("/bin/a", 1).item)), IsEmpty()) << "told already";
  EXPECT_THAT(Take({}, 6000), IsEmpty()) << "not told twice";
}

TEST_F(PaceTest, NumbersHaveAnAllowanceThatFillsUpSlowly) {
  const Item usual = MakeItem(monitor::kMemory, "50.00");
  const auto told_at = [&](std::int64_t now_ms, int tries, const Item& item) {
    int told = 0;
    for (int i = 0; i < tries; ++i) told += pace.MayTellNumber(item, now_ms) ? 1 : 0;
    return told;
  };
  // What is not unusual leaves a fifth to what is, of which 30 a minute are told at once.
  EXPECT_EQ(told_at(0, 500, usual), 161);
  const Item unusual = MakeItem(monitor::kMemory, "95.00", {Rule::kMemoryNearlyFull});
  EXPECT_EQ(told_at(0, 500, unusual), 30);
  EXPECT_EQ(told_at(0, 10, MakeItem(monitor::kTraffic, "7.00")), 10) << "it has its own";
  EXPECT_EQ(pace.counted(), 339U + 470U);
  EXPECT_THAT(MinuteText(60000), HasSubstr("809 too many to list"));
  std::int64_t day = 0;
  for (std::int64_t now = 60000; now < 86400000; now += 5000) day += told_at(now, 1, usual);
  EXPECT_LE(day, 290);
  EXPECT_GE(day, 240);
}

TEST_F(PaceTest, CountsThatAreLeftAtTheEndAreTold) {
  Take({Came("/bin/a", 1), Came("/bin/a", 2), Went("/bin/a", 2)}, 0);
  ASSERT_TRUE(pace.Rest());
  EXPECT_FALSE(pace.Rest());
}

}  // namespace
}  // namespace zendrix::agent
