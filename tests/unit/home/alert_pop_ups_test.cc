#include "home/alert_pop_ups.h"

#include <utility>

#include "core/date_rules.h"
#include "core/moments.h"
#include "core/run_time_error.h"
#include "settings/reg_ini.h"
#include "store/reader.h"
#include "support/console_world.h"

namespace zendrix::home {
namespace {

using Shown = widgets::ScriptedFormHost::Shown;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FakeWindow final : public MainWindow {
 public:
  explicit FakeWindow(widgets::FormList& forms) : main(forms, "frmNewUI") {}
  widgets::Form& form() override { return main; }
  bool Loading() const override { return loading; }
  bool InSight() const override { return in_sight; }
  void ShowAlert(const std::string& key) override {
    led_to.push_back(key);
    if (on_show) on_show();
    if (no_such_alert) core::Raise(core::kElementNotFound);
  }

  widgets::Form main;
  bool loading = false;
  bool in_sight = false;
  bool no_such_alert = false;
  std::function<void()> on_show;
  std::vector<std::string> led_to;
};

class AlertPopUpsTest : public ::testing::Test {
 protected:
  AlertPopUpsTest() {
    state_.settings.NormalTop = 90.909088F;
    state_.settings.SuspiciousTop = 95.454544F;
    state_.settings.PopOrigHigh = true;
    state_.settings.PopNotifyMs = true;
    state_.Desc[9] = {"002,On <date> at <time>.<crlf><OriRisk>, now <ResRisk>.", "003,Only the rest", ""};
    world_.platform.clock.SetUtc(kNow);
  }

  // An alert with these levels arrives. IDs count from 1.
  void Arrive(const std::string& original, const std::string& change) {
    world_.platform.files.PutMore(kPath, std::to_string(kNow) + ",HOST,7,Aggregation|" + original + "|" +
                                             change + "|Tcp Port=22|||x\r\n");
    reader_.InitClass(kPath);
    auto row = reader_.EventTable->Clone();
    row.MoveLast();
    pop_ups_.ShowAlertPopUp(row);
  }
  bool IsOpen(const char* name) { return state_.forms.IsFormLoaded(name); }
  frmPopUpMsg& PopUp() { return *pop_ups_.pop_up(); }
  frmNotifyMsg& Notice() { return *pop_ups_.notice(); }
  std::string Saved(const std::string& key) {
    const std::string ini = world_.platform.files.Get(world_.InFolder("zendrix.ini"));
    const std::size_t at = ini.find("\n" + key + "=");
    return at == std::string::npos ? "nothing" : ini.substr(at + key.size() + 2, 1);
  }

  static constexpr int kNow = 1795225800;  // 2026-11-21 01:50:00 UTC
  static constexpr char kPath[] = "/opt/zendrix/KorvessaMonitoring.kvl";

  zendrix::testing::ConsoleWorld world_;
  core::AppState& state_ = world_.state;
  settings::RegIni reg_ini_{world_.state, world_.log};
  settings::MiscSettings misc_{world_.state, reg_ini_};
  store::CMkvlf reader_{world_.state, world_.log};
  FakeWindow window_{world_.state.forms};
  AlertPopUps pop_ups_{world_.state, world_.log, misc_, window_};
};

TEST_F(AlertPopUpsTest, BlockedIntrusionIsReportedWithItsTitleAndTheLevelThatIsLeft) {
  Arrive("0.99", "0.92");
  EXPECT_EQ(PopUp().title.Get(), "Suspicious Event Alert!");
  EXPECT_EQ(PopUp().lblTitle.caption.Get(), "Intrusion Alert");
  EXPECT_EQ(PopUp().lblMsg.caption.Get(), "On 11/21/2026 at 01:50:00 AM.\r\nIntrusion, now Suspicious.");
  EXPECT_EQ(PopUp().Key, "K1");
  EXPECT_THAT(world_.host.shown, ElementsAre(Shown{"frmPopUpMsg", "frmNewUI", true, false, false}));
  EXPECT_TRUE(PopUp().on_top);
}

TEST_F(AlertPopUpsTest, BlockedIntrusionIsNotReportedWhenOnlyTheOthersAre) {
  state_.settings.PopOrigHigh = false;
  Arrive("0.99", "0.92");
  EXPECT_THAT(world_.host.shown, IsEmpty());
}

TEST_F(AlertPopUpsTest, IntrusionThatCouldNotBeBlockedIsReportedEitherWay) {
  state_.settings.PopOrigHigh = false;
  Arrive("0.99", "0.99");
  EXPECT_EQ(PopUp().lblTitle.caption.Get(), "Alert Status");
  EXPECT_EQ(PopUp().Key, "K1");
}

TEST_F(AlertPopUpsTest, AlertThatTurnedIntoAnIntrusionKeepsThePlainTitle) {
  Arrive("0.1", "0.99");
  EXPECT_EQ(PopUp().lblTitle.caption.Get(), "Alert Status");
  EXPECT_EQ(PopUp().lblMsg.caption.Get(), "On 11/21/2026 at 01:50:00 AM.\r\nIntrusion, now Intrusion.");
}

TEST_F(AlertPopUpsTest, OriginalThatIsNoNumberLeavesTheDecisionToTheChange) {
  Arrive("N/A", "0.92");
  EXPECT_THAT(world_.host.shown, IsEmpty());
  Arrive("N/A", "0.99");
  EXPECT_EQ(PopUp().lblTitle.caption.Get(), "Alert Status");
}

TEST_F(AlertPopUpsTest, WindowInSightOrStillLoadingGivesNoPopUp) {
  window_.in_sight = true;
  Arrive("0.99", "0.99");
  window_.in_sight = false;
  window_.loading = true;
  Arrive("0.99", "0.99");
  EXPECT_THAT(world_.host.shown, IsEmpty());
}

TEST_F(AlertPopUpsTest, MessageIsEmptyAndCaptionsStayWithoutTheDescriptionFile) {
  state_.Desc[9].clear();
  Arrive("0.99", "0.99");
  EXPECT_EQ(PopUp().lblMsg.caption.Get(), "");
  EXPECT_EQ(PopUp().chkNotify.caption.Get(),
            "Only notify me when Zendrix is unable to block a suspicious event");
  EXPECT_EQ(PopUp().lblDetails.caption.Get(), "[Details ]");
  EXPECT_EQ(PopUp().lblClose.caption.Get(), "[Close Window ]");
}

TEST_F(AlertPopUpsTest, CheckBoxIsTickedWhileBlockedEventsAreNotReported) {
  Arrive("0.99", "0.99");
  EXPECT_EQ(PopUp().chkNotify.caption.Get(), "Only the rest");
  EXPECT_FALSE(PopUp().chkNotify.checked);
  PopUp().lblClose.clicked.Raise();
  state_.settings.PopOrigHigh = false;
  Arrive("0.99", "0.99");
  EXPECT_TRUE(PopUp().chkNotify.checked);
}

TEST_F(AlertPopUpsTest, SecondAlertReplacesWhatTheOpenWindowShows) {
  Arrive("0.1", "0.99");
  frmPopUpMsg* const first = &PopUp();
  first->chkNotify.checked = true;
  Arrive("0.99", "0.92");
  EXPECT_EQ(&PopUp(), first);
  EXPECT_EQ(PopUp().Key, "K2");
  EXPECT_EQ(PopUp().lblTitle.caption.Get(), "Intrusion Alert");
  EXPECT_EQ(PopUp().lblMsg.caption.Get(), "On 11/21/2026 at 01:50:00 AM.\r\nIntrusion, now Suspicious.");
  EXPECT_TRUE(PopUp().chkNotify.checked) << "what the user has ticked stays";
}

// Only the first form sets the title; nothing sets it back.
TEST_F(AlertPopUpsTest, OpenWindowKeepsTheTitleOfABlockedIntrusionWhenAnotherAlertReplacesIt) {
  Arrive("0.99", "0.92");
  frmPopUpMsg* const first = &PopUp();
  Arrive("0.1", "0.99");
  EXPECT_EQ(&PopUp(), first);
  EXPECT_EQ(PopUp().Key, "K2");
  EXPECT_EQ(PopUp().lblTitle.caption.Get(), "Intrusion Alert");
  EXPECT_EQ(PopUp().lblMsg.caption.Get(), "On 11/21/2026 at 01:50:00 AM.\r\nIntrusion, now Intrusion.");
}

TEST_F(AlertPopUpsTest, NewWindowBeginsWithThePlainTitleAgain) {
  Arrive("0.99", "0.92");
  PopUp().lblClose.clicked.Raise();
  Arrive("0.1", "0.99");
  EXPECT_EQ(PopUp().lblTitle.caption.Get(), "Alert Status");
}

// The handler of a click that closed the window may still be running when the next alert opens another.
TEST_F(AlertPopUpsTest, ClosedPopUpStaysUntilItsWindowHasGone) {
  Arrive("0.99", "0.92");
  std::weak_ptr<int> first;
  {
    const auto kept = std::make_shared<int>();
    first = kept;
    PopUp().lblTitle.clicked.ConnectForever([kept] {});
  }
  world_.host.windows_linger = true;
  PopUp().lblClose.clicked.Raise();
  Arrive("0.99", "0.92");
  EXPECT_FALSE(first.expired());
  world_.host.windows_linger = false;
  Arrive("0.99", "0.92");
  EXPECT_TRUE(first.expired());
  EXPECT_TRUE(PopUp().visible);
}

TEST_F(AlertPopUpsTest, HoweverTheWindowGoesItSavesItsCheckBoxAndTellsEverybody) {
  const std::vector<std::function<void()>> ways = {
      [&] { PopUp().lblClose.clicked.Raise(); },
      [&] { PopUp().lblDetails.clicked.Raise(); },
      [&] { PopUp().Unload(widgets::UnloadCause::kCloseBox); },
      [&] { PopUp().Unload(widgets::UnloadCause::kCode); },
  };
  for (const auto& close : ways) {
    for (const bool ticked : {true, false}) {
      Arrive("0.99", "0.99");
      PopUp().chkNotify.checked = ticked;
      int told = 0;
      const auto link = misc_.changed.Connect([&] { ++told; });
      close();
      EXPECT_FALSE(IsOpen("frmPopUpMsg"));
      EXPECT_EQ(state_.settings.PopOrigHigh, !ticked);
      EXPECT_EQ(Saved("PopOrigHigh"), ticked ? "0" : "1");
      EXPECT_EQ(told, 1);
    }
  }
}

TEST_F(AlertPopUpsTest, OpenWindowFollowsTheSettingAndKeepsAnUnsavedTick) {
  Arrive("0.99", "0.99");
  misc_.Set(&core::Settings::PopOrigHigh, false);
  EXPECT_TRUE(PopUp().chkNotify.checked);
  misc_.Set(&core::Settings::PopOrigHigh, true);
  EXPECT_FALSE(PopUp().chkNotify.checked);
  PopUp().chkNotify.checked = true;
  misc_.Set(&core::Settings::DontAsk, true);
  EXPECT_TRUE(PopUp().chkNotify.checked) << "another setting was announced";
}

TEST_F(AlertPopUpsTest, DetailsLeadToTheAlertAndCloseTheWindow) {
  Arrive("0.99", "0.99");
  PopUp().lblDetails.clicked.Raise();
  EXPECT_THAT(window_.led_to, ElementsAre("K1"));
  EXPECT_FALSE(IsOpen("frmPopUpMsg"));
}

TEST_F(AlertPopUpsTest, DetailsUnderAModalWindowOnlyCloseTheWindow) {
  Arrive("0.99", "0.99");
  window_.main.enabled = false;
  PopUp().lblDetails.clicked.Raise();
  EXPECT_THAT(window_.led_to, IsEmpty());
  EXPECT_FALSE(IsOpen("frmPopUpMsg"));
}

TEST_F(AlertPopUpsTest, AlertThatIsNotListedAnyMoreIsLoggedAndTheWindowCloses) {
  Arrive("0.99", "0.99");
  window_.no_such_alert = true;
  world_.quiet.Expect("'frmPopUpMsg:lblDetails_Click': Error Showing main form with Alert details.");
  PopUp().lblDetails.clicked.Raise();
  EXPECT_FALSE(IsOpen("frmPopUpMsg"));
}

TEST_F(AlertPopUpsTest, SecondClickWhileTheAlertIsBroughtUpDoesNoHarm) {
  Arrive("0.99", "0.99");
  bool again = true;
  window_.on_show = [&] {
    if (std::exchange(again, false)) PopUp().lblDetails.clicked.Raise();
  };
  PopUp().lblDetails.clicked.Raise();
  EXPECT_THAT(window_.led_to, ElementsAre("K1", "K1"));
  EXPECT_FALSE(IsOpen("frmPopUpMsg"));
}

// The window was destroyed under its own handler when the next alert came.
TEST_F(AlertPopUpsTest, AlertThatComesWhenTheWindowWasClosedUnderItsOwnClickGetsAWindowOfItsOwn) {
  Arrive("0.99", "0.99");
  window_.on_show = [&] {
    PopUp().lblClose.clicked.Raise();
    Arrive("0.99", "0.99");
  };
  PopUp().lblDetails.clicked.Raise();
  ASSERT_TRUE(IsOpen("frmPopUpMsg"));
  EXPECT_EQ(PopUp().Key, "K2");
}

TEST_F(AlertPopUpsTest, AlertThatTakesTheWindowOverUnderItsOwnClickKeepsIt) {
  Arrive("0.99", "0.99");
  window_.on_show = [&] { Arrive("0.99", "0.99"); };
  PopUp().lblDetails.clicked.Raise();
  ASSERT_TRUE(IsOpen("frmPopUpMsg"));
  EXPECT_EQ(PopUp().Key, "K2");
}

TEST_F(AlertPopUpsTest, DetailsWithoutAKeyLeadToTheFirstAlert) {
  Arrive("0.99", "0.99");
  PopUp().Key.clear();
  PopUp().lblDetails.clicked.Raise();
  EXPECT_THAT(window_.led_to, ElementsAre(""));
}

class NoticeTest : public AlertPopUpsTest {};

TEST_F(NoticeTest, NoticeStandsOnTopAndTakesNoFocus) {
  state_.Desc[9].clear();
  pop_ups_.ShowNotification();
  EXPECT_THAT(world_.host.shown, ElementsAre(Shown{"frmNotifyMsg", "frmNewUI", true, false, false}));
  EXPECT_TRUE(Notice().on_top);
  EXPECT_EQ(Notice().title.Get(), "Korvessa notification");
  EXPECT_EQ(Notice().lblTitle.caption.Get(), "No intrusions detected");
  EXPECT_EQ(Notice().lblMsg.caption.Get(), "There has been no intrusions in the last 24 hours");
  EXPECT_EQ(Notice().chkNotify.caption.Get(), "Don't show me this message again");
  EXPECT_EQ(Notice().lblClose.caption.Get(), "Dismiss");
  EXPECT_EQ(Notice().lblClose.tip.Get(), "Close Window");
}

TEST_F(NoticeTest, SecondOfTheTwoMessagesWins) {
  const auto told = [&](std::vector<std::string> texts) {
    state_.Desc[9] = std::move(texts);
    pop_ups_.ShowNotification();
    const std::string text = Notice().lblMsg.caption;
    Notice().Unload();
    return text;
  };
  EXPECT_EQ(told({"020,Twenty <date>.", "022,Twenty-two."}), "Twenty 11/21/2026 01:50:00 AM.");
  EXPECT_EQ(told({"022,At <date>, yes <date>."}), "At 11/21/2026 01:50:00 AM, yes 11/21/2026 01:50:00 AM.");
  EXPECT_EQ(told({"021,Never again"}), "There has been no intrusions in the last 24 hours");
  EXPECT_EQ(told({"020,"}), "");
}

TEST_F(NoticeTest, CheckBoxTakesItsTextAndTheSetting) {
  state_.Desc[9] = {"021,Never again"};
  state_.settings.PopNotifyMs = false;
  pop_ups_.ShowNotification();
  EXPECT_EQ(Notice().chkNotify.caption.Get(), "Never again");
  EXPECT_TRUE(Notice().chkNotify.checked);
  misc_.Set(&core::Settings::PopNotifyMs, true);
  EXPECT_FALSE(Notice().chkNotify.checked);
}

TEST_F(NoticeTest, DismissSavesTheCheckBoxAndCloses) {
  for (const bool ticked : {true, false}) {
    pop_ups_.ShowNotification();
    Notice().chkNotify.checked = ticked;
    Notice().lblClose.clicked.Raise();
    EXPECT_FALSE(IsOpen("frmNotifyMsg"));
    EXPECT_EQ(state_.settings.PopNotifyMs, !ticked);
    EXPECT_EQ(Saved("PopNotifyMs"), ticked ? "0" : "1");
  }
}

TEST_F(NoticeTest, CloseBoxSavesNothing) {
  pop_ups_.ShowNotification();
  Notice().chkNotify.checked = true;
  Notice().Unload(widgets::UnloadCause::kCloseBox);
  EXPECT_TRUE(state_.settings.PopNotifyMs);
  EXPECT_EQ(Saved("PopNotifyMs"), "nothing");
}

TEST_F(NoticeTest, PopUpTakesTheNoticeAway) {
  pop_ups_.ShowNotification();
  Notice().chkNotify.checked = true;
  Arrive("0.99", "0.92");
  EXPECT_FALSE(IsOpen("frmNotifyMsg"));
  EXPECT_TRUE(IsOpen("frmPopUpMsg"));
  EXPECT_TRUE(state_.settings.PopNotifyMs);
}

TEST_F(NoticeTest, AlertWithoutAPopUpLeavesTheNotice) {
  pop_ups_.ShowNotification();
  Arrive("0.1", "0.1");
  EXPECT_TRUE(IsOpen("frmNotifyMsg"));
}

TEST_F(NoticeTest, NoticeThatIsStillOpenTheNextDayTellsThatDay) {
  state_.Desc[9] = {"022,<date>"};
  pop_ups_.ShowNotification();
  frmNotifyMsg* const first = &Notice();
  first->chkNotify.checked = true;
  world_.platform.clock.SetUtc(kNow + 86400);
  pop_ups_.ShowNotification();
  EXPECT_EQ(&Notice(), first);
  EXPECT_EQ(Notice().lblMsg.caption.Get(), "11/22/2026 01:50:00 AM");
  EXPECT_TRUE(Notice().chkNotify.checked);
}

}  // namespace
}  // namespace zendrix::home
