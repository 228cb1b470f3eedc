#include "home/frm_new_ui.h"

#include "core/desc_lookup.h"
#include "core/guards.h"
#include "core/version.h"
#include "core/version_text.h"

namespace zendrix::home {

using widgets::WindowState;

namespace {

constexpr char kNoDataFound[] =
    "No Zendrix Data Found.  Please ensure that the Zendrix Product is properly installed.";
constexpr char kDescription[] =
    "Shows what the Zendrix Agent finds on this computer, explains it, and lets you decide about it.";
constexpr char kDisclaimer[] =
    "This program is free software: you may use, share and change it under the terms of the GNU General "
    "Public "
    "License, version 3 or later. It comes with no warranty, to the extent permitted by law.";

const char* CaptionOf(int view) {
  switch (view) {
    case kAlertsView:
      return "Alerts";
    case kAdvancedView:
      return "Advanced";
    case kOptionsView:
      return "Options";
    case kHelpView:
      return "Help";
    case kQuitView:
      return "Quit";
    default:
      return "Summary";
  }
}

std::string Indexed(const char* name, int index) {
  return std::string(name) + "(" + std::to_string(index) + ")";
}

}  // namespace

template <class Body>
bool frmNewUI::Guarded(const char* procedure, Body&& body) {
  return core::OrLog(parts_.log, std::string("frmNewUI:") + procedure, std::forward<Body>(body));
}

frmNewUI::frmNewUI(HomeParts parts)
    : Form(parts.state.forms, "frmNewUI"), parts_(std::move(parts)), app_(parts_.state) {
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
  for (const int i : {kAlertsView, kOptionsView}) {
    const auto at = static_cast<std::size_t>(i);
    Flag[at] = std::make_unique<widgets::Image>(Indexed("Flag", i));
    icView[at] = std::make_unique<widgets::Label>(Indexed("icView", i), CaptionOf(i));
    icDesc[at] = std::make_unique<widgets::Label>(Indexed("icDesc", i));
  }
  for (const int i : {kAlertsView, kAdvancedView, kOptionsView})
    StaImg[static_cast<std::size_t>(i)] = std::make_unique<widgets::Image>(Indexed("StaImg", i));
  sClearAll.tip = "Mark as deleted";
  sShowAll.tip = "Show also deleted alerts";
  sMoreInfo.enabled = false;
  icMore.visible = false;
  lblRootWarning.visible = app_.seams.host.RunsAsRoot();
}

void frmNewUI::ConnectControls() {
  for (const int i : kViews) {
    const auto at = static_cast<std::size_t>(i);
    ViewItems[at]->clicked.ConnectForever([this, i] { ViewItems_Click(i); });
    Image1[at]->clicked.ConnectForever([this, i] { ViewItems_Click(i); });
    if (Flag[at]) Flag[at]->clicked.ConnectForever([this, i] { ViewItems_Click(i); });
    if (icView[at]) icView[at]->clicked.ConnectForever([this, i] { ViewItems_Click(i); });
    if (icDesc[at]) icDesc[at]->clicked.ConnectForever([this, i] { ViewItems_Click(i); });
  }
  icClick.clicked.ConnectForever([this] { ViewItems_Click(kAlertsView); });
  OSRiskLevel.clicked.ConnectForever([this] { ViewItems_Click(kSummaryView); });
  icMore.clicked.ConnectForever([this] { icMore_Click(); });
  aClick.clicked.ConnectForever([this] { aClick_Click(); });
  lvAlerts.item_clicked.ConnectForever([this](widgets::ListView::Slot item) { lvAlerts_ItemClick(item); });
  lvAlerts.right_button_up.ConnectForever([this] { lvAlerts_MouseUp(); });
  mPopRNormal.clicked.ConnectForever([this] { mPopRNormal_Click(); });
  mPopRAbnormal.clicked.ConnectForever([this] { mPopRAbnormal_Click(); });
  sckShowAll.clicked.ConnectForever([this] { sckShowAll_Click(); });
  sClearAll.clicked.ConnectForever([this] { sClearAll_Click(); });
  sShowAll.clicked.ConnectForever([this] { sShowAll_Click(); });
  tray.mouse.ConnectForever([this](int message) { Tray_Mouse(message); });
  mPopRestore.clicked.ConnectForever([this] { mPopRestore_Click(); });
  mPopMinimize.clicked.ConnectForever([this] { mPopMinimize_Click(); });
  mPopMaximize.clicked.ConnectForever([this] { mPopMaximize_Click(); });
  mPopExit.clicked.ConnectForever([this] { mPopExit_Click(); });
  // A desktop may open the icon's menu itself, without an event that the form could refuse.
  enabled.changed.ConnectForever([this] {
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
  sckShowAll.checked = true;
  Guarded("LoadWindowState", [&] { parts_.reg_ini.LoadWindowState(*this); });
  Guarded("LoadDescTips", [&] { LoadDescTips(); });
  eSbRiskLevel.value = static_cast<int>(app_.settings.ShRskLvl);
  Guarded("LoadChkAlrColl", [&] { parts_.alerts.LoadChkAlrColl(); });
  CreateHeaderlvAlerts();
  LoadlvAlerts();
  if (const auto first = lvAlerts.first_visible()) {
    lvAlerts.Select(*first);
    lvAlerts_ItemClick(*first);
  }
  if (!parts_.gKvlF.EventTable)
    app_.seams.message_boxes.Show({app_.ProductName, kNoDataFound, platform::BoxIcon::kStop});
  Frame2.visible = true;
  ViewItems_Click(kSummaryView);
  tray.SetTip(app_.ProductName);
  tray.icon = widgets::TrayIcon::kForm;
  tray.shown = true;
  AlertLevel = CheckAlrSta();
  AgentLevel = CheckAgnSta();
  FillSummaryFra();
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
  visible = false;
}

std::string frmNewUI::OpeningText() const {
  return core::DescAt(app_.Desc[0], 1);
}

void frmNewUI::LoadDescTips() {
  const core::DescArray& texts = app_.Desc[0];
  const auto text = [&](std::size_t n) { return core::DescAt(texts, n); };
  details_.ShowText(text(1));
  icDesc[kAlertsView]->caption = text(1);
  aDesc.caption = text(3);
  etopDesc.caption = text(4);
  icDesc[kOptionsView]->caption = text(4);
  icShortDesc.caption = text(7);
}

void frmNewUI::FillHelpFra() {
  Guarded("FillHelpFra", [&] {
    hAppTitle.caption = app_.ProductName;
    hVersion.caption = "Version " + FormattedVersion();
    hDescription.caption = kDescription;
    hDisclaimer.caption = kDisclaimer;
    // Last, since a short description file ends the procedure here.
    htopDesc.caption = core::DescAt(app_.Desc[0], 5);
  });
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
  if (index == kAlertsView) lvAlerts.focus.Raise();
  PreviousView = static_cast<std::int16_t>(index);
  parts_.screen.MousePointer = widgets::kPointerDefault;
}

void frmNewUI::RunViewAction(int index) {
  if (index == kAlertsView) CheckAlrSta();
  if (index == kOptionsView) CheckEmlSta();
  if (index == kHelpView) FillHelpFra();
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

void frmNewUI::Tray_Mouse(int message) {
  if (message == widgets::kTrayLeftDouble) {
    ShowWindow(WindowState::kNormal);
  } else if (message == widgets::kTrayLeftUp || message == widgets::kTrayRightUp) {
    bring_forward.Raise();
    if (enabled) mPopupSys2.popup.Raise();
  }
}

void frmNewUI::ComeForward() {
  if (enabled) {
    if (state.Get() == WindowState::kMinimised) state = WindowState::kNormal;
    visible = true;
  }
  bring_forward.Raise();
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
    visible = false;
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
  details_.Stop();
  // Unload takes the form from the list of open forms only after this handler; the procedure that closes all
  // others must not meet it again.
  unloaded.ConnectForever([log = &parts_.log] { log->CloseAllAndEnd(); });
}

}  // namespace zendrix::home
