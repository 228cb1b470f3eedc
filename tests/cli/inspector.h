// Runs zendrix-inspect on a program folder of its own, as a terminal or a script would: arguments as a
// vector, an environment without the caller's locale, standard input as a text or line by line.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

// Instantiated once, in inspector.cc.
extern template class nlohmann::basic_json<nlohmann::ordered_map>;

namespace zendrix::test {

using Json = nlohmann::ordered_json;
using Arguments = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

// The program that is tried: that of the same build, or another build's, named by ZENDRIX_TEST_INSPECTOR.
const std::string& InspectorPath();

// A run that has ended.
struct Ended {
  int status = -1;  // exit status; -1 when a signal ended the process
  std::string out;
  std::string err;

  // The one document printed; fails the test when there is anything else.
  Json document() const;
};

// A run that goes on: what it prints is read document by document.
class Running {
 public:
  Running(const Arguments& arguments, const Environment& environment);
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running();

  // A line on its standard input.
  void Line(const std::string& text = "");
  void EndInput();
  // Waits for the next document; null (and a failed test) when none comes within a minute.
  Json Document();
  // Whether nothing was printed that has not been read.
  bool Silent();
  void Signal(int number);
  // Waits for the end; the exit status, -1 when a signal ended it.
  int Wait();

 private:
  bool ReadMore(int timeout_ms);

  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string read_;
};

// Every file below a folder: contents, mode, identity and time of change by relative path.
std::map<std::string, std::string> Listing(const std::string& folder);
// Names of the plain files right in the folder, sorted.
std::vector<std::string> FilesIn(const std::string& folder);

std::vector<std::string> KeysOf(const Json& object);
// The texts of the boxes and the lines of the log that a document tells of.
std::vector<std::string> BoxTexts(const Json& document);
std::vector<std::string> LogLines(const Json& document);

class InspectorTest : public ::testing::Test {
 protected:
  InspectorTest();

  static constexpr int kStart = 1795225500;  // 2026-11-21 01:45:00 UTC
  static constexpr char kMonitoring[] = "KorvessaMonitoring.kvl";

  // From now on a copy of the program in this folder runs, without the libraries that lie beside the
  // original.
  void RunFrom(const std::filesystem::path& folder);
  // A run with exactly these arguments; without the folder.
  Ended RunPlain(const Arguments& arguments, const std::string& input = "",
                 const std::string& working_folder = "/");
  // A run on the folder, the Agent not installed unless the arguments say otherwise.
  Ended Run(const Arguments& arguments, const std::string& input = "");
  // The document of a run that must end with status 0 and nothing on standard error.
  Json Document(const Arguments& arguments);
  // The same for a run that changes the folder.
  Json DocumentWriting(const Arguments& arguments);
  // The document of a run that must end with this status.
  Json DocumentOf(int status, const Arguments& arguments);
  Arguments OnFolder(const Arguments& arguments) const;

  // One line of the monitoring file, `second` seconds behind the start.
  static std::string Event(int second, const std::string& monitor, const std::string& description,
                           const std::string& change = "1", const std::string& reaction = "",
                           const std::string& code = "C,1");
  void WriteHistory(const std::string& lines) { folder_.Write(kMonitoring, lines); }
  void Append(const std::string& name, const std::string& bytes);
  // A file with its hash side file.
  void WriteHashed(const std::string& name, const std::string& bytes);
  // A settings file that verifies, so that no command complains of it.
  void WriteSettings(const std::string& text = "[Misc]\r\nTTour=Y\r\n") { WriteHashed("zendrix.ini", text); }
  // An earlier alert, events, an alert on them (ID 6), and what the Agent did about them.
  void WriteAlertHistory();
  void WriteDescriptions();

  TemporaryFolder folder_;
  std::string program_;
  Environment environment_{{"LC_ALL", "C"}, {"TZ", "UTC"}};
};

}  // namespace zendrix::test
