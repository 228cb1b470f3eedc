#include "admin/filter_query.h"

#include <gtest/gtest.h>

#include <random>

#include "admin/event_grid.h"
#include "admin/prepared_query.h"
#include "core/date_calendar.h"
#include "core/letter_case.h"
#include "core/like_pattern.h"
#include "platform/memory/memory_family.h"
#include "support/grid_rows.h"

namespace zendrix::admin {
namespace {

constexpr int kYear = 2026;

constexpr RowValues kRow{"11/21/2026 09:05:07 AM", "Host-1", "Running Processes", "A",
                         "C:\\Windows\\[x]svchost.exe 7"};

std::int64_t Moment(int hour, int minute, int second) {
  return core::WallSeconds({21, 11, kYear, hour, minute, second});
}

bool Passes(FilterCriteria criteria, const RowValues& row = kRow, const platform::LocaleInfo& locale = {}) {
  return FilterQuery(std::move(criteria), locale, kYear).CheckQuery(row);
}

bool Matches(const std::string& pattern, std::string_view description = kRow.description) {
  return Passes({.description = pattern}, {"", "", "", "", description});
}

TEST(FilterQueryTest, RowPassesWithoutAnyCriterion) {
  EXPECT_FALSE(FilterCriteria{}.Any());
  EXPECT_TRUE(Passes({}));
  EXPECT_TRUE(Passes({}, {}));
}

TEST(FilterQueryTest, EachCriterionIsOneByItself) {
  EXPECT_TRUE(FilterCriteria{.host = ""}.Any()) << "a selected host counts whatever its text";
  EXPECT_TRUE(FilterCriteria{.monitor = "m"}.Any());
  EXPECT_TRUE(FilterCriteria{.change = "A"}.Any());
  EXPECT_TRUE(FilterCriteria{.description = "d"}.Any());
  EXPECT_TRUE(FilterCriteria{.from = 0}.Any());
  EXPECT_TRUE(FilterCriteria{.to = 0}.Any());
}

TEST(FilterQueryTest, TextsAreComparedWholeAndWithoutRegardToCase) {
  EXPECT_TRUE(Passes({.host = "HOST-1"}));
  EXPECT_FALSE(Passes({.host = "HOST"}));
  EXPECT_FALSE(Passes({.host = ""}));
  EXPECT_TRUE(Passes({.monitor = "running PROCESSES"}));
  EXPECT_FALSE(Passes({.monitor = "running"}));
  EXPECT_TRUE(Passes({.change = "a"}));
  EXPECT_FALSE(Passes({.change = "AA"}));
}

TEST(FilterQueryTest, AllCriteriaHaveToBeMet) {
  const FilterCriteria all{.host = "host-1",
                           .monitor = "running processes",
                           .change = "A",
                           .description = "svchost",
                           .from = Moment(9, 5, 7),
                           .to = Moment(9, 5, 7)};
  EXPECT_TRUE(Passes(all));
  const auto broken = [&](auto breaks) {
    FilterCriteria criteria = all;
    breaks(criteria);
    return Passes(criteria);
  };
  EXPECT_FALSE(broken([](FilterCriteria& c) { c.host = "x"; }));
  EXPECT_FALSE(broken([](FilterCriteria& c) { c.monitor = "x"; }));
  EXPECT_FALSE(broken([](FilterCriteria& c) { c.change = "R"; }));
  EXPECT_FALSE(broken([](FilterCriteria& c) { c.description = "x7"; }));
  EXPECT_FALSE(broken([](FilterCriteria& c) { c.to = c.from = *c.from + 1; }));
}

TEST(FilterQueryTest, DescriptionHoldsThePatternAnywhere) {
  EXPECT_TRUE(Matches("SVCHOST"));
  EXPECT_TRUE(Matches("c:\\win*.exe"));
  EXPECT_TRUE(Matches("s?chost"));
  EXPECT_TRUE(Matches("exe #"));
  EXPECT_FALSE(Matches("exe #7"));
  EXPECT_TRUE(Matches("[r-t]vc"));
  EXPECT_TRUE(Matches("w[i]ndows*#"));
  EXPECT_TRUE(Matches("?EXE*"));
  EXPECT_FALSE(Matches("?SYS*"));
  EXPECT_FALSE(Matches("[!r-t]vc"));
  EXPECT_TRUE(Matches("*"));
  EXPECT_TRUE(Matches("*", ""));
  EXPECT_FALSE(Matches("exe*windows")) << "pieces come in their order";
  EXPECT_FALSE(Matches("aa*aa", "aaa")) << "pieces do not overlap";
  EXPECT_TRUE(Matches("\xE4", "\xC4"));
}

TEST(FilterQueryTest, BracketInADescriptionIsAPatternAndNoLiteral) {
  EXPECT_TRUE(Matches("[x]svchost", "xsvchost"));
  EXPECT_FALSE(Matches("[y]svchost")) << "the row has the characters [x]svchost";
  EXPECT_TRUE(Matches("[[]x]svchost"));
  EXPECT_FALSE(Matches("[")) << "an open list matches nothing";
  EXPECT_FALSE(Matches("[x"));
}

TEST(FilterQueryTest, OnlyAToDateSelectsTheRowsOfExactlyThatMoment) {
  for (const bool from : {false, true}) {
    for (const int second : {6, 7, 8}) {
      FilterCriteria criteria;
      (from ? criteria.from : criteria.to) = Moment(9, 5, second);
      EXPECT_EQ(Passes(criteria), second == 7);
    }
  }
}

TEST(FilterQueryTest, PeriodHoldsBothItsEnds) {
  EXPECT_TRUE(Passes({.from = Moment(9, 5, 7), .to = Moment(10, 0, 0)}));
  EXPECT_TRUE(Passes({.from = Moment(0, 0, 0), .to = Moment(9, 5, 7)}));
  EXPECT_FALSE(Passes({.from = Moment(9, 5, 8), .to = Moment(10, 0, 0)}));
  EXPECT_FALSE(Passes({.from = Moment(0, 0, 0), .to = Moment(9, 5, 6)}));
  EXPECT_FALSE(Passes({.from = Moment(10, 0, 0), .to = Moment(9, 0, 0)}));
}

TEST(FilterQueryTest, DatesAreReadInTheRegionalSettings) {
  platform::LocaleInfo german;
  german.date_order = 1;
  german.date_separator = ".";
  FilterCriteria criteria{.from = core::WallSeconds({5, 3, kYear, 21, 0, 0})};
  EXPECT_TRUE(Passes(criteria, {"05.03.2026 21:00:00", "", "", "", ""}, german));
  EXPECT_FALSE(Passes(criteria, {"03.05.2026 21:00:00", "", "", "", ""}, german));
  EXPECT_TRUE(Passes(criteria, {"3/5 21:00", "", "", "", ""})) << "of this year where none is named";
}

TEST(FilterQueryTest, TimeThatIsNoDateMeetsNoCriterionOfTime) {
  const RowValues row{"yesterday", "", "", "", ""};
  EXPECT_TRUE(Passes({}, row));
  EXPECT_FALSE(Passes({.from = 0, .to = Moment(23, 0, 0)}, row));
}

// Rows with few and with many different texts, times in all forms that a row can have.
class PreparedQueryTest : public ::testing::Test {
 protected:
  PreparedQueryTest() { family_.offset_seconds = 5400; }
  void Load(const platform::LocaleInfo& locale, int order) {
    LoadSettings settings;
    settings.locale = locale;
    settings.date_order = order;
    settings.description_width = 3000;
    rows_.BeginLoad(settings);
  }
  void AddRows(int count) {
    for (int i = 0; i < count; ++i) {
      const std::string host = "Host-" + std::to_string(random_() % 3);
      const std::string whole = Text();
      const std::string code(1, "ARNB"[random_() % 4]);
      const std::string time = random_() % 10 == 0 ? "11/21/2026 0" + std::to_string(random_() % 9) : "";
      const int key = 1'795'251'907 + static_cast<int>(random_() % 40'000) - 20'000;
      testing::Append(rows_, {i, time, host, random_() % 2 == 0 ? "System" : "Tcp Port", code, whole,
                              random_() % 20 == 0 ? static_cast<int>(random_()) : key});
    }
  }
  std::string Text() {
    std::string text;
    for (std::size_t left = random_() % 6; left > 0; --left) text += "aB#[]?*"[random_() % 3];
    return text;
  }
  FilterCriteria Criteria() {
    FilterCriteria criteria;
    if (random_() % 3 == 0) criteria.host = "HOST-1";
    if (random_() % 3 == 0) criteria.monitor = "system";
    if (random_() % 3 == 0) criteria.change = "n";
    for (std::size_t left = random_() % 4; left > 0; --left)
      criteria.description += "ab#?*[!]"[random_() % 8];
    const std::int64_t around = core::WallSeconds({21, 11, 2026, 10, 35, 7});
    if (random_() % 2 == 0) criteria.from = around + static_cast<int>(random_() % 30'000) - 15'000;
    if (random_() % 2 == 0) criteria.to = around + static_cast<int>(random_() % 30'000) - 15'000;
    return criteria;
  }
  // Returns how many rows pass.
  int Compare(const FilterCriteria& criteria, const platform::LocaleInfo& locale) {
    const FilterQuery query(criteria, locale, kYear);
    PreparedQuery prepared(query, rows_);
    int passed = 0;
    for (std::uint32_t row = 0; row < rows_.size(); ++row) {
      const std::string date = rows_.Time(row);
      const bool passes =
          query.CheckQuery({date, rows_.Host(row), rows_.Monitor(row), rows_.Code(row), rows_.Whole(row)});
      EXPECT_EQ(prepared.Passes(row), passes)
          << date << " " << rows_.Whole(row) << " " << criteria.description;
      passed += passes ? 1 : 0;
    }
    return passed;
  }

  std::mt19937 random_{7};
  platform::MemoryFamily family_;
  EventRows rows_{family_, {[](std::string_view) { return 0; }, [](std::string_view) { return 0; }, 1}};
};

TEST_F(PreparedQueryTest, AnswersAsTheQueryOfEachRowsCells) {
  Load({}, 0);
  AddRows(400);
  platform::LocaleInfo german;
  german.short_date = "dd.MM.yyyy";
  german.time = "HH:mm:ss";
  german.date_separator = ".";
  german.date_order = 1;
  Load(german, 1);
  AddRows(400);
  int passed = 0;
  for (int round = 0; round < 200; ++round)
    passed += Compare(Criteria(), round % 2 == 0 ? platform::LocaleInfo() : german);
  EXPECT_GT(passed, 1000);
}

TEST_F(PreparedQueryTest, TimesShownWithoutSecondsAreReadOneByOne) {
  platform::LocaleInfo minutes;
  minutes.time = "HH:mm";
  Load(minutes, 0);
  AddRows(300);
  const std::int64_t minute = core::WallSeconds({21, 11, 2026, 10, 35, 0});
  EXPECT_GT(Compare({.from = minute - 600, .to = minute + 600}, minutes), 0);
  for (int round = 0; round < 50; ++round) Compare(Criteria(), minutes);
}

TEST_F(PreparedQueryTest, HoursWithoutTheirHalfOfTheDayAreReadOneByOne) {
  platform::LocaleInfo halves;
  halves.time = "hh:mm:ss";
  Load(halves, 0);
  AddRows(300);
  for (int round = 0; round < 50; ++round) Compare(Criteria(), halves);
}

TEST_F(PreparedQueryTest, EndsOfTheRangeOfKeysAndRowsWithoutALoad) {
  for (const int key : {std::numeric_limits<int>::min(), std::numeric_limits<int>::min() + 1, -1, 0, 1,
                        std::numeric_limits<int>::max() - 1, std::numeric_limits<int>::max()})
    testing::Append(rows_, {.event_id = 1, .time_key = key});
  Load({}, 0);
  for (const int key : {std::numeric_limits<int>::min(), std::numeric_limits<int>::min() + 1, -1, 0, 1,
                        std::numeric_limits<int>::max() - 1, std::numeric_limits<int>::max()})
    testing::Append(rows_, {.event_id = 1, .time_key = key});
  const std::int64_t all = 10'000'000'000;
  EXPECT_EQ(Compare({.from = -all, .to = all}, {}), 7);
  EXPECT_EQ(Compare({.from = 5400}, {}), 1);
}

}  // namespace
}  // namespace zendrix::admin
