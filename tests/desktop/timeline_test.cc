// The timeline of the Administrator console: the large chart from the toolbar, by keys, and by a click on the
// small one; what it says to a screen reader follows the file.
#include <gmock/gmock.h>

#include <fstream>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

constexpr int kTop = 1700000000;

class TimelineTest : public ::testing::Test {
 protected:
  TimelineTest() {
    Append(kTop - 90, "Tcp Port");
    Append(kTop - 1, "Running Processes");
    Append(kTop, "Running Processes");
    console_.Start({"-ns", "--edition=Administrator"});
  }
  void Append(int time, const std::string& monitor) {
    std::ofstream(console_.folder().Path("KorvessaMonitoring.kvl"), std::ios::app | std::ios::binary)
        << time << ",HOST," << monitor << ",A,text\r\n";
  }
  void AwaitLarge() {
    console_.Await("frame", "Events x Minutes");
    ASSERT_TRUE(Eventually([&] { return IsActive("Events x Minutes"); }));
  }
  bool IsActive(const std::string& title) {
    const auto window = console_.screen().WithTitle(title);
    return window && console_.screen().Active() == *window;
  }
  void CloseLarge() {
    console_.screen().Key("Escape");
    console_.AwaitGone("frame", "Events x Minutes");
  }

  ConsoleProgram console_;
};

TEST_F(TimelineTest, LargeChartOpensFromToolbarKeysAndSmallChartAndFollowsTheFile) {
  console_.Await("push button", "Timeline View");
  console_.AwaitText("Small timeline");
  console_.Press("push button", "Timeline View");
  AwaitLarge();
  console_.AwaitText("Running Processes: now 2, highest 2. Tcp Port: now 0, highest 1.");
  Append(kTop + 1, "Running Processes");
  console_.AwaitText("Running Processes: now 3, highest 3.");
  CloseLarge();
  ASSERT_TRUE(Eventually([&] { return IsActive("Administrator"); }));
  console_.screen().Key("ctrl+t");
  AwaitLarge();
  CloseLarge();
  console_.ClickOn(console_.AwaitText("Small timeline"));
  AwaitLarge();
  CloseLarge();
  EXPECT_TRUE(console_.process().Running());
  EXPECT_THAT(console_.Log(), ::testing::Not(::testing::HasSubstr("frmMain")));
}

}  // namespace
}  // namespace zendrix::desktop
