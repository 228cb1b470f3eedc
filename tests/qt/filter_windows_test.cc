#include <gmock/gmock.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include "admin/frm_main.h"
#include "qt/admin/frm_main.h"
#include "qt/qt_form_host.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

class FilterWindowsTest : public ::testing::Test {
 protected:
  FilterWindowsTest() {
    world_.state.UseHost(host_);
    std::string lines;
    for (int i = 0; i < 8; ++i)
      lines += std::to_string(1'795'251'900 + i) + (i % 2 == 0 ? ",HOST,System,A," : ",HOST,Tcp Port,R,") +
               (i % 4 == 0 ? "<b>even</b>\r\n" : "odd\r\n");
    world_.platform.files.Put(world_.InFolder("KorvessaMonitoring.kvl"), lines);
    reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
    reg_ini_.ReadRegInfo();
    host_.Show(form_);
    main_ = Window("frmMain");
  }
  static QWidget* Window(const char* name) {
    for (QWidget* each : QApplication::topLevelWidgets())
      if (each->objectName() == QLatin1String(name) && each->isVisible()) return each;
    ADD_FAILURE() << name;
    return nullptr;
  }
  template <class Widget>
  static Widget* The(QWidget* window, const char* name) {
    auto* const found = window->findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  QWidget* OpenFilters() {
    form_.filter.MnTQuery_Click();
    QWidget* const window = Window("frmFilters");
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window, 60'000));
    return window;
  }
  // Opens the dialog and does this in it; it is closed behind.
  void InFind(const std::function<void(QWidget*)>& act) {
    QTimer::singleShot(0, qApp, [&] {
      QWidget* const window = Window("frmFind");
      window->activateWindow();
      EXPECT_TRUE(QTest::qWaitForWindowActive(window, 60'000));
      act(window);
      window->close();
    });
    form_.find.MnEFind_Click();
  }
  // In the cell's lower right corner, where it has no text.
  static QColor ColourAt(QTableView* table, int row, int col) {
    const QRect cell = table->visualRect(table->model()->index(row, col)) & table->viewport()->rect();
    return table->viewport()->grab().toImage().pixelColor(cell.bottomRight() - QPoint(3, 3));
  }
  static void ExpectNamesAndPlainTexts(QWidget* window) {
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
      if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible() || widget->objectName().isEmpty() ||
          widget->objectName().startsWith(QLatin1String("qt_")))
        continue;
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
    }
    for (const QLabel* label : window->findChildren<QLabel*>())
      EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
  }

  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  widgets::Screen screen_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  QtFormHost host_{{guard_, pictures_, theme_}};
  admin::frmMain form_{{world_.state, world_.log, reg_ini_, screen_, GridMetrics()}};
  QWidget* main_ = nullptr;
};

TEST_F(FilterWindowsTest, OneOfTheTwoGridsIsOnShow) {
  auto* const all = The<QTableView>(main_, "EventList");
  auto* const filtered = The<QTableView>(main_, "FEvnList");
  EXPECT_TRUE(all->isVisible());
  EXPECT_FALSE(filtered->isVisible());
  QWidget* const window = OpenFilters();
  QTest::keyClicks(The<QLineEdit>(window, "Desc"), QStringLiteral("EVEN"));
  QTest::mouseClick(The<QPushButton>(window, "Apply"), Qt::LeftButton);
  EXPECT_FALSE(all->isVisible());
  EXPECT_TRUE(filtered->isVisible());
  EXPECT_EQ(filtered->model()->rowCount(), 2);
  EXPECT_TRUE(window->isMinimized());
  EXPECT_EQ(form_.RecCnt.text.Get(), "2 records selected (Filtered)");
  form_.filter.MnTQuery_Click();
  EXPECT_FALSE(window->isMinimized());
  QTest::mouseClick(The<QPushButton>(window, "ResetCommand"), Qt::LeftButton);
  EXPECT_TRUE(all->isVisible());
  EXPECT_FALSE(filtered->isVisible());
  EXPECT_EQ(form_.filter.OpenDialog(), nullptr);
}

TEST_F(FilterWindowsTest, FilterIsSetByKeyboardAlone) {
  QWidget* const window = OpenFilters();
  EXPECT_FALSE(The<QPushButton>(window, "Apply")->isEnabled());
  auto* const monitors = The<QComboBox>(window, "MonitorCombo");
  monitors->setFocus();
  QTest::keyClick(monitors, Qt::Key_Down);
  EXPECT_EQ(form_.filter.OpenDialog()->MonitorCombo.text(), "System");
  QTest::keyClick(monitors, Qt::Key_Return);
  EXPECT_TRUE(form_.filter.Shown());
  EXPECT_EQ(form_.filter.FEvnList.DataRows(), 4);
}

TEST_F(FilterWindowsTest, MomentIsPickedAndItsFellowCompletedOnTheScreenToo) {
  QWidget* const window = OpenFilters();
  The<QCheckBox>(window, "ToDate")->click();
  form_.filter.OpenDialog()->ToDate.Pick(1'795'251'903);
  QTest::mouseClick(The<QPushButton>(window, "Apply"), Qt::LeftButton);
  EXPECT_EQ(form_.filter.FEvnList.DataRows(), 1);
  EXPECT_TRUE(The<QCheckBox>(window, "FromDate")->isChecked());
}

TEST_F(FilterWindowsTest, EverythingInTheFilterHasANameAndNothingIsMarkup) {
  ExpectNamesAndPlainTexts(OpenFilters());
}

TEST_F(FilterWindowsTest, CloseBoxEndsTheFilter) {
  QWidget* const window = OpenFilters();
  QTest::keyClicks(The<QLineEdit>(window, "Desc"), QStringLiteral("odd"));
  QTest::keyClick(The<QLineEdit>(window, "Desc"), Qt::Key_Return);
  EXPECT_TRUE(form_.filter.Shown());
  window->close();
  EXPECT_FALSE(form_.filter.Shown());
  EXPECT_FALSE(form_.filter.TbarFilter.checked);
}

TEST_F(FilterWindowsTest, EnterSearchesAndTheHitIsMarkedInTheGrid) {
  auto* const all = The<QTableView>(main_, "EventList");
  InFind([&](QWidget* window) {
    auto* const text = The<QLineEdit>(window, "txtFind");
    EXPECT_TRUE(text->hasFocus());
    QTest::keyClicks(text, QStringLiteral("<B>EVEN"));
    QTest::keyClick(text, Qt::Key_Return);
    EXPECT_EQ(all->currentIndex().row(), 3);
    EXPECT_EQ(ColourAt(all, 3, admin::kColDescription), QColor(0xC0, 0xC0, 0xC0));
    EXPECT_NE(ColourAt(all, 3, admin::kColMonitor), QColor(0xC0, 0xC0, 0xC0));
    The<QCheckBox>(window, "MatchC")->click();
    QTest::keyClick(text, Qt::Key_F3);
    ExpectNamesAndPlainTexts(window);
  });
  EXPECT_EQ(world_.platform.message_boxes.Texts(), std::vector<std::string>{"\"<B>EVEN\"  Not Found."});
}

TEST_F(FilterWindowsTest, FindStaysLoadedWhenItIsClosedAndSearchesOn) {
  InFind(
      [&](QWidget* window) { QTest::keyClicks(The<QLineEdit>(window, "txtFind"), QStringLiteral("odd")); });
  ASSERT_NE(form_.find.Dialog(), nullptr);
  EXPECT_FALSE(form_.find.Dialog()->visible);
  form_.find.MnEFindN_Click();
  EXPECT_EQ(form_.EventList.Row.Get(), 1);
  form_.find.MnEFindN_Click();
  EXPECT_EQ(form_.EventList.Row.Get(), 2);
  InFind([&](QWidget* window) {
    EXPECT_EQ(The<QLineEdit>(window, "txtFind")->text(), QStringLiteral("odd"));
    QTest::keyClick(window, Qt::Key_Escape);
  });
  EXPECT_TRUE(form_.enabled);
}

// What was typed went to the list of hosts, which showed no sign of having the keyboard.
TEST_F(FilterWindowsTest, KeyboardBeginsInTheDescription) {
  QWidget* const window = OpenFilters();
  ASSERT_NE(window->focusWidget(), nullptr);
  QTest::keyClicks(window->focusWidget(), QStringLiteral("odd"));
  EXPECT_EQ(The<QLineEdit>(window, "Desc")->text(), QStringLiteral("odd"));
}

}  // namespace
}  // namespace zendrix::qt
