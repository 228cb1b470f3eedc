#include "core/moment_formatter.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <map>
#include <random>

#include "core/date_calendar.h"
#include "core/letter_case.h"
#include "core/moments.h"
#include "support/locales.h"

namespace zendrix::core {
namespace {

using platform::LocaleInfo;
using platform::LocalTime;

constexpr std::int32_t kFirst = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();
constexpr int kEpochDay = 25569;

// A zone as a list of changes of its distance from UTC.
class FakeZone : public platform::FamilyLibraries {
 public:
  struct Change {
    std::int64_t from;
    int offset;
  };
  FakeZone(int offset, std::vector<Change> changes) : offset_(offset), changes_(std::move(changes)) {}

  LocalTime FromUTC(std::int32_t seconds) override {
    ++calls;
    int offset = offset_;
    for (const Change& change : changes_) {
      if (seconds >= change.from) offset = change.offset;
    }
    const std::int64_t wall = std::int64_t{seconds} + offset;
    const std::int64_t day = (wall - ((wall % 86400) + 86400) % 86400) / 86400;
    const int second = static_cast<int>(wall - day * 86400);
    LocalTime local = DateOfDayNumber(static_cast<int>(day) + kEpochDay);
    local.hour = second / 3600;
    local.minute = second / 60 % 60;
    local.second = second % 60;
    return local;
  }
  std::int32_t ToUTC(const LocalTime&) override { return 0; }
  std::string HashBytes(std::string_view) override { return {}; }
  platform::Status QuarantineExport(const platform::QuarantineEvent&, std::string&) override {
    return platform::Error{};
  }
  platform::Status UnquarantineExport(const platform::QuarantineEvent&, std::string&) override {
    return platform::Error{};
  }
  platform::Result<std::vector<platform::QuarantineEntry>> QuarantineList() override {
    return platform::Error{};
  }
  platform::Result<std::vector<platform::QuarantineEntry>> QuarantineListOf(const std::string&) override {
    return platform::Error{};
  }
  platform::Result<bool> RestoreExport(const std::string&, std::string&) override {
    return platform::Error{};
  }
  platform::Result<std::string> GetHostIDExport(const std::string&) override { return platform::Error{}; }

  const std::vector<Change>& changes() const { return changes_; }
  int calls = 0;

 private:
  int offset_;
  std::vector<Change> changes_;
};

// Summer time from a moment in spring to one in autumn of every year.
FakeZone SummerTime(int standard, int summer) {
  std::vector<FakeZone::Change> changes;
  for (int year = 1970; year < 2038; ++year) {
    const auto moment = [year](int month, int day) {
      return (std::int64_t{*DayNumber(year, month, day)} - kEpochDay) * 86400 + 3600;
    };
    changes.push_back({moment(3, 28), summer});
    changes.push_back({moment(10, 31), standard});
  }
  return FakeZone(standard, changes);
}

std::vector<FakeZone> Zones() {
  return {FakeZone(0, {}), SummerTime(3600, 7200), SummerTime(-18000, -14400), SummerTime(37800, 39600),
          // Local mean time with odd seconds, then a change in the middle of a quarter of an hour, then a
          // lost day.
          FakeZone(-2205, {{1000000123, 20700}, {1325239200, 50400}})};
}

std::vector<std::int32_t> Moments(const FakeZone& zone) {
  std::mt19937 random(12);
  std::uniform_int_distribution<std::int32_t> any(kFirst, kLast);
  std::uniform_int_distribution<std::int32_t> near(-7300, 7300);
  std::vector<std::int32_t> moments = {kFirst, kFirst + 1, -1, 0, 1, kLast - 1, kLast};
  for (int i = 0; i < 3000; ++i) moments.push_back(any(random));
  for (const FakeZone::Change& change : zone.changes()) {
    for (std::int32_t step : {-1, 0, 1}) moments.push_back(static_cast<std::int32_t>(change.from) + step);
    for (int i = 0; i < 8; ++i) moments.push_back(static_cast<std::int32_t>(change.from) + near(random));
  }
  std::int32_t running = 1262304000;
  for (int i = 0; i < 3000; ++i) moments.push_back(running += static_cast<std::int32_t>(random() % 600));
  return moments;
}

void ExpectSameAsByText(const LocaleInfo& locale, int order) {
  for (FakeZone& zone : Zones()) {
    MomentFormatter formatter(locale, order, zone);
    for (std::int32_t moment : Moments(zone)) {
      ASSERT_EQ(formatter.Format(moment), DisplayTime(moment, order, zone, locale)) << moment;
    }
  }
}

class EveryLanguageTest : public ::testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(MomentFormatter, EveryLanguageTest,
                         ::testing::Values(test::kUsEnglish, test::kGerman, test::kUkEnglish,
                                           test::kJapanese));

TEST_P(EveryLanguageTest, WritesTheTextOfTheWayByTextInEveryZone) {
  const LocaleInfo locale = test::LocaleOf(GetParam());
  ExpectSameAsByText(locale, locale.date_order);
}

TEST(MomentFormatter, MisreadsDatesAsTheWayByTextDoesWhenTheOrderIsNotTheLocales) {
  for (int order : {0, 1, 2}) ExpectSameAsByText(test::LocaleOf(test::kUsEnglish), order);
}

TEST(MomentFormatter, FollowsPicturesOfAnyKind) {
  LocaleInfo locale;
  locale.short_date = "'am' dddd, d. MMM yy";
  locale.time = "tt h'h'mm d.M.";
  ExpectSameAsByText(locale, 0);
  locale.short_date.clear();
  locale.time.clear();
  ExpectSameAsByText(locale, 0);
}

TEST(MomentFormatter, AsksForTheZoneOnlyAtTheEndsOfAQuarterOfADay) {
  FakeZone zone(3600, {});
  const LocaleInfo locale;
  MomentFormatter formatter(locale, 0, zone);
  constexpr std::int32_t kStart = 1262304000;
  for (std::int32_t moment = kStart; moment < kStart + 3 * 86400; moment += 7) formatter.Format(moment);
  EXPECT_EQ(zone.calls, 24);
}

// How many of three days' moments, and of some in other years, tell their second; no two texts that tell
// different ones may be equal.
int TellingTheirSecond(const LocaleInfo& locale, int order = 0) {
  FakeZone zone = SummerTime(3600, 7200);
  MomentFormatter formatter(locale, order, zone);
  std::map<std::string, int> second_of;
  int telling = 0;
  const auto look_at = [&](std::int32_t moment) {
    const auto told = formatter.ToldAround(moment);
    if (!told) return;
    ++telling;
    EXPECT_LE(told->first, moment);
    EXPECT_GE(told->last, moment);
    const int second = told->SecondOf(moment);
    const std::string text = UpperCase(formatter.Format(moment));
    EXPECT_EQ(second_of.try_emplace(text, second).first->second, second) << text;
  };
  constexpr std::int32_t kAutumn = 1'793'484'000;
  for (std::int32_t moment = kAutumn; moment < kAutumn + 3 * 86400; moment += 37) look_at(moment);
  std::mt19937 random(5);
  for (int i = 0; i < 3000; ++i) look_at(static_cast<std::int32_t>(random()));
  return telling;
}

TEST(MomentFormatter, OrdinarySettingsTellTheSecond) {
  for (const int lcid : {test::kUsEnglish, test::kGerman, test::kUkEnglish, test::kJapanese}) {
    const LocaleInfo locale = test::LocaleOf(lcid);
    EXPECT_GT(TellingTheirSecond(locale, locale.date_order), 10'000) << lcid;
  }
  LocaleInfo locale;
  for (const char* time : {"H:m:s", "tt hh:mm:ss", "h:mm:ss t", "ss.mm.HH", "hh'h'mm'm'ss tt", "h tt m s"}) {
    locale.time = time;
    EXPECT_GT(TellingTheirSecond(locale), 10'000) << time;
  }
}

TEST(MomentFormatter, MomentsTellTheirSecondsOneAfterTheOther) {
  FakeZone zone = SummerTime(3600, 7200);
  const LocaleInfo locale;
  MomentFormatter formatter(locale, 0, zone);
  int whole = 0, single = 0;
  const auto look_at = [&](std::int32_t moment) {
    const auto told = formatter.ToldAround(moment);
    ASSERT_TRUE(told) << moment;
    (told->first == told->last ? single : whole) += 1;
    for (const std::int32_t other : {told->first, moment, told->last}) {
      const LocalTime local = zone.FromUTC(other);
      EXPECT_EQ(told->SecondOf(other), local.hour * 3600 + local.minute * 60 + local.second) << other;
    }
  };
  for (const FakeZone::Change& change : zone.changes())
    for (const int by : {-40'000, -1, 0, 7, 40'000}) look_at(static_cast<std::int32_t>(change.from + by));
  EXPECT_GT(whole, 100);
  EXPECT_GT(single, 100);
}

TEST(MomentFormatter, SettingsThatLeaveADoubtTellNoSecond) {
  LocaleInfo locale;
  for (const char* time :
       {"", "HH:mm", "HH:ss", "mm:ss tt", "hh:mm:ss", "Hms", "H:mss", "HH:mm:ss d", "H '1' m s", "hmt s"}) {
    locale.time = time;
    EXPECT_EQ(TellingTheirSecond(locale), 0) << time;
  }
  locale.time = "h:mm:ss tt";
  const std::pair<const char*, const char*> markers[] = {{"", ""},   {"", "PM"}, {"m", "AM"},
                                                         {"A", "a"}, {"1", "2"}, {"PM", "p1"}};
  for (const auto& [am, pm] : markers) {
    locale.am = am;
    locale.pm = pm;
    EXPECT_EQ(TellingTheirSecond(locale), 0) << am;
  }
  locale = {};
  locale.time = "h:m:s t";
  locale.am = "xA";
  locale.pm = "xP";
  EXPECT_EQ(TellingTheirSecond(locale), 0);
  locale.time = "htt:m:s";
  locale.am = "";
  EXPECT_EQ(TellingTheirSecond(locale), 0);
}

TEST(MomentFormatter, NoDateInFrontOfTheTimeHidesItsSecond) {
  LocaleInfo locale;
  locale.time = "tt h:m:s";
  locale.am = "Sun";
  locale.pm = "day";
  for (const char* date : {"", "yy", "d. 12:3", "dddd", "ddd", "'Sun'", "M/d/yyyy tt"}) {
    locale.short_date = date;
    TellingTheirSecond(locale);
    TellingTheirSecond(locale, 1);
  }
}

}  // namespace
}  // namespace zendrix::core
