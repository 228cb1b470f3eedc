#include "home/frm_new_ui.h"

#include <utility>

#include "control/agent_sight.h"
#include "core/desc_lookup.h"
#include "core/guards.h"
#include "core/version.h"
#include "core/version_text.h"

namespace zendrix::home {

using widgets::WindowState;

namespace {

constexpr char kNoDataFound[] =
    "No Zendrix Data Found.  Please ensure that the Zendrix Product is properly installed.";

// Ours: on the desktops that the system was made for the notification area is always there.
constexpr char kStaysOpen[] =
    "This desktop shows no notification area, so the window is only minimised.\r\n"
    "Zendrix goes on watching for alerts. To end it, choose Quit.";

}  // namespace

template <class Body>
bool frmNewUI::Guarded(const char* procedure, Body&& body) {
  return core::OrLog(parts_.log, std::string("frmNewUI:") + procedure, std::forward<Body>(body));
}

frmNewUI::frmNewUI(HomeParts parts)
    : Form(parts.state.forms, "frmNewUI"),
      parts_(std::move(parts)),
      app_(parts_.state),
      summary({app_, parts_.log, parts_.gKvlF,  //
               [this](int view) { ViewItems_Click(view); }, [this] { agent.aClick_Click(); }}),
      alerts({app_, parts_.log, parts_.screen, parts_.gKvlF, parts_.alerts, *this, summary.alerts_row,
              ListBusy, AttentionPending,
              [this](const store::EventCursor& row) { pop_ups.ShowAlertPopUp(row); },
              [this] { CheckRiskLevel(); }}),
      agent({app_, parts_.log, parts_.agent, AttentionPending, AgentLevel, [this] { logs.FillAgentFra(); }}),
      logs({app_, parts_.log, parts_.screen, parts_.misc, [this] { CheckRiskLevel(); }}),
      options({app_, parts_.log, parts_.screen, parts_.misc, summary.options_row, AttentionPending,
               alerts.sCurrSens, [this] { RebuildAlerts(); }}),
      help({app_, parts_.log}),
      pop_ups(app_, parts_.log, parts_.misc, *this),
      links({app_, parts_.log, parts_.screen, parts_.services.ShowTour}) {
  MakeControls();
  ConnectControls();
}

void frmNewUI::MakeControls() {
  for (const int i : kViews) {
    const auto at = static_cast<std::size_t>(i);
    ViewItems[at] = std::make_unique<widgets::Label>(Indexed("ViewItems", i), CaptionOf(i));
    ViewItems[at]->fore_colour = widgets::kSystemHighlight;
    vArrow[at] = std::make_unique<widgets::Image>(Indexed("vArrow", i));
    vArrow[at]->visible = false;
    Image1[at] = std::make_unique<widgets::Image>(Indexed("Image1", i));
    if (i == kQuitView) continue;  // has no pane
    Frame1[at] = std::make_unique<widgets::Frame>(Indexed("Frame1", i), false);
    fraDesc[at] = std::make_unique<widgets::Frame>(Indexed("fraDesc", i), false);
  }
  lblRootWarning.visible = app_.seams.host.RunsAsRoot();
  for (widgets::MenuItem* setting : {&mPopOrigHigh, &mPopNotifyMs}) setting->checkable = true;
  mPopOrigHigh.begins_group = true;
}

void frmNewUI::ConnectControls() {
  for (const int i : kViews) {
    const auto at = static_cast<std::size_t>(i);
    ViewItems[at]->clicked.ConnectForever([this, i] { ViewItems_Click(i); });
    Image1[at]->clicked.ConnectForever([this, i] { ViewItems_Click(i); });
  }
  tray.click_waits = true;
  tray.mouse.ConnectForever([this](int message) { Tray_Mouse(message); });
  tray.menu_opens.ConnectForever([this] { bring_forward.Raise(); });
  mPopRestore.clicked.ConnectForever([this] { mPopRestore_Click(); });
  mPopMinimize.clicked.ConnectForever([this] { mPopMinimize_Click(); });
  mPopMaximize.clicked.ConnectForever([this] { mPopMaximize_Click(); });
  mPopExit.clicked.ConnectForever([this] { mPopExit_Click(); });
  mPopOrigHigh.clicked.ConnectForever([this] { Turn(&core::Settings::PopOrigHigh, "mPopOrigHigh_Click"); });
  mPopNotifyMs.clicked.ConnectForever([this] { Turn(&core::Settings::PopNotifyMs, "mPopNotifyMs_Click"); });
  misc_changed_ = parts_.misc.changed.Connect([this] { ShowMarks(); });
  alerts.sClick1.clicked.ConnectForever([this] { sClick1_Click(); });
  // A desktop may open the icon's menu itself, without an event that the form could refuse.
  enabled.changed.ConnectForever([this] {
    tray.has_menu = enabled.Get();
    for (widgets::MenuItem* item : mPopupSys2.items) item->enabled = enabled.Get();
  });
  new_alert_ = parts_.gKvlF.newAlert.Connect([this] { gKvlF_newAlert(); });
  auto& timers = app_.seams.timers;
  Timer1_ = timers.MakeTimer([this] { Timer1_Timer(); });
  Timer2_ = timers.MakeTimer([this] { Timer2_Timer(); });
  Timer4_ = timers.MakeTimer([this] { Timer4_Timer(); });
}

std::string frmNewUI::FormattedVersion() const {
  return core::FormatVersion(core::kVersionMajor, core::kVersionMinor, core::kVersionRevision);
}

void frmNewUI::Form_Load() {
  parts_.screen.MousePointer = widgets::kPointerHourglass;
  title = app_.ProductName + " -  v " + FormattedVersion();
  HideOnActivate = app_.UpdatedRun;
  alerts.sckShowAll.checked = true;
  Guarded("LoadWindowState", [&] { parts_.reg_ini.LoadWindowState(*this); });
  Guarded("LoadDescTips", [&] { LoadDescTips(); });
  options.eSbRiskLevel.Put(app_.settings.ShRskLvl);
  options.UpdateRiskFilterLabels();
  ShowMarks();
  Guarded("LoadChkAlrColl", [&] { parts_.alerts.LoadChkAlrColl(); });
  alerts.CreateHeaderlvAlerts();
  alerts.LoadlvAlerts();
  alerts.ShowFirst();
  logs.CreateHeaderlvAgErrLog();
  // What an installed console does not see is said where the status stands.
  if (!parts_.gKvlF.EventTable && control::WhyNothingIsSeen(app_).empty())
    app_.seams.message_boxes.Show({app_.ProductName, kNoDataFound, platform::BoxIcon::kStop});
  Frame2.visible = true;
  ViewItems_Click(kSummaryView);
  options.etbOptionSel_Click(kMailTab);
  tray.SetTip(app_.ProductName);
  tray.icon = widgets::TrayIcon::kForm;
  tray.shown = true;
  AlertLevel = alerts.CheckAlrSta();
  AgentLevel = agent.CheckAgnSta();
  summary.FillSummaryFra();
  CheckRiskLevel();
  Timer1_->Start(1000);
  DayTicks = 0;
  Timer4_->Start(10000);
  if (Form* splash = app_.forms.Find("frmSplash")) splash->Unload();
  parts_.log.WriteLog("Load", "UI started.");
  PopupsSuppressed = false;
  parts_.screen.MousePointer = widgets::kPointerDefault;
}

void frmNewUI::Form_Activate() {
  if (!app_.UpdatedRun || !HideOnActivate) return;
  HideOnActivate = false;
  PutAway();
}

// Where no desktop shows the icon, a hidden window could not be brought back.
void frmNewUI::PutAway() {
  if (tray.hosted())
    visible = false;
  else
    state = WindowState::kMinimised;
}

void frmNewUI::LoadDescTips() {
  const core::DescArray& texts = app_.Desc[0];
  const auto text = [&](std::size_t n) { return core::DescAt(texts, n); };
  alerts.ShowOpeningText();
  summary.alerts_row.icDesc.caption = text(1);
  logs.aDesc.caption = text(3);
  options.etopDesc.caption = text(4);
  summary.options_row.icDesc.caption = text(4);
  summary.icShortDesc.caption = text(7);
}

void frmNewUI::ViewItems_Click(int index) {
  parts_.screen.MousePointer = widgets::kPointerHourglass;
  for (const int i : kViews) {
    const auto at = static_cast<std::size_t>(i);
    ViewItems[at]->fore_colour = i == index ? kSelectedViewColour : widgets::kSystemHighlight;
    ViewItems[at]->emphasised = i == index;
    vArrow[at]->visible = i == index && index != kHelpView && index != kQuitView;
  }
  CurrentView = static_cast<std::int16_t>(index);
  if (index == kQuitView) {
    if (!mPopExit_Click()) ViewItems_Click(PreviousView);
    return;
  }
  RunViewAction(index);
  ShowOnlyPane(index);
  if (index == kAlertsView) alerts.lvAlerts.focus.Raise();
  if (index == kAdvancedView) logs.alvAgErrLog.focus.Raise();
  PreviousView = static_cast<std::int16_t>(index);
  parts_.screen.MousePointer = widgets::kPointerDefault;
}

void frmNewUI::sClick1_Click() {
  ViewItems_Click(kOptionsView);
  options.etbOptionSel_Click(kAlertTab);
}

void frmNewUI::RebuildAlerts() {
  alerts.ClearAlertList();
  alerts.LoadlvAlerts();
  summary.FillSummaryFra();
}

// A setting in the menu. A click on its way may arrive when a box is open already.
void frmNewUI::Turn(bool core::Settings::*flag, const char* procedure) {
  if (!enabled) return;
  Guarded(procedure, [&] { parts_.misc.Set(flag, !(app_.settings.*flag)); });
}

void frmNewUI::ShowMarks() {
  mPopOrigHigh.checked = app_.settings.PopOrigHigh;
  mPopNotifyMs.checked = app_.settings.PopNotifyMs;
}

void frmNewUI::RunViewAction(int index) {
  if (index == kAlertsView) alerts.FillEventsFra();
  if (index == kAdvancedView) logs.FillAgentFra();
  if (index == kOptionsView) options.FillEmailFra();
  if (index == kHelpView) help.FillHelpFra();
}

void frmNewUI::ShowOnlyPane(int index) {
  for (const int i : kViews) {
    for (auto* frames : {&Frame1, &fraDesc}) {
      widgets::Frame* frame = (*frames)[static_cast<std::size_t>(i)].get();
      if (!frame) continue;
      frame->visible = i == index;
      frame->enabled = i == index;
      if (i == index) frame->to_front.Raise();
    }
  }
}

void frmNewUI::ShowWindow(WindowState wanted) {
  if (!enabled) return;
  state = wanted;
  bring_forward.Raise();
  visible = true;
}

void frmNewUI::ShowAlert(const std::string& key) {
  state = WindowState::kNormal;
  bring_forward.Raise();
  visible = true;
  ViewItems_Click(kAlertsView);
  if (!key.empty())
    alerts.ShowRow(key);
  else if (alerts.lvAlerts.size() > 0)
    alerts.ShowRow(alerts.lvAlerts.at(0).key);
}

void frmNewUI::Tray_Mouse(int message) {
  if (message == widgets::kTrayLeftDouble) {
    ShowWindow(WindowState::kNormal);
  } else if (message == widgets::kTrayLeftUp || message == widgets::kTrayRightUp) {
    bring_forward.Raise();
    if (enabled) mPopupSys2.popup.Raise();
  }
}

void frmNewUI::ComeForward() {
  if (enabled || visible) BringUp();
}

void frmNewUI::mPopRestore_Click() {
  ShowWindow(WindowState::kNormal);
}

void frmNewUI::mPopMinimize_Click() {
  ShowWindow(WindowState::kMinimised);
}

void frmNewUI::mPopMaximize_Click() {
  ShowWindow(WindowState::kMaximised);
}

bool frmNewUI::mPopExit_Click() {
  // The form is disabled while a question is open; the code that waits for its answer needs the console.
  if (!enabled || !control::WarningMessage(app_)) return false;
  return Unload(widgets::UnloadCause::kCode);
}

bool frmNewUI::QueryUnload(widgets::UnloadCause cause) {
  if (cause == widgets::UnloadCause::kCloseBox) {
    if (!tray.hosted() && !std::exchange(told_of_minimising_, true))
      app_.seams.message_boxes.Show({app_.ProductName, kStaysOpen, platform::BoxIcon::kInformation});
    if (loaded()) PutAway();
    return false;
  }
  parts_.log.WriteLog("QueryUnload", "Stop UI.");
  return true;
}

void frmNewUI::OnUnload() {
  Guarded("Form_Unload", [&] {
    if (state.Get() != WindowState::kMinimised) parts_.reg_ini.SaveWindowState(*this);
    parts_.reg_ini.SaveSettingHashed("Misc", "DetSho", app_.settings.ShowDetailsOpen ? "1" : "0");
  });
  parts_.log.WriteLog("Unload", "Ending version " + FormattedVersion());
  tray.shown = false;
  alerts.Stop();
  // Unload takes the form from the list of open forms only after this handler; the procedure that closes all
  // others must not meet it again.
  unloaded.ConnectForever([log = &parts_.log] { log->CloseAllAndEnd(); });
}

}  // namespace zendrix::home
