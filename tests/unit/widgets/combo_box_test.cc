#include "widgets/combo_box.h"

#include <gmock/gmock.h>

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ComboBoxTest : public ::testing::Test {
 protected:
  ComboBoxTest() {
    box_.opened.ConnectForever([this] { acts_.push_back("opened"); });
    box_.filled.ConnectForever([this] { acts_.push_back("filled"); });
    box_.changed.ConnectForever([this] { acts_.push_back("changed to " + std::to_string(box_.index())); });
    box_.chosen.ConnectForever([this] { acts_.push_back("chosen " + box_.text()); });
  }
  ComboBox box_{"HostCombo"};
  std::vector<std::string> acts_;
};

TEST_F(ComboBoxTest, BeginsEmptyWithNothingChosen) {
  EXPECT_THAT(box_.entries(), IsEmpty());
  EXPECT_EQ(box_.index(), -1);
  EXPECT_EQ(box_.text(), "");
}

TEST_F(ComboBoxTest, ChoiceIsToldBehindTheChange) {
  box_.Fill({{"a"}, {"b", 7}});
  box_.Choose(1);
  box_.Choose(1);
  EXPECT_EQ(box_.text(), "b");
  EXPECT_EQ(box_.entries()[1].picture, 7);
  EXPECT_THAT(acts_, ElementsAre("filled", "changed to 1", "chosen b", "chosen b"));
}

TEST_F(ComboBoxTest, WhatIsNotThereCannotBeChosen) {
  box_.Fill({{"a"}});
  box_.Choose(0);
  acts_.clear();
  box_.Choose(-1);
  box_.Choose(1);
  EXPECT_EQ(box_.index(), 0);
  EXPECT_THAT(acts_, IsEmpty());
}

TEST_F(ComboBoxTest, ChosenTextStaysChosenWhereItIsStillListed) {
  box_.Fill({{"a"}, {"b"}});
  box_.Choose(1);
  acts_.clear();
  box_.Fill({{"c"}, {"d"}, {"b"}});
  EXPECT_EQ(box_.index(), 2);
  EXPECT_THAT(acts_, ElementsAre("filled"));
  box_.Fill({{"c"}});
  EXPECT_EQ(box_.index(), -1);
  EXPECT_THAT(acts_, ElementsAre("filled", "filled", "changed to -1"));
}

TEST_F(ComboBoxTest, SameEntriesAgainAreNoNews) {
  box_.Fill({{"a"}});
  box_.Fill({{"a"}});
  EXPECT_THAT(acts_, ElementsAre("filled"));
  box_.Fill({{"a", 3}});
  EXPECT_THAT(acts_, ElementsAre("filled", "filled"));
}

TEST_F(ComboBoxTest, ClearingKeepsTheEntries) {
  box_.Fill({{"a"}});
  box_.Choose(0);
  acts_.clear();
  box_.Clear();
  box_.Clear();
  EXPECT_EQ(box_.text(), "");
  EXPECT_EQ(box_.entries().size(), 1u);
  EXPECT_THAT(acts_, ElementsAre("changed to -1"));
}

TEST_F(ComboBoxTest, OpeningMayFillTheListThatIsThenChosenFrom) {
  box_.opened.ConnectForever([this] { box_.Fill({{"a"}, {"b"}}); });
  EXPECT_TRUE(box_.OpenAndChoose("b"));
  EXPECT_EQ(box_.index(), 1);
  EXPECT_FALSE(box_.OpenAndChoose("B"));
  EXPECT_EQ(box_.index(), 1);
}

}  // namespace
}  // namespace zendrix::widgets
