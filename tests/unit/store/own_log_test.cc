// The console's own log, written by the console and read back by the log reader.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/legible_locale.h"
#include "core/moments.h"
#include "store/log_reader.h"
#include "support/built_locales.h"
#include "support/console_world.h"

namespace zendrix::store {
namespace {

using ::testing::ElementsAre;

class OwnLog : public ::testing::TestWithParam<const char*> {
 protected:
  OwnLog() {
    const std::string source = GetParam();
    platform::LocaleInfo& locale = world_.platform.locale.info;
    if (source != "C") locale = core::WithReadableDates(test::SettingsOf(test::BuildLocale(source)), 2026);
    world_.platform.clock.SetUtc(kMoment);
    shown_ = core::DisplayTime(kMoment, locale.date_order, world_.platform.family, locale);
  }

  void Write(const std::string& message) {
    world_.quiet.Expect("'proc': " + message);
    world_.log.WriteLog("proc", message);
  }
  std::shared_ptr<const EventLogTable> Read() {
    log_.InitClass(world_.InFolder(core::kConsoleLogName));
    return log_.table();
  }
  static std::vector<std::string> Texts(const EventLogTable& table, std::size_t row) {
    std::vector<std::string> texts;
    for (std::size_t column = 1; column < table.ColumnCount(); ++column)
      texts.emplace_back(table.Text(row, column));
    return texts;
  }

  static constexpr std::int32_t kMoment = 1795225507;  // 2026-11-21 01:45:07 UTC

  testing::ConsoleWorld world_;
  std::string shown_;  // the moment as the console shows it
  CLog log_{world_.state};
};

TEST_P(OwnLog, LineComesBackWithItsTimeAndMessage) {
  Write("Start UI.");
  const auto table = Read();
  ASSERT_NE(table, nullptr);
  EXPECT_NE(shown_.find("07"), std::string::npos) << shown_ << " has no seconds";
  ASSERT_EQ(table->ColumnCount(), 5U);
  EXPECT_EQ(table->ColumnName(4), "Description");
  ASSERT_EQ(table->RowCount(), 1U);
  EXPECT_THAT(Texts(*table, 0), ElementsAre(shown_, "Testhost", "0", "'proc': Start UI."));
}

TEST_P(OwnLog, RestOfAMessageBehindALineBreakIsPassedOver) {
  Write("one\r\ntwo, too short");
  Write("three");
  const auto table = Read();
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->RowCount(), 2U);
  EXPECT_EQ(table->ID(0), 3);
  EXPECT_THAT(Texts(*table, 0), ElementsAre(shown_, "Testhost", "0", "'proc': three"));
  EXPECT_EQ(table->ID(1), 1);
  EXPECT_THAT(Texts(*table, 1), ElementsAre(shown_, "Testhost", "0", "'proc': one"));
}

TEST_P(OwnLog, RestOfAMessageWithEnoughCommasIsARowWithoutATime) {
  Write("one\r\ntwo,three,four,five");
  const auto table = Read();
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->RowCount(), 2U);
  EXPECT_EQ(table->ID(0), 2);
  EXPECT_THAT(Texts(*table, 0), ElementsAre("", "three", "four", "five"));
}

TEST_P(OwnLog, LoneLineFeedEndsALineAndALoneCarriageReturnIsABlank) {
  Write("one\rtwo\nthree");
  const auto table = Read();
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->RowCount(), 1U);
  EXPECT_THAT(Texts(*table, 0), ElementsAre(shown_, "Testhost", "0", "'proc': one two"));
}

INSTANTIATE_TEST_SUITE_P(Locales, OwnLog,
                         ::testing::Values("C", "de_DE", "nb_NO", "eu_ES", "ar_SA", "ja_JP", "ff_SN"),
                         [](const auto& locale) { return std::string(locale.param); });

}  // namespace
}  // namespace zendrix::store
