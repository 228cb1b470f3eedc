// The Alerts pane: the list of what the Agent concluded, the controls around it, the explanation of the
// selected alert, and the check of the alerts that the status overview folds in.
//
// A list is built in one go under ListBusy, which keeps the refresh cycle out: showing a row may serve the
// event loop.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "alerts/alert_services.h"
#include "alerts/answer.h"
#include "core/app_state.h"
#include "core/date_rules.h"
#include "core/error_log.h"
#include "home/details_pane.h"
#include "home/status.h"
#include "store/reader.h"
#include "widgets/browser_view.h"
#include "widgets/check_box.h"
#include "widgets/form.h"
#include "widgets/list_view.h"
#include "widgets/menu.h"
#include "widgets/screen.h"

namespace zendrix::home {

// Everything outlives the pane.
struct AlertsNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  widgets::Screen& screen;
  store::CMkvlf& gKvlF;
  alerts::AlertServices& alerts;
  widgets::Form& window;   // the main window
  StatusRow& row;          // that of the Summary pane
  bool& ListBusy;          // a list is being built
  bool& AttentionPending;  // something new needs the user
  // Decides on a pop-up for an undecided row that was put on the list.
  std::function<void(const store::EventCursor& row)> ShowAlertPopUp;
  // After anything that changes the list.
  std::function<void()> CheckRiskLevel;
};

class AlertsPane {
 public:
  explicit AlertsPane(AlertsNeeds needs);
  AlertsPane(const AlertsPane&) = delete;
  AlertsPane& operator=(const AlertsPane&) = delete;

  void CreateHeaderlvAlerts();
  void LoadlvAlerts();
  void UpdatelvAlerts();
  void ClearAlertList();
  void lvAlerts_ItemClick(widgets::ListView::Slot item);
  // Selects the topmost row that the list shows, if there is one, and shows it.
  void ShowFirst();
  // Selects the row with this key and shows it; raises when there is none.
  void ShowRow(const std::string& key);
  // The menu of the list, where it opens and its two commands.
  void lvAlerts_MouseUp();
  void mPopRNormal_Click();
  void mPopRAbnormal_Click();
  void sckShowAll_Click();
  void sClearAll_Click();
  void sShowAll_Click();
  // Opens the wizard on the selected alert, keeps what it has come to, and builds the list anew.
  void sMoreInfo_Click();
  // What Block has put away, and the way back.
  void sQuarantine_Click();
  // What selecting the pane runs.
  void FillEventsFra() { CheckAlrSta(); }
  // The status of the list: 1 good, 2 needs attention, 3 needs immediate attention.
  std::int16_t CheckAlrSta();
  // The opening text of the details.
  void ShowOpeningText();
  void Stop() { details_.Stop(); }

  bool ShowBlockedAlerts = true;
  // Time of the newest undecided row of level "Intrusion" seen; 0 before the first.
  core::Date LastIntrusionTime = 0;
  // Outcome of the wizard: 0 all normal, 1 not so, -1 none.
  std::int16_t WizardResult = -1;

  widgets::ListView lvAlerts{"lvAlerts"};
  widgets::CheckBox sckShowAll{"sckShowAll", "Display blocked events"};
  widgets::Label sClearAll{"sClearAll", "Clear All"};
  widgets::Label sShowAll{"sShowAll", "Show All"};
  widgets::Label sMoreInfo{"sMoreInfo", "Analyze"};
  // Which alerts the slider of the Options pane stands for, and the link that leads there.
  widgets::Label sCurrSens{"sCurrSens"};
  widgets::Label sClick1{"sClick1", "[ Adjust Sensitivity ]"};
  widgets::Label sQuarantine{"sQuarantine", "Quarantine..."};
  widgets::Label sTitleDesc{"sTitleDesc"};
  widgets::Image StaImg{"StaImg(0)"};
  widgets::BrowserView sDesc{"sDesc"};
  widgets::MenuItem mPopRNormal{"mPopRNormal", "Allow"};
  widgets::MenuItem mPopRAbnormal{"mPopRAbnormal", "Block"};
  widgets::Menu mPopReview{"mPopReview", "&ReviewAlert", {&mPopRNormal, &mPopRAbnormal}};

 private:
  class ListBuild;

  void FillFromTable(bool whole);
  void FillRows(store::EventCursor& clone, int picture);
  void FillRowsBehind(store::EventCursor& clone, int picture);
  void AddRow(const store::EventCursor& row, int picture, const std::string& status);
  void NoteIntrusion(const std::string& date_time);
  void CloseBuild(const std::string& remembered);
  void TellWhyEmpty();
  void Analyze(const alerts::ListedAlert& alert);
  void Decide(alerts::Answer answer, const char* procedure);

  AlertsNeeds needs_;
  core::AppState& app_;
  DetailsPane details_;
};

}  // namespace zendrix::home
