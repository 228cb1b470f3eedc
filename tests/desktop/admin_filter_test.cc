// Filter and find of the Administrator console, by keys and screen reader.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class AdminFilterTest : public ::testing::Test {
 protected:
  AdminFilterTest() {
    // Behind the event that keeps the settings' hash up to date; numbered from 2.
    std::string lines = console_.folder().Read("KorvessaMonitoring.kvl");
    for (const char* text : {"Alpha one", "beta", "alpha two", "<b>gamma</b>"})
      lines += "1795225500,HOST,System,A," + std::string(text) + "\r\n";
    console_.folder().Write("KorvessaMonitoring.kvl", lines);
    console_.Start({"-ns", "--edition=Administrator"});
    console_.Await("table cell", "beta");
    AwaitActive("Administrator");
  }
  void AwaitActive(const std::string& title) {
    ASSERT_TRUE(Eventually([&] {
      const auto window = console_.screen().WithTitle(title);
      return window && console_.screen().Active() == *window;
    })) << title;
  }
  bool Selected(const std::string& cell) {
    const auto found = console_.Find("table cell", cell);
    return found && found->Is(ATSPI_STATE_SELECTED);
  }
  void OpenWithKeys(const std::string& keys, const std::string& title) {
    ASSERT_TRUE(Eventually([&] {
      console_.screen().Key(keys);
      return ComesSoon([&] { return console_.screen().WithTitle(title).has_value(); });
    }));
    AwaitActive(title);
  }

  ConsoleProgram console_;
};

TEST_F(AdminFilterTest, PatternNarrowsTheGridUntilItIsReset) {
  OpenWithKeys("ctrl+shift+f", "Filter Events");
  console_.MoveFocusTo("text", "Description");
  console_.screen().Type("AL?ha *o");
  console_.screen().Key("Return");
  console_.AwaitGone("table cell", "beta");
  console_.Await("table cell", "alpha two");
  console_.Await("table cell", "Alpha one");
  console_.AwaitText("2 records selected (Filtered)");
  EXPECT_TRUE(Eventually([&] {
    const auto dialog = console_.screen().WithTitle("Filter Events");
    return dialog && console_.screen().IsMinimised(*dialog);
  }));
  console_.folder().Write("KorvessaMonitoring.kvl", console_.folder().Read("KorvessaMonitoring.kvl") +
                                                        "1795225501,HOST,System,A,alpha too\r\n");
  console_.Await("table cell", "alpha too");
  console_.AwaitText("3 records selected (Filtered)");
  console_.screen().Activate(*console_.screen().WithTitle("Administrator"));
  AwaitActive("Administrator");
  console_.screen().Key("ctrl+shift+f");
  AwaitActive("Filter Events");
  console_.Press("push button", "Reset");
  console_.AwaitGone("frame", "Filter Events");
  console_.Await("table cell", "beta");
  console_.Await("table cell", "<b>gamma</b>");
}

TEST_F(AdminFilterTest, TextIsFoundWithAndWithoutCaseAndAgainAfterTheDialogClosed) {
  OpenWithKeys("ctrl+f", "Find");
  console_.screen().Type("alpha");
  console_.screen().Key("Return");
  ASSERT_TRUE(Eventually([&] { return Selected("alpha two"); })) << console_.Tree().Tree();
  console_.screen().Key("Escape");
  AwaitActive("Administrator");
  console_.screen().Key("F3");
  ASSERT_TRUE(Eventually([&] { return Selected("Alpha one"); })) << console_.Tree().Tree();
  OpenWithKeys("ctrl+f", "Find");
  console_.Press("check box", "Match Case");
  console_.Press("check box", "Start from beginning");
  console_.Press("push button", "Find Next");
  ASSERT_TRUE(Eventually([&] { return Selected("alpha two"); }));
  console_.Press("push button", "Find Next");
  console_.AwaitText("\"alpha\"  Not Found.");
  console_.Press("push button", "OK");
  AwaitActive("Find");
  console_.screen().Key("Escape");
  AwaitActive("Administrator");
}

}  // namespace
}  // namespace zendrix::desktop
