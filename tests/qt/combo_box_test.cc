#include "qt/bind_combo_box.h"

#include <gmock/gmock.h>

#include <QComboBox>
#include <QTest>

#include "support/console_world.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ComboBoxBindingTest : public ::testing::Test {
 protected:
  ComboBoxBindingTest() {
    box_.opened.ConnectForever([this] {
      ++opened_;
      box_.Fill({{"alpha"}, {"<b>beta</b>", 3}, {"gamma"}});
    });
    box_.chosen.ConnectForever([this] { chosen_.push_back(box_.text()); });
    view_.reset(MakeComboBox(box_, QStringLiteral("Monitor"), QStringLiteral("h3"), kit_));
    view_->show();
    view_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(view_.get(), 60'000));
    view_->setFocus();
  }

  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  Toolkit kit_{guard_, pictures_, theme_};
  widgets::ComboBox box_{"MonitorCombo"};
  int opened_ = 0;
  std::vector<std::string> chosen_;
  std::unique_ptr<QComboBox> view_;
};

TEST_F(ComboBoxBindingTest, IsFilledWhenItOpens) {
  EXPECT_EQ(view_->count(), 0);
  EXPECT_EQ(view_->objectName(), QStringLiteral("MonitorCombo"));
  EXPECT_EQ(view_->accessibleName(), QStringLiteral("Monitor"));
  view_->showPopup();
  EXPECT_EQ(opened_, 1);
  ASSERT_EQ(view_->count(), 3);
  EXPECT_EQ(view_->itemText(1), QStringLiteral("<b>beta</b>"));
  EXPECT_EQ(view_->currentIndex(), -1);
  EXPECT_THAT(chosen_, IsEmpty());
  view_->hidePopup();
}

TEST_F(ComboBoxBindingTest, ArrowKeysChooseWithoutOpeningIt) {
  QTest::keyClick(view_.get(), Qt::Key_Down);
  QTest::keyClick(view_.get(), Qt::Key_Down);
  EXPECT_THAT(chosen_, ElementsAre("alpha", "<b>beta</b>"));
  EXPECT_EQ(box_.index(), 1);
  QTest::keyClick(view_.get(), Qt::Key_G);
  EXPECT_EQ(box_.text(), "gamma");
}

TEST_F(ComboBoxBindingTest, DeleteAndBackspaceChooseNone) {
  for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Backspace}) {
    QTest::keyClick(view_.get(), Qt::Key_Down);
    EXPECT_EQ(box_.index(), 0);
    QTest::keyClick(view_.get(), key);
    EXPECT_EQ(box_.index(), -1);
    EXPECT_EQ(view_->currentIndex(), -1);
  }
}

TEST_F(ComboBoxBindingTest, ChangeByTheLogicIsShownAndNoChoice) {
  box_.Open();
  box_.Choose(2);
  chosen_.clear();
  EXPECT_EQ(view_->currentIndex(), 2);
  box_.Fill({{"gamma"}});
  EXPECT_EQ(view_->currentIndex(), 0);
  box_.Clear();
  EXPECT_EQ(view_->currentIndex(), -1);
  EXPECT_THAT(chosen_, IsEmpty());
}

TEST_F(ComboBoxBindingTest, FrameShowsThatItHasTheKeyboard) {
  const auto frame = [this] {
    const QImage picture = view_->grab().toImage();
    return picture.pixelColor(picture.width() / 2, 0);
  };
  const QColor with = frame();
  view_->clearFocus();
  EXPECT_NE(frame(), with);
  EXPECT_EQ(with, theme_.tokens().link);
}

}  // namespace
}  // namespace zendrix::qt
