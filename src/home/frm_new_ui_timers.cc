// The refresh cycle of frmNewUI: its three timers and the handler of the reader's new events.
#include <cmath>

#include "core/guards.h"
#include "core/moments.h"
#include "home/frm_new_ui.h"

namespace zendrix::home {

namespace {
constexpr std::uint8_t kThreeSeconds = 3;
constexpr std::uint8_t kTwoMinutes = 120;
constexpr std::int16_t kQuarter = 900;
constexpr std::int16_t kHour = 3600;
constexpr std::int32_t kDay = 8641;
constexpr int kDaysBeforeSurvey = 3;
}  // namespace

void frmNewUI::Timer1_Timer() {
  if (ListBusy) return;
  ++ThreeSecondTicks_;
  ++TwoMinuteTicks_;
  ++HourTicks;
  ++QuarterTicks;
  if (Animated) summary.MovePicture();
  if (ThreeSecondTicks_ == kThreeSeconds) EverySeconds3();
  if (TwoMinuteTicks_ == kTwoMinutes) {
    TwoMinuteTicks_ = 0;
    AgentLevel = agent.CheckAgnSta();
  }
  if (QuarterTicks > kQuarter) {
    QuarterTicks = 0;
    if (parts_.services.CheckUpdate) parts_.services.CheckUpdate();
  }
  if (HourTicks > kHour) EveryHour();
}

void frmNewUI::EverySeconds3() {
  ThreeSecondTicks_ = 0;
  CheckRiskLevel();
  if (state.Get() == widgets::WindowState::kMinimised) return;
  if (!TrayBlinking || !Timer2_->Running() || !visible) return;
  TrayBlinking = false;
  Timer2_->Stop();
  AttentionPending = false;
  tray.icon = widgets::TrayIcon::kForm;
}

void frmNewUI::EveryHour() {
  HourTicks = 0;
  const core::Date now = core::Now(app_.seams.clock, app_.seams.family);
  // A second is 1/86400 of a day; the small addition keeps a whole number of hours whole.
  const auto hours = static_cast<long long>(std::floor((now - alerts.LastIntrusionTime) * 24 + 1e-6));
  const bool whole_days = hours % 24 == 0;
  if (whole_days && hours > 1) {
    if (!InSight() && app_.settings.PopNotifyMs) pop_ups.ShowNotification();
  } else {
    CheckSurvey();
  }
}

void frmNewUI::CheckRiskLevel() {
  core::OrLog(parts_.log, "frmNewUI:CheckRiskLevel", [&] {
    const int email = options.CheckEmlSta();
    Animated = AgentLevel == kGood;
    if (!InSight() && AttentionPending) {
      TrayIconAlternate = true;
      TrayBlinking = true;
      Timer2_->Start(1000);
    }
    summary.Show(
        {AlertLevel, AgentLevel, email, alerts.sTitleDesc.caption, agent.aTitleDesc.caption, agent.Unseen});
  });
}

void frmNewUI::Timer2_Timer() {
  if (TrayIconAlternate) {
    tray.icon = widgets::TrayIcon::kNotableSystemTrayIcon;
    TrayIconAlternate = false;
  } else {
    tray.icon = widgets::TrayIcon::kForm;
    TrayIconAlternate = true;
  }
}

void frmNewUI::Timer4_Timer() {
  if (++DayTicks < kDay) return;
  CheckSurvey();
  DayTicks = 0;
}

void frmNewUI::CheckSurvey() {
  core::OrLog(parts_.log, "frmNewUI:CheckSurvey", [&] {
    if (app_.settings.TSurv != "N" || !parts_.services.PostSurvey) return;
    const core::Date now = core::Now(app_.seams.clock, app_.seams.family);
    const auto installed =
        core::ReadDate(app_.settings.IniDate, app_.seams.locale.Current(), core::LocalTimeOf(now).year);
    if (!installed) core::Raise(core::kTypeMismatch);
    if (std::floor(now) - std::floor(*installed) < kDaysBeforeSurvey) return;
    parts_.services.PostSurvey();
    // Once only, whatever became of it.
    parts_.misc.Set(&core::Settings::TSurv, "Y");
  });
}

void frmNewUI::gKvlF_newAlert() {
  if (parts_.gKvlF.ReloadedFlag) {
    alerts.ClearAlertList();
    alerts.LoadlvAlerts();
    CheckRiskLevel();
  } else {
    alerts.UpdatelvAlerts();
  }
  AlertLevel = alerts.CheckAlrSta();
  summary.FillSummaryFra();
}

}  // namespace zendrix::home
