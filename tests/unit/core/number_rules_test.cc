#include "core/number_rules.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "core/run_time_error.h"
#include "support/golden_table.h"
#include "support/locales.h"

namespace zendrix::core {
namespace {

using test::GoldenReport;
using test::GoldenRow;
using test::LoadGolden;
using test::LocaleOf;

constexpr std::array kNumberLocales = {test::kUsEnglish, test::kGerman, test::kUkEnglish, test::kJapanese};

// What a conversion gives, in the words of the tables.
std::string Outcome(const std::function<std::string()>& convert) {
  try {
    return convert();
  } catch (const RunTimeError& error) {
    if (error.number == kTypeMismatch) return "TYPEMISMATCH";
    if (error.number == kOverflow) return "OVERFLOW";
    return "error " + std::to_string(error.number);
  }
}

int ErrorOf(const std::function<void()>& act) {
  try {
    act();
  } catch (const RunTimeError& error) {
    return error.number;
  }
  return 0;
}

std::string NineDigits(float value) {
  std::array<char, 40> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), static_cast<double>(value),
                                 std::chars_format::general, 9)
                       .ptr;
  return std::string(text.data(), end);
}

std::string BitsOf(double value) {
  std::string text(16, '0');
  const auto bits = std::bit_cast<std::uint64_t>(value);
  for (std::size_t i = 0; i < 16; ++i) text[i] = "0123456789abcdef"[bits >> (60 - 4 * i) & 15];
  return text;
}

platform::LocaleInfo UsNumbers() {
  return LocaleOf(test::kUsEnglish);
}

TEST(NumberGolden, ReadsTextsAsDoubles) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "num_parse.tsv")) {
    const platform::LocaleInfo locale = LocaleOf(row.Int("lcid"));
    const std::string text = row.Text("text");
    double value = 0;
    const std::string got = Outcome([&] {
      value = CDbl(text, locale);
      return std::string("OK");
    });
    const bool compares_bits = got == "OK" && !row.IsAny("bits");
    if (got == "OK" && row.IsAny("bits")) {
      EXPECT_EQ(value, 0) << row.Id();
    }
    report.Compare(row, text, row.Raw("result") + (compares_bits ? " " + row.Raw("bits") : ""),
                   got + (compares_bits ? " " + BitsOf(value) : ""));
    EXPECT_EQ(IsNumeric(text, locale), row.Raw("result") == "OK") << row.Id();
  }
}

TEST(NumberGolden, ConvertsTextsToNarrowTypes) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "num_convert.tsv")) {
    const platform::LocaleInfo locale = LocaleOf(row.Int("lcid"));
    const std::string text = row.Text("text");
    const std::string got = Outcome([&] { return std::to_string(CLng(text, locale)); }) + " " +
                            Outcome([&] { return std::to_string(CInt(text, locale)); }) + " " +
                            Outcome([&] { return std::to_string(CByte(text, locale)); }) + " " +
                            Outcome([&] { return NineDigits(CSng(text, locale)); });
    report.Compare(row, text,
                   row.Raw("i4") + " " + row.Raw("i2") + " " + row.Raw("ui1") + " " + row.Raw("r4"), got);
  }
}

TEST(NumberGolden, RoundsTiesToEven) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "num_round.tsv")) {
    const double value = row.Number("value");
    const std::string got = Outcome([&] { return std::to_string(RoundToLong(value)); }) + " " +
                            Outcome([&] { return std::to_string(RoundToInt(value)); }) + " " +
                            Outcome([&] { return std::to_string(RoundToByte(value)); });
    report.Compare(row, row.Raw("value"), row.Raw("i4") + " " + row.Raw("i2") + " " + row.Raw("ui1"), got);
  }
}

TEST(NumberGolden, WritesPlainTexts) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "num_text.tsv")) {
    const platform::LocaleInfo locale = LocaleOf(row.Int("lcid"));
    const double value = row.Number("value");
    report.Compare(row, row.Raw("value"), row.Text("r8_text") + " " + row.Text("r4_text"),
                   TextOf(value, locale) + " " + TextOf(static_cast<float>(value), locale));
  }
}

TEST(NumberGolden, WritesSixteenDecimals) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "num_format16.tsv")) {
    report.Compare(row, row.Raw("value"), row.Text("text"),
                   Format16(row.Number("value"), LocaleOf(row.Int("lcid"))));
  }
}

TEST(NumberGolden, WritesByPicture) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "num_format.tsv")) {
    report.Compare(row, row.Raw("value") + " " + row.Raw("format"), row.Text("text"),
                   FormatPicture(row.Number("value"), row.Text("format"), LocaleOf(row.Int("lcid"))));
  }
}

TEST(NumberGolden, WritesWithDecimalsLeadingDigitParenthesesAndGroups) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "num_formatnumber.tsv")) {
    const auto choice = [&](const char* column) { return static_cast<Tristate>(row.Int(column)); };
    report.Compare(row, row.Raw("value"), row.Text("text"),
                   FormatNumber(row.Number("value"), row.Int("digits"), choice("leading"), choice("parens"),
                                choice("grouping"), UsNumbers()));
  }
}

TEST(Val, ReadsLeadingDigitsAndStopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(Val("24 and 57"), 24);
  EXPECT_EQ(Val("0.99abc"), 0.99);
  EXPECT_EQ(Val("1.5.3"), 1.5);
  EXPECT_EQ(Val("12,5"), 12);
  EXPECT_EQ(Val("$5"), 0);
}

TEST(Val, GivesZeroWithoutDigits) {
  for (std::string_view text : {"", " ", "abc", "-", ".", "-.", "+", "&", "&H", "&HG", "&O9", "e5", "N/A"}) {
    EXPECT_EQ(Val(text), 0) << text;
  }
}

TEST(Val, PassesOverBlanksTabsAndLineFeedsEverywhere) {
  EXPECT_EQ(Val(" \t\n 1 2\t3\n4"), 1234);
  EXPECT_EQ(Val(" 1615 198th Street"), 1615198);
  EXPECT_EQ(Val("- 5 . 2 5"), -5.25);
  EXPECT_EQ(Val("1 e 2"), 100);
}

TEST(Val, DoesNotPassOverACarriageReturn) {
  EXPECT_EQ(Val("1\r2"), 1);
}

TEST(Val, ReadsExponentsWrittenWithEAndWithD) {
  EXPECT_EQ(Val("1.5e3"), 1500);
  EXPECT_EQ(Val("1.5D-3"), 0.0015);
  EXPECT_EQ(Val("2d2xyz"), 200);
}

TEST(Val, LeavesOutAnExponentWithoutDigits) {
  EXPECT_EQ(Val("3e"), 3);
  EXPECT_EQ(Val("3e+"), 3);
  EXPECT_EQ(Val("3ex"), 3);
}

TEST(Val, ReadsHexadecimalAndOctalAsBitsOfTheSmallestInteger) {
  EXPECT_EQ(Val("&HFF"), 255);
  EXPECT_EQ(Val("&hFFFF"), -1);
  EXPECT_EQ(Val("&HFFFF&"), 65535);
  EXPECT_EQ(Val("&H10000"), 65536);
  EXPECT_EQ(Val("&HFFFFFFFF"), -1);
  EXPECT_EQ(Val("&O17"), 15);
  EXPECT_EQ(Val("&o8"), 0);
}

TEST(Val, KnowsNoLocale) {
  EXPECT_EQ(Val("1.5"), 1.5);
  EXPECT_EQ(Val("1,5"), 1);
}

TEST(Val, StaysFiniteForAnyExponent) {
  EXPECT_EQ(Val("1e400"), std::numeric_limits<double>::max());
  EXPECT_EQ(Val("-1e99999999999999999999"), -std::numeric_limits<double>::max());
  EXPECT_EQ(Val("1e-99999999999999999999"), 0);
  EXPECT_EQ(Val("0e99999"), 0);
  EXPECT_EQ(Val(std::string(5000, '9')), std::numeric_limits<double>::max());
  EXPECT_EQ(Val("0." + std::string(5000, '0') + "1"), 0);
  EXPECT_EQ(Val(std::string(400, '1') + "e-399"), 1.1111111111111112);
}

// Digits beyond those that can change the value are not kept, but the places in front of the point count.
TEST(Val, CountsThePlacesOfAnyNumberOfDigits) {
  const std::string ones(900, '1');
  EXPECT_EQ(Val(ones + "e-899"), 1.1111111111111112);
  EXPECT_EQ(Val(ones + "e-900"), 0.11111111111111111);
  EXPECT_EQ(Val("5" + std::string(850, '0') + "e-850"), 5);
  EXPECT_EQ(Val(ones + "." + ones + "e-899"), 1.1111111111111112);
  EXPECT_EQ(Val("0." + ones), 0.11111111111111111);
  EXPECT_EQ(CDbl(ones + "e-899", UsNumbers()), 1.1111111111111112);
}

// What is beyond sixty-four bits is not read, like any character that cannot continue the number.
TEST(Val, ReadsNoMoreHexadecimalDigitsThanSixtyFourBitsHold) {
  EXPECT_EQ(Val("&H" + std::string(16, 'F')), 18446744073709551615.0);
  EXPECT_EQ(Val("&H" + std::string(17, 'F')), 18446744073709551615.0);
  EXPECT_EQ(Val("&H1" + std::string(16, '0')), 1152921504606846976.0);
  EXPECT_EQ(Val("&H0000000000000000F"), 15);
  EXPECT_EQ(Val("&O1" + std::string(21, '7')), 18446744073709551615.0);
}

TEST(Val, GivesNoNegativeZero) {
  EXPECT_FALSE(std::signbit(Val("-0")));
}

TEST(IsNumeric, TakesAnExponentWrittenWithD) {
  EXPECT_TRUE(IsNumeric("1d5", UsNumbers()));
  EXPECT_EQ(CDbl("1D5", UsNumbers()), 100000);
}

TEST(IsNumeric, RefusesEmptyTextsAndWords) {
  EXPECT_FALSE(IsNumeric("", UsNumbers()));
  EXPECT_FALSE(IsNumeric("N/A", UsNumbers()));
}

TEST(IsNumeric, FollowsTheLocalesSeparators) {
  EXPECT_TRUE(IsNumeric("0,9500000000000000", LocaleOf(test::kGerman)));
  platform::LocaleInfo french = UsNumbers();
  french.decimal = ",";
  french.thousands = "\xA0";
  EXPECT_EQ(CDbl("1\xA0"
                 "234,5",
                 french),
            1234.5);
  french.thousands = " ";
  EXPECT_EQ(CDbl(" 1 234,5 ", french), 1234.5);
  french.thousands.clear();
  EXPECT_FALSE(IsNumeric("1 234,5", french));
}

TEST(IsNumeric, TakesANoBreakSpaceAsAMarkOfThousandsOnlyBetweenDigits) {
  platform::LocaleInfo french = UsNumbers();
  french.decimal = ",";
  french.thousands = "\xA0";
  EXPECT_EQ(CDbl("1\xA0"
                 "234\xA0"
                 "567",
                 french),
            1234567);
  EXPECT_EQ(CDbl("12\xA0", french), 12) << "at the end it is a blank";
  EXPECT_EQ(CDbl("\xA0"
                 "12",
                 french),
            12);
  EXPECT_FALSE(IsNumeric("5\xA0,3", french));
  EXPECT_FALSE(
      IsNumeric("5\xA0"
                "e3",
                french));
  EXPECT_FALSE(
      IsNumeric("1\xA0\xA0"
                "234",
                french));
}

TEST(IsNumeric, RefusesABlankWithinANumber) {
  platform::LocaleInfo french = UsNumbers();
  french.decimal = ",";
  french.thousands = " ";
  for (const platform::LocaleInfo& locale : {UsNumbers(), LocaleOf(test::kGerman), french}) {
    EXPECT_FALSE(IsNumeric("5 ,3", locale));
    EXPECT_FALSE(IsNumeric("5 e3", locale));
    EXPECT_FALSE(IsNumeric("5e 3", locale));
  }
}

TEST(Conversions, TakeTheLargestSingleAndNoLarger) {
  const float largest = std::numeric_limits<float>::max();
  EXPECT_EQ(CSng("340282346638528859811704183484516925440", UsNumbers()), largest);
  EXPECT_EQ(CSng("-340282346638528859811704183484516925440", UsNumbers()), -largest);
  EXPECT_EQ(ErrorOf([] { CSng("3.4028235E+38", UsNumbers()); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { CSng("-3.5E+38", UsNumbers()); }), kOverflow);
}

TEST(IsNumeric, TakesSignAndCurrencyBehindTheDigitsInAnyOrder) {
  EXPECT_EQ(CDbl("5-", UsNumbers()), -5);
  EXPECT_EQ(CDbl("5$", UsNumbers()), 5);
  EXPECT_EQ(CDbl("5 $ -", UsNumbers()), -5);
  EXPECT_EQ(CDbl("5-$", UsNumbers()), -5);
  EXPECT_FALSE(IsNumeric("5--", UsNumbers()));
  EXPECT_FALSE(IsNumeric("5$$", UsNumbers()));
}

TEST(IsNumeric, DoesNotSeeWhatStandsBehindANul) {
  EXPECT_TRUE(IsNumeric(std::string_view("5\0x", 3), UsNumbers()));
}

TEST(IsNumeric, RefusesNumbersBeyondTheRange) {
  EXPECT_FALSE(IsNumeric("1e400", UsNumbers()));
}

TEST(Conversions, TakeHexadecimalTextsAsBitsOfTheirType) {
  EXPECT_EQ(CLng("&HFFFFFFFF", UsNumbers()), -1);
  EXPECT_EQ(CInt("&HFFFF", UsNumbers()), -1);
  EXPECT_EQ(CLng("&HFFFF", UsNumbers()), 65535);
  EXPECT_EQ(CByte("&HFF", UsNumbers()), 255);
  EXPECT_EQ(CLng(" &H1F ", UsNumbers()), 31) << "blanks around it";
  EXPECT_EQ(ErrorOf([] { CLng("&H1 F", UsNumbers()); }), kTypeMismatch);
  EXPECT_EQ(ErrorOf([] { CInt("&H10000", UsNumbers()); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { CLng("&H100000000", UsNumbers()); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { CDbl("&H" + std::string(17, 'F'), UsNumbers()); }), kOverflow);
}

TEST(Conversions, TakeEveryHexadecimalDigitInBothCasesAndNoOtherLetter) {
  EXPECT_EQ(CLng("&H1ABCDEF", UsNumbers()), 0x1ABCDEF);
  EXPECT_EQ(CLng("&h1abcdef", UsNumbers()), 0x1ABCDEF);
  EXPECT_EQ(CLng("&HA", UsNumbers()), 10);
  EXPECT_EQ(CLng("&Ha", UsNumbers()), 10);
  for (std::string_view text : {"&H", "&H1G", "&H1g", "&H1@", "&H1`", "&O", "&O18", "&"}) {
    EXPECT_FALSE(IsNumeric(text, UsNumbers())) << text;
  }
}

TEST(Rounding, RaisesOverflowForWhatIsNoNumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(ErrorOf([&] { RoundToLong(nan); }), kOverflow);
  EXPECT_EQ(ErrorOf([&] { RoundToInt(std::numeric_limits<double>::infinity()); }), kOverflow);
}

TEST(RiskArithmetic, PercentOfAChangeRoundsTiesToEven) {
  const auto percent = [](std::string_view change) {
    return RoundToLong(CDbl(change, UsNumbers()) * 100 / CDbl("0.99", UsNumbers()));
  };
  EXPECT_EQ(percent("0.99"), 100);
  EXPECT_EQ(percent("0"), 0);
  EXPECT_EQ(percent("0.9"), 91);
  EXPECT_EQ(percent("0.91"), 92);
  EXPECT_EQ(percent("0.95"), 96);
  EXPECT_EQ(percent("-1"), -101);
}

TEST(RiskArithmetic, CeilingsOfTheDefaultSensitivityAreSinglePrecision) {
  const float normal = 1 / CSng("1.1", UsNumbers()) * 100;
  EXPECT_EQ(TextOf(normal, UsNumbers()), "90.90909");
  EXPECT_EQ(TextOf(normal / 2 + 50, UsNumbers()), "95.45454");
  EXPECT_EQ(RoundToLong(90.5), 90);
  EXPECT_EQ(RoundToLong(90.501), 91);
}

TEST(TextOf, WritesNumbersWithTooManyPlacesWithAnExponent) {
  EXPECT_EQ(TextOf(1e15, UsNumbers()), "1E+15");
  EXPECT_EQ(TextOf(999999999999999.0, UsNumbers()), "999999999999999");
  EXPECT_EQ(TextOf(123456789012345678.0, UsNumbers()), "1.23456789012346E+17");
  EXPECT_EQ(TextOf(1.0 / 3000, UsNumbers()), "3.33333333333333E-04");
  EXPECT_EQ(TextOf(0.00001, UsNumbers()), "0.00001");
  EXPECT_EQ(TextOf(1e300, UsNumbers()), "1E+300");
  EXPECT_EQ(TextOf(1e7F, UsNumbers()), "1E+07");
}

// The tie went to the even digit: 1234566.5 was shown as 1234566.
TEST(TextOf, RoundsASingleHalfwayBetweenTwoTextsAwayFromZero) {
  EXPECT_EQ(TextOf(1234566.5F, UsNumbers()), "1234567");
  EXPECT_EQ(TextOf(1234567.5F, UsNumbers()), "1234568");
  EXPECT_EQ(TextOf(-1234566.5F, UsNumbers()), "-1234567");
  EXPECT_EQ(TextOf(9999998.5F, UsNumbers()), "9999998") << "no tie: the single is 9999998";
  EXPECT_EQ(TextOf(4999999.5F, UsNumbers()), "5000000");
  EXPECT_EQ(TextOf(16777225.0F, UsNumbers()), "1.677722E+07") << "no tie: the single is 16777224";
  EXPECT_EQ(TextOf(12345645.0F, UsNumbers()), "1.234565E+07");
  EXPECT_EQ(TextOf(0.00048828125F, LocaleOf(test::kGerman)), "4,882813E-04");
  EXPECT_EQ(TextOf(2.62144140625F, UsNumbers()), "2.621441");
}

TEST(TextOf, RoundsADoubleHalfwayBetweenTwoTextsAwayFromZero) {
  EXPECT_EQ(TextOf(100000000000000.5, UsNumbers()), "100000000000001");
  EXPECT_EQ(TextOf(-562949953421312.5, UsNumbers()), "-562949953421313");
  EXPECT_EQ(TextOf(2.384185791015625E-07, UsNumbers()), "2.38418579101563E-07");
}

// Fifteen digits and a 5 need not lie halfway: these are the nearest doubles below and above such a text.
TEST(TextOf, RoundsANumberBesideTheHalfwayToTheNearerText) {
  EXPECT_EQ(TextOf(1.000000000000005, UsNumbers()), "1.00000000000001") << "above";
  EXPECT_EQ(TextOf(3.000000000000005, UsNumbers()), "3") << "below";
}

// Its sixteen shortest digits end in 5; the seventeenth of its exact value lies below that.
TEST(TextOf, RoundsAWholeNumberWhoseLastDigitLiesBelowTheHalfwayDown) {
  EXPECT_EQ(TextOf(18014398509482048.0, UsNumbers()), "1.8014398509482E+16");
}

TEST(TextOf, WritesTheSmallestNumbersWithAllTheirDigits) {
  EXPECT_EQ(TextOf(4.94065645841247E-324, UsNumbers()), "4.94065645841247E-324");
  EXPECT_EQ(TextOf(std::numeric_limits<double>::min(), UsNumbers()), "2.2250738585072E-308");
  EXPECT_EQ(TextOf(std::numeric_limits<double>::max(), UsNumbers()), "1.79769313486232E+308");
}

TEST(TextOf, GivesNoNegativeZero) {
  EXPECT_EQ(TextOf(-0.0, UsNumbers()), "0");
}

TEST(Format16, WritesDigitsFollowedByLettersAsTheNumberOfTheDigits) {
  EXPECT_EQ(Format16(Val("12abc"), UsNumbers()), "12.0000000000000000");
  EXPECT_EQ(Format16(Val("no digits"), UsNumbers()), "0.0000000000000000");
}

TEST(Format16, FollowsTheLocalesFormOfNegatives) {
  platform::LocaleInfo locale = UsNumbers();
  const std::array<std::string, 5> expected = {"(1,234.5000000000000000)", "-1,234.5000000000000000",
                                               "- 1,234.5000000000000000", "1,234.5000000000000000-",
                                               "1,234.5000000000000000 -"};
  for (int order = 0; order < 5; ++order) {
    locale.negative_order = order;
    EXPECT_EQ(Format16(-1234.5, locale), expected[static_cast<std::size_t>(order)]);
  }
}

TEST(Format16, FollowsTheLocalesGroups) {
  platform::LocaleInfo locale = UsNumbers();
  const auto format = [&](const char* grouping, double value) {
    locale.grouping = grouping;
    const std::string text = Format16(value, locale);
    return text.substr(0, text.find('.'));
  };
  EXPECT_EQ(format("3;2;0", 123456789), "12,34,56,789");
  EXPECT_EQ(format("3", 123456789), "123456,789");
  EXPECT_EQ(format("", 123456789), "123456789");
  EXPECT_EQ(format("0", 123456789), "123456789");
  EXPECT_EQ(format("4;0", 123456789), "1,2345,6789");
  EXPECT_EQ(format("2;0", 123), "1,23");
  EXPECT_EQ(format("1;0", 12), "1,2");
}

TEST(Format16, WritesTinyNegativesAsZeroWithoutSign) {
  EXPECT_EQ(Format16(-1e-20, UsNumbers()), "0.0000000000000000");
  EXPECT_EQ(Format16(-0.0, UsNumbers()), "0.0000000000000000");
}

TEST(FormatNumber, LeavesTheZeroInFrontOfThePointOutWhenTold) {
  EXPECT_EQ(FormatNumber(0.5, 2, Tristate::kFalse, Tristate::kDefault, Tristate::kDefault, UsNumbers()),
            ".50");
  EXPECT_EQ(FormatNumber(0, 0, Tristate::kFalse, Tristate::kDefault, Tristate::kDefault, UsNumbers()), "0");
}

// The digit that the first rounding dropped must not be rounded by once more.
TEST(FormatNumber, RoundsAHalfwayNumberOnlyOnce) {
  EXPECT_EQ(FormatNumber(2.384185791015625E-07, 21, Tristate::kTrue, Tristate::kDefault, Tristate::kDefault,
                         UsNumbers()),
            "0.000000238418579101563");
}

TEST(FormatNumber, CarriesThroughAllDigits) {
  EXPECT_EQ(FormatNumber(999.995, 2, Tristate::kTrue, Tristate::kDefault, Tristate::kDefault, UsNumbers()),
            "1,000.00");
  EXPECT_EQ(FormatNumber(0.95, 0, Tristate::kTrue, Tristate::kDefault, Tristate::kDefault, UsNumbers()), "1");
  EXPECT_EQ(FormatNumber(0.05, 0, Tristate::kTrue, Tristate::kDefault, Tristate::kDefault, UsNumbers()), "0");
}

TEST(FormatPicture, KeepsTextAroundThePlaceholders) {
  EXPECT_EQ(FormatPicture(5, "<0.0>", UsNumbers()), "<5.0>");
  EXPECT_EQ(FormatPicture(0, "#", UsNumbers()), "");
  EXPECT_EQ(FormatPicture(1.25, "0.0##", UsNumbers()), "1.25");
  EXPECT_EQ(FormatPicture(3, "", UsNumbers()), "");
  EXPECT_EQ(FormatPicture(1234.5, "#,##0.00", LocaleOf(test::kGerman)), "1.234,50");
}

// Properties

TEST(NumberProperties, TextOfAFifteenDigitNumberReadsBackInEveryLocale) {
  std::mt19937_64 random(1);
  std::uniform_int_distribution<std::int64_t> digits(-999'999'999'999'999, 999'999'999'999'999);
  std::uniform_int_distribution<int> scale(0, 30);
  for (int lcid : kNumberLocales) {
    const platform::LocaleInfo locale = LocaleOf(lcid);
    for (int i = 0; i < 5000; ++i) {
      const double value =
          CDbl(std::to_string(digits(random)) + "e-" + std::to_string(scale(random)), UsNumbers());
      EXPECT_EQ(CDbl(TextOf(value, locale), locale), value) << TextOf(value, locale);
    }
  }
}

TEST(NumberProperties, WritingReadingAndWritingAgainChangesNothing) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 20000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    const std::string text = TextOf(value, UsNumbers());
    const double again = std::isinf(value) || !IsNumeric(text, UsNumbers()) ? value : CDbl(text, UsNumbers());
    EXPECT_EQ(TextOf(again, UsNumbers()), text);
  }
}

TEST(NumberProperties, StoredFormReadsBackToTheSameStoredForm) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> real(-2000, 2000);
  for (int lcid : kNumberLocales) {
    const platform::LocaleInfo locale = LocaleOf(lcid);
    for (int i = 0; i < 5000; ++i) {
      const std::string text = Format16(real(random), locale);
      EXPECT_EQ(Format16(CDbl(text, locale), locale), text);
    }
  }
}

TEST(NumberProperties, SmallWholeNumbersTakeTheSameFormAsOthers) {
  for (int lcid : kNumberLocales) {
    const platform::LocaleInfo locale = LocaleOf(lcid);
    for (int value = 0; value < 1200; ++value) {
      EXPECT_EQ(Format16(value, locale),
                FormatNumber(value, 16, Tristate::kTrue, Tristate::kDefault, Tristate::kDefault, locale));
    }
  }
}

TEST(NumberProperties, ANumberTestAcceptsExactlyWhatTheConversionReads) {
  std::mt19937 random(4);
  constexpr std::string_view kAlphabet = "0123456789.,-+ ()$eEdD&HhOoF\t\xA0\x80";
  std::uniform_int_distribution<std::size_t> length(0, 10), letter(0, kAlphabet.size() - 1);
  for (int lcid : kNumberLocales) {
    const platform::LocaleInfo locale = LocaleOf(lcid);
    for (int i = 0; i < 20000; ++i) {
      std::string text(length(random), ' ');
      for (char& character : text) character = kAlphabet[letter(random)];
      const int error = ErrorOf([&] { CDbl(text, locale); });
      EXPECT_EQ(IsNumeric(text, locale), error == 0) << text;
      EXPECT_TRUE(error == 0 || error == kTypeMismatch || error == kOverflow) << text;
      EXPECT_TRUE(std::isfinite(Val(text))) << text;
    }
  }
}

TEST(NumberProperties, ValReadsWhatTheNumberTestAcceptsOfPlainDigits) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> real(-1000, 1000);
  for (int i = 0; i < 5000; ++i) {
    const std::string text = TextOf(real(random), UsNumbers());
    EXPECT_EQ(Val(text), CDbl(text, UsNumbers())) << text;
  }
}

}  // namespace
}  // namespace zendrix::core
