#include "admin/grid_order.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;

std::vector<std::uint32_t> All(const GridOrder& order) {
  std::vector<std::uint32_t> rows;
  for (std::size_t place = 1; place <= order.size(); ++place) rows.push_back(order.At(place));
  return rows;
}

TEST(GridOrderTest, NewestOnTop) {
  GridOrder order;
  for (std::uint32_t row = 0; row < 4; ++row) order.Insert(1, row);
  EXPECT_THAT(All(order), ElementsAre(3, 2, 1, 0));
}

TEST(GridOrderTest, RowGoesToItsPlaceAndTheOthersMoveDown) {
  GridOrder order;
  for (std::uint32_t row = 0; row < 3; ++row) order.Insert(1, row);
  order.Insert(2, 9);
  order.Insert(5, 8);
  order.Insert(1, 7);
  EXPECT_THAT(All(order), ElementsAre(7, 2, 9, 1, 0, 8));
}

TEST(GridOrderTest, ViewOfSomeRowsOnly) {
  GridOrder order;
  order.Insert(1, 5);
  order.Insert(2, 3);
  order.Insert(1, 12);
  EXPECT_THAT(All(order), ElementsAre(12, 5, 3));
}

TEST(GridOrderTest, RowThatIsTheNewestAgainGoesOnTopOfAViewInOtherOrder) {
  GridOrder order;
  for (std::uint32_t row = 0; row < 3; ++row) order.Insert(1, row);
  std::ranges::sort(order.Cells());
  order.Insert(1, 3);
  EXPECT_THAT(All(order), ElementsAre(3, 0, 1, 2));
}

TEST(GridOrderTest, ClearedOneBeginsAnew) {
  GridOrder order;
  order.Insert(1, 5);
  order.Clear();
  EXPECT_EQ(order.size(), 0u);
  order.Insert(1, 0);
  order.Insert(1, 1);
  EXPECT_THAT(All(order), ElementsAre(1, 0));
}

TEST(GridOrderTest, InsertionsAnywhereMatchThoseIntoAPlainList) {
  std::mt19937 random(3);
  GridOrder order;
  std::vector<std::uint32_t> plain;
  for (std::uint32_t row = 0; row < 3000; ++row) {
    const std::size_t at = random() % 3 == 0 ? random() % (plain.size() + 1) : random() % 2 * plain.size();
    if (random() % 2 == 0) order.MakeRoom();
    order.Insert(at + 1, row);
    plain.insert(plain.begin() + static_cast<std::ptrdiff_t>(at), row);
  }
  EXPECT_EQ(All(order), plain);
}

}  // namespace
}  // namespace zendrix::admin
