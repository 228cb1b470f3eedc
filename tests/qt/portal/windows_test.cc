// The windows of the new version, the tour and the survey, as the form host shows them.
#include <gmock/gmock.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include "home/frm_new_update.h"
#include "home/frm_survey.h"
#include "home/frm_tour.h"
#include "qt/qt_form_host.h"
#include "settings/reg_ini.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

class PortalWindowsTest : public ::testing::Test {
 protected:
  PortalWindowsTest() { world_.state.UseHost(host_); }

  QWidget* WindowOf(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->objectName() == QLatin1String(name) && window->isVisible()) return window;
    return nullptr;
  }
  // What the keyboard reaches from the window's first stop, by name.
  static QStringList Stops(QWidget& window) {
    QStringList names;
    for (QWidget* at = window.nextInFocusChain(); at != &window; at = at->nextInFocusChain())
      if (at->isVisibleTo(&window) && at->isEnabledTo(&window) && (at->focusPolicy() & Qt::TabFocus)) {
        names << at->objectName();
        EXPECT_FALSE(at->accessibleName().isEmpty()) << at->objectName().toStdString();
      }
    return names;
  }

  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  settings::MiscSettings misc_{world_.state, reg_ini_};
  widgets::Screen screen_;
  control::AgentControl agent_{world_.state, screen_};
  widgets::Form main_{world_.state.forms, "frmNewUI"};
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  home::frmNewUpdate update_{{world_.state, world_.log, misc_, agent_, main_}};
  home::frmTour tour_{{world_.state, world_.log, misc_, screen_}};
  home::frmSurvey survey_{world_.state, "http://127.0.0.1:9/"};
  QtFormHost host_{{guard_, pictures_, theme_}};
};

TEST_F(PortalWindowsTest, UpdateIsAboveAllAndNoKeyInstallsByChance) {
  widgets::ShowOptions above_all;
  above_all.on_top = true;
  host_.Show(update_, above_all);
  QWidget* const window = WindowOf("frmNewUpdate");
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_THAT(Stops(*window), ::testing::UnorderedElementsAre("chkDontAsk", "lblYes", "lblNo"));
  EXPECT_EQ(window->findChild<QCheckBox*>(QStringLiteral("chkDontAsk"))->isChecked(), true);
  for (const QLabel* label : window->findChildren<QLabel*>())
    EXPECT_TRUE(!label->wordWrap() || label->height() >= label->heightForWidth(label->width()));
  QTest::keyClick(window, Qt::Key_Return);
  EXPECT_THAT(world_.platform.shell.installers, ::testing::IsEmpty());
  QTest::keyClick(window, Qt::Key_Escape);
  EXPECT_FALSE(update_.loaded());
  EXPECT_THAT(world_.platform.shell.installers, ::testing::IsEmpty());
}

TEST_F(PortalWindowsTest, UpdateButtonsActAndTellWhatGoesOn) {
  host_.Show(update_);
  QWidget* const window = WindowOf("frmNewUpdate");
  std::vector<std::string> texts;
  const auto link = update_.repaint.Connect(
      [&] { texts.push_back(window->findChild<QLabel*>(QStringLiteral("lblMsg"))->text().toStdString()); });
  QTest::mouseClick(window->findChild<QPushButton*>(QStringLiteral("lblYes")), Qt::LeftButton);
  EXPECT_EQ(world_.platform.shell.installers.size(), 1U);
  EXPECT_THAT(texts,
              ::testing::ElementsAre("Wait a moment please. Zendrix is preparing to install.",
                                     "Starting the Installer.", "Closing Korvessa Zendrix Home Edition."));
  EXPECT_FALSE(main_.loaded());
  world_.quiet.Take();
}

TEST_F(PortalWindowsTest, TourIsReachedByTheKeyboardAndEscapeClosesIt) {
  host_.Show(tour_);
  QWidget* const window = WindowOf("frmTour");
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->windowTitle(), QStringLiteral("Getting Started"));
  EXPECT_THAT(Stops(*window), ::testing::Contains("chkNO"));
  EXPECT_THAT(Stops(*window), ::testing::Not(::testing::Contains("bbutton")));
  tour_.WBr.CommandStateChange.Raise(widgets::PortalView::kBack, true);
  EXPECT_THAT(Stops(*window), ::testing::Contains("bbutton"));
  QTest::mouseClick(window->findChild<QCheckBox*>(QStringLiteral("chkNO")), Qt::LeftButton, {}, QPoint(8, 8));
  EXPECT_EQ(world_.state.settings.TTour, "Y");
  QTest::keyClick(window, Qt::Key_Escape);
  EXPECT_FALSE(tour_.loaded());
}

TEST_F(PortalWindowsTest, SurveyPaneFillsTheWindowAndFollowsItsSize) {
  host_.Show(survey_);
  QWidget* const window = WindowOf("frmSurvey");
  ASSERT_NE(window, nullptr);
  survey_.page.lblNoPage.visible = false;
  auto* const pane = window->findChild<QWidget*>(QStringLiteral("WBr"));
  for (const QSize& size : {QSize(500, 400), QSize(800, 600)}) {
    window->resize(size);
    QApplication::processEvents();
    EXPECT_EQ(pane->size(), window->size());
  }
}

}  // namespace
}  // namespace zendrix::qt
