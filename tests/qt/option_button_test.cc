#include <gmock/gmock.h>

#include <QRadioButton>
#include <QStyle>
#include <QTest>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdlib>

#include "qt/bind_option_button.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;

class OptionButtonBindingTest : public ::testing::Test {
 protected:
  OptionButtonBindingTest() {
    auto* column = new QVBoxLayout(&parent_);
    for (widgets::OptionButton* option : {&yes_, &no_}) {
      option->clicked.ConnectForever([this, option] { clicked_.push_back(option->name()); });
      buttons_.push_back(MakeOptionButton(*option, kit_));
      column->addWidget(buttons_.back());
    }
    parent_.show();
  }
  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  Toolkit kit_{guard_, pictures_, theme_};
  widgets::OptionButton yes_{"optAns(0)", "Yes"}, no_{"optAns(1)", "N&o"};
  widgets::OptionGroup group_{&yes_, &no_};
  QWidget parent_;
  std::vector<QRadioButton*> buttons_;
  std::vector<std::string> clicked_;
};

TEST_F(OptionButtonBindingTest, NoneIsCheckedAndAClickReachesTheLogic) {
  EXPECT_FALSE(buttons_[0]->isChecked() || buttons_[1]->isChecked());
  buttons_[1]->click();
  EXPECT_THAT(clicked_, ElementsAre("optAns(1)"));
  EXPECT_TRUE(no_.checked);
  buttons_[0]->click();
  EXPECT_TRUE(yes_.checked);
  EXPECT_FALSE(no_.checked);
  EXPECT_FALSE(buttons_[1]->isChecked());
}

// The toolkit's own circle vanished in the dark palette.
TEST_F(OptionButtonBindingTest, CircleOfAnUncheckedButtonIsSeenInTheDark) {
  theme_.SetDark(true);
  const QImage picture = buttons_[0]->grab().toImage();
  const int edge = buttons_[0]->style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth);
  const int paper = picture.pixelColor(picture.width() - 1, 0).lightness();
  int furthest = 0;
  for (int x = 0; x < std::min(edge, picture.width()); ++x)
    for (int y = 0; y < picture.height(); ++y)
      furthest = std::max(furthest, std::abs(picture.pixelColor(x, y).lightness() - paper));
  EXPECT_GT(furthest, 100);
  theme_.SetDark(false);
}

// The toolkit keeps the last checked button of a group checked.
TEST_F(OptionButtonBindingTest, ClearedGroupIsShownWithNoneChecked) {
  buttons_[0]->click();
  group_.Clear();
  EXPECT_FALSE(buttons_[0]->isChecked() || buttons_[1]->isChecked());
  buttons_[0]->click();
  EXPECT_TRUE(buttons_[0]->isChecked());
  EXPECT_THAT(clicked_, ElementsAre("optAns(0)", "optAns(0)"));
}

TEST_F(OptionButtonBindingTest, CheckingByTheProgramIsShownAndIsNoClick) {
  no_.checked = true;
  EXPECT_TRUE(buttons_[1]->isChecked());
  EXPECT_THAT(clicked_, ElementsAre());
}

TEST_F(OptionButtonBindingTest, ArrowKeysMoveTheChoice) {
  parent_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&parent_, 60'000));
  buttons_[0]->setFocus();
  buttons_[0]->click();
  QTest::keyClick(buttons_[0], Qt::Key_Down);
  EXPECT_TRUE(no_.checked);
  EXPECT_THAT(clicked_, ElementsAre("optAns(0)", "optAns(1)"));
}

TEST_F(OptionButtonBindingTest, CaptionIsPlainAndNamesTheButtonForAReader) {
  EXPECT_EQ(buttons_[1]->text(), QStringLiteral("N&&o"));
  EXPECT_EQ(buttons_[1]->accessibleName(), QStringLiteral("N&o"));
  EXPECT_EQ(buttons_[1]->objectName(), QStringLiteral("optAns(1)"));
}

}  // namespace
}  // namespace zendrix::qt
