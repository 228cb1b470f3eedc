// frmMain in memory: a monitoring file with its Agent, saved settings, and the form on top, in a font whose
// characters are all of one width.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "admin/frm_main.h"
#include "support/console_world.h"

namespace zendrix::admin {

constexpr int kTwipsPerCharacter = 100;

class FrmMainFixture : public ::testing::Test {
 protected:
  FrmMainFixture() {
    world_.state.ProductName = "Korvessa Zendrix Administrator";
    world_.state.ProductEdition = "Administrator";
    Put({});
    // Everything saved before the first reading, so that it finds a file that verifies.
    for (const char* name : {"System", "Running Processes", "Monitoring Agent", "Tcp Port"})
      reg_ini_.SaveSetwChk("Monitors", name, "1");
    reg_ini_.ReadRegInfo();
    // As a start does once the reader knows monitors: the defaults that were written get their hash.
    reg_ini_.SaveSetwChk("Monitors", "System", "1");
  }

  std::string Path() const { return world_.InFolder("KorvessaMonitoring.kvl"); }
  static std::string Line(int time, const std::string& monitor, const std::string& text = "text",
                          const std::string& code = "A") {
    return std::to_string(time) + ",HOST," + monitor + "," + code + "," + text;
  }
  static std::string Bytes(const std::vector<std::string>& lines) {
    std::string bytes;
    for (const std::string& line : lines) bytes += line + "\r\n";
    return bytes;
  }
  void Put(const std::vector<std::string>& lines) { world_.platform.files.Put(Path(), Bytes(lines)); }
  void AppendLine(const std::string& line) { world_.platform.files.PutMore(Path(), line + "\r\n"); }

  frmMain& Open() {
    TextMetrics metrics;
    metrics.twips = [](std::string_view text) { return static_cast<int>(text.size()) * kTwipsPerCharacter; };
    metrics.pixels = [](std::string_view text) { return static_cast<int>(text.size()) * 6; };
    form_ = std::make_unique<frmMain>(
        AdminParts{world_.state, world_.log, reg_ini_, screen_, metrics, {capacity_, capacity_bytes_}});
    form_->Form_Load();
    form_->visible = true;
    return *form_;
  }
  frmMain& OpenOn(const std::vector<std::string>& lines) {
    Put(lines);
    return Open();
  }
  void Tick() { world_.platform.timers.Advance(kTimer1Ms); }
  std::vector<std::string> Column(int col) const {
    std::vector<std::string> texts;
    for (int row = 1; row < form_->EventList.Rows(); ++row) texts.push_back(form_->EventList.Text(row, col));
    return texts;
  }
  std::vector<std::string> IDs() const { return Column(kColEventID); }
  std::string Setting(const std::string& monitor) const {
    for (const auto& [name, value] : world_.state.settings.MonitorStates)
      if (name == monitor) return value;
    return "none";
  }
  platform::ScriptedBoxes& Boxes() { return world_.platform.message_boxes; }

  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  widgets::Screen screen_;
  std::unique_ptr<frmMain> form_;
  std::size_t capacity_ = RowCapacity{}.rows;
  std::size_t capacity_bytes_ = RowCapacity{}.bytes;
};

}  // namespace zendrix::admin
