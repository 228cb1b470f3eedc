#include <utility>

#include "core/moments.h"
#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

using platform::BoxIcon;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class FrmMainLoadTest : public FrmMainFixture {};

TEST_F(FrmMainLoadTest, FileWithOneLineHasOneRecord) {
  EXPECT_EQ(OpenOn({Line(100, "system")}).RecCnt.text.Get(), "1 record");
  EXPECT_THAT(IDs(), ElementsAre("1"));
}

TEST_F(FrmMainLoadTest, NewestLineStandsOnTop) {
  OpenOn({Line(1, "system"), Line(2, "system"), Line(3, "system")});
  EXPECT_THAT(IDs(), ElementsAre("3", "2", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
}

TEST_F(FrmMainLoadTest, EmptyFileHasNoRecords) {
  EXPECT_EQ(Open().RecCnt.text.Get(), "0 records");
  EXPECT_EQ(form_->EventList.Rows(), 1);
}

TEST_F(FrmMainLoadTest, MonitorIsShownInProperCaseBehindItsPicture) {
  OpenOn({Line(1, "running PROCESSES")});
  EXPECT_THAT(Column(kColMonitor), ElementsAre("     Running Processes"));
  EXPECT_EQ(form_->EventList.Picture(1, kColMonitor), 12);
  ASSERT_NE(form_->GridMonitorList.ItemData("running PROCESSES"), nullptr);
  EXPECT_EQ(*form_->GridMonitorList.ItemData("running PROCESSES"), "Running Processes");
}

TEST_F(FrmMainLoadTest, TimeIsShownInTheUsersForm) {
  OpenOn({Line(0, "system")});
  EXPECT_EQ(Column(kColDateTime)[0],
            core::DisplayTime(0, 0, world_.platform.family, world_.platform.locale.info));
  EXPECT_THAT(Column(kColTimeKey), ElementsAre("0"));
}

TEST_F(FrmMainLoadTest, CommaInTheDescriptionEndsIt) {
  OpenOn({Line(1, "system", "one,two")});
  EXPECT_THAT(Column(kColWhole), ElementsAre("one"));
  EXPECT_THAT(Column(kColDescription), ElementsAre("one"));
}

TEST_F(FrmMainLoadTest, LongDescriptionIsShortenedToTheColumn) {
  const std::string text(100, 'x');
  OpenOn({Line(1, "system", text)});
  EXPECT_THAT(Column(kColWhole), ElementsAre(text));
  EXPECT_LT(Column(kColDescription)[0].size() * kTwipsPerCharacter, 3945u);
  EXPECT_THAT(Column(kColDescription)[0], HasSubstr("..."));
}

TEST_F(FrmMainLoadTest, ShortLineGivesNoRowButCounts) {
  OpenOn({Line(1, "system"), "1,2,3", Line(3, "system")});
  EXPECT_THAT(IDs(), ElementsAre("3", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
}

TEST_F(FrmMainLoadTest, ControlCharactersBecomeBlanksAndTheEndsAreTrimmed) {
  OpenOn({"\t1,HOST,system,A,a\tb\x01"});
  EXPECT_THAT(Column(kColWhole), ElementsAre("a b"));
}

TEST_F(FrmMainLoadTest, MonitorThatTheSettingsDoNotKnowIsShownAndAdded) {
  OpenOn({Line(1, "custom sensor")});
  EXPECT_THAT(IDs(), ElementsAre("1"));
  EXPECT_EQ(Setting("Custom Sensor"), "1");
}

// Each unknown monitor had the settings saved and read again in the middle of the load.
TEST_F(FrmMainLoadTest, ThousandsOfUnknownMonitorsCostTheSettingsFewReadingsALoad) {
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
  EXPECT_EQ(readings - at_start, 5);  // two, one of the save, and two of the timeline
  EXPECT_EQ(Setting("One More"), "1");
  EXPECT_LE(at_start, 8);  // the form's own place and widths too
}

TEST_F(FrmMainLoadTest, MonitorSetToZeroGivesNoRowAndLeavesAGap) {
  reg_ini_.SaveSettingHashed("Monitors", "System", "0");
  reg_ini_.ReadRegInfo();
  OpenOn({Line(1, "tcp port"), Line(2, "SYSTEM"), Line(3, "tcp port")});
  EXPECT_THAT(IDs(), ElementsAre("3", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
}

TEST_F(FrmMainLoadTest, MonitorSetToTwoIsShownInTheGridAndNotInTheChart) {
  reg_ini_.SaveSettingHashed("Monitors", "Tcp Port", "2");
  reg_ini_.ReadRegInfo();
  OpenOn({Line(1, "tcp port"), Line(2, "system")});
  AppendLine(Line(3, "TCP PORT"));
  Tick();
  EXPECT_THAT(Column(kColMonitor), ElementsAre("     Tcp Port", "     System", "     Tcp Port"));
  EXPECT_EQ(Setting("Tcp Port"), "2");
  for (const auto& series : form_->timeline.Chrt.table.Get().series) EXPECT_NE(series.name, "Tcp Port");
}

TEST_F(FrmMainLoadTest, TimeThatIsNoNumberStaysAsTextAndKeepsTheKeyBefore) {
  OpenOn({"soon,HOST,system,A,x", Line(77, "system"), "later,HOST,system,A,x"});
  EXPECT_THAT(Column(kColTimeKey), ElementsAre("77", "77", "0"));
  EXPECT_EQ(Column(kColDateTime)[0], "later");
}

TEST_F(FrmMainLoadTest, TimeBeyondThirtyTwoBitsStaysAsText) {
  OpenOn({"99999999999,HOST,system,A,x"});
  EXPECT_THAT(Column(kColDateTime), ElementsAre("99999999999"));
}

TEST_F(FrmMainLoadTest, ColumnsAreSizedAndTheInnerOnesHidden) {
  OpenOn({Line(1, "running processes")});
  const int unit = static_cast<int>(form_->EventList.FontWidth) + 1;
  EXPECT_EQ(form_->EventList.column(kColMonitor).width, (5 + 17 + 1) * unit * 10);
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 3945);
  for (const int col : {kColCode, kColWhole, kColTimeKey}) EXPECT_EQ(form_->EventList.column(col).width, 0);
  EXPECT_EQ(form_->EventList.column(kColDateTime).arrow, widgets::SortArrow::kDown);
  EXPECT_EQ(form_->EventList.column(kColEventID).align, widgets::Align::kRight);
}

TEST_F(FrmMainLoadTest, AddedLinesAppearAtTheNextTick) {
  OpenOn({Line(1, "system")});
  AppendLine(Line(2, "tcp port"));
  EXPECT_THAT(IDs(), ElementsAre("1"));
  Tick();
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "2 records");
}

TEST_F(FrmMainLoadTest, SameSizeWithOtherContentChangesNothing) {
  OpenOn({Line(1, "system", "aaa")});
  Tick();
  Put({Line(1, "system", "bbb")});
  Tick();
  EXPECT_THAT(Column(kColWhole), ElementsAre("aaa"));
}

TEST_F(FrmMainLoadTest, FileThatShrinksByOneByteIsReloaded) {
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

TEST_F(FrmMainLoadTest, FileThatShrinksBehindAnUpdateIsReloadedAlsoWhenItIsLongerThanAtTheStart) {
  OpenOn({Line(1, "system", "a")});
  AppendLine(Line(2, "system", "a long text"));
  Tick();
  Put({Line(7, "system", "b"), Line(8, "system", "b")});
  Tick();
  EXPECT_THAT(Column(kColWhole), ElementsAre("b", "b"));
}

TEST_F(FrmMainLoadTest, ReloadKeepsWidths) {
  OpenOn({Line(1, "system"), Line(2, "system"), Line(3, "system")});
  form_->EventList.SetColWidth(kColHostname, 1234);
  form_->EventList.SetColWidth(kColDescription, 9000);
  Put({Line(1, "system"), Line(2, "system")});
  Tick();
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 1234);
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 9000);
}

TEST_F(FrmMainLoadTest, RefreshKeepsTheWidthsOfAGridWithThreeRows) {
  OpenOn({Line(1, "system"), Line(2, "system")});  // three with the header
  form_->EventList.SetColWidth(kColHostname, 1234);
  form_->EventList.SetColWidth(kColDescription, 9000);
  form_->TbarRefresh.clicked.Raise();
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 1234);
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 9000);
}

TEST_F(FrmMainLoadTest, RefreshOfAGridWithOneRowIsAFirstFill) {
  OpenOn({Line(1, "system")});
  const std::vector<int> widths = form_->EventList.ColWidths();
  form_->EventList.SetColWidth(kColHostname, 1234);
  form_->EventList.SetColWidth(kColDescription, 9000);
  form_->MnVRefresh.clicked.Raise();
  EXPECT_EQ(form_->EventList.ColWidths(), widths);
}

TEST_F(FrmMainLoadTest, RefreshPutsTheLeftColumnBack) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->EventList.LeftCol = 3;
  form_->EventList.scrolled.Raise();
  form_->EventList.LeftCol = 0;
  form_->MnVRefresh.clicked.Raise();
  EXPECT_EQ(form_->EventList.LeftCol.Get(), 3);
}

TEST_F(FrmMainLoadTest, FirstTickOnAnUnchangedFileNeitherReloadsNorClears) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  std::vector<std::string> told;
  const auto counts = form_->RecCnt.text.changed.Connect([&] { told.push_back(form_->RecCnt.text); });
  const auto cleared = form_->EventList.cleared.Connect([&] { told.push_back("cleared"); });
  const auto rows = form_->EventList.rows_inserted.Connect([&](int, int) { told.push_back("rows"); });
  Tick();
  Tick();
  EXPECT_THAT(told, IsEmpty());
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  EXPECT_EQ(form_->GridLineCount, 2);
}

TEST_F(FrmMainLoadTest, FirstTickOnAnUnchangedFileDoesNotOpenIt) {
  OpenOn({Line(1, "system")});
  int opened = 0;
  world_.platform.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == Path()) ++opened;
  };
  Tick();
  EXPECT_EQ(opened, 0);
}

TEST_F(FrmMainLoadTest, ReloadHidesASwitchedOffColumnAgain) {
  reg_ini_.SaveSettingHashed("Columns", "Hostname", "0");
  OpenOn({Line(1, "system")});
  form_->EventList.SetColWidth(kColHostname, 700);
  form_->Reload();
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 0);
}

TEST_F(FrmMainLoadTest, ReloadOfAGridWithThreeRowsKeepsItsWidths) {
  OpenOn({Line(1, "system"), Line(2, "system")});  // three with the header
  form_->EventList.SetColWidth(kColDescription, 9000);
  Put({Line(1, "system")});
  Tick();
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 9000);
}

TEST_F(FrmMainLoadTest, UpdateHidesASwitchedOffColumnAgain) {
  reg_ini_.SaveSettingHashed("Columns", "Hostname", "0");
  OpenOn({Line(1, "system")});
  form_->EventList.SetColWidth(kColHostname, 700);
  form_->EventList.SetColWidth(kColTimeKey, 700);
  AppendLine(Line(2, "system"));
  Tick();
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 0);
  EXPECT_EQ(form_->EventList.column(kColTimeKey).width, 0);
}

TEST_F(FrmMainLoadTest, ReloadOfAGridWithOneRowIsAFirstFill) {
  OpenOn({Line(1, "system", "long text")});
  form_->EventList.SetColWidth(kColDescription, 9000);
  form_->EventList.SetColWidth(kColHostname, 1);
  Put({Line(1, "system")});
  Tick();
  EXPECT_EQ(form_->EventList.column(kColDescription).width, 3945);
  EXPECT_GT(form_->EventList.column(kColHostname).width, 1);
}

TEST_F(FrmMainLoadTest, LoadingShowsItsProgressEveryFiftyLines) {
  std::vector<std::string> lines;
  for (int i = 0; i < 100; ++i) lines.push_back(Line(i, "system"));
  Put(lines);
  std::vector<std::string> counts;
  std::vector<int> percents;
  form_ = nullptr;
  TextMetrics metrics{[](std::string_view) { return 1; }, [](std::string_view) { return 1; }, 15};
  form_ = std::make_unique<frmMain>(AdminParts{world_.state, world_.log, reg_ini_, screen_, metrics, {1000}});
  const auto link = form_->RecCnt.text.changed.Connect([&] { counts.push_back(form_->RecCnt.text); });
  const auto bar = form_->DynamicPictureBox.value.changed.Connect(
      [&] { percents.push_back(form_->DynamicPictureBox.value); });
  form_->Form_Load();
  EXPECT_EQ(counts.at(0), "Loading... 50 records");
  EXPECT_EQ(counts.at(1), "Loading... 100 records");
  EXPECT_EQ(counts.at(2), "100 records");
  EXPECT_THAT(percents, ElementsAre(49, 100, 0));
}

TEST_F(FrmMainLoadTest, LoadServesTheEventLoopEveryFiftyLines) {
  std::vector<std::string> lines;
  for (int i = 0; i < 149; ++i) lines.push_back(Line(i, "system"));
  const int before = world_.platform.timers.ProcessMessagesCount();
  OpenOn(lines);
  EXPECT_EQ(world_.platform.timers.ProcessMessagesCount() - before, 2);
}

TEST_F(FrmMainLoadTest, ListsHoldEveryDistinctFieldOfTheLoadedLines) {
  OpenOn({"1,HOST,system,A,one", "2,OTHER,system,R,two", "3,HOST,system,A,one"});
  const auto items = [](const store::CUList& list) {
    std::vector<std::string> texts;
    for (const auto& entry : list.ColList()) texts.push_back(entry.item);
    return texts;
  };
  EXPECT_THAT(items(form_->GridHostList), ElementsAre("HOST", "OTHER"));
  EXPECT_THAT(items(form_->GridChangeList), ElementsAre("A", "R"));
  EXPECT_THAT(items(form_->GridDescList()), ElementsAre("one", "two"));
  EXPECT_THAT(items(form_->GridMonitorList), ElementsAre("System"));
}

TEST_F(FrmMainLoadTest, TickInTheMiddleOfALoadStartsNoOther) {
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

TEST_F(FrmMainLoadTest, GridIsOutOfUseUnderAnHourglassWhileALoadRuns) {
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

TEST_F(FrmMainLoadTest, SizesAreCheckedAgainBehindAnUpdateAndBehindARefresh) {
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

TEST_F(FrmMainLoadTest, PointerIsTheUsualOneBehindAnUpdateOfASortedGrid) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->EventList.header_clicked.Raise(kColHostname);
  AppendLine(Line(3, "system"));
  Tick();
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  EXPECT_TRUE(form_->EventList.redraw());
}

TEST_F(FrmMainLoadTest, PointerIsAnHourglassFromTheBeginningOfARefresh) {
  OpenOn({Line(1, "system")});
  int shape = -1;
  const auto cleared = form_->EventList.cleared.Connect([&] { shape = screen_.MousePointer; });
  form_->MnVRefresh.clicked.Raise();
  EXPECT_EQ(shape, widgets::kPointerHourglass) << "before the file is read";
}

TEST_F(FrmMainLoadTest, SortBehindAnUpdateHasAnHourglassToo) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->EventList.header_clicked.Raise(kColHostname);
  std::vector<int> shapes;
  const auto link = screen_.MousePointer.changed.Connect([&] { shapes.push_back(screen_.MousePointer); });
  AppendLine(Line(3, "system"));
  Tick();
  EXPECT_THAT(shapes, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault,
                                  widgets::kPointerHourglass, widgets::kPointerDefault));
}

TEST_F(FrmMainLoadTest, MissingFileOfTheProgramIsToldWithItsAdvice) {
  world_.platform.files.Vanish(Path());
  Open();
  ASSERT_EQ(Boxes().shown.back().icon, BoxIcon::kStop);
  EXPECT_EQ(Boxes().shown.back().text,
            "No Zendrix Data Found.  Please ensure that the Zendrix Product is properly installed.");
  EXPECT_EQ(form_->Msg.text.Get(), "No Zendrix Data Found");
  EXPECT_TRUE(form_->EventList.redraw());
  EXPECT_TRUE(form_->EventList.enabled);
}

TEST_F(FrmMainLoadTest, MissingFileElsewhereIsToldByItsPath) {
  Open();
  form_->GridFilePath = "/else/file.kvl";
  form_->DisplayData("");
  EXPECT_EQ(Boxes().shown.back().text, "File /else/file.kvl not found.");
}

TEST_F(FrmMainLoadTest, FullGridIsToldAndKeepsWhatItHas) {
  capacity_ = 2;
  OpenOn({Line(1, "system"), Line(2, "system"), Line(3, "system"), Line(4, "system")});
  EXPECT_EQ(Boxes().shown.back().icon, BoxIcon::kInformation);
  EXPECT_EQ(Boxes().shown.back().text, "The Event View grid is full. The size of the kvl file: \r\n" +
                                           Path() + "\r\nneeds to be reduced.");
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
}

TEST_F(FrmMainLoadTest, FullGridAtAnUpdateKeepsItsCountersAndReadsAgain) {
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
TEST_F(FrmMainLoadTest, MemoryThatRunsOutInALoadIsToldAsAFullGrid) {
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

TEST_F(FrmMainLoadTest, ArrowStandsDownOnTheTimeBehindALoadAndARefresh) {
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

TEST_F(FrmMainLoadTest, FileThatCannotBeReadIsLogged) {
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

TEST_F(FrmMainLoadTest, RefreshReadsTheWholeFileAgain) {
  OpenOn({Line(1, "system", "aaa")});
  Put({Line(1, "system", "bbb")});
  form_->MnVRefresh.clicked.Raise();
  EXPECT_THAT(Column(kColWhole), ElementsAre("bbb"));
}

// A tick in the middle took the file's new size as seen and read nothing.
TEST_F(FrmMainLoadTest, LineThatArrivesInTheMiddleOfALoadAppearsAtTheNextTick) {
  std::vector<std::string> lines;
  for (int i = 0; i < 60; ++i) lines.push_back(Line(i, "system"));
  OpenOn(lines);
  bool waits = true;
  const auto link = form_->DynamicPictureBox.value.changed.Connect([&] {
    if (form_->DynamicPictureBox.value == 0 || !std::exchange(waits, false)) return;
    AppendLine(Line(900, "system"));
    Tick();
  });
  form_->MnVRefresh.clicked.Raise();
  ASSERT_FALSE(waits);
  Tick();
  EXPECT_EQ(IDs().size(), 61u);
  for (int i = 0; i < 60; ++i) AppendLine(Line(i, "system"));
  waits = true;
  Tick();
  ASSERT_FALSE(waits);
  Tick();
  EXPECT_EQ(IDs().size(), 122u);
}

TEST_F(FrmMainLoadTest, UpdateOfAMissingFileTellsItOnceAndKeepsItsRows) {
  OpenOn({Line(1, "system")});
  world_.platform.files.Vanish(Path());
  form_->UpgradeGrid();
  EXPECT_EQ(Boxes().shown.size(), 1u);
  EXPECT_THAT(IDs(), ElementsAre("1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "1 record");
}

TEST_F(FrmMainLoadTest, PanelOfAMissingFileShowsNoPathWhenItsWidthChanges) {
  OpenOn({Line(1, "system")});
  world_.platform.files.Vanish(Path());
  form_->MnVRefresh.clicked.Raise();
  form_->Msg.width = 3000;
  EXPECT_EQ(form_->Msg.text.Get(), "No Zendrix Data Found");
}

TEST_F(FrmMainLoadTest, PathComesBackWithTheFile) {
  OpenOn({Line(1, "system")});
  world_.platform.files.Vanish(Path());
  form_->MnVRefresh.clicked.Raise();
  ASSERT_EQ(form_->Msg.text.Get(), "No Zendrix Data Found");
  Put({Line(1, "system")});
  Tick();
  EXPECT_EQ(form_->Msg.text.Get(), Path());
}

TEST_F(FrmMainLoadTest, TimeIsANumberUpToTheEdgeOfThirtyTwoBits) {
  OpenOn({"2147483647.4,HOST,system,A,x", "2147483647.5,HOST,system,A,x", "-2147483648.5,HOST,system,A,x",
          "-2147483648.6,HOST,system,A,x"});
  EXPECT_THAT(Column(kColTimeKey), ElementsAre("-2147483648", "-2147483648", "2147483647", "2147483647"));
  EXPECT_EQ(Column(kColDateTime)[0], "-2147483648.6");
  EXPECT_EQ(Column(kColDateTime)[2], "2147483647.5");
}

// A file that the grid's rows were saved to: its monitors have the blanks in front already.
TEST_F(FrmMainLoadTest, BlanksInFrontOfAMonitorAreNotDoubled) {
  OpenOn({Line(1, "     tcp port"), Line(2, "tcp port")});
  EXPECT_THAT(Column(kColMonitor), ElementsAre("     Tcp Port", "     Tcp Port"));
  EXPECT_EQ(form_->EventList.Picture(1, kColMonitor), form_->EventList.Picture(2, kColMonitor));
}

TEST_F(FrmMainLoadTest, RowsThatCameAreShownInTheFormAndWidthOfTheirOwnLoad) {
  const std::string text(100, 'x');
  OpenOn({"1700000000,HOST,system,A," + text});
  world_.platform.locale.info.short_date = "yyyy-MM-dd";
  form_->EventList.SetColWidth(kColDescription, 2000);
  AppendLine("1700000000,HOST,system,A," + text);
  Tick();
  EXPECT_THAT(Column(kColDateTime)[0], HasSubstr("2023-11-1"));
  EXPECT_THAT(Column(kColDateTime)[1], HasSubstr("/"));
  EXPECT_LT(Column(kColDescription)[0].size() * kTwipsPerCharacter, 2000u);
  EXPECT_GT(Column(kColDescription)[1].size() * kTwipsPerCharacter, 2000u);
}

TEST_F(FrmMainLoadTest, PollReadsOnlyWhatIsNew) {
  std::vector<std::string> lines;
  for (int i = 0; i < 20'000; ++i) lines.push_back(Line(i, "system"));  // several blocks
  OpenOn(lines);
  AppendLine(Line(1, "tcp port"));
  int reads = 0;
  world_.platform.files.before = [&](platform::FileOp op, const std::string& path) {
    reads += op == platform::FileOp::kRead && path == Path() ? 1 : 0;
  };
  Tick();
  EXPECT_EQ(form_->EventList.DataRows(), 20'001);
  EXPECT_LE(reads, 4);
}

TEST_F(FrmMainLoadTest, UpdateOfAFileOfTheSameSizeReadsNothingAndBringsTheRestUpToDate) {
  OpenOn({"1,beta,system,A,x", "2,alpha,system,A,x"});
  form_->EventList.header_clicked.Raise(kColHostname);  // descending
  form_->EventList.Row = 2;
  form_->RecCnt.text = std::string("old");
  form_->Msg.text = std::string("old");
  int opened = 0;
  world_.platform.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == Path()) ++opened;
  };
  form_->RedisplayData(false);
  EXPECT_EQ(opened, 0);
  EXPECT_EQ(form_->GridLineCount, 2);
  EXPECT_EQ(form_->Msg.text.Get(), Path());
  EXPECT_THAT(Column(kColHostname), ElementsAre("beta", "alpha")) << "the direction stays";
  EXPECT_EQ(form_->EventList.column(kColHostname).arrow, widgets::SortArrow::kDown);
  EXPECT_EQ(form_->EventList.Row.Get(), 1);
  EXPECT_EQ(form_->RecCnt.text.Get(), "old") << "only the periodic check counts";
  form_->BackgroundUpdate = true;
  form_->RedisplayData(false);
  EXPECT_EQ(form_->RecCnt.text.Get(), "2 records");
  EXPECT_TRUE(form_->BackgroundUpdate) << "whoever set it clears it";
  EXPECT_EQ(opened, 0);
  EXPECT_TRUE(form_->EventList.enabled);
  EXPECT_TRUE(form_->EventList.redraw());
}

TEST_F(FrmMainLoadTest, LineReadHalfWrittenIsALineAndItsRestIsNone) {
  OpenOn({Line(1, "system")});
  const auto append = [&](const std::string& bytes) {
    world_.platform.files.PutMore(Path(), bytes);
    Tick();
  };
  append("2,HOST,system,A,ha");
  EXPECT_THAT(Column(kColWhole), ElementsAre("ha", "text"));
  append("lf\r\n");
  EXPECT_THAT(Column(kColWhole), ElementsAre("ha", "text"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "2 records");
  append("3,HO");
  append("ST,system,A,without its beginning\r\n");
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
  append("4,HOST,system,A,whole\r");
  append("\n" + Line(5, "system", "next") + "\r\n");
  EXPECT_THAT(Column(kColWhole), ElementsAre("next", "whole", "ha", "text"));
  EXPECT_THAT(IDs(), ElementsAre("5", "4", "2", "1"));
}

TEST_F(FrmMainLoadTest, UpdateOfAGridThatIsNotSortedLeavesItsArrowAndItsMarkedRow) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->EventList.Row = 2;
  AppendLine(Line(3, "system"));
  Tick();
  EXPECT_EQ(form_->EventList.Row.Get(), 2);
  EXPECT_EQ(form_->EventList.column(kColEventID).arrow, widgets::SortArrow::kNone);
  EXPECT_EQ(form_->EventList.column(kColDateTime).arrow, widgets::SortArrow::kDown);
}

TEST_F(FrmMainLoadTest, UpdateOfAGridThatWasNeverScrolledLeavesItsLeftColumn) {
  OpenOn({Line(1, "system")});
  form_->SavedLeftCol = 0;
  form_->EventList.LeftCol = 3;
  form_->UpgradeGrid();
  EXPECT_EQ(form_->EventList.LeftCol.Get(), 3);
}

TEST_F(FrmMainLoadTest, ReloadEndsTheBackgroundUpdate) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  Put({Line(1, "system")});
  form_->BackgroundUpdate = true;
  form_->UpgradeGrid();
  EXPECT_FALSE(form_->BackgroundUpdate);
}

}  // namespace
}  // namespace zendrix::admin
