// Files that no Agent writes, and files that change under the reading: nothing crashes or hangs, what is held
// stays within the file's own size, and the next poll goes on.
#include <algorithm>
#include <functional>
#include <utility>

#include "frm_main_fixture.h"
#include "support/held_bytes.h"

namespace zendrix::admin {
namespace {

using platform::ErrorKind;
using platform::FileOp;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr std::size_t kMegabyte = 1'000'000;

class HostileFileTest : public FrmMainFixture {
 protected:
  frmMain& OpenOnBytes(const std::string& bytes) {
    world_.platform.files.Put(Path(), bytes);
    return Open();
  }
  void Append(const std::string& bytes) { world_.platform.files.PutMore(Path(), bytes); }
  // Another file of the same name, as a program leaves it that renames.
  void Replace(const std::string& bytes) { ASSERT_TRUE(world_.platform.files.WriteAll(Path(), bytes).ok()); }
  // So many lines, the last of which is the newest; 20,000 of them are read in several blocks.
  static std::string Lines(int from, int to) {
    std::string bytes;
    for (int i = from; i < to; ++i) bytes += Line(i, "system", "text " + std::to_string(i)) + "\r\n";
    return bytes;
  }
  // Acts once, in the middle of the load that `load` makes, where messages are served.
  void InTheMiddleOf(const std::function<void()>& load, const std::function<void()>& act) {
    bool waits = true;
    const auto link = form_->DynamicPictureBox.value.changed.Connect([&] {
      if (form_->DynamicPictureBox.value > 0 && std::exchange(waits, false)) act();
    });
    load();
    EXPECT_FALSE(waits) << "the load served no messages";
  }
  void Refresh() { form_->MnVRefresh.clicked.Raise(); }
  int Rows() const { return form_->EventList.DataRows(); }
  std::string Newest() const { return form_->EventList.Text(1, kColWhole); }
  // Bytes that go with the form. It is closed.
  std::size_t HeldByTheForm() {
    const std::size_t before = test::HeldBytes();
    form_.reset();
    return before - test::HeldBytes();
  }
  void ExpectUsable() {
    EXPECT_TRUE(form_->EventList.enabled);
    EXPECT_TRUE(form_->EventList.redraw());
    EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
    EXPECT_EQ(form_->DynamicPictureBox.value.Get(), 0);
    EXPECT_FALSE(form_->LoadRuns());
  }
  void ExpectThatTheNextPollWorks() {
    const int before = Rows();
    AppendLine(Line(7, "tcp port", "came later"));
    Tick();
    EXPECT_EQ(Rows(), before + 1);
    EXPECT_EQ(Newest(), "came later");
    ExpectUsable();
  }
};

class EnormousFieldTest : public HostileFileTest, public ::testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(AnyOfTheFive, EnormousFieldTest, ::testing::Range(0, 5));

TEST_P(EnormousFieldTest, LineOfTenMegabytesIsARowLikeAnyOther) {
  const std::size_t size = 10 * kMegabyte;
  std::vector<std::string> fields = {"5", "HOST", "system", "A", "text"};
  fields[static_cast<std::size_t>(GetParam())] = std::string(size, 'x');
  std::string line = fields[0];
  for (std::size_t i = 1; i < fields.size(); ++i) line += "," + fields[i];
  OpenOn({Line(1, "system"), line, Line(3, "system")});
  EXPECT_THAT(IDs(), ElementsAre("3", "2", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "3 records");
  const int shown_in[] = {kColDateTime, kColHostname, kColMonitor, kColCode, kColWhole};
  EXPECT_GE(form_->EventList.Text(2, shown_in[GetParam()]).size(), size);
  ExpectThatTheNextPollWorks();
  EXPECT_LT(HeldByTheForm(), 8 * size);
  EXPECT_LT(world_.platform.files.Get(reg_ini_.IniPath()).size(), 10'000u);
}

TEST_F(HostileFileTest, MillionCommasAreOneRowOfEmptyFields) {
  OpenOnBytes(std::string(kMegabyte, ',') + "\r\n" + Line(2, "system") + "\r\n");
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  for (const int col : {kColDateTime, kColHostname, kColCode, kColWhole, kColDescription})
    EXPECT_EQ(form_->EventList.Text(2, col), "");
  EXPECT_EQ(form_->EventList.Text(2, kColMonitor), "     ");
  EXPECT_EQ(form_->EventList.Text(2, kColTimeKey), "0");
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, MillionLinesOfOneCommaGiveNoRowAndCount) {
  std::string bytes;
  for (std::size_t i = 0; i < kMegabyte; ++i) bytes += ",\n";
  OpenOnBytes(bytes);
  EXPECT_EQ(form_->RecCnt.text.Get(), "1000000 records");
  EXPECT_EQ(Rows(), 0);
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, FileWithoutALineEndIsOneLineHoweverItGrows) {
  for (const std::size_t size : {kMegabyte, 10 * kMegabyte}) {
    OpenOnBytes(std::string(size, 'x'));
    EXPECT_EQ(form_->RecCnt.text.Get(), "1 record");
    for (int poll = 0; poll < 3; ++poll) {
      Append(std::string(size, ','));
      Tick();
      EXPECT_EQ(form_->RecCnt.text.Get(), "1 record");
      EXPECT_EQ(Rows(), 0);
    }
    Append("\r\n");
    Tick();
    EXPECT_EQ(form_->RecCnt.text.Get(), "1 record");
    ExpectThatTheNextPollWorks();
    EXPECT_EQ(form_->RecCnt.text.Get(), "2 records");
    EXPECT_LT(HeldByTheForm(), kMegabyte);
  }
}

TEST_F(HostileFileTest, ControlCharactersInEveryFieldAreBlanks) {
  std::string controls;
  for (char c = 0; c < ' '; ++c)
    if (c != '\n') controls += c;
  const std::string field = "a" + controls + "b", shown = "a" + std::string(controls.size(), ' ') + "b";
  OpenOnBytes(controls + field + "," + field + "," + field + "," + field + "," + field + controls + "\r\n");
  ASSERT_THAT(IDs(), ElementsAre("1"));
  EXPECT_EQ(form_->EventList.Text(1, kColDateTime), shown);
  EXPECT_EQ(form_->EventList.Text(1, kColHostname), shown);
  EXPECT_EQ(form_->EventList.Text(1, kColMonitor), "     A" + std::string(controls.size(), ' ') + "B");
  EXPECT_EQ(form_->EventList.Text(1, kColCode), shown);
  EXPECT_EQ(form_->EventList.Text(1, kColWhole), shown);
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, MegabyteOfEachControlCharacterGivesNoRow) {
  for (char c = 0; c < ' '; ++c) {
    if (c == '\n') continue;
    OpenOnBytes(std::string(kMegabyte, c));
    EXPECT_EQ(form_->RecCnt.text.Get(), "1 record") << static_cast<int>(c);
    EXPECT_EQ(Rows(), 0) << static_cast<int>(c);
    Append("\r\n");
    ExpectThatTheNextPollWorks();
  }
}

TEST_F(HostileFileTest, MegabyteOfLineEndsAreLinesWithoutRows) {
  OpenOnBytes(std::string(kMegabyte, '\n'));
  EXPECT_EQ(form_->RecCnt.text.Get(), "1000000 records");
  EXPECT_EQ(Rows(), 0);
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, MegabytesOfRandomBytesLeaveTheWindowAtWork) {
  std::uint32_t state = 1;
  std::string bytes(3 * kMegabyte, '\0');
  for (char& c : bytes) c = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
  OpenOnBytes(bytes);
  ExpectUsable();
  Append("\r\n");
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, TimesThatAreNoPlainNumbersEndNoLoad) {
  std::string bytes;
  for (const char* time : {"1e999", "-1e999", "1e-999", "&HFFFFFFFFFF", "&H7F", "1d5", "$5", "(5)", "5%", "+",
                           "-", "1,", "0x10", "nan", "inf", "1e", ".", "1.e+", " 5 "})
    bytes += std::string(time) + ",HOST,system,A,text\r\n";
  bytes += std::string(400, '9') + ",HOST,system,A,text\r\n";
  bytes += std::string(kMegabyte, '9') + ",HOST,system,A,text\r\n";
  OpenOnBytes(bytes);
  EXPECT_EQ(form_->RecCnt.text.Get(), "21 records");
  EXPECT_EQ(Rows(), 21);
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, GridIsFullWhereItsBytesAreUsedUp) {
  capacity_bytes_ = 15 * kMegabyte;
  std::string bytes;
  for (char c = 'a'; c < 'f'; ++c) bytes += Line(1, "system", std::string(10 * kMegabyte, c)) + "\r\n";
  OpenOnBytes(bytes);
  ASSERT_EQ(Boxes().shown.size(), 1u);
  EXPECT_THAT(Boxes().shown[0].text, StartsWith("The Event View grid is full."));
  EXPECT_THAT(IDs(), ElementsAre("1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "2 records");
  ExpectUsable();
  Append(Line(2, "system") + "\r\n");
  Tick();
  EXPECT_EQ(Boxes().shown.size(), 2u);
  EXPECT_THAT(IDs(), ElementsAre("1"));
  ExpectUsable();
  // The row, and the text of the load and that of the poll which found no place.
  EXPECT_LT(HeldByTheForm(), 35 * kMegabyte);
}

// The lists of hosts and monitors, which keep every text twice, did not count: what was held was up to six
// times the limit.
TEST_F(HostileFileTest, LinesWithAHostOrAMonitorOfTheirOwnStayWithinTheBytesOfTheGrid) {
  capacity_bytes_ = 4 * kMegabyte;
  for (const bool hosts : {true, false}) {
    std::string bytes;
    for (int i = 0; i < 20'000; ++i) {
      const std::string name = std::to_string(i) + std::string(200, 'x');
      bytes += hosts ? "1," + name + ",system,A,text\r\n" : "1,HOST," + name + ",A,text\r\n";
    }
    const std::size_t boxes = Boxes().shown.size();
    std::size_t most = 0;
    world_.platform.files.Put(Path(), {});
    Open();
    world_.platform.files.Put(Path(), bytes);
    const std::size_t before = test::HeldBytes();
    const auto link = form_->DynamicPictureBox.value.changed.Connect(
        [&] { most = std::max(most, test::HeldBytes() - before); });
    Refresh();
    world_.quiet.Take();  // thousands of monitors are not stored
    ASSERT_EQ(Boxes().shown.size(), boxes + 1);
    EXPECT_THAT(Boxes().shown.back().text, StartsWith("The Event View grid is full."));
    EXPECT_LT(most, 5 * kMegabyte);
    ExpectUsable();
  }
}

// Their descriptions are kept for the list of descriptions, and no row was there to be refused.
TEST_F(HostileFileTest, LinesOfAMonitorThatIsNotDisplayedStayWithinTheBytesOfTheGrid) {
  reg_ini_.SaveSettingHashed("Monitors", "System", "0");
  reg_ini_.ReadRegInfo();
  capacity_bytes_ = kMegabyte;
  std::string bytes = Line(1, "tcp port") + "\r\n";
  for (int i = 0; i < 20'000; ++i)
    bytes += Line(i, "system", std::to_string(i) + std::string(200, 'x')) + "\r\n";
  OpenOnBytes(bytes);
  ASSERT_EQ(Boxes().shown.size(), 1u);
  EXPECT_THAT(Boxes().shown[0].text, StartsWith("The Event View grid is full."));
  EXPECT_THAT(IDs(), ElementsAre("1"));
  EXPECT_LT(HeldByTheForm(), 2 * kMegabyte);
}

// A file that changes while it is read.

TEST_F(HostileFileTest, LinesThatComeWhileTheFileIsReadAreThereOnce) {
  OpenOnBytes(Lines(0, 20'000));
  InTheMiddleOf([&] { Refresh(); }, [&] { Append(Lines(20'000, 20'100)); });
  Tick();
  EXPECT_EQ(Rows(), 20'100);
  EXPECT_EQ(form_->RecCnt.text.Get(), "20100 records");
  Append(Lines(20'100, 40'000));
  InTheMiddleOf([&] { Tick(); }, [&] { Append(Lines(40'000, 40'100)); });
  Tick();
  EXPECT_EQ(Rows(), 40'100);
  EXPECT_EQ(Newest(), "text 40099");
  EXPECT_EQ(form_->RecCnt.text.Get(), "40100 records");
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, FileReplacedByASmallerOneWhileItIsReadIsReloadedByTheNextPoll) {
  OpenOnBytes(Lines(0, 20'000));
  InTheMiddleOf([&] { Refresh(); }, [&] { Replace(Lines(500, 510)); });
  EXPECT_EQ(Rows(), 20'000) << "the file that was opened is read to its end";
  Tick();
  EXPECT_EQ(Rows(), 10);
  EXPECT_EQ(Newest(), "text 509");
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, FileReplacedByALargerOneWhileItIsReadGoesOnBehindTheKnownLines) {
  OpenOnBytes(Lines(0, 20'000));
  InTheMiddleOf([&] { Refresh(); }, [&] { Replace(Lines(100'000, 120'001)); });
  EXPECT_EQ(Rows(), 20'000);
  Tick();
  EXPECT_EQ(Rows(), 20'001);
  EXPECT_EQ(Newest(), "text 120000");
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, FileReplacedWhileAPollReadsItIsReloadedByTheNextPoll) {
  OpenOnBytes(Lines(0, 100));
  Append(Lines(100, 20'000));
  InTheMiddleOf([&] { Tick(); }, [&] { Replace(Lines(7, 9)); });
  EXPECT_EQ(Rows(), 20'000);
  Tick();
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(Newest(), "text 8");
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, FileShortenedWhileItIsReadIsReloadedByTheNextPoll) {
  OpenOnBytes(Lines(0, 20'000));
  Tick();
  for (const int left : {0, 1, 30, 15'000}) {
    world_.platform.files.Put(Path(), Lines(0, 20'000));
    InTheMiddleOf([&] { Refresh(); }, [&] { world_.platform.files.Put(Path(), Lines(0, left)); });
    EXPECT_LT(Rows(), 20'000);
    ExpectUsable();
    Tick();
    EXPECT_EQ(Rows(), left);
    ExpectThatTheNextPollWorks();
  }
}

TEST_F(HostileFileTest, FileShortenedWhileAPollReadsItIsReloadedByTheNextPoll) {
  OpenOnBytes(Lines(0, 100));
  Append(Lines(100, 20'000));
  InTheMiddleOf([&] { Tick(); }, [&] { world_.platform.files.Put(Path(), Lines(0, 60)); });
  ExpectUsable();
  Tick();
  EXPECT_EQ(Rows(), 60);
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, FileShortenedWhileItIsReloadedIsReloadedAgain) {
  OpenOnBytes(Lines(0, 20'000));
  world_.platform.files.Put(Path(), Lines(0, 15'000));
  InTheMiddleOf([&] { Tick(); }, [&] { world_.platform.files.Put(Path(), Lines(0, 70)); });
  Tick();
  EXPECT_EQ(Rows(), 70);
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, FileThatVanishesWhileItIsReadIsReadToItsEndAndFollowedWhenItComesBack) {
  OpenOnBytes(Lines(0, 20'000));
  InTheMiddleOf([&] { Refresh(); }, [&] { world_.platform.files.Vanish(Path()); });
  EXPECT_EQ(Rows(), 20'000);
  Tick();
  EXPECT_EQ(Rows(), 20'000);
  EXPECT_THAT(Boxes().shown, IsEmpty());
  world_.platform.files.Put(Path(), Lines(0, 3));
  Tick();
  EXPECT_EQ(Rows(), 3);
  ExpectThatTheNextPollWorks();
}

// A file that cannot be read.

TEST_F(HostileFileTest, ReadingThatFailsInTheMiddleOfALoadIsLoggedAndTheGrownFileIsReadFromItsStart) {
  for (const auto& [kind, told] : {std::pair{ErrorKind::kPermissionDenied, "70: Permission denied"},
                                   std::pair{ErrorKind::kOther, "57: Device I/O error"}}) {
    OpenOnBytes(Lines(0, 20'000));
    world_.platform.files.FailReadAfter(Path(), 300'000, kind);
    world_.quiet.Expect("'frmMain : DisplayData': " + std::string(told));
    Refresh();
    const int rows = Rows();
    EXPECT_GT(rows, 0);
    EXPECT_LT(rows, 20'000);
    EXPECT_EQ(form_->GridLineCount, 0);
    ExpectUsable();
    Tick();
    EXPECT_EQ(Rows(), rows) << "the size is known";
    Append(Lines(20'000, 20'001));
    Tick();
    EXPECT_EQ(Rows(), rows + 20'001);
    EXPECT_EQ(form_->RecCnt.text.Get(), "20001 records");
    Refresh();
    EXPECT_EQ(Rows(), 20'001);
    ExpectThatTheNextPollWorks();
  }
}

TEST_F(HostileFileTest, ReadingThatFailsInTheMiddleOfAPollIsLoggedAndTheNextPollReadsTheSameLinesAgain) {
  OpenOnBytes(Lines(0, 100));
  Append(Lines(100, 20'000));
  world_.platform.files.FailReadAfter(Path(), 300'000, ErrorKind::kPermissionDenied);
  world_.quiet.Expect("'frmMain : RedisplayData': 70: Permission denied");
  Tick();
  const int rows = Rows();
  EXPECT_GT(rows, 100);
  EXPECT_EQ(form_->GridLineCount, 100);
  EXPECT_EQ(form_->RecCnt.text.Get(), "100 records");
  ExpectUsable();
  Append(Lines(20'000, 20'001));
  Tick();
  EXPECT_EQ(Rows(), rows + 19'901);
  EXPECT_EQ(form_->RecCnt.text.Get(), "20001 records");
  ExpectThatTheNextPollWorks();
}

TEST_F(HostileFileTest, EveryOtherReadingThatIsRefusedLeavesAWindowAtWork) {
  OpenOnBytes(Lines(0, 100));
  const struct {
    FileOp op;
    ErrorKind kind;
    const char* told;
  } refusals[] = {{FileOp::kSize, ErrorKind::kNotFound, "53: File not found"},
                  {FileOp::kOpen, ErrorKind::kNotFound, "53: File not found"},
                  {FileOp::kOpen, ErrorKind::kPermissionDenied, "70: Permission denied"},
                  {FileOp::kRead, ErrorKind::kOther, "57: Device I/O error"}};
  for (const auto& [op, kind, told] : refusals) {
    world_.platform.files.FailNext(op, Path(), kind);
    world_.quiet.Expect("'frmMain : DisplayData': " + std::string(told));
    Refresh();
    EXPECT_EQ(Rows(), 0);
    ExpectUsable();
    Refresh();
    EXPECT_EQ(Rows(), 100);
  }
  Tick();
  world_.platform.files.FailNext(FileOp::kSize, Path(), ErrorKind::kNotFound);
  world_.quiet.Expect("'frmMain.frm : Timer1_Timer': 53: File not found");
  Tick();
  ExpectUsable();
  ExpectThatTheNextPollWorks();
}

}  // namespace
}  // namespace zendrix::admin
