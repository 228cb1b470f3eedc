// What a screen reader finds in the window of the Administrator console.
#include <gmock/gmock.h>

#include "desktop/admin_console.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

using ::testing::EndsWith;
using ::testing::StartsWith;

class AdminAccessibleTest : public ::testing::Test {
 protected:
  AdminAccessibleTest() {
    console_.Add(1, "NORTH", "Tcp Port", "A", "port 80");
    console_.Add(2, "SOUTH", "System", "R", "<b>gone</b>");
    console_.StartAndWait();
  }
  // The one whose name begins so.
  std::string Label(const std::string& begin) {
    const auto found = console_.Tree().Find(
        [&](const Accessible& thing) { return thing.name().starts_with(begin) && thing.role() == "label"; });
    return found ? found->name() : "";
  }

  AdminConsole console_;
};

TEST_F(AdminAccessibleTest, GridTreeStatusBarAndSplitterTellAllThatTheyShow) {
  const Accessible table = console_.Await("table", "Events");
  std::vector<std::string> headings, newest;
  for (const int column : kEventColumns) {
    headings.push_back(table.Heading(column)->name());
    newest.push_back(table.Cell(0, column)->name());
    EXPECT_TRUE(table.Cell(0, column)->Showing()) << column;
  }
  EXPECT_THAT(headings,
              ::testing::ElementsAre("EventID", "Date/Time", "Hostname", "Monitor", "Change", "Description"));
  EXPECT_THAT(newest, ::testing::ElementsAre("3", StartsWith("11/21/2026 01:45:02"), "SOUTH", "System",
                                             "Removed", "<b>gone</b>"));
  EXPECT_EQ(table.Rows(), 3);

  EXPECT_TRUE(console_.Node("System State @")->Is(ATSPI_STATE_EXPANDED));
  EXPECT_TRUE(console_.Node("Tcp Port")->Is(ATSPI_STATE_EXPANDABLE));
  EXPECT_FALSE(console_.Node("Tcp Port")->Is(ATSPI_STATE_EXPANDED));
  console_.OpenBranch("Tcp Port");
  console_.AwaitNode("port 80");
  EXPECT_TRUE(console_.Node("Tcp Port")->Is(ATSPI_STATE_EXPANDED));
  EXPECT_FALSE(console_.Node("port 80")->Is(ATSPI_STATE_EXPANDABLE));

  EXPECT_THAT(Label("File: "), EndsWith("KorvessaMonitoring.kvl"));
  EXPECT_EQ(Label("Record Count"), "Record Count: 3 records");

  console_.MoveFocusTo("separator", "Height of the events");
  const Accessible splitter = console_.Await("separator", "Height of the events");
  const double place = splitter.Value().value_or(0);
  console_.screen().Key("Down");
  EXPECT_TRUE(Eventually([&] { return splitter.Value() == place + 10; }));
}

TEST_F(AdminAccessibleTest, DesktopFindsItsEntryByTheNameOfTheWindow) {
  const auto window = console_.screen().WithTitle(AdminConsole::kTitle);
  ASSERT_TRUE(window);
  EXPECT_EQ(console_.screen().EntryOf(*window), "com.korvessa.zendrix.administrator");
}

TEST_F(AdminAccessibleTest, WhateverTheKeyboardReachesHasARoleAndAName) {
  int reached = 0;
  console_.Tree().Walk([&](const Accessible& thing) {
    if (!thing.Is(ATSPI_STATE_FOCUSABLE)) return false;
    ++reached;
    EXPECT_NE(thing.role(), "filler") << thing.name();
    EXPECT_FALSE(thing.name().empty()) << thing.role() << "\n" << console_.Tree().Tree();
    return false;
  });
  EXPECT_GT(reached, 20);
}

}  // namespace
}  // namespace zendrix::desktop
