#include "admin/event_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/fit_text.h"
#include "core/moments.h"
#include "core/run_time_error.h"
#include "platform/memory/memory_family.h"
#include "support/grid_rows.h"

namespace zendrix::admin {
namespace {

using testing::Append;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

int RowTwipsOf(std::string_view text) {
  return static_cast<int>(text.size()) * 100;
}
int PixelsOf(std::string_view text) {
  return static_cast<int>(text.size()) * 6;
}

class EventRowsTest : public ::testing::Test {
 protected:
  LoadSettings Settings(int width = 1000, int order = 0) const {
    LoadSettings settings;
    settings.date_order = order;
    settings.description_width = width;
    return settings;
  }
  std::string Shown(std::int32_t seconds, int order, const platform::LocaleInfo& locale) {
    return core::DisplayTime(seconds, order, family_, locale);
  }
  std::string Fit(std::string_view text, int width) const {
    return core::FitTextToWidth(text, width, RowTwipsOf, PixelsOf, 15);
  }
  int RaisedBy(const std::function<void()>& act) {
    try {
      act();
    } catch (const core::RunTimeError& error) {
      return error.number;
    }
    return 0;
  }

  platform::MemoryFamily family_;
  EventRows rows_{family_, {RowTwipsOf, PixelsOf, 15}};
};

TEST_F(EventRowsTest, RowIsNoLargerThanFourNumbers) {
  EXPECT_EQ(sizeof(EventRow), 16u);
}

TEST_F(EventRowsTest, RowGivesItsTextsBack) {
  const std::uint32_t row = Append(rows_, {7, "", "HOST", "Tcp Port", "R", "the whole", 99});
  EXPECT_EQ(row, 0u);
  EXPECT_EQ(rows_.row(row).event_id, 7);
  EXPECT_EQ(rows_.row(row).time_key, 99);
  EXPECT_EQ(rows_.Host(row), "HOST");
  EXPECT_EQ(rows_.Monitor(row), "Tcp Port");
  EXPECT_EQ(rows_.Code(row), "R");
  EXPECT_EQ(rows_.Whole(row), "the whole");
}

TEST_F(EventRowsTest, EmptyTextsAreTextsLikeOthers) {
  const std::uint32_t row = Append(rows_, {1, "", "", "", "", ""});
  EXPECT_EQ(rows_.Host(row), "");
  EXPECT_EQ(rows_.Monitor(row), "");
  EXPECT_EQ(rows_.Code(row), "");
  EXPECT_EQ(rows_.Whole(row), "");
  EXPECT_THAT(rows_.RowsOfMonitor(""), ElementsAre(0));
}

TEST_F(EventRowsTest, RoomOfThePictureIsNotPartOfTheMonitor) {
  EXPECT_EQ(rows_.Monitor(Append(rows_, {1, "", "h", "     System"})), "System");
  EXPECT_EQ(rows_.Monitor(Append(rows_, {2, "", "h", "       System"})), "  System");
  EXPECT_EQ(rows_.Monitor(Append(rows_, {3, "", "h", "    System"})), "    System");
}

TEST_F(EventRowsTest, EqualSourcesAreKeptOnce) {
  Append(rows_, {1});
  Append(rows_, {2});
  Append(rows_, {3, "", "HOST", "System", "R"});
  EXPECT_EQ(rows_.source_count(), 2u);
  EXPECT_EQ(rows_.row(0).source, rows_.row(1).source);
  EXPECT_NE(rows_.row(0).source, rows_.row(2).source);
}

TEST_F(EventRowsTest, TimeIsMadeInTheFormOfItsLoad) {
  LoadSettings american = Settings(), german = Settings(1000, 1);
  german.locale.short_date = "dd.MM.yyyy";
  german.locale.date_separator = ".";
  german.locale.time = "HH:mm:ss";
  rows_.BeginLoad(american);
  Append(rows_, {1, "", "h", "m", "A", "x", 1'700'000'000});
  rows_.BeginLoad(german);
  Append(rows_, {2, "", "h", "m", "A", "x", 1'700'000'000});
  rows_.BeginLoad(american);
  Append(rows_, {3, "", "h", "m", "A", "x", 1'700'000'000});
  EXPECT_EQ(rows_.Time(0), Shown(1'700'000'000, 0, american.locale));
  EXPECT_EQ(rows_.Time(1), Shown(1'700'000'000, 1, german.locale));
  EXPECT_EQ(rows_.Time(2), rows_.Time(0));
  EXPECT_NE(rows_.Time(1), rows_.Time(0));
}

TEST_F(EventRowsTest, StretchBeginsOnlyWhereTheSettingsDiffer) {
  for (int load = 0; load < 3; ++load) {
    rows_.BeginLoad(Settings());
    Append(rows_, {load});
  }
  rows_.BeginLoad(Settings(2000));
  rows_.BeginLoad(Settings());  // no row came under the other width
  Append(rows_, {3});
  rows_.BeginLoad(Settings(3000));
  Append(rows_, {4});
  for (const std::uint32_t row : {0u, 1u, 2u, 3u}) EXPECT_EQ(rows_.texts().WidthSettingsOf(row), 1u) << row;
  EXPECT_EQ(rows_.texts().WidthSettingsOf(4), 2u);
  EXPECT_EQ(rows_.texts().TimeSettingsOf(4), 1u);
}

TEST_F(EventRowsTest, TimeThatIsNoNumberIsShownAsItStands) {
  rows_.BeginLoad(Settings());
  Append(rows_, {1, "soon", "h", "m", "A", "x", 5});
  rows_.Append({2, 5, rows_.AddSourceWithTime(rows_.row(0).source, ""), rows_.AddDescription("x")});
  EXPECT_EQ(rows_.Time(0), "soon");
  EXPECT_EQ(rows_.Time(1), "");
  EXPECT_EQ(rows_.Host(0), "h");
}

TEST_F(EventRowsTest, DescriptionIsFittedToTheWidthOfItsLoad) {
  const std::string text = "a description that is longer than its column";
  const std::string path = "C:\\Program Files\\A Folder\\Another\\program.exe";
  for (const int width : {1000, 2500, 1000}) {
    rows_.BeginLoad(Settings(width));
    Append(rows_, {1, "", "h", "m", "A", text});
    Append(rows_, {1, "", "h", "m", "A", path});
    Append(rows_, {1, "", "h", "m", "A", "four"});
  }
  for (int again = 0; again < 2; ++again) {
    std::uint32_t row = 0;
    for (const int width : {1000, 2500, 1000})
      for (const std::string& whole : {text, path, std::string("four")})
        EXPECT_EQ(rows_.Fitted(row++), Fit(whole, width)) << width;
  }
}

// What is kept was once all that was ever shown.
TEST_F(EventRowsTest, FittedTextsStayRightWhenMoreAreShownThanAreKept) {
  rows_.BeginLoad(Settings());
  const auto text = [](std::size_t i) { return "the description number " + std::to_string(i); };
  const std::size_t count = 3 * RowTexts::kKept;
  for (std::size_t i = 0; i < count; ++i) Append(rows_, {1, "", "h", "m", "A", text(i)});
  for (int round = 0; round < 2; ++round)
    for (std::uint32_t i = 0; i < count; i += 7) ASSERT_EQ(rows_.Fitted(i), Fit(text(i), 1000)) << i;
}

TEST_F(EventRowsTest, MonitorsRowsAscendWhateverTheCaseOfTheName) {
  Append(rows_, {1, "", "h", "System"});
  Append(rows_, {2, "", "h", "Tcp Port"});
  Append(rows_, {3, "", "h", "SYSTEM", "R"});
  EXPECT_THAT(rows_.RowsOfMonitor("system"), ElementsAre(0, 2));
  EXPECT_THAT(rows_.RowsOfMonitor("TCP PORT"), ElementsAre(1));
  EXPECT_THAT(rows_.RowsOfMonitor("unknown"), IsEmpty());
  Append(rows_, {4, "", "h", "system"});
  Append(rows_, {5, "", "h", "new"});
  EXPECT_THAT(rows_.RowsOfMonitor("System"), ElementsAre(0, 2, 3));
  EXPECT_THAT(rows_.RowsOfMonitor("NEW"), ElementsAre(4));
}

TEST_F(EventRowsTest, ListOfDescriptionsHoldsThoseWithoutARowToo) {
  Append(rows_, {1, "", "one", "m", "A", "two"});
  rows_.AddDescription("hidden");
  Append(rows_, {2, "", "h", "m", "A", "one"});
  Append(rows_, {3, "", "h", "m", "A", "TWO"});
  Append(rows_, {4, "", "h", "m", "A", "two"});
  std::vector<std::string> items;
  const store::CUList list = rows_.Descriptions();
  for (const auto& entry : list.ColList()) items.push_back(entry.item);
  EXPECT_THAT(items, ElementsAre("two", "hidden", "one"));
  EXPECT_EQ(rows_.description_count(), 4u);
}

// Also where a text was there as a host before it was a description.
TEST_F(EventRowsTest, DescriptionsComeInTheOrderOfTheirFirstLine) {
  Append(rows_, {1, "", "late", "early", "A", "first"});
  rows_.AddDescription("second");
  rows_.AddDescription("late");
  rows_.AddDescription("");
  rows_.AddDescription("third");
  rows_.AddDescription("first");
  rows_.AddDescription("early");
  std::vector<std::string_view> texts;
  for (const store::TextId id : rows_.DistinctDescriptions()) texts.push_back(rows_.pool().Text(id));
  EXPECT_THAT(texts, ElementsAre("first", "second", "late", "", "third", "early"));
}

TEST_F(EventRowsTest, CapacityInRowsRaisesOutOfMemoryAndKeepsWhatIsThere) {
  EventRows rows(family_, {}, {2, 1'000'000});
  Append(rows, {1});
  Append(rows, {2});
  EXPECT_EQ(RaisedBy([&] { Append(rows, {3}); }), core::kOutOfMemory);
  EXPECT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows.row(1).event_id, 2);
}

TEST_F(EventRowsTest, CapacityInBytesRaisesOutOfMemory) {
  EventRows rows(family_, {}, {1000, 10'000});
  const std::string long_text(9'000, 'x');
  Append(rows, {1, "", "h", "m", "A", long_text});
  Append(rows, {2, "", "h", "m", "A", long_text});  // the same text again takes nothing
  EXPECT_EQ(rows.size(), 2u);
  const auto append = [&] { Append(rows, {3, "", "h", "m", "A", long_text + "y"}); };
  EXPECT_EQ(RaisedBy(append), core::kOutOfMemory);
  EXPECT_EQ(rows.size(), 2u);
  rows.Clear();
  EXPECT_EQ(RaisedBy(append), 0);
}

TEST_F(EventRowsTest, CapacityThatIsReachedExactlyIsFull) {
  Append(rows_, {1});
  EventRows rows(family_, {}, {1000, rows_.bytes()});
  Append(rows, {1});
  ASSERT_EQ(rows.bytes(), rows_.bytes());
  EXPECT_EQ(RaisedBy([&] { Append(rows, {2}); }), core::kOutOfMemory);
}

TEST_F(EventRowsTest, ClearedRowsBeginAnew) {
  rows_.BeginLoad(Settings());
  Append(rows_, {1, "", "h", "System", "A", "old"});
  EXPECT_THAT(rows_.RowsOfMonitor("System"), ElementsAre(0));
  (void)rows_.RanksOf(EventRows::Key::kWhole);
  rows_.Clear();
  EXPECT_EQ(rows_.size(), 0u);
  EXPECT_EQ(rows_.source_count(), 0u);
  EXPECT_THAT(rows_.RowsOfMonitor("System"), IsEmpty());
  EXPECT_TRUE(rows_.Descriptions().ColList().empty());
  Append(rows_, {5, "", "h", "other", "A", "new", 42});
  EXPECT_EQ(rows_.Time(0), "42") << "no load has said how times are shown";
  EXPECT_EQ(rows_.Fitted(0), "new");
  EXPECT_THAT(rows_.RowsOfMonitor("Other"), ElementsAre(0));
}

TEST_F(EventRowsTest, RanksAreThoseOfTheTextsThatAreThere) {
  Append(rows_, {1, "", "b", "m2", "R", "y"});
  Append(rows_, {2, "", "A", "m1", "A", "z"});
  const auto rank = [&](EventRows::Key key, std::uint32_t row) {
    return rows_.RanksOf(key).Of(rows_.row(row));
  };
  using Key = EventRows::Key;
  for (const Key key : {Key::kHost, Key::kMonitor, Key::kCode}) EXPECT_GT(rank(key, 0), rank(key, 1));
  EXPECT_LT(rank(Key::kWhole, 0), rank(Key::kWhole, 1));
  Append(rows_, {3, "", "a", "m1", "b", "x"});
  EXPECT_EQ(rank(Key::kHost, 2), rank(Key::kHost, 1));
  EXPECT_GT(rank(Key::kCode, 2), rank(Key::kCode, 1));
  EXPECT_LT(rank(Key::kWhole, 2), rank(Key::kWhole, 0));
  EXPECT_EQ(rows_.TextOf(Key::kMonitor, 2), "m1");
  EXPECT_EQ(rows_.TextOf(Key::kWhole, 2), "x");
}

}  // namespace
}  // namespace zendrix::admin
