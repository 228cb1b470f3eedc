#include "admin/item_counts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "platform/memory/memory_family.h"
#include "support/grid_rows.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;

int TwipsOf(std::string_view text) {
  return static_cast<int>(text.size()) * 100;
}

class ItemCountsTest : public ::testing::Test {
 protected:
  ItemCountsTest() {
    grid_.SetFormatString("0|1|2|3|4|5|6|7|8");
    rows_.BeginLoad({});
  }
  // Rows are a second apart unless told otherwise.
  void Add(std::string_view code, std::string_view text, std::string_view monitor = "System", int apart = 1) {
    key_ += apart;
    testing::InsertTop(rows_, grid_, {key_, "", "HOST", monitor, code, text, key_});
  }
  void AddBaseline(std::string_view monitor = "System") {
    Add("N", kStartBaseline, monitor);
    Add("A", "base", monitor);
    Add("N", kEndBaseline, monitor);
  }
  std::int32_t SystemAt(int row) { return counts_.At({"System"}, row)[0]; }

  platform::MemoryFamily family_;
  EventRows rows_{family_, {TwipsOf, TwipsOf, 1}};
  EventGrid grid_{"EventList", rows_};
  ItemCounts counts_{grid_};
  int key_ = 1'700'000'000;
};

TEST_F(ItemCountsTest, CountGoesOnWithTheRowsThatCome) {
  AddBaseline();
  EXPECT_EQ(SystemAt(1), 1);
  Add("A", "one");
  Add("A", "other", "Users");
  EXPECT_EQ(SystemAt(1), 2);
  Add("R", "base");
  Add("R", "unknown");
  Add("A", "one");
  EXPECT_EQ(SystemAt(1), 2);
  EXPECT_EQ(SystemAt(3), 1) << "a moment further back";
  EXPECT_EQ(SystemAt(1), 2);
}

TEST_F(ItemCountsTest, BaselineBeginsAnew) {
  AddBaseline();
  Add("A", "one");
  EXPECT_EQ(SystemAt(1), 2);
  AddBaseline();
  EXPECT_EQ(SystemAt(1), 1);
}

TEST_F(ItemCountsTest, BaselineThatIsOpenTakesInWhatComesLater) {
  AddBaseline();
  Add("N", kStartBaseline);
  Add("A", "one");
  EXPECT_EQ(SystemAt(1), 1);
  Add("A", "two");
  EXPECT_EQ(SystemAt(2), 2);
  Add("N", kEndBaseline);
  Add("A", "three");
  EXPECT_EQ(SystemAt(4), 2) << "inside, the whole baseline";
  EXPECT_EQ(SystemAt(1), 3);
}

TEST_F(ItemCountsTest, ItemThatSaysThatThereIsNoneIsNone) {
  AddBaseline();
  EXPECT_EQ(SystemAt(1), 1);
  Add("R", "base");
  Add("A", kEmptyArray);
  EXPECT_EQ(SystemAt(1), 0);
  Add("A", kEmptyArray);
  EXPECT_EQ(SystemAt(1), 2);
}

TEST_F(ItemCountsTest, NothingIsKeptOfAViewThatWasCleared) {
  AddBaseline();
  Add("A", "one");
  EXPECT_EQ(SystemAt(1), 2);
  grid_.Clear();
  rows_.Clear();
  for (int i = 0; i < 6; ++i) Add("A", "x", "Users");
  EXPECT_EQ(SystemAt(1), 0);
}

TEST_F(ItemCountsTest, SortedViewIsReadInItsOwnOrder) {
  Add("A", "a");
  Add("A", "b");
  Add("R", "b");
  Add("A", "c");
  EXPECT_EQ(SystemAt(1), 1);
  grid_.SortByTimeKey(true);
  EXPECT_THAT(counts_.At({"System"}, 4), ElementsAre(SystemState(grid_, 4).StateofMonitor("System").size()));
  EXPECT_THAT(counts_.At({"System"}, 1), ElementsAre(SystemState(grid_, 1).StateofMonitor("System").size()));
}

TEST_F(ItemCountsTest, MoreItemsThanAreKeptAreCountedAllTheSame) {
  AddBaseline();
  for (std::size_t i = 0; i < ItemCounts::kMostKept; ++i) Add("A", std::to_string(i), "System", 0);
  Add("A", "last");
  const auto all = static_cast<std::int32_t>(ItemCounts::kMostKept) + 2;
  EXPECT_EQ(SystemAt(1), all);
  Add("A", "one more");
  EXPECT_EQ(SystemAt(1), all + 1);
  for (int i = 0; i < 4; ++i) Add("R", std::to_string(i));
  EXPECT_EQ(SystemAt(1), all - 3);
  for (int i = 4; i < 8; ++i) Add("A", "new " + std::to_string(i));
  EXPECT_EQ(SystemAt(1), all + 1);
}

TEST_F(ItemCountsTest, RandomHistoriesCountAsTheirStatesDo) {
  std::mt19937 random(11);
  const auto up_to = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
  const std::vector<std::string> monitors = {"System", "users"};
  const std::string_view marks[] = {kStartBaseline, kEndBaseline, kEndBaseline};
  for (int round = 0; round < 300; ++round) {
    grid_.Clear();
    rows_.Clear();
    const bool marked = up_to(2) > 0;
    for (int step = 0; step < 40; ++step) {
      for (int more = up_to(4); more >= 0; --more) {
        const std::string& monitor = monitors[static_cast<std::size_t>(up_to(1))];
        if (marked && up_to(9) == 0)
          Add("N", marks[up_to(2)], monitor, up_to(1));
        else
          Add(std::string(1, "AARN"[up_to(3)]),
              up_to(20) == 0 ? std::string(kEmptyArray) : std::string(1, "xyz"[up_to(2)]), monitor, up_to(1));
      }
      const int row = std::min(up_to(5) == 0 ? up_to(30) + 1 : 3, grid_.DataRows());
      const SystemState state(grid_, row);
      std::vector<std::int32_t> expected;
      for (const std::string& monitor : monitors)
        expected.push_back(static_cast<std::int32_t>(state.StateofMonitor(monitor).size()));
      ASSERT_EQ(counts_.At(monitors, row), expected) << round << " " << step << " " << row;
    }
  }
}

}  // namespace
}  // namespace zendrix::admin
