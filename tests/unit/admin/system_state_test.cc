#include "admin/system_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "platform/memory/memory_family.h"
#include "support/grid_rows.h"
#include "support/naive_state.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kBaselineStart[] = "** Start baseline **";
constexpr char kBaselineEnd[] = "** End baseline **";

std::vector<std::string> Texts(const EventRows& rows, const std::vector<store::TextId>& items) {
  std::vector<std::string> texts;
  for (const store::TextId item : items) texts.emplace_back(rows.pool().Text(item));
  return texts;
}

class SystemStateTest : public ::testing::Test {
 protected:
  // Rows come oldest first, one second after the other; their times are "1", "2" and so on.
  void Add(std::string_view code, std::string_view whole, std::string_view monitor = "Tcp Port") {
    ++seconds_;
    testing::InsertTop(rows_, grid_, {seconds_, {}, "h", monitor, code, whole, seconds_});
  }
  void AddBaseline(std::initializer_list<const char*> items, std::string_view monitor = "Tcp Port") {
    Add("B", kBaselineStart, monitor);
    for (const char* item : items) Add("A", item, monitor);
    Add("B", kBaselineEnd, monitor);
  }
  // When the event of this second was the newest.
  std::vector<std::string> At(int second, std::string_view monitor = "Tcp Port") const {
    return Texts(rows_, StateofMonitor(grid_, monitor, std::to_string(second)));
  }

  platform::MemoryFamily family_;
  EventRows rows_{family_, {}};
  EventGrid grid_{"EventList", rows_};
  int seconds_ = 0;
};

TEST_F(SystemStateTest, MonitorWithoutABaselineIsReplayedFromTheBottomWithoutTheLastRow) {
  for (const char* item : {"a", "b", "c"}) Add("A", item);
  EXPECT_THAT(At(3), ElementsAre("b", "c"));
  EXPECT_THAT(At(2), ElementsAre("b"));
  EXPECT_THAT(At(1), IsEmpty());
}

TEST_F(SystemStateTest, LastRowThatStartsABaselineIsFound) {
  AddBaseline({"a", "b"});
  Add("R", "a");
  EXPECT_THAT(At(1), ElementsAre("a", "b"));
  EXPECT_THAT(At(5), ElementsAre("b"));
}

TEST_F(SystemStateTest, BaselineWithoutAnEndGivesTheStateAtRowOneInsideAndBehindIt) {
  Add("A", "before");
  Add("B", kBaselineStart);
  for (const char* item : {"a", "b", "c"}) Add("A", item);
  Add("R", "b");
  for (const int second : {2, 3, 4, 5, 6}) EXPECT_THAT(At(second), ElementsAre("a", "c")) << second;
}

TEST_F(SystemStateTest, CursorInsideABaselineSeesTheWholeBaseline) {
  Add("A", "before");
  AddBaseline({"a", "b", "c"});
  Add("A", "d");
  for (const int second : {2, 3, 4, 5, 6}) EXPECT_THAT(At(second), ElementsAre("a", "b", "c")) << second;
  EXPECT_THAT(At(7), ElementsAre("a", "b", "c", "d"));
}

TEST_F(SystemStateTest, StateIsSettledOnlyBehindTheEndOfItsBaseline) {
  AddBaseline({"a"});
  Add("A", "b");
  const auto settled = [this](int second) {
    return SystemState(grid_, std::to_string(second)).RowsOfState("Tcp Port").settled;
  };
  EXPECT_FALSE(settled(1));
  EXPECT_FALSE(settled(2)) << "the end comes next";
  EXPECT_TRUE(settled(3));
  EXPECT_TRUE(settled(4));
}

TEST_F(SystemStateTest, RemovalOfWhatIsNotThereChangesNothing) {
  AddBaseline({"a"});
  Add("R", "b");
  Add("A", "b");
  EXPECT_THAT(At(4), ElementsAre("a"));
  EXPECT_THAT(At(5), ElementsAre("a", "b"));
}

TEST_F(SystemStateTest, OfTwoEqualItemsOneRemovalTakesTheFirst) {
  AddBaseline({"twin", "other", "twin"});
  Add("R", "twin");
  Add("R", "twin");
  EXPECT_THAT(At(6), ElementsAre("other", "twin"));
  EXPECT_THAT(At(7), ElementsAre("other"));
}

TEST_F(SystemStateTest, ItemThatCameBackStandsBehindTheOthers) {
  AddBaseline({"a", "b"});
  Add("R", "a");
  Add("A", "a");
  EXPECT_THAT(At(6), ElementsAre("b", "a"));
}

TEST_F(SystemStateTest, NewestBaselineCountsAndForgetsWhatWasBeforeIt) {
  AddBaseline({"old"});
  Add("A", "older");
  AddBaseline({"new"});
  EXPECT_THAT(At(4), ElementsAre("old", "older"));
  EXPECT_THAT(At(7), ElementsAre("new"));
}

TEST_F(SystemStateTest, BaselinesOfOtherMonitorsDoNotCount) {
  AddBaseline({"a"});
  Add("B", kBaselineStart, "System");
  Add("A", "b");
  Add("A", "s", "System");
  Add("B", kBaselineEnd, "System");
  EXPECT_THAT(At(7), ElementsAre("a", "b"));
  EXPECT_THAT(At(7, "System"), ElementsAre("s"));
}

TEST_F(SystemStateTest, OtherChangeCodesChangeNothing) {
  AddBaseline({"a"});
  for (const char* code : {"N", "B", "a", "r", ""}) Add(code, "a");
  EXPECT_THAT(At(seconds_), ElementsAre("a"));
}

TEST_F(SystemStateTest, BaselineMarkersOfChangeCodeAAreItems) {
  Add("A", kBaselineStart);
  Add("A", "a");
  Add("A", kBaselineEnd);
  EXPECT_THAT(At(3), ElementsAre("a", kBaselineEnd));
}

TEST_F(SystemStateTest, NamesAreComparedWithoutCaseAndDescriptionsWithIt) {
  AddBaseline({"a"}, "TCP PORT");
  Add("A", "A", "tcp port");
  Add("R", "A", "Tcp Port");
  EXPECT_THAT(At(4, "tCP pORT"), ElementsAre("a", "A"));
  EXPECT_THAT(At(5), ElementsAre("a"));
  EXPECT_THAT(At(5, "Tcp"), IsEmpty());
}

TEST_F(SystemStateTest, SystemIsAMonitorLikeAnyOther) {
  AddBaseline({"s"}, "System");
  EXPECT_THAT(At(3, "System"), ElementsAre("s"));
}

TEST_F(SystemStateTest, MomentThatNoRowShowsIsTheStateAtRowOne) {
  AddBaseline({"a"});
  Add("A", "b");
  EXPECT_THAT(At(99), ElementsAre("a", "b"));
  EXPECT_EQ(FirstRowShowing(grid_, "99"), 0);
}

TEST_F(SystemStateTest, EmptyViewHasNoState) {
  EXPECT_THAT(At(1), IsEmpty());
}

TEST_F(SystemStateTest, OneItemOfTheNameForNoneIsNone) {
  AddBaseline({"**Empty Array**"});
  EXPECT_THAT(At(3), IsEmpty());
  Add("A", "b");
  EXPECT_THAT(At(4), ElementsAre("**Empty Array**", "b"));
}

TEST_F(SystemStateTest, FirstOfTheRowsThatShowTheSameTimeIsSelected) {
  Add("A", "bottom");
  for (const char* item : {"a", "b", "c"})
    testing::InsertTop(rows_, grid_, {7, {}, "h", "Tcp Port", "A", item, 7});
  EXPECT_EQ(FirstRowShowing(grid_, "7"), 1);
  for (int row = 1; row <= 3; ++row) {
    const SystemState state(grid_, row);
    EXPECT_EQ(state.selected(), 1);
    EXPECT_THAT(Texts(rows_, state.StateofMonitor("Tcp Port")), ElementsAre("a", "b", "c"));
  }
}

TEST_F(SystemStateTest, TextOfATimeIsComparedWithoutCase) {
  Add("A", "bottom");
  testing::InsertTop(rows_, grid_, {2, "Soon", "h", "Tcp Port", "A", "a"});
  testing::InsertTop(rows_, grid_, {3, "SOON", "h", "Tcp Port", "A", "b"});
  EXPECT_EQ(FirstRowShowing(grid_, "soon"), 1);
  EXPECT_EQ(SystemState(grid_, 2).selected(), 1);
}

TEST_F(SystemStateTest, AnotherOrderOfTheViewIsReadFromTheBottomUp) {
  AddBaseline({"a", "b"});
  Add("A", "c");
  grid_.SortByTimeKey(true);
  ASSERT_EQ(grid_.TimeKey(1), 1);
  // The start of the baseline stands on top: no other row finds it, and above it there is nothing.
  EXPECT_THAT(At(2), ElementsAre("b", "a"));
  EXPECT_THAT(At(1), IsEmpty());
}

TEST_F(SystemStateTest, SortThatLeavesTheRowsAsTheyCameChangesNothing) {
  AddBaseline({"a", "b"});
  Add("A", "c");
  grid_.SortByTimeKey(false);
  ASSERT_FALSE(grid_.NewestFirst());
  EXPECT_THAT(At(5), ElementsAre("a", "b", "c"));
  EXPECT_THAT(At(2), ElementsAre("a", "b"));
}

TEST_F(SystemStateTest, RowsThatTheViewDoesNotShowAreNotThere) {
  Add("A", "bottom");
  Add("A", "a");
  Add("A", "b");
  EventGrid some("some", rows_);
  some.Insert(1, 0);
  some.Insert(1, 2);
  EXPECT_THAT(Texts(rows_, StateofMonitor(some, "Tcp Port", "3")), ElementsAre("b"));
  // One that shows the oldest rows has the newest of them on top, too.
  EventGrid oldest("oldest", rows_);
  oldest.Insert(1, 0);
  oldest.Insert(1, 1);
  EXPECT_THAT(Texts(rows_, StateofMonitor(oldest, "Tcp Port", "3")), ElementsAre("a"));
}

TEST_F(SystemStateTest, MonitorsOfOneMomentDoNotMix) {
  AddBaseline({"a", "both"});
  AddBaseline({"both", "s"}, "System");
  Add("R", "both");
  const SystemState state(grid_, 1);
  for (int round = 0; round < 2; ++round) {
    EXPECT_THAT(Texts(rows_, state.StateofMonitor("Tcp Port")), ElementsAre("a"));
    EXPECT_THAT(Texts(rows_, state.StateofMonitor("System")), ElementsAre("both", "s"));
  }
}

// Local time that goes back by an hour, so that two hours show the same times.
class AutumnFamily : public platform::MemoryFamily {
 public:
  static constexpr std::int32_t kChange = 1'793'494'800;
  platform::LocalTime FromUTC(std::int32_t seconds) override {
    offset_seconds = seconds < kChange ? 7200 : 3600;
    return MemoryFamily::FromUTC(seconds);
  }
};

TEST(SystemStateTimesTest, FirstRowOfATimeMayBeAnHourNewer) {
  AutumnFamily family;
  EventRows rows(family, {});
  rows.BeginLoad({});
  EventGrid grid("EventList", rows);
  for (const int key :
       {AutumnFamily::kChange - 1800, AutumnFamily::kChange - 10, AutumnFamily::kChange + 1800})
    testing::InsertTop(rows, grid, {key, {}, "h", "System", "A", "w", key});
  ASSERT_EQ(grid.Text(1, kColDateTime), grid.Text(3, kColDateTime));
  EXPECT_EQ(SystemState(grid, 3).selected(), 1);
  EXPECT_EQ(SystemState(grid, 2).selected(), 2);
}

TEST(SystemStateTimesTest, TimesThatLeaveOutSecondsOrTheCenturyAreOneTime) {
  platform::MemoryFamily family;
  EventRows rows(family, {});
  EventGrid grid("EventList", rows);
  LoadSettings settings;
  settings.locale.short_date = "dd.MM.yy";
  settings.locale.time = "HH:mm";
  rows.BeginLoad(settings);
  const int key = -1'290'000'000;
  const int century_later = 1'865'760'000;
  for (const int at : {key, key + 7, century_later, key + 60})
    testing::InsertTop(rows, grid, {at, {}, "h", "System", "A", "w", at});
  ASSERT_EQ(grid.Text(2, kColDateTime), grid.Text(4, kColDateTime));
  EXPECT_EQ(SystemState(grid, 4).selected(), 2);
  EXPECT_EQ(SystemState(grid, 1).selected(), 1);
}

// Two loads showed their times in forms of their own, and a text of one told another second in the other.
TEST(SystemStateTimesTest, RowOfAnotherLoadIsFoundByWhatItShows) {
  platform::MemoryFamily family;
  EventRows rows(family, {});
  EventGrid grid("EventList", rows);
  const int two_past_one = 3600 + 120 + 3, one_past_two = 7200 + 60 + 3;
  const auto add = [&](const char* form, int key) {
    LoadSettings settings;
    settings.locale.time = form;
    rows.BeginLoad(settings);
    testing::InsertTop(rows, grid, {key, {}, "h", "System", "A", "w", key});
  };
  add("HH:mm:ss", two_past_one);
  add("mm:HH:ss", one_past_two);
  ASSERT_EQ(grid.Text(1, kColDateTime), grid.Text(2, kColDateTime));
  EXPECT_EQ(SystemState(grid, 2).selected(), 1);
}

// Small files of all kinds: nested and missing baselines, hidden rows, equal and odd times, other settings.
class RandomFile {
 public:
  explicit RandomFile(unsigned seed) : random_(seed) {
    const int count = Below(28);
    for (int i = 0; i < count; ++i) AddRow(i);
    if (Below(3) == 0) Sort();
    for (int i = Below(3); i > 0; --i) AddRow(count + i);
    if (Below(8) == 0) Sort();
  }
  const EventRows& rows() const { return rows_; }
  const EventGrid& grid() const { return grid_; }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  const char* One(std::initializer_list<const char*> of) {
    return of.begin()[Below(static_cast<int>(of.size()))];
  }
  void Sort() {
    const int columns[] = {kColTimeKey, kColDateTime, kColMonitor, kColWhole, kColTimeKey};
    grid_.Sort(columns[Below(5)], Below(2) == 0);
  }
  void NewSettings() {
    LoadSettings settings;
    settings.locale.time = One({"hh:mm:ss tt", "HH:mm:ss", "h:mm", "tt h.m.s", "Hms"});
    settings.locale.short_date = One({"MM/dd/yyyy", "dd/MM/yyyy", "M/d/yy"});
    settings.date_order = Below(3);
    rows_.BeginLoad(settings);
  }
  void AddRow(int id) {
    if (Below(6) == 0) NewSettings();
    const int key = AutumnFamily::kChange + 1800 * (Below(5) - 2) + Below(3) + (Below(9) == 0 ? 86400 : 0);
    std::string raw;
    if (Below(6) == 0) raw = One({"soon", "SOON", "10/31/2026 08:00:00 am", "10/31/2026 08:00:00 AM"});
    const char* whole = One({"a", "a", "b", "A", "** Start baseline **", "** End baseline **", ""});
    if (whole[0] == '*' && Below(2) == 0) whole = "c";
    const testing::GridRow row{
        id, raw, "h", One({"System", "SYSTEM", "Tcp Port"}), One({"A", "A", "R", "N"}), whole, key};
    if (Below(7) == 0)
      testing::Append(rows_, row);
    else
      testing::InsertTop(rows_, grid_, row);
  }

  std::mt19937 random_;
  AutumnFamily family_;
  EventRows rows_{family_, {}};
  EventGrid grid_{"EventList", rows_};
};

TEST(SystemStateRandomTest, EveryRowOfAnyFileHasTheStateThatTheRulesGive) {
  int other_orders = 0, shared_times = 0, found = 0;
  for (unsigned seed = 1; seed <= 4000; ++seed) {
    const RandomFile file(seed);
    const EventGrid& grid = file.grid();
    other_orders += grid.NewestFirst() ? 0 : 1;
    for (int row = 1; row <= grid.DataRows(); ++row) {
      const std::string time = grid.Text(row, kColDateTime);
      const SystemState state(grid, row);
      ASSERT_EQ(state.selected(), FirstRowShowing(grid, time)) << seed << " row " << row;
      shared_times += state.selected() != row ? 1 : 0;
      for (const char* monitor : {"System", "tcp port"}) {
        std::vector<std::string> items = Texts(file.rows(), state.StateofMonitor(monitor));
        found += items.empty() ? 0 : 1;
        if (items.empty()) items.emplace_back(kEmptyArray);
        ASSERT_EQ(items, testing::NaiveState(grid, monitor, time))
            << seed << " row " << row << " " << monitor;
      }
    }
    ASSERT_EQ(FirstRowShowing(grid, "never"), 0);
  }
  EXPECT_GT(other_orders, 500);
  EXPECT_GT(shared_times, 500);
  EXPECT_GT(found, 5000);
}

}  // namespace
}  // namespace zendrix::admin
