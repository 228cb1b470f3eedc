#include "settings_fixture.h"

namespace zendrix::settings {
namespace {

using platform::ErrorKind;
using platform::FileOp;

class RegIniSaveTest : public SettingsTest {};

TEST_F(RegIniSaveTest, SaveSettingHashedWritesOneValueAndThePairVerifies) {
  PutIni("[Misc]\r\nTTour=N\r\n;note\r\n");
  reg_ini_.SaveSettingHashed("Misc", "ttour", "Y");
  EXPECT_EQ(Ini(), "[Misc]\r\nTTour=Y\r\n;note\r\n");
  EXPECT_TRUE(Verifies());
}

TEST_F(RegIniSaveTest, SaveSettingHashedCreatesAMissingFileWithItsHash) {
  reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
  EXPECT_EQ(Ini(), "[Misc]\r\nTTour=Y\r\n");
  EXPECT_TRUE(Verifies());
}

TEST_F(RegIniSaveTest, SavingTheValueThatIsThereRefreshesAStaleHash) {
  platform_.files.Put(kIni, "[Misc]\r\nTTour=Y\r\n");
  platform_.files.Put(kSide, "stale\r\n");
  reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
  EXPECT_TRUE(Verifies());
}

TEST_F(RegIniSaveTest, AValueEndsAtItsFirstLineBreakSoThatItCannotAddLines) {
  reg_ini_.SaveSettingHashed("Misc", "ldErlog", "tag\r\n[Misc]\r\nSe=10");
  EXPECT_EQ(Ini(), "[Misc]\r\nldErlog=tag\r\n");
}

TEST_F(RegIniSaveTest, AFailedSaveIsSilentAndLeavesTheOldPair) {
  PutIni("[Misc]\r\nTTour=N\r\n");
  platform_.files.FailNext(FileOp::kWriteAll, kIni, ErrorKind::kNoSpace);
  EXPECT_NO_THROW(reg_ini_.SaveSettingHashed("Misc", "TTour", "Y"));
  EXPECT_EQ(Ini(), "[Misc]\r\nTTour=N\r\n");
  EXPECT_TRUE(Verifies());
}

TEST_F(RegIniSaveTest, AFileThatCannotBeReadIsNotReplaced) {
  PutIni("[Misc]\r\nTTour=N\r\n");
  platform_.files.FailNext(FileOp::kOpen, kIni, ErrorKind::kPermissionDenied);
  reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
  EXPECT_EQ(Ini(), "[Misc]\r\nTTour=N\r\n");
}

TEST_F(RegIniSaveTest, SaveSetwChkWritesAKeyThatHasNoValue) {
  PutIni("[Monitors]\r\nempty=\r\n");
  reg_ini_.SaveSetwChk("Monitors", "empty", "1");
  reg_ini_.SaveSetwChk("Monitors", "absent", "1");
  EXPECT_EQ(Ini(), "[Monitors]\r\nempty=1\r\nabsent=1\r\n");
  EXPECT_TRUE(Verifies());
}

TEST_F(RegIniSaveTest, SaveSetwChkLeavesAValueButRefreshesTheHash) {
  platform_.files.Put(kIni, "[Monitors]\r\nm=0\r\n");
  platform_.files.Put(kSide, "stale\r\n");
  reg_ini_.SaveSetwChk("Monitors", "M", "1");
  EXPECT_EQ(Ini(), "[Monitors]\r\nm=0\r\n");
  EXPECT_TRUE(Verifies());
}

TEST_F(RegIniSaveTest, SaveSetwChkDoesNotWriteNamesThatCouldNotBeReadBack) {
  PutIni("[Monitors]\r\nm=0\r\n");
  for (const std::string name :
       {"[Misc]", "  [Misc]", ";m", "a=b", "", " ", "a\r\n[Misc]", "a\nb", "\tm", "n\f", " \vo "})
    reg_ini_.SaveSetwChk("Monitors", name, "1");
  EXPECT_EQ(Ini(), "[Monitors]\r\nm=0\r\n");
  EXPECT_TRUE(Verifies());
}

// A monitor's name of ten megabytes made a settings file of that size, which every poll read and verified
// twice.
TEST_F(RegIniSaveTest, NameThatNoListOfKeysHasRoomForIsNotStored) {
  PutIni("");
  const std::string longest(kListBuffer - 2, 'x');
  reg_ini_.RegisterMonitors({longest + "x", std::string(10'000'000, 'y')});
  EXPECT_EQ(Ini(), "");
  reg_ini_.RegisterMonitors({longest});
  reg_ini_.ReadRegInfo();
  ASSERT_EQ(state_.settings.MonitorStates.size(), 1U);
  EXPECT_EQ(state_.settings.MonitorStates[0], (core::KeyValue{longest, "1"}));
}

TEST_F(RegIniSaveTest, SaveSetwChkInAReadOnlyFolderGoesOn) {
  platform_.files.FailNext(FileOp::kWriteAll, "*", ErrorKind::kPermissionDenied,
                           platform::MemoryFiles::kAlways);
  EXPECT_NO_THROW(reg_ini_.SaveSetwChk("Monitors", "m", "1"));
}

// A file system that runs out of memory at the first reading of the settings file.
TEST_F(RegIniSaveTest, ARunTimeErrorInSaveSetwChkIsFatal) {
  PutIni("[Monitors]\r\nm=0\r\n");
  platform_.files.before = [](FileOp op, const std::string& path) {
    if (op == FileOp::kOpen && path == kIni) throw std::bad_alloc();
  };
  EXPECT_THROW(reg_ini_.SaveSetwChk("Monitors", "m", "1"), platform::ProcessEnded);
  EXPECT_EQ(fatal_.first, "RegIni:SaveSetwChk");
  EXPECT_EQ(fatal_.second, "-2147220989: Error al leer el Setting (7, Out of memory)");
  EXPECT_EQ(TakeLog().size(), 1U);
}

TEST_F(RegIniSaveTest, SaveRegInfoWritesTheWholeCatalogueInItsOrder) {
  core::Settings& settings = state_.settings;
  settings.SelColor = 1;
  settings.SSColor = 2;
  settings.NSlots = 3;
  settings.TSlots = 4;
  settings.TChart = "T";
  settings.ldAlert = "a";
  settings.ldErlog = "b";
  settings.ldUIErlog = "c";
  settings.enblAlr = "1";
  settings.ShRskLvl = 90.91009F;
  settings.ShowDetailsOpen = true;
  settings.IniDate = "1/2/2026";
  settings.TSurv = "Y";
  settings.TTour = "N";
  settings.PopNotifyMs = true;
  reg_ini_.SaveRegInfo({{"Tcp Connections", true}, {"Memory", false}},
                       {{"Date/Time", true}, {"Hostname", false}});
  EXPECT_EQ(
      Ini(),
      "[Monitors]\r\nTcp Connections=1\r\nMemory=0\r\n"
      "[Columns]\r\nDate/Time=1\r\nHostname=0\r\n"
      "[Grid]\r\nSelColor=1\r\nSSColor=2\r\n"
      "[Tline]\r\nNslots=3\r\nTSlots=4\r\nTCHart=T\r\n"
      "[Misc]\r\nldAlert=a\r\nldErlog=b\r\nldUIErlog=c\r\nenblAlr=1\r\nShRskLvl=90.91009\r\nDetSho=1\r\n"
      "IniDate=1/2/2026\r\nTSurv=Y\r\nTTour=N\r\nPopOrigHigh=0\r\nPopNotifyMs=1\r\nDontAsk=0\r\n");
  EXPECT_TRUE(Verifies());
}

TEST_F(RegIniSaveTest, SaveRegInfoDoesNotTouchTheSensitivityAndItsCeilings) {
  PutIni("[Misc]\r\nSe=2\r\nNo=50\r\nSu=75\r\n");
  state_.settings.Sensitivity = 7;
  reg_ini_.SaveRegInfo({}, {});
  EXPECT_EQ(Stored("Misc", "Se"), "2");
  EXPECT_EQ(Stored("Misc", "No"), "50");
  EXPECT_EQ(Stored("Misc", "Su"), "75");
}

TEST_F(RegIniSaveTest, SaveRegInfoKeepsWhatItDoesNotKnow) {
  PutIni(";mine\r\n[Monitors]\r\ngone=1\r\nm=0\r\n[Other]\r\nx=1\r\n");
  reg_ini_.SaveRegInfo({{"m", true}}, {});
  EXPECT_EQ(Ini().substr(0, 46), ";mine\r\n[Monitors]\r\ngone=1\r\nm=1\r\n[Other]\r\nx=1\r\n");
}

TEST_F(RegIniSaveTest, SaveRegInfoIsOneChangeOfThePair) {
  PutIni("[Misc]\r\nSe=2\r\n");
  int ini_writes = 0, side_writes = 0;
  platform_.files.before = [&](FileOp op, const std::string& path) {
    if (op == FileOp::kWriteAll && path == kIni) ++ini_writes;
    if (op == FileOp::kWriteAll && path == kSide) ++side_writes;
  };
  reg_ini_.SaveRegInfo({{"m", true}}, {{"c", true}});
  EXPECT_EQ(ini_writes, 1);
  EXPECT_EQ(side_writes, 1);
}

TEST_F(RegIniSaveTest, SaveRegInfoDoesNotWriteMonitorNamesThatCouldNotBeReadBack) {
  reg_ini_.SaveRegInfo({{"[Misc]", true}, {"ok", true}}, {});
  EXPECT_EQ(Ini().substr(0, 20), "[Monitors]\r\nok=1\r\n[G");
}

// Every line of a hostile file may name a monitor of its own, and each new key costs a look at all others.
TEST_F(RegIniSaveTest, SaveRegInfoLeavesOutNewMonitorsByTheThousandAndSavesTheRest) {
  PutIni("[Monitors]\r\nm=0\r\n");
  std::vector<SelectedText> monitors{{"m", true}};
  for (int i = 0; i < 1001; ++i) monitors.push_back({"new " + std::to_string(i), true});
  reg_ini_.SaveRegInfo(monitors, {{"c", true}});
  EXPECT_EQ(Ini().substr(0, 30), "[Monitors]\r\nm=1\r\n[Columns]\r\nc=");
  EXPECT_EQ(TakeLog(),
            std::vector<std::string>{
                "'RegisterMonitors': 1001 new monitor names are more than 1000. They are not stored."});
}

// Every operation, killed before each of its file operations in turn: the next start finds a pair that
// verifies and holds the old value or the new one.
TEST_F(RegIniSaveTest, AKillBeforeAnyFileOperationLeavesTheOldPairOrTheNewOne) {
  struct Killed {};
  for (int step = 1;; ++step) {
    PutIni("[Misc]\r\nTTour=N\r\n");
    int left = step;
    platform_.files.before = [&](FileOp, const std::string&) {
      if (--left == 0) throw Killed();
    };
    bool killed = false;
    try {
      reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
    } catch (const Killed&) {
      killed = true;
    }
    platform_.files.before = nullptr;
    ASSERT_TRUE(Verifies()) << "killed before file operation " << step;
    const std::string found = Stored("Misc", "TTour");
    if (!killed) {
      EXPECT_EQ(found, "Y");
      EXPECT_GT(step, 4);  // it did more than one thing
      EXPECT_EQ(platform_.files.Paths(), (std::vector<std::string>{kIni, kSide}));
      break;
    }
    EXPECT_TRUE(found == "N" || found == "Y") << found;
  }
}

TEST_F(RegIniSaveTest, ASaveAfterAnInterruptedOneKeepsWhatTheInterruptedOneWrote) {
  PutIni("[Misc]\r\nTTour=N\r\n");
  struct Killed {};
  platform_.files.before = [&](FileOp op, const std::string& path) {
    if (op == FileOp::kWriteAll && path == kSide) throw Killed();
  };
  EXPECT_THROW(reg_ini_.SaveSettingHashed("Misc", "TTour", "Y"), Killed);
  platform_.files.before = nullptr;
  reg_ini_.SaveSettingHashed("Misc", "TSurv", "Y");
  EXPECT_EQ(Ini(), "[Misc]\r\nTTour=Y\r\nTSurv=Y\r\n");
  EXPECT_TRUE(Verifies());
}

TEST_F(RegIniSaveTest, ASaveOfWhatAnInterruptedOneWroteLeavesNoNoteOfIt) {
  PutIni("[Misc]\r\nTTour=N\r\n");
  struct Killed {};
  platform_.files.before = [&](FileOp op, const std::string& path) {
    if (op == FileOp::kWriteAll && path == kSide) throw Killed();
  };
  EXPECT_THROW(reg_ini_.SaveSettingHashed("Misc", "TTour", "Y"), Killed);
  platform_.files.before = nullptr;
  reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
  EXPECT_EQ(platform_.files.Paths(), (std::vector<std::string>{kIni, kSide}));
  EXPECT_TRUE(Verifies());
}

TEST_F(RegIniSaveTest, AFailedSaveRefreshesAStaleHashOfTheOldFile) {
  platform_.files.Put(kIni, "[Misc]\r\nTTour=N\r\n");
  platform_.files.Put(kSide, "stale\r\n");
  platform_.files.FailNext(FileOp::kWriteAll, kIni, ErrorKind::kNoSpace);
  EXPECT_NO_THROW(reg_ini_.SaveSettingHashed("Misc", "TTour", "Y"));
  EXPECT_EQ(Ini(), "[Misc]\r\nTTour=N\r\n");
  EXPECT_TRUE(Verifies());
}

}  // namespace
}  // namespace zendrix::settings
