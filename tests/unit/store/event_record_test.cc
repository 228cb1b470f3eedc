#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/moments.h"
#include "core/number_rules.h"
#include "core/text_rules.h"
#include "store/number_former.h"
#include "store/row_maker.h"
#include "support/store_fixture.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;

// Every test begins with one plain line, because the first line of a file is treated by rules of its own.
class EventRecordTest : public StoreFixture {
 protected:
  EventRecordTest() { AppendLine(Line("1600000000", "System", "first")); }
  void LoadWith(const std::vector<std::string>& lines) {
    AppendLines(lines);
    Load();
  }
};

TEST_F(EventRecordTest, StampOfOneItemGivesNotAvailableTexts) {
  LoadWith({"1700000000|5|1|d|r|c|"});
  EXPECT_EQ(Dump()[1],
            "2|1700000000|Hostname N/A|ThreadID N/A|Monitor N/A|5.0000000000000000|1.0000000000000000|d|r|c");
  ExpectLog("'CMkvlf_InitClass': Error in line: 1700000000|5|1|d|r|c|");
}

TEST_F(EventRecordTest, WrongStampIsLoggedOncePerRow) {
  const std::string line = "1700000000,a,b|5|1|x * y * z|r|c|";
  LoadWith({line});
  EXPECT_EQ(Rows(), 4u);
  for (int i = 0; i < 3; ++i) ExpectLog("'CMkvlf_InitClass': Error in line: " + line);
}

TEST_F(EventRecordTest, StampOfFiveItemsIsWrongToo) {
  LoadWith({"1700000000,a,b,Aggregation,e|5|1|x * y|r|c|"});
  EXPECT_THAT(Column(store::kMonitor), ElementsAre("System", "Monitor N/A", "Monitor N/A"));
  logged_.clear();
}

TEST_F(EventRecordTest, LoggedLineIsTheCleanedOne) {
  LoadWith({"  1700000000|\t5|1|d|r|c|   "});
  ExpectLog("'CMkvlf_InitClass': Error in line: 1700000000| 5|1|d|r|c|");
}

TEST_F(EventRecordTest, TwoPartsGiveTwoRowsWithTheSameFields) {
  LoadWith(
      {"1700000000,H,9,Running Processes|3|4|a.exe * b.exe|r|c,1|", Line("1700000001", "System", "next")});
  EXPECT_THAT(
      Dump(),
      ElementsAre(::testing::_,
                  "2|1700000000|H|9|Running Processes|3.0000000000000000|4.0000000000000000|a.exe|r|c,1",
                  "3|1700000000|H|9|Running Processes|3.0000000000000000|4.0000000000000000|b.exe|r|c,1",
                  ::testing::StartsWith("5|1700000001")));
}

TEST_F(EventRecordTest, AggregationWithPartsGivesOneExpandedRow) {
  LoadWith({Line("1700000000", "Aggregation", "K=a * b * c;L=d"), Line("1700000001", "System", "next")});
  EXPECT_THAT(IDs(), ElementsAre(1, 2, 3));
  EXPECT_EQ(Text(1, store::kDescription), "K=a;K=b;K=c;L=d");
}

TEST_F(EventRecordTest, AggregationIsKnownByItsExactName) {
  LoadWith({Line("1700000000", "aggregation", "K=a * b")});
  EXPECT_THAT(Column(store::kDescription), ElementsAre("first", "K=a", "b"));
}

TEST_F(EventRecordTest, EmptyPartsAreRowsToo) {
  LoadWith({Line("1700000000", "System", " * ")});
  EXPECT_THAT(Column(store::kDescription), ElementsAre("first", "", ""));
}

TEST_F(EventRecordTest, LongTextsAreCutToTheirColumns) {
  const std::string d(2000, 'd');
  LoadWith({std::string(60, '1') + "x," + std::string(60, 'h') + "," + std::string(60, 't') + "," +
            std::string(60, 'm') + "|1|1|" + d + "|" + d + "|" + d + "|"});
  EXPECT_EQ(Text(1, store::kDateTime), std::string(50, '1'));
  EXPECT_EQ(Text(1, store::kHostname), std::string(50, 'h'));
  EXPECT_EQ(Text(1, store::kThreadID), std::string(50, 't'));
  EXPECT_EQ(Text(1, store::kMonitor), std::string(50, 'm'));
  EXPECT_EQ(Text(1, store::kDescription), std::string(1536, 'd'));
  EXPECT_EQ(Text(1, store::kReaction), std::string(1536, 'd'));
  EXPECT_EQ(Text(1, store::kCode), std::string(100, 'd'));
  EXPECT_EQ(Items(reader_->HostList)[1], std::string(60, 'h'));
}

TEST_F(EventRecordTest, ExpandedDescriptionIsCutToo) {
  std::string values = "Key=1";
  for (int i = 0; i < 500; ++i) values += " * 1";
  LoadWith({Line("1700000000", "Aggregation", values)});
  std::string expanded;
  for (int i = 0; i <= 500; ++i) expanded += "Key=1;";
  EXPECT_EQ(Text(1, store::kDescription), expanded.substr(0, 1536));
}

TEST_F(EventRecordTest, TextDateIsShownAsItStandsAndDatedNow) {
  platform_.clock.SetUtc(1'234'567'890);
  LoadWith({Line("yesterday", "System", "x")});
  EXPECT_EQ(Text(1, store::kDateTime), "yesterday");
  EXPECT_EQ(Text(1, store::kDateUTC), "1234567890");
  EXPECT_EQ(reader_->LastDateUTC, "1234567890");
}

TEST_F(EventRecordTest, EmptyDateIsATextDate) {
  platform_.clock.SetUtc(1'234'567'890);
  LoadWith({Line("", "System", "x")});
  EXPECT_EQ(Text(1, store::kDateTime), "");
  EXPECT_EQ(Text(1, store::kDateUTC), "1234567890");
}

TEST_F(EventRecordTest, NumericDateIsKeptByItsDigitsAndShownInTheUsersForm) {
  platform_.family.offset_seconds = 3600;
  LoadWith({Line("01700000000", "System", "x"), Line("+5", "System", "y"), Line("-1", "System", "z")});
  EXPECT_THAT(Column(store::kDateUTC), ElementsAre("1600000000", "01700000000", "+5", "-1"));
  EXPECT_THAT(Column(store::kDateTime), ElementsAre("09/13/2020 01:26:40 PM", "11/14/2023 11:13:20 PM",
                                                    "01/01/1970 01:00:05 AM", "01/01/1970 12:59:59 AM"));
}

TEST_F(EventRecordTest, DateBeyondThirtyTwoBitsIsFatal) {
  AppendLine(Line("2147483648", "System", "x"));
  ExpectFatal([this] { Load(); }, "CMkvlf:InitClass (0).", 6);
}

TEST_F(EventRecordTest, LargestDateIsFine) {
  LoadWith({Line("2147483647", "System", "x")});
  EXPECT_EQ(Text(1, store::kDateTime), "01/19/2038 03:14:07 AM");
}

TEST_F(EventRecordTest, DigitsFollowedByLettersAreReadByTheirDigits) {
  LoadWith({"1700000000,H,1,System|12abc|-0.5x|d|r|c|", "1700000000,H,1,System||1 2|d|r|c|",
            "1700000000,H,1,System|1234567|.99|d|r|c|"});
  EXPECT_THAT(Column(store::kOriginal), ElementsAre("0.0000000000000000", "12.0000000000000000",
                                                    "0.0000000000000000", "1,234,567.0000000000000000"));
  EXPECT_THAT(Column(store::kChange), ElementsAre("1.0000000000000000", "-0.5000000000000000",
                                                  "12.0000000000000000", "0.9900000000000000"));
}

TEST_F(EventRecordTest, NumberIsCutToFiftyCharactersBeforeAndBehind) {
  LoadWith({"1700000000,H,1,System|" + std::string(60, '9') + "|" + std::string(49, ' ') + "123|d|r|c|"});
  const auto whole = core::Format16(core::Val(std::string(50, '9')), platform_.locale.info);
  EXPECT_EQ(Text(1, store::kOriginal), whole.substr(0, 50));
  EXPECT_EQ(Text(1, store::kChange), "1.0000000000000000");
}

TEST_F(EventRecordTest, TabInsideAFieldBecomesOneBlank) {
  LoadWith({Line("1700000000", "System", "a\tb") + "\t"});
  EXPECT_EQ(Text(1, store::kDescription), "a b");
  EXPECT_EQ(core::CleanLine("a\tb\x01\x1F\x80"), "a b  \x80");
}

TEST_F(EventRecordTest, ZeroBytesBecomeBlanks) {
  LoadWith({Line("1700000000", "System", std::string("a\0b", 3))});
  EXPECT_EQ(Text(1, store::kDescription), "a b");
}

TEST_F(EventRecordTest, TrimmedBlanksBelongToNoField) {
  LoadWith({"   1700000000,H,1,System|1|2|  d  |r|c|   "});
  EXPECT_EQ(Dump()[1], "2|1700000000|H|1|System|1.0000000000000000|2.0000000000000000|  d  |r|c");
}

TEST_F(EventRecordTest, ShortLinesUseUpANumber) {
  LoadWith({"1|2|3|4|5|6", "", Line("1700000000", "System", "x")});
  EXPECT_THAT(IDs(), ElementsAre(1, 4));
}

TEST_F(EventRecordTest, EmptyDescriptionGivesNoRowButFeedsTheLists) {
  LoadWith({"1700000000,H9,1,New Monitor|77|1||r|c|"});
  EXPECT_EQ(Rows(), 1u);
  EXPECT_THAT(Items(reader_->HostList), ElementsAre("HOST", "H9"));
  EXPECT_THAT(Items(reader_->OriginalList), ElementsAre("0", "77"));
}

TEST(UTCToTextTest, PadsNothing) {
  platform::MemoryPlatform platform;
  EXPECT_EQ(core::UTCToText(9 * 3600 + 5 * 60, 0, platform.family), "1/1/1970 9:5:0");
  EXPECT_EQ(core::UTCToText(9 * 3600 + 5 * 60, 1, platform.family), "1/1/1970 9:5:0");
  EXPECT_EQ(core::UTCToText(31 * 86400, 2, platform.family), "1970/2/1 0:0:0");
}

TEST(ExpandDesFieldTest, TurnsGroupsIntoPairs) {
  using store::ExpandDesField;
  EXPECT_EQ(ExpandDesField(""), "");
  EXPECT_EQ(ExpandDesField("K=a * b * c"), "K=a;K=b;K=c");
  EXPECT_EQ(ExpandDesField("K=a"), "K=a");
  EXPECT_EQ(ExpandDesField("a * b"), "a * b");
  EXPECT_EQ(ExpandDesField("K=a * L=b * c"), "K=a;L=b;K=c");
  EXPECT_EQ(ExpandDesField("x;K=a * b;;y=1;"), "x;K=a;K=b;;y=1;");
  EXPECT_EQ(ExpandDesField("a * K=b"), "a * K=a;K=b");
  EXPECT_EQ(ExpandDesField("K= * "), "K=;K=");
  EXPECT_EQ(ExpandDesField("K=a*b"), "K=a*b");
  EXPECT_EQ(ExpandDesField(";"), ";");
}

TEST(ExpandDesFieldTest, NeedNotBuildMoreThanIsWanted) {
  std::string text = std::string(3000, 'p') + "=1";
  for (int i = 0; i < 100; ++i) text += " * 2";
  const std::string whole = store::ExpandDesField(text);
  for (const std::size_t wanted : {std::size_t{0}, std::size_t{1}, std::size_t{1536}, std::size_t{9000}}) {
    const std::string part = store::ExpandDesField(text, wanted);
    EXPECT_EQ(part.substr(0, wanted), whole.substr(0, wanted));
    EXPECT_LT(part.size(), wanted + 7000);
  }
}

TEST(CUListTest, KeysDoNotRegardCaseAndTheFirstItemStays) {
  store::CUList list;
  list.SetItemData("Key", "one");
  list.SetItemData("KEY", "two");
  list.SetItemData("other", "three");
  ASSERT_EQ(list.ColList().size(), 2u);
  EXPECT_EQ(list.ColList()[0].key, "Key");
  EXPECT_EQ(*list.ItemData("kEY"), "one");
  EXPECT_EQ(list.ItemData("none"), nullptr);
  list.Clear();
  EXPECT_TRUE(list.ColList().empty());
  EXPECT_EQ(list.ItemData("Key"), nullptr);
}

TEST(CUListTest, ManyKeysKeepTheirOrder) {
  store::CUList list;
  for (int i = 0; i < 1000; ++i) {
    list.SetItemData("key" + std::to_string(i), std::to_string(i));
    list.SetItemData("KEY" + std::to_string(i / 2), "late");
  }
  ASSERT_EQ(list.ColList().size(), 1000u);
  for (std::size_t i = 0; i < 1000; ++i) EXPECT_EQ(list.ColList()[i].item, std::to_string(i));
}

// The quick way of plain decimals against the general rules.
class NumberFormerTest : public ::testing::TestWithParam<platform::LocaleInfo> {};

TEST_P(NumberFormerTest, AgreesWithTheGeneralRules) {
  store::TextPool texts;
  store::NumberFormer former(GetParam(), texts);
  std::vector<std::string> fields = {"",
                                     "0",
                                     "-0",
                                     "-0.0",
                                     "007",
                                     "5.",
                                     ".5",
                                     "-1",
                                     "- 1",
                                     "+3",
                                     "1e3",
                                     "1.2.3",
                                     "12ab",
                                     " 12",
                                     "1 2",
                                     "1,234",
                                     "&H1F",
                                     "-.5",
                                     "-5.",
                                     "0.1",
                                     "999",
                                     "1000",
                                     "-1000",
                                     "123456789012345",
                                     "1234567890123456",
                                     "0.123456789012345",
                                     "0.1234567890123456",
                                     "123456789.123456",
                                     "0000000000000000000000001",
                                     "--1",
                                     ".",
                                     "-",
                                     "1-"};
  std::uint64_t state = 42;
  const auto random = [&state] {
    return state = state * 6364136223846793005u + 1442695040888963407u, state >> 33;
  };
  for (int i = 0; i < 3000; ++i) {
    std::string field = random() % 3 == 0 ? "-" : "";
    for (std::uint64_t n = random() % 12; n > 0; --n) field += static_cast<char>('0' + random() % 10);
    if (random() % 2 == 0) field += '.';
    for (std::uint64_t n = random() % 9; n > 0; --n) field += static_cast<char>('0' + random() % 10);
    fields.push_back(field);
  }
  for (const std::string& field : fields) {
    const std::string expected = core::Format16(core::Val(field), GetParam()).substr(0, 50);
    EXPECT_EQ(texts.Text(former.Form(field)), expected) << field;
    EXPECT_EQ(texts.Text(former.Form(field)), expected) << field;
  }
}

platform::LocaleInfo German() {
  platform::LocaleInfo locale;
  locale.decimal = ",";
  locale.thousands = ".";
  return locale;
}

platform::LocaleInfo Indian() {
  platform::LocaleInfo locale;
  locale.grouping = "3;2;0";
  return locale;
}

platform::LocaleInfo Accountant() {
  platform::LocaleInfo locale;
  locale.negative_order = 0;
  return locale;
}

INSTANTIATE_TEST_SUITE_P(Locales, NumberFormerTest,
                         ::testing::Values(platform::LocaleInfo(), German(), Indian(), Accountant()));

}  // namespace
}  // namespace zendrix::test
