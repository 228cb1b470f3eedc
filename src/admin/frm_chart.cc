#include "admin/frm_chart.h"

#include "admin/timeline_charts.h"

namespace zendrix::admin {

frmChart::frmChart(core::AppState& app, const TimeSlots& time_slots)
    : Form(app.forms, "frmChart"), app_(app), slots_(time_slots) {
  title = "Timeline View";
  LargeChart.legend = true;
}

int frmChart::FillCharts() {
  const core::Settings& settings = app_.settings;
  if (settings.MonitorStates.empty()) return 0;
  LargeChart.table = LargeChartTable(settings, slots_);
  title = ChartCaption(settings);
  LargeChart.axis_title = ChartAxisTitle(settings);
  return static_cast<int>(LargeChart.table.Get().series.size());
}

}  // namespace zendrix::admin
