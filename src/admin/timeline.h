// The timeline of frmMain: how the events of its grid spread over time, in a small chart below the grid and,
// on a click there, in a window of its own, the Timeline View. The counts are made at the end of every load;
// charts are drawn from them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "admin/frm_chart.h"
#include "admin/grid_frame.h"
#include "admin/item_counts.h"
#include "admin/time_slots.h"
#include "widgets/chart.h"
#include "widgets/label.h"
#include "widgets/menu.h"
#include "widgets/reopened_window.h"

namespace zendrix::admin {

class Timeline {
 public:
  explicit Timeline(GridFrame& frame);
  Timeline(const Timeline&) = delete;
  Timeline& operator=(const Timeline&) = delete;

  // Switches on, in the settings, the monitors that are not there yet, reads the settings again, and counts.
  // A run-time error ends it, and nobody is told.
  void FillMiniChart();
  // Draws the small chart. Without monitors in the settings it stays as it is.
  void DrawMiniChart();
  // Part of the periodic check: the large chart is drawn again if it is open.
  void Tick();
  // Opens the Timeline View beside the main window, or brings the one that is open to the front.
  void MnVChart_Click();

  const TimeSlots& time_slots() const { return slots_; }

  widgets::Chart Chrt{"Chrt"};
  widgets::Label chrtLabel{"chrtLabel"};
  widgets::MenuItem MnVChart{"MnVChart", "Timeline View"};
  // The toolbar button, by its key.
  widgets::MenuItem TbarChart{"Chart", "Timeline View"};

 private:
  void RegisterMonitors();
  std::vector<std::int32_t> ItemsAliveAt(const std::vector<std::string>& monitors, int row);

  GridFrame& frame_;
  ItemCounts items_;
  TimeSlots slots_;
  widgets::Reopened<frmChart> charts_;
};

}  // namespace zendrix::admin
