#include "generate.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace zendrix::bench {
namespace {

constexpr char kHost[] = "WORKSTATION-07";

constexpr std::array<std::string_view, 12> kFolders = {
    "C:\\Windows\\System32",           "C:\\Program Files\\Mozilla Firefox",
    "C:\\Program Files\\Office\\root", "C:\\Windows",
    "C:\\Program Files\\Common Files", "C:\\Users\\clara\\AppData\\Local\\Temp",
    "C:\\Program Files (x86)\\Mail",   "C:\\Windows\\SysWOW64",
    "C:\\ProgramData\\Updater",        "C:\\Users\\clara\\Downloads",
    "C:\\Program Files\\Backup",       "D:\\Tools"};
constexpr std::array<std::string_view, 16> kPrograms = {
    "svchost", "firefox", "winword", "explorer", "taskhost", "mail",  "conhost", "update",
    "backup",  "notepad", "dllhost", "searchui", "spoolsv",  "setup", "python",  "cmd"};
constexpr std::array<std::string_view, 6> kUsers = {"clara",           "SYSTEM", "LOCAL SERVICE",
                                                    "NETWORK SERVICE", "otto",   "guest"};
constexpr std::array<std::string_view, 5> kStates = {"ESTABLISHED", "TIME_WAIT", "CLOSE_WAIT", "SYN_SENT",
                                                     "LISTENING"};

template <std::size_t n>
std::string Pick(const std::array<std::string_view, n>& from, std::uint64_t i) {
  return std::string(from[i % n]);
}

std::string Fraction(std::uint64_t hundredths) {
  char text[16];
  std::snprintf(text, sizeof text, "0.%02u", static_cast<unsigned>(hundredths % 100));
  return text;
}

// Each monitor runs in a thread of its own.
int ThreadOf(std::string_view monitor) {
  return 2000 + static_cast<int>(monitor.size() * 37 + static_cast<unsigned char>(monitor[0])) * 4;
}

}  // namespace

std::uint64_t Generator::Random(std::uint64_t below) {
  state_ ^= state_ << 13;
  state_ ^= state_ >> 7;
  state_ ^= state_ << 17;
  return (state_ * 0x2545F4914F6CDD1D >> 33) % below;
}

std::uint64_t Generator::Skewed(std::uint64_t below) {
  return Random(Random(Random(below) + 1) + 1);
}

std::string Generator::Process() {
  const std::uint64_t which = Skewed(160);
  std::string path = Pick(kFolders, which) + "\\" + Pick(kPrograms, which * 7 / 3);
  if (which > 60) path += std::to_string(which);
  return path + ".exe";
}

std::string Generator::Connection() {
  return "192.168.1.23:" + std::to_string(49152 + Random(16384)) + " " + std::to_string(13 + Skewed(60)) +
         ".107." + std::to_string(Skewed(200)) + "." + std::to_string(1 + Skewed(250)) + ":" +
         (Random(5) == 0 ? "80" : "443") + " " + Pick(kStates, Skewed(kStates.size()));
}

Generator::Event Generator::Next() {
  const std::uint64_t kind = Random(100);
  const std::string sign = Random(2) == 0 ? "1" : "-1";
  const std::string code = std::to_string(1 + Skewed(40)) + "," + std::to_string(Skewed(9));
  if (kind < 28) {
    std::string parts = Process();
    for (std::uint64_t more = Skewed(5); more > 0; --more) parts += " * " + Process();
    return {"Running Processes", parts, "0", sign, "observed", code};
  }
  if (kind < 58) return {"Tcp Connections", Connection(), "0", sign, "observed", code};
  if (kind < 64) {
    return {"Listening Ports",
            "0.0.0.0:" + std::to_string(130 + Skewed(900)) + " " + Process(),
            "0",
            sign,
            "none",
            code};
  }
  if (kind < 82) {
    return {"Folder Contents",
            Pick(kFolders, Skewed(12)) + "\\" + Pick(kPrograms, Skewed(16)) + "_" +
                std::to_string(Skewed(4000)) + ".dat",
            std::to_string(Skewed(400) * 1024),
            sign,
            "observed",
            code};
  }
  if (kind < 89) {
    const std::string percent = std::to_string(20 + Skewed(70));
    return {"Memory Utilization",
            percent + " percent used by " + Process(),
            percent,
            std::to_string(Random(1000)) + "." + std::to_string(Random(10)),
            "none",
            code};
  }
  if (kind < 95) {
    return {"Network Transmission Rate",
            std::to_string(Skewed(9000)) + " kilobytes per second",
            std::to_string(Skewed(9000)),
            sign,
            "none",
            code};
  }
  if (kind < 97)
    return {"Logged-on Users", kHost + ("\\" + Pick(kUsers, Skewed(6))), "0", sign, "none", code};
  if (kind < 98) return {"System Users", Pick(kUsers, Skewed(6)), "0", "1", "none", code};
  if (kind < 99) {
    return {"Autorun Registry",
            "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Run=" + Process(),
            "0",
            sign,
            "none",
            code};
  }
  return {"System", "Time of the host was set", "0", "0", "none", code};
}

void Generator::Append(std::string& text) {
  seconds_ += static_cast<std::int64_t>(Skewed(8));
  const std::uint64_t lines_for_an_alert = kind_ == Kind::kAlerts ? 18 : 110;
  if (lines_ > 8 && Random(lines_for_an_alert) == 0) return AppendAlert(text);
  Event event = Next();
  Line(text, event);
  if (event.description.find(" * ") == std::string::npos) recent_[Random(4)] = std::move(event);
}

// The alert lists its events by monitor; its companion says what was done about each.
void Generator::AppendAlert(std::string& text) {
  std::string pairs, reactions;
  for (const Event& event : recent_) {
    if (event.monitor.empty()) continue;
    if (!pairs.empty()) pairs += ';';
    pairs += event.monitor + "=" + event.description;
    if (Random(3) == 0) pairs += " * " + Process();
    reactions += event.monitor + (Random(3) == 0 ? "=failed;" : "=success;");
  }
  const std::uint64_t risk = Random(4) == 0 ? 85 + Random(15) : Skewed(90);
  const std::string code = "31," + std::to_string(Skewed(60)) + ",0";
  Line(text, {"Aggregation", pairs, Fraction(risk + Random(9)), Random(12) == 0 ? "-0.10" : Fraction(risk),
              "reported", code});
  Line(text, {"Community", "group", "0", Fraction(risk), reactions, code});
}

void Generator::Line(std::string& text, const Event& event) {
  ++lines_;
  text += std::to_string(seconds_);
  text += ',';
  text += kHost;
  if (kind_ == Kind::kAdmin) {
    const std::string_view code = event.monitor == "Aggregation"  ? "N"
                                  : event.change.starts_with('-') ? "R"
                                                                  : "A";
    text += "," + event.monitor + "," + std::string(code) + "," + event.description + "\r\n";
    return;
  }
  text += "," + std::to_string(ThreadOf(event.monitor)) + "," + event.monitor + "|" + event.original + "|" +
          event.change + "|" + event.description + "|" + event.reaction + "|" + event.code + "|0\r\n";
}

std::string GenerateBytes(Kind kind, std::uint64_t bytes, std::uint64_t seed) {
  Generator generator(kind, seed);
  std::string text;
  text.reserve(bytes + 4096);
  while (text.size() < bytes) generator.Append(text);
  return text;
}

std::string GenerateLines(Kind kind, std::uint64_t lines, std::uint64_t seed) {
  Generator generator(kind, seed);
  std::string text;
  while (generator.lines() < lines) generator.Append(text);
  return text;
}

}  // namespace zendrix::bench
