#include "admin/event_grid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "admin/grid_sort.h"
#include "core/run_time_error.h"
#include "platform/memory/memory_family.h"
#include "support/grid_rows.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;

int TwipsOf(std::string_view text) {
  return static_cast<int>(text.size()) * 100;
}

class EventGridTest : public ::testing::Test {
 protected:
  EventGridTest() { grid_.SetFormatString("0|1|2|3|4|5|6|7|8"); }
  void Add(int id, std::string_view host, std::string_view code = "A", int time_key = 0,
           std::string_view whole = "whole") {
    Insert({id, "time", host, "Running Processes", code, whole, time_key});
  }
  void Insert(const testing::GridRow& row) { testing::InsertTop(rows_, grid_, row); }
  std::vector<std::string> Column(int col) const {
    std::vector<std::string> texts;
    for (int row = 1; row < grid_.Rows(); ++row) texts.push_back(grid_.Text(row, col));
    return texts;
  }

  platform::MemoryFamily family_;
  EventRows rows_{family_, {TwipsOf, TwipsOf, 1}, {5}};
  EventGrid grid_{"EventList", rows_};
};

TEST_F(EventGridTest, CellsOfARow) {
  Add(7, "HOST", "N", 99, "the whole");
  EXPECT_EQ(grid_.Rows(), 2);
  const std::vector<std::string> expected = {
      "7", "time", "HOST", "     Running Processes", "", "N", "the whole", "99", "the whole"};
  for (int col = 0; col < kGridColumns; ++col) {
    EXPECT_EQ(grid_.Text(1, col), expected[static_cast<std::size_t>(col)]);
    EXPECT_EQ(grid_.TextLength(1, col), expected[static_cast<std::size_t>(col)].size());
  }
  EXPECT_EQ(grid_.Picture(1, kColMonitor), 12);
  EXPECT_EQ(grid_.Picture(1, kColChange), 3);
  EXPECT_EQ(grid_.Picture(1, kColHostname), 0);
}

TEST_F(EventGridTest, NewestRowIsRowOne) {
  for (int id = 1; id <= 3; ++id) Add(id, "h");
  EXPECT_THAT(Column(kColEventID), ElementsAre("3", "2", "1"));
}

TEST_F(EventGridTest, FullGridRaisesOutOfMemoryAndKeepsItsRows) {
  for (int id = 1; id <= 5; ++id) Add(id, "h");
  try {
    Add(6, "h");
    FAIL();
  } catch (const core::RunTimeError& error) {
    EXPECT_EQ(error.number, core::kOutOfMemory);
  }
  EXPECT_EQ(grid_.Rows(), 6);
}

TEST_F(EventGridTest, TextsSortWithoutRegardToCaseAndKeepEqualsInOrder) {
  Add(1, "beta");
  Add(2, "Alpha");
  Add(3, "BETA");
  Add(4, "alpha");
  grid_.SortByText(kColHostname, true);
  EXPECT_THAT(Column(kColEventID), ElementsAre("4", "2", "3", "1"));
  grid_.SortByText(kColHostname, false);
  EXPECT_THAT(Column(kColEventID), ElementsAre("3", "1", "4", "2"));
}

TEST_F(EventGridTest, TimeKeysSortAsNumbers) {
  Add(1, "h", "A", 9);
  Add(2, "h", "A", 100);
  Add(3, "h", "A", -5);
  grid_.SortByTimeKey(true);
  EXPECT_THAT(Column(kColTimeKey), ElementsAre("-5", "9", "100"));
}

TEST_F(EventGridTest, EqualTimeKeysKeepTheirOrderInBothDirections) {
  Add(1, "h", "A", 5);
  Add(2, "h", "A", 5);
  Add(3, "h", "A", 7);
  grid_.SortByTimeKey(true);
  EXPECT_THAT(Column(kColEventID), ElementsAre("2", "1", "3"));
  grid_.SortByTimeKey(false);
  EXPECT_THAT(Column(kColEventID), ElementsAre("3", "2", "1"));
}

TEST_F(EventGridTest, EveryTextColumnSortsByItsOwnTexts) {
  rows_.BeginLoad({{}, 0, 700});  // in which the whole text becomes "abzz...zzzz" or shorter
  Insert({1, "t2", "h1", "m1", "c1", "abzzzzzzzzzzzzzz"});
  rows_.BeginLoad({{}, 0, 9000});
  Insert({2, "t1", "h2", "m2", "c2", "abcd"});
  ASSERT_LT(grid_.Text(2, kColDescription), grid_.Text(1, kColDescription));
  for (const int col : {kColDateTime, kColWhole}) {
    grid_.SortByText(kColHostname, true);
    grid_.SortByText(col, true);
    EXPECT_THAT(Column(kColEventID), ElementsAre("2", "1")) << col;
  }
  for (const int col : {kColHostname, kColMonitor, kColCode, kColDescription}) {
    grid_.SortByText(kColDateTime, true);
    grid_.SortByText(col, true);
    EXPECT_THAT(Column(kColEventID), ElementsAre("1", "2")) << col;
  }
}

TEST_F(EventGridTest, ShownTimesSortAsTexts) {
  rows_.BeginLoad({});
  for (const int key : {1'700'000'000, 1'600'000'000, 1'700'000'000, 1'800'000'000})
    Insert({key / 100'000'000, "", "h", "m", "A", "w", key});
  Insert({99, "0 soon"});
  grid_.SortByText(kColDateTime, true);
  std::vector<std::string> sorted = Column(kColDateTime);
  EXPECT_TRUE(std::ranges::is_sorted(sorted));
  EXPECT_EQ(grid_.DataRows(), 5);
}

TEST_F(EventGridTest, ClearIsToldAndFreesTheWholeRoom) {
  int cleared = 0;
  grid_.cleared.ConnectForever([&] { ++cleared; });
  for (int id = 1; id <= 5; ++id) Add(id, "h");
  grid_.Clear();
  rows_.Clear();
  EXPECT_EQ(cleared, 1);
  EXPECT_EQ(grid_.Rows(), 1);
  for (int id = 1; id <= 5; ++id) Add(id, "other " + std::to_string(id));
  EXPECT_EQ(grid_.Text(1, kColHostname), "other 5");
  EXPECT_EQ(grid_.Text(5, kColHostname), "other 1");
}

TEST_F(EventGridTest, TipsSayInWordsWhatACellHolds) {
  Add(1, "h", "A", 0, "the whole");
  Add(2, "h", "R");
  Add(3, "h", "N");
  Add(4, "h", "B");
  EXPECT_EQ(grid_.Tip(4, kColChange), "Added");
  EXPECT_EQ(grid_.Tip(3, kColChange), "Removed");
  EXPECT_EQ(grid_.Tip(2, kColChange), "Notable");
  EXPECT_EQ(grid_.Tip(1, kColChange), "B");
  EXPECT_EQ(grid_.Tip(4, kColMonitor), "Running Processes");
  EXPECT_EQ(grid_.Tip(4, kColDescription), "the whole");
  EXPECT_EQ(grid_.Tip(4, kColEventID), "1");
}

TEST_F(EventGridTest, NewRowGoesOnTopOfASortedGrid) {
  Add(1, "b");
  Add(2, "a");
  grid_.SortByText(kColHostname, true);
  Add(3, "z");
  EXPECT_THAT(Column(kColEventID), ElementsAre("3", "2", "1"));
}

TEST_F(EventGridTest, HeadersSortByTheirKeyColumns) {
  EXPECT_EQ(GridSort::KeyOfHeader(1), 7);
  EXPECT_EQ(GridSort::KeyOfHeader(8), 6);
  EXPECT_EQ(GridSort::KeyOfHeader(4), 5);
  EXPECT_EQ(GridSort::KeyOfHeader(2), 2);
  EXPECT_EQ(GridSort::KeyOfHeader(3), 3);
}

TEST_F(EventGridTest, FirstSortDescendsAndTheDirectionAlternates) {
  Add(1, "a");
  Add(2, "b");
  GridSort sort;
  EXPECT_FALSE(sort.Sort(grid_, kColHostname));
  EXPECT_THAT(Column(kColHostname), ElementsAre("b", "a"));
  EXPECT_TRUE(sort.Sort(grid_, kColHostname));
  EXPECT_THAT(Column(kColHostname), ElementsAre("a", "b"));
  EXPECT_EQ(sort.SortColumn, 2);
  EXPECT_EQ(sort.SortColumnCopy, 2);
  EXPECT_FALSE(sort.TimeSorted);
}

TEST_F(EventGridTest, TimeSortRemembersItsDirection) {
  GridSort sort;
  sort.Sort(grid_, kColTimeKey);
  EXPECT_TRUE(sort.TimeSorted);
  EXPECT_TRUE(sort.TimeDescending);
  sort.Sort(grid_, kColTimeKey);
  EXPECT_FALSE(sort.TimeDescending);
}

TEST_F(EventGridTest, ColumnThatCannotBeSortedEndsTheOrderButTurnsTheFlag) {
  Add(1, "a");
  Add(2, "b");
  GridSort sort;
  sort.Sort(grid_, kColTimeKey);
  sort.Sort(grid_, kColChange);
  EXPECT_EQ(sort.SortColumn, 0);
  EXPECT_TRUE(sort.TimeSorted);
  EXPECT_FALSE(sort.SortDirectionFlag);
}

TEST_F(EventGridTest, TwoViewsShareTheRowsInOrdersOfTheirOwn) {
  EventGrid other("FEvnList", rows_);
  Add(1, "b");
  Add(2, "a");
  Add(3, "c");
  for (int row = 1; row <= grid_.DataRows(); ++row)
    if (row != 2) other.Insert(other.Rows(), grid_.RowNumber(row));
  grid_.SortByText(kColHostname, true);
  EXPECT_THAT(Column(kColEventID), ElementsAre("2", "1", "3"));
  EXPECT_EQ(other.DataRows(), 2);
  EXPECT_EQ(other.Text(1, kColEventID), "3");
  EXPECT_EQ(other.Text(2, kColEventID), "1");
}

TEST_F(EventGridTest, RowsInsertedInTheMiddleAreToldWithTheirPlace) {
  Add(1, "a");
  Add(2, "b");
  const std::uint32_t number = testing::Append(rows_, {3});
  std::vector<int> told;
  grid_.rows_inserted.ConnectForever([&](int place, int count) { told = {place, count}; });
  grid_.Insert(2, number);
  EXPECT_THAT(told, ElementsAre(2, 1));
  EXPECT_THAT(Column(kColEventID), ElementsAre("2", "3", "1"));
}

TEST_F(EventGridTest, ColoursGoWithTheirRows) {
  Add(1, "b");
  Add(2, "a");
  grid_.SetRowColor(1, 0xFF8080);
  Add(3, "c");
  EXPECT_EQ(grid_.CellColor(2, kColHostname), 0xFF8080u);
  grid_.SortByText(kColHostname, true);
  EXPECT_EQ(grid_.CellColor(1, kColHostname), 0xFF8080u);
  EXPECT_EQ(grid_.CellColor(2, kColHostname), 0u);
  grid_.Clear();
  rows_.Clear();
  Add(4, "a");
  Add(5, "b");
  EXPECT_EQ(grid_.CellColor(1, kColHostname), 0u);
}

// A file that this grid's rows were saved to has the blanks in its monitors.
TEST_F(EventGridTest, BlanksInFrontOfAMonitorAreNotDoubled) {
  Insert({1, "", "h", "     System"});
  EXPECT_EQ(grid_.Text(1, kColMonitor), "     System");
  EXPECT_EQ(grid_.Monitor(1), "System");
  EXPECT_GT(grid_.Picture(1, kColMonitor), 0);
}

TEST_F(EventGridTest, LongestTextOfEveryColumnIsThatOfItsCells) {
  rows_.BeginLoad({{}, 0, 1500});
  testing::Append(rows_, {123456, "a long text in no view", "far longer host", "m", "A", "w", 1});
  Insert({7, "", "host", "Tcp Port", "A", "a description that does not fit into its column", -5});
  Insert({-1000, "soon", "h", "System", "Notable", "x", 12});
  Insert({1000, "", "", "", "", "", 1'700'000'000});
  for (int col = 0; col < kGridColumns; ++col) {
    std::size_t longest = 0;
    for (int row = 1; row < grid_.Rows(); ++row) longest = std::max(longest, grid_.TextLength(row, col));
    EXPECT_EQ(grid_.LongestText(col), longest) << col;
  }
  EventGrid empty("empty", rows_);
  for (int col = 0; col < kGridColumns; ++col) EXPECT_EQ(empty.LongestText(col), 0u) << col;
}

TEST_F(EventGridTest, SortThatChangesNothingIsNotTold) {
  Add(1, "b");
  Add(2, "a");
  int told = 0;
  grid_.rows_sorted.ConnectForever([&] { ++told; });
  grid_.SortByText(kColHostname, true);
  grid_.SortByText(kColHostname, true);
  EXPECT_EQ(told, 1);
  Add(3, "c");
  grid_.SortByText(kColHostname, true);
  EXPECT_EQ(told, 2);
}

// Every tick sorted four times, each time all rows.
TEST(GridSortTest, SortingAgainGivesTheOrderOfTwoSorts) {
  std::mt19937 random(11);
  platform::MemoryFamily family;
  for (int round = 0; round < 40; ++round) {
    EventRows rows(family, {});
    EventGrid once("once", rows), twice("twice", rows);
    GridSort one, two;
    const auto add = [&] {
      const std::string host = "h" + std::to_string(random() % 5);
      const std::string whole = std::string(1, "aAbB"[random() % 4]) + std::to_string(random() % 6);
      testing::InsertTop(rows, once,
                         {static_cast<int>(rows.size()), random() % 9 == 0 ? "soon" : "", host,
                          random() % 2 == 0 ? "System" : "SYSTEM", random() % 2 == 0 ? "A" : "r", whole,
                          static_cast<int>(random() % 7)});
      if (random() % 5 == 0 && twice.DataRows() > 2) {
        // A row anywhere ends the order that stands; in both.
        const int place = 1 + static_cast<int>(random() % static_cast<unsigned>(twice.Rows()));
        twice.InsertTop(rows.size() - 1);
        const std::uint32_t more = testing::Append(rows, {-1, "", host, "m", "A", whole});
        once.Insert(place, more);
        twice.Insert(place, more);
      } else {
        twice.InsertTop(rows.size() - 1);
      }
    };
    for (int i = 0; i < 30; ++i) add();
    const int columns[] = {kColDateTime, kColHostname, kColMonitor,    kColCode,
                           kColWhole,    kColTimeKey,  kColDescription};
    for (int step = 0; step < 12; ++step) {
      if (random() % 3 == 0 || one.SortColumn == 0) {
        const int column = columns[random() % std::size(columns)];
        one.Sort(once, column);
        two.Sort(twice, column);
      }
      for (std::size_t i = random() % 4; i > 0; --i) add();
      const bool up = one.SortAgain(once);
      two.Sort(twice, two.SortColumn);
      EXPECT_EQ(two.Sort(twice, two.SortColumn), up);
      EXPECT_EQ(one.SortDirectionFlag, two.SortDirectionFlag);
      EXPECT_EQ(one.TimeDescending, two.TimeDescending);
      for (int row = 1; row <= once.DataRows(); ++row)
        ASSERT_EQ(once.RowNumber(row), twice.RowNumber(row)) << row << " of column " << one.SortColumn;
    }
  }
}

}  // namespace
}  // namespace zendrix::admin
