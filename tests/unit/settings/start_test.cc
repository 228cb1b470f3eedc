// What a start reads and writes: the settings read, the monitors registered, the settings read again.
#include "settings_fixture.h"
#include "support/locales.h"

namespace zendrix::settings {
namespace {

using Names = std::vector<std::string>;

// One whole change of the pair: the note, the file, its hash, and the note again.
const Names kOneSave = {"zendrix.ini.pending", "zendrix.ini", "zendrix.kvh", "-zendrix.ini.pending"};

class StartTest : public SettingsTest {
 protected:
  void Start(const Names& monitors) {
    reg_ini_.ReadRegInfo();
    reg_ini_.RegisterMonitors(monitors);
    reg_ini_.ReadRegInfo();
  }
  // A folder in which the console has been started before.
  void HaveStarted(const Names& monitors) {
    Start(monitors);
    TakeLog();
    platform_.message_boxes.shown.clear();
    ASSERT_TRUE(Verifies());
  }
  static Names ManyNames(std::size_t count) {
    Names names;
    for (std::size_t i = 0; i < count; ++i) names.push_back("monitor " + std::to_string(i));
    return names;
  }

  const Names monitors_ = {"System Users", "Tcp Connections"};
};

// It wrote the settings file five times, each with two flushes, whatever stood in it.
TEST_F(StartTest, AnUnchangedStartWritesNothing) {
  HaveStarted(monitors_);
  const std::string before = Ini();
  Count();
  Start(monitors_);
  EXPECT_EQ(Changes(), Names());
  EXPECT_EQ(readings(), 3);  // one for each of the three steps
  EXPECT_EQ(Ini(), before);
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(StartTest, AStartWithNewMonitorsSavesThePairOnce) {
  HaveStarted(monitors_);
  Count();
  Start({"System Users", "New One", "Another", "Tcp Connections"});
  EXPECT_EQ(Changes(), kOneSave);
  EXPECT_EQ(Stored("Monitors", "New One") + Stored("Monitors", "Another"), "11");
  EXPECT_EQ(state_.settings.MonitorStates.size(), 4U);
  EXPECT_TRUE(Boxes().empty());
  platform_.files.before = nullptr;
  EXPECT_TRUE(Verifies());
}

TEST_F(StartTest, AFirstStartWritesTheDefaultsOnceAndSavesThePairOnceAndShowsTheMessageOnce) {
  Count();
  Start(monitors_);
  EXPECT_EQ(Changes(), (Names{"zendrix.ini", "zendrix.ini.pending", "zendrix.ini", "zendrix.kvh",
                              "-zendrix.ini.pending"}));
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(TakeLog().size(), 1U);
  platform_.files.before = nullptr;
  EXPECT_TRUE(Verifies());
}

TEST_F(StartTest, AStartWithNewDefaultsAndNoNewMonitorsWritesTheFileAndThenItsHash) {
  PutIni("[Monitors]\r\nm=0\r\n");
  Count();
  Start({"M"});
  EXPECT_EQ(Changes(), (Names{"zendrix.ini", "zendrix.kvh"}));
  EXPECT_EQ(Stored("Monitors", "m"), "0");
  EXPECT_TRUE(Boxes().empty());
  platform_.files.before = nullptr;
  EXPECT_TRUE(Verifies());
}

TEST_F(StartTest, AFirstStartWithoutMonitorsShowsTheMessageTwiceAndRefreshesNoHash) {
  Start({});
  EXPECT_EQ(Boxes().size(), 2U);
  EXPECT_EQ(TakeLog().size(), 2U);
  EXPECT_FALSE(platform_.files.Has(kSide));
}

// The thresholds are written in the user's decimal form at every reading, which refreshes no hash: the save
// of the monitors behind the first reading does.
TEST_F(StartTest, AStartInAnotherLanguageKeepsTheSettings) {
  HaveStarted(monitors_);
  reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
  platform_.locale.info = test::LocaleOf(test::kGerman);
  Start(monitors_);
  EXPECT_TRUE(Boxes().empty());
  EXPECT_TRUE(Verifies());
  EXPECT_EQ(Stored("Misc", "No"), "90,90909");
  EXPECT_EQ(state_.settings.TTour, "Y");
  EXPECT_EQ(state_.settings.NormalTop, 1 / 1.1F * 100);
}

TEST_F(StartTest, AStartInAnotherLanguageWithoutMonitorsLosesTheSettingsLikeAFirstStart) {
  HaveStarted(monitors_);
  platform_.locale.info = test::LocaleOf(test::kGerman);
  Start({});
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(TakeLog().size(), 1U);
  EXPECT_TRUE(state_.settings.MonitorStates.empty());
}

// The file was verified by one reading and read by others.
TEST_F(StartTest, AFileThatChangesBehindItsVerificationIsUsedAsItWasVerified) {
  PutIni("[Misc]\r\nTTour=N\r\n");
  int opened = 0;
  platform_.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == kIni && ++opened > 1)
      platform_.files.Put(kIni, "[Misc]\r\nTTour=Y\r\n");
  };
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(state_.settings.TTour, "N");
  EXPECT_EQ(opened, 1);
}

TEST_F(StartTest, AFailureBehindTheFirstDefaultsLeavesTheseInTheFile) {
  PutIni("[Tline]\r\nNSlots=abc\r\n");
  EXPECT_THROW(reg_ini_.ReadRegInfo(), platform::ProcessEnded);
  TakeLog();
  EXPECT_EQ(Stored("Grid", "SelColor"), "8421631");
  EXPECT_EQ(Stored("Tline", "TSlots"), "(none)");
}

TEST_F(StartTest, ASettingsFileThatCannotBeReadIsNotReplacedByTheDefaults) {
  PutIni("[Misc]\r\nTTour=Y\r\n");
  platform_.files.FailNext(platform::FileOp::kOpen, kIni, platform::ErrorKind::kPermissionDenied, 2);
  platform_.files.FailNext(platform::FileOp::kRemove, kIni, platform::ErrorKind::kPermissionDenied);
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(TakeLog().size(), 1U);
  EXPECT_EQ(Ini(), "[Misc]\r\nTTour=Y\r\n");
}

// The log is single-byte text, and the folder's name stood in it in the host's own bytes.
TEST_F(StartTest, AFolderWithLettersBeyondAsciiIsLoggedInTheLogsCodePage) {
  state_.ProgramFolder =
      "/Gr\xC3\xBC\xC3\x9F"
      "e";
  reg_ini_.ReadRegInfo();
  EXPECT_EQ(TakeLog(), Names{"'ReadRegInfo': Invalid configuration file /Gr\xFC\xDF"
                             "e/zendrix.ini. "
                             "Loading default values"});
  EXPECT_TRUE(
      platform_.files.Has("/Gr\xC3\xBC\xC3\x9F"
                          "e/zendrix.ini"));
}

// Each name had the file read, verified and written by itself: 4,000 took 25 seconds.
TEST_F(StartTest, ThousandsOfMonitorsThatAreKnownCostOneReading) {
  std::string text = "[Monitors]\r\n";
  for (const auto& name : ManyNames(4000)) text += name + "=1\r\n";
  PutIni(text);
  Count();
  reg_ini_.RegisterMonitors(ManyNames(4000));
  EXPECT_EQ(readings(), 1);
  EXPECT_EQ(Changes(), Names());
}

TEST_F(StartTest, AThousandNewMonitorsAreStoredInOneSave) {
  HaveStarted(monitors_);
  Count();
  reg_ini_.RegisterMonitors(ManyNames(1000));
  EXPECT_EQ(Changes(), kOneSave);
  EXPECT_EQ(Stored("Monitors", "monitor 0") + Stored("Monitors", "monitor 999"), "11");
}

TEST_F(StartTest, MoreThanAThousandNewMonitorsAreToldAndNotStored) {
  HaveStarted(monitors_);
  const std::string before = Ini();
  Names names = ManyNames(1001);
  names.push_back("System Users");
  names.push_back("[cannot be stored");
  Count();
  reg_ini_.RegisterMonitors(names);
  EXPECT_EQ(TakeLog(),
            Names{"'RegisterMonitors': 1001 new monitor names are more than 1000. They are not stored."});
  EXPECT_EQ(Changes(), Names());
  EXPECT_EQ(Ini(), before);
}

TEST_F(StartTest, AFirstStartWithTooManyMonitorsStillRefreshesTheHash) {
  Start(ManyNames(1001));
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(TakeLog().size(), 2U);
  EXPECT_TRUE(Verifies());
  EXPECT_TRUE(state_.settings.MonitorStates.empty());
}

TEST_F(StartTest, ANameThatIsMetTwiceIsStoredOnce) {
  PutIni("[Monitors]\r\nempty=\r\nbare\r\nblanks=\"  \"\r\nset=0\r\n");
  reg_ini_.RegisterMonitors({"new", " NEW ", "Empty", "bare", "Blanks", "SET"});
  EXPECT_EQ(Ini(), "[Monitors]\r\nempty=1\r\nbare=1\r\nblanks=1\r\nset=0\r\nnew=1\r\n");
}

TEST_F(StartTest, NoMonitorRefreshesNoHash) {
  platform_.files.Put(kIni, "[Monitors]\r\nm=0\r\n");
  reg_ini_.RegisterMonitors({});
  EXPECT_FALSE(platform_.files.Has(kSide));
  reg_ini_.RegisterMonitors({"m"});
  EXPECT_TRUE(Verifies());
}

// Killed before each of its file operations in turn.
TEST_F(StartTest, AKillAnywhereInASaveOfMonitorsLeavesAPairThatVerifies) {
  struct Killed {};
  bool killed = true;
  for (int step = 1; killed; ++step) {
    PutIni("[Monitors]\r\nold=1\r\n");
    int left = step;
    killed = false;
    platform_.files.before = [&](platform::FileOp, const std::string&) {
      if (--left == 0) throw Killed();
    };
    try {
      reg_ini_.RegisterMonitors({"old", "new"});
    } catch (const Killed&) {
      killed = true;
    }
    platform_.files.before = nullptr;
    ASSERT_TRUE(Verifies()) << "killed before file operation " << step;
    EXPECT_EQ(Stored("Monitors", "old"), "1");
    EXPECT_TRUE(killed || Stored("Monitors", "new") == "1");
  }
}

}  // namespace
}  // namespace zendrix::settings
