#include "admin/row_sort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;

TEST(RowSortTest, KeysAscendOverTheWholeRangeAndEqualsKeepTheirOrder) {
  std::vector<KeyedRow> rows = {{0xFFFFFFFF, 0}, {7, 1}, {0x80000000, 2}, {7, 3}, {0, 4}, {2048, 5}};
  SortByKey(rows);
  std::vector<std::uint32_t> order;
  for (const KeyedRow& row : rows) order.push_back(row.row);
  EXPECT_THAT(order, ElementsAre(4, 1, 3, 5, 2, 0));
}

TEST(RowSortTest, NoRowsAreSortedAlready) {
  std::vector<KeyedRow> rows;
  SortByKey(rows);
  EXPECT_TRUE(rows.empty());
}

TEST(RowSortTest, RandomKeysMatchAStableSort) {
  std::mt19937 random(9);
  for (const std::uint32_t mask : {0x3u, 0x7FFu, 0x3FF800u, 0xFFC00000u, 0xFFFFFFFFu}) {
    std::vector<KeyedRow> rows;
    for (std::uint32_t i = 0; i < 4000; ++i) rows.push_back({static_cast<std::uint32_t>(random()) & mask, i});
    std::vector<KeyedRow> expected = rows;
    std::ranges::stable_sort(expected, {}, &KeyedRow::key);
    SortByKey(rows);
    EXPECT_TRUE(std::ranges::equal(rows, expected, {}, &KeyedRow::row, &KeyedRow::row)) << mask;
  }
}

// Fresh rows and old ones alike: row n has key n / 10.
TEST(RowSortTest, MergedRowsStandWhereAStableSortPutsThem) {
  std::mt19937 random(2);
  const auto before = [](std::uint32_t one, std::uint32_t other) { return one / 10 < other / 10; };
  for (int round = 0; round < 200; ++round) {
    const std::size_t fresh = random() % 12, old = random() % 40;
    std::vector<std::uint32_t> rows;
    for (std::size_t i = 0; i < fresh + old; ++i) rows.push_back(static_cast<std::uint32_t>(random() % 120));
    std::stable_sort(rows.begin() + static_cast<std::ptrdiff_t>(fresh), rows.end(), before);
    std::vector<std::uint32_t> expected = rows;
    std::ranges::stable_sort(expected, before);
    MergeFresh(rows, fresh, before);
    EXPECT_EQ(rows, expected);
  }
}

}  // namespace
}  // namespace zendrix::admin
