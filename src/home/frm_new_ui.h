// frmNewUI: the main window of the Home edition. A navigation strip, one pane at a time, an icon in the
// notification area. Closing the window only hides it; the console goes on reading the monitoring file, and
// draws the user's attention by blinking the icon. Everything runs on the one user-interface thread; ListBusy
// keeps the refresh cycle out while a list is being built.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "core/root_warning.h"
#include "home/agent_pane.h"
#include "home/alert_pop_ups.h"
#include "home/alerts_pane.h"
#include "home/help_pane.h"
#include "home/home_parts.h"
#include "home/logs_pane.h"
#include "home/main_window.h"
#include "home/options_pane.h"
#include "home/portal_links.h"
#include "home/summary_pane.h"
#include "home/views.h"
#include "platform/message_loop.h"
#include "widgets/form.h"
#include "widgets/frame.h"
#include "widgets/image.h"
#include "widgets/label.h"
#include "widgets/menu.h"
#include "widgets/tray.h"

namespace zendrix::home {

// The foreground of the navigation label of the pane on show.
inline constexpr widgets::Colour kSelectedViewColour = 14518894;

class frmNewUI : public widgets::Form, private MainWindow {
  // In front of the panes, which are made from them.
  HomeParts parts_;
  core::AppState& app_;

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

  // Every three seconds, and after anything that changes a list: folds the three checks into the Summary
  // pane, and lets the tray icon blink when something new needs a user who does not see the window.
  void CheckRiskLevel();

  void LoadDescTips();
  void CheckSurvey();

  // State. 1 good, 2 needs attention, 3 needs immediate attention.
  std::int16_t AlertLevel = 0;
  std::int16_t AgentLevel = 0;
  std::int16_t HourTicks = 0;
  std::int16_t QuarterTicks = 0;
  std::int16_t CurrentView = 0;
  std::int16_t PreviousView = 0;
  bool Animated = true;
  bool ListBusy = false;
  bool PopupsSuppressed = true;
  bool HideOnActivate = false;
  bool TrayIconAlternate = false;
  bool TrayBlinking = false;
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
  // Marked while the setting of the same name is on.
  widgets::MenuItem mPopOrigHigh{"mPopOrigHigh", "Also notify me of &blocked events"};
  widgets::MenuItem mPopNotifyMs{"mPopNotifyMs", "Notify me after a &day without intrusions"};
  widgets::Menu mPopupSys2{
      "mPopupSys2",
      "",
      {&mPopRestore, &mPopMinimize, &mPopMaximize, &mPopExit, &mPopOrigHigh, &mPopNotifyMs}};

  SummaryPane summary;
  AlertsPane alerts;
  AgentPane agent;
  LogsPane logs;
  OptionsPane options;
  HelpPane help;
  AlertPopUps pop_ups;
  PortalLinks links;

 protected:
  void OnLoad() override { Form_Load(); }
  void OnActivate() override { Form_Activate(); }
  bool QueryUnload(widgets::UnloadCause cause) override;
  void OnUnload() override;

 private:
  // MainWindow, for pop-ups, notices and the wizard.
  widgets::Form& form() override { return *this; }
  bool Loading() const override { return PopupsSuppressed; }
  bool InSight() const override { return visible.Get() && state.Get() != widgets::WindowState::kMinimised; }
  void ShowAlert(const std::string& key) override;

  void MakeControls();
  void ConnectControls();
  // Runs a procedure of this form under its name: a run-time error is logged and the console goes on.
  template <class Body>
  bool Guarded(const char* procedure, Body&& body);
  void Turn(bool core::Settings::*flag, const char* procedure);
  void ShowMarks();
  void sClick1_Click();
  void RebuildAlerts();
  void ShowWindow(widgets::WindowState wanted);
  // Hides the window, or what comes nearest to it.
  void PutAway();
  void RunViewAction(int index);
  void ShowOnlyPane(int index);
  void EverySeconds3();
  void EveryHour();
  std::string FormattedVersion() const;

  std::unique_ptr<platform::Timer> Timer1_, Timer2_, Timer4_;
  widgets::Connection new_alert_, misc_changed_;
  bool told_of_minimising_ = false;
  std::uint8_t ThreeSecondTicks_ = 0;
  std::uint8_t TwoMinuteTicks_ = 0;
};

}  // namespace zendrix::home
