#include "agent/score/scorer.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

using ::testing::SizeIs;

class RuleScorerTest : public ::testing::Test {
 protected:
  std::vector<Alert> Weigh(const std::vector<Event>& events, std::int64_t now_ms = 0) {
    const Moment now{1700000000 + now_ms / 1000, now_ms};
    auto alerts = scorer->Weigh(events, now);
    scorer->Raised(alerts, now.utc, now);
    return alerts;
  }

  const Item process = MakeItem(monitor::kProcesses, "/tmp/x:7", {Rule::kProgramInTemporaryFolder}, "/tmp/x");
  const Item port = MakeItem(monitor::kPorts, "4444:/tmp/x", {Rule::kPortOpenToAll}, "/tmp/x");
  std::unique_ptr<Scorer> scorer = MakeRuleScorer();
};

TEST_F(RuleScorerTest, NewEventIsWeighedWithWhatIsStillThereOfItsSubject) {
  Weigh(PresentEvents({process}));
  const auto alerts = Weigh(ChangeEvents({{}, {port}}), 1000);
  ASSERT_THAT(alerts, SizeIs(1));
  EXPECT_THAT(alerts[0].members, SizeIs(2));
}

TEST_F(RuleScorerTest, WhatWentIsWeighedNoMore) {
  Weigh(PresentEvents({process}));
  Weigh(ChangeEvents({{process}, {}}), 1000);
  const auto alerts = Weigh(ChangeEvents({{}, {port}}), 2000);
  ASSERT_THAT(alerts, SizeIs(1));
  EXPECT_THAT(alerts[0].members, SizeIs(1));
}

TEST_F(RuleScorerTest, ThatAPortCameIsSaidOfItsComingOnly) {
  Weigh(ChangeEvents({{}, {port}}));
  const auto alerts = Weigh(ChangeEvents({{}, {process}}), 1000);
  ASSERT_THAT(alerts, SizeIs(1));
  EXPECT_EQ(alerts[0].rules, (RuleSet{Rule::kProgramInTemporaryFolder, Rule::kPortOpenToAll}));
}

TEST_F(RuleScorerTest, AlertThatWasNotWrittenComesBack) {
  EXPECT_THAT(scorer->Weigh(PresentEvents({process}), {}), SizeIs(1));
  EXPECT_THAT(scorer->Weigh(PresentEvents({process}), {}), SizeIs(1));
}

TEST_F(RuleScorerTest, NewFileGetsItsAlertsAnew) {
  EXPECT_THAT(Weigh(PresentEvents({process})), SizeIs(1));
  EXPECT_THAT(Weigh(PresentEvents({process}), 1000), SizeIs(0));
  scorer->BeginFile();
  EXPECT_THAT(Weigh(PresentEvents({process}), 2000), SizeIs(1));
}

}  // namespace
}  // namespace zendrix::agent
