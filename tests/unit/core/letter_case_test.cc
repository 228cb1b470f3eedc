#include "core/letter_case.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/all_bytes.h"
#include "support/golden_table.h"

namespace zendrix::core {
namespace {

using test::AllBytes;
using test::ByteText;
using test::GoldenReport;
using test::GoldenRow;
using test::LoadGolden;

TEST(CaseGolden, ChangesCaseOfEveryByte) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "misc_case.tsv")) {
    const char byte = static_cast<char>(row.Hex("byte"));
    report.Compare(row, ByteText(row.Hex("byte")), ByteText(row.Hex("upper")) + ByteText(row.Hex("lower")),
                   std::string{UpperByte(byte), LowerByte(byte)});
  }
}

TEST(CaseGolden, CapitalisesWords) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "misc_proper.tsv")) {
    report.Compare(row, row.Text("text"), row.Text("proper"), ProperCase(row.Text("text")));
  }
}

TEST(Case, UpperAndLowerAreIdempotentAndAgree) {
  for (char byte : AllBytes()) {
    EXPECT_EQ(UpperByte(UpperByte(byte)), UpperByte(byte));
    EXPECT_EQ(LowerByte(LowerByte(byte)), LowerByte(byte));
    EXPECT_TRUE(EqualNoCase(std::string(1, UpperByte(byte)), std::string(1, LowerByte(byte))));
  }
}

TEST(Case, ComparesWithoutRegardToCase) {
  EXPECT_TRUE(EqualNoCase("M\xC4rz", "m\xE4RZ"));
  EXPECT_FALSE(EqualNoCase("ab", "abc"));
  EXPECT_FALSE(EqualNoCase("a", "b"));
}

TEST(ProperCase, IsIdempotent) {
  const std::string once = ProperCase("thE quick\tBROWN\nfox-trot o'neil");
  EXPECT_EQ(once, "The Quick\tBrown\nFox-trot O'neil");
  EXPECT_EQ(ProperCase(once), once);
}

TEST(ProperCase, EveryKindOfBlankBeginsAWordAndNothingBesideThem) {
  EXPECT_EQ(ProperCase("a\tb\nc\vd\fe\rf g"), "A\tB\nC\vD\fE\rF G");
  EXPECT_EQ(ProperCase("a\bb a\x0E"
                       "b"),
            "A\bb A\x0E"
            "b");
}

}  // namespace
}  // namespace zendrix::core
