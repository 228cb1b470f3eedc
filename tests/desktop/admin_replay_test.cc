// The session replay of the Administrator console, by toolbar, mouse, keys and screen reader.
#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>

#include "desktop/admin_console.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

// Of the cursor's row and of those that are shown with it; the settings have it, with the red value last.
constexpr unsigned long kMarked = 0x8080FF;

class AdminReplayTest : public ::testing::Test {
 protected:
  AdminReplayTest() {
    console_.Add(1, "HOST", "System", "A", "Begin Session Refresh.");
    console_.Add(2, "HOST", "Tcp Port", "B", "** Start baseline **");
    console_.Add(3, "HOST", "Tcp Port", "A", "port 80");
    console_.Add(4, "HOST", "Tcp Port", "B", "** End baseline **");
    console_.Add(5, "HOST", "System", "A", "Begin Session Refresh.");
    console_.Add(6, "HOST", "Running Processes", "A", "<b>sh</b>");
    console_.Add(7, "HOST", "Monitoring Agent", "N", "saw a port");
    console_.Add(8, "HOST", "Tcp Port", "R", "port 80");
    console_.Add(9, "HOST", "System", "A", "the newest");
    console_.StartAndWait();
    console_.AwaitMoment(":09");
  }
  // The numbers of the lines whose rows are painted.
  std::vector<std::string> Marked() {
    std::vector<std::string> marked;
    const Accessible table = console_.Await("table", "Events");
    for (int row = 0; row < table.Rows(); ++row) {
      const Accessible cell = *table.Cell(row, kEventId);
      const auto pixels = console_.screen().Pixels(cell.place());
      if (std::ranges::count(pixels, kMarked) > std::ssize(pixels) / 2) marked.push_back(cell.name());
    }
    return marked;
  }
  void AwaitAt(const std::string& second, const std::vector<std::string>& marked) {
    console_.AwaitMoment(second);
    std::vector<std::string> seen;
    EXPECT_TRUE(Eventually([&] { return (seen = Marked()) == marked; })) << ::testing::PrintToString(seen);
  }
  void PressAndAwait(const std::string& button, const std::string& second,
                     const std::vector<std::string>& marked) {
    SCOPED_TRACE(button);
    console_.Press("push button", button);
    AwaitAt(second, marked);
  }
  bool Usable(const std::string& button) {
    return console_.Await("push button", button).Is(ATSPI_STATE_ENABLED);
  }

  AdminConsole console_;
};

TEST_F(AdminReplayTest, ToolbarMovesTheCursorAndTheTreeTellsTheState) {
  console_.OpenBranch("Running Processes");
  console_.AwaitNode("<b>sh</b>");
  EXPECT_FALSE(console_.Node("Tcp Port"));
  PressAndAwait("Step Back", ":08", {"9"});
  // A notable event is shown together with the one that it tells of.
  PressAndAwait("Step Back", ":07", {"8", "5"});
  console_.AwaitNode("Tcp Port");
  PressAndAwait("Step", ":08", {"9"});
  EXPECT_TRUE(Eventually([&] { return !console_.Node("Tcp Port"); }));
  PressAndAwait("Previous Session", ":05", {"6"});
  console_.AwaitNode("Tcp Port");
  EXPECT_TRUE(Eventually([&] { return !console_.Node("Running Processes"); }));
  PressAndAwait("Previous Session", ":01", {"2"});
  PressAndAwait("Next Session", ":05", {"6"});
  PressAndAwait("Next Session", ":09", {"10"});
  PressAndAwait("Step Back", ":08", {"9"});
  PressAndAwait("Go To Last Notable Event", ":07", {"8", "5"});
  console_.OpenBranch("Tcp Port");
  console_.AwaitNode("port 80");
}

TEST_F(AdminReplayTest, ReplayStepsByItselfUntilItIsStoppedOrARowIsClicked) {
  EXPECT_FALSE(Usable("Stop"));
  console_.ClickOn(console_.Await("table cell", "** End baseline **"));
  AwaitAt(":04", {"5"});
  PressAndAwait("Play", ":05", {"6"});
  EXPECT_TRUE(Usable("Playing"));
  EXPECT_TRUE(Usable("Stop"));
  AwaitAt(":06", {"7"});
  console_.Press("push button", "Stop");
  console_.Await("push button", "Play");
  EXPECT_FALSE(Usable("Stop"));
  PressAndAwait("Play", ":07", {"8", "5"});
  console_.ClickOn(console_.Await("table cell", "the newest"));
  AwaitAt(":09", {"10"});
  console_.Await("push button", "Play");
  EXPECT_FALSE(Usable("Stop"));
}

TEST_F(AdminReplayTest, KeysReachRowsAndBranches) {
  console_.MoveFocusTo("table", "Events");
  console_.screen().Key("Down");
  console_.screen().Key("Down");
  console_.screen().Key("Return");
  console_.AwaitMoment(":07");
  console_.MoveFocusTo("tree", "System State");
  console_.screen().Key("Home");
  console_.screen().Type("Run");
  console_.screen().Key("Right");
  console_.AwaitNode("<b>sh</b>");
}

}  // namespace
}  // namespace zendrix::desktop
