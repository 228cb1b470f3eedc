#include "inspect/console.h"

#include <filesystem>
#include <iostream>

#include "control/agent_control.h"
#include "control/agent_sight.h"
#include "core/legible_locale.h"
#include "core/text_rules.h"
#include "platform/linux/agent_services.h"
#include "platform/linux/helper_agent_link.h"
#include "platform/linux/linux_act_helper.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_host_info.h"
#include "platform/linux/linux_locale.h"
#include "platform/linux/linux_service_manager.h"
#include "platform/linux/local_service_manager.h"
#include "platform/linux/user_folders.h"
#include "platform/memory/fake_service_manager.h"
#include "platform/memory/fake_timers.h"
#include "platform/memory/memory_instance_lock.h"
#include "platform/memory/overlay_files.h"
#include "platform/memory/recording_shell.h"
#include "platform/memory/throwing_process.h"
#include "platform/program_places.h"

namespace zendrix::inspect {
namespace {

const char* NameOf(platform::BoxIcon icon) {
  switch (icon) {
    case platform::BoxIcon::kInformation:
      return "information";
    case platform::BoxIcon::kQuestion:
      return "question";
    case platform::BoxIcon::kExclamation:
      return "exclamation";
    case platform::BoxIcon::kStop:
      return "stop";
    case platform::BoxIcon::kNone:
      break;
  }
  return "none";
}

// Keeps what the console would have shown and answers every question the same way.
class CollectingBoxes : public platform::MessageBoxes {
 public:
  explicit CollectingBoxes(bool yes) : yes_(yes) {}

  platform::BoxAnswer Show(const platform::BoxRequest& request) override {
    const bool question = request.buttons == platform::BoxButtons::kYesNo;
    collected_.push_back({{"title", Text(request.title)},
                          {"text", Text(request.text)},
                          {"icon", NameOf(request.icon)},
                          {"buttons", question ? "yesno" : "ok"}});
    if (!question) return platform::BoxAnswer::kOk;
    return yes_ ? platform::BoxAnswer::kYes : platform::BoxAnswer::kNo;
  }

  Json Take() { return std::exchange(collected_, Json::array()); }

 private:
  bool yes_;
  Json collected_ = Json::array();
};

// Makes the loop's timers, and tells whoever wants to know of each that has fired.
class WatchedTimers : public platform::TimerMaker {
 public:
  explicit WatchedTimers(platform::TimerMaker& maker) : maker_(maker) {}

  std::unique_ptr<platform::Timer> MakeTimer(std::function<void()> on_tick) override {
    return maker_.MakeTimer([this, on_tick = std::move(on_tick)] {
      on_tick();
      if (behind) behind();
    });
  }

  std::function<void()> behind;

 private:
  platform::TimerMaker& maker_;
};

// Nobody chooses files on a terminal.
class NoFileDialogs : public platform::FileDialogs {
 public:
  std::string Choose(const platform::FileRequest&) override { return ""; }
};

// Nor colours.
class NoColourDialogs : public platform::ColourDialogs {
 public:
  std::optional<std::uint32_t> Choose(const platform::ColourRequest&) override { return std::nullopt; }
};

std::string ExecutableFolder() {
  std::error_code error;
  const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string(".") : path.parent_path().string();
}

void SetAgent(platform::FakeServiceManager& services, const std::string& agent_state) {
  if (agent_state == "running") services.SetRunning(control::kServiceName);
  if (agent_state == "stopped") services.SetStopped(control::kServiceName);
  if (agent_state == "missing") services.SetMissing(control::kServiceName);
}

}  // namespace

struct Console::Parts {
  Parts(const Options& options, bool live)
      : places(platform::PlacesOf(
            ExecutableFolder(), options.chosen ? std::optional(options.folder) : std::nullopt,
            options.edition == "Home", platform::BuiltInRoots(), platform::FindUserFolders())),
        layered(disk, places.layers, platform::MakePrivateFolder),
        real(places.installed ? static_cast<platform::Files&>(layered) : disk),
        overlay(real),
        agent(platform::AgentBeside(ExecutableFolder(), control::kServiceName, places.folder,
                                    options.edition == "Home")),
        family(places.libraries),
        boxes(options.answer_yes),
        seams{options.write ? real : overlay, clock, locale, host, shell, instance_lock,
              options.agent      ? static_cast<platform::ServiceManager&>(scripted_services)
              : places.installed ? static_cast<platform::ServiceManager&>(service_manager)
                                 : services,
              live ? static_cast<platform::MessageLoop&>(poll_loop) : still_timers,
              live ? static_cast<platform::TimerMaker&>(live_timers) : still_timers, boxes, file_dialogs,
              colour_dialogs, family, process,
              // Where nothing reaches the folder, nothing reaches the services either.
              places.installed && options.write ? static_cast<platform::AgentLink&>(agent_link)
                                                : platform::NobodyToTell()},
        state(seams),
        log(state) {
    if (options.agent) SetAgent(scripted_services, *options.agent);
    family.ConfigureQuarantine(places.quarantine, !options.write);
    family.SetHelper(&act_helper);
    if (places.installed) family.PreferHelper();
    state.ProgramFolder = places.folder;
    state.Installed = places.installed;
    state.FirstStart = places.installed && layered.SettingsAreNew();
    state.ProductEdition = options.edition;
    state.ProductName = state.IsHome() ? "Korvessa Zendrix Home Edition" : "Korvessa Zendrix Administrator";
    log.on_line = [this](const std::string& line) { lines.push_back(Text(line)); };
    log.on_fatal = [this](const std::string& procedure, const core::RunTimeError& error) {
      if (!fatal.is_null()) return;
      fatal = {
          {"procedure", Text(procedure)}, {"number", error.number}, {"description", Text(error.description)}};
    };
  }

  platform::ProgramPlaces places;
  platform::LinuxFiles disk;
  platform::LayeredFiles layered;
  platform::Files& real;
  platform::OverlayFiles overlay;
  platform::LinuxClock clock;
  platform::LinuxLocale users_locale;
  core::LegibleLocale locale{users_locale, clock};
  platform::LinuxHostInfo host;
  platform::RecordingShell shell;
  // Between commands time stands still: timers can be armed and never fire.
  platform::FakeClock still_clock;
  platform::FakeTimers still_timers{still_clock};
  platform::MemoryInstanceLock instance_lock{still_timers,
                                             std::make_shared<platform::MemoryInstanceRegistry>()};
  platform::LinuxServiceManager service_manager;
  platform::LocalServiceManager agent;
  platform::AgentServices services{service_manager, agent};
  platform::FakeServiceManager scripted_services;
  platform::PollLoop poll_loop;
  WatchedTimers live_timers{poll_loop};
  platform::LinuxActHelper act_helper;
  platform::HelperAgentLink agent_link{act_helper};
  platform::LinuxFamily family;
  CollectingBoxes boxes;
  NoFileDialogs file_dialogs;
  NoColourDialogs colour_dialogs;
  platform::ThrowingProcess process;
  platform::Seams seams;
  core::AppState state;
  core::ErrorLog log;
  Json lines = Json::array();
  Json fatal;
};

Console::Console(const Options& options, bool live)
    : options_(options), parts_(std::make_unique<Parts>(options, live)) {
  const std::string& folder = parts_->places.folder;
  if (!parts_->real.FolderExists(folder)) throw NoSuchThing("Folder " + folder + " not found.");
  // Not only in the status: a command that finds no events is to say why as well.
  if (const auto why = control::WhyNothingIsSeen(state()); !why.empty())
    log().WriteLog("zendrix-inspect", why);
}

Console::~Console() = default;

core::AppState& Console::state() {
  return parts_->state;
}

core::ErrorLog& Console::log() {
  return parts_->log;
}

platform::PollLoop& Console::loop() {
  return parts_->poll_loop;
}

void Console::OnTick(std::function<void()> behind) {
  parts_->live_timers.behind = std::move(behind);
}

void Console::Print(Json document) {
  std::cout << Finished(std::move(document)) << std::endl;
}

void Console::PrintWithRows(Json document, std::size_t count, const std::function<Json(std::size_t)>& row) {
  if (count == 0) {
    document["rows"] = Json::array();
    return Print(std::move(document));
  }
  // One null stands for all rows. No text can hold this: its quotes would be escaped.
  document["rows"] = Json::array({nullptr});
  const std::string_view name = options_.pretty ? "\"rows\": [\n    " : "\"rows\":[";
  const std::string text = Finished(std::move(document));
  const std::size_t begin = text.find(std::string(name) + "null") + name.size();
  std::cout << std::string_view(text).substr(0, begin);
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) std::cout << (options_.pretty ? ",\n    " : ",");
    std::string cells = Dump(row(i));
    if (options_.pretty) cells = core::Replace(cells, "\n", "\n    ");
    std::cout << cells;
  }
  std::cout << std::string_view(text).substr(begin + std::string_view("null").size()) << std::endl;
}

// The text of the whole document.
std::string Console::Finished(Json document) {
  document["messages"] = parts_->boxes.Take();
  document["log"] = std::exchange(parts_->lines, Json::array());
  return Dump(std::move(document));
}

std::string Console::Dump(Json document) const {
  return document.dump(options_.pretty ? 2 : -1, ' ', false, Json::error_handler_t::replace);
}

Json Console::FatalDocument() const {
  return {{"fatal", parts_->fatal}};
}

std::string Console::ResolveFile(const std::string& path) {
  auto& files = parts_->seams.files;
  if (path.starts_with('/') || files.Exists(path)) return path;
  const std::string inside = platform::JoinPath(parts_->places.folder, path);
  return files.Exists(inside) ? inside : path;
}

Json Console::FileText(const std::string& path) {
  const auto bytes = parts_->seams.files.ReadAll(path);
  return bytes ? Text(bytes.value()) : Json(nullptr);
}

}  // namespace zendrix::inspect
