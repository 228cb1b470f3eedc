#include "admin/event_grid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "admin/grid_reader.h"
#include "admin/grid_sort.h"
#include "core/run_time_error.h"
#include "platform/memory/memory_files.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;

class EventGridTest : public ::testing::Test {
 protected:
  EventGridTest() { grid_.SetFormatString("0|1|2|3|4|5|6|7|8"); }
  void Add(int id, std::string_view host, std::string_view code = "A", int time_key = 0,
           std::string_view whole = "whole") {
    grid_.InsertTop({id, "time", host, "Running Processes", code, whole, time_key, "fit"});
  }
  std::vector<std::string> Column(int col) const {
    std::vector<std::string> texts;
    for (int row = 1; row < grid_.Rows(); ++row) texts.push_back(grid_.Text(row, col));
    return texts;
  }

  EventGrid grid_{"EventList", 5};
};

TEST_F(EventGridTest, CellsOfARow) {
  Add(7, "HOST", "N", 99, "the whole");
  EXPECT_EQ(grid_.Rows(), 2);
  const std::vector<std::string> expected = {"7",         "time", "HOST", "     Running Processes", "", "N",
                                             "the whole", "99",   "fit"};
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
  grid_.InsertTop({1, "t2", "h1", "m1", "c1", "w2", 0, "f1"});
  grid_.InsertTop({2, "t1", "h2", "m2", "c2", "w1", 0, "f2"});
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

TEST_F(EventGridTest, ClearIsToldAndFreesTheWholeRoom) {
  int cleared = 0;
  grid_.cleared.ConnectForever([&] { ++cleared; });
  for (int id = 1; id <= 5; ++id) Add(id, "h");
  grid_.Clear();
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

TEST(GridLineTest, FiveFieldsAreTakenAndACommaEndsTheDescription) {
  const auto fields = SplitGridLine("1,host,mon,A,one,two");
  ASSERT_TRUE(fields);
  EXPECT_EQ(fields->time, "1");
  EXPECT_EQ(fields->host, "host");
  EXPECT_EQ(fields->monitor, "mon");
  EXPECT_EQ(fields->code, "A");
  EXPECT_EQ(fields->description, "one");
}

TEST(GridLineTest, FewerThanFiveFieldsAreNoRow) {
  EXPECT_FALSE(SplitGridLine("1,host,mon,A"));
  EXPECT_FALSE(SplitGridLine(""));
  EXPECT_TRUE(SplitGridLine(",,,,"));
}

class GridLinesTest : public ::testing::Test {
 protected:
  std::vector<std::string> Lines(const std::string& bytes, std::int32_t skip = 0) {
    files_.Put("/f", bytes);
    GridLines lines(files_, "/f");
    skipped_ = lines.Skip(skip);
    std::vector<std::string> all;
    std::string line;
    while (lines.Next(line)) all.push_back(line);
    return all;
  }
  platform::MemoryFiles files_;
  std::int32_t skipped_ = 0;
};

TEST_F(GridLinesTest, LineEndsOfEitherKindAndALastLineWithoutOne) {
  EXPECT_THAT(Lines("a\r\nb\nc"), ElementsAre("a", "b", "c"));
  EXPECT_THAT(Lines("a\r\n\r\n"), ElementsAre("a", ""));
  EXPECT_THAT(Lines(""), ElementsAre());
}

TEST_F(GridLinesTest, SkippedLinesAreNotRead) {
  EXPECT_THAT(Lines("a\r\nb\r\nc\r\n", 2), ElementsAre("c"));
  EXPECT_EQ(skipped_, 2);
  EXPECT_THAT(Lines("a\r\nb", 5), ElementsAre());
  EXPECT_EQ(skipped_, 2);
}

TEST_F(GridLinesTest, CarriageReturnInsideALineStays) {
  EXPECT_THAT(Lines("a\rb\r\n\r"), ElementsAre("a\rb", "\r"));
}

TEST_F(GridLinesTest, SkippingEndsBetweenTheLines) {
  EXPECT_THAT(Lines("a\nb\n", 0), ElementsAre("a", "b"));
  EXPECT_EQ(skipped_, 0);
  EXPECT_THAT(Lines("a\nb\n", 1), ElementsAre("b"));
  EXPECT_EQ(skipped_, 1);
  EXPECT_THAT(Lines("a\nb\n", 2), ElementsAre());
  EXPECT_EQ(skipped_, 2);
  EXPECT_THAT(Lines("a\nb\n", 3), ElementsAre());
  EXPECT_EQ(skipped_, 2);
}

TEST_F(GridLinesTest, LineThatEndsExactlyWithABlock) {
  const std::string block(256 * 1024 - 1, 'x');
  EXPECT_THAT(Lines(block + "\nend\n"), ElementsAre(block, "end"));
  EXPECT_THAT(Lines(block + "\nend\n", 1), ElementsAre("end"));
  EXPECT_THAT(Lines(block + "xx\nend\n", 1), ElementsAre("end"));
}

TEST_F(GridLinesTest, LinesLongerThanABlockComeWhole) {
  const std::string big(600'000, 'x');
  EXPECT_THAT(Lines(big + "\r\nend\r\n"), ElementsAre(big, "end"));
  EXPECT_THAT(Lines(big + "\r\nend\r\n", 1), ElementsAre("end"));
}

}  // namespace
}  // namespace zendrix::admin
