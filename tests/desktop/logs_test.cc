// The Advanced pane: the console's own log, and the switch that has the computer watched.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class LogsTest : public ::testing::Test {
 protected:
  LogsTest() {
    console_.StartAndWait();
    console_.OpenPane("Advanced");
  }
  bool HasRow() { return console_.HasText("UI started."); }

  ConsoleProgram console_;
};

TEST_F(LogsTest, OwnLogIsShownClearedAndShownAgain) {
  console_.Press("radio button", "Home Edition Log");
  ASSERT_TRUE(Eventually([&] { return HasRow(); }));
  console_.Press("push button", "Clear All");
  ASSERT_TRUE(Eventually([&] { return !HasRow(); }));
  console_.Press("push button", "Show All");
  EXPECT_TRUE(Eventually([&] { return HasRow(); }));
}

TEST_F(LogsTest, MonitoringIsSwitchedOnAndOffByTheAgentBesideTheConsole) {
  console_.Await("label", "Monitoring is Disabled");
  console_.Press("push button", "[Enable]");
  console_.AwaitText("Zendrix Monitoring started.");
  console_.Press("push button", "OK");
  console_.Await("label", "Monitoring is Enabled");
  console_.Press("push button", "[Disable]");
  console_.Press("push button", "OK");
  console_.Await("label", "Monitoring is Disabled");
}

}  // namespace
}  // namespace zendrix::desktop
