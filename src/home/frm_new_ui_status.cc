// The status overview of frmNewUI: three checks, each a small number (1 good, 2 needs attention, 3 needs
// immediate attention), folded into one colour with a sentence and, where the user can act, a link.
#include <algorithm>
#include <optional>

#include "alerts/risk.h"
#include "core/desc_lookup.h"
#include "core/guards.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/text_rules.h"
#include "home/frm_new_ui.h"
#include "settings/smtp.h"

namespace zendrix::home {

namespace {

constexpr int kUndecided = 0, kGood = 1, kAttention = 2, kImmediate = 3;
constexpr int kRunAgent = 2;  // StatusAction that starts the Agent

const char* FlagOf(int status) {
  if (status == kImmediate) return "FlagR";
  return status == kAttention ? "FlagY" : "FlagG";
}

int LevelOf(const std::string& text) {
  if (text == alerts::kIntrusion || text == alerts::kUnknown) return kImmediate;
  if (text == alerts::kSuspicious) return kAttention;
  return text == alerts::kNormal ? kGood : kUndecided;
}

// How one overall level looks. Colours have red in the high byte.
struct LevelLook {
  std::uint32_t band;
  widgets::Colour sentence_colour;
  const char* sentence;
};

LevelLook LookOf(int level) {
  if (level == kGood) return {0x00FF00, 0x008000, "No action required on your part"};
  // Label colours are written blue first.
  if (level == kAttention) return {0xFFFF00, 0x008080, "Some items require your attention"};
  return {0xFF0000, 0x000080, "Some items require your immediate attention"};
}

}  // namespace

std::string frmNewUI::StatusText(int group, int status) const {
  std::string text;
  const std::string key = std::to_string(group) + "," + std::to_string(status) + ",";
  return core::DescLookup(app_.Desc[1], key, text) ? text : core::kDescriptionNotAvailable;
}

std::int16_t frmNewUI::CheckAlrSta() {
  int level = kUndecided;
  core::OrLog(parts_.log, "frmNewUI:CheckAlrSta", [&] {
    for (std::size_t i = 0; i < lvAlerts.size(); ++i) {
      const widgets::ListRow& row = lvAlerts.at(i);
      const auto decision = parts_.alerts.Decision(row.tag);
      if (decision && !decision->ends_with('A')) continue;
      for (const widgets::SubItem& item : row.sub_items) level = std::max(level, LevelOf(item.text));
    }
    level = std::max(level, kGood);
    Flag[kAlertsView]->picture = FlagOf(level);
    StaImg[kAlertsView]->picture = FlagOf(level);
    sTitleDesc.caption =
        core::Replace(StatusText(kAlertsView, level), "<countofalerts>", std::to_string(lvAlerts.size()));
    icDesc[kAlertsView]->caption = sTitleDesc.caption.Get();
  });
  return static_cast<std::int16_t>(level);
}

std::int16_t frmNewUI::CheckAgnSta() {
  int status = kImmediate;
  core::OrLog(parts_.log, "frmNewUI:CheckAgnSta", [&] {
    if (parts_.agent.AgentStatus(true) == 0) status = kGood;
    StaImg[kAdvancedView]->picture = FlagOf(status);
    if (status == kImmediate && AgentJustStarted) {
      AttentionPending = true;
      AgentJustStarted = false;
    }
    aTitleDesc.caption = StatusText(kAdvancedView, status);
    aStatus.caption = status == kGood ? "Monitoring is Enabled" : "Monitoring is Disabled";
    aClick.caption = status == kGood ? "[Disable]" : "[Enable]";
  });
  return static_cast<std::int16_t>(status);
}

void frmNewUI::aClick_Click() {
  if (aClick.caption.Get() == "[Disable]") {
    parts_.agent.StopAgent(false);
  } else {
    parts_.agent.StartAgent(false);
    AgentJustStarted = true;
  }
  AgentLevel = CheckAgnSta();
}

std::int16_t frmNewUI::CheckEmlSta() {
  int status = kGood;
  core::OrLog(parts_.log, "frmNewUI:CheckEmlSta", [&] {
    if (app_.settings.enblAlr != "0") {
      const settings::SmtpData mail = settings::LoadSMTPData(app_, parts_.log);
      if (mail.Address.empty() || mail.Server.empty()) status = kAttention;
    }
    Flag[kOptionsView]->picture = FlagOf(status);
    StaImg[kOptionsView]->picture = FlagOf(status);
    if (status == kAttention && EmailJustSaved) {
      AttentionPending = true;
      EmailJustSaved = false;
    }
    eTitleDesc.caption = StatusText(kOptionsView, status);
    icDesc[kOptionsView]->caption = eTitleDesc.caption.Get();
  });
  return static_cast<std::int16_t>(status);
}

void frmNewUI::FillSummaryFra() {
  core::OrLog(parts_.log, "frmNewUI:FillSummaryFra", [&] {
    const auto& locale = app_.seams.locale.Current();
    std::uint32_t events = 0, alert_rows = 0;
    std::string date = "N/A";
    if (const auto table = parts_.gKvlF.EventTable) {
      store::EventCursor clone = table->Clone();
      if (!clone.Eof()) {
        date = std::string(clone.Text(store::kDateTime));
        events = clone.RecordCount();
        const double floor = (static_cast<double>(app_.settings.SuspiciousTop) + 0.5) * 0.99 / 100;
        clone.SetFilter("Monitor = 'Aggregation' AND Change >= " + core::TextOf(floor, locale));
        if (!clone.Eof()) alert_rows = clone.RecordCount();
      }
    }
    std::string line;
    if (core::DescLookup(app_.Desc[9], "010,", line))
      icEventCount.caption = core::Replace(line, "<NumEvents>", std::to_string(events));
    if (core::DescLookup(app_.Desc[9], "011,", line))
      icAlertCount.caption = core::Replace(line, "<NumAlerts>", std::to_string(alert_rows));
    const core::Date now = core::Now(app_.seams.clock, app_.seams.family);
    const auto moment = core::ReadDate(date, locale, core::LocalTimeOf(now).year);
    icDate.caption = moment ? core::FormatDate(*moment, "Long Date", locale) : date;
  });
}

void frmNewUI::CheckRiskLevel() {
  core::OrLog(parts_.log, "frmNewUI:CheckRiskLevel", [&] {
    const int email = CheckEmlSta();
    Animated = AgentLevel == kGood;
    if (!InSight() && AttentionPending) {
      TrayIconAlternate = true;
      TrayBlinking = true;
      Timer2_->Start(1000);
    }
    const auto any = [&](int value) { return AlertLevel == value || AgentLevel == value || email == value; };
    int level = kUndecided;
    if (any(kImmediate)) {
      level = kImmediate;
    } else if (any(kAttention)) {
      level = kAttention;
    } else if (AlertLevel == kGood && AgentLevel == kGood && email == kGood) {
      level = kGood;
    }
    if (level != kUndecided) PaintLevel(level);
    icStatus.caption = "";
    if (!app_.Desc[1].empty()) SecondLine(level);
  });
}

void frmNewUI::PaintLevel(int level) {
  const LevelLook look = LookOf(level);
  OSFlag.picture = FlagOf(level);
  OSRiskBackc = look.band;
  OSRiskLevel.fore_colour = look.sentence_colour;
  std::string sentence = look.sentence;
  core::DescLookup(app_.Desc[4], std::to_string(level) + ",", sentence);
  OSRiskLevel.caption = sentence;
  OSRiskLevel.to_front.Raise();
}

void frmNewUI::SecondLine(int level) {
  std::string text = core::kDescriptionNotAvailable;
  bool link = false;
  if (level == kImmediate && AgentLevel == kImmediate) {
    text = aTitleDesc.caption;
    StatusAction = kRunAgent;
    icMore.caption = "[Start Agent]";
    link = true;
  } else if (level == kImmediate && AlertLevel == kImmediate) {
    text = sTitleDesc.caption;
    StatusAction = kAlertsView;
    icMore.caption = "[Details...]";
    link = true;
  } else if (level != kImmediate) {
    text = StatusText(kSummaryView, AgentLevel);
  }
  icMore.visible = link;
  icStatus.caption = text;
}

void frmNewUI::icMore_Click() {
  if (StatusAction == kRunAgent)
    aClick_Click();
  else
    ViewItems_Click(StatusAction);
}

}  // namespace zendrix::home
