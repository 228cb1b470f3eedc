// Block and Allow, by the list's menu and in the page, with a file of the test's own that really moves.
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

using ::testing::HasSubstr;

class DecisionTest : public ::testing::Test {
 protected:
  DecisionTest() : DecisionTest("failed", "could not be blocked") {}
  // An alert about a program of the user's own, outside the program folder, and what the Agent did about it.
  DecisionTest(const std::string& reaction, const std::string& told)
      : elsewhere_(TheStage().desktop->folder()), tool_(elsewhere_.Path("tool")) {
    elsewhere_.Write("tool", "program");
    chmod(tool_.c_str(), 0755);
    console_.Event("Aggregation", "a", "0.99", "", "Q,1");
    console_.Event("Windows Folder", tool_, "1");
    console_.Event("Aggregation", "Windows Folder=" + tool_ + ";x", "0.99", "", "R,1");
    console_.Event("Community", "observed", "0", "Windows Folder=" + reaction);
    console_.StartAndWait();
    console_.OpenPane("Alerts");
    console_.AwaitText(told);
  }
  bool IsThere() const { return access(tool_.c_str(), F_OK) == 0; }
  std::string Activations() const { return console_.folder().Read("KorvessaActivations.kvl"); }
  std::string Decided() const { return console_.folder().Read("KorvessaAlr.kvl"); }
  void ChooseInTheMenu(const std::string& item) {
    console_.MoveFocusTo("table", "Alerts");
    console_.screen().Key("Menu");
    ASSERT_TRUE(Eventually([&] { return console_.screen().HasMenu(); }));
    console_.MoveFocusTo("menu item", item, "Down");
    console_.screen().Key("Return");
  }

  ConsoleProgram console_;
  test::TemporaryFolder elsewhere_;
  std::string tool_;
};

TEST_F(DecisionTest, MenuBlocksWhenTheQuestionIsAnsweredYes) {
  ChooseInTheMenu("Block");
  console_.AwaitText("will be set as a blocked Alert.");
  console_.Press("push button", "Yes");
  console_.AwaitRow("Blocked");
  EXPECT_EQ(Activations(), "Q,1\r\n");
  EXPECT_TRUE(IsThere());
}

TEST_F(DecisionTest, MenuLeavesEverythingWhenTheQuestionIsAnsweredNo) {
  ChooseInTheMenu("Block");
  console_.AwaitText("will be set as a blocked Alert.");
  console_.Press("push button", "No");
  console_.AwaitGone("push button", "No");
  EXPECT_FALSE(console_.Find("table cell", "Blocked"));
  EXPECT_EQ(Activations(), "");
  EXPECT_EQ(Decided(), "");
}

TEST_F(DecisionTest, MenuAllowsAndTheStatusFallsBack) {
  ChooseInTheMenu("Allow");
  console_.AwaitText("will be set as an Allowed Alert.");
  console_.Press("push button", "Yes");
  console_.AwaitRow("Allowed");
  EXPECT_EQ(Activations(), "Q,0\r\n");
}

TEST_F(DecisionTest, LinkInThePagePutsTheFileInQuarantine) {
  console_.MoveFocusTo("link", "[Block]", "shift+Tab");
  console_.screen().Key("Return");
  console_.Await("push button", "OK");
  EXPECT_FALSE(IsThere()) << console_.Tree().Tree();
  console_.Press("push button", "OK");
  console_.AwaitGone("push button", "OK");
  ASSERT_TRUE(Eventually([&] { return Activations() == "Q,1\r\n"; })) << Activations();
}

class BlockedByTheAgentTest : public DecisionTest {
 protected:
  BlockedByTheAgentTest() : DecisionTest("success", "activity was blocked") {}
};

TEST_F(BlockedByTheAgentTest, LinkInThePageAllows) {
  console_.MoveFocusTo("link", "[Allow]", "shift+Tab");
  console_.screen().Key("Return");
  console_.AwaitText("Nothing that this event names is in quarantine.");
  console_.Press("push button", "OK");
  ASSERT_TRUE(Eventually([&] { return Activations() == "Q,0\r\n"; })) << Activations();
  EXPECT_TRUE(IsThere());
}

TEST_F(DecisionTest, QuarantineGivesTheFileBackWhenTheQuestionIsAnsweredYes) {
  console_.MoveFocusTo("link", "[Block]", "shift+Tab");
  console_.screen().Key("Return");
  console_.Press("push button", "OK");
  console_.AwaitGone("push button", "OK");
  ASSERT_FALSE(IsThere());
  console_.Press("push button", "Quarantine...");
  console_.AwaitText(tool_);
  console_.Press("push button", "Restore...");
  console_.Press("push button", "Yes");
  console_.Press("push button", "OK");
  EXPECT_TRUE(IsThere());
  EXPECT_EQ(elsewhere_.Read("tool"), "program");
}

}  // namespace
}  // namespace zendrix::desktop
