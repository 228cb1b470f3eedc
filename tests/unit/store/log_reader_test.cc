#include "store/log_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/run_time_error.h"
#include "support/held_bytes.h"
#include "support/store_fixture.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;

class LogReaderTest : public StoreFixture {
 protected:
  static constexpr char kLog[] = "/app/KorvessaEventLog.kvl";

  using Table = std::shared_ptr<const store::EventLogTable>;

  Table Read(const std::string& bytes) {
    platform_.files.Put(kLog, bytes);
    return ReadAgain();
  }
  Table ReadAgain() {
    store::CLog log(state_);
    log.InitClass(kLog);
    return log.table();
  }
  static std::vector<std::string> Columns(const Table& table) {
    std::vector<std::string> names;
    for (std::size_t column = 0; column < table->ColumnCount(); ++column)
      names.push_back(table->ColumnName(column));
    return names;
  }
  // All columns behind ID.
  static std::vector<std::string> Texts(const Table& table, std::size_t row) {
    std::vector<std::string> texts;
    for (std::size_t column = 1; column < table->ColumnCount(); ++column)
      texts.emplace_back(table->Text(row, column));
    return texts;
  }
  static std::vector<std::int32_t> IDs(const Table& table) {
    std::vector<std::int32_t> ids;
    for (std::size_t row = 0; row < table->RowCount(); ++row) ids.push_back(table->ID(row));
    return ids;
  }
};

TEST_F(LogReaderTest, NewestLineComesFirstInTheUsersForm) {
  const auto table = Read("11/21/2026 09:05:00 AM,Host,0,'Initial': one\r\n1700000000,HOST,42,two\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_THAT(Columns(table), ElementsAre("ID", "Date_Time", "Host", "TID", "Description"));
  ASSERT_EQ(table->RowCount(), 2u);
  EXPECT_EQ(table->ID(0), 2);
  EXPECT_THAT(Texts(table, 0), ElementsAre("11/14/2023 10:13:20 PM", "HOST", "42", "two"));
  EXPECT_EQ(table->ID(1), 1);
  EXPECT_THAT(Texts(table, 1), ElementsAre("11/21/2026 09:05:00 AM", "Host", "0", "'Initial': one"));
}

TEST_F(LogReaderTest, MissingFileGivesNoTable) {
  EXPECT_EQ(ReadAgain(), nullptr);
}

TEST_F(LogReaderTest, EmptyFileGivesNoTable) {
  EXPECT_EQ(Read(""), nullptr);
}

TEST_F(LogReaderTest, OnlyOneFullLineGivesOneRow) {
  const auto table = Read("1,h,t,d");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->RowCount(), 1u);
}

TEST_F(LogReaderTest, OnlyFullLineAtTheEndBehindAShortOneGivesNoTable) {
  EXPECT_EQ(Read("short\r\n1,h,t,d\r\n"), nullptr);
}

TEST_F(LogReaderTest, ShortLinesBeforeTheFirstFullOneAreNumbered) {
  const auto table = Read("short\r\n\r\n1,h,t,d\r\n2,h,t,e\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_THAT(IDs(table), ElementsAre(4, 3));
}

TEST_F(LogReaderTest, CommasOfTheMessageGoOnInDescrColumns) {
  const auto table = Read("1,h,t,a,b,c\r\n2,h,t,d\r\n3,h,t,e,f,g,lost\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_THAT(Columns(table),
              ElementsAre("ID", "Date_Time", "Host", "TID", "Description", "Descr5", "Descr6"));
  EXPECT_THAT(Texts(table, 0), ElementsAre("01/01/1970 12:00:03 AM", "h", "t", "e", "f", "g"));
  EXPECT_THAT(Texts(table, 1), ElementsAre("01/01/1970 12:00:02 AM", "h", "t", "d", "", ""));
}

TEST_F(LogReaderTest, FirstLineWithAShortMessageLosesTheRestOfLaterOnes) {
  const auto table = Read("1,h,t,a\r\n2,h,t,d,rest is lost\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->ColumnCount(), 5u);
  EXPECT_EQ(table->Text(0, 4), "d");
}

TEST_F(LogReaderTest, IdOfTheNewestRowIsTheNumberOfLinesRead) {
  const auto table = Read("1,h,t,a\r\nx\r\n\r\n2,h,t,d\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->RowCount(), 2u);
  EXPECT_EQ(table->ID(0), 4);
}

TEST_F(LogReaderTest, ThreeFieldsMakeARowWithoutDescription) {
  const auto table = Read("1,h,t,a\r\n2,h,t\r\n3,h\r\n");
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->RowCount(), 2u);
  EXPECT_THAT(Texts(table, 0), ElementsAre("01/01/1970 12:00:02 AM", "h", "t", ""));
}

TEST_F(LogReaderTest, UnreadableDateOfALaterLineStaysEmpty) {
  const auto table = Read("1,h,t,a\r\nno date,h,t,b\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_THAT(Texts(table, 0), ElementsAre("", "h", "t", "b"));
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
  const auto table = ReadAgain();
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->RowCount(), 20000u);
}

TEST_F(LogReaderTest, TextsAreCutToTheirColumns) {
  const auto table = Read("1," + std::string(60, 'h') + "," + std::string(60, 't') + "," +
                          std::string(1100, 'd') + "," + std::string(1100, 'e') + "\r\n");
  ASSERT_NE(table, nullptr);
  const auto texts = Texts(table, 0);
  EXPECT_EQ(texts[1], std::string(50, 'h'));
  EXPECT_EQ(texts[2], std::string(50, 't'));
  EXPECT_EQ(texts[3], std::string(1024, 'd'));
  EXPECT_EQ(texts[4], std::string(1024, 'e'));
}

TEST_F(LogReaderTest, LinesAreCleanedAndTrimmed) {
  const auto table = Read("  1,h,t,a\tb  \r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->Text(0, 4), "a b");
}

TEST_F(LogReaderTest, DateFollowsTheUsersOrder) {
  platform_.locale.info.short_date = "dd/MM/yyyy";
  platform_.locale.info.date_order = 1;
  const auto table = Read("1700000000,h,t,a\r\n21/11/2026 09:05:00 AM,h,t,b\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->Text(1, 1), "14/11/2023 10:13:20 PM");
  EXPECT_EQ(table->Text(0, 1), "21/11/2026 09:05:00 AM");
}

TEST_F(LogReaderTest, FieldThatALineDoesNotHaveIsNullAndAnEmptyOneIsNot) {
  const auto table = Read("1,h,t,a,b\r\n2,h,,\r\nno date,h,t,d\r\n");
  ASSERT_NE(table, nullptr);
  for (const std::size_t column : {1u, 2u, 3u, 4u, 5u}) {
    EXPECT_EQ(table->IsNull(0, column), column == 1 || column == 5) << column;
    EXPECT_EQ(table->IsNull(1, column), column == 5) << column;
    EXPECT_FALSE(table->IsNull(2, column)) << column;
  }
}

TEST_F(LogReaderTest, ColumnsThatTheTableDoesNotHaveRaise3265) {
  const auto table = Read("1,h,t,a,b\r\n2,h,t\r\n");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->Text(0, 5), "");
  EXPECT_EQ(table->Text(1, 5), "b");
  const auto number_raised_by = [](const auto& act) {
    try {
      act();
    } catch (const core::RunTimeError& error) {
      return error.number;
    }
    return 0;
  };
  EXPECT_EQ(number_raised_by([&] { table->Text(0, 0); }), 3265);
  EXPECT_EQ(number_raised_by([&] { table->Text(1, 6); }), 3265);
  EXPECT_EQ(number_raised_by([&] { table->IsNull(1, 6); }), 3265);
  EXPECT_EQ(number_raised_by([&] { table->ColumnName(6); }), 3265);
}

TEST_F(LogReaderTest, TableOutlivesItsReaderAndANewReading) {
  platform_.files.Put(kLog, "1,h,t,old\r\n");
  auto log = std::make_unique<store::CLog>(state_);
  log->InitClass(kLog);
  const auto table = log->table();
  platform_.files.Put(kLog, "1,h,t,new\r\n");
  log->InitClass(kLog);
  EXPECT_EQ(log->table()->Text(0, 4), "new");
  log.reset();
  EXPECT_EQ(table->Text(0, 4), "old");
}

// Every row took the columns of the first full line: 46 kB of commas became 622 MB.
TEST_F(LogReaderTest, FirstLineOfManyFieldsCostsShortRowsNothing) {
  std::string bytes = "1,h,t,d" + std::string(10'000, ',') + "\r\n";
  for (int i = 0; i < 2'000; ++i) bytes += "2,h,t\r\n";
  const std::size_t before = HeldBytes();
  platform_.files.Put(kLog, bytes);
  const std::size_t file = HeldBytes();
  const auto table = ReadAgain();
  const std::size_t held = HeldBytes() - file;
  EXPECT_GE(file - before, bytes.size());  // the measure sees what is held
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->ColumnCount(), 10'005u);
  EXPECT_EQ(table->RowCount(), 2'001u);
  EXPECT_EQ(table->Text(0, 10'004), "");
  EXPECT_LT(held, 24 * bytes.size());
}

}  // namespace
}  // namespace zendrix::test
