#include "qt/bind_check_list.h"

#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QListView>
#include <QTest>
#include <memory>

#include "qt/check_list_model.h"
#include "qt/text_edge.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CheckListBindingTest : public ::testing::Test {
 protected:
  CheckListBindingTest() {
    list_.Fill({{"System", true}, {"<b>Tcp Port</b>", false}, {"Memory", true}});
    list_.clicked.ConnectForever([this](std::size_t index) { clicked_.push_back(index); });
    view_.reset(MakeCheckList(list_, QStringLiteral("Monitors to display"), kit_));
    view_->show();
    view_->activateWindow();
  }
  QModelIndex At(int row) const { return view_->model()->index(row, 0); }
  Qt::CheckState StateOf(int row) const { return At(row).data(Qt::CheckStateRole).value<Qt::CheckState>(); }

  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  Toolkit kit_{guard_, pictures_, theme_};
  widgets::CheckList list_{"Monitors"};
  std::vector<std::size_t> clicked_;
  std::unique_ptr<QListView> view_;
};

TEST_F(CheckListBindingTest, ModelHoldsTheToolkitsRules) {
  const QAbstractItemModelTester tester(view_->model(),
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  list_.Click(1);
  list_.Fill({});
  EXPECT_EQ(view_->model()->rowCount(), 0);
  list_.Fill({{"a", true}});
  EXPECT_EQ(view_->model()->rowCount(), 1);
  EXPECT_TRUE(view_->model()->setData(At(0), Qt::Unchecked, Qt::CheckStateRole));
  EXPECT_FALSE(view_->model()->setData(At(0), QStringLiteral("b"), Qt::EditRole));
  EXPECT_EQ(list_.Print(), "[ ] a\n");
}

TEST_F(CheckListBindingTest, EntriesAreShownPlainWithTheirBoxes) {
  EXPECT_EQ(At(1).data().toString(), QStringLiteral("<b>Tcp Port</b>"));
  EXPECT_EQ(At(1).data(Qt::ToolTipRole).toString(), ToolTipText("<b>Tcp Port</b>"));
  EXPECT_EQ(StateOf(0), Qt::Checked);
  EXPECT_EQ(StateOf(1), Qt::Unchecked);
  EXPECT_EQ(view_->objectName(), QStringLiteral("Monitors"));
  EXPECT_EQ(view_->accessibleName(), QStringLiteral("Monitors to display"));
}

TEST_F(CheckListBindingTest, SpaceBarTurnsTheBoxOfTheCurrentEntryOver) {
  ASSERT_TRUE(QTest::qWaitForWindowActive(view_.get(), 60'000));
  view_->setFocus();
  EXPECT_EQ(view_->currentIndex().row(), 0) << "the keyboard finds an entry";
  QTest::keyClick(view_.get(), Qt::Key_Down);
  QTest::keyClick(view_.get(), Qt::Key_Space);
  EXPECT_THAT(clicked_, ElementsAre(1));
  EXPECT_EQ(StateOf(1), Qt::Checked);
  QTest::keyClick(view_.get(), Qt::Key_Space);
  EXPECT_THAT(clicked_, ElementsAre(1, 1));
  EXPECT_EQ(list_.Print(), "[x] System\n[ ] <b>Tcp Port</b>\n[x] Memory\n");
}

TEST_F(CheckListBindingTest, ChangeByTheLogicIsShownAndTheSameStateIsNoClick) {
  list_.Click(2);
  EXPECT_EQ(StateOf(2), Qt::Unchecked);
  clicked_.clear();
  view_->model()->setData(At(2), Qt::Unchecked, Qt::CheckStateRole);
  EXPECT_THAT(clicked_, IsEmpty());
}

}  // namespace
}  // namespace zendrix::qt
