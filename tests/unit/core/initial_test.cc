#include "core/initial.h"

#include "core/message_window.h"
#include "core/splash.h"
#include "core/version.h"
#include "core/version_text.h"
#include "support/console_world.h"

namespace zendrix::core {
namespace {

using platform::BoxIcon;
using platform::ErrorKind;
using platform::FileOp;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string kVersion = FormatVersion(kVersionMajor, kVersionMinor, kVersionRevision);

// Runs Main with hooks that write down, in one row with the log lines, what they are called with.
class InitialTest : public ::testing::Test {
 protected:
  InitialTest() {
    world_.state.ProductName.clear();
    world_.log.on_line = [this](const std::string& line) { steps_.push_back(line); };
    hooks_.ReadRegInfo = [this] { steps_.push_back("ReadRegInfo"); };
    hooks_.LoadDescArrays = [this] { steps_.push_back("LoadDescArrays"); };
    hooks_.InitReader = [this](const std::string& path) { steps_.push_back("InitReader " + path); };
    hooks_.MonitorNames = [this] { return monitors_; };
    hooks_.RegisterMonitors = [this](const std::vector<std::string>& names) {
      std::string step = "RegisterMonitors";
      for (const std::string& name : names) step += " " + name;
      steps_.push_back(step);
    };
    hooks_.FileVersion = [this](const std::string& path) {
      steps_.push_back("FileVersion " + path);
      return update_version_;
    };
    hooks_.frmMain = [this]() -> widgets::Form& { return MakeForm("frmMain"); };
    hooks_.frmNewUI = [this]() -> widgets::Form& { return MakeForm("frmNewUI"); };
    hooks_.frmTour = [this] { return has_tour_ ? &MakeForm("frmTour") : nullptr; };
    world_.host.on_show = [this](widgets::Form& form) {
      if (form.name() == "frmMsg") return;
      steps_.push_back(form.name());
      if (form.name() != kSplashName) return;
      form.repaint.ConnectForever([this, &form] { steps_.push_back("painted " + form.title.Get()); });
      form.unloaded.ConnectForever([this] { steps_.push_back("splash unloaded"); });
    };
    world_.host.WhileOpen("frmMsg", [this](widgets::Form& form) { Greeting(dynamic_cast<frmMsg&>(form)); });
  }

  widgets::Form& MakeForm(const std::string& name) {
    forms_.push_back(std::make_unique<widgets::Form>(world_.state.forms, name));
    return *forms_.back();
  }
  virtual void Greeting(frmMsg& message) {
    if (at_greeting_) at_greeting_();
    steps_.push_back("message " + message.title.Get() + ": " + message.lblMsg.caption.Get());
    world_.platform.timers.Advance(message_open_ms_);
    message_closed_by_itself_ = !message.loaded();
  }

  void Start(const std::string& command_line) { Main(world_.state, world_.log, command_line, hooks_); }

  platform::MemoryPlatform& platform() { return world_.platform; }
  AppState& state() { return world_.state; }

  testing::ConsoleWorld world_;
  MainHooks hooks_;
  std::vector<std::unique_ptr<widgets::Form>> forms_;
  bool has_tour_ = true;
  std::function<void()> at_greeting_;
  std::vector<std::string> steps_;
  std::vector<std::string> monitors_;
  std::string update_version_;
  std::int64_t message_open_ms_ = 0;
  bool message_closed_by_itself_ = false;
};

TEST_F(InitialTest, HomeEditionStartsInThisOrder) {
  monitors_ = {"Running Processes", "Aggregation"};
  Start("");
  EXPECT_THAT(steps_, ElementsAre("'Initial': Loading version " + kVersion, "'Initial': Read .ini file.",
                                  "ReadRegInfo", "'Initial': Product name: Korvessa Zendrix Home Edition",
                                  "'Initial': Show Splash screen.", "frmSplash",
                                  "painted Korvessa Zendrix Home Edition", "'Initial': Read desc files.",
                                  "LoadDescArrays", "'Initial': Start event reader.",
                                  "InitReader /opt/zendrix/KorvessaMonitoring.kvl",
                                  "RegisterMonitors Running Processes Aggregation", "ReadRegInfo",
                                  "'Initial': Start UI.", "frmNewUI", "splash unloaded"));
  EXPECT_EQ(state().ProductName, "Korvessa Zendrix Home Edition");
  EXPECT_EQ(state().MonitoringFilePath, "/opt/zendrix/KorvessaMonitoring.kvl");
  EXPECT_FALSE(state().NoSplash);
  EXPECT_FALSE(state().UpdatedRun);
  EXPECT_FALSE(state().forms.IsFormLoaded("frmSplash"));
}

TEST_F(InitialTest, AdministratorEditionStartsInThisOrder) {
  state().ProductEdition = "Administrator";
  state().settings.TTour = "N";
  Start("");
  EXPECT_THAT(steps_, ElementsAre("'Initial': Loading version " + kVersion, "'Initial': Read .ini file.",
                                  "ReadRegInfo", "'Initial': Product name: Korvessa Zendrix Administrator",
                                  "'Initial': Show Splash screen.", "frmSplash",
                                  "painted Korvessa Zendrix Administrator", "'Initial': Read desc files.",
                                  "LoadDescArrays", "'Initial': Start event reader.",
                                  "InitReader /opt/zendrix/KorvessaMonitoring.kvl", "RegisterMonitors",
                                  "ReadRegInfo", "'Initial': Start UI.", "frmMain", "splash unloaded"));
}

TEST_F(InitialTest, AdministratorEditionCreatesTheReaderToo) {
  state().ProductEdition = "Administrator";
  Start("");
  EXPECT_THAT(steps_, Contains("InitReader /opt/zendrix/KorvessaMonitoring.kvl").Times(1));
  EXPECT_THAT(steps_, Not(Contains("frmNewUI")));
}

TEST_F(InitialTest, AnyEditionButHomeIsTheAdministrators) {
  state().ProductEdition = "home";
  Start("");
  EXPECT_EQ(state().ProductName, "Korvessa Zendrix Administrator");
  EXPECT_THAT(steps_, Contains("frmMain"));
}

TEST_F(InitialTest, ReadRegInfoRunsTwiceAndTheSecondPicksUpTheNewMonitors) {
  monitors_ = {"Memory Utilization"};
  std::vector<core::KeyValue> file;
  hooks_.RegisterMonitors = [&](const std::vector<std::string>& names) {
    for (const auto& name : names) file.emplace_back(name, "1");
  };
  int calls = 0;
  hooks_.ReadRegInfo = [&] {
    ++calls;
    state().settings.MonitorStates = file;
  };
  Start("");
  EXPECT_EQ(calls, 2);
  EXPECT_THAT(state().settings.MonitorStates, ElementsAre(core::KeyValue("Memory Utilization", "1")));
}

TEST_F(InitialTest, DateOrderIsTheUsers) {
  platform().locale.info.date_order = 2;
  Start("");
  EXPECT_EQ(state().DateOrder, 2);
}

TEST_F(InitialTest, LinesReachTheLogFile) {
  platform().clock.SetUtc(1163754300);
  Start("-ns");
  EXPECT_THAT(
      platform().files.Get("/opt/zendrix/KorvessaAdministratorEventLog.kvl"),
      ::testing::StartsWith("11/17/2006 09:05:00 AM,Testhost,0,'Initial': Loading version " + kVersion +
                            "\r\n11/17/2006 09:05:00 AM,Testhost,0,'Initial': Read .ini file.\r\n"));
}

TEST_F(InitialTest, NoSplashOptionStartsWithoutASplash) {
  Start("-ns");
  EXPECT_TRUE(state().NoSplash);
  EXPECT_THAT(steps_, Contains("'Initial': Do not show Splash screen."));
  EXPECT_THAT(steps_, Not(Contains("'Initial': Show Splash screen.")));
  EXPECT_THAT(steps_, Not(Contains("frmSplash")));
}

TEST_F(InitialTest, OptionsCountInUpperCaseTogetherAndInsideLongerWords) {
  Start("Start-NSx/y-NVz");
  EXPECT_EQ(state().CommandLineText, "start-nsx/y-nvz");
  EXPECT_TRUE(state().NoSplash);
  EXPECT_TRUE(state().UpdatedRun);
}

TEST_F(InitialTest, OptionsNeedTheirHyphen) {
  Start("ns nv");
  EXPECT_FALSE(state().NoSplash);
  EXPECT_FALSE(state().UpdatedRun);
}

TEST_F(InitialTest, TourIsShownBehindTheHomeWindowOnAFirstRun) {
  state().settings.TTour = "N";
  Start("");
  ASSERT_GE(steps_.size(), 3U);
  EXPECT_EQ(steps_[steps_.size() - 3], "frmNewUI");
  EXPECT_EQ(steps_[steps_.size() - 2], "frmTour");
  EXPECT_EQ(steps_[steps_.size() - 1], "splash unloaded");
}

TEST_F(InitialTest, TourIsNeverShownWithoutASplash) {
  state().settings.TTour = "N";
  Start("-ns");
  EXPECT_THAT(steps_, Not(Contains("frmTour")));
}

TEST_F(InitialTest, TourIsNotShownASecondTime) {
  state().settings.TTour = "Y";
  Start("");
  EXPECT_THAT(steps_, Not(Contains("frmTour")));
}

TEST_F(InitialTest, TourIsOnlyShownInTheHomeEdition) {
  state().ProductEdition = "Administrator";
  state().settings.TTour = "N";
  Start("");
  EXPECT_THAT(steps_, Not(Contains("frmTour")));
}

TEST_F(InitialTest, TourFollowsTheSecondReading) {
  int calls = 0;
  hooks_.ReadRegInfo = [&] { state().settings.TTour = ++calls == 2 ? "N" : "Y"; };
  Start("");
  EXPECT_THAT(steps_, Contains("frmTour"));
}

TEST_F(InitialTest, StartWithoutATourToShowGoesOn) {
  has_tour_ = false;
  hooks_.ReadRegInfo = [&] { state().settings.TTour = "N"; };
  Start("");
  EXPECT_THAT(steps_, Contains("frmNewUI"));
  EXPECT_EQ(world_.host.shown.size(), 2U);
}

TEST_F(InitialTest, SplashStandsUntilTheMainWindowIsOpen) {
  bool open_at_main_window = false;
  hooks_.frmNewUI = [&]() -> widgets::Form& {
    open_at_main_window = state().forms.IsFormLoaded("frmSplash");
    return MakeForm("frmNewUI");
  };
  Start("");
  EXPECT_TRUE(open_at_main_window);
}

TEST_F(InitialTest, UpdatedRunGreetsWithTheVersionAndDeletesTheInstaller) {
  platform().files.Put("/opt/zendrix/Zendrix Update.exe", "installer");
  update_version_ = "1.2.0.3";
  Start("-nv");
  const std::string greeting =
      "Congratulations! Korvessa Zendrix has been successfully updated to version 1.2.0.3";
  EXPECT_THAT(
      std::vector<std::string>(steps_.begin() + 5, steps_.begin() + 11),
      ElementsAre("frmSplash", "painted Korvessa Zendrix Home Edition",
                  "FileVersion /opt/zendrix/Zendrix Update.exe",
                  "'Korvessa Zendrix Home Edition': " + greeting,
                  "message Korvessa Zendrix Home Edition: " + greeting, "'Initial': Read desc files."));
  EXPECT_FALSE(platform().files.Has("/opt/zendrix/Zendrix Update.exe"));
  EXPECT_TRUE(state().UpdatedRun);
}

class NoVersion : public InitialTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(NoVersion, IsLeftOutOfTheGreeting) {
  update_version_ = GetParam();
  Start("-nv");
  EXPECT_THAT(steps_, Contains("message Korvessa Zendrix Home Edition: "
                               "Congratulations! Korvessa Zendrix has been successfully updated."));
}
INSTANTIATE_TEST_SUITE_P(EmptyOrZero, NoVersion, ::testing::Values("", "0.0.0.0"));

TEST_F(InitialTest, GreetingBlocksTheStartForUpTo30SecondsWithTheSplashOnTheScreen) {
  message_open_ms_ = 30'000;
  at_greeting_ = [&] {
    EXPECT_TRUE(state().forms.IsFormLoaded("frmSplash"));
    EXPECT_FALSE(state().forms.Find("frmSplash")->enabled);
    EXPECT_THAT(steps_, Not(Contains("LoadDescArrays")));
  };
  Start("-nv");
  EXPECT_TRUE(message_closed_by_itself_);
}

TEST_F(InitialTest, GreetingIsStillThereAfter29Seconds) {
  message_open_ms_ = 29'000;
  Start("-nv");
  EXPECT_FALSE(message_closed_by_itself_);
}

TEST_F(InitialTest, InstallerThatCannotBeReadOrDeletedIsIgnored) {
  platform().files.Put("/opt/zendrix/Zendrix Update.exe", "installer");
  platform().files.FailNext(FileOp::kRemove, "/opt/zendrix/Zendrix Update.exe", ErrorKind::kPermissionDenied);
  hooks_.FileVersion = [](const std::string&) -> std::string { Raise(kPermissionDenied); };
  Start("-nv");
  EXPECT_THAT(steps_, Contains("message Korvessa Zendrix Home Edition: "
                               "Congratulations! Korvessa Zendrix has been successfully updated."));
  EXPECT_THAT(steps_, Contains("frmNewUI"));
  EXPECT_TRUE(platform().files.Has("/opt/zendrix/Zendrix Update.exe"));
}

TEST_F(InitialTest, ErrorOfTheGreetingIsIgnored) {
  at_greeting_ = [] { Raise(kOverflow); };
  Start("-nv");
  EXPECT_THAT(steps_, Contains("frmNewUI"));
  EXPECT_THAT(platform().message_boxes.shown, IsEmpty());
  EXPECT_FALSE(state().forms.IsFormLoaded("frmMsg"));
}

TEST_F(InitialTest, TakesTheLockOfTheExecutable) {
  Start("");
  EXPECT_EQ(platform().instance_lock.held(), "Global\\zendrix");
  EXPECT_EQ(state().InstanceMutex, "Global\\zendrix");
}

TEST_F(InitialTest, KeepsALockNameThatItWasGiven) {
  state().InstanceMutex = "Global\\zendrix@/opt/zendrix";
  Start("");
  EXPECT_EQ(platform().instance_lock.held(), "Global\\zendrix@/opt/zendrix");
}

TEST_F(InitialTest, ErrorInAnyStepEndsTheProcessUnderTheNameOfMain) {
  hooks_.LoadDescArrays = [] { Raise(kTypeMismatch); };
  EXPECT_EQ(world_.EndOf([&] { Start(""); }), 1);
  EXPECT_THAT(steps_,
              Contains("An error has occurred in procedure 'Initial : Main'. Error 13: Type mismatch"));
  EXPECT_EQ(steps_.back(), "splash unloaded");
  EXPECT_THAT(platform().message_boxes.Texts(), ElementsAre("Unexpected Error. Zendrix is exiting."));
}

TEST_F(InitialTest, LogThatCannotBeWrittenDoesNotStopTheStart) {
  platform().files.FailNext(FileOp::kAppend, "*", ErrorKind::kPermissionDenied,
                            platform::MemoryFiles::kAlways);
  Start("");
  EXPECT_THAT(steps_, Contains("frmNewUI"));
}

TEST(SecondInstance, TellsTheUserAsksTheOtherForwardAndEndsWithNothingTouched) {
  const auto machine = std::make_shared<platform::MemoryInstanceRegistry>();
  platform::MemoryPlatform first(machine), second(machine);
  ASSERT_TRUE(first.instance_lock.Acquire("Global\\zendrix"));
  platform::Seams seams = second.seams();
  AppState state(seams);
  state.ProgramFolder = "/opt/zendrix";
  ErrorLog log(state);
  const testing::QuietLog quiet(log);
  int touched = 0;
  second.files.before = [&](FileOp, const std::string&) { ++touched; };
  int status = -1;
  try {
    Main(state, log, "", MainHooks{});
    ADD_FAILURE() << "the second instance went on";
  } catch (const platform::ProcessEnded& end) {
    status = end.status;
  }
  EXPECT_EQ(status, 0);
  ASSERT_EQ(second.message_boxes.shown.size(), 1U);
  EXPECT_EQ(second.message_boxes.shown[0].title, "");
  EXPECT_EQ(second.message_boxes.shown[0].text, "Another instance of this program is already open.");
  EXPECT_EQ(second.message_boxes.shown[0].icon, BoxIcon::kInformation);
  EXPECT_EQ(first.instance_lock.asked(), 1);
  EXPECT_EQ(touched, 0);
}

TEST(SecondInstance, OfAnotherExecutableStarts) {
  const auto machine = std::make_shared<platform::MemoryInstanceRegistry>();
  platform::MemoryPlatform first(machine), second(machine);
  ASSERT_TRUE(first.instance_lock.Acquire("Global\\zendrix"));
  EXPECT_TRUE(second.instance_lock.Acquire("Global\\zendrix-admin"));
}

}  // namespace
}  // namespace zendrix::core
