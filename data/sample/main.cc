// zendrix-sample FOLDER: writes the sample history into FOLDER/home and FOLDER/admin. What is shipped beside
// this file was made so.
#include <filesystem>
#include <fstream>
#include <iostream>

#include "data/sample/household.h"

namespace {

bool Write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << bytes;
  file.close();
  if (!file) std::cerr << "zendrix-sample: cannot write " << path.string() << "\n";
  return file.good();
}

bool WriteHistory(const std::filesystem::path& folder, zendrix::agent::Form form) {
  const auto history = zendrix::sample::MakeHistory(form, zendrix::sample::kSeed, zendrix::sample::kEnd);
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  return Write(folder / "KorvessaMonitoring.kvl", history.monitoring) &&
         Write(folder / "KorvessaEventLog.kvl", history.agent_log) &&
         (history.decided.empty() || Write(folder / "KorvessaAlr.kvl", history.decided));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || argv[1][0] == '-') {
    std::cerr << "usage: zendrix-sample FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  const bool written = WriteHistory(folder / "home", zendrix::agent::Form::kHome) &&
                       WriteHistory(folder / "admin", zendrix::agent::Form::kAdmin);
  return written ? 0 : 1;
}
