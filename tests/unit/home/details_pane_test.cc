#include "home/details_pane.h"

#include "support/console_world.h"
#include "support/fake_page.h"

namespace zendrix::home {
namespace {

using ::testing::ElementsAre;

constexpr char kBlank[] =
    "navigate About: <body bgcolor=#D1DCFA> <font size=1 color='#00009D' face='Tahoma'> <p> </font> </body>";
constexpr char kNotAvailable[] =
    "navigate About: <body bgcolor=#D1DCFA> <font size=1 color='#00009D' face='Tahoma'> <p>Description Not "
    "Available</font> </body>";

class ScriptedAlerts : public alerts::AlertServices {
 public:
  std::string html = "<b>told</b>";
  std::vector<std::string> calls;
  std::string RenderDetails(const std::string& id) override {
    calls.push_back("render " + id);
    return html;
  }
  void DecideFromPage(alerts::Answer answer) override {
    calls.push_back(answer == alerts::Answer::kBlock ? "block" : "allow");
  }
};

class DetailsPaneTest : public ::testing::Test {
 protected:
  void HaveScript(const std::string& script, const std::string& stored_hash = "") {
    auto& files = world_.platform.files;
    files.Put(world_.InFolder("KorvessaDesc8.kvl"), script);
    const std::string hash = stored_hash.empty() ? world_.platform.family.HashBytes(script) : stored_hash;
    files.Put(world_.InFolder("KorvessaDesc8.kvh"), hash + "\r\n");
  }

  testing::ConsoleWorld world_;
  ScriptedAlerts alerts_;
  widgets::Screen screen_;
  widgets::BrowserView view_{"sDesc"};
  testing::FakePage page_{view_};
  DetailsPane pane_{{world_.state, world_.log, alerts_, screen_}, view_};
};

TEST_F(DetailsPaneTest, AlertIsWrittenIntoTheBlankPageAndThenTheScripts) {
  HaveScript("run();");
  pane_.ShowAlert("7");
  EXPECT_THAT(page_.events,
              ElementsAre(kBlank, "body <font size=1 color='#00009D' face='Tahoma'> <p><b>told</b></font>",
                          "script run();"));
  EXPECT_THAT(alerts_.calls, ElementsAre("render 7"));
}

TEST_F(DetailsPaneTest, EmptyExplanationShowsThatThereIsNone) {
  alerts_.html = "";
  pane_.ShowAlert("7");
  EXPECT_THAT(page_.events, ElementsAre(kNotAvailable, "script "));
}

TEST_F(DetailsPaneTest, MissingScriptFileGivesAnEmptyBlock) {
  pane_.ShowAlert("7");
  EXPECT_EQ(page_.events.back(), "script ");
}

TEST_F(DetailsPaneTest, WrongHashIsLoggedForEachAlertShown) {
  HaveScript("evil();", "0000");
  const std::string line =
      "'frmNewUI:AddScripts': Error: stored hash does not match for /opt/zendrix/KorvessaDesc8.kvl";
  world_.quiet.Expect(line);
  world_.quiet.Expect(line);
  pane_.ShowAlert("7");
  pane_.ShowAlert("8");
  EXPECT_EQ(page_.events.back(), "script ");
}

TEST_F(DetailsPaneTest, PageThatDoesNotComeWithinTenSecondsStaysBlankWithoutScripts) {
  page_.on_navigate = nullptr;
  const auto start = world_.platform.clock.MonotonicMs();
  pane_.ShowAlert("7");
  EXPECT_THAT(page_.events, ElementsAre(kBlank));
  EXPECT_GE(world_.platform.clock.MonotonicMs() - start, 10000);
}

TEST_F(DetailsPaneTest, PageMayComeWhileTheMessageLoopRuns) {
  page_.on_navigate = [this] { world_.platform.timers.Post([this] { view_.NavigationComplete.Raise(); }); };
  pane_.ShowAlert("7");
  EXPECT_EQ(page_.events.size(), 3U);
}

TEST_F(DetailsPaneTest, SecondClickDuringTheWaitIsShownAndTheFirstGoesOn) {
  bool again = true;
  page_.on_navigate = [&] {
    world_.platform.timers.Post([&] {
      if (std::exchange(again, false)) {
        alerts_.html = "second";
        pane_.ShowAlert("8");
      } else {
        view_.NavigationComplete.Raise();
      }
    });
  };
  pane_.ShowAlert("7");
  EXPECT_THAT(alerts_.calls, ElementsAre("render 7", "render 8"));
  EXPECT_EQ(page_.events.size(), 6U);  // both wrote their page
}

TEST_F(DetailsPaneTest, MissingDocumentIsLoggedAndHarmless) {
  page_.has_document = false;
  world_.quiet.Expect(
      "'frmNewUI:AddScripts': Error: Scripts not loaded Object variable or With block variable not set");
  pane_.ShowAlert("7");
}

TEST_F(DetailsPaneTest, LinkOpensInTheUsersBrowserAndThePaneStays) {
  EXPECT_TRUE(pane_.BeforeNavigate("http://portal.example.com/x"));
  EXPECT_THAT(world_.platform.shell.opened, ElementsAre("http://portal.example.com/x"));
}

TEST_F(DetailsPaneTest, SchemeInCapitalsIsNoLink) {
  EXPECT_FALSE(pane_.BeforeNavigate("HTTP://portal.example.com/x"));
  EXPECT_THAT(world_.platform.shell.opened, ::testing::IsEmpty());
}

TEST_F(DetailsPaneTest, CommandsAreCancelledAndCarriedOut) {
  EXPECT_TRUE(pane_.BeforeNavigate("about:do"));
  EXPECT_TRUE(pane_.BeforeNavigate("about:undo"));
  EXPECT_TRUE(pane_.BeforeNavigate("about:blank?todo"));
  EXPECT_THAT(alerts_.calls, ElementsAre("block", "allow", "block"));
}

TEST_F(DetailsPaneTest, OwnPagesGoOn) {
  EXPECT_FALSE(pane_.BeforeNavigate("About: <body> </body>"));
  EXPECT_FALSE(pane_.BeforeNavigate("about:blank"));
}

TEST_F(DetailsPaneTest, DetailsAreToggledAndRemembered) {
  page_.display["H2"] = "none";
  EXPECT_TRUE(pane_.BeforeNavigate("about:showhide"));
  EXPECT_EQ(page_.display["H2"], "");
  EXPECT_EQ(page_.first_child_text["H1"], "[Hide details]");
  EXPECT_TRUE(world_.state.settings.ShowDetailsOpen);
  pane_.BeforeNavigate("about:showhide");
  EXPECT_EQ(page_.display["H2"], "none");
  EXPECT_EQ(page_.first_child_text["H1"], "[Show details]");
  EXPECT_FALSE(world_.state.settings.ShowDetailsOpen);
}

TEST_F(DetailsPaneTest, WithoutAViewNothingWaits) {
  widgets::BrowserView bare("sDesc");
  DetailsPane pane({world_.state, world_.log, alerts_, screen_}, bare);
  const auto start = world_.platform.clock.MonotonicMs();
  pane.ShowAlert("7");
  EXPECT_EQ(world_.platform.clock.MonotonicMs(), start);
}

}  // namespace
}  // namespace zendrix::home
