// An update file in a program folder in memory, an Agent that runs, and a main window that a started
// installer unloads.
#pragma once

#include "core/version.h"
#include "core/version_text.h"
#include "home/self_update.h"
#include "settings/reg_ini.h"
#include "support/console_world.h"
#include "support/pe_file.h"

namespace zendrix::home {

inline constexpr char kInstaller[] = "/opt/zendrix/Zendrix Update.exe";
inline constexpr char kInstallerParameters[] = "/silent /log =\"KorvessaZendrixSetup.log\" /NOCANCEL";

class UpdateFixture : public ::testing::Test {
 protected:
  UpdateFixture() {
    world_.platform.services.SetRunning("ZENDRIX");
    reg_ini_.SaveSettingHashed("Misc", "DontAsk", "0");
    reg_ini_.ReadRegInfo();
  }

  void HaveFile(const std::string& bytes) { world_.platform.files.Put(kInstaller, bytes); }
  void HaveVersion(const std::array<std::uint16_t, 4>& version) {
    HaveFile(zendrix::testing::PeFile{version}.Bytes());
  }
  bool FileIsThere() { return world_.platform.files.Has(kInstaller); }
  std::string AgentState() { return world_.platform.services.At("ZENDRIX").state; }
  std::string Saved(const std::string& key) {
    const std::string text = world_.platform.files.Get("/opt/zendrix/zendrix.ini");
    const auto at = text.find("\n" + key + "=");
    if (at == std::string::npos) return "none";
    const auto begin = at + key.size() + 2;
    return text.substr(begin, text.find('\r', begin) - begin);
  }
  auto& Started() { return world_.platform.shell.installers; }
  platform::ScriptedBoxes& Boxes() { return world_.platform.message_boxes; }

  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  settings::MiscSettings misc_{world_.state, reg_ini_};
  widgets::Screen screen_;
  control::AgentControl agent_{world_.state, screen_};
  widgets::Form main_{world_.state.forms, "frmNewUI"};
  UpdateNeeds needs_{world_.state, world_.log, misc_, agent_, main_};
};

}  // namespace zendrix::home
