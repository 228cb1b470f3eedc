// frmOptions: which monitors and columns the grid shows, its colours, the timeline, and where e-mail alerts
// go. What it shows is read anew when it opens and changes nothing until OK or Apply; what Apply has saved
// stays saved. Address and server go to a file of their own, with OK only. It is shown modally, once for each
// object.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "core/app_state.h"
#include "core/error_log.h"
#include "settings/reg_ini.h"
#include "settings/smtp_fields.h"
#include "store/ulist.h"
#include "widgets/check_list.h"
#include "widgets/colour_box.h"
#include "widgets/form.h"
#include "widgets/frame.h"
#include "widgets/label.h"
#include "widgets/option_button.h"
#include "widgets/screen.h"
#include "widgets/text_box.h"

namespace zendrix::admin {

// Everything outlives the form.
struct OptionsNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  settings::RegIni& reg_ini;
  widgets::Screen& screen;
  const store::CUList& GridMonitorList;  // the monitors that the grid has met
  std::function<void()> ResetClick;      // loads the grid anew
  // Gives the marked rows of the grid their new colour; without any there is nothing to do.
  std::function<void()> SelectedColorChange = [] {};
};

inline constexpr int kOptionsPages = 4;
enum OptionsPage : int { kMonitorsPage = 0, kEventViewPage = 1, kTimeLinePage = 2, kAlertsPage = 3 };

class frmOptions : public widgets::Form {
 public:
  explicit frmOptions(OptionsNeeds needs);
  ~frmOptions() override { Unload(); }

  // A field that keeps the keyboard keeps its page.
  void tbsOptions_Click(int index);
  // From the last page to the first.
  void NextTab();
  void Change_Click();
  void Change2_Click();
  // All three rest while OK is at work.
  void cmdOK_Click();
  void cmdApply_Click();
  void cmdCancel_Click();

  std::array<widgets::Label, kOptionsPages> tbsOptions{
      widgets::Label("tbsOptions(0)", "Monitors"), widgets::Label("tbsOptions(1)", "Event view"),
      widgets::Label("tbsOptions(2)", "TimeLine"), widgets::Label("tbsOptions(3)", "Alerts")};
  std::array<widgets::Frame, kOptionsPages> picOptions{
      widgets::Frame("picOptions(0)", false), widgets::Frame("picOptions(1)", false),
      widgets::Frame("picOptions(2)", false), widgets::Frame("picOptions(3)", false)};

  widgets::Label lblMonitors{"lblMonitors", "Select the Monitors to display"};
  widgets::CheckList Monitors{"Monitors"};

  widgets::Label lblCols{"lblCols", "Select the columns to show"};
  widgets::CheckList Cols{"Cols"};
  widgets::Label lblColors{"lblColors", "Grid Colors"};
  widgets::Label lblSelC{"lblSelC", "Filtered Color"};
  widgets::ColourBox SelC{"SelC"};
  widgets::Label Change{"Change", "Change..."};
  widgets::Label lblSSCol{"lblSSCol", "Selected Color"};
  widgets::ColourBox SSCol{"SSCol"};
  widgets::Label Change2{"Change2", "Change..."};

  widgets::Label lblSlots{"lblSlots", "Time Slots"};
  widgets::OptionButton OpMinutes{"OpMinutes", "Minutes"};
  widgets::OptionButton OpHours{"OpHours", "Hours"};
  widgets::OptionButton OpDays{"OpDays", "Days"};
  widgets::OptionButton OpWeeks{"OpWeeks", "Weeks"};
  widgets::OptionButton OpMonths{"OpMonths", "Months"};
  widgets::Label lblNSlot{"lblNSlot", "Number of slots"};
  widgets::TextBox NSlot{"NSlot"};
  widgets::Label lblChart{"lblChart", "Chart"};
  widgets::OptionButton OpDelta{"OpDelta", "Number of events each time slot"};
  widgets::OptionButton OpTotal{"OpTotal", "Total of events across time"};

  widgets::Label lblMail{"lblMail", "SMTP email alerts"};
  settings::SmtpFields mail;
  widgets::Label lblEmail{"lblEmail", "Send Alerts To"};
  widgets::Label lblEmailNote{"lblEmailNote", "(email account as in \"name@domain.ext\")"};
  widgets::Label lblServer{"lblServer", "SMTP Server"};
  widgets::Label lblServerNote{"lblServerNote", "(SMTP server as in \"server.maildomain.ext\")"};
  widgets::Label lblPort{"lblPort", "Port Number"};

  widgets::Label cmdOK{"cmdOK", "OK"};
  widgets::Label cmdCancel{"cmdCancel", "Cancel"};
  widgets::Label cmdApply{"cmdApply", "Apply"};

 protected:
  void OnLoad() override;
  bool QueryUnload(widgets::UnloadCause cause) override;

 private:
  void ConnectControls();
  void FillMonitors();
  void FillCols();
  void ShowTimeLine();
  bool MayLeaveFields();
  void ChooseColour(const widgets::Label& asked, widgets::ColourBox& box);
  void Apply();

  OptionsNeeds needs_;
  core::AppState& app_;
  widgets::OptionGroup slots_{&OpMinutes, &OpHours, &OpDays, &OpWeeks, &OpMonths};
  widgets::OptionGroup charts_{&OpDelta, &OpTotal};
  // As it was when the dialog opened.
  std::size_t monitors_checked_ = 0;
  widgets::Colour selected_colour_ = 0;
  bool monitors_touched_ = false;
  bool at_work_ = false;
};

}  // namespace zendrix::admin
