// The small windows of the program's start and help, and what is asked of windows as such.
#include "core/about_window.h"
#include "core/message_window.h"
#include "core/splash.h"
#include "core/version.h"
#include "core/window_helpers.h"
#include "support/console_world.h"

namespace zendrix::core {
namespace {

using platform::BoxIcon;

class WindowsTest : public ::testing::Test {
 protected:
  // Displays a message for so many seconds, leaves it `open_ms` on the screen, and says whether it was still
  // there.
  bool StillOpenAfter(std::uint8_t seconds, std::int64_t open_ms) {
    frmMsg message(world_.state);
    message.Seconds = seconds;
    bool open = false;
    world_.host.WhileOpen("frmMsg", [&](widgets::Form& shown) {
      world_.platform.timers.Advance(open_ms);
      open = shown.loaded();
    });
    message.Display();
    return open;
  }

  testing::ConsoleWorld world_;
};

TEST_F(WindowsTest, SplashLoadsWithItsTitleVersionAndAnEmptyBar) {
  frmSplash splash(world_.state.forms, "Korvessa Zendrix Administrator");
  world_.state.host().Show(splash);
  EXPECT_TRUE(world_.state.forms.IsFormLoaded("frmSplash"));
  EXPECT_EQ(splash.lblProductName.caption.Get(), "Korvessa Zendrix Administrator");
  EXPECT_EQ(splash.lblVersion.caption.Get(), "Version " + std::to_string(kVersionMajor) + "." +
                                                 std::to_string(kVersionMinor) + ".0." +
                                                 std::to_string(kVersionRevision));
  EXPECT_EQ(splash.PBar.value.Get(), 0);
  EXPECT_FALSE(splash.lblCopyright.caption.Get().empty());
  EXPECT_FALSE(splash.lblWarranty.caption.Get().empty());
}

TEST_F(WindowsTest, SplashProgressReachesAnOpenSplash) {
  SetSplashProgress(world_.state.forms, 10);
  frmSplash splash(world_.state.forms, "title");
  SetSplashProgress(world_.state.forms, 42);
  EXPECT_EQ(splash.PBar.value.Get(), 42);
  SetSplashProgress(world_.state.forms, 101);
  EXPECT_EQ(splash.PBar.value.Get(), 100);
}

TEST_F(WindowsTest, SplashBeginsEmptyWhateverItsBarShowedBefore) {
  frmSplash splash(world_.state.forms, "title");
  splash.PBar.Show(42);
  world_.state.host().Show(splash);
  EXPECT_EQ(splash.PBar.value.Get(), 0);
  EXPECT_EQ(splash.title.Get(), "title");
}

TEST_F(WindowsTest, MessageShowsItsTextUntilOk) {
  frmMsg message(world_.state);
  message.Title = "A title";
  message.Message = "A message";
  world_.host.WhileOpen("frmMsg", [&](widgets::Form&) {
    EXPECT_TRUE(message.visible);
    EXPECT_EQ(message.title.Get(), "A title");
    EXPECT_EQ(message.lblMsg.caption.Get(), "A message");
    EXPECT_TRUE(world_.state.forms.IsFormLoaded("frmMsg"));
    message.cmdOK_Click();
    EXPECT_FALSE(message.loaded());
  });
  message.Display();
  EXPECT_FALSE(world_.state.forms.IsFormLoaded("frmMsg"));
  EXPECT_TRUE(world_.platform.message_boxes.shown.empty());
}

TEST_F(WindowsTest, MessageWithoutATitleTakesTheProductsName) {
  frmMsg message(world_.state);
  world_.host.WhileOpen(
      "frmMsg", [&](widgets::Form& shown) { EXPECT_EQ(shown.title.Get(), "Korvessa Zendrix Home Edition"); });
  message.Display();
}

TEST_F(WindowsTest, MessageClosesByItselfAfterItsSeconds) {
  EXPECT_TRUE(StillOpenAfter(30, 29'999));
  EXPECT_FALSE(StillOpenAfter(30, 30'000));
  EXPECT_FALSE(StillOpenAfter(32, 32'000));
}

TEST_F(WindowsTest, MessageOfZeroSecondsNeverClosesByItself) {
  EXPECT_TRUE(StillOpenAfter(0, 1'000'000));
}

class TooManySeconds : public WindowsTest, public ::testing::WithParamInterface<int> {};

TEST_P(TooManySeconds, OverflowTheTimersInterval) {
  frmMsg message(world_.state);
  message.Seconds = static_cast<std::uint8_t>(GetParam());
  try {
    message.Display();
    FAIL() << "nothing was raised";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.number, 6);
  }
}
INSTANTIATE_TEST_SUITE_P(Above32, TooManySeconds, ::testing::Values(33, 64, 65, 66, 255));

TEST_F(WindowsTest, NoTimerIsLeftWhenAMessageWasClosedEarly) {
  frmMsg message(world_.state);
  message.Seconds = 30;
  world_.host.WhileOpen("frmMsg", [&](widgets::Form&) { message.cmdOK_Click(); });
  message.Display();
  EXPECT_EQ(world_.platform.timers.RunningTimers(), 0);
}

TEST_F(WindowsTest, MessageShownInAnyOtherWaySaysSoAndGoes) {
  frmMsg message(world_.state);
  world_.state.host().Show(message);
  ASSERT_EQ(world_.platform.message_boxes.shown.size(), 1U);
  const auto& box = world_.platform.message_boxes.shown[0];
  EXPECT_EQ(box.title, "frmMsg");
  EXPECT_EQ(box.text, "invalid way to show this Dialog Box.\r\nMust be called using the Display method");
  EXPECT_EQ(box.icon, BoxIcon::kStop);
  EXPECT_FALSE(message.loaded());
}

TEST_F(WindowsTest, AboutStartsTheSystemInformationTool) {
  world_.platform.host.system_information_tool = "/usr/bin/hardinfo";
  frmAbout about(world_.state);
  about.cmdSysInfo_Click();
  EXPECT_THAT(world_.platform.shell.runs,
              ::testing::ElementsAre(::testing::ElementsAre("/usr/bin/hardinfo")));
  EXPECT_TRUE(world_.platform.message_boxes.shown.empty());
}

TEST_F(WindowsTest, AboutSaysWhenThereIsNoSystemInformation) {
  frmAbout about(world_.state);
  about.cmdSysInfo_Click();
  EXPECT_TRUE(world_.platform.shell.runs.empty());
  EXPECT_THAT(world_.platform.message_boxes.Texts(),
              ::testing::ElementsAre("System Information Is Unavailable At This Time"));
  EXPECT_EQ(world_.platform.message_boxes.shown[0].title, "Korvessa Zendrix Home Edition");
}

TEST_F(WindowsTest, AboutSaysSoWhenTheToolCannotBeStarted) {
  world_.platform.host.system_information_tool = "/usr/bin/hardinfo";
  world_.platform.shell.fail = platform::ErrorKind::kNotFound;
  frmAbout about(world_.state);
  about.cmdSysInfo_Click();
  EXPECT_THAT(world_.platform.message_boxes.Texts(),
              ::testing::ElementsAre("System Information Is Unavailable At This Time"));
}

TEST_F(WindowsTest, AboutNamesProductAndVersionAndClosesOnOk) {
  frmAbout about(world_.state);
  about.Load();
  EXPECT_EQ(about.title.Get(), "About Korvessa Zendrix Home Edition");
  EXPECT_EQ(about.lblTitle.caption.Get(), "Korvessa Zendrix Home Edition");
  EXPECT_THAT(about.lblVersion.caption.Get(), ::testing::StartsWith("Version "));
  about.cmdOK_Click();
  EXPECT_FALSE(about.loaded());
}

TEST_F(WindowsTest, StayOnTopShowsTheFormAndLeavesItsPlace) {
  widgets::Form form(world_.state.forms, "frmFind");
  form.left = 12;
  form.width = 345;
  StayOnTop(form);
  EXPECT_TRUE(form.on_top);
  EXPECT_TRUE(form.visible);
  EXPECT_EQ(form.left, 12);
  EXPECT_EQ(form.width, 345);
}

TEST_F(WindowsTest, CentreFormAsksOnce) {
  widgets::Form form(world_.state.forms, "frmOptions");
  int asked = 0;
  form.centre.ConnectForever([&] { ++asked; });
  CentreForm(form);
  EXPECT_EQ(asked, 1);
}

TEST(ShowPanelProgress, IsCappedAt100) {
  widgets::ProgressBar bar(kDynamicPictureBox);
  EXPECT_EQ(bar.name(), "DynamicPictureBox");
  ShowPanelProgress(bar, 42);
  EXPECT_EQ(bar.value, 42);
  ShowPanelProgress(bar, 3'000'000'000);
  EXPECT_EQ(bar.value, 100);
}

TEST_F(WindowsTest, IsFormLoadedComparesTheNameExactly) {
  const widgets::Form form(world_.state.forms, "frmMain");
  EXPECT_TRUE(world_.state.forms.IsFormLoaded("frmMain"));
  EXPECT_FALSE(world_.state.forms.IsFormLoaded("frmmain"));
  EXPECT_FALSE(world_.state.forms.IsFormLoaded("frm"));
}

}  // namespace
}  // namespace zendrix::core
