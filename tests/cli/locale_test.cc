// The same folder under other locales and time zones.
#include "cli/inspector.h"
#include "support/built_locales.h"

namespace zendrix::test {
namespace {

class LocaleTest : public InspectorTest {
 protected:
  void Use(const std::string& source) {
    const std::string locale = BuildLocale(source);
    ASSERT_NE(locale, "") << "packages libc-bin and locales";
    environment_ = {{"LC_ALL", locale}, {"TZ", "UTC"}, {"LOCPATH", LocaleFolder()}};
    // The C library never frees what it makes of LOCPATH: no leak of ours, but the leak checker would say so.
    environment_["ASAN_OPTIONS"] = "detect_leaks=0";
  }
  std::string TimeOf(const std::string& history) {
    WriteHistory(history);
    return Document({"events"})["rows"][0][2];
  }
};

TEST_F(LocaleTest, PlainLocales) {
  for (const char* name : {"C", "POSIX", "C.UTF-8"}) {
    environment_["LC_ALL"] = name;
    EXPECT_EQ(TimeOf(Event(0, "System Users", "a", "1234.5")), "11/21/2026 01:45:00 AM") << name;
    EXPECT_EQ(Document({"events"})["rows"][0][7], "1,234.5000000000000000") << name;
  }
}

TEST_F(LocaleTest, UnknownLocaleIsThePlainOne) {
  environment_["LC_ALL"] = "xx_XX.UTF-8";
  EXPECT_EQ(TimeOf(Event(0, "System Users", "a")), "11/21/2026 01:45:00 AM");
}

TEST_F(LocaleTest, TimeZonesMoveTheDisplayedTimeOnly) {
  const std::vector<std::pair<const char*, const char*>> zones = {
      {"UTC", "11/21/2026 01:45:00 AM"},
      {"EST5EDT,M3.2.0,M11.1.0", "11/20/2026 08:45:00 PM"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "11/21/2026 02:45:00 AM"},
      {"IST-5:30", "11/21/2026 07:15:00 AM"},
      {"<-12>12", "11/20/2026 01:45:00 PM"}};
  for (const auto& [zone, shown] : zones) {
    environment_["TZ"] = zone;
    EXPECT_EQ(TimeOf(Event(0, "System Users", "a")), shown) << zone;
    EXPECT_EQ(Document({"events"})["rows"][0][1], "1795225500") << zone;
  }
}

TEST_F(LocaleTest, SummerTimeOfAZone) {
  environment_["TZ"] = "EST5EDT,M3.2.0,M11.1.0";
  // 2026-07-01 12:00:00 UTC
  EXPECT_EQ(TimeOf("1782907200,H,7,System Users|1|1|a|||0\r\n"), "07/01/2026 08:00:00 AM");
}

TEST_F(LocaleTest, UsEnglish) {
  Use("en_US");
  EXPECT_EQ(TimeOf(Event(0, "System Users", "a", "1234.5")), "11/21/2026 01:45:00 AM");
  EXPECT_EQ(Document({"events"})["rows"][0][7], "1,234.5000000000000000");
  WriteSettings();
  WriteAlertHistory();
  EXPECT_EQ(Document({"alerts"})["LastIntrusionTime"], "11/21/2026 01:45:05 AM");
}

TEST_F(LocaleTest, German) {
  Use("de_DE");
  EXPECT_EQ(TimeOf(Event(0, "System Users", "a", "1234.5")), "21.11.2026 01:45:00");
  EXPECT_EQ(Document({"events"})["rows"][0][7], "1.234,5000000000000000");
  const Json settings = Document({"settings"});
  EXPECT_EQ(settings["thresholds"]["No"], "90,90909");
  EXPECT_EQ(settings["values"]["Misc"]["No"], "90,90909");
}

TEST_F(LocaleTest, GermanDatesOfALogAreRead) {
  Use("de_DE");
  folder_.Write("a.kvl", "21.11.2026 13:45:00,Host,0,text\r\n");
  EXPECT_EQ(Document({"log", folder_.Path("a.kvl")})["rows"][0][1], "21.11.2026 13:45:00");
}

TEST_F(LocaleTest, AlertsAreFoundUnderTheirNumbersInEveryLocale) {
  Use("de_DE");
  WriteSettings();
  WriteAlertHistory();
  const Json alerts = Document({"alerts"});
  ASSERT_EQ(alerts["items"].size(), 2U);
  EXPECT_EQ(alerts["items"][0]["EventType"], "Intrusion");
  const Json alert = Document({"alert", "6"});
  EXPECT_EQ(alert["NotableInfo"].size(), 4U);
  EXPECT_EQ(alert["NotableInfo"][1]["Reaction"], "success");
}

// The dates of these locales have words, commas or no seconds. The console's own log was then shown without
// its times or not at all, and alerts lost the Agent's reaction and the time of the last intrusion.
class UnusualDates : public LocaleTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(UnusualDates, LogOfTheConsoleIsShownWithItsTimes) {
  Use(GetParam());
  WriteHistory("1795225500,Host|1|1|short stamp|||0\r\n" + Event(0, "System Users", "a"));
  const std::string line = "'CMkvlf_InitClass': Error in line: 1795225500";
  ASSERT_EQ(LogLines(DocumentWriting({"events"})).size(), 1U);
  const Json log = Document({"log", "KorvessaAdministratorEventLog.kvl"});
  ASSERT_EQ(log["rows"].size(), 1U) << log;
  const std::string written = folder_.Read("KorvessaAdministratorEventLog.kvl");
  EXPECT_EQ(log["rows"][0][1], written.substr(0, written.find(',')));
  EXPECT_EQ(log["rows"][0][4], line);
}

TEST_P(UnusualDates, AlertsKeepTheirEventsAndTheLastIntrusionItsTime) {
  Use(GetParam());
  WriteSettings();
  WriteAlertHistory();
  const Json alerts = Document({"alerts"});
  EXPECT_EQ(alerts["items"].size(), 2U);
  EXPECT_EQ(alerts["LastIntrusionTime"], alerts["items"][0]["Time"]);
  const Json alert = Document({"alert", "6"});
  ASSERT_EQ(alert["NotableInfo"].size(), 4U);
  EXPECT_EQ(alert["NotableInfo"][1]["Reaction"], "success");
}

INSTANTIATE_TEST_SUITE_P(LocaleTest, UnusualDates,
                         ::testing::Values("nb_NO", "is_IS", "eu_ES", "ms_MY", "ar_SA", "ff_SN"),
                         [](const auto& locale) { return std::string(locale.param); });

}  // namespace
}  // namespace zendrix::test
