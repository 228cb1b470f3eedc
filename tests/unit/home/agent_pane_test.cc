#include "home_fixture.h"

namespace zendrix::home {
namespace {

using ::testing::ElementsAre;
using widgets::kPointerDefault;

class AgentPaneTest : public HomeFixture {};

TEST_F(AgentPaneTest, LinkOfARunningAgentStopsIt) {
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

TEST_F(AgentPaneTest, AgentThatStopsWarnsOnceUntilItIsStartedByHand) {
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

TEST_F(AgentPaneTest, MissingServiceCountsAsStoppedAndCallsOnce) {
  world_.platform.services.SetMissing("ZENDRIX");
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->AgentLevel, 3);
  EXPECT_EQ(form_->agent.aStatus.caption.Get(), "Monitoring is Disabled");
  EXPECT_EQ(form_->agent.aClick.caption.Get(), "[Enable]");
  EXPECT_FALSE(form_->agent.AgentJustStarted);
}

TEST_F(AgentPaneTest, HeadingNamesWhatTheLinksChange) {
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->agent.aAgSta.caption.Get(), "Monitoring Status");
  EXPECT_EQ(form_->agent.aClick.caption.Get(), "[Disable]");
}

TEST_F(AgentPaneTest, SentenceWithoutADescriptionSaysSo) {
  state_.Desc[1].clear();
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->agent.aTitleDesc.caption.Get(), "Description Not Available");
  EXPECT_EQ(form_->agent.aStatus.caption.Get(), "Monitoring is Enabled");
}

TEST_F(AgentPaneTest, ClickWithoutAServiceWarnsAgainWhenItIsFoundOut) {
  world_.platform.services.SetMissing("ZENDRIX");
  Open(Line(1, "System", "0"));
  form_->AttentionPending = false;
  form_->agent.aClick.clicked.Raise();
  EXPECT_EQ(form_->AgentLevel, 3);
  EXPECT_EQ(form_->agent.StaImg.picture.Get(), "FlagR");
  EXPECT_EQ(form_->agent.aClick.caption.Get(), "[Enable]");
  EXPECT_TRUE(form_->AttentionPending);
}

TEST_F(AgentPaneTest, StartThatFailsIsToldAndThePaneStaysRed) {
  world_.platform.services.SetStopped("ZENDRIX");
  Open(Line(1, "System", "0"));
  world_.platform.services.Script(platform::ServiceMethod::kStart, 14);
  form_->agent.aClick.clicked.Raise();
  ASSERT_EQ(Boxes().shown.size(), 1u);
  EXPECT_EQ(Boxes().shown[0].text,
            "Zendrix Monitoring failed to start. Error: 14\r\n"
            "The service has been disabled from the system.");
  EXPECT_EQ(form_->agent.aClick.caption.Get(), "[Enable]");
}

TEST_F(AgentPaneTest, LogIsReadOnceWhenThePaneIsSelected) {
  Open(Line(1, "System", "0"));
  int opened = 0;
  world_.platform.files.before = [&](platform::FileOp op, const std::string& path) {
    opened += op == platform::FileOp::kOpen && path == world_.InFolder("KorvessaEventLog.kvl");
  };
  world_.platform.files.Put(world_.InFolder("KorvessaEventLog.kvl"), "1100000000,HOST,7,one\r\n");
  form_->ViewItems[kAdvancedView]->clicked.Raise();
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(form_->logs.alvAgErrLog.size(), 1u);
}

TEST_F(AgentPaneTest, ClickLooksAtTheAgentAndThenReadsTheLog) {
  Open(Line(1, "System", "0"));
  std::vector<std::string> acts;
  const auto status = form_->agent.aStatus.caption.changed.Connect([&] { acts.push_back("status"); });
  world_.platform.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path.ends_with("KorvessaEventLog.kvl")) acts.push_back("log");
  };
  world_.platform.files.Put(world_.InFolder("KorvessaEventLog.kvl"), "1100000000,HOST,7,one\r\n");
  acts.clear();
  form_->agent.aClick.clicked.Raise();
  EXPECT_THAT(acts, ElementsAre("status", "log"));
  EXPECT_EQ(screen_.MousePointer, kPointerDefault);
}

TEST_F(AgentPaneTest, TwoMinutesLaterTheFlagsFollowAndTheListIsNotTouched) {
  world_.platform.files.Put(world_.InFolder("KorvessaEventLog.kvl"), "1100000000,HOST,7,one\r\n");
  Open(Line(1, "System", "0"));
  world_.platform.services.SetStopped("ZENDRIX");
  Seconds(120);
  EXPECT_EQ(form_->agent.StaImg.picture.Get(), "FlagR");
  EXPECT_EQ(form_->logs.alvAgErrLog.size(), 0u);
}

// A wait for the service manager may serve the event loop, and the link can be clicked a second time.
TEST_F(AgentPaneTest, SecondClickWhileTheFirstIsUnderWayDoesNothing) {
  Open(Line(1, "System", "0"));
  Boxes().while_open = [&](const platform::BoxRequest&) { form_->agent.aClick.clicked.Raise(); };
  form_->agent.aClick.clicked.Raise();
  EXPECT_EQ(Boxes().shown.size(), 1u);
  EXPECT_EQ(form_->AgentLevel, 3);
}

}  // namespace
}  // namespace zendrix::home
