#include <gmock/gmock.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "core/about_window.h"
#include "core/message_window.h"
#include "core/splash.h"
#include "qt/qt_form_host.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

class QtFormHostTest : public ::testing::Test {
 protected:
  QtFormHostTest() { world_.state.UseHost(host_); }

  static QWidget* WindowOf(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->objectName() == QLatin1String(name) && window->isVisible()) return window;
    return nullptr;
  }
  // Windows of this name, shown or waiting to be destroyed.
  static int WindowsLeft(const char* name) {
    int count = 0;
    for (const QWidget* window : QApplication::topLevelWidgets())
      count += window->objectName() == QLatin1String(name);
    return count;
  }
  // Runs `act` when the modal window of this name is on the screen.
  void WhileModal(const char* name, std::function<void(QWidget&)> act) {
    auto* again = new QTimer(&anchor_);
    QObject::connect(again, &QTimer::timeout, again, [=] {
      QWidget* const window = QApplication::activeModalWidget();
      if (!window || window->objectName() != QLatin1String(name)) return;
      again->deleteLater();
      act(*window);
    });
    again->start(1);
  }

  QObject anchor_;
  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  QtFormHost host_{{guard_, pictures_, theme_}};
};

TEST_F(QtFormHostTest, UnloadedFormHasItsWindowUntilTheEventLoopHasDestroyedIt) {
  core::frmAbout about(world_.state);
  EXPECT_FALSE(host_.HasWindow(about));
  host_.Show(about);
  EXPECT_TRUE(host_.HasWindow(about));
  about.Unload();
  EXPECT_TRUE(host_.HasWindow(about));
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(host_.HasWindow(about));
}

TEST_F(QtFormHostTest, ModalWindowShowsTheLoadedFormAndEndsWithItsButton) {
  widgets::Form other(world_.state.forms, "frmOther");
  core::frmAbout about(world_.state);
  QPointer<QWidget> seen;
  WhileModal("frmAbout", [&](QWidget& window) {
    seen = &window;
    EXPECT_FALSE(other.enabled);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("About Korvessa Zendrix Home Edition"));
    // Wide and high enough for texts that were not there when the window was made.
    for (const QLabel* label : window.findChildren<QLabel*>()) {
      if (!label->wordWrap()) continue;
      EXPECT_GE(label->height(), label->heightForWidth(label->width()));
    }
    QTest::mouseClick(window.findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
  });
  host_.ShowModal(about);
  EXPECT_FALSE(about.loaded());
  EXPECT_TRUE(other.enabled);
  EXPECT_TRUE(seen.isNull()) << "the form may be destroyed now";
}

TEST_F(QtFormHostTest, EscapeUnloadsADialog) {
  core::frmAbout about(world_.state);
  WhileModal("frmAbout", [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); });
  host_.ShowModal(about);
  EXPECT_FALSE(about.loaded());
}

TEST_F(QtFormHostTest, WindowOfAFormThatUnloadsUnderItsOwnBoxGoesWhenTheBoxHasGone) {
  core::frmMsg message(world_.state);
  message.Message = "One.";
  WhileModal("frmMsg", [&](QWidget&) {
    WhileModal("frmAbout", [&](QWidget& inner) {
      message.Unload();
      EXPECT_EQ(WindowOf("frmMsg"), nullptr);
      inner.close();
    });
    core::frmAbout about(world_.state);
    host_.ShowModal(about);
  });
  message.Display();
  EXPECT_FALSE(message.loaded());
}

// It waited for the event loop, while its form, on the stack, was destroyed on the way out of the exception.
TEST_F(QtFormHostTest, WindowOfAMessageThatCannotOpenGoesBeforeItsForm) {
  core::frmMsg message(world_.state);
  message.Seconds = 40;  // more than its timer takes
  EXPECT_THROW(message.Display(), core::RunTimeError);
  EXPECT_TRUE(message.loaded());
  EXPECT_EQ(WindowsLeft("frmMsg"), 0);
}

TEST_F(QtFormHostTest, WindowOfAModalFormThatUnloadsWhileItLoadsGoesBeforeItsForm) {
  struct Hasty : core::frmAbout {
    using frmAbout::frmAbout;
    void OnLoad() override { Unload(); }
  };
  Hasty about(world_.state);
  host_.ShowModal(about);
  EXPECT_EQ(WindowsLeft("frmAbout"), 0);
}

TEST_F(QtFormHostTest, ShownWindowFollowsItsForm) {
  core::frmSplash splash(world_.state.forms, "Korvessa Zendrix Home Edition");
  host_.Show(splash);
  splash.repaint.Raise();
  QPointer<QWidget> window = WindowOf("splash");
  ASSERT_FALSE(window.isNull());
  EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("lblProductName"))->text(),
            QStringLiteral("Korvessa Zendrix Home Edition"));
  splash.visible = false;
  EXPECT_FALSE(window->isVisible());
  host_.Show(splash);
  EXPECT_TRUE(window->isVisible()) << "the same window again";
  splash.Unload();
  EXPECT_FALSE(window->isVisible());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(window.isNull());
}

// What the desktop is asked for; whether it obeys is the desktop's business.
TEST_F(QtFormHostTest, WindowThatTakesNoFocusAsksForNone) {
  core::frmAbout pop_up(world_.state);
  widgets::ShowOptions quiet;
  quiet.take_focus = false;
  quiet.on_top = true;
  host_.Show(pop_up, quiet);
  QWidget* const window = WindowOf("frmAbout");
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->testAttribute(Qt::WA_ShowWithoutActivating));
  EXPECT_TRUE(window->windowFlags() & Qt::WindowDoesNotAcceptFocus);
  EXPECT_TRUE(window->windowFlags() & Qt::WindowStaysOnTopHint);
}

TEST_F(QtFormHostTest, FormWithoutALineInTheTableIsAMistakeThatIsTold) {
  widgets::Form stranger(world_.state.forms, "frmStranger");
  EXPECT_THROW(host_.Show(stranger), std::logic_error);
}

}  // namespace
}  // namespace zendrix::qt
