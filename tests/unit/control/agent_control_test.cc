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

struct Meaning {
  int value;
  const char* after_stop;
  const char* after_start;  // null: the same
};

constexpr Meaning kMeanings[] = {
    {1, "The request is not supported.", nullptr},
    {2, "The user did not have the necessary access.", nullptr},
    {3, "The Zendrix Agent cannot be stopped because other services that are running are dependent on it.",
     "The service cannot be started because it depends on other services that are not running."},
    {4, "The requested control code is not valid, or it is unacceptable to the service.", nullptr},
    {5, "The requested control code cannot be sent to the service because the state of the service.",
     nullptr},
    {6, "The Zendrix Agent is not running.", "The service has not been started."},
    {7, "The Zendrix Agent could not be disabled in a timely fashion.",
     "The service did not respond to the start request in a timely fashion."},
    {8, "Unknown failure when stopping the Zendrix Agent.", "Unknown failure when starting the service."},
    {9, "The Zendrix Agent executable was not found.",
     "The directory path to the service executable was not found."},
    {10, "The Zendrix Agent is already stopped", "The service is already running."},
    {11, "The service database is locked.", "The database to add a new service is locked."},
    {12, "A dependency which this service relies on has been removed from the system.",
     "A dependency for which this service relies on has been removed from the system."},
    {13, "The service failed to find the service needed from a dependent service.", nullptr},
    {14, "The service has been disabled from the system.", nullptr},
    {15, "The service does not have the correct authentication to run on the system.", nullptr},
    {16, "This service is being removed from the system.", nullptr},
    {17, "There is no execution thread for the service.", nullptr},
    {18, "There are circular dependencies when stopping the service.",
     "There are circular dependencies when starting the service."},
    {19, "There is a service running under the same name.", nullptr},
    {20, "There are invalid characters in the name of the service.", nullptr},
    {21, "Invalid parameters have been passed to the service.", nullptr},
    {22,
     "The account, which this service is to run under is either invalid or lacks the permissions to run the "
     "service.",
     nullptr},
    {23, "The service exists in the database of services available from the system.", nullptr},
    {24, "The service is currently paused in the system.", nullptr},
    {25, "", ""},
    {99, "", ""},
    {1000, "", ""},
};

TEST_F(AgentControlTest, EveryRefusalOfAStopHasItsWords) {
  world_.platform.services.SetRunning("ZENDRIX");
  for (const Meaning& meaning : kMeanings) {
    Boxes().clear();
    world_.platform.services.Script(ServiceMethod::kStop, meaning.value);
    EXPECT_EQ(agent_.StopAgent(false), meaning.value);
    ASSERT_EQ(Boxes().size(), 1u);
    EXPECT_EQ(Boxes()[0].title, "StopService");
    EXPECT_EQ(Boxes()[0].text, std::string("Zendrix Monitoring failed to stop.\r\n") + meaning.after_stop);
  }
}

TEST_F(AgentControlTest, EveryRefusalOfAStartHasItsWords) {
  world_.platform.services.SetStopped("ZENDRIX");
  for (const Meaning& meaning : kMeanings) {
    Boxes().clear();
    world_.platform.services.Script(ServiceMethod::kStart, meaning.value);
    EXPECT_EQ(agent_.StartAgent(false), meaning.value);
    ASSERT_EQ(Boxes().size(), 1u);
    EXPECT_EQ(Boxes()[0].title, "StartService");
    EXPECT_EQ(Boxes()[0].text, "Zendrix Monitoring failed to start. Error: " + std::to_string(meaning.value) +
                                   "\r\n" + (meaning.after_start ? meaning.after_start : meaning.after_stop));
  }
}

TEST_F(AgentControlTest, RefusalMakesNoSecondAttempt) {
  world_.platform.services.SetRunning("ZENDRIX");
  world_.platform.services.Script(ServiceMethod::kStop, 5);
  EXPECT_EQ(agent_.StopAgent(true), 5);
  EXPECT_THAT(world_.platform.services.runs, ElementsAre(std::pair("ZENDRIX", ServiceMethod::kStop)));
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

TEST_F(AgentControlTest, WarningIsTitledAfterTheConsoleThatIsEnded) {
  for (const char* title : {"Korvessa Zendrix Home Edition", "Korvessa Zendrix Administrator"}) {
    world_.state.ProductName = title;
    world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
    const std::size_t before = Boxes().size();
    EXPECT_TRUE(WarningMessage(world_.state));
    ASSERT_EQ(Boxes().size(), before + 2);
    EXPECT_EQ(Boxes()[before].title, title);
    EXPECT_EQ(Boxes()[before + 1].title, title);
    EXPECT_EQ(Boxes()[before + 1].icon, BoxIcon::kInformation);
    EXPECT_THAT(Boxes()[before + 1].text, ::testing::EndsWith("by selecting " + std::string(title) + "."));
  }
}

TEST_F(AgentControlTest, WarningAnsweredNoSaysNothingMore) {
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kNo);
  EXPECT_FALSE(WarningMessage(world_.state));
  EXPECT_EQ(Boxes().size(), 1u);
}

}  // namespace
}  // namespace zendrix::control
