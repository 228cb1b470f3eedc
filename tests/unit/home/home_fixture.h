// The Home console in memory: a monitoring file with its Agent, the reader, and the form on top, with alert
// logic that a test scripts.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "core/text_rules.h"
#include "core/version.h"
#include "core/version_text.h"
#include "home/frm_new_ui.h"
#include "support/console_world.h"
#include "support/no_alerts.h"

namespace zendrix::home {

// Answers what a test told it to; writes down what it was asked.
class ScriptedAlerts : public testing::NoAlerts {
 public:
  void LoadChkAlrColl() override { ++loaded; }
  std::optional<std::string> Decision(const std::string& date_utc) override {
    const auto found = decisions.find(date_utc);
    if (found == decisions.end()) return std::nullopt;
    return found->second;
  }
  bool HasDetails(const std::string& id) override {
    asked_details.push_back(id);
    if (on_details) on_details();
    return details.contains(id);
  }
  void ForgetNotableInfo() override { ++forgotten; }
  std::string RenderDetails(const std::string& id) override {
    rendered.push_back(id);
    return without_explanation.contains(id) ? "" : "<b>told</b>";
  }
  bool DecideFromMenu(alerts::Answer answer, const alerts::ListedAlert& alert) override {
    asked.push_back((answer == alerts::Answer::kBlock ? "block " : "allow ") + alert.id + " " + alert.text +
                    " " + alert.date_utc);
    if (on_question) on_question();
    return says_yes;
  }

  std::map<std::string, std::string> decisions;
  std::set<std::string> details, without_explanation;
  std::function<void()> on_details;
  std::function<void()> on_question;
  bool says_yes = true;
  std::vector<std::string> asked_details, rendered, asked;
  int loaded = 0, forgotten = 0;
};

class HomeFixture : public ::testing::Test {
 protected:
  static constexpr int kStart = 1100000000;  // 2004-11-09 11:33:20 UTC

  HomeFixture() {
    // Everything saved before the first reading, so that it finds a file that verifies.
    reg_ini_.SaveSettingHashed("Misc", "ShRskLvl", "0");
    reg_ini_.ReadRegInfo();
    reg_ini_.SaveSettingHashed("Misc", "DetSho", "1");
    state_.Desc[1] = {"0,1,No alerts of <countofalerts>.",
                      "0,2,Strange: <countofalerts>.",
                      "0,3,Intrusion: <countofalerts>.",
                      "2,1,Agent watches.",
                      "2,3,Agent rests.",
                      "3,1,Mail is fine.",
                      "3,2,Mail is incomplete.",
                      "6,1,Nothing to do.",
                      "6,3,Look at the Agent."};
    state_.Desc[9] = {"010,Events: <NumEvents>", "011,Alerts: <NumAlerts>"};
    world_.platform.services.SetRunning("ZENDRIX");
  }
  std::string Path() const { return world_.InFolder("KorvessaMonitoring.kvl"); }
  static std::string Line(int second, const std::string& monitor, const std::string& change,
                          const std::string& description = "text") {
    return std::to_string(kStart + second) + ",HOST,7," + monitor + "|" + change + "|" + change + "|" +
           description + "|||x\r\n";
  }
  static std::string Alert(int second, const std::string& change) {
    return Line(second, "Aggregation", change, "Tcp Port=22");
  }
  static std::string Tag(int second) { return std::to_string(kStart + second); }

  // The first load, then the form as Main opens it.
  frmNewUI& Open(const std::string& bytes) {
    world_.platform.files.Put(Path(), bytes);
    reader_.InitClass(Path());
    return OpenForm();
  }
  frmNewUI& OpenForm() {
    form_ = std::make_unique<frmNewUI>(
        HomeParts{state_, world_.log, reader_, reg_ini_, misc_, agent_, screen_, alerts_, services_});
    world_.quiet.Expect("'Load': UI started.");
    form_->Form_Load();
    form_->visible = true;
    form_->Form_Activate();
    return *form_;
  }
  // Announces what an end writes into the log.
  void ExpectEnd() {
    world_.quiet.Expect("'QueryUnload': Stop UI.");
    world_.quiet.Expect("'Unload': Ending version " + core::FormatVersion(core::kVersionMajor,
                                                                          core::kVersionMinor,
                                                                          core::kVersionRevision));
  }
  void Append(const std::string& bytes) { world_.platform.files.PutMore(Path(), bytes); }
  void Replace(const std::string& bytes) { world_.platform.files.Put(Path(), bytes); }
  // The reader looks at the file.
  void Poll() { reader_.LoadNewEvents(); }
  void Seconds(int seconds) { world_.platform.timers.Advance(seconds * 1000LL); }
  // Levels of the rows from the top, with the status behind them.
  std::vector<std::string> Rows() const {
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < form_->alerts.lvAlerts.size(); ++i) {
      const widgets::ListRow& row = form_->alerts.lvAlerts.at(i);
      std::string text = row.key;
      for (const widgets::SubItem& item : row.sub_items)
        text += " " + (item.text.empty() ? "-" : item.text) + ":" + std::to_string(item.picture);
      rows.push_back(text);
    }
    return rows;
  }
  std::string Selected() const {
    const auto slot = form_->alerts.lvAlerts.selected();
    return slot ? form_->alerts.lvAlerts.in_slot(*slot).key : "none";
  }
  // The alert that the pop-up reports, "none" without one.
  std::string PopUpKey() const {
    frmPopUpMsg* const pop_up = form_->pop_ups.pop_up();
    return pop_up && pop_up->loaded() ? pop_up->Key : "none";
  }
  platform::ScriptedBoxes& Boxes() { return world_.platform.message_boxes; }

  zendrix::testing::ConsoleWorld world_;
  core::AppState& state_ = world_.state;
  settings::RegIni reg_ini_{world_.state, world_.log};
  settings::MiscSettings misc_{world_.state, reg_ini_};
  widgets::Screen screen_;
  control::AgentControl agent_{world_.state, screen_};
  ScriptedAlerts alerts_;
  HomeServices services_;
  store::CMkvlf reader_{world_.state, world_.log};
  std::unique_ptr<frmNewUI> form_;
};

}  // namespace zendrix::home
