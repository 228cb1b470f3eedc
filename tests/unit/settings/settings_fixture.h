// A program folder in memory with a settings file in it. A log line that a test did not take with TakeLog
// fails it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "core/app_state.h"
#include "core/error_log.h"
#include "core/hash_utils.h"
#include "platform/memory/memory_platform.h"
#include "settings/ini_file.h"
#include "settings/reg_ini.h"

namespace zendrix::settings {

class SettingsTest : public ::testing::Test {
 protected:
  static constexpr char kIni[] = "/program/zendrix.ini";
  static constexpr char kSide[] = "/program/zendrix.kvh";

  SettingsTest() {
    state_.ProgramFolder = "/program";
    state_.ProductName = "Korvessa Zendrix Home Edition";
    log_.on_line = [this](const std::string& line) { log_lines_.push_back(line); };
    log_.on_fatal = [this](const std::string& proc, const core::RunTimeError& error) {
      fatal_ = {proc, std::to_string(error.number) + ": " + error.description};
    };
  }
  void TearDown() override {
    EXPECT_TRUE(log_lines_.empty()) << "unannounced log line: " << log_lines_.front();
  }

  // The settings file with this text and a side file that fits.
  void PutIni(const std::string& text) {
    platform_.files.Put(kIni, text);
    platform_.files.Put(kSide, platform_.family.HashBytes(text) + "\r\n");
  }
  std::string Ini() const { return platform_.files.Get(kIni); }
  // A value of the settings file as it stands there; "(none)" for an absent key.
  std::string Stored(const std::string& section, const std::string& key) const {
    return IniFile(Ini()).GetString(section, key, "(none)", 4096);
  }
  // Whether the pair would be taken at the next start.
  bool Verifies(const std::string& path = kIni) {
    return core::HashUtils(platform_.files, platform_.family).VerifyFileHash(path);
  }
  // Counts, from here on, what is done to the program folder's files but for the log; Changes() tells what
  // was changed, in order.
  void Count() {
    readings_ = 0;
    changes_.clear();
    platform_.files.before = [this](platform::FileOp op, const std::string& path) {
      using platform::FileOp;
      if (op == FileOp::kOpen && path == kIni) ++readings_;
      if (op == FileOp::kWriteAll || op == FileOp::kRename || op == FileOp::kRemove)
        changes_.push_back((op == FileOp::kRemove ? "-" : "") + path.substr(sizeof "/program"));
    };
  }
  std::vector<std::string> Changes() const { return changes_; }
  int readings() const { return readings_; }
  std::vector<std::string> TakeLog() { return std::exchange(log_lines_, {}); }
  std::vector<std::string> Boxes() const { return platform_.message_boxes.Texts(); }

  platform::MemoryPlatform platform_;
  platform::Seams seams_ = platform_.seams();
  core::AppState state_{seams_};
  core::ErrorLog log_{state_};
  RegIni reg_ini_{state_, log_};
  std::vector<std::string> log_lines_;
  std::vector<std::string> changes_;
  int readings_ = 0;  // of the settings file
  // Procedure and error of the fatal path.
  std::pair<std::string, std::string> fatal_;
};

}  // namespace zendrix::settings
