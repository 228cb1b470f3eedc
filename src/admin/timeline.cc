#include "admin/timeline.h"

#include <unordered_set>

#include "admin/timeline_charts.h"
#include "core/guards.h"
#include "core/letter_case.h"

namespace zendrix::admin {

Timeline::Timeline(GridFrame& frame) : frame_(frame), items_(frame.EventList) {
  Chrt.tip = "Click to Enlarge";
  Chrt.clickable = true;
  MnVChart.shortcut = "Ctrl+T";
  for (widgets::Signal<>* clicked : {&MnVChart.clicked, &TbarChart.clicked, &Chrt.clicked})
    clicked->ConnectForever([this] { MnVChart_Click(); });
}

// More new names at one time than the settings take were told in the log by the load that brought them; they
// would be told again behind every poll.
void Timeline::RegisterMonitors() {
  const auto& listed = frame_.GridMonitorList.ColList();
  std::unordered_set<std::string> known;
  for (const auto& [name, value] : frame_.app.settings.MonitorStates) known.insert(core::UpperCase(name));
  std::vector<std::string> names, fresh;
  for (const auto& entry : listed)
    (known.contains(core::UpperCase(entry.item)) ? names : fresh).push_back(entry.item);
  if (fresh.size() <= settings::kMostNewMonitors) names.insert(names.end(), fresh.begin(), fresh.end());
  frame_.reg_ini.RegisterMonitors(names);
}

std::vector<std::int32_t> Timeline::ItemsAliveAt(const std::vector<std::string>& monitors, int row) {
  std::vector<std::int32_t> alive(monitors.size());
  core::OrLog(frame_.log, "frmMain : StateofMonitor", [&] { alive = items_.At(monitors, row); });
  return alive;
}

void Timeline::FillMiniChart() {
  core::AppState& app = frame_.app;
  core::OrIgnore([&] {
    const SlotUnit& unit = SlotUnitOf(app.settings.TSlots);
    RegisterMonitors();
    frame_.reg_ini.ReadRegInfo();
    if (app.settings.MonitorStates.empty()) return;
    const auto items_alive = [this](const auto& monitors, int row) { return ItemsAliveAt(monitors, row); };
    slots_.Fill(frame_.EventList, {app.settings, unit, app.seams.locale.Current(), app.DateOrder,
                                   app.seams.family, items_alive});
  });
}

void Timeline::DrawMiniChart() {
  const core::Settings& settings = frame_.app.settings;
  if (settings.MonitorStates.empty()) return;
  chrtLabel.caption = std::string(SlotUnitOf(settings.TSlots).axis_text);
  Chrt.table = SmallChartTable(settings, slots_);
}

void Timeline::Tick() {
  if (frmChart* const chart = charts_.get(); chart && chart->loaded()) chart->FillCharts();
}

// A second click may have been on its way when a modal window opened.
void Timeline::MnVChart_Click() {
  if (!frame_.TakesCommands()) return;
  widgets::FormHost& host = frame_.app.host();
  frmChart& window = charts_.Open(host, frame_.app, slots_);
  host.Show(window, {.owner = &frame_.window});
  window.BringUp();
}

}  // namespace zendrix::admin
