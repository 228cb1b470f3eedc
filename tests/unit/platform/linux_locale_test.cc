#include "platform/linux/linux_locale.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>
#include <vector>

#include "child_process.h"
#include "support/built_locales.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

// What of the settings a user sees, one per line.
std::string Print(const LocaleInfo& info) {
  return "short date " + info.short_date + "\nlong date " + info.long_date + "\ntime " + info.time +
         "\nhalves " + info.am + "," + info.pm + "\nseparators " + info.date_separator + info.time_separator +
         "\nnumbers " + info.decimal + "|" + info.thousands + "|" + info.grouping + "\norder " +
         std::to_string(info.date_order) + "\nnames " + info.day_names[0] + " " + info.short_day_names[6] +
         " " + info.month_names[2] + " " + info.short_month_names[11] + "\n";
}

LocaleInfo FromTime(const std::string& date, const std::string& time, const std::string& am = "AM",
                    const std::string& pm = "PM") {
  CTimeTexts texts;
  texts.date = date;
  texts.time = time;
  texts.time_with_am_pm = "%I:%M:%S %p";
  texts.am = am;
  texts.pm = pm;
  LocaleInfo info;
  TakeTimeTexts(texts, info);
  return info;
}

LocaleInfo FromNumbers(const std::string& decimal, const std::string& thousands,
                       const std::string& grouping) {
  LocaleInfo info;
  TakeNumberTexts({"UTF-8", decimal, thousands, grouping}, info);
  return info;
}

TEST(TakeTimeTextsTest, FormatsBecomePictures) {
  EXPECT_EQ(FromTime("%m/%d/%Y", "%r").short_date, "MM/dd/yyyy");
  EXPECT_EQ(FromTime("%m/%d/%Y", "%r").time, "hh:mm:ss tt");
  EXPECT_EQ(FromTime("%-d.%-m.%y", "%-H.%M.%S").short_date, "d.M.yy");
  EXPECT_EQ(FromTime("%-d.%-m.%y", "%-H.%M.%S").time, "H.mm.ss");
  EXPECT_EQ(FromTime("%F", "%T").short_date, "yyyy-MM-dd");
  EXPECT_EQ(FromTime("%D", "%R").short_date, "MM/dd/yy");
  EXPECT_EQ(FromTime("%e %b %EY", "%l:%M:%S %P").short_date, "d MMM yyyy");
  EXPECT_EQ(FromTime("%e %b %EY", "%l:%M:%S %P").time, "h:mm:ss tt");
  EXPECT_EQ(FromTime("%A %d %B %Y", "%k:%M").short_date, "dddd dd MMMM yyyy");
}

TEST(TakeTimeTextsTest, WordsInAFormatAreQuoted) {
  EXPECT_EQ(FromTime("%d de %B de %Y", "%H:%M").short_date, "dd 'de' MMMM 'de' yyyy");
}

TEST(TakeTimeTextsTest, OrderAndLongDateFollowTheShortDate) {
  EXPECT_EQ(FromTime("%m/%d/%Y", "%T").date_order, 0);
  EXPECT_EQ(FromTime("%d/%m/%Y", "%T").date_order, 1);
  EXPECT_EQ(FromTime("%Y-%m-%d", "%T").date_order, 2);
  EXPECT_EQ(FromTime("%d/%m/%Y", "%T").long_date, "dddd, dd MMMM yyyy");
  EXPECT_EQ(FromTime("%Y-%m-%d", "%T").long_date, "dddd, yyyy MMMM dd");
}

// The day of the week was taken for the day: Basque dates, year first, were read day first.
TEST(TakeTimeTextsTest, DayOfTheWeekAndWordsSayNothingOfTheOrder) {
  EXPECT_EQ(FromTime("%a, %Y.eko %bren %da", "%T").date_order, 2);
  EXPECT_EQ(FromTime("%A, %B %d, %Y", "%T").date_order, 0);
  EXPECT_EQ(FromTime("%Y de %m de %d", "%T").date_order, 2);
  EXPECT_EQ(FromTime("%m de %d de %Y", "%T").date_order, 0);
  EXPECT_EQ(FromTime("%A %B %Y", "%T").short_date, "MM/dd/yyyy") << "no day";
}

TEST(TakeTimeTextsTest, SeparatorsAreNoWords) {
  EXPECT_EQ(FromTime("%d de %m de %Y", "%T").date_separator, " ");
  EXPECT_EQ(FromTime("%a, %d.%m.%Y", "kl. %H.%M").date_separator, ".");
  EXPECT_EQ(FromTime("%a, %d.%m.%Y", "kl. %H.%M").time_separator, ".");
  EXPECT_EQ(FromTime("%d, %a %m/%Y", "%T").date_separator, ", ");
  EXPECT_EQ(FromTime("%dth%m/%Y", "%Hh%M").date_separator, "/") << "none of its own";
  EXPECT_EQ(FromTime("%dth%m/%Y", "%Hh%M").time_separator, ":");
}

TEST(TakeTimeTextsTest, SeparatorsStandBetweenTheFirstParts) {
  const LocaleInfo info = FromTime("%d. %m. %Y", "%H.%M.%S");
  EXPECT_EQ(info.date_separator, ". ");
  EXPECT_EQ(info.time_separator, ".");
}

TEST(TakeTimeTextsTest, WithoutWordsForTheHalvesTheDayHasTwentyFourHours) {
  EXPECT_EQ(FromTime("%d.%m.%Y", "%I:%M:%S %p", "", "").time, "HH:mm:ss");
  EXPECT_EQ(FromTime("%d.%m.%Y", "%p %I:%M:%S", "", "").time, "HH:mm:ss");
}

TEST(TakeTimeTextsTest, NonsenseKeepsTheDefaults) {
  const LocaleInfo info = FromTime("%U", "%Z");
  EXPECT_EQ(info.short_date, "MM/dd/yyyy");
  EXPECT_EQ(info.time, "hh:mm:ss tt");
  EXPECT_EQ(FromTime("%x", "%X%").short_date, "MM/dd/yyyy");
  EXPECT_EQ(FromTime("", "").month_names[0], "January");
}

// Dates in Japan, Korea and China were written and read month first: their formats hold signs that are not in
// the code page, and with the signs the order was lost.
TEST(TakeTimeTextsTest, FormatsThatCannotBeExpressedKeepTheirOrderInDigits) {
  const LocaleInfo japanese =
      FromTime("%Y\u5E74%m\u6708%d\u65E5", "%H\u6642%M\u5206%S\u79D2", "\u5348\u524D", "\u5348\u5F8C");
  EXPECT_EQ(japanese.short_date, "yyyy/MM/dd");
  EXPECT_EQ(japanese.long_date, "dddd, yyyy MMMM dd");
  EXPECT_EQ(japanese.date_order, 2);
  EXPECT_EQ(japanese.date_separator, "/");
  EXPECT_EQ(japanese.time, "HH:mm:ss");
  EXPECT_EQ(japanese.time_separator, ":");
  EXPECT_EQ(FromTime("%Y\uB144 %m\uC6D4 %d\uC77C", "%T").short_date, "yyyy/MM/dd");
  EXPECT_EQ(FromTime("%Y\u5E74%m\u6708%d\u65E5 %A", "%T").short_date, "yyyy/MM/dd");
  EXPECT_EQ(FromTime("\u0F63%y\u0F0B%b\u0F0B%e", "%T").short_date, "yyyy/MM/dd");
  EXPECT_EQ(FromTime("\u0F63%e\u0F0B%B\u0F0B%y", "%T").short_date, "dd/MM/yyyy");
  EXPECT_EQ(FromTime("\u0F63%-m %-d %Y", "%T").date_order, 0);
  EXPECT_EQ(FromTime("%x\u5E74", "%X\u6642").short_date, "MM/dd/yyyy") << "names itself";
}

TEST(TakeTimeTextsTest, DigitsForAFormatTakeItsSeparatorWhereThatIsOne) {
  EXPECT_EQ(FromTime("%a\u060C %d-%m-%Y", "%T").short_date, "dd-MM-yyyy");
  EXPECT_EQ(FromTime("%d.%m.%Y\u5E74", "%H.%M.%S\u79D2").short_date, "dd.MM.yyyy");
  EXPECT_EQ(FromTime("%d.%m.%Y\u5E74", "%H.%M.%S\u79D2").time, "HH.mm.ss");
  EXPECT_EQ(FromTime("%d, %m, %Y\u5E74", "%H, %M\u5206").short_date, "dd/MM/yyyy");
  EXPECT_EQ(FromTime("%d, %m, %Y\u5E74", "%H, %M\u5206").time, "HH:mm");
  EXPECT_EQ(FromTime("%d:%m:%Y\u5E74", "%H/%M\u5206").short_date, "dd/MM/yyyy");
  EXPECT_EQ(FromTime("%d:%m:%Y\u5E74", "%H/%M\u5206").time, "HH:mm");
}

TEST(TakeTimeTextsTest, DigitsForATimeAreOfTheWholeDay) {
  EXPECT_EQ(FromTime("%D", "%p %I\u6642%M\u5206%S\u79D2 %Z", "\u4E0A\u5348", "\u4E0B\u5348").time,
            "HH:mm:ss");
  EXPECT_EQ(FromTime("%D", "%l:%M:%S\u1361%p").time, "HH:mm:ss");
  EXPECT_EQ(FromTime("%D", "%M\u5206%S\u79D2").time, "hh:mm:ss tt") << "no hour";
  EXPECT_EQ(FromTime("%D", "%H\u6642").time, "hh:mm:ss tt") << "no minute";
}

TEST(TakeTimeTextsTest, FormatsOfAnotherCodeSetKeepTheirOrderInDigits) {
  CTimeTexts texts;
  texts.code_set = "EUC-JP";
  texts.date = "%Y\xC7\xAF%m\xB7\xEE%d\xC6\xFC";
  texts.time = "%H\xBB\xFE%M\xCA\xAC%S\xC9\xC3";
  LocaleInfo info;
  TakeTimeTexts(texts, info);
  EXPECT_EQ(info.short_date, "yyyy/MM/dd");
  EXPECT_EQ(info.time, "HH:mm:ss");
}

TEST(TakeTimeTextsTest, SetOfNamesThatCannotBeExpressedStaysEnglish) {
  CTimeTexts texts;
  texts.months.fill("M\u00E4rz");
  texts.days.fill("\u65E5\u66DC");
  LocaleInfo info;
  TakeTimeTexts(texts, info);
  EXPECT_EQ(info.month_names[2], "M\xE4rz");
  EXPECT_EQ(info.day_names[0], "Sunday");
}

TEST(TakeNumberTextsTest, GroupingSizesBecomeAList) {
  EXPECT_EQ(FromNumbers(".", ",", "\3\3").grouping, "3;0");
  EXPECT_EQ(FromNumbers(".", ",", "\3").grouping, "3;0");
  EXPECT_EQ(FromNumbers(".", ",", "\3\2").grouping, "3;2;0");
  EXPECT_EQ(FromNumbers(".", ",", "\3\x7F").grouping, "3");
  EXPECT_EQ(FromNumbers(".", ",", "\3\xFF").grouping, "3");
  EXPECT_EQ(FromNumbers(".", "", "").grouping, "");
}

// Without a sign "15" would have been written for one and a half.
TEST(TakeNumberTextsTest, MissingDecimalSignKeepsTheDefault) {
  EXPECT_EQ(FromNumbers("", ".", "\3").decimal, ".");
  EXPECT_EQ(FromNumbers("", ".", "\3").thousands, ".");
}

TEST(TakeNumberTextsTest, SeparatorsBecomeSingleBytes) {
  const LocaleInfo french = FromNumbers(",", "\u202F", "\3");
  EXPECT_EQ(french.decimal, ",");
  EXPECT_EQ(french.thousands, "\xA0");
  EXPECT_EQ(FromNumbers(".", "\u2019", "\3").thousands, "\x92");
  // An Arabic decimal sign has no place in the code page.
  EXPECT_EQ(FromNumbers("\u066B", "\u066C", "\3").decimal, ".");
}

using Variables = std::vector<std::pair<const char*, std::string>>;

// The settings as a program sees them that is started with these variables and no other ones of the locale.
// It is a process of its own because the C library never frees what it makes of LOCPATH.
std::string Printed(const Variables& variables) {
  const test::TemporaryFolder folder;
  test::ChildProcess program([&](const auto&) {
    for (const char* name : {"LC_ALL", "LC_TIME", "LC_NUMERIC", "LANG", "LOCPATH"}) unsetenv(name);
    for (const auto& [name, value] : variables) setenv(name, value.c_str(), 1);
    folder.Write("settings", Print(LinuxLocale().Current()));
    return 0;
  });
  EXPECT_EQ(program.Wait(), 0);
  return folder.Read("settings");
}

TEST(LinuxLocaleTest, PlainLocalesAreTheDefaults) {
  const std::string defaults = Print(LocaleInfo());
  EXPECT_EQ(Printed({{"LC_ALL", "C"}}), defaults);
  EXPECT_EQ(Printed({{"LC_ALL", "POSIX"}}), defaults);
  EXPECT_EQ(Printed({{"LC_ALL", "C.UTF-8"}}), defaults);
  EXPECT_EQ(Printed({{"LC_ALL", "xx_XX.UTF-8"}}), defaults);
}

TEST(LinuxLocaleTest, InstalledLocalesAreRead) {
  for (const char* name : {"en_US", "de_DE", "fr_FR"})
    ASSERT_NE(test::BuildLocale(name), "") << "package locales";
  const std::string folder = test::LocaleFolder();
  EXPECT_EQ(Printed({{"LOCPATH", folder}, {"LC_ALL", "en_US.UTF-8"}}), Print(LocaleInfo()));
  EXPECT_EQ(Printed({{"LOCPATH", folder}, {"LC_ALL", "de_DE.UTF-8"}}),
            "short date dd.MM.yyyy\nlong date dddd, dd MMMM yyyy\ntime HH:mm:ss\nhalves ,\nseparators .:\n"
            "numbers ,|.|3;0\norder 1\nnames Sonntag Sa M\xE4rz Dez\n");
  EXPECT_EQ(Printed({{"LOCPATH", folder}, {"LC_ALL", "fr_FR.UTF-8"}}),
            "short date dd/MM/yyyy\nlong date dddd, dd MMMM yyyy\ntime HH:mm:ss\nhalves ,\nseparators /:\n"
            "numbers ,|\xA0|3;0\norder 1\nnames dimanche sam. mars d\xE9"
            "c.\n");
}

TEST(LinuxLocaleTest, LocalesOfOtherScriptsKeepTheirOrder) {
  for (const char* name : {"ja_JP", "ko_KR", "zh_CN", "zh_TW"}) {
    ASSERT_NE(test::BuildLocale(name), "") << "package locales";
    const std::string printed =
        Printed({{"LOCPATH", test::LocaleFolder()}, {"LC_TIME", std::string(name) + ".UTF-8"}});
    LocaleInfo expected;
    expected.short_date = "yyyy/MM/dd";
    expected.long_date = "dddd, yyyy MMMM dd";
    expected.time = "HH:mm:ss";
    expected.date_order = 2;
    EXPECT_EQ(printed, Print(expected)) << name;
  }
}

TEST(LinuxLocaleTest, NamesOfALocaleOfSingleBytesAreReadAsSuch) {
  const test::TemporaryFolder folder;
  const std::string build = "localedef -c -i de_DE -f ISO-8859-1 " + folder.Path("de_DE.ISO-8859-1");
  ASSERT_EQ(std::system((build + " >/dev/null 2>&1").c_str()), 0) << "package locales";
  const std::string printed = Printed({{"LOCPATH", folder.path()}, {"LC_ALL", "de_DE.ISO-8859-1"}});
  EXPECT_NE(printed.find("names Sonntag Sa M\xE4rz Dez\n"), std::string::npos) << printed;
}

TEST(LinuxLocaleTest, CategoriesAreReadEachByItself) {
  ASSERT_NE(test::BuildLocale("de_DE"), "") << "package locales";
  LocaleInfo expected;
  expected.decimal = ",";
  expected.thousands = ".";
  EXPECT_EQ(Printed({{"LOCPATH", test::LocaleFolder()}, {"LC_TIME", "C"}, {"LC_NUMERIC", "de_DE.UTF-8"}}),
            Print(expected));
}

}  // namespace
}  // namespace zendrix::platform
