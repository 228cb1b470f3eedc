#include <gmock/gmock.h>

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QWindow>

#include "home/frm_notify_msg.h"
#include "home/frm_pop_up_msg.h"
#include "qt/qt_form_host.h"
#include "settings/reg_ini.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

constexpr int kPatienceMs = 60'000;

class NoWindow final : public home::MainWindow {
 public:
  explicit NoWindow(widgets::FormList& forms) : main(forms, "frmNewUI") {}
  widgets::Form& form() override { return main; }
  bool Loading() const override { return false; }
  bool InSight() const override { return false; }
  void ShowAlert(const std::string& key) override { led_to = key; }
  widgets::Form main;
  std::string led_to = "nowhere";
};

class PopUpWindowTest : public ::testing::Test {
 protected:
  PopUpWindowTest() { world_.state.UseHost(host_); }

  template <class Form>
  QWidget* Show(Form& form) {
    widgets::ShowOptions options;
    options.owner = &main_.main;
    options.on_top = true;
    options.take_focus = false;
    host_.Show(form, options);
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->objectName() == QString::fromStdString(form.name()) && window->isVisible()) return window;
    return nullptr;
  }

  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  settings::MiscSettings misc_{world_.state, reg_ini_};
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  NoWindow main_{world_.state.forms};
  QtFormHost host_{{guard_, pictures_, theme_}};
};

TEST_F(PopUpWindowTest, WindowComesWithoutTheKeyboardAndLetsItInLater) {
  home::frmPopUpMsg form(world_.state, world_.log, misc_, main_);
  QWidget* const window = Show(form);
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->testAttribute(Qt::WA_ShowWithoutActivating));
  EXPECT_TRUE(window->windowHandle()->flags() & Qt::WindowDoesNotAcceptFocus);
  EXPECT_TRUE(window->windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(window->windowHandle()->transientParent(), nullptr) << "it would be minimised with its owner";
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return !(window->windowHandle()->flags() & Qt::WindowDoesNotAcceptFocus); }, kPatienceMs));
  EXPECT_TRUE(window->isVisible());
}

TEST_F(PopUpWindowTest, NoButtonIsTheDefaultOne) {
  home::frmPopUpMsg form(world_.state, world_.log, misc_, main_);
  QWidget* const window = Show(form);
  const auto buttons = window->findChildren<QPushButton*>();
  EXPECT_EQ(buttons.size(), 2);
  for (const QPushButton* button : buttons) EXPECT_FALSE(button->isDefault() || button->autoDefault());
  QTest::keyClick(window, Qt::Key_Return);
  EXPECT_TRUE(form.loaded());
  EXPECT_EQ(main_.led_to, "nowhere");
}

TEST_F(PopUpWindowTest, EverythingIsReachedByTheKeyboardAndHasAName) {
  home::frmPopUpMsg form(world_.state, world_.log, misc_, main_);
  QWidget* const window = Show(form);
  for (const char* name : {"chkNotify", "lblDetails", "lblClose"}) {
    auto* const control = window->findChild<QWidget*>(QLatin1String(name));
    ASSERT_NE(control, nullptr) << name;
    EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus) << name;
    EXPECT_FALSE(control->accessibleName().isEmpty()) << name;
  }
}

TEST_F(PopUpWindowTest, EscapeDoesWhatTheCloseBoxDoes) {
  for (const bool escape : {true, false}) {
    home::frmPopUpMsg form(world_.state, world_.log, misc_, main_);
    QWidget* const window = Show(form);
    window->findChild<QCheckBox*>(QStringLiteral("chkNotify"))->click();
    const bool was = world_.state.settings.PopOrigHigh;
    if (escape)
      QTest::keyClick(window, Qt::Key_Escape);
    else
      window->close();
    EXPECT_FALSE(form.loaded());
    EXPECT_NE(world_.state.settings.PopOrigHigh, was);
  }
}

TEST_F(PopUpWindowTest, TextOfAnEventIsPlainAndTheWindowGrowsWithIt) {
  home::frmPopUpMsg form(world_.state, world_.log, misc_, main_);
  QWidget* const window = Show(form);
  const int height = window->height();
  std::string words;
  for (int i = 0; i < 40; ++i) words += "words that wrap ";
  form.lblMsg.caption = "<b>one</b>\r\n" + words;
  auto* const label = window->findChild<QLabel*>(QStringLiteral("lblMsg"));
  EXPECT_EQ(label->textFormat(), Qt::PlainText);
  EXPECT_EQ(label->text(), QStringLiteral("<b>one</b>\n") + QString::fromStdString(words));
  EXPECT_TRUE(QTest::qWaitFor([&] { return window->height() > height; }, kPatienceMs));
  EXPECT_GE(label->height(), label->heightForWidth(label->width()));
  EXPECT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(window->geometry()));
}

TEST_F(PopUpWindowTest, WindowsStandInTheCornerOneAboveTheOther) {
  home::frmNotifyMsg notice(world_.state, misc_);
  QWidget* const below = Show(notice);
  home::frmPopUpMsg pop_up(world_.state, world_.log, misc_, main_);
  QWidget* const above = Show(pop_up);
  const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
  for (const QWidget* window : {below, above}) {
    EXPECT_TRUE(free.contains(window->geometry()));
    EXPECT_LT(free.right() - window->geometry().right(), 40);
  }
  EXPECT_LT(free.bottom() - below->geometry().bottom(), 80);
  EXPECT_LT(above->geometry().bottom(), below->geometry().top());
}

TEST_F(PopUpWindowTest, ButtonsOfTheNoticeReachTheForm) {
  world_.state.settings.PopNotifyMs = true;
  home::frmNotifyMsg notice(world_.state, misc_);
  QPointer<QWidget> window = Show(notice);
  window->findChild<QCheckBox*>(QStringLiteral("chkNotify"))->click();
  EXPECT_EQ(window->windowTitle(), QStringLiteral("Korvessa notification"));
  QTest::mouseClick(window->findChild<QPushButton*>(QStringLiteral("lblClose")), Qt::LeftButton);
  EXPECT_FALSE(notice.loaded());
  EXPECT_FALSE(world_.state.settings.PopNotifyMs);
}

// A modal window shuts out whatever does not belong to it, the pop-up with its way out among them.
TEST_F(PopUpWindowTest, PopUpThatComesOverAModalWindowCanBeUsed) {
  QDialog modal;
  modal.setWindowModality(Qt::ApplicationModal);
  modal.show();
  home::frmPopUpMsg form(world_.state, world_.log, misc_, main_);
  QWidget* const window = Show(form);
  EXPECT_EQ(window->windowHandle()->transientParent(), modal.windowHandle());
  QTest::mouseClick(window->findChild<QPushButton*>(QStringLiteral("lblClose")), Qt::LeftButton);
  EXPECT_FALSE(form.loaded());
}

}  // namespace
}  // namespace zendrix::qt
