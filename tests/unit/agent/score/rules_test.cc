#include "agent/score/rules.h"

#include <set>

#include "agent/host/places.h"

namespace zendrix::agent {
namespace {

TEST(Rules, EveryRuleHasItsOwnNumberAndAWeightBelowOne) {
  std::set<int> numbers;
  for (std::size_t i = 0; i < kRuleCount; ++i) {
    const RuleFacts& facts = FactsOf(static_cast<Rule>(i));
    EXPECT_TRUE(numbers.insert(facts.number).second) << facts.number;
    EXPECT_GT(facts.weight, 0);
    EXPECT_LT(facts.weight, 1);
    EXPECT_EQ(facts.text.find_first_of("|,;=:*'\"\\"), std::string_view::npos) << facts.text;
  }
}

TEST(ComposeRisk, NothingUnusualIsNoRisk) {
  EXPECT_EQ(ComposeRisk({}), 0);
}

TEST(ComposeRisk, OneFactGivesItsWeight) {
  EXPECT_DOUBLE_EQ(ComposeRisk({Rule::kPortOpenToAll}), FactsOf(Rule::kPortOpenToAll).weight);
}

TEST(ComposeRisk, FactsTakeAwayRemainingDoubt) {
  const double first = FactsOf(Rule::kPortOpenToAll).weight;
  const double second = FactsOf(Rule::kPortUnusual).weight;
  EXPECT_DOUBLE_EQ(ComposeRisk({Rule::kPortOpenToAll, Rule::kPortUnusual}), 1 - (1 - first) * (1 - second));
}

TEST(ComposeRisk, NeverExceedsTheHighestRisk) {
  EXPECT_DOUBLE_EQ(ComposeRisk({Rule::kProgramInMemory, Rule::kSecondRoot, Rule::kNoPassword}), 0.99);
}

TEST(EventCode, NamesTheHeaviestRule) {
  EXPECT_EQ(EventCode(monitor::kProcesses, {Rule::kProgramHidden, Rule::kProgramInTemporaryFolder}),
            "RP,101,1");
  EXPECT_EQ(EventCode(monitor::kPorts, {}), "LP,200,1");
  EXPECT_EQ(EventCode("Something Else", {}), "XX,0,1");
}

TEST(ByWeight, HeaviestFirst) {
  EXPECT_THAT(ByWeight({Rule::kPortOpenToAll, Rule::kProgramInMemory, Rule::kPortUnusual}),
              ::testing::ElementsAre(Rule::kProgramInMemory, Rule::kPortUnusual, Rule::kPortOpenToAll));
}

TEST(Places, TemporaryHiddenAndSystemFolders) {
  EXPECT_TRUE(InTemporaryFolder("/tmp/x"));
  EXPECT_TRUE(InTemporaryFolder("/dev/shm/x"));
  EXPECT_FALSE(InTemporaryFolder("/tmpx/x"));
  EXPECT_TRUE(IsHidden("/home/ann/.x/run"));
  EXPECT_TRUE(IsHidden("/tmp/..x"));
  EXPECT_FALSE(IsHidden("/usr/../bin/./x.y"));
  EXPECT_TRUE(InSystemFolder("/usr/bin/x"));
  EXPECT_FALSE(InSystemFolder("/usrx/x"));
}

TEST(Places, UsualPorts) {
  for (const unsigned port : {20U, 22U, 443U, 995U, 2049U, 5432U}) EXPECT_TRUE(IsUsualPort(port)) << port;
  for (const unsigned port : {0U, 1U, 2024U, 4444U, 31337U}) EXPECT_FALSE(IsUsualPort(port)) << port;
}

TEST(Places, NamesOfKernelThreads) {
  EXPECT_TRUE(LooksLikeKernelThread("[kworker/0:1]"));
  EXPECT_TRUE(LooksLikeKernelThread("kworker/u8:2"));
  EXPECT_FALSE(LooksLikeKernelThread("sshd"));
}

}  // namespace
}  // namespace zendrix::agent
