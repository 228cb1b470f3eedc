#include "admin/time_slots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "core/guards.h"
#include "core/letter_case.h"
#include "core/number_rules.h"
#include "platform/memory/memory_family.h"
#include "support/grid_rows.h"

namespace zendrix::admin {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::SizeIs;

constexpr int kTopSlot = 1795225500;  // 2026-11-21 01:45:00 UTC
constexpr std::nullopt_t kEmpty = std::nullopt;
using SlotLine = std::vector<std::optional<std::int32_t>>;

int TwipsOf(std::string_view text) {
  return static_cast<int>(text.size()) * 100;
}

class TimeSlotsTest : public ::testing::Test {
 protected:
  TimeSlotsTest() {
    grid_.SetFormatString("0|1|2|3|4|5|6|7|8");
    settings_.MonitorStates = {{"System", "1"}, {"Tcp Port", "1"}};
    settings_.NSlots = 5;
    settings_.TSlots = 1;
    rows_.BeginLoad({});
  }
  // An event so many seconds older than the newest. Events are added in the order of the file.
  void Add(int age, const std::string& code = "A", const std::string& monitor = "System") {
    testing::InsertTop(rows_, grid_, {++id_, "", "HOST", monitor, code, "what", kTopSlot - age});
  }
  // The whole span of the slots and two rows behind it.
  void AddOldHistory(int age = 100000) {
    Add(age + 1);
    Add(age);
  }
  std::optional<core::RunTimeError> Fill() {
    asked_.clear();
    const ItemsAlive items = [this](const std::vector<std::string>& monitors, int row) {
      asked_.push_back(row);
      return std::vector<std::int32_t>(monitors.size(), alive_);
    };
    return core::ErrorOf([&] {
      slots_.Fill(grid_, {settings_, SlotUnitOf(settings_.TSlots), locale_, 0, family_, items});
    });
  }
  int ErrorOfFill() {
    const auto error = Fill();
    return error ? error->number : 0;
  }
  const SlotLine& Counts(std::size_t monitor = 0) const { return slots_.SlotCounts[monitor]; }
  const SlotLine& Totals(std::size_t monitor = 0) const { return slots_.SlotTotals[monitor]; }

  platform::MemoryFamily family_;
  platform::LocaleInfo locale_;
  EventRows rows_{family_, {TwipsOf, TwipsOf, 1}};
  EventGrid grid_{"EventList", rows_};
  core::Settings settings_;
  TimeSlots slots_;
  std::int32_t alive_ = 0;
  std::vector<int> asked_;
  int id_ = 0;
};

TEST_F(TimeSlotsTest, TablesHaveARowMoreThanDisplayedMonitors) {
  AddOldHistory(299);
  Add(0);
  EXPECT_EQ(ErrorOfFill(), 0);
  EXPECT_THAT(slots_.SlotCounts, SizeIs(3));
  EXPECT_THAT(slots_.SlotTotals, SizeIs(3));
  EXPECT_THAT(slots_.SlotCounts, Each(SizeIs(5)));
  EXPECT_THAT(slots_.SlotLabels, SizeIs(5));
  EXPECT_THAT(slots_.SlotCounts[2], Each(kEmpty));
  EXPECT_THAT(slots_.SlotTotals[2], Each(kEmpty));
}

TEST_F(TimeSlotsTest, EventExactlyOneSlotOlderFallsIntoTheNextSlot) {
  AddOldHistory();
  Add(61, "A", "tcp port");
  Add(60);
  Add(59);
  Add(0);
  Fill();
  EXPECT_THAT(Counts(0), ElementsAre(2, 1, kEmpty, kEmpty, kEmpty));
  EXPECT_THAT(Counts(1), ElementsAre(kEmpty, 1, kEmpty, kEmpty, kEmpty));
}

TEST_F(TimeSlotsTest, LastSlotStaysEmptyBecauseTheCountStopsBeforeIt) {
  AddOldHistory();
  Add(241);
  Add(240);
  Add(239);
  Add(0);
  EXPECT_EQ(ErrorOfFill(), 0);
  EXPECT_THAT(Counts(), ElementsAre(1, kEmpty, kEmpty, 1, kEmpty));
}

TEST_F(TimeSlotsTest, OneSlotCountsNothingButHasTotals) {
  settings_.NSlots = 1;
  alive_ = 7;
  AddOldHistory();
  Add(30);
  Add(0);
  EXPECT_EQ(ErrorOfFill(), 0);
  EXPECT_THAT(Counts(), ElementsAre(kEmpty));
  EXPECT_THAT(Totals(0), ElementsAre(8)) << "what was there at row 2, and row 1";
  EXPECT_THAT(Totals(1), ElementsAre(7));
  EXPECT_THAT(asked_, ElementsAre(2));
}

TEST_F(TimeSlotsTest, NoSlotsEndAtOnce) {
  settings_.NSlots = 0;
  AddOldHistory();
  EXPECT_EQ(ErrorOfFill(), core::kSubscriptOutOfRange);
  EXPECT_THAT(slots_.SlotLabels, IsEmpty());
  EXPECT_THAT(slots_.SlotCounts, Each(IsEmpty()));
}

TEST_F(TimeSlotsTest, ShortFileKeepsItsCountsAndHasNoTotals) {
  Add(130);
  Add(0);
  EXPECT_EQ(ErrorOfFill(), core::kSubscriptOutOfRange);
  EXPECT_THAT(Counts(), ElementsAre(1, kEmpty, 1, kEmpty, kEmpty));
  EXPECT_THAT(Totals(), Each(kEmpty));
  EXPECT_THAT(asked_, IsEmpty());
  EXPECT_EQ(slots_.SlotLabels[0], "01:45 AM");
}

TEST_F(TimeSlotsTest, StoppingRowThatIsTheLastHasNoTotals) {
  Add(240);
  Add(0);
  EXPECT_EQ(ErrorOfFill(), core::kSubscriptOutOfRange);
  EXPECT_THAT(Counts(), ElementsAre(1, kEmpty, kEmpty, kEmpty, kEmpty));
  EXPECT_THAT(Totals(), Each(kEmpty));
  EXPECT_THAT(asked_, IsEmpty());
}

TEST_F(TimeSlotsTest, StoppingRowBehindTheLastSlotHasNoTotals) {
  AddOldHistory(300);
  Add(0);
  EXPECT_EQ(ErrorOfFill(), core::kSubscriptOutOfRange);
  EXPECT_THAT(Totals(), Each(kEmpty));
  EXPECT_THAT(asked_, IsEmpty());
}

TEST_F(TimeSlotsTest, StoppingRowAtTheEndOfTheLastSlotHasTotals) {
  AddOldHistory(299);
  Add(0);
  EXPECT_EQ(ErrorOfFill(), 0);
  EXPECT_THAT(Totals(), ElementsAre(2, 1, 1, 1, 1));
}

TEST_F(TimeSlotsTest, EmptyGridHasNoLabels) {
  EXPECT_EQ(ErrorOfFill(), core::kSubscriptOutOfRange);
  EXPECT_THAT(slots_.SlotLabels, ElementsAre("", "", "", "", ""));
  EXPECT_THAT(slots_.SlotCounts, Each(Each(kEmpty)));
}

TEST_F(TimeSlotsTest, RowThatIsNewerThanTheFirstByASlotEndsTheCount) {
  Add(-300);
  Add(-59);
  Add(0);
  EXPECT_EQ(ErrorOfFill(), core::kSubscriptOutOfRange);
  EXPECT_THAT(Counts(), ElementsAre(2, kEmpty, kEmpty, kEmpty, kEmpty)) << "less than a slot newer is slot 0";
  EXPECT_THAT(Totals(), Each(kEmpty));
}

TEST_F(TimeSlotsTest, NewerRowOfAHiddenMonitorEndsNothing) {
  AddOldHistory(299);
  Add(-300, "A", "hidden");
  Add(0);
  EXPECT_EQ(ErrorOfFill(), 0);
  EXPECT_THAT(Counts(), ElementsAre(1, kEmpty, kEmpty, kEmpty, kEmpty));
}

TEST_F(TimeSlotsTest, TimesFurtherApartThanALongEndTheCount) {
  testing::InsertTop(rows_, grid_, {1, "", "HOST", "System", "A", "what", -2'000'000'000});
  testing::InsertTop(rows_, grid_, {2, "", "HOST", "System", "A", "what", 2'000'000'000});
  EXPECT_EQ(ErrorOfFill(), core::kOverflow);
  EXPECT_THAT(Counts(), ElementsAre(1, kEmpty, kEmpty, kEmpty, kEmpty));
  grid_.SortByTimeKey(true);
  EXPECT_EQ(ErrorOfFill(), core::kOverflow);
}

TEST_F(TimeSlotsTest, MonitorWithTheValueTwoIsNotInTheCharts) {
  settings_.MonitorStates = {{"Folder Contents", "2"}, {"System", "1"}};
  AddOldHistory(299);
  Add(1, "A", "folder contents");
  Add(0);
  Fill();
  EXPECT_THAT(slots_.SlotCounts, ElementsAre(SlotLine{1, kEmpty, kEmpty, kEmpty, kEmpty}, Each(kEmpty)));
}

TEST_F(TimeSlotsTest, ChangeCodeBMovesNoTotal) {
  alive_ = 10;
  AddOldHistory(299);
  for (const char* code : {"B", "a", "r", "", "X"}) Add(120, code);
  Add(60, "A");
  Add(60, "N");
  Add(0, "R");
  EXPECT_EQ(ErrorOfFill(), 0);
  EXPECT_THAT(Totals(0), ElementsAre(12, 13, 11, 11, 11)) << "the stopping row is one that came";
  EXPECT_THAT(Totals(1), Each(Optional(10)));
  EXPECT_THAT(Counts(0), ElementsAre(1, 2, 5, kEmpty, kEmpty));
}

TEST_F(TimeSlotsTest, WithoutDisplayedMonitorsThereIsNothingToEndIn) {
  settings_.MonitorStates = {{"System", "0"}};
  Add(100000);
  Add(0);
  EXPECT_EQ(ErrorOfFill(), 0);
  EXPECT_THAT(slots_.SlotTotals, ElementsAre(Each(kEmpty)));
}

TEST_F(TimeSlotsTest, LabelsStandAtEveryFourthSlotInTheFormOfTheirUnit) {
  settings_.NSlots = 10;
  Add(0);
  const std::vector<std::vector<std::string>> expected = {
      {"01:45 AM", "01:41 AM", "01:37 AM"}, {"01 AM", "09 PM", "05 PM"},    {"11/21", "11/17", "11/13"},
      {"11/21", "10/24", "09/26"},          {"Nov 26", "Jul 26", "Mar 26"},
  };
  for (int unit = 1; unit <= 5; ++unit) {
    settings_.TSlots = static_cast<std::uint8_t>(unit);
    Fill();
    const auto& labels = expected[static_cast<std::size_t>(unit - 1)];
    EXPECT_THAT(slots_.SlotLabels,
                ElementsAre(labels[0], " ", " ", " ", labels[1], " ", " ", " ", labels[2], " "))
        << unit;
  }
  settings_.TSlots = 9;
  Fill();
  EXPECT_EQ(slots_.SlotLabels[4], "11/21/2026 01:41:00 AM");
}

TEST_F(TimeSlotsTest, LabelsAreInLocalTime) {
  family_.offset_seconds = -2 * 3600;
  Add(0);
  Fill();
  EXPECT_EQ(slots_.SlotLabels[0], "11:45 PM");
}

TEST_F(TimeSlotsTest, MonthsCountThirtyDays) {
  settings_.TSlots = 5;
  constexpr int kDay = 86400;
  AddOldHistory(125 * kDay);
  Add(30 * kDay);
  Add(30 * kDay - 1);
  Add(0);
  Fill();
  EXPECT_THAT(Counts(), ElementsAre(2, 1, kEmpty, kEmpty, kEmpty));
  EXPECT_EQ(slots_.SlotLabels[4], "Jul 26");
}

// The rules once more, step by step, on the texts of the cells.
class PlainReading {
 public:
  PlainReading(const EventGrid& grid, const core::Settings& settings, std::int32_t seconds, ItemsAlive items)
      : grid_(grid), seconds_(seconds), items_(std::move(items)) {
    for (const auto& [name, value] : settings.MonitorStates)
      if (value == "1") monitors_.push_back(name);
    const int slots = settings.NSlots;
    counts.assign(monitors_.size() + 1, SlotLine(static_cast<std::size_t>(slots)));
    totals = counts;
    try {
      const int stop = Count(slots);
      FarEnd(stop);
      TowardsNow(stop, slots);
    } catch (const std::out_of_range&) {
    }
  }
  SlotTable counts, totals;

 private:
  std::int64_t Key(int row) const {
    if (row < 1 || row >= grid_.Rows()) throw std::out_of_range("row");
    return std::stoll(grid_.Text(row, kColTimeKey));
  }
  std::int64_t Slot(int row) const { return (Key(1) - Key(row)) / seconds_; }
  int Monitor(int row) const {
    const std::string name = grid_.Text(row, kColMonitor).substr(5);
    for (std::size_t i = 0; i < monitors_.size(); ++i)
      if (core::EqualNoCase(monitors_[i], name)) return static_cast<int>(i);
    return 999;
  }
  static std::optional<std::int32_t>& At(SlotTable& table, int monitor, std::int64_t slot) {
    if (slot < 0) throw std::out_of_range("slot");
    return table.at(static_cast<std::size_t>(monitor)).at(static_cast<std::size_t>(slot));
  }
  void Spread(int monitor, std::int64_t slot) {
    for (std::int64_t newer = slot - 1; newer >= 0; --newer)
      At(totals, monitor, newer) = At(totals, monitor, slot);
  }
  int Count(int slots) {
    for (int row = 1;; ++row) {
      if (Slot(row) >= slots - 1) return row;
      if (const int m = Monitor(row); m != 999)
        At(counts, m, Slot(row)) = At(counts, m, Slot(row)).value_or(0) + 1;
    }
  }
  void FarEnd(int stop) {
    for (int m = 0; m < static_cast<int>(monitors_.size()); ++m) {
      auto& total = At(totals, m, Slot(stop));
      if (total.value_or(0) == 0) {
        Key(stop + 1);
        const auto index = static_cast<std::size_t>(m);
        total = total.value_or(0) + items_({monitors_[index]}, stop + 1)[0];
      }
      Spread(m, Slot(stop));
    }
  }
  void TowardsNow(int stop, int slots) {
    for (int row = stop; row != 0; --row) {
      const int m = Monitor(row);
      if (Slot(row) >= slots || m == 999) continue;
      const std::string code = grid_.Text(row, kColCode);
      auto& total = At(totals, m, Slot(row));
      if (code == "A" || code == "N") total = total.value_or(0) + 1;
      if (code == "R") total = total.value_or(0) - 1;
      Spread(m, Slot(row));
    }
  }

  const EventGrid& grid_;
  const std::int64_t seconds_;
  const ItemsAlive items_;
  std::vector<std::string> monitors_;
};

TEST_F(TimeSlotsTest, RandomGridsCountAsAPlainReadingOfTheRulesDoes) {
  std::mt19937 random(5);
  const auto up_to = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
  const std::vector<std::string> monitors = {"System", "tcp port", "Users", "hidden", "TWO", "zero"};
  settings_.MonitorStates = {{"Zero", "0"}, {"Users", "1"}, {"Two", "2"}, {"System", "1"}, {"Tcp Port", "1"}};
  const ItemsAlive items = [](const std::vector<std::string>& names, int row) {
    std::vector<std::int32_t> alive;
    for (const std::string& name : names) alive.push_back(static_cast<int>(name.size()) * row % 9);
    return alive;
  };
  int with_totals = 0;
  for (int round = 0; round < 1500; ++round) {
    grid_.Clear();
    rows_.Clear();
    settings_.NSlots = static_cast<std::uint8_t>(up_to(12) + 1);
    settings_.TSlots = static_cast<std::uint8_t>(up_to(2));
    const int seconds = SlotUnitOf(settings_.TSlots).SlotSeconds;
    const int count = up_to(60);
    // Older rows, or some time to and fro, as after a change of the clock.
    const int back = up_to(3) == 0 ? 2 * seconds : 0;
    int age = seconds * up_to(14);
    for (int i = 0; i < count; ++i) {
      age -= up_to(seconds / 2) - up_to(back);
      Add(age, std::string(1, "ARNB"[up_to(3)]), monitors[static_cast<std::size_t>(up_to(5))]);
    }
    if (up_to(9) == 0) grid_.SortByText(up_to(1) == 0 ? kColMonitor : kColWhole, up_to(1) == 0);
    core::OrIgnore([&] {
      slots_.Fill(grid_, {settings_, SlotUnitOf(settings_.TSlots), locale_, 0, family_, items});
    });
    const PlainReading plain(grid_, settings_, seconds, items);
    ASSERT_EQ(slots_.SlotCounts, plain.counts) << round;
    ASSERT_EQ(slots_.SlotTotals, plain.totals) << round;
    with_totals += slots_.SlotTotals[0][0].has_value() ? 1 : 0;
  }
  EXPECT_GT(with_totals, 100) << "rounds that came to their end";
}

}  // namespace
}  // namespace zendrix::admin
