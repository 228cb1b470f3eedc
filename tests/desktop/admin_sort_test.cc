// Sorting by the headings of the Administrator's grid, with the mouse and with keys.
#include <gmock/gmock.h>

#include <algorithm>

#include "desktop/admin_console.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

using Texts = std::vector<std::string>;

class AdminSortTest : public ::testing::Test {
 protected:
  AdminSortTest() {
    console_.Add(4, "delta", "Tcp Port", "A", "bravo listens");
    console_.Add(1, "Alpha", "System", "R", "Echo ends");
    console_.Add(6, "charlie", "Memory", "N", "alpha saw a port");
    console_.Add(2, "Bravo", "Running Processes", "A", "Delta came");
    console_.Add(7, "echo", "Autoruns", "A", "golf came");
    console_.Add(3, "Golf", "Users", "R", "charlie went");
    console_.Add(5, "foxtrot", "Drivers", "N", "Foxtrot told");
    console_.StartAndWait();
  }
  Accessible Heading(const std::string& name) { return console_.Await("table column header", name); }
  // Every heading that says how it is sorted.
  Texts Directions() {
    Texts directions;
    const Accessible table = console_.Await("table", "Events");
    for (const int column : kEventColumns) {
      const auto heading = table.Heading(column);
      if (heading && !heading->description().empty())
        directions.push_back(heading->name() + ": " + heading->description());
    }
    return directions;
  }
  void AwaitSorted(const std::string& heading, int column, const Texts& texts, const std::string& direction) {
    console_.AwaitColumn(column, texts);
    EXPECT_EQ(Directions(), Texts{heading + ": Sorted " + direction});
  }

  AdminConsole console_;
};

TEST_F(AdminSortTest, ClickOnAHeadingSortsAndTheNextTurnsRound) {
  const Texts as_loaded{"8", "7", "6", "5", "4", "3", "2", "1"};
  AwaitSorted("Date/Time", kEventId, as_loaded, "descending");
  struct Sort {
    const char* heading;
    std::string key;  // that clicks it; none: the mouse
    int column;       // that tells the order
    Texts ascending;
  };
  // The last one is that of line 1, which has a text for a code.
  const Texts changes{"Added",   "Added",   "Added",   "Notable",
                      "Notable", "Removed", "Removed", console_.Column(kChange).back()};
  const Texts by_description{"1", "4", "2", "7", "5", "3", "8", "6"};
  const Sort sorts[] = {
      {"Date/Time", "ctrl+2", kEventId, {"1", "3", "5", "7", "2", "8", "4", "6"}},
      {"Hostname", "", kHostname, {"Alpha", "Bravo", "charlie", "delta", "echo", "foxtrot", "Golf", "HOST"}},
      {"Monitor", "ctrl+4", kEventId, {"1", "6", "8", "4", "5", "3", "2", "7"}},
      {"Change", "", kChange, changes},
      {"Description", "ctrl+6", kEventId, by_description},
  };
  for (const auto& [heading, key, column, ascending] : sorts) {
    SCOPED_TRACE(heading);
    console_.ClickOn(Heading(heading));
    AwaitSorted(heading, column, Texts(ascending.rbegin(), ascending.rend()), "descending");
    if (key.empty())
      console_.ClickOn(Heading(heading));
    else
      console_.screen().Key(key);
    AwaitSorted(heading, column, ascending, "ascending");
  }
  // By the number of the line nothing is sorted; the key behind it shows that the click has passed.
  console_.ClickOn(Heading("EventID"));
  console_.screen().Key("Down");
  ASSERT_TRUE(Eventually(
      [&] { return console_.Find("table", "Events")->Cell(1, kEventId)->Is(ATSPI_STATE_SELECTED); }));
  AwaitSorted("Description", kEventId, by_description, "ascending");
  // What comes is put where it belongs.
  console_.Add(8, "hotel", "Users", "A", "Dora came");
  AwaitSorted("Description", kEventId, {"1", "4", "2", "7", "5", "9", "3", "8", "6"}, "ascending");
}

}  // namespace
}  // namespace zendrix::desktop
