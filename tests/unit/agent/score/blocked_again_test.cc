// A program that the user blocked comes again.
#include <gmock/gmock.h>

#include "unit/agent/score/scored_host.h"

namespace zendrix::agent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kTool[] = "/home/ann/.x/tool";

class BlockedAgainTest : public testing::Test {
 protected:
  BlockedAgainTest() {
    pc.Put("/usr/bin/bash", "bash");
    pc.Put(kTool, "tool");
    pc.Put("/usr/local/bin/plain", "plain");
    for (int day = 0; day < 7; ++day) {
      pc.At(day, 12);
      pc.Start("/usr/bin/bash", "/usr/bin/login");
    }
    pc.At(8, 12);
    pc.Start(kTool, "/usr/bin/bash");
    pc.Wait(5);
    EXPECT_THAT(pc.alerts, SizeIs(1));
    pc.react = [this](Alert& alert) {
      if (alert.blocked) alert.acted = acts;
    };
  }
  void Block() { EXPECT_TRUE(pc.scorer().Decide(pc.alerts.at(0).alert.code, true)); }
  // The alerts of one more start, without waiting for anything else that the program does.
  std::size_t StartAgain() {
    const std::size_t before = pc.alerts.size();
    pc.Start(kTool, "/usr/bin/bash");
    return pc.alerts.size() - before;
  }

  ScoredHost pc;
  bool acts = true;
};

TEST_F(BlockedAgainTest, TheSameContentsAreToBeBlockedAgainAtOnceWithTheirProcess) {
  Block();
  pc.Wait(600);
  EXPECT_EQ(StartAgain(), 1U) << "on the same day, and without settling";
  const Alert& alert = pc.alerts.back().alert;
  ASSERT_TRUE(alert.blocked.has_value());
  EXPECT_EQ(alert.blocked->path, kTool);
  EXPECT_EQ(alert.blocked->sha256, Sha256Of("tool"));
  EXPECT_THAT(alert.blocked->processes, ElementsAre(pc.last_pid()));
  EXPECT_THAT(alert.facts, Contains("was blocked before"));
}

TEST_F(BlockedAgainTest, EveryTimeThatItComesAndIsBlocked) {
  Block();
  for (int i = 0; i < 5; ++i) {
    pc.Wait(60);
    EXPECT_EQ(StartAgain(), 1U);
    EXPECT_THAT(pc.alerts.back().alert.blocked->processes, SizeIs(1)) << "the earlier ones have ended";
  }
}

TEST_F(BlockedAgainTest, WhatWasRefusedIsTriedAgainAfterAnHour) {
  Block();
  acts = false;
  pc.Wait(60);
  EXPECT_EQ(StartAgain(), 1U);
  pc.Wait(3500);
  EXPECT_EQ(StartAgain(), 0U);
  pc.Wait(200);
  EXPECT_EQ(StartAgain(), 1U);
  EXPECT_TRUE(pc.alerts.back().alert.blocked.has_value());
}

TEST_F(BlockedAgainTest, OtherContentsOnlyRaiseTheRisk) {
  Block();
  pc.Put(kTool, "another");
  pc.Wait(ScoredHost::kDay);
  pc.Start(kTool, "/usr/bin/bash");
  pc.Wait(5);
  ASSERT_THAT(pc.alerts, SizeIs(2));
  EXPECT_THAT(pc.alerts.back().alert.facts, Contains("was blocked before"));
  EXPECT_FALSE(pc.alerts.back().alert.blocked.has_value());
  StartAgain();
  pc.Wait(5);
  EXPECT_EQ(StartAgain(), 0U) << "all of it was said today";
  for (const auto& told : pc.alerts) EXPECT_FALSE(told.alert.blocked.has_value());
}

TEST_F(BlockedAgainTest, WhatWasNotBlockedOrWasAllowedIsNotToBeBlocked) {
  EXPECT_EQ(StartAgain(), 0U);
  pc.scorer().Decide(pc.alerts.at(0).alert.code, false);
  pc.Wait(2 * ScoredHost::kDay);
  StartAgain();
  pc.Wait(5);
  for (const auto& told : pc.alerts) EXPECT_FALSE(told.alert.blocked.has_value());
}

TEST_F(BlockedAgainTest, AnotherProgramWithTheSameContentsIsNotToBeBlocked) {
  Block();
  pc.Put("/home/ann/.x/copy", "tool");
  pc.Wait(2 * ScoredHost::kDay);
  pc.Start("/home/ann/.x/copy", "/usr/bin/bash");
  pc.Wait(5);
  for (const auto& told : pc.alerts) EXPECT_FALSE(told.alert.blocked.has_value());
}

TEST_F(BlockedAgainTest, WhatIsThereWhenTheAgentStartsIsToBeBlockedToo) {
  Block();
  Item item = MakeItem(monitor::kProcesses, std::string(kTool) + ":77", {}, kTool);
  item.program = kTool;
  pc.scorer().BeginFile();
  pc.alerts.clear();
  pc.IsThere({item});
  ASSERT_THAT(pc.alerts, SizeIs(1));
  ASSERT_TRUE(pc.alerts[0].alert.blocked.has_value());
  EXPECT_THAT(pc.alerts[0].alert.blocked->processes, ElementsAre(77U));
}

TEST_F(BlockedAgainTest, AnAlertThatCouldNotBeWrittenComesAgainAsItWas) {
  Block();
  pc.Wait(60);
  pc.writes = false;
  EXPECT_EQ(StartAgain(), 0U);
  pc.writes = true;
  pc.Turn({});
  ASSERT_THAT(pc.alerts, SizeIs(2));
  EXPECT_THAT(pc.alerts.back().alert.blocked->processes, ElementsAre(pc.last_pid()));
}

TEST_F(BlockedAgainTest, OfManyProcessesAFewAreNamed) {
  Block();
  pc.Wait(60);
  pc.writes = false;
  for (int i = 0; i < 40; ++i) StartAgain();
  pc.writes = true;
  pc.Turn({});
  ASSERT_THAT(pc.alerts, SizeIs(2));
  const auto& processes = pc.alerts.back().alert.blocked->processes;
  EXPECT_THAT(processes, SizeIs(16));
  EXPECT_EQ(processes.back(), static_cast<std::uint32_t>(pc.last_pid()));
}

}  // namespace
}  // namespace zendrix::agent
