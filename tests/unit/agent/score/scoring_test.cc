#include "agent/score/scoring.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;

Fact MakeFact(int number, Topic topic, double weight, const std::string& text) {
  Fact fact;
  fact.number = number;
  fact.topic = topic;
  fact.weight = weight;
  fact.text = text;
  return fact;
}

TEST(Fading, HalvesWithEveryThreeDays) {
  EXPECT_DOUBLE_EQ(Fading(0), 1);
  EXPECT_DOUBLE_EQ(Fading(3), 0.5);
  EXPECT_DOUBLE_EQ(Fading(6), 0.25);
}

TEST(Risk, FactsTakeAwayWhatDoubtIsLeft) {
  const std::vector<Fact> facts = {MakeFact(101, Topic::kPlace, 0.9, "a"),
                                   MakeFact(1001, Topic::kProgram, 0.5, "b")};
  EXPECT_DOUBLE_EQ(DoubtOf(facts), 0.1 * 0.5);
  EXPECT_DOUBLE_EQ(RiskOf(DoubtOf(facts), 1), 0.95);
  EXPECT_DOUBLE_EQ(RiskOf(DoubtOf(facts), kInstallingFactor), 0.95 * 0.3);
  EXPECT_DOUBLE_EQ(DoubtOf({}), 1);
}

TEST(Risk, IsCutInFrontOfTheFactor) {
  EXPECT_DOUBLE_EQ(RiskOf(0.0001, 1), 0.99);
  EXPECT_DOUBLE_EQ(RiskOf(0.0001, kInstallingFactor), 0.99 * 0.3);
}

TEST(HardRules, AreThoseThatNoOrdinaryProgramShows) {
  int hard = 0;
  for (std::size_t i = 0; i < kRuleCount; ++i) hard += IsHard(static_cast<Rule>(i));
  EXPECT_EQ(hard, 7);
  EXPECT_TRUE(IsHard(Rule::kAutorunInTemporaryFolder));
  EXPECT_FALSE(IsHard(Rule::kProgramInTemporaryFolder));
}

TEST(Topics, FollowTheHundredsOfARule) {
  EXPECT_EQ(TopicOf(Rule::kProgramHidden), Topic::kPlace);
  EXPECT_EQ(TopicOf(Rule::kPortUnusual), Topic::kPort);
  EXPECT_EQ(TopicOf(Rule::kConnectionOfUnknownProgram), Topic::kConnection);
  EXPECT_EQ(TopicOf(Rule::kLoginFromElsewhere), Topic::kLogin);
  EXPECT_EQ(TopicOf(Rule::kAccountNew), Topic::kAccount);
  EXPECT_EQ(TopicOf(Rule::kAutorunHidden), Topic::kAutostart);
  EXPECT_EQ(TopicOf(Rule::kPreloadList), Topic::kFile);
  EXPECT_EQ(TopicOf(Rule::kFailedLogins), Topic::kGuessing);
  EXPECT_EQ(TopicOf(Rule::kMemoryRise), Topic::kMeasure);
}

TEST(Phrases, OneForATopicAndThreeAtMostHeaviestFirst) {
  EXPECT_THAT(Phrases({MakeFact(1001, Topic::kProgram, 0.5, "first seen in 41 days"),
                       MakeFact(101, Topic::kPlace, 0.92, "runs from /tmp"),
                       MakeFact(202, Topic::kPort, 0.6, "port is none of a usual service"),
                       MakeFact(kNewPort, Topic::kPort, 0.5, "opened port 4444"),
                       MakeFact(kNewParent, Topic::kParent, 0.1, "started by x")}),
              ElementsAre("runs from /tmp", "opened port 4444", "first seen in 41 days"));
}

TEST(BudgetTest, OneAlertMakesTheNextOfThatDayHarder) {
  Budget budget;
  EXPECT_DOUBLE_EQ(budget.Limit(1000), kMostDoubt);
  budget.Spend(0.04, 1000);
  EXPECT_NEAR(budget.Limit(1000), 0.01, 1e-12);
  EXPECT_NEAR(budget.Limit(1000 + 86399), 0.01, 1e-12);
  EXPECT_DOUBLE_EQ(budget.Limit(1000 + 86400), kMostDoubt);
  budget.Spend(0.000001, 2000);
  EXPECT_NEAR(budget.Limit(3000), 0.01, 1e-12) << "what leaves a hundredth is always an alert";
  EXPECT_DOUBLE_EQ(budget.Limit(0), kMostDoubt) << "a clock that was put back";
}

}  // namespace
}  // namespace zendrix::agent
