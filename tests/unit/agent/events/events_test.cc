#include "agent/events/events.h"

#include "agent/events/measures.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

Snapshot At(std::int64_t ms, double memory, std::uint64_t bytes) {
  Snapshot seen;
  seen.taken_ms = ms;
  seen.memory_percent = memory;
  seen.traffic_bytes = bytes;
  return seen;
}

constexpr std::uint64_t kMegabyte = 1024 * 1024;

TEST(Compare, FindsWhatCameAndWhatWent) {
  const Item a = MakeItem(monitor::kAccounts, "a");
  const Item b = MakeItem(monitor::kAccounts, "b");
  const auto difference = Compare({a}, {b});
  ASSERT_EQ(difference.removed.size(), 1U);
  EXPECT_EQ(difference.removed[0].description, "a");
  ASSERT_EQ(difference.added.size(), 1U);
  EXPECT_EQ(difference.added[0].description, "b");
}

TEST(Compare, SameDescriptionUnderAnotherMonitorOrIdentityIsAnotherItem) {
  Item again = MakeItem(monitor::kProcesses, "/bin/x:7");
  again.identity = "later";
  EXPECT_EQ(Compare({MakeItem(monitor::kProcesses, "/bin/x:7")}, {again}).added.size(), 1U);
  EXPECT_EQ(Compare({MakeItem(monitor::kProcesses, "x")}, {MakeItem(monitor::kAccounts, "x")}).removed.size(),
            1U);
}

TEST(Compare, EqualItemsCountAsOne) {
  const Item a = MakeItem(monitor::kConnections, "10.0.0.1:443");
  EXPECT_EQ(Compare({}, {a, a, a}).added.size(), 1U);
  EXPECT_TRUE(Compare({a, a}, {a}).removed.empty());
}

TEST(PresentEvents, NothingChangedAboutWhatWasThere) {
  const auto events = PresentEvents({MakeItem(monitor::kPorts, "22")});
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].kind, EventKind::kPresent);
  EXPECT_EQ(events[0].original, 1);
  EXPECT_EQ(events[0].change, 0);
  EXPECT_TRUE(events[0].item.rules.empty());
}

TEST(ChangeEvents, WhatWentStandsBeforeWhatCame) {
  const auto events = ChangeEvents({{MakeItem(monitor::kPorts, "22")}, {MakeItem(monitor::kPorts, "23")}});
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].kind, EventKind::kRemoved);
  EXPECT_EQ(events[0].original, 1);
  EXPECT_EQ(events[0].change, -1);
  EXPECT_TRUE(events[0].item.rules.empty());
  EXPECT_EQ(events[1].kind, EventKind::kAdded);
  EXPECT_EQ(events[1].original, 0);
  EXPECT_EQ(events[1].change, 1);
  EXPECT_EQ(events[1].item.rules, RuleSet({Rule::kPortNew}));
}

TEST(ChangeEvents, NewsIsARuleOfItsMonitor) {
  const auto rules_of = [](std::string_view name) {
    return ChangeEvents({{}, {MakeItem(name, "x")}})[0].item.rules;
  };
  EXPECT_EQ(rules_of(monitor::kAccounts), RuleSet({Rule::kAccountNew}));
  EXPECT_EQ(rules_of(monitor::kAutorun), RuleSet({Rule::kAutorunNew}));
  EXPECT_EQ(rules_of(monitor::kFolders), RuleSet({Rule::kSystemFolderChanged}));
  EXPECT_TRUE(rules_of(monitor::kProcesses).empty());
}

TEST(Measures, FirstMemoryValueCountsAsNoChange) {
  Measures measures;
  Snapshot seen = At(0, 12.5, 0);
  seen.memory_users = {"firefox", "make"};
  const auto events = measures.Take(seen);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].item.description, "12.50:firefox:make");
  EXPECT_EQ(events[0].original, 12.5);
  EXPECT_EQ(events[0].change, 0);
  EXPECT_EQ(events[0].reading, "12.50 percent");
}

TEST(Measures, MemorySpeaksOnlyWhenItMovedFivePoints) {
  Measures measures;
  measures.Take(At(0, 12, 0));
  EXPECT_EQ(measures.Take(At(1000, 16.9, 0)).size(), 1U);  // the first rate
  const auto events = measures.Take(At(2000, 17, 0));
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].original, 12);
  EXPECT_EQ(events[0].change, 5);
  EXPECT_EQ(events[0].reading_before, "12.00 percent");
}

// The next number that is told stands beside the last that was.
TEST(Measures, RefusedNumberWasNeverReported) {
  Measures measures;
  const auto refuse = [](const Item&) { return false; };
  EXPECT_EQ(measures.Take(At(0, 12, 0), refuse).size(), 1U) << "the first is always told";
  EXPECT_EQ(measures.Take(At(1000, 30, 4096), refuse).size(), 1U) << "and so is the first rate";
  EXPECT_TRUE(measures.Take(At(2000, 40, 4096 + (1U << 20U)), refuse).empty());
  std::vector<std::string> asked;
  const auto events = measures.Take(At(3000, 50, 4096 + (3U << 20U)), [&](const Item& item) {
    asked.push_back(std::string(item.monitor));
    return true;
  });
  EXPECT_EQ(asked, (std::vector<std::string>{"Memory Utilization", "Network Transmission Rate"}));
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].reading_before, "12.00 percent");
  EXPECT_EQ(events[0].change, 38);
  EXPECT_EQ(events[1].reading_before, "4.00 KB per second");
}

TEST(Measures, SharpRiseAndNearlyFullMemoryAreUnusual) {
  Measures measures;
  measures.Take(At(0, 12, 0));
  EXPECT_EQ(measures.Take(At(1000, 95, 0))[0].item.rules,
            RuleSet({Rule::kMemoryRise, Rule::kMemoryNearlyFull}));
  EXPECT_EQ(measures.Present()[0].item.rules, RuleSet({Rule::kMemoryNearlyFull}));
}

TEST(Measures, MemoryIsNearlyFullAndRisesSharplyFromTheLimitsOn) {
  const auto rules = [](double before, double then) {
    Measures measures;
    measures.Take(At(0, before, 0));
    return measures.Take(At(1000, then, 0))[0].item.rules;
  };
  EXPECT_EQ(rules(70, 90), RuleSet({Rule::kMemoryRise, Rule::kMemoryNearlyFull}));
  EXPECT_EQ(rules(70.5, 90), RuleSet({Rule::kMemoryNearlyFull}));
  EXPECT_EQ(rules(69.5, 89.5), RuleSet({Rule::kMemoryRise}));
  EXPECT_TRUE(rules(70, 89.5).empty());
}

TEST(Measures, RateIsKilobytesPerSecondOfTheTimeBetween) {
  Measures measures;
  measures.Take(At(0, 12, 0));
  const auto events = measures.Take(At(2000, 12, 4096));
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].item.monitor, "Network Transmission Rate");
  EXPECT_EQ(events[0].item.description, "2.00");
  EXPECT_EQ(events[0].reading, "2.00 KB per second");
}

TEST(Measures, RateFarAboveTheUsualIsUnusual) {
  Measures measures;
  std::uint64_t bytes = 0;
  std::int64_t now = 0;
  for (int i = 0; i < 5; ++i) measures.Take(At(now += 1000, 12, bytes += 1024));
  const auto events = measures.Take(At(now + 1000, 12, bytes + 5 * kMegabyte));
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].item.rules, RuleSet({Rule::kTrafficRise}));
  EXPECT_DOUBLE_EQ(events[0].original, 1);
  EXPECT_DOUBLE_EQ(events[0].change, 5119);
}

TEST(Measures, RateIsSharpFromTheLimitsOnAndAfterThreeOthers) {
  // The rules about a rate of that many KB per second behind so many usual ones.
  const auto rules = [](int usual_rates, std::uint64_t usual, std::uint64_t then) {
    Measures measures;
    std::uint64_t bytes = 0;
    std::int64_t now = 0;
    for (int i = 0; i <= usual_rates; ++i) measures.Take(At(now += 1000, 12, bytes += usual * 1024));
    const auto events = measures.Take(At(now + 1000, 12, bytes + then * 1024));
    return events.empty() ? RuleSet() : events.back().item.rules;
  };
  EXPECT_EQ(rules(3, 1, 1024), RuleSet({Rule::kTrafficRise}));
  EXPECT_TRUE(rules(2, 1, 1024).empty());
  EXPECT_TRUE(rules(3, 1, 1023).empty());
  EXPECT_EQ(rules(3, 127, 1024), RuleSet({Rule::kTrafficRise}));
  EXPECT_TRUE(rules(3, 130, 1024).empty());
}

TEST(Measures, CountersThatBeginAnewGiveNoRate) {
  Measures measures;
  measures.Take(At(0, 12, 5000));
  EXPECT_TRUE(measures.Take(At(1000, 12, 10)).empty());
}

TEST(Measures, ManyFailedLoginsAreUnusualAndAFewAreOnlyTold) {
  Measures measures;
  Snapshot seen;
  seen.failed_logins = 10;
  EXPECT_TRUE(measures.Take(seen).empty());
  seen.failed_logins = 12;
  auto events = measures.Take(seen);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].item.description, "failed logins 2");
  EXPECT_TRUE(events[0].item.rules.empty());
  seen.failed_logins = 17;
  events = measures.Take(seen);
  EXPECT_EQ(events[0].item.rules, RuleSet({Rule::kFailedLogins}));
  EXPECT_EQ(events[0].change, 5);
  seen.failed_logins = 0;  // the record was begun anew
  EXPECT_TRUE(measures.Take(seen).empty());
  seen.failed_logins = 9;
  EXPECT_EQ(measures.Take(seen)[0].change, 9);
  seen.failed_logins = 2;
  EXPECT_EQ(measures.Take(seen)[0].change, 2);
}

TEST(Measures, FailedLoginsAreToldByThePlaceThatTheyCameFrom) {
  Measures measures;
  Snapshot seen;
  seen.failed_logins = 1;
  measures.Take(seen);
  seen.failed_logins = 16;
  seen.new_failed_logins = {{"sshd from 203.0.113.66", 12}, {"tty1", 1}};
  const auto events = measures.Take(seen);
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(events[0].item.description, "failed logins 12 at sshd from 203.0.113.66");
  EXPECT_EQ(events[0].item.subject, "failed logins at sshd from 203.0.113.66");
  EXPECT_EQ(events[0].item.rules, RuleSet({Rule::kFailedLogins}));
  EXPECT_EQ(events[1].item.description, "failed logins 1 at tty1");
  EXPECT_TRUE(events[1].item.rules.empty());
  EXPECT_EQ(events[2].item.description, "failed logins 2");
}

}  // namespace
}  // namespace zendrix::agent
