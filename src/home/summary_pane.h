// The Summary pane: is anything wrong with this computer? One colour with a sentence, what to do about it,
// and the counts of events and alerts.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/app_state.h"
#include "core/error_log.h"
#include "home/status.h"
#include "store/reader.h"
#include "widgets/image.h"
#include "widgets/label.h"

namespace zendrix::home {

// What the three checks found, and the sentences of two of them.
struct Findings {
  int alert = 0, agent = 0, email = 0;  // 1 good, 2 needs attention, 3 needs immediate attention
  std::string alert_text, agent_text;
  bool agent_unseen = false;  // agent_text says what to do, and starting the Agent is not it
};

// Everything outlives the pane.
struct SummaryNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  store::CMkvlf& gKvlF;
  std::function<void(int view)> SelectView;
  std::function<void()> RunAgent;  // the link of the Agent pane
};

class SummaryPane {
 public:
  explicit SummaryPane(SummaryNeeds needs);
  SummaryPane(const SummaryPane&) = delete;
  SummaryPane& operator=(const SummaryPane&) = delete;

  void FillSummaryFra();
  // Folds the findings into one level and paints it. A level that stays undecided keeps the last colour.
  void Show(const Findings& findings);
  // The sign of life: the picture moves once a second while the Agent runs.
  void MovePicture();
  void icMore_Click();

  std::int16_t StatusAction = 0;
  // What was shown last, and the level that it was folded into: 0 while it is undecided.
  Findings shown;
  int OverallLevel = 0;

  StatusRow alerts_row{kAlertsView};
  StatusRow options_row{kOptionsView};
  widgets::Label icShortDesc{"icShortDesc"};
  widgets::Image OSFlag{"OSFlag"};
  widgets::Label OSRiskLevel{"OSRiskLevel"};
  // Left colour of the band behind the sentence, red in the high byte; 0 while it is not painted.
  widgets::Observed<std::uint32_t> OSRiskBackc{0};
  widgets::Label icStatus{"icStatus"};
  widgets::Label icMore{"icMore"};
  widgets::Label iclblDate{"iclblDate", "Events detected since"};
  widgets::Label icDate{"icDate"};
  widgets::Image icImgEventCount{"icImgEventCount", "ecount0"};
  widgets::Label icEventCount{"icEventCount"};
  widgets::Image icImgAlertCount{"icImgAlertCount", "warning"};
  widgets::Label icAlertCount{"icAlertCount"};
  widgets::Label icClick{"icClick", "[Details...]"};

 private:
  void PaintLevel(int level);
  void SecondLine(int level, const Findings& findings);

  SummaryNeeds needs_;
  core::AppState& app_;
  std::string EventCountPicture_;
};

}  // namespace zendrix::home
