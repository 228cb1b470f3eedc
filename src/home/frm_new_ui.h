// frmNewUI: the main window of the Home edition. A navigation strip, one pane at a time, an icon in the
// notification area. Closing the window only hides it; the console goes on reading the monitoring file, and
// draws the user's attention by blinking the icon. Everything runs on the one user-interface thread; ListBusy
// keeps the refresh cycle out while a list is being built.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "alerts/answer.h"
#include "core/date_rules.h"
#include "core/root_warning.h"
#include "home/details_pane.h"
#include "home/home_parts.h"
#include "platform/message_loop.h"
#include "widgets/browser_view.h"
#include "widgets/check_box.h"
#include "widgets/form.h"
#include "widgets/frame.h"
#include "widgets/image.h"
#include "widgets/label.h"
#include "widgets/list_view.h"
#include "widgets/menu.h"
#include "widgets/slider.h"
#include "widgets/tray.h"

namespace zendrix::home {

// The foreground of the navigation label of the pane on show.
inline constexpr widgets::Colour kSelectedViewColour = 14518894;

// Panes by index; index 1 is not used.
enum View : int {
  kAlertsView = 0,
  kAdvancedView = 2,
  kOptionsView = 3,
  kHelpView = 4,
  kQuitView = 5,
  kSummaryView = 6
};
inline constexpr int kViewCount = 7;
inline constexpr std::array<int, 6> kViews = {0, 2, 3, 4, 5, 6};

class frmNewUI : public widgets::Form {
 public:
  explicit frmNewUI(HomeParts parts);

  // Everything between construction and the first show.
  void Form_Load();
  // The window became the active one.
  void Form_Activate();

  // The one way to change the pane.
  void ViewItems_Click(int index);
  void Tray_Mouse(int message);
  // Another start of the program asked this one to come forward: the window is shown as it was left, only
  // never minimised.
  void ComeForward();
  void mPopRestore_Click();
  void mPopMinimize_Click();
  void mPopMaximize_Click();
  // Returns whether the user quit.
  bool mPopExit_Click();
  void Timer1_Timer();
  void Timer2_Timer();
  void Timer4_Timer();
  void gKvlF_newAlert();

  void CreateHeaderlvAlerts();
  void LoadlvAlerts();
  void UpdatelvAlerts();
  void ClearAlertList();
  void lvAlerts_ItemClick(widgets::ListView::Slot item);
  // The menu of the list, where it opens and its two commands.
  void lvAlerts_MouseUp();
  void mPopRNormal_Click();
  void mPopRAbnormal_Click();
  void sckShowAll_Click();
  void sClearAll_Click();
  void sShowAll_Click();

  // The checks return a status: 1 good, 2 needs attention, 3 needs immediate attention.
  std::int16_t CheckAlrSta();
  std::int16_t CheckAgnSta();
  std::int16_t CheckEmlSta();
  void FillSummaryFra();
  void CheckRiskLevel();
  void icMore_Click();
  void aClick_Click();

  void LoadDescTips();
  void FillHelpFra();
  void CheckSurvey();

  // State.
  std::int16_t AlertLevel = 0;
  std::int16_t AgentLevel = 0;
  core::Date LastIntrusionTime = 0;
  std::int16_t HourTicks = 0;
  std::int16_t QuarterTicks = 0;
  std::int16_t CurrentView = 0;
  std::int16_t PreviousView = 0;
  bool Animated = true;
  bool ListBusy = false;
  bool PopupsSuppressed = true;
  bool HideOnActivate = false;
  bool ShowBlockedAlerts = true;
  std::int16_t StatusAction = 0;
  bool TrayIconAlternate = false;
  bool TrayBlinking = false;
  bool AgentJustStarted = true;
  bool EmailJustSaved = true;
  bool AttentionPending = false;
  std::int32_t DayTicks = 0;

  // Navigation.
  widgets::Frame Frame2{"Frame2", false};
  // Above every pane, whichever is on show; hidden unless the console runs as root.
  widgets::Label lblRootWarning{"lblRootWarning", core::kRootWarning};
  std::array<std::unique_ptr<widgets::Label>, kViewCount> ViewItems;
  std::array<std::unique_ptr<widgets::Image>, kViewCount> vArrow;
  std::array<std::unique_ptr<widgets::Image>, kViewCount> Image1;
  std::array<std::unique_ptr<widgets::Frame>, kViewCount> Frame1;
  std::array<std::unique_ptr<widgets::Frame>, kViewCount> fraDesc;
  widgets::Tray tray;
  widgets::MenuItem mPopRestore{"mPopRestore", "&Open Zendrix"};
  widgets::MenuItem mPopMinimize{"mPopMinimize", "&Minimize"};
  widgets::MenuItem mPopMaximize{"mPopMaximize", "&Maximize"};
  widgets::MenuItem mPopExit{"mPopExit", "&Quit"};
  widgets::Menu mPopupSys2{"mPopupSys2", "", {&mPopRestore, &mPopMinimize, &mPopMaximize, &mPopExit}};

  // Alerts pane.
  widgets::ListView lvAlerts{"lvAlerts"};
  widgets::CheckBox sckShowAll{"sckShowAll", "Display blocked events"};
  widgets::Label sClearAll{"sClearAll", "Clear All"};
  widgets::Label sShowAll{"sShowAll", "Show All"};
  widgets::Label sMoreInfo{"sMoreInfo", "Analyze"};
  widgets::Label sTitleDesc{"sTitleDesc"};
  widgets::BrowserView sDesc{"sDesc"};
  widgets::MenuItem mPopRNormal{"mPopRNormal", "Allow"};
  widgets::MenuItem mPopRAbnormal{"mPopRAbnormal", "Block"};
  widgets::Menu mPopReview{"mPopReview", "&ReviewAlert", {&mPopRNormal, &mPopRAbnormal}};

  // Advanced pane.
  widgets::Label aAgSta{"aAgSta", "Monitoring Status"};
  widgets::Label aTitleDesc{"aTitleDesc"};
  widgets::Label aStatus{"aStatus"};
  widgets::Label aClick{"aClick"};
  widgets::Label aDesc{"aDesc"};

  // Options pane.
  widgets::Label etopDesc{"etopDesc"};
  widgets::Label eTitleDesc{"eTitleDesc"};
  widgets::Slider eSbRiskLevel{"eSbRiskLevel", 0, 100};

  // Help pane.
  widgets::Label htopDesc{"htopDesc"};
  widgets::Label hAppTitle{"hAppTitle"};
  widgets::Label hVersion{"hVersion"};
  widgets::Label hDescription{"hDescription"};
  widgets::Label hDisclaimer{"hDisclaimer"};

  // Summary pane.
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
  // One row of the pane each for the Alerts (0) and the Options (3).
  std::array<std::unique_ptr<widgets::Image>, kViewCount> Flag;
  std::array<std::unique_ptr<widgets::Label>, kViewCount> icView;
  std::array<std::unique_ptr<widgets::Label>, kViewCount> icDesc;
  // The same flag in the heading of a pane: 0, 2 and 3.
  std::array<std::unique_ptr<widgets::Image>, kViewCount> StaImg;

 protected:
  void OnLoad() override { Form_Load(); }
  void OnActivate() override { Form_Activate(); }
  bool QueryUnload(widgets::UnloadCause cause) override;
  void OnUnload() override;

 private:
  class ListBuild;

  void MakeControls();
  void ConnectControls();
  // Runs a procedure of this form under its name: a run-time error is logged and the console goes on.
  template <class Body>
  bool Guarded(const char* procedure, Body&& body);
  void ShowWindow(widgets::WindowState wanted);
  bool InSight() const { return visible.Get() && state.Get() != widgets::WindowState::kMinimised; }
  void RunViewAction(int index);
  void ShowOnlyPane(int index);
  void EverySeconds3();
  void EveryHour();
  std::string OpeningText() const;
  std::string StatusText(int group, int status) const;
  std::string FormattedVersion() const;

  void FillFromTable(bool whole);
  void FillRows(store::EventCursor& clone, int picture);
  void FillRowsBehind(store::EventCursor& clone, int picture);
  void AddRow(const store::EventCursor& row, int picture, const std::string& status);
  void NoteIntrusion(const std::string& date_time);
  void CloseBuild(const std::string& remembered);
  void Decide(alerts::Answer answer, const char* procedure);
  void PaintLevel(int level);
  void SecondLine(int level);

  HomeParts parts_;
  core::AppState& app_;
  DetailsPane details_{{parts_.state, parts_.log, parts_.alerts, parts_.screen}, sDesc};
  std::unique_ptr<platform::Timer> Timer1_, Timer2_, Timer4_;
  widgets::Connection new_alert_;
  std::string EventCountPicture_;
  std::uint8_t ThreeSecondTicks_ = 0;
  std::uint8_t TwoMinuteTicks_ = 0;
};

}  // namespace zendrix::home
