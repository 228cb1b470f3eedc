#include <gmock/gmock.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTabBar>
#include <QTest>

#include "admin/frm_options.h"
#include "qt/qt_form_host.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

using ::testing::SizeIs;

class OptionsDialogTest : public ::testing::Test {
 protected:
  OptionsDialogTest() {
    world_.state.UseHost(host_);
    world_.platform.files.Put(reg_ini_.IniPath(), "[Monitors]\r\n<b>System</b>=1\r\nMemory=0\r\n");
    reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
    host_.Show(form_);
    for (QWidget* each : QApplication::topLevelWidgets())
      if (each->objectName() == QLatin1String("frmOptions")) window_ = each;
    window_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_, 60'000));
  }
  template <class Widget>
  Widget* The(const char* name) {
    auto* const found = window_->findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void ShowPage(int page) { The<QTabBar>("tbsOptions")->setCurrentIndex(page); }
  std::size_t BoxesShown() { return world_.platform.message_boxes.shown.size(); }

  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  widgets::Screen screen_;
  store::CUList met_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  QtFormHost host_{{guard_, pictures_, theme_}};
  admin::frmOptions form_{{world_.state, world_.log, reg_ini_, screen_, met_, [] {}}};
  QWidget* window_ = nullptr;
};

TEST_F(OptionsDialogTest, StandsInTheMiddleOfTheScreenWithItsTitleTabsAndTips) {
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("Options"));
  const QPoint apart = window_->frameGeometry().center() - window_->screen()->availableGeometry().center();
  EXPECT_LE(apart.manhattanLength(), 60);
  auto* const tabs = The<QTabBar>("tbsOptions");
  ASSERT_EQ(tabs->count(), 4);
  EXPECT_EQ(tabs->tabText(2), QStringLiteral("TimeLine"));
  EXPECT_TRUE(tabs->tabToolTip(2).contains(QStringLiteral("Change Options for TimeLine view")));
}

TEST_F(OptionsDialogTest, ItsSizeStaysWhicheverPageIsOnShow) {
  const QSize size = window_->sizeHint();
  for (int page = 0; page < admin::kOptionsPages; ++page) {
    ShowPage(page);
    EXPECT_EQ(window_->sizeHint(), size) << page;
    for (int i = 0; i < admin::kOptionsPages; ++i)
      EXPECT_EQ(The<QWidget>(("picOptions(" + std::to_string(i) + ")").c_str())->isVisible(), i == page);
  }
}

TEST_F(OptionsDialogTest, ControlTabGoesToTheNextPageFromAnywhereOnIt) {
  The<QListView>("Monitors")->setFocus();
  auto* const tabs = The<QTabBar>("tbsOptions");
  for (const int page : {1, 2, 3, 0}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(tabs->currentIndex(), page);
    EXPECT_EQ(QApplication::focusWidget(), tabs);
  }
}

TEST_F(OptionsDialogTest, FieldThatKeepsTheKeyboardKeepsItsPage) {
  ShowPage(admin::kTimeLinePage);
  auto* const slots_field = The<QLineEdit>("NSlot");
  slots_field->setFocus(Qt::TabFocusReason);
  QTest::keyClicks(slots_field, QStringLiteral("51"));
  EXPECT_EQ(form_.NSlot.text.Get(), "51") << "the whole text was marked";
  QTest::keyClick(slots_field, Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(The<QTabBar>("tbsOptions")->currentIndex(), admin::kTimeLinePage);
  EXPECT_EQ(QApplication::focusWidget(), slots_field);
  EXPECT_EQ(BoxesShown(), 1u);
  ShowPage(admin::kAlertsPage);  // as an assistive program does, without moving the keyboard
  EXPECT_EQ(The<QTabBar>("tbsOptions")->currentIndex(), admin::kTimeLinePage);
  EXPECT_EQ(BoxesShown(), 2u);
}

TEST_F(OptionsDialogTest, EnterIsOkAndAsksTheFieldFirst) {
  ShowPage(admin::kTimeLinePage);
  auto* const slots_field = The<QLineEdit>("NSlot");
  slots_field->setFocus(Qt::TabFocusReason);
  QTest::keyClicks(slots_field, QStringLiteral("0"));
  QTest::keyClick(slots_field, Qt::Key_Return);
  EXPECT_TRUE(form_.loaded());
  EXPECT_EQ(BoxesShown(), 1u);
  slots_field->selectAll();
  QTest::keyClicks(slots_field, QStringLiteral("9"));
  QTest::keyClick(slots_field, Qt::Key_Return);
  EXPECT_FALSE(form_.loaded());
  EXPECT_EQ(world_.state.settings.NSlots, 9);
}

TEST_F(OptionsDialogTest, CancelAndEscapeAskNoField) {
  ShowPage(admin::kAlertsPage);
  auto* const address = The<QLineEdit>("Email");
  address->setFocus(Qt::TabFocusReason);
  QTest::keyClicks(address, QStringLiteral("nobody"));
  QTest::mouseClick(The<QPushButton>("cmdCancel"), Qt::LeftButton);
  EXPECT_FALSE(form_.loaded());
  EXPECT_EQ(BoxesShown(), 0u);
}

TEST_F(OptionsDialogTest, EscapeClosesIt) {
  QTest::keyClick(window_, Qt::Key_Escape);
  EXPECT_FALSE(form_.loaded());
}

TEST_F(OptionsDialogTest, KeyThatThePortTakesWithoutAChangeTouchesTheMail) {
  ShowPage(admin::kAlertsPage);
  auto* const port = The<QLineEdit>("Port");
  port->setFocus(Qt::TabFocusReason);
  QTest::keyClick(port, Qt::Key_Home);
  QTest::keyClick(port, Qt::Key_X);
  EXPECT_FALSE(form_.mail.SmtpDirty);
  QTest::keyClick(port, Qt::Key_Backspace);
  EXPECT_EQ(form_.mail.Port.text.Get(), "25");
  EXPECT_TRUE(form_.mail.SmtpDirty);
}

TEST_F(OptionsDialogTest, ColourButtonFillsItsBoxAndTellsAReader) {
  ShowPage(admin::kEventViewPage);
  world_.platform.colour_dialogs.Choose(0x0000FF);
  auto* const change = The<QPushButton>("Change2");
  auto* const box = The<QWidget>("SSCol");
  EXPECT_EQ(change->accessibleDescription(), QStringLiteral("#8080FF"));
  change->click();
  EXPECT_EQ(change->accessibleName(), QStringLiteral("Change Selected Color"));
  EXPECT_EQ(change->accessibleDescription(), QStringLiteral("#FF0000"));
  EXPECT_EQ(box->accessibleDescription(), QStringLiteral("#FF0000"));
  EXPECT_EQ(box->grab().toImage().pixelColor(box->rect().center()), QColor(Qt::red));
}

TEST_F(OptionsDialogTest, MonitorsAndColumnsAreTickedByKeyboard) {
  auto* const monitors = The<QListView>("Monitors");
  EXPECT_EQ(monitors->model()->index(0, 0).data().toString(), QStringLiteral("<b>System</b>"));
  monitors->setFocus();
  QTest::keyClick(monitors, Qt::Key_End);
  QTest::keyClick(monitors, Qt::Key_Space);
  EXPECT_EQ(form_.Monitors.Print(), "[x] <b>System</b>\n[x] Memory\n");
  The<QPushButton>("cmdApply")->click();
  EXPECT_TRUE(form_.loaded());
  EXPECT_EQ(world_.state.settings.MonitorStates.at(1).second, "1");
}

TEST_F(OptionsDialogTest, EverythingThatTakesTheKeyboardHasAName) {
  for (int page = 0; page < admin::kOptionsPages; ++page) {
    ShowPage(page);
    int named = 0;
    for (const QWidget* widget : window_->findChildren<QWidget*>()) {
      if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible() || widget->objectName().isEmpty() ||
          widget->objectName().startsWith(QLatin1String("qt_")))
        continue;
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
      ++named;
    }
    EXPECT_GE(named, 5) << page;
  }
  for (const QLabel* label : window_->findChildren<QLabel*>()) EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

}  // namespace
}  // namespace zendrix::qt
