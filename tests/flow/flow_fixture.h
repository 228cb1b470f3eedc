// The whole console in memory, as the executable starts it: a program folder with its monitoring file and the
// Agent that writes it, twins of every seam, windows that a script stands in for, and verbs for what a user
// does. Lines of the log count as announced only when a test says so.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "console/console.h"
#include "support/console_world.h"
#include "support/fake_page.h"

namespace zendrix::flow {

class FlowTest : public ::testing::Test {
 protected:
  static constexpr int kNow = 1795225800;    // 2026-11-21 01:50:00 UTC
  static constexpr int kStart = 1795225500;  // five minutes before

  FlowTest() {
    world_.platform.clock.SetUtc(kNow);
    world_.platform.services.SetRunning("ZENDRIX");
    world_.state.ProductName.clear();
    // A settings file that verifies and shows every alert.
    settings::RegIni(world_.state, world_.log).SaveSettingHashed("Misc", "ShRskLvl", "0");
    settings::RegIni(world_.state, world_.log).SaveSettingHashed("Misc", "TTour", "Y");
    world_.host.on_show = [this](widgets::Form& form) {
      auto* main = dynamic_cast<home::frmNewUI*>(&form);
      if (main) page_ = std::make_unique<testing::FakePage>(main->alerts.sDesc);
    };
  }
  ~FlowTest() override { End(); }

  std::string Path(const std::string& name = "KorvessaMonitoring.kvl") const { return world_.InFolder(name); }
  std::string File(const std::string& name) { return world_.platform.files.Get(Path(name)); }
  static std::string Line(int second, const std::string& monitor, const std::string& description,
                          const std::string& change = "1", const std::string& reaction = "",
                          const std::string& code = "C,1") {
    return std::to_string(kStart + second) + ",HOST,7," + monitor + "|" + change + "|" + change + "|" +
           description + "|" + reaction + "|" + code + "|0\r\n";
  }
  // An alert of one process that the Agent could not stop, with the rows around it: three rows.
  static std::string Alert(int second, const std::string& program, const std::string& reaction = "failed",
                           const std::string& code = "AG,5,1") {
    return Line(second, "Running Processes", program) +
           Line(second + 1, "Aggregation", "Running Processes=" + program + ";", "0.99", "", code) +
           Line(second + 2, "Community", "observed", "0", "Running Processes=" + reaction);
  }
  static std::string Tag(int second) { return std::to_string(kStart + second); }

  void Write(const std::string& bytes) { world_.platform.files.Put(Path(), bytes); }
  void Append(const std::string& bytes) { world_.platform.files.PutMore(Path(), bytes); }
  void HaveDescription(int number, const std::string& text) {
    const std::string name = "KorvessaDesc" + std::to_string(number);
    world_.platform.files.Put(Path(name + ".kvl"), text);
    world_.platform.files.Put(Path(name + ".kvh"), world_.platform.family.HashBytes(text) + "\r\n");
  }

  // The start, as the executable makes it. Lines of the log that it writes are announced.
  void Start(const std::string& command_line = "-ns") {
    console_ = std::make_unique<console::Console>(world_.state, world_.log, [] {
      admin::TextMetrics metrics;
      metrics.twips = [](std::string_view text) { return static_cast<int>(text.size()) * 105; };
      metrics.pixels = [](std::string_view text) { return static_cast<int>(text.size()) * 7; };
      return metrics;
    });
    console_->Start(command_line);
    world_.quiet.Take();
  }
  // The page goes before the form that it shows.
  void End() {
    page_.reset();
    console_.reset();
  }
  home::frmNewUI& Home() { return *console_->home(); }
  void Seconds(double seconds) { world_.platform.timers.Advance(static_cast<std::int64_t>(seconds * 1000)); }
  // Until the reader has looked at the file once more.
  void Tick() { Seconds(2.5); }

  // Acts of the user.
  void ClickRow(const std::string& key) {
    const auto slot = Home().alerts.lvAlerts.Find(key);
    ASSERT_TRUE(slot.has_value()) << key;
    Home().alerts.lvAlerts.Select(*slot);
    Home().alerts.lvAlerts.item_clicked.Raise(*slot);
  }
  void ClickLink(const std::string& url) {
    Home().alerts.sDesc.BeforeNavigate(url, Home().alerts.sDesc.subject());
  }
  void SayYes() { Boxes().Answer(platform::BoxAnswer::kYes); }

  platform::ScriptedBoxes& Boxes() { return world_.platform.message_boxes; }
  // What the quarantine was asked to take.
  std::vector<std::string> Taken() {
    std::vector<std::string> taken;
    for (const auto& call : world_.platform.family.quarantine_calls)
      if (call.quarantine) taken.push_back(call.description);
    return taken;
  }
  std::vector<std::string> Rows() {
    std::vector<std::string> rows;
    const auto& list = Home().alerts.lvAlerts;
    for (std::size_t i = 0; i < list.size(); ++i) {
      std::string text = list.at(i).key;
      for (const auto& item : list.at(i).sub_items)
        if (!item.text.empty()) text += " " + item.text;
      rows.push_back(text);
    }
    return rows;
  }

  zendrix::testing::ConsoleWorld world_;
  std::unique_ptr<console::Console> console_;
  std::unique_ptr<testing::FakePage> page_;
};

}  // namespace zendrix::flow
