#include "admin/grid_loader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "core/run_time_error.h"
#include "platform/memory/memory_family.h"
#include "platform/memory/memory_files.h"

namespace zendrix::admin {
namespace {

using platform::FileOp;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kPath[] = "/folder/file.kvl";

std::string Line(int number) {
  return std::to_string(1000 + number) + ",HOST,system,A,text " + std::to_string(number) + "\r\n";
}

// A grid that is loaded from one file.
struct Grid {
  explicit Grid(platform::MemoryFiles& of, RowCapacity capacity = {})
      : files(of), rows(family, {}, capacity) {
    ForgetPlace();
  }
  void ForgetPlace() {
    loader = std::make_unique<GridLoader>(files, LoadTargets{rows, view, monitors, hosts, changes});
  }

  GridLoad NewLoad() {
    GridLoad load;
    load.path = path;
    load.is_displayed = [this](const std::string& monitor) { return asked(monitor); };
    load.serve = [this] { ++served; };
    return load;
  }
  void All() {
    GridLoad load = NewLoad();
    loader->ReadAll(load);
    lines = load.lines;
    unknown = load.unknown_monitors;
  }
  void Added() {
    GridLoad load = NewLoad();
    load.lines = lines;
    loader->ReadAdded(load);
    lines = load.lines;
    unknown = load.unknown_monitors;
  }
  std::vector<std::string> Cells(int col) const {
    std::vector<std::string> texts;
    for (int row = 1; row < view.Rows(); ++row) texts.push_back(view.Text(row, col));
    return texts;
  }
  std::vector<std::string> Wholes() const { return Cells(kColWhole); }

  platform::MemoryFiles& files;
  std::string path = kPath;
  platform::MemoryFamily family;
  EventRows rows;
  EventGrid view{"view", rows};
  store::CUList monitors, hosts, changes;
  std::unique_ptr<GridLoader> loader;
  std::function<std::optional<bool>(const std::string&)> asked = [](const std::string&) { return true; };
  std::int32_t lines = 0;
  int served = 0;
  std::vector<std::string> unknown;
};

class GridLoaderTest : public ::testing::Test {
 protected:
  GridLoaderTest() {
    files_.before = [this](FileOp op, const std::string&) { reads_ += op == FileOp::kRead ? 1 : 0; };
  }
  void Put(const std::string& bytes) { files_.Put(kPath, bytes); }
  void More(const std::string& bytes) { files_.PutMore(kPath, bytes); }
  // A file put in the place of the other.
  void PutAnother(const std::string& bytes) {
    files_.Vanish(kPath);
    Put(bytes);
  }
  int ReadsOf(const std::function<void()>& act) {
    reads_ = 0;
    act();
    return reads_;
  }
  static std::string Lines(int from, int to) {
    std::string bytes;
    for (int i = from; i < to; ++i) bytes += Line(i);
    return bytes;
  }

  platform::MemoryFiles files_;
  int reads_ = 0;
  Grid grid_{files_};
};

TEST_F(GridLoaderTest, WholeFileNewestOnTop) {
  Put(Lines(0, 3));
  grid_.All();
  EXPECT_THAT(grid_.Wholes(), ElementsAre("text 2", "text 1", "text 0"));
  EXPECT_THAT(grid_.Cells(kColEventID), ElementsAre("3", "2", "1"));
  EXPECT_EQ(grid_.lines, 3);
}

TEST_F(GridLoaderTest, BytesCountTwoForEachLinesEnd) {
  Put("1,h,m,A,x\n2,h,m,A,yy\r\n\nno row");
  GridLoad load = grid_.NewLoad();
  grid_.loader->ReadAll(load);
  EXPECT_EQ(load.bytes, 9 + 2 + 10 + 2 + 0 + 2 + 6 + 2);
  EXPECT_EQ(load.lines, 4);
}

TEST_F(GridLoaderTest, PollReadsNothingButWhatIsNew) {
  Put(Lines(0, 40'000));  // about ten blocks
  EXPECT_GT(ReadsOf([&] { grid_.All(); }), 8);
  More(Line(40'000) + Line(40'001));
  EXPECT_LE(ReadsOf([&] { grid_.Added(); }), 5);
  EXPECT_EQ(grid_.view.DataRows(), 40'002);
  EXPECT_EQ(grid_.view.Text(1, kColWhole), "text 40001");
  EXPECT_EQ(grid_.view.Text(1, kColEventID), "40002");
  More(Line(40'002));
  EXPECT_LE(ReadsOf([&] { grid_.Added(); }), 5);
  EXPECT_EQ(grid_.view.Text(1, kColWhole), "text 40002");
}

TEST_F(GridLoaderTest, AnotherFileOfTheSameNameIsPassedOverFromTheStart) {
  Put(Lines(0, 3));
  grid_.All();
  PutAnother("x\ny\nz\n" + Line(7) + Lines(0, 3));
  grid_.Added();
  EXPECT_THAT(grid_.Wholes(),
              ElementsAre("text 2", "text 1", "text 0", "text 7", "text 2", "text 1", "text 0"));
}

TEST_F(GridLoaderTest, FileRewrittenInItsPlaceIsPassedOverFromTheStart) {
  Put(Lines(0, 3));
  grid_.All();
  Put("x\ny\nz\n" + Line(7) + Lines(20, 23));
  grid_.Added();
  EXPECT_EQ(grid_.lines, 7);
  EXPECT_EQ(grid_.view.DataRows(), 7);
  EXPECT_EQ(grid_.view.Text(4, kColWhole), "text 7");
}

TEST_F(GridLoaderTest, OneByteThatDiffersInFrontOfThePlaceIsSeen) {
  Put(Lines(0, 3));
  grid_.All();
  std::string other = Lines(0, 3);
  other[other.size() - 4] = '\n';  // one line more
  Put(other + Line(3));
  grid_.Added();
  EXPECT_THAT(grid_.Wholes(), ElementsAre("text 3", "text 2", "text 1", "text 0"));
  EXPECT_EQ(grid_.lines, 5);
}

TEST_F(GridLoaderTest, AnotherPathHasAPlaceOfItsOwn) {
  Put(Lines(0, 3));
  files_.Put("/other", Lines(10, 15));
  grid_.All();
  grid_.path = "/other";
  grid_.Added();
  EXPECT_THAT(grid_.Wholes(), ElementsAre("text 14", "text 13", "text 2", "text 1", "text 0"));
}

TEST_F(GridLoaderTest, FileWithFewerLinesGivesNothing) {
  Put(Lines(0, 3));
  grid_.All();
  PutAnother(std::string(1000, 'x') + "\n" + Line(9));
  grid_.Added();
  EXPECT_EQ(grid_.lines, 3);
  EXPECT_THAT(grid_.Wholes(), SizeIs(3));
}

TEST_F(GridLoaderTest, RestOfALineThatWasReadHalfWrittenIsNoLine) {
  Put(Line(0) + "1001,HOST,system,A,half");
  grid_.All();
  EXPECT_THAT(grid_.Wholes(), ElementsAre("half", "text 0"));
  More(" and half,1,2,3,4,5");
  grid_.Added();
  EXPECT_EQ(grid_.lines, 2);
  More("\r");
  grid_.Added();
  More("\n" + Line(2));
  grid_.Added();
  EXPECT_THAT(grid_.Wholes(), ElementsAre("text 2", "half", "text 0"));
  EXPECT_THAT(grid_.Cells(kColEventID), ElementsAre("3", "2", "1"));
}

// However the file grows, a poll that goes on from its place does what one from the start does.
TEST_F(GridLoaderTest, PollsFromThePlaceGiveTheRowsOfPollsFromTheStart) {
  std::mt19937 random(17);
  for (int round = 0; round < 60; ++round) {
    Grid followed(files_), passed(files_);
    PutAnother("");
    followed.All();
    passed.All();
    int number = 0;
    for (int poll = 0; poll < 25; ++poll) {
      std::string more;
      for (std::size_t i = random() % 5; i > 0; --i) more += Line(number++);
      if (random() % 3 == 0) more += "\n\r\n,,\n";
      more.resize(random() % (more.size() + 1));
      if (random() % 20 == 0) more.append(5000, 'x');
      More(more);
      if (random() % 2 == 0) followed.Added();
      passed.ForgetPlace();
      if (followed.lines != passed.lines || random() % 2 == 0) passed.Added();
      if (followed.lines != passed.lines) followed.Added();
      ASSERT_EQ(followed.lines, passed.lines);
      ASSERT_EQ(followed.Wholes(), passed.Wholes());
    }
  }
}

TEST_F(GridLoaderTest, ReadThatFailsIsToldAndTheNextPollReadsTheSameLines) {
  Put(Lines(0, 3));
  grid_.All();
  More(Line(3));
  for (const std::int64_t at : {0, 1}) {
    files_.FailReadAfter(kPath, at, platform::ErrorKind::kOther, platform::MemoryFiles::kAlways);
    EXPECT_THROW(grid_.Added(), core::RunTimeError);
    EXPECT_THAT(grid_.Wholes(), SizeIs(3));
    files_.ClearFaults();
  }
  grid_.Added();
  EXPECT_THAT(grid_.Wholes(), ElementsAre("text 3", "text 2", "text 1", "text 0"));
}

TEST_F(GridLoaderTest, FullRowsAreToldAndTheNextPollReadsTheSameLines) {
  Grid small(files_, {4});
  Put(Lines(0, 3));
  small.All();
  More(Lines(3, 6));
  for (int poll = 0; poll < 2; ++poll) {
    try {
      small.Added();
      FAIL();
    } catch (const core::RunTimeError& error) {
      EXPECT_EQ(error.number, core::kOutOfMemory);
    }
    EXPECT_THAT(small.Wholes(), ElementsAre("text 3", "text 2", "text 1", "text 0"));
    EXPECT_EQ(small.lines, 3);
  }
}

TEST_F(GridLoaderTest, LinesOfAnotherFileCountAsKnownUntilItHasMore) {
  Put(Lines(0, 4));
  grid_.All();
  PutAnother(Lines(10, 12));
  grid_.Added();
  More(Lines(12, 14));
  grid_.Added();
  EXPECT_THAT(grid_.Wholes(), ElementsAre("text 3", "text 2", "text 1", "text 0"));
  More(Line(14));
  grid_.Added();
  EXPECT_EQ(grid_.view.Text(1, kColWhole), "text 14");
  EXPECT_EQ(grid_.lines, 5);
}

// The file was rewritten: up to the place of before it has one line less, and the same long line in front.
TEST_F(GridLoaderTest, PlaceIsForgottenByALoadThatFails) {
  const std::string long_line = std::string(5000, 'x') + "\n";
  Put("a\nb\n" + long_line);
  grid_.All();
  ASSERT_EQ(grid_.lines, 3);
  Put("abc\n" + long_line + Line(7) + Line(8));
  GridLoad load = grid_.NewLoad();
  load.behind_line = [&] {
    if (load.lines == 3) throw std::bad_alloc();
  };
  EXPECT_THROW(grid_.loader->ReadAll(load), std::bad_alloc);
  grid_.lines = load.lines;
  grid_.Added();
  EXPECT_THAT(grid_.Wholes(), ElementsAre("text 8", "text 7"));
}

TEST_F(GridLoaderTest, FullRowsOfAWholeLoadTellHowFarItCame) {
  Grid small(files_, {2});
  Put(Lines(0, 6));
  GridLoad load = small.NewLoad();
  EXPECT_THROW(small.loader->ReadAll(load), core::RunTimeError);
  EXPECT_EQ(load.lines, 3);
}

TEST_F(GridLoaderTest, FileThatIsCutWhileItIsReadEndsTheLoadWhereItEnds) {
  Put(Lines(0, 40'000));
  int reads = 0;
  files_.before = [&](FileOp op, const std::string&) {
    if (op == FileOp::kRead && ++reads == 3) files_.Put(kPath, Lines(0, 10));
  };
  grid_.All();
  EXPECT_LT(grid_.lines, 20'000);
  EXPECT_EQ(grid_.view.DataRows(), static_cast<int>(grid_.rows.size()));
}

TEST_F(GridLoaderTest, MonitorsThatTheSettingsDoNotKnowAreToldOnceEachAndShown) {
  std::vector<std::string> asked;
  grid_.asked = [&](const std::string& monitor) -> std::optional<bool> {
    asked.push_back(monitor);
    if (monitor == "Hidden") return false;
    if (monitor == "Known") return true;
    return std::nullopt;
  };
  Put("1,h,known,A,a\n2,h,new one,A,b\n3,h2,NEW ONE,R,c\n4,h,hidden,A,d\n5,h,HIDDEN,R,e\n6,h,other,A,f\n");
  grid_.All();
  EXPECT_THAT(grid_.unknown, ElementsAre("New One", "Other"));
  EXPECT_THAT(asked, ElementsAre("Known", "New One", "Hidden", "Other"));
  EXPECT_THAT(grid_.Wholes(), ElementsAre("f", "c", "b", "a"));
  EXPECT_EQ(grid_.rows.description_count(), 6u) << "those of hidden monitors too";
  EXPECT_EQ(grid_.hosts.ColList().size(), 2u);
  EXPECT_EQ(grid_.monitors.ColList().size(), 4u);
  EXPECT_EQ(grid_.changes.ColList().size(), 2u);
}

TEST_F(GridLoaderTest, HiddenMonitorsTimeIsNoKeyForTheLinesBehind) {
  grid_.asked = [](const std::string& monitor) { return monitor != "Hidden"; };
  Put("5,h,shown,A,a\n7,h,hidden,A,b\nsoon,h,shown,A,c\n");
  grid_.All();
  EXPECT_THAT(grid_.Cells(kColTimeKey), ElementsAre("5", "5"));
  EXPECT_EQ(grid_.view.Text(1, kColDateTime), "soon");
}

TEST_F(GridLoaderTest, TimesAreNumbersByTheRulesOfTheLocale) {
  Put("007,h,m,A,a\n 12 ,h,m,A,b\n1.5,h,m,A,c\n2.5,h,m,A,d\n-3,h,m,A,e\n1e2,h,m,A,f\n,h,m,A,g\n"
      "2147483647,h,m,A,h\n2147483648,h,m,A,i\n99999999999,h,m,A,j\n");
  grid_.All();
  EXPECT_THAT(grid_.Cells(kColTimeKey),
              ElementsAre("2147483647", "2147483647", "2147483647", "100", "100", "-3", "2", "2", "12", "7"));
  EXPECT_EQ(grid_.view.Text(1, kColDateTime), "99999999999");
  EXPECT_EQ(grid_.view.Text(4, kColDateTime), "");
}

TEST_F(GridLoaderTest, MessagesAreServedBehindEveryFiftiethLineOfTheFile) {
  Put(Lines(0, 120));
  grid_.All();
  EXPECT_EQ(grid_.served, 2);
  More(Lines(120, 160));
  grid_.Added();
  EXPECT_EQ(grid_.served, 3);
}

TEST_F(GridLoaderTest, AddedLinesAreAnnouncedBeforeTheyAreReadAndTold) {
  Put(Lines(0, 2));
  grid_.All();
  More(Line(2) + "no row\n");
  GridLoad load = grid_.NewLoad();
  load.lines = grid_.lines;
  std::vector<std::string> told;
  const auto tell = [&](const std::string& what) {
    told.push_back(what + " " + std::to_string(load.lines) + " " + std::to_string(grid_.view.DataRows()));
  };
  load.before_line = [&] { tell("before"); };
  load.behind_line = [&] { tell("behind"); };
  grid_.loader->ReadAdded(load);
  EXPECT_THAT(told, ElementsAre("before 2 2", "behind 3 3", "before 3 3", "behind 4 3"));
}

TEST_F(GridLoaderTest, EmptyFileThatGrowsIsReadFromItsStart) {
  Put("");
  grid_.All();
  EXPECT_EQ(grid_.lines, 0);
  EXPECT_THAT(grid_.Wholes(), IsEmpty());
  More(Line(0));
  grid_.Added();
  EXPECT_THAT(grid_.Wholes(), ElementsAre("text 0"));
}

}  // namespace
}  // namespace zendrix::admin
