#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/store_fixture.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::vector<std::string> kFixedColumns = {"ID",          "DateUTC",  "DateTime", "Hostname",
                                                "ThreadID",    "Monitor",  "Original", "Change",
                                                "Description", "Reaction", "Code"};

class FullLoadTest : public StoreFixture {};

TEST_F(FullLoadTest, EmptyFileGivesEmptyTableWithElevenColumns) {
  AppendBytes("");
  Load();
  EXPECT_EQ(ColumnNames(), kFixedColumns);
  EXPECT_EQ(Rows(), 0u);
  EXPECT_TRUE(reader_->ReloadedFlag);
  EXPECT_EQ(reader_->ReaderFilePath, kPath);
}

TEST_F(FullLoadTest, MissingFileGivesEmptyTableAndIsNeverFollowed) {
  Load();
  EXPECT_EQ(ColumnNames(), kFixedColumns);
  EXPECT_TRUE(reader_->ReloadedFlag);
  EXPECT_EQ(reader_->ReaderFilePath, "");
  AppendLine(Line("1700000000", "System", "came later"));
  Tick();
  EXPECT_EQ(Rows(), 0u);
  EXPECT_EQ(alerts_, 0);
}

TEST_F(FullLoadTest, ThreeShortLinesAndOneFullLineGiveAnEmptyTable) {
  AppendLines({"a", "b|c", "d", Line("1700000000", "System", "x")});
  Load();
  EXPECT_EQ(ColumnNames(), kFixedColumns);
  EXPECT_EQ(Rows(), 0u);
  EXPECT_EQ(reader_->LastLineNumber, 0);
  EXPECT_FALSE(reader_->ReloadedFlag);
  EXPECT_GT(reader_->LastFileSize, 0);
}

TEST_F(FullLoadTest, ReloadedFlagStaysSetWhenOnlyTheLastLineOfAReloadIsFull) {
  AppendLines({Line("1700000000", "System", std::string(200, 'x'))});
  Load();
  ReplaceFile({"a", Line("1700000000", "System", "x")});
  Tick();
  EXPECT_TRUE(reader_->ReloadedFlag);
  EXPECT_EQ(Rows(), 0u);
}

TEST_F(FullLoadTest, ThreeShortLinesAndTwoFullLinesGiveRowsFourAndFive) {
  AppendLines({"a", "b|c", "d", Line("1700000000", "System", "x"), Line("1700000001", "System", "y")});
  Load();
  EXPECT_THAT(IDs(), ElementsAre(4, 5));
  EXPECT_THAT(Column(store::kDescription), ElementsAre("x", "y"));
  EXPECT_EQ(reader_->LastLineNumber, 5);
  EXPECT_TRUE(reader_->ReloadedFlag);
}

TEST_F(FullLoadTest, OnlyShortLinesGiveAnEmptyTable) {
  AppendLines({"a", "", "b|c|d|e|f|g"});
  Load();
  EXPECT_EQ(Rows(), 0u);
  EXPECT_FALSE(reader_->ReloadedFlag);
}

TEST_F(FullLoadTest, OneFullLineIsLoaded) {
  AppendLine(Line("1700000000", "System", "x"));
  Load();
  EXPECT_THAT(Dump(),
              ElementsAre("1|1700000000|HOST|7|System|0.0000000000000000|1.0000000000000000|x|started|ok,1"));
  EXPECT_EQ(reader_->LastDateUTC, "1700000000");
  EXPECT_EQ(reader_->LastLineNumber, 1);
}

TEST_F(FullLoadTest, FirstAggregationLineIsStoredUnexpanded) {
  AppendLines(
      {Line("1700000000", "Aggregation", "A=1 * 2;B=3"), Line("1700000001", "Aggregation", "A=1 * 2;B=3")});
  Load();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("A=1 * 2;B=3", "A=1;A=2;B=3"));
}

TEST_F(FullLoadTest, FirstLineOfAnyMonitorIsNotSplit) {
  AppendLines({Line("1700000000", "Running Processes", "a * b"), Line("1700000001", "System", "c")});
  Load();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a * b", "c"));
  EXPECT_THAT(IDs(), ElementsAre(1, 2));
}

TEST_F(FullLoadTest, FirstLineWithAnEmptyDescriptionMakesARow) {
  AppendLines({Line("1700000000", "System", ""), Line("1700000001", "System", "")});
  Load();
  EXPECT_THAT(IDs(), ElementsAre(1));
}

TEST_F(FullLoadTest, DateTextOfTheFirstLineIsNotCut) {
  const std::string date(60, 'd');
  AppendLines({Line(date, "System", "x"), Line(date, "System", "y")});
  Load();
  EXPECT_THAT(Column(store::kDateTime), ElementsAre(date, date.substr(0, 50)));
}

TEST_F(FullLoadTest, FirstFullLineSettlesTheColumns) {
  AppendLines({Line("1700000000", "System", "x") + "|e7|e8", Line("1700000001", "System", "y") + "|only",
               Line("1700000002", "System", "z") + "|a|b|surplus", Line("1700000003", "System", "w")});
  Load();
  EXPECT_EQ(reader_->EventTable->ColumnCount(), 13);
  EXPECT_EQ(reader_->EventTable->ColumnName(11), "Descr10");
  EXPECT_EQ(reader_->EventTable->ColumnName(12), "Descr11");
  EXPECT_THAT(Column(11), ElementsAre("e7", "only", "a", ""));
  EXPECT_THAT(Column(12), ElementsAre("e8", "", "b", ""));
}

TEST_F(FullLoadTest, ProgressIsMadeAtEveryMultipleOfFifty) {
  for (int i = 0; i < 120; ++i) AppendLine(Line("1700000000", "System", "x"));
  Load();
  EXPECT_THAT(progress_, ElementsAre(41, 83));
  EXPECT_EQ(platform_.timers.ProcessMessagesCount(), 2);
}

TEST_F(FullLoadTest, ProgressYieldsWithoutASplash) {
  reader_ = std::make_unique<store::CMkvlf>(state_, log_);
  for (int i = 0; i < 100; ++i) AppendLine(Line("1700000000", "System", "x"));
  Load();
  EXPECT_EQ(platform_.timers.ProcessMessagesCount(), 2);
}

// Without a splash the screen is the only thing that is missing: everything else goes on at the same lines.
TEST_F(FullLoadTest, YieldsComeAtEachMultipleOfFiftyLinesWithoutASplash) {
  reader_ = std::make_unique<store::CMkvlf>(state_, log_);
  for (int i = 0; i < 249; ++i) AppendLine(i % 7 == 4 ? "short" : Line("1700000000", "System", "x"));
  std::vector<std::int32_t> last_ids;
  std::function<void()> look = [&] {
    last_ids.push_back(reader_->EventTable->RowCount() == 0 ? 0 : ID(reader_->EventTable->RowCount() - 1));
    platform_.timers.Post(look);
  };
  platform_.timers.Post(look);
  Load();
  EXPECT_THAT(last_ids, ElementsAre(50, 100, 150, 200));
  EXPECT_EQ(platform_.timers.ProcessMessagesCount(), 4);
}

TEST_F(FullLoadTest, PartsOfADescriptionCanPassOverAMultipleOfFifty) {
  for (int i = 0; i < 48; ++i) AppendLine(Line("1700000000", "System", "x"));
  AppendLine(Line("1700000000", "System", "a * b"));  // counter goes from 49 to 51
  for (int i = 0; i < 48; ++i) AppendLine(Line("1700000000", "System", "x"));
  Load();
  EXPECT_EQ(reader_->LastLineNumber, 99);
  EXPECT_THAT(progress_, IsEmpty());
}

TEST_F(FullLoadTest, ShortLinesCountForProgress) {
  AppendLine(Line("1700000000", "System", "x"));
  for (int i = 0; i < 49; ++i) AppendLine("short");
  Load();
  EXPECT_THAT(progress_, ElementsAre(100));
}

TEST_F(FullLoadTest, LinesBeforeTheFirstFullOneMakeNoProgress) {
  for (int i = 0; i < 60; ++i) AppendLine("short");
  AppendLines({Line("1700000000", "System", "x"), Line("1700000000", "System", "y")});
  Load();
  EXPECT_THAT(progress_, IsEmpty());
  EXPECT_THAT(IDs(), ElementsAre(61, 62));
}

TEST_F(FullLoadTest, LastLineWithoutLineEndIsReadAndCapsThePercentage) {
  for (int i = 0; i < 49; ++i) AppendLine(Line("1700000000", "System", "x"));
  AppendBytes(Line("1700000000", "System", "last"));
  Load();
  EXPECT_EQ(Rows(), 50u);
  EXPECT_THAT(progress_, ElementsAre(100));
}

TEST_F(FullLoadTest, BareLineFeedsCountAsTwoBytes) {
  std::string bytes;
  for (int i = 0; i < 100; ++i) bytes += "1,h,t,m||||||\n";  // 14 bytes, counted as 15
  AppendBytes(bytes);
  Load();
  EXPECT_THAT(progress_, ElementsAre(15 * 50 * 100 / 1400, 100));
}

TEST_F(FullLoadTest, CarriageReturnAloneEndsNoLine) {
  AppendBytes(Line("1700000000", "System", "a\rb") + "\n" + Line("1700000001", "System", "c") + "\r\r\n");
  Load();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a b", "c"));
}

TEST_F(FullLoadTest, TwentyOneMillionBytesAreTheLimit) {
  // 21,474,836 bytes counted are still fine at a multiple of fifty; one more is an overflow.
  const std::string first = Line("1700000000", "System", "x") + "\r\n";
  const auto file_of = [&](std::size_t size) {
    std::string bytes = first;
    for (int i = 0; i < 48; ++i) bytes += "\r\n";
    return bytes + std::string(size - bytes.size() - 2, 'y') + "\r\n";
  };
  AppendBytes(file_of(21'474'836));
  Load();
  EXPECT_EQ(reader_->LastLineNumber, 50);
  EXPECT_THAT(progress_, ElementsAre(100));
  platform_.files.Put(kPath, file_of(21'474'837));
  ExpectFatal([this] { Load(); }, "CMkvlf:InitClass (0).", 6);
}

// Says of every file that it has this size, as of one that would take the whole memory.
class FilesOfOneSize : public platform::MemoryFiles {
 public:
  platform::Result<std::int64_t> Size(const std::string&) override { return size; }
  std::int64_t size = 2147483647;
};

TEST_F(FullLoadTest, FileOfTheLargestSizeIsLoadedAndOneByteMoreIsAnOverflow) {
  FilesOfOneSize files;
  files.Put(kPath, Line("1700000000", "System", "x") + "\r\n");
  platform::Seams seams{files,         seams_.clock,         seams_.locale,       seams_.host,
                        seams_.shell,  seams_.instance_lock, seams_.services,     seams_.loop,
                        seams_.timers, seams_.message_boxes, seams_.file_dialogs, seams_.colour_dialogs,
                        seams_.family, seams_.process};
  core::AppState state(seams);
  core::ErrorLog log(state);
  int error_number = 0;
  log.on_fatal = [&](const std::string&, const core::RunTimeError& error) { error_number = error.number; };
  store::CMkvlf reader(state, log, nullptr);
  reader.InitClass(kPath);
  EXPECT_EQ(reader.LastFileSize, 2147483647);
  ASSERT_TRUE(reader.EventTable);
  EXPECT_EQ(reader.EventTable->RowCount(), 1U);
  ++files.size;
  EXPECT_THROW(reader.InitClass(kPath), platform::ProcessEnded);
  EXPECT_EQ(error_number, core::kOverflow);
}

TEST_F(FullLoadTest, LargeFileThatNeverMeetsAMultipleOfFiftyIsLoaded) {
  AppendBytes(Line("1700000000", "System", "x") + "\r\n" + std::string(22'000'000, 'y') + "\r\n");
  Load();
  EXPECT_EQ(reader_->LastLineNumber, 2);
}

TEST_F(FullLoadTest, EveryPathArmsTheTimerOnce) {
  Load();  // no file
  EXPECT_EQ(platform_.timers.RunningTimers(), 1);
  AppendBytes("");
  Load();
  EXPECT_EQ(platform_.timers.RunningTimers(), 2);
  platform_.files.FailNext(platform::FileOp::kOpen, kPath, platform::ErrorKind::kPermissionDenied);
  Load();
  EXPECT_EQ(platform_.timers.RunningTimers(), 3);
  ExpectLog("'CMkvlf:InitClass (0).': 70: Permission denied");
}

TEST_F(FullLoadTest, LockedFileLeavesNoTableAndIsNotReadUntilItGrows) {
  AppendLine(Line("1700000000", "System", "x"));
  platform_.files.FailNext(platform::FileOp::kOpen, kPath, platform::ErrorKind::kPermissionDenied);
  Load();
  ExpectLog("'CMkvlf:InitClass (0).': 70: Permission denied");
  EXPECT_EQ(reader_->EventTable, nullptr);
  EXPECT_EQ(reader_->LastFileSize, static_cast<std::int32_t>(platform_.files.Get(kPath).size()));
  EXPECT_EQ(reader_->LastLineNumber, 0);
  EXPECT_FALSE(reader_->ReloadedFlag);
  Tick();
  EXPECT_EQ(alerts_, 0);
  AppendLine(Line("1700000001", "System", "y"));
  Tick();
  EXPECT_EQ(alerts_, 1);
  EXPECT_THAT(Column(store::kDescription), ElementsAre("y"));
}

TEST_F(FullLoadTest, ErrorSeventyInTheMiddleKeepsTheRowsMadeSoFar) {
  for (int i = 0; i < 5000; ++i)
    AppendLine(Line("1700000000", "System", "part of a long history of this host"));
  const std::int64_t middle = 200'000;
  platform_.files.FailReadAfter(kPath, middle, platform::ErrorKind::kPermissionDenied);
  Load();
  ExpectLog("'CMkvlf:InitClass (0).': 70: Permission denied");
  EXPECT_GT(Rows(), 100u);
  EXPECT_LT(Rows(), 5000u);
  EXPECT_EQ(reader_->LastLineNumber, 0);
  EXPECT_EQ(reader_->LastFileSize, static_cast<std::int32_t>(platform_.files.Get(kPath).size()));
}

TEST_F(FullLoadTest, OtherRefusalsAreFatal) {
  AppendLine(Line("1700000000", "System", "x"));
  platform_.files.FailNext(platform::FileOp::kOpen, kPath, platform::ErrorKind::kNotFound);
  ExpectFatal([this] { Load(); }, "CMkvlf:InitClass (0).", 53);
}

TEST_F(FullLoadTest, FileThatIsCutToNothingBeforeTheFirstReadIsFatal) {
  AppendLine(Line("1700000000", "System", "x"));
  platform_.files.before = [this](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kRead) platform_.files.Put(path, "");
  };
  ExpectFatal([this] { Load(); }, "CMkvlf:InitClass (0).", 62);
}

TEST_F(FullLoadTest, FileThatGrowsWhileItIsReadIsReadToItsPresentEnd) {
  AppendLine(Line("1700000000", "System", "x"));
  const auto size = static_cast<std::int32_t>(platform_.files.Get(kPath).size());
  bool grown = false;
  platform_.files.before = [&](platform::FileOp op, const std::string&) {
    if (op != platform::FileOp::kRead || grown) return;
    grown = true;
    AppendLine(Line("1700000001", "System", "y"));
  };
  Load();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("x", "y"));
  EXPECT_EQ(reader_->LastFileSize, size);
  // What was read beyond the size is seen again and passed over.
  Tick();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("x", "y"));
  EXPECT_EQ(alerts_, 1);
}

TEST_F(FullLoadTest, ListsHoldEachNameOnceInOrder) {
  AppendLines({"1,H1,1,System|5|1|d|r|c|", "2,h1,2,Community|5|1|d|r|c|", "3,H2,3,SYSTEM|6|1|d|r|c|",
               "4,H3,4|7|1|d|r|c|", "5,H4,5,Autorun Registry|8|1||r|c|"});
  Load();
  ExpectLog("'CMkvlf_InitClass': Error in line: 4,H3,4|7|1|d|r|c|");
  EXPECT_THAT(Items(reader_->HostList), ElementsAre("H1", "H2", "H4"));
  EXPECT_THAT(Items(reader_->MonitorList), ElementsAre("System", "Community", "Autorun Registry"));
  EXPECT_THAT(Items(reader_->OriginalList), ElementsAre("5", "6", "8"));
}

TEST_F(FullLoadTest, SecondLoadStartsTheListsAnew) {
  AppendLine("1,H1,1,System|5|1|d|r|c|");
  Load();
  ReplaceFile({"1,H2,1,System|6|1|d|r|c|"});
  Load();
  EXPECT_THAT(Items(reader_->HostList), ElementsAre("H2"));
  EXPECT_THAT(Items(reader_->OriginalList), ElementsAre("6"));
}

TEST_F(FullLoadTest, EmptyStampIsFatalBehindItsLogLine) {
  AppendLines({Line("1700000000", "System", "x"), "|0|1|d|r|c|"});
  EXPECT_THROW(Load(), platform::ProcessEnded);
  ExpectLog("'CMkvlf_InitClass': Error in line: |0|1|d|r|c|");
  ExpectLog("An error has occurred in procedure 'CMkvlf:InitClass (0).'. Error 9: Subscript out of range");
}

TEST_F(FullLoadTest, EmptyStampWithoutADescriptionMakesNoRowAndNoError) {
  AppendLines({Line("1700000000", "System", "x"), "||||||"});
  Load();
  EXPECT_EQ(Rows(), 1u);
  EXPECT_EQ(reader_->LastLineNumber, 2);
}

}  // namespace
}  // namespace zendrix::test
