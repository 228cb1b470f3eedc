// The session replay of the Administrator console, by toolbar, mouse, keys and screen reader.
#include <gmock/gmock.h>

#include <optional>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class AdminReplayTest : public ::testing::Test {
 protected:
  AdminReplayTest() {
    // The last two digits of the seconds tell the events apart in any zone and language.
    std::string lines = console_.folder().Read("KorvessaMonitoring.kvl");
    int second = 1795225500;
    for (const char* event :
         {"Tcp Port,B,** Start baseline **", "Tcp Port,A,port 80", "Tcp Port,A,port 443",
          "Tcp Port,B,** End baseline **", "System,A,Begin Session Refresh.", "Running Processes,A,<b>sh</b>",
          "Monitoring Agent,N,saw a port", "System,A,the newest"})
      lines += std::to_string(++second) + ",HOST," + event + "\r\n";
    console_.folder().Write("KorvessaMonitoring.kvl", lines);
    console_.Start({"-ns", "--edition=Administrator"});
    console_.Await("table cell", "the newest");
    AwaitMoment(":08");
  }
  // A node of the tree whose text begins and goes on so, once it is in sight.
  std::optional<Accessible> Node(const std::string& begin, const std::string& part = "") {
    const auto tree = console_.Find("tree", "System State");
    if (!tree) return std::nullopt;
    return tree->Find([&](const Accessible& thing) {
      const std::string name = thing.role() == "table cell" ? thing.name() : "";
      return name.starts_with(begin) && name.find(part) != std::string::npos;
    });
  }
  void AwaitNode(const std::string& begin, const std::string& part = "") {
    ASSERT_TRUE(Eventually([&] { return Node(begin, part).has_value(); })) << console_.Tree().Tree();
  }
  // The root of the tree tells the moment.
  void AwaitMoment(const std::string& second) { AwaitNode("System State @", second); }
  void Open(const std::string& branch) {
    AwaitNode(branch);
    console_.ClickOn(*Node(branch));
    console_.screen().Key("Right");
  }
  void PressAndAwait(const std::string& button, const std::string& second) {
    console_.Press("push button", button);
    AwaitMoment(second);
  }

  ConsoleProgram console_;
};

TEST_F(AdminReplayTest, ToolbarMovesTheCursorAndTheTreeTellsTheState) {
  PressAndAwait("Step Back", ":07");
  PressAndAwait("Step Back", ":06");
  PressAndAwait("Step", ":07");
  PressAndAwait("Previous Session", ":05");
  PressAndAwait("Go To Last Notable Event", ":07");
  PressAndAwait("Next Session", ":08");
  Open("Running Processes");
  AwaitNode("<b>sh</b>");
  Open("Tcp Port");
  AwaitNode("port 80");
  AwaitNode("port 443");
  PressAndAwait("Previous Session", ":05");
  EXPECT_TRUE(Eventually([&] { return !Node("Running Processes"); }));
}

TEST_F(AdminReplayTest, ReplayStepsByItselfUntilItIsStopped) {
  console_.ClickOn(console_.Await("table cell", "Begin Session Refresh."));
  AwaitMoment(":05");
  PressAndAwait("Play", ":06");
  console_.Await("push button", "Playing");
  AwaitMoment(":07");
  console_.Press("push button", "Stop");
  console_.Await("push button", "Play");
}

TEST_F(AdminReplayTest, KeysReachRowsAndBranches) {
  console_.MoveFocusTo("table", "Events");
  console_.screen().Key("Down");
  console_.screen().Key("Down");
  console_.screen().Key("Return");
  AwaitMoment(":06");
  console_.MoveFocusTo("tree", "System State");
  console_.screen().Key("Home");
  console_.screen().Type("Run");
  console_.screen().Key("Right");
  AwaitNode("<b>sh</b>");
}

}  // namespace
}  // namespace zendrix::desktop
