#include <cmath>

#include "core/date_rules.h"
#include "core/moments.h"
#include "core/splash.h"
#include "core/version.h"
#include "core/version_text.h"
#include "home_fixture.h"

namespace zendrix::home {
namespace {

using platform::BoxAnswer;
using platform::BoxIcon;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using widgets::TrayIcon;
using widgets::WindowState;

class FrameTest : public HomeFixture {
 protected:
  std::vector<int> ShownPanes() const {
    std::vector<int> panes;
    for (const int i : kViews) {
      const auto at = static_cast<std::size_t>(i);
      if (!form_->Frame1[at] || !form_->Frame1[at]->visible) continue;
      EXPECT_TRUE(form_->fraDesc[at]->visible && form_->Frame1[at]->enabled);
      panes.push_back(i);
    }
    return panes;
  }
  std::vector<int> ShownArrows() const {
    std::vector<int> arrows;
    for (const int i : kViews)
      if (form_->vArrow[static_cast<std::size_t>(i)]->visible) arrows.push_back(i);
    return arrows;
  }
};

TEST_F(FrameTest, TitleNamesProductAndVersion) {
  const std::string version =
      core::FormatVersion(core::kVersionMajor, core::kVersionMinor, core::kVersionRevision);
  EXPECT_EQ(Open(Alert(1, "0")).title.Get(), "Korvessa Zendrix Home Edition -  v " + version);
}

TEST_F(FrameTest, SummaryIsOnShowAtTheStart) {
  Open(Alert(1, "0"));
  EXPECT_TRUE(form_->Frame2.visible);
  EXPECT_THAT(ShownPanes(), ElementsAre(kSummaryView));
  EXPECT_THAT(ShownArrows(), ElementsAre(kSummaryView));
  EXPECT_EQ(form_->PreviousView, kSummaryView);
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
}

TEST_F(FrameTest, PaneSwitchMarksItsLabelAlone) {
  Open(Alert(1, "0"));
  form_->ViewItems[kAlertsView]->clicked.Raise();
  EXPECT_THAT(ShownPanes(), ElementsAre(kAlertsView));
  for (const int i : kViews) {
    const auto at = static_cast<std::size_t>(i);
    EXPECT_EQ(form_->ViewItems[at]->emphasised, i == kAlertsView);
    EXPECT_EQ(form_->ViewItems[at]->fore_colour.Get(), i == kAlertsView ? 14518894u : 0x8000000Du);
  }
}

TEST_F(FrameTest, AlertListGetsTheKeyboard) {
  Open(Alert(1, "0"));
  int focused = 0;
  const auto link = form_->alerts.lvAlerts.focus.Connect([&] { ++focused; });
  form_->ViewItems_Click(kSummaryView);
  EXPECT_EQ(focused, 0);
  form_->summary.alerts_row.Flag.clicked.Raise();
  EXPECT_EQ(focused, 1);
}

TEST_F(FrameTest, EveryNavigationControlLeadsToItsPane) {
  Open(Alert(1, "0"));
  const auto leads_to = [&](widgets::Signal<>& clicked, int view) {
    form_->ViewItems_Click(view == kHelpView ? kSummaryView : kHelpView);
    clicked.Raise();
    return ShownPanes() == std::vector<int>{view};
  };
  for (const int view : {kAlertsView, kAdvancedView, kOptionsView, kHelpView, kSummaryView}) {
    const auto at = static_cast<std::size_t>(view);
    EXPECT_TRUE(leads_to(form_->ViewItems[at]->clicked, view)) << view;
    EXPECT_TRUE(leads_to(form_->Image1[at]->clicked, view)) << view;
  }
  for (auto [row, view] : {std::pair(&form_->summary.alerts_row, kAlertsView),
                           std::pair(&form_->summary.options_row, kOptionsView)}) {
    EXPECT_TRUE(leads_to(row->Flag.clicked, view)) << view;
    EXPECT_TRUE(leads_to(row->icView.clicked, view)) << view;
    EXPECT_TRUE(leads_to(row->icDesc.clicked, view)) << view;
  }
  EXPECT_TRUE(leads_to(form_->summary.icClick.clicked, kAlertsView));
  EXPECT_TRUE(leads_to(form_->summary.OSRiskLevel.clicked, kSummaryView));
}

TEST_F(FrameTest, PaneOnShowAndItsHeadingComeToTheFront) {
  Open(Alert(1, "0"));
  int front = 0;
  const auto pane = form_->Frame1[kHelpView]->to_front.Connect([&] { ++front; });
  const auto heading = form_->fraDesc[kHelpView]->to_front.Connect([&] { ++front; });
  form_->ViewItems_Click(kHelpView);
  EXPECT_EQ(front, 2);
  form_->ViewItems_Click(kAlertsView);
  EXPECT_EQ(front, 2);
  EXPECT_FALSE(form_->Frame1[kHelpView]->enabled);
}

TEST_F(FrameTest, PointerIsAnHourglassWhileThePaneChangesAndWhileTheFormLoads) {
  std::vector<int> shapes;
  const auto link = screen_.MousePointer.changed.Connect([&] { shapes.push_back(screen_.MousePointer); });
  Open(Alert(1, "0"));
  EXPECT_EQ(shapes.front(), widgets::kPointerHourglass);
  EXPECT_EQ(shapes.back(), widgets::kPointerDefault);
  shapes.clear();
  form_->ViewItems_Click(kHelpView);
  EXPECT_THAT(shapes, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
}

TEST_F(FrameTest, NothingIsMarkedBeforeTheLoad) {
  const frmNewUI form(
      HomeParts{state_, world_.log, reader_, reg_ini_, misc_, agent_, screen_, alerts_, services_});
  EXPECT_FALSE(form.visible);
  EXPECT_FALSE(form.Frame2.visible);
  EXPECT_FALSE(form.summary.icMore.visible);
  EXPECT_FALSE(form.alerts.sMoreInfo.enabled);
  EXPECT_FALSE(form.tray.shown);
  for (const int i : kViews) {
    const auto at = static_cast<std::size_t>(i);
    EXPECT_FALSE(form.vArrow[at]->visible);
    EXPECT_EQ(form.ViewItems[at]->fore_colour.Get(), widgets::kSystemHighlight);
  }
  EXPECT_EQ(form.alerts.sClearAll.tip.Get(), "Mark as deleted");
  EXPECT_EQ(form.alerts.sShowAll.tip.Get(), "Show also deleted alerts");
}

TEST_F(FrameTest, LoadTakesWhatTheSettingsAndTheDecisionsSay) {
  state_.settings.ShRskLvl = 42.7F;
  Open(Alert(1, "0"));
  EXPECT_EQ(form_->options.eSbRiskLevel.value.Get(), 42);
  EXPECT_EQ(alerts_.loaded, 1);
  EXPECT_TRUE(form_->alerts.sckShowAll.checked);
  EXPECT_FALSE(form_->PopupsSuppressed);
  EXPECT_EQ(form_->tray.icon.Get(), TrayIcon::kForm);
}

TEST_F(FrameTest, SavedPlaceComesBack) {
  Open(Alert(1, "0"));
  form_->width = 911;
  form_->height = 611;
  ExpectEnd();
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(); }), 0);
  Open(Alert(1, "0"));
  EXPECT_EQ(form_->width.Get(), 911);
  EXPECT_EQ(form_->height.Get(), 611);
}

TEST_F(FrameTest, SplashGoesWhenTheFormIsLoaded) {
  core::frmSplash splash(state_.forms, "x");
  Open(Alert(1, "0"));
  EXPECT_FALSE(splash.loaded());
}

TEST_F(FrameTest, FirstAlertIsSelectedAndExplainedAtTheStart) {
  Open(Alert(1, "0") + Alert(2, "0"));
  EXPECT_EQ(Selected(), "K2");
  ASSERT_FALSE(alerts_.rendered.empty());
  EXPECT_EQ(alerts_.rendered.back(), "2");
}

// Whole days without an intrusion are for the notice, every other hour for the survey; the first hours are
// no day yet.
TEST_F(FrameTest, WholeDaysAskForNoSurvey) {
  int posts = 0;
  services_.PostSurvey = [&] { ++posts; };
  Open(Alert(1, "0"));
  state_.settings.TSurv = "N";
  state_.settings.IniDate = "01/01/2004";
  const auto posts_at = [&](int hours) {
    const int before = posts;
    state_.settings.TSurv = "N";
    form_->HourTicks = 3600;
    const core::Date now = core::Now(world_.platform.clock, world_.platform.family);
    form_->alerts.LastIntrusionTime = now + 1.0 / 86400 - (hours + 0.5) / 24;
    Seconds(1);
    return posts - before;
  };
  EXPECT_EQ(posts_at(-24), 1) << "an intrusion of tomorrow, the clock having been set back";
  EXPECT_EQ(posts_at(0), 1);
  EXPECT_EQ(posts_at(1), 1);
  EXPECT_EQ(posts_at(23), 1);
  EXPECT_EQ(posts_at(24), 0);
  EXPECT_EQ(posts_at(25), 1);
  EXPECT_EQ(posts_at(48), 0);
}

TEST_F(FrameTest, DayIsCountedInTensOfSeconds) {
  Open(Alert(1, "0"));
  Seconds(9);
  EXPECT_EQ(form_->DayTicks, 0);
  Seconds(11);
  EXPECT_EQ(form_->DayTicks, 2);
}

TEST_F(FrameTest, SurveyWaitsForTheThirdDay) {
  int posts = 0;
  services_.PostSurvey = [&] { ++posts; };
  Open(Alert(1, "0"));
  state_.settings.TSurv = "N";
  const auto installed = [&](int days_back) {
    const core::Date now = core::Now(world_.platform.clock, world_.platform.family);
    state_.settings.IniDate =
        core::FormatDate(std::floor(now) - days_back, "Short Date", world_.platform.locale.info);
    form_->CheckSurvey();
  };
  installed(2);
  EXPECT_EQ(posts, 0);
  installed(3);
  EXPECT_EQ(posts, 1);
  state_.settings.TSurv = "Y";
  installed(4);
  EXPECT_EQ(posts, 1);
}

TEST_F(FrameTest, MinimisedWindowGoesOnBlinkingAndIsTold) {
  state_.settings.PopNotifyMs = true;
  Open(Alert(1, "0"));
  form_->state = WindowState::kMinimised;
  form_->AttentionPending = true;
  Seconds(9);
  EXPECT_TRUE(form_->TrayBlinking);
  EXPECT_TRUE(form_->AttentionPending);
  form_->HourTicks = 3600;
  form_->alerts.LastIntrusionTime =
      core::Now(world_.platform.clock, world_.platform.family) + 1.0 / 86400 - 2;
  EXPECT_EQ(world_.host.shown.size(), 0u);
  Seconds(1);
  EXPECT_EQ(world_.host.shown.size(), 1u);
}

TEST_F(FrameTest, IconAlternatesForAsLongAsItBlinks) {
  Open(Alert(1, "0"));
  form_->visible = false;
  form_->AttentionPending = true;
  form_->CheckRiskLevel();
  std::vector<bool> notable;
  for (int second = 0; second < 4; ++second) {
    form_->Timer2_Timer();
    notable.push_back(form_->tray.icon.Get() == TrayIcon::kNotableSystemTrayIcon);
  }
  EXPECT_THAT(notable, ElementsAre(true, false, true, false));
}

TEST_F(FrameTest, BlinkBeginsWithTheNotableIcon) {
  Open(Alert(1, "0"));
  form_->visible = false;
  form_->AttentionPending = true;
  form_->TrayIconAlternate = false;
  form_->CheckRiskLevel();
  Seconds(1);
  EXPECT_EQ(form_->tray.icon.Get(), TrayIcon::kNotableSystemTrayIcon);
}

TEST_F(FrameTest, HelpHasNoArrowAndShowsTheVersion) {
  state_.Desc[0] = {"-1,x", "0,a", "1,b", "2,c", "3,d", "4,help text", "5,e", "6,f"};
  Open(Alert(1, "0"));
  form_->ViewItems_Click(kHelpView);
  EXPECT_THAT(ShownArrows(), IsEmpty());
  EXPECT_THAT(ShownPanes(), ElementsAre(kHelpView));
  EXPECT_EQ(form_->help.htopDesc.caption.Get(), "help text");
  EXPECT_EQ(
      form_->help.hVersion.caption.Get(),
      "Version " + core::FormatVersion(core::kVersionMajor, core::kVersionMinor, core::kVersionRevision));
  EXPECT_EQ(form_->help.hAppTitle.caption.Get(), state_.ProductName);
  EXPECT_THAT(form_->help.hDescription.caption.Get(), HasSubstr("Zendrix Agent"));
  EXPECT_THAT(form_->help.hDisclaimer.caption.Get(), HasSubstr("no warranty"));
}

TEST_F(FrameTest, HeadingsComeFromTheirPlaces) {
  state_.Desc[0] = {"-1,x", "0,open", "1,b", "2,advanced", "3,options", "4,d", "5,e", "6,summary"};
  Open("");
  EXPECT_EQ(form_->logs.aDesc.caption.Get(), "advanced");
  EXPECT_EQ(form_->options.etopDesc.caption.Get(), "options");
  EXPECT_EQ(form_->summary.icShortDesc.caption.Get(), "summary");
}

TEST_F(FrameTest, HeadingsWithoutDescriptionsSaySo) {
  Open("");
  for (const widgets::Label* label :
       {&form_->logs.aDesc, &form_->options.etopDesc, &form_->summary.icShortDesc})
    EXPECT_EQ(label->caption.Get(), "Description Not Available");
}

// The look-up by position does not test the length of the file.
TEST_F(FrameTest, ShortDescriptionFileCostsALogLineAndTheStartGoesOn) {
  const std::vector<std::string> whole = {"-1,x",      "0,open", "1,b", "2,advanced",
                                          "3,options", "4,help", "5,e", "6,summary"};
  for (std::size_t lines = 1; lines <= whole.size(); ++lines) {
    state_.Desc[0].assign(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(lines));
    if (lines < 8) world_.quiet.Expect("'frmNewUI:LoadDescTips': 9: Subscript out of range");
    // The first fill of the list clears it, which shows the opening page again.
    if (lines < 2) world_.quiet.Expect("'frmNewUI:ClearAlertList': 9: Subscript out of range");
    Open(Alert(1, "0"));
    EXPECT_EQ(form_->summary.options_row.icDesc.caption.Get(), form_->options.eTitleDesc.caption.Get());
    EXPECT_EQ(form_->logs.aDesc.caption.Get(), lines > 3 ? "advanced" : "") << lines;
    EXPECT_EQ(form_->options.etopDesc.caption.Get(), lines > 4 ? "options" : "") << lines;
    EXPECT_EQ(form_->summary.icShortDesc.caption.Get(), lines > 7 ? "summary" : "") << lines;
    EXPECT_EQ(form_->alerts.lvAlerts.size(), 1u);
    EXPECT_TRUE(form_->tray.shown);
    EXPECT_THAT(ShownPanes(), ElementsAre(kSummaryView));
    EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  }
}

TEST_F(FrameTest, HelpOfAShortDescriptionFileStillShowsTheVersion) {
  state_.Desc[0] = {"-1,x", "0,open", "1,b", "2,c", "3,d"};
  world_.quiet.Expect("'frmNewUI:LoadDescTips': 9: Subscript out of range");
  Open(Alert(1, "0"));
  world_.quiet.Expect("'frmNewUI:FillHelpFra': 9: Subscript out of range");
  form_->ViewItems_Click(kHelpView);
  EXPECT_THAT(ShownPanes(), ElementsAre(kHelpView));
  EXPECT_EQ(form_->help.htopDesc.caption.Get(), "");
  EXPECT_EQ(form_->help.hAppTitle.caption.Get(), state_.ProductName);
  EXPECT_THAT(form_->help.hVersion.caption.Get(), HasSubstr("Version "));
}

TEST_F(FrameTest, ListIsClearedWithADescriptionFileOfOneLineToo) {
  Open(Alert(1, "0"));
  state_.Desc[0] = {"-1,x"};
  world_.quiet.Expect("'frmNewUI:ClearAlertList': 9: Subscript out of range");
  form_->alerts.sClearAll.clicked.Raise();
  EXPECT_EQ(form_->alerts.lvAlerts.size(), 0u);
  EXPECT_FALSE(form_->alerts.sMoreInfo.enabled);
}

TEST_F(FrameTest, MissingTableIsToldAndTheStartGoesOn) {
  Boxes().shown.clear();
  OpenForm();
  ASSERT_EQ(Boxes().shown.size(), 1u);
  EXPECT_EQ(Boxes().shown[0].icon, BoxIcon::kStop);
  EXPECT_EQ(Boxes().shown[0].text,
            "No Zendrix Data Found.  Please ensure that the Zendrix Product is properly installed.");
  EXPECT_TRUE(form_->tray.shown);
  EXPECT_FALSE(form_->PopupsSuppressed);
}

// A window that is hidden without an icon to bring it back would be lost.
TEST_F(FrameTest, CloseBoxWithoutANotificationAreaMinimisesAndSaysSoOnce) {
  Open(Line(1, "System", "0"));
  form_->tray.hosted = [] { return false; };
  EXPECT_FALSE(form_->Unload(widgets::UnloadCause::kCloseBox));
  EXPECT_TRUE(form_->visible);
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kMinimised);
  ASSERT_EQ(Boxes().shown.size(), 1U);
  EXPECT_THAT(Boxes().shown[0].text, ::testing::HasSubstr("only minimised"));
  form_->mPopRestore_Click();
  EXPECT_FALSE(form_->Unload(widgets::UnloadCause::kCloseBox));
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kMinimised);
  EXPECT_EQ(Boxes().shown.size(), 1U);
  // A desktop that shows the icon by now.
  form_->tray.hosted = [] { return true; };
  EXPECT_FALSE(form_->Unload(widgets::UnloadCause::kCloseBox));
  EXPECT_FALSE(form_->visible);
}

TEST_F(FrameTest, FirstRunAfterAnUpdateIsMinimisedWithoutANotificationArea) {
  state_.UpdatedRun = true;
  world_.platform.files.Put(Path(), Line(1, "System", "0"));
  reader_.InitClass(Path());
  form_ = std::make_unique<frmNewUI>(
      HomeParts{state_, world_.log, reader_, reg_ini_, misc_, agent_, screen_, alerts_, services_});
  form_->tray.hosted = [] { return false; };
  world_.quiet.Expect("'Load': UI started.");
  form_->Form_Load();
  form_->visible = true;
  form_->Form_Activate();
  EXPECT_TRUE(form_->visible);
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kMinimised);
  EXPECT_TRUE(Boxes().shown.empty());
}

TEST_F(FrameTest, CloseBoxHidesAndTimersRunOn) {
  Open(Alert(1, "0"));
  EXPECT_FALSE(form_->Unload(widgets::UnloadCause::kCloseBox));
  EXPECT_FALSE(form_->visible);
  EXPECT_TRUE(form_->tray.shown);
  const auto ticks = form_->HourTicks;
  Seconds(2);
  EXPECT_EQ(form_->HourTicks, ticks + 2);
}

TEST_F(FrameTest, QuitAnsweredNoStaysOnThePaneThatWasOnShow) {
  Open(Alert(1, "0"));
  form_->ViewItems_Click(kAdvancedView);
  Boxes().Answer(BoxAnswer::kNo);
  form_->ViewItems_Click(kQuitView);
  EXPECT_TRUE(form_->loaded());
  EXPECT_EQ(form_->CurrentView, kAdvancedView);
  EXPECT_THAT(ShownPanes(), ElementsAre(kAdvancedView));
  EXPECT_THAT(ShownArrows(), ElementsAre(kAdvancedView));
}

TEST_F(FrameTest, QuitAnsweredYesSavesLogsAndEndsTheProcess) {
  Open(Alert(1, "0"));
  form_->width = 900;
  state_.settings.ShowDetailsOpen = false;
  Boxes().Answer(BoxAnswer::kYes);
  ExpectEnd();
  EXPECT_EQ(world_.EndOf([&] { form_->ViewItems_Click(kQuitView); }), 0);
  EXPECT_FALSE(form_->tray.shown);
  EXPECT_THAT(state_.forms.open(), IsEmpty());
  const std::string ini = world_.platform.files.Get(reg_ini_.IniPath());
  EXPECT_THAT(ini, HasSubstr("DetSho=0"));
  EXPECT_THAT(ini, HasSubstr("Width=900"));
}

TEST_F(FrameTest, MinimisedWindowKeepsItsSavedPlace) {
  Open(Alert(1, "0"));
  form_->width = 901;
  form_->state = WindowState::kMinimised;
  ExpectEnd();
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(); }), 0);
  EXPECT_EQ(world_.platform.files.Get(reg_ini_.IniPath()).find("Width=901"), std::string::npos);
}

TEST_F(FrameTest, FirstRunAfterAnUpdateShowsOnlyTheTrayIcon) {
  state_.UpdatedRun = true;
  Open(Alert(1, "0"));
  EXPECT_FALSE(form_->visible);
  EXPECT_TRUE(form_->tray.shown);
  form_->Tray_Mouse(widgets::kTrayLeftDouble);
  EXPECT_TRUE(form_->visible);
  form_->Form_Activate();
  EXPECT_TRUE(form_->visible);
  EXPECT_THAT(ShownPanes(), ElementsAre(kSummaryView));
}

TEST_F(FrameTest, TrayClicksOpenTheMenu) {
  Open(Alert(1, "0"));
  int menus = 0, forward = 0;
  const auto menu = form_->mPopupSys2.popup.Connect([&] { ++menus; });
  const auto front = form_->bring_forward.Connect([&] { ++forward; });
  form_->Tray_Mouse(widgets::kTrayLeftUp);
  form_->Tray_Mouse(widgets::kTrayRightUp);
  form_->Tray_Mouse(512);
  EXPECT_EQ(menus, 2);
  EXPECT_EQ(forward, 2);
  EXPECT_TRUE(form_->tray.click_waits) << "a menu takes the second click of a double one";
}

TEST_F(FrameTest, ModalDialogKeepsTheTrayMenuShut) {
  Open(Alert(1, "0"));
  int menus = 0, forward = 0;
  const auto menu = form_->mPopupSys2.popup.Connect([&] { ++menus; });
  const auto front = form_->bring_forward.Connect([&] { ++forward; });
  form_->enabled = false;
  form_->visible = false;
  form_->Tray_Mouse(widgets::kTrayRightUp);
  EXPECT_EQ(menus, 0);
  EXPECT_EQ(forward, 1);
  form_->Tray_Mouse(widgets::kTrayLeftDouble);
  form_->mPopMaximize_Click();
  EXPECT_FALSE(form_->visible);
}

// The menu of the right button is the desktop's; the window came forward at a left click alone.
TEST_F(FrameTest, MenuThatTheDesktopOpensBringsTheWindowForward) {
  Open(Alert(1, "0"));
  int forward = 0;
  form_->bring_forward.ConnectForever([&] { ++forward; });
  form_->tray.menu_opens.Raise();
  EXPECT_EQ(forward, 1);
  EXPECT_TRUE(form_->tray.has_menu);
  form_->enabled = false;
  EXPECT_FALSE(form_->tray.has_menu);
  form_->enabled = true;
  EXPECT_TRUE(form_->tray.has_menu);
}

// The desktop opens the icon's menu without asking the form: Quit asked its question on top of an open one,
// and the answer to that came back to a console that was gone.
TEST_F(FrameTest, NothingInTheTrayMenuWorksUnderAnOpenQuestion) {
  Open(Alert(1, "0"));
  form_->state = WindowState::kMaximised;
  form_->enabled = false;
  for (widgets::MenuItem* item : form_->mPopupSys2.items) {
    EXPECT_FALSE(item->enabled) << item->name();
    item->clicked.Raise();
  }
  EXPECT_THAT(Boxes().shown, IsEmpty());
  EXPECT_TRUE(form_->loaded());
  EXPECT_EQ(form_->state.Get(), WindowState::kMaximised);
  form_->enabled = true;
  for (widgets::MenuItem* item : form_->mPopupSys2.items) EXPECT_TRUE(item->enabled) << item->name();
}

TEST_F(FrameTest, QuitInTheTrayMenuAsksFirst) {
  Open(Alert(1, "0"));
  Boxes().Answer(BoxAnswer::kNo);
  form_->mPopExit.clicked.Raise();
  ASSERT_EQ(Boxes().shown.size(), 1u);
  EXPECT_EQ(Boxes().shown[0].buttons, platform::BoxButtons::kYesNo);
  EXPECT_THAT(Boxes().shown[0].text, HasSubstr("Are you sure you want to exit?"));
  EXPECT_TRUE(form_->loaded());
  Boxes().Answer(BoxAnswer::kYes);
  ExpectEnd();
  EXPECT_EQ(world_.EndOf([&] { form_->mPopExit.clicked.Raise(); }), 0);
}

// The second start acted as a double click on the tray icon, which puts the window back to its normal size.
TEST_F(FrameTest, AnotherStartBringsAMaximisedWindowForwardMaximised) {
  Open(Alert(1, "0"));
  std::vector<bool> shown_when_brought_forward;
  const auto front =
      form_->bring_forward.Connect([&] { shown_when_brought_forward.push_back(form_->visible); });
  form_->state = WindowState::kMaximised;
  form_->visible = false;
  form_->ComeForward();
  EXPECT_EQ(form_->state.Get(), WindowState::kMaximised);
  form_->state = WindowState::kMinimised;
  form_->ComeForward();
  EXPECT_EQ(form_->state.Get(), WindowState::kNormal);
  EXPECT_THAT(shown_when_brought_forward, ElementsAre(true, true));
}

TEST_F(FrameTest, AnotherStartUnderAnOpenQuestionTakesItOutOfTheTaskBar) {
  Open(Alert(1, "0"));
  form_->visible = true;
  form_->state = WindowState::kMinimised;
  form_->enabled = false;
  form_->ComeForward();
  EXPECT_EQ(form_->state.Get(), WindowState::kNormal);
}

TEST_F(FrameTest, AnotherStartUnderAnOpenQuestionShowsNothingNew) {
  Open(Alert(1, "0"));
  form_->state = WindowState::kMinimised;
  form_->visible = false;
  form_->enabled = false;
  form_->ComeForward();
  EXPECT_FALSE(form_->visible);
  EXPECT_EQ(form_->state.Get(), WindowState::kMinimised);
}

TEST_F(FrameTest, RunningAsRootWarnsOnEveryPane) {
  world_.platform.host.runs_as_root = true;
  Open(Alert(1, "0"));
  for (const int view : {kAlertsView, kAdvancedView, kOptionsView, kHelpView, kSummaryView}) {
    form_->ViewItems_Click(view);
    EXPECT_TRUE(form_->lblRootWarning.visible) << view;
  }
  EXPECT_THAT(form_->lblRootWarning.caption.Get(), HasSubstr("(as root)"));
}

TEST_F(FrameTest, OrdinaryUserIsNotWarned) {
  EXPECT_FALSE(Open(Alert(1, "0")).lblRootWarning.visible);
}

TEST_F(FrameTest, TrayMenuSetsTheWindowsState) {
  Open(Alert(1, "0"));
  int forward = 0;
  const auto front = form_->bring_forward.Connect([&] { ++forward; });
  form_->mPopMinimize.clicked.Raise();
  EXPECT_EQ(form_->state.Get(), WindowState::kMinimised);
  form_->mPopMaximize.clicked.Raise();
  EXPECT_EQ(form_->state.Get(), WindowState::kMaximised);
  form_->mPopRestore.clicked.Raise();
  EXPECT_EQ(form_->state.Get(), WindowState::kNormal);
  EXPECT_EQ(forward, 3);
}

TEST_F(FrameTest, TrayTipHoldsTheProductNameInItsField) {
  state_.ProductName = std::string(100, 'x');
  Open(Alert(1, "0"));
  EXPECT_EQ(form_->tray.tip.Get(), std::string(63, 'x'));
}

TEST_F(FrameTest, PictureMovesOnceASecondWhileTheAgentRuns) {
  Open(Alert(1, "0"));
  Seconds(1);
  EXPECT_EQ(form_->summary.icImgEventCount.picture.Get(), "ecount0");
  Seconds(1);
  EXPECT_EQ(form_->summary.icImgEventCount.picture.Get(), "ecount1");
  world_.platform.services.SetStopped("ZENDRIX");
  Seconds(121);
  const std::string still = form_->summary.icImgEventCount.picture;
  Seconds(1);
  EXPECT_EQ(form_->summary.icImgEventCount.picture.Get(), still);
}

TEST_F(FrameTest, AgentIsAskedEveryTwoMinutes) {
  Open(Alert(1, "0"));
  world_.platform.services.SetStopped("ZENDRIX");
  Seconds(119);
  EXPECT_EQ(form_->AgentLevel, 1);
  Seconds(1);
  EXPECT_EQ(form_->AgentLevel, 3);
}

TEST_F(FrameTest, UpdateIsLookedForBehindEveryNineHundredthTick) {
  int checks = 0;
  services_.CheckUpdate = [&] { ++checks; };
  Open(Alert(1, "0"));
  Seconds(900);
  EXPECT_EQ(checks, 0);
  Seconds(1);
  EXPECT_EQ(checks, 1);
  EXPECT_EQ(form_->QuarterTicks, 0);
}

TEST_F(FrameTest, WholeDaysWithoutAnIntrusionAreToldToAHiddenWindow) {
  std::size_t told = 0;
  state_.settings.PopNotifyMs = true;
  state_.settings.TSurv = "Y";
  Open(Alert(1, "0"));
  const auto at_hours = [&](double hours) {
    form_->HourTicks = 3600;
    const core::Date now = core::Now(world_.platform.clock, world_.platform.family);
    form_->alerts.LastIntrusionTime = now + 1.0 / 86400 - hours / 24;
    Seconds(1);
    EXPECT_EQ(form_->HourTicks, 0);
    told = world_.host.shown.size();
  };
  at_hours(48);
  EXPECT_EQ(told, 0U) << "a visible window gets no notification";
  form_->visible = false;
  at_hours(48.5);
  // It takes the keyboard from nobody.
  EXPECT_THAT(world_.host.shown,
              ElementsAre(widgets::ScriptedFormHost::Shown{"frmNotifyMsg", "frmNewUI", true, false, false}));
  at_hours(47);
  EXPECT_EQ(told, 1U);
  at_hours(0);
  EXPECT_EQ(told, 1U);
  state_.settings.PopNotifyMs = false;
  at_hours(24);
  EXPECT_EQ(told, 1U);
}

TEST_F(FrameTest, OtherHoursAskForTheSurvey) {
  int posts = 0;
  services_.PostSurvey = [&] { ++posts; };
  Open(Alert(1, "0"));
  state_.settings.TSurv = "N";
  state_.settings.IniDate = "01/01/2004";
  form_->HourTicks = 3600;
  form_->alerts.LastIntrusionTime = core::Now(world_.platform.clock, world_.platform.family) - 5.5 / 24;
  Seconds(1);
  EXPECT_EQ(posts, 1);
}

TEST_F(FrameTest, SurveyWaitsThreeDaysAndHappensOnce) {
  int posts = 0;
  services_.PostSurvey = [&] { ++posts; };
  Open(Alert(1, "0"));
  state_.settings.TSurv = "N";
  state_.settings.IniDate = "11/07/2004";  // two days back
  form_->CheckSurvey();
  EXPECT_EQ(posts, 0);
  state_.settings.IniDate = "11/06/2004";
  form_->CheckSurvey();
  EXPECT_EQ(posts, 1);
  EXPECT_EQ(state_.settings.TSurv, "Y");
  EXPECT_THAT(world_.platform.files.Get(world_.InFolder("zendrix.ini")), HasSubstr("TSurv=Y"));
  form_->CheckSurvey();
  EXPECT_EQ(posts, 1);
}

TEST_F(FrameTest, DayTimerAsksForTheSurveyAtItsLastTick) {
  int posts = 0;
  services_.PostSurvey = [&] { ++posts; };
  Open(Alert(1, "0"));
  state_.settings.TSurv = "N";
  state_.settings.IniDate = "01/01/2004";
  form_->DayTicks = 8639;
  form_->Timer4_Timer();
  EXPECT_EQ(posts, 0);
  form_->Timer4_Timer();
  EXPECT_EQ(posts, 1);
  EXPECT_EQ(form_->DayTicks, 0);
}

TEST_F(FrameTest, TrayBlinksWhileAttentionWaitsAndStopsWhenTheWindowIsSeen) {
  Open(Alert(1, "0"));
  form_->visible = false;
  Append(Alert(2, "0.99"));
  Poll();
  Seconds(3);
  EXPECT_TRUE(form_->TrayBlinking);
  std::vector<TrayIcon> icons;
  const auto link = form_->tray.icon.changed.Connect([&] { icons.push_back(form_->tray.icon); });
  Seconds(2);
  EXPECT_THAT(icons, Contains(TrayIcon::kNotableSystemTrayIcon));
  form_->mPopRestore_Click();
  Seconds(3);
  EXPECT_FALSE(form_->TrayBlinking);
  EXPECT_FALSE(form_->AttentionPending);
  EXPECT_EQ(form_->tray.icon.Get(), TrayIcon::kForm);
}

TEST_F(FrameTest, IntrusionSeenOnAnOpenWindowBlinksWhenItIsNextHidden) {
  Open(Alert(1, "0"));
  Append(Alert(2, "0.99"));
  Poll();
  Seconds(6);
  EXPECT_TRUE(form_->AttentionPending);
  EXPECT_FALSE(form_->TrayBlinking);
  form_->Unload(widgets::UnloadCause::kCloseBox);
  Seconds(3);
  EXPECT_TRUE(form_->TrayBlinking);
}

}  // namespace
}  // namespace zendrix::home
