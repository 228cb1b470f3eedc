#include "home/options_pane.h"

#include <utility>

#include "core/desc_lookup.h"
#include "core/guards.h"
#include "core/number_rules.h"
#include "settings/reg_ini.h"
#include "widgets/busy_mark.h"

namespace zendrix::home {
namespace {

using core::Settings;

constexpr widgets::Colour kWhite = 0xFFFFFF;
constexpr int kDesignedSensitivity = 110;
constexpr float kSensitivityScale = 100;  // slider places to one of the setting
// The slider's last place of "All", and of "Suspicious and Intrusion".
constexpr int kLastOfAll = 33, kLastOfSuspicious = 66;
// Where the slider stands for the three floors.
constexpr int kAllPlace = 0, kSuspiciousPlace = 50, kIntrusionPlace = 100;

}  // namespace

OptionsPane::OptionsPane(OptionsNeeds needs)
    : mail(needs.state, needs.screen), needs_(std::move(needs)), app_(needs_.state) {
  eSbSensitivity.value = kDesignedSensitivity;
  ConnectControls();
}

void OptionsPane::ConnectControls() {
  for (int i = 0; i < kOptionTabs; ++i)
    etbOptionSel[static_cast<std::size_t>(i)].clicked.ConnectForever([this, i] { etbOptionSel_Click(i); });
  eEnable.clicked.ConnectForever([this] { eEnable_Click(); });
  eSbRiskLevel.value.changed.ConnectForever([this] { UpdateRiskFilterLabels(); });
  eSbSensitivity.value.changed.ConnectForever([this] {
    eSensitivity.caption =
        core::FormatPicture(eSbSensitivity.value.Get() / 100.0, "#0.00", app_.seams.locale.Current());
  });
  eSave.clicked.ConnectForever([this] {
    if (widgets::MayLeave({&mail.Email, &mail.Server, &mail.Port})) eSave_Click();
  });
  misc_changed_ = needs_.misc.changed.Connect([this] { FollowFlags(); });
}

void OptionsPane::FillEmailFra() {
  if (reading_) return;
  core::OrLog(needs_.log, "frmNewUI:FillEmailFra", [&] {
    LoadMail();
    CheckEmlSta();
    LoadAlertSettings();
    LoadFlags();
  });
}

void OptionsPane::LoadMail() {
  eEnable.checked = app_.settings.enblAlr == "1";
  told_of_damage_ = false;  // who selects the pane is told again
  mail.Show(ReadMail());
  eEnable_Click();
}

// The box about a damaged file stays open while the refresh cycle runs on; each of its looks at the settings
// would find the same file and open another one.
settings::SmtpData OptionsPane::ReadMail() {
  const widgets::BusyMark reading(reading_);
  return settings::LoadSMTPData(app_, needs_.log, &told_of_damage_);
}

void OptionsPane::LoadAlertSettings() {
  const Settings& settings = app_.settings;
  eSbRiskLevel.value = settings.ShRskLvl == settings.NormalFrom       ? kAllPlace
                       : settings.ShRskLvl == settings.SuspiciousFrom ? kSuspiciousPlace
                                                                      : kIntrusionPlace;
  UpdateRiskFilterLabels();
  // In this order: the slider, when it moves, shows its own form of the number.
  eSensitivity.caption = core::TextOf(settings.Sensitivity, app_.seams.locale.Current());
  eSbSensitivity.Put(settings.Sensitivity * kSensitivityScale);
}

// echkNotifyMs is not loaded: it stays as the user left it.
void OptionsPane::LoadFlags() {
  std::string caption;
  if (core::DescLookup(app_.Desc[9], "003,", caption)) echkOrigHigh.caption = caption;
  shown_orig_high_ = app_.settings.PopOrigHigh;
  shown_dont_ask_ = app_.settings.DontAsk;
  echkOrigHigh.checked = !shown_orig_high_;
  echkDontAsk.checked = shown_dont_ask_;
}

// Only what has changed: a tick that the user has not saved yet stays.
void OptionsPane::FollowFlags() {
  if (std::exchange(shown_orig_high_, app_.settings.PopOrigHigh) != app_.settings.PopOrigHigh)
    echkOrigHigh.checked = !app_.settings.PopOrigHigh;
  if (std::exchange(shown_dont_ask_, app_.settings.DontAsk) != app_.settings.DontAsk)
    echkDontAsk.checked = app_.settings.DontAsk;
}

void OptionsPane::etbOptionSel_Click(int index) {
  for (widgets::Label& label : etbOptionSel) {
    label.bordered = false;
    label.back_colour = kWhite;
  }
  etbOptionSel[static_cast<std::size_t>(index)].bordered = true;
  for (int i = 0; i < kOptionTabs; ++i) {
    widgets::Frame& page = efrOption[static_cast<std::size_t>(i)];
    page.visible = i == index;
    page.enabled = i == index;
    if (i == index) page.to_front.Raise();
  }
}

void OptionsPane::eEnable_Click() {
  const bool on = eEnable.checked;
  if (!on) {
    mail.Email.text = "";
    mail.Server.text = "";
    mail.Port.text = settings::kStandardPort;
  }
  for (widgets::Control* control : std::initializer_list<widgets::Control*>{
           &mail.Email, &mail.Server, &mail.Port, &elabel1, &elabel2, &elabel3, &elabel4, &elabel5})
    control->enabled = on;
}

void OptionsPane::UpdateRiskFilterLabels() {
  const int place = eSbRiskLevel.value;
  if (place <= kLastOfAll) {
    eAlertsToShow.caption = "All";
    needs_.sCurrSens.caption = "Currently displaying All alerts";
  } else if (place <= kLastOfSuspicious) {
    eAlertsToShow.caption = "Only Suspicious and Intrusion alerts";
    needs_.sCurrSens.caption = "Currently displaying Suspicious and Intrusion alerts";
  } else {
    eAlertsToShow.caption = "Only Intrusion alerts";
    needs_.sCurrSens.caption = "Currently displaying Intrusion alerts";
  }
}

void OptionsPane::eSave_Click() {
  needs_.screen.MousePointer = widgets::kPointerHourglass;
  const bool on_mail = efrOption[kMailTab].visible;
  const bool saved = core::OrLog(needs_.log, "frmNewUI:eSave_Click", [&] {
    if (on_mail)
      SaveMail();
    else if (efrOption[kAlertTab].visible)
      SaveAlertSettings();
    else if (efrOption[kPropertiesTab].visible)
      SaveProperties();
  });
  needs_.screen.MousePointer = widgets::kPointerDefault;
  if (saved && on_mail) (mail.Email.enabled ? mail.Email.focus : eEnable.focus).Raise();
}

void OptionsPane::SaveMail() {
  const bool wanted = eEnable.checked, dirty = mail.SmtpDirty;
  const bool switched = wanted != (app_.settings.enblAlr == "1");
  if (dirty) settings::SaveSMTPData(app_, needs_.log, mail.Data(), wanted);
  needs_.misc.Set(&Settings::enblAlr, std::string(wanted ? "1" : "0"));
  if (switched && !dirty) settings::SwitchMail(app_, needs_.log, wanted);
  EmailJustSaved = true;
}

void OptionsPane::SaveAlertSettings() {
  Settings& settings = app_.settings;
  settings.Sensitivity = static_cast<float>(eSbSensitivity.value.Get()) / kSensitivityScale;
  settings::DeriveThresholds(settings);
  for (float Settings::*number : {&Settings::Sensitivity, &Settings::NormalTop, &Settings::SuspiciousTop})
    needs_.misc.Set(number, settings.*number);
  needs_.misc.Set(&Settings::ShRskLvl, static_cast<float>(eSbRiskLevel.value.Get()));
  UpdateRiskFilterLabels();
  needs_.RebuildAlerts();
}

// All three are read before the first is saved: the check boxes follow what is saved.
void OptionsPane::SaveProperties() {
  const bool orig_high = !echkOrigHigh.checked, notify = !echkNotifyMs.checked,
             dont_ask = echkDontAsk.checked;
  needs_.misc.Set(&Settings::PopOrigHigh, orig_high);
  needs_.misc.Set(&Settings::PopNotifyMs, notify);
  needs_.misc.Set(&Settings::DontAsk, dont_ask);
}

std::int16_t OptionsPane::CheckEmlSta() {
  if (reading_) return EmailStatus_;
  int status = kGood;
  core::OrLog(needs_.log, "frmNewUI:CheckEmlSta", [&] {
    if (app_.settings.enblAlr != "0") {
      const settings::SmtpData saved = ReadMail();
      if (saved.Address.empty() || saved.Server.empty()) status = kAttention;
    }
    needs_.row.Flag.picture = FlagOf(status);
    StaImg.picture = FlagOf(status);
    if (status == kAttention && EmailJustSaved) {
      needs_.AttentionPending = true;
      EmailJustSaved = false;
    }
    eTitleDesc.caption = StatusText(app_, kOptionsView, status);
    needs_.row.icDesc.caption = eTitleDesc.caption.Get();
  });
  EmailStatus_ = static_cast<std::int16_t>(status);
  return EmailStatus_;
}

}  // namespace zendrix::home
