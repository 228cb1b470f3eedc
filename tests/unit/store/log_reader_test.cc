#include "store/log_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/store_fixture.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;

class LogReaderTest : public StoreFixture {
 protected:
  static constexpr char kLog[] = "/app/KorvessaEventLog.kvl";

  const store::EventLogTable* Read(const std::string& bytes) {
    platform_.files.Put(kLog, bytes);
    return ReadAgain();
  }
  const store::EventLogTable* ReadAgain() {
    log_reader_ = std::make_unique<store::CLog>(state_);
    log_reader_->InitClass(kLog);
    return log_reader_->table();
  }

  std::unique_ptr<store::CLog> log_reader_;
};

TEST_F(LogReaderTest, NewestLineComesFirstInTheUsersForm) {
  const auto* table = Read("11/21/2026 09:05:00 AM,Host,0,'Initial': one\r\n1700000000,HOST,42,two\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_THAT(table->columns, ElementsAre("ID", "Date_Time", "Host", "TID", "Description"));
  ASSERT_EQ(table->rows.size(), 2u);
  EXPECT_EQ(table->rows[0].ID, 2);
  EXPECT_THAT(table->rows[0].texts, ElementsAre("11/14/2023 10:13:20 PM", "HOST", "42", "two"));
  EXPECT_EQ(table->rows[1].ID, 1);
  EXPECT_THAT(table->rows[1].texts, ElementsAre("11/21/2026 09:05:00 AM", "Host", "0", "'Initial': one"));
}

TEST_F(LogReaderTest, MissingFileGivesNoTable) {
  EXPECT_EQ(ReadAgain(), nullptr);
}

TEST_F(LogReaderTest, EmptyFileGivesNoTable) {
  EXPECT_EQ(Read(""), nullptr);
}

TEST_F(LogReaderTest, OnlyOneFullLineGivesOneRow) {
  ASSERT_NE(Read("1,h,t,d"), nullptr);
  EXPECT_EQ(log_reader_->table()->rows.size(), 1u);
}

TEST_F(LogReaderTest, OnlyFullLineAtTheEndBehindAShortOneGivesNoTable) {
  EXPECT_EQ(Read("short\r\n1,h,t,d\r\n"), nullptr);
}

TEST_F(LogReaderTest, ShortLinesBeforeTheFirstFullOneAreNumbered) {
  ASSERT_NE(Read("short\r\n\r\n1,h,t,d\r\n2,h,t,e\r\n"), nullptr);
  EXPECT_EQ(log_reader_->table()->rows[1].ID, 3);
  EXPECT_EQ(log_reader_->table()->rows[0].ID, 4);
}

TEST_F(LogReaderTest, CommasOfTheMessageGoOnInDescrColumns) {
  const auto* table = Read("1,h,t,a,b,c\r\n2,h,t,d\r\n3,h,t,e,f,g,lost\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_THAT(table->columns,
              ElementsAre("ID", "Date_Time", "Host", "TID", "Description", "Descr5", "Descr6"));
  EXPECT_THAT(table->rows[0].texts, ElementsAre("01/01/1970 12:00:03 AM", "h", "t", "e", "f", "g"));
  EXPECT_THAT(table->rows[1].texts, ElementsAre("01/01/1970 12:00:02 AM", "h", "t", "d", "", ""));
}

TEST_F(LogReaderTest, FirstLineWithAShortMessageLosesTheRestOfLaterOnes) {
  const auto* table = Read("1,h,t,a\r\n2,h,t,d,rest is lost\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->columns.size(), 5u);
  EXPECT_EQ(table->rows[0].texts[3], "d");
}

TEST_F(LogReaderTest, IdOfTheNewestRowIsTheNumberOfLinesRead) {
  const auto* table = Read("1,h,t,a\r\nx\r\n\r\n2,h,t,d\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->rows.size(), 2u);
  EXPECT_EQ(table->rows[0].ID, 4);
}

TEST_F(LogReaderTest, ThreeFieldsMakeARowWithoutDescription) {
  const auto* table = Read("1,h,t,a\r\n2,h,t\r\n3,h\r\n");
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->rows.size(), 2u);
  EXPECT_THAT(table->rows[0].texts, ElementsAre("01/01/1970 12:00:02 AM", "h", "t", ""));
}

TEST_F(LogReaderTest, UnreadableDateOfALaterLineStaysEmpty) {
  const auto* table = Read("1,h,t,a\r\nno date,h,t,b\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_THAT(table->rows[0].texts, ElementsAre("", "h", "t", "b"));
}

TEST_F(LogReaderTest, UnreadableDateOfTheFirstFullLineGivesNoTable) {
  EXPECT_EQ(Read("no date,h,t,a\r\n1,h,t,b\r\n"), nullptr);
}

TEST_F(LogReaderTest, NumberBeyondThirtyTwoBitsGivesNoTable) {
  EXPECT_EQ(Read("1,h,t,a\r\n99999999999,h,t,b\r\n"), nullptr);
}

TEST_F(LogReaderTest, FailureInTheMiddleGivesNoTable) {
  std::string bytes;
  for (int i = 0; i < 20000; ++i) bytes += "1700000000,host,42,a line of the log\r\n";
  platform_.files.FailReadAfter(kLog, 300'000, platform::ErrorKind::kPermissionDenied);
  EXPECT_EQ(Read(bytes), nullptr);
  ASSERT_NE(ReadAgain(), nullptr);
  EXPECT_EQ(log_reader_->table()->rows.size(), 20000u);
}

TEST_F(LogReaderTest, TextsAreCutToTheirColumns) {
  const auto* table = Read("1," + std::string(60, 'h') + "," + std::string(60, 't') + "," +
                           std::string(1100, 'd') + "," + std::string(1100, 'e') + "\r\n");
  ASSERT_NE(table, nullptr);
  const auto& texts = table->rows[0].texts;
  EXPECT_EQ(texts[1], std::string(50, 'h'));
  EXPECT_EQ(texts[2], std::string(50, 't'));
  EXPECT_EQ(texts[3], std::string(1024, 'd'));
  EXPECT_EQ(texts[4], std::string(1024, 'e'));
}

TEST_F(LogReaderTest, LinesAreCleanedAndTrimmed) {
  const auto* table = Read("  1,h,t,a\tb  \r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->rows[0].texts[3], "a b");
}

TEST_F(LogReaderTest, DateFollowsTheUsersOrder) {
  platform_.locale.info.short_date = "dd/MM/yyyy";
  platform_.locale.info.date_order = 1;
  const auto* table = Read("1700000000,h,t,a\r\n21/11/2026 09:05:00 AM,h,t,b\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->rows[1].texts[0], "14/11/2023 10:13:20 PM");
  EXPECT_EQ(table->rows[0].texts[0], "21/11/2026 09:05:00 AM");
}

}  // namespace
}  // namespace zendrix::test
