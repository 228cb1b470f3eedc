#include "agent/record/event_file.h"

#include <map>

#include "platform/memory/fake_clock.h"
#include "platform/memory/memory_files.h"

namespace zendrix::agent {
namespace {

constexpr const char* kPath = "/z/KorvessaMonitoring.kvl";
constexpr std::int64_t kNow = 1700000000;

class EventFileTest : public ::testing::Test {
 protected:
  EventFileTest() { clock.SetUtc(kNow); }

  EventFile Opened(Form form = Form::kHome) {
    EventFile file(files, clock, kPath, form);
    EXPECT_TRUE(file.Open().ok());
    return file;
  }

  static BatchText Text(std::int64_t second, const std::string& bytes = "", std::size_t rows = 1) {
    return {bytes.empty() ? std::to_string(second) + ",h,1,M|0|0|d|r|c|0\r\n" : bytes, second, rows};
  }

  platform::MemoryFiles files;
  platform::FakeClock clock;
};

TEST_F(EventFileTest, NewFileTakesThePresentSecond) {
  EXPECT_EQ(Opened().NextSecond(), kNow);
}

TEST_F(EventFileTest, BatchIsAppendedInOneWrite) {
  int writes = 0;
  files.before = [&](platform::FileOp op, const std::string&) { writes += op == platform::FileOp::kAppend; };
  auto file = Opened();
  ASSERT_TRUE(file.Append(Text(kNow, "1,a\r\n2,b\r\n")).ok());
  EXPECT_EQ(files.Get(kPath), "1,a\r\n2,b\r\n");
  EXPECT_EQ(writes, 1);
}

TEST_F(EventFileTest, BatchNeverBeginsInTheSecondThatTheLastOneEndedIn) {
  auto file = Opened();
  ASSERT_TRUE(file.Append(Text(file.NextSecond())).ok());
  EXPECT_EQ(file.NextSecond(), kNow + 1);
  EXPECT_EQ(clock.SleptMs(), 0) << "the loop has other things to do";
}

TEST_F(EventFileTest, BatchesOfOneSecondRunAheadALittleAndThenWaitForTheClock) {
  auto file = Opened();
  for (std::int64_t i = 0; i <= EventFile::kMostLead; ++i) {
    EXPECT_TRUE(file.MayWrite()) << i;
    ASSERT_TRUE(file.Append(Text(file.NextSecond())).ok());
  }
  EXPECT_FALSE(file.MayWrite());
  clock.Advance(1000);
  EXPECT_TRUE(file.MayWrite());
  EXPECT_EQ(file.NextSecond(), kNow + 3);
}

TEST_F(EventFileTest, BatchOfManySecondsEndsWithTheClockWhereNothingIsInTheWay) {
  auto file = Opened();
  EXPECT_EQ(file.NextSecond(20), kNow - 20);
  ASSERT_TRUE(file.Append(Text(kNow)).ok());
  EXPECT_TRUE(file.MayWrite());
  clock.Advance(5000);
  EXPECT_EQ(file.NextSecond(20), kNow + 1) << "not before what was written";
}

TEST_F(EventFileTest, BatchOfManySecondsIsWaitedForUntilTheClockHasPassedIt) {
  auto file = Opened();
  EXPECT_EQ(file.NextSecond(), kNow);
  ASSERT_TRUE(file.Append(Text(kNow + 20)).ok());
  clock.Advance(18000);
  EXPECT_FALSE(file.MayWrite());
  clock.Advance(1000);
  EXPECT_TRUE(file.MayWrite());
  EXPECT_EQ(file.NextSecond(), kNow + 21);
}

TEST_F(EventFileTest, ClockThatWasPutBackIsNotWaitedFor) {
  auto file = Opened();
  ASSERT_TRUE(file.Append(Text(file.NextSecond())).ok());
  clock.SetUtc(kNow - 3600);
  ASSERT_TRUE(file.MayWrite());
  ASSERT_TRUE(file.Append(Text(file.NextSecond())).ok());
  EXPECT_FALSE(file.MayWrite()) << "one batch a second, or times would run away";
  clock.Advance(1000);
  EXPECT_TRUE(file.MayWrite());
  EXPECT_EQ(file.NextSecond(), kNow + 2);
}

TEST_F(EventFileTest, ClockThatWasPutBackDoesNotHideEvents) {
  auto file = Opened();
  ASSERT_TRUE(file.Append(Text(kNow)).ok());
  clock.SetUtc(kNow - 3600);
  EXPECT_EQ(file.NextSecond(), kNow + 1);
}

// Times a day back in the same file were passed over by a console that follows it.
TEST_F(EventFileTest, FileThatEndsFarAheadOfTheClockIsPutAsideAndItsTimesWithIt) {
  auto file = Opened();
  ASSERT_TRUE(file.Append(Text(kNow + EventFile::kMostAhead)).ok());
  EXPECT_FALSE(file.IsFarAhead());
  EXPECT_EQ(file.NextSecond(), kNow + EventFile::kMostAhead + 1);
  clock.SetUtc(kNow - 1);
  EXPECT_TRUE(file.IsFarAhead());
  EXPECT_EQ(file.NextSecond(), kNow + EventFile::kMostAhead + 1) << "in that file never an earlier one";
  const auto aside = file.PutAside();
  ASSERT_TRUE(aside.ok());
  EXPECT_EQ(aside.value(), "/z/KorvessaMonitoring-1699999999.kvl") << "or it would be the newest for long";
  EXPECT_FALSE(file.IsFarAhead());
  EXPECT_EQ(file.NextSecond(), kNow - 1);
}

TEST_F(EventFileTest, FileBehindOneFarAheadStaysEmptyUntilEveryReaderHasSeenIt) {
  files.Put(kPath, "1700100000,h,1,M|0|0|d|r|c|0\r\n");
  auto file = Opened();
  ASSERT_TRUE(file.PutAside().ok());
  EXPECT_TRUE(files.Has(kPath));
  EXPECT_EQ(files.Get(kPath), "");
  clock.Advance(5000);
  EXPECT_FALSE(file.MayWrite()) << "the administrator's console looks every five seconds";
  clock.Advance(1000);
  EXPECT_TRUE(file.MayWrite());
  EXPECT_FALSE(file.WasReplaced());
  ASSERT_TRUE(file.Append(Text(file.NextSecond())).ok());
  EXPECT_FALSE(file.WasReplaced());
}

TEST_F(EventFileTest, NumberThatAKillCutIsNoSecond) {
  files.Put(kPath, "1700000500,h,1,M|0|0|d|r|c|0\r\n170000");
  EXPECT_EQ(Opened().LastSecondWritten(), kNow + 500);
}

TEST_F(EventFileTest, FileThatIsThereIsGoneOnWithAfterItsLastSecond) {
  files.Put(kPath, "1699999999,h,1,M|0|0|d|r|c|0\r\n1700000000,h,1,M|0|0|d|r|c|0\r\n");
  auto file = Opened();
  EXPECT_EQ(file.NextSecond(), kNow + 1);
}

TEST_F(EventFileTest, LastLineThatIsNoEventIsPassedOverInSearchOfTheSecond) {
  files.Put(kPath, "1700000000,h,1,M|0|0|d|r|c|0\r\nrubbish\r\n");
  EXPECT_EQ(Opened().NextSecond(), kNow + 1);
}

TEST_F(EventFileTest, LineThatAKilledRunLeftOpenIsEnded) {
  files.Put(kPath, "1600000000,h,1,M|0|0|d|r|c|0\r\n1600000001,h,1,M|0");
  auto file = Opened();
  ASSERT_TRUE(file.Append(Text(kNow, "x\r\n")).ok());
  ASSERT_TRUE(file.Append(Text(kNow + 1, "y\r\n")).ok());
  EXPECT_TRUE(files.Get(kPath).ends_with("M|0,\r\nx\r\ny\r\n"));
}

TEST_F(EventFileTest, PartThatAFullDiskTookIsEndedBeforeTheBatchIsToldAgain) {
  auto file = Opened();
  files.before = [&](platform::FileOp op, const std::string&) {
    if (op == platform::FileOp::kAppend) files.PutMore(kPath, "1700000000,h");
  };
  files.FailNext(platform::FileOp::kAppend, kPath, platform::ErrorKind::kNoSpace);
  EXPECT_FALSE(file.Append(Text(kNow, "1700000000,h,1\r\n")).ok());
  files.before = {};
  EXPECT_FALSE(file.WasReplaced());
  ASSERT_TRUE(file.Append(Text(kNow, "1700000000,h,1\r\n")).ok());
  EXPECT_EQ(files.Get(kPath), "1700000000,h,\r\n1700000000,h,1\r\n");
}

// The batch was told again with the seconds of the part, which a reader that had the part passed over.
TEST_F(EventFileTest, PartThatAFullDiskTookHasItsSeconds) {
  const std::string whole = "1700000000,h,1\r\n1700000001,h,1\r\n1700000002,h,1\r\n";
  for (const auto& [part, second] : std::map<std::string, std::int64_t>{
           {"17000", kNow}, {"1700000000,h", kNow + 1}, {whole.substr(0, 27), kNow + 2}, {whole, kNow + 3}}) {
    files.Vanish(kPath);
    EventFile fresh(files, clock, kPath, Form::kHome);
    files.before = [this, &taken = part](platform::FileOp op, const std::string&) {
      if (op == platform::FileOp::kAppend) files.PutMore(kPath, taken);
    };
    files.FailNext(platform::FileOp::kAppend, kPath, platform::ErrorKind::kNoSpace);
    EXPECT_FALSE(fresh.Append({whole, kNow + 2, 3}).ok());
    files.before = {};
    EXPECT_EQ(fresh.NextSecond(), second) << part;
  }
}

TEST_F(EventFileTest, PartsOfAFullDiskDoNotRunAwayFromTheClock) {
  auto file = Opened();
  EXPECT_EQ(file.NextSecond(), kNow);
  files.before = [&](platform::FileOp op, const std::string&) {
    if (op == platform::FileOp::kAppend) files.PutMore(kPath, "1700000020,h,1\r\n");
  };
  files.FailNext(platform::FileOp::kAppend, kPath, platform::ErrorKind::kNoSpace);
  EXPECT_FALSE(file.Append(Text(kNow + 20, "1700000020,h,1\r\n1700000020,h,1\r\n")).ok());
  clock.Advance(18000);
  EXPECT_FALSE(file.MayWrite());
  clock.Advance(1000);
  EXPECT_TRUE(file.MayWrite());
}

TEST_F(EventFileTest, RowsOfThePartsThatAFullDiskTookCount) {
  auto file = Opened();
  std::string part;
  for (std::size_t i = 0; i < EventFile::kMostRows; ++i) part += "1700000000,h\r\n";
  files.before = [&](platform::FileOp op, const std::string&) {
    if (op == platform::FileOp::kAppend) files.PutMore(kPath, part);
  };
  files.FailNext(platform::FileOp::kAppend, kPath, platform::ErrorKind::kNoSpace);
  EXPECT_FALSE(file.Append({part + part, kNow, 2 * EventFile::kMostRows}).ok());
  EXPECT_TRUE(file.IsFull());
}

TEST_F(EventFileTest, FileOfTheOtherFormIsRefused) {
  files.Put(kPath, "1600000000,h,M,A,d\r\n");
  EventFile home(files, clock, kPath, Form::kHome);
  EXPECT_FALSE(home.Open().ok());
  EXPECT_TRUE(Opened(Form::kAdmin).Append(Text(kNow)).ok());
}

// A kill within the first line of a file made the file one that no Agent would go on with.
TEST_F(EventFileTest, FirstLineThatWasCutHasNoForm) {
  for (const char* cut :
       {"1", "1600000000,vm,42,Sys", "1600000000,vm,42,System,\r\n", "1600000000,vm,System,"}) {
    files.Put(kPath, cut);
    Opened(Form::kAdmin);
    Opened(Form::kHome);
  }
  files.Put(kPath, "1600000000,vm,\r\n1600000001,vm,1,M|0|0|d|r|c|0\r\n");
  Opened(Form::kHome);
  EventFile admin(files, clock, kPath, Form::kAdmin);
  EXPECT_FALSE(admin.Open().ok());
}

TEST_F(EventFileTest, EmptyFileHasNoForm) {
  files.Put(kPath, "");
  Opened(Form::kAdmin);
  Opened(Form::kHome);
}

TEST_F(EventFileTest, WriteThatFailsTakesNothingForWritten) {
  auto file = Opened();
  files.FailNext(platform::FileOp::kAppend, kPath, platform::ErrorKind::kNoSpace);
  EXPECT_FALSE(file.Append(Text(kNow)).ok());
  EXPECT_EQ(file.NextSecond(), kNow);
  EXPECT_FALSE(file.WasReplaced());
}

TEST_F(EventFileTest, FileThatIsGoneOrShorterWasReplaced) {
  auto file = Opened();
  EXPECT_FALSE(file.WasReplaced());
  ASSERT_TRUE(file.Append(Text(kNow)).ok());
  EXPECT_FALSE(file.WasReplaced());
  files.Put(kPath, "x");
  EXPECT_TRUE(file.WasReplaced());
  files.Vanish(kPath);
  EXPECT_TRUE(file.WasReplaced());
  file.Forget();
  EXPECT_FALSE(file.WasReplaced());
}

// A file of the same size or a larger one in its place was taken for the own one, and its beginning lost.
TEST_F(EventFileTest, AnotherFileOfTheSameNameIsNotTakenForTheOwnOne) {
  auto file = Opened();
  ASSERT_TRUE(file.Append(Text(kNow)).ok());
  const std::string bytes = files.Get(kPath);
  files.Vanish(kPath);
  files.Put(kPath, bytes + bytes);
  EXPECT_TRUE(file.WasReplaced());
}

TEST_F(EventFileTest, FileThatWasTakenUpIsKnownAgain) {
  files.Put(kPath, "1600000000,h,1,M|0|0|d|r|c|0\r\n");
  auto file = Opened();
  files.PutMore(kPath, "1600000001,h,1,M|0|0|d|r|c|0\r\n");
  EXPECT_FALSE(file.WasReplaced());
  files.Vanish(kPath);
  files.Put(kPath, std::string(500, 'x'));
  EXPECT_TRUE(file.WasReplaced());
}

TEST_F(EventFileTest, RowNumbersBeyondFifteenBitsFindNoRoom) {
  auto file = Opened();
  EXPECT_TRUE(file.HasRoomFor(100000)) << "an empty file takes what there is";
  ASSERT_TRUE(file.Append(Text(kNow, "x\r\n", 29000)).ok());
  EXPECT_FALSE(file.IsFull());
  EXPECT_TRUE(file.HasRoomFor(3000));
  EXPECT_FALSE(file.HasRoomFor(3001));
}

TEST_F(EventFileTest, RowsOfPartsCountTowardsTheLimit) {
  std::string line = "1600000000,h,1,M|0|0|p";
  for (std::size_t i = 1; i < EventFile::kMostRows; ++i) line += " * p";
  files.Put(kPath, line + "|r|c|0\r\n");
  EXPECT_TRUE(Opened().IsFull());
}

TEST_F(EventFileTest, FullFileIsPutAsideUnderANameOfItsOwn) {
  files.Put("/z/KorvessaMonitoring-1700000000.kvl", "older");
  auto file = Opened();
  ASSERT_TRUE(file.Append(Text(kNow, "x\r\n", EventFile::kMostRows)).ok());
  EXPECT_TRUE(file.IsFull());
  const auto aside = file.PutAside();
  ASSERT_TRUE(aside.ok());
  EXPECT_EQ(aside.value(), "/z/KorvessaMonitoring-1700000001.kvl");
  EXPECT_EQ(files.Get(aside.value()), "x\r\n");
  EXPECT_FALSE(files.Has(kPath));
  EXPECT_FALSE(file.IsFull());
  EXPECT_EQ(file.NextSecond(), kNow + 1) << "a reader that still has the old file must take the new lines";
}

TEST_F(EventFileTest, OfTheFilesPutAsideTheNewestAreKept) {
  for (int i = 100; i < 152; ++i) files.Put("/z/KorvessaMonitoring-" + std::to_string(i) + ".kvl", "x");
  files.Put("/z/KorvessaMonitoring-1a.kvl", "somebody's");
  files.Put("/z/KorvessaMonitoring-007.kvl", "somebody's");
  files.Put("/z/KorvessaMonitoring.kvl", "now");
  auto file = Opened();
  EXPECT_EQ(file.DropOldest(), 2U);
  EXPECT_FALSE(files.Exists("/z/KorvessaMonitoring-101.kvl"));
  EXPECT_TRUE(files.Exists("/z/KorvessaMonitoring-102.kvl"));
  EXPECT_TRUE(files.Exists("/z/KorvessaMonitoring-1a.kvl"));
  EXPECT_TRUE(files.Exists("/z/KorvessaMonitoring-007.kvl"));
  EXPECT_TRUE(files.Exists("/z/KorvessaMonitoring.kvl"));
  EXPECT_EQ(file.DropOldest(), 0U);
}

}  // namespace
}  // namespace zendrix::agent
