// Filter and find of the Administrator console, by keys and screen reader.
#include <gmock/gmock.h>

#include "desktop/admin_console.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class AdminFilterTest : public ::testing::Test {
 protected:
  AdminFilterTest() {
    console_.Add(1, "north", "Tcp Port", "A", "Alpha one");
    console_.Add(2, "south", "System", "A", "beta");
    console_.Add(3, "east", "Tcp Port", "R", "alpha two");
    console_.Add(3, "north", "Memory", "N", "<b>gamma</b>");
    console_.Add(5, "south", "Memory", "A", "delta");
    console_.Add(6, "north", "Running Processes", "N", "epsilon");
    console_.StartAndWait();
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
    console_.AwaitActive(title);
  }
  void Choose(const std::string& list, const std::string& begin) {
    console_.MoveFocusTo("combo box", list);
    console_.screen().Type(begin);
  }
  // As it is shown, every key of it.
  void TypeDate(const std::string& date, const std::string& moment) {
    const std::string field = date + " date and time";
    console_.MoveFocusTo("spin button", field);
    console_.screen().Type(moment);
    ASSERT_TRUE(Eventually([&] { return console_.Await("spin button", field).text() == moment; }))
        << console_.Await("spin button", field).text();
  }
  // The newest first, by their descriptions.
  void FilterAndAwait(const std::vector<std::string>& passed) {
    console_.screen().Key("Return");
    console_.AwaitColumn(kDescription, passed, "Filtered events");
    console_.Await("label",
                   "Record Count: " + std::to_string(passed.size()) + " records selected (Filtered)");
    ASSERT_TRUE(Eventually([&] {
      const auto dialog = console_.screen().WithTitle(kDialog);
      return dialog && console_.screen().IsMinimised(*dialog);
    }));
    console_.BringForward(kDialog);
  }

  static constexpr char kDialog[] = "Filter Events";
  const std::vector<std::string> all_{"epsilon", "delta",     "<b>gamma</b>", "alpha two",
                                      "beta",    "Alpha one", "1|0"};
  AdminConsole console_;
};

TEST_F(AdminFilterTest, PatternNarrowsTheGridUntilItIsReset) {
  OpenWithKeys("ctrl+shift+f", kDialog);
  console_.MoveFocusTo("text", "Description");
  console_.screen().Type("AL?ha *o");
  console_.screen().Key("Return");
  console_.AwaitGone("table cell", "beta");
  console_.Await("table cell", "alpha two");
  console_.Await("table cell", "Alpha one");
  console_.AwaitText("2 records selected (Filtered)");
  EXPECT_TRUE(Eventually([&] {
    const auto dialog = console_.screen().WithTitle(kDialog);
    return dialog && console_.screen().IsMinimised(*dialog);
  }));
  console_.Add(7, "north", "System", "A", "alpha too");
  console_.Await("table cell", "alpha too");
  console_.AwaitText("3 records selected (Filtered)");
  console_.BringForward(AdminConsole::kTitle);
  console_.screen().Key("ctrl+shift+f");
  console_.AwaitActive(kDialog);
  console_.Press("push button", "Reset");
  console_.AwaitGone("frame", kDialog);
  console_.Await("table cell", "beta");
  console_.Await("table cell", "<b>gamma</b>");
}

TEST_F(AdminFilterTest, HostMonitorAndChangeAloneNarrowTheGridAndResetBringsAllBack) {
  OpenWithKeys("ctrl+shift+f", kDialog);
  Choose("Host", "s");
  FilterAndAwait({"delta", "beta"});
  console_.screen().Key("Delete");
  Choose("Monitor", "t");
  FilterAndAwait({"alpha two", "Alpha one"});
  console_.screen().Key("Delete");
  Choose("Change", "n");
  FilterAndAwait({"epsilon", "<b>gamma</b>"});
  console_.screen().Key("Delete");
  console_.Press("push button", "Reset");
  console_.AwaitGone("frame", kDialog);
  console_.AwaitGone("table", "Filtered events");
  console_.AwaitColumn(kDescription, all_);
  console_.Await("label", "Record Count");
  EXPECT_FALSE(console_.Await("check box", "Filter").Is(ATSPI_STATE_CHECKED));
}

TEST_F(AdminFilterTest, DatesThatAreTypedNarrowTheGridAndOneAloneIsAMoment) {
  OpenWithKeys("ctrl+shift+f", kDialog);
  console_.Press("check box", "To");
  ASSERT_NO_FATAL_FAILURE(TypeDate("To", "11/21/2026 01:45:03 AM"));
  FilterAndAwait({"<b>gamma</b>", "alpha two"});
  ASSERT_NO_FATAL_FAILURE(TypeDate("From", "11/21/2026 01:45:02 AM"));
  FilterAndAwait({"<b>gamma</b>", "alpha two", "beta"});
}

TEST_F(AdminFilterTest, TextIsFoundWithAndWithoutCaseAndAgainAfterTheDialogClosed) {
  OpenWithKeys("ctrl+f", "Find");
  console_.screen().Type("alpha");
  console_.screen().Key("Return");
  ASSERT_TRUE(Eventually([&] { return Selected("alpha two"); })) << console_.Tree().Tree();
  console_.screen().Key("Escape");
  console_.AwaitActive();
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
  console_.AwaitActive("Find");
  console_.screen().Key("Escape");
  console_.AwaitActive();
}

}  // namespace
}  // namespace zendrix::desktop
