#include "widgets/chart.h"

#include <gtest/gtest.h>

namespace zendrix::widgets {
namespace {

TEST(ChartTest, WordsTellTheLastAndTheHighestOfEachSeriesThatIsSomething) {
  const ChartTable table = {{"\"3\"", "\"2\"", "\"1\""},
                            {{"System", {1, 7, 4}}, {"Tcp Port", {0, 0, 0}}, {"Users", {0, -2, -1}}}};
  EXPECT_EQ(
      ChartInWords(table),
      "System: now 4, highest 7. Users: now -1, highest 0. At 0 throughout: 1. 3 slots, the newest last.");
}

TEST(ChartTest, EmptyColumnsAreNothingToShow) {
  EXPECT_EQ(ChartInWords({}), "Nothing to show.");
  EXPECT_EQ(ChartInWords({{"a", "b"}, {{"System", {std::nullopt, std::nullopt}}, {"Empty", {}}}}),
            "Nothing to show.");
}

TEST(ChartTest, WordsEndBehindAsManySeriesAsAnybodyListensTo) {
  ChartTable table = {{"now"}, {}};
  for (int i = 1; i <= 33; ++i) table.series.push_back({"m" + std::to_string(i), {i}});
  const std::string words = ChartInWords(table);
  EXPECT_NE(words.find("m31: now 31, highest 31. 2 more are not told. 1 slots"), std::string::npos) << words;
  EXPECT_EQ(words.find("m32"), std::string::npos);
}

TEST(ChartTest, EqualTableIsNoChange) {
  Chart chart("Chrt");
  int told = 0;
  chart.table.changed.ConnectForever([&] { ++told; });
  chart.table = ChartTable{{"a"}, {{"System", {1}}}};
  chart.table = ChartTable{{"a"}, {{"System", {1}}}};
  EXPECT_EQ(told, 1);
  chart.table = ChartTable{{"a"}, {{"System", {std::nullopt}}}};
  EXPECT_EQ(told, 2);
}

}  // namespace
}  // namespace zendrix::widgets
