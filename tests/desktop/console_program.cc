#include "desktop/console_program.h"

#include <sys/stat.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "core/hash_utils.h"
#include "desktop/eventually.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"

namespace zendrix::desktop {
namespace {

namespace fs = std::filesystem;

constexpr char kMonitoring[] = "KorvessaMonitoring.kvl";
constexpr char kLog[] = "KorvessaAdministratorEventLog.kvl";
constexpr char kSettings[] = "zendrix.ini";
constexpr int kEnoughTabs = 60;

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

bool IsData(const std::string& name) {
  return name.starts_with("KorvessaDesc") || name == "Images";
}

std::string Label(const std::string& role, const std::string& name) {
  return role + " \"" + name + "\"";
}

}  // namespace

Stage& TheStage() {
  static Stage stage;
  return stage;
}

void Install(const std::string& from, const std::string& to) {
  fs::create_directory(to);
  for (const auto& entry : fs::directory_iterator(from)) {
    const std::string name = entry.path().filename();
    const bool wanted = IsData(name) || name == "zendrix" || name == "zendrix-inspect" ||
                        name == "zendrix-agent" || name.ends_with(".so");
    if (wanted) fs::copy(entry.path(), fs::path(to) / name, fs::copy_options::recursive);
  }
}

// In the desktop's folder, which is on a disk: a quarantine in memory is refused.
ConsoleProgram::ConsoleProgram()
    : folder_(TheStage().desktop->folder()), next_moment_(std::time(nullptr) - 600) {
  for (const auto& entry : fs::directory_iterator(TheStage().installation)) {
    const std::string name = entry.path().filename();
    if (IsData(name)) fs::copy(entry.path(), folder_.Path(name), fs::copy_options::recursive);
  }
  folder_.Write(kSettings, "[Misc]\r\nDetSho=1\r\n");
  Setting("ShRskLvl", "0");
  // A monitor that reports keeps the settings' hash up to date from the first start on.
  Event("Running Processes", "/usr/bin/first");
}

int ConsoleProgram::Event(const std::string& monitor, const std::string& description,
                          const std::string& change, const std::string& reaction, const std::string& code) {
  std::ofstream(folder_.Path(kMonitoring), std::ios::binary | std::ios::app)
      << next_moment_++ << ",HOST,7," << monitor << '|' << change << '|' << change << '|' << description
      << '|' << reaction << '|' << code << "|0\r\n";
  return ++events_;
}

void ConsoleProgram::Setting(const std::string& key, const std::string& value) {
  std::ofstream(folder_.Path(kSettings), std::ios::binary | std::ios::app) << key << '=' << value << "\r\n";
  platform::LinuxFiles files;
  platform::LinuxFamily family("/");
  core::HashUtils(files, family).StoreFileHash(folder_.Path(kSettings));
}

std::string ConsoleProgram::Saved(const std::string& key) const {
  const std::string text = "\r\n" + folder_.Read(kSettings);
  const auto at = text.find("\r\n" + key + "=");
  if (at == std::string::npos) return {};
  const auto begin = at + key.size() + 3;
  return text.substr(begin, text.find("\r\n", begin) - begin);
}

std::string ConsoleProgram::Log() const {
  return folder_.Read(kLog);
}

void ConsoleProgram::Start(const std::vector<std::string>& more) {
  std::vector<std::string> command{TheStage().installation + "/zendrix", "--folder=" + folder_.path()};
  command.insert(command.end(), more.begin(), more.end());
  process_ = TheStage().desktop->Start(command, "console");
}

void ConsoleProgram::StartOnSlowDisk() {
  const std::string& programs = TheStage().installation;
  process_ = TheStage().desktop->Start({"/usr/bin/env", "LD_PRELOAD=" + programs + "/libslow_disk.so",
                                        programs + "/zendrix", "--folder=" + folder_.path()},
                                       "console");
}

void ConsoleProgram::StartSecond() {
  second_ = TheStage().desktop->Start(
      {TheStage().installation + "/zendrix", "--folder=" + folder_.path(), "-ns"}, "second");
}

void ConsoleProgram::StartAndWait(const std::vector<std::string>& more) {
  Start(more);
  Await("push button", "Summary");
  if (!Eventually([&] { return IsActive(); })) throw std::runtime_error("the window never became active");
}

Accessible ConsoleProgram::Tree() {
  std::optional<Accessible> program;
  const bool there = Eventually([&] {
    program = Accessible::Program("zendrix", process_.id());
    return program || !process_.Running();
  });
  if (!there || !program) throw std::runtime_error("the console is not there:\n" + process_.Output() + Log());
  return *program;
}

std::optional<Accessible> ConsoleProgram::Find(const std::string& role, const std::string& name) {
  return Tree().Find(role, name);
}

Accessible ConsoleProgram::Await(const std::string& role, const std::string& name) {
  std::optional<Accessible> found;
  if (!Eventually([&] { return (found = Find(role, name)).has_value(); }))
    throw std::runtime_error("no " + role + " \"" + name + "\":\n" + Tree().Tree() + Log() +
                             process_.Output());
  return *found;
}

bool ConsoleProgram::HasText(const std::string& part) {
  return Tree().Find([&](const Accessible& thing) { return Contains(thing.text(), part); }).has_value();
}

Accessible ConsoleProgram::AwaitText(const std::string& part) {
  std::optional<Accessible> found;
  const auto look = [&] {
    found = Tree().Find([&](const Accessible& thing) { return Contains(thing.text(), part); });
    return found.has_value();
  };
  if (!Eventually(look)) throw std::runtime_error("no text \"" + part + "\":\n" + Tree().Tree() + Log());
  return *found;
}

void ConsoleProgram::AwaitGone(const std::string& role, const std::string& name) {
  if (!Eventually([&] { return !Find(role, name); }))
    throw std::runtime_error(role + " \"" + name + "\" stays:\n" + Tree().Tree());
}

void ConsoleProgram::Press(const std::string& role, const std::string& name) {
  const Accessible thing = Await(role, name);
  if (!thing.Act()) throw std::runtime_error(role + " \"" + name + "\" has no action:\n" + Tree().Tree());
}

void ConsoleProgram::MoveFocusTo(const std::string& role, const std::string& name, const std::string& key) {
  std::string way;
  for (int i = 0; i < kEnoughTabs; ++i) {
    const std::string was = FocusLabel();
    if (was == Label(role, name)) return;
    way += was + "\n";
    if (!Eventually([&] {
          screen_.Key(key);
          return ComesSoon([&] { return FocusLabel() != was; });
        }))
      break;
  }
  throw std::runtime_error("no way by keyboard to " + role + " \"" + name + "\":\n" + way + Tree().Tree());
}

std::string ConsoleProgram::FocusLabel() {
  auto focused = Accessible::Focused();
  // A page that is entered tells of itself, and not of its link that has the focus from then on.
  if (focused && focused->role() == "document web") {
    const auto link = focused->Find(
        [](const Accessible& thing) { return thing.role() == "link" && thing.Is(ATSPI_STATE_FOCUSED); });
    if (link) focused = link;
  }
  return focused ? Label(focused->role(), focused->name()) : "";
}

void ConsoleProgram::ClickOn(const Accessible& thing, unsigned button) {
  const Place place = thing.place();
  screen_.Click(place.x + place.width / 2, place.y + place.height / 2, button);
}

void ConsoleProgram::OpenPane(const std::string& name) {
  Press("push button", name);
  Await("label", name);
}

void ConsoleProgram::Quit() {
  Press("push button", "Quit");
  Press("push button", "Yes");
  AwaitText("You have chosen to exit");
  Press("push button", "OK");
  if (!Eventually([&] { return !process_.Running(); })) throw std::runtime_error("no end:\n" + Log());
}

Accessible ConsoleProgram::AwaitRow(const std::string& text) {
  return Await("table cell", text);
}

WindowId ConsoleProgram::MainWindow() {
  std::optional<WindowId> window;
  if (!Eventually([&] { return (window = screen_.WithTitle("Home Edition -  v ")).has_value(); }))
    throw std::runtime_error("no main window:\n" + Log());
  return *window;
}

bool ConsoleProgram::IsActive() {
  const auto window = screen_.WithTitle("Home Edition -  v ");
  return window && screen_.Active() == *window;
}

}  // namespace zendrix::desktop
