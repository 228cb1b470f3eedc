// frmMoreInfo: the Alert Analysis wizard. It walks the user through one alert, one contributing event at a
// time, and asks of each whether it looks normal; the outcome is one bit for the alert. What it shows is an
// explanation of its own: other alerts may be looked up while it is open. It decides nothing and writes
// nothing; what comes of the outcome is its opener's business.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "alerts/alert_services.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "home/own_page.h"
#include "widgets/browser_view.h"
#include "widgets/form.h"
#include "widgets/frame.h"
#include "widgets/label.h"
#include "widgets/option_button.h"

namespace zendrix::home {

class frmMoreInfo : public widgets::Form {
 public:
  // `report` gets the outcome when the window closes: 0 when all answers were Yes, 1 otherwise; nothing when
  // the user broke the analysis off. Everything outlives the form.
  frmMoreInfo(core::AppState& app, core::ErrorLog& log, alerts::Explanation explanation,
              std::function<void(std::int16_t)> report);
  ~frmMoreInfo() override;

  void bNext_Click();
  void bBack_Click();
  void bFinish_Click() { Unload(); }
  // The user chose an answer: 0 "Yes", 1 "No", 2 "I don't know".
  void optAns_Click(int index);

  // 0 is the introduction, 1 to N the events, N + 1 the end page.
  int step() const { return step_; }
  // N, the number of contributing events.
  int events() const { return events_; }

  widgets::BrowserView WBr{"WBr"};
  widgets::Label bBack{"bBack", "< Back"};
  widgets::Label bNext{"bNext", "Next >"};
  widgets::Label bFinish{"bFinish", "Exit Wizard"};
  widgets::Frame fraQ{"fraQ", false};
  widgets::Label lblQuestion{"lblQuestion", "Did you conclude that this activity is normal?"};
  std::array<widgets::OptionButton, 3> optAns{{{"optAns(0)", "Yes"},  //
                                               {"optAns(1)", "No"},
                                               {"optAns(2)", "I don't know"}}};

 private:
  void OnLoad() override;
  // The introduction is written when the window is on show: a slow browser lets the user wait in front of it.
  void OnActivate() override;
  bool QueryUnload(widgets::UnloadCause cause) override;
  void OnUnload() override;

  // Puts a page into the browser pane; serves the event loop until the pane is ready, ten seconds at the
  // most.
  void LoadHTML(const std::string& html);
  std::string Page(int index) const;
  // The heading and the explanation of the step's event, asked about anew.
  void ShowStep();
  void ShowEnd();
  std::string EndPage() const;
  int SumOfAnswers() const;
  void StartQuestion();

  core::AppState& app_;
  alerts::Explanation explanation_;
  std::function<void(std::int16_t)> report_;
  OwnPage page_;
  widgets::OptionGroup group_{&optAns[0], &optAns[1], &optAns[2]};
  int events_;
  int step_ = 0;
  // -1 at the start, then the highest answer given so far; on reaching the end page the sum of the answers.
  int verdict_ = -1;
  std::vector<std::int16_t> answers_;
  std::string html_;
  bool introduced_ = false;
};

}  // namespace zendrix::home
