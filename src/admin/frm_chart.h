// frmChart: the Timeline View, the large chart of how events spread over time. It shows what the timeline has
// counted last and is drawn again by the main window's periodic check; it is only looked at.
#pragma once

#include "admin/time_slots.h"
#include "core/app_state.h"
#include "widgets/chart.h"
#include "widgets/form.h"

namespace zendrix::admin {

class frmChart : public widgets::Form {
 public:
  // Both outlive the form.
  frmChart(core::AppState& app, const TimeSlots& time_slots);
  ~frmChart() override { Unload(); }

  // Draws the chart; the number of its series. Without monitors in the settings it stays as it is.
  int FillCharts();

  widgets::Chart LargeChart{"LargeChart"};

 private:
  void OnLoad() override { FillCharts(); }

  core::AppState& app_;
  const TimeSlots& slots_;
};

}  // namespace zendrix::admin
