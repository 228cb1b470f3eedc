#include "home_fixture.h"
#include "settings/smtp.h"

namespace zendrix::home {
namespace {

class StatusTest : public HomeFixture {};

TEST_F(StatusTest, EmptyListRunningAgentAndNoMailIsGreen) {
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->AlertLevel, 1);
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagG");
  EXPECT_EQ(form_->summary.OSRiskBackc.Get(), 0x00FF00u);
  EXPECT_EQ(form_->summary.OSRiskLevel.caption.Get(), "No action required on your part");
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "Nothing to do.");
  EXPECT_FALSE(form_->summary.icMore.visible);
  EXPECT_EQ(form_->alerts.sTitleDesc.caption.Get(), "No alerts of 0.");
}

TEST_F(StatusTest, StoppedAgentIsRedAndWinsTheSecondLineOverAnIntrusion) {
  world_.platform.services.SetStopped("ZENDRIX");
  Open(Alert(1, "0.99"));
  EXPECT_THAT(Boxes().shown, ::testing::IsEmpty()) << "a check asks nobody";
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagR");
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "Agent rests.");
  EXPECT_EQ(form_->summary.icMore.caption.Get(), "[Start Agent]");
  EXPECT_TRUE(form_->summary.icMore.visible);
  EXPECT_EQ(form_->summary.StatusAction, 2);
}

TEST_F(StatusTest, LinkOfAStoppedAgentStartsIt) {
  world_.platform.services.SetStopped("ZENDRIX");
  Open(Line(1, "System", "0"));
  form_->summary.icMore.clicked.Raise();
  EXPECT_EQ(form_->AgentLevel, 1);
  EXPECT_EQ(Boxes().shown.back().text, "Zendrix Monitoring started.");
  EXPECT_EQ(form_->agent.aClick.caption.Get(), "[Disable]");
}

TEST_F(StatusTest, LinkOfARunningAgentStopsIt) {
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->agent.StaImg.picture.Get(), "FlagG");
  EXPECT_EQ(form_->agent.aTitleDesc.caption.Get(), "Agent watches.");
  EXPECT_EQ(form_->agent.aStatus.caption.Get(), "Monitoring is Enabled");
  form_->agent.aClick.clicked.Raise();
  EXPECT_EQ(form_->AgentLevel, 3);
  EXPECT_EQ(form_->agent.StaImg.picture.Get(), "FlagR");
  EXPECT_EQ(form_->agent.aTitleDesc.caption.Get(), "Agent rests.");
  EXPECT_EQ(form_->agent.aClick.caption.Get(), "[Enable]");
}

TEST_F(StatusTest, AgentThatStopsWarnsOnceUntilItIsStartedByHand) {
  Open(Line(1, "System", "0"));
  EXPECT_FALSE(form_->AttentionPending);
  world_.platform.services.SetStopped("ZENDRIX");
  form_->agent.CheckAgnSta();
  EXPECT_TRUE(form_->AttentionPending);
  form_->AttentionPending = false;
  form_->agent.CheckAgnSta();
  EXPECT_FALSE(form_->AttentionPending);
  form_->agent.aClick.clicked.Raise();
  EXPECT_TRUE(form_->agent.AgentJustStarted);
}

TEST_F(StatusTest, SentenceComesInFrontOfItsBand) {
  Open(Line(1, "System", "0"));
  int front = 0;
  const auto link = form_->summary.OSRiskLevel.to_front.Connect([&] { ++front; });
  form_->CheckRiskLevel();
  EXPECT_EQ(front, 1);
}

TEST_F(StatusTest, SecondLineIsClearedWhenItsDescriptionsAreGone) {
  Open(Line(1, "System", "0"));
  EXPECT_NE(form_->summary.icStatus.caption.Get(), "");
  state_.Desc[1].clear();
  form_->CheckRiskLevel();
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "");
}

TEST_F(StatusTest, UndecidedStatusKeepsTheLastColour) {
  Open(Alert(1, "0.92"));
  ASSERT_EQ(form_->summary.OSFlag.picture.Get(), "FlagY");
  form_->AlertLevel = 0;
  form_->CheckRiskLevel();
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagY");
  EXPECT_FALSE(form_->summary.icMore.visible);
}

TEST_F(StatusTest, IntrusionLeadsToTheList) {
  Open(Alert(1, "0.99"));
  EXPECT_EQ(form_->summary.icMore.caption.Get(), "[Details...]");
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "Intrusion: 1.");
  form_->summary.icMore.clicked.Raise();
  EXPECT_EQ(form_->CurrentView, kAlertsView);
}

TEST_F(StatusTest, SuspiciousAlertIsYellow) {
  Open(Alert(1, "0.92"));
  EXPECT_EQ(form_->AlertLevel, 2);
  EXPECT_EQ(form_->summary.alerts_row.Flag.picture.Get(), "FlagY");
  EXPECT_EQ(form_->summary.alerts_row.icDesc.caption.Get(), "Strange: 1.");
  EXPECT_EQ(form_->summary.OSRiskLevel.caption.Get(), "Some items require your attention");
  EXPECT_EQ(form_->summary.OSRiskLevel.fore_colour.Get(), 0x008080u);
}

TEST_F(StatusTest, AllowedIntrusionNoLongerCounts) {
  alerts_.decisions = {{Tag(1), "x"}};
  Open(Alert(1, "0.99"));
  EXPECT_EQ(form_->AlertLevel, 1);
}

TEST_F(StatusTest, BlockedIntrusionCountsWhileItIsListed) {
  alerts_.decisions = {{Tag(1), "A"}};
  Open(Alert(1, "0.99"));
  EXPECT_EQ(form_->AlertLevel, 3);
  form_->alerts.sckShowAll.checked = false;
  form_->alerts.sckShowAll_Click();
  EXPECT_EQ(form_->alerts.CheckAlrSta(), 1);
}

TEST_F(StatusTest, MailWithoutAServerIsYellowAndWarnsOnce) {
  state_.settings.enblAlr = "1";
  settings::SaveSMTPData(state_, world_.log, {"a@b.c", "", "25"});
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagY");
  EXPECT_FALSE(form_->summary.icMore.visible);
  EXPECT_EQ(form_->options.eTitleDesc.caption.Get(), "Mail is incomplete.");
  EXPECT_TRUE(form_->AttentionPending);
  form_->AttentionPending = false;
  form_->CheckRiskLevel();
  EXPECT_FALSE(form_->AttentionPending);
}

TEST_F(StatusTest, MailWithoutAPortIsComplete) {
  state_.settings.enblAlr = "1";
  settings::SaveSMTPData(state_, world_.log, {"a@b.c", "mail.b.c", ""});
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->options.CheckEmlSta(), 1);
}

TEST_F(StatusTest, MissingServiceCountsAsStoppedAndCallsOnce) {
  world_.platform.services.SetMissing("ZENDRIX");
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->AgentLevel, 3);
  EXPECT_EQ(form_->agent.aStatus.caption.Get(), "Monitoring is Disabled");
  EXPECT_EQ(form_->agent.aClick.caption.Get(), "[Enable]");
  EXPECT_FALSE(form_->agent.AgentJustStarted);
}

TEST_F(StatusTest, CountsAndDateOfTheTable) {
  Open(Line(1, "System", "0") + Alert(2, "0.94") + Alert(3, "0.95") + Alert(4, "0.99"));
  EXPECT_EQ(form_->summary.icEventCount.caption.Get(), "Events: 4");
  EXPECT_EQ(form_->summary.icAlertCount.caption.Get(), "Alerts: 2");
  EXPECT_EQ(form_->summary.icDate.caption.Get(), "Tuesday, November 09, 2004");
}

// (Su + 0.5) x 0.99 / 100: the floor of the count lies a little above the ceiling of Suspicious.
TEST_F(StatusTest, AlertCountBeginsExactlyAtItsFloor) {
  state_.settings.SuspiciousTop = 90;  // 0.89595
  Open(Alert(1, "0.895949") + Alert(2, "0.89595") + Alert(3, "0.895951"));
  EXPECT_EQ(form_->summary.icAlertCount.caption.Get(), "Alerts: 2");
}

TEST_F(StatusTest, OnlyAggregationRowsAreCountedAsAlerts) {
  Open(Line(1, "Community", "0.99") + Line(2, "System", "0.99"));
  EXPECT_EQ(form_->summary.icAlertCount.caption.Get(), "Alerts: 0");
}

TEST_F(StatusTest, FlagOfTheOptionsFollowsTheMailSettings) {
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->summary.options_row.Flag.picture.Get(), "FlagG");
  EXPECT_EQ(form_->options.StaImg.picture.Get(), "FlagG");
  state_.settings.enblAlr = "1";
  form_->options.CheckEmlSta();
  EXPECT_EQ(form_->summary.options_row.Flag.picture.Get(), "FlagY");
  EXPECT_EQ(form_->options.StaImg.picture.Get(), "FlagY");
}

TEST_F(StatusTest, ClickOnOptionsChecksTheMailSettingsAgain) {
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->options.eTitleDesc.caption.Get(), "Mail is fine.");
  state_.settings.enblAlr = "1";
  form_->ViewItems[kOptionsView]->clicked.Raise();
  EXPECT_EQ(form_->options.eTitleDesc.caption.Get(), "Mail is incomplete.");
  EXPECT_EQ(form_->summary.options_row.icDesc.caption.Get(), "Mail is incomplete.");
  settings::SaveSMTPData(state_, world_.log, {"a@b.c", "mail.b.c", "25"});
  form_->ViewItems[kOptionsView]->clicked.Raise();
  EXPECT_EQ(form_->options.eTitleDesc.caption.Get(), "Mail is fine.");
}

TEST_F(StatusTest, EmptyTableHasNoDateAndNoCounts) {
  Open("");
  EXPECT_EQ(form_->summary.icDate.caption.Get(), "N/A");
  EXPECT_EQ(form_->summary.icEventCount.caption.Get(), "Events: 0");
  EXPECT_EQ(form_->summary.icAlertCount.caption.Get(), "Alerts: 0");
}

TEST_F(StatusTest, CountsFollowNewEvents) {
  Open(Line(1, "System", "0"));
  Append(Alert(2, "0.99"));
  Poll();
  EXPECT_EQ(form_->summary.icEventCount.caption.Get(), "Events: 2");
  EXPECT_EQ(form_->AlertLevel, 3);
}

TEST_F(StatusTest, DescriptionReplacesTheSentence) {
  state_.Desc[4] = {"1,All is well"};
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->summary.OSRiskLevel.caption.Get(), "All is well");
}

TEST_F(StatusTest, MissingDescriptionsChangeNoColour) {
  state_.Desc[1].clear();
  state_.Desc[9].clear();
  Open(Alert(1, "0.99"));
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagR");
  EXPECT_EQ(form_->alerts.sTitleDesc.caption.Get(), "Description Not Available");
  EXPECT_EQ(form_->summary.icStatus.caption.Get(), "");
  EXPECT_EQ(form_->summary.icEventCount.caption.Get(), "");
}

}  // namespace
}  // namespace zendrix::home
