#include "data/sample/household.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "agent/score/identity.h"

namespace zendrix::sample {
namespace {

using agent::Event;
using agent::EventKind;
using agent::Form;
using agent::Item;
using agent::Rule;
using agent::RuleSet;
namespace monitor = agent::monitor;

constexpr char kHost[] = "FAMILY-PC";
constexpr char kThread[] = "2140";
constexpr int kDays = 30;
constexpr std::int64_t kMinute = 60;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

// Programs that people use, and the computers that these speak to.
struct Program {
  std::string_view path;
  std::string_view name;
  std::string_view server;  // "address:port", empty for none
};
constexpr std::array<Program, 8> kPrograms = {{
    {"C:\\Program Files\\Browser\\browser.exe", "browser", "203.0.113.10:443"},
    {"C:\\Program Files\\Mail\\mail.exe", "mail", "192.0.2.25:993"},
    {"C:\\Program Files\\Office\\writer.exe", "writer", ""},
    {"C:\\Program Files\\Office\\tables.exe", "tables", ""},
    {"C:\\Program Files\\Music\\player.exe", "player", "203.0.113.77:443"},
    {"C:\\Program Files\\Photos\\photos.exe", "photos", ""},
    {"C:\\Program Files\\Games\\racer.exe", "racer", "203.0.113.140:3074"},
    {"C:\\Program Files\\Backup\\backup.exe", "backup", "192.0.2.60:443"},
}};
constexpr std::string_view kServices = "C:\\Windows\\System32\\svchost.exe";
constexpr std::string_view kRun = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\";
constexpr std::string_view kOwnRun = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\";

Item MakeItem(std::string_view of, const std::string& description, RuleSet rules = {}) {
  return {of, description, {}, description, rules};
}

std::string Joined(std::string_view a, std::string_view b) {
  return std::string(a).append(b);
}

class Household {
 public:
  Household(Form form, std::uint64_t seed, std::int64_t end)
      : form_(form), state_(seed * 2 + 1), begin_(end - kDays * kDay) {}

  History Live() {
    SetUp();
    for (int day = 0; day < kDays; ++day) LiveDay(day);
    OpenAttachment();
    return std::move(history_);
  }

 private:
  // ---- chance

  std::uint64_t Random(std::uint64_t below) {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return (state_ * 0x2545F4914F6CDD1D >> 33) % below;
  }
  std::string Process(std::string_view path) {
    return Joined(path, ":") + std::to_string(1000 + 4 * Random(3000));
  }
  static std::string TwoDecimals(double number) {
    std::array<char, 32> text = {};
    std::snprintf(text.data(), text.size(), "%.2f", number);
    return text.data();
  }

  // ---- what is written

  // Each batch has a second of its own.
  std::string Write(const agent::Batch& batch) {
    now_ = std::max(now_, last_ + 1);
    const auto text = RenderBatch(form_, {now_, kHost, kThread}, batch);
    last_ = text.last_second;
    return text.bytes;
  }
  void Tell(std::vector<Event> events) {
    agent::Batch batch;
    batch.events = std::move(events);
    history_.monitoring += Write(batch);
  }
  void Log(const std::string& message) {
    history_.agent_log += std::to_string(now_) + "," + kHost + "," + kThread + "," + message + "\r\n";
  }

  void Add(const Item& item) {
    present_.push_back(item);
    Tell(agent::ChangeEvents({{}, {item}}));
  }
  void Remove(const std::string& description) {
    const auto gone = std::find_if(present_.begin(), present_.end(),
                                   [&](const Item& item) { return item.description == description; });
    if (gone == present_.end()) return;
    const Item item = *gone;
    present_.erase(gone);
    Tell(agent::ChangeEvents({{item}, {}}));
  }
  void Measure(std::string_view of, double& value, double now, const std::string& description,
               const std::string& unit) {
    Event event;
    event.kind = EventKind::kMeasured;
    event.item = MakeItem(of, description);
    event.original = value;
    event.change = now - value;
    event.reading_before = TwoDecimals(value) + unit;
    event.reading = TwoDecimals(now) + unit;
    value = now;
    Tell({event});
  }
  void Happen(const std::string& description, double count) {
    Event event;
    event.kind = EventKind::kHappened;
    event.item = MakeItem(monitor::kSystem, description, {Rule::kFailedLogins});
    event.change = count;
    Tell({event});
  }

  // What the Agent did about a monitor's events; about the others nothing.
  struct Done {
    std::string_view monitor_name;
    std::string_view what;
  };
  // The answer that the user gave: 0 none, "A" behind the second for blocked.
  enum class Answer { kNone, kAllowed, kBlocked };

  void Alarm(const std::string& subject, RuleSet rules, const std::vector<Item>& members,
             Answer answer = Answer::kNone, const std::vector<Done>& done = {}) {
    agent::Batch batch;
    agent::Alert alert{subject, rules, agent::ComposeRisk(rules), members};
    alert.code = agent::AlertCode(kHost, subject);
    alert.change = identities_.ChangeOf(alert.risk, true, alert.code);
    // Once each: a decision that is tried on the sample goes nowhere.
    alert.has_forerunner = true;
    batch.alerts.push_back(std::move(alert));
    std::string text = Write(batch);
    for (const Done& one : done) {
      Replace(text, Joined(one.monitor_name, "=failed (the Agent only observes)"),
              Joined(one.monitor_name, "=success (") + std::string(one.what) + ")");
    }
    history_.monitoring += text;
    if (form_ == Form::kAdmin || answer == Answer::kNone) return;
    history_.decided += std::to_string(last_) + (answer == Answer::kBlocked ? "A" : "") + "\r\n";
  }
  static void Replace(std::string& text, const std::string& what, const std::string& by) {
    const std::size_t at = text.find(what);
    if (at != std::string::npos) text.replace(at, what.size(), by);
  }

  // ---- the computer and its people

  void SetUp() {
    for (const char* account : {"Administrator", "Clara", "Otto", "Guest"}) {
      present_.push_back(MakeItem(monitor::kAccounts, account));
    }
    present_.push_back(MakeItem(monitor::kAutorun, Joined(kRun, "Backup=") + std::string(kPrograms[7].path)));
    present_.push_back(MakeItem(monitor::kFolders, "C:\\Windows\\System32\\drivers\\etc\\hosts"));
    present_.push_back(MakeItem(monitor::kProcesses, Joined(kServices, ":824")));
    present_.push_back(MakeItem(monitor::kProcesses, "C:\\Windows\\explorer.exe:3312"));
    present_.push_back(MakeItem(monitor::kProcesses, "C:\\Windows\\System32\\spoolsv.exe:1408"));
    for (const char* port : {"135:", "445:", "3389:"}) {
      present_.push_back(MakeItem(monitor::kPorts, Joined(port, kServices)));
    }
  }

  void BeginDay(int day) {
    // A day's hours are those before the hour of the month's end.
    now_ = begin_ + day * kDay + 16 * kHour + static_cast<std::int64_t>(Random(kHour));
    Log("Agent started");
    agent::Batch batch;
    batch.begins_session = true;
    batch.events = agent::PresentEvents(present_);
    history_.monitoring += Write(batch);
    Log("Session began; " + std::to_string(present_.size()) + " items");
  }

  void LiveDay(int day) {
    BeginDay(day);
    const std::string user = Random(3) == 0 ? "Otto" : "Clara";
    Pass(kMinute, 5 * kMinute);
    Add(MakeItem(monitor::kLogins, user));
    for (std::uint64_t more = 5 + Random(6); more > 0; --more) UseProgram();
    Surprise(day);
    for (std::uint64_t more = 3 + Random(4); more > 0; --more) UseProgram();
    if (day == kDays - 1) return;  // the month ends in the middle of its last day
    Pass(10 * kMinute, kHour);
    Remove(user);
    Log("Agent stopped; the computer is shut down");
  }

  void Pass(std::int64_t least, std::int64_t most) {
    now_ += least + static_cast<std::int64_t>(Random(static_cast<std::uint64_t>(most - least)));
  }

  void UseProgram() {
    Pass(2 * kMinute, 20 * kMinute);
    const Program& program = kPrograms[Random(Random(kPrograms.size()) + 1)];
    const std::string process = Process(program.path);
    Add(MakeItem(monitor::kProcesses, process));
    std::string connection;
    if (!program.server.empty()) {
      Pass(2, 20);
      connection = Joined(program.server, ":") + std::string(program.path);
      Add(MakeItem(monitor::kConnections, connection));
    }
    if (Random(3) == 0) {
      const double percent = 35 + static_cast<double>(Random(4000)) / 100;
      Measure(monitor::kMemory, memory_, percent,
              TwoDecimals(percent) + ":browser:" + std::string(program.name), " percent");
    }
    if (Random(3) == 0) {
      const double rate = 20 + static_cast<double>(Random(60000)) / 100;
      Measure(monitor::kTraffic, traffic_, rate, TwoDecimals(rate), " KB per second");
    }
    Pass(kMinute, 15 * kMinute);
    if (!connection.empty()) Remove(connection);
    Remove(process);
  }

  // What stands out of an ordinary day.
  void Surprise(int day) {
    Pass(kMinute, 10 * kMinute);
    if (day == 3) FillMemory();
    if (day == 6) LoadFilm();
    if (day == 9) Update();
    if (day == 12) InstallPrinter();
    if (day == 18) TryPasswords();
    if (day == 21) AddAccount();
    if (day == 24) InstallPlayer();
  }

  void FillMemory() {
    const std::string description = "93.40:racer:browser";
    Measure(monitor::kMemory, memory_, 93.4, description, " percent");
    Alarm("memory", {Rule::kMemoryNearlyFull, Rule::kMemoryRise}, {MakeItem(monitor::kMemory, description)},
          Answer::kAllowed);
    Pass(20 * kMinute, 40 * kMinute);
    Measure(monitor::kMemory, memory_, 41.2, "41.20:browser:mail", " percent");
  }

  void LoadFilm() {
    const std::string description = "4210.55";
    Measure(monitor::kTraffic, traffic_, 4210.55, description, " KB per second");
    Alarm("network", {Rule::kTrafficRise}, {MakeItem(monitor::kTraffic, description)});
  }

  void InstallPrinter() {
    const std::string port = "9100:C:\\Program Files\\Printer\\printhub.exe";
    Add(MakeItem(monitor::kProcesses, "C:\\Program Files\\Printer\\printhub.exe:4716"));
    Add(MakeItem(monitor::kPorts, port));
    Alarm("printhub.exe", {Rule::kPortNew, Rule::kPortOpenToAll}, {MakeItem(monitor::kPorts, port)},
          Answer::kAllowed);
  }

  void AddAccount() {
    Add(MakeItem(monitor::kAccounts, "Grandma"));
    Alarm("Grandma", {Rule::kAccountNew}, {MakeItem(monitor::kAccounts, "Grandma")});
  }

  void InstallPlayer() {
    const std::string entry = Joined(kOwnRun, "Player=") + std::string(kPrograms[4].path);
    Add(MakeItem(monitor::kAutorun, entry));
    Alarm("player.exe", {Rule::kAutorunNew}, {MakeItem(monitor::kAutorun, entry)});
  }

  // A program out of the temporary folder that loads something and puts it into the system's folder: so do
  // intruders, and so does an update.
  void Update() {
    const std::string path = "C:\\Users\\Clara\\AppData\\Local\\Temp\\office_update.exe";
    const std::string process = path + ":5208";
    const std::string connection = "192.0.2.80:443:" + path;
    const std::string folder = "C:\\Windows\\System32\\officehelp.dll";
    Add(MakeItem(monitor::kProcesses, process));
    Pass(3, 10);
    Add(MakeItem(monitor::kConnections, connection));
    Pass(20, 60);
    Add(MakeItem(monitor::kFolders, folder));
    Alarm("office_update.exe", {Rule::kProgramInTemporaryFolder, Rule::kConnectionOfUnknownProgram},
          {MakeItem(monitor::kProcesses, process), MakeItem(monitor::kConnections, connection),
           MakeItem(monitor::kFolders, folder)},
          Answer::kAllowed);
    Pass(20, 60);
    Remove(connection);
    Remove(process);
    Remove(folder);
  }

  // Somebody tries passwords on the port for remote work until one fits.
  void TryPasswords() {
    const std::string port = Joined("3389:", kServices);
    std::string tried;
    for (const int count : {58, 212, 240, 231}) {
      Pass(8 * kMinute, 12 * kMinute);
      tried = std::to_string(count) + " failed logins for Administrator from 203.0.113.66";
      Happen(tried, count);
      if (count == 212) {
        Alarm("failed logins", {Rule::kFailedLogins, Rule::kPortOpenToAll},
              {MakeItem(monitor::kSystem, tried), MakeItem(monitor::kPorts, port)});
      }
    }
    Pass(20, 90);
    const std::string login = "Administrator from 203.0.113.66";
    Add(MakeItem(monitor::kLogins, login));
    Alarm("failed logins", {Rule::kFailedLogins, Rule::kLoginFromElsewhere, Rule::kLoginAsRootFromElsewhere},
          {MakeItem(monitor::kLogins, login), MakeItem(monitor::kSystem, tried),
           MakeItem(monitor::kPorts, port)},
          Answer::kBlocked, {{monitor::kLogins, "the login was ended"}});
    Pass(5, 15);
    Remove(login);
  }

  // The month's end: the attachment of a mail is a program.
  void OpenAttachment() {
    now_ = begin_ + kDays * kDay - 34 * kMinute;
    const std::string opened = "C:\\Users\\Clara\\AppData\\Local\\Temp\\Invoice_2291.pdf.exe";
    const std::string path = "C:\\Users\\Clara\\AppData\\Roaming\\InvoiceView\\invview.exe";
    const std::string task = "C:\\Windows\\System32\\Tasks\\InvoiceView";
    const std::string first = opened + ":6120";
    const std::string process = path + ":6188";
    const std::string connection = "198.51.100.23:8443:" + path;
    const std::string entry = Joined(kOwnRun, "InvoiceView=") + path;
    Add(MakeItem(monitor::kProcesses, Process(kPrograms[1].path)));
    Pass(kMinute, 2 * kMinute);
    Add(MakeItem(monitor::kProcesses, first));
    Alarm("Invoice_2291.pdf.exe", {Rule::kProgramInTemporaryFolder, Rule::kProgramFileInTemporaryFolder},
          {MakeItem(monitor::kProcesses, first)});
    Pass(20, 40);
    Add(MakeItem(monitor::kFolders, task));
    Add(MakeItem(monitor::kAutorun, entry));
    Add(MakeItem(monitor::kProcesses, process));
    Remove(first);
    Pass(5, 15);
    Add(MakeItem(monitor::kConnections, connection));
    const std::vector<Item> all = {MakeItem(monitor::kAutorun, entry),
                                   MakeItem(monitor::kConnections, connection),
                                   MakeItem(monitor::kProcesses, process), MakeItem(monitor::kFolders, task)};
    Alarm("invview.exe",
          {Rule::kAutorunNew, Rule::kAutorunHidden, Rule::kConnectionToUnusualPort,
           Rule::kProgramOutsideSystem, Rule::kProgramHidden},
          all);
    for (int again = 0; again < 3; ++again) {
      Pass(2 * kMinute, 4 * kMinute);
      Remove(connection);
      Pass(kMinute, 2 * kMinute);
      Add(MakeItem(monitor::kConnections, connection));
    }
    const std::string rate = "1840.20";
    Measure(monitor::kTraffic, traffic_, 1840.2, rate, " KB per second");
    Alarm("invview.exe",
          {Rule::kTrafficRise, Rule::kConnectionToUnusualPort, Rule::kProgramOutsideSystem,
           Rule::kProgramHidden},
          {MakeItem(monitor::kConnections, connection), MakeItem(monitor::kTraffic, rate)}, Answer::kNone,
          {{monitor::kConnections, "the connection was cut"}});
    Pass(3, 8);
    Remove(connection);
    now_ = begin_ + kDays * kDay;
    Measure(monitor::kTraffic, traffic_, 24.8, "24.80", " KB per second");
  }

  const Form form_;
  std::uint64_t state_;
  const std::int64_t begin_;
  std::int64_t now_ = 0;
  std::int64_t last_ = 0;
  std::vector<Item> present_;
  double memory_ = 38.5;
  double traffic_ = 40;
  agent::Identities identities_;
  History history_;
};

}  // namespace

History MakeHistory(Form form, std::uint64_t seed, std::int64_t end) {
  return Household(form, seed, end).Live();
}

}  // namespace zendrix::sample
