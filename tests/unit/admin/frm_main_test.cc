#include "admin/frm_main.h"
#include "core/moments.h"
#include "core/splash.h"

#include "support/console_world.h"

namespace zendrix::admin {
namespace {

using platform::BoxIcon;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr int kTwipsPerCharacter = 100;

class FrmMainTest : public ::testing::Test {
 protected:
  FrmMainTest() {
    world_.state.ProductName = "Korvessa Zendrix Administrator";
    world_.state.ProductEdition = "Administrator";
    Put({});
    // Everything saved before the first reading, so that it finds a file that verifies.
    for (const char* name : {"System", "Running Processes", "Monitoring Agent", "Tcp Port"})
      reg_ini_.SaveSetwChk("Monitors", name, "1");
    reg_ini_.ReadRegInfo();
  }

  std::string Path() const { return world_.InFolder("KorvessaMonitoring.kvl"); }
  static std::string Line(int time, const std::string& monitor, const std::string& text = "text",
                          const std::string& code = "A") {
    return std::to_string(time) + ",HOST," + monitor + "," + code + "," + text;
  }
  static std::string Bytes(const std::vector<std::string>& lines) {
    std::string bytes;
    for (const std::string& line : lines) bytes += line + "\r\n";
    return bytes;
  }
  void Put(const std::vector<std::string>& lines) { world_.platform.files.Put(Path(), Bytes(lines)); }
  void AppendLine(const std::string& line) { world_.platform.files.PutMore(Path(), line + "\r\n"); }

  frmMain& Open() {
    TextMetrics metrics;
    metrics.twips = [](std::string_view text) { return static_cast<int>(text.size()) * kTwipsPerCharacter; };
    metrics.pixels = [](std::string_view text) { return static_cast<int>(text.size()) * 6; };
    form_ = std::make_unique<frmMain>(
        AdminParts{world_.state, world_.log, reg_ini_, screen_, metrics, capacity_});
    form_->Form_Load();
    form_->visible = true;
    return *form_;
  }
  frmMain& OpenOn(const std::vector<std::string>& lines) {
    Put(lines);
    return Open();
  }
  void Tick() { world_.platform.timers.Advance(kTimer1Ms); }
  std::vector<std::string> Column(int col) const {
    std::vector<std::string> texts;
    for (int row = 1; row < form_->EventList.Rows(); ++row) texts.push_back(form_->EventList.Text(row, col));
    return texts;
  }
  std::vector<std::string> IDs() const { return Column(kColEventID); }
  std::string Setting(const std::string& monitor) const {
    for (const auto& [name, value] : world_.state.settings.MonitorStates)
      if (name == monitor) return value;
    return "none";
  }
  platform::ScriptedBoxes& Boxes() { return world_.platform.message_boxes; }

  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  widgets::Screen screen_;
  std::unique_ptr<frmMain> form_;
  std::size_t capacity_ = kGridCapacity;
};

TEST_F(FrmMainTest, FileWithOneLineHasOneRecord) {
  EXPECT_EQ(OpenOn({Line(100, "system")}).RecCnt.text.Get(), "1 record");
  EXPECT_THAT(IDs(), ElementsAre("1"));
}

TEST_F(FrmMainTest, NewestLineStandsOnTop) {
  OpenOn({Line(1, "system"), Line(2, "system"), Line(3, "system")});
  EXPECT_THAT(IDs(), ElementsAre("3", "2", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
}

TEST_F(FrmMainTest, EmptyFileHasNoRecords) {
  EXPECT_EQ(Open().RecCnt.text.Get(), "0 records");
  EXPECT_EQ(form_->EventList.Rows(), 1);
}

TEST_F(FrmMainTest, MonitorIsShownInProperCaseBehindItsPicture) {
  OpenOn({Line(1, "running PROCESSES")});
  EXPECT_THAT(Column(kColMonitor), ElementsAre("     Running Processes"));
  EXPECT_EQ(form_->EventList.Picture(1, kColMonitor), 12);
  ASSERT_NE(form_->GridMonitorList.ItemData("running PROCESSES"), nullptr);
  EXPECT_EQ(*form_->GridMonitorList.ItemData("running PROCESSES"), "Running Processes");
}

TEST_F(FrmMainTest, TimeIsShownInTheUsersForm) {
  OpenOn({Line(0, "system")});
  EXPECT_EQ(Column(kColDateTime)[0],
            core::DisplayTime(0, 0, world_.platform.family, world_.platform.locale.info));
  EXPECT_THAT(Column(kColTimeKey), ElementsAre("0"));
}

TEST_F(FrmMainTest, CommaInTheDescriptionEndsIt) {
  OpenOn({Line(1, "system", "one,two")});
  EXPECT_THAT(Column(kColWhole), ElementsAre("one"));
  EXPECT_THAT(Column(kColDescription), ElementsAre("one"));
}

TEST_F(FrmMainTest, LongDescriptionIsShortenedToTheColumn) {
  const std::string text(100, 'x');
  OpenOn({Line(1, "system", text)});
  EXPECT_THAT(Column(kColWhole), ElementsAre(text));
  EXPECT_LT(Column(kColDescription)[0].size() * kTwipsPerCharacter, 3945u);
  EXPECT_THAT(Column(kColDescription)[0], HasSubstr("..."));
}

TEST_F(FrmMainTest, ShortLineGivesNoRowButCounts) {
  OpenOn({Line(1, "system"), "1,2,3", Line(3, "system")});
  EXPECT_THAT(IDs(), ElementsAre("3", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
}

TEST_F(FrmMainTest, ControlCharactersBecomeBlanksAndTheEndsAreTrimmed) {
  OpenOn({"\t1,HOST,system,A,a\tb\x01"});
  EXPECT_THAT(Column(kColWhole), ElementsAre("a b"));
}

TEST_F(FrmMainTest, MonitorThatTheSettingsDoNotKnowIsShownAndAdded) {
  OpenOn({Line(1, "custom sensor")});
  EXPECT_THAT(IDs(), ElementsAre("1"));
  EXPECT_EQ(Setting("Custom Sensor"), "1");
}

// Each unknown monitor had the settings saved and read again in the middle of the load.
TEST_F(FrmMainTest, ThousandsOfUnknownMonitorsCostTheSettingsTwoReadingsALoad) {
  std::vector<std::string> lines;
  for (int i = 0; i < 4000; ++i) lines.push_back(Line(i, "sensor " + std::to_string(i)));
  int readings = 0;
  world_.platform.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == reg_ini_.IniPath()) ++readings;
  };
  world_.quiet.Expect("'RegisterMonitors': 4000 new monitor names are more than 1000. They are not stored.");
  OpenOn(lines);
  EXPECT_EQ(form_->EventList.Rows(), 4001);
  const int at_start = readings;
  AppendLine(Line(5000, "one more"));
  Tick();
  EXPECT_EQ(readings - at_start, 3);  // two, and one of the save
  EXPECT_EQ(Setting("One More"), "1");
  EXPECT_LE(at_start, 6);  // the form's own place and widths too
}

TEST_F(FrmMainTest, MonitorSetToZeroGivesNoRowAndLeavesAGap) {
  reg_ini_.SaveSettingHashed("Monitors", "System", "0");
  reg_ini_.ReadRegInfo();
  OpenOn({Line(1, "tcp port"), Line(2, "SYSTEM"), Line(3, "tcp port")});
  EXPECT_THAT(IDs(), ElementsAre("3", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
}

TEST_F(FrmMainTest, TimeThatIsNoNumberStaysAsTextAndKeepsTheKeyBefore) {
  OpenOn({"soon,HOST,system,A,x", Line(77, "system"), "later,HOST,system,A,x"});
  EXPECT_THAT(Column(kColTimeKey), ElementsAre("77", "77", "0"));
  EXPECT_EQ(Column(kColDateTime)[0], "later");
}

TEST_F(FrmMainTest, TimeBeyondThirtyTwoBitsStaysAsText) {
  OpenOn({"99999999999,HOST,system,A,x"});
  EXPECT_THAT(Column(kColDateTime), ElementsAre("99999999999"));
}

TEST_F(FrmMainTest, ColumnsAreSizedAndTheInnerOnesHidden) {
  OpenOn({Line(1, "running processes")});
  const int unit = static_cast<int>(form_->EventList.FontWidth) + 1;
  EXPECT_EQ(form_->EventList.column(kColMonitor).width, (5 + 17 + 1) * unit * 10);
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 3945);
  for (const int col : {kColCode, kColWhole, kColTimeKey}) EXPECT_EQ(form_->EventList.column(col).width, 0);
  EXPECT_EQ(form_->EventList.column(kColDateTime).arrow, widgets::SortArrow::kDown);
  EXPECT_EQ(form_->EventList.column(kColEventID).align, widgets::Align::kRight);
}

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

TEST_F(FrmMainTest, AddedLinesAppearAtTheNextTick) {
  OpenOn({Line(1, "system")});
  AppendLine(Line(2, "tcp port"));
  EXPECT_THAT(IDs(), ElementsAre("1"));
  Tick();
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "2 records");
}

TEST_F(FrmMainTest, SameSizeWithOtherContentChangesNothing) {
  OpenOn({Line(1, "system", "aaa")});
  Tick();
  Put({Line(1, "system", "bbb")});
  Tick();
  EXPECT_THAT(Column(kColWhole), ElementsAre("aaa"));
}

TEST_F(FrmMainTest, FileThatShrinksByOneByteIsReloaded) {
  std::vector<std::string> lines;
  for (int i = 0; i < 60; ++i) lines.push_back(Line(i, "system", "abc"));
  OpenOn(lines);
  std::vector<std::string> counts;
  const auto link = form_->RecCnt.text.changed.Connect([&] { counts.push_back(form_->RecCnt.text); });
  lines.back() = Line(59, "system", "ab");
  Put(lines);
  Tick();
  EXPECT_EQ(IDs().size(), 60u);
  EXPECT_EQ(Column(kColWhole)[0], "ab");
  EXPECT_THAT(counts,
              ElementsAre("file shortened, reloading", "Event View is full, Reloading...", "60 records"));
}

TEST_F(FrmMainTest, FileThatShrinksBehindAnUpdateIsReloadedAlsoWhenItIsLongerThanAtTheStart) {
  OpenOn({Line(1, "system", "a")});
  AppendLine(Line(2, "system", "a long text"));
  Tick();
  Put({Line(7, "system", "b"), Line(8, "system", "b")});
  Tick();
  EXPECT_THAT(Column(kColWhole), ElementsAre("b", "b"));
}

TEST_F(FrmMainTest, ReloadKeepsWidths) {
  OpenOn({Line(1, "system"), Line(2, "system"), Line(3, "system")});
  form_->EventList.SetColWidth(kColHostname, 1234);
  form_->EventList.SetColWidth(kColDescription, 9000);
  Put({Line(1, "system"), Line(2, "system")});
  Tick();
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 1234);
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 9000);
}

TEST_F(FrmMainTest, RefreshKeepsTheWidthsOfAGridWithThreeRows) {
  OpenOn({Line(1, "system"), Line(2, "system")});  // three with the header
  form_->EventList.SetColWidth(kColHostname, 1234);
  form_->EventList.SetColWidth(kColDescription, 9000);
  form_->TbarRefresh.clicked.Raise();
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 1234);
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 9000);
}

TEST_F(FrmMainTest, RefreshOfAGridWithOneRowIsAFirstFill) {
  OpenOn({Line(1, "system")});
  const std::vector<int> widths = form_->EventList.ColWidths();
  form_->EventList.SetColWidth(kColHostname, 1234);
  form_->EventList.SetColWidth(kColDescription, 9000);
  form_->MnVRefresh.clicked.Raise();
  EXPECT_EQ(form_->EventList.ColWidths(), widths);
}

TEST_F(FrmMainTest, RefreshPutsTheLeftColumnBack) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->EventList.LeftCol = 3;
  form_->EventList.scrolled.Raise();
  form_->EventList.LeftCol = 0;
  form_->MnVRefresh.clicked.Raise();
  EXPECT_EQ(form_->EventList.LeftCol.Get(), 3);
}

TEST_F(FrmMainTest, FirstTickOnAnUnchangedFileNeitherReloadsNorClears) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  std::vector<std::string> told;
  const auto counts = form_->RecCnt.text.changed.Connect([&] { told.push_back(form_->RecCnt.text); });
  const auto cleared = form_->EventList.cleared.Connect([&] { told.push_back("cleared"); });
  const auto rows = form_->EventList.rows_added.Connect([&] { told.push_back("rows"); });
  Tick();
  Tick();
  EXPECT_THAT(told, IsEmpty());
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  EXPECT_EQ(form_->GridLineCount, 2);
}

TEST_F(FrmMainTest, FirstTickOnAnUnchangedFileDoesNotOpenIt) {
  OpenOn({Line(1, "system")});
  int opened = 0;
  world_.platform.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == Path()) ++opened;
  };
  Tick();
  EXPECT_EQ(opened, 0);
}

TEST_F(FrmMainTest, ReloadHidesASwitchedOffColumnAgain) {
  world_.state.settings.ColumnStates = {{"Hostname", "0"}};
  OpenOn({Line(1, "system")});
  form_->EventList.SetColWidth(kColHostname, 700);
  form_->Reload();
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 0);
}

TEST_F(FrmMainTest, ReloadOfAGridWithThreeRowsKeepsItsWidths) {
  OpenOn({Line(1, "system"), Line(2, "system")});  // three with the header
  form_->EventList.SetColWidth(kColDescription, 9000);
  Put({Line(1, "system")});
  Tick();
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 9000);
}

TEST_F(FrmMainTest, UpdateHidesASwitchedOffColumnAgain) {
  world_.state.settings.ColumnStates = {{"Hostname", "0"}};
  OpenOn({Line(1, "system")});
  form_->EventList.SetColWidth(kColHostname, 700);
  form_->EventList.SetColWidth(kColTimeKey, 700);
  AppendLine(Line(2, "system"));
  Tick();
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 0);
  EXPECT_EQ(form_->EventList.column(kColTimeKey).width, 0);
}

TEST_F(FrmMainTest, ReloadOfAGridWithOneRowIsAFirstFill) {
  OpenOn({Line(1, "system", "long text")});
  form_->EventList.SetColWidth(kColDescription, 9000);
  form_->EventList.SetColWidth(kColHostname, 1);
  Put({Line(1, "system")});
  Tick();
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 3945);
  EXPECT_GT(form_->EventList.column(kColHostname).width, 1);
}

TEST_F(FrmMainTest, LoadingShowsItsProgressEveryFiftyLines) {
  std::vector<std::string> lines;
  for (int i = 0; i < 100; ++i) lines.push_back(Line(i, "system"));
  Put(lines);
  std::vector<std::string> counts;
  std::vector<int> percents;
  form_ = nullptr;
  TextMetrics metrics{[](std::string_view) { return 1; }, [](std::string_view) { return 1; }, 15};
  form_ = std::make_unique<frmMain>(AdminParts{world_.state, world_.log, reg_ini_, screen_, metrics, 1000});
  const auto link = form_->RecCnt.text.changed.Connect([&] { counts.push_back(form_->RecCnt.text); });
  const auto bar = form_->DynamicPictureBox.value.changed.Connect(
      [&] { percents.push_back(form_->DynamicPictureBox.value); });
  form_->Form_Load();
  EXPECT_EQ(counts.at(0), "Loading... 50 records");
  EXPECT_EQ(counts.at(1), "Loading... 100 records");
  EXPECT_EQ(counts.at(2), "100 records");
  EXPECT_THAT(percents, ElementsAre(49, 100, 0));
}

TEST_F(FrmMainTest, LoadServesTheEventLoopEveryFiftyLines) {
  std::vector<std::string> lines;
  for (int i = 0; i < 149; ++i) lines.push_back(Line(i, "system"));
  const int before = world_.platform.timers.ProcessMessagesCount();
  OpenOn(lines);
  EXPECT_EQ(world_.platform.timers.ProcessMessagesCount() - before, 2);
}

TEST_F(FrmMainTest, ListsHoldEveryDistinctFieldOfTheLoadedLines) {
  OpenOn({"1,HOST,system,A,one", "2,OTHER,system,R,two", "3,HOST,system,A,one"});
  const auto items = [](const store::CUList& list) {
    std::vector<std::string> texts;
    for (const auto& entry : list.ColList()) texts.push_back(entry.item);
    return texts;
  };
  EXPECT_THAT(items(form_->GridHostList), ElementsAre("HOST", "OTHER"));
  EXPECT_THAT(items(form_->GridChangeList), ElementsAre("A", "R"));
  EXPECT_THAT(items(form_->GridDescList), ElementsAre("one", "two"));
  EXPECT_THAT(items(form_->GridMonitorList), ElementsAre("System"));
}

TEST_F(FrmMainTest, TickInTheMiddleOfALoadStartsNoOther) {
  std::vector<std::string> lines;
  for (int i = 0; i < 50; ++i) lines.push_back(Line(i, "system"));
  OpenOn({Line(0, "system")});
  for (int i = 1; i < 120; ++i) AppendLine(Line(i, "system"));
  int inner = 0;
  const auto link = form_->DynamicPictureBox.value.changed.Connect([&] {
    if (form_->DynamicPictureBox.value == 0) return;
    ++inner;
    form_->UpgradeGrid();
    form_->ResetClick();
    form_->MnVRefresh_Click();
  });
  Tick();
  EXPECT_GT(inner, 0);
  EXPECT_EQ(IDs().size(), 120u);
}

TEST_F(FrmMainTest, GridIsOutOfUseUnderAnHourglassWhileALoadRuns) {
  std::vector<std::string> lines;
  for (int i = 0; i < 60; ++i) lines.push_back(Line(i, "system"));
  OpenOn(lines);
  bool seen = false;
  const auto link = form_->DynamicPictureBox.value.changed.Connect([&] {
    if (form_->DynamicPictureBox.value == 0) return;
    seen = true;
    EXPECT_EQ(screen_.MousePointer, widgets::kPointerHourglass);
    EXPECT_FALSE(form_->EventList.enabled);
    EXPECT_FALSE(form_->EventList.redraw());
    form_->EventList.header_clicked.Raise(kColHostname);
  });
  form_->MnVRefresh.clicked.Raise();
  EXPECT_TRUE(seen);
  EXPECT_EQ(form_->sort.SortColumn, 0) << "no sort in the middle of a load";
  EXPECT_EQ(form_->DynamicPictureBox.value.Get(), 0);
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  EXPECT_TRUE(form_->EventList.enabled);
  EXPECT_TRUE(form_->EventList.redraw());
  EXPECT_FALSE(form_->RefreshBusy);
}

TEST_F(FrmMainTest, SizesAreCheckedAgainBehindAnUpdateAndBehindARefresh) {
  OpenOn({Line(1, "system")});
  AppendLine(Line(2, "system"));
  Tick();
  AppendLine(Line(3, "system"));
  Tick();
  EXPECT_THAT(IDs(), ElementsAre("3", "2", "1"));
  form_->MnVRefresh.clicked.Raise();
  AppendLine(Line(4, "system"));
  Tick();
  EXPECT_THAT(IDs(), ElementsAre("4", "3", "2", "1"));
  EXPECT_FALSE(form_->BackgroundUpdate);
  EXPECT_FALSE(form_->UpdateBusy);
}

TEST_F(FrmMainTest, ViewsAreToldOfAllNewWidthsAtOnce) {
  OpenOn({Line(1, "system")});
  for (const int column : {kColDateTime, kColHostname, kColMonitor}) form_->EventList.SetColWidth(column, 1);
  int told = 0;
  const auto link = form_->EventList.columns_changed.Connect([&] { ++told; });
  form_->AutoSizeColumns();
  EXPECT_EQ(told, 1);
  EXPECT_GT(form_->EventList.column(kColHostname).width, 1);
  EXPECT_TRUE(form_->EventList.redraw());
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  EXPECT_EQ(form_->RecCnt.text.Get(), "1 record");
}

TEST_F(FrmMainTest, PointerIsTheUsualOneBehindAnUpdateOfASortedGrid) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->EventList.header_clicked.Raise(kColHostname);
  AppendLine(Line(3, "system"));
  Tick();
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  EXPECT_TRUE(form_->EventList.redraw());
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

TEST_F(FrmMainTest, EventIdHeaderSortsNothing) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->EventList.header_clicked.Raise(kColEventID);
  EXPECT_EQ(form_->sort.SortColumn, 0);
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
}

TEST_F(FrmMainTest, MissingFileOfTheProgramIsToldWithItsAdvice) {
  world_.platform.files.Vanish(Path());
  Open();
  ASSERT_EQ(Boxes().shown.back().icon, BoxIcon::kStop);
  EXPECT_EQ(Boxes().shown.back().text,
            "No Zendrix Data Found.  Please ensure that the Zendrix Product is properly installed.");
  EXPECT_EQ(form_->Msg.text.Get(), "No Zendrix Data Found");
  EXPECT_TRUE(form_->EventList.redraw());
  EXPECT_TRUE(form_->EventList.enabled);
}

TEST_F(FrmMainTest, MissingFileElsewhereIsToldByItsPath) {
  Open();
  form_->GridFilePath = "/else/file.kvl";
  form_->DisplayData("");
  EXPECT_EQ(Boxes().shown.back().text, "File /else/file.kvl not found.");
}

TEST_F(FrmMainTest, FullGridIsToldAndKeepsWhatItHas) {
  capacity_ = 2;
  OpenOn({Line(1, "system"), Line(2, "system"), Line(3, "system"), Line(4, "system")});
  EXPECT_EQ(Boxes().shown.back().icon, BoxIcon::kInformation);
  EXPECT_EQ(Boxes().shown.back().text, "The Event View grid is full. The size of the kvl file: \r\n" +
                                           Path() + "\r\nneeds to be reduced.");
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
}

TEST_F(FrmMainTest, FullGridAtAnUpdateKeepsItsCountersAndReadsAgain) {
  capacity_ = 2;
  OpenOn({Line(1, "system")});
  AppendLine(Line(2, "system"));
  AppendLine(Line(3, "system"));
  Tick();
  EXPECT_EQ(Boxes().shown.size(), 1u);
  EXPECT_EQ(form_->RecCnt.text.Get(), "1 record");
  EXPECT_EQ(form_->GridLineCount, 1);
  AppendLine(Line(4, "system"));
  Tick();
  EXPECT_EQ(Boxes().shown.size(), 2u);
}

// Where memory runs out before the grid's own limit.
TEST_F(FrmMainTest, MemoryThatRunsOutInALoadIsToldAsAFullGrid) {
  std::vector<std::string> lines;
  for (int i = 0; i < 60; ++i) lines.push_back(Line(i, "system"));
  OpenOn(lines);
  bool throws = true;
  const auto link = form_->DynamicPictureBox.value.changed.Connect([&] {
    if (form_->DynamicPictureBox.value > 0 && std::exchange(throws, false)) throw std::bad_alloc();
  });
  form_->MnVRefresh.clicked.Raise();
  ASSERT_EQ(Boxes().shown.size(), 1u);
  EXPECT_THAT(Boxes().shown[0].text, HasSubstr("The Event View grid is full."));
  EXPECT_EQ(form_->RecCnt.text.Get(), "50 records");
  EXPECT_TRUE(form_->EventList.enabled);
  throws = true;
  for (int i = 60; i < 120; ++i) AppendLine(Line(i, "system"));
  Tick();
  EXPECT_EQ(Boxes().shown.size(), 2u);
  EXPECT_EQ(form_->GridLineCount, 50);
}

TEST_F(FrmMainTest, ArrowStandsDownOnTheTimeBehindALoadAndARefresh) {
  OpenOn({Line(1, "system")});
  const auto arrows = [&] {
    std::vector<widgets::SortArrow> all;
    for (int i = 0; i < form_->EventList.Cols(); ++i) all.push_back(form_->EventList.column(i).arrow);
    return all;
  };
  std::vector<widgets::SortArrow> expected(kGridColumns, widgets::SortArrow::kNone);
  expected[kColDateTime] = widgets::SortArrow::kDown;
  EXPECT_EQ(arrows(), expected);
  form_->EventList.header_clicked.Raise(kColHostname);
  form_->MnVRefresh.clicked.Raise();
  EXPECT_EQ(arrows(), expected);
}

TEST_F(FrmMainTest, FileThatCannotBeReadIsLogged) {
  OpenOn({Line(1, "system")});
  world_.platform.files.FailNext(platform::FileOp::kOpen, Path(), platform::ErrorKind::kPermissionDenied);
  AppendLine(Line(2, "system"));
  world_.quiet.Expect("'frmMain : RedisplayData': 70: Permission denied");
  Tick();
  EXPECT_THAT(IDs(), ElementsAre("1"));
  EXPECT_TRUE(form_->EventList.redraw());
  form_->UpgradeGrid();
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
  form_->lblHDrag = {4500, 1, 61, 9000};
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
  const settings::Place saved = form_->lblHDrag;
  EXPECT_EQ(Open().lblHDrag, saved);
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

TEST_F(FrmMainTest, RefreshReadsTheWholeFileAgain) {
  OpenOn({Line(1, "system", "aaa")});
  Put({Line(1, "system", "bbb")});
  form_->MnVRefresh.clicked.Raise();
  EXPECT_THAT(Column(kColWhole), ElementsAre("bbb"));
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
