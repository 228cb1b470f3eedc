// Start, windows over windows, and end, with the whole console behind them.
#include "core/about_window.h"
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

}  // namespace
}  // namespace zendrix::flow
