#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>

#include "admin/frm_log.h"
#include "qt/admin/frm_main.h"
#include "qt/bind_page_grid.h"
#include "qt/page_grid_model.h"
#include "qt/qt_form_host.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

TEST(PageGridModelTest, PageIsReplacedAndABlankGridHasNoRows) {
  widgets::PageGrid grid("ErrLog");
  grid.Show(20, 100);
  PageGridModel model(grid);
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_EQ(model.columnCount(), 20);
  grid.CentreHeading(0);
  grid.Show(2, 3, [](int row, int col) { return std::to_string(row) + "<b>" + std::to_string(col); });
  EXPECT_EQ(model.rowCount(), 2);
  EXPECT_EQ(model.columnCount(), 2);
  EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("0<b>1"));
  EXPECT_EQ(model.headerData(0, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), int{Qt::AlignCenter});
  EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::TextAlignmentRole).toInt(),
            int{Qt::AlignLeft | Qt::AlignVCenter});
  EXPECT_EQ(model.index(1, 1).data().toString(), QStringLiteral("2<b>1"));
  EXPECT_TRUE(model.index(1, 1).data(Qt::ToolTipRole).toString().contains(QStringLiteral("&lt;b&gt;")));
}

TEST(PageGridModelTest, ColumnsBeyondWhatCanBeLaidOutAreLeftOut) {
  widgets::PageGrid grid("ErrLog");
  grid.Show(40'000'000, 2, [](int, int) { return std::string(); });
  const PageGridModel model(grid);
  EXPECT_EQ(model.columnCount(), PageGridModel::kMostColumns);
}

class LogWindowTest : public ::testing::Test {
 protected:
  LogWindowTest() {
    world_.state.UseHost(host_);
    for (int i = 1; i <= 60; ++i) bytes_ += "1700000000,HOST,42,<b>text</b> " + std::to_string(i) + "\r\n";
    world_.platform.files.Put(path_, bytes_);
    host_.Show(form_);
    for (QWidget* each : QApplication::topLevelWidgets())
      if (each->objectName() == QLatin1String("frmLog") && each->isVisible()) window_ = each;
    table_ = window_->findChild<QTableView*>(QStringLiteral("ErrLog"));
    bar_ = window_->findChild<QScrollBar*>(QStringLiteral("VScroll1"));
    QApplication::setActiveWindow(window_);
  }
  // The bar below the blank grid's many columns goes once the log's are laid out.
  void Open() {
    form_.LoadLog(path_);
    QTest::qWait(0);
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers held = {}) { QTest::keyClick(table_, key, held); }
  QString TextAt(int row) const { return table_->model()->index(row, 3).data().toString(); }
  QString Current() const { return TextAt(table_->currentIndex().row()); }
  void PutCursor(int row) { table_->setCurrentIndex(table_->model()->index(row, 3)); }

  zendrix::testing::ConsoleWorld world_;
  const std::string path_ = world_.InFolder("KorvessaEventLog.kvl");
  std::string bytes_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  QtFormHost host_{{guard_, pictures_, theme_}};
  widgets::Screen screen_;
  admin::frmLog form_{admin::LogNeeds{world_.state, world_.log, screen_, GridMetrics()}};
  QWidget* window_ = nullptr;
  QTableView* table_ = nullptr;
  QScrollBar* bar_ = nullptr;
};

TEST_F(LogWindowTest, BeginsBlankWithAWordOnWhatToDo) {
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("Error Logs"));
  EXPECT_EQ(table_->model()->rowCount(), 0);
  EXPECT_EQ(table_->accessibleDescription(),
            QStringLiteral("No log is open. Open one with the button above, or Ctrl+O."));
  EXPECT_FALSE(bar_->isEnabled());
  EXPECT_TRUE(table_->hasFocus());
}

TEST_F(LogWindowTest, OpenIsAtItsKey) {
  world_.platform.file_dialogs.Choose(path_);
  QTest::keyClick(window_, Qt::Key_O, Qt::ControlModifier);
  QTest::qWait(0);
  ASSERT_EQ(world_.platform.file_dialogs.shown.size(), 1U);
  EXPECT_EQ(TextAt(0), QStringLiteral("<b>text</b> 60"));
  auto* const path = window_->findChild<QLabel*>(QStringLiteral("SBar1"));
  EXPECT_EQ(path->text(), QString::fromStdString(path_));
  EXPECT_EQ(path->accessibleName(), QStringLiteral("File: ") + QString::fromStdString(path_));
  EXPECT_EQ(path->textFormat(), Qt::PlainText);
}

TEST_F(LogWindowTest, PageIsAsLongAsTheWindowHasRoomFor) {
  Open();
  const int height = table_->rowHeight(0);
  EXPECT_GE(height, 48) << "720 twips";
  const int room = table_->viewport()->height() / height;
  ASSERT_GT(room, 2);
  EXPECT_EQ(form_.LogPageRows, room);
  EXPECT_EQ(table_->model()->rowCount(), room + 1);
  window_->resize(window_->width(), window_->height() + 2 * height);
  EXPECT_EQ(form_.LogPageRows, room + 2);
  EXPECT_EQ(table_->model()->rowCount(), room + 3);
  EXPECT_EQ(bar_->pageStep(), room + 1);
}

TEST_F(LogWindowTest, ScrollBarGoesBothWays) {
  Open();
  EXPECT_EQ(bar_->maximum(), 60);
  EXPECT_EQ(bar_->minimum(), 1);
  bar_->setValue(20);
  EXPECT_EQ(TextAt(0), QStringLiteral("<b>text</b> 41"));
  form_.VScroll1.Scroll(60);
  EXPECT_EQ(bar_->value(), 60);
  EXPECT_EQ(table_->model()->rowCount(), 1);
}

TEST_F(LogWindowTest, PageKeysTurnPages) {
  Open();
  PutCursor(0);
  Key(Qt::Key_PageDown);
  EXPECT_EQ(form_.LogFirstRow, form_.LogPageRows);
  EXPECT_EQ(table_->currentIndex().row(), 0);
  Key(Qt::Key_PageUp);
  EXPECT_EQ(form_.LogFirstRow, 1);
  Key(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(Current(), QStringLiteral("<b>text</b> 1"));
  Key(Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(Current(), QStringLiteral("<b>text</b> 60"));
}

TEST_F(LogWindowTest, ArrowsWalkThroughAllRecordsAndBack) {
  Open();
  PutCursor(0);
  for (int record = 60; record > 1; --record) {
    ASSERT_EQ(Current(), QStringLiteral("<b>text</b> %1").arg(record));
    EXPECT_EQ(table_->rowAt(0), 0) << "no row above the cursor's is out of sight";
    Key(Qt::Key_Down);
  }
  Key(Qt::Key_Down);
  EXPECT_EQ(Current(), QStringLiteral("<b>text</b> 1"));
  for (int record = 1; record < 60; ++record) Key(Qt::Key_Up);
  Key(Qt::Key_Up);
  EXPECT_EQ(Current(), QStringLiteral("<b>text</b> 60"));
  EXPECT_EQ(form_.LogFirstRow, 1);
}

// The row that the window's edge cuts can be clicked; the arrow key then led nowhere.
TEST_F(LogWindowTest, RowAtTheEdgeIsNoEnd) {
  Open();
  PutCursor(form_.LogPageRows);
  Key(Qt::Key_Down);
  Key(Qt::Key_Down);
  EXPECT_EQ(Current(), QStringLiteral("<b>text</b> %1").arg(60 - form_.LogPageRows - 1));
}

TEST_F(LogWindowTest, WheelTurnsPages) {
  Open();
  const QPointF place = table_->viewport()->rect().center();
  QWheelEvent down(place, table_->viewport()->mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {},
                   Qt::NoScrollPhase, false);
  QApplication::sendEvent(table_->viewport(), &down);
  EXPECT_EQ(form_.LogFirstRow, 1 + QApplication::wheelScrollLines());
}

TEST_F(LogWindowTest, RowsAreCopiedAsLinesOfFields) {
  Open();
  PutCursor(0);
  Key(Qt::Key_Down, Qt::ShiftModifier);
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(),
            QStringLiteral("11/14/2023 10:13:20 PM\tHOST\t42\t<b>text</b> 60\n"
                           "11/14/2023 10:13:20 PM\tHOST\t42\t<b>text</b> 59\n"));
}

TEST_F(LogWindowTest, EnterShowsTheWholeTextAsPlainText) {
  Open();
  PutCursor(0);
  Key(Qt::Key_Return);
  EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("&lt;b&gt;text"))) << QToolTip::text().toStdString();
  QToolTip::hideText();
}

TEST_F(LogWindowTest, WidthsGoBothWaysButForTheLastColumns) {
  Open();
  const int told = form_.ErrLog.ColWidth(3);
  table_->horizontalHeader()->resizeSection(1, 200);
  EXPECT_EQ(form_.ErrLog.ColWidth(1), 200 * kTwipsPerPixel);
  EXPECT_EQ(form_.ErrLog.ColWidth(3), told);
  form_.ErrLog.SetColWidth(1, 1500);
  EXPECT_EQ(table_->columnWidth(1), 1500 / kTwipsPerPixel);
}

TEST_F(LogWindowTest, EachControlHasANameAndIsReachedByTheTabKey) {
  Open();
  EXPECT_EQ(table_->accessibleName(), QStringLiteral("Log"));
  EXPECT_EQ(bar_->accessibleName(), QStringLiteral("Record at the top"));
  QTest::keyClick(table_, Qt::Key_Tab);
  EXPECT_TRUE(bar_->hasFocus());
  QTest::keyClick(bar_, Qt::Key_Down);
  EXPECT_EQ(form_.LogFirstRow, 2);
}

TEST_F(LogWindowTest, EscapeClosesIt) {
  Open();
  QTest::keyClick(table_, Qt::Key_Escape);
  EXPECT_FALSE(form_.loaded());
}

}  // namespace
}  // namespace zendrix::qt
