#include "agent/score/baseline.h"

#include <sys/stat.h>

#include <fstream>

#include "support/temporary_folder.h"

namespace zendrix::agent {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kNow = 1700006400;  // a midnight

class BaselineTest : public testing::Test {
 protected:
  std::string Path() { return folder_.path() + "/memory.db"; }
  std::string Bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  test::TemporaryFolder folder_;
};

TEST_F(BaselineTest, WhatWasNeverSeenIsUnknown) {
  Keeper keeper("", kNow);
  Baseline baseline(keeper, kNow);
  EXPECT_FALSE(baseline.DaysBefore(Known::kPath, "/usr/bin/x"));
  EXPECT_FALSE(baseline.See(Known::kPath, "/usr/bin/x"));
  EXPECT_EQ(baseline.DaysBefore(Known::kPath, "/usr/bin/x"), 0);
  EXPECT_EQ(baseline.See(Known::kPath, "/usr/bin/x"), 0) << "seen today alone";
  EXPECT_FALSE(baseline.DaysBefore(Known::kAccount, "/usr/bin/x")) << "another kind";
}

TEST_F(BaselineTest, DaysAreThoseBeforeTodayOnWhichItWasSeen) {
  Keeper keeper("", kNow);
  Baseline baseline(keeper, kNow);
  for (int day : {0, 0, 1, 5}) {
    baseline.Tick(kNow + day * kDay + 7);
    const auto before = baseline.DaysBefore(Known::kPath, "x");
    EXPECT_EQ(baseline.See(Known::kPath, "x"), before) << day;
  }
  EXPECT_EQ(baseline.DaysBefore(Known::kPath, "x"), 2);
  baseline.Tick(kNow + 6 * kDay);
  EXPECT_EQ(baseline.DaysBefore(Known::kPath, "x"), 3);
}

TEST_F(BaselineTest, LearnsForSevenDaysOnWhichItRan) {
  Keeper keeper("", kNow);
  Baseline baseline(keeper, kNow);
  for (int day = 0; day < 7; ++day) {
    baseline.Tick(kNow + 3 * day * kDay);
    EXPECT_TRUE(baseline.learning());
    EXPECT_EQ(baseline.days_watched(), day + 1);
  }
  baseline.Tick(kNow + 30 * kDay);
  EXPECT_FALSE(baseline.learning());
}

TEST_F(BaselineTest, ClockThatIsPutBackAndForthMakesOneDayAtATime) {
  Keeper keeper("", kNow);
  Baseline baseline(keeper, kNow);
  baseline.See(Known::kPath, "x");
  baseline.Tick(kNow + 4000 * kDay);
  EXPECT_EQ(baseline.days_watched(), 2);
  EXPECT_EQ(baseline.DaysBefore(Known::kPath, "x"), 1) << "nothing is forgotten for a wrong clock";
  baseline.Tick(kNow);
  EXPECT_EQ(baseline.days_watched(), 2);
  baseline.See(Known::kPath, "x");
  EXPECT_EQ(baseline.DaysBefore(Known::kPath, "x"), 0);
}

TEST_F(BaselineTest, NextRunKnowsWhatThisOneSaw) {
  {
    Keeper keeper(Path(), kNow);
    Baseline baseline(keeper, kNow);
    baseline.See(Known::kPath, std::string("/usr/bin/\xFF\n'x", 14), {"pack", true});
    baseline.Save(kNow);
    baseline.Tick(kNow + kDay);
    baseline.See(Known::kPath, std::string("/usr/bin/\xFF\n'x", 14));
    baseline.See(Known::kAccount, "ann");
    baseline.Save(kNow + kDay);
  }
  Keeper keeper(Path(), kNow + 2 * kDay);
  Baseline baseline(keeper, kNow + 2 * kDay);
  EXPECT_EQ(baseline.DaysBefore(Known::kPath, std::string("/usr/bin/\xFF\n'x", 14)), 2);
  EXPECT_EQ(baseline.DaysBefore(Known::kAccount, "ann"), 1);
  EXPECT_EQ(baseline.days_watched(), 3);
  Statement row =
      keeper.database().Prepare("SELECT package, unchanged, first_seen FROM known WHERE kind = 1");
  ASSERT_EQ(row.Step(), Statement::Outcome::kRow);
  EXPECT_EQ(row.Text(0), "pack");
  EXPECT_EQ(row.Number(1), 1);
  EXPECT_EQ(row.Number(2), kNow);
  EXPECT_THAT(keeper.TakeMessages(), IsEmpty());
}

TEST_F(BaselineTest, WritesOnceASecondAtMost) {
  Keeper keeper(Path(), kNow);
  Baseline baseline(keeper, kNow);
  baseline.See(Known::kPath, "x");
  baseline.Save(kNow);
  const std::string before = Bytes(Path());
  baseline.See(Known::kPath, "y");
  baseline.Save(kNow);
  EXPECT_EQ(Bytes(Path()), before);
  baseline.Save(kNow + 1);
  EXPECT_NE(Bytes(Path()), before);
}

TEST_F(BaselineTest, FloodOfNamesStaysBoundedAndPushesOutNothingUsual) {
  Keeper keeper("", kNow);
  Baseline baseline(keeper, kNow);
  baseline.See(Known::kPath, "usual");
  baseline.Tick(kNow + kDay);
  baseline.See(Known::kPath, "usual");
  for (std::size_t i = 0; i < Baseline::kMostEntries + 20000; ++i)
    baseline.See(Known::kPath, "/tmp/" + std::to_string(i));
  EXPECT_LE(baseline.size(), Baseline::kMostEntries);
  EXPECT_EQ(baseline.DaysBefore(Known::kPath, "usual"), 1);
}

TEST_F(BaselineTest, WhatWasNotSeenForHalfAYearIsForgotten) {
  Keeper keeper("", kNow);
  Baseline baseline(keeper, kNow);
  baseline.See(Known::kPath, "old");
  for (int day = 1; day <= 200; ++day) {
    baseline.Tick(kNow + day * kDay);
    baseline.See(Known::kPath, "used");
  }
  EXPECT_FALSE(baseline.DaysBefore(Known::kPath, "old"));
  EXPECT_EQ(baseline.DaysBefore(Known::kPath, "used"), 199);
}

TEST_F(BaselineTest, DamagedFileIsSetAsideAndToldAndANewOneBegins) {
  std::ofstream(Path()) << std::string(20000, 'x');
  Keeper keeper(Path(), kNow);
  Baseline baseline(keeper, kNow);
  EXPECT_THAT(keeper.TakeMessages(), ::testing::ElementsAre(HasSubstr("was damaged")));
  EXPECT_EQ(Bytes(Path() + ".damaged-" + std::to_string(kNow)), std::string(20000, 'x'));
  baseline.See(Known::kPath, "x");
  baseline.Save(kNow);
  EXPECT_THAT(keeper.TakeMessages(), IsEmpty());
  EXPECT_EQ(Bytes(Path()).substr(0, 15), "SQLite format 3");
}

TEST_F(BaselineTest, FileThatIsDamagedMeanwhileIsBegunAnewWithAllThatIsKnown) {
  Keeper keeper(Path(), kNow);
  Baseline baseline(keeper, kNow);
  for (int i = 0; i < 500; ++i) baseline.See(Known::kPath, "x" + std::to_string(i));
  baseline.Save(kNow);
  {
    std::fstream file(Path(), std::ios::in | std::ios::out | std::ios::binary);
    file << std::string(40000, 'y');
  }
  baseline.See(Known::kPath, "y");
  baseline.Save(kNow + 1);
  baseline.Save(kNow + 2);
  EXPECT_THAT(keeper.TakeMessages(), SizeIs(1));
  Keeper again(Path(), kNow);
  Baseline read(again, kNow);
  EXPECT_EQ(read.size(), 501U);
  EXPECT_THAT(again.TakeMessages(), IsEmpty());
}

TEST_F(BaselineTest, LinkOrPipeInPlaceOfTheFileIsRefusedAndTold) {
  const std::string target = folder_.path() + "/target";
  std::ofstream(target) << "mine";
  ASSERT_EQ(::symlink(target.c_str(), Path().c_str()), 0);
  Keeper linked(Path(), kNow);
  EXPECT_THAT(linked.TakeMessages(), ::testing::ElementsAre(HasSubstr("no plain file")));
  EXPECT_EQ(Bytes(target), "mine");
  ::unlink(Path().c_str());
  ASSERT_EQ(::mkfifo(Path().c_str(), 0600), 0);
  Keeper piped(Path(), kNow);
  EXPECT_THAT(piped.TakeMessages(), ::testing::ElementsAre(HasSubstr("no plain file")));
  Baseline baseline(piped, kNow);
  baseline.See(Known::kPath, "x");
  baseline.Save(kNow);
  EXPECT_EQ(baseline.DaysBefore(Known::kPath, "x"), 0) << "the run goes on without a file";
}

// The page limit of the library stands for a full disk: it refuses with the same number.
TEST_F(BaselineTest, FullDiskLosesNothingThatWasKeptAndIsToldOnce) {
  Keeper keeper(Path(), kNow);
  Baseline baseline(keeper, kNow);
  baseline.See(Known::kPath, "kept");
  baseline.Save(kNow);
  ASSERT_TRUE(keeper.database().Execute("PRAGMA max_page_count = 1").ok());
  for (int i = 0; i < 3000; ++i) baseline.See(Known::kPath, "later" + std::to_string(i));
  baseline.Save(kNow + 1);
  baseline.Save(kNow + 2);
  EXPECT_THAT(keeper.TakeMessages(), ::testing::ElementsAre(HasSubstr("full")));
  {
    Keeper other(Path(), kNow);
    EXPECT_EQ(Baseline(other, kNow).size(), 1U) << "all of a transaction or nothing";
  }
  ASSERT_TRUE(keeper.database().Execute("PRAGMA max_page_count = 100000").ok());
  baseline.Save(kNow + 3);
  EXPECT_THAT(keeper.TakeMessages(), ::testing::ElementsAre(HasSubstr("again")));
  Keeper other(Path(), kNow);
  EXPECT_EQ(Baseline(other, kNow).size(), 3001U);
}

}  // namespace
}  // namespace zendrix::agent
