#include <gmock/gmock.h>

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QTableView>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

#include "admin/frm_main.h"
#include "qt/admin/frm_main.h"
#include "qt/bind_panel.h"
#include "qt/bind_splitter.h"
#include "qt/qt_form_host.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

class AdminWindowTest : public ::testing::Test {
 protected:
  AdminWindowTest() {
    world_.state.UseHost(host_);
    world_.state.ProductName = "Korvessa Zendrix Administrator";
    world_.platform.services.SetRunning("ZENDRIX");
    for (const char* name : {"System", "Tcp Port"}) reg_ini_.SaveSetwChk("Monitors", name, "1");
    reg_ini_.ReadRegInfo();
    std::string bytes;
    for (int i = 1; i <= 300; ++i)
      bytes += std::to_string(1'700'000'000 + i) + ",WORKSTATION-07,tcp port,A,<b>event</b> " +
               std::to_string(i) + "\r\n";
    world_.platform.files.Put(path_, bytes);
  }
  ~AdminWindowTest() override { world_.state.seams.loop.ProcessMessages(); }

  void Open() {
    form_ = std::make_unique<admin::frmMain>(
        admin::AdminParts{world_.state, world_.log, reg_ini_, screen_, GridMetrics()});
    host_.Show(*form_);
    for (QWidget* each : QApplication::topLevelWidgets())
      if (each->objectName() == QLatin1String("frmMain") && each->isVisible()) window_ = each;
    table_ = The<QTableView>("EventList");
    window_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_, 60'000));
  }
  template <class Widget>
  Widget* The(const char* name) {
    auto* const found = window_->findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  QToolButton* Button(const char* key) {
    for (QAction* action : The<QToolBar>("Tbar")->actions())
      if (action->objectName() == QLatin1String(key))
        return qobject_cast<QToolButton*>(The<QToolBar>("Tbar")->widgetForAction(action));
    return nullptr;
  }

  zendrix::testing::ConsoleWorld world_;
  const std::string path_ = world_.InFolder("KorvessaMonitoring.kvl");
  settings::RegIni reg_ini_{world_.state, world_.log};
  widgets::Screen screen_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  std::unique_ptr<admin::frmMain> form_;
  QtFormHost host_{{guard_, pictures_, theme_}};
  QWidget* window_ = nullptr;
  QTableView* table_ = nullptr;
};

TEST_F(AdminWindowTest, ToolbarShowsEveryKeyInItsOrderWithItsTip) {
  Open();
  QStringList shown;
  for (QAction* action : The<QToolBar>("Tbar")->actions())
    if (!action->isSeparator()) shown << action->objectName();
  QStringList wanted;
  for (const widgets::MenuItem* item : form_->Tbar) wanted << QString::fromStdString(item->name());
  EXPECT_EQ(shown, wanted);
  EXPECT_EQ(Button("Open")->toolTip(), QStringLiteral("Open File"));
  EXPECT_EQ(Button("Open")->toolButtonStyle(), Qt::ToolButtonIconOnly);
}

TEST_F(AdminWindowTest, DisableGoesDownAndUpWithItsTip) {
  Open();
  QToolButton* const button = Button("Disable");
  ASSERT_TRUE(button->isCheckable());
  QTest::mouseClick(button, Qt::LeftButton);
  QTest::qWait(0);
  EXPECT_TRUE(button->isChecked());
  EXPECT_EQ(button->toolTip(), QStringLiteral("Enable Zendrix Monitoring"));
  QTest::mouseClick(button, Qt::LeftButton);
  QTest::qWait(0);
  EXPECT_FALSE(button->isChecked());
  EXPECT_EQ(world_.platform.services.runs.size(), 2U);
}

TEST_F(AdminWindowTest, EveryMenuCommandIsReachedByAltAndAKey) {
  Open();
  const auto* const bar = window_->findChild<QMenuBar*>();
  ASSERT_NE(bar, nullptr);
  for (const QAction* menu : bar->actions()) {
    EXPECT_TRUE(menu->text().contains(QLatin1Char('&'))) << menu->text().toStdString();
    EXPECT_FALSE(menu->menu()->isEmpty()) << menu->text().toStdString();
  }
}

TEST_F(AdminWindowTest, RefreshIsAtItsKey) {
  Open();
  world_.platform.files.Put(path_, "1700000000,HOST,system,A,only one\r\n");
  QTest::keyClick(window_, Qt::Key_F5);
  QTest::qWait(0);
  EXPECT_EQ(table_->model()->rowCount(), 1);
}

TEST_F(AdminWindowTest, ColumnsFitTheirTextsAfterTheFirstLoad) {
  Open();
  for (int column = 0; column < admin::kColDescription; ++column) {
    if (table_->isColumnHidden(column)) continue;
    const int wanted = static_cast<QAbstractItemView*>(table_)->sizeHintForColumn(column);
    EXPECT_GE(table_->columnWidth(column), wanted) << column;
  }
  for (int column = 1; column <= admin::kColChange; ++column) {
    EXPECT_FALSE(form_->EventList.column(column).heading.ends_with("...")) << column;
    const QString heading = table_->model()->headerData(column, Qt::Horizontal).toString();
    EXPECT_GT(table_->columnWidth(column), table_->fontMetrics().horizontalAdvance(heading)) << column;
  }
}

TEST_F(AdminWindowTest, PanesStandWhereTheFormHasLaidThemOut) {
  Open();
  const admin::PanePlaces& places = form_->panes;
  const QWidget* const bar = The<QWidget>("lblHDrag");
  EXPECT_EQ(table_->width(), places.grids.width / kTwipsPerPixel);
  EXPECT_EQ(table_->height(), places.grids.height / kTwipsPerPixel);
  const int gap = bar->y() - (table_->y() + table_->height());
  EXPECT_GE(gap, 2);
  EXPECT_LE(gap, 4);
  const int menu = window_->findChild<QMenuBar*>()->height();
  EXPECT_EQ(bar->mapTo(window_, QPoint()).y(), form_->lblHDrag.Top / kTwipsPerPixel + menu);
}

TEST_F(AdminWindowTest, SplitterFollowsTheMouseAndTheArrowKeys) {
  Open();
  auto* const bar = The<QWidget>("lblHDrag");
  const int before = form_->lblHDrag.Top;
  const int grids = table_->height();
  QTest::mousePress(bar, Qt::LeftButton, {}, QPoint(20, 3));
  QTest::mouseMove(bar, QPoint(20, -37));
  QMouseEvent drag(QEvent::MouseMove, QPointF(20, -37), bar->mapToGlobal(QPointF(20, -37)), Qt::NoButton,
                   Qt::LeftButton, {});
  QApplication::sendEvent(bar, &drag);
  QTest::mouseRelease(bar, Qt::LeftButton);
  EXPECT_LT(form_->lblHDrag.Top, before - 300);
  EXPECT_LT(table_->height(), grids);
  const int dragged = form_->lblHDrag.Top;
  QTest::keyClick(bar, Qt::Key_Down);
  EXPECT_EQ(form_->lblHDrag.Top, dragged + 150);
  QTest::keyClick(bar, Qt::Key_Up);
  EXPECT_EQ(form_->lblHDrag.Top, dragged);
}

TEST_F(AdminWindowTest, WindowDoesNotBecomeTooLowForItsSplitter) {
  Open();
  const int inside = window_->minimumHeight() - window_->findChild<QMenuBar*>()->height();
  EXPECT_GE(inside * kTwipsPerPixel + kTwipsPerPixel, form_->lblHDrag.Top + 1200);
}

TEST_F(AdminWindowTest, StatusBarReadsWhatStandsInIt) {
  Open();
  QTest::qWait(100);
  auto* const count = The<QLabel>("RecCnt");
  EXPECT_EQ(count->text(), QStringLiteral("300 records"));
  EXPECT_EQ(count->accessibleName(), QStringLiteral("Record Count: 300 records"));
  EXPECT_EQ(The<QLabel>("Msg")->accessibleName(), QStringLiteral("File: ") + QString::fromStdString(path_));
}

TEST_F(AdminWindowTest, SelectedRowsAreCopiedAsTextWithTheirWholeDescriptions) {
  Open();
  table_->setCurrentIndex(table_->model()->index(1, 0));
  QTest::keyClick(table_, Qt::Key_Down, Qt::ShiftModifier);
  QTest::keyClick(table_, Qt::Key_C, Qt::ControlModifier);
  const QStringList lines = QGuiApplication::clipboard()->text().split(QLatin1Char('\n'));
  ASSERT_EQ(lines.size(), 3);
  EXPECT_TRUE(lines[0].startsWith(QStringLiteral("299\t"))) << lines[0].toStdString();
  EXPECT_TRUE(lines[1].endsWith(QStringLiteral("\tWORKSTATION-07\tTcp Port\tAdded\t<b>event</b> 298")))
      << lines[1].toStdString();
  EXPECT_EQ(lines[2], QString());
}

// What is saved and copied was another row's when a line had come.
TEST_F(AdminWindowTest, SelectionStaysOnItsRowsWhenLinesArrive) {
  Open();
  table_->setCurrentIndex(table_->model()->index(1, 0));
  QTest::keyClick(table_, Qt::Key_Down, Qt::ShiftModifier);
  world_.platform.files.PutMore(path_, "1700009999,HOST,system,A,new\r\n");
  form_->UpgradeGrid();
  EXPECT_EQ(form_->EventList.Row, 3);
  EXPECT_EQ(form_->EventList.RowSel, 4);
  EXPECT_EQ(table_->currentIndex().row(), 3);
}

// The keyboard went to the next control with every poll that brought lines.
TEST_F(AdminWindowTest, GridKeepsTheKeyboardWhileALoadRunsAndTakesNoKey) {
  Open();
  table_->setFocus();
  table_->setCurrentIndex(table_->model()->index(5, 0));
  form_->EventList.enabled = false;
  EXPECT_TRUE(table_->hasFocus());
  QTest::keyClick(table_, Qt::Key_Down);
  QTest::mouseClick(table_->viewport(), Qt::LeftButton, {}, QPoint(20, 5));
  EXPECT_EQ(table_->currentIndex().row(), 5);
  form_->EventList.enabled = true;
  QTest::keyClick(table_, Qt::Key_Down);
  EXPECT_EQ(table_->currentIndex().row(), 6);
}

TEST_F(AdminWindowTest, KeyboardGoesAlongWhenOneGridTakesTheOthersPlace) {
  Open();
  auto* const filtered = The<QTableView>("FEvnList");
  form_->filter.ChangeGrids();
  EXPECT_TRUE(filtered->isVisible());
  EXPECT_TRUE(filtered->hasFocus());
  EXPECT_EQ(filtered->geometry(), table_->geometry());
  form_->filter.RestoreGrids();
  EXPECT_FALSE(filtered->isVisible());
  EXPECT_TRUE(table_->hasFocus());
}

TEST_F(AdminWindowTest, TabGoesFromTheEventsOverTheSplitterToTreeAndChart) {
  Open();
  table_->setFocus();
  for (const char* name : {"lblHDrag", "tvVCR", "Chrt"}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QLatin1String(name));
  }
}

TEST_F(AdminWindowTest, WholeDescriptionIsInTheTipAsPlainText) {
  Open();
  const QModelIndex cell = table_->model()->index(0, admin::kColDescription);
  EXPECT_TRUE(cell.data(Qt::ToolTipRole).toString().contains(QStringLiteral("&lt;b&gt;event&lt;/b&gt; 300")));
}

// Painted at every fiftieth line, a load took a hundred times as long.
TEST(PanelTest, TextThatChangesThousandsOfTimesIsShownAFewTimesAndAtLastAsItIs) {
  widgets::Panel panel("RecCnt");
  const std::unique_ptr<QLabel> label(MakePanel(panel, QStringLiteral("Record Count")));
  panel.text = std::string("first");
  EXPECT_EQ(label->text(), QStringLiteral("first"));
  int shown = 0;
  QString seen = label->text();
  QElapsedTimer clock;
  clock.start();
  for (int i = 1; i <= 5000; ++i) {
    panel.text = std::to_string(i);
    if (i % 100 == 0) QApplication::processEvents();
    if (label->text() != seen) ++shown;
    seen = label->text();
  }
  EXPECT_LE(shown, clock.elapsed() / 50 + 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return label->text() == QStringLiteral("5000"); }, 60'000));
  EXPECT_EQ(label->accessibleName(), QStringLiteral("Record Count: 5000"));
}

TEST(PanelTest, ProgressIsSeenAboveNothingAndEndsAtNothing) {
  widgets::ProgressBar bar("DynamicPictureBox");
  QWidget parent;
  QProgressBar* const widget = MakeProgressBar(bar, QStringLiteral("Progress"));
  widget->setParent(&parent);
  EXPECT_TRUE(widget->isHidden());
  bar.value = 40;
  EXPECT_FALSE(widget->isHidden());
  EXPECT_EQ(widget->value(), 40);
  bar.value = 0;
  EXPECT_TRUE(QTest::qWaitFor([&] { return widget->isHidden(); }, 60'000));
}

}  // namespace
}  // namespace zendrix::qt
