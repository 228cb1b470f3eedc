#include "widgets/option_button.h"

#include <gmock/gmock.h>

namespace zendrix::widgets {
namespace {

class OptionButtonTest : public ::testing::Test {
 protected:
  OptionButton yes_{"opt(0)", "Yes"}, no_{"opt(1)", "No"}, maybe_{"opt(2)", "Maybe"};
  OptionGroup group_{&yes_, &no_, &maybe_};
};

TEST_F(OptionButtonTest, NoneIsCheckedAtTheBeginning) {
  EXPECT_EQ(group_.chosen(), std::nullopt);
}

TEST_F(OptionButtonTest, CheckingOneClearsTheOthersAndIsNoClick) {
  int clicks = 0;
  for (OptionButton* button : {&yes_, &no_, &maybe_}) button->clicked.ConnectForever([&] { ++clicks; });
  yes_.checked = true;
  maybe_.checked = true;
  EXPECT_FALSE(yes_.checked);
  EXPECT_EQ(group_.chosen(), 2U);
  EXPECT_EQ(clicks, 0);
}

TEST_F(OptionButtonTest, ClickIsToldWhenTheOthersAreCleared) {
  yes_.checked = true;
  int clicks = 0;
  no_.clicked.ConnectForever([&] {
    ++clicks;
    EXPECT_FALSE(yes_.checked);
    EXPECT_TRUE(no_.checked);
  });
  no_.Click();
  no_.Click();
  EXPECT_EQ(clicks, 2);
}

TEST_F(OptionButtonTest, ClearedGroupHasNoneChecked) {
  no_.Click();
  group_.Clear();
  EXPECT_EQ(group_.chosen(), std::nullopt);
  EXPECT_FALSE(no_.checked);
}

}  // namespace
}  // namespace zendrix::widgets
