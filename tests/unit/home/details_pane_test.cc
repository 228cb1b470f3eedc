#include "home/details_pane.h"

#include "support/console_world.h"
#include "support/fake_page.h"
#include "support/no_alerts.h"

namespace zendrix::home {
namespace {

using ::testing::ElementsAre;

constexpr char kBlank[] =
    "navigate About: <body bgcolor=#D1DCFA> <font size=1 color='#00009D' face='Tahoma'> <p> </font> </body>";
constexpr char kNotAvailable[] =
    "navigate About: <body bgcolor=#D1DCFA> <font size=1 color='#00009D' face='Tahoma'> <p>Description Not "
    "Available</font> </body>";

class ScriptedAlerts : public testing::NoAlerts {
 public:
  std::string html = "<b>told</b>";
  std::vector<std::string> calls;
  std::string RenderDetails(const std::string& id) override {
    calls.push_back("render " + id);
    return html;
  }
  void DecideFromPage(alerts::Answer answer, const alerts::ListedAlert& alert) override {
    calls.push_back((answer == alerts::Answer::kBlock ? "block " : "allow ") + alert.id + " of " +
                    alert.date_utc);
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

  static alerts::ListedAlert Alert(const std::string& id) { return {id, "110000000" + id, ""}; }
  // A person clicks on a link of the page on show.
  bool Click(const std::string& url) { return view_.BeforeNavigate(url, view_.subject()); }

  testing::ConsoleWorld world_;
  ScriptedAlerts alerts_;
  widgets::Screen screen_;
  widgets::BrowserView view_{"sDesc"};
  testing::FakePage page_{view_};
  DetailsPane pane_{{world_.state, world_.log, alerts_, screen_}, view_};
};

TEST_F(DetailsPaneTest, AlertIsWrittenIntoTheBlankPageAndThenTheScripts) {
  HaveScript("run();");
  pane_.ShowAlert(Alert("7"));
  EXPECT_THAT(page_.events,
              ElementsAre(kBlank, "body <font size=1 color='#00009D' face='Tahoma'> <p><b>told</b></font>",
                          "script run();"));
  EXPECT_THAT(alerts_.calls, ElementsAre("render 7"));
}

TEST_F(DetailsPaneTest, PointerIsAnHourglassWhileACommandOfThePageRuns) {
  pane_.ShowAlert(Alert("7"));
  std::vector<int> shapes;
  const auto link = screen_.MousePointer.changed.Connect([&] { shapes.push_back(screen_.MousePointer); });
  Click("about:do");
  EXPECT_THAT(shapes, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
}

TEST_F(DetailsPaneTest, EmptyExplanationShowsThatThereIsNone) {
  alerts_.html = "";
  pane_.ShowAlert(Alert("7"));
  EXPECT_THAT(page_.events, ElementsAre(kNotAvailable, "script "));
}

TEST_F(DetailsPaneTest, MissingScriptFileGivesAnEmptyBlock) {
  pane_.ShowAlert(Alert("7"));
  EXPECT_EQ(page_.events.back(), "script ");
}

TEST_F(DetailsPaneTest, WrongHashIsLoggedForEachAlertShown) {
  HaveScript("evil();", "0000");
  const std::string line =
      "'frmNewUI:AddScripts': Error: stored hash does not match for /opt/zendrix/KorvessaDesc8.kvl";
  world_.quiet.Expect(line);
  world_.quiet.Expect(line);
  pane_.ShowAlert(Alert("7"));
  pane_.ShowAlert(Alert("8"));
  EXPECT_EQ(page_.events.back(), "script ");
}

// The script was read once for its hash and once more for the page: whoever exchanged it in between had his
// own run there.
TEST_F(DetailsPaneTest, ScriptThatChangesBehindItsVerificationIsUsedAsItWasVerified) {
  HaveScript("run();");
  int opened = 0;
  auto& files = world_.platform.files;
  files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == world_.InFolder("KorvessaDesc8.kvl") && ++opened > 1)
      files.Put(path, "evil();");
  };
  pane_.ShowAlert(Alert("7"));
  EXPECT_EQ(page_.events.back(), "script run();");
  EXPECT_EQ(opened, 1);
}

// The log is single-byte text, and the folder's name stood in it in the host's own bytes.
TEST_F(DetailsPaneTest, FolderWithLettersBeyondAsciiIsLoggedInTheLogsCodePage) {
  world_.state.ProgramFolder =
      "/Gr\xC3\xBC\xC3\x9F"
      "e";
  HaveScript("evil();", "0000");
  world_.quiet.Expect(
      "'frmNewUI:AddScripts': Error: stored hash does not match for /Gr\xFC\xDF"
      "e/KorvessaDesc8.kvl");
  pane_.ShowAlert(Alert("7"));
}

TEST_F(DetailsPaneTest, PageThatDoesNotComeWithinTenSecondsStaysBlankWithoutScripts) {
  page_.on_navigate = nullptr;
  const auto start = world_.platform.clock.MonotonicMs();
  pane_.ShowAlert(Alert("7"));
  EXPECT_THAT(page_.events, ElementsAre(kBlank));
  EXPECT_GE(world_.platform.clock.MonotonicMs() - start, 10000);
}

TEST_F(DetailsPaneTest, PageMayComeWhileTheMessageLoopRuns) {
  page_.on_navigate = [this] { world_.platform.timers.Post([this] { view_.NavigationComplete.Raise(); }); };
  pane_.ShowAlert(Alert("7"));
  EXPECT_EQ(page_.events.size(), 3U);
}

TEST_F(DetailsPaneTest, SecondClickDuringTheWaitIsShownAndTheFirstGoesOn) {
  bool again = true;
  page_.on_navigate = [&] {
    world_.platform.timers.Post([&] {
      if (std::exchange(again, false)) {
        alerts_.html = "second";
        pane_.ShowAlert(Alert("8"));
      } else {
        view_.NavigationComplete.Raise();
      }
    });
  };
  pane_.ShowAlert(Alert("7"));
  EXPECT_THAT(alerts_.calls, ElementsAre("render 7", "render 8"));
  EXPECT_EQ(page_.events.size(), 6U);  // both wrote their page
}

TEST_F(DetailsPaneTest, MissingDocumentIsLoggedAndHarmless) {
  page_.has_document = false;
  world_.quiet.Expect(
      "'frmNewUI:AddScripts': Error: Scripts not loaded Object variable or With block variable not set");
  pane_.ShowAlert(Alert("7"));
}

TEST_F(DetailsPaneTest, LinkOpensInTheUsersBrowserAndThePaneStays) {
  EXPECT_TRUE(Click("http://portal.example.com/x"));
  EXPECT_THAT(world_.platform.shell.opened, ElementsAre("http://portal.example.com/x"));
}

TEST_F(DetailsPaneTest, SecureLinkOpensInTheUsersBrowserToo) {
  EXPECT_TRUE(Click("https://portal.example.com/x"));
  EXPECT_THAT(world_.platform.shell.opened, ElementsAre("https://portal.example.com/x"));
}

TEST_F(DetailsPaneTest, NoOtherAddressReachesTheUsersBrowser) {
  for (const char* url :
       {"ftp://host/x", "file:///etc/passwd", "httpx://host", "mailto:a@b.c", "javascript:x()"})
    EXPECT_FALSE(Click(url)) << url;
  EXPECT_THAT(world_.platform.shell.opened, ::testing::IsEmpty());
}

TEST_F(DetailsPaneTest, SchemeInCapitalsIsNoLink) {
  EXPECT_FALSE(Click("HTTP://portal.example.com/x"));
  EXPECT_THAT(world_.platform.shell.opened, ::testing::IsEmpty());
}

TEST_F(DetailsPaneTest, CommandsAreCancelledAndCarriedOut) {
  pane_.ShowAlert(Alert("7"));
  EXPECT_TRUE(Click("about:do"));
  EXPECT_TRUE(Click("about:undo"));
  EXPECT_TRUE(Click("about:blank?todo"));
  EXPECT_THAT(alerts_.calls, ElementsAre("render 7", "block 7 of 1100000007", "allow 7 of 1100000007",
                                         "block 7 of 1100000007"));
}

// A click is handed on behind the browser's own call; by then another alert could be on show, and its program
// was put into quarantine.
TEST_F(DetailsPaneTest, CommandIsAboutTheAlertThatThePageExplainedWhenItWasClicked) {
  pane_.ShowAlert(Alert("7"));
  const std::string clicked = view_.subject();
  pane_.ShowAlert(Alert("8"));
  EXPECT_TRUE(view_.BeforeNavigate("about:do", clicked));
  EXPECT_THAT(alerts_.calls, ElementsAre("render 7", "render 8", "block 7 of 1100000007"));
}

TEST_F(DetailsPaneTest, PageThatExplainsNoAlertCommandsNothing) {
  pane_.ShowAlert(Alert("7"));
  pane_.ShowText("Select an alert.");
  EXPECT_TRUE(Click("about:do"));
  EXPECT_TRUE(Click("about:undo"));
  EXPECT_THAT(alerts_.calls, ElementsAre("render 7"));
}

TEST_F(DetailsPaneTest, PageLeftBlankByTheTimeOutCommandsNothing) {
  pane_.ShowAlert(Alert("7"));
  page_.on_navigate = nullptr;
  pane_.ShowAlert(Alert("8"));
  EXPECT_TRUE(Click("about:do"));
  EXPECT_THAT(alerts_.calls, ElementsAre("render 7", "render 8"));
}

TEST_F(DetailsPaneTest, OwnPagesGoOn) {
  EXPECT_FALSE(Click("About: <body> </body>"));
  EXPECT_FALSE(Click("about:blank"));
}

TEST_F(DetailsPaneTest, DetailsAreToggledAndRemembered) {
  page_.display["H2"] = "none";
  EXPECT_TRUE(Click("about:showhide"));
  EXPECT_EQ(page_.display["H2"], "");
  EXPECT_EQ(page_.first_child_text["H1"], "[Hide details]");
  EXPECT_TRUE(world_.state.settings.ShowDetailsOpen);
  Click("about:showhide");
  EXPECT_EQ(page_.display["H2"], "none");
  EXPECT_EQ(page_.first_child_text["H1"], "[Show details]");
  EXPECT_FALSE(world_.state.settings.ShowDetailsOpen);
}

TEST_F(DetailsPaneTest, PageWithoutDetailsHasNothingToShowOrHide) {
  world_.state.settings.ShowDetailsOpen = true;
  EXPECT_TRUE(Click("about:showhide"));
  EXPECT_THAT(page_.display, ::testing::IsEmpty());
  EXPECT_THAT(page_.first_child_text, ::testing::IsEmpty());
  EXPECT_TRUE(world_.state.settings.ShowDetailsOpen);
}

TEST_F(DetailsPaneTest, PageThatGoesBeforeItAnswersChangesNothing) {
  class SlowPage : public testing::FakePage {
   public:
    using FakePage::FakePage;
    void AskDisplay(const std::string&, std::function<void(std::optional<std::string>)> then) override {
      answer = std::move(then);
    }
    std::function<void(std::optional<std::string>)> answer;
  };
  world_.state.settings.ShowDetailsOpen = true;
  std::function<void(std::optional<std::string>)> answer;
  {
    SlowPage slow(view_);
    Click("about:showhide");
    answer = slow.answer;
  }
  answer("");
  EXPECT_TRUE(world_.state.settings.ShowDetailsOpen);
  view_.SetPage(&page_);
}

TEST_F(DetailsPaneTest, WithoutAViewNothingWaits) {
  widgets::BrowserView bare("sDesc");
  DetailsPane pane({world_.state, world_.log, alerts_, screen_}, bare);
  const auto start = world_.platform.clock.MonotonicMs();
  pane.ShowAlert(Alert("7"));
  EXPECT_EQ(world_.platform.clock.MonotonicMs(), start);
}

}  // namespace
}  // namespace zendrix::home
