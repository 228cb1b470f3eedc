// The Alert Analysis wizard from its first page to its last, and what comes of the answers.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class WizardTest : public ::testing::Test {
 protected:
  WizardTest() {
    console_.Event("Windows Folder", "/opt/first", "1");
    console_.Event("Aggregation", "Windows Folder=/opt/first;x", "0.99", "", "R,1");
    console_.Event("Community", "observed", "0", "Windows Folder=failed");
    console_.StartAndWait();
    console_.OpenPane("Alerts");
    console_.AwaitText("Risk level: Intrusion");
    console_.Press("push button", "Analyze");
    console_.Press("push button", "Start Wizard >");
  }
  void Answer(const std::string& answer) {
    console_.AwaitText("- Step 1 of 1");
    console_.AwaitText("/opt/first");
    EXPECT_FALSE(console_.Await("push button", "Next >").Is(ATSPI_STATE_ENABLED));
    console_.Press("radio button", answer);
    ASSERT_TRUE(Eventually([&] { return console_.Await("push button", "Next >").Is(ATSPI_STATE_ENABLED); }));
    console_.Press("push button", "Next >");
    console_.Press("push button", "Exit Wizard");
    console_.AwaitGone("push button", "Exit Wizard");
  }

  ConsoleProgram console_;
};

TEST_F(WizardTest, ActivityThatIsNormalIsAllowed) {
  Answer("Yes");
  console_.AwaitRow("Allowed");
}

TEST_F(WizardTest, ActivityThatIsNotNormalIsBlocked) {
  Answer("No");
  console_.AwaitRow("Blocked");
}

}  // namespace
}  // namespace zendrix::desktop
