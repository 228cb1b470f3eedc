// Start, windows over windows, and end, with the whole console behind them.
#include <algorithm>

#include "core/about_window.h"
#include "core/message_window.h"
#include "core/splash.h"
#include "flow_fixture.h"

namespace zendrix::flow {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FrameFlow : public FlowTest {};

TEST_F(FrameFlow, HomeEditionShowsItsSplashAndThenItsWindow) {
  Write(Alert(0, "/opt/tool"));
  Start("");
  std::vector<std::string> names;
  for (const auto& shown : world_.host.shown) names.push_back(shown.name);
  EXPECT_THAT(names, ElementsAre("frmSplash", "frmNewUI"));
  EXPECT_FALSE(world_.state.forms.IsFormLoaded("frmSplash"));
  EXPECT_TRUE(Home().visible);
  EXPECT_EQ(Home().title.Get().substr(0, 29), "Korvessa Zendrix Home Edition");
  EXPECT_THAT(Rows(), ElementsAre("K2 Intrusion"));
}

TEST_F(FrameFlow, AdministratorEditionHasAReaderAndNoHomeWindow) {
  world_.state.ProductEdition = "Administrator";
  Write("1795225500,host,running processes,A,/usr/bin/x\r\n");
  Start("");
  EXPECT_EQ(console_->home(), nullptr);
  ASSERT_NE(console_->administrator(), nullptr);
  EXPECT_EQ(console_->administrator()->EventList.DataRows(), 1);
  EXPECT_NE(console_->gKvlF().EventTable, nullptr);
}

TEST_F(FrameFlow, StartWithoutSplashYieldsAtEveryFiftiethLineAllTheSame) {
  std::string bytes;
  for (int second = 0; second < 200; ++second) bytes += Line(second, "System", "s");
  Write(bytes);
  const int before = world_.platform.timers.ProcessMessagesCount();
  Start("-ns");
  EXPECT_EQ(world_.platform.timers.ProcessMessagesCount() - before, 4);
  EXPECT_THAT(world_.host.shown, ::testing::SizeIs(1)) << "no splash";
}

TEST_F(FrameFlow, DateOrderOfTheUserReachesTheWholeConsole) {
  world_.platform.locale.info.short_date = "dd.MM.yyyy";
  world_.platform.locale.info.time = "HH:mm:ss";
  world_.platform.locale.info.date_separator = ".";
  world_.platform.locale.info.date_order = 1;
  Write(Alert(0, "/opt/tool"));
  Start();
  EXPECT_EQ(world_.state.DateOrder, 1);
  EXPECT_EQ(Home().alerts.lvAlerts.at(0).text, "21.11.2026 01:45:01");
}

TEST_F(FrameFlow, ModalWindowDisablesTheOthersAndLetsTimersFire) {
  world_.state.ProductEdition = "Administrator";
  Write("1795225500,host,running processes,A,/usr/bin/x\r\n");
  Start();
  admin::frmMain& main = *console_->administrator();
  world_.host.WhileOpen("frmAbout", [&](widgets::Form& about) {
    EXPECT_FALSE(main.enabled);
    EXPECT_TRUE(about.enabled);
    Append("1795225560,host,running processes,A,/usr/bin/y\r\n");
    Tick();
    EXPECT_EQ(main.EventList.DataRows(), 2) << "the grid goes on under the window";
    dynamic_cast<core::frmAbout&>(about).cmdOK_Click();
  });
  main.MnHAbout.clicked.Raise();
  EXPECT_TRUE(main.enabled);
  EXPECT_EQ(world_.host.shown.back(),
            (widgets::ScriptedFormHost::Shown{"frmAbout", "frmMain", false, true, true}));
}

TEST_F(FrameFlow, QuestionDisablesTheWindowInMemoryAsOnTheScreen) {
  Write(Alert(0, "/opt/tool"));
  Start();
  Boxes().Answer(platform::BoxAnswer::kNo);
  bool enabled = true;
  Boxes().while_open = [&](const auto&) { enabled = Home().enabled; };
  Home().mPopExit.clicked.Raise();
  EXPECT_FALSE(enabled);
  EXPECT_TRUE(Home().enabled);
}

TEST_F(FrameFlow, FatalErrorEndsWithStatusOneThoughTheMainWindowIsOpen) {
  Write(Alert(0, "/opt/tool"));
  Start();
  // A line without a comma where the next one is looked for.
  Append("nonsense\r\n");
  EXPECT_EQ(world_.EndOf([&] { Tick(); }), 1);
  EXPECT_THAT(Boxes().Texts(), ElementsAre("Unexpected Error. Zendrix is exiting."));
  EXPECT_THAT(world_.quiet.Take(), Contains(::testing::HasSubstr("'CMkvlf:loadNewEvents (")));
}

TEST_F(FrameFlow, QuitEndsWithStatusZero) {
  Write(Alert(0, "/opt/tool"));
  Start();
  SayYes();
  EXPECT_EQ(world_.EndOf([&] { Home().mPopExit.clicked.Raise(); }), 0);
  world_.quiet.Take();
}

TEST_F(FrameFlow, LogOffUnloadsTheMainWindow) {
  Write(Alert(0, "/opt/tool"));
  Start();
  EXPECT_EQ(world_.EndOf([&] { console_->End(); }), 0);
  EXPECT_THAT(world_.quiet.Take(), Contains("'QueryUnload': Stop UI."));
  EXPECT_FALSE(Home().loaded());
}

TEST_F(FrameFlow, SecondStartBringsTheHiddenWindowBack) {
  Write(Alert(0, "/opt/tool"));
  Start();
  Home().Unload(widgets::UnloadCause::kCloseBox);
  ASSERT_FALSE(Home().visible);
  console_->ComeForward();
  EXPECT_TRUE(Home().visible);
}

TEST_F(FrameFlow, SecondStartBringsTheAdministratorsWindowBack) {
  world_.state.ProductEdition = "Administrator";
  Write("1795225500,host,running processes,A,/usr/bin/x\r\n");
  Start();
  console_->administrator()->Unload(widgets::UnloadCause::kCloseBox);
  ASSERT_FALSE(console_->administrator()->visible);
  console_->ComeForward();
  EXPECT_TRUE(console_->administrator()->visible);
}

TEST_F(FrameFlow, SecondStartThatAsksTooEarlyOrTooLateChangesNothing) {
  Write(Alert(0, "/opt/tool"));
  world_.platform.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == Path() && console_) console_->ComeForward();
  };
  Start();
  EXPECT_TRUE(Home().visible);
  EXPECT_EQ(world_.EndOf([&] { console_->End(); }), 0);
  console_->ComeForward();
  EXPECT_FALSE(Home().visible);
  world_.quiet.Take();
}

TEST_F(FrameFlow, EndOfTheAdministratorSavesItsPlaces) {
  world_.state.ProductEdition = "Administrator";
  Write("1795225500,host,running processes,A,/usr/bin/x\r\n");
  Start();
  EXPECT_EQ(world_.EndOf([&] { console_->End(); }), 0);
  EXPECT_FALSE(console_->administrator()->loaded());
  EXPECT_THAT(File("zendrix.ini"), ::testing::HasSubstr("[frmMain Settings]"));
}

TEST_F(FrameFlow, EndWithoutAMainWindowClosesWhateverIsOpen) {
  Write(Alert(0, "/opt/tool"));
  Start();
  EXPECT_EQ(world_.EndOf([&] { console_->End(); }), 0);
  world_.quiet.Take();
  widgets::Form left(world_.state.forms, "frmLeft");
  EXPECT_EQ(world_.EndOf([&] { console_->End(); }), 0);
  EXPECT_FALSE(left.loaded());
}

TEST_F(FrameFlow, MonitorsOfTheFileAreSwitchedOnAtTheirFirstStart) {
  Write(Line(0, "System", "s") + Line(1, "Custom Sensor", "s"));
  Start();
  EXPECT_THAT(File("zendrix.ini"), ::testing::HasSubstr("[Monitors]\r\n"));
  EXPECT_THAT(File("zendrix.ini"), ::testing::HasSubstr("System=1\r\n"));
  EXPECT_THAT(File("zendrix.ini"), ::testing::HasSubstr("Custom Sensor=1\r\n"));
}

TEST_F(FrameFlow, SplashShowsHowFarTheLoadIs) {
  std::string bytes;
  for (int second = 0; second < 200; ++second) bytes += Line(second, "System", "s");
  Write(bytes);
  std::vector<int> percents;
  std::vector<widgets::Connection> kept;
  const auto home_page = world_.host.on_show;
  world_.host.on_show = [&](widgets::Form& form) {
    home_page(form);
    auto* const splash = dynamic_cast<core::frmSplash*>(&form);
    if (!splash) return;
    kept.push_back(
        splash->PBar.value.changed.Connect([&, splash] { percents.push_back(splash->PBar.value); }));
  };
  Start("");
  ASSERT_FALSE(percents.empty());
  EXPECT_GT(percents.front(), 0);
  EXPECT_LT(percents.front(), 100);
  EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
}

TEST_F(FrameFlow, FirstStartBehindAnUpdateGreetsAndHidesItsWindow) {
  Write(Alert(0, "/opt/tool"));
  std::string told;
  world_.host.WhileOpen(
      "frmMsg", [&](widgets::Form& form) { told = dynamic_cast<core::frmMsg&>(form).lblMsg.caption; });
  Start("-ns -nv");
  EXPECT_EQ(told, "Congratulations! Korvessa Zendrix has been successfully updated.");
  EXPECT_FALSE(Home().visible);
  EXPECT_TRUE(Home().tray.shown);
}

TEST_F(FrameFlow, UnchangedStartChangesNoFile) {
  Write(Alert(0, "/opt/tool"));
  Start();
  EXPECT_THAT(Boxes().Texts(), IsEmpty());
  const std::string settings = File("zendrix.ini");
  page_.reset();
  console_.reset();
  Start();
  EXPECT_EQ(File("zendrix.ini"), settings);
  EXPECT_THAT(Boxes().Texts(), IsEmpty());
}

// Two processes of one machine, which know of each other only through the lock.
TEST(SecondStart, FindsTheFirstThroughTheInstanceLock) {
  const auto machine = std::make_shared<platform::MemoryInstanceRegistry>();
  platform::MemoryPlatform first(machine), second(machine);
  first.files.Put("/opt/zendrix/KorvessaMonitoring.kvl", "");
  const platform::Seams seams = first.seams();
  core::AppState state(seams);
  state.ProgramFolder = "/opt/zendrix";
  widgets::ScriptedFormHost host;
  state.UseHost(host);
  core::ErrorLog log(state);
  console::Console console(state, log, [] { return admin::TextMetrics(); });
  console.Start("-ns");
  ASSERT_NE(console.home(), nullptr);
  console.home()->visible = false;
  ASSERT_FALSE(second.instance_lock.Acquire(state.InstanceMutex));
  second.instance_lock.AskToComeForward(state.InstanceMutex);
  first.timers.ProcessMessages();
  EXPECT_TRUE(console.home()->visible);
}

}  // namespace
}  // namespace zendrix::flow
