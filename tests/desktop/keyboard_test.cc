// Everything by keyboard alone.
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <set>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

constexpr int kMoreThanAllControls = 80;

std::string LabelOf(const Accessible& thing) {
  return thing.role() + " \"" + thing.name() + "\"";
}

class KeyboardTest : public ::testing::TestWithParam<const char*> {
 protected:
  KeyboardTest() {
    console_.Event("Aggregation", "a", "0.99", "", "Q,1");
    console_.StartAndWait();
  }
  void Open(const std::string& pane) {
    console_.MoveFocusTo("push button", pane);
    console_.screen().Key("Return");
    console_.Await("label", pane);
  }
  // What can take the focus, as the bus says. Cells belong to their table.
  std::set<std::string> Focusable() {
    std::set<std::string> all;
    console_.Tree().Walk([&](const Accessible& thing) {
      const bool counts = thing.Is(ATSPI_STATE_FOCUSABLE) && thing.Is(ATSPI_STATE_ENABLED) &&
                          thing.role() != "table cell" && thing.role() != "document web";
      if (counts) all.insert(LabelOf(thing));
      return false;
    });
    return all;
  }

  void Press(const std::string& key) {
    const std::string was = ConsoleProgram::FocusLabel();
    console_.screen().Key(key);
    ASSERT_TRUE(Eventually([&] { return ConsoleProgram::FocusLabel() != was; }))
        << "the focus stays on " << was;
  }
  static std::function<bool(const std::string&)> StartsWith(const std::string& role) {
    return [role](const std::string& label) { return label.starts_with(role); };
  }
  static bool AnyRadioButton(const std::set<std::string>& labels) {
    return std::any_of(labels.begin(), labels.end(), StartsWith("radio button"));
  }

  ConsoleProgram console_;
};

TEST_P(KeyboardTest, TabAndEnterOpenThePane) {
  Open(GetParam());
}

TEST_P(KeyboardTest, TabComesByEveryControlOfThePane) {
  Open(GetParam());
  std::set<std::string> wanted = Focusable();
  EXPECT_FALSE(wanted.empty());
  for (int i = 0; i < kMoreThanAllControls && !wanted.empty(); ++i) {
    // Inside a group of options the arrow keys go on.
    const bool in_group = ConsoleProgram::FocusLabel().starts_with("radio button");
    Press(in_group && AnyRadioButton(wanted) ? "Right" : "Tab");
    if (HasFatalFailure()) return;
    const std::string at = ConsoleProgram::FocusLabel();
    wanted.erase(at);
    if (at.starts_with("table cell")) std::erase_if(wanted, StartsWith("table "));
    if (at.starts_with("page tab")) std::erase_if(wanted, StartsWith("page tab"));
  }
  EXPECT_THAT(wanted, ::testing::IsEmpty()) << console_.Tree().Tree();
}

TEST_P(KeyboardTest, FocusIsSeen) {
  const std::string other = std::string(GetParam()) == "Summary" ? "Help" : "Summary";
  console_.MoveFocusTo("push button", other);
  const Place place = console_.Await("push button", GetParam()).place();
  const auto without = console_.screen().Pixels(place);
  console_.MoveFocusTo("push button", GetParam());
  EXPECT_TRUE(Eventually([&] { return console_.screen().Pixels(place) != without; }));
}

class ListMenuTest : public ::testing::TestWithParam<const char*> {};

// Of the two ways to a menu by keyboard the toolkit knows one.
TEST_P(ListMenuTest, OpensBesideTheRow) {
  ConsoleProgram console;
  console.Event("Aggregation", "a", "0.99", "", "Q,1");
  console.StartAndWait();
  console.OpenPane("Alerts");
  const Place row = console.AwaitRow("Intrusion").place();
  console.MoveFocusTo("table", "Alerts");
  console.screen().Key(GetParam());
  console.MoveFocusTo("menu item", "Block", "Down");
  const Place item = Accessible::Focused()->place();
  EXPECT_GE(item.y, row.y);
  EXPECT_LT(item.y, row.y + 5 * row.height);
  console.screen().Key("Escape");
  EXPECT_TRUE(Eventually([&] { return !ConsoleProgram::FocusLabel().starts_with("menu item"); }));
}

INSTANTIATE_TEST_SUITE_P(Keys, ListMenuTest, ::testing::Values("Menu", "shift+F10"), [](const auto& key) {
  return std::string(key.param) == "Menu" ? "Menu" : "ShiftF10";
});

INSTANTIATE_TEST_SUITE_P(Panes, KeyboardTest,
                         ::testing::Values("Summary", "Alerts", "Advanced", "Options", "Help"),
                         [](const auto& pane) { return std::string(pane.param); });

}  // namespace
}  // namespace zendrix::desktop
