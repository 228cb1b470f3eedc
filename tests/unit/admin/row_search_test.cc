#include "admin/row_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "platform/memory/memory_family.h"
#include "support/grid_rows.h"
#include "support/naive_search.h"

namespace zendrix::admin {
namespace {

class RowSearchTest : public ::testing::Test {
 protected:
  RowSearchTest() {
    grid_.SetFormatString("0|1|2|3|4|5|6|7|8");
    grid_.HideInnerColumns();
    LoadSettings settings;
    settings.description_width = 5;
    rows_.BeginLoad(settings);
  }
  void Add(const testing::GridRow& row) { testing::InsertTop(rows_, grid_, row); }
  std::optional<CellPlace> Find(const std::string& wanted, CellPlace from = {}, bool match_case = false) {
    return RowSearch(grid_, TextSearch(wanted, match_case)).Find(from);
  }

  platform::MemoryFamily family_;
  EventRows rows_{family_,
                  {[](std::string_view text) { return static_cast<int>(text.size()); },
                   [](std::string_view text) { return static_cast<int>(text.size()); }, 1}};
  EventGrid grid_{"EventList", rows_};
};

TEST_F(RowSearchTest, RowsAreSearchedFromTheTopAndCellsFromTheLeft) {
  Add({.event_id = 1, .host = "needle", .whole = "needle"});
  Add({.event_id = 2, .monitor = "Needle"});
  Add({.event_id = 3});
  EXPECT_EQ(Find("needle"), (CellPlace{2, kColMonitor, 6}));
  EXPECT_EQ(Find("needle", {2, kColMonitor, 7}), (CellPlace{3, kColHostname, 1}));
  EXPECT_EQ(Find("needle", {3, kColHostname, 2}), (CellPlace{3, kColWhole, 1}));
  EXPECT_EQ(Find("needle", {3, kColWhole, 2}), std::nullopt);
}

TEST_F(RowSearchTest, MonitorIsSearchedWithTheBlanksInFrontOfIt) {
  Add({.event_id = 1, .monitor = "System"});
  EXPECT_EQ(Find("     system"), (CellPlace{1, kColMonitor, 1}));
  EXPECT_EQ(Find("      system"), std::nullopt);
}

TEST_F(RowSearchTest, WholeDescriptionIsSearchedAndNotTheShortenedOne) {
  Add({.event_id = 1, .whole = "a long text about nothing"});
  ASSERT_NE(grid_.Text(1, kColDescription), grid_.Text(1, kColWhole));
  ASSERT_THAT(grid_.Text(1, kColDescription), ::testing::HasSubstr("..."));
  EXPECT_EQ(Find("long text about"), (CellPlace{1, kColWhole, 3}));
  EXPECT_EQ(Find("..."), std::nullopt);
}

TEST_F(RowSearchTest, EventNumbersCodesAndKeysTakeNoPart) {
  Add({.event_id = 777, .time = "now", .code = "N", .whole = "", .time_key = 888});
  for (const char* wanted : {"777", "888"}) EXPECT_EQ(Find(wanted), std::nullopt);
  EXPECT_EQ(Find("n", {}, true), (CellPlace{1, kColDateTime, 1}));
  EXPECT_EQ(Find("N", {}, true), std::nullopt);
}

TEST_F(RowSearchTest, HiddenColumnsTakeNoPart) {
  Add({.event_id = 1, .host = "needle"});
  grid_.SetColWidth(kColHostname, 0);
  EXPECT_EQ(Find("needle"), std::nullopt);
  grid_.SetColWidth(kColDescription, 0);
  EXPECT_EQ(Find("whole"), (CellPlace{1, kColWhole, 1}));
}

TEST_F(RowSearchTest, InnerColumnThatStandsOpenTakesPart) {
  Add({.event_id = 1, .code = "Q", .time_key = 4711});
  EXPECT_EQ(Find("q"), std::nullopt);
  grid_.SetColWidth(kColCode, 10);
  EXPECT_EQ(Find("q"), (CellPlace{1, kColCode, 1}));
  grid_.SetColWidth(kColTimeKey, 10);
  EXPECT_EQ(Find("4711"), (CellPlace{1, kColTimeKey, 1}));
}

TEST_F(RowSearchTest, RowsOfHeightZeroArePassedOver) {
  for (int id = 1; id <= 3; ++id) Add({.event_id = id});
  grid_.SetRowHeight(1, 0);
  grid_.SetRowHeight(2, 240);
  EXPECT_EQ(Find("whole"), (CellPlace{2, kColWhole, 1}));
  EXPECT_EQ(Find("whole", {1, kColWhole, 3}), (CellPlace{2, kColWhole, 1}));
}

TEST_F(RowSearchTest, ShownTimesAreSearched) {
  Add({.event_id = 1, .time_key = 1'795'251'907});
  Add({.event_id = 2, .time = "half past nine", .time_key = 1'795'251'907});
  EXPECT_EQ(Find("09:05:07 am"), (CellPlace{2, kColDateTime, 12}));
  EXPECT_EQ(Find("PAST"), (CellPlace{1, kColDateTime, 6}));
}

TEST_F(RowSearchTest, NamesOfMonthsAndDaysInTimesAreFound) {
  LoadSettings settings;
  settings.locale.short_date = "dddd, d. MMM yyyy";
  rows_.BeginLoad(settings);
  Add({.event_id = 1, .time_key = 1'795'251'907});
  EXPECT_EQ(Find("nov"), (CellPlace{1, kColDateTime, 15}));
  EXPECT_EQ(Find("turday,"), (CellPlace{1, kColDateTime, 3}));
}

TEST_F(RowSearchTest, SearchBehindTheLastRowFindsNothing) {
  EXPECT_EQ(Find("x"), std::nullopt);
  Add({.event_id = 1});
  EXPECT_EQ(Find("whole", {7, 1, 1}), std::nullopt);
}

TEST_F(RowSearchTest, FindsWhatASearchOfEveryCellFinds) {
  std::mt19937 random(11);
  const auto pick = [&](std::initializer_list<const char*> from) {
    return from.begin()[random() % from.size()];
  };
  for (int id = 1; id <= 300; ++id) {
    std::string whole;
    for (std::size_t left = random() % 8; left > 0; --left) whole += pick({"1", "a", "B", ":", " ", "\xE4"});
    Add({id, random() % 9 == 0 ? pick({"a1", "B: B", "12/3"}) : "", pick({"ab", "BA1", ""}),
         pick({"Ab", "B 1", "\xC4"}), pick({"A", "1"}), whole,
         1'795'251'907 + static_cast<int>(random() % 100'000)});
    if (random() % 40 == 0) grid_.SetRowHeight(1, 0);
  }
  int hits = 0;
  for (int round = 0; round < 300; ++round) {
    for (const int col : {kColDateTime, kColHostname, kColMonitor, kColCode})
      grid_.SetColWidth(
          col, random() % (col == kColCode ? 9 : 4) == 0 ? 500 * (col == kColCode) : 500 * (col != kColCode));
    std::string wanted;
    for (std::size_t left = random() % 4 + 1; left > 0; --left)
      wanted += pick({"1", "a", "B", ":", " ", "\xE4", "0", "/", "P"});
    const bool match_case = random() % 2 == 0;
    CellPlace from;
    for (int times = 0; times < 60; ++times) {
      const auto hit = Find(wanted, from, match_case);
      ASSERT_EQ(hit, testing::NaiveFind(grid_, wanted, match_case, from)) << wanted;
      if (!hit) break;
      ++hits;
      from = {hit->row, hit->col, hit->position + wanted.size()};
    }
  }
  EXPECT_GT(hits, 1000);
}

}  // namespace
}  // namespace zendrix::admin
