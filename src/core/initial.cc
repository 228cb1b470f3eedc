#include "core/initial.h"

#include "core/guards.h"
#include "core/letter_case.h"
#include "core/message_window.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/splash.h"
#include "core/text_rules.h"
#include "core/version.h"
#include "core/version_text.h"

namespace zendrix::core {
namespace {

constexpr std::uint8_t kUpdatedMessageSeconds = 30;

// The start as a row of steps; each needs the same four things.
class Start {
 public:
  Start(AppState& state, ErrorLog& log, const MainHooks& hooks) : state_(state), log_(log), hooks_(hooks) {}

  void Run(const std::string& command_line);

 private:
  void Log(const std::string& message) { log_.WriteLog("Initial", message); }
  void EndIfSecondInstance();
  void ShowSplash();
  void GreetAfterUpdate();
  void ReadEvents();
  void RegisterMonitors();
  void OpenMainWindow();

  AppState& state_;
  ErrorLog& log_;
  const MainHooks& hooks_;
  // Held here and not in Run, so that the fatal path still finds the splash among the open forms.
  std::unique_ptr<frmSplash> splash_;
};

void Start::Run(const std::string& command_line) {
  EndIfSecondInstance();
  Log("Loading version " + FormatVersion(kVersionMajor, kVersionMinor, kVersionRevision));
  platform::LocaleSource& locale = state_.seams.locale;
  state_.DateOrder = CInt(GetLocaleValue(kLocaleDateOrder, locale), locale.Current());
  Log("Read .ini file.");
  hooks_.ReadRegInfo();
  state_.ProductName = state_.IsHome() ? "Korvessa Zendrix Home Edition" : "Korvessa Zendrix Administrator";
  Log("Product name: " + state_.ProductName);
  state_.CommandLineText = LowerCase(command_line);
  ShowSplash();
  state_.UpdatedRun = Contains(state_.CommandLineText, "-nv");
  if (state_.UpdatedRun) GreetAfterUpdate();
  Log("Read desc files.");
  hooks_.LoadDescArrays();
  ReadEvents();
  RegisterMonitors();
  OpenMainWindow();
  if (splash_) splash_->Unload();
  splash_.reset();
}

void Start::EndIfSecondInstance() {
  if (state_.InstanceMutex.empty()) state_.InstanceMutex = "Global\\" + state_.ExeName;
  if (state_.seams.instance_lock.Acquire(state_.InstanceMutex)) return;
  // The product has no name yet, and so the box has no title.
  state_.seams.message_boxes.Show({state_.ProductName, "Another instance of this program is already open.",
                                   platform::BoxIcon::kInformation, platform::BoxButtons::kOk});
  state_.seams.instance_lock.AskToComeForward(state_.InstanceMutex);
  state_.seams.process.End(0);
}

void Start::ShowSplash() {
  state_.NoSplash = Contains(state_.CommandLineText, "-ns");
  if (state_.NoSplash) {
    Log("Do not show Splash screen.");
    return;
  }
  Log("Show Splash screen.");
  splash_ = std::make_unique<frmSplash>(state_.forms, state_.ProductName);
  state_.host().Show(*splash_);
  splash_->repaint.Raise();
}

void Start::GreetAfterUpdate() {
  const std::string installer = platform::JoinPath(state_.ProgramFolder, kUpdateFileName);
  std::string version;
  OrIgnore([&] { version = hooks_.FileVersion(installer); });
  (void)state_.seams.files.Remove(installer).ok();
  OrIgnore([&] {
    frmMsg message(state_);
    message.Title = state_.ProductName;
    const std::string greeting = "Congratulations! Korvessa Zendrix has been successfully updated";
    message.Message =
        version.empty() || version == "0.0.0.0" ? greeting + "." : greeting + " to version " + version;
    log_.WriteLog(state_.ProductName, message.Message);
    message.Seconds = kUpdatedMessageSeconds;
    message.Display();
  });
}

void Start::ReadEvents() {
  Log("Start event reader.");
  state_.MonitoringFilePath = platform::JoinPath(state_.ProgramFolder, kMonitoringFileName);
  hooks_.InitReader(state_.MonitoringFilePath);
}

void Start::RegisterMonitors() {
  hooks_.RegisterMonitors(hooks_.MonitorNames());
  // Brings the new keys, and what the first pass wrote, into the application's state.
  hooks_.ReadRegInfo();
}

void Start::OpenMainWindow() {
  Log("Start UI.");
  if (!state_.IsHome()) {
    state_.host().Show(hooks_.frmMain());
    return;
  }
  state_.host().Show(hooks_.frmNewUI());
  if (state_.settings.TTour != "N" || state_.NoSplash) return;
  if (widgets::Form* tour = hooks_.frmTour()) state_.host().Show(*tour);
}

}  // namespace

void Main(AppState& state, ErrorLog& log, const std::string& command_line, const MainHooks& hooks) {
  Start start(state, log, hooks);
  OrFatal(log, "Initial : Main", [&] { start.Run(command_line); });
}

}  // namespace zendrix::core
