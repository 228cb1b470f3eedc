#include "home_fixture.h"

namespace zendrix::home {
namespace {

class SummaryPaneTest : public HomeFixture {};

TEST_F(SummaryPaneTest, EmptyListRunningAgentAndNoMailIsGreen) {
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->AlertLevel, 1);
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagG");
  EXPECT_EQ(form_->summary.OSRiskBackc.Get(), 0x00FF00u);
  EXPECT_EQ(form_->summary.OSRiskLevel.caption.Get(), "No action required on your part");
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "Nothing to do.");
  EXPECT_FALSE(form_->summary.icMore.visible);
  EXPECT_EQ(form_->alerts.sTitleDesc.caption.Get(), "No alerts of 0.");
}

TEST_F(SummaryPaneTest, StoppedAgentIsRedAndWinsTheSecondLineOverAnIntrusion) {
  world_.platform.services.SetStopped("ZENDRIX");
  Open(Alert(1, "0.99"));
  EXPECT_THAT(Boxes().shown, ::testing::IsEmpty()) << "a check asks nobody";
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagR");
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "Agent rests.");
  EXPECT_EQ(form_->summary.icMore.caption.Get(), "[Start Agent]");
  EXPECT_TRUE(form_->summary.icMore.visible);
  EXPECT_EQ(form_->summary.StatusAction, 2);
}

TEST_F(SummaryPaneTest, LinkOfAStoppedAgentStartsIt) {
  world_.platform.services.SetStopped("ZENDRIX");
  Open(Line(1, "System", "0"));
  form_->summary.icMore.clicked.Raise();
  EXPECT_EQ(form_->AgentLevel, 1);
  EXPECT_EQ(Boxes().shown.back().text, "Zendrix Monitoring started.");
  EXPECT_EQ(form_->agent.aClick.caption.Get(), "[Disable]");
}

TEST_F(SummaryPaneTest, SentenceComesInFrontOfItsBand) {
  Open(Line(1, "System", "0"));
  int front = 0;
  const auto link = form_->summary.OSRiskLevel.to_front.Connect([&] { ++front; });
  form_->CheckRiskLevel();
  EXPECT_EQ(front, 1);
}

TEST_F(SummaryPaneTest, SecondLineSaysWhenItsDescriptionsAreGone) {
  Open(Line(1, "System", "0"));
  EXPECT_NE(form_->summary.icStatus.caption.Get(), "");
  state_.Desc[1].clear();
  form_->CheckRiskLevel();
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "Description Not Available");
}

TEST_F(SummaryPaneTest, UndecidedStatusKeepsTheLastColour) {
  Open(Alert(1, "0.92"));
  ASSERT_EQ(form_->summary.OSFlag.picture.Get(), "FlagY");
  form_->AlertLevel = 0;
  form_->CheckRiskLevel();
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagY");
  EXPECT_FALSE(form_->summary.icMore.visible);
}

TEST_F(SummaryPaneTest, IntrusionLeadsToTheList) {
  Open(Alert(1, "0.99"));
  EXPECT_EQ(form_->summary.icMore.caption.Get(), "[Details...]");
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "Intrusion: 1.");
  form_->summary.icMore.clicked.Raise();
  EXPECT_EQ(form_->CurrentView, kAlertsView);
}

TEST_F(SummaryPaneTest, SuspiciousAlertIsYellow) {
  Open(Alert(1, "0.92"));
  EXPECT_EQ(form_->AlertLevel, 2);
  EXPECT_EQ(form_->summary.alerts_row.Flag.picture.Get(), "FlagY");
  EXPECT_EQ(form_->summary.alerts_row.icDesc.caption.Get(), "Strange: 1.");
  EXPECT_EQ(form_->summary.OSRiskLevel.caption.Get(), "Some items require your attention");
  EXPECT_EQ(form_->summary.OSRiskLevel.fore_colour.Get(), 0x008080u);
}

TEST_F(SummaryPaneTest, AllowedIntrusionNoLongerCounts) {
  alerts_.decisions = {{Tag(1), "x"}};
  Open(Alert(1, "0.99"));
  EXPECT_EQ(form_->AlertLevel, 1);
}

TEST_F(SummaryPaneTest, StatusFallsBackWhenAnIntrusionHasBeenAllowed) {
  Open(Alert(1, "0.99"));
  EXPECT_EQ(form_->AlertLevel, 3);
  alerts_.decisions = {{Tag(1), "x"}};
  Append(Line(2, "System", "0"));
  Poll();
  EXPECT_EQ(form_->AlertLevel, 1);
  EXPECT_EQ(form_->summary.alerts_row.Flag.picture.Get(), "FlagG");
}

TEST_F(SummaryPaneTest, BlockedIntrusionCountsWhileItIsListed) {
  alerts_.decisions = {{Tag(1), "A"}};
  Open(Alert(1, "0.99"));
  EXPECT_EQ(form_->AlertLevel, 3);
  form_->alerts.sckShowAll.checked = false;
  form_->alerts.sckShowAll_Click();
  EXPECT_EQ(form_->alerts.CheckAlrSta(), 1);
}

TEST_F(SummaryPaneTest, CountsAndDateOfTheTable) {
  Open(Line(1, "System", "0") + Alert(2, "0.94") + Alert(3, "0.95") + Alert(4, "0.99"));
  EXPECT_EQ(form_->summary.icEventCount.caption.Get(), "Events: 4");
  EXPECT_EQ(form_->summary.icAlertCount.caption.Get(), "Alerts: 2");
  EXPECT_EQ(form_->summary.icDate.caption.Get(), "Tuesday, November 09, 2004");
}

// (Su + 0.5) x 0.99 / 100: the floor of the count lies a little above the ceiling of Suspicious.
TEST_F(SummaryPaneTest, AlertCountBeginsExactlyAtItsFloor) {
  state_.settings.SuspiciousTop = 90;  // 0.89595
  Open(Alert(1, "0.895949") + Alert(2, "0.89595") + Alert(3, "0.895951"));
  EXPECT_EQ(form_->summary.icAlertCount.caption.Get(), "Alerts: 2");
}

TEST_F(SummaryPaneTest, OnlyAggregationRowsAreCountedAsAlerts) {
  Open(Line(1, "Community", "0.99") + Line(2, "System", "0.99"));
  EXPECT_EQ(form_->summary.icAlertCount.caption.Get(), "Alerts: 0");
}

TEST_F(SummaryPaneTest, EmptyTableHasNoDateAndNoCounts) {
  Open("");
  EXPECT_EQ(form_->summary.icDate.caption.Get(), "N/A");
  EXPECT_EQ(form_->summary.icEventCount.caption.Get(), "Events: 0");
  EXPECT_EQ(form_->summary.icAlertCount.caption.Get(), "Alerts: 0");
}

TEST_F(SummaryPaneTest, CountsFollowNewEvents) {
  Open(Line(1, "System", "0"));
  Append(Alert(2, "0.99"));
  Poll();
  EXPECT_EQ(form_->summary.icEventCount.caption.Get(), "Events: 2");
  EXPECT_EQ(form_->AlertLevel, 3);
}

TEST_F(SummaryPaneTest, DescriptionReplacesTheSentence) {
  state_.Desc[4] = {"1,All is well"};
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->summary.OSRiskLevel.caption.Get(), "All is well");
}

TEST_F(SummaryPaneTest, MissingDescriptionsChangeNoColour) {
  state_.Desc[1].clear();
  state_.Desc[9].clear();
  Open(Alert(1, "0.99"));
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagR");
  EXPECT_EQ(form_->alerts.sTitleDesc.caption.Get(), "Description Not Available");
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "Description Not Available");
  EXPECT_EQ(form_->summary.icEventCount.caption.Get(), "");
}

}  // namespace
}  // namespace zendrix::home
