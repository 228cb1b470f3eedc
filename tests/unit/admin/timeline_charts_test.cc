#include "admin/timeline_charts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zendrix::admin {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::nullopt_t kEmptyCell = std::nullopt;

class TimelineChartsTest : public ::testing::Test {
 protected:
  TimelineChartsTest() {
    settings_.MonitorStates = {{"System", "1"}, {"Hidden", "0"}, {"Two", "2"}, {"Users", "1"}};
    settings_.NSlots = 3;
    settings_.TSlots = 1;
    settings_.TChart = "D";
    slots_.SlotCounts = {
        {5, kEmptyCell, 7}, {kEmptyCell, 1, kEmptyCell}, {kEmptyCell, kEmptyCell, kEmptyCell}};
    slots_.SlotTotals = {{50, 60, 70}, {-1, kEmptyCell, 1}, {kEmptyCell, kEmptyCell, kEmptyCell}};
    slots_.SlotLabels = {"01:45 AM", " ", " "};
  }
  core::Settings settings_;
  TimeSlots slots_;
};

TEST_F(TimelineChartsTest, SmallChartNumbersItsRowsBetweenQuoteMarksTheOldestFirst) {
  const widgets::ChartTable table = SmallChartTable(settings_, slots_);
  EXPECT_THAT(table.labels, ElementsAre("\"3\"", "\"2\"", "\"1\""));
  ASSERT_EQ(table.series.size(), 2u);
  EXPECT_EQ(table.series[0], (widgets::ChartSeries{"System", {7, 0, 5}}));
  EXPECT_EQ(table.series[1], (widgets::ChartSeries{"Users", {0, 1, 0}}));
}

TEST_F(TimelineChartsTest, LargeChartLabelsItsRowsWithTheirMoments) {
  const widgets::ChartTable table = LargeChartTable(settings_, slots_);
  EXPECT_THAT(table.labels, ElementsAre(" ", " ", "01:45 AM"));
  EXPECT_EQ(table.series, SmallChartTable(settings_, slots_).series);
}

TEST_F(TimelineChartsTest, TotalsAreDrawnInTheirPlace) {
  settings_.TChart = "T";
  const auto series = SmallChartTable(settings_, slots_).series;
  EXPECT_THAT(series[0].values, ElementsAre(70, 60, 50));
  EXPECT_THAT(series[1].values, ElementsAre(1, 0, -1));
}

TEST_F(TimelineChartsTest, AnyOtherKindLeavesTheColumnsEmpty) {
  for (const char* kind : {"t", "d", "", "X"}) {
    settings_.TChart = kind;
    for (const auto& series : SmallChartTable(settings_, slots_).series)
      EXPECT_THAT(series.values, ElementsAre(kEmptyCell, kEmptyCell, kEmptyCell)) << kind;
  }
}

// Settings that were applied since the last count.
TEST_F(TimelineChartsTest, SlotsAndMonitorsThatWereNotCountedAreBlank) {
  settings_.NSlots = 5;
  settings_.MonitorStates = {{"A", "1"}, {"B", "1"}, {"C", "1"}, {"D", "1"}};
  const widgets::ChartTable table = LargeChartTable(settings_, slots_);
  EXPECT_THAT(table.labels, ElementsAre("", "", " ", " ", "01:45 AM"));
  EXPECT_THAT(table.series[0].values, ElementsAre(0, 0, 7, 0, 5));
  EXPECT_THAT(table.series[3].values, Each(::testing::Optional(0)));
  settings_.NSlots = 2;
  EXPECT_THAT(LargeChartTable(settings_, slots_).series[0].values, ElementsAre(0, 5));
  settings_.NSlots = 0;
  EXPECT_THAT(LargeChartTable(settings_, slots_).series[0].values, IsEmpty());
}

TEST_F(TimelineChartsTest, CaptionNamesTheUnit) {
  const char* const expected[] = {"Events x ?",     "Events x Minutes", "Events x Hours", "Events x Days",
                                  "Events x Weeks", "Events x Months",  "Events x ?"};
  for (int unit = 0; unit <= 6; ++unit) {
    settings_.TSlots = static_cast<std::uint8_t>(unit);
    EXPECT_EQ(ChartCaption(settings_), expected[unit]);
  }
}

TEST_F(TimelineChartsTest, AxisTitleNamesTheUnitAndTheKind) {
  EXPECT_EQ(ChartAxisTitle(settings_), "Time (Minutes) / number of events in each time slot");
  settings_.TChart = "T";
  EXPECT_EQ(ChartAxisTitle(settings_), "Time (Minutes) / total events across time");
  settings_.TSlots = 0;
  settings_.TChart = "";
  EXPECT_EQ(ChartAxisTitle(settings_), "Time (?)");
}

}  // namespace
}  // namespace zendrix::admin
