#include "core/splash.h"
#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class FrmMainTest : public FrmMainFixture {};

TEST_F(FrmMainTest, DraggingAnInnerColumnOpenIsUndone) {
  Open();
  form_->EventList.SetColWidth(kColWhole, 500);
  form_->EventList.mouse_used.Raise();
  EXPECT_EQ(form_->EventList.column(kColWhole).width, 0);
}

TEST_F(FrmMainTest, ColumnSettingsHideAndSizeByTheExactHeading) {
  reg_ini_.SaveSettingHashed("Columns", "Hostname", "0");
  reg_ini_.SaveSettingHashed("Columns", "Nonsense", "0");
  reg_ini_.ReadRegInfo();
  OpenOn({Line(1, "system")});
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 0);
  world_.state.settings.ColumnStates = {{"Hostname", "1"}};
  form_->ApplyColumnSettings();
  EXPECT_GT(form_->EventList.column(kColHostname).width, 0);
}

TEST_F(FrmMainTest, ViewsAreToldOfAllNewWidthsAtOnce) {
  OpenOn({Line(1, "system")});
  for (const int column : {kColDateTime, kColHostname, kColMonitor}) form_->EventList.SetColWidth(column, 1);
  int told = 0;
  const auto link = form_->EventList.columns_changed.Connect([&] { ++told; });
  form_->AutoSizeColumns();
  EXPECT_EQ(told, 1);
  EXPECT_GT(form_->EventList.column(kColHostname).width, 1);
  for (const int column : {kColCode, kColWhole, kColTimeKey})
    EXPECT_EQ(form_->EventList.column(column).width, 0);
  EXPECT_TRUE(form_->EventList.redraw());
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  EXPECT_EQ(form_->RecCnt.text.Get(), "1 record");
}

TEST_F(FrmMainTest, RightClickOnTheIconBringsTheWindowForward) {
  OpenOn({Line(1, "system")});
  int forward = 0;
  const auto front = form_->bring_forward.Connect([&] { ++forward; });
  form_->tray.mouse.Raise(widgets::kTrayRightUp);
  form_->enabled = false;
  form_->tray.mouse.Raise(widgets::kTrayRightUp);
  EXPECT_EQ(forward, 2);
}

TEST_F(FrmMainTest, SortMarksTheFirstRow) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->EventList.Row = 2;
  form_->EventList.header_clicked.Raise(kColHostname);
  EXPECT_EQ(form_->EventList.Row.Get(), 1);
  EXPECT_EQ(form_->HeaderColumn, kColHostname);
}

// A million rows take their time.
TEST_F(FrmMainTest, PointerIsAnHourglassForAsLongAsASortLasts) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  std::vector<int> shapes;
  const auto pointer = screen_.MousePointer.changed.Connect([&] { shapes.push_back(screen_.MousePointer); });
  int while_sorting = -1;
  const auto sorted = form_->EventList.rows_sorted.Connect([&] { while_sorting = screen_.MousePointer; });
  form_->EventList.header_clicked.Raise(kColDescription);
  EXPECT_EQ(while_sorting, widgets::kPointerHourglass);
  EXPECT_THAT(shapes, ::testing::ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
}

TEST_F(FrmMainTest, ScrolledPlaceIsRemembered) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  EXPECT_EQ(form_->SavedTopRow, 1);
  EXPECT_EQ(form_->SavedLeftCol, 1);
  form_->EventList.TopRow = 2;
  form_->EventList.LeftCol = 4;
  form_->EventList.scrolled.Raise();
  EXPECT_EQ(form_->SavedTopRow, 2);
  EXPECT_EQ(form_->SavedLeftCol, 4);
  form_->EventList.LeftCol = 0;
  AppendLine(Line(3, "system"));
  Tick();
  EXPECT_EQ(form_->EventList.LeftCol.Get(), 4);
}

TEST_F(FrmMainTest, SortedGridStaysInItsOrderWhenLinesArrive) {
  OpenOn({"1,beta,system,A,x", "2,alpha,system,A,x"});
  form_->EventList.header_clicked.Raise(kColHostname);  // descending
  form_->EventList.header_clicked.Raise(kColHostname);  // ascending
  EXPECT_THAT(Column(kColHostname), ElementsAre("alpha", "beta"));
  EXPECT_EQ(form_->EventList.column(kColHostname).arrow, widgets::SortArrow::kUp);
  AppendLine("3,aardvark,system,A,x");
  Tick();
  EXPECT_THAT(Column(kColHostname), ElementsAre("aardvark", "alpha", "beta"));
  EXPECT_EQ(form_->EventList.column(kColHostname).arrow, widgets::SortArrow::kUp);
}

TEST_F(FrmMainTest, HeadingThatDoesNotFitBesideItsArrowIsCut) {
  OpenOn({Line(1, "system")});
  form_->EventList.SetColWidth(kColHostname, 800);
  form_->EventList.header_clicked.Raise(kColHostname);
  EXPECT_EQ(form_->EventList.column(kColHostname).heading, "Host...");
  form_->EventList.header_clicked.Raise(kColMonitor);
  EXPECT_EQ(form_->EventList.column(kColHostname).heading, "Hostname");
}

TEST_F(FrmMainTest, EveryHeadingThatWasCutComesBackWhole) {
  OpenOn({Line(1, "system")});
  const std::pair<int, const char*> headings[] = {{kColDateTime, "Date/Time"},
                                                  {kColHostname, "Hostname"},
                                                  {kColMonitor, "Monitor"},
                                                  {kColChange, "Change"},
                                                  {kColDescription, "Description"}};
  for (const auto& [column, heading] : headings) {
    form_->EventList.SetColWidth(column, 650);
    form_->EventList.header_clicked.Raise(column);
    EXPECT_THAT(form_->EventList.column(column).heading, HasSubstr("...")) << heading;
    form_->EventList.header_clicked.Raise(column == kColMonitor ? kColHostname : kColMonitor);
    EXPECT_EQ(form_->EventList.column(column).heading, heading);
  }
}

TEST_F(FrmMainTest, LogsOpenBesideTheWindowFromMenuAndToolbar) {
  using Shown = widgets::ScriptedFormHost::Shown;
  OpenOn({Line(1, "system")});
  form_->MnVLogs.clicked.Raise();
  EXPECT_THAT(world_.host.shown, ElementsAre(Shown{"frmLog", "", false, true, false}));
  EXPECT_TRUE(form_->enabled);
  widgets::Form* const first = world_.state.forms.Find("frmLog");
  ASSERT_NE(first, nullptr);
  int forward = 0;
  const auto front = first->bring_forward.Connect([&] { ++forward; });
  form_->TbarVLogs.clicked.Raise();
  EXPECT_EQ(world_.state.forms.Find("frmLog"), first);
  EXPECT_EQ(forward, 1);
  first->Unload(widgets::UnloadCause::kCloseBox);
  form_->TbarVLogs.clicked.Raise();
  EXPECT_TRUE(world_.state.forms.IsFormLoaded("frmLog"));
}

TEST_F(FrmMainTest, LogsDoNotOpenWhileALoadRunsOrABoxIsOpen) {
  OpenOn({Line(1, "system")});
  for (bool* busy : {&form_->UpdateBusy, &form_->RefreshBusy}) {
    *busy = true;
    form_->MnVLogs.clicked.Raise();
    form_->TbarVLogs.clicked.Raise();
    *busy = false;
  }
  form_->enabled = false;
  form_->TbarVLogs.clicked.Raise();
  EXPECT_THAT(world_.host.shown, IsEmpty());
}

TEST_F(FrmMainTest, EventIdHeaderSortsNothing) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->EventList.header_clicked.Raise(kColEventID);
  EXPECT_EQ(form_->sort.SortColumn, 0);
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
}

TEST_F(FrmMainTest, PathIsCompactedToItsPanel) {
  Open();
  EXPECT_EQ(form_->Msg.text.Get(), Path());
  form_->Msg.width = 115 + 30 * 6 * 15;
  EXPECT_LE(form_->Msg.text.Get().size(), 30u);
  EXPECT_THAT(form_->Msg.text.Get(), HasSubstr("..."));
}

TEST_F(FrmMainTest, CloseBoxHidesAndTheConsoleLivesOn) {
  Open();
  EXPECT_FALSE(form_->Unload(widgets::UnloadCause::kCloseBox));
  EXPECT_FALSE(form_->visible);
  EXPECT_TRUE(form_->tray.shown);
  AppendLine(Line(1, "system"));
  Tick();
  EXPECT_THAT(IDs(), ElementsAre("1"));
}

TEST_F(FrmMainTest, NotableEventBehindAHiddenWindowFlashesForItsFourMonitors) {
  Open();
  form_->Unload(widgets::UnloadCause::kCloseBox);
  AppendLine(Line(1, "monitoring agent", "x", "N"));
  Tick();
  EXPECT_TRUE(form_->NotablePending);
  world_.platform.timers.Advance(1000);
  EXPECT_EQ(form_->tray.icon.Get(), widgets::TrayIcon::kNotableSystemTrayIcon);
  world_.platform.timers.Advance(1000);
  EXPECT_EQ(form_->tray.icon.Get(), widgets::TrayIcon::kForm);
  form_->Tray_Mouse(widgets::kTrayLeftUp);
  Tick();
  EXPECT_FALSE(form_->NotablePending);
  EXPECT_EQ(form_->tray.icon.Get(), widgets::TrayIcon::kForm);
}

TEST_F(FrmMainTest, SeenEventGivesTheIconItsOwnPictureBackWhicheverItShowed) {
  Open();
  form_->Unload(widgets::UnloadCause::kCloseBox);
  AppendLine(Line(1, "monitoring agent", "x", "N"));
  Tick();
  form_->Tray_Mouse(widgets::kTrayLeftUp);
  form_->tray.icon = widgets::TrayIcon::kNotableSystemTrayIcon;
  form_->Timer1_Timer();
  EXPECT_EQ(form_->tray.icon.Get(), widgets::TrayIcon::kForm);
  world_.platform.timers.Advance(3000);
  EXPECT_EQ(form_->tray.icon.Get(), widgets::TrayIcon::kForm) << "it flashes no more";
}

TEST_F(FrmMainTest, IconAlternatesForAsLongAsTheEventWaits) {
  Open();
  form_->Unload(widgets::UnloadCause::kCloseBox);
  AppendLine(Line(1, "monitoring agent", "x", "N"));
  Tick();
  std::vector<bool> notable;
  for (int tick = 0; tick < 4; ++tick) {
    world_.platform.timers.Advance(1000);
    notable.push_back(form_->tray.icon.Get() == widgets::TrayIcon::kNotableSystemTrayIcon);
  }
  EXPECT_THAT(notable, ElementsAre(true, false, true, false));
}

TEST_F(FrmMainTest, OtherMonitorBehindAHiddenWindowStaysPendingWithoutFlashing) {
  Open();
  form_->Unload(widgets::UnloadCause::kCloseBox);
  AppendLine(Line(1, "system"));
  Tick();
  EXPECT_TRUE(form_->NotablePending);
  world_.platform.timers.Advance(3000);
  EXPECT_EQ(form_->tray.icon.Get(), widgets::TrayIcon::kForm);
  form_->Tray_Mouse(widgets::kTrayLeftUp);
  Tick();
  EXPECT_TRUE(form_->NotablePending);
}

TEST_F(FrmMainTest, EachOfTheFourMonitorsLetsTheIconFlashWhateverItsCase) {
  for (const char* monitor : {"Monitor Analysis Agent #1", "monitoring agent", "MONITOR ANALYSIS AGENT #2",
                              "test monitoring agent"}) {
    Put({});
    Open();
    form_->Unload(widgets::UnloadCause::kCloseBox);
    AppendLine(Line(1, monitor, "x", "N"));
    Tick();
    EXPECT_TRUE(form_->Timer2->Running()) << monitor;
    world_.platform.timers.Advance(1000);
    EXPECT_EQ(form_->tray.icon.Get(), widgets::TrayIcon::kNotableSystemTrayIcon) << monitor;
  }
  for (const char* monitor : {"Monitor Analysis Agent #3", "Monitor Analysis Agent", "Monitoring Agents"}) {
    Put({});
    Open();
    form_->Unload(widgets::UnloadCause::kCloseBox);
    AppendLine(Line(1, monitor, "x", "N"));
    Tick();
    EXPECT_FALSE(form_->Timer2->Running()) << monitor;
  }
}

TEST_F(FrmMainTest, PendingEventWaitsForAFlashBeforeItIsGoneTo) {
  OpenOn({Line(1, "system"), Line(2, "system", "seen", "N"), Line(3, "system")});
  form_->Unload(widgets::UnloadCause::kCloseBox);
  AppendLine(Line(4, "system", "waits", "N"));
  Tick();
  form_->Tray_Mouse(widgets::kTrayLeftUp);
  Tick();
  Tick();
  EXPECT_TRUE(form_->NotablePending) << "nothing has flashed";
  EXPECT_EQ(form_->replay.CurrentRow, 2) << "still on the event of the start";
  form_->Unload(widgets::UnloadCause::kCloseBox);
  AppendLine(Line(5, "test monitoring agent", "flashes", "N"));
  Tick();
  Tick();
  EXPECT_TRUE(form_->NotablePending) << "nobody has looked";
  form_->Tray_Mouse(widgets::kTrayLeftUp);
  Tick();
  EXPECT_FALSE(form_->NotablePending);
  EXPECT_FALSE(form_->Timer2->Running());
  EXPECT_EQ(form_->EventList.WholeDescription(form_->replay.CurrentRow), "flashes");
}

TEST_F(FrmMainTest, ExitAnsweredNoStays) {
  Open();
  Boxes().Answer(platform::BoxAnswer::kNo);
  form_->MnFExit_Click();
  EXPECT_TRUE(form_->loaded());
}

TEST_F(FrmMainTest, NothingInTheTrayMenuWorksUnderAnOpenQuestion) {
  OpenOn({Line(1, "system")});
  int menus = 0;
  const auto menu = form_->mPopupSys.popup.Connect([&] { ++menus; });
  form_->state = widgets::WindowState::kMaximised;
  form_->enabled = false;
  for (widgets::MenuItem* item : form_->mPopupSys.items) {
    EXPECT_FALSE(item->enabled) << item->name();
    item->clicked.Raise();
  }
  form_->MnFExit.clicked.Raise();
  form_->Tray_Mouse(widgets::kTrayRightUp);
  EXPECT_THAT(Boxes().shown, IsEmpty());
  EXPECT_EQ(menus, 0);
  EXPECT_TRUE(form_->loaded());
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kMaximised);
  form_->enabled = true;
  for (widgets::MenuItem* item : form_->mPopupSys.items) EXPECT_TRUE(item->enabled) << item->name();
  form_->Tray_Mouse(widgets::kTrayRightUp);
  EXPECT_EQ(menus, 1);
}

TEST_F(FrmMainTest, TrayMenuSetsTheWindowsState) {
  OpenOn({Line(1, "system")});
  int forward = 0;
  const auto front = form_->bring_forward.Connect([&] { ++forward; });
  form_->visible = false;
  form_->mPopMinimize.clicked.Raise();
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kMinimised);
  EXPECT_TRUE(form_->visible);
  form_->mPopMaximize.clicked.Raise();
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kMaximised);
  form_->mPopRestore.clicked.Raise();
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kNormal);
  EXPECT_EQ(forward, 3);
}

TEST_F(FrmMainTest, TrayMenuQuitAsksFirst) {
  OpenOn({Line(1, "system")});
  Boxes().Answer(platform::BoxAnswer::kNo);
  form_->mPopExit.clicked.Raise();
  ASSERT_EQ(Boxes().shown.size(), 1u);
  EXPECT_THAT(Boxes().shown[0].text, HasSubstr("Are you sure you want to exit?"));
  EXPECT_TRUE(form_->loaded());
}

TEST_F(FrmMainTest, LeftClickOnTheIconShowsTheWindowAndOtherMouseActsDoNothing) {
  OpenOn({Line(1, "system")});
  form_->visible = false;
  form_->state = widgets::WindowState::kMaximised;
  form_->tray.mouse.Raise(512);
  EXPECT_FALSE(form_->visible);
  form_->tray.mouse.Raise(widgets::kTrayLeftUp);
  EXPECT_TRUE(form_->visible);
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kNormal);
}

TEST_F(FrmMainTest, AnotherStartBringsAMaximisedWindowForwardMaximised) {
  OpenOn({Line(1, "system")});
  int forward = 0;
  const auto front = form_->bring_forward.Connect([&] { forward += form_->visible ? 1 : 0; });
  form_->state = widgets::WindowState::kMaximised;
  form_->visible = false;
  form_->ComeForward();
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kMaximised);
  EXPECT_EQ(forward, 1);
  form_->state = widgets::WindowState::kMinimised;
  form_->ComeForward();
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kNormal);
  form_->visible = false;
  form_->enabled = false;
  form_->ComeForward();
  EXPECT_FALSE(form_->visible);
}

TEST_F(FrmMainTest, OnlyRootIsWarned) {
  EXPECT_FALSE(OpenOn({Line(1, "system")}).lblRootWarning.visible);
  world_.platform.host.runs_as_root = true;
  frmMain& as_root = Open();
  EXPECT_TRUE(as_root.lblRootWarning.visible);
  EXPECT_THAT(as_root.lblRootWarning.caption.Get(), HasSubstr("(as root)"));
}

TEST_F(FrmMainTest, ExitAnsweredYesSavesPlacesAndEndsTheProcess) {
  OpenOn({Line(1, "system")});
  form_->width = 800;
  form_->EventList.SetColWidth(kColHostname, 777);
  Boxes().Answer(platform::BoxAnswer::kYes);
  EXPECT_EQ(world_.EndOf([&] { form_->MnFExit_Click(); }), 0);
  EXPECT_FALSE(form_->tray.shown);
  const std::string ini = world_.platform.files.Get(reg_ini_.IniPath());
  EXPECT_THAT(ini, HasSubstr("[EventList Colwidths]"));
  EXPECT_THAT(ini, HasSubstr("2=777"));
  EXPECT_THAT(ini, HasSubstr("Width=800"));
}

// The splitter's place was neither saved nor brought back, and the sections stood in another order.
TEST_F(FrmMainTest, UnloadSavesTheSplitterThenTheWidthsThenTheWindow) {
  OpenOn({Line(1, "system")});
  form_->lblHDrag.Top = 4500;
  form_->lblHDrag.Left = 1;
  form_->lblHDrag.Height = 61;
  form_->lblHDrag.Width = 9000;
  for (int i = 0; i < form_->EventList.Cols(); ++i) form_->EventList.SetColWidth(i, 100 + i);
  form_->left = 10;
  form_->top = 20;
  form_->width = 800;
  form_->height = 600;
  const std::string before = world_.platform.files.Get(reg_ini_.IniPath());
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(); }), 0);
  EXPECT_EQ(world_.platform.files.Get(reg_ini_.IniPath()),
            before +
                "[lblHDrag Settings]\r\nTop=4500\r\nLeft=1\r\nHeight=61\r\nWidth=9000\r\n"
                "[EventList Colwidths]\r\n0=100\r\n1=101\r\n2=102\r\n3=103\r\n4=104\r\n"
                "5=0\r\n6=0\r\n7=0\r\n8=108\r\n"
                "[frmMain Settings]\r\nWState=0\r\nTop=20\r\nLeft=10\r\nHeight=600\r\nWidth=800\r\n");
  const widgets::Splitter& bar = Open().lblHDrag;
  EXPECT_EQ(bar.Top, 4500);
  EXPECT_EQ(bar.Left, 1);
  EXPECT_EQ(bar.Height, 61);
  EXPECT_EQ(bar.Width, 9000);
}

TEST_F(FrmMainTest, MinimisedWindowSavesNoPlaceOfTheSplitterEither) {
  OpenOn({Line(1, "system")});
  form_->lblHDrag.Top = 4500;
  form_->state = widgets::WindowState::kMinimised;
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(); }), 0);
  EXPECT_THAT(world_.platform.files.Get(reg_ini_.IniPath()), ::testing::Not(HasSubstr("lblHDrag")));
}

TEST_F(FrmMainTest, SplitterThatWasNeverSavedStandsInItsFirstPlace) {
  EXPECT_EQ(Open().lblHDrag.Top, 6000);
}

TEST_F(FrmMainTest, InstanceLockIsReleasedAtTheEnd) {
  ASSERT_TRUE(world_.platform.instance_lock.Acquire("Global\\zendrix"));
  OpenOn({Line(1, "system")});
  form_->Unload(widgets::UnloadCause::kCloseBox);
  EXPECT_EQ(world_.platform.instance_lock.held(), "Global\\zendrix") << "a hidden console still runs";
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(); }), 0);
  EXPECT_EQ(world_.platform.instance_lock.held(), "");
}

TEST_F(FrmMainTest, SavedWidthsComeBack) {
  reg_ini_.SaveColWidths("EventList", {10, 20, 30, 40, 50, 60, 70, 80, 90});
  OpenOn({Line(1, "system")});
  EXPECT_THAT(form_->EventList.ColWidths(), ElementsAre(10, 20, 30, 40, 50, 0, 0, 0, 90));
}

TEST_F(FrmMainTest, SavedPlaceComesBackAndAMinimisedOneIsNotSaved) {
  OpenOn({Line(1, "system")});
  form_->width = 811;
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(); }), 0);
  Open();
  EXPECT_EQ(form_->width.Get(), 811);
  form_->width = 822;
  form_->EventList.SetColWidth(kColHostname, 778);
  form_->state = widgets::WindowState::kMinimised;
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(); }), 0);
  const std::string ini = world_.platform.files.Get(reg_ini_.IniPath());
  EXPECT_THAT(ini, HasSubstr("Width=811"));
  EXPECT_THAT(ini, ::testing::Not(HasSubstr("2=778")));
}

TEST_F(FrmMainTest, SplashGoesWhenTheFormIsLoaded) {
  core::frmSplash splash(world_.state.forms, "x");
  OpenOn({Line(1, "system")});
  EXPECT_FALSE(splash.loaded());
}

TEST_F(FrmMainTest, TrayTipNamesTheProduct) {
  OpenOn({Line(1, "system")});
  EXPECT_EQ(form_->tray.tip.Get(), "Korvessa Zendrix Administrator");
  EXPECT_TRUE(form_->tray.shown);
}

TEST_F(FrmMainTest, TitleNamesTheProductAndAboutOpens) {
  Open();
  EXPECT_EQ(form_->title.Get(), "Korvessa Zendrix Administrator");
  EXPECT_EQ(form_->MnHAbout.caption.Get(), "About Korvessa Zendrix Administrator");
  bool disabled = false;
  world_.host.WhileOpen("frmAbout", [&](widgets::Form&) { disabled = !form_->enabled; });
  form_->MnHAbout.clicked.Raise();
  EXPECT_TRUE(disabled);
  EXPECT_TRUE(form_->enabled);
}

}  // namespace
}  // namespace zendrix::admin
