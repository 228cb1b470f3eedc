#include "control/agent_control.h"

#include "support/console_world.h"

namespace zendrix::control {
namespace {

using platform::BoxIcon;
using platform::ServiceMethod;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AgentControlTest : public ::testing::Test {
 protected:
  std::vector<platform::BoxRequest>& Boxes() { return world_.platform.message_boxes.shown; }

  zendrix::testing::ConsoleWorld world_;
  widgets::Screen screen_;
  AgentControl agent_{world_.state, screen_};
};

TEST_F(AgentControlTest, RunningInAnyLetterCaseIsZero) {
  world_.platform.services.SetRunning("ZENDRIX");
  EXPECT_EQ(agent_.AgentStatus(false), 0);
  world_.platform.services.At("ZENDRIX").state = "rUNNing";
  EXPECT_EQ(agent_.AgentStatus(false), 0);
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(AgentControlTest, OtherStateIsOneAndToldUnlessSilent) {
  world_.platform.services.SetStopped("ZENDRIX");
  auto& service = world_.platform.services.At("ZENDRIX");
  service.display_name = "Zendrix Agent";
  service.start_mode = "Auto";
  EXPECT_EQ(agent_.AgentStatus(true), 1);
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(agent_.AgentStatus(false), 1);
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].text, "Zendrix Agent is not running.\r\nState: Stopped\r\nStartMode: Auto");
}

TEST_F(AgentControlTest, MissingServiceIs99WithoutAMessageOrALogLine) {
  EXPECT_EQ(agent_.AgentStatus(false), 99);
  EXPECT_EQ(agent_.StartAgent(false), 99);
  EXPECT_EQ(agent_.StopAgent(false), 99);
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
}

TEST_F(AgentControlTest, SuccessIsTold) {
  world_.platform.services.SetStopped("ZENDRIX");
  EXPECT_EQ(agent_.StartAgent(false), 0);
  EXPECT_EQ(agent_.StopAgent(false), 0);
  EXPECT_THAT(world_.platform.message_boxes.Texts(),
              ElementsAre("Zendrix Monitoring started.", "Zendrix Monitoring stopped."));
  EXPECT_EQ(Boxes()[0].icon, BoxIcon::kInformation);
  EXPECT_EQ(Boxes()[0].title, world_.state.ProductName);
}

TEST_F(AgentControlTest, StopOfAStoppedAgentShowsWhatTheManagerSays) {
  world_.platform.services.SetStopped("ZENDRIX");
  EXPECT_EQ(agent_.StopAgent(false), 6);
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].title, "StopService");
  EXPECT_EQ(Boxes()[0].icon, BoxIcon::kExclamation);
  EXPECT_EQ(Boxes()[0].text, "Zendrix Monitoring failed to stop.\r\nThe Zendrix Agent is not running.");
}

TEST_F(AgentControlTest, FailedStartNamesTheError) {
  world_.platform.services.SetStopped("ZENDRIX");
  world_.platform.services.Script(ServiceMethod::kStart, 9);
  EXPECT_EQ(agent_.StartAgent(false), 9);
  EXPECT_EQ(Boxes()[0].title, "StartService");
  EXPECT_EQ(
      Boxes()[0].text,
      "Zendrix Monitoring failed to start. Error: 9\r\nThe directory path to the service executable was not "
      "found.");
}

TEST_F(AgentControlTest, ResultWithoutAMeaningShowsTheFirstLineAlone) {
  world_.platform.services.SetStopped("ZENDRIX");
  world_.platform.services.Script(ServiceMethod::kStop, 25);
  EXPECT_EQ(agent_.StopAgent(false), 25);
  EXPECT_EQ(Boxes()[0].text, "Zendrix Monitoring failed to stop.\r\n");
}

TEST_F(AgentControlTest, SilentFailureShowsNothing) {
  world_.platform.services.SetStopped("ZENDRIX");
  EXPECT_EQ(agent_.StopAgent(true), 6);
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(AgentControlTest, EveryRefusalHasItsTexts) {
  for (int value = 1; value <= 24; ++value) {
    EXPECT_NE(StopMessage(value), "") << value;
    EXPECT_NE(StartMessage(value), "") << value;
    const bool differs = value == 3 || (value >= 6 && value <= 12) || value == 18;
    EXPECT_EQ(StopMessage(value) != StartMessage(value), differs) << value;
  }
  EXPECT_EQ(StopMessage(0) + StartMessage(0) + StopMessage(25) + StartMessage(25), "");
  EXPECT_EQ(StopMessage(10), "The Zendrix Agent is already stopped");
  EXPECT_EQ(StartMessage(12),
            "A dependency for which this service relies on has been removed from the system.");
}

TEST_F(AgentControlTest, RestartOfARunningAgentStopsRestsAndStarts) {
  world_.platform.services.SetRunning("ZENDRIX");
  EXPECT_EQ(agent_.RestartAgent(), 0);
  EXPECT_EQ(world_.platform.services.runs.size(), 2u);
  EXPECT_EQ(world_.platform.clock.SleptMs(), 800);
}

TEST_F(AgentControlTest, RestartOfAStoppedAgentOnlyStarts) {
  world_.platform.services.SetStopped("ZENDRIX");
  EXPECT_EQ(agent_.RestartAgent(), 0);
  EXPECT_EQ(world_.platform.services.runs.size(), 1u);
  EXPECT_EQ(world_.platform.clock.SleptMs(), 0);
}

TEST_F(AgentControlTest, RestartSaysNothingWhateverFails) {
  world_.platform.services.SetRunning("ZENDRIX");
  world_.platform.services.Script(ServiceMethod::kStop, 7);
  world_.platform.services.Script(ServiceMethod::kStart, 9);
  EXPECT_EQ(agent_.RestartAgent(), 9);
  world_.platform.services.SetStopped("ZENDRIX");
  world_.platform.services.Script(ServiceMethod::kStart, 14);
  EXPECT_EQ(agent_.RestartAgent(), 14);
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(AgentControlTest, PointerWaitsWhileTheManagerIsAsked) {
  world_.platform.services.SetStopped("ZENDRIX");
  std::vector<int> pointers;
  screen_.MousePointer.changed.ConnectForever([&] { pointers.push_back(screen_.MousePointer); });
  agent_.StartAgent(true);
  EXPECT_THAT(pointers, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
}

TEST_F(AgentControlTest, WarningAsksThenTellsTheWayBack) {
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  EXPECT_TRUE(WarningMessage(world_.state));
  ASSERT_EQ(Boxes().size(), 2u);
  EXPECT_EQ(
      Boxes()[0].text,
      "Warning:\r\nYou are about to exit the Korvessa Zendrix Home Edition.\r\nThis means that while the "
      "Korvessa Zendrix Agent will continue to run and monitor your system, you may not be visually notified "
      "of "
      "alerts.\r\nNote however that email alerts will continue to function.\r\nAre you sure you want to "
      "exit?");
  EXPECT_EQ(Boxes()[0].icon, BoxIcon::kExclamation);
  EXPECT_EQ(Boxes()[1].text,
            "You have chosen to exit the Korvessa Zendrix Home Edition.\r\nIt can be re-started from the "
            "start menu-> "
            "programs-> Korvessa Zendrix, by selecting Korvessa Zendrix Home Edition.");
}

TEST_F(AgentControlTest, WarningAnsweredNoSaysNothingMore) {
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kNo);
  EXPECT_FALSE(WarningMessage(world_.state));
  EXPECT_EQ(Boxes().size(), 1u);
}

}  // namespace
}  // namespace zendrix::control
