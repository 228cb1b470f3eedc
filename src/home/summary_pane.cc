#include "home/summary_pane.h"

#include <utility>

#include "core/desc_lookup.h"
#include "core/guards.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/text_rules.h"

namespace zendrix::home {

namespace {

constexpr int kRunAgent = 2;  // StatusAction that starts the Agent

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

SummaryPane::SummaryPane(SummaryNeeds needs) : needs_(std::move(needs)), app_(needs_.state) {
  icMore.visible = false;
  const auto leads_to = [this](auto& control, int view) {
    control.clicked.ConnectForever([this, view] { needs_.SelectView(view); });
  };
  for (auto& [row, view] : {std::pair(&alerts_row, kAlertsView), std::pair(&options_row, kOptionsView)}) {
    leads_to(row->Flag, view);
    leads_to(row->icView, view);
    leads_to(row->icDesc, view);
  }
  leads_to(icClick, kAlertsView);
  leads_to(OSRiskLevel, kSummaryView);
  icMore.clicked.ConnectForever([this] { icMore_Click(); });
}

void SummaryPane::MovePicture() {
  EventCountPicture_ = EventCountPicture_ == "ecount0" ? "ecount1" : "ecount0";
  icImgEventCount.picture = EventCountPicture_;
}

void SummaryPane::Show(const Findings& findings) {
  const auto any = [&](int value) {
    return findings.alert == value || findings.agent == value || findings.email == value;
  };
  shown = findings;
  OverallLevel = kUndecided;
  if (any(kImmediate)) {
    OverallLevel = kImmediate;
  } else if (any(kAttention)) {
    OverallLevel = kAttention;
  } else if (findings.alert == kGood && findings.agent == kGood && findings.email == kGood) {
    OverallLevel = kGood;
  }
  if (OverallLevel != kUndecided) PaintLevel(OverallLevel);
  icStatus.caption = app_.Desc[1].empty() ? core::kDescriptionNotAvailable : "";
  if (!app_.Desc[1].empty()) SecondLine(OverallLevel, findings);
}

void SummaryPane::FillSummaryFra() {
  core::OrLog(needs_.log, "frmNewUI:FillSummaryFra", [&] {
    const auto& locale = app_.seams.locale.Current();
    std::uint32_t events = 0, alert_rows = 0;
    std::string date = "N/A";
    if (const auto table = needs_.gKvlF.EventTable) {
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

void SummaryPane::PaintLevel(int level) {
  const LevelLook look = LookOf(level);
  OSFlag.picture = FlagOf(level);
  OSRiskBackc = look.band;
  OSRiskLevel.fore_colour = look.sentence_colour;
  std::string sentence = look.sentence;
  core::DescLookup(app_.Desc[4], std::to_string(level) + ",", sentence);
  OSRiskLevel.caption = sentence;
  OSRiskLevel.to_front.Raise();
}

void SummaryPane::SecondLine(int level, const Findings& findings) {
  std::string text = core::kDescriptionNotAvailable;
  bool link = false;
  if (level == kImmediate && findings.agent == kImmediate) {
    text = findings.agent_text;
    StatusAction = kRunAgent;
    icMore.caption = "[Start Agent]";
    link = !findings.agent_unseen;
  } else if (level == kImmediate && findings.alert == kImmediate) {
    text = findings.alert_text;
    StatusAction = kAlertsView;
    icMore.caption = "[Details...]";
    link = true;
  } else if (level != kImmediate) {
    text = StatusText(app_, kSummaryView, findings.agent);
  }
  icMore.visible = link;
  icStatus.caption = text;
}

void SummaryPane::icMore_Click() {
  if (StatusAction == kRunAgent)
    needs_.RunAgent();
  else
    needs_.SelectView(StatusAction);
}

}  // namespace zendrix::home
