#include "store_operations.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "bench_platform.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "store/reader.h"
#include "temporary_folder.h"

namespace zendrix::bench {
namespace {

constexpr int kIdlePolls = 1000;

// A reader on a file, as the console has it. The log goes nowhere near the file's folder.
struct Console {
  explicit Console(std::string path)
      : file(std::move(path)), seams(platform.seams()), state(seams), log(state) {
    state.ProgramFolder = "/nonexistent";
    state.MonitoringFilePath = file;
  }

  std::string file;
  BenchPlatform platform;
  platform::Seams seams;
  core::AppState state;
  core::ErrorLog log;
  store::CMkvlf reader{state, log, [](int) {}};

  std::uint64_t Rows() const { return reader.EventTable ? reader.EventTable->RowCount() : 0; }
};

// A copy of the file that may grow, gone with the object.
class GrowingFile {
 public:
  explicit GrowingFile(const std::string& original) { std::filesystem::copy_file(original, path()); }

  std::string path() const { return folder_.path() + "/KorvessaMonitoring.kvl"; }
  void Append(const std::string& text) { std::ofstream(path(), std::ios::app | std::ios::binary) << text; }

 private:
  TemporaryFolder folder_;
};

std::string NewerLines(const std::string& last_date, int count) {
  std::string text;
  std::int64_t seconds = std::stoll(last_date);
  for (int i = 0; i < count; ++i) {
    text += std::to_string(++seconds) + ",WORKSTATION-07,2740,Running Processes|0|1|C:\\Program Files\\New " +
            std::to_string(i) + "\\new.exe|none, observed only|7,3|0\r\n";
  }
  return text;
}

}  // namespace

Operation LoadHome(const std::string& file, const std::vector<std::string>&) {
  const auto console = std::make_shared<Console>(file);
  return {{}, [console] {
            console->reader.InitClass(console->file);
            return console->Rows();
          }};
}

Operation Tick(const std::string& file, const std::vector<std::string>& arguments) {
  const int lines = arguments.empty() ? 100 : std::atoi(arguments[0].c_str());
  const auto growing = std::make_shared<GrowingFile>(file);
  const auto console = std::make_shared<Console>(growing->path());
  return {[growing, console, lines] {
            console->reader.InitClass(console->file);
            growing->Append(NewerLines(console->reader.LastDateUTC, lines));
          },
          [growing, console] {
            const std::uint64_t before = console->Rows();
            console->reader.cbTimer();
            return console->Rows() - before;
          }};
}

Operation TickIdle(const std::string& file, const std::vector<std::string>&) {
  const auto console = std::make_shared<Console>(file);
  return {[console] { console->reader.InitClass(console->file); },
          [console] {
            for (int i = 0; i < kIdlePolls; ++i) console->reader.LoadNewEvents();
            return console->Rows();
          },
          kIdlePolls};
}

}  // namespace zendrix::bench
