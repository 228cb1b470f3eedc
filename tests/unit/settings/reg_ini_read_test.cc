#include "core/number_rules.h"
#include "settings_fixture.h"
#include "support/locales.h"

namespace zendrix::settings {
namespace {

constexpr char kInvalid[] = "Invalid configuration file. Loading default values";

class ReadRegInfoTest : public SettingsTest {
 protected:
  ReadRegInfoTest() { platform_.clock.SetUtc(1'795'252'000); }  // 2026-11-21

  // Reads a file whose hash fits.
  const core::Settings& Read(const std::string& text) {
    PutIni(text);
    reg_ini_.ReadRegInfo();
    EXPECT_TRUE(Boxes().empty());
    return state_.settings;
  }
  // Reads a file with no such settings in it but these of section Misc.
  const core::Settings& ReadMisc(const std::string& lines) { return Read("[Misc]\r\n" + lines); }
  void ExpectFatal(const std::string& text, const std::string& error) {
    PutIni(text);
    EXPECT_THROW(reg_ini_.ReadRegInfo(), platform::ProcessEnded) << text;
    EXPECT_EQ(fatal_.first, "RegIni:ReadRegInfo");
    EXPECT_EQ(fatal_.second, error) << text;
    EXPECT_EQ(TakeLog().size(), 1U);
  }
};

TEST_F(ReadRegInfoTest, AFirstStartShowsTheMessageLogsItAndTakesTheDefaults) {
  reg_ini_.ReadRegInfo();
  ASSERT_EQ(platform_.message_boxes.shown.size(), 1U);
  const auto& box = platform_.message_boxes.shown.front();
  EXPECT_EQ(box.text, kInvalid);
  EXPECT_EQ(box.icon, platform::BoxIcon::kInformation);
  EXPECT_EQ(box.title, "Korvessa Zendrix Home Edition");
  EXPECT_EQ(TakeLog(),
            std::vector<std::string>{"'ReadRegInfo': Invalid configuration file /program/zendrix.ini. "
                                     "Loading default values"});
  const core::Settings& settings = state_.settings;
  EXPECT_TRUE(settings.MonitorStates.empty());
  EXPECT_TRUE(settings.ColumnStates.empty());
  EXPECT_EQ(settings.SelColor, 0x8080FF);
  EXPECT_EQ(settings.SSColor, 0xFF8080);
  EXPECT_EQ(settings.NSlots, 30);
  EXPECT_EQ(settings.TSlots, 1);
  EXPECT_EQ(settings.TChart, "D");
  EXPECT_EQ(settings.ldAlert + settings.ldErlog + settings.ldUIErlog, "");
  EXPECT_EQ(settings.enblAlr, "0");
  EXPECT_EQ(settings.ShRskLvl, 0);
  EXPECT_TRUE(settings.ShowDetailsOpen);
  EXPECT_EQ(settings.IniDate, "11/21/2026");
  EXPECT_EQ(settings.TSurv, "N");
  EXPECT_EQ(settings.TTour, "N");
  EXPECT_EQ(settings.Sensitivity, 1.1F);
  EXPECT_EQ(settings.NormalTop, 90.909088F);
  EXPECT_EQ(settings.SuspiciousTop, 95.454544F);
  EXPECT_TRUE(settings.PopOrigHigh);
  EXPECT_TRUE(settings.PopNotifyMs);
  EXPECT_FALSE(settings.DontAsk);
}

TEST_F(ReadRegInfoTest, AFirstStartWritesTheDefaultsThatAreWrittenBackAndNoOthers) {
  reg_ini_.ReadRegInfo();
  TakeLog();
  EXPECT_EQ(Ini(),
            "[Grid]\r\nSelColor=8421631\r\nSSColor=16744576\r\n"
            "[Tline]\r\nNslots=30\r\nTSlots=1\r\nTCHart=D\r\n"
            "[Misc]\r\nDetSho=1\r\nIniDate=11/21/2026\r\nTSurv=N\r\nTTour=N\r\n"
            "No=90.90909\r\nSu=95.45454\r\nPopOrigHigh=1\r\nPopNotifyMs=1\r\n");
}

TEST_F(ReadRegInfoTest, TheFirstStartOfAnInstalledConsoleMakesThePairAndSaysNothing) {
  state_.FirstStart = true;
  reg_ini_.ReadRegInfo();
  EXPECT_TRUE(Verifies());
  EXPECT_EQ(Stored("Grid", "SelColor"), "8421631");
  EXPECT_EQ(state_.settings.NSlots, 30);
  reg_ini_.ReadRegInfo();
  EXPECT_TRUE(Boxes().empty());
  EXPECT_FALSE(platform_.files.Has("/program/zendrix.ini.pending"));
}

TEST_F(ReadRegInfoTest, OnlyTheFirstReadingOfTheFirstStartIsSilent) {
  state_.FirstStart = true;
  reg_ini_.ReadRegInfo();
  platform_.files.PutMore(kIni, "[Tampered]\r\n");
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(Boxes(), std::vector<std::string>{kInvalid});
  EXPECT_EQ(TakeLog().size(), 1U);
}

TEST_F(ReadRegInfoTest, AFirstStartThatCannotWriteHasTheDefaultsAllTheSame) {
  state_.FirstStart = true;
  platform_.files.FailNext(platform::FileOp::kWriteAll, "*", platform::ErrorKind::kPermissionDenied,
                           platform::MemoryFiles::kAlways);
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(state_.settings.SelColor, 0x8080FF);
  EXPECT_TRUE(Boxes().empty());
  EXPECT_EQ(Ini(), "");
}

TEST_F(ReadRegInfoTest, TheFileThatItWroteDoesNotVerifyUntilAnotherWriteRefreshesTheHash) {
  reg_ini_.ReadRegInfo();
  TakeLog();
  EXPECT_FALSE(Verifies());
  reg_ini_.SaveSetwChk("Monitors", "Running Processes", "1");
  EXPECT_TRUE(Verifies());
}

TEST_F(ReadRegInfoTest, WithoutAWriteInBetweenTheSecondReadingShowsTheMessageAgainAndDeletesTheFileAgain) {
  reg_ini_.ReadRegInfo();
  platform_.files.PutMore(kIni, ";mark\r\n");
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(Boxes(), (std::vector<std::string>{kInvalid, kInvalid}));
  EXPECT_EQ(TakeLog().size(), 2U);
  EXPECT_EQ(Ini().find(";mark"), std::string::npos);
}

TEST_F(ReadRegInfoTest, AHashMismatchRemovesAllSettingsAndTheDefaultsApply) {
  PutIni("[Misc]\r\nSe=2\r\nTTour=Y\r\n[Mine]\r\nx=1\r\n");
  platform_.files.Put(kIni, "[Misc]\r\nSe=3\r\nTTour=Y\r\n[Mine]\r\nx=1\r\n");
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(Boxes(), std::vector<std::string>{kInvalid});
  EXPECT_EQ(TakeLog().size(), 1U);
  EXPECT_EQ(state_.settings.Sensitivity, 1.1F);
  EXPECT_EQ(state_.settings.TTour, "N");
  EXPECT_EQ(Stored("Mine", "x"), "(none)");
  for (const auto& path : platform_.files.Paths())  // no backup
    EXPECT_EQ(platform_.files.Get(path).find("[Mine]"), std::string::npos) << path;
}

TEST_F(ReadRegInfoTest, ATamperedFileThatCannotBeDeletedIsReadAsItIs) {
  platform_.files.Put(kIni, "[Misc]\r\nTTour=Y\r\n");
  platform_.files.FailNext(platform::FileOp::kRemove, kIni, platform::ErrorKind::kPermissionDenied);
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(TakeLog().size(), 1U);
  EXPECT_EQ(state_.settings.TTour, "Y");
}

TEST_F(ReadRegInfoTest, ReadingTwiceIsHarmlessAndPicksUpTheMonitorsAddedInBetween) {
  Read("[Monitors]\r\nold=0\r\n");
  reg_ini_.SaveSetwChk("Monitors", "new", "1");
  const std::string between = Ini();
  reg_ini_.ReadRegInfo();
  EXPECT_TRUE(Boxes().empty());
  EXPECT_EQ(state_.settings.MonitorStates, (std::vector<core::KeyValue>{{"old", "0"}, {"new", "1"}}));
  EXPECT_EQ(Ini(), between);
  EXPECT_TRUE(Verifies());
}

TEST_F(ReadRegInfoTest, MonitorsAndColumnsAreReadAsWholeSections) {
  Read("[Monitors]\r\nTcp Connections=1\r\nRunning Processes=0\r\n[Columns]\r\nHostname=0\r\n");
  EXPECT_EQ(state_.settings.MonitorStates,
            (std::vector<core::KeyValue>{{"Tcp Connections", "1"}, {"Running Processes", "0"}}));
  EXPECT_EQ(state_.settings.ColumnStates, (std::vector<core::KeyValue>{{"Hostname", "0"}}));
}

TEST_F(ReadRegInfoTest, StoredValuesAreTakenWhateverTheCaseOfTheirKeys) {
  const auto& settings = Read(
      "[GRID]\r\nselcolor=1\r\nsscolor=-2\r\n[tline]\r\nNSLOTS=255\r\ntslots=5\r\ntchart=T\r\n"
      "[misc]\r\nldalert=A\r\nldErLog=B\r\nlduierlog=C\r\nENBLALR=1\r\nshrsklvl=50.5\r\ndetsho=0\r\n"
      "inidate=some day\r\ntsurv=Y\r\nttour=Y\r\nse=2\r\npoporighigh=0\r\npopnotifyms=0\r\ndontask=1\r\n");
  EXPECT_EQ(settings.SelColor, 1);
  EXPECT_EQ(settings.SSColor, -2);
  EXPECT_EQ(settings.NSlots, 255);
  EXPECT_EQ(settings.TSlots, 5);
  EXPECT_EQ(settings.TChart, "T");
  EXPECT_EQ(settings.ldAlert, "A");
  EXPECT_EQ(settings.ldErlog, "B");
  EXPECT_EQ(settings.ldUIErlog, "C");
  EXPECT_EQ(settings.enblAlr, "1");
  EXPECT_EQ(settings.ShRskLvl, 50.5F);
  EXPECT_FALSE(settings.ShowDetailsOpen);
  EXPECT_EQ(settings.IniDate, "some day");
  EXPECT_EQ(settings.TSurv, "Y");
  EXPECT_EQ(settings.TTour, "Y");
  EXPECT_EQ(settings.Sensitivity, 2);
  EXPECT_FALSE(settings.PopOrigHigh);
  EXPECT_FALSE(settings.PopNotifyMs);
  EXPECT_TRUE(settings.DontAsk);
}

TEST_F(ReadRegInfoTest, ASensitivityOfZeroIsRepairedToOnePointOneAndWrittenBack) {
  EXPECT_EQ(ReadMisc("Se=0\r\n").Sensitivity, 1.1F);
  EXPECT_EQ(Stored("Misc", "Se"), "1.1");
}

TEST_F(ReadRegInfoTest, AnAbsentSensitivityReadsOnePointOneAndIsNotWritten) {
  EXPECT_EQ(ReadMisc("").Sensitivity, 1.1F);
  EXPECT_EQ(Stored("Misc", "Se"), "(none)");
}

TEST_F(ReadRegInfoTest, SensitivityOneGivesTheCeilings96And98) {
  ReadMisc("Se=1\r\n");
  EXPECT_EQ(Stored("Misc", "No"), "96");
  EXPECT_EQ(Stored("Misc", "Su"), "98");
}

TEST_F(ReadRegInfoTest, SensitivityTwoGivesTheCeilings50And75) {
  state_.settings.NormalFrom = 7;
  const auto& settings = ReadMisc("Se=2\r\n");
  EXPECT_EQ(Stored("Misc", "No"), "50");
  EXPECT_EQ(Stored("Misc", "Su"), "75");
  EXPECT_EQ(settings.NormalFrom, 0);
  EXPECT_EQ(settings.SuspiciousFrom, 50.001F);
  EXPECT_EQ(settings.IntrusionFrom, 75.001F);
}

TEST_F(ReadRegInfoTest, AnySensitivityUpToOneGivesTheSameCeilings) {
  for (const char* sensitivity : {"1", "0.99", "0.5", "0.0001", "0.0", "00"}) {
    ReadMisc(std::string("Se=") + sensitivity + "\r\n");
    EXPECT_EQ(state_.settings.NormalTop, 96) << sensitivity;
    EXPECT_EQ(state_.settings.SuspiciousTop, 98) << sensitivity;
  }
}

TEST_F(ReadRegInfoTest, SensitivityTenGivesTheCeilings10And55) {
  const auto& settings = ReadMisc("Se=10\r\n");
  EXPECT_EQ(settings.NormalTop, 10);
  EXPECT_EQ(settings.SuspiciousTop, 55);
}

TEST_F(ReadRegInfoTest, StoredCeilingsAreNeverReadOnlyWritten) {
  ReadMisc("Se=2\r\nNo=1\r\nSu=2\r\n");
  EXPECT_EQ(state_.settings.NormalTop, 50);
  EXPECT_EQ(Stored("Misc", "No"), "50");
  EXPECT_EQ(Stored("Misc", "Su"), "75");
}

TEST_F(ReadRegInfoTest, AbsentDetShoMeansTrueAndIsWritten) {
  EXPECT_TRUE(ReadMisc("").ShowDetailsOpen);
  EXPECT_EQ(Stored("Misc", "DetSho"), "1");
}

TEST_F(ReadRegInfoTest, DetShoZeroMeansFalseAndTheKeyIsNotTouched) {
  EXPECT_FALSE(ReadMisc("DetSho=0\r\n").ShowDetailsOpen);
  EXPECT_EQ(Stored("Misc", "DetSho"), "0");
}

TEST_F(ReadRegInfoTest, AFlagWithAnyOtherTextIsFalseAndStays) {
  const auto& settings = ReadMisc("DetSho=True\r\nPopOrigHigh=-1\r\nDontAsk=\r\n");
  EXPECT_FALSE(settings.ShowDetailsOpen);
  EXPECT_FALSE(settings.PopOrigHigh);
  EXPECT_FALSE(settings.DontAsk);
  EXPECT_EQ(Stored("Misc", "DetSho"), "True");
  EXPECT_EQ(Stored("Misc", "PopOrigHigh"), "-1");
}

TEST_F(ReadRegInfoTest, AnAbsentDontAskIsFalseAndNotWritten) {
  EXPECT_FALSE(ReadMisc("").DontAsk);
  EXPECT_EQ(Stored("Misc", "DontAsk"), "(none)");
}

TEST_F(ReadRegInfoTest, KeysThatAreNotWrittenBackStayAbsent) {
  ReadMisc("");
  for (const char* key : {"ldAlert", "ldErlog", "ldUIErlog", "enblAlr", "ShRskLvl"})
    EXPECT_EQ(Stored("Misc", key), "(none)") << key;
}

TEST_F(ReadRegInfoTest, TheShownRiskDefaultsToTheFloorThatThePreviousReadingLeft) {
  EXPECT_EQ(ReadMisc("").ShRskLvl, 0);
  reg_ini_.SaveSetwChk("Monitors", "m", "1");
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(core::TextOf(state_.settings.ShRskLvl, platform_.locale.info), "90.91009");
}

TEST_F(ReadRegInfoTest, AnUnreadableNumberInANumericKeyIsFatal) {
  ExpectFatal("[Tline]\r\nNSlots=abc\r\n", "13: Type mismatch");
  ExpectFatal("[Tline]\r\nTSlots=1 x\r\n", "13: Type mismatch");
  ExpectFatal("[Grid]\r\nSelColor=red\r\n", "13: Type mismatch");
  ExpectFatal("[Grid]\r\nSSColor=#FF\r\n", "13: Type mismatch");
  ExpectFatal("[Misc]\r\nShRskLvl=\r\n", "13: Type mismatch");
  ExpectFatal("[Misc]\r\nSe=high\r\n", "13: Type mismatch");
  ExpectFatal("[Misc]\r\nSe=\r\n", "13: Type mismatch");
}

// It was taken for an absent one: the user's empty text was replaced by the default, in memory and in the
// file.
TEST_F(ReadRegInfoTest, AKeyWithAnEmptyValueIsNotAbsentAndKeepsIt) {
  const auto& settings =
      Read("[Tline]\r\nTChart=\r\n[Misc]\r\nIniDate= \r\nTSurv=\"\"\r\nTTour=\r\nenblAlr=\r\n");
  EXPECT_EQ(settings.TChart + settings.IniDate + settings.TSurv + settings.TTour + settings.enblAlr, "");
  EXPECT_EQ(Stored("Tline", "TChart"), "");
  for (const char* key : {"IniDate", "TSurv", "TTour", "enblAlr"}) EXPECT_EQ(Stored("Misc", key), "") << key;
  ExpectFatal("[Grid]\r\nSelColor=\r\n", "13: Type mismatch");
  ExpectFatal("[Grid]\r\nSSColor=\r\n", "13: Type mismatch");
  ExpectFatal("[Tline]\r\nNSlots=\r\n", "13: Type mismatch");
  ExpectFatal("[Tline]\r\nTSlots=\r\n", "13: Type mismatch");
}

// A line without "=" gives no key a value; the default is stored in its place.
TEST_F(ReadRegInfoTest, ABareNameIsAnAbsentKey) {
  EXPECT_EQ(Read("[Tline]\r\nTChart\r\nNSlots\r\n").TChart, "D");
  EXPECT_EQ(state_.settings.NSlots, 30);
  EXPECT_TRUE(Ini().starts_with("[Tline]\r\nTChart=D\r\nNSlots=30\r\n")) << Ini();
}

TEST_F(ReadRegInfoTest, ANumberBeyondItsTypeIsFatal) {
  ExpectFatal("[Tline]\r\nNSlots=256\r\n", "6: Overflow");
  ExpectFatal("[Tline]\r\nTSlots=-1\r\n", "6: Overflow");
  ExpectFatal("[Grid]\r\nSelColor=2147483648\r\n", "6: Overflow");
  ExpectFatal("[Misc]\r\nSe=1e39\r\n", "6: Overflow");
}

TEST_F(ReadRegInfoTest, ANumberIsTakenWithoutARangeCheck) {
  EXPECT_EQ(Read("[Tline]\r\nNSlots=0\r\nTSlots=9\r\n").NSlots, 0);
  EXPECT_EQ(state_.settings.TSlots, 9);
}

TEST_F(ReadRegInfoTest, NumbersFollowTheUsersDecimalForm) {
  platform_.locale.info = test::LocaleOf(test::kGerman);
  ReadMisc("Se=1,6\r\nShRskLvl=50,5\r\n");
  EXPECT_EQ(state_.settings.Sensitivity, 1.6F);
  EXPECT_EQ(state_.settings.ShRskLvl, 50.5F);
  EXPECT_EQ(Stored("Misc", "No"), "62,5");
}

TEST_F(ReadRegInfoTest, TheDefaultSensitivityIsTheSameNumberInEveryDecimalForm) {
  platform_.locale.info = test::LocaleOf(test::kGerman);
  EXPECT_EQ(ReadMisc("").Sensitivity, 1.1F);
  EXPECT_EQ(ReadMisc("Se=0\r\n").Sensitivity, 1.1F);
  EXPECT_EQ(Stored("Misc", "Se"), "1,1");
}

TEST_F(ReadRegInfoTest, TheDateOfTheFirstRunIsWrittenInTheUsersShortForm) {
  platform_.locale.info = test::LocaleOf(test::kGerman);
  EXPECT_EQ(ReadMisc("").IniDate, "21.11.2026");
  EXPECT_EQ(Stored("Misc", "IniDate"), "21.11.2026");
}

TEST_F(ReadRegInfoTest, AReadOnlyFolderLeavesTheDefaultsInMemory) {
  platform_.files.FailNext(platform::FileOp::kWriteAll, "*", platform::ErrorKind::kPermissionDenied,
                           platform::MemoryFiles::kAlways);
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(TakeLog().size(), 1U);
  EXPECT_EQ(state_.settings.NSlots, 30);
  EXPECT_FALSE(platform_.files.Has(kIni));
}

TEST_F(ReadRegInfoTest, CatalogueValuesAreTheTextsThatWouldBeSaved) {
  ReadMisc("Se=2\r\nldErlog=tag\r\nDontAsk=1\r\nDetSho=0\r\nIniDate=1/2/2026\r\n");
  std::string text;
  for (const auto& value : CatalogueValues(state_.settings, platform_.locale.info))
    text += value.section + "." + value.key + "=" + value.text + "\n";
  EXPECT_EQ(text,
            "Grid.SelColor=8421631\nGrid.SSColor=16744576\n"
            "Tline.NSlots=30\nTline.TSlots=1\nTline.TChart=D\n"
            "Misc.ldAlert=\nMisc.ldErlog=tag\nMisc.ldUIErlog=\nMisc.enblAlr=0\nMisc.ShRskLvl=0\n"
            "Misc.DetSho=0\nMisc.IniDate=1/2/2026\nMisc.TSurv=N\nMisc.TTour=N\n"
            "Misc.Se=2\nMisc.No=50\nMisc.Su=75\n"
            "Misc.PopOrigHigh=1\nMisc.PopNotifyMs=1\nMisc.DontAsk=1\n");
}

}  // namespace
}  // namespace zendrix::settings
