#include "widgets/check_list.h"

#include <gmock/gmock.h>

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;

class CheckListTest : public ::testing::Test {
 protected:
  CheckListTest() {
    list_.filled.ConnectForever([this] { acts_.push_back("filled"); });
    list_.clicked.ConnectForever([this](std::size_t index) {
      acts_.push_back(list_.entries()[index].text + (list_.entries()[index].checked ? "+" : "-"));
    });
  }
  CheckList list_{"Cols"};
  std::vector<std::string> acts_;
};

TEST_F(CheckListTest, ListBeginsEmpty) {
  EXPECT_EQ(list_.Print(), "");
  EXPECT_EQ(list_.CheckedCount(), 0u);
}

TEST_F(CheckListTest, FillingReplacesAllAtOnce) {
  list_.Fill({{"a", true}, {"b", false}});
  list_.Fill({{"c", true}, {"d", true}, {"e", false}});
  EXPECT_EQ(list_.Print(), "[x] c\n[x] d\n[ ] e\n");
  EXPECT_EQ(list_.CheckedCount(), 2u);
  EXPECT_THAT(acts_, ElementsAre("filled", "filled"));
}

TEST_F(CheckListTest, ClickTurnsABoxOverAndTellsBehindTheChange) {
  list_.Fill({{"a", true}, {"b", false}});
  acts_.clear();
  list_.Click(1);
  list_.Click(0);
  list_.Click(1);
  EXPECT_EQ(list_.Print(), "[ ] a\n[ ] b\n");
  EXPECT_THAT(acts_, ElementsAre("b+", "a-", "b-"));
}

TEST_F(CheckListTest, ClickOnAnEntryThatIsNotThereDoesNothing) {
  list_.Fill({{"a", true}});
  acts_.clear();
  list_.Click(1);
  EXPECT_THAT(acts_, ElementsAre());
  EXPECT_EQ(list_.CheckedCount(), 1u);
}

}  // namespace
}  // namespace zendrix::widgets
