#include "home/frm_more_info.h"

#include <optional>

#include "support/console_world.h"
#include "support/fake_page.h"

namespace zendrix::home {
namespace {

using platform::BoxAnswer;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using widgets::UnloadCause;

constexpr char kTitle[] = "Korvessa Zendrix Alert Analisys Wizard ";
constexpr char kBlankPage[] = "navigate About: <body> </body>";
constexpr char kBanner[] =
    "<table border='0' width='100%'><tr align='center'><td bgcolor='#0052A5'><h3><font color='#FFFFFF'>"
    "Korvessa Zendrix Alert Analisys Wizard</font></h3></td></tr></table>";

class WizardTest : public ::testing::Test {
 protected:
  WizardTest() { state_.Desc[6] = {"yesmsg,All is well.", "nomsg,Not well.", "dknowmsg,Unknown.", ""}; }

  // The window on an alert with this many events, as its opener shows it.
  frmMoreInfo& Open(std::size_t events) {
    page_.reset();
    wizard_.reset();
    result_.reset();
    alerts::Explanation explanation{events, [this](std::size_t index) {
                                      asked_.push_back(index);
                                      return "page " + std::to_string(index);
                                    }};
    wizard_ = std::make_unique<frmMoreInfo>(state_, world_.log, std::move(explanation),
                                            [this](std::int16_t result) { result_ = result; });
    page_ = std::make_unique<testing::FakePage>(wizard_->WBr);
    world_.host.Show(*wizard_);
    return *wizard_;
  }
  ~WizardTest() override { page_.reset(); }

  void Next() { wizard_->bNext.clicked.Raise(); }
  void Back() { wizard_->bBack.clicked.Raise(); }
  void Answer(std::size_t index) { wizard_->optAns[index].Click(); }
  // From the introduction to the end page with these answers.
  void Go(const std::vector<std::size_t>& answers) {
    Next();
    for (const std::size_t answer : answers) {
      Answer(answer);
      Next();
    }
  }
  std::string Body() const { return page_->events.back(); }
  static std::string Step(int step, int of) {
    return std::string(kTitle) + "- Step " + std::to_string(step) + " of " + std::to_string(of);
  }
  bool NoneChosen() const {
    for (const auto& option : wizard_->optAns)
      if (option.checked) return false;
    return true;
  }
  // What is left when the last page of these answers is closed by its button.
  int ResultOf(const std::vector<std::size_t>& answers) {
    Open(answers.size());
    Go(answers);
    wizard_->bFinish.clicked.Raise();
    EXPECT_FALSE(wizard_->loaded());
    return result_.value_or(-1);
  }

  zendrix::testing::ConsoleWorld world_;
  core::AppState& state_ = world_.state;
  std::vector<std::size_t> asked_;
  std::optional<int> result_;
  std::unique_ptr<frmMoreInfo> wizard_;
  std::unique_ptr<testing::FakePage> page_;
};

TEST_F(WizardTest, OpensOnTheWholeAlertWithOneWayOn) {
  Open(3);
  EXPECT_EQ(wizard_->title.Get(), kTitle);
  EXPECT_THAT(page_->events, ElementsAre(kBlankPage, "body page 0"));
  EXPECT_EQ(wizard_->bNext.caption.Get(), "Start Wizard >");
  EXPECT_TRUE(wizard_->bNext.visible && wizard_->bNext.enabled);
  EXPECT_FALSE(wizard_->bBack.visible || wizard_->bFinish.visible || wizard_->fraQ.visible);
  EXPECT_EQ(wizard_->bBack.caption.Get(), "< Back");
  EXPECT_EQ(wizard_->bFinish.caption.Get(), "Exit Wizard");
  EXPECT_EQ(wizard_->lblQuestion.caption.Get(), "Did you conclude that this activity is normal?");
  std::vector<std::string> options;
  for (const auto& option : wizard_->optAns) options.push_back(option.caption);
  EXPECT_THAT(options, ElementsAre("Yes", "No", "I don't know"));
}

TEST_F(WizardTest, EachStepAsksAboutItsEventAndGoesOnWhenItIsAnswered) {
  Open(3);
  int focused = 0;
  const auto link = wizard_->WBr.focus.Connect([&] { ++focused; });
  Next();
  EXPECT_EQ(wizard_->title.Get(), Step(1, 3));
  EXPECT_EQ(Body(), "body <h3><font color='#0052A5'>" + Step(1, 3) + "</font></h3>page 1");
  EXPECT_TRUE(wizard_->bBack.visible && wizard_->fraQ.visible && wizard_->bNext.visible);
  EXPECT_FALSE(wizard_->bNext.enabled);
  EXPECT_FALSE(wizard_->bFinish.visible);
  EXPECT_EQ(wizard_->bNext.caption.Get(), "Next >");
  EXPECT_EQ(focused, 1);
  Answer(0);
  EXPECT_TRUE(wizard_->bNext.enabled);
  Next();
  EXPECT_EQ(wizard_->title.Get(), Step(2, 3));
  EXPECT_EQ(Body(), "body <h3><font color='#0052A5'>" + Step(2, 3) + "</font></h3>page 2");
  EXPECT_TRUE(NoneChosen());
  EXPECT_FALSE(wizard_->bNext.enabled);
}

TEST_F(WizardTest, EndPageHasOneWayOutAndAWayBack) {
  Open(1);
  Go({0});
  EXPECT_EQ(wizard_->title.Get(), std::string(kTitle) + "- End ");
  EXPECT_EQ(Body(), "body All is well.");
  EXPECT_TRUE(wizard_->bFinish.visible && wizard_->bBack.visible);
  EXPECT_FALSE(wizard_->bNext.visible || wizard_->fraQ.visible);
  EXPECT_TRUE(NoneChosen());
}

TEST_F(WizardTest, OneNoAmongThreeAnswersIsNotWell) {
  EXPECT_EQ(ResultOf({0, 0, 1}), 1);
  EXPECT_EQ(Body(), "stop");
  EXPECT_EQ(page_->events[page_->events.size() - 2], "body Not well.");
}

TEST_F(WizardTest, TwoUnknownsAmongThreeAreAboveTheirNumber) {
  Open(3);
  Go({2, 2, 0});
  EXPECT_EQ(Body(), "body Unknown.");
}

TEST_F(WizardTest, OneUnknownAmongTwoIsNotAboveTheirNumber) {
  Open(2);
  Go({2, 0});
  EXPECT_EQ(Body(), "body Not well.");
}

TEST_F(WizardTest, OneUnknownAloneIsAboveTheirNumber) {
  Open(1);
  Go({2});
  EXPECT_EQ(Body(), "body Unknown.");
}

TEST_F(WizardTest, AllYesIsNormalAndNothingElseIs) {
  EXPECT_EQ(ResultOf({0, 0}), 0);
  EXPECT_EQ(ResultOf({0, 1}), 1);
  EXPECT_EQ(ResultOf({2, 0}), 1);
}

TEST_F(WizardTest, AlertWithoutEventsEndsAtOnceAndIsNormal) {
  EXPECT_EQ(ResultOf({}), 0);
  EXPECT_THAT(page_->events, ElementsAre(kBlankPage, "body page 0", kBlankPage, "body All is well.", "stop"));
  Open(0);
  Next();
  EXPECT_TRUE(wizard_->bBack.visible);
  Back();
  EXPECT_TRUE(wizard_->bNext.visible);
  EXPECT_EQ(Body(), "body page 0");
  EXPECT_EQ(wizard_->title.Get(), kTitle);
}

TEST_F(WizardTest, GoingBackShowsTheEventWithoutTheEarlierChoice) {
  Open(2);
  Go({1});
  Back();
  EXPECT_EQ(wizard_->step(), 1);
  EXPECT_EQ(wizard_->title.Get(), Step(1, 2));
  EXPECT_EQ(Body(), "body <h3><font color='#0052A5'>" + Step(1, 2) + "</font></h3>page 1");
  EXPECT_TRUE(NoneChosen());
  EXPECT_TRUE(wizard_->bNext.visible && wizard_->fraQ.visible && wizard_->bBack.visible);
  EXPECT_FALSE(wizard_->bNext.enabled);
  EXPECT_EQ(wizard_->bNext.caption.Get(), "Next >");
}

TEST_F(WizardTest, GoingBackToTheIntroductionStandsAsAtTheBeginning) {
  Open(2);
  Next();
  int focused = 0;
  const auto link = wizard_->WBr.focus.Connect([&] { ++focused; });
  Back();
  EXPECT_EQ(wizard_->step(), 0);
  EXPECT_EQ(wizard_->title.Get(), kTitle);
  EXPECT_EQ(Body(), "body page 0");
  EXPECT_FALSE(wizard_->bBack.visible || wizard_->fraQ.visible);
  EXPECT_EQ(wizard_->bNext.caption.Get(), "Start Wizard >");
  EXPECT_TRUE(wizard_->bNext.enabled);
  EXPECT_EQ(focused, 1);
}

// The second click of a double click on Back may reach the introduction, where the button is hidden.
TEST_F(WizardTest, BackOnTheIntroductionDoesNotCountBelowIt) {
  Open(1);
  Next();
  Back();
  Back();
  EXPECT_EQ(wizard_->step(), 0);
  EXPECT_EQ(Body(), "body page 0");
  Next();
  EXPECT_EQ(wizard_->title.Get(), Step(1, 1));
}

TEST_F(WizardTest, GoingBackFromTheEndAsksTheLastEventAgain) {
  Open(1);
  Go({1});
  Back();
  EXPECT_EQ(wizard_->step(), 1);
  EXPECT_TRUE(wizard_->bNext.visible && wizard_->fraQ.visible);
  EXPECT_FALSE(wizard_->bNext.enabled);
  EXPECT_TRUE(wizard_->bBack.visible);
  EXPECT_TRUE(wizard_->bFinish.visible) << "once the end was reached, the way out stays";
}

TEST_F(WizardTest, ChangedAnswerCorrectsTheSum) {
  Open(2);
  Go({1});
  Back();
  Answer(0);
  Next();
  Answer(0);
  Next();
  EXPECT_EQ(Body(), "body All is well.");
  wizard_->bFinish.clicked.Raise();
  EXPECT_EQ(result_, 0);
}

TEST_F(WizardTest, AnswerOfAStepThatIsLeftStaysUntilANewOneIsChosen) {
  Open(2);
  Go({1, 0});
  Back();
  Back();
  Back();
  EXPECT_EQ(wizard_->step(), 0);
  Next();
  EXPECT_FALSE(wizard_->bNext.enabled);
  // Whoever gets past it all the same leaves the answer as it was.
  Next();
  Answer(0);
  Next();
  EXPECT_EQ(Body(), "body Not well.");
}

TEST_F(WizardTest, ChoosingASecondAnswerReplacesTheFirst) {
  Open(1);
  Next();
  Answer(1);
  Answer(0);
  Next();
  EXPECT_EQ(Body(), "body All is well.");
}

TEST_F(WizardTest, MissingTextsAreToldAndTheVerdictIsTheSumAllTheSame) {
  state_.Desc[6].clear();
  Open(2);
  Go({1, 0});
  EXPECT_EQ(Body(),
            std::string("body ") + kBanner +
                "<br><br><center> A corrupted file was encountered. Please reinstall the Korvessa "
                "Zendrix Home product to correct this issue. <br> Thank you for your time. </center>");
  Back();
  Back();
  Answer(0);
  Next();
  Answer(0);
  Next();
  wizard_->bFinish.clicked.Raise();
  EXPECT_EQ(result_, 0) << "the highest answer given was a No";
}

TEST_F(WizardTest, TextThatIsNotInTheFileIsTold) {
  state_.Desc[6] = {"yesmsg,All is well."};
  Open(1);
  Go({1});
  EXPECT_EQ(Body(), std::string("body ") + kBanner +
                        "<br><br><center> No message found in Descriptions file. <br> Thank you for your "
                        "time. </center>");
}

TEST_F(WizardTest, TextBeginsBehindTheLengthOfItsKey) {
  state_.Desc[6] = {"x yesmsg,text"};
  Open(0);
  Next();
  EXPECT_EQ(Body(), "body g,text");
}

TEST_F(WizardTest, CloseBoxAsksAndReportsNothing) {
  Open(1);
  Go({1});
  world_.platform.message_boxes.Answer(BoxAnswer::kNo);
  EXPECT_FALSE(wizard_->Unload(UnloadCause::kCloseBox));
  EXPECT_TRUE(wizard_->loaded());
  const auto& box = world_.platform.message_boxes.shown.back();
  EXPECT_EQ(box.text, std::string("You are about to exit the ") + kTitle +
                          "without completing an analysis on this alert.\r\nAre you sure you want to exit?");
  EXPECT_EQ(box.title, state_.ProductName);
  EXPECT_EQ(box.icon, platform::BoxIcon::kInformation);
  EXPECT_EQ(box.buttons, platform::BoxButtons::kYesNo);
  world_.platform.message_boxes.Answer(BoxAnswer::kYes);
  EXPECT_TRUE(wizard_->Unload(UnloadCause::kCloseBox));
  EXPECT_EQ(result_, std::nullopt);
  EXPECT_EQ(Body(), "stop");
}

TEST_F(WizardTest, CloseThatIsNotTheUsersReportsTheHighestAnswerSoFar) {
  Open(3);
  Next();
  Answer(0);
  wizard_->Unload(UnloadCause::kCode);
  EXPECT_EQ(result_, 0);
  Open(3);
  Next();
  Answer(2);
  Answer(0);
  wizard_->Unload(UnloadCause::kCode);
  EXPECT_EQ(result_, 1);
  Open(3);
  wizard_->Unload(UnloadCause::kCode);
  EXPECT_EQ(result_, 1) << "nothing was answered";
}

TEST_F(WizardTest, WindowThatNobodyClosedReportsNothing) {
  Open(1);
  Go({1});
  page_.reset();
  wizard_.reset();
  EXPECT_EQ(result_, std::nullopt);
}

TEST_F(WizardTest, LinksOfThePortalOpenOutsideAndCommandsDoNothing) {
  Open(1);
  const auto& view = wizard_->WBr;
  EXPECT_TRUE(view.BeforeNavigate("http://central.test/x", ""));
  EXPECT_THAT(world_.platform.shell.opened, ElementsAre("http://central.test/x"));
  for (const char* url : {"about:do", "about:undo", "about:showhide", "HTTP://central.test/x"})
    EXPECT_FALSE(view.BeforeNavigate(url, "")) << url;
  EXPECT_THAT(world_.platform.family.quarantine_calls, IsEmpty());
  EXPECT_EQ(world_.platform.shell.opened.size(), 1U);
}

TEST_F(WizardTest, BrowserThatDoesNotComeLeavesABlankPageAfterTenSeconds) {
  Open(1);
  page_->on_navigate = nullptr;
  const auto start = world_.platform.clock.MonotonicMs();
  Next();
  EXPECT_GE(world_.platform.clock.MonotonicMs() - start, 10000);
  EXPECT_EQ(Body(), kBlankPage);
  Answer(0);
  EXPECT_TRUE(wizard_->bNext.enabled);
}

// The answer was given while the page still came, and the page then cleared it.
TEST_F(WizardTest, AnswerGivenDuringTheWaitCounts) {
  Open(1);
  page_->on_navigate = [this] {
    world_.platform.timers.Post([this] {
      Answer(1);
      wizard_->WBr.NavigationComplete.Raise();
    });
  };
  Next();
  EXPECT_TRUE(wizard_->optAns[1].checked);
  EXPECT_TRUE(wizard_->bNext.enabled);
  page_->on_navigate = [this] { wizard_->WBr.NavigationComplete.Raise(); };
  Next();
  EXPECT_EQ(Body(), "body Not well.");
}

// The page of the step before came last, under the buttons of the next.
TEST_F(WizardTest, ClickDuringTheWaitLeavesThePageOfTheStepThatIsAskedAbout) {
  Open(2);
  bool clicked = false;
  page_->on_navigate = [&] {
    world_.platform.timers.Post([&] {
      if (!std::exchange(clicked, true)) {
        Answer(0);
        Next();
      }
      wizard_->WBr.NavigationComplete.Raise();
    });
  };
  Next();
  EXPECT_TRUE(clicked);
  EXPECT_EQ(wizard_->step(), 2);
  EXPECT_THAT(Body(), HasSubstr("page 2"));
}

TEST_F(WizardTest, ClosedWindowWaitsForNoPageAndWritesNone) {
  Open(1);
  page_->on_navigate = [this] {
    world_.platform.timers.Post([this] {
      world_.platform.message_boxes.Answer(BoxAnswer::kYes);
      wizard_->Unload(UnloadCause::kCloseBox);
    });
  };
  const auto start = world_.platform.clock.MonotonicMs();
  Next();
  EXPECT_LT(world_.platform.clock.MonotonicMs() - start, 1000);
  EXPECT_EQ(Body(), "stop");
}

TEST_F(WizardTest, EventsAreExplainedWhenTheyAreReached) {
  Open(3);
  EXPECT_THAT(asked_, ElementsAre(0));
  Go({0});
  EXPECT_THAT(asked_, ElementsAre(0, 1, 2));
}

TEST_F(WizardTest, WindowThatBecomesActiveAgainIsNotIntroducedAgain) {
  Open(1);
  Next();
  wizard_->Activate();
  EXPECT_THAT(asked_, ElementsAre(0, 1));
}

}  // namespace
}  // namespace zendrix::home
