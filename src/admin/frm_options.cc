#include "admin/frm_options.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/guards.h"
#include "core/letter_case.h"
#include "core/number_rules.h"
#include "core/text_rules.h"
#include "core/window_helpers.h"
#include "settings/smtp.h"
#include "widgets/busy_mark.h"

namespace zendrix::admin {
namespace {

constexpr const char* kTips[kOptionsPages] = {"Select Monitors to show", "Set Options for the Event view",
                                              "Change Options for TimeLine view",
                                              "Configure SMTP email alerts"};
constexpr const char* kColumns[] = {"Date/Time", "Hostname", "Monitor", "Change", "Description"};
constexpr double kFewestSlots = 1, kMostSlots = 50;

std::vector<settings::SelectedText> RowsOf(const widgets::CheckList& list) {
  std::vector<settings::SelectedText> rows;
  for (const auto& entry : list.entries()) rows.push_back({entry.text, entry.checked});
  return rows;
}

}  // namespace

frmOptions::frmOptions(OptionsNeeds needs)
    : Form(needs.state.forms, "frmOptions"),
      mail(needs.state, needs.screen),
      needs_(std::move(needs)),
      app_(needs_.state) {
  title = "Options";
  ConnectControls();
}

void frmOptions::ConnectControls() {
  for (int i = 0; i < kOptionsPages; ++i) {
    widgets::Label& tab = tbsOptions[static_cast<std::size_t>(i)];
    tab.tip = kTips[i];
    tab.clicked.ConnectForever([this, i] { tbsOptions_Click(i); });
  }
  Monitors.clicked.ConnectForever([this](std::size_t) { monitors_touched_ = true; });
  Change.clicked.ConnectForever([this] { Change_Click(); });
  Change2.clicked.ConnectForever([this] { Change2_Click(); });
  TakeDigits(NSlot, needs_.screen);
  NSlot.valid = [this] {
    const double slots = core::Val(NSlot.text.Get());
    const bool good = slots >= kFewestSlots && slots <= kMostSlots;
    if (!good) {
      app_.seams.message_boxes.Show(
          {app_.ProductName, "Please type a number between 1 and 50", platform::BoxIcon::kStop});
    }
    return good;
  };
  mail.Port.taken.ConnectForever([this] { mail.SmtpDirty = true; });
  cmdOK.clicked.ConnectForever([this] { cmdOK_Click(); });
  cmdCancel.clicked.ConnectForever([this] { cmdCancel_Click(); });
  cmdApply.clicked.ConnectForever([this] { cmdApply_Click(); });
}

void frmOptions::OnLoad() {
  core::CentreForm(*this);
  needs_.reg_ini.ReadRegInfo();
  FillMonitors();
  FillCols();
  SelC.colour = static_cast<widgets::Colour>(app_.settings.SelColor);
  SSCol.colour = static_cast<widgets::Colour>(app_.settings.SSColor);
  ShowTimeLine();
  mail.Show(settings::LoadSMTPData(app_, needs_.log));
  monitors_checked_ = Monitors.CheckedCount();
  selected_colour_ = SSCol.colour;
  tbsOptions_Click(kMonitorsPage);
}

// The grid may have met as many names as its file has lines.
void frmOptions::FillMonitors() {
  const auto& states = app_.settings.MonitorStates;
  std::vector<widgets::CheckList::Entry> entries;
  store::CUList known;
  for (const auto& [name, value] : states) {
    known.SetItemData(name, "");
    entries.push_back({name, value == "1"});
  }
  // In a file that was saved from the grid monitors begin with blanks, which names of settings do not keep:
  // such a one, unchecked, would switch off the monitor that it is.
  for (const auto& met : needs_.GridMonitorList.ColList()) {
    const std::string name(core::Trim(met.item));
    if (known.ItemData(name)) continue;
    known.SetItemData(name, "");
    entries.push_back({name, states.empty()});
  }
  Monitors.Fill(std::move(entries));
}

void frmOptions::FillCols() {
  const auto& states = app_.settings.ColumnStates;
  std::vector<widgets::CheckList::Entry> entries;
  for (const char* column : kColumns) {
    const bool checked = std::any_of(states.begin(), states.end(), [&](const core::KeyValue& each) {
      return core::EqualNoCase(each.first, column) && each.second == "1";
    });
    entries.push_back({column, checked || states.empty()});
  }
  Cols.Fill(std::move(entries));
}

void frmOptions::ShowTimeLine() {
  widgets::OptionButton* const units[] = {&OpMinutes, &OpHours, &OpDays, &OpWeeks, &OpMonths};
  const int unit = app_.settings.TSlots;
  const bool known = unit >= 1 && unit <= static_cast<int>(std::size(units));
  units[known ? unit - 1 : 0]->checked = true;
  (app_.settings.TChart == "T" ? OpTotal : OpDelta).checked = true;
  NSlot.text = std::to_string(app_.settings.NSlots);
}

void frmOptions::tbsOptions_Click(int index) {
  if (!MayLeaveFields()) return;
  for (int i = 0; i < kOptionsPages; ++i) {
    const auto at = static_cast<std::size_t>(i);
    tbsOptions[at].bordered = i == index;
    picOptions[at].visible = i == index;
    picOptions[at].enabled = i == index;
  }
}

void frmOptions::NextTab() {
  const auto shown = std::find_if(tbsOptions.begin(), tbsOptions.end(),
                                  [](const widgets::Label& tab) { return tab.bordered.Get(); });
  tbsOptions_Click((static_cast<int>(shown - tbsOptions.begin()) + 1) % kOptionsPages);
}

bool frmOptions::MayLeaveFields() {
  return widgets::MayLeave({&NSlot, &mail.Email, &mail.Server, &mail.Port});
}

void frmOptions::Change_Click() {
  ChooseColour(lblSelC, SelC);
}

void frmOptions::Change2_Click() {
  ChooseColour(lblSSCol, SSCol);
}

void frmOptions::ChooseColour(const widgets::Label& asked, widgets::ColourBox& box) {
  const auto chosen = app_.seams.colour_dialogs.Choose({asked.caption, box.colour});
  if (chosen) box.colour = *chosen;
}

void frmOptions::Apply() {
  core::Settings& settings = app_.settings;
  settings.SelColor = static_cast<std::int32_t>(SelC.colour.Get());
  settings.SSColor = static_cast<std::int32_t>(SSCol.colour.Get());
  settings.TSlots = static_cast<std::uint8_t>(slots_.chosen().value_or(0) + 1);
  settings.NSlots = core::RoundToByte(core::Val(NSlot.text.Get()));
  settings.TChart = !OpDelta.checked && OpTotal.checked ? "T" : "D";
  needs_.reg_ini.SaveRegInfo(RowsOf(Monitors), RowsOf(Cols));
  needs_.reg_ini.ReadRegInfo();
}

void frmOptions::cmdApply_Click() {
  if (at_work_ || !MayLeaveFields()) return;
  core::OrLog(needs_.log, "frmOptions : cmdApply_Click", [&] { Apply(); });
}

// Loading the grid anew serves messages: the dialog is still open then.
void frmOptions::cmdOK_Click() {
  if (at_work_ || !MayLeaveFields()) return;
  const widgets::BusyMark at_work(at_work_);
  const bool done = core::OrLog(needs_.log, "frmOptions : cmdOK_Click", [&] {
    Apply();
    if (mail.SmtpDirty) settings::SaveSMTPData(app_, needs_.log, mail.Data());
    if (SSCol.colour.Get() != selected_colour_) needs_.SelectedColorChange();
    if (monitors_touched_ || Monitors.CheckedCount() != monitors_checked_) needs_.ResetClick();
  });
  if (done) Unload();
}

void frmOptions::cmdCancel_Click() {
  if (!at_work_) Unload();
}

bool frmOptions::QueryUnload(widgets::UnloadCause cause) {
  return !at_work_ || cause == widgets::UnloadCause::kCode;
}

}  // namespace zendrix::admin
