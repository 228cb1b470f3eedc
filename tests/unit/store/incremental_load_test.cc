#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/line_reader.h"
#include "support/store_fixture.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class IncrementalLoadTest : public StoreFixture {
 protected:
  void LoadOf(const std::vector<std::string>& lines) {
    AppendLines(lines);
    Load();
  }
};

TEST_F(IncrementalLoadTest, SameSizeReadsNothingEvenIfTheContentChanged) {
  LoadOf({Line("1700000000", "System", "abc")});
  ReplaceFile({Line("1700000009", "System", "xyz")});
  Tick();
  EXPECT_EQ(alerts_, 0);
  EXPECT_THAT(Column(store::kDescription), ElementsAre("abc"));
}

TEST_F(IncrementalLoadTest, NewLinesAreAddedBehindTheBookmark) {
  LoadOf({Line("1700000000", "System", "a"), Line("1700000001", "System", "b")});
  EXPECT_FALSE(reader_->LastBookmark.has_value());
  AppendLine(Line("1700000002", "System", "c"));
  Tick();
  EXPECT_EQ(alerts_, 1);
  EXPECT_FALSE(reader_->ReloadedFlag);
  EXPECT_EQ(reader_->LastBookmark, 1u);
  EXPECT_THAT(IDs(), ElementsAre(1, 2, 3));
  EXPECT_EQ(reader_->LastLineNumber, 3);
  EXPECT_EQ(reader_->LastDateUTC, "1700000002");
}

TEST_F(IncrementalLoadTest, ShrunkToNothingRecreatesAnEmptyTable) {
  LoadOf({Line("1700000000", "System", "a") + "|extra"});
  AppendLine(Line("1700000001", "System", "b"));
  Tick();
  platform_.files.Put(kPath, "");
  Tick();
  EXPECT_EQ(Rows(), 0u);
  EXPECT_EQ(reader_->EventTable->ColumnCount(), 11);
  EXPECT_EQ(reader_->LastFileSize, 0);
  EXPECT_TRUE(reader_->ReloadedFlag);
  EXPECT_FALSE(reader_->LastBookmark.has_value());
  EXPECT_EQ(alerts_, 2);
}

TEST_F(IncrementalLoadTest, RemovedFileChangesNothingUntilItIsBack) {
  LoadOf({Line("1700000000", "System", "a"), Line("1700000001", "System", "b")});
  RemoveFile();
  Tick();
  EXPECT_EQ(Rows(), 2u);
  EXPECT_EQ(alerts_, 0);
  ReplaceFile({Line("1700000005", "System", "new")});
  Tick();
  EXPECT_TRUE(reader_->ReloadedFlag);
  EXPECT_THAT(Column(store::kDescription), ElementsAre("new"));
}

TEST_F(IncrementalLoadTest, RemovedFileThatComesBackLargerIsReadFromTheOldOffset) {
  LoadOf({Line("1700000000", "System", "a")});
  RemoveFile();
  Tick();
  ReplaceFile({Line("1700000005", "System", "b"), Line("1700000006", "System", "c")});
  Tick();
  EXPECT_FALSE(reader_->ReloadedFlag);
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a", "c"));
}

TEST_F(IncrementalLoadTest, LargerReplacementDropsLinesThatAreNotNewer) {
  LoadOf({Line("1700000005", "System", "a")});
  ReplaceFile({Line("1600000000", "System", "1"), Line("1600000001", "System", "2"),
               Line("1700000005", "System", "3"), Line("1700000006", "System", "4"),
               Line("1600000002", "System", "5")});
  Tick();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a", "4", "5"));
  EXPECT_THAT(IDs(), ElementsAre(1, 2, 3));
}

TEST_F(IncrementalLoadTest, OnlyTheThirdOfThreeNewLinesIsNewer) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLines({Line("1700000000", "System", "same"), Line("1700000000", "System", "same again"),
               Line("1700000001", "System", "newer"), Line("1700000000", "System", "older behind it")});
  Tick();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a", "newer", "older behind it"));
  EXPECT_THAT(IDs(), ElementsAre(1, 2, 3));
}

TEST_F(IncrementalLoadTest, NothingNewerRaisesTheEventAllTheSame) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLine(Line("1700000000", "System", "same"));
  Tick();
  EXPECT_EQ(Rows(), 1u);
  EXPECT_EQ(alerts_, 1);
  EXPECT_EQ(reader_->LastLineNumber, 1);
  EXPECT_EQ(reader_->LastBookmark, 0u);
}

TEST_F(IncrementalLoadTest, DatesAreComparedAsTexts) {
  LoadOf({Line("999", "System", "a")});
  AppendLines({Line("1000", "System", "smaller as text"), Line("9990", "System", "greater as text")});
  Tick();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a", "greater as text"));
}

TEST_F(IncrementalLoadTest, HighBytesAreGreaterThanLetters) {
  platform_.clock.SetUtc(1'000'000'000);
  LoadOf({Line("0", "System", "a")});
  AppendLine(Line("\xE4\xF6", "System", "b"));
  Tick();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a", "b"));
}

TEST_F(IncrementalLoadTest, ShortLinesUseUpNumbersAndMakeNoRow) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLines({"1700000001,short", "short", ""});
  Tick();
  EXPECT_EQ(Rows(), 1u);
  EXPECT_EQ(reader_->LastLineNumber, 4);
  EXPECT_EQ(alerts_, 1);
  AppendLine(Line("1700000002", "System", "b"));
  Tick();
  EXPECT_THAT(IDs(), ElementsAre(1, 5));
}

TEST_F(IncrementalLoadTest, EmptyLastDateTakesTheFirstNewLine) {
  AppendBytes("");
  Load();
  AppendLine(Line("0", "System", "a") + "|lost");
  Tick();
  EXPECT_THAT(Dump(), ElementsAre("1|0|HOST|7|System|0.0000000000000000|1.0000000000000000|a|started|ok,1"));
  EXPECT_FALSE(reader_->LastBookmark.has_value());
  EXPECT_EQ(reader_->EventTable->ColumnCount(), 11);
}

TEST_F(IncrementalLoadTest, FirstLineIsSplitAndExpandedHere) {
  AppendBytes("");
  Load();
  AppendLines({Line("1700000000", "Aggregation", "K=a * b"), Line("1700000000", "System", "a * b")});
  Tick();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("K=a;K=b", "a", "b"));
  EXPECT_THAT(IDs(), ElementsAre(1, 2, 3));
  EXPECT_EQ(reader_->LastLineNumber, 4);
}

TEST_F(IncrementalLoadTest, LineWithoutACommaAtTheHeadIsFatal) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLine("no date at all");
  ExpectFatal([this] { Tick(); }, "CMkvlf:loadNewEvents (0).", 5);
}

TEST_F(IncrementalLoadTest, LineWithoutACommaAmongThoseNotNewerIsFatal) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLines({Line("1700000000", "System", "same"), ""});
  ExpectFatal([this] { Tick(); }, "CMkvlf:loadNewEvents (0).", 5);
}

TEST_F(IncrementalLoadTest, LineWithoutACommaBehindTheFirstNewerIsTolerated) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLines({Line("1700000001", "System", "b"), "no date at all", Line("1700000001", "System", "c")});
  Tick();
  EXPECT_THAT(IDs(), ElementsAre(1, 2, 4));
}

TEST_F(IncrementalLoadTest, LineCutInTwoByTheLastReadGoesOnWithItsRest) {
  const std::string line = Line("1700000001", "System", "b");
  AppendLine(Line("1700000000", "System", "a"));
  AppendBytes(line.substr(0, 20));
  Load();
  EXPECT_EQ(Rows(), 1u);
  EXPECT_EQ(reader_->LastLineNumber, 2);
  AppendBytes(line.substr(20) + "\r\n");
  Tick();
  // The rest is a line of its own: its text before the comma is "stem|0|1|b|started|ok", greater than the
  // last date.
  ExpectLog("'CMkvlf_LoadNewEvents': Error in line: stem|0|1|b|started|ok,1|");
  EXPECT_EQ(alerts_, 1);
  EXPECT_THAT(IDs(), ElementsAre(1, 3));
  EXPECT_EQ(Text(1, store::kDateTime), "stem");
}

TEST_F(IncrementalLoadTest, SizeTakenBetweenCarriageReturnAndLineFeedIsFatal) {
  AppendBytes(Line("1700000000", "System", "a") + "\r");
  Load();
  AppendBytes("\n");
  ExpectFatal([this] { Tick(); }, "CMkvlf:loadNewEvents (0).", 5);
}

TEST_F(IncrementalLoadTest, WrongStampIsLoggedUnderThisProcedure) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLine("1700000001,x|0|1|d|r|c|");
  Tick();
  ExpectLog("'CMkvlf_LoadNewEvents': Error in line: 1700000001,x|0|1|d|r|c|");
}

TEST_F(IncrementalLoadTest, MonitorsAreListedWithTheirThread) {
  LoadOf({"1,H,10,System|5|1|d|r|c|"});
  AppendLines({"2,H,11,System|6|1|d|r|c|", "3,H,12,Community|7|1|d|r|c|", "4,H,13,COMMUNITY|7|1|d|r|c|"});
  Tick();
  EXPECT_THAT(Keys(reader_->MonitorList), ElementsAre("System", "Community"));
  EXPECT_THAT(Items(reader_->MonitorList), ElementsAre("System", "12"));
  EXPECT_THAT(Items(reader_->OriginalList), ElementsAre("5", "6", "7"));
}

TEST_F(IncrementalLoadTest, NoYieldAndNoProgress) {
  LoadOf({Line("1700000000", "System", "a")});
  for (int i = 0; i < 200; ++i) AppendLine(Line("1700000001", "System", "b"));
  Tick();
  EXPECT_EQ(Rows(), 201u);
  EXPECT_EQ(platform_.timers.ProcessMessagesCount(), 0);
  EXPECT_THAT(progress_, IsEmpty());
}

TEST_F(IncrementalLoadTest, LockedFileGivesWayToTheNextTick) {
  LoadOf({Line("1700000000", "System", "a")});
  const auto size = reader_->LastFileSize;
  AppendLine(Line("1700000001", "System", "b"));
  platform_.files.FailNext(platform::FileOp::kOpen, kPath, platform::ErrorKind::kPermissionDenied);
  Tick();
  ExpectLog("'CMkvlf:LoadNewEvents (0).': 70: Permission denied");
  EXPECT_EQ(alerts_, 0);
  EXPECT_EQ(reader_->LastFileSize, size);
  EXPECT_EQ(reader_->LastLineNumber, 1);
  Tick();
  EXPECT_EQ(alerts_, 1);
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a", "b"));
}

TEST_F(IncrementalLoadTest, SizeThatIsRefusedGivesWayToo) {
  LoadOf({Line("1700000000", "System", "a")});
  platform_.files.FailNext(platform::FileOp::kSize, kPath, platform::ErrorKind::kPermissionDenied);
  Tick();
  ExpectLog("'CMkvlf:LoadNewEvents (0).': 70: Permission denied");
}

TEST_F(IncrementalLoadTest, RowsAddedBeforeARefusalAreNotEnteredTwice) {
  LoadOf({Line("1700000000", "System", "a")});
  std::vector<std::string> expected = {"a"};
  for (int i = 1; i <= 5000; ++i) {
    AppendLine(Line(std::to_string(1700000000 + i), "System", "number " + std::to_string(i)));
    expected.push_back("number " + std::to_string(i));
  }
  platform_.files.FailReadAfter(kPath, 150'000, platform::ErrorKind::kPermissionDenied);
  Tick();
  ExpectLog("'CMkvlf:LoadNewEvents (0).': 70: Permission denied");
  EXPECT_EQ(alerts_, 0);
  EXPECT_GT(Rows(), 1000u);
  EXPECT_EQ(reader_->LastLineNumber, 1);
  const auto kept = Rows();
  Tick();
  EXPECT_EQ(alerts_, 1);
  EXPECT_EQ(Column(store::kDescription), expected);
  EXPECT_EQ(reader_->LastBookmark, kept - 1);
  // The numbers start again from the old counter, so an ID can stand twice: a find takes the first.
  auto cursor = reader_->EventTable->Clone();
  cursor.Find("ID = '2' ", 0, store::Direction::kForward);
  EXPECT_EQ(cursor.bookmark(), 1u);
  cursor.Find("ID = 2", 1, store::Direction::kForward);
  EXPECT_EQ(cursor.bookmark(), kept);
}

TEST_F(IncrementalLoadTest, OtherRefusalsAreFatal) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLine(Line("1700000001", "System", "b"));
  platform_.files.FailNext(platform::FileOp::kRead, kPath, platform::ErrorKind::kOther);
  ExpectFatal([this] { Tick(); }, "CMkvlf:loadNewEvents (0).", 57);
}

TEST_F(IncrementalLoadTest, FileThatShrinksBetweenItsSizeAndTheReadIsFatal) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLine(Line("1700000001", "System", "b"));
  platform_.files.before = [this](platform::FileOp op, const std::string&) {
    if (op == platform::FileOp::kOpen) ReplaceFile({"short"});
  };
  ExpectFatal([this] { Tick(); }, "CMkvlf:loadNewEvents (0).", 62);
}

TEST_F(IncrementalLoadTest, FileThatVanishesBetweenTheLookAndTheSizeIsFatal) {
  LoadOf({Line("1700000000", "System", "a")});
  platform_.files.before = [this](platform::FileOp op, const std::string&) {
    if (op == platform::FileOp::kSize) RemoveFile();
  };
  ExpectFatal([this] { Tick(); }, "CMkvlf:loadNewEvents (0).", 53);
}

TEST_F(IncrementalLoadTest, FileReplacedWhileItIsReadIsReadToTheEndOfTheOldOne) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLine(Line("1700000001", "System", "b"));
  bool replaced = false;
  platform_.files.before = [&](platform::FileOp op, const std::string&) {
    if (op != platform::FileOp::kRead || replaced) return;
    replaced = true;
    RemoveFile();
    ReplaceFile({Line("1700000002", "System", "c")});
  };
  Tick();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a", "b"));
  Tick();  // the new file is smaller
  EXPECT_TRUE(reader_->ReloadedFlag);
  EXPECT_THAT(Column(store::kDescription), ElementsAre("c"));
}

TEST_F(IncrementalLoadTest, LinesThatArriveDuringTheReadAreNotEnteredTwice) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLine(Line("1700000001", "System", "b"));
  bool grown = false;
  platform_.files.before = [&](platform::FileOp op, const std::string&) {
    if (op != platform::FileOp::kRead || grown) return;
    grown = true;
    AppendLine(Line("1700000002", "System", "c"));
  };
  Tick();
  Tick();
  EXPECT_EQ(alerts_, 2);
  EXPECT_THAT(Column(store::kDescription), ElementsAre("a", "b", "c"));
}

TEST_F(IncrementalLoadTest, ErrorSeventyInAReloadRaisesTheEventWithoutATable) {
  LoadOf({Line("1700000000", "System", std::string(100, 'a'))});
  ReplaceFile({Line("1700000001", "System", "b")});
  platform_.files.FailNext(platform::FileOp::kOpen, kPath, platform::ErrorKind::kPermissionDenied);
  Tick();
  ExpectLog("'CMkvlf:InitClass (0).': 70: Permission denied");
  EXPECT_EQ(alerts_, 1);
  EXPECT_EQ(reader_->EventTable, nullptr);
  EXPECT_TRUE(reader_->ReloadedFlag);
}

TEST_F(IncrementalLoadTest, TimerPollsEveryTwoAndAHalfSeconds) {
  LoadOf({Line("1700000000", "System", "a")});
  AppendLine(Line("1700000001", "System", "b"));
  platform_.timers.Advance(2499);
  EXPECT_EQ(alerts_, 0);
  platform_.timers.Advance(1);
  EXPECT_EQ(alerts_, 1);
  AppendLine(Line("1700000002", "System", "c"));
  platform_.timers.Advance(2500);
  EXPECT_EQ(alerts_, 2);
  EXPECT_EQ(platform_.timers.RunningTimers(), 1);
}

// Counts the timers that are made.
class CountingTimers : public platform::TimerMaker {
 public:
  explicit CountingTimers(platform::TimerMaker& maker) : maker_(maker) {}
  std::unique_ptr<platform::Timer> MakeTimer(std::function<void()> on_tick) override {
    ++made;
    return maker_.MakeTimer(std::move(on_tick));
  }
  int made = 0;

 private:
  platform::TimerMaker& maker_;
};

TEST_F(IncrementalLoadTest, TimersArmedAgainAreTheOnesThatFired) {
  CountingTimers timers(platform_.timers);
  platform::Seams seams{platform_.files,         platform_.clock,        platform_.locale,
                        platform_.host,          platform_.shell,        platform_.instance_lock,
                        platform_.services,      platform_.timers,       timers,
                        platform_.message_boxes, platform_.file_dialogs, platform_.colour_dialogs,
                        platform_.family,        platform_.process};
  core::AppState state(seams);
  reader_ = std::make_unique<store::CMkvlf>(state, log_);
  LoadOf({Line("1700000000", "System", std::string(300, 'a'))});
  for (int poll = 0; poll < 1000; ++poll) platform_.timers.Advance(2500);
  EXPECT_EQ(timers.made, 1);
  ReplaceFile({Line("1700000000", "System", "b")});  // a second chain
  for (int poll = 0; poll < 1000; ++poll) platform_.timers.Advance(2500);
  EXPECT_LE(timers.made, 2);
  EXPECT_EQ(platform_.timers.RunningTimers(), 2);
  reader_.reset();
}

// A second load without a release of the old table left the old one without a way to add to it.
TEST_F(IncrementalLoadTest, RefusedSecondLoadLeavesNoTableAndTheNextTickAddsOne) {
  LoadOf({Line("1700000000", "System", "a")});
  platform_.files.FailNext(platform::FileOp::kOpen, kPath, platform::ErrorKind::kPermissionDenied);
  Load();
  ExpectLog("'CMkvlf:InitClass (0).': 70: Permission denied");
  EXPECT_EQ(reader_->EventTable, nullptr);
  AppendLine(Line("1700000001", "System", "b"));
  Tick();
  EXPECT_THAT(Column(store::kDescription), ElementsAre("b"));
}

TEST_F(IncrementalLoadTest, EveryReplacedFileAddsAChainOfTicks) {
  LoadOf({Line("1700000000", "System", std::string(300, 'a'))});
  int polls = 0;
  platform_.files.before = [&](platform::FileOp op, const std::string&) {
    polls += op == platform::FileOp::kSize ? 1 : 0;
  };
  ReplaceFile({Line("1700000000", "System", std::string(100, 'a'))});
  platform_.timers.Advance(2500);
  EXPECT_EQ(platform_.timers.RunningTimers(), 2);
  polls = 0;
  platform_.timers.Advance(2500);
  EXPECT_EQ(polls, 2);
  ReplaceFile({Line("1700000000", "System", "a")});
  platform_.timers.Advance(2500);
  EXPECT_EQ(platform_.timers.RunningTimers(), 3);
}

TEST_F(IncrementalLoadTest, TickInsideAReloadGivesWayAndSeesNoDamage) {
  LoadOf({Line("1700000000", "System", std::string(30000, 'a'))});
  std::vector<std::string> lines;
  for (int i = 0; i < 200; ++i) lines.push_back(Line("1700000000", "System", std::to_string(i)));
  ReplaceFile(lines);
  std::vector<std::uint32_t> seen;
  std::vector<std::unique_ptr<store::EventCursor>> clones;
  reader_.reset();
  reader_ = std::make_unique<store::CMkvlf>(state_, log_, [&](int) {
    seen.push_back(reader_->EventTable->RowCount());
    clones.emplace_back(new store::EventCursor(reader_->EventTable->Clone()));
    EXPECT_EQ(reader_->EventTable->cursor()->bookmark(), 0u);
    platform_.timers.Post([this] {
      AppendLine(Line("1700000009", "System", "grown"));
      reader_->cbTimer();
    });
  });
  Load();
  EXPECT_EQ(seen.front(), 50u);
  EXPECT_EQ(Rows(), 200u + seen.size());
  for (const auto& clone : clones) EXPECT_EQ(clone->RecordCount(), Rows());
  for (std::uint32_t row = 1; row < Rows(); ++row) EXPECT_EQ(ID(row), ID(row - 1) + 1);
}

TEST_F(IncrementalLoadTest, ListenerThatPollsAgainIsHarmless) {
  LoadOf({Line("1700000000", "System", "a")});
  reader_->newAlert.ConnectForever([this] { reader_->LoadNewEvents(); });
  AppendLine(Line("1700000001", "System", "b"));
  Tick();
  EXPECT_EQ(alerts_, 1);
  EXPECT_EQ(Rows(), 2u);
}

TEST_F(IncrementalLoadTest, SharedCursorsHandleOutlivesAReload) {
  LoadOf({Line("1700000000", "System", "old"), Line("1700000001", "System", std::string(300, 'a'))});
  const auto shared = reader_->EventTable->cursor();
  shared->SetFilter("Description = 'old'");
  ReplaceFile({Line("1700000000", "System", "b")});
  Tick();
  EXPECT_EQ(shared->RecordCount(), 1u);
  EXPECT_EQ(shared->Text(store::kDescription), "old");
  EXPECT_EQ(shared->Clone().RecordCount(), 2u);
  EXPECT_EQ(reader_->EventTable->cursor()->Text(store::kDescription), "b");
}

TEST_F(IncrementalLoadTest, LoadGoesOnWhenAListenerDropsTheTable) {
  LoadOf({Line("1700000000", "System", "a")});
  const auto kept = reader_->EventTable;
  reader_->newAlert.ConnectForever([this] { reader_->EventTable.reset(); });
  AppendLine(Line("1700000001", "System", "b"));
  Tick();
  AppendLine(Line("1700000002", "System", "c"));
  Tick();
  EXPECT_EQ(kept->RowCount(), 2u);
}

TEST_F(IncrementalLoadTest, CloneOutlivesAReload) {
  LoadOf({Line("1700000000", "System", std::string(300, 'a'))});
  auto clone = reader_->EventTable->Clone();
  const auto view = clone.Text(store::kDescription);
  ReplaceFile({Line("1700000000", "System", "b")});
  Tick();
  EXPECT_EQ(view, std::string(300, 'a'));
  clone.SetFilter("Monitor = 'System'");
  EXPECT_EQ(clone.Text(store::kDateUTC), "1700000000");
  EXPECT_EQ(Text(0, store::kDescription), "b");
}

// Whatever the chunks in which the Agent writes its lines, the rows are those of one full load, but for the
// first line (which only a full load treats by its own rules) and the thread ids in the list of monitors.
TEST_F(IncrementalLoadTest, RandomChunksGiveTheRowsOfOneFullLoad) {
  std::uint64_t state = 7;
  const auto random = [&state](std::uint64_t n) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return (state >> 33) % n;
  };
  const std::string monitors[] = {"System", "Aggregation", "Community", "Running Processes"};
  for (int round = 0; round < 30; ++round) {
    std::vector<std::string> lines = {Line("1700000000", "System", "first")};
    for (int i = 1; i < 60; ++i) {
      std::string line =
          Line(std::to_string(1700000000 + i), monitors[random(4)],
               random(3) == 0 ? "K=a * b;L=c" : "d" + std::to_string(random(5)), std::to_string(random(100)));
      if (random(9) == 0) line = std::to_string(1700000000 + i) + ",short|line";
      if (random(9) == 0) line += "|x|y";
      lines.push_back(line);
    }
    platform_.files.Put(kPath, "");
    AppendLines(lines);
    Load();
    const auto whole = Dump();
    const auto monitors_met = Keys(reader_->MonitorList);

    platform_.files.Put(kPath, "");
    AppendLine(lines[0]);
    reader_ = std::make_unique<store::CMkvlf>(state_, log_);
    Load();
    for (std::size_t next = 1; next < lines.size();) {
      for (std::size_t n = random(9); n > 0 && next < lines.size(); --n) AppendLine(lines[next++]);
      Tick();
    }
    EXPECT_EQ(Dump(), whole);
    EXPECT_EQ(Keys(reader_->MonitorList), monitors_met);
  }
}

TEST(LineReaderTest, LinesAcrossBlocksAndAnyEnd) {
  platform::MemoryFiles files;
  std::string bytes;
  std::vector<std::string> expected;
  for (std::size_t size : {0u, 1u, 5u, 131071u, 131072u, 3u, 400000u, 0u, 17u}) {
    expected.emplace_back(size, static_cast<char>('a' + expected.size()));
    bytes += expected.back() + (expected.size() % 2 == 0 ? "\n" : "\r\n");
  }
  expected.push_back("rest\r");
  files.Put("/f", bytes + "rest\r");
  auto stream = files.Open("/f");
  store::LineReader lines(*stream.value());
  for (const std::string& line : expected) {
    ASSERT_FALSE(lines.AtEnd());
    const auto read = lines.ReadLine();
    EXPECT_TRUE(std::string_view(read.data(), read.size()) == line) << line.size();
  }
  EXPECT_TRUE(lines.AtEnd());
  try {
    lines.ReadLine();
    FAIL();
  } catch (const core::RunTimeError& error) {
    EXPECT_EQ(error.number, core::kInputPastEnd);
  }
}

}  // namespace
}  // namespace zendrix::test
