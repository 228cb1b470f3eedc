// The Options pane: what a home user can set. Three tabs share one button that saves the tab on show. What
// the pane shows comes from the settings when it is selected, and changes them only when the user saves; a
// flag that is changed elsewhere meanwhile is shown as it now is.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "core/app_state.h"
#include "core/error_log.h"
#include "home/status.h"
#include "settings/misc_settings.h"
#include "settings/smtp.h"
#include "settings/smtp_fields.h"
#include "widgets/check_box.h"
#include "widgets/frame.h"
#include "widgets/image.h"
#include "widgets/label.h"
#include "widgets/screen.h"
#include "widgets/slider.h"

namespace zendrix::home {

// Everything outlives the pane.
struct OptionsNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  widgets::Screen& screen;
  settings::MiscSettings& misc;
  StatusRow& row;             // that of the Summary pane
  bool& AttentionPending;     // something new needs the user
  widgets::Label& sCurrSens;  // of the Alerts pane: which alerts the list shows
  // Levels have changed: the alert list is built anew and the counts are taken again.
  std::function<void()> RebuildAlerts;
};

inline constexpr int kOptionTabs = 3;
enum OptionTab : int { kMailTab = 0, kAlertTab = 1, kPropertiesTab = 2 };

class OptionsPane {
 public:
  explicit OptionsPane(OptionsNeeds needs);
  OptionsPane(const OptionsPane&) = delete;
  OptionsPane& operator=(const OptionsPane&) = delete;

  // What selecting the pane runs.
  void FillEmailFra();
  // The status of the e-mail settings: 1 good, 2 needs attention.
  std::int16_t CheckEmlSta();
  void etbOptionSel_Click(int index);
  void eEnable_Click();
  void eSave_Click();
  // The words of the slider's place, here and on the Alerts pane.
  void UpdateRiskFilterLabels();

  // The next incomplete result draws attention, once.
  bool EmailJustSaved = true;
  settings::SmtpFields mail;

  widgets::Label etopDesc{"etopDesc"};
  widgets::Label eTitleDesc{"eTitleDesc"};
  widgets::Image StaImg{"StaImg(3)"};

  std::array<widgets::Label, kOptionTabs> etbOptionSel{widgets::Label("etbOptionSel(0)", "Email Alerts"),
                                                       widgets::Label("etbOptionSel(1)", "Alert Settings"),
                                                       widgets::Label("etbOptionSel(2)", "Properties")};
  std::array<widgets::Frame, kOptionTabs> efrOption{widgets::Frame("efrOption(0)", false),
                                                    widgets::Frame("efrOption(1)", false),
                                                    widgets::Frame("efrOption(2)", false)};
  widgets::Label eSave{"eSave", "Save"};

  widgets::CheckBox eEnable{"eEnable", "Enable e-mail Alerts"};
  widgets::Label elabel1{"elabel1", "Send Alerts To"};
  widgets::Label elabel2{"elabel2", "SMTP Server"};
  widgets::Label elabel3{"elabel3", "Port Number"};
  widgets::Label elabel4{"elabel4", "as in name@domain.ext"};
  widgets::Label elabel5{"elabel5", "as in server.maildomain.ext"};

  widgets::Label lblRiskLevel{"lblRiskLevel", "Select types of events to show:"};
  widgets::Slider eSbRiskLevel{"eSbRiskLevel", 0, 100, 1, 10};
  widgets::Label eAlertsToShow{"eAlertsToShow"};
  widgets::Label lblSensitivity{"lblSensitivity", "Select sensitivity for detecting Intrusions:"};
  widgets::Slider eSbSensitivity{"eSbSensitivity", 100, 1000, 5, 50};
  widgets::Label eSensitivity{"eSensitivity"};

  widgets::CheckBox echkOrigHigh{"echkOrigHigh",
                                 "Only notify me when Zendrix is unable to block a suspicious event"};
  widgets::CheckBox echkNotifyMs{"echkNotifyMs", "Don't show this message again."};
  widgets::CheckBox echkDontAsk{"echkDontAsk", "Install automatically"};

 private:
  void ConnectControls();
  void LoadMail();
  void LoadAlertSettings();
  void LoadFlags();
  void FollowFlags();
  settings::SmtpData ReadMail();
  void SaveMail();
  void SaveAlertSettings();
  void SaveProperties();

  OptionsNeeds needs_;
  core::AppState& app_;
  widgets::Connection misc_changed_;
  // The flags as the check boxes last showed them.
  bool shown_orig_high_ = false, shown_dont_ask_ = false;
  bool reading_ = false;         // the box about a damaged mail file may be open
  bool told_of_damage_ = false;  // that file could not be deleted, and the refresh cycle finds it again
  std::int16_t EmailStatus_ = kGood;
};

}  // namespace zendrix::home
