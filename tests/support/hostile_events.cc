#include "support/hostile_events.h"

#include <algorithm>

namespace zendrix::test {
namespace {

constexpr int kStart = 1795225500;  // 2026-11-21 01:45:00 UTC

class FileText {
 public:
  void Line(const std::string& date, const std::string& host, const std::string& monitor,
            const std::string& description, const std::string& change, const std::string& reaction) {
    bytes_ += date + "," + host + ",7," + monitor + "|" + change + "|" + change + "|" + description + "|" +
              reaction + "|AG,5,1|0\r\n";
  }
  std::string NextSecond() { return std::to_string(kStart + ++second_); }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
  int second_ = 0;
};

}  // namespace

const std::vector<std::string>& PageMonitors() {
  static const std::vector<std::string> monitors = {"Running Processes",
                                                    "TCP Connections",
                                                    "Listening Ports",
                                                    "Autorun Registry",
                                                    "System Users",
                                                    "Windows Folder",
                                                    "Logged-On Users",
                                                    "Memory Utilization",
                                                    "System",
                                                    "Shown To Nobody",
                                                    "Network Transmission Rate"};
  return monitors;
}

std::vector<std::string> DescriptionsWith(std::string_view monitor, const std::string& text) {
  std::vector<std::string> all = {text};
  if (monitor == "Running Processes")
    all.push_back("C:\\" + text + "\\" + text + ".exe:" + text);
  else if (monitor == "TCP Connections")
    all.push_back(text + ":" + text + ":C:\\" + text + "\\" + text);
  else if (monitor == "Listening Ports")
    all.push_back(text + ":C:\\" + text + "\\" + text);
  else if (monitor == "Autorun Registry")
    all.push_back("Run\\" + text + "=C:\\" + text);
  else if (monitor == "Memory Utilization" || monitor == "Network Transmission Rate")
    all.insert(all.end(), {"12.5:" + text, "12.5:" + text + ":" + text});
  return all;
}

bool FitsAStamp(std::string_view text) {
  const bool number =
      std::all_of(text.begin(), text.end(), [](char c) { return (c >= '0' && c <= '9') || c == 'e'; });
  const bool seen = std::any_of(text.begin(), text.end(), [](unsigned char c) { return c > 32; });
  return !number && seen && text.find_first_of("|,") == std::string_view::npos;
}

std::string MonitoringFileWith(const std::string& text) {
  FileText file;
  const bool fits = FitsAStamp(text);
  const std::string odd = fits ? text : "x";
  file.Line(fits ? text : file.NextSecond(), odd, "System", text, "1", text);
  for (const std::string& monitor : PageMonitors()) {
    for (const std::string& description : DescriptionsWith(monitor, text)) {
      file.Line(file.NextSecond(), "HOST", monitor, description, "1", text);
      file.Line(file.NextSecond(), "HOST", "Aggregation", monitor + "=" + description + ";System=" + text,
                "0.99", text);
      file.Line(file.NextSecond(), "HOST", "Community", "observed", "0",
                monitor + "=success " + text + ";System=failed");
      file.Line(file.NextSecond(), "HOST", "Aggregation", monitor, "0.99", text);
    }
  }
  file.Line(file.NextSecond(), odd, odd, text, "1", text);
  file.Line(file.NextSecond(), odd, "Aggregation", odd, "0.99", text);
  file.Line(fits ? text : file.NextSecond(), odd, "Aggregation", odd + "=" + text + ";System=" + text, "0.99",
            text);
  file.Line(fits ? text : file.NextSecond(), odd, "Community", text, text, "System=" + text + "success");
  file.Line(fits ? text : file.NextSecond(), odd, "Aggregation", "System", text, text);
  return file.bytes();
}

}  // namespace zendrix::test
