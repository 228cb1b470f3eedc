#include "admin/frm_log.h"

#include "support/console_world.h"

namespace zendrix::admin {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kTwipsPerCharacter = 100;

class FrmLogTest : public ::testing::Test {
 protected:
  std::string Path() const { return world_.InFolder("KorvessaEventLog.kvl"); }
  // So many records: "text 1" on the first line, the newest one last.
  void Put(int records) {
    std::string bytes;
    for (int i = 1; i <= records; ++i) bytes += "1700000000,HOST,42,text " + std::to_string(i) + "\r\n";
    world_.platform.files.Put(Path(), bytes);
  }
  frmLog& Open(int room = 3) {
    world_.host.Show(form_);
    form_.ErrLog.RowsInSight = room;
    return form_;
  }
  void Choose(const std::string& path) {
    world_.platform.file_dialogs.Choose(path);
    form_.FOpen.clicked.Raise();
  }
  frmLog& OpenOn(int records, int room = 3) {
    Put(records);
    Open(room);
    Choose(Path());
    return form_;
  }
  std::vector<std::string> Row(int row) const {
    std::vector<std::string> texts;
    for (int col = 0; col < form_.ErrLog.Cols(); ++col) texts.push_back(form_.ErrLog.Text(row, col));
    return texts;
  }
  // The descriptions of the page, from the top.
  std::vector<std::string> Page() const {
    std::vector<std::string> texts;
    for (int row = 1; row < form_.ErrLog.Rows(); ++row) texts.push_back(form_.ErrLog.Text(row, 3));
    return texts;
  }
  void ExpectEmptyState() const {
    EXPECT_TRUE(form_.ErrLog.blank());
    EXPECT_EQ(form_.ErrLog.Cols(), 20);
    EXPECT_EQ(form_.ErrLog.Rows(), 100);
    EXPECT_EQ(form_.ErrLog.TopRow.Get(), 1);
    EXPECT_EQ(form_.ErrLog.ColWidth(0), 1980);
    EXPECT_EQ(form_.ErrLog.ColWidth(1), 900);
    EXPECT_EQ(form_.ErrLog.ColWidth(2), 8000);
    EXPECT_EQ(form_.ErrLog.ColWidth(3), widgets::PageGrid::kDefaultColWidth);
    EXPECT_TRUE(form_.ErrLog.HeadingCentred(0));
    EXPECT_TRUE(form_.ErrLog.HeadingCentred(1));
    EXPECT_FALSE(form_.ErrLog.HeadingCentred(2));
    EXPECT_EQ(form_.ErrLog.HeaderHeight.Get(), 240);
    EXPECT_EQ(form_.ErrLog.RowHeightMin.Get(), 720);
    EXPECT_EQ(form_.SBar1.text.Get(), "");
    EXPECT_EQ(form_.SBar1.tip.Get(), "");
    EXPECT_EQ(form_.LogFirstRow, 0);
    EXPECT_FALSE(form_.LogLoaded);
    EXPECT_FALSE(form_.VScroll1.enabled);
    EXPECT_EQ(form_.LogRecords, nullptr);
  }
  platform::ScriptedBoxes& Boxes() { return world_.platform.message_boxes; }

  zendrix::testing::ConsoleWorld world_;
  widgets::Screen screen_;
  TextMetrics metrics_{
      [](std::string_view text) { return static_cast<int>(text.size()) * kTwipsPerCharacter; },
      [](std::string_view text) { return static_cast<int>(text.size()) * 6; }, 15};
  frmLog form_{LogNeeds{world_.state, world_.log, screen_, metrics_}};
};

TEST_F(FrmLogTest, BeginsInTheMiddleOfTheScreenWithoutAFile) {
  int centred = 0;
  const auto link = form_.centre.Connect([&] { ++centred; });
  Open();
  EXPECT_EQ(centred, 1);
  EXPECT_EQ(form_.title.Get(), "Error Logs");
  ExpectEmptyState();
}

TEST_F(FrmLogTest, DialogOffersEventLogsOfTheProgramsFolder) {
  OpenOn(1);
  const auto& asked = world_.platform.file_dialogs.shown;
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked[0].filter, "log Files (*.kvl)|*EventLog.kvl");
  EXPECT_EQ(asked[0].folder, world_.state.ProgramFolder);
  EXPECT_FALSE(asked[0].saving);
}

TEST_F(FrmLogTest, NewestRecordComesFirstWithoutItsNumber) {
  OpenOn(2);
  EXPECT_THAT(Row(0), ElementsAre("Date_Time", "Host", "TID", "Description"));
  EXPECT_THAT(Row(1), ElementsAre("11/14/2023 10:13:20 PM", "HOST", "42", "text 2"));
  EXPECT_THAT(Row(2), ElementsAre("11/14/2023 10:13:20 PM", "HOST", "42", "text 1"));
  EXPECT_EQ(form_.ErrLog.Rows(), 3);
  EXPECT_EQ(form_.LogPath, Path());
  EXPECT_TRUE(form_.LogLoaded);
  EXPECT_TRUE(form_.VScroll1.enabled);
}

TEST_F(FrmLogTest, CommasOfTheFirstMessageMakeColumns) {
  world_.platform.files.Put(Path(), "1,h,t,a,b,c\r\n2,h,t,d\r\n");
  Open();
  form_.LoadLog(Path());
  EXPECT_THAT(Row(0), ElementsAre("Date_Time", "Host", "TID", "Description", "Descr5", "Descr6"));
}

TEST_F(FrmLogTest, FieldThatIsMissingIsOneBlankAndTheOthersAreTrimmed) {
  world_.platform.files.Put(Path(), "1,h,t,a,b\r\nno date, h ,,  c  \r\n");
  Open();
  form_.LoadLog(Path());
  EXPECT_THAT(Row(1), ElementsAre(" ", "h", "", "c", " "));
}

TEST_F(FrmLogTest, PageHoldsOneRecordMoreThanFits) {
  OpenOn(10, 3);
  EXPECT_EQ(form_.LogPageRows, 3);
  EXPECT_EQ(form_.LogFirstRow, 1);
  EXPECT_THAT(Page(), ElementsAre("text 10", "text 9", "text 8", "text 7"));
  EXPECT_EQ(form_.VScroll1.minimum.Get(), 1);
  EXPECT_EQ(form_.VScroll1.maximum.Get(), 10);
  EXPECT_EQ(form_.VScroll1.small_step.Get(), 1);
  EXPECT_EQ(form_.VScroll1.large_step.Get(), 2);
}

TEST_F(FrmLogTest, ScrollBarPutsItsRecordOnTop) {
  OpenOn(10, 3);
  form_.VScroll1.Scroll(4);
  EXPECT_EQ(form_.LogFirstRow, 4);
  EXPECT_THAT(Page(), ElementsAre("text 7", "text 6", "text 5", "text 4"));
  form_.VScroll1.Scroll(1);
  EXPECT_THAT(Page(), ElementsAre("text 10", "text 9", "text 8", "text 7"));
}

TEST_F(FrmLogTest, LastRecordsAreAShortPage) {
  OpenOn(10, 3);
  form_.VScroll1.Scroll(8);
  EXPECT_THAT(Page(), ElementsAre("text 3", "text 2", "text 1"));
  form_.VScroll1.Scroll(10);
  EXPECT_THAT(Page(), ElementsAre("text 1"));
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(FrmLogTest, PageWithoutARecordIsAHeaderWithOneEmptyRow) {
  OpenOn(2, 3);
  form_.FillGrid(3, 3);
  EXPECT_THAT(Row(0), ElementsAre("Date_Time", "Host", "TID", "Description"));
  EXPECT_EQ(form_.ErrLog.Rows(), 2);
  EXPECT_THAT(Row(1), Each(""));
  form_.FillGrid(2'000'000'000, 3);
  EXPECT_EQ(form_.ErrLog.Rows(), 2);
}

TEST_F(FrmLogTest, PageBeforeTheFirstRecordIsTheFirst) {
  OpenOn(4, 1);
  form_.FillGrid(-5, 1);
  EXPECT_THAT(Page(), ElementsAre("text 4", "text 3"));
  EXPECT_EQ(form_.LogFirstRow, 1);
  form_.FillGrid(2, 1);
  EXPECT_THAT(Page(), ElementsAre("text 3", "text 2"));
}

TEST_F(FrmLogTest, WindowWithoutRoomShowsOneRecordAndCanBeScrolled) {
  OpenOn(4, 0);
  EXPECT_EQ(form_.LogPageRows, 0);
  EXPECT_THAT(Page(), ElementsAre("text 4"));
  EXPECT_EQ(form_.VScroll1.large_step.Get(), 1);
}

TEST_F(FrmLogTest, PageIsMeasuredInAGridOfAHundredRows) {
  OpenOn(200, 150);
  EXPECT_EQ(form_.LogPageRows, 99);
  EXPECT_EQ(form_.ErrLog.Rows(), 101);
}

TEST_F(FrmLogTest, TallerWindowShowsMoreFromTheSameRecordOn) {
  OpenOn(10, 2);
  form_.VScroll1.Scroll(5);
  form_.ErrLog.RowsInSight = 4;
  EXPECT_EQ(form_.LogPageRows, 4);
  EXPECT_EQ(form_.LogFirstRow, 5);
  EXPECT_THAT(Page(), ElementsAre("text 6", "text 5", "text 4", "text 3", "text 2"));
  EXPECT_EQ(form_.VScroll1.large_step.Get(), 3);
  EXPECT_EQ(form_.VScroll1.value.Get(), 5);
}

TEST_F(FrmLogTest, WindowWithoutALogMeasuresAndScrollsNothing) {
  Open(2);
  form_.ErrLog.RowsInSight = 7;
  form_.VScroll1.maximum = 5;
  form_.VScroll1.Scroll(3);
  form_.MeasurePage();
  form_.FillGrid(1, 3);
  EXPECT_EQ(form_.LogPageRows, 0);
  ExpectEmptyState();
}

// The log held 12 records and the bar stood at the 9th; the next one has 3.
TEST_F(FrmLogTest, NextLogBeginsAtItsNewestRecordWhereverTheBarStood) {
  OpenOn(12, 3);
  form_.VScroll1.Scroll(9);
  Put(3);
  Choose(Path());
  EXPECT_EQ(form_.LogFirstRow, 1);
  EXPECT_EQ(form_.VScroll1.value.Get(), 1);
  EXPECT_EQ(form_.VScroll1.maximum.Get(), 3);
  EXPECT_THAT(Page(), ElementsAre("text 3", "text 2", "text 1"));
}

TEST_F(FrmLogTest, CancelLeavesAllAsItWas) {
  OpenOn(10, 3);
  form_.VScroll1.Scroll(4);
  int told = 0;
  const auto page = form_.ErrLog.page_changed.Connect([&] { ++told; });
  const auto pointer = screen_.MousePointer.changed.Connect([&] { ++told; });
  Choose("");
  EXPECT_EQ(told, 0);
  EXPECT_EQ(form_.LogPath, Path());
  EXPECT_EQ(form_.LogFirstRow, 4);
  EXPECT_NE(form_.SBar1.tip.Get(), "");
}

TEST_F(FrmLogTest, FileThatVanishedBeforeItWasReadIsToldAndTheGridIsEmpty) {
  OpenOn(10, 3);
  const std::weak_ptr<const store::EventLogTable> shown = form_.LogRecords;
  ASSERT_TRUE(world_.platform.files.Remove(Path()));
  Choose(Path());
  EXPECT_THAT(Boxes().Texts(), ElementsAre("Unable to display log or log file does not exist."));
  EXPECT_EQ(Boxes().shown[0].icon, platform::BoxIcon::kInformation);
  EXPECT_EQ(Boxes().shown[0].title, world_.state.ProductName);
  ExpectEmptyState();
  EXPECT_TRUE(shown.expired());
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
}

TEST_F(FrmLogTest, FileWithoutAFullLineIsNoLog) {
  world_.platform.files.Put(Path(), "only,three,fields\r\n");
  Open();
  Choose(Path());
  EXPECT_EQ(Boxes().shown.size(), 1U);
  ExpectEmptyState();
  Put(1);
  Choose(Path());
  EXPECT_THAT(Page(), ElementsAre("text 1"));
}

TEST_F(FrmLogTest, LogOfAsManyRecordsAsTheBarCanCountIsPagedToItsEnd) {
  OpenOn(32'767, 3);
  EXPECT_EQ(form_.VScroll1.maximum.Get(), 32'767);
  form_.VScroll1.Scroll(32'767);
  EXPECT_THAT(Page(), ElementsAre("text 1"));
}

TEST_F(FrmLogTest, LogOfOneRecordMoreIsLoggedAndItsFirstPageShown) {
  OpenOn(50, 3);
  world_.quiet.Expect("'frmLog : MeasurePage': 6: Overflow");
  Put(32'768);
  Choose(Path());
  EXPECT_THAT(Page(), ElementsAre("text 32768", "text 32767", "text 32766", "text 32765"));
  EXPECT_EQ(form_.VScroll1.maximum.Get(), 1) << "not the end of the log that was shown before";
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(FrmLogTest, PointerIsAnHourglassWhileAFileIsRead) {
  std::vector<int> shapes;
  const auto link = screen_.MousePointer.changed.Connect([&] { shapes.push_back(screen_.MousePointer); });
  OpenOn(1);
  EXPECT_THAT(shapes, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
}

TEST_F(FrmLogTest, PathIsCompactedToTheBarAndAgainWhenThatChanges) {
  const std::string path = "/var/lib/some/folder/that/is/long/KorvessaEventLog.kvl";
  world_.platform.files.Put(path, "1,h,t,a\r\n");
  Open();
  form_.SBar1.width = 15 * (6 * 30) + 300;  // thirty characters and the margin
  Choose(path);
  EXPECT_EQ(form_.SBar1.text.Get(), "/var/l.../KorvessaEventLog.kvl");
  EXPECT_EQ(form_.SBar1.tip.Get(), path);
  form_.SBar1.width = 15 * (6 * 60) + 300;
  EXPECT_EQ(form_.SBar1.text.Get(), path);
}

TEST_F(FrmLogTest, PathIsShownInTheProgramsOwnText) {
  const std::string path = "/t\xC3\xB6ol/KorvessaEventLog.kvl";
  world_.platform.files.Put(path, "1,h,t,a\r\n");
  Open();
  form_.SBar1.width = 30'000;
  Choose(path);
  EXPECT_EQ(form_.SBar1.text.Get(), "/t\xF6ol/KorvessaEventLog.kvl");
  EXPECT_THAT(Page(), ElementsAre("a"));
}

TEST_F(FrmLogTest, ColumnsOfANewLogAreAsWideAsItsFirstPageAsksFor) {
  world_.platform.files.Put(Path(), "1,h,t," + std::string(30, 'd') + "," + std::string(900, 'e') + "\r\n");
  Open();
  Choose(Path());
  EXPECT_EQ(form_.ErrLog.ColWidth(0), 22 * kTwipsPerCharacter + 300);
  EXPECT_EQ(form_.ErrLog.ColWidth(1), 900) << "no narrower than in the empty grid";
  EXPECT_EQ(form_.ErrLog.ColWidth(2), widgets::PageGrid::kDefaultColWidth);
  EXPECT_EQ(form_.ErrLog.ColWidth(3), 30 * kTwipsPerCharacter + 300);
  EXPECT_EQ(form_.ErrLog.ColWidth(4), 8000) << "and no wider than its widest column";
}

TEST_F(FrmLogTest, RecordBehindTheFirstPageAsksForNoWidth) {
  std::string bytes = "1,h,t," + std::string(30, 'd') + "\r\n";
  for (int i = 0; i < 4; ++i) bytes += "2,h,t,x\r\n";
  world_.platform.files.Put(Path(), bytes);
  Open(3);
  Choose(Path());
  ASSERT_THAT(Page(), ElementsAre("x", "x", "x", "x"));
  EXPECT_LT(form_.ErrLog.ColWidth(3), 30 * kTwipsPerCharacter);
}

TEST_F(FrmLogTest, ColumnThatTheUserHasDraggedStaysWhilePagesAreTurned) {
  OpenOn(10, 3);
  form_.ErrLog.SetColWidth(3, 5000);
  form_.VScroll1.Scroll(4);
  EXPECT_EQ(form_.ErrLog.ColWidth(3), 5000);
}

TEST_F(FrmLogTest, EachPageIsToldOnce) {
  OpenOn(10, 3);
  int told = 0;
  const auto link = form_.ErrLog.page_changed.Connect([&] { ++told; });
  form_.VScroll1.Scroll(4);
  EXPECT_EQ(told, 1);
}

TEST_F(FrmLogTest, NextLogIsToldOnceWhereverTheBarStood) {
  OpenOn(12, 3);
  form_.VScroll1.Scroll(9);
  int told = 0;
  const auto link = form_.ErrLog.page_changed.Connect([&] { ++told; });
  Choose(Path());
  EXPECT_EQ(told, 1);
}

TEST_F(FrmLogTest, ClosedWindowHoldsNoRecords) {
  OpenOn(10, 3);
  const std::weak_ptr<const store::EventLogTable> shown = form_.LogRecords;
  EXPECT_FALSE(shown.expired());
  form_.Unload(widgets::UnloadCause::kCloseBox);
  EXPECT_TRUE(shown.expired());
}

TEST_F(FrmLogTest, DisabledWindowAsksForNoFile) {
  Put(1);
  Open();
  form_.enabled = false;
  Choose(Path());
  EXPECT_THAT(world_.platform.file_dialogs.shown, IsEmpty());
}

TEST_F(FrmLogTest, WindowThatGoesUnderTheMessageIsLeftAlone) {
  Open();
  Boxes().while_open = [&](const auto&) { form_.Unload(); };
  Choose(Path());
  EXPECT_FALSE(form_.loaded());
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
}

TEST_F(FrmLogTest, LineOfAMillionCommasCostsAPageNothing) {
  std::string bytes = "1,h,t,d" + std::string(1'000'000, ',') + "\r\n";
  for (int i = 0; i < 200; ++i) bytes += "2,h,t\r\n";
  world_.platform.files.Put(Path(), bytes);
  Open(50);
  Choose(Path());
  EXPECT_EQ(form_.ErrLog.Cols(), 1'000'004);
  EXPECT_EQ(form_.ErrLog.Rows(), 52);
  EXPECT_EQ(form_.ErrLog.Text(0, 1'000'003), "Descr1000004");
  EXPECT_EQ(form_.ErrLog.Text(1, 1'000'003), " ");
}

}  // namespace
}  // namespace zendrix::admin
